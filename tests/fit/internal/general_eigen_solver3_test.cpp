#include "fit/general_eigen_solver3.h"

#include "fit/fit_test_support.h"

#include <algorithm>

namespace {

using namespace fit_test;
using cadgeom::detail::GeneralEigenSolver3;
using cadgeom::detail::Matrix3;
using cadgeom::detail::Multiply;

TEST(GeneralEigenSolver3, FindsRealEigenvaluesOfGeneralMatrices)
{
    // V diag V^-1 with a random V.
    std::mt19937_64 random(20240722);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int round = 0; round < 1000; ++round) {
        Matrix3 v;
        for (auto& row : v) {
            for (double& element : row) {
                element = unit(random);
            }
        }
        for (std::size_t i = 0; i < 3; ++i) {
            v[i][i] += 3.0;
        }
        const double values[3] = {1.0 + unit(random) * 0.3, 4.0 + unit(random) * 0.3, -2.0 + unit(random) * 0.3};
        // M = V D V^-1 by Cramer's rule.
        const auto minor = [&](std::size_t i, std::size_t j) {
            return v[(i + 1) % 3][(j + 1) % 3] * v[(i + 2) % 3][(j + 2) % 3] -
                   v[(i + 1) % 3][(j + 2) % 3] * v[(i + 2) % 3][(j + 1) % 3];
        };
        const double determinant = v[0][0] * minor(0, 0) + v[0][1] * minor(0, 1) + v[0][2] * minor(0, 2);
        Matrix3 m{};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j) {
                for (std::size_t k = 0; k < 3; ++k) {
                    m[i][j] += v[i][k] * values[k] * minor(j, k) / determinant;
                }
            }
        }
        GeneralEigenSolver3 solver(m);
        ASSERT_TRUE(solver.Solve());
        std::vector<double> found(solver.diagonal.begin(), solver.diagonal.end());
        std::sort(found.begin(), found.end());
        ASSERT_NEAR(found[0], values[2], 1e-5); // the root finder stops at 2^-23 of the diagonal
        ASSERT_NEAR(found[1], values[0], 1e-5);
        ASSERT_NEAR(found[2], values[1], 1e-5);
        for (std::size_t k = 0; k < 3; ++k) {
            // The eigenvector solves all equations but the one that is left out.
            const auto vector = cadgeom::detail::Column(solver.matrix, k);
            const auto image = Multiply(m, vector);
            std::vector<double> residuals;
            double size = 0.0;
            for (std::size_t i = 0; i < 3; ++i) {
                residuals.push_back(std::fabs(image[i] - solver.diagonal[k] * vector[i]));
                size = std::max(size, std::fabs(vector[i]));
            }
            std::sort(residuals.begin(), residuals.end());
            ASSERT_GE(size, 1.0);
            ASSERT_LE(residuals[1], 1e-13 * size);
        }
    }
}

TEST(GeneralEigenSolver3, FailsForComplexEigenvaluesAndKeepsTheMatrix)
{
    const Matrix3 rotation = {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};
    GeneralEigenSolver3 solver(rotation);
    EXPECT_FALSE(solver.Solve());
    EXPECT_EQ(solver.matrix, rotation);
}

TEST(GeneralEigenSolver3, FailsWhenASingularMatrixHasADoubleRoot)
{
    // det = 0 leaves a quadratic with one root: two roots in all.
    GeneralEigenSolver3 solver({{{0, 0, 0}, {0, 2, 0}, {0, 0, 2}}});
    EXPECT_FALSE(solver.Solve());
}

TEST(GeneralEigenSolver3, ListsZeroLastForSingularMatrices)
{
    GeneralEigenSolver3 solver({{{1, 2, 0}, {2, 4, 0}, {0, 0, 3}}});
    ASSERT_TRUE(solver.Solve());
    EXPECT_EQ(solver.diagonal[2], 0.0);
}

TEST(GeneralEigenSolver3, FailsOnNotANumberWithoutHanging)
{
    for (const double bad : {std::nan(""), HUGE_VAL, 1e300}) {
        GeneralEigenSolver3 solver({{{1, bad, 3}, {bad, 4, 2}, {5, 1, bad}}});
        EXPECT_FALSE(solver.Solve());
    }
}

} // namespace
