#include <cadgeom/intersect/drop.h>
#include <cadgeom/intersect/line_projection.h>

#include "meshes.h"
#include "samples.h"

#include <cmath>
#include <vector>

using samples::kNaN;
using samples::kUntouched;
using samples::SameBits;

namespace {

using Point3 = CadPoint3d<double>;
using Vector3 = CadVector3d<double>;

/// What DropTriangle with foot has written.
struct Dropped {
    bool isFound = false;
    double distanceSquared = 0;
    double u = kUntouched<double>;
    double v = kUntouched<double>;
    Point3 foot = Point3(kUntouched<double>, 0, 0);
    bool onEdge = false;
};

::testing::AssertionResult Same(const Dropped& actual, const Dropped& expected)
{
    if (actual.isFound == expected.isFound && SameBits(actual.distanceSquared, expected.distanceSquared) &&
        SameBits(actual.u, expected.u) && SameBits(actual.v, expected.v) && SameBits(actual.foot, expected.foot) &&
        actual.onEdge == expected.onEdge) {
        return ::testing::AssertionSuccess();
    }
    const auto print = [](const Dropped& d) {
        return ::testing::PrintToString(d.isFound) + " d2 " + std::to_string(d.distanceSquared) + " u " +
               std::to_string(d.u) + " v " + std::to_string(d.v) + " edge " + std::to_string(d.onEdge);
    };
    return ::testing::AssertionFailure() << print(actual) << " instead of " << print(expected);
}

Dropped Drop(const Point3& p, const Point3& p0, const Point3& p1, const Point3& p2, double distanceSquared,
             bool onEdge = false)
{
    Dropped dropped;
    dropped.distanceSquared = distanceSquared;
    dropped.onEdge = onEdge;
    dropped.isFound =
        DropTriangle(p, p0, p1, p2, dropped.distanceSquared, dropped.u, dropped.v, dropped.foot, dropped.onEdge);
    return dropped;
}

const Point3 kA(0, 0, 0);
const Point3 kB(4, 0, 0);
const Point3 kC(0, 4, 0);

double TripleProduct(const Vector3& a, const Vector3& b, const Vector3& c)
{
    return a.dot(b.cross(c));
}

/// The three edges in turn.
Dropped EdgesByStep(const Point3& p, const Point3& p0, const Point3& p1, const Point3& p2, Dropped result)
{
    Point3 foot;
    double d = 0;
    double s = p.projectOntoLineSegment(p0, p1, foot, d);
    if (result.distanceSquared > d) {
        result = {true, d, s, 0, foot, true};
    }
    s = p.projectOntoLineSegment(p1, p2, foot, d);
    if (result.distanceSquared > d) {
        result = {true, d, 1 - s, s, foot, true};
    }
    s = p.projectOntoLineSegment(p2, p0, foot, d);
    if (result.distanceSquared > d) {
        result = {true, d, 0, 1 - s, foot, true};
    }
    return result;
}

Dropped DropByStep(const Point3& p, const Point3& p0, const Point3& p1, const Point3& p2, double distanceSquared)
{
    Dropped result;
    result.distanceSquared = distanceSquared;
    const Vector3 e1 = p1 - p0;
    const Vector3 e2 = p2 - p0;
    const Vector3 n = e1.cross(e2);
    if (n.lengthSquared() == 0) {
        return EdgesByStep(p, p0, p1, p2, result);
    }
    const double plane = p.distanceSquaredToPlane(p0, n);
    if (distanceSquared <= plane) {
        return result;
    }
    const double det = TripleProduct(e1, e2, n);
    if (std::fabs(det) <= 9.99999905104687e-9) {
        return EdgesByStep(p, p0, p1, p2, result);
    }
    const Vector3 w = p - p0;
    result.u = TripleProduct(w, e2, n) / det;
    result.v = TripleProduct(e1, w, n) / det;
    Point3 foot;
    double d = 0;
    double s = 0;
    if (result.u < 0) {
        s = p.projectOntoLineSegment(p2, p0, foot, d);
        return distanceSquared <= d ? result : Dropped{true, d, 0, 1 - s, foot, true};
    }
    if (result.v < 0) {
        s = p.projectOntoLineSegment(p0, p1, foot, d);
        return distanceSquared <= d ? result : Dropped{true, d, s, 0, foot, true};
    }
    if (result.u + result.v > 1) {
        s = p.projectOntoLineSegment(p1, p2, foot, d);
        return distanceSquared <= d ? result : Dropped{true, d, 1 - s, s, foot, true};
    }
    for (int axis = 0; axis < 3; ++axis) {
        foot[axis] = (1 - result.u - result.v) * p0[axis] + result.u * p1[axis] + result.v * p2[axis];
    }
    return {true, plane, result.u, result.v, foot, false};
}

} // namespace

TEST(DropTriangle, DropsStraightOntoTheInside)
{
    EXPECT_TRUE(Same(Drop({1, 2, 2}, kA, kB, kC, 5, true), {true, 4, 0.25, 0.5, {1, 2, 0}, false}));
}

TEST(DropTriangle, MustUndercutTheDistanceGiven)
{
    EXPECT_TRUE(Same(Drop({1, 2, 2}, kA, kB, kC, 4, true),
                     {false, 4, kUntouched<double>, kUntouched<double>, {kUntouched<double>, 0, 0}, true}));
    EXPECT_TRUE(Drop({1, 2, 2}, kA, kB, kC, std::nextafter(4.0, 5.0)).isFound);
}

TEST(DropTriangle, DropsOntoTheEdgeOppositeTheCoordinateOutOfRange)
{
    EXPECT_TRUE(Same(Drop({4, 4, 1}, kA, kB, kC, 100), {true, 9, 0.5, 0.5, {2, 2, 0}, true}));
    EXPECT_TRUE(Same(Drop({-3, 1, 0}, kA, kB, kC, 100), {true, 9, 0, 0.25, {0, 1, 0}, true}));
    EXPECT_TRUE(Same(Drop({3, -2, 0}, kA, kB, kC, 100), {true, 4, 0.75, 0, {3, 0, 0}, true}));
    EXPECT_TRUE(Same(Drop({-3, -4, 0}, kA, kB, kC, 100), {true, 25, 0, 0, {0, 0, 0}, true}));
}

TEST(DropTriangle, KeepsThePlaneCoordinatesWhenTheEdgeIsTooFar)
{
    for (const bool onEdge : {false, true}) {
        EXPECT_TRUE(Same(Drop({4, 4, 1}, kA, kB, kC, 9, onEdge), {false, 9, 1, 1, {kUntouched<double>, 0, 0}, onEdge}));
        EXPECT_TRUE(
            Same(Drop({-2, 1, 0}, kA, kB, kC, 4, onEdge), {false, 4, -0.5, 0.25, {kUntouched<double>, 0, 0}, onEdge}));
        EXPECT_TRUE(
            Same(Drop({3, -2, 0}, kA, kB, kC, 4, onEdge), {false, 4, 0.75, -0.5, {kUntouched<double>, 0, 0}, onEdge}));
    }
}

TEST(DropTriangle, TriesOneEdgeOnly)
{
    // Obtuse at corner 0. Both coordinates are negative, so the edge from corner 2 to 0 is tried and its end found,
    // although (1, 0, 0) on the edge from corner 0 to 1 is nearer.
    EXPECT_TRUE(Same(Drop({1, -0.5, 0}, kA, kB, {-4, 1, 0}, 100), {true, 1.25, 0, 0, {0, 0, 0}, true}));
}

TEST(DropTriangle, DropsOntoTheEdgesOfATriangleWithoutArea)
{
    const Point3 middle(2, 0, 0);
    const Point3 end(8, 0, 0);
    // Over the edge from corner 0 to corner 1, over that from 1 to 2, and with all three at the same distance.
    EXPECT_TRUE(Same(Drop({1, 3, 0}, kA, middle, end, 100), {true, 9, 0.5, 0, {1, 0, 0}, true}));
    EXPECT_TRUE(Same(Drop({5, 3, 0}, kA, middle, end, 100), {true, 9, 0.5, 0.5, {5, 0, 0}, true}));
    EXPECT_TRUE(Same(Drop({5, 3, 0}, kA, end, middle, 100), {true, 9, 0.625, 0, {5, 0, 0}, true}));
    EXPECT_TRUE(Same(Drop({-3, 4, 0}, kA, kA, kA, 100), {true, 25, 0, 0, {0, 0, 0}, true}));
    EXPECT_TRUE(Same(Drop({5, 3, 0}, kA, middle, end, 9),
                     {false, 9, kUntouched<double>, kUntouched<double>, {kUntouched<double>, 0, 0}, false}));
    // Only the last edge runs beside the point: from corner 2 back to corner 0.
    EXPECT_TRUE(Same(Drop({-4, 3, 0}, kA, middle, {-8, 0, 0}, 100), {true, 9, 0.4, 0.6, {-4, 0, 0}, true}));
}

TEST(DropTriangle, TakesASmallDeterminantForNoArea)
{
    // The determinant is the squared length of the normal, x^2 * y^2 for these corners.
    const double limit = std::sqrt(9.99999905104687e-9);
    for (const double height : {limit * 0.999, limit * 1.001}) {
        const Point3 corner(0.25, height, 0);
        const Dropped dropped = Drop({0.25, height / 2, 1}, kA, {1, 0, 0}, corner, 4);
        EXPECT_TRUE(dropped.isFound);
        EXPECT_EQ(dropped.onEdge, height < limit);
    }
}

TEST(DropTriangle, MayWriteTheFootOverThePoint)
{
    Point3 p(5, 3, 0);
    double distanceSquared = 100;
    double u = 0;
    double v = 0;
    bool onEdge = false;
    EXPECT_TRUE(DropTriangle(p, kA, {2, 0, 0}, {8, 0, 0}, distanceSquared, u, v, p, onEdge));
    EXPECT_TRUE(SameBits(p, Point3(5, 0, 0)));
    EXPECT_EQ(u, 0.5);
    EXPECT_EQ(v, 0.5);
    EXPECT_EQ(distanceSquared, 9);
}

TEST(DropTriangle, FindsThePublishedNearestPoints)
{
    std::ifstream file = meshes::OpenData("meshes/closest_points.txt");
    int count = 0;
    file >> count;
    ASSERT_EQ(count, 6);
    for (int i = 0; i < count; ++i) {
        std::vector<Point3> points(5);
        for (Point3& point : points) {
            meshes::ReadCoordinates<double>(file, point);
        }
        const Dropped dropped = Drop(points[3], points[0], points[1], points[2], 1e9);
        EXPECT_TRUE(dropped.isFound);
        EXPECT_LE(dropped.foot.distance(points[4]), 1e-15) << i;
        EXPECT_NEAR(dropped.distanceSquared, points[3].distanceSquared(points[4]), 1e-13) << i;
    }
}

TEST(DropTriangle, AgreesWithTheStepsOnRandomAndWildInput)
{
    samples::Source<double> source(81);
    int found = 0;
    for (int i = 0; i < 100000; ++i) {
        const int kind = source.Integer(0, 2);
        const auto point = [&] {
            return kind == 0 ? source.WildPoint()
                             : (kind == 1 ? source.Point(1) : Point3(source.Integer(-2, 2), source.Integer(-2, 2), 0));
        };
        const Point3 p = point();
        const Point3 p0 = point();
        const Point3 p1 = point();
        const Point3 p2 = point();
        const double distanceSquared = kind == 0 ? source.Wild() : source.Between(0, 4);
        const Dropped expected = DropByStep(p, p0, p1, p2, distanceSquared);
        ASSERT_TRUE(Same(Drop(p, p0, p1, p2, distanceSquared), expected)) << i;
        found += expected.isFound ? 1 : 0;
    }
    EXPECT_GT(found, 20000);
}

TEST(DropTriangle, FindsTheNearestPointOfAcuteTriangles)
{
    samples::Source<double> source(82);
    for (int i = 0; i < 500; ++i) {
        const Point3 p0(0, 0, source.Between(-0.3, 0.3));
        const Point3 p1(source.Between(2, 2.3), 0, source.Between(-0.3, 0.3));
        const Point3 p2(source.Between(0.9, 1.2), source.Between(1.6, 1.9), 0);
        const Point3 p = source.Point(3);
        const Dropped dropped = Drop(p, p0, p1, p2, 1e9);
        ASSERT_TRUE(dropped.isFound);
        double nearest = 1e9;
        for (int a = 0; a <= 40; ++a) {
            for (int b = 0; a + b <= 40; ++b) {
                nearest = std::min(nearest, p.distance(p0 + (p1 - p0) * (a / 40.0) + (p2 - p0) * (b / 40.0)));
            }
        }
        ASSERT_LE(std::sqrt(dropped.distanceSquared), nearest + 1e-12) << i;
        ASSERT_GE(std::sqrt(dropped.distanceSquared), nearest - 0.1) << i;
        ASSERT_NEAR(dropped.distanceSquared, p.distanceSquared(dropped.foot), 1e-9) << i;
        const Point3 blend = p0 + (p1 - p0) * dropped.u + (p2 - p0) * dropped.v;
        ASSERT_LE(blend.distance(dropped.foot), 1e-12) << i;
    }
}

namespace {

/// What DropTriangle without foot has written.
struct PlaneDropped {
    bool isFound = false;
    double u = kUntouched<double>;
    double v = kUntouched<double>;
};

PlaneDropped DropOnPlane(const Point3& p, const Point3& p0, const Point3& p1, const Point3& p2,
                         double maxDistanceSquared)
{
    PlaneDropped dropped;
    dropped.isFound = DropTriangle(p, p0, p1, p2, maxDistanceSquared, dropped.u, dropped.v);
    return dropped;
}

::testing::AssertionResult Same(const PlaneDropped& actual, const PlaneDropped& expected)
{
    if (actual.isFound == expected.isFound && SameBits(actual.u, expected.u) && SameBits(actual.v, expected.v)) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << actual.isFound << ' ' << actual.u << ' ' << actual.v << " instead of "
                                         << expected.isFound << ' ' << expected.u << ' ' << expected.v;
}

PlaneDropped DropOnPlaneByStep(const Point3& p, const Point3& p0, const Point3& p1, const Point3& p2, double maxDistSq)
{
    const Vector3 e1 = p1 - p0;
    const Vector3 e2 = p2 - p0;
    Point3 foot;
    double d = 0;
    if (e1.isZero() && e2.isZero()) {
        return maxDistSq > (p0 - p).lengthSquared() ? PlaneDropped{true, 0, 0} : PlaneDropped();
    }
    if (e2.isZero()) {
        const double s = p.projectOntoLineSegment(p0, p1, foot, d);
        return maxDistSq > d ? PlaneDropped{true, s, 0} : PlaneDropped();
    }
    if (e1.isZero()) {
        const double s = p.projectOntoLineSegment(p0, p2, foot, d);
        return maxDistSq > d ? PlaneDropped{true, 0, s} : PlaneDropped();
    }
    PlaneDropped result;
    const Vector3 n = e1.cross(e2);
    const bool isFlat = n.isZero();
    if (isFlat) {
        result.u = 0;
        result.v = 0;
    }
    if (maxDistSq <= p.distanceSquaredToPlane(p0, n)) {
        result.isFound = isFlat;
        return result;
    }
    const double det = TripleProduct(e1, e2, n);
    if (std::fabs(det) <= 2.220446049250313e-16) {
        return {true, 0, 0};
    }
    return {true, TripleProduct(p - p0, e2, n) / det, TripleProduct(e1, p - p0, n) / det};
}

} // namespace

TEST(DropTriangleOnPlane, AcceptsPointsBesideTheTriangle)
{
    EXPECT_TRUE(Same(DropOnPlane({-2, 6, 1}, kA, kB, kC, 2), {true, -0.5, 1.5}));
    EXPECT_TRUE(Same(DropOnPlane({1, 2, 1}, kA, kB, kC, 2), {true, 0.25, 0.5}));
}

TEST(DropTriangleOnPlane, MustUndercutTheDistanceToThePlane)
{
    EXPECT_TRUE(Same(DropOnPlane({1, 2, 1}, kA, kB, kC, 1), PlaneDropped()));
    EXPECT_TRUE(DropOnPlane({1, 2, 1}, kA, kB, kC, std::nextafter(1.0, 2.0)).isFound);
}

TEST(DropTriangleOnPlane, HandlesEdgesOfLengthZero)
{
    const Point3 p(3, 4, 0);
    EXPECT_TRUE(Same(DropOnPlane(p, kA, kA, kA, 26), {true, 0, 0}));
    EXPECT_TRUE(Same(DropOnPlane(p, kA, kA, kA, 25), PlaneDropped()));
    EXPECT_TRUE(Same(DropOnPlane(p, kA, kB, kA, 17), {true, 0.75, 0}));
    EXPECT_TRUE(Same(DropOnPlane(p, kA, kB, kA, 16), PlaneDropped()));
    EXPECT_TRUE(Same(DropOnPlane({3, 1, 0}, kA, kA, kC, 10), {true, 0, 0.25}));
    EXPECT_TRUE(Same(DropOnPlane({3, 1, 0}, kA, kA, kC, 9), PlaneDropped()));
    // Beyond the end of the edge the parameter is clamped.
    EXPECT_TRUE(Same(DropOnPlane({7, 0, 0}, kA, kB, kA, 10), {true, 1, 0}));
}

TEST(DropTriangleOnPlane, GivesCollinearCornersTheFirstCornerWhateverTheDistance)
{
    EXPECT_TRUE(Same(DropOnPlane({1, 0, 9}, kA, kB, {8, 0, 0}, 1), {true, 0, 0}));
    EXPECT_TRUE(Same(DropOnPlane({1, 0, 0}, kA, kB, {8, 0, 0}, 1), {true, 0, 0}));
}

TEST(DropTriangleOnPlane, GivesTinyDeterminantsTheFirstCorner)
{
    // The determinant is x^4: 2^-52 for x = 2^-13.
    const double x = 1.0 / 8192;
    EXPECT_TRUE(Same(DropOnPlane({x / 2, 0, 0}, kA, {x, 0, 0}, {0, x, 0}, 1), {true, 0, 0}));
    const double larger = x * 1.0001;
    EXPECT_TRUE(DropOnPlane({x / 2, 0, 0}, kA, {larger, 0, 0}, {0, larger, 0}, 1).u > 0.49);
    // The plane distance is measured along z for so small a normal.
    EXPECT_TRUE(Same(DropOnPlane({0, 0, 2}, kA, {x, 0, 0}, {0, x, 0}, 4), PlaneDropped()));
}

TEST(DropTriangleOnPlane, AgreesWithTheStepsOnRandomAndWildInput)
{
    samples::Source<double> source(83);
    for (int i = 0; i < 100000; ++i) {
        const int kind = source.Integer(0, 2);
        const auto point = [&] {
            return kind == 0 ? source.WildPoint()
                             : (kind == 1 ? source.Point(1) : Point3(source.Integer(-1, 1), source.Integer(-1, 1), 0));
        };
        const Point3 p = point();
        const Point3 p0 = point();
        const Point3 p1 = point();
        const Point3 p2 = point();
        const double maxDistSq = kind == 0 ? source.Wild() : source.Between(0, 1);
        ASSERT_TRUE(Same(DropOnPlane(p, p0, p1, p2, maxDistSq), DropOnPlaneByStep(p, p0, p1, p2, maxDistSq))) << i;
    }
}

namespace {

PlaneDropped OnParallelogram(const Point3& p, const Point3& corner, const Vector3& e1, const Vector3& e2)
{
    PlaneDropped dropped;
    DropParallelogram(p, corner, e1, e2, dropped.u, dropped.v);
    dropped.isFound = true;
    return dropped;
}

} // namespace

TEST(DropParallelogram, FindsObliqueCoordinates)
{
    // (7, 4, 9) - (1, 1, 1) = 3 * (1, 0, 0) + 1.5 * (2, 2, 0) + 8 along z.
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {1, 0, 0}, {2, 2, 0}), {true, 3, 1.5}));
}

TEST(DropParallelogram, GivesParallelOrMissingEdgesZero)
{
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {1, 0, 0}, {2, 0, 0}), {true, 0, 0}));
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {0, 0, 0}, {0, 0, 0}), {true, 0, 0}));
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {1e-6, -1e-6, 0}, {1e-6, 0, 1e-6}), {true, 0, 0}));
}

TEST(DropParallelogram, ProjectsOnTheOnlyEdge)
{
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {2, 0, 0}, {0, 0, 0}), {true, 3, 0}));
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {0, 0, 0}, {0, 2, 0}), {true, 0, 1.5}));
    // A component of 1e-6 is not above 1e-6, one a little longer is.
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {2, 0, 0}, {0, 1e-6, 0}), {true, 3, 0}));
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {2, 0, 0}, {0, 1.1e-6, 0}), {true, 0, 0}));
    EXPECT_TRUE(Same(OnParallelogram({7, 4, 9}, {1, 1, 1}, {2, 0, 0}, {kNaN<double>, 0, 0}), {true, 3, 0}));
}

TEST(DropParallelogram, ComparesTheSquaredNormalWithTwoToTheMinus23)
{
    // |n|^2 = (x * x)^2; 2^-23 lies between the fourth powers.
    const double x = std::pow(1.1920928955078125e-7, 0.25);
    EXPECT_TRUE(Same(OnParallelogram({1, 0, 0}, kA, {x * 0.9999, 0, 0}, {0, x * 0.9999, 0}), {true, 0, 0}));
    EXPECT_NEAR(OnParallelogram({1, 0, 0}, kA, {x * 1.0001, 0, 0}, {0, x * 1.0001, 0}).u, 1 / x, 0.01);
}

TEST(DropParallelogram, InvertsRandomCombinations)
{
    samples::Source<double> source(84);
    for (int i = 0; i < 5000; ++i) {
        const Point3 corner = source.Point(5);
        const Vector3 e1 = source.Vector(2);
        const Vector3 e2 = source.Vector(2);
        const Vector3 n = e1.cross(e2);
        if (n.lengthSquared() < 0.1) {
            continue;
        }
        const double u = source.Between(-2, 2);
        const double v = source.Between(-2, 2);
        const PlaneDropped dropped =
            OnParallelogram(corner + e1 * u + e2 * v + n * source.Between(-2, 2), corner, e1, e2);
        ASSERT_NEAR(dropped.u, u, 1e-11) << i;
        ASSERT_NEAR(dropped.v, v, 1e-11) << i;
    }
}

namespace {

template <class T>
class GetTriangleUVPointTest : public ::testing::Test {};

TYPED_TEST_SUITE(GetTriangleUVPointTest, samples::ScalarTypes);

} // namespace

TYPED_TEST(GetTriangleUVPointTest, MeasuresAlongTheFirstTwoEdges)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T u = kUntouched<T>;
    T v = kUntouched<T>;
    // d = a + 0.5 * (4, 0, 0) + 0.25 * (0, 8, 0).
    GetTriangleUVPoint(Point(1, 1, 0), Point(5, 1, 0), Point(5, 9, 0), Point(3, 3, 0), u, v);
    EXPECT_EQ(u, T(0.5));
    EXPECT_EQ(v, T(0.25));
    GetTriangleUVPoint(Point(1, 1, 0), Point(5, 1, 0), Point(5, 9, 0), Point(5, 9, 0), u, v);
    EXPECT_EQ(u, T(1));
    EXPECT_EQ(v, T(1));
}

TYPED_TEST(GetTriangleUVPointTest, GivesZeroForParallelEdges)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T u = kUntouched<T>;
    T v = kUntouched<T>;
    GetTriangleUVPoint(Point(0, 0, 0), Point(1, 0, 0), Point(3, 0, 0), Point(2, 5, 0), u, v);
    EXPECT_EQ(u, T(0));
    EXPECT_EQ(v, T(0));
}

TYPED_TEST(GetTriangleUVPointTest, IsTheClosestApproachOfFourLines)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(85);
    for (int i = 0; i < 2000; ++i) {
        const Point a = source.WildPoint();
        const Point b = source.WildPoint();
        const Point c = source.WildPoint();
        const Point d = source.WildPoint();
        T expectedU = 0;
        T expectedV = 0;
        T unused = 0;
        ProjectLineOntoLine<T>(a, b - a, d, c - b, expectedU, unused);
        ProjectLineOntoLine<T>(b, c - b, d, b - a, expectedV, unused);
        T u = kUntouched<T>;
        T v = kUntouched<T>;
        GetTriangleUVPoint(a, b, c, d, u, v);
        ASSERT_TRUE(SameBits(u, expectedU) && SameBits(v, expectedV)) << i;
    }
}
