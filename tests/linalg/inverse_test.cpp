#include "linalg/matrix_testing.h"
#include "linalg/published_matrices.h"

#include <gtest/gtest.h>

#if defined(CADGEOM_HAVE_EIGEN)
#include <Eigen/Dense>
#endif

using matrix_testing::Flavour;
using matrix_testing::MakeMatrix;
using matrix_testing::RandomRows;
using matrix_testing::Rows;
using matrix_testing::SameBits;
using matrix_testing::ToRows;

namespace plain = matrix_testing::plain;

namespace {

constexpr double kUnit = std::numeric_limits<double>::epsilon();

} // namespace

TEST(MatrixInverse, LeavesAnExchangeMatrixAsItIs)
{
    CMatrix matrix = MakeMatrix({{0, 1}, {1, 0}});
    matrix.Invert();
    EXPECT_EQ(ToRows(matrix), (Rows{{0, 1}, {1, 0}}));
}

TEST(MatrixInverse, InvertsSmallMatricesWorkedByHand)
{
    EXPECT_EQ(ToRows(MakeMatrix({{4}}).GetInverse()), (Rows{{0.25}}));
    EXPECT_EQ(ToRows(MakeMatrix({{1, 1}, {1, 2}}).GetInverse()), (Rows{{2, -1}, {-1, 1}}));
    EXPECT_EQ(ToRows(MakeMatrix({{1, 0, 0}, {0, 0, 2}, {0, 4, 0}}).GetInverse()),
              (Rows{{1, 0, 0}, {0, 0, 0.25}, {0, 0.5, 0}}));
    EXPECT_EQ(CMatrix().GetInverse().GetNumElements(), 0);
}

TEST(MatrixInverse, FillsTheInverseOfAZeroMatrixWithNonFiniteValues)
{
    for (const int n : {1, 2, 3, 4, 5, 9}) {
        CMatrix matrix =
            MakeMatrix(Rows(static_cast<std::size_t>(n), std::vector<double>(static_cast<std::size_t>(n))));
        matrix.Invert();
        for (int i = 0; i < n * n; ++i) {
            EXPECT_FALSE(std::isfinite(matrix.GetData()[i]));
        }
    }
}

TEST(MatrixInverse, HasNothingToSayAboutMatricesThatAreNotSquare)
{
    const CMatrix inverse = MakeMatrix({{1, 2, 3}, {4, 5, 6}}).GetInverse();
    ASSERT_EQ(inverse.GetNumRows(), 2);
    ASSERT_EQ(inverse.GetNumColumns(), 2);
    CMatrix tall = MakeMatrix({{1}, {2}, {3}});
    tall.Invert();
    ASSERT_EQ(tall.GetNumElements(), 9);
    for (int i = 0; i < 9; ++i) {
        EXPECT_TRUE(std::isnan(tall.GetData()[i]));
    }
}

TEST(MatrixInverse, EqualsThePlainEliminationBitForBit)
{
    std::mt19937 random(7301);
    for (int round = 0; round < 4000; ++round) {
        const int n = 1 + round % 13;
        const Flavour flavour = static_cast<Flavour>(round % static_cast<int>(Flavour::eFlavours));
        const Rows rows = RandomRows(random, n, n, flavour);
        ASSERT_TRUE(SameBits(ToRows(MakeMatrix(rows).GetInverse()), plain::Inverse(rows))) << "round " << round;
    }
    const Rows large = RandomRows(random, 67, 67, Flavour::eReal);
    ASSERT_TRUE(SameBits(ToRows(MakeMatrix(large).GetInverse()), plain::Inverse(large)));
}

TEST(MatrixInverse, KeepsItsOperandAndItsBuffer)
{
    const Rows rows{{2, 1}, {1, 3}};
    CMatrix matrix = MakeMatrix(rows);
    const double* const buffer = matrix.GetData();
    const CMatrix inverse = matrix.GetInverse();
    EXPECT_EQ(ToRows(matrix), rows);
    matrix.Invert();
    EXPECT_EQ(matrix.GetData(), buffer);
    EXPECT_EQ(ToRows(matrix), ToRows(inverse));
}

TEST(MatrixInverse, InvertsIntegerMatricesAsTheirAdjugates)
{
    std::mt19937 random(7302);
    int tested = 0;
    for (int round = 0; round < 600; ++round) {
        const int n = 2 + round % 4;
        const Rows rows = RandomRows(random, n, n, Flavour::eInteger);
        const long long determinant = matrix_testing::ExactDeterminant(rows);
        if (determinant == 0) {
            continue;
        }
        ++tested;
        const Rows inverse = ToRows(MakeMatrix(rows).GetInverse());
        const double condition = matrix_testing::RowSumNorm(rows) * matrix_testing::RowSumNorm(inverse);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            for (std::size_t j = 0; j < rows.size(); ++j) {
                const long long cofactor = matrix_testing::ExactDeterminant(plain::Minor(rows, j, i));
                const double exact =
                    static_cast<double>((i + j) % 2 == 0 ? cofactor : -cofactor) / static_cast<double>(determinant);
                // Forward error of elimination: condition times a low power of n times the unit roundoff.
                ASSERT_NEAR(inverse[i][j], exact, n * n * condition * matrix_testing::RowSumNorm(inverse) * kUnit);
            }
        }
    }
    EXPECT_GT(tested, 300);
}

TEST(MatrixInverse, ReachesPublishedInverses)
{
    int tested = 0;
    for (const auto& published : matrix_testing::ReadPublishedMatrices()) {
        if (published.inverse.empty()) {
            continue;
        }
        ++tested;
        const Rows inverse = ToRows(MakeMatrix(published.rows).GetInverse());
        const double norm = matrix_testing::RowSumNorm(published.inverse);
        const double condition = matrix_testing::RowSumNorm(published.rows) * norm;
        for (std::size_t i = 0; i < inverse.size(); ++i) {
            for (std::size_t j = 0; j < inverse.size(); ++j) {
                EXPECT_NEAR(inverse[i][j], published.inverse[i][j], condition * norm * kUnit) << published.name;
            }
        }
    }
    EXPECT_EQ(tested, 18);
}

#if defined(CADGEOM_HAVE_EIGEN)
TEST(MatrixInverse, AgreesWithEigen)
{
    std::mt19937 random(7303);
    using EigenMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    for (const int n : {2, 3, 4, 5, 8, 20, 60}) {
        const CMatrix matrix = MakeMatrix(RandomRows(random, n, n, Flavour::eReal));
        const CMatrix inverse = matrix.GetInverse();
        const EigenMatrix expected = EigenMatrix(Eigen::Map<const EigenMatrix>(matrix.GetData(), n, n)).inverse();
        const double norm = expected.cwiseAbs().rowwise().sum().maxCoeff();
        const double condition = norm * matrix_testing::RowSumNorm(ToRows(matrix));
        const double error = (Eigen::Map<const EigenMatrix>(inverse.GetData(), n, n) - expected).cwiseAbs().maxCoeff();
        EXPECT_LE(error, n * condition * norm * kUnit) << n;
    }
}
#endif
