#include <cadgeom/bounds/bounding_box_2d.h>
#include <cadgeom/platform/exceptions.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include "box_testing.h"

namespace {

using box_testing::AnyComponents;
using box_testing::ExpectSameBox;
using box_testing::ExpectSameComponents;
using box_testing::kMarker;
using box_testing::NumberStream;
using box_testing::OrderedBox;
using box_testing::SmallIntegers;

/// Short constructors of one scalar type.
template <class Scalar>
struct Kit {
    using T = Scalar;
    using Box = CBoundingBox2d<T>;
    using Point = CadPoint2d<T>;
    using Vector = CadVector2d<T>;

    static Box Of(double minX, double minY, double maxX, double maxY) { return Box(P(minX, minY), P(maxX, maxY)); }
    static Point P(double x, double y) { return Point(static_cast<T>(x), static_cast<T>(y)); }
    static Vector V(double x, double y) { return Vector(static_cast<T>(x), static_cast<T>(y)); }
};

#define CADGEOM_USE_BOX_TYPES                                                                                          \
    using T [[maybe_unused]] = TypeParam;                                                                              \
    using Box [[maybe_unused]] = CBoundingBox2d<T>;                                                                    \
    using Point [[maybe_unused]] = CadPoint2d<T>;                                                                      \
    using Vector [[maybe_unused]] = CadVector2d<T>;                                                                    \
    [[maybe_unused]] const auto Of = Kit<T>::Of;                                                                       \
    [[maybe_unused]] const auto P = Kit<T>::P;                                                                         \
    [[maybe_unused]] const auto V = Kit<T>::V;                                                                         \
    [[maybe_unused]] const T nan = std::numeric_limits<T>::quiet_NaN();                                                \
    [[maybe_unused]] const Box wholePlane(Point(-kMarker<T>, -kMarker<T>), Point(kMarker<T>, kMarker<T>))

template <class Scalar>
class BoundingBox2 : public ::testing::Test {};

TYPED_TEST_SUITE(BoundingBox2, box_testing::Scalars);

TYPED_TEST(BoundingBox2, HoldsItsCornersAndNothingElse)
{
    CADGEOM_USE_BOX_TYPES;
    EXPECT_EQ(4 * sizeof(T), sizeof(Box));
    EXPECT_TRUE(std::is_trivially_copyable_v<Box>);
    EXPECT_TRUE(std::is_standard_layout_v<Box>);
}

TYPED_TEST(BoundingBox2, StartsEmptyWithTheSinglePrecisionMarker)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box;
    EXPECT_TRUE(box.IsEmpty());
    ExpectSameComponents(Point(kMarker<T>, kMarker<T>), box.GetMin());
    ExpectSameComponents(Point(-kMarker<T>, -kMarker<T>), box.GetMax());
    EXPECT_EQ(std::numeric_limits<float>::max(), static_cast<float>(box.GetMin()[0]));
}

TYPED_TEST(BoundingBox2, IsEmptyByTheMinimumOfXAlone)
{
    CADGEOM_USE_BOX_TYPES;
    EXPECT_TRUE(Box(Point(kMarker<T>, T(0)), P(1, 1)).IsEmpty());
    EXPECT_FALSE(Box(Point(T(0), kMarker<T>), Point(-kMarker<T>, -kMarker<T>)).IsEmpty());
    EXPECT_FALSE(Box(Point(std::nextafter(kMarker<T>, T(0)), kMarker<T>), P(1, 1)).IsEmpty());
    EXPECT_FALSE(Of(2, 2, 1, 1).IsEmpty());
    EXPECT_FALSE(Box(Point(nan, T(0)), P(1, 1)).IsEmpty());
}

TYPED_TEST(BoundingBox2, ResetsToEmpty)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(1, 2, 3, 4);
    box.Reset();
    ExpectSameBox(Box(), box);
}

TYPED_TEST(BoundingBox2, StoresCornersAsTheyAre)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(3, 4, 1, 2);
    ExpectSameComponents(P(3, 4), box.GetMin());
    ExpectSameComponents(P(1, 2), box.GetMax());
    box.SetMinMax(P(9, 8), P(7, 6));
    ExpectSameComponents(P(9, 8), box.GetMin());
    ExpectSameComponents(P(7, 6), box.GetMax());
    box.SetMinMax(box.GetMax(), box.GetMin());
    ExpectSameBox(Of(7, 6, 9, 8), box);
}

TYPED_TEST(BoundingBox2, CopiesItsMarkerLikeAnyValue)
{
    CADGEOM_USE_BOX_TYPES;
    const Box empty;
    const Box copy(empty);
    Box assigned = Of(1, 2, 3, 4);
    assigned = empty;
    ExpectSameBox(empty, copy);
    ExpectSameBox(empty, assigned);
    Box& self = assigned;
    assigned = self;
    ExpectSameBox(empty, assigned);
}

TYPED_TEST(BoundingBox2, GivesMiddleSizeAndArea)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(1, 2, 4, 8);
    ExpectSameComponents(P(2.5, 5), box.GetMid());
    ExpectSameComponents(V(3, 6), box.GetSize());
    EXPECT_EQ(T(18), box.GetArea());
}

TYPED_TEST(BoundingBox2, GivesMiddleSizeAndAreaOfAnEmptyBoxWithoutATest)
{
    CADGEOM_USE_BOX_TYPES;
    Box box;
    ExpectSameComponents(P(0, 0), box.GetMid());
    const T size = -kMarker<T> - kMarker<T>;
    ExpectSameComponents(Vector(size, size), box.GetSize());
    EXPECT_SAME_BITS(size * size, box.GetArea());
}

TYPED_TEST(BoundingBox2, TakesItsFirstPointAsBothCorners)
{
    CADGEOM_USE_BOX_TYPES;
    Box box;
    box.CheckPoint(P(-3, 5));
    ExpectSameBox(Of(-3, 5, -3, 5), box);
    EXPECT_FALSE(box.IsEmpty());
    EXPECT_EQ(T(0), box.GetArea());
}

TYPED_TEST(BoundingBox2, GrowsToContainPoints)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 1, 1);
    box.CheckPoint(P(0.5, 2));
    ExpectSameBox(Of(0, 0, 1, 2), box);
    box.CheckPoint(P(-1, 0.5));
    ExpectSameBox(Of(-1, 0, 1, 2), box);
    box.CheckPoint(Point(nan, T(7)));
    ExpectSameBox(Of(-1, 0, 1, 7), box);
    box.CheckPoint(Point(T(-9), nan));
    ExpectSameBox(Of(-9, 0, 1, 7), box);
}

TYPED_TEST(BoundingBox2, KeepsTheSignOfZeroWhenItGrows)
{
    CADGEOM_USE_BOX_TYPES;
    Box box(Point(T(0), -T(0)), Point(T(0), -T(0)));
    box.CheckPoint(Point(-T(0), T(0)));
    ExpectSameBox(Box(Point(T(0), -T(0)), Point(T(0), -T(0))), box);
}

TYPED_TEST(BoundingBox2, TakesPointsOfItsOwn)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(3, 0, 1, 1);
    box.CheckPoint(box.GetMin());
    ExpectSameBox(Of(3, 0, 3, 1), box);
}

TYPED_TEST(BoundingBox2, GrowsToContainBoxes)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 1, 1);
    box.CheckBoundingBox(Of(-1, 0.5, 0.5, 3));
    ExpectSameBox(Of(-1, 0, 1, 3), box);
    Box empty;
    empty.CheckBoundingBox(Of(1, 2, 3, 4));
    ExpectSameBox(Of(1, 2, 3, 4), empty);
}

TYPED_TEST(BoundingBox2, BecomesTheWholePlaneByMergingAnEmptyBox)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 1, 1);
    box.CheckBoundingBox(Box());
    ExpectSameBox(wholePlane, box);
    Box empty;
    empty.CheckBoundingBox(Box());
    ExpectSameBox(wholePlane, empty);
    Box self;
    self.CheckBoundingBox(self);
    ExpectSameBox(wholePlane, self);
}

TYPED_TEST(BoundingBox2, SortsItsCornersByMergingItself)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 3, 1, 2);
    box.CheckBoundingBox(box);
    ExpectSameBox(Of(0, 2, 1, 3), box);
}

TYPED_TEST(BoundingBox2, ContainsPointsInclusively)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 1, 2);
    for (const Point& inside : {P(0, 0), P(1, 2), P(0, 2), P(1, 0), P(0.5, 1)}) {
        EXPECT_TRUE(box.ContainsPoint(inside, T(0)));
    }
    const T e = std::numeric_limits<T>::epsilon();
    EXPECT_FALSE(box.ContainsPoint(Point(T(1) + e, T(1)), T(0)));
    EXPECT_FALSE(box.ContainsPoint(Point(-e, T(1)), T(0)));
    EXPECT_FALSE(box.ContainsPoint(Point(T(0.5), T(2) + T(2) * e), T(0)));
    EXPECT_FALSE(box.ContainsPoint(Point(T(0.5), -e), T(0)));
}

TYPED_TEST(BoundingBox2, WidensByTheTolerance)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 1, 2);
    EXPECT_TRUE(box.ContainsPoint(P(-0.25, 2.25), T(0.25)));
    EXPECT_TRUE(box.ContainsPoint(P(1.25, -0.25), T(0.25)));
    EXPECT_FALSE(box.ContainsPoint(P(1.2501, 0), T(0.25)));
    EXPECT_FALSE(box.ContainsPoint(P(0, -0.2501), T(0.25)));
    EXPECT_FALSE(box.ContainsPoint(P(0, 0), T(-0.25)));
    EXPECT_TRUE(box.ContainsPoint(P(0.25, 1.75), T(-0.25)));
    EXPECT_FALSE(box.ContainsPoint(P(0.5, 0.5), nan));
    EXPECT_FALSE(box.ContainsPoint(Point(nan, T(1)), T(1)));
    EXPECT_FALSE(box.ContainsPoint(Point(T(1), nan), T(1)));
}

TYPED_TEST(BoundingBox2, ContainsNothingWhenEmptyUnlessTheToleranceReachesTheMarker)
{
    CADGEOM_USE_BOX_TYPES;
    EXPECT_FALSE(Box().ContainsPoint(P(0, 0), T(1e30)));
    EXPECT_TRUE(Box().ContainsPoint(P(0, 0), kMarker<T>));
}

TYPED_TEST(BoundingBox2, ContainsBoxesInclusively)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 4, 4);
    EXPECT_TRUE(box.ContainsBoundingBox(box, T(0)));
    EXPECT_TRUE(box.ContainsBoundingBox(Of(1, 1, 2, 2), T(0)));
    EXPECT_FALSE(box.ContainsBoundingBox(Of(-1, 0, 4, 4), T(0.5)));
    EXPECT_FALSE(box.ContainsBoundingBox(Of(0, -1, 4, 4), T(0.5)));
    EXPECT_FALSE(box.ContainsBoundingBox(Of(0, 0, 5, 4), T(0.5)));
    EXPECT_FALSE(box.ContainsBoundingBox(Of(0, 0, 4, 5), T(0.5)));
    EXPECT_TRUE(box.ContainsBoundingBox(Of(-1, -1, 5, 5), T(1)));
    // Only the minimum's lower and the maximum's upper bounds are looked at.
    EXPECT_TRUE(box.ContainsBoundingBox(Of(9, 9, -9, -9), T(0)));
}

TYPED_TEST(BoundingBox2, ContainsEmptyBoxesAlways)
{
    CADGEOM_USE_BOX_TYPES;
    EXPECT_TRUE(Of(0, 0, 1, 1).ContainsBoundingBox(Box(), T(0)));
    EXPECT_TRUE(Box().ContainsBoundingBox(Box(), T(-1)));
    EXPECT_TRUE(Of(0, 0, 1, 1).ContainsBoundingBox(Box(), nan));
    EXPECT_FALSE(Box().ContainsBoundingBox(Of(0, 0, 1, 1), T(0)));
    EXPECT_FALSE(Box().ContainsBoundingBox(Of(0, 0, 1, 1), kMarker<T>));
}

TYPED_TEST(BoundingBox2, IntersectsTouchingBoxes)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 1, 1);
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(1, 0, 2, 1), T(0)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(1, 1, 2, 2), T(0)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(-1, -1, 0, 0), T(0)));
    EXPECT_FALSE(box.BoundingBoxIntersects(Of(1.5, 0, 2, 1), T(0.25)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(1.5, 0, 2, 1), T(0.5)));
    EXPECT_FALSE(box.BoundingBoxIntersects(Of(0, 1.5, 1, 2), T(0.25)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(0, -1.5, 1, -0.5), T(0.5)));
    EXPECT_FALSE(box.BoundingBoxIntersects(Of(1, 0, 2, 1), T(-0.25)));
}

TYPED_TEST(BoundingBox2, KeepsEmptyBoxesApartByTheirMarkerAlone)
{
    CADGEOM_USE_BOX_TYPES;
    EXPECT_FALSE(Box().BoundingBoxIntersects(Of(0, 0, 1, 1), T(0)));
    EXPECT_FALSE(Of(0, 0, 1, 1).BoundingBoxIntersects(Box(), T(0)));
    EXPECT_FALSE(Box().BoundingBoxIntersects(Box(), T(0)));
    EXPECT_TRUE(Box().BoundingBoxIntersects(wholePlane, T(0)));
}

TYPED_TEST(BoundingBox2, IsApartFromNothingByNan)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 1, 1);
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(5, 5, 6, 6), nan));
    EXPECT_TRUE(box.BoundingBoxIntersects(Box(Point(nan, T(0)), Point(nan, T(1))), T(0)));
    EXPECT_FALSE(box.BoundingBoxIntersects(Box(Point(nan, T(2)), Point(nan, T(3))), T(0)));
}

TYPED_TEST(BoundingBox2, ClipsToAnotherBox)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 4, 4);
    EXPECT_TRUE(box.IntersectWithBoundingBox(Of(1, -1, 9, 3)));
    ExpectSameBox(Of(1, 0, 4, 3), box);
    EXPECT_TRUE(box.IntersectWithBoundingBox(box));
    ExpectSameBox(Of(1, 0, 4, 3), box);
}

TYPED_TEST(BoundingBox2, ClipsToZeroWidthWhereBoxesTouch)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 1, 1);
    EXPECT_TRUE(box.IntersectWithBoundingBox(Of(1, 0, 2, 1)));
    ExpectSameBox(Of(1, 0, 1, 1), box);
}

TYPED_TEST(BoundingBox2, StaysCrossedOnTheAxisWhereClippingFails)
{
    CADGEOM_USE_BOX_TYPES;
    Box disjointInX = Of(0, 0, 1, 1);
    EXPECT_FALSE(disjointInX.IntersectWithBoundingBox(Of(2, 0.25, 3, 0.5)));
    ExpectSameBox(Of(2, 0, 1, 1), disjointInX);
    EXPECT_FALSE(disjointInX.IsEmpty());
    Box disjointInY = Of(0, 0, 1, 1);
    EXPECT_FALSE(disjointInY.IntersectWithBoundingBox(Of(0.5, 2, 3, 3)));
    ExpectSameBox(Of(0.5, 2, 1, 1), disjointInY);
    Box crossed = Of(2, 0, 1, 1);
    EXPECT_FALSE(crossed.IntersectWithBoundingBox(crossed));
    ExpectSameBox(Of(2, 0, 1, 1), crossed);
}

TYPED_TEST(BoundingBox2, KeepsItsOwnValuesWhereClippingComparesNan)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 1, 1);
    EXPECT_TRUE(box.IntersectWithBoundingBox(Box(Point(nan, nan), Point(nan, nan))));
    ExpectSameBox(Of(0, 0, 1, 1), box);
}

TYPED_TEST(BoundingBox2, MeetsSegmentsThatTouchIt)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 2, 2);
    EXPECT_TRUE(box.LineSegmentIntersects(P(-1, 1), P(0, 1)));
    EXPECT_FALSE(box.LineSegmentIntersects(P(-1, 1), P(-0.001, 1)));
    EXPECT_TRUE(box.LineSegmentIntersects(P(2, 1), P(3, 1)));
    EXPECT_FALSE(box.LineSegmentIntersects(P(2.001, 1), P(3, 1)));
    EXPECT_TRUE(box.LineSegmentIntersects(P(-1, 1), P(1, 3)));
    EXPECT_FALSE(box.LineSegmentIntersects(P(-1, 1.001), P(1, 3.001)));
    EXPECT_TRUE(box.LineSegmentIntersects(P(1, 1), P(1.5, 1.25)));
    EXPECT_TRUE(box.LineSegmentIntersects(P(0, -5), P(0, 5)));
    EXPECT_FALSE(box.LineSegmentIntersects(P(-0.001, -5), P(-0.001, 5)));
}

TYPED_TEST(BoundingBox2, TakesASegmentWithoutLengthAsAPoint)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 2, 2);
    EXPECT_TRUE(box.LineSegmentIntersects(P(1, 1), P(1, 1)));
    EXPECT_TRUE(box.LineSegmentIntersects(P(2, 2), P(2, 2)));
    EXPECT_FALSE(box.LineSegmentIntersects(P(3, 1), P(3, 1)));
    EXPECT_FALSE(box.LineSegmentIntersects(P(1, -1), P(1, -1)));
}

TYPED_TEST(BoundingBox2, TakesComponentsUpToMachineEpsilonAsParallel)
{
    CADGEOM_USE_BOX_TYPES;
    const T e = std::numeric_limits<T>::epsilon();
    const Box box = Of(1, 0, 2, 2);
    // As a direction of length e, x alone would reach the box only far away; as none it misses at once.
    EXPECT_FALSE(box.LineSegmentIntersects(P(0, 1), Point(e, T(1))));
    T tNear = T(7);
    EXPECT_FALSE(box.RayPierce(P(0, 1), Vector(e, T(0)), &tNear, nullptr, nullptr, nullptr));
    EXPECT_TRUE(box.RayPierce(P(0, 1), Vector(T(2) * e, T(0)), &tNear, nullptr, nullptr, nullptr));
    EXPECT_EQ(T(1) / (T(2) * e), tNear);
}

TYPED_TEST(BoundingBox2, TakesCrossedSidesInEitherOrderUnlessTheLineRunsAlongThem)
{
    CADGEOM_USE_BOX_TYPES;
    // Entry and exit of a slab are the smaller and the larger parameter, so that crossed sides bound the same slab.
    for (const Box& box : {Of(1, 0, -1, 2), Box()}) {
        EXPECT_TRUE(box.LineSegmentIntersects(P(-1, -1), P(1, 3)));
        EXPECT_TRUE(box.RayPierce(P(-1, -1), V(1, 2), nullptr, nullptr, nullptr, nullptr));
        // Along the axis only the order of minimum and maximum counts.
        EXPECT_FALSE(box.LineSegmentIntersects(P(0, -1), P(0, 3)));
        EXPECT_FALSE(box.RayPierce(P(0, -1), V(0, 1), nullptr, nullptr, nullptr, nullptr));
        EXPECT_FALSE(box.LineSegmentIntersects(P(0, 1), P(0, 1)));
    }
}

// Exact in integers: a segment misses a rectangle when their extents do, or all corners lie on one side of its line.
bool SegmentMeetsRectangle(const std::array<int, 4>& box, const std::array<int, 4>& segment)
{
    const auto [x0, y0, x1, y1] = segment;
    if (std::max(x0, x1) < box[0] || std::min(x0, x1) > box[2] || std::max(y0, y1) < box[1] ||
        std::min(y0, y1) > box[3]) {
        return false;
    }
    int left = 0;
    int right = 0;
    for (const int x : {box[0], box[2]}) {
        for (const int y : {box[1], box[3]}) {
            const int side = (x1 - x0) * (y - y0) - (y1 - y0) * (x - x0);
            left += side > 0 ? 1 : 0;
            right += side < 0 ? 1 : 0;
        }
    }
    return left < 4 && right < 4;
}

TYPED_TEST(BoundingBox2, AgreesWithIntegerArithmeticOnSegments)
{
    CADGEOM_USE_BOX_TYPES;
    NumberStream<T> numbers(1);
    int meetCount = 0;
    constexpr int kTrials = 20000;
    for (int trial = 0; trial < kTrials; ++trial) {
        const auto box = box_testing::OrderedIntegerBox<Box, Point>(numbers, 6);
        const Point start = SmallIntegers<Point>(numbers, 6);
        const Point end = SmallIntegers<Point>(numbers, 6);
        const auto i = [](T value) { return static_cast<int>(value); };
        const bool meets =
            SegmentMeetsRectangle({i(box.GetMin()[0]), i(box.GetMin()[1]), i(box.GetMax()[0]), i(box.GetMax()[1])},
                                  {i(start[0]), i(start[1]), i(end[0]), i(end[1])});
        ASSERT_EQ(meets, box.LineSegmentIntersects(start, end)) << "trial " << trial;
        meetCount += meets ? 1 : 0;
    }
    EXPECT_GT(meetCount, kTrials / 10);
    EXPECT_LT(meetCount, kTrials * 9 / 10);
}

TYPED_TEST(BoundingBox2, GivesSymmetricAnswersForOverlapAndSegments)
{
    CADGEOM_USE_BOX_TYPES;
    NumberStream<T> numbers(2);
    for (int trial = 0; trial < 2000; ++trial) {
        const auto a = box_testing::OrderedIntegerBox<Box, Point>(numbers, 4);
        const auto b = box_testing::OrderedIntegerBox<Box, Point>(numbers, 4);
        EXPECT_EQ(a.BoundingBoxIntersects(b, T(1)), b.BoundingBoxIntersects(a, T(1)));
        const Point start = SmallIntegers<Point>(numbers, 6);
        const Point end = SmallIntegers<Point>(numbers, 6);
        EXPECT_EQ(a.LineSegmentIntersects(start, end), a.LineSegmentIntersects(end, start));
    }
}

TYPED_TEST(BoundingBox2, PiercesWithExactFacePoints)
{
    CADGEOM_USE_BOX_TYPES;
    const auto answer = box_testing::Pierce(Of(0, 0, 2, 4), P(-2, 1), V(4, 1));
    EXPECT_TRUE(answer.hits);
    EXPECT_EQ(T(0.5), answer.tNear);
    EXPECT_EQ(T(1), answer.tFar);
    EXPECT_EQ(T(0), answer.entry[0]);
    EXPECT_EQ(T(1.5), answer.entry[1]);
    EXPECT_EQ(T(2), answer.exit[0]);
    EXPECT_EQ(T(2), answer.exit[1]);
}

TYPED_TEST(BoundingBox2, PiercesBehindTheOriginWithNegativeParameters)
{
    CADGEOM_USE_BOX_TYPES;
    const auto answer = box_testing::Pierce(Of(0, 0, 1, 1), P(3, 0.5), V(1, 0));
    EXPECT_TRUE(answer.hits);
    EXPECT_EQ(T(-3), answer.tNear);
    EXPECT_EQ(T(-2), answer.tFar);
}

TYPED_TEST(BoundingBox2, PiercesFromInsideOnBothSides)
{
    CADGEOM_USE_BOX_TYPES;
    const auto answer = box_testing::Pierce(Of(0, 0, 4, 4), P(1, 2), V(1, 0));
    EXPECT_TRUE(answer.hits);
    EXPECT_EQ(T(-1), answer.tNear);
    EXPECT_EQ(T(3), answer.tFar);
    EXPECT_EQ(T(0), answer.entry[0]);
    EXPECT_EQ(T(2), answer.entry[1]);
    EXPECT_EQ(T(4), answer.exit[0]);
}

TYPED_TEST(BoundingBox2, WritesTheMarkersWhenALineRunsBesideTheBox)
{
    CADGEOM_USE_BOX_TYPES;
    const auto above = box_testing::Pierce(Of(0, 0, 1, 1), P(0, 2), V(1, 0));
    EXPECT_FALSE(above.hits);
    EXPECT_EQ(kMarker<T>, above.tNear);
    EXPECT_EQ(-kMarker<T>, above.tFar);
    // x had decided before y was looked at.
    EXPECT_EQ(T(0), above.entry[0]);
    EXPECT_EQ(T(77), above.entry[1]);
    EXPECT_EQ(T(1), above.exit[0]);
    EXPECT_EQ(T(77), above.exit[1]);
    // Here it is x that misses, so that y is not looked at.
    const auto beside = box_testing::Pierce(Of(0, 0, 1, 1), P(2, 0), V(0, 1));
    EXPECT_FALSE(beside.hits);
    EXPECT_EQ(T(77), beside.entry[1]);
    EXPECT_EQ(kMarker<T>, beside.tNear);
}

TYPED_TEST(BoundingBox2, ReachesTheMarkersWithoutADirectionInside)
{
    CADGEOM_USE_BOX_TYPES;
    const auto answer = box_testing::Pierce(Of(0, 0, 1, 1), P(0.5, 0.25), V(0, 0));
    EXPECT_TRUE(answer.hits);
    EXPECT_EQ(-kMarker<T>, answer.tNear);
    EXPECT_EQ(kMarker<T>, answer.tFar);
    EXPECT_EQ(T(0.5), answer.entry[0]);
    EXPECT_EQ(T(0.25), answer.exit[1]);
}

TYPED_TEST(BoundingBox2, PiercesWithAnyOutputLeftOut)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 2, 4);
    T tNear = T(7);
    T tFar = T(7);
    Point entry = P(7, 7);
    Point exit = P(7, 7);
    EXPECT_TRUE(box.RayPierce(P(-2, 1), V(4, 1), nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(box.RayPierce(P(-2, 1), V(4, 1), &tNear, nullptr, nullptr, nullptr));
    EXPECT_TRUE(box.RayPierce(P(-2, 1), V(4, 1), nullptr, &tFar, nullptr, nullptr));
    EXPECT_TRUE(box.RayPierce(P(-2, 1), V(4, 1), nullptr, nullptr, &entry, nullptr));
    EXPECT_TRUE(box.RayPierce(P(-2, 1), V(4, 1), nullptr, nullptr, nullptr, &exit));
    EXPECT_EQ(T(0.5), tNear);
    EXPECT_EQ(T(1), tFar);
    ExpectSameComponents(P(0, 1.5), entry);
    ExpectSameComponents(P(2, 2), exit);
}

TYPED_TEST(BoundingBox2, PiercesWhereTheOriginIsAnOutput)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(0, 0, 2, 4);
    Point point = P(-2, 1);
    EXPECT_TRUE(box.RayPierce(point, V(4, 1), nullptr, nullptr, &point, nullptr));
    ExpectSameComponents(P(0, 1.5), point);
    Point origin = P(-2, 1);
    EXPECT_TRUE(box.RayPierce(origin, V(4, 1), nullptr, &origin[0], nullptr, &origin));
    ExpectSameComponents(P(2, 2), origin);
}

TYPED_TEST(BoundingBox2, PiercesAsTheSlabStepsSayForAnyNumbers)
{
    CADGEOM_USE_BOX_TYPES;
    NumberStream<T> numbers(3);
    int hitCount = 0;
    for (int trial = 0; trial < 50000; ++trial) {
        const bool isOrdinary = trial % 2 == 0;
        const Box box = isOrdinary ? OrderedBox<Box, Point>(numbers, 5.0)
                                   : Box(AnyComponents<Point>(numbers), AnyComponents<Point>(numbers));
        const Point origin = AnyComponents<Point>(numbers);
        const Vector direction = AnyComponents<Vector>(numbers);
        const auto expected =
            box_testing::RayStepByStep<2, T>(box.GetMin().data(), box.GetMax().data(), origin.data(), direction.data());
        box_testing::ExpectSameAnswer(expected, box_testing::Pierce(box, origin, direction));
        ASSERT_FALSE(this->HasFailure()) << "trial " << trial;
        hitCount += expected.hits ? 1 : 0;

        const Vector reach = origin + direction - origin;
        const auto along =
            box_testing::RayStepByStep<2, T>(box.GetMin().data(), box.GetMax().data(), origin.data(), reach.data());
        ASSERT_EQ(along.hits && along.tNear <= T(1) && along.tFar >= T(0),
                  box.LineSegmentIntersects(origin, origin + direction))
            << "trial " << trial;
    }
    EXPECT_GT(hitCount, 5000);
}

TYPED_TEST(BoundingBox2, WritesCornersAndEdgesInOrder)
{
    CADGEOM_USE_BOX_TYPES;
    const Box box = Of(1, 2, 3, 4);
    Point corners[4];
    box.GetCornerPoints(corners);
    ExpectSameComponents(P(1, 2), corners[0]);
    ExpectSameComponents(P(1, 4), corners[1]);
    ExpectSameComponents(P(3, 2), corners[2]);
    ExpectSameComponents(P(3, 4), corners[3]);
    Point starts[4];
    Point ends[4];
    box.GetLineSegments(starts, ends);
    ExpectSameComponents(P(1, 2), starts[0]);
    ExpectSameComponents(P(3, 2), starts[1]);
    ExpectSameComponents(P(3, 4), starts[2]);
    ExpectSameComponents(P(1, 4), starts[3]);
    for (int i = 0; i < 4; ++i) {
        ExpectSameComponents(starts[(i + 1) % 4], ends[i]);
    }
    Box().GetCornerPoints(corners);
    ExpectSameComponents(Point(kMarker<T>, -kMarker<T>), corners[1]);
}

TYPED_TEST(BoundingBox2, ExpandsByAFractionOfItsSize)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 2, 4);
    box.Expand(T(1));
    ExpectSameBox(Of(-1, -2, 3, 6), box);
    box.Expand(T(-0.5));
    ExpectSameBox(Of(0, 0, 2, 4), box);
    box.Expand(T(-2));
    ExpectSameBox(Of(2, 4, 0, 0), box);
}

TYPED_TEST(BoundingBox2, ExpandsByADistance)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 2, 4);
    box.ExpandByDistance(T(0.5));
    ExpectSameBox(Of(-0.5, -0.5, 2.5, 4.5), box);
    box.ExpandByDistance(T(1), eUAxis);
    ExpectSameBox(Of(-1.5, -0.5, 3.5, 4.5), box);
    box.ExpandByDistance(T(-1), eVAxis);
    ExpectSameBox(Of(-1.5, 0.5, 3.5, 3.5), box);
}

TYPED_TEST(BoundingBox2, ClassifiesWithAThickLowerAndAThinUpperBoundary)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 1, 1);
    const T tolerance = T(0.25);
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(0.125, 0.5), tolerance));
    EXPECT_EQ(ePointInsideBox, box.ClassifyPointLocation(P(0.875, 0.5), tolerance));
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(1.25, 0.5), tolerance));
    EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(P(1.5, 0.5), tolerance));
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(0.25, 0.5), tolerance));
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(-0.25, 0.5), tolerance));
    EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(P(-0.375, 0.5), tolerance));
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(0.5, 0.25), tolerance));
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(0.5, 1.25), tolerance));
    EXPECT_EQ(ePointInsideBox, box.ClassifyPointLocation(P(0.5, 1.125), tolerance));
    EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(P(0.5, -0.375), tolerance));
    EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(P(0.5, 1.375), tolerance));
}

TYPED_TEST(BoundingBox2, ClassifiesExactlyWithoutATolerance)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(0, 0, 1, 1);
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(0, 0.5), T(0)));
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(1, 0.5), T(0)));
    EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(P(0.5, 1), T(0)));
    EXPECT_EQ(ePointInsideBox, box.ClassifyPointLocation(P(0.5, 0.5), T(0)));
    EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(P(0.5, 2), T(0)));
    EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(Point(nan, T(0.5)), T(0)));
    Box empty;
    EXPECT_EQ(ePointOutsideBox, empty.ClassifyPointLocation(P(0, 0), T(1)));
}

TYPED_TEST(BoundingBox2, TranslatesAndScalesAboutTheOriginOfCoordinates)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(1, 2, 3, 4);
    box.Translate(V(10, -1));
    ExpectSameBox(Of(11, 1, 13, 3), box);
    box.Scale(T(2));
    ExpectSameBox(Of(22, 2, 26, 6), box);
    box.Scale(V(0.5, 3));
    ExpectSameBox(Of(11, 6, 13, 18), box);
}

TYPED_TEST(BoundingBox2, SwapsCornersWhenScaledByANegativeFactor)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(1, 1, 2, 2);
    box.Scale(T(-2));
    ExpectSameBox(Of(-4, -4, -2, -2), box);
    Box byAxis = Of(1, 1, 2, 2);
    byAxis.Scale(V(-1, 3));
    ExpectSameBox(Of(-2, 3, -1, 6), byAxis);
    byAxis.Scale(V(0, -1));
    ExpectSameBox(Box(Point(-T(0), T(-6)), Point(-T(0), T(-3))), byAxis);
}

TYPED_TEST(BoundingBox2, StaysEmptyUnderEveryChangeOfExtent)
{
    CADGEOM_USE_BOX_TYPES;
    // Only the x coordinate of the minimum makes it empty, so that a change of the others would show.
    const Box empty(Point(kMarker<T>, T(1)), P(2, 3));
    Box box(empty);
    box.Expand(T(1));
    box.ExpandByDistance(T(1));
    box.ExpandByDistance(T(1), eUAxis);
    box.ExpandByDistance(T(1), eVAxis);
    box.Translate(V(1, 1));
    box.Scale(V(2, 2));
    box.Scale(T(2));
    ExpectSameBox(empty, box);
}

TYPED_TEST(BoundingBox2, ComparesEachCoordinateWithAFixedTolerance)
{
    CADGEOM_USE_BOX_TYPES;
    const T tolerance = std::is_same_v<T, float> ? T(1e-4F) : T(1e-6);
    const Box zero(P(0, 0), P(0, 0));
    for (int coordinate = 0; coordinate < 4; ++coordinate) {
        const auto withOne = [&](T value) {
            T c[4] = {T(0), T(0), T(0), T(0)};
            c[coordinate] = value;
            return Box(Point(c[0], c[1]), Point(c[2], c[3]));
        };
        EXPECT_TRUE(zero.IsAlmostEqual(withOne(tolerance)));
        EXPECT_TRUE(withOne(-tolerance).IsAlmostEqual(zero));
        EXPECT_FALSE(zero.IsAlmostEqual(withOne(std::nextafter(tolerance, T(1)))));
        EXPECT_TRUE(zero.IsAlmostEqual(withOne(nan)));
    }
    EXPECT_TRUE(Box().IsAlmostEqual(Box()));
    EXPECT_FALSE(Box().IsAlmostEqual(zero));
}

TYPED_TEST(BoundingBox2, StoresFourLittleEndianNumbers)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(1, 2, 3, 4);
    const auto bytes = box_testing::BytesOf(box);
    ASSERT_EQ(4 * sizeof(T), bytes.size());
    for (std::size_t i = 0; i < 4; ++i) {
        const T value = static_cast<T>(i + 1);
        std::uint8_t expected[sizeof(T)];
        std::memcpy(expected, &value, sizeof(T));
        for (std::size_t k = 0; k < sizeof(T); ++k) {
            EXPECT_EQ(expected[k], bytes[i * sizeof(T) + k]);
        }
    }
    // 1.0 ends in the bytes 80 3F (single) and F0 3F (double).
    EXPECT_EQ(0x3F, bytes[sizeof(T) - 1]);
    Box loaded;
    box_testing::LoadFrom(bytes, loaded);
    ExpectSameBox(box, loaded);
}

TYPED_TEST(BoundingBox2, StoresItsMarkerAndReadsBackEmpty)
{
    CADGEOM_USE_BOX_TYPES;
    Box empty;
    const auto bytes = box_testing::BytesOf(empty);
    Box loaded = Of(1, 2, 3, 4);
    box_testing::LoadFrom(bytes, loaded);
    EXPECT_TRUE(loaded.IsEmpty());
    ExpectSameBox(empty, loaded);
}

TYPED_TEST(BoundingBox2, KeepsWhatWasLoadedWhenDataEndEarly)
{
    CADGEOM_USE_BOX_TYPES;
    Box box = Of(1, 2, 3, 4);
    auto bytes = box_testing::BytesOf(box);
    bytes.resize(2 * sizeof(T) + 1);
    Box loaded = Of(9, 9, 9, 9);
    EXPECT_THROW(box_testing::LoadFrom(bytes, loaded), CArchiveException);
    ExpectSameBox(Of(1, 2, 9, 9), loaded);
}

} // namespace
