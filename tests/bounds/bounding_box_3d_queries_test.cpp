#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/intersect/line_projection.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <set>
#include <type_traits>
#include <utility>
#include <vector>

#include "box_testing.h"
#include "space_kit.h"

namespace {

using box_testing::AnyComponents;
using box_testing::ExpectSameComponents;
using box_testing::kMarker;
using box_testing::NumberStream;
using box_testing::OrderedBox;
using box_testing::OrderedIntegerBox;
using box_testing::SmallIntegers;
using box_testing::UniformComponents;

template <class Scalar>
class BoundingBox3Queries : public ::testing::Test {};

TYPED_TEST_SUITE(BoundingBox3Queries, box_testing::Scalars);

/// A box of ordinary size or, every other time, of any numbers.
template <class T>
CBoundingBox3d<T> AnyBox(NumberStream<T>& numbers, int trial)
{
    if (trial % 2 == 0) {
        return OrderedBox<CBoundingBox3d<T>, CadPoint3d<T>>(numbers, 8.0);
    }
    const auto min = AnyComponents<CadPoint3d<T>>(numbers);
    return CBoundingBox3d<T>(min, AnyComponents<CadPoint3d<T>>(numbers));
}

TYPED_TEST(BoundingBox3Queries, WritesCornersInOrder)
{
    CADGEOM_USE_SPACE_TYPES;
    Point corners[8];
    Of(1, 2, 3, 4, 5, 6).GetCornerPoints(corners);
    const Point expected[8] = {P(1, 2, 3), P(1, 2, 6), P(1, 5, 3), P(1, 5, 6),
                               P(4, 2, 3), P(4, 2, 6), P(4, 5, 3), P(4, 5, 6)};
    for (int k = 0; k < 8; ++k) {
        ExpectSameComponents(expected[k], corners[k]);
    }
    Box().GetCornerPoints(corners);
    ExpectSameComponents(Point(kMarker<T>, -kMarker<T>, kMarker<T>), corners[2]);
}

TYPED_TEST(BoundingBox3Queries, WritesEdgesInOrder)
{
    CADGEOM_USE_SPACE_TYPES;
    Point starts[12];
    Point ends[12];
    Of(1, 2, 3, 4, 5, 6).GetLineSegments(starts, ends);
    const Point expected[12][2] = {{P(1, 2, 3), P(4, 2, 3)}, {P(4, 2, 3), P(4, 5, 3)}, {P(4, 5, 3), P(1, 5, 3)},
                                   {P(1, 5, 3), P(1, 2, 3)}, {P(1, 2, 6), P(4, 2, 6)}, {P(4, 2, 6), P(4, 5, 6)},
                                   {P(4, 5, 6), P(1, 5, 6)}, {P(1, 5, 6), P(1, 2, 6)}, {P(1, 2, 3), P(1, 2, 6)},
                                   {P(4, 2, 3), P(4, 2, 6)}, {P(4, 5, 3), P(4, 5, 6)}, {P(1, 5, 3), P(1, 5, 6)}};
    for (int i = 0; i < 12; ++i) {
        ExpectSameComponents(expected[i][0], starts[i]);
        ExpectSameComponents(expected[i][1], ends[i]);
    }
}

TYPED_TEST(BoundingBox3Queries, PiercesWithExactFacePoints)
{
    CADGEOM_USE_SPACE_TYPES;
    const auto answer = box_testing::Pierce(Of(0, 0, 0, 2, 4, 8), P(-2, 1, 9), V(4, 1, -2));
    EXPECT_TRUE(answer.hits);
    EXPECT_EQ(T(0.5), answer.tNear);
    EXPECT_EQ(T(1), answer.tFar);
    EXPECT_EQ(T(0), answer.entry[0]);
    EXPECT_EQ(T(1.5), answer.entry[1]);
    EXPECT_EQ(T(8), answer.entry[2]);
    EXPECT_EQ(T(2), answer.exit[0]);
    EXPECT_EQ(T(2), answer.exit[1]);
    EXPECT_EQ(T(7), answer.exit[2]);
}

TYPED_TEST(BoundingBox3Queries, PiercesInsideBehindAndBesideAsALine)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 4, 4, 4);
    const auto inside = box_testing::Pierce(box, P(1, 2, 2), V(1, 0, 0));
    EXPECT_TRUE(inside.hits);
    EXPECT_EQ(T(-1), inside.tNear);
    EXPECT_EQ(T(3), inside.tFar);
    const auto behind = box_testing::Pierce(box, P(9, 2, 2), V(1, 0, 0));
    EXPECT_TRUE(behind.hits);
    EXPECT_EQ(T(-9), behind.tNear);
    const auto beside = box_testing::Pierce(box, P(1, 2, 5), V(1, 1, 0));
    EXPECT_FALSE(beside.hits);
    EXPECT_EQ(kMarker<T>, beside.tNear);
    EXPECT_EQ(-kMarker<T>, beside.tFar);
    EXPECT_EQ(T(77), beside.entry[2]);
    const auto none = box_testing::Pierce(box, P(1, 2, 3), V(0, 0, 0));
    EXPECT_TRUE(none.hits);
    EXPECT_EQ(-kMarker<T>, none.tNear);
    EXPECT_EQ(T(3), none.entry[2]);
}

TYPED_TEST(BoundingBox3Queries, LeavesAxesThatDecidedOnAMiss)
{
    CADGEOM_USE_SPACE_TYPES;
    // x decides first for both ends, then y raises the entry above the exit: both are written, z is not.
    const auto answer = box_testing::Pierce(Of(0, 0, 0, 1, 1, 1), P(-1, -5, 0.5), V(1, 1, 0));
    EXPECT_FALSE(answer.hits);
    EXPECT_EQ(T(5), answer.tNear);
    EXPECT_EQ(T(2), answer.tFar);
    EXPECT_EQ(T(0), answer.entry[0]);
    EXPECT_EQ(T(0), answer.entry[1]);
    EXPECT_EQ(T(77), answer.entry[2]);
    EXPECT_EQ(T(1), answer.exit[0]);
    EXPECT_EQ(T(77), answer.exit[1]);
    EXPECT_EQ(T(77), answer.exit[2]);
}

TYPED_TEST(BoundingBox3Queries, PiercesAsTheSlabStepsSayForAnyNumbers)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(1);
    int hitCount = 0;
    for (int trial = 0; trial < 50000; ++trial) {
        const Box box = AnyBox(numbers, trial);
        const Point origin = AnyComponents<Point>(numbers);
        const Vector direction = AnyComponents<Vector>(numbers);
        const auto expected =
            box_testing::RayStepByStep<3, T>(box.GetMin().data(), box.GetMax().data(), origin.data(), direction.data());
        box_testing::ExpectSameAnswer(expected, box_testing::Pierce(box, origin, direction));
        ASSERT_FALSE(this->HasFailure()) << "trial " << trial;
        hitCount += expected.hits ? 1 : 0;
    }
    EXPECT_GT(hitCount, 2000);
}

TYPED_TEST(BoundingBox3Queries, PiercesWhereTheOriginIsAnOutput)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 2, 4, 8);
    Point point = P(-2, 1, 9);
    EXPECT_TRUE(box.RayPierce(point, V(4, 1, -2), &point[1], nullptr, &point, nullptr));
    ExpectSameComponents(P(0, 1.5, 8), point);
}

TYPED_TEST(BoundingBox3Queries, EntersOnTheBoundaryOfTheBox)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(2);
    const T tolerance = std::is_same_v<T, float> ? T(1e-3) : T(1e-10);
    for (int trial = 0; trial < 2000; ++trial) {
        Box box = OrderedBox<Box, Point>(numbers, 10.0);
        const auto answer =
            box_testing::Pierce(box, UniformComponents<Point>(numbers, 20.0), UniformComponents<Vector>(numbers, 1.0));
        if (answer.hits) {
            bool isOnFace = false;
            for (int i = 0; i < 3; ++i) {
                isOnFace = isOnFace || answer.entry[i] == box.GetMin()[i] || answer.entry[i] == box.GetMax()[i];
            }
            EXPECT_TRUE(isOnFace);
            EXPECT_TRUE(box.ContainsPoint(Point(answer.entry[0], answer.entry[1], answer.entry[2]), tolerance));
            EXPECT_LE(answer.tNear, answer.tFar);
        }
    }
}

TYPED_TEST(BoundingBox3Queries, CountsAFaceInThePlaneToTheSideOfTheNormal)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(box.PlaneIntersects(P(0, 0, 0), V(0, 0, 1), T(0)));
    EXPECT_TRUE(box.PlaneIntersects(P(0, 0, 0), V(0, 0, -1), T(0)));
    EXPECT_TRUE(box.PlaneIntersects(P(0, 0, 0.5), V(0, 0, 7), T(0)));
    EXPECT_TRUE(box.PlaneIntersects(P(0, 0, 1), V(0, 0, 1), T(0)));
    EXPECT_FALSE(box.PlaneIntersects(P(0, 0, 1.01), V(0, 0, 1), T(0)));
}

TYPED_TEST(BoundingBox3Queries, NeverAcceptsTheFirstCornerByTolerance)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(box.PlaneIntersects(P(-0.1, 0, 0), V(1, 1, 1), T(0.1)));
    EXPECT_TRUE(box.PlaneIntersects(P(0, 0, -0.25), V(0, 0, 1), T(0.5)));
    // The last corner alone, from the other side.
    EXPECT_TRUE(box.PlaneIntersects(P(1.1, 1, 1), V(1, 1, 1), T(0.1)));
    EXPECT_TRUE(box.PlaneIntersects(P(0, 0, -0.5), V(0, 0, 1), T(-0.5)));
    EXPECT_FALSE(box.PlaneIntersects(P(0, 0, -0.5), V(0, 0, 1), T(0.49)));
    EXPECT_FALSE(box.PlaneIntersects(P(0, 0, -0.5), V(0, 0, 1), nan));
}

TYPED_TEST(BoundingBox3Queries, MeasuresInZWithoutANormal)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(box.PlaneIntersects(P(5, 5, 0.5), V(0, 0, 0), T(0)));
    EXPECT_TRUE(box.PlaneIntersects(P(5, 5, 0.5), V(0, 0, 0), T(0.5)));
    EXPECT_FALSE(box.PlaneIntersects(P(5, 5, 0.5), V(0, 0, 0), T(0.25)));
    // At the threshold of |n|^2 the normal is none, above it counts: with it the plane x = 2 is 1 away.
    const T atThreshold = std::is_same_v<T, float> ? T(1e-4F) : T(1e-6);
    const T above = atThreshold * T(1.5);
    EXPECT_TRUE(box.PlaneIntersects(P(2, 0, 0.25), Vector(atThreshold * T(0.5), T(0), T(0)), T(0.25)));
    EXPECT_FALSE(box.PlaneIntersects(P(2, 0, 0.25), Vector(above, T(0), T(0)), T(0.25)));
    EXPECT_TRUE(box.PlaneIntersects(P(2, 0, 9), Vector(above, T(0), T(0)), T(1.0001)));
}

TYPED_TEST(BoundingBox3Queries, MeetsNoPlaneWhenEmpty)
{
    CADGEOM_USE_SPACE_TYPES;
    EXPECT_FALSE(Box().PlaneIntersects(P(0, 0, 0), V(0, 0, 1), T(0)));
    EXPECT_FALSE(Box().PlaneIntersects(P(0, 0, 0), V(0, 0, 1), kMarker<T>));
}

/// The plane test corner by corner.
template <class T>
bool PlaneStepByStep(const CBoundingBox3d<T>& box, const CadPoint3d<T>& p, const CadVector3d<T>& n, T tol)
{
    if (box.IsEmpty()) {
        return false;
    }
    const T threshold = std::is_same_v<T, float> ? static_cast<T>(1e-8F) : static_cast<T>(1e-12);
    int recorded = 0;
    CadPoint3d<T> corners[8];
    box.GetCornerPoints(corners);
    for (const CadPoint3d<T>& c : corners) {
        const T s = n.dot(c - p);
        const int side = s >= T(0) ? 1 : 2;
        if (tol != T(0)) {
            const T nn = n.dot(n);
            const T distance = nn > threshold ? s * s / nn : (c[2] - p[2]) * (c[2] - p[2]);
            if (distance <= tol * tol && recorded != 0) {
                return true;
            }
        }
        if (recorded != 0 && side != recorded) {
            return true;
        }
        recorded = side;
    }
    return false;
}

TYPED_TEST(BoundingBox3Queries, MeetsPlanesAsTheStepsSayForAnyNumbers)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(3);
    int meetCount = 0;
    for (int trial = 0; trial < 50000; ++trial) {
        const Box box = AnyBox(numbers, trial);
        const Point p = AnyComponents<Point>(numbers);
        const Vector n = AnyComponents<Vector>(numbers);
        const T tolerance = trial % 3 == 0 ? T(0) : numbers.Any();
        const bool meets = PlaneStepByStep(box, p, n, tolerance);
        ASSERT_EQ(meets, box.PlaneIntersects(p, n, tolerance)) << "trial " << trial;
        meetCount += meets ? 1 : 0;
    }
    EXPECT_GT(meetCount, 5000);
    EXPECT_LT(meetCount, 45000);
}

TYPED_TEST(BoundingBox3Queries, MeasuresTheDistanceToTheNearestPoint)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_EQ(T(1), box.GetClosestDistanceSquared(P(2, 0.5, 0.5)));
    EXPECT_EQ(T(2), box.GetClosestDistanceSquared(P(2, -1, 0.5)));
    EXPECT_EQ(T(3), box.GetClosestDistanceSquared(P(2, 2, 2)));
    EXPECT_EQ(T(12), box.GetClosestDistanceSquared(P(-2, -2, -2)));
    EXPECT_SAME_BITS(T(0), box.GetClosestDistanceSquared(P(0.25, 0.5, 0.75)));
    EXPECT_SAME_BITS(T(0), box.GetClosestDistanceSquared(P(1, 1, 1)));
    const T infinity = std::numeric_limits<T>::infinity();
    EXPECT_EQ(infinity, box.GetClosestDistanceSquared(Point(infinity, T(0), T(0))));
    EXPECT_TRUE(std::isnan(box.GetClosestDistanceSquared(Point(nan, T(0), T(0)))));
    const Box half(P(0, 0, 0), Point(infinity, T(1), T(1)));
    EXPECT_SAME_BITS(T(0), half.GetClosestDistanceSquared(Point(infinity, T(0), T(0))));
}

TYPED_TEST(BoundingBox3Queries, PutsTheNearestPointOnTheFacesOfACrossedBox)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box crossed = Of(5, 0, 0, 1, 1, 1);
    EXPECT_EQ(T(16), crossed.GetClosestDistanceSquared(P(9, 0, 0) - V(8, 0, 0)));
    EXPECT_EQ(T(36), crossed.GetClosestDistanceSquared(P(7, 0.5, 0.5)));
    EXPECT_EQ(T(36), crossed.GetClosestDistanceSquared(P(-1, 0.5, 0.5)));
}

TYPED_TEST(BoundingBox3Queries, MeasuresTheDistanceToTheFarthestCorner)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 2, 3);
    EXPECT_EQ(T(14), box.GetFarthestDistanceSquared(P(0, 0, 0)));
    EXPECT_EQ(T(1 + 4 + 9), box.GetFarthestDistanceSquared(P(1, 2, 3)));
    EXPECT_EQ(T(4 + 4 + 9), box.GetFarthestDistanceSquared(P(-1, 2, 0)));
    EXPECT_SAME_BITS(T(0), box.GetFarthestDistanceSquared(Point(nan, T(0), T(0))));
}

TYPED_TEST(BoundingBox3Queries, TakesTheFarthestOfAllCornersForAnyNumbers)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(4);
    for (int trial = 0; trial < 20000; ++trial) {
        const Box box = AnyBox(numbers, trial);
        const Point p = AnyComponents<Point>(numbers);
        const Vector d = AnyComponents<Vector>(numbers);
        Point corners[8];
        box.GetCornerPoints(corners);
        T toPoint = T(0);
        T toLine = -kMarker<T>;
        T toPlane = -kMarker<T>;
        T nearestToPlane = kMarker<T>;
        for (const Point& c : corners) {
            const T distance = p.distanceSquared(c);
            toPoint = distance > toPoint ? distance : toPoint;
            const T t = c.projectOntoLineParam(p, d);
            const T lineDistance = (p + d * t).distanceSquared(c);
            toLine = lineDistance > toLine ? lineDistance : toLine;
            const T height = c.distanceSquaredToPlane(p, d);
            toPlane = height > toPlane ? height : toPlane;
            nearestToPlane = height < nearestToPlane ? height : nearestToPlane;
        }
        ASSERT_SAME_BITS(toPoint, box.GetFarthestDistanceSquared(p)) << "trial " << trial;
        ASSERT_SAME_BITS(toLine, box.GetFarthestDistanceSquared(p, d)) << "trial " << trial;
        ASSERT_SAME_BITS(toPlane, box.GetFarthestPlaneDistanceSquared(p, d)) << "trial " << trial;
        ASSERT_SAME_BITS(PlaneStepByStep(box, p, d, T(0)) ? T(0) : nearestToPlane,
                         box.GetClosestPlaneDistanceSquared(p, d))
            << "trial " << trial;
    }
}

TYPED_TEST(BoundingBox3Queries, TakesTheNearestOfAllEdgesForLinesThatMiss)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(5);
    int missCount = 0;
    for (int trial = 0; trial < 20000; ++trial) {
        const Box box = AnyBox(numbers, trial);
        const Point p = AnyComponents<Point>(numbers);
        const Vector d = AnyComponents<Vector>(numbers);
        T nearest = T(0);
        if (!box.RayPierce(p, d, nullptr, nullptr, nullptr, nullptr)) {
            ++missCount;
            nearest = kMarker<T>;
            Point starts[12];
            Point ends[12];
            box.GetLineSegments(starts, ends);
            for (int i = 0; i < 12; ++i) {
                Point foot;
                T distance;
                ProjectLineOntoLineSegment<T>(p, d, starts[i], ends[i], foot, distance, nullptr);
                nearest = distance < nearest ? distance : nearest;
            }
        }
        ASSERT_SAME_BITS(nearest, box.GetClosestDistanceSquared(p, d)) << "trial " << trial;
    }
    EXPECT_GT(missCount, 5000);
}

TYPED_TEST(BoundingBox3Queries, MeasuresDistancesToLines)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_EQ(T(0), box.GetClosestDistanceSquared(P(-1, 0.5, 0.5), V(2, 0, 0)));
    EXPECT_EQ(T(4), box.GetClosestDistanceSquared(P(-1, 0.5, 3), V(2, 0, 0)));
    EXPECT_EQ(T(8), box.GetClosestDistanceSquared(P(-1, 3, 3), V(2, 0, 0)));
    EXPECT_EQ(T(18), box.GetFarthestDistanceSquared(P(-1, 3, 3), V(2, 0, 0)));
    // Past the corner (1, 1, 1) at an angle: the plane x + y + z = 6 holds the line and is sqrt(3) away.
    EXPECT_NEAR(T(3), box.GetClosestDistanceSquared(P(2, 2, 2), V(1, -1, 0)), T(1e-6));
    // Without a direction the line is its point.
    EXPECT_EQ(T(0), box.GetClosestDistanceSquared(P(0.5, 0.5, 0.5), V(0, 0, 0)));
    EXPECT_EQ(T(1), box.GetClosestDistanceSquared(P(1, 1, 2), V(0, 0, 0)));
}

TYPED_TEST(BoundingBox3Queries, IsNeverFartherAtItsNearestThanAnyOfItsPoints)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(6);
    const double slack = std::is_same_v<T, float> ? 1e-3 : 1e-10;
    for (int trial = 0; trial < 300; ++trial) {
        const auto box = OrderedBox<Box, Point>(numbers, 5.0);
        const Point p = UniformComponents<Point>(numbers, 10.0);
        const Vector d = UniformComponents<Vector>(numbers, 1.0);
        double nearest[3] = {1e30, 1e30, 1e30};
        double farthest[3] = {0, 0, 0};
        const int n = 12;
        for (int k = 0; k < (n + 1) * (n + 1) * (n + 1); ++k) {
            Point sample;
            const int step[3] = {k % (n + 1), k / (n + 1) % (n + 1), k / (n + 1) / (n + 1)};
            for (int i = 0; i < 3; ++i) {
                const T fraction = static_cast<T>(step[i]) / static_cast<T>(n);
                sample[i] = box.GetMin()[i] + fraction * (box.GetMax()[i] - box.GetMin()[i]);
            }
            const double distances[3] = {static_cast<double>(p.distanceSquared(sample)),
                                         static_cast<double>(sample.distanceSquaredToLine(p, d)),
                                         static_cast<double>(sample.distanceSquaredToPlane(p, d))};
            for (int i = 0; i < 3; ++i) {
                nearest[i] = std::min(nearest[i], distances[i]);
                farthest[i] = std::max(farthest[i], distances[i]);
            }
        }
        const double closest[3] = {static_cast<double>(box.GetClosestDistanceSquared(p)),
                                   static_cast<double>(box.GetClosestDistanceSquared(p, d)),
                                   static_cast<double>(box.GetClosestPlaneDistanceSquared(p, d))};
        const double largest[3] = {static_cast<double>(box.GetFarthestDistanceSquared(p)),
                                   static_cast<double>(box.GetFarthestDistanceSquared(p, d)),
                                   static_cast<double>(box.GetFarthestPlaneDistanceSquared(p, d))};
        // The samples lie within half a cell of every point of the box.
        const double cell = std::sqrt(3.0) * 10.0 / n / 2.0;
        for (int i = 0; i < 3; ++i) {
            EXPECT_LE(closest[i], largest[i]);
            EXPECT_LE(closest[i], nearest[i] + slack) << i;
            EXPECT_GE(std::sqrt(closest[i]) + cell, std::sqrt(nearest[i])) << i;
            EXPECT_GE(largest[i], farthest[i] - slack) << i;
            EXPECT_LE(std::sqrt(largest[i]), std::sqrt(farthest[i]) + slack) << i;
        }
    }
}

TYPED_TEST(BoundingBox3Queries, MeasuresDistancesToPlanes)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_EQ(T(0), box.GetClosestPlaneDistanceSquared(P(0, 0, 0.5), V(0, 0, 2)));
    EXPECT_EQ(T(4), box.GetClosestPlaneDistanceSquared(P(0, 0, 3), V(0, 0, 2)));
    EXPECT_EQ(T(9), box.GetFarthestPlaneDistanceSquared(P(0, 0, 3), V(0, 0, 2)));
    EXPECT_EQ(T(4), box.GetClosestPlaneDistanceSquared(P(0, 0, 3), V(0, 0, 0)));
}

TYPED_TEST(BoundingBox3Queries, OutlinesItselfAlongADiagonal)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 2, 3);
    Point forward[6];
    Point backward[6];
    box.GetSweptPolygon(V(1, 1, 1), forward);
    box.GetSweptPolygon(V(-1, -1, -1), backward);
    const Point expected[6] = {P(1, 0, 0), P(1, 0, 3), P(0, 0, 3), P(0, 2, 3), P(0, 2, 0), P(1, 2, 0)};
    for (int i = 0; i < 6; ++i) {
        ExpectSameComponents(expected[i], forward[i]);
        ExpectSameComponents(expected[i], backward[i]);
    }
}

TYPED_TEST(BoundingBox3Queries, OutlinesItselfByTheSignsOfTheDirection)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    struct Case {
        Vector direction;
        Point polygon[6];
    };
    const Case cases[] = {
        {V(1, 1, -1), {P(1, 0, 0), P(1, 0, 1), P(1, 1, 1), P(0, 1, 1), P(0, 1, 0), P(0, 0, 0)}},
        {V(1, -1, 1), {P(1, 0, 0), P(0, 0, 0), P(0, 0, 1), P(0, 1, 1), P(1, 1, 1), P(1, 1, 0)}},
        {V(1, -1, -1), {P(0, 1, 0), P(0, 0, 0), P(0, 0, 1), P(1, 0, 1), P(1, 1, 1), P(1, 1, 0)}},
        {V(-1, 1, 1), {P(0, 1, 0), P(0, 0, 0), P(0, 0, 1), P(1, 0, 1), P(1, 1, 1), P(1, 1, 0)}},
        {V(-1, 0, 0), {P(1, 0, 0), P(1, 0, 1), P(0, 0, 1), P(0, 1, 1), P(0, 1, 0), P(1, 1, 0)}},
        {V(0, 0, -2), {P(1, 0, 0), P(1, 0, 1), P(1, 1, 1), P(0, 1, 1), P(0, 1, 0), P(0, 0, 0)}},
    };
    for (const Case& one : cases) {
        Point polygon[6];
        box.GetSweptPolygon(one.direction, polygon);
        for (int i = 0; i < 6; ++i) {
            ExpectSameComponents(one.polygon[i], polygon[i]);
        }
    }
}

TYPED_TEST(BoundingBox3Queries, OutlinesAllCornersButTheNearestAndTheFarthest)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(7);
    const Box box = Of(0, 0, 0, 1, 1, 1);
    Point corners[8];
    box.GetCornerPoints(corners);
    for (int trial = 0; trial < 200; ++trial) {
        const Vector direction = UniformComponents<Vector>(numbers, 1.0);
        Point polygon[6];
        box.GetSweptPolygon(direction, polygon);
        const auto isOutline = [&](const Point& corner) {
            return std::count_if(polygon, polygon + 6, [&](const Point& p) { return p.isEqual(corner); }) == 1;
        };
        const auto nearest = std::min_element(corners, corners + 8, [&](const Point& a, const Point& b) {
            return direction.dotPoint(a) < direction.dotPoint(b);
        });
        const auto farthest = std::max_element(corners, corners + 8, [&](const Point& a, const Point& b) {
            return direction.dotPoint(a) < direction.dotPoint(b);
        });
        EXPECT_FALSE(isOutline(*nearest));
        EXPECT_FALSE(isOutline(*farthest));
        EXPECT_EQ(6, std::count_if(corners, corners + 8, isOutline));
        for (int i = 0; i < 6; ++i) {
            EXPECT_EQ(T(1), polygon[i].distanceSquared(polygon[(i + 1) % 6]));
        }
    }
}

} // namespace
