#include "roots/roots_testing.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>

using roots_testing::FromRoots;
using roots_testing::kInfinity;
using roots_testing::kNan;
using roots_testing::kSingleEpsilon;
using roots_testing::MakePolynomial;
using roots_testing::RandomRoots;
using roots_testing::SameBits;
using roots_testing::ToValues;
using roots_testing::Values;

namespace {

constexpr double kUnit = std::numeric_limits<double>::epsilon();

template <class Tag, auto kMember>
struct Reveal {
    friend constexpr auto Private(Tag) { return kMember; }
};

struct Bisection {
    friend constexpr auto Private(Bisection);
};
template struct Reveal<Bisection, &PolynomialRoots::Bisection>;

bool Bisect(const Values& coefficients, double xMin, double xMax, int digits, double& root)
{
    const PolynomialRoots roots(1e-9);
    return (roots.*Private(Bisection()))(MakePolynomial(coefficients), xMin, xMax, digits, root);
}

namespace plain {

/// The halvings one by one, however many.
bool Bisect(const Polynomial1& p, double xMin, double xMax, int digits, double& root)
{
    double p0 = p(xMin);
    if (std::fabs(p0) <= kSingleEpsilon) {
        root = xMin;
        return true;
    }
    const double p1 = p(xMax);
    if (std::fabs(p1) <= kSingleEpsilon) {
        root = xMax;
        return true;
    }
    if (p0 * p1 > 0.0) {
        return false;
    }
    const double halvings = (std::log(xMax - xMin) + digits * std::log(10.0)) / std::log(2.0) + 0.5;
    root = (xMin + xMax) / 2.0;
    for (int i = 0; halvings < INT_MAX && i + 1 <= halvings; ++i) {
        root = (xMin + xMax) / 2.0;
        const double value = p(root);
        if (value * p0 < 0.0) {
            xMax = root;
        } else if (value * p0 > 0.0) {
            xMin = root;
            p0 = value;
        } else {
            break;
        }
    }
    return true;
}

/// The recursion on derivatives.
Values FindB(const Polynomial1& p, double xMin, double xMax, int digits, double epsilon)
{
    Values breaks;
    if (p.GetDegree() > 1) {
        breaks = FindB(p.GetDerivative(), xMin, xMax, digits, epsilon);
    }
    breaks.insert(breaks.begin(), xMin);
    breaks.push_back(xMax);
    Values candidates;
    for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
        double root = 0.0;
        if (Bisect(p, breaks[i], breaks[i + 1], digits, root)) {
            candidates.push_back(root);
        }
    }
    Values roots;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (i == 0 || std::fabs(candidates[i] - candidates[i - 1]) > epsilon) {
            roots.push_back(candidates[i]);
        }
    }
    return roots;
}

} // namespace plain
} // namespace

TEST(Bisection, ReturnsAnEndWhoseValueIsNearlyZero)
{
    double root = 7.0;
    EXPECT_TRUE(Bisect({kSingleEpsilon, 1}, 0, 1, 6, root));
    EXPECT_EQ(root, 0.0);
    EXPECT_TRUE(Bisect({-1 - kSingleEpsilon, 1}, 0, 1, 6, root));
    EXPECT_EQ(root, 1.0);
    EXPECT_TRUE(Bisect({0, 0}, 0, 1, 6, root));
    EXPECT_EQ(root, 0.0);
}

TEST(Bisection, LeavesTheRootUntouchedWithoutAChangeOfSign)
{
    double root = 7.0;
    EXPECT_FALSE(Bisect({1, 0, 1}, -1, 1, 6, root));
    EXPECT_EQ(root, 7.0);
    EXPECT_FALSE(Bisect({std::nextafter(kSingleEpsilon, 1.0), 1}, 0, 1, 6, root));
    EXPECT_EQ(root, 7.0);
}

TEST(Bisection, HalvesAsOftenAsTheDigitsAsk)
{
    double root = 7.0;
    // log2(1) + 1 * log2(10) + 1/2 = 3.8: three halvings of [0, 1] around 0.3.
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, 1, root));
    EXPECT_EQ(root, 0.375);
    // log2(1) + 1/2: none.
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, 0, root));
    EXPECT_EQ(root, 0.5);
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, -50, root));
    EXPECT_EQ(root, 0.5);
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, 15, root));
    EXPECT_NEAR(root, 0.3, 1e-15);
}

TEST(Bisection, StopsAtAnExactZero)
{
    double root = 7.0;
    EXPECT_TRUE(Bisect({-0.25, 1}, 0, 1, 15, root));
    EXPECT_EQ(root, 0.25);
}

TEST(Bisection, EndsForAnyNumberOfDigits)
{
    double root = 7.0;
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, 600000000, root));
    EXPECT_NEAR(root, 0.3, kUnit);
    double capped = 7.0;
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, 100, capped));
    EXPECT_EQ(root, capped);
    // More halvings than an int counts are none.
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, INT_MAX, root));
    EXPECT_EQ(root, 0.5);
    EXPECT_TRUE(Bisect({-0.3, 1}, 0, 1, INT_MIN, root));
    EXPECT_EQ(root, 0.5);
}

TEST(Bisection, WritesTheMidpointOfIntervalsWithoutAFiniteWidth)
{
    double root = 7.0;
    EXPECT_TRUE(Bisect({-0.3, 1}, -kInfinity, kInfinity, 6, root));
    EXPECT_TRUE(std::isnan(root));
    EXPECT_TRUE(Bisect({-0.3, 1}, 1, 0, 6, root));
    EXPECT_EQ(root, 0.5);
    EXPECT_TRUE(Bisect({-0.3, 1}, kNan, 1, 6, root));
    EXPECT_TRUE(std::isnan(root));
    EXPECT_TRUE(Bisect({kNan, 1}, 0, 1, 6, root));
    EXPECT_EQ(root, 0.5);
}

TEST(RootsByBisection, FindsTheRootsOfRandomFactors)
{
    std::mt19937 random(8501);
    for (int round = 0; round < 1500; ++round) {
        const Values expected = RandomRoots(random, static_cast<std::size_t>(1 + round % 7));
        Values coefficients = FromRoots(expected);
        if (round % 3 == 0) {
            coefficients = roots_testing::Multiply(coefficients, {2.0, 1.0, 1.0});
        }
        PolynomialRoots roots(1e-9);
        ASSERT_TRUE(roots.FindB(MakePolynomial(coefficients), 10)) << "round " << round;
        const Values found = ToValues(roots);
        ASSERT_EQ(found.size(), expected.size()) << "round " << round;
        for (std::size_t i = 0; i < found.size(); ++i) {
            ASSERT_NEAR(found[i], expected[i], 1e-9) << "round " << round;
        }
    }
}

TEST(RootsByBisection, EqualsThePlainRecursionBitForBit)
{
    std::mt19937 random(8502);
    const double epsilons[] = {1e-9, 0.0, -1.0, 0.5};
    for (int round = 0; round < 3000; ++round) {
        Values coefficients;
        for (int i = 0; i < 2 + round % 9; ++i) {
            coefficients.push_back(roots_testing::RandomCoefficient(random, round % 5 == 0));
        }
        const double epsilon = epsilons[round % 4];
        const int digits = round % 20;
        const Polynomial1 polynomial = MakePolynomial(coefficients);
        PolynomialRoots roots(epsilon);
        const bool isFound = roots.FindB(polynomial, -5.0, 4.0, digits);
        const Values expected = plain::FindB(polynomial, -5.0, 4.0, digits, epsilon);
        ASSERT_EQ(isFound, !expected.empty()) << "round " << round;
        ASSERT_TRUE(SameBits(ToValues(roots), expected)) << "round " << round;
    }
}

TEST(RootsByBisection, OfAPolynomialAloneSearchesWithinItsBound)
{
    std::mt19937 random(8503);
    for (int round = 0; round < 300; ++round) {
        const Polynomial1 polynomial =
            MakePolynomial(FromRoots(RandomRoots(random, static_cast<std::size_t>(1 + round % 6))));
        PolynomialRoots whole(1e-9);
        PolynomialRoots bounded(1e-9);
        const double bound = bounded.GetBound(polynomial);
        EXPECT_EQ(whole.FindB(polynomial, 8), bounded.FindB(polynomial, -bound, bound, 8));
        EXPECT_TRUE(SameBits(ToValues(whole), ToValues(bounded)));
    }
}

TEST(RootsByBisection, AgreesWithTheOtherFamilies)
{
    std::mt19937 random(8504);
    int companionAgrees = 0;
    for (int round = 0; round < 500; ++round) {
        const Values c = FromRoots(RandomRoots(random, 3));
        PolynomialRoots closed(1e-12);
        PolynomialRoots companion(1e-14);
        PolynomialRoots bisection(1e-9);
        ASSERT_TRUE(closed.FindA(c[0], c[1], c[2], c[3]));
        ASSERT_TRUE(companion.FindE(c[0], c[1], c[2], c[3], false));
        ASSERT_TRUE(bisection.FindB(MakePolynomial(c), 12));
        const Values a = roots_testing::Sorted(ToValues(closed));
        const Values e = roots_testing::Sorted(ToValues(companion));
        const Values b = ToValues(bisection);
        ASSERT_EQ(a.size(), b.size());
        ASSERT_EQ(e.size(), b.size());
        bool isClose = true;
        for (std::size_t i = 0; i < b.size(); ++i) {
            EXPECT_NEAR(a[i], b[i], 1e-8);
            isClose = isClose && std::fabs(e[i] - b[i]) < 1e-8;
        }
        companionAgrees += isClose ? 1 : 0;
    }
    // QR steps that have not converged within 128 iterations give what they have.
    EXPECT_GT(companionAgrees, 475);
}

TEST(RootsByBisection, ReportsADoubleRootOnce)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindB(MakePolynomial({1, -2, 1}), -3, 3, 12));
    ASSERT_EQ(roots.GetCount(), 1);
    EXPECT_NEAR(roots.GetRoot(0), 1.0, 1e-12);
    // Nothing is dropped by a negative epsilon: the intervals on both sides find it.
    PolynomialRoots keeping(-1);
    EXPECT_TRUE(keeping.FindB(MakePolynomial({1, -2, 1}), -3, 3, 12));
    EXPECT_EQ(keeping.GetCount(), 2);
}

TEST(RootsByBisection, FindsRootsAtTheEndsOfTheInterval)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindB(MakePolynomial({-1, 0, 1}), -1, 1, 6));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1}));
    EXPECT_TRUE(roots.FindB(MakePolynomial({-3, 1}), 0, 3, 6));
    EXPECT_EQ(ToValues(roots), (Values{3}));
    EXPECT_FALSE(roots.FindB(MakePolynomial({-3, 1}), 0, 2, 6));
    EXPECT_EQ(roots.GetCount(), 0);
}

TEST(RootsByBisection, FindsNothingForDegreeZeroAndBelow)
{
    PolynomialRoots roots(1e-9);
    roots.FindA(-1, 0, 1);
    EXPECT_FALSE(roots.FindB(MakePolynomial({0}), -1, 1, 6));
    EXPECT_EQ(roots.GetCount(), 0);
    EXPECT_FALSE(roots.FindB(Polynomial1(), -1, 1, 6));
    EXPECT_FALSE(roots.FindB(MakePolynomial({5}), 6));
    EXPECT_FALSE(roots.FindB(Polynomial1(), 6));
}

TEST(RootsByBisection, FindsNothingInReversedAndEmptyIntervals)
{
    PolynomialRoots roots(1e-9);
    const Polynomial1 polynomial = MakePolynomial({-1, 0, 1});
    for (const auto& [xMin, xMax] : {std::pair{2.0, -2.0}, {1.0, 1.0}, {kNan, 2.0}, {-2.0, kNan}, {kNan, kNan}}) {
        roots.FindA(-7, 1);
        EXPECT_FALSE(roots.FindB(polynomial, xMin, xMax, 6));
        EXPECT_EQ(roots.GetCount(), 0);
    }
    // A leading coefficient within epsilon of zero leaves no bound to search in.
    EXPECT_FALSE(PolynomialRoots(0.5).FindB(MakePolynomial({1, 0.5, 0.5}), 6));
}

TEST(RootsByBisection, GivesNotANumberInIntervalsOfInfiniteWidth)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindB(MakePolynomial({-1, 1}), -kInfinity, kInfinity, 6));
    ASSERT_EQ(roots.GetCount(), 1);
    EXPECT_TRUE(std::isnan(roots.GetRoot(0)));
}

TEST(RootsByBisection, ManagesDegreeOneHundred)
{
    // x^100 - 1 and a polynomial with roots at 20 places, five times each shifted out of reach.
    Values coefficients(101, 0.0);
    coefficients[0] = -1.0;
    coefficients[100] = 1.0;
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindB(MakePolynomial(coefficients), 9));
    const Values found = ToValues(roots);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NEAR(found[0], -1.0, 1e-9);
    EXPECT_NEAR(found[1], 1.0, 1e-9);
}

TEST(RootsByBisection, ReachesPublishedRoots)
{
    int tested = 0;
    for (const auto& published : roots_testing::ReadPublishedPolynomials()) {
        const bool isWellScaled = published.name == "boost-123" || published.name == "wilkinson-5" ||
                                  published.name == "legendre-7" || published.name == "chebyshev-12" ||
                                  published.name == "routh-3" || published.name == "acm1010-quartic-07" ||
                                  published.name == "mignotte-5-10";
        if (!isWellScaled) {
            continue;
        }
        ++tested;
        PolynomialRoots roots(1e-9);
        EXPECT_TRUE(roots.FindB(MakePolynomial(published.coefficients), 14)) << published.name;
        const Values found = ToValues(roots);
        ASSERT_EQ(found.size(), published.roots.size()) << published.name;
        for (std::size_t i = 0; i < found.size(); ++i) {
            const double condition = std::isfinite(published.conditions[i]) ? published.conditions[i] : 1.0;
            EXPECT_NEAR(found[i], published.roots[i], 1e-14 + 8 * condition * kUnit * std::fabs(published.roots[i]))
                << published.name;
        }
    }
    EXPECT_EQ(tested, 7);
}

TEST(RootsByBisection, EndsForHostileInput)
{
    const auto start = std::chrono::steady_clock::now();
    std::mt19937 random(8505);
    const double ends[] = {-kInfinity, -1e308, -1.0, 0.0, 1e-300, 2.0, 1e308, kInfinity, kNan};
    const int digits[] = {INT_MIN, -5, 0, 17, 700, 600000000, INT_MAX};
    for (int round = 0; round < 4000; ++round) {
        Values coefficients;
        for (int i = 0; i < 1 + round % 12; ++i) {
            coefficients.push_back(roots_testing::RandomCoefficient(random, true));
        }
        const Polynomial1 polynomial = MakePolynomial(coefficients);
        PolynomialRoots roots(round % 3 == 0 ? 0.0 : (round % 3 == 1 ? -1.0 : kNan));
        const double xMin = ends[random() % 9];
        const double xMax = ends[random() % 9];
        const bool isFound = roots.FindB(polynomial, xMin, xMax, digits[random() % 7]);
        ASSERT_EQ(isFound, roots.GetCount() > 0);
        ASSERT_LE(roots.GetCount(), std::max(polynomial.GetDegree(), 0));
        roots.FindB(polynomial, digits[random() % 7]);
        ASSERT_LE(roots.GetCount(), std::max(polynomial.GetDegree(), 0));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}
