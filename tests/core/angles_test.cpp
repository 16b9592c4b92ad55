#include <cadgeom/core/angles.h>
#include <cadgeom/core/vector2d.h>
#include <cadgeom/core/vector3d.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "support/numbers.h"
#include "support/same_bits.h"

namespace {

using test_support::NumberStream;

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double NormalizedRad(double angle, double tolerance)
{
    NormalizeAngleRad(angle, tolerance);
    return angle;
}

double NormalizedDeg(double angle, double tolerance)
{
    NormalizeAngleDeg(angle, tolerance);
    return angle;
}

double NormalizedEndDeg(double start, double end, double tolerance)
{
    NormalizeEndAngleDeg(start, end, tolerance);
    return end;
}

TEST(NormalizeAngle, TurnsAnAngleJustBelowAFullTurnIntoASmallNegativeOne)
{
    EXPECT_NEAR(NormalizedRad(kTwoPi - 1e-6, 1e-5), -1e-6, 1e-15);
    EXPECT_EQ(NormalizedRad(kTwoPi - 1e-6, 0), kTwoPi - 1e-6);
}

TEST(NormalizeAngle, KeepsTheRangeClosedBelowAndOpenAbove)
{
    EXPECT_EQ(NormalizedDeg(0, 0), 0);
    EXPECT_EQ(NormalizedDeg(360, 0), 0);
    EXPECT_EQ(NormalizedDeg(std::nextafter(360, 0), 0), std::nextafter(360, 0));
    EXPECT_EQ(NormalizedDeg(-0.5, 0.5), -0.5);
    EXPECT_EQ(NormalizedDeg(std::nextafter(-0.5, -1), 0.5), std::nextafter(-0.5, -1) + 360);
    EXPECT_EQ(NormalizedDeg(359.5, 0.5), -0.5);
    EXPECT_EQ(NormalizedDeg(std::nextafter(359.5, 0), 0.5), std::nextafter(359.5, 0));
    EXPECT_SAME_BITS(-0.0, NormalizedDeg(-0.0, 0));
}

/// Turn by turn, as the docstring says.
double TurnByTurn(double angle, double tolerance, double turn)
{
    if (angle < -tolerance) {
        while (angle < -tolerance) {
            angle += turn;
        }
    } else {
        while (angle >= turn - tolerance) {
            angle -= turn;
        }
    }
    return angle;
}

TEST(NormalizeAngle, AddsTurnsOneByOneWhateverTheSizeOfTheAngle)
{
    NumberStream<double> numbers(401);
    for (int round = 0; round < 60; ++round) {
        const double angle = std::ldexp(numbers.Uniform(-1, 1), numbers.Integer(0, 27));
        ASSERT_SAME_BITS(TurnByTurn(angle, 0.25, kTwoPi), NormalizedRad(angle, 0.25)) << angle;
        ASSERT_SAME_BITS(TurnByTurn(angle, 0.25, 360), NormalizedDeg(angle, 0.25)) << angle;
    }
}

TEST(NormalizeAngle, GivesAPositiveZeroForWholeTurns)
{
    for (const double turns : {-2.0, -1.0, 1.0, 2.0, 65536.0}) {
        EXPECT_SAME_BITS(0.0, NormalizedDeg(360 * turns, 0)) << turns;
        EXPECT_SAME_BITS(0.0, GetDeltaAngleDeg(0, 360 * turns)) << turns;
        EXPECT_SAME_BITS(0.0, NormalizedEndDeg(-360, 360 * turns, 0)) << turns;
    }
    EXPECT_SAME_BITS(0.0, NormalizedRad(kTwoPi, 0));
    EXPECT_SAME_BITS(0.0, GetDeltaAngleRad(0, kTwoPi));
}

TEST(NormalizeAngle, EndsQuicklyForHugeAndNonFiniteAngles)
{
    for (const double angle : {1e15, -1e15, 9e15, -9e15}) {
        const double normalized = NormalizedRad(angle, 0);
        EXPECT_GE(normalized, 0.0);
        EXPECT_LT(normalized, kTwoPi);
    }
    for (const double angle : {1e300, -1e300, kInfinity, -kInfinity}) {
        EXPECT_EQ(NormalizedRad(angle, 0), angle);
        EXPECT_EQ(NormalizedDeg(angle, 0), angle);
    }
    EXPECT_TRUE(std::isnan(NormalizedRad(kNaN, 0)));
    EXPECT_EQ(NormalizedRad(1, kNaN), 1.0);
    EXPECT_LT(NormalizedRad(1, 1e300), -1e15) << "an unreachable range";
    EXPECT_LT(NormalizedRad(1, kInfinity), -1e15);
}

TEST(NormalizeEndAngle, ReadsAZeroSweepAsAFullTurn)
{
    EXPECT_EQ(NormalizedEndDeg(30, 30, 0), 390);
    EXPECT_EQ(NormalizedEndDeg(30, 30.5, 0.5), 390.5);
    EXPECT_EQ(NormalizedEndDeg(30, std::nextafter(30.5, 31), 0.5), std::nextafter(30.5, 31));
}

TEST(NormalizeEndAngle, KeepsAFullTurnWithinTheTolerance)
{
    EXPECT_EQ(NormalizedEndDeg(0, 360, 0), 360);
    EXPECT_EQ(NormalizedEndDeg(0, 360.5, 0.5), 360.5);
    EXPECT_EQ(NormalizedEndDeg(0, std::nextafter(360.5, 361), 0.5), std::nextafter(360.5, 361) - 360);
    EXPECT_EQ(NormalizedEndDeg(10, 750, 0), 30);
    EXPECT_EQ(NormalizedEndDeg(10, -700, 0), 20);
    double end = -1;
    NormalizeEndAngleRad(0, end, 0);
    EXPECT_EQ(end, kTwoPi - 1);
}

TEST(NormalizeEndAngle, RoundsHalfwayTurnsLikeAdditionsOneByOne)
{
    // From 2^56 on numbers lie 16 apart, and a turn of 360 degrees ends halfway between two of them.
    const double halfway = std::ldexp(1.0, 56);
    NumberStream<double> numbers(402);
    for (int round = 0; round < 500; ++round) {
        const double start = halfway + 16.0 * numbers.Integer(0, 4000);
        const double end = halfway - 8.0 * numbers.Integer(0, 4000);
        double expected = end;
        while (expected <= start) {
            expected += 360;
        }
        ASSERT_SAME_BITS(expected, NormalizedEndDeg(start, end, 0)) << start << " " << end;
    }
}

TEST(NormalizeStartAndEndAngles, SnapsANearlyFullSweepToAFullTurn)
{
    double start = 10;
    double end = 369.9995;
    NormalizeStartAndEndAnglesDeg(start, end, 0.001);
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, 360);
    start = 1;
    end = 1;
    NormalizeStartAndEndAnglesRad(start, end, 0);
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, kTwoPi);
}

TEST(NormalizeStartAndEndAngles, NormalizesTheStartWithItsOwnTolerance)
{
    double start = -0.001;
    double end = 90;
    NormalizeStartAndEndAnglesDeg(start, end, 10);
    EXPECT_EQ(start, -0.001) << "inside the fixed tolerance of the start";
    start = -0.0011;
    end = 90;
    NormalizeStartAndEndAnglesDeg(start, end, 10);
    EXPECT_EQ(start, -0.0011 + 360);
    EXPECT_EQ(end, 450);
    start = -1.7453292519943296e-5;
    end = 1;
    NormalizeStartAndEndAnglesRad(start, end, 0);
    EXPECT_EQ(start, -1.7453292519943296e-5);
    start = std::nextafter(-1.7453292519943296e-5, -1);
    NormalizeStartAndEndAnglesRad(start, end, 0);
    EXPECT_GT(start, 6);
}

TEST(GetDeltaAngle, LiesAboveMinusHalfATurnUpToHalfATurn)
{
    EXPECT_EQ(GetDeltaAngleDeg(0, 180), 180);
    EXPECT_EQ(GetDeltaAngleDeg(180, 0), 180);
    EXPECT_EQ(GetDeltaAngleDeg(350, 10), 20);
    EXPECT_EQ(GetDeltaAngleDeg(10, 350), -20);
    EXPECT_EQ(GetDeltaAngleDeg(0, 1000), -80);
    EXPECT_EQ(GetDeltaAngleRad(0, kPi), kPi);
    EXPECT_EQ(GetDeltaAngleRad(kPi, 0), -kPi + kTwoPi);
    EXPECT_EQ(GetDeltaAngleRad(0, std::nextafter(kPi, 4)), std::nextafter(kPi, 4) - kTwoPi);
    EXPECT_TRUE(std::isnan(GetDeltaAngleRad(0, kNaN)));
    EXPECT_EQ(GetDeltaAngleRad(0, kInfinity), kInfinity);
}

template <class S, int N>
struct Instance {
    using Scalar = S;
    static constexpr int kAxes = N;
};

template <class I>
class AngleBetween : public ::testing::Test {
protected:
    using Scalar = typename I::Scalar;
    static constexpr int N = I::kAxes;
    using Vector = CadVector<Scalar, N>;

    static Vector At(double x, double y)
    {
        Vector vector = Vector::zero();
        vector[0] = static_cast<Scalar>(x);
        vector[1] = static_cast<Scalar>(y);
        return vector;
    }
};
using Instances = ::testing::Types<Instance<float, 2>, Instance<float, 3>, Instance<double, 2>, Instance<double, 3>>;
TYPED_TEST_SUITE(AngleBetween, Instances);

TYPED_TEST(AngleBetween, IsZeroForAZeroVectorWhileItsCosineIsZeroToo)
{
    using T = typename TestFixture::Scalar;
    const auto zero = this->At(0, 0);
    const auto x = this->At(1, 0);
    EXPECT_EQ(GetAngleBetweenRad(zero, x), T(0));
    EXPECT_EQ(GetAngleBetweenDeg(x, zero), T(0));
    EXPECT_EQ(GetAcuteAngleBetweenRad(x, zero), T(0));
    EXPECT_EQ(GetCosAngleBetween(zero, x), T(0));
    EXPECT_EQ(GetCosAngleBetween(x, zero), T(0));
}

TYPED_TEST(AngleBetween, IsExactForParallelAndOppositeVectors)
{
    using T = typename TestFixture::Scalar;
    const auto x = this->At(2, 0);
    EXPECT_EQ(GetAngleBetweenRad(x, x), T(0));
    EXPECT_SAME_BITS(static_cast<T>(kPi), GetAngleBetweenRad(x, -x));
    EXPECT_EQ(GetAcuteAngleBetweenRad(x, -x), T(0));
    EXPECT_EQ(GetCosAngleBetween(x, x), T(1));
    EXPECT_EQ(GetCosAngleBetween(x, -x), T(-1));
    EXPECT_EQ(GetAngleBetweenDeg(x, -x), T(180));
}

TYPED_TEST(AngleBetween, FoldsObtuseAnglesIntoAcuteOnes)
{
    using T = typename TestFixture::Scalar;
    const T tolerance = std::numeric_limits<T>::epsilon() * T(200);
    EXPECT_NEAR(GetAngleBetweenDeg(this->At(1, 0), this->At(-1, 1)), T(135), tolerance);
    EXPECT_NEAR(GetAcuteAngleBetweenDeg(this->At(1, 0), this->At(-1, 1)), T(45), tolerance);
    EXPECT_NEAR(GetAcuteAngleBetweenDeg(this->At(1, 0), this->At(1, 1)), T(45), tolerance);
    EXPECT_NEAR(GetAngleBetweenDeg(this->At(1, 0), this->At(0, 3)), T(90), tolerance);
}

TYPED_TEST(AngleBetween, FormsLengthsInItsScalarAndTheRatioInDouble)
{
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(402);
    for (int round = 0; round < 3000; ++round) {
        typename TestFixture::Vector a;
        typename TestFixture::Vector b;
        for (int i = 0; i < TestFixture::N; ++i) {
            a[i] = numbers.Any();
            b[i] = numbers.Any();
        }
        const double dot = static_cast<double>(a.dot(b));
        const double lengths = static_cast<double>(a.length()) * static_cast<double>(b.length());
        const bool hasZero = dot * static_cast<double>(TestFixture::Vector::epsilon()) >= lengths;
        const double cosine = dot / lengths;
        const double angle = hasZero || cosine >= 1 ? 0 : (cosine <= -1 ? kPi : std::acos(cosine));
        ASSERT_SAME_BITS(static_cast<T>(angle), GetAngleBetweenRad(a, b));
        ASSERT_SAME_BITS(static_cast<T>(angle) * static_cast<T>(57.29577951308232), GetAngleBetweenDeg(a, b));
        const double clamped = hasZero ? 0 : (cosine > 1 ? 1 : (cosine < -1 ? -1 : cosine));
        ASSERT_SAME_BITS(static_cast<T>(clamped), GetCosAngleBetween(a, b));
    }
}

TEST(GetNumCircularArcDivisions, TakesTheLargerOfMinimumAndSagittaCount)
{
    EXPECT_EQ(GetNumCircularArcDivisions(10, 0.1, kTwoPi, 4), 23);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 0.1, kPi / 2, 4), 2);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 2, kPi, 8), 4);
    EXPECT_EQ(GetNumCircularArcDivisions(10, 0.1, -kTwoPi, 4), 23);
}

TEST(GetNumCircularArcDivisions, DoesNotRoundAnExactMultipleUp)
{
    EXPECT_EQ(GetNumCircularArcDivisions(1, 1, kTwoPi, 8), 8);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 1, kTwoPi * (1 + 1e-9), 8), 8);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 1, kTwoPi * (1 + 1e-7), 8), 9);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 1, 0, 8), 0);
}

TEST(GetNumCircularArcDivisions, KeepsTheSagittaWithinTheTolerance)
{
    NumberStream<double> numbers(403);
    for (int round = 0; round < 2000; ++round) {
        const double radius = numbers.Uniform(0.1, 100);
        const double tolerance = radius * numbers.Uniform(1e-6, 0.99);
        const double sweep = numbers.Uniform(0.01, kTwoPi);
        const int count = GetNumCircularArcDivisions(radius, tolerance, sweep, 0);
        ASSERT_GE(count, 1);
        ASSERT_LE(radius * (1 - std::cos(sweep / count / 2)), tolerance * (1 + 1e-9));
        if (count > 1) {
            ASSERT_GT(radius * (1 - std::cos(sweep / (count - 1) / 2)), tolerance * (1 - 1e-9));
        }
    }
}

TEST(GetNumCircularArcDivisions, IgnoresCountsThatAreNoInt)
{
    EXPECT_EQ(GetNumCircularArcDivisions(1, 0, kTwoPi, 8), 8);
    EXPECT_EQ(GetNumCircularArcDivisions(1, -1, kTwoPi, 8), 8);
    EXPECT_EQ(GetNumCircularArcDivisions(kInfinity, 1, kTwoPi, 8), 8);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 1, kNaN, 8), INT_MIN);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 1, kInfinity, 8), INT_MIN);
    EXPECT_EQ(GetNumCircularArcDivisions(1, 1, 1e300, 8), INT_MIN);
    EXPECT_EQ(GetNumCircularArcDivisions(kNaN, 1, kTwoPi, 8), 8);
}

TEST(GetNumCircularArcAngleDivisions, AppliesEachLimitThatIsAboveZero)
{
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0.1, 0, 0, kTwoPi, 4), 23);
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0, 0, 0, kTwoPi, 4), 4);
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, -1, kTwoPi / 50, 0, kTwoPi, 4), 50);
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0, kTwoPi / 50.0001, 0, kTwoPi, 4), 51);
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0, 0, 1, kTwoPi, 4), 63) << "pi / asin(1 / 20) = 62.8";
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0, 0, 20, kTwoPi, 1), 2) << "pi / asin(1) = 2";
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0, 0, 20.1, kTwoPi, 5), 5) << "no chord is that long";
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0.1, kNaN, kNaN, kTwoPi, 4), 23);
    EXPECT_EQ(GetNumCircularArcAngleDivisions(10, 0.1, 0.1, 0.1, 0, 4), 0);
}

} // namespace
