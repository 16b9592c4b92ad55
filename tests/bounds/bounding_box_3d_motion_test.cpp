#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>

#include "box_testing.h"
#include "space_kit.h"

namespace {

using box_testing::AnyComponents;
using box_testing::kMarker;
using box_testing::NumberStream;
using box_testing::OrderedBox;
using box_testing::OrderedIntegerBox;
using box_testing::SmallIntegers;
using box_testing::UniformComponents;

template <class Scalar>
class BoundingBox3InMotion : public ::testing::Test {};

TYPED_TEST_SUITE(BoundingBox3InMotion, box_testing::Scalars);

template <class T>
constexpr T kStill = static_cast<T>(1.1920928955078125e-7);

TYPED_TEST(BoundingBox3InMotion, MeetsNothingWithoutMotion)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    T tEnter = T(7);
    T tExit = T(7);
    T tFull = T(7);
    for (const Vector& motion : {V(0, 0, 0), Vector(kStill<T>, -kStill<T>, kStill<T>)}) {
        EXPECT_FALSE(box.SweptBoundingBoxIntersects(box, motion, T(0)));
        EXPECT_FALSE(box.SweptBoundingBoxIntersects(box, motion, tEnter, tExit, T(0)));
        EXPECT_FALSE(box.SweptBoundingBoxIntersectsFull(box, motion, tEnter, tExit, tFull, T(0)));
    }
    EXPECT_EQ(T(7), tEnter);
    EXPECT_EQ(T(7), tExit);
    EXPECT_EQ(T(7), tFull);
    const T above = std::nextafter(kStill<T>, T(1));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(box, Vector(T(0), -above, T(0)), T(0)));
}

TYPED_TEST(BoundingBox3InMotion, MeetsNothingWhenABoxIsEmpty)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    T tEnter = T(7);
    T tExit = T(7);
    T tFull = T(7);
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(Box(), V(1, 0, 0), T(1)));
    EXPECT_FALSE(Box().SweptBoundingBoxIntersects(box, V(1, 0, 0), T(1)));
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(Box(), V(1, 0, 0), tEnter, tExit, T(1)));
    EXPECT_FALSE(Box().SweptBoundingBoxIntersectsFull(box, V(1, 0, 0), tEnter, tExit, tFull, T(1)));
    EXPECT_EQ(T(7), tEnter);
    EXPECT_EQ(T(7), tExit);
    EXPECT_EQ(T(7), tFull);
}

TYPED_TEST(BoundingBox3InMotion, GivesTheParametersOfEntryAndExit)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    const Box near = Of(1.5, 0, 0, 2, 1, 1);
    T tEnter = T(7);
    T tExit = T(7);
    T tFull = T(7);
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(near, V(2, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(near, V(2, 0, 0), tEnter, tExit, T(0)));
    EXPECT_EQ(T(0.25), tEnter);
    EXPECT_EQ(T(1), tExit);
    EXPECT_TRUE(box.SweptBoundingBoxIntersectsFull(near, V(2, 0, 0), tEnter, tExit, tFull, T(0)));
    EXPECT_EQ(T(0.75), tFull);

    const Box far = Of(3.5, 0, 0, 4, 1, 1);
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(far, V(2, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(far, V(2, 0, 0), tEnter, tExit, T(0)));
    EXPECT_EQ(T(1.25), tEnter);
    EXPECT_EQ(T(2), tExit);
    // Widened by 0.5 it is met at the end of the motion, which does not count, and by more it is.
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(far, V(2, 0, 0), T(0.5)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(far, V(2, 0, 0), T(0.75)));
}

TYPED_TEST(BoundingBox3InMotion, GivesTheParametersOfBackwardMotion)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(4, 0, 0, 5, 1, 1);
    T tEnter = T(7);
    T tExit = T(7);
    T tFull = T(7);
    EXPECT_TRUE(box.SweptBoundingBoxIntersectsFull(Of(0, 0, 0, 2, 1, 1), V(-4, 0, 0), tEnter, tExit, tFull, T(0)));
    EXPECT_EQ(T(0.5), tEnter);
    EXPECT_EQ(T(1.25), tExit);
    EXPECT_EQ(T(0.75), tFull);
    // Moving away: it met the other box before the start.
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(Of(0, 0, 0, 2, 1, 1), V(4, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(Of(0, 0, 0, 2, 1, 1), V(4, 0, 0), tEnter, tExit, T(0)));
    EXPECT_EQ(T(-1.25), tEnter);
    EXPECT_EQ(T(-0.5), tExit);
}

TYPED_TEST(BoundingBox3InMotion, NeverMeetsBoxesThatOnlyTouchWhereItIsStill)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    T tEnter = T(7);
    T tExit = T(7);
    for (const Box& other :
         {Of(2, 1, 0, 3, 2, 1), Of(2, -1, 0, 3, 0, 1), Of(2, 0, 1, 3, 1, 2), Of(2, 0, -1, 3, 1, 0)}) {
        EXPECT_FALSE(box.SweptBoundingBoxIntersects(other, V(2, 0, 0), T(0)));
        EXPECT_FALSE(box.SweptBoundingBoxIntersects(other, V(2, 0, 0), tEnter, tExit, T(0)));
        // What x gave before the still axis was found.
        EXPECT_EQ(T(0.5), tEnter);
        EXPECT_EQ(T(1.5), tExit);
        EXPECT_TRUE(box.SweptBoundingBoxIntersects(other, V(2, 0, 0), T(0.125)));
    }
    // The still axis comes first: the starting values are left.
    T tFull = T(7);
    EXPECT_FALSE(box.SweptBoundingBoxIntersectsFull(Of(1, 0, 0, 2, 1, 1), V(0, 1, 1), tEnter, tExit, tFull, T(0)));
    EXPECT_EQ(-kMarker<T>, tEnter);
    EXPECT_EQ(kMarker<T>, tExit);
    EXPECT_EQ(-kMarker<T>, tFull);
}

TYPED_TEST(BoundingBox3InMotion, MeetsOnlyInTheOpenRangeOfTheMotion)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(Of(3, 0, 0, 4, 1, 1), V(2, 0, 0), T(0)));
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(Of(-1, 0, 0, 0, 1, 1), V(2, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(Of(1, 0, 0, 2, 1, 1), V(2, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(box, V(2, 0, 0), T(0)));
    // Grazing corner to corner: entry and exit are one parameter.
    T tEnter = T(7);
    T tExit = T(7);
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(Of(2, 0, 0, 3, 1, 1), V(1, 1, 0), tEnter, tExit, T(0)));
    EXPECT_EQ(T(1), tEnter);
    EXPECT_EQ(T(1), tExit);
}

template <class T>
struct SweepAnswer {
    bool meets = false;
    bool isWritten = false;
    T tEnter = T(0);
    T tExit = T(0);
    T tFull = T(0);
};

/// The sweep axis by axis; `isLimited` for the form that looks at the motion from 0 to 1 alone.
template <class T>
SweepAnswer<T> SweepStepByStep(const CBoundingBox3d<T>& a, const CBoundingBox3d<T>& box, const CadVector3d<T>& v, T tol,
                               bool isLimited)
{
    SweepAnswer<T> answer;
    const T eps = kStill<T>;
    const auto isStill = [&](int i) { return std::fabs(v[i]) <= eps; };
    if (a.IsEmpty() || box.IsEmpty() || (isStill(0) && isStill(1) && isStill(2))) {
        return answer;
    }
    CadPoint3d<T> low = box.GetMin();
    CadPoint3d<T> high = box.GetMax();
    if (tol != T(0)) {
        for (int i = 0; i < 3; ++i) {
            low[i] -= tol;
            high[i] += tol;
        }
    }
    answer.isWritten = true;
    answer.tEnter = -kMarker<T>;
    answer.tExit = kMarker<T>;
    answer.tFull = -kMarker<T>;
    for (int i = 0; i < 3; ++i) {
        T enter;
        T exit;
        if (v[i] > eps) {
            enter = (low[i] - a.GetMax()[i]) / v[i];
            exit = (high[i] - a.GetMin()[i]) / v[i];
        } else if (v[i] < -eps) {
            enter = (high[i] - a.GetMin()[i]) / v[i];
            exit = (low[i] - a.GetMax()[i]) / v[i];
        } else {
            if (low[i] >= a.GetMax()[i] || a.GetMin()[i] >= high[i]) {
                return answer;
            }
            continue;
        }
        if (enter > answer.tEnter) {
            answer.tEnter = enter;
            answer.tFull = v[i] > T(0) ? (low[i] - a.GetMin()[i]) / v[i] : (high[i] - a.GetMax()[i]) / v[i];
            if (isLimited && enter >= T(1)) {
                return answer;
            }
        }
        if (exit < answer.tExit) {
            answer.tExit = exit;
            if (isLimited && exit <= T(0)) {
                return answer;
            }
        }
    }
    answer.meets = answer.tEnter < answer.tExit;
    return answer;
}

TYPED_TEST(BoundingBox3InMotion, SweepsAsTheStepsSayForAnyNumbers)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(1);
    int meetCount = 0;
    int writtenMissCount = 0;
    for (int trial = 0; trial < 50000; ++trial) {
        const auto anyBox = [&] {
            return trial % 3 == 0   ? Box(AnyComponents<Point>(numbers), AnyComponents<Point>(numbers))
                   : trial % 3 == 1 ? OrderedBox<Box, Point>(numbers, 10.0)
                                    : OrderedIntegerBox<Box, Point>(numbers, 4);
        };
        const Box a = anyBox();
        const Box b = anyBox();
        const Vector v = trial % 3 == 2 ? SmallIntegers<Vector>(numbers, 2) : AnyComponents<Vector>(numbers);
        const T tolerance = trial % 2 == 0 ? T(0) : trial % 3 == 2 ? T(1) : numbers.Any();
        const auto limited = SweepStepByStep(a, b, v, tolerance, true);
        ASSERT_EQ(limited.meets, a.SweptBoundingBoxIntersects(b, v, tolerance)) << "trial " << trial;
        const auto expected = SweepStepByStep(a, b, v, tolerance, false);
        T tEnter = T(77);
        T tExit = T(77);
        ASSERT_EQ(expected.meets, a.SweptBoundingBoxIntersects(b, v, tEnter, tExit, tolerance)) << "trial " << trial;
        ASSERT_SAME_BITS(expected.isWritten ? expected.tEnter : T(77), tEnter) << "trial " << trial;
        ASSERT_SAME_BITS(expected.isWritten ? expected.tExit : T(77), tExit) << "trial " << trial;
        T tFull = T(77);
        ASSERT_EQ(expected.meets, a.SweptBoundingBoxIntersectsFull(b, v, tEnter, tExit, tFull, tolerance));
        ASSERT_SAME_BITS(expected.isWritten ? expected.tFull : T(77), tFull) << "trial " << trial;
        meetCount += limited.meets ? 1 : 0;
        writtenMissCount += expected.isWritten && !expected.meets ? 1 : 0;
    }
    EXPECT_GT(meetCount, 2000);
    EXPECT_GT(writtenMissCount, 2000);
}

TYPED_TEST(BoundingBox3InMotion, MeetsWhatItOverlapsOnTheWay)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(2);
    int meetCount = 0;
    for (int trial = 0; trial < 3000; ++trial) {
        const auto a = OrderedIntegerBox<Box, Point>(numbers, 4);
        const auto b = OrderedIntegerBox<Box, Point>(numbers, 4);
        const Vector v = SmallIntegers<Vector>(numbers, 5);
        // Entry and exit are fractions with denominators up to 5; their open range, if any, holds a multiple of 1/120.
        bool overlaps = false;
        constexpr int kSteps = 120;
        for (int k = 1; k < kSteps; ++k) {
            bool overlapsHere = true;
            for (int i = 0; i < 3; ++i) {
                const double shift = static_cast<double>(v[i]) * k / kSteps;
                const bool isOpen = static_cast<double>(a.GetMax()[i]) + shift > static_cast<double>(b.GetMin()[i]) &&
                                    static_cast<double>(b.GetMax()[i]) > static_cast<double>(a.GetMin()[i]) + shift;
                overlapsHere = overlapsHere && isOpen;
            }
            overlaps = overlaps || overlapsHere;
        }
        if (v.isZero()) {
            overlaps = false;
        }
        ASSERT_EQ(overlaps, a.SweptBoundingBoxIntersects(b, v, T(0))) << "trial " << trial;
        meetCount += overlaps ? 1 : 0;
    }
    EXPECT_GT(meetCount, 100);
}

TYPED_TEST(BoundingBox3InMotion, WritesParametersOverItsOwnInput)
{
    CADGEOM_USE_SPACE_TYPES;
    Vector motion = V(2, 0, 0);
    T tExit = T(7);
    EXPECT_TRUE(
        Of(0, 0, 0, 1, 1, 1).SweptBoundingBoxIntersects(Of(1.5, 0, 0, 2, 1, 1), motion, motion[0], tExit, T(0)));
    EXPECT_EQ(T(0.25), motion[0]);
    EXPECT_EQ(T(1), tExit);
}

TYPED_TEST(BoundingBox3InMotion, MeetsBoxesThatItIsTurnedInto)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(2, -0.25, 0, 3, 0.25, 1);
    const Box above = Of(-0.25, 2, 0, 0.25, 3, 1);
    const T quarter = static_cast<T>(1.5707963267948966);
    const T chord = T(0.01);
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(above, P(0, 0, 0), V(0, 0, 1), quarter, chord, T(0)));
    EXPECT_FALSE(box.RotatedBoundingBoxIntersects(above, P(0, 0, 0), V(0, 0, 1), -quarter, chord, T(0)));
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(above, P(0, 0, 0), V(0, 0, -3), -quarter, chord, T(0)));
    EXPECT_FALSE(box.RotatedBoundingBoxIntersects(above, P(0, 0, 0), V(0, 0, 1), quarter / T(2), chord, T(0)));
    // On the way, not at the ends.
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(above, P(0, 0, 0), V(0, 0, 1), T(2) * quarter, chord, T(0)));
}

TYPED_TEST(BoundingBox3InMotion, TestsTheBoxUnturnedForAZeroAngle)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(Of(0.5, 0, 0, 2, 1, 1), P(5, 5, 5), V(0, 0, 1), T(0), T(1), T(0)));
    EXPECT_FALSE(box.RotatedBoundingBoxIntersects(Of(1.5, 0, 0, 2, 1, 1), P(5, 5, 5), V(0, 0, 1), T(0), T(1), T(0)));
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(Of(1.5, 0, 0, 2, 1, 1), P(5, 5, 5), V(0, 0, 1), T(0), T(1), T(1)));
}

TYPED_TEST(BoundingBox3InMotion, SamplesQuarterTurnsNearTheAxis)
{
    CADGEOM_USE_SPACE_TYPES;
    // A tiny box off the axis: a full turn is sampled at four quarters, so that what lies at 45 degrees is missed.
    const Box box = Of(0.1, -0.001, -0.001, 0.101, 0.001, 0.001);
    const T turn = static_cast<T>(6.283185307179586);
    const double diagonal = 0.1 / std::sqrt(2.0);
    const Box between = Of(diagonal - 0.001, diagonal - 0.001, -0.001, diagonal + 0.001, diagonal + 0.001, 0.001);
    const Box atQuarter = Of(-0.001, 0.1, -0.001, 0.001, 0.101, 0.001);
    EXPECT_FALSE(box.RotatedBoundingBoxIntersects(between, P(0, 0, 0), V(0, 0, 1), turn, T(1), T(0)));
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(atQuarter, P(0, 0, 0), V(0, 0, 1), turn, T(1), T(0)));
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(between, P(0, 0, 0), V(0, 0, 1), turn, T(1e-5), T(0)));
}

/// The rotation sample by sample.
template <class T>
bool RotateStepByStep(const CBoundingBox3d<T>& a, const CBoundingBox3d<T>& b, const CadPoint3d<T>& axisPoint,
                      const CadVector3d<T>& axisDirection, T angle, T chordTol, T tol)
{
    const CadPoint3d<double> pivot(static_cast<double>(axisPoint[0]), static_cast<double>(axisPoint[1]),
                                   static_cast<double>(axisPoint[2]));
    const CadVector3d<double> direction(static_cast<double>(axisDirection[0]), static_cast<double>(axisDirection[1]),
                                        static_cast<double>(axisDirection[2]));
    CadPoint3d<T> corners[8];
    a.GetCornerPoints(corners);
    T squared = T(0);
    for (const CadPoint3d<T>& c : corners) {
        const T distance =
            (axisPoint + axisDirection * c.projectOntoLineParam(axisPoint, axisDirection)).distanceSquared(c);
        squared = distance > squared ? distance : squared;
    }
    const auto radius = static_cast<double>(std::sqrt(squared));
    const auto toInt = [](double value) {
        return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : -2147483647 - 1;
    };
    const double size = std::fabs(static_cast<double>(angle));
    int n = toInt(std::ceil(size * 4 / 6.283185307179586 - 1.1920928955078125e-7));
    if (radius > static_cast<double>(chordTol)) {
        n = std::max(n, toInt(std::ceil(size * 0.5 / std::acos(1 - static_cast<double>(chordTol) / radius))));
    }
    if (n < 0) {
        return false;
    }
    const COrientedBox3d<T> other(b, CCadTransform::GetEmptyTransform());
    for (int k = 0; k <= n; ++k) {
        const T t = n == 0 ? T(0) : static_cast<T>(k) / static_cast<T>(n);
        const T turn = (T(1) - t) * T(0) + t * angle;
        const CCadTransform rotation = CCadTransform::GetRotateAboutVector(static_cast<double>(turn), direction, pivot);
        COrientedBox3d<T> turned;
        turned.SetBoundingBox(a, rotation);
        if (turned.OrientedBoxIntersects(other, tol)) {
            return true;
        }
    }
    return false;
}

TYPED_TEST(BoundingBox3InMotion, TurnsAsTheSamplesSay)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(3);
    int meetCount = 0;
    constexpr int kTrials = 3000;
    for (int trial = 0; trial < kTrials; ++trial) {
        const auto smallBox = [&] {
            Box box;
            const Point centre = UniformComponents<Point>(numbers, 2.5);
            box.CheckPoint(centre);
            box.CheckPoint(centre + UniformComponents<Vector>(numbers, 2.0));
            return box;
        };
        Box a = smallBox();
        Box b = smallBox();
        if (trial % 16 == 0) {
            (trial % 32 == 0 ? a : b).Scale(T(-1));
        } else if (trial % 16 == 1) {
            (trial % 32 == 1 ? a : b).Reset();
        }
        const Point axisPoint = UniformComponents<Point>(numbers, 2.0);
        const Vector direction = trial % 10 == 0 ? V(0, 0, 0) : UniformComponents<Vector>(numbers, 1.0);
        const T angle = numbers.Uniform(-6.0, 6.0);
        const T chordTolerance = trial % 7 == 0 ? numbers.Any() : T(0.02);
        const T tolerance = trial % 2 == 0 ? T(0) : numbers.Uniform(-0.5, 0.5);
        if (chordTolerance > T(0) && chordTolerance < T(1e-3)) {
            continue;
        }
        const bool meets = RotateStepByStep(a, b, axisPoint, direction, angle, chordTolerance, tolerance);
        ASSERT_EQ(meets, a.RotatedBoundingBoxIntersects(b, axisPoint, direction, angle, chordTolerance, tolerance))
            << "trial " << trial;
        meetCount += meets ? 1 : 0;
    }
    EXPECT_GT(meetCount, kTrials / 20);
    EXPECT_LT(meetCount, kTrials * 19 / 20);
}

TYPED_TEST(BoundingBox3InMotion, TurnsTinyBoxesAboutTheOriginLikeTheirRotations)
{
    CADGEOM_USE_SPACE_TYPES;
    // A rotation about an axis this near to the origin has a translation of at most 1e-6, which does not count.
    NumberStream<T> numbers(5);
    int meetCount = 0;
    for (const double size : {1e-6, 1e-8}) {
        for (int trial = 0; trial < 2000; ++trial) {
            const Box a = OrderedBox<Box, Point>(numbers, size);
            Box b;
            const Point centre = UniformComponents<Point>(numbers, 1.5 * size);
            b.CheckPoint(centre);
            b.CheckPoint(centre + UniformComponents<Vector>(numbers, 0.3 * size));
            const Point axisPoint = UniformComponents<Point>(numbers, size);
            const T angle = numbers.Uniform(-6.0, 6.0);
            const T chordTolerance = static_cast<T>(0.01 * size);
            const bool meets = RotateStepByStep(a, b, axisPoint, V(0, 0, 1), angle, chordTolerance, T(0));
            ASSERT_EQ(meets, a.RotatedBoundingBoxIntersects(b, axisPoint, V(0, 0, 1), angle, chordTolerance, T(0)))
                << "size " << size << ", trial " << trial;
            meetCount += meets ? 1 : 0;
        }
    }
    EXPECT_GT(meetCount, 100);
}

TYPED_TEST(BoundingBox3InMotion, MeetsNothingWhenTheAngleHasNoCount)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    for (const T angle : {nan, std::numeric_limits<T>::infinity(), static_cast<T>(1e30)}) {
        EXPECT_FALSE(box.RotatedBoundingBoxIntersects(box, P(0, 0, 0), V(0, 0, 1), angle, T(0.1), T(0)));
    }
}

TYPED_TEST(BoundingBox3InMotion, EndsEarlyWhereNoAngleBringsBoxesTogether)
{
    CADGEOM_USE_SPACE_TYPES;
    // Two thousand million samples.
    const Box box = Of(1, 0, 0, 2, 1, 1);
    EXPECT_FALSE(box.RotatedBoundingBoxIntersects(Of(5, 5, 5, 6, 6, 6), P(0, 0, 0), V(0, 0, 1), static_cast<T>(3e9),
                                                  T(0.1), T(0)));
    EXPECT_FALSE(box.RotatedBoundingBoxIntersects(Of(0, 0, 2, 2, 2, 3), P(0, 0, 0), V(0, 0, 1), static_cast<T>(3e9),
                                                  T(0.1), T(0.5)));
    EXPECT_FALSE(Box().RotatedBoundingBoxIntersects(Of(0, 0, 2, 2, 2, 3), P(0, 0, 0), V(0, 0, 1), static_cast<T>(3e9),
                                                    kMarker<T>, T(0.5)));
    EXPECT_TRUE(box.RotatedBoundingBoxIntersects(Of(1, 0, 0, 2, 2, 3), P(0, 0, 0), V(0, 0, 1), static_cast<T>(3e9),
                                                 T(0.1), T(0.5)));
}

} // namespace
