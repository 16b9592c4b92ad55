#include "linalg/matrix_testing.h"
#include "linalg/published_matrices.h"

#include <gtest/gtest.h>

#include <chrono>

#if defined(CADGEOM_HAVE_EIGEN)
#include <Eigen/Dense>
#endif

using matrix_testing::Flavour;
using matrix_testing::kThreshold;
using matrix_testing::MakeMatrix;
using matrix_testing::MakeVector;
using matrix_testing::RandomRows;
using matrix_testing::Rows;
using matrix_testing::SameBits;
using matrix_testing::ToValues;
using Values = std::vector<double>;

namespace plain = matrix_testing::plain;

namespace {

constexpr double kUnit = std::numeric_limits<double>::epsilon();
const double kNan = std::numeric_limits<double>::quiet_NaN();

struct Solution {
    bool isFound;
    Values x;
};

Solution Solve(const Rows& rows, const Values& b)
{
    CVector x;
    const bool isFound = MakeMatrix(rows).SolveLinearSystem(MakeVector(b), x);
    return {isFound, ToValues(x)};
}

Solution SolveHomogeneous(const Rows& rows)
{
    CVector x;
    const bool isFound = MakeMatrix(rows).SolveLinearSystem(x);
    return {isFound, ToValues(x)};
}

Rows Square(int n, double value)
{
    const auto size = static_cast<std::size_t>(n);
    return Rows(size, Values(size, value));
}

Rows Identity(int n)
{
    Rows rows = Square(n, 0.0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i][i] = 1.0;
    }
    return rows;
}

} // namespace

TEST(LinearSystem, SolvesRegularSystemsWorkedByHand)
{
    const Solution small = Solve({{2, 1}, {1, 3}}, {5, 10});
    EXPECT_TRUE(small.isFound);
    EXPECT_EQ(small.x, (Values{1, 3}));
    const Solution exchanged = Solve({{0, 0, 0, 2}, {0, 0, 4, 0}, {0, 8, 0, 0}, {1, 0, 0, 0}}, {2, 4, 8, 3});
    EXPECT_TRUE(exchanged.isFound);
    EXPECT_EQ(exchanged.x, (Values{3, 1, 1, 1}));
}

TEST(LinearSystem, IsNotSolvedForMatricesThatAreNotSquare)
{
    EXPECT_FALSE(Solve({{1, 2}}, {1}).isFound);
    EXPECT_FALSE(SolveHomogeneous({{1}, {2}}).isFound);
    EXPECT_FALSE(SolveHomogeneous({}).isFound);
    EXPECT_FALSE(Solve({}, {}).isFound);
}

TEST(LinearSystem, SolvesIntoTheVectorOfTheRightHandSide)
{
    CVector b = MakeVector({5, 10});
    EXPECT_TRUE(MakeMatrix({{2, 1}, {1, 3}}).SolveLinearSystem(b, b));
    EXPECT_EQ(ToValues(b), (Values{1, 3}));
}

TEST(LinearSystem, AsksForANonTrivialSolutionWhenTheRightHandSideIsZero)
{
    const Rows regular{{1, 2}, {3, 4}};
    const Solution zero = Solve(regular, {0, kThreshold});
    EXPECT_TRUE(zero.isFound);
    EXPECT_EQ(zero.x, (Values{1, -0.75}));
    EXPECT_EQ(zero.x, SolveHomogeneous(regular).x);
    EXPECT_NE(Solve(regular, {0, std::nextafter(kThreshold, 1.0)}).x, zero.x);
}

TEST(LinearSystem, TakesARightHandSideWithoutElementsForZero)
{
    const Rows regular{{1, 2}, {3, 4}};
    const Solution empty = Solve(regular, {});
    EXPECT_TRUE(empty.isFound);
    EXPECT_EQ(empty.x, SolveHomogeneous(regular).x);
}

TEST(LinearSystem, FindsTheKernelOfASingularMatrix)
{
    const Solution kernel = SolveHomogeneous({{1, 1}, {1, 1}});
    EXPECT_TRUE(kernel.isFound);
    EXPECT_EQ(kernel.x, (Values{1, -1}));
}

TEST(LinearSystem, SolvesAllEquationsButOneOfARegularMatrix)
{
    const Solution solution = SolveHomogeneous({{1, 2}, {3, 4}});
    EXPECT_TRUE(solution.isFound);
    EXPECT_EQ(solution.x, (Values{1, -0.75}));
    EXPECT_EQ(3 * solution.x[0] + 4 * solution.x[1], 0.0);
    EXPECT_NE(1 * solution.x[0] + 2 * solution.x[1], 0.0);
}

TEST(LinearSystem, FindsNothingWhereEveryPathEndsInAnEmptySystem)
{
    EXPECT_FALSE(SolveHomogeneous({{1, 0}, {0, 0}}).isFound);
    EXPECT_FALSE(SolveHomogeneous({{0}}).isFound);
    EXPECT_FALSE(SolveHomogeneous({{1}}).isFound);
    EXPECT_FALSE(SolveHomogeneous(Identity(3)).isFound);
}

TEST(LinearSystem, SetsTheUnknownOfAZeroColumnToZero)
{
    const Solution solution = Solve({{0, 2, 0}, {0, 0, 4}, {0, 1, 1}}, {2, 4, 7});
    EXPECT_TRUE(solution.isFound);
    // The first equation is the first that can be left out.
    EXPECT_EQ(solution.x, (Values{0, 6, 1}));
    const Solution atThreshold = Solve({{kThreshold, 1}, {kThreshold, 2}}, {1, 4});
    EXPECT_TRUE(atThreshold.isFound);
    EXPECT_EQ(atThreshold.x, (Values{0, 2}));
}

TEST(LinearSystem, IsNotSolvedForASingularMatrixWithoutAZeroColumn)
{
    EXPECT_FALSE(Solve({{1, 1}, {1, 1}}, {1, 1}).isFound);
    EXPECT_FALSE(Solve({{1, 2, 3, 4}, {2, 4, 6, 8}, {1, 0, 1, 0}, {0, 1, 0, 3}}, {1, 2, 3, 4}).isFound);
}

TEST(LinearSystem, IsNotSolvedWhenAPivotIsAtTheThresholdAlthoughTheDeterminantIsNot)
{
    EXPECT_FALSE(Solve({{1e9, 0}, {0, kThreshold}}, {1, 1}).isFound);
    EXPECT_TRUE(Solve({{1e9, 0}, {0, std::nextafter(kThreshold, 1.0)}}, {1, 1}).isFound);
    Rows rows = Identity(5);
    rows[0][0] = 1e9;
    rows[4][4] = kThreshold;
    EXPECT_FALSE(Solve(rows, {1, 1, 1, 1, 1}).isFound);
}

TEST(LinearSystem, IsNotSolvedWhenTheDeterminantIsNotANumber)
{
    EXPECT_FALSE(Solve({{kNan, 0}, {0, 1}}, {1, 1}).isFound);
    EXPECT_FALSE(Solve(Square(4, kNan), {1, 1, 1, 1}).isFound);
}

TEST(LinearSystem, EqualsThePlainStepsBitForBit)
{
    std::mt19937 random(7501);
    int found = 0;
    for (int round = 0; round < 20000; ++round) {
        const int n = round % 5;
        const Flavour flavour = static_cast<Flavour>(round / 5 % static_cast<int>(Flavour::eFlavours));
        const Rows rows = RandomRows(random, n, n, flavour);
        Values b(static_cast<std::size_t>(n));
        for (double& element : b) {
            element = matrix_testing::RandomElement(random, flavour);
        }
        Values expected;
        const bool isSolved = plain::Solve(rows, b, expected);
        const Solution solution = Solve(rows, b);
        ASSERT_EQ(solution.isFound, isSolved) << "round " << round;
        if (isSolved) {
            ASSERT_TRUE(SameBits(solution.x, expected)) << "round " << round;
            ++found;
        }
    }
    EXPECT_GT(found, 10000);
}

TEST(LinearSystem, SearchesLargerSparseMatricesAsThePlainStepsDo)
{
    std::mt19937 random(7502);
    for (int round = 0; round < 300; ++round) {
        const int n = 5 + round % 2;
        const Rows rows = RandomRows(random, n, n, Flavour::eSparse);
        Values expected;
        const bool isSolved = plain::SolveHomogeneous(rows, expected);
        const Solution solution = SolveHomogeneous(rows);
        ASSERT_EQ(solution.isFound, isSolved) << "round " << round;
        if (isSolved) {
            ASSERT_TRUE(SameBits(solution.x, expected)) << "round " << round;
        }
    }
}

TEST(LinearSystem, SolvesLargeRegularSystems)
{
    std::mt19937 random(7503);
    for (const int n : {10, 50, 150}) {
        const Rows rows = RandomRows(random, n, n, Flavour::eReal);
        Values expected;
        Values b(static_cast<std::size_t>(n), 1.0);
        ASSERT_TRUE(plain::Solve(rows, b, expected));
        EXPECT_TRUE(SameBits(Solve(rows, b).x, expected));
        ASSERT_TRUE(plain::SolveHomogeneous(rows, expected));
        EXPECT_TRUE(SameBits(SolveHomogeneous(rows).x, expected));
    }
}

TEST(LinearSystem, SolvesIntegerSystemsAsCramerDoes)
{
    std::mt19937 random(7504);
    int tested = 0;
    for (int round = 0; round < 800; ++round) {
        const int n = 1 + round % 5;
        const Rows rows = RandomRows(random, n, n, Flavour::eInteger);
        const long long determinant = matrix_testing::ExactDeterminant(rows);
        Values b;
        for (int i = 0; i < n; ++i) {
            b.push_back(i + 1);
        }
        if (determinant == 0) {
            continue;
        }
        ++tested;
        const Solution solution = Solve(rows, b);
        ASSERT_TRUE(solution.isFound);
        for (std::size_t j = 0; j < rows.size(); ++j) {
            Rows replaced = rows;
            for (std::size_t i = 0; i < rows.size(); ++i) {
                replaced[i][j] = b[i];
            }
            const double exact =
                static_cast<double>(matrix_testing::ExactDeterminant(replaced)) / static_cast<double>(determinant);
            // Condition numbers of such matrices stay below 10^4.
            ASSERT_NEAR(solution.x[j], exact, 1e4 * kUnit * (1.0 + std::fabs(exact)));
        }
    }
    EXPECT_GT(tested, 500);
}

TEST(LinearSystem, EndsSoonForHostileMatrices)
{
    const auto start = std::chrono::steady_clock::now();
    for (const int n : {5, 12, 100}) {
        EXPECT_FALSE(SolveHomogeneous(Square(n, 0.0)).isFound) << n;
        EXPECT_FALSE(Solve(Square(n, 0.0), Values(static_cast<std::size_t>(n), 1.0)).isFound) << n;
        EXPECT_FALSE(SolveHomogeneous(Identity(n)).isFound) << n;
        EXPECT_FALSE(SolveHomogeneous(Square(n, kNan)).isFound) << n;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(120));
}

#if defined(CADGEOM_HAVE_EIGEN)
TEST(LinearSystem, AgreesWithEigen)
{
    std::mt19937 random(7505);
    using EigenMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    for (const int n : {2, 3, 4, 5, 8, 20, 60}) {
        const Rows rows = RandomRows(random, n, n, Flavour::eReal);
        const CMatrix matrix = MakeMatrix(rows);
        const EigenMatrix copy = Eigen::Map<const EigenMatrix>(matrix.GetData(), n, n);
        const Eigen::VectorXd b = Eigen::VectorXd::LinSpaced(n, 1.0, 2.0);
        const Eigen::VectorXd expected = copy.partialPivLu().solve(b);
        const Values values(b.data(), b.data() + n);
        const Solution solution = Solve(rows, values);
        ASSERT_TRUE(solution.isFound);
        const double condition =
            copy.inverse().cwiseAbs().rowwise().sum().maxCoeff() * copy.cwiseAbs().rowwise().sum().maxCoeff();
        for (int i = 0; i < n; ++i) {
            EXPECT_NEAR(solution.x[static_cast<std::size_t>(i)], expected[i],
                        n * condition * kUnit * expected.cwiseAbs().maxCoeff());
        }
    }
}
#endif
