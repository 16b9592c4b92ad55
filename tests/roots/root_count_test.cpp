#include "roots/roots_testing.h"

#include <gtest/gtest.h>

using roots_testing::kInfinity;
using roots_testing::kLargest;
using roots_testing::kNan;
using roots_testing::MakePolynomial;
using roots_testing::Values;

namespace {

int CountAll(const Values& coefficients, double epsilon = 1e-9)
{
    return PolynomialRoots(epsilon).GetRootCount(MakePolynomial(coefficients), -kLargest, kLargest);
}

} // namespace

TEST(RootCount, CountsAllRealRoots)
{
    EXPECT_EQ(CountAll({-1, 0, 1}), 2);
    EXPECT_EQ(CountAll({1, 0, 1}), 0);
    EXPECT_EQ(CountAll({0, 1}), 1);
    EXPECT_EQ(CountAll({6, -11, 6, -1}), 3);
}

TEST(RootCount, TellsTheZeroConstantFromOthers)
{
    EXPECT_EQ(CountAll({0}), -1);
    EXPECT_EQ(CountAll({-0.0}), -1);
    EXPECT_EQ(CountAll({5}), 0);
    EXPECT_EQ(CountAll({kNan}), 0);
    EXPECT_EQ(CountAll({}), 0);
}

TEST(RootCount, CountsMultipleRootsOnce)
{
    EXPECT_EQ(CountAll({1, -2, 1}), 1);
    EXPECT_EQ(CountAll(roots_testing::FromRoots({1, 1, -2})), 2);
}

TEST(RootCount, CountsWithinAnInterval)
{
    const PolynomialRoots roots(1e-9);
    const Polynomial1 polynomial = MakePolynomial(roots_testing::FromRoots({-3, 0.5, 2, 7}));
    EXPECT_EQ(roots.GetRootCount(polynomial, 0, 3), 2);
    EXPECT_EQ(roots.GetRootCount(polynomial, -4, 0), 1);
    EXPECT_EQ(roots.GetRootCount(polynomial, 3, 6), 0);
    EXPECT_EQ(roots.GetRootCount(polynomial, 1, kLargest), 2);
    EXPECT_EQ(roots.GetRootCount(polynomial, -kLargest, 1), 2);
    EXPECT_EQ(roots.GetRootCount(polynomial, 3, 0), 0);
    EXPECT_EQ(roots.GetRootCount(polynomial, kNan, kNan), 0);
}

TEST(RootCount, TakesTheLeadingCoefficientsAtTheLargestSinglesAlone)
{
    // At any other place the quintic itself is evaluated, and overflows to not-a-number where its terms cancel.
    const Polynomial1 polynomial = MakePolynomial(roots_testing::FromRoots({-1, 1, 2}));
    const PolynomialRoots roots(1e-9);
    EXPECT_EQ(roots.GetRootCount(polynomial, -kLargest, kLargest), 3);
    EXPECT_EQ(roots.GetRootCount(polynomial, -1e200, 1e200), 3);
    EXPECT_EQ(roots.GetRootCount(polynomial, kLargest, -kLargest), 0);
}

TEST(RootCount, CountsTheValuesBelowEpsilonAsZero)
{
    // At the root itself the value is 0, which counts as a change towards the derivative: the root is counted from the
    // right end on.
    const Polynomial1 polynomial = MakePolynomial({0, 1});
    EXPECT_EQ(PolynomialRoots(1e-9).GetRootCount(polynomial, 0, 1), 1);
    EXPECT_EQ(PolynomialRoots(1e-9).GetRootCount(polynomial, -1, 0), 0);
    EXPECT_EQ(PolynomialRoots(0.5).GetRootCount(polynomial, 0.25, 1), 1);
    EXPECT_EQ(PolynomialRoots(0.25).GetRootCount(polynomial, 0.25, 1), 0);
    EXPECT_EQ(PolynomialRoots(-1).GetRootCount(polynomial, -1, 1), 1);
}

TEST(RootCount, CountsTheRootsThatRandomFactorsHave)
{
    std::mt19937 random(8101);
    for (int round = 0; round < 2000; ++round) {
        const Values roots = roots_testing::RandomRoots(random, static_cast<std::size_t>(1 + round % 4));
        Values polynomial = roots_testing::FromRoots(roots);
        if (round % 3 == 0) {
            polynomial = roots_testing::Multiply(polynomial, {2.0, 1.0, 1.0});
        }
        ASSERT_EQ(CountAll(polynomial), static_cast<int>(roots.size())) << "round " << round;
        const double low = -2.125;
        const double high = 1.375;
        const auto inside = std::count_if(roots.begin(), roots.end(), [&](double r) { return r > low && r < high; });
        ASSERT_EQ(PolynomialRoots(1e-9).GetRootCount(MakePolynomial(polynomial), low, high), inside)
            << "round " << round;
    }
}

TEST(RootCount, ReachesPublishedCounts)
{
    // Remainders are cut at an absolute 2^-23, so that only well-scaled polynomials can be counted.
    int tested = 0;
    for (const auto& published : roots_testing::ReadPublishedPolynomials()) {
        if (published.name.rfind("boost-x3", 0) == 0 || published.name == "boost-123" ||
            published.name == "wilkinson-5" || published.name == "legendre-7" || published.name == "routh-3" ||
            published.name == "acm1010-quartic-07" || published.name == "acm1010-quartic-05") {
            ++tested;
            EXPECT_EQ(CountAll(published.coefficients), published.distinctRealRoots) << published.name;
        }
    }
    EXPECT_EQ(tested, 7);
}

TEST(RootCount, EndsForHostileCoefficients)
{
    std::mt19937 random(8102);
    for (int round = 0; round < 5000; ++round) {
        Values coefficients;
        for (int i = 0; i < 1 + round % 12; ++i) {
            coefficients.push_back(roots_testing::RandomCoefficient(random, true));
        }
        const int count = PolynomialRoots(round % 2 == 0 ? 0.0 : -1.0)
                              .GetRootCount(MakePolynomial(coefficients), -kInfinity, round % 3 == 0 ? 1.0 : kInfinity);
        EXPECT_GE(count, -1);
        EXPECT_LT(count, static_cast<int>(coefficients.size()) + 1);
    }
}
