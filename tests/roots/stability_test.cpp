#include "roots/roots_testing.h"

#include <gtest/gtest.h>

using roots_testing::FromRoots;
using roots_testing::kNan;
using roots_testing::MakePolynomial;
using roots_testing::Multiply;
using roots_testing::Values;

namespace {

bool IsLeft(const Values& coefficients)
{
    return PolynomialRoots(1e-9).AllRealPartsNegative(MakePolynomial(coefficients));
}

bool IsRight(const Values& coefficients)
{
    return PolynomialRoots(1e-9).AllRealPartsPositive(MakePolynomial(coefficients));
}

} // namespace

TEST(Stability, HoldsForDegreeZeroAndBelow)
{
    EXPECT_TRUE(IsLeft({-5}));
    EXPECT_TRUE(IsRight({5}));
    EXPECT_TRUE(IsLeft({}));
    EXPECT_TRUE(IsRight({}));
}

TEST(Stability, OfLinearPolynomialsIsTheSideOfTheRoot)
{
    EXPECT_TRUE(IsLeft({2, 1}));
    EXPECT_FALSE(IsLeft({-2, 1}));
    EXPECT_FALSE(IsLeft({0, 1}));
    EXPECT_TRUE(IsRight({-2, 1}));
    EXPECT_FALSE(IsRight({2, 1}));
    EXPECT_FALSE(IsRight({0, 1}));
    EXPECT_TRUE(IsLeft({-6, -3}));
}

TEST(Stability, SeesComplexPairs)
{
    EXPECT_TRUE(IsLeft({5, 2, 1}));
    EXPECT_FALSE(IsLeft({5, -2, 1}));
    EXPECT_FALSE(IsLeft({1, 0, 1}));
    EXPECT_TRUE(IsRight({5, -2, 1}));
    EXPECT_FALSE(IsRight({5, 2, 1}));
    // All coefficients are positive, yet the pair 0.25 +- i ... lies on the right.
    EXPECT_FALSE(IsLeft(Multiply({1.0625, -0.5, 1}, FromRoots({-3}))));
}

TEST(Stability, OfRandomFactorsFollowsTheirRoots)
{
    std::mt19937 random(8201);
    std::uniform_real_distribution<double> coordinate(-2.0, 2.0);
    int leftOnes = 0;
    for (int round = 0; round < 3000; ++round) {
        Values polynomial{coordinate(random)};
        double least = 10.0;
        double largest = -10.0;
        const double shift = round % 3 - 1.0;
        for (int i = 0; i < 1 + round % 4; ++i) {
            const double real = coordinate(random) + 1.9 * shift;
            const double imaginary = coordinate(random);
            polynomial = i % 2 == 0 ? Multiply(polynomial, {real * real + imaginary * imaginary, -2.0 * real, 1.0})
                                    : Multiply(polynomial, {-real, 1.0});
            least = std::min(least, real);
            largest = std::max(largest, real);
        }
        if (std::fabs(least) < 1e-3 || std::fabs(largest) < 1e-3) {
            continue;
        }
        leftOnes += largest < 0.0 ? 1 : 0;
        ASSERT_EQ(IsLeft(polynomial), largest < 0.0) << "round " << round;
        ASSERT_EQ(IsRight(polynomial), least > 0.0) << "round " << round;
    }
    EXPECT_GT(leftOnes, 300);
}

TEST(Stability, FollowsPublishedRealParts)
{
    int tested = 0;
    for (const auto& published : roots_testing::ReadPublishedPolynomials()) {
        if (published.name.rfind("wilkinson-", 0) == 0 || published.name.rfind("hurwitz", 0) == 0 ||
            published.name.rfind("routh", 0) == 0) {
            ++tested;
            EXPECT_EQ(IsLeft(published.coefficients), published.largestRealPart < 0.0) << published.name;
            EXPECT_EQ(IsRight(published.coefficients), published.smallestRealPart > 0.0) << published.name;
        }
    }
    EXPECT_EQ(tested, 5);
}

TEST(Stability, EndsForHostileCoefficients)
{
    std::mt19937 random(8202);
    for (int round = 0; round < 5000; ++round) {
        Values coefficients;
        for (int i = 0; i < 1 + round % 12; ++i) {
            coefficients.push_back(roots_testing::RandomCoefficient(random, true));
        }
        Values mirrored = coefficients;
        for (std::size_t i = 1; i < mirrored.size(); i += 2) {
            mirrored[i] = -mirrored[i];
        }
        EXPECT_EQ(IsLeft(coefficients), IsRight(mirrored)) << "round " << round;
    }
    // The reduced coefficients underflow to nothing: degree 0 is reached at once.
    EXPECT_TRUE(IsLeft({1e-300, 1e-300, 1}));
    EXPECT_FALSE(IsLeft({1, -1e-300, 1}));
}
