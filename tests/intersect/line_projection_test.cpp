#include <cadgeom/intersect/line_projection.h>

#include "samples.h"

#include <cmath>

using samples::kNaN;
using samples::kUntouched;
using samples::SameBits;

namespace {

constexpr double kSingleEpsilon = 1.1920928955078125e-7;

template <class T>
class LineProjection : public ::testing::Test {};

TYPED_TEST_SUITE(LineProjection, samples::ScalarTypes);

} // namespace

TYPED_TEST(LineProjection, FindsTheClosestApproachOfSkewLines)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    ProjectLineOntoLine(Point(0, 0, 0), Vector(1, 0, 0), Point(0, 0, 1), Vector(0, 1, 0), t1, t2);
    EXPECT_EQ(t1, T(0));
    EXPECT_EQ(t2, T(0));
    ProjectLineOntoLine(Point(1, 2, 0), Vector(2, 0, 0), Point(5, 10, 3), Vector(0, -4, 0), t1, t2);
    EXPECT_EQ(t1, T(2));
    EXPECT_EQ(t2, T(2));
}

TYPED_TEST(LineProjection, GivesParallelLinesTheFirstPointAndItsProjection)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    ProjectLineOntoLine(Point(3, 1, 0), Vector(1, 0, 0), Point(1, 0, 0), Vector(-4, 0, 0), t1, t2);
    EXPECT_EQ(t1, T(0));
    EXPECT_EQ(t2, T(-0.5));
}

TYPED_TEST(LineProjection, ProjectsThePointOfALineWithoutDirection)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    ProjectLineOntoLine(Point(1, 0, 0), Vector(2, 0, 0), Point(4, 7, 7), Vector(0, 0, 0), t1, t2);
    EXPECT_EQ(t1, T(1.5));
    EXPECT_EQ(t2, T(0));
    ProjectLineOntoLine(Point(1, 0, 0), Vector(0, 0, 0), Point(4, 7, 7), Vector(0, 2, 0), t1, t2);
    EXPECT_EQ(t1, T(0));
    EXPECT_EQ(t2, T(-3.5));
    t1 = t2 = kUntouched<T>;
    ProjectLineOntoLine(Point(1, 0, 0), Vector(0, 0, 0), Point(4, 7, 7), Vector(0, 0, 0), t1, t2);
    EXPECT_EQ(t1, T(0));
    EXPECT_EQ(t2, T(0));
}

TEST(ProjectLineOntoLine, CountsASquaredLengthAtTheThresholdAsNoDirection)
{
    // 1e-6 * 1e-6 rounds to 1e-12 exactly.
    double t1 = 0;
    double t2 = 0;
    ProjectLineOntoLine<double>({0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {0, 1e-6, 0}, t1, t2);
    EXPECT_EQ(t1, 2);
    EXPECT_EQ(t2, 0);
    const double longer = std::nextafter(1e-6, 1.0);
    ASSERT_GT(longer * longer, 1e-12);
    ProjectLineOntoLine<double>({0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {0, longer, 0}, t1, t2);
    EXPECT_EQ(t1, 2);
    EXPECT_EQ(t2, -longer / (longer * longer));

    float f1 = 0;
    float f2 = 0;
    ProjectLineOntoLine<float>({0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {0, 0.9e-4F, 0}, f1, f2);
    EXPECT_EQ(f2, 0.0F);
    ProjectLineOntoLine<float>({0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {0, 1.1e-4F, 0}, f1, f2);
    EXPECT_EQ(f2, -1.1e-4F / (1.1e-4F * 1.1e-4F));
}

TEST(ProjectLineOntoLine, CountsADeterminantAtTheThresholdAsParallel)
{
    // With directions (s, 0, 0) and (0, 1, 0) the determinant is -s*s.
    double t1 = 0;
    double t2 = 0;
    ASSERT_EQ(1e-12 * 1e-12, 1e-24);
    ProjectLineOntoLine<double>({0, 0, 0}, {1e-12, 0, 0}, {3, 4, 0}, {0, 1, 0}, t1, t2);
    EXPECT_EQ(t1, 0);
    EXPECT_EQ(t2, -4);
    ProjectLineOntoLine<double>({0, 0, 0}, {1.1e-12, 0, 0}, {3, 4, 0}, {0, 1, 0}, t1, t2);
    EXPECT_NEAR(t1 * 1.1e-12, 3, 1e-14);
    EXPECT_EQ(t2, -4);

    float f1 = 0;
    float f2 = 0;
    ProjectLineOntoLine<float>({0, 0, 0}, {0.99e-8F, 0, 0}, {3, 4, 0}, {0, 1, 0}, f1, f2);
    EXPECT_EQ(f1, 0.0F);
    ProjectLineOntoLine<float>({0, 0, 0}, {1.01e-8F, 0, 0}, {3, 4, 0}, {0, 1, 0}, f1, f2);
    EXPECT_NEAR(f1 * 1.01e-8F, 3.0F, 1e-6F);
}

TYPED_TEST(LineProjection, TreatsNaNDirectionsAsNone)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    ProjectLineOntoLine(Point(1, 0, 0), Vector(2, 0, 0), Point(4, 7, 7), Vector(kNaN<T>, 0, 0), t1, t2);
    EXPECT_EQ(t1, T(1.5));
    EXPECT_EQ(t2, T(0));
}

TYPED_TEST(LineProjection, WritesWhatItReadsFrom)
{
    CADGEOM_TEST_TYPES(TypeParam);
    Vector d1(2, 0, 0);
    Vector d2(0, -4, 0);
    ProjectLineOntoLine(Point(1, 2, 0), d1, Point(5, 10, 3), d2, d1.x(), d2.y());
    EXPECT_EQ(d1.x(), T(2));
    EXPECT_EQ(d2.y(), T(2));
}

TYPED_TEST(LineProjection, MakesTheConnectionPerpendicularToRandomLines)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    samples::Source<T> source(20240601);
    const double tolerance = sizeof(T) == 8 ? 1e-9 : 5e-2;
    for (int i = 0; i < 2000; ++i) {
        const Point p1 = source.Point(10);
        const Point p2 = source.Point(10);
        const Vector d1 = source.Vector(2);
        const Vector d2 = source.Vector(2);
        const double squaredSine = static_cast<double>(Vector(d1.cross(d2)).lengthSquared()) /
                                   static_cast<double>(d1.lengthSquared() * d2.lengthSquared());
        if (squaredSine < 0.05) {
            continue;
        }
        ProjectLineOntoLine(p1, d1, p2, d2, t1, t2);
        long double alongFirst = 0;
        long double alongSecond = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const long double difference =
                static_cast<long double>(p2[axis]) + static_cast<long double>(t2) * static_cast<long double>(d2[axis]) -
                static_cast<long double>(p1[axis]) - static_cast<long double>(t1) * static_cast<long double>(d1[axis]);
            alongFirst += difference * static_cast<long double>(d1[axis]);
            alongSecond += difference * static_cast<long double>(d2[axis]);
        }
        ASSERT_NEAR(static_cast<double>(alongFirst), 0, tolerance) << i;
        ASSERT_NEAR(static_cast<double>(alongSecond), 0, tolerance) << i;

        T strict1 = kUntouched<T>;
        T strict2 = kUntouched<T>;
        ASSERT_TRUE(ProjectLineOntoLine2(p1, d1, p2, d2, strict1, &strict2));
        ASSERT_TRUE(SameBits(strict1, t1) && SameBits(strict2, t2)) << i;
    }
}

TYPED_TEST(LineProjection, RefusesParallelLinesAndLeavesBothParameters)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    EXPECT_FALSE(ProjectLineOntoLine2(Point(0, 0, 0), Vector(1, 0, 0), Point(3, 1, 0), Vector(-2, 0, 0), t1, &t2));
    EXPECT_EQ(t1, kUntouched<T>);
    EXPECT_EQ(t2, kUntouched<T>);
    EXPECT_FALSE(ProjectLineOntoLine2(Point(0, 0, 0), Vector(0, 0, 0), Point(3, 1, 0), Vector(1, 0, 0), t1, &t2));
    EXPECT_FALSE(ProjectLineOntoLine2(Point(0, 0, 0), Vector(1, 0, 0), Point(3, 1, 0), Vector(0, 0, 0), t1, &t2));
    EXPECT_EQ(t1, kUntouched<T>);
    EXPECT_EQ(t2, kUntouched<T>);
}

TYPED_TEST(LineProjection, NeedsNoSecondParameter)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    EXPECT_TRUE(ProjectLineOntoLine2<T>(Point(0, 0, 0), Vector(1, 0, 0), Point(3, 1, 1), Vector(0, 1, 0), t1, nullptr));
    EXPECT_EQ(t1, T(3));
}

TYPED_TEST(LineProjection, TestsTheFirstDivisorRelativeToItsNumerator)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    // Directions (1, 0, 0) and (0, 1, 0), points (0, 0, 0) and (x, 0, 0): D = -1 and the numerator is -x.
    const T limit = static_cast<T>(1 / kSingleEpsilon);
    const Vector along(1, 0, 0);
    const Vector across(0, 1, 0);
    EXPECT_FALSE(ProjectLineOntoLine2(Point(0, 0, 0), along, Point(limit, 0, 0), across, t1, &t2));
    EXPECT_EQ(t1, kUntouched<T>);
    const T below = std::nextafter(limit, T(0));
    EXPECT_TRUE(ProjectLineOntoLine2(Point(0, 0, 0), along, Point(below, 0, 0), across, t1, &t2));
    EXPECT_EQ(t1, below);
    EXPECT_EQ(t2, T(0));
}

TYPED_TEST(LineProjection, KeepsTheFirstParameterWhenTheSecondDivisorFails)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    const T limit = static_cast<T>(1 / kSingleEpsilon);
    const Vector along(1, 0, 0);
    const Vector across(0, 1, 0);
    EXPECT_FALSE(ProjectLineOntoLine2(Point(0, 0, 0), along, Point(3, limit, 0), across, t1, &t2));
    EXPECT_EQ(t1, T(3));
    EXPECT_EQ(t2, kUntouched<T>);
    const T below = std::nextafter(limit, T(0));
    EXPECT_TRUE(ProjectLineOntoLine2(Point(0, 0, 0), along, Point(3, below, 0), across, t1, &t2));
    EXPECT_EQ(t2, -below);
}

TYPED_TEST(LineProjection, LetsNaNPassTheRelativeTests)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    EXPECT_TRUE(ProjectLineOntoLine2(Point(0, 0, 0), Vector(1, 0, 0), Point(kNaN<T>, 0, 0), Vector(0, 1, 0), t1, &t2));
    EXPECT_TRUE(std::isnan(t1));
    EXPECT_TRUE(std::isnan(t2));
}

TYPED_TEST(LineProjection, IntersectsLinesInThePlane)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    EXPECT_TRUE(IntersectLineWithLine2d(Point2(0, 0), Vector2(1, 0), Point2(2, -1), Vector2(0, 2), t1, t2));
    EXPECT_EQ(t1, T(2));
    EXPECT_EQ(t2, T(0.5));
}

TYPED_TEST(LineProjection, LeavesBothParametersOfParallelPlaneLines)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    EXPECT_FALSE(IntersectLineWithLine2d(Point2(0, 0), Vector2(1, 1), Point2(5, 0), Vector2(-2, -2), t1, t2));
    EXPECT_FALSE(IntersectLineWithLine2d(Point2(0, 0), Vector2(1, 1), Point2(0, 0), Vector2(-2, -2), t1, t2));
    EXPECT_FALSE(IntersectLineWithLine2d(Point2(0, 0), Vector2(0, 0), Point2(5, 1), Vector2(0, 0), t1, t2));
    EXPECT_FALSE(IntersectLineWithLine2d(Point2(0, 0), Vector2(kNaN<T>, 1), Point2(5, 0), Vector2(1, 0), t1, t2));
    EXPECT_EQ(t1, kUntouched<T>);
    EXPECT_EQ(t2, kUntouched<T>);
}

TYPED_TEST(LineProjection, DividesBothNumeratorsAboveTheAbsoluteThreshold)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    // The divisor is the length of the second direction.
    const T e = static_cast<T>(kSingleEpsilon);
    const T above = std::nextafter(e, T(1));
    EXPECT_TRUE(IntersectLineWithLine2d(Point2(0, 0), Vector2(1, 0), Point2(3, 1), Vector2(0, above), t1, t2));
    EXPECT_EQ(t1, (T(3) * above - T(0)) / above);
    EXPECT_EQ(t2, T(-1) / above);
    // At the threshold the larger numerator is that of t, 1, and the divisor is not above 1 * 2^-23.
    t1 = t2 = kUntouched<T>;
    EXPECT_FALSE(IntersectLineWithLine2d(Point2(0, 0), Vector2(1, 0), Point2(3, 1), Vector2(0, e), t1, t2));
    EXPECT_EQ(t1, kUntouched<T>);
    EXPECT_EQ(t2, kUntouched<T>);
}

TYPED_TEST(LineProjection, ReprojectsTheOtherParameterOfShortDirections)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    const T e = static_cast<T>(kSingleEpsilon / 2);
    // ns = x * e, nt = -y: t is the quotient, s comes from projecting the point onto the first line.
    EXPECT_TRUE(IntersectLineWithLine2d(Point2(0, 0), Vector2(2, 0), Point2(3, T(0.0625)), Vector2(0, e), t1, t2));
    EXPECT_EQ(t2, T(-0.0625) / e);
    EXPECT_EQ(t1, T(1.5));
    // The mirror image: s is the quotient.
    EXPECT_TRUE(IntersectLineWithLine2d(Point2(3, T(0.0625)), Vector2(0, e), Point2(0, 0), Vector2(2, 0), t1, t2));
    EXPECT_EQ(t1, T(-0.0625) / e);
    EXPECT_EQ(t2, T(1.5));
}

TYPED_TEST(LineProjection, GivesParameterZeroToAShortOtherDirection)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    // Both directions are too short to project onto; the numerator of t is the larger one.
    const T tiny = sizeof(T) == 8 ? T(0.0000005) : T(0.00005);
    EXPECT_TRUE(
        IntersectLineWithLine2d(Point2(0, 0), Vector2(tiny, 0), Point2(0, T(0.015625)), Vector2(0, tiny), t1, t2));
    EXPECT_EQ(t1, T(0));
    EXPECT_EQ(t2, (T(0) * T(0) - T(0.015625) * tiny) / (tiny * tiny));
    EXPECT_TRUE(
        IntersectLineWithLine2d(Point2(0, T(0.015625)), Vector2(0, tiny), Point2(0, 0), Vector2(tiny, 0), t1, t2));
    EXPECT_EQ(t1, (T(0) * T(0) - T(0.015625) * tiny) / (tiny * tiny));
    EXPECT_EQ(t2, T(0));
}

TYPED_TEST(LineProjection, PutsRandomPlaneIntersectionsOnBothLines)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    T t2 = kUntouched<T>;
    samples::Source<T> source(77);
    const double tolerance = sizeof(T) == 8 ? 1e-10 : 1e-2;
    for (int i = 0; i < 2000; ++i) {
        const Point2 p1 = source.Point2d(10);
        const Point2 p2 = source.Point2d(10);
        const Vector2 d1(source.Between(-2, 2), source.Between(-2, 2));
        const Vector2 d2(source.Between(-2, 2), source.Between(-2, 2));
        if (std::fabs(d1.crossZ(d2)) < T(0.1)) {
            continue;
        }
        ASSERT_TRUE(IntersectLineWithLine2d(p1, d1, p2, d2, t1, t2));
        for (int axis = 0; axis < 2; ++axis) {
            ASSERT_NEAR(static_cast<double>(p1[axis]) + static_cast<double>(t1) * static_cast<double>(d1[axis]),
                        static_cast<double>(p2[axis]) + static_cast<double>(t2) * static_cast<double>(d2[axis]),
                        tolerance)
                << i;
        }
    }
}

TYPED_TEST(LineProjection, ClampsTheClosestSegmentPointExactly)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    const Point start(0, 0, 0);
    const Point end(4, 0, 0);
    Point foot;
    T distanceSquared = kUntouched<T>;
    // Lines along y at height 3 above x = 1, 9 and -9; the parameter counts in twos from y = 2.
    EXPECT_EQ(ProjectLineOntoLineSegment(Point(1, 2, 3), Vector(0, 2, 0), start, end, foot, distanceSquared, &t1),
              T(0.25));
    EXPECT_TRUE(SameBits(foot, Point(1, 0, 0)));
    EXPECT_EQ(distanceSquared, T(9));
    EXPECT_EQ(t1, T(-1));
    EXPECT_EQ(ProjectLineOntoLineSegment(Point(9, 2, 0), Vector(0, 2, 0), start, end, foot, distanceSquared, &t1),
              T(1));
    EXPECT_TRUE(SameBits(foot, end));
    EXPECT_EQ(distanceSquared, T(25));
    EXPECT_EQ(ProjectLineOntoLineSegment(Point(-9, 2, 0), Vector(0, 2, 0), start, end, foot, distanceSquared, &t1),
              T(0));
    EXPECT_TRUE(SameBits(foot, start));
    EXPECT_EQ(distanceSquared, T(81));
}

TYPED_TEST(LineProjection, GivesAParallelSegmentItsStart)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    Point foot;
    T distanceSquared = kUntouched<T>;
    EXPECT_EQ(ProjectLineOntoLineSegment(Point(7, 1, 0), Vector(2, 0, 0), Point(3, 0, 0), Point(5, 0, 0), foot,
                                         distanceSquared, &t1),
              T(0));
    EXPECT_TRUE(SameBits(foot, Point(3, 0, 0)));
    EXPECT_EQ(distanceSquared, T(1));
    EXPECT_EQ(t1, T(-2));
}

TYPED_TEST(LineProjection, MeasuresALineWithoutDirectionFromItsPoint)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    Point foot;
    T distanceSquared = kUntouched<T>;
    EXPECT_EQ(ProjectLineOntoLineSegment<T>(Point(7, 1, 0), Vector(0, 0, 0), Point(3, 0, 0), Point(9, 0, 0), foot,
                                            distanceSquared, nullptr),
              T(0));
    EXPECT_TRUE(SameBits(foot, Point(3, 0, 0)));
    EXPECT_EQ(distanceSquared, T(17));
    ProjectLineOntoLineSegment(Point(7, 1, 0), Vector(0, 0, 0), Point(3, 0, 0), Point(9, 0, 0), foot, distanceSquared,
                               &t1);
    EXPECT_EQ(t1, T(0));
}

TYPED_TEST(LineProjection, MayWriteTheFootOverTheSegment)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    Point start(0, 0, 0);
    T distanceSquared = kUntouched<T>;
    EXPECT_EQ(
        ProjectLineOntoLineSegment(Point(1, 2, 3), Vector(0, 2, 0), start, Point(4, 0, 0), start, distanceSquared, &t1),
        T(0.25));
    EXPECT_TRUE(SameBits(start, Point(1, 0, 0)));
    EXPECT_EQ(distanceSquared, T(9));
}

TYPED_TEST(LineProjection, FindsNoSegmentPointCloserToARandomLine)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    samples::Source<T> source(4711);
    for (int i = 0; i < 500; ++i) {
        const Point point = source.Point(5);
        const Vector direction = source.Vector(2);
        const Point start = source.Point(5);
        const Point end = source.Point(5);
        Point foot;
        T distanceSquared = kUntouched<T>;
        const T s = ProjectLineOntoLineSegment(point, direction, start, end, foot, distanceSquared, &t1);
        ASSERT_GE(s, T(0));
        ASSERT_LE(s, T(1));
        const double tolerance = (sizeof(T) == 8 ? 1e-9 : 1e-2) * (1 + static_cast<double>(distanceSquared));
        ASSERT_NEAR(static_cast<double>(distanceSquared),
                    static_cast<double>(foot.distanceSquaredToLine(point, direction)), tolerance);
        for (int k = 0; k <= 8; ++k) {
            const Point other = start + (end - start) * (T(k) / T(8));
            ASSERT_LE(static_cast<double>(distanceSquared),
                      static_cast<double>(other.distanceSquaredToLine(point, direction)) + tolerance)
                << i;
        }
    }
}

TYPED_TEST(LineProjection, ProjectsOneSegmentOntoAnother)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    EXPECT_EQ(
        ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(1, 0, 0), Point(T(0.5), 1, 0), Vector(0, 0, 1), t1),
        T(0.5));
    EXPECT_EQ(t1, T(1));
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(1, 0, 0), Point(2, 0, 0), Vector(1, 0, 0), t1),
              T(1));
    EXPECT_EQ(t1, T(1));
    // Beyond either end of the first segment.
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(1, 0, 0), Point(3, -1, 0), Vector(0, 2, 0), t1),
              T(1));
    EXPECT_EQ(t1, T(4));
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(1, 0, 0), Point(-3, -1, 0), Vector(0, 2, 0), t1),
              T(0));
    EXPECT_EQ(t1, T(9));
}

TYPED_TEST(LineProjection, ClampsToTheFirstSegmentOnlyOnce)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    // The lines meet at (2, 0, 0), far below the second segment, whose lower end (5, 3, 0) is nearest to (4, 0, 0).
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(4, 0, 0), Point(5, 3, 0), Vector(3, 3, 0), t1),
              T(0.5));
    EXPECT_EQ(t1, T(18));
}

TYPED_TEST(LineProjection, ProjectsSegmentsThatArePoints)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    const Vector none(0, 0, 0);
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(1, 2, 0), none, Point(0, 0, 0), Vector(3, 0, 0), t1), T(0));
    EXPECT_EQ(t1, T(4));
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(4, 0, 0), Point(1, 2, 0), none, t1), T(0.25));
    EXPECT_EQ(t1, T(4));
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), none, Point(1, 2, 0), none, t1), T(0));
    EXPECT_EQ(t1, T(5));
}

TYPED_TEST(LineProjection, ProjectsParallelSegmentsBackAndForth)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    // The start of the second segment is nearest to the first point, and lies at half of the first segment.
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(4, 0, 0), Point(2, 1, 0), Vector(8, 0, 0), t1),
              T(0.5));
    EXPECT_EQ(t1, T(1));
    // Overlapping: the first point itself.
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment(Point(0, 0, 0), Vector(4, 0, 0), Point(-2, 1, 0), Vector(8, 0, 0), t1),
              T(0));
    EXPECT_EQ(t1, T(1));
}

TEST(ProjectLineSegmentOntoLineSegment, HasTheThresholdsOfItsScalarType)
{
    // Length 1e-6 (1e-4 for float) is a point, a little more is a segment: which shows in the parameter returned.
    double d = 0;
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment<double>({0, 0, 0}, {1e-6, 0, 0}, {1, 0, 0}, {1e-6, 0, 0}, d), 0);
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment<double>({0, 0, 0}, {1.1e-6, 0, 0}, {1, 0, 0}, {1e-6, 0, 0}, d), 1);
    float f = 0;
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment<float>({0, 0, 0}, {0.9e-4F, 0, 0}, {1, 0, 0}, {1e-6F, 0, 0}, f), 0.0F);
    EXPECT_EQ(ProjectLineSegmentOntoLineSegment<float>({0, 0, 0}, {1.1e-4F, 0, 0}, {1, 0, 0}, {1e-6F, 0, 0}, f), 1.0F);
}

TYPED_TEST(LineProjection, MeasuresTheSecondSegmentFromTheReturnedPoint)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T t1 = kUntouched<T>;
    samples::Source<T> source(99);
    for (int i = 0; i < 1000; ++i) {
        const Point p1 = source.Point(5);
        const Point p2 = source.Point(5);
        const Vector d1 = source.Vector(5);
        const Vector d2 = source.Vector(5);
        const T s = ProjectLineSegmentOntoLineSegment(p1, d1, p2, d2, t1);
        ASSERT_GE(s, T(0));
        ASSERT_LE(s, T(1));
        const Point onFirst = p1 + d1 * s;
        ASSERT_TRUE(SameBits(t1, onFirst.distanceSquaredToLineSegment(p2, p2 + d2))) << i;
    }
}
