#include <cadgeom/intersect/line_projection.h>
#include <cadgeom/intersect/pierce.h>
#include <cadgeom/linalg/dynamic_matrix.h>
#include <cadgeom/linalg/dynamic_vector.h>

#include "meshes.h"
#include "samples.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

using samples::kInfinity;
using samples::kNaN;
using samples::kUntouched;
using samples::SameBits;

namespace {

constexpr double kSingleEpsilon = 1.1920928955078125e-7;
constexpr double kHalfPi = 1.5707963267948966;

template <class T>
class PierceTriangleTest : public ::testing::Test {};
template <class T>
class PierceSphereTest : public ::testing::Test {};
template <class T>
class PierceCylinderTest : public ::testing::Test {};
template <class T>
class PierceConeTest : public ::testing::Test {};

TYPED_TEST_SUITE(PierceTriangleTest, samples::ScalarTypes);
TYPED_TEST_SUITE(PierceSphereTest, samples::ScalarTypes);
TYPED_TEST_SUITE(PierceCylinderTest, samples::ScalarTypes);
TYPED_TEST_SUITE(PierceConeTest, samples::ScalarTypes);

template <class T>
CadPoint3d<double> Wide(const CadPoint3d<T>& p)
{
    return {static_cast<double>(p.x()), static_cast<double>(p.y()), static_cast<double>(p.z())};
}

template <class T>
CadVector3d<double> Wide(const CadVector3d<T>& v)
{
    return {static_cast<double>(v.x()), static_cast<double>(v.y()), static_cast<double>(v.z())};
}

/// A result with everything that was written.
template <class T>
struct Answer {
    bool isHit = false;
    T a = kUntouched<T>;
    T b = kUntouched<T>;
    T c = kUntouched<T>;
};

template <class T>
::testing::AssertionResult Same(const Answer<T>& actual, const Answer<T>& expected)
{
    if (actual.isHit == expected.isHit && SameBits(actual.a, expected.a) && SameBits(actual.b, expected.b) &&
        SameBits(actual.c, expected.c)) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << actual.isHit << ' ' << actual.a << ' ' << actual.b << ' ' << actual.c
                                         << " instead of " << expected.isHit << ' ' << expected.a << ' ' << expected.b
                                         << ' ' << expected.c;
}

/// The triangle decided step by step.
Answer<double> TriangleByStep(const CadPoint3d<double>& o, const CadVector3d<double>& d, const CadPoint3d<double>& p0,
                              const CadPoint3d<double>& p1, const CadPoint3d<double>& p2)
{
    Answer<double> answer;
    const CadVector3d<double> e1 = p1 - p0;
    const CadVector3d<double> e2 = p2 - p0;
    const CadVector3d<double> p = d.cross(e2);
    const double det = e1.dot(p);
    if (-1e-6 <= det && det <= 1e-6) {
        return answer;
    }
    const CadVector3d<double> w = o - p0;
    answer.b = w.dot(p) / det;
    if (answer.b < -0.0001 || answer.b > 1.0001) {
        return answer;
    }
    const CadVector3d<double> q = w.cross(e1);
    answer.c = d.dot(q) / det;
    if (answer.c < -0.0001 || answer.b + answer.c > 1.0001) {
        return answer;
    }
    answer.a = e2.dot(q) / det;
    answer.isHit = true;
    return answer;
}

template <class T>
Answer<T> ExpectedTriangle(const CadPoint3d<T>& o, const CadVector3d<T>& d, const CadPoint3d<T>& p0,
                           const CadPoint3d<T>& p1, const CadPoint3d<T>& p2)
{
    const Answer<double> wide = TriangleByStep(Wide(o), Wide(d), Wide(p0), Wide(p1), Wide(p2));
    Answer<T> answer;
    if (wide.isHit || sizeof(T) == 8) {
        answer = {wide.isHit, static_cast<T>(wide.a), static_cast<T>(wide.b), static_cast<T>(wide.c)};
    }
    return answer;
}

template <class T>
Answer<T> Triangle(const CadPoint3d<T>& o, const CadVector3d<T>& d, const CadPoint3d<T>& p0, const CadPoint3d<T>& p1,
                   const CadPoint3d<T>& p2)
{
    Answer<T> answer;
    answer.isHit = PierceTriangle(o, d, p0, p1, p2, answer.a, answer.b, answer.c);
    return answer;
}

/// The unit triangle of the xy plane from above.
template <class T>
Answer<T> UnitTriangle(T x, T y)
{
    return Triangle<T>({x, y, 3}, {0, 0, -2}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0});
}

} // namespace

TYPED_TEST(PierceTriangleTest, FindsTheSameHitFromBothSides)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Answer<T> expected = {true, T(1.5), T(0.25), T(0.5)};
    EXPECT_TRUE(Same(UnitTriangle<T>(T(0.25), T(0.5)), expected));
    EXPECT_TRUE(Same(Triangle<T>({T(0.25), T(0.5), -3}, {0, 0, 2}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), expected));
}

TYPED_TEST(PierceTriangleTest, FindsHitsBehindTheOrigin)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Triangle<T>({T(0.25), T(0.5), 3}, {0, 0, 2}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}),
                     Answer<T>{true, T(-1.5), T(0.25), T(0.5)}));
}

TYPED_TEST(PierceTriangleTest, CountsVerticesAndEdges)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(UnitTriangle<T>(0, 0), Answer<T>{true, T(1.5), T(0), T(0)}));
    EXPECT_TRUE(Same(UnitTriangle<T>(1, 0), Answer<T>{true, T(1.5), T(1), T(0)}));
    EXPECT_TRUE(Same(UnitTriangle<T>(0, 1), Answer<T>{true, T(1.5), T(0), T(1)}));
    EXPECT_TRUE(UnitTriangle<T>(T(0.5), T(0.5)).isHit);
}

TYPED_TEST(PierceTriangleTest, CountsARimOfATenThousandth)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(UnitTriangle<T>(T(-0.00005), T(0.5)).isHit);
    EXPECT_TRUE(UnitTriangle<T>(T(0.5), T(-0.00005)).isHit);
    EXPECT_TRUE(UnitTriangle<T>(T(0.5), T(0.50005)).isHit);
    EXPECT_FALSE(UnitTriangle<T>(T(-0.00015), T(0.5)).isHit);
    EXPECT_FALSE(UnitTriangle<T>(T(0.5), T(-0.00015)).isHit);
    EXPECT_FALSE(UnitTriangle<T>(T(0.5), T(0.50015)).isHit);
}

TEST(PierceTriangle, IncludesTheLimitsOfTheRim)
{
    EXPECT_TRUE(UnitTriangle<double>(-0.0001, 0.5).isHit);
    EXPECT_FALSE(UnitTriangle<double>(std::nextafter(-0.0001, -1.0), 0.5).isHit);
    EXPECT_TRUE(UnitTriangle<double>(0.5, -0.0001).isHit);
    EXPECT_FALSE(UnitTriangle<double>(0.5, std::nextafter(-0.0001, -1.0)).isHit);
    EXPECT_TRUE(UnitTriangle<double>(1.0001, 0).isHit);
    EXPECT_FALSE(UnitTriangle<double>(std::nextafter(1.0001, 2.0), 0).isHit);
    EXPECT_TRUE(UnitTriangle<double>(0, 1.0001).isHit);
    EXPECT_FALSE(UnitTriangle<double>(0, std::nextafter(1.0001, 2.0)).isHit);
    EXPECT_TRUE(UnitTriangle<double>(1.0001, -0.0001).isHit);
}

TYPED_TEST(PierceTriangleTest, WritesWhatItHasFoundUpToTheRejection)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const T none = kUntouched<T>;
    const bool isDouble = sizeof(T) == 8;
    EXPECT_TRUE(Same(UnitTriangle<T>(T(-0.5), T(0.5)), Answer<T>{false, none, isDouble ? T(-0.5) : none, none}));
    EXPECT_TRUE(Same(UnitTriangle<T>(T(1.5), T(-4)), Answer<T>{false, none, isDouble ? T(1.5) : none, none}));
    EXPECT_TRUE(Same(UnitTriangle<T>(T(0.5), T(-0.5)),
                     Answer<T>{false, none, isDouble ? T(0.5) : none, isDouble ? T(-0.5) : none}));
    EXPECT_TRUE(Same(UnitTriangle<T>(T(0.5), T(0.75)),
                     Answer<T>{false, none, isDouble ? T(0.5) : none, isDouble ? T(0.75) : none}));
}

TYPED_TEST(PierceTriangleTest, RejectsSmallDeterminantsWithoutWriting)
{
    CADGEOM_TEST_TYPES(TypeParam);
    // Along the plane, a triangle without area, no direction.
    EXPECT_TRUE(Same(Triangle<T>({-1, T(0.25), 0}, {1, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), Answer<T>()));
    EXPECT_TRUE(Same(Triangle<T>({0, 0, 1}, {0, 0, 1}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}), Answer<T>()));
    EXPECT_TRUE(Same(Triangle<T>({0, 0, 1}, {0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), Answer<T>()));
}

TEST(PierceTriangle, ComparesTheDeterminantWithAMillionthOnBothSides)
{
    // The determinant is minus the z component of the direction.
    for (const double sign : {-1.0, 1.0}) {
        const double at = sign * 1e-6;
        const double above = sign * std::nextafter(1e-6, 1.0);
        EXPECT_FALSE(Triangle<double>({0, 0, 1}, {0, 0, at}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}).isHit);
        EXPECT_TRUE(Triangle<double>({0, 0, 1}, {0, 0, above}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}).isHit);
    }
}

TYPED_TEST(PierceTriangleTest, LetsNaNPass)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Answer<T> answer = UnitTriangle<T>(kNaN<T>, 0);
    EXPECT_TRUE(answer.isHit);
    EXPECT_TRUE(std::isnan(answer.b));
}

TYPED_TEST(PierceTriangleTest, AgreesWithTheStepsOnRandomAndWildInput)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(61);
    int hits = 0;
    for (int i = 0; i < 100000; ++i) {
        const bool isWild = source.Integer(0, 1) == 0;
        const auto point = [&] { return isWild ? source.WildPoint() : source.Point(1); };
        const Point o = point();
        const Vector d = isWild ? source.WildVector() : source.Vector(1);
        const Point p0 = point();
        const Point p1 = point();
        const Point p2 = point();
        const Answer<T> expected = ExpectedTriangle(o, d, p0, p1, p2);
        ASSERT_TRUE(Same(Triangle(o, d, p0, p1, p2), expected)) << i;
        hits += expected.isHit ? 1 : 0;
    }
    EXPECT_GT(hits, 5000);
}

TEST(PierceTriangle, FindsExactlyThePublishedHitsOnMeshes)
{
    for (const std::string name : {"featuretype", "ballA"}) {
        const meshes::Mesh mesh = meshes::ReadMesh(name);
        for (const meshes::Line& line : meshes::ReadLines(name)) {
            std::size_t found = 0;
            for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
                double t = 0;
                double u = 0;
                double v = 0;
                if (!PierceTriangle(line.origin, line.direction, mesh.Corner(i, 0), mesh.Corner(i, 1),
                                    mesh.Corner(i, 2), t, u, v)) {
                    continue;
                }
                const meshes::Hit* hit = line.FindHit(i);
                ASSERT_NE(hit, nullptr) << name << ' ' << i;
                EXPECT_NEAR(t, hit->t, 1e-11 * (1 + std::fabs(hit->t)));
                EXPECT_NEAR(u, hit->u, 1e-10);
                EXPECT_NEAR(v, hit->v, 1e-10);
                ++found;
            }
            EXPECT_EQ(found, line.hits.size()) << name;
        }
    }
}

TEST(PierceTriangle, FindsThePublishedHitsInSinglePrecision)
{
    const meshes::Mesh mesh = meshes::ReadMesh("ballA");
    for (const meshes::Line& line : meshes::ReadLines("ballA")) {
        const auto narrow = [](const auto& v) {
            return CadPoint3d<float>(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]));
        };
        const CadPoint3d<float> d = narrow(line.direction);
        for (const meshes::Hit& hit : line.hits) {
            float t = 0;
            float u = 0;
            float v = 0;
            ASSERT_TRUE(PierceTriangle<float>(
                narrow(line.origin), {d.x(), d.y(), d.z()}, narrow(mesh.Corner(hit.triangle, 0)),
                narrow(mesh.Corner(hit.triangle, 1)), narrow(mesh.Corner(hit.triangle, 2)), t, u, v));
            EXPECT_NEAR(static_cast<double>(t), hit.t, 1e-4);
        }
    }
}

TEST(PierceParallelogram, MeetsThePlaneAnywhere)
{
    double t = 0;
    double u = 0;
    double v = 0;
    EXPECT_TRUE(PierceParallelogram<double>({11, -6, 3}, {0, 0, -2}, {1, 0, 0}, {2, 0, 0}, {0, 3, 0}, t, u, v));
    EXPECT_EQ(t, 1.5);
    EXPECT_EQ(u, 5);
    EXPECT_EQ(v, -2);
    float tf = 0;
    float uf = 0;
    float vf = 0;
    EXPECT_TRUE(PierceParallelogram({11, -6, 3}, {0, 0, -2}, {1, 0, 0}, {2, 0, 0}, {0, 3, 0}, tf, uf, vf));
    EXPECT_EQ(tf, 1.5F);
    EXPECT_EQ(uf, 5.0F);
    EXPECT_EQ(vf, -2.0F);
}

TEST(PierceParallelogram, LeavesTheOutputsWithoutAHit)
{
    double t = kUntouched<double>;
    double u = t;
    double v = t;
    EXPECT_FALSE(PierceParallelogram<double>({0, 0, 3}, {1, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 3, 0}, t, u, v));
    EXPECT_FALSE(PierceParallelogram<double>({0, 0, 3}, {0, 0, 1e-6}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, t, u, v));
    EXPECT_FALSE(PierceParallelogram<double>({0, 0, 3}, {0, 0, -1e-6}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, t, u, v));
    EXPECT_EQ(t, kUntouched<double>);
    EXPECT_EQ(u, kUntouched<double>);
    EXPECT_EQ(v, kUntouched<double>);
    float tf = kUntouched<float>;
    float uf = tf;
    float vf = tf;
    EXPECT_FALSE(PierceParallelogram({0, 0, 3}, {1, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 3, 0}, tf, uf, vf));
    EXPECT_EQ(tf, kUntouched<float>);
    EXPECT_EQ(uf, kUntouched<float>);
    EXPECT_EQ(vf, kUntouched<float>);
}

TEST(PierceParallelogram, ComputesFloatsInDouble)
{
    samples::Source<float> source(62);
    for (int i = 0; i < 20000; ++i) {
        const CadPoint3d<float> o = source.WildPoint();
        const CadVector3d<float> d = source.WildVector();
        const CadPoint3d<float> corner = source.WildPoint();
        const CadVector3d<float> e1 = source.WildVector();
        const CadVector3d<float> e2 = source.WildVector();
        Answer<double> wide;
        Answer<float> expected;
        wide.isHit = PierceParallelogram(Wide(o), Wide(d), Wide(corner), Wide(e1), Wide(e2), wide.a, wide.b, wide.c);
        if (wide.isHit) {
            expected = {true, static_cast<float>(wide.a), static_cast<float>(wide.b), static_cast<float>(wide.c)};
        }
        Answer<float> actual;
        actual.isHit = PierceParallelogram(o, d, corner, e1, e2, actual.a, actual.b, actual.c);
        ASSERT_TRUE(Same(actual, expected)) << i;
    }
}

namespace {

template <class T>
Answer<T> Sphere(const CadPoint3d<T>& centre, T radius, const CadPoint3d<T>& o, const CadVector3d<T>& d)
{
    Answer<T> answer;
    answer.isHit = PierceSphere(centre, radius, o, d, answer.a, answer.b);
    return answer;
}

template <class T>
Answer<T> SphereByStep(const CadPoint3d<T>& centre, T radius, const CadPoint3d<T>& o, const CadVector3d<T>& d)
{
    const T t0 = centre.projectOntoLineParam(o, d);
    const T delta = (centre - (o + d * t0)).length();
    const T s = radius * radius - delta * delta;
    if (s <= T(0)) {
        return {false, t0, t0};
    }
    const T h = std::sqrt(s) / d.length();
    return {true, t0 - h, t0 + h};
}

} // namespace

TYPED_TEST(PierceSphereTest, FindsBothCrossings)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Sphere<T>({0, 0, 0}, 1, {-5, 0, 0}, {2, 0, 0}), Answer<T>{true, 2, 3}));
    EXPECT_TRUE(Same(Sphere<T>({0, 0, 0}, 5, {-5, 4, 0}, {-1, 0, 0}), Answer<T>{true, -8, -2}));
    EXPECT_TRUE(Same(Sphere<T>({0, 0, 0}, -5, {-5, 4, 0}, {-1, 0, 0}), Answer<T>{true, -8, -2}));
}

TYPED_TEST(PierceSphereTest, GivesTheNearestPointOfAMissAndOfATangent)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Sphere<T>({0, 0, 0}, 1, {-5, 1, 0}, {2, 0, 0}), Answer<T>{false, T(2.5), T(2.5)}));
    EXPECT_TRUE(Same(Sphere<T>({0, 0, 0}, 1, {-5, 3, 0}, {2, 0, 0}), Answer<T>{false, T(2.5), T(2.5)}));
    EXPECT_TRUE(Same(Sphere<T>({0, 0, 0}, 0, {-5, 0, 0}, {2, 0, 0}), Answer<T>{false, T(2.5), T(2.5)}));
    EXPECT_TRUE(Same(Sphere<T>({0, 0, 0}, 1, {3, 0, 0}, {0, 0, 0}), Answer<T>{false, 0, 0}));
}

TYPED_TEST(PierceSphereTest, AgreesWithTheStepsOnRandomAndWildInput)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(63);
    for (int i = 0; i < 50000; ++i) {
        const bool isWild = source.Integer(0, 1) == 0;
        const Point centre = isWild ? source.WildPoint() : source.Point(2);
        const Point o = isWild ? source.WildPoint() : source.Point(2);
        const Vector d = isWild ? source.WildVector() : source.Vector(2);
        const T radius = isWild ? source.Wild() : source.Between(0, 3);
        ASSERT_TRUE(Same(Sphere(centre, radius, o, d), SphereByStep(centre, radius, o, d))) << i;
    }
}

TYPED_TEST(PierceSphereTest, PutsTheCrossingsOnTheSphere)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(64);
    for (int i = 0; i < 2000; ++i) {
        const Point centre = source.Point(5);
        const Point o = source.Point(5);
        const Vector d = source.Vector(2);
        const T radius = source.Between(1, 5);
        const Answer<T> answer = Sphere(centre, radius, o, d);
        if (answer.isHit && d.length() > T(0.5)) {
            ASSERT_LE(answer.a, answer.b);
            for (const T t : {answer.a, answer.b}) {
                const double distance = (Wide(o) + Wide(d) * static_cast<double>(t)).distance(Wide(centre));
                ASSERT_NEAR(distance, static_cast<double>(radius), sizeof(T) == 8 ? 1e-12 : 1e-4) << i;
            }
        }
    }
}

namespace {

template <class T>
Answer<T> Cylinder(const CadPoint3d<T>& base, const CadVector3d<T>& axis, T radius, const CadPoint3d<T>& o,
                   const CadVector3d<T>& d)
{
    Answer<T> answer;
    answer.isHit = PierceCylinder(base, axis, radius, o, d, answer.a, answer.b);
    return answer;
}

template <class T>
Answer<T> CylinderByStep(const CadPoint3d<T>& base, const CadVector3d<T>& axis, T radius, const CadPoint3d<T>& o,
                         const CadVector3d<T>& d)
{
    const T e = static_cast<T>(kSingleEpsilon);
    Answer<T> answer;
    const CadVector3d<T> dp = d.projectOntoPlane(axis);
    bool isAlong = true;
    for (int axisIndex = 0; axisIndex < 3; ++axisIndex) {
        isAlong = isAlong && std::fabs(dp[axisIndex]) <= e;
    }
    if (isAlong) {
        if (std::fabs(axis.dot(d)) > e) {
            answer.a = axis.dot(base - o) / axis.dot(d);
        }
        answer.b = answer.a;
        const CadVector3d<T> q = o + d * answer.a - base;
        answer.isHit = std::fabs(q.lengthSquared() - radius * radius) <= e;
        return answer;
    }
    const CadPoint3d<T> op = o.projectOntoPlane(base, axis);
    const T squared = dp.lengthSquared();
    const T t0 = squared <= (sizeof(T) == 8 ? T(1e-12) : T(1e-8)) ? T(0) : dp.dot(base - op) / squared;
    const T deltaSquared = (op + dp * base.projectOntoLineParam(op, dp) - base).lengthSquared();
    if (deltaSquared < radius * radius) {
        const T h = std::sqrt(radius * radius - deltaSquared) / dp.length();
        return {true, t0 - h, t0 + h};
    }
    return {false, t0, t0};
}

} // namespace

TYPED_TEST(PierceCylinderTest, FindsBothCrossingsInParametersOfTheLine)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 7}, {0, 0, 2}, 1, {-5, 0, 1}, {2, 0, 4}), Answer<T>{true, 2, 3}));
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 7}, {0, 0, 2}, 5, {-5, 4, 1}, {-1, 0, 0}), Answer<T>{true, -8, -2}));
}

TYPED_TEST(PierceCylinderTest, GivesTheClosestApproachOfAMissAndOfATangent)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 7}, {0, 0, 2}, 1, {-5, 1, 1}, {2, 0, 4}), Answer<T>{false, T(2.5), T(2.5)}));
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 7}, {0, 0, 2}, 1, {-5, 2, 1}, {2, 0, 4}), Answer<T>{false, T(2.5), T(2.5)}));
}

TYPED_TEST(PierceCylinderTest, HitsWithALineOnTheSurface)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 7}, {0, 0, 2}, 1, {1, 0, 1}, {0, 0, 4}), Answer<T>{true, T(1.5), T(1.5)}));
    EXPECT_TRUE(
        Same(Cylinder<T>({0, 0, 7}, {0, 0, 2}, 1, {T(0.5), 0, 1}, {0, 0, 4}), Answer<T>{false, T(1.5), T(1.5)}));
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 7}, {0, 0, 2}, 1, {2, 0, 1}, {0, 0, 4}), Answer<T>{false, T(1.5), T(1.5)}));
}

TYPED_TEST(PierceCylinderTest, ComparesTheSquaredDistanceOfALineAlongTheAxisInclusively)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const T e = static_cast<T>(kSingleEpsilon);
    // On the axis the excess is -radius^2.
    const T radius = T(0.00034526698300124393);
    ASSERT_NEAR(static_cast<double>(radius * radius), kSingleEpsilon, 1e-14);
    EXPECT_TRUE(Cylinder<T>({0, 0, 0}, {0, 0, 1}, T(0.000345), {0, 0, 1}, {0, 0, 1}).isHit);
    EXPECT_FALSE(Cylinder<T>({0, 0, 0}, {0, 0, 1}, T(0.000346), {0, 0, 1}, {0, 0, 1}).isHit);
    // With radius 0 the excess is the squared distance: 2^-23 = 2^-24 + 2^-24.
    const T side = T(1) / T(4096);
    ASSERT_EQ(side * side + side * side, e);
    EXPECT_TRUE(Cylinder<T>({0, 0, 0}, {0, 0, 1}, 0, {side, side, 1}, {0, 0, 1}).isHit);
    EXPECT_FALSE(Cylinder<T>({0, 0, 0}, {0, 0, 1}, 0, {side, std::nextafter(side, T(1)), 1}, {0, 0, 1}).isHit);
}

TYPED_TEST(PierceCylinderTest, KeepsTheFirstParameterWithoutADirection)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 0}, {0, 0, 1}, 1, {1, 0, 0}, {0, 0, 0}),
                     Answer<T>{true, kUntouched<T>, kUntouched<T>}));
    EXPECT_TRUE(Same(Cylinder<T>({0, 0, 0}, {0, 0, 1}, 1, {2, 0, 0}, {0, 0, static_cast<T>(kSingleEpsilon)}),
                     Answer<T>{false, kUntouched<T>, kUntouched<T>}));
}

TYPED_TEST(PierceCylinderTest, TakesTheComponentsAcrossTheAxisInclusively)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const T e = static_cast<T>(kSingleEpsilon);
    const Point base(0, 0, 0);
    const Vector axis(0, 0, 1);
    // Along the axis t1 is -1, the crossing of z = 0; across it is 0, the foot on so short a direction.
    EXPECT_EQ(Cylinder(base, axis, T(9), Point(2, 0, 1), Vector(e, e, 1)).a, T(-1));
    EXPECT_NE(Cylinder(base, axis, T(9), Point(2, 0, 1), Vector(std::nextafter(e, T(1)), 0, 1)).a, T(-1));
    EXPECT_NE(Cylinder(base, axis, T(9), Point(2, 0, 1), Vector(0, std::nextafter(-e, T(-1)), 1)).a, T(-1));
}

TYPED_TEST(PierceCylinderTest, MissesWithoutAnAxis)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Answer<T> answer = Cylinder<T>({0, 0, 0}, {0, 0, 0}, 1, {-5, 0, 1}, {2, 0, 4});
    EXPECT_FALSE(answer.isHit);
    EXPECT_TRUE(std::isnan(answer.a));
    EXPECT_TRUE(std::isnan(answer.b));
}

TYPED_TEST(PierceCylinderTest, AgreesWithTheStepsOnRandomAndWildInput)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(65);
    for (int i = 0; i < 50000; ++i) {
        const bool isWild = source.Integer(0, 1) == 0;
        const Point base = isWild ? source.WildPoint() : source.Point(2);
        const Vector axis = isWild ? source.WildVector() : source.Vector(2);
        const Point o = isWild ? source.WildPoint() : source.Point(2);
        const Vector d = source.Integer(0, 5) == 0 ? Vector(axis * source.Between(-1, 1))
                                                   : (isWild ? source.WildVector() : source.Vector(2));
        const T radius = isWild ? source.Wild() : source.Between(0, 3);
        ASSERT_TRUE(Same(Cylinder(base, axis, radius, o, d), CylinderByStep(base, axis, radius, o, d))) << i;
    }
}

TYPED_TEST(PierceCylinderTest, PutsTheCrossingsOnTheCylinder)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(66);
    for (int i = 0; i < 2000; ++i) {
        const Point base = source.Point(5);
        const Vector axis = source.Vector(2);
        const Point o = source.Point(5);
        const Vector d = source.Vector(2);
        const T radius = source.Between(1, 5);
        const Answer<T> answer = Cylinder(base, axis, radius, o, d);
        const Vector across = axis.cross(d);
        if (answer.isHit && across.length() > T(0.5)) {
            for (const T t : {answer.a, answer.b}) {
                const CadPoint3d<double> point = Wide(o) + Wide(d) * static_cast<double>(t);
                const double distance = std::sqrt(point.distanceSquaredToLine(Wide(base), Wide(axis)));
                ASSERT_NEAR(distance, static_cast<double>(radius), sizeof(T) == 8 ? 1e-11 : 2e-3) << i;
            }
        }
    }
}

namespace {

template <class T>
Answer<T> Cone(const CadPoint3d<T>& apex, const CadVector3d<T>& axis, T halfAngle, const CadPoint3d<T>& o,
               const CadVector3d<T>& d)
{
    Answer<T> answer;
    answer.isHit = PierceCone(apex, axis, halfAngle, o, d, answer.a, answer.b);
    return answer;
}

/// The cone on dense matrices.
template <class T>
Answer<T> ConeByMatrices(const CadPoint3d<T>& apex, const CadVector3d<T>& axis, T halfAngle, const CadPoint3d<T>& o,
                         const CadVector3d<T>& d)
{
    const CVector n(Wide(axis));
    const CVector direction(Wide(d));
    const CVector w(CadVector3d<double>(Wide(o) - Wide(apex)));
    const double cosine = std::cos(static_cast<double>(halfAngle));
    const CMatrix m = n * n.GetTranspose() - CMatrix::GetIdentityMatrix(3) * (cosine * cosine);
    const double c2 = (w.GetTranspose() * m * w)[0];
    const double c1 = (direction.GetTranspose() * m * w)[0];
    const double c0 = (direction.GetTranspose() * m * direction)[0];
    const double discriminant = c1 * c1 - c0 * c2;
    if (discriminant >= 0) {
        return {true, static_cast<T>((-c1 - std::sqrt(discriminant)) / c0),
                static_cast<T>((std::sqrt(discriminant) - c1) / c0)};
    }
    double nearest = 0;
    double unused = 0;
    ProjectLineOntoLine(Wide(o), Wide(d), Wide(apex), Wide(axis), nearest, unused);
    return {false, static_cast<T>(nearest), static_cast<T>(nearest)};
}

} // namespace

TYPED_TEST(PierceConeTest, FindsBothNappes)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const T angle = static_cast<T>(kHalfPi / 2);
    const double tolerance = sizeof(T) == 8 ? 1e-15 : 1e-6;
    // Across one nappe at height 2, and along z through both of them at distance 3.
    Answer<T> answer = Cone<T>({0, 0, 0}, {0, 0, 1}, angle, {-5, 0, 2}, {1, 0, 0});
    EXPECT_TRUE(answer.isHit);
    // The quadratic coefficient is negative for a line across, so that the crossings come in reverse order.
    EXPECT_NEAR(static_cast<double>(answer.a), 7, 10 * tolerance);
    EXPECT_NEAR(static_cast<double>(answer.b), 3, 10 * tolerance);
    answer = Cone<T>({0, 0, 0}, {0, 0, 1}, angle, {3, 0, 0}, {0, 0, 1});
    EXPECT_TRUE(answer.isHit);
    EXPECT_NEAR(static_cast<double>(answer.a), -3, 10 * tolerance);
    EXPECT_NEAR(static_cast<double>(answer.b), 3, 10 * tolerance);
}

TYPED_TEST(PierceConeTest, GivesTheClosestApproachToTheAxisOfAMiss)
{
    CADGEOM_TEST_TYPES(TypeParam);
    // At height 1 the nappes have radius 1; the line passes at distance 2.
    const Answer<T> answer = Cone<T>({0, 0, 0}, {0, 0, 1}, static_cast<T>(kHalfPi / 2), {-6, 2, 1}, {2, 0, 0});
    EXPECT_TRUE(Same(answer, Answer<T>{false, 3, 3}));
}

TYPED_TEST(PierceConeTest, DividesByZeroForALineParallelToTheSurface)
{
    CADGEOM_TEST_TYPES(TypeParam);
    // With a half angle of 0 the cone is its axis, and along the axis the quadratic coefficient vanishes exactly.
    const Answer<T> answer = Cone<T>({0, 0, 0}, {0, 0, 1}, 0, {1, 0, 0}, {0, 0, 1});
    EXPECT_TRUE(answer.isHit);
    EXPECT_TRUE(std::isnan(answer.a) || std::isinf(answer.a));
    EXPECT_TRUE(std::isnan(answer.b) || std::isinf(answer.b));
}

TYPED_TEST(PierceConeTest, MissesWithANaNAngle)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(Same(Cone<T>({0, 0, 0}, {0, 0, 1}, kNaN<T>, {-6, 2, 1}, {2, 0, 0}), Answer<T>{false, 3, 3}));
    EXPECT_TRUE(Same(Cone<T>({0, 0, 0}, {0, 0, 1}, kInfinity<T>, {-6, 2, 1}, {2, 0, 0}), Answer<T>{false, 3, 3}));
}

TYPED_TEST(PierceConeTest, AgreesWithDenseMatricesOnRandomAndWildInput)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(67);
    for (int i = 0; i < 50000; ++i) {
        const bool isWild = source.Integer(0, 1) == 0;
        const Point apex = isWild ? source.WildPoint() : source.Point(2);
        const Vector axis = isWild ? source.WildVector() : source.Vector(2);
        const Point o = isWild ? source.WildPoint() : source.Point(2);
        const Vector d = isWild ? source.WildVector() : source.Vector(2);
        const T angle = isWild ? source.Wild() : source.Between(0, 1.6);
        ASSERT_TRUE(Same(Cone(apex, axis, angle, o, d), ConeByMatrices(apex, axis, angle, o, d))) << i;
    }
}

TYPED_TEST(PierceConeTest, PutsTheCrossingsAtTheHalfAngle)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(68);
    for (int i = 0; i < 2000; ++i) {
        const Point apex = source.Point(5);
        Vector axis = source.Vector(2);
        axis.normalize();
        const Point o = source.Point(5);
        const Vector d = source.Vector(2);
        const T angle = source.Between(0.3, 1.2);
        const Answer<T> answer = Cone(apex, axis, angle, o, d);
        if (!answer.isHit) {
            continue;
        }
        for (const T t : {answer.a, answer.b}) {
            const CadVector3d<double> fromApex = Wide(o) + Wide(d) * static_cast<double>(t) - Wide(apex);
            if (std::fabs(t) < T(20) && fromApex.length() > 1) {
                const double cosine = std::fabs(fromApex.dot(Wide(axis))) / fromApex.length();
                ASSERT_NEAR(cosine, std::cos(static_cast<double>(angle)), sizeof(T) == 8 ? 1e-9 : 1e-3) << i;
            }
        }
    }
}

namespace {

using UvArray = CArray<CadPoint2d<double>, const CadPoint2d<double>&>;

class PierceQuadTest : public ::testing::Test {
protected:
    bool Pierce(const CadPoint3d<double>& o, const CadVector3d<double>& d, const std::vector<CadPoint3d<double>>& q)
    {
        return PierceQuad(o, d, q.data(), uvs, ts);
    }

    /// Whether some entry has these values.
    bool Has(double u, double v, double t, double tolerance)
    {
        for (std::int64_t i = 0; i < ts.GetSize(); ++i) {
            if (std::fabs(uvs[i].u() - u) <= tolerance && std::fabs(uvs[i].v() - v) <= tolerance &&
                std::fabs(ts[i] - t) <= tolerance) {
                return true;
            }
        }
        return false;
    }

    UvArray uvs;
    CArray<double> ts;
};

const std::vector<CadPoint3d<double>> kUnitSquare = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}};

/// z = x * y over the unit square.
const std::vector<CadPoint3d<double>> kSaddle = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 1}};

} // namespace

TEST_F(PierceQuadTest, FindsTheHitOfAFlatSquare)
{
    EXPECT_TRUE(Pierce({0.25, 0.5, 1}, {0, 0, -1}, kUnitSquare));
    ASSERT_EQ(ts.GetSize(), 1);
    ASSERT_EQ(uvs.GetSize(), 1);
    EXPECT_EQ(uvs[0].u(), 0.25);
    EXPECT_EQ(uvs[0].v(), 0.5);
    EXPECT_EQ(ts[0], 1);
}

TEST_F(PierceQuadTest, FindsHitsOutsideTheSquare)
{
    EXPECT_TRUE(Pierce({5, -3, 1}, {0, 0, -2}, kUnitSquare));
    EXPECT_TRUE(Has(5, -3, 0.5, 0));
}

TEST_F(PierceQuadTest, ReportsEveryPairOfRoots)
{
    // The line x = y, z = 1/4 meets the saddle at (1/2, 1/2) and (-1/2, -1/2).
    EXPECT_TRUE(Pierce({0, 0, 0.25}, {1, 1, 0}, kSaddle));
    ASSERT_EQ(ts.GetSize(), 4);
    EXPECT_TRUE(Has(0.5, 0.5, 0.5, 1e-15));
    EXPECT_TRUE(Has(-0.5, -0.5, -0.5, 1e-15));
    EXPECT_TRUE(Has(0.5, -0.5, 0, 1e-15));
    EXPECT_TRUE(Has(-0.5, 0.5, 0, 1e-15));
    // First by the root of u, then by that of v; (sqrt(D) - B) / A comes first.
    EXPECT_EQ(uvs[0].u(), uvs[1].u());
    EXPECT_EQ(uvs[2].u(), uvs[3].u());
    EXPECT_EQ(uvs[0].v(), uvs[2].v());
    EXPECT_EQ(uvs[1].v(), uvs[3].v());
    EXPECT_EQ(uvs[0].u(), -0.5);
    EXPECT_EQ(uvs[0].v(), 0.5);
}

TEST_F(PierceQuadTest, EmptiesTheArraysWhateverTheOutcome)
{
    uvs.SetSize(10);
    ts.SetSize(20);
    // Below the saddle's valley: x = y, z = -1.
    EXPECT_FALSE(Pierce({0, 0, -1}, {1, 1, 0}, kSaddle));
    EXPECT_EQ(uvs.GetSize(), 0);
    EXPECT_EQ(ts.GetSize(), 0);
    EXPECT_EQ(uvs.GetCapacity(), 0);
    EXPECT_EQ(ts.GetCapacity(), 0);
    uvs.SetSize(10);
    ts.SetSize(20);
    EXPECT_FALSE(PierceQuad({0, 0, 0}, {1, 1, 0}, nullptr, uvs, ts));
    EXPECT_EQ(uvs.GetCapacity(), 0);
    EXPECT_EQ(ts.GetCapacity(), 0);
}

TEST_F(PierceQuadTest, MissesAlongAFlatSquare)
{
    EXPECT_FALSE(Pierce({0, 0, 1}, {1, 0, 0}, kUnitSquare));
    EXPECT_FALSE(Pierce({0, 0, 1}, {0, 0, 0}, kUnitSquare));
    EXPECT_EQ(ts.GetSize(), 0);
}

TEST_F(PierceQuadTest, TreatsCoincidingCornersAsATriangle)
{
    const CadPoint3d<double> a(0, 0, 0);
    const CadPoint3d<double> b(4, 0, 0);
    const CadPoint3d<double> c(0, 4, 0);
    const CadPoint3d<double> o(1, 2, 3);
    const CadVector3d<double> d(0, 0, -1);
    // q2 = q0 = a: triangle (q1, q3, q2), parameters (1, 0), (1, 1), (0, 1) with weights 1/4, 1/2 and 1/4.
    EXPECT_TRUE(Pierce(o, d, {a, b, a, c}));
    ASSERT_EQ(ts.GetSize(), 1);
    EXPECT_TRUE(Has(0.75, 0.75, 3, 0));
    // q1 = q0 = a: the same triangle, from q1 = a, q3 = b and q2 = c.
    EXPECT_TRUE(Pierce(o, d, {a, a, c, b}));
    ASSERT_EQ(ts.GetSize(), 1);
    EXPECT_TRUE(Has(0.25 + 0.25, 0.25 + 0.5, 3, 0));
    // q3 = q2 = c: triangle (q0, q1, q2), whose parameters are u and v themselves.
    EXPECT_TRUE(Pierce(o, d, {a, b, c, c}));
    ASSERT_EQ(ts.GetSize(), 1);
    EXPECT_TRUE(Has(0.25, 0.5, 3, 0));
    // q1 = q3 = b: likewise.
    EXPECT_TRUE(Pierce(o, d, {a, b, c, b}));
    ASSERT_EQ(ts.GetSize(), 1);
    EXPECT_TRUE(Has(0.25, 0.5, 3, 0));
    EXPECT_FALSE(Pierce({5, 5, 3}, d, {a, b, c, b}));
    EXPECT_EQ(ts.GetSize(), 0);
}

TEST_F(PierceQuadTest, ComparesCornersPerCoordinateInclusively)
{
    // A patch with q3 near q2, whose fourth corner moves the hit when it counts.
    const auto pierce = [this](double step) {
        return Pierce({0.25, 0.5, 1}, {0, 0, -1}, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {step, 1, 0}});
    };
    EXPECT_TRUE(pierce(1e-6));
    EXPECT_TRUE(Has(0.25, 0.5, 1, 0));
    EXPECT_TRUE(pierce(1.1e-6));
    EXPECT_FALSE(Has(0.25, 0.5, 1, 1e-3));
    EXPECT_TRUE(Has(0.5, 0.5, 1, 1e-5));
}

TEST_F(PierceQuadTest, FindsTheHitOfRandomPatches)
{
    samples::Source<double> source(69);
    for (int i = 0; i < 5000; ++i) {
        const std::vector<CadPoint3d<double>> q = {
            CadPoint3d<double>(source.Between(0, 1), source.Between(0, 1), source.Between(0, 3)),
            CadPoint3d<double>(source.Between(3, 4), source.Between(0, 1), source.Between(0, 3)),
            CadPoint3d<double>(source.Between(0, 1), source.Between(3, 4), source.Between(0, 3)),
            CadPoint3d<double>(source.Between(3, 4), source.Between(3, 4), source.Between(0, 3))};
        const double u = source.Between(0, 1);
        const double v = source.Between(0, 1);
        const double t = source.Between(-3, 3);
        const CadVector3d<double> d(source.Between(-0.2, 0.2), source.Between(-0.2, 0.2), 1);
        CadPoint3d<double> hit;
        for (int axis = 0; axis < 3; ++axis) {
            hit[axis] = (1 - v) * ((1 - u) * q[0][axis] + u * q[1][axis]) + v * ((1 - u) * q[2][axis] + u * q[3][axis]);
        }
        ASSERT_TRUE(Pierce(hit - d * t, d, q)) << i;
        ASSERT_EQ(ts.GetSize(), 4) << i;
        ASSERT_TRUE(Has(u, v, t, 1e-9)) << i;
    }
}

TEST_F(PierceQuadTest, GivesParameterZeroWithoutADirection)
{
    // A direction this short still has quadratic coefficients above 1e-6 on a large patch.
    std::vector<CadPoint3d<double>> large = kSaddle;
    for (CadPoint3d<double>& corner : large) {
        corner *= 1e6;
    }
    EXPECT_TRUE(Pierce({0, 0, 250000}, {5e-7, 5e-7, 0}, large));
    ASSERT_EQ(ts.GetSize(), 4);
    for (std::int64_t i = 0; i < 4; ++i) {
        EXPECT_EQ(ts[i], 0);
    }
}

TEST_F(PierceQuadTest, EmptiesBothArraysWhenMemoryRunsOut)
{
    // A growth step that no memory can hold.
    ts.SetSize(0, INT64_MAX);
    EXPECT_THROW(Pierce({0.25, 0.5, 1}, {0, 0, -1}, kUnitSquare), CMemoryException);
    EXPECT_EQ(uvs.GetCapacity(), 0);
    EXPECT_EQ(ts.GetCapacity(), 0);
    EXPECT_THROW(Pierce({0.25, 0.5, 1}, {0, 0, -1}, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 1, 0}}), CMemoryException);
    EXPECT_EQ(uvs.GetCapacity(), 0);
}

TEST_F(PierceQuadTest, AgreesWithTheStepsOnWildInput)
{
    samples::Source<double> source(70);
    for (int i = 0; i < 50000; ++i) {
        std::vector<CadPoint3d<double>> q(4);
        for (CadPoint3d<double>& corner : q) {
            corner = source.WildPoint();
        }
        const CadPoint3d<double> o = source.WildPoint();
        const CadVector3d<double> d = source.WildVector();
        if (q[2] == q[0] || q[1] == q[0] || q[3] == q[2] || q[1] == q[3]) {
            continue;
        }
        const CadVector3d<double> e1 = q[1] - q[0];
        const CadVector3d<double> e2 = q[2] - q[0];
        const CadVector3d<double> f = q[3] - q[2] - e1;
        const CadVector3d<double> w = o - q[0];
        const CadVector3d<double> g = d.cross(f);
        const CadVector3d<double> h = d.cross(e2);
        const CadVector3d<double> k = d.cross(e1);
        std::vector<double> us;
        std::vector<double> vs;
        double a = -2 * e1.dot(g);
        double b = w.dot(g) - e1.dot(h);
        double c = w.dot(h);
        if (std::fabs(a) <= 1e-6) {
            if (!(b == 0)) {
                us = {-c / b};
            }
        } else if (const double discriminant = b * b - 2 * a * c; !(discriminant < 0)) {
            us = {(std::sqrt(discriminant) - b) / a, (-b - std::sqrt(discriminant)) / a};
        }
        a = -2 * e2.dot(g);
        b = w.dot(g) - e2.dot(k);
        c = w.dot(k);
        if (std::fabs(a) <= 1e-6) {
            if (b != 0) {
                vs = {-c / b};
            }
        } else if (const double discriminant = b * b - 2 * a * c; discriminant >= 0) {
            vs = {(std::sqrt(discriminant) - b) / a, (-b - std::sqrt(discriminant)) / a};
        }
        ASSERT_EQ(Pierce(o, d, q), !us.empty() && !vs.empty()) << i;
        ASSERT_EQ(static_cast<std::size_t>(ts.GetSize()), us.size() * vs.size()) << i;
        std::int64_t entry = 0;
        for (const double u : us) {
            for (const double v : vs) {
                CadPoint3d<double> s;
                for (int axis = 0; axis < 3; ++axis) {
                    s[axis] =
                        (1 - v) * ((1 - u) * q[0][axis] + u * q[1][axis]) + v * ((1 - u) * q[2][axis] + u * q[3][axis]);
                }
                const double squared = d.lengthSquared();
                const double t = squared <= 1e-12 ? 0 : (s - o).dot(d) / squared;
                ASSERT_TRUE(SameBits(uvs[entry], CadPoint2d<double>(u, v))) << i;
                ASSERT_TRUE(SameBits(ts[entry], t)) << i;
                ++entry;
            }
        }
    }
}
