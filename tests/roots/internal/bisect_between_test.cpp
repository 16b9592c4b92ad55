#include "roots/bisection.h"
#include "roots/roots_testing.h"

#include <gtest/gtest.h>

using roots_testing::MakePolynomial;
using roots_testing::SameBits;
using roots_testing::Values;

TEST(BisectBetween, EqualsSingleBisectionsBitForBit)
{
    std::mt19937 random(8601);
    std::uniform_real_distribution<double> place(-4.0, 4.0);
    int found = 0;
    for (int round = 0; round < 5000; ++round) {
        Values coefficients;
        for (int i = 0; i < 2 + round % 10; ++i) {
            coefficients.push_back(roots_testing::RandomCoefficient(random, round % 4 == 0));
        }
        Values breaks;
        for (int i = 0; i < 2 + round % 13; ++i) {
            breaks.push_back(place(random));
        }
        if (round % 3 != 0) {
            std::sort(breaks.begin(), breaks.end());
        }
        const Polynomial1 polynomial = MakePolynomial(coefficients);
        const int digits = round % 23 - 2;
        Values expected;
        for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
            double root = 0.0;
            if (cadgeom::detail::Bisect(polynomial, breaks[i], breaks[i + 1], digits, root)) {
                expected.push_back(root);
            }
        }
        Values roots;
        cadgeom::detail::BisectBetween(polynomial, breaks, digits, roots);
        ASSERT_TRUE(SameBits(roots, expected)) << "round " << round;
        found += static_cast<int>(roots.size());
    }
    EXPECT_GT(found, 3000);
}

TEST(BisectBetween, AppendsToTheRootsThatAreThere)
{
    Values roots{7.0};
    cadgeom::detail::BisectBetween(MakePolynomial({-0.25, 1}), {0.0, 1.0}, 15, roots);
    EXPECT_EQ(roots, (Values{7.0, 0.25}));
}

TEST(CountHalvings, HasNoNumberForIntervalsWithoutAFinitePositiveWidth)
{
    constexpr int kNone = std::numeric_limits<int>::min();
    EXPECT_EQ(cadgeom::detail::CountHalvings(0, 1, 1), 3);
    EXPECT_EQ(cadgeom::detail::CountHalvings(0, 1024, 0), 10);
    EXPECT_EQ(cadgeom::detail::CountHalvings(0, 1, -1), -2);
    EXPECT_EQ(cadgeom::detail::CountHalvings(1, 1, 6), kNone);
    EXPECT_EQ(cadgeom::detail::CountHalvings(1, 0, 6), kNone);
    EXPECT_EQ(cadgeom::detail::CountHalvings(0, roots_testing::kInfinity, 6), kNone);
    EXPECT_EQ(cadgeom::detail::CountHalvings(0, 1, std::numeric_limits<int>::max()), kNone);
}
