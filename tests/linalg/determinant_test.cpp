#include "linalg/matrix_testing.h"
#include "linalg/published_matrices.h"

#include <gtest/gtest.h>

#include <chrono>

using matrix_testing::Flavour;
using matrix_testing::kThreshold;
using matrix_testing::MakeMatrix;
using matrix_testing::RandomRows;
using matrix_testing::Rows;
using matrix_testing::SameBits;

namespace plain = matrix_testing::plain;

namespace {

Rows Diagonal(const std::vector<double>& elements)
{
    Rows rows(elements.size(), std::vector<double>(elements.size()));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        rows[i][i] = elements[i];
    }
    return rows;
}

} // namespace

TEST(MatrixDeterminant, IsZeroWithoutRows)
{
    EXPECT_EQ(CMatrix().GetDeterminant(), 0.0);
    EXPECT_EQ(CMatrix(0, 3).GetDeterminant(), 0.0);
}

TEST(MatrixDeterminant, IsAClosedFormUpToThreeRows)
{
    EXPECT_EQ(MakeMatrix({{-7}}).GetDeterminant(), -7.0);
    EXPECT_EQ(MakeMatrix({{1, 2}, {3, 4}}).GetDeterminant(), -2.0);
    EXPECT_EQ(MakeMatrix({{2, 0, 1}, {1, 3, 2}, {1, 1, 4}}).GetDeterminant(), 18.0);
    EXPECT_EQ(MakeMatrix({{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}).GetDeterminant(), -1.0);
}

TEST(MatrixDeterminant, LeavesOutTheSignOfRowExchangesFromFourRowsUp)
{
    EXPECT_EQ(MakeMatrix({{0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}).GetDeterminant(), 1.0);
    EXPECT_EQ(MakeMatrix(Diagonal({1, -2, 3, 4})).GetDeterminant(), -24.0);
}

TEST(MatrixDeterminant, IsZeroForAZeroColumn)
{
    const CMatrix matrix = MakeMatrix({{0, 1, 2, 3}, {0, 4, 5, 7}, {0, 7, 9, 9}, {0, 1, 1, 2}});
    EXPECT_EQ(matrix.GetDeterminant(), 0.0);
}

TEST(MatrixDeterminant, ExpandsCofactorsWhenAPivotIsAtTheThreshold)
{
    // The expansion carries the sign that the product of the pivots leaves out.
    for (const bool isUsable : {false, true}) {
        const double pivot = isUsable ? std::nextafter(kThreshold, 1.0) : kThreshold;
        Rows rows = Diagonal({1, 1, 1, pivot});
        std::swap(rows[0], rows[1]);
        EXPECT_EQ(MakeMatrix(rows).GetDeterminant(), isUsable ? pivot : -pivot);
    }
}

TEST(MatrixDeterminant, CountsNeitherSurplusNorMissingColumns)
{
    EXPECT_EQ(MakeMatrix({{1, 2, 9}, {3, 4, 9}}).GetDeterminant(), -2.0);
    EXPECT_EQ(MakeMatrix({{1}, {2}}).GetDeterminant(), 0.0);
    EXPECT_EQ(CMatrix(3, 0).GetDeterminant(), 0.0);
}

TEST(MatrixDeterminant, EqualsThePlainStepsBitForBit)
{
    std::mt19937 random(7401);
    int expanded = 0;
    for (int round = 0; round < 2100; ++round) {
        const int n = 1 + round % 7;
        const Flavour flavour = static_cast<Flavour>(round % static_cast<int>(Flavour::eFlavours));
        const Rows rows = RandomRows(random, n, n, flavour);
        const double expected = plain::Determinant(rows);
        ASSERT_TRUE(SameBits(MakeMatrix(rows).GetDeterminant(), expected)) << "round " << round;
        expanded += n > 3 && SameBits(expected, plain::Cofactors(rows)) ? 1 : 0;
    }
    EXPECT_GT(expanded, 100);
}

TEST(MatrixDeterminant, ExpandsNearlySingularMatricesBitForBit)
{
    std::mt19937 random(7402);
    int expanded = 0;
    for (int round = 0; round < 80; ++round) {
        const int n = 4 + round % 4;
        Rows rows = RandomRows(random, n, n, Flavour::eReal);
        rows[1] = rows[2];
        rows[1][0] += 1e-9;
        const double determinant = MakeMatrix(rows).GetDeterminant();
        ASSERT_TRUE(SameBits(determinant, plain::Determinant(rows))) << "round " << round;
        expanded += SameBits(determinant, plain::Cofactors(rows)) ? 1 : 0;
    }
    EXPECT_GT(expanded, 70);
}

TEST(MatrixDeterminant, IsExactInMagnitudeForSmallIntegers)
{
    std::mt19937 random(7403);
    for (int round = 0; round < 1000; ++round) {
        const int n = 2 + round % 5;
        const Rows rows = RandomRows(random, n, n, Flavour::eInteger);
        const auto exact = static_cast<double>(matrix_testing::ExactDeterminant(rows));
        const double determinant = MakeMatrix(rows).GetDeterminant();
        if (n <= 3) {
            ASSERT_EQ(determinant, exact);
        } else {
            // Pivots of such matrices stay below 3 * 2^5, and each multiplier is rounded to half a unit.
            ASSERT_NEAR(std::fabs(determinant), std::fabs(exact), 1e-10 * (1.0 + std::fabs(exact)));
        }
    }
}

TEST(MatrixDeterminant, ReachesPublishedDeterminants)
{
    constexpr double kUnit = std::numeric_limits<double>::epsilon();
    for (const auto& published : matrix_testing::ReadPublishedMatrices()) {
        const double determinant = MakeMatrix(published.rows).GetDeterminant();
        if (published.inverse.empty()) {
            EXPECT_NEAR(determinant, 0.0, 1e-14) << published.name;
            continue;
        }
        const double condition =
            matrix_testing::RowSumNorm(published.rows) * matrix_testing::RowSumNorm(published.inverse);
        const double tolerance = condition * kUnit * std::fabs(published.determinant);
        EXPECT_NEAR(std::fabs(determinant), std::fabs(published.determinant), tolerance) << published.name;
        if (published.rows.size() <= 3) {
            EXPECT_NEAR(determinant, published.determinant, tolerance) << published.name;
        }
    }
}

TEST(MatrixDeterminant, LeavesOutThePublishedSignOfTheExchanges)
{
    int tested = 0;
    for (const auto& published : matrix_testing::ReadPublishedMatrices()) {
        bool isEliminated = published.exchangeSign != 0;
        if (isEliminated) {
            Rows rows = published.rows;
            std::vector<double> b(rows.size());
            std::vector<unsigned> perm;
            isEliminated = plain::Eliminate(rows, b, perm);
        }
        if (isEliminated && published.rows.size() > 3) {
            ++tested;
            EXPECT_GT(MakeMatrix(published.rows).GetDeterminant() * published.exchangeSign * published.determinant, 0.0)
                << published.name;
        }
    }
    EXPECT_GT(tested, 8);
}

TEST(MatrixDeterminant, EndsSoonForLargeSingularMatrices)
{
    const auto start = std::chrono::steady_clock::now();
    for (const int n : {12, 18, 20, 21, 200}) {
        const auto size = static_cast<std::size_t>(n);
        const double zero = MakeMatrix(Rows(size, std::vector<double>(size))).GetDeterminant();
        EXPECT_TRUE(SameBits(zero, 0.0)) << n;
        const double none = std::numeric_limits<double>::quiet_NaN();
        EXPECT_TRUE(std::isnan(MakeMatrix(Rows(size, std::vector<double>(size, none))).GetDeterminant())) << n;
        EXPECT_EQ(MakeMatrix(Rows(size, std::vector<double>(size, 1.0))).GetDeterminant(), 0.0) << n;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(MatrixDeterminant, IsSignedWhereItReplacesTheExpansionOfLargeMatrices)
{
    for (const std::size_t n : {std::size_t{19}, std::size_t{20}, std::size_t{21}, std::size_t{30}}) {
        std::vector<double> elements(n, 1.0);
        elements.back() = 0x1p-30;
        Rows rows = Diagonal(elements);
        std::swap(rows[2], rows[5]);
        EXPECT_EQ(MakeMatrix(rows).GetDeterminant(), -0x1p-30) << n;
    }
}
