#include <cadgeom/bounds/bounding_box_2d.h>
#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "box_testing.h"
#include "space_kit.h"

namespace {

using box_testing::AnyComponents;
using box_testing::ExpectSameBox;
using box_testing::ExpectSameComponents;
using box_testing::kMarker;
using box_testing::NumberStream;
using box_testing::OrderedBox;
using box_testing::SmallIntegers;

template <class Scalar>
class BoundingBox3 : public ::testing::Test {};

TYPED_TEST_SUITE(BoundingBox3, box_testing::Scalars);

TYPED_TEST(BoundingBox3, HoldsItsCornersAndNothingElse)
{
    CADGEOM_USE_SPACE_TYPES;
    EXPECT_EQ(6 * sizeof(T), sizeof(Box));
    EXPECT_TRUE(std::is_trivially_copyable_v<Box>);
    EXPECT_TRUE(std::is_standard_layout_v<Box>);
}

TYPED_TEST(BoundingBox3, StartsEmptyWithTheSinglePrecisionMarker)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box;
    EXPECT_TRUE(box.IsEmpty());
    ExpectSameComponents(Point(kMarker<T>, kMarker<T>, kMarker<T>), box.GetMin());
    ExpectSameComponents(Point(-kMarker<T>, -kMarker<T>, -kMarker<T>), box.GetMax());
}

TYPED_TEST(BoundingBox3, IsEmptyByTheMinimumOfXAlone)
{
    CADGEOM_USE_SPACE_TYPES;
    EXPECT_TRUE(Box(Point(kMarker<T>, T(0), T(0)), P(1, 1, 1)).IsEmpty());
    EXPECT_FALSE(Box(Point(T(0), kMarker<T>, kMarker<T>), P(-1, -1, -1)).IsEmpty());
    EXPECT_FALSE(Of(2, 2, 2, 1, 1, 1).IsEmpty());
}

TYPED_TEST(BoundingBox3, StoresCornersAsTheyAre)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(4, 5, 6, 1, 2, 3);
    ExpectSameComponents(P(4, 5, 6), box.GetMin());
    ExpectSameComponents(P(1, 2, 3), box.GetMax());
    box.SetMinMax(box.GetMax(), box.GetMin());
    ExpectSameBox(Of(1, 2, 3, 4, 5, 6), box);
    box.Reset();
    ExpectSameBox(Box(), box);
}

TYPED_TEST(BoundingBox3, ContainsThePointThatItIsSetTo)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box;
    box.SetToPoint(P(1, 2, 3));
    ExpectSameBox(Of(1, 2, 3, 1, 2, 3), box);
    EXPECT_FALSE(box.IsEmpty());
    EXPECT_EQ(T(0), box.GetVolume());
    EXPECT_TRUE(box.ContainsPoint(P(1, 2, 3), T(0)));
    box = Of(1, 2, 3, 4, 5, 6);
    box.SetToPoint(box.GetMax());
    ExpectSameBox(Of(4, 5, 6, 4, 5, 6), box);
}

TYPED_TEST(BoundingBox3, GivesMiddleSizeAndVolume)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(1, 2, 3, 3, 5, 8);
    ExpectSameComponents(P(2, 3.5, 5.5), box.GetMid());
    ExpectSameComponents(V(2, 3, 5), box.GetSize());
    EXPECT_EQ(T(30), box.GetVolume());
    Box empty;
    ExpectSameComponents(P(0, 0, 0), empty.GetMid());
    EXPECT_SAME_BITS(-kMarker<T> - kMarker<T>, empty.GetSize()[2]);
    EXPECT_SAME_BITS(T(0), empty.GetVolume());
}

TYPED_TEST(BoundingBox3, MultipliesItsSizesInTheOrderYXZ)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(1);
    int differenceCount = 0;
    for (int trial = 0; trial < 1000; ++trial) {
        const Vector size = box_testing::UniformComponents<Vector>(numbers, 10.0);
        const Box box(P(0, 0, 0), Point(size[0], size[1], size[2]));
        ASSERT_SAME_BITS(size[1] * size[0] * size[2], box.GetVolume());
        differenceCount += size[1] * (size[0] * size[2]) != size[1] * size[0] * size[2] ? 1 : 0;
    }
    EXPECT_GT(differenceCount, 0);
    // The first product overflows, the other orders would not.
    const T huge = std::sqrt(std::numeric_limits<T>::max()) * T(2);
    EXPECT_EQ(std::numeric_limits<T>::infinity(), Box(P(0, 0, 0), Point(huge, huge, T(0.01))).GetVolume());
}

TYPED_TEST(BoundingBox3, GrowsToContainPointsAndVectors)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box;
    box.CheckPoint(P(1, 2, 3));
    ExpectSameBox(Of(1, 2, 3, 1, 2, 3), box);
    box.CheckPoint(P(-1, 2, 9));
    ExpectSameBox(Of(-1, 2, 3, 1, 2, 9), box);
    box.CheckVector(V(0, -7, 4));
    ExpectSameBox(Of(-1, -7, 3, 1, 2, 9), box);
    box.CheckPoint(Point(nan, T(10), nan));
    ExpectSameBox(Of(-1, -7, 3, 1, 10, 9), box);
}

TYPED_TEST(BoundingBox3, GrowsStepByStepOnAnyNumbers)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(2);
    Box box;
    Point min = box.GetMin();
    Point max = box.GetMax();
    for (int trial = 0; trial < 2000; ++trial) {
        if (trial % 10 == 0) {
            box.Reset();
            min = box.GetMin();
            max = box.GetMax();
        }
        const Point point = AnyComponents<Point>(numbers);
        box.CheckPoint(point);
        for (int i = 0; i < 3; ++i) {
            if (min[i] > point[i]) {
                min[i] = point[i];
            }
            if (point[i] > max[i]) {
                max[i] = point[i];
            }
        }
        ExpectSameBox(Box(min, max), box);
        ASSERT_FALSE(this->HasFailure()) << "trial " << trial;
    }
}

TYPED_TEST(BoundingBox3, SkipsEmptyBoxesWhenItGrows)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(0, 0, 0, 1, 1, 1);
    box.CheckBoundingBox(Box());
    ExpectSameBox(Of(0, 0, 0, 1, 1, 1), box);
    box.CheckBoundingBox(Of(-1, 0.5, 0, 0.5, 2, 1));
    ExpectSameBox(Of(-1, 0, 0, 1, 2, 1), box);
    Box empty;
    empty.CheckBoundingBox(empty);
    ExpectSameBox(Box(), empty);
    Box crossed = Of(0, 5, 0, 1, 2, 1);
    crossed.CheckBoundingBox(crossed);
    ExpectSameBox(Of(0, 2, 0, 1, 5, 1), crossed);
}

TYPED_TEST(BoundingBox3, GrowsToContainOrientedBoxes)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented oriented;
    Box box = Of(0, 0, 0, 1, 1, 1);
    box.CheckOrientedBox(oriented);
    ExpectSameBox(Of(0, 0, 0, 1, 1, 1), box);
    EXPECT_TRUE(Box(oriented).IsEmpty());
    oriented.SetOrigin(P(-1, 2, 3));
    oriented.SetSizes(V(4, 1, 2));
    box.CheckOrientedBox(oriented);
    ExpectSameBox(Of(-1, 0, 0, 3, 3, 5), box);
    ExpectSameBox(Of(-1, 2, 3, 3, 3, 5), Box(oriented));
}

TYPED_TEST(BoundingBox3, ContainsPointsInclusively)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 2, 4);
    EXPECT_TRUE(box.ContainsPoint(P(0, 0, 0), T(0)));
    EXPECT_TRUE(box.ContainsPoint(P(1, 2, 4), T(0)));
    EXPECT_TRUE(box.ContainsPoint(P(-0.25, 2.25, 4.25), T(0.25)));
    for (int axis = 0; axis < 3; ++axis) {
        Point below = P(0.5, 0.5, 0.5);
        below[axis] = T(-0.26);
        EXPECT_FALSE(box.ContainsPoint(below, T(0.25)));
        Point above = P(0.5, 0.5, 0.5);
        above[axis] = box.GetMax()[axis] + T(0.26);
        EXPECT_FALSE(box.ContainsPoint(above, T(0.25)));
        Point none = P(0.5, 0.5, 0.5);
        none[axis] = nan;
        EXPECT_FALSE(box.ContainsPoint(none, T(0.25)));
    }
    EXPECT_FALSE(box.ContainsPoint(P(0.5, 0.5, 0.5), nan));
}

TYPED_TEST(BoundingBox3, ContainsNoPointWhenEmpty)
{
    CADGEOM_USE_SPACE_TYPES;
    EXPECT_FALSE(Box().ContainsPoint(P(0, 0, 0), T(0)));
    EXPECT_FALSE(Box().ContainsPoint(P(0, 0, 0), kMarker<T>));
    // The rectangle has no such test.
    EXPECT_TRUE(CBoundingBox2d<T>().ContainsPoint(CadPoint2d<T>(T(0), T(0)), kMarker<T>));
}

TYPED_TEST(BoundingBox3, ContainsBoxesInclusivelyAndEmptyOnesAlways)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 4, 4, 4);
    EXPECT_TRUE(box.ContainsBoundingBox(box, T(0)));
    for (int axis = 0; axis < 3; ++axis) {
        Point min = box.GetMin();
        min[axis] = T(-0.5);
        EXPECT_FALSE(box.ContainsBoundingBox(Box(min, box.GetMax()), T(0.25)));
        EXPECT_TRUE(box.ContainsBoundingBox(Box(min, box.GetMax()), T(0.5)));
        Point max = box.GetMax();
        max[axis] = T(4.5);
        EXPECT_FALSE(box.ContainsBoundingBox(Box(box.GetMin(), max), T(0.25)));
        EXPECT_TRUE(box.ContainsBoundingBox(Box(box.GetMin(), max), T(0.5)));
    }
    EXPECT_TRUE(box.ContainsBoundingBox(Box(), T(0)));
    EXPECT_TRUE(Box().ContainsBoundingBox(Box(), T(0)));
    EXPECT_FALSE(Box().ContainsBoundingBox(box, kMarker<T>));
}

TYPED_TEST(BoundingBox3, IntersectsTouchingBoxesButNoEmptyOne)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(1, 1, 1, 2, 2, 2), T(0)));
    for (int axis = 0; axis < 3; ++axis) {
        Vector shift = V(0, 0, 0);
        shift[axis] = T(1.5);
        Box beyond = box;
        beyond.Translate(shift);
        EXPECT_FALSE(box.BoundingBoxIntersects(beyond, T(0.25)));
        EXPECT_FALSE(beyond.BoundingBoxIntersects(box, T(0.25)));
        EXPECT_TRUE(box.BoundingBoxIntersects(beyond, T(0.5)));
        EXPECT_TRUE(beyond.BoundingBoxIntersects(box, T(0.5)));
    }
    const Box whole(Point(-kMarker<T>, -kMarker<T>, -kMarker<T>), Point(kMarker<T>, kMarker<T>, kMarker<T>));
    EXPECT_FALSE(Box().BoundingBoxIntersects(whole, T(0)));
    EXPECT_FALSE(whole.BoundingBoxIntersects(Box(), T(0)));
    EXPECT_FALSE(Box().BoundingBoxIntersects(Box(), T(1)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(5, 5, 5, 6, 6, 6), nan));
}

TYPED_TEST(BoundingBox3, StopsClippingAtTheFirstAxisThatFails)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(0, 0, 0, 4, 4, 4);
    EXPECT_TRUE(box.IntersectWithBoundingBox(Of(1, -1, 4, 9, 3, 5)));
    ExpectSameBox(Of(1, 0, 4, 4, 3, 4), box);
    EXPECT_TRUE(box.IntersectWithBoundingBox(box));

    Box inX = Of(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(inX.IntersectWithBoundingBox(Of(2, 0.5, 0.5, 3, 0.75, 0.75)));
    ExpectSameBox(Of(2, 0, 0, 1, 1, 1), inX);
    EXPECT_FALSE(inX.IsEmpty());
    Box inY = Of(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(inY.IntersectWithBoundingBox(Of(0.5, -3, 0.5, 3, -2, 0.75)));
    ExpectSameBox(Of(0.5, 0, 0, 1, -2, 1), inY);
    Box inZ = Of(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(inZ.IntersectWithBoundingBox(Of(0.5, 0.5, 2, 3, 3, 3)));
    ExpectSameBox(Of(0.5, 0.5, 2, 1, 1, 1), inZ);
    EXPECT_FALSE(inZ.IntersectWithBoundingBox(inZ));
    ExpectSameBox(Of(0.5, 0.5, 2, 1, 1, 1), inZ);
}

TYPED_TEST(BoundingBox3, EqualsWithinATolerance)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(1, 2, 3, 4, 5, 6);
    for (int corner = 0; corner < 2; ++corner) {
        for (int axis = 0; axis < 3; ++axis) {
            Point min = box.GetMin();
            Point max = box.GetMax();
            (corner == 0 ? min : max)[axis] += T(0.5);
            EXPECT_TRUE(box.IsEqual(Box(min, max), T(0.5)));
            EXPECT_TRUE(Box(min, max).IsEqual(box, T(0.5)));
            EXPECT_FALSE(box.IsEqual(Box(min, max), T(0.49)));
            EXPECT_FALSE(box.IsAlmostEqual(Box(min, max)));
            (corner == 0 ? min : max)[axis] = nan;
            EXPECT_TRUE(box.IsEqual(Box(min, max), T(0)));
        }
    }
}

TYPED_TEST(BoundingBox3, TakesEmptyBoxesAsEqualToEachOtherOnly)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(1, 2, 3, 4, 5, 6);
    // Empty, although its other coordinates are anything.
    const Box odd(Point(kMarker<T>, T(1), T(2)), P(3, 4, 5));
    EXPECT_TRUE(Box().IsEqual(Box(), T(0)));
    EXPECT_TRUE(Box().IsEqual(odd, T(0)));
    EXPECT_FALSE(Box().IsEqual(box, std::numeric_limits<T>::infinity()));
    EXPECT_FALSE(box.IsEqual(Box(), std::numeric_limits<T>::infinity()));
    EXPECT_TRUE(Box().IsAlmostEqual(Box()));
    EXPECT_FALSE(Box().IsAlmostEqual(odd));
}

TYPED_TEST(BoundingBox3, ComparesWithAFixedTolerance)
{
    CADGEOM_USE_SPACE_TYPES;
    const T tolerance = std::is_same_v<T, float> ? T(1e-4F) : T(1e-6);
    const Box zero = Of(0, 0, 0, 0, 0, 0);
    for (int axis = 0; axis < 3; ++axis) {
        Point at = P(0, 0, 0);
        at[axis] = tolerance;
        Point above = P(0, 0, 0);
        above[axis] = std::nextafter(tolerance, T(1));
        EXPECT_TRUE(zero.IsAlmostEqual(Box(P(0, 0, 0), at)));
        EXPECT_TRUE(zero.IsAlmostEqual(Box(at, P(0, 0, 0))));
        EXPECT_FALSE(zero.IsAlmostEqual(Box(P(0, 0, 0), above)));
        EXPECT_FALSE(zero.IsAlmostEqual(Box(above, P(0, 0, 0))));
    }
}

TYPED_TEST(BoundingBox3, ClassifiesPointsOnEveryAxis)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(0, 0, 0, 1, 1, 1);
    const T tolerance = T(0.25);
    for (int axis = 0; axis < 3; ++axis) {
        const auto at = [&](double coordinate) {
            Point point = P(0.5, 0.5, 0.5);
            point[axis] = static_cast<T>(coordinate);
            return point;
        };
        EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(at(-0.375), tolerance));
        EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(at(-0.25), tolerance));
        EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(at(0.25), tolerance));
        EXPECT_EQ(ePointInsideBox, box.ClassifyPointLocation(at(0.375), tolerance));
        EXPECT_EQ(ePointInsideBox, box.ClassifyPointLocation(at(1.125), tolerance));
        EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(at(1.25), tolerance));
        EXPECT_EQ(ePointOutsideBox, box.ClassifyPointLocation(at(1.375), tolerance));
        EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(at(0), T(0)));
        EXPECT_EQ(ePointOnBoxBoundary, box.ClassifyPointLocation(at(1), T(0)));
        EXPECT_EQ(ePointInsideBox, box.ClassifyPointLocation(at(0.5), T(0)));
    }
    Box empty;
    EXPECT_EQ(ePointOutsideBox, empty.ClassifyPointLocation(P(0, 0, 0), T(1)));
}

TYPED_TEST(BoundingBox3, ComparesLikeSingleComparisonsOnAnyNumbers)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(3);
    int containedCount = 0;
    int overlapCount = 0;
    for (int trial = 0; trial < 50000; ++trial) {
        const auto anyBox = [&] {
            return trial % 2 == 0 ? OrderedBox<Box, Point>(numbers, 10.0)
                                  : Box(AnyComponents<Point>(numbers), AnyComponents<Point>(numbers));
        };
        Box a = anyBox();
        const Box b = anyBox();
        const Point p = AnyComponents<Point>(numbers);
        const T tolerance = trial % 3 == 0 ? T(0) : numbers.Any();
        bool contains = !a.IsEmpty();
        bool encloses = !a.IsEmpty();
        bool overlaps = !a.IsEmpty() && !b.IsEmpty();
        bool isWithin = true;
        bool isInside = true;
        for (int i = 0; i < 3; ++i) {
            const T low = a.GetMin()[i] - tolerance;
            const T high = a.GetMax()[i] + tolerance;
            contains = contains && p[i] >= low && high >= p[i];
            encloses = encloses && b.GetMin()[i] >= low && high >= b.GetMax()[i];
            overlaps = overlaps && !(a.GetMin()[i] > b.GetMax()[i] + tolerance) &&
                       !(b.GetMin()[i] - tolerance > a.GetMax()[i]);
            isWithin = isWithin && p[i] >= low && high >= p[i];
            isInside = isInside && p[i] > a.GetMin()[i] + tolerance && high > p[i];
        }
        ASSERT_EQ(contains, a.ContainsPoint(p, tolerance)) << "trial " << trial;
        ASSERT_EQ(b.IsEmpty() || encloses, a.ContainsBoundingBox(b, tolerance)) << "trial " << trial;
        ASSERT_EQ(overlaps, a.BoundingBoxIntersects(b, tolerance)) << "trial " << trial;
        const int location = !isWithin ? ePointOutsideBox : isInside ? ePointInsideBox : ePointOnBoxBoundary;
        ASSERT_EQ(location, a.ClassifyPointLocation(p, tolerance)) << "trial " << trial;
        containedCount += contains ? 1 : 0;
        overlapCount += overlaps ? 1 : 0;
    }
    EXPECT_GT(containedCount, 1000);
    EXPECT_GT(overlapCount, 1000);
}

TYPED_TEST(BoundingBox3, ExpandsTranslatesAndScales)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(0, 0, 0, 2, 4, 8);
    box.Expand(T(1));
    ExpectSameBox(Of(-1, -2, -4, 3, 6, 12), box);
    box.ExpandByDistance(T(0.5));
    ExpectSameBox(Of(-1.5, -2.5, -4.5, 3.5, 6.5, 12.5), box);
    box.ExpandByDistance(T(1), eXAxis);
    box.ExpandByDistance(T(2), eYAxis);
    box.ExpandByDistance(T(3), eZAxis);
    ExpectSameBox(Of(-2.5, -4.5, -7.5, 4.5, 8.5, 15.5), box);
    box.Translate(V(1, 2, 3));
    ExpectSameBox(Of(-1.5, -2.5, -4.5, 5.5, 10.5, 18.5), box);
    box.Scale(T(2));
    ExpectSameBox(Of(-3, -5, -9, 11, 21, 37), box);
    box.Scale(V(1, 0.5, 2));
    ExpectSameBox(Of(-3, -2.5, -18, 11, 10.5, 74), box);
}

TYPED_TEST(BoundingBox3, StaysCrossedWhenScaledByANegativeFactor)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(1, 1, 1, 2, 2, 2);
    box.Scale(T(-1));
    ExpectSameBox(Of(-1, -1, -1, -2, -2, -2), box);
    EXPECT_EQ(T(-1), box.GetVolume());
    Box byAxis = Of(1, 1, 1, 2, 2, 2);
    byAxis.Scale(V(1, -1, 2));
    ExpectSameBox(Of(1, -1, 2, 2, -2, 4), byAxis);
}

TYPED_TEST(BoundingBox3, StaysEmptyUnderEveryChangeOfExtent)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box empty(Point(kMarker<T>, T(1), T(2)), P(3, 4, 5));
    CCadTransform turn = CCadTransform::GetEmptyTransform();
    turn.RotAboutAxis(30.0, 2);
    Box box(empty);
    box.Expand(T(1));
    box.ExpandByDistance(T(1));
    box.ExpandByDistance(T(1), eYAxis);
    box.Translate(V(1, 1, 1));
    box.Scale(V(2, 2, 2));
    box.Scale(T(2));
    box.TransformTo(turn);
    box.TransformFrom(turn);
    box.ConvertUnits(CADUNITS_INCHES, CADUNITS_MILLIMETERS);
    ExpectSameBox(empty, box);
}

TYPED_TEST(BoundingBox3, ConvertsUnits)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(1, 2, 3, 4, 5, 6);
    Box metres(box);
    metres.ConvertUnits(CADUNITS_MILLIMETERS, CADUNITS_METERS);
    const T factor = static_cast<T>(0.001);
    for (int i = 0; i < 3; ++i) {
        EXPECT_SAME_BITS(box.GetMin()[i] * factor, metres.GetMin()[i]);
        EXPECT_SAME_BITS(box.GetMax()[i] * factor, metres.GetMax()[i]);
    }
    Box same(box);
    same.ConvertUnits(CADUNITS_FEET, CADUNITS_FEET);
    same.ConvertUnits(CADUNITS_NONE, CADUNITS_METERS);
    same.ConvertUnits(CADUNITS_METERS, CADUNITS_NONE);
    ExpectSameBox(box, same);
    Box unknown(box);
    unknown.ConvertUnits(static_cast<CADUNITS>(42), CADUNITS_METERS);
    ExpectSameBox(metres, unknown);
}

TEST(BoundingBox3Float, RoundsTheUnitFactorBeforeItIsApplied)
{
    NumberStream<float> numbers(4);
    const double factor = GetConversionFactor(CADUNITS_MILLIMETERS, CADUNITS_INCHES);
    int differenceCount = 0;
    for (int trial = 0; trial < 1000; ++trial) {
        const float x = numbers.Uniform(1.0, 100.0);
        CBoundingBox3d<float> box(CadPoint3d<float>(x, x, x), CadPoint3d<float>(x, x, x));
        box.ConvertUnits(CADUNITS_MILLIMETERS, CADUNITS_INCHES);
        ASSERT_SAME_BITS(x * static_cast<float>(factor), box.GetMin()[0]);
        const auto widened = static_cast<float>(static_cast<double>(x) * factor);
        differenceCount += widened != box.GetMin()[0] ? 1 : 0;
    }
    EXPECT_GT(differenceCount, 0);
}

TYPED_TEST(BoundingBox3, GrowsByTurning)
{
    CADGEOM_USE_SPACE_TYPES;
    CCadTransform turn = CCadTransform::GetEmptyTransform();
    turn.RotAboutAxis(45.0, 2);
    const T tolerance = std::is_same_v<T, float> ? T(1e-6) : T(1e-14);
    for (const bool isTo : {true, false}) {
        Box box = Of(0, 0, 0, 1, 1, 1);
        if (isTo) {
            box.TransformTo(turn);
        } else {
            box.TransformFrom(turn);
        }
        EXPECT_NEAR(T(std::sqrt(2.0)), box.GetSize()[0], tolerance);
        EXPECT_NEAR(T(std::sqrt(2.0)), box.GetSize()[1], tolerance);
        EXPECT_NEAR(T(1), box.GetSize()[2], tolerance);
    }
}

TYPED_TEST(BoundingBox3, StaysAsItIsUnderTheIdentity)
{
    CADGEOM_USE_SPACE_TYPES;
    Box crossed = Of(3, 3, 3, 1, 1, 1);
    crossed.TransformTo(CCadTransform::GetEmptyTransform());
    crossed.TransformFrom(CCadTransform::GetEmptyTransform());
    ExpectSameBox(Of(3, 3, 3, 1, 1, 1), crossed);
    // A transform that turns out to be the identity when its flags are determined.
    CCadTransform almost = CCadTransform::GetEmptyTransform();
    almost.SetTranslate(CadPoint3d<double>(5e-7, 0.0, 0.0));
    almost.UndetermineFlags();
    crossed.TransformFrom(almost);
    ExpectSameBox(Of(3, 3, 3, 1, 1, 1), crossed);
    EXPECT_EQ(0.0, almost.GetTranslate()[0]);
}

TYPED_TEST(BoundingBox3, TransformsAsTheBoxOfItsOrientedBox)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(5);
    for (int trial = 0; trial < 1000; ++trial) {
        const CCadTransform transform = box_testing::RandomTransform(numbers);
        const Box box(box_testing::UniformComponents<Point>(numbers, 10.0),
                      box_testing::UniformComponents<Point>(numbers, 10.0));
        Box from(box);
        from.TransformFrom(transform);
        ExpectSameBox(Box(Oriented(box, transform)), from);
        Box to(box);
        to.TransformTo(transform);
        Oriented oriented(box, CCadTransform::GetEmptyTransform());
        oriented.TransformTo(transform);
        ExpectSameBox(Box(oriented), to);
        ASSERT_FALSE(this->HasFailure()) << "trial " << trial;
    }
}

TYPED_TEST(BoundingBox3, ContainsTheTransformedPointsOfTheBox)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(6);
    const T tolerance = std::is_same_v<T, float> ? T(1e-4) : T(1e-12);
    for (int trial = 0; trial < 1000; ++trial) {
        const CCadTransform transform = box_testing::RandomRigidTransform(numbers);
        const auto box = OrderedBox<Box, Point>(numbers, 10.0);
        Box from(box);
        from.TransformFrom(transform);
        Box to(box);
        to.TransformTo(transform);
        for (int k = 0; k < 10; ++k) {
            Point point;
            for (int i = 0; i < 3; ++i) {
                point[i] = numbers.Uniform(static_cast<double>(box.GetMin()[i]), static_cast<double>(box.GetMax()[i]));
            }
            Point mapped;
            transform.aaback(point, mapped);
            EXPECT_TRUE(from.ContainsPoint(mapped, tolerance));
            transform.aaforw(point, mapped);
            EXPECT_TRUE(to.ContainsPoint(mapped, tolerance));
        }
    }
}

TYPED_TEST(BoundingBox3, StoresSixNumbersAndReadsThemBack)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(1, 2, 3, 4, 5, 6);
    const auto bytes = box_testing::BytesOf(box);
    ASSERT_EQ(6 * sizeof(T), bytes.size());
    for (std::size_t i = 0; i < 6; ++i) {
        T value;
        std::memcpy(&value, bytes.data() + i * sizeof(T), sizeof(T));
        EXPECT_EQ(static_cast<T>(i + 1), value);
    }
    Box loaded;
    box_testing::LoadFrom(bytes, loaded);
    ExpectSameBox(box, loaded);
    Box empty;
    box_testing::LoadFrom(box_testing::BytesOf(empty), loaded);
    EXPECT_TRUE(loaded.IsEmpty());
    ExpectSameBox(empty, loaded);
}

TYPED_TEST(BoundingBox3, KeepsWhatWasLoadedWhenDataEndEarly)
{
    CADGEOM_USE_SPACE_TYPES;
    Box box = Of(1, 2, 3, 4, 5, 6);
    auto bytes = box_testing::BytesOf(box);
    bytes.resize(4 * sizeof(T));
    Box loaded = Of(9, 9, 9, 9, 9, 9);
    EXPECT_THROW(box_testing::LoadFrom(bytes, loaded), CArchiveException);
    ExpectSameBox(Of(1, 2, 3, 4, 9, 9), loaded);
}

} // namespace
