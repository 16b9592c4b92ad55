#include "roots/roots_testing.h"

#include <gtest/gtest.h>

using roots_testing::FromRoots;
using roots_testing::kNan;
using roots_testing::RandomRoots;
using roots_testing::Sorted;
using roots_testing::ToValues;
using roots_testing::Values;

namespace {

constexpr double kUnit = std::numeric_limits<double>::epsilon();

bool FindA(PolynomialRoots& roots, const Values& c)
{
    switch (c.size()) {
    case 2:
        return roots.FindA(c[0], c[1]);
    case 3:
        return roots.FindA(c[0], c[1], c[2]);
    case 4:
        return roots.FindA(c[0], c[1], c[2], c[3]);
    default:
        return roots.FindA(c[0], c[1], c[2], c[3], c[4]);
    }
}

/// Condition number of a simple root: how far it moves when every coefficient changes by a relative unit.
double Condition(const Values& c, double root)
{
    double magnitude = 0.0;
    double slope = 0.0;
    for (std::size_t i = c.size(); i-- > 0;) {
        magnitude = magnitude * std::fabs(root) + std::fabs(c[i]);
    }
    for (std::size_t i = c.size(); i-- > 1;) {
        slope = slope * root + static_cast<double>(i) * c[i];
    }
    return magnitude / std::fabs(slope);
}

} // namespace

TEST(ClosedFormLinear, AcceptsALeadingCoefficientEqualToEpsilon)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindA(3, -0.25));
    EXPECT_EQ(ToValues(roots), (Values{12}));
    EXPECT_FALSE(roots.FindA(3, std::nextafter(0.25, 0.0)));
    EXPECT_EQ(roots.GetCount(), 0);
    EXPECT_FALSE(roots.FindA(3, kNan));
}

TEST(ClosedFormQuadratic, GivesTheRootOfTheNegativeSquareRootFirst)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindA(-1, 0, 1));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1}));
    EXPECT_TRUE(roots.FindA(1, 0, -1));
    EXPECT_EQ(ToValues(roots), (Values{1, -1}));
}

TEST(ClosedFormQuadratic, HasNoComplexRoots)
{
    PolynomialRoots roots(1e-9);
    roots.FindA(-1, 0, 1);
    EXPECT_FALSE(roots.FindA(1, 0, 1));
    EXPECT_EQ(roots.GetCount(), 0);
}

TEST(ClosedFormQuadratic, TakesADiscriminantUpToEpsilonForZero)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindA(-0.0625, 0, 1));
    EXPECT_EQ(ToValues(roots), (Values{0}));
    EXPECT_TRUE(roots.FindA(0.0625, 1, 1));
    EXPECT_EQ(roots.GetCount(), 2);
    EXPECT_TRUE(roots.FindA(0.0625, 0, 1));
    EXPECT_EQ(roots.GetCount(), 1);
    EXPECT_FALSE(roots.FindA(std::nextafter(0.0625, 1.0), 0, 1));
    EXPECT_TRUE(roots.FindA(std::nextafter(-0.0625, -1.0), 0, 1));
    EXPECT_EQ(roots.GetCount(), 2);
}

TEST(ClosedFormQuadratic, IsLinearForALeadingCoefficientEqualToEpsilon)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindA(3, 1, 0.25));
    EXPECT_EQ(ToValues(roots), (Values{-3}));
    EXPECT_TRUE(roots.FindA(-3, 1, std::nextafter(0.25, 1.0)));
    EXPECT_EQ(roots.GetCount(), 2);
    EXPECT_FALSE(roots.FindA(3, 0.125, 0));
    EXPECT_EQ(roots.GetCount(), 0);
}

TEST(ClosedFormCubic, ListsATripleRootThreeTimes)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindA(0, 0, 0, 1));
    EXPECT_EQ(ToValues(roots), (Values{0, 0, 0}));
}

TEST(ClosedFormCubic, ListsADoubleRootTwice)
{
    PolynomialRoots roots(1e-9);
    // (x - 1)^2 (x + 2) has q > 0, its mirror image q < 0.
    EXPECT_TRUE(roots.FindA(2, -3, 0, 1));
    EXPECT_EQ(ToValues(roots), (Values{-2, 1, 1}));
    EXPECT_TRUE(roots.FindA(-2, -3, 0, 1));
    EXPECT_EQ(ToValues(roots), (Values{2, -1, -1}));
}

TEST(ClosedFormCubic, HasOneRootForAPositiveDiscriminant)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindA(-8, 0, 0, 1));
    ASSERT_EQ(roots.GetCount(), 1);
    EXPECT_NEAR(roots.GetRoot(0), 2.0, 4 * kUnit);
    EXPECT_TRUE(roots.FindA(8, 0, 0, 1));
    ASSERT_EQ(roots.GetCount(), 1);
    EXPECT_NEAR(roots.GetRoot(0), -2.0, 4 * kUnit);
}

TEST(ClosedFormCubic, GivesTheThreeRootsFromTheLargestOn)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindA(-6, 11, -6, 1));
    ASSERT_EQ(roots.GetCount(), 3);
    EXPECT_NEAR(roots.GetRoot(0), 3.0, 8 * kUnit);
    EXPECT_NEAR(roots.GetRoot(1), 1.0, 8 * kUnit);
    EXPECT_NEAR(roots.GetRoot(2), 2.0, 8 * kUnit);
}

TEST(ClosedFormCubic, IsQuadraticForALeadingCoefficientEqualToEpsilon)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindA(-1, 0, 1, 0.25));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1}));
    EXPECT_FALSE(roots.FindA(1, 0, 1, -0.25));
    EXPECT_TRUE(roots.FindA(1, 0, 1, std::nextafter(0.25, 1.0)));
}

TEST(ClosedFormQuartic, FindsTheRootsOfBiquadratics)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindA(4, 0, -5, 0, 1));
    const Values expected{-2, -1, 1, 2};
    const Values found = Sorted(ToValues(roots));
    ASSERT_EQ(found.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(found[i], expected[i], 16 * kUnit);
    }
}

TEST(ClosedFormQuartic, HasNoComplexRoots)
{
    PolynomialRoots roots(1e-9);
    roots.FindA(-1, 0, 1);
    EXPECT_FALSE(roots.FindA(1, 0, 0, 0, 1));
    EXPECT_EQ(roots.GetCount(), 0);
    EXPECT_FALSE(roots.FindA(1, 0, 2, 0, 1));
    EXPECT_EQ(roots.GetCount(), 0);
}

TEST(ClosedFormQuartic, FindsTheTwoRealRootsBesideAComplexPair)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindA(-1, 0, 0, 0, 1));
    const Values found = Sorted(ToValues(roots));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NEAR(found[0], -1.0, 16 * kUnit);
    EXPECT_NEAR(found[1], 1.0, 16 * kUnit);
}

TEST(ClosedFormQuartic, IsCubicForALeadingCoefficientEqualToEpsilon)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindA(-8, 0, 0, 1, 0.25));
    EXPECT_EQ(roots.GetCount(), 1);
}

TEST(ClosedForm, FindsTheRootsOfRandomFactors)
{
    std::mt19937 random(8301);
    for (int round = 0; round < 4000; ++round) {
        const Values expected = RandomRoots(random, static_cast<std::size_t>(1 + round % 4));
        Values c = FromRoots(expected);
        for (double& coefficient : c) {
            coefficient *= round % 5 - 2.5;
        }
        PolynomialRoots roots(1e-12);
        ASSERT_TRUE(FindA(roots, c)) << "round " << round;
        const Values found = Sorted(ToValues(roots));
        ASSERT_EQ(found.size(), expected.size()) << "round " << round;
        for (std::size_t i = 0; i < found.size(); ++i) {
            // The resolvent cubic and the differences of square roots lose the square of the condition.
            const double condition = Condition(c, expected[i]);
            ASSERT_NEAR(found[i], expected[i], (1.0 + condition) * (1.0 + condition) * 1e3 * kUnit)
                << "round " << round;
        }
    }
}

TEST(ClosedForm, FindsThePublishedRootsOfWellConditionedCubics)
{
    int tested = 0;
    for (const auto& published : roots_testing::ReadPublishedPolynomials()) {
        if (published.name == "boost-x3+1" || published.name == "boost-123" || published.name == "routh-3") {
            ++tested;
            PolynomialRoots roots(1e-12);
            EXPECT_TRUE(FindA(roots, published.coefficients));
            const Values found = Sorted(ToValues(roots));
            ASSERT_EQ(found.size(), published.roots.size()) << published.name;
            for (std::size_t i = 0; i < found.size(); ++i) {
                EXPECT_NEAR(found[i], published.roots[i], 4 * published.conditions[i] * kUnit * std::fabs(found[i]))
                    << published.name;
            }
        }
    }
    EXPECT_EQ(tested, 3);
}

TEST(ClosedForm, EndsForHostileCoefficients)
{
    std::mt19937 random(8302);
    for (int round = 0; round < 20000; ++round) {
        Values c;
        for (int i = 0; i < 2 + round % 4; ++i) {
            c.push_back(roots_testing::RandomCoefficient(random, true));
        }
        PolynomialRoots roots(round % 3 == 0 ? 0.0 : (round % 3 == 1 ? -1.0 : 1e-9));
        const bool isFound = FindA(roots, c);
        ASSERT_EQ(isFound, roots.GetCount() > 0);
        ASSERT_LT(roots.GetCount(), static_cast<int>(c.size()));
    }
}

TEST(SpecialCubic, SolvesItsEquation)
{
    const PolynomialRoots roots(1e-9);
    EXPECT_EQ(roots.SpecialCubic(1, 1, 0), 0.0);
    EXPECT_NEAR(roots.SpecialCubic(1, 1, 2), 1.0, 8 * kUnit);
    EXPECT_NEAR(roots.SpecialCubic(2, 3, 22), 2.0, 16 * kUnit);
    std::mt19937 random(8303);
    std::uniform_real_distribution<double> positive(0.5, 2.0);
    for (int round = 0; round < 1000; ++round) {
        const double a = positive(random);
        const double b = positive(random);
        const double r = positive(random);
        ASSERT_NEAR(roots.SpecialCubic(a, b, a * r * r * r + b * r), r, 64 * kUnit);
    }
}
