#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
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
using box_testing::RandomRigidTransform;
using box_testing::RandomTransform;
using box_testing::UniformComponents;

template <class Scalar>
class OrientedBox3 : public ::testing::Test {};

TYPED_TEST_SUITE(OrientedBox3, box_testing::Scalars);

const CCadTransform& Identity()
{
    return CCadTransform::GetEmptyTransform();
}

template <class T>
COrientedBox3d<T> Make(const CadPoint3d<T>& origin, const CadVector3d<T>& sizes)
{
    COrientedBox3d<T> box;
    box.SetOrigin(origin);
    box.SetSizes(sizes);
    return box;
}

template <class T>
void ExpectSameOriented(const COrientedBox3d<T>& expected, const COrientedBox3d<T>& actual)
{
    ExpectSameComponents(expected.GetOrigin(), actual.GetOrigin());
    ExpectSameComponents(expected.GetSizes(), actual.GetSizes());
    for (int j = 0; j < 3; ++j) {
        ExpectSameComponents(expected.GetAxis(j), actual.GetAxis(j));
    }
}

/// A box with skewed axes of any length.
template <class T>
COrientedBox3d<T> SkewedBox(NumberStream<T>& numbers)
{
    COrientedBox3d<T> box =
        Make(UniformComponents<CadPoint3d<T>>(numbers, 3.0), UniformComponents<CadVector3d<T>>(numbers, 3.0));
    for (int j = 0; j < 3; ++j) {
        box.SetAxis(j, UniformComponents<CadVector3d<T>>(numbers, 1.5));
    }
    return box;
}

/// A rigidly placed box, or now and then a skewed or an empty one or one of any numbers.
template <class T>
COrientedBox3d<T> AnyOrientedBox(NumberStream<T>& numbers)
{
    const int kind = numbers.Integer(0, 15);
    if (kind == 0) {
        return SkewedBox(numbers);
    }
    if (kind == 1) {
        return COrientedBox3d<T>(RandomRigidTransform(numbers));
    }
    if (kind == 2) {
        COrientedBox3d<T> box = Make(AnyComponents<CadPoint3d<T>>(numbers), AnyComponents<CadVector3d<T>>(numbers));
        box.SetAxis(numbers.Integer(0, 2), AnyComponents<CadVector3d<T>>(numbers));
        return box;
    }
    CBoundingBox3d<T> box;
    const CadPoint3d<T> corner = UniformComponents<CadPoint3d<T>>(numbers, 1.0);
    box.CheckPoint(corner);
    box.CheckPoint(corner + UniformComponents<CadVector3d<T>>(numbers, 3.0));
    if (kind == 3) {
        return COrientedBox3d<T>(box, Identity());
    }
    const CadVector3d<double> direction(static_cast<double>(numbers.Uniform(-1, 1)),
                                        static_cast<double>(numbers.Uniform(-1, 1)),
                                        static_cast<double>(numbers.Uniform(-1, 1)));
    CCadTransform turn = CCadTransform::GetRotateAboutVector(static_cast<double>(numbers.Uniform(-3, 3)), direction,
                                                             CadPoint3d<double>(0, 0, 0));
    turn.Translate(CadVector3d<double>(static_cast<double>(numbers.Uniform(-2, 2)),
                                       static_cast<double>(numbers.Uniform(-2, 2)),
                                       static_cast<double>(numbers.Uniform(-2, 2))));
    return COrientedBox3d<T>(box, turn);
}

TYPED_TEST(OrientedBox3, HoldsOriginSizesAndAxesAndNothingElse)
{
    CADGEOM_USE_SPACE_TYPES;
    EXPECT_EQ(15 * sizeof(T), sizeof(Oriented));
    EXPECT_TRUE(std::is_trivially_copyable_v<Oriented>);
    EXPECT_TRUE(std::is_standard_layout_v<Oriented>);
}

TYPED_TEST(OrientedBox3, StartsEmptyAtTheOriginWithUnitAxes)
{
    CADGEOM_USE_SPACE_TYPES;
    const Oriented box;
    EXPECT_TRUE(box.IsEmpty());
    ExpectSameComponents(V(-1, -1, -1), box.GetSizes());
    ExpectSameComponents(P(0, 0, 0), box.GetOrigin());
    ExpectSameComponents(V(1, 0, 0), box.GetAxis(0));
    ExpectSameComponents(V(0, 1, 0), box.GetAxis(1));
    ExpectSameComponents(V(0, 0, 1), box.GetAxis(2));
}

TYPED_TEST(OrientedBox3, IsEmptyByTheSizeAlongXAlone)
{
    CADGEOM_USE_SPACE_TYPES;
    EXPECT_TRUE(Make(P(0, 0, 0), V(-1, 2, 3)).IsEmpty());
    EXPECT_FALSE(Make(P(0, 0, 0), V(1, -1, -1)).IsEmpty());
    EXPECT_FALSE(Make(P(0, 0, 0), Vector(std::nextafter(T(-1), T(0)), T(-1), T(-1))).IsEmpty());
}

TYPED_TEST(OrientedBox3, KeepsOriginAndAxesWhenItIsEmptied)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(1);
    const Oriented before = SkewedBox(numbers);
    Oriented box(before);
    box.Empty();
    EXPECT_TRUE(box.IsEmpty());
    ExpectSameComponents(V(-1, -1, -1), box.GetSizes());
    ExpectSameComponents(before.GetOrigin(), box.GetOrigin());
    ExpectSameComponents(before.GetAxis(1), box.GetAxis(1));
    box = before;
    box.SetBoundingBox(Box(), RandomTransform(numbers));
    ExpectSameComponents(V(-1, -1, -1), box.GetSizes());
    ExpectSameComponents(before.GetOrigin(), box.GetOrigin());
    ExpectSameComponents(before.GetAxis(2), box.GetAxis(2));
    box.Reset();
    ExpectSameOriented(Oriented(), box);
    ExpectSameOriented(Oriented(), Oriented(Box(), RandomTransform(numbers)));
}

TYPED_TEST(OrientedBox3, TakesTheAxesOfATransform)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(2);
    CCadTransform transform = RandomTransform(numbers);
    transform.SetScale(3.0);
    const Oriented box(transform);
    EXPECT_TRUE(box.IsEmpty());
    ExpectSameComponents(P(0, 0, 0), box.GetOrigin());
    for (int i = 0; i < 3; ++i) {
        EXPECT_SAME_BITS(static_cast<T>(transform.xAxis()[i]), box.GetAxis(0)[i]);
        EXPECT_SAME_BITS(static_cast<T>(transform.yAxis()[i]), box.GetAxis(1)[i]);
        EXPECT_SAME_BITS(static_cast<T>(transform.zAxis()[i]), box.GetAxis(2)[i]);
    }
}

TYPED_TEST(OrientedBox3, CoincidesWithTheBoxThatItIsBuiltFrom)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(1, 2, 3, 2, 4, 7);
    Oriented oriented(box, Identity());
    ExpectSameComponents(P(1, 2, 3), oriented.GetOrigin());
    ExpectSameComponents(V(1, 2, 4), oriented.GetSizes());
    ExpectSameBox(box, oriented.GetBoundingBox());
    Point corners[8];
    oriented.GetCornerPoints(corners);
    const Point expected[8] = {P(1, 2, 3), P(2, 2, 3), P(1, 4, 3), P(1, 2, 7),
                               P(2, 4, 7), P(1, 4, 7), P(2, 2, 7), P(2, 4, 3)};
    for (int k = 0; k < 8; ++k) {
        ExpectSameComponents(expected[k], corners[k]);
    }
}

TYPED_TEST(OrientedBox3, MeasuresItsSizesBetweenRoundedEnds)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(3);
    for (int trial = 0; trial < 1000; ++trial) {
        const auto box = OrderedBox<Box, Point>(numbers, 10.0);
        const Oriented oriented(box, Identity());
        for (int j = 0; j < 3; ++j) {
            const T size = box.GetMax()[j] - box.GetMin()[j];
            const T measured = (box.GetMin()[j] + size) - box.GetMin()[j];
            ASSERT_SAME_BITS(std::sqrt(measured * measured), oriented.GetSizes()[j]);
        }
    }
    // A size is the root of a square, which overflows and vanishes earlier than the size itself.
    const T huge = std::sqrt(std::numeric_limits<T>::max()) * T(2);
    const T tiny = std::sqrt(std::numeric_limits<T>::denorm_min()) * T(0.5);
    const Oriented extreme(Box(P(0, 0, 0), Point(huge, tiny, T(1))), Identity());
    ExpectSameComponents(Vector(std::numeric_limits<T>::infinity(), T(0), T(1)), extreme.GetSizes());
    // A crossed box comes out with sizes without sign.
    ExpectSameComponents(V(1, 2, 3), Oriented(Of(0, 0, 0, -1, -2, -3), Identity()).GetSizes());
}

TYPED_TEST(OrientedBox3, GivesSizedVectorsMaximumAndMiddle)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented box = Make(P(1, 2, 3), V(2, 4, 6));
    box.SetAxis(0, V(0, 1, 0));
    box.SetAxis(1, V(-1, 0, 0));
    Vector sized[3];
    box.GetSizedVectors(sized);
    ExpectSameComponents(Vector(V(0, 1, 0) * T(2)), sized[0]);
    ExpectSameComponents(Vector(V(-1, 0, 0) * T(4)), sized[1]);
    ExpectSameComponents(V(0, 0, 6), sized[2]);
    ExpectSameComponents(P(-3, 4, 9), box.GetMax());
    ExpectSameComponents(P(-1, 3, 6), box.GetMid());
}

TYPED_TEST(OrientedBox3, WritesCornersByAdditionAndSubtraction)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(4);
    for (int trial = 0; trial < 1000; ++trial) {
        Oriented box = AnyOrientedBox(numbers);
        Point corners[8];
        box.GetCornerPoints(corners);
        const Point o = box.GetOrigin();
        const Vector u = box.GetAxis(0) * box.GetSizes()[0];
        const Vector v = box.GetAxis(1) * box.GetSizes()[1];
        const Vector w = box.GetAxis(2) * box.GetSizes()[2];
        const Point f = o + u + v + w;
        const Point expected[8] = {o, o + u, o + v, o + w, f, f - u, f - v, f - w};
        for (int k = 0; k < 8; ++k) {
            ExpectSameComponents(expected[k], corners[k]);
        }
        ExpectSameComponents(f, box.GetMax());
        ExpectSameComponents(Point((o.add(f)) * T(0.5)), box.GetMid());
    }
}

TYPED_TEST(OrientedBox3, WritesFacePlanesWithOutwardNormals)
{
    CADGEOM_USE_SPACE_TYPES;
    const Oriented box(Of(0, 0, 0, 1, 1, 1), Identity());
    Point points[6];
    Vector normals[6];
    box.GetPlanes(points, normals);
    for (int j = 0; j < 3; ++j) {
        ExpectSameComponents(P(0, 0, 0), points[j]);
        ExpectSameComponents(P(1, 1, 1), points[3 + j]);
        ExpectSameComponents(Vector(-box.GetAxis(j)), normals[j]);
        ExpectSameComponents(box.GetAxis(j), normals[3 + j]);
    }
    EXPECT_TRUE(normals[0].isEqual(V(-1, 0, 0), T(0)));
    EXPECT_TRUE(normals[4].isEqual(V(0, 1, 0), T(0)));
}

TYPED_TEST(OrientedBox3, WritesEdgesWithTheNormalsOfTheirFaces)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented box = Make(P(1, 2, 3), V(2, 4, 6));
    Point points[12];
    Vector directions[12];
    Vector normals[12][2];
    box.GetBoxLines(points, directions, normals);
    const Point o = P(1, 2, 3);
    const Vector u = V(2, 0, 0);
    const Vector v = V(0, 4, 0);
    const Vector w = V(0, 0, 6);
    const Vector a0 = V(1, 0, 0);
    const Vector a1 = V(0, 1, 0);
    const Vector a2 = V(0, 0, 1);
    const Point f = o + u + v + w;
    struct Line {
        Point point;
        Vector direction;
        Vector normals[2];
    };
    const Line lines[12] = {{o, u, {-a1, -a2}},    {o, v, {-a2, -a0}},    {o, w, {-a0, -a1}},    {f, -u, {a1, a2}},
                            {f, -v, {a2, a0}},     {f, -w, {a0, a1}},     {o + u, v, {-a2, a0}}, {o + u, w, {a0, -a1}},
                            {o + v, u, {a1, -a2}}, {o + v, w, {-a0, a1}}, {o + w, u, {-a1, a2}}, {o + w, v, {a2, -a0}}};
    for (int i = 0; i < 12; ++i) {
        ExpectSameComponents(lines[i].point, points[i]);
        ExpectSameComponents(lines[i].direction, directions[i]);
        ExpectSameComponents(lines[i].normals[0], normals[i][0]);
        ExpectSameComponents(lines[i].normals[1], normals[i][1]);
    }
}

TYPED_TEST(OrientedBox3, GivesItsBoxInItsOwnFrame)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented oriented = Make(P(1, 2, 3), V(2, 4, 6));
    oriented.SetAxis(0, V(0, 1, 0));
    oriented.SetAxis(1, V(-1, 0, 0));
    Box box = Of(9, 9, 9, 9, 9, 9);
    CCadTransform frame;
    oriented.GetBoundingBox(box, frame);
    ExpectSameBox(Of(-1, -2, -3, 1, 2, 3), box);
    EXPECT_TRUE(frame.xAxis().isEqual(CadVector3d<double>(0, 1, 0), 0.0));
    EXPECT_TRUE(frame.yAxis().isEqual(CadVector3d<double>(-1, 0, 0), 0.0));
    EXPECT_TRUE(frame.zAxis().isEqual(CadVector3d<double>(0, 0, 1), 0.0));
    EXPECT_TRUE(frame.GetTranslate().isEqual(CadPoint3d<double>(-1, 3, 6), 0.0));
    EXPECT_FALSE(frame.IsIdentityRotation());
    EXPECT_FALSE(frame.IsZeroTranslate());
    EXPECT_TRUE(frame.IsUnityScale());

    oriented.Empty();
    oriented.GetBoundingBox(box, frame);
    EXPECT_TRUE(box.IsEmpty());
    EXPECT_TRUE(frame.IsEmptyTransform());
    EXPECT_TRUE(oriented.GetBoundingBox().IsEmpty());
    // Without size the corners of the box are positive zeros.
    Make(P(1, 2, 3), V(0, 0, 0)).GetBoundingBox(box, frame);
    ExpectSameBox(Of(0, 0, 0, 0, 0, 0), box);
}

TYPED_TEST(OrientedBox3, ComesBackFromItsOwnFrame)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(5);
    const T tolerance = std::is_same_v<T, float> ? T(1e-4) : T(1e-12);
    for (int trial = 0; trial < 200; ++trial) {
        const Oriented oriented(OrderedBox<Box, Point>(numbers, 5.0), RandomRigidTransform(numbers));
        Box box;
        CCadTransform frame;
        oriented.GetBoundingBox(box, frame);
        const Oriented back(box, frame);
        EXPECT_TRUE(oriented.GetOrigin().isEqual(back.GetOrigin(), tolerance));
        EXPECT_TRUE(oriented.GetSizes().isEqual(back.GetSizes(), tolerance));
    }
}

TYPED_TEST(OrientedBox3, GrowsAlongItsOwnAxes)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented box;
    box.SetAxis(0, V(0, 1, 0));
    box.SetAxis(1, V(-1, 0, 0));
    box.CheckPoint(P(1, 2, 3));
    ExpectSameComponents(P(1, 2, 3), box.GetOrigin());
    ExpectSameComponents(V(0, 0, 0), box.GetSizes());
    ExpectSameComponents(V(0, 1, 0), box.GetAxis(0));
    // Behind the origin along axis 0, ahead along axis 1.
    box.CheckPoint(P(-1, -1, 3));
    ExpectSameComponents(P(1, -1, 3), box.GetOrigin());
    ExpectSameComponents(V(3, 2, 0), box.GetSizes());
    box.CheckPoint(P(0, 0, 3));
    ExpectSameComponents(V(3, 2, 0), box.GetSizes());
    box.CheckPoint(P(0, 4, 8));
    ExpectSameComponents(V(5, 2, 5), box.GetSizes());
    box.CheckPoint(box.GetOrigin());
    ExpectSameComponents(V(5, 2, 5), box.GetSizes());
}

TYPED_TEST(OrientedBox3, GrowsInUnitsOfItsAxes)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented box = Make(P(0, 0, 0), V(1, 1, 1));
    box.SetAxis(0, V(2, 0, 0));
    // Too short to be an axis.
    box.SetAxis(1, V(0, 5e-7, 0));
    box.CheckPoint(P(6, 9, 0.5));
    ExpectSameComponents(V(3, 1, 1), box.GetSizes());
    box.CheckPoint(P(-2, -9, 0.5));
    ExpectSameComponents(V(4, 1, 1), box.GetSizes());
    ExpectSameComponents(P(-2, 0, 0), box.GetOrigin());
}

TYPED_TEST(OrientedBox3, GrowsToContainBoxes)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented box = Make(P(0, 0, 0), V(1, 1, 1));
    box.CheckBoundingBox(Of(-1, 0.25, 0.5, 0.5, 2, 3));
    ExpectSameComponents(P(-1, 0, 0), box.GetOrigin());
    ExpectSameComponents(V(2, 2, 3), box.GetSizes());
    box.CheckOrientedBox(Make(P(0, 0, -1), V(4, 1, 1)));
    ExpectSameComponents(P(-1, 0, -1), box.GetOrigin());
    ExpectSameComponents(V(5, 2, 4), box.GetSizes());
    box.CheckOrientedBox(box);
    ExpectSameComponents(V(5, 2, 4), box.GetSizes());
    // An empty argument is not told apart: its corners at -1 count.
    box.CheckOrientedBox(Oriented());
    ExpectSameComponents(P(-1, -1, -1), box.GetOrigin());
    box.CheckBoundingBox(Box());
    EXPECT_GT(box.GetSizes()[0], kMarker<T>);
}

TYPED_TEST(OrientedBox3, ContainsWhatItGrewToContain)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(6);
    const T tolerance = std::is_same_v<T, float> ? T(1e-4) : T(1e-12);
    for (int trial = 0; trial < 500; ++trial) {
        Oriented box(RandomRigidTransform(numbers));
        Point points[6];
        for (Point& point : points) {
            point = UniformComponents<Point>(numbers, 5.0);
            box.CheckPoint(point);
        }
        for (const Point& point : points) {
            EXPECT_TRUE(box.ContainsPoint(point, tolerance));
        }
    }
}

TYPED_TEST(OrientedBox3, ContainsPointsInclusively)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented box = Make(P(1, 2, 3), V(2, 4, 8));
    EXPECT_TRUE(box.ContainsPoint(box.GetMax(), T(0)));
    EXPECT_TRUE(box.ContainsPoint(box.GetOrigin(), T(0)));
    for (int axis = 0; axis < 3; ++axis) {
        for (const bool isAbove : {false, true}) {
            Point point = box.GetMid();
            point[axis] = isAbove ? box.GetMax()[axis] + T(0.5) : box.GetOrigin()[axis] - T(0.5);
            EXPECT_FALSE(box.ContainsPoint(point, T(0.25)));
            EXPECT_TRUE(box.ContainsPoint(point, T(0.5)));
        }
    }
    EXPECT_TRUE(box.ContainsPoint(Point(nan, T(4), T(5)), T(0)));
    // Without a test for emptiness a tolerance of 1/2 brings the ends of the empty box together.
    EXPECT_FALSE(Oriented().ContainsPoint(P(-0.5, -0.5, -0.5), T(0.25)));
    EXPECT_TRUE(Oriented().ContainsPoint(P(-0.5, -0.5, -0.5), T(0.5)));
}

TYPED_TEST(OrientedBox3, IntersectsBoxesWithCornersInside)
{
    CADGEOM_USE_SPACE_TYPES;
    const Oriented box(Of(0, 0, 0, 4, 4, 4), Identity());
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(1, 1, 1, 2, 2, 2), T(0)));
    EXPECT_TRUE(Oriented(Of(1, 1, 1, 2, 2, 2), Identity()).BoundingBoxIntersects(Of(0, 0, 0, 4, 4, 4), T(0)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(4, 0, 0, 5, 4, 4), T(0)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(4, 0, 0, 5, 4, 4), T(-1)));
    // A bar through the box, without corners of either in the other.
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(-1, 1, 1, 5, 2, 2), T(0)));
    // Sharing a piece of a face, with no corner in the other: the plane of the face separates.
    EXPECT_FALSE(box.BoundingBoxIntersects(Of(-1, 4, 1, 5, 5, 2), T(0)));
    EXPECT_TRUE(box.BoundingBoxIntersects(Of(-1, 4, 1, 5, 5, 2), T(0.25)));
}

TYPED_TEST(OrientedBox3, IsSeparatedByAGapOfAtLeastTheTolerance)
{
    CADGEOM_USE_SPACE_TYPES;
    const Oriented box(Of(0, 0, 0, 1, 1, 1), Identity());
    for (int axis = 0; axis < 3; ++axis) {
        for (const T sign : {T(-1), T(1)}) {
            Vector shift = V(0, 0, 0);
            shift[axis] = sign * T(1.5);
            Box other = Of(0, 0, 0, 1, 1, 1);
            other.Translate(shift);
            EXPECT_FALSE(box.BoundingBoxIntersects(other, T(0)));
            EXPECT_FALSE(box.BoundingBoxIntersects(other, T(0.5)));
            EXPECT_FALSE(box.BoundingBoxIntersects(other, T(-0.5)));
            EXPECT_TRUE(box.BoundingBoxIntersects(other, T(0.625)));
            EXPECT_TRUE(box.BoundingBoxIntersects(other, nan));
        }
    }
}

TYPED_TEST(OrientedBox3, IntersectsWhatOnlyAPlaneAlongTwoEdgesWouldSeparate)
{
    CADGEOM_USE_SPACE_TYPES;
    // Two long bars at right angles, both turned by 45 degrees about their length, edge above edge with a gap of 0.1.
    const double half = std::sqrt(0.5);
    Oriented lower = Make(P(-5, 0, -2 * half), V(10, 1, 1));
    lower.SetAxis(1, V(0, half, half));
    lower.SetAxis(2, V(0, -half, half));
    Oriented upper = Make(P(0, -5, 0.1), V(10, 1, 1));
    upper.SetAxis(0, V(0, 1, 0));
    upper.SetAxis(1, V(half, 0, half));
    upper.SetAxis(2, V(-half, 0, half));
    EXPECT_NEAR(T(0), lower.GetBoundingBox().GetMax()[2], T(1e-6));
    EXPECT_NEAR(T(0.1), upper.GetBoundingBox().GetMin()[2], T(1e-6));
    EXPECT_TRUE(lower.OrientedBoxIntersects(upper, T(0)));
    EXPECT_TRUE(upper.OrientedBoxIntersects(lower, T(0)));
}

template <class T>
bool HoldsStepByStep(const COrientedBox3d<T>& box, const CadPoint3d<T>& point)
{
    for (int j = 0; j < 3; ++j) {
        const T t = point.projectOntoLineParam(box.GetOrigin(), box.GetAxis(j));
        if (!(t >= T(0)) || !(t <= box.GetSizes()[j])) {
            return false;
        }
    }
    return true;
}

template <class T>
bool IsBeyondStepByStep(const CadPoint3d<T>& point, const CadPoint3d<T>& q, const CadVector3d<T>& n, T tol)
{
    const T threshold = std::is_same_v<T, float> ? static_cast<T>(1e-8F) : static_cast<T>(1e-12);
    const T squared = n.dot(n);
    const T t = squared <= threshold ? T(0) : (point - q).dot(n) / squared;
    if (!(t >= T(0))) {
        return false;
    }
    return tol == T(0) || t * t * squared >= tol * tol;
}

template <class T>
int CountBeyond(const CadPoint3d<T>* points, int count, const CadPoint3d<T>& q, const CadVector3d<T>& n, T tol)
{
    int beyond = 0;
    for (int i = 0; i < count; ++i) {
        beyond += IsBeyondStepByStep(points[i], q, n, tol) ? 1 : 0;
    }
    return beyond;
}

template <class T>
bool IntersectStepByStep(const COrientedBox3d<T>& a, const COrientedBox3d<T>& b, T tol)
{
    CadPoint3d<T> ca[8];
    CadPoint3d<T> cb[8];
    a.GetCornerPoints(ca);
    b.GetCornerPoints(cb);
    for (const auto& c : cb) {
        if (a.ContainsPoint(c, T(0))) {
            return true;
        }
    }
    for (const auto& c : ca) {
        if (HoldsStepByStep(b, c)) {
            return true;
        }
    }
    CadPoint3d<T> points[6];
    CadVector3d<T> normals[6];
    a.GetPlanes(points, normals);
    for (int i = 0; i < 6; ++i) {
        if (CountBeyond(cb, 8, points[i], normals[i], tol) == 8) {
            return false;
        }
    }
    b.GetPlanes(points, normals);
    for (int i = 0; i < 6; ++i) {
        if (CountBeyond(ca, 8, points[i], normals[i], tol) == 8) {
            return false;
        }
    }
    return true;
}

/// Which stage of the swept test decided, with the answer as its sign: positive for an intersection.
template <class T>
int SweepStageStepByStep(const COrientedBox3d<T>& a, const COrientedBox3d<T>& b, const CadVector3d<T>& v, T tol)
{
    CadPoint3d<T> ca[16];
    CadPoint3d<T> cb[8];
    a.GetCornerPoints(ca);
    b.GetCornerPoints(cb);
    for (const auto& c : cb) {
        if (a.ContainsPoint(c, T(0)) || HoldsStepByStep(a, CadPoint3d<T>(c - v))) {
            return 1;
        }
    }
    for (int i = 0; i < 8; ++i) {
        ca[8 + i] = ca[i] + v;
        if (HoldsStepByStep(b, ca[i]) || HoldsStepByStep(b, ca[8 + i])) {
            return 2;
        }
    }
    CadPoint3d<T> points[12];
    CadVector3d<T> normals[6];
    a.GetPlanes(points, normals);
    for (int i = 0; i < 6; ++i) {
        const CadPoint3d<T> moved = points[i] + v;
        if (CountBeyond(cb, 8, v.dot(normals[i]) < T(0) ? points[i] : moved, normals[i], tol) == 8) {
            return -3;
        }
    }
    b.GetPlanes(points, normals);
    for (int i = 0; i < 6; ++i) {
        if (CountBeyond(ca, 16, points[i], normals[i], tol) == 16) {
            return -4;
        }
    }
    for (int j = 0; j < 3; ++j) {
        if (v.isParallel(a.GetAxis(j), static_cast<T>(0.001))) {
            return 5;
        }
    }
    CadVector3d<T> directions[12];
    CadVector3d<T> faces[12][2];
    a.GetBoxLines(points, directions, faces);
    for (int i = 0; i < 12; ++i) {
        if (!(v.dot(faces[i][0]) * v.dot(faces[i][1]) <= T(0))) {
            continue;
        }
        CadVector3d<T> m = v.cross(directions[i]);
        if (m.isAlmostZero()) {
            continue;
        }
        if (faces[i][0].dot(m) < T(0)) {
            m = -m;
        }
        if (CountBeyond(cb, 8, points[i], m, tol) == 8) {
            return -6;
        }
    }
    return 7;
}

TYPED_TEST(OrientedBox3, IntersectsAsTheStepsSayForAnyBoxes)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(7);
    int intersectCount = 0;
    constexpr int kTrials = 20000;
    for (int trial = 0; trial < kTrials; ++trial) {
        const Oriented a = AnyOrientedBox(numbers);
        const Oriented b = AnyOrientedBox(numbers);
        const T tolerance = trial % 2 == 0 ? T(0) : trial % 8 == 1 ? numbers.Any() : numbers.Uniform(-1, 1);
        const bool intersects = IntersectStepByStep(a, b, tolerance);
        ASSERT_EQ(intersects, a.OrientedBoxIntersects(b, tolerance)) << "trial " << trial;
        intersectCount += intersects ? 1 : 0;
    }
    EXPECT_GT(intersectCount, kTrials / 10);
    EXPECT_LT(intersectCount, kTrials * 9 / 10);
}

TYPED_TEST(OrientedBox3, SweepsAsTheStagesSayForAnyBoxes)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(8);
    int stageCounts[8] = {};
    for (int trial = 0; trial < 40000; ++trial) {
        Oriented a = AnyOrientedBox(numbers);
        Oriented b = AnyOrientedBox(numbers);
        if (trial % 4 == 0) {
            // Thin boxes meet the stages that come after the corner tests more often.
            a.SetSizes(Vector(a.GetSizes()[0] * T(0.05), a.GetSizes()[1] * T(0.05), a.GetSizes()[2]));
            b.SetSizes(Vector(b.GetSizes()[0], b.GetSizes()[1] * T(0.05), b.GetSizes()[2] * T(0.05)));
        }
        Vector v = UniformComponents<Vector>(numbers, 3.0);
        if (trial % 8 == 0) {
            v = a.GetAxis(numbers.Integer(0, 2)) * numbers.Uniform(-3, 3);
        } else if (trial % 16 == 1) {
            v = AnyComponents<Vector>(numbers);
        } else if (trial % 64 == 2) {
            v.setZero();
        }
        const T tolerance = trial % 2 == 0 ? T(0) : trial % 8 == 1 ? numbers.Any() : numbers.Uniform(-1, 1);
        const int stage = SweepStageStepByStep(a, b, v, tolerance);
        ASSERT_EQ(stage > 0, a.SweptOrientedBoxIntersects(b, v, tolerance)) << "trial " << trial;
        ++stageCounts[std::abs(stage)];
    }
    for (int stage = 1; stage <= 7; ++stage) {
        EXPECT_GT(stageCounts[stage], 20) << "stage " << stage;
    }
}

TYPED_TEST(OrientedBox3, SweepsTowardsAnotherBox)
{
    CADGEOM_USE_SPACE_TYPES;
    const Oriented box(Of(0, 0, 0, 1, 1, 1), Identity());
    const Box target = Of(3, 0.25, 0.25, 4, 0.75, 0.75);
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(target, V(2.5, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(target, V(9, 0, 0), T(0)));
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(target, V(1.5, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(target, V(1.5, 0, 0), T(0.625)));
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(target, V(-2.5, 0, 0), T(0)));
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(target, V(0, 0, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(Of(0.5, 0, 0, 2, 1, 1), V(0, 0, 0), T(0)));
}

TYPED_TEST(OrientedBox3, PassesABoxBesideADiagonalSweep)
{
    CADGEOM_USE_SPACE_TYPES;
    // The faces of neither box separate the other from the motion; the silhouette does.
    const Oriented box(Of(0, 0, 0, 1, 1, 1), Identity());
    const Box beside = Of(4, 0.5, 0.25, 5, 1.5, 0.75);
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(beside, V(6, 6, 0.125), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(beside, V(6, 1, 0.125), T(0)));
    // The corner (4, 1.5) lies 1.5 from the edge plane x - y = 1, in the x direction; 1.5 / sqrt(2) = 1.06 across.
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(beside, V(6, 6, 0.125), T(1)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(beside, V(6, 6, 0.125), T(1.125)));
}

TYPED_TEST(OrientedBox3, TakesTheFaceOfAMotionWithinItForASilhouettePlane)
{
    CADGEOM_USE_SPACE_TYPES;
    // The motion lies in the planes of z, where a silhouette plane has no outer side: one of them lies the wrong way
    // round, and boxes that share both planes are told apart although they meet.
    const Oriented box(Of(0, 0, 0, 1, 1, 1), Identity());
    EXPECT_FALSE(box.SweptBoundingBoxIntersects(Of(4, 0.5, 0, 5, 1.5, 1), V(6, 1, 0), T(0)));
    EXPECT_TRUE(box.SweptBoundingBoxIntersects(Of(4, 0.5, 0, 5, 1.5, 1.25), V(6, 1, 0), T(0)));
}

TYPED_TEST(OrientedBox3, SweepsOverWhatItIntersectsOnTheWay)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(9);
    for (int trial = 0; trial < 2000; ++trial) {
        const Oriented a(OrderedBox<Box, Point>(numbers, 2.0), RandomRigidTransform(numbers));
        const Oriented b(OrderedBox<Box, Point>(numbers, 2.0), RandomRigidTransform(numbers));
        const Vector v = UniformComponents<Vector>(numbers, 10.0);
        // A point of b that a covers on the way proves an intersection.
        Point inB = b.GetOrigin();
        for (int j = 0; j < 3; ++j) {
            inB += b.GetAxis(j) * (b.GetSizes()[j] * numbers.Uniform(0.01, 0.99));
        }
        for (int k = 0; k <= 16; ++k) {
            const T t = static_cast<T>(k) / T(16);
            if (a.ContainsPoint(inB - v * t, T(-0.001))) {
                ASSERT_TRUE(a.SweptOrientedBoxIntersects(b, v, T(0))) << "trial " << trial;
            }
        }
    }
}

TYPED_TEST(OrientedBox3, TransformsEndsAsPositionsAndAxesAsDirections)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(10);
    for (int trial = 0; trial < 2000; ++trial) {
        const CCadTransform transform = RandomTransform(numbers);
        const Oriented before = AnyOrientedBox(numbers);
        Vector sized[3];
        before.GetSizedVectors(sized);
        for (const bool isTo : {true, false}) {
            const auto map = [&](auto value) {
                if (isTo) {
                    transform.aaforw(value, value);
                } else {
                    transform.aaback(value, value);
                }
                return value;
            };
            Oriented expected;
            const Point origin = map(before.GetOrigin());
            Vector sizes;
            for (int j = 0; j < 3; ++j) {
                expected.SetAxis(j, map(before.GetAxis(j)));
                sizes[j] = (map(Point(before.GetOrigin() + sized[j])) - origin).length();
            }
            expected.SetOrigin(origin);
            expected.SetSizes(sizes);
            Oriented box(before);
            if (isTo) {
                box.TransformTo(transform);
            } else {
                box.TransformFrom(transform);
            }
            ExpectSameOriented(expected, box);
        }
        ASSERT_FALSE(this->HasFailure()) << "trial " << trial;
    }
}

TYPED_TEST(OrientedBox3, TakesATranslationTooSmallToCountInOneDirectionOnly)
{
    CADGEOM_USE_SPACE_TYPES;
    // Set while the flags are determined, it is flagged as none but not made none.
    CCadTransform almost = Identity();
    almost.SetTranslate(CadPoint3d<double>(5e-7, 0.0, 0.0));
    ASSERT_TRUE(almost.IsEmptyTransform());
    Oriented to = Make(P(0, 0, 0), V(1, 1, 1));
    to.TransformTo(almost);
    EXPECT_EQ(static_cast<T>(-5e-7), to.GetOrigin()[0]);
    Oriented from = Make(P(0, 0, 0), V(1, 1, 1));
    from.TransformFrom(almost);
    EXPECT_EQ(T(0), from.GetOrigin()[0]);
}

TYPED_TEST(OrientedBox3, ComesBackFromATransformAndItsInverse)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(11);
    const T tolerance = std::is_same_v<T, float> ? T(2e-4) : T(1e-12);
    for (int trial = 0; trial < 500; ++trial) {
        const CCadTransform transform = RandomRigidTransform(numbers);
        const Oriented before(OrderedBox<Box, Point>(numbers, 5.0), RandomRigidTransform(numbers));
        Oriented box(before);
        box.TransformFrom(transform);
        EXPECT_TRUE(before.GetSizes().isEqual(box.GetSizes(), tolerance));
        box.TransformTo(transform);
        EXPECT_TRUE(before.GetOrigin().isEqual(box.GetOrigin(), tolerance));
        EXPECT_TRUE(before.GetSizes().isEqual(box.GetSizes(), tolerance));
        for (int j = 0; j < 3; ++j) {
            EXPECT_TRUE(before.GetAxis(j).isEqual(box.GetAxis(j), tolerance));
        }
    }
}

TYPED_TEST(OrientedBox3, IsBuiltInAFrameAsItIsTransformedFromIt)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(12);
    for (int trial = 0; trial < 500; ++trial) {
        const CCadTransform transform = RandomTransform(numbers);
        const Box box(UniformComponents<Point>(numbers, 5.0), UniformComponents<Point>(numbers, 5.0));
        Oriented expected = Make(box.GetMin(), Vector(box.GetMax() - box.GetMin()));
        expected.TransformFrom(transform);
        ExpectSameOriented(expected, Oriented(box, transform));
        Oriented again = AnyOrientedBox(numbers);
        again.SetBoundingBox(box, transform);
        ExpectSameOriented(expected, again);
        Oriented still = Make(box.GetMin(), Vector(box.GetMax() - box.GetMin()));
        still.TransformFrom(Identity());
        ExpectSameOriented(still, Oriented(box, Identity()));
    }
}

TYPED_TEST(OrientedBox3, TranslatesScalesAndConvertsUnits)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented box = Make(P(1, 2, 3), V(4, 5, 6));
    box.Translate(V(1, 1, 1));
    ExpectSameComponents(P(2, 3, 4), box.GetOrigin());
    box.Scale(T(-2));
    ExpectSameComponents(P(-4, -6, -8), box.GetOrigin());
    ExpectSameComponents(V(-8, -10, -12), box.GetSizes());
    ExpectSameComponents(V(1, 0, 0), box.GetAxis(0));
    box = Make(P(1, 2, 3), V(4, 5, 6));
    box.ConvertUnits(CADUNITS_NONE, CADUNITS_METERS);
    box.ConvertUnits(CADUNITS_METERS, CADUNITS_NONE);
    box.ConvertUnits(CADUNITS_METERS, CADUNITS_METERS);
    ExpectSameComponents(P(1, 2, 3), box.GetOrigin());
    box.ConvertUnits(CADUNITS_METERS, CADUNITS_MILLIMETERS);
    ExpectSameComponents(P(1000, 2000, 3000), box.GetOrigin());
    ExpectSameComponents(V(4000, 5000, 6000), box.GetSizes());
}

TYPED_TEST(OrientedBox3, DoesNotStayEmptyWhenScaledOrConverted)
{
    CADGEOM_USE_SPACE_TYPES;
    Oriented converted;
    converted.ConvertUnits(CADUNITS_MILLIMETERS, CADUNITS_METERS);
    ExpectSameComponents(V(-0.001, -0.001, -0.001), converted.GetSizes());
    EXPECT_FALSE(converted.IsEmpty());
    Oriented scaled;
    scaled.Scale(T(2));
    EXPECT_FALSE(scaled.IsEmpty());
    Oriented moved;
    moved.Translate(V(1, 2, 3));
    EXPECT_TRUE(moved.IsEmpty());
    ExpectSameComponents(P(1, 2, 3), moved.GetOrigin());
}

} // namespace
