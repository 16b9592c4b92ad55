#include "fit/symmetric_eigen_solver.h"

#include "fit/fit_test_support.h"

#include <algorithm>
#include <limits>

namespace {

using namespace fit_test;
using cadgeom::detail::SymmetricEigenSolver;

template <int N>
struct Symmetric {
    double rows[N][N];

    double* operator[](int row) { return rows[row]; }
    const double* operator[](int row) const { return rows[row]; }
};

template <int N>
void Load(SymmetricEigenSolver<N>& solver, const Symmetric<N>& matrix)
{
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < N; ++j) {
            solver.matrix[i][j] = matrix[i][j];
        }
    }
}

/// A random symmetric matrix, its size between 1e-3 and 1e3.
template <int N>
Symmetric<N> RandomSymmetric(std::mt19937_64& random)
{
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double size = std::pow(10.0, 3.0 * unit(random));
    Symmetric<N> matrix{};
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j <= i; ++j) {
            matrix[i][j] = matrix[j][i] = size * unit(random);
        }
    }
    return matrix;
}

/// Reduces a matrix the way the fits do.
void Reduce(SymmetricEigenSolver<2>& solver, const Symmetric<2>& m)
{
    solver.LoadTridiagonal(m[0][0], m[0][1], m[1][1]);
}
void Reduce(SymmetricEigenSolver<3>& solver, const Symmetric<3>& m)
{
    solver.LoadSymmetric(m[0][0], m[0][1], m[0][2], m[1][1], m[1][2], m[2][2]);
    solver.Tridiagonalize3();
}
void Reduce(SymmetricEigenSolver<4>& solver, const Symmetric<4>& m)
{
    Load(solver, m);
    solver.TridiagonalizeN();
}

template <int N>
double Determinant(const double (&m)[N][N])
{
    Symmetric<N> a{};
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < N; ++j) {
            a[i][j] = m[i][j];
        }
    }
    double determinant = 1.0;
    for (int k = 0; k < N; ++k) {
        int pivot = k;
        for (int i = k; i < N; ++i) {
            pivot = std::fabs(a[i][k]) > std::fabs(a[pivot][k]) ? i : pivot;
        }
        if (pivot != k) {
            std::swap_ranges(a[pivot], a[pivot] + N, a[k]);
            determinant = -determinant;
        }
        determinant *= a[k][k];
        for (int i = k + 1; i < N; ++i) {
            const double factor = a[i][k] / a[k][k];
            for (int j = k; j < N; ++j) {
                a[i][j] -= factor * a[k][j];
            }
        }
    }
    return determinant;
}

template <int N>
void ExpectEigenDecomposition(const SymmetricEigenSolver<N>& solver, const Symmetric<N>& m)
{
    Real size = 0;
    typename JacobiEigen<N>::Matrix wide{};
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < N; ++j) {
            wide[i][j] = Wide(m[i][j]);
            size = std::max(size, std::fabs(wide[i][j]));
        }
    }
    double values[N];
    std::copy_n(solver.diagonal, N, values);
    std::sort(values, values + N);
    const JacobiEigen<N> expected(wide);
    const Real bound = 2e-15L * N * size;
    for (int k = 0; k < N; ++k) {
        ASSERT_NEAR(values[k], static_cast<double>(expected.values[k]), static_cast<double>(bound));
    }
    for (int column = 0; column < N; ++column) {
        for (int row = 0; row < N; ++row) {
            Real residual = -Wide(solver.diagonal[column]) * Wide(solver.Eigenvector(column, row));
            Real product = row == column ? -1 : 0;
            for (int k = 0; k < N; ++k) {
                residual += wide[row][k] * Wide(solver.Eigenvector(column, k));
                product += Wide(solver.Eigenvector(column, k)) * Wide(solver.Eigenvector(row, k));
            }
            ASSERT_LE(std::fabs(residual), bound);
            ASSERT_LE(std::fabs(product), 2e-15L * N);
        }
    }
}

template <int N>
void ExpectSolutions()
{
    std::mt19937_64 random(20240720 + N);
    for (int round = 0; round < 5000; ++round) {
        const Symmetric<N> matrix = RandomSymmetric<N>(random);
        SymmetricEigenSolver<N> solver;
        Reduce(solver, matrix);
        ASSERT_EQ(solver.isRotation, Determinant(solver.matrix) > 0.0)
            << "seed 20240720 + " << N << ", round " << round;
        ASSERT_TRUE(solver.QLAlgorithm());
        ExpectEigenDecomposition(solver, matrix);
    }
}

TEST(SymmetricEigenSolver, SolvesRandomProblemsOfTwo)
{
    ExpectSolutions<2>();
}

TEST(SymmetricEigenSolver, SolvesRandomProblemsOfThree)
{
    ExpectSolutions<3>();
}

TEST(SymmetricEigenSolver, SolvesRandomProblemsOfFour)
{
    ExpectSolutions<4>();
}

/// Another arrangement of the reduction of 4 x 4: the full matrix in every step, the transform as a product of
/// reflections.
void PlainTridiagonal(JacobiEigen<4>::Matrix a, Real (&diagonal)[4], Real (&subdiagonal)[4])
{
    for (int i = 3; i > 1; --i) {
        Real u[4] = {};
        Real h = 0;
        for (int j = 0; j < i; ++j) {
            u[j] = a[i][j];
            h += u[j] * u[j];
        }
        if (h == 0) {
            continue;
        }
        const Real g = u[i - 1] > 0 ? -std::sqrt(h) : std::sqrt(h);
        h -= u[i - 1] * g;
        u[i - 1] -= g;
        JacobiEigen<4>::Matrix reflected{};
        for (int side = 0; side < 2; ++side) {
            for (int r = 0; r < 4; ++r) {
                for (int c = 0; c < 4; ++c) {
                    Real value = a[r][c];
                    for (int k = 0; k < 4; ++k) {
                        value -= a[r][k] * u[k] * u[c] / h;
                    }
                    reflected[c][r] = value; // transposed, so that the second pass works on the other side
                }
            }
            a = reflected;
        }
    }
    for (int i = 0; i < 4; ++i) {
        diagonal[i] = a[i][i];
        subdiagonal[i] = i < 3 ? a[i][i + 1] : 0;
    }
}

TEST(SymmetricEigenSolver, ReducesFourRowsFromTheLastUpWithTheSignOfTheMethod)
{
    std::mt19937_64 random(20240721);
    for (int round = 0; round < 2000; ++round) {
        const Symmetric<4> matrix = RandomSymmetric<4>(random);
        JacobiEigen<4>::Matrix wide{};
        Real size = 0;
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) {
                wide[i][j] = Wide(matrix[i][j]);
                size = std::max(size, std::fabs(wide[i][j]));
            }
        }
        Real diagonal[4];
        Real subdiagonal[4];
        PlainTridiagonal(wide, diagonal, subdiagonal);
        SymmetricEigenSolver<4> solver;
        Load(solver, matrix);
        solver.TridiagonalizeN();
        for (int i = 0; i < 4; ++i) {
            ASSERT_LE(std::fabs(Wide(solver.diagonal[i]) - diagonal[i]), 1e-11L * size);
            ASSERT_LE(std::fabs(Wide(solver.subdiagonal[i]) - subdiagonal[i]), 1e-11L * size);
        }
        ASSERT_EQ(solver.subdiagonal[3], 0.0);
        ASSERT_TRUE(solver.isRotation);
    }
}

TEST(SymmetricEigenSolver, KeepsATridiagonalMatrixOfFourUpToSigns)
{
    // Rows with nothing left of the coupling are reflected by 1 - 2 e e', those with nothing at all are left alone.
    SymmetricEigenSolver<4> solver;
    Load<4>(solver, {{{1, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 3, 0}, {0, 0, 0, 4}}});
    solver.TridiagonalizeN();
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(solver.diagonal[i], i + 1.0);
        EXPECT_EQ(solver.subdiagonal[i], 0.0);
        for (int j = 0; j < 4; ++j) {
            EXPECT_EQ(solver.matrix[i][j], i == j ? 1.0 : 0.0);
        }
    }
}

TEST(SymmetricEigenSolver, FlagOfTheReductionDependsOnTheParityOfTheSize)
{
    SymmetricEigenSolver<3> odd;
    Load<3>(odd, {{{1, 0, 0}, {0, 2, 0}, {0, 0, 3}}});
    odd.TridiagonalizeN();
    EXPECT_FALSE(odd.isRotation);
    SymmetricEigenSolver<2> even;
    Load<2>(even, {{{1, 5}, {5, 2}}});
    even.TridiagonalizeN();
    EXPECT_TRUE(even.isRotation);
    EXPECT_EQ(even.subdiagonal[0], 5.0);
}

TEST(SymmetricEigenSolver, TakesAMixedElementUpTo2ToTheMinus23ForZero)
{
    for (const double m02 :
         {kEpsilon, -kEpsilon, std::nextafter(kEpsilon, 0.0), 0.0, std::numeric_limits<double>::quiet_NaN()}) {
        SymmetricEigenSolver<3> solver;
        solver.LoadSymmetric(1.0, 2.0, m02, 3.0, 4.0, 5.0);
        solver.Tridiagonalize3();
        EXPECT_TRUE(solver.isRotation);
        EXPECT_EQ(solver.matrix[1][1], 1.0);
        EXPECT_EQ(solver.diagonal[0], 1.0);
        EXPECT_EQ(solver.diagonal[1], 3.0);
        EXPECT_EQ(solver.diagonal[2], 5.0);
        EXPECT_EQ(solver.subdiagonal[0], 2.0);
        EXPECT_EQ(solver.subdiagonal[1], 4.0);
        EXPECT_EQ(solver.subdiagonal[2], 0.0);
    }
    for (const double m02 : {std::nextafter(kEpsilon, 1.0), -std::nextafter(kEpsilon, 1.0)}) {
        SymmetricEigenSolver<3> solver;
        solver.LoadSymmetric(1.0, 2.0, m02, 3.0, 4.0, 5.0);
        solver.Tridiagonalize3();
        EXPECT_FALSE(solver.isRotation);
        EXPECT_LT(solver.matrix[2][2], 0.0);
    }
}

TEST(SymmetricEigenSolver, ReducesThreeRowsInClosedForm)
{
    // m01 = 3, m02 = 4: length 5, a = 0.6, b = 0.8, formed with the reciprocal of the length.
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(7.0, 3.0, 4.0, 2.0, 0.5, 10.0);
    solver.Tridiagonalize3();
    const double a = 3.0 * (1.0 / 5.0);
    const double b = 4.0 * (1.0 / 5.0);
    const double q = 2.0 * a * 0.5 + b * 8.0;
    EXPECT_EQ(solver.diagonal[0], 7.0);
    EXPECT_EQ(solver.diagonal[1], 2.0 + b * q);
    EXPECT_EQ(solver.diagonal[2], 10.0 - b * q);
    EXPECT_EQ(solver.subdiagonal[0], 5.0);
    EXPECT_EQ(solver.subdiagonal[1], 0.5 - a * q);
    EXPECT_EQ(solver.subdiagonal[2], 0.0);
    const double expected[3][3] = {{1, 0, 0}, {0, a, b}, {0, b, -a}};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            EXPECT_EQ(solver.matrix[i][j], expected[i][j]);
        }
    }
}

TEST(SymmetricEigenSolver, DiagonalMatrixYieldsItsDiagonalAndUnitVectors)
{
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(2.0, 0.0, 0.0, 5.0, 0.0, 3.0);
    solver.Tridiagonalize3();
    ASSERT_TRUE(solver.QLAlgorithm());
    solver.DecreasingSort();
    EXPECT_EQ(solver.diagonal[0], 5.0);
    EXPECT_EQ(solver.diagonal[1], 3.0);
    EXPECT_EQ(solver.diagonal[2], 2.0);
    EXPECT_EQ(solver.Eigenvector(0, 1), 1.0);
    EXPECT_EQ(solver.Eigenvector(1, 2), 1.0);
    EXPECT_EQ(solver.Eigenvector(2, 0), 1.0);
}

TEST(SymmetricEigenSolver, OneExchangeOfThreeRowsMakesTheFirstColumnNegative)
{
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(3.0, 0.0, 0.0, 1.0, 0.0, 2.0);
    solver.Tridiagonalize3();
    ASSERT_TRUE(solver.QLAlgorithm());
    solver.DecreasingSort();
    EXPECT_FALSE(solver.isRotation);
    solver.GuaranteeRotation();
    EXPECT_EQ(solver.Eigenvector(0, 0), -1.0);
    EXPECT_EQ(solver.Eigenvector(1, 2), 1.0);
    EXPECT_EQ(solver.Eigenvector(2, 1), 1.0);
    EXPECT_FALSE(solver.isRotation);
}

TEST(SymmetricEigenSolver, OneExchangeOfTwoOrFourRowsLeavesTheFlag)
{
    SymmetricEigenSolver<2> two;
    two.LoadTridiagonal(1.0, 0.0, 2.0);
    two.DecreasingSort();
    EXPECT_TRUE(two.isRotation);
    two.GuaranteeRotation();
    EXPECT_EQ(two.Eigenvector(0, 1), 1.0); // the columns are mirrored now, and stay so

    SymmetricEigenSolver<4> four;
    Load<4>(four, {{{2, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 3, 0}, {0, 0, 0, 4}}});
    four.TridiagonalizeN();
    four.IncreasingSort();
    EXPECT_EQ(four.diagonal[0], 1.0);
    EXPECT_TRUE(four.isRotation);
}

TEST(SymmetricEigenSolver, EqualEigenvaluesKeepTheirOrder)
{
    for (const bool isDecreasing : {true, false}) {
        SymmetricEigenSolver<3> solver;
        solver.LoadSymmetric(2.0, 0.0, 0.0, 2.0, 0.0, isDecreasing ? 1.0 : 3.0);
        solver.Tridiagonalize3();
        if (isDecreasing) {
            solver.DecreasingSort();
        } else {
            solver.IncreasingSort();
        }
        EXPECT_EQ(solver.Eigenvector(0, 0), 1.0);
        EXPECT_EQ(solver.Eigenvector(1, 1), 1.0);
        EXPECT_TRUE(solver.isRotation);
    }
    // The first of equal candidates behind the front is exchanged.
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(1.0, 0.0, 0.0, 2.0, 0.0, 2.0);
    solver.Tridiagonalize3();
    solver.DecreasingSort();
    EXPECT_EQ(solver.Eigenvector(0, 1), 1.0);
    EXPECT_EQ(solver.Eigenvector(1, 2), 1.0);
}

TEST(SymmetricEigenSolver, GivesUpOnNotANumberAfterItsIterations)
{
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        SymmetricEigenSolver<3> solver;
        solver.LoadSymmetric(1.0, bad, 1.0, 2.0, bad, 3.0);
        solver.Tridiagonalize3();
        EXPECT_FALSE(solver.QLAlgorithm());
        SymmetricEigenSolver<4> four;
        Load<4>(four, {{{bad, 1, 2, 3}, {1, bad, 4, 5}, {2, 4, 1, bad}, {3, 5, bad, 2}}});
        four.TridiagonalizeN();
        EXPECT_FALSE(four.QLAlgorithm());
    }
}

} // namespace
