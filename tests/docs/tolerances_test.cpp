// Holds docs/tolerances.md against the code: each row has a probe, which builds data whose measured quantity is a given
// number and tells whether the effect of the row's first column happens. The probes are asked just below the value on the
// page, at it and just above.

#include "docs/page.h"

#include <cadgeom/cadgeom.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

/// What the tests pass where the page says "yours".
constexpr double kPassed = 0.25;

template <class T>
using P3 = CadPoint3d<T>;
template <class T>
using V3 = CadVector3d<T>;
template <class T>
using P2 = CadPoint2d<T>;
template <class T>
using V2 = CadVector2d<T>;

struct Probe {
    std::function<bool(double)> inDouble;
    std::function<bool(float)> inFloat;
    double step = 0; ///< relative distance of the neighbours; 0 for the next numbers
};

template <class Effect>
Probe Both(Effect effect, double step = 0)
{
    return {[effect](double q) { return effect(q); }, [effect](float q) { return effect(q); }, step};
}

template <class Effect>
Probe InDouble(Effect effect, double step = 0)
{
    return {[effect](double q) { return effect(q); }, nullptr, step};
}

/// A vector, nearly along x, whose squared length comes out as `squared`.
template <class T>
V3<T> OfSquaredLength(T squared)
{
    for (T x = std::nextafter(std::sqrt(squared), T(0)); x > 0; x = std::nextafter(x, T(0))) {
        const T y = std::sqrt(squared - x * x);
        if (x * x + y * y == squared) {
            return V3<T>(x, y, 0);
        }
    }
    ADD_FAILURE() << "no vector has the squared length " << squared;
    return V3<T>(0, 0, 0);
}

/// A number that completes `component` to a unit vector of length exactly 1.
double Completion(double component)
{
    double other = std::sqrt(1 - component * component) + 8e-16;
    while (std::sqrt(other * other + component * component) > 1) {
        other = std::nextafter(other, 0.0);
    }
    EXPECT_EQ(std::sqrt(other * other + component * component), 1);
    return other;
}

template <class T>
CBoundingBox2d<T> Box2(T min, T max)
{
    return CBoundingBox2d<T>(P2<T>(min, min), P2<T>(max, max));
}

template <class T>
CBoundingBox3d<T> Box3(T min, T max)
{
    return CBoundingBox3d<T>(P3<T>(min, min, min), P3<T>(max, max, max));
}

template <class T>
COrientedBox3d<T> UnitOrientedBox(T x)
{
    COrientedBox3d<T> box;
    box.SetOrigin(P3<T>(x, 0, 0));
    box.SetSizes(V3<T>(1, 1, 1));
    return box;
}

using Probes = std::map<std::string, Probe>;

void AddVectorProbes(Probes& probes)
{
    probes["`CadVector::operator==` calls components equal"] =
        Both([](auto q) { return V3<decltype(q)>(0, q, 0) == V3<decltype(q)>(0, 0, 0); });
    probes["`CadVector::isAlmostZero` takes a component for 0, by default"] =
        Both([](auto q) { return V3<decltype(q)>(0, 0, q).isAlmostZero(); });
    probes["`CadVector::compare` passes on to the next component"] =
        Both([](auto q) { return V2<decltype(q)>(q, -1).compare(V2<decltype(q)>(0, 0)) == -1; });
    probes["`CadVector::isNormalized`"] = Both([](auto q) { return V3<decltype(q)>(0, 1 - q, 0).isNormalized(); }, 0.5);
    probes["`CadVector::projectOntoVectorParam` sees no direction"] =
        Both([](auto q) { return V3<decltype(q)>(1, 0, 0).projectOntoVectorParam(OfSquaredLength(q)) == 0; });
    probes["`CadPoint::projectOntoLineParam` sees no direction"] = Both([](auto q) {
        using T = decltype(q);
        return P3<T>(1, 0, 0).projectOntoLineParam(P3<T>::zero(), OfSquaredLength(q)) == 0;
    });
    probes["`CadPoint::projectOntoLineSegment` sees no direction"] = Both([](auto q) {
        using T = decltype(q);
        CadPoint<T, 3> foot;
        T squared;
        return P3<T>(1, 0, 0).projectOntoLineSegment(P3<T>::zero(), P3<T>::zero() + OfSquaredLength(q), foot,
                                                     squared) == 0;
    });
    probes["`CadPoint::distanceSquaredToLineSegment` sees no direction"] = Both([](auto q) {
        using T = decltype(q);
        const V3<T> edge = OfSquaredLength(q);
        const P3<T> end(P3<T>::zero() + edge);
        return end.distanceSquaredToLineSegment(P3<T>::zero(), end) != 0;
    });
    probes["`CadPoint3d::distanceSquaredToPlane` sees no normal"] = Both([](auto q) {
        using T = decltype(q);
        return P3<T>(5, 0, 1).distanceSquaredToPlane(P3<T>(0, 0, 0), OfSquaredLength(q)) == 1;
    });
    probes["`NormalizeStartAndEndAnglesDeg` leaves a start below 0"] = InDouble([](double q) {
        double start = -q, end = 10;
        NormalizeStartAndEndAnglesDeg(start, end, 0);
        return start == -q;
    });
    probes["`NormalizeStartAndEndAnglesRad` leaves a start below 0"] = InDouble([](double q) {
        double start = -q, end = 1;
        NormalizeStartAndEndAnglesRad(start, end, 0);
        return start == -q;
    });
    probes["`GetNumCircularArcAngleDivisions` adds no segment for a rest"] =
        InDouble([](double q) { return GetNumCircularArcAngleDivisions(1, 0, 1, 0, 1 + q, 0) == 1; }, 1e-6);
}

void AddTransformProbes(Probes& probes)
{
    using Point = P3<double>;
    using Vector = V3<double>;
    const CCadTransform& identity = CCadTransform::GetEmptyTransform();

    probes["`CCadTransform::IsZeroTranslate`"] = InDouble([identity](double q) {
        CCadTransform moved = identity;
        moved.SetTranslate(Point(0, q, 0));
        return moved.IsZeroTranslate();
    });
    probes["`CCadTransform::IsUnityScale`"] = InDouble(
        [identity](double q) {
            CCadTransform scaled = identity;
            scaled.SetScale(1 + q);
            return scaled.IsUnityScale();
        },
        1e-6);
    probes["`CCadTransform::IsIdentityRotation`"] = InDouble([identity](double q) {
        CCadTransform turned = identity;
        turned.setAxisX(Vector(1, q, 0));
        return turned.IsIdentityRotation();
    });
    probes["`CCadTransform::IsOrthoNormal` calls axes orthogonal"] = InDouble([identity](double q) {
        CCadTransform skewed = identity;
        skewed.setAxesXYZ(Vector(0, 1, 0), Vector(-1, q, 0), Vector(0, 0, 1));
        return skewed.IsOrthoNormal();
    });
    probes["`CCadTransform::operator==`"] = InDouble([identity](double q) {
        CCadTransform moved = identity;
        moved.SetTranslate(Point(0, 0, q));
        return moved == identity;
    });
    probes["`CCadTransform::newmat` ignores the hint for x"] = InDouble([](double q) {
        return CCadTransform(Vector(0, 0, 1), Vector(0, q, 0), Point(0, 0, 0)).xAxis() == Vector(1, 0, 0);
    });
    probes["`CCadTransform::newmat` puts x at right angles to y"] =
        InDouble([](double q) { return CCadTransform(Vector(Completion(q), q, 0), Point(0, 0, 0)).xAxis().y() == 0; });
    probes["`CCadTransform::MakeOrthoNormal` calls axes parallel"] = InDouble(
        [identity](double q) {
            const double angle = q * 0.017453292519943295;
            CCadTransform skewed = identity;
            skewed.setAxisY(Vector(std::cos(angle), std::sin(angle), 0));
            skewed.MakeOrthoNormal();
            return skewed.xAxis().y() != 0;
        },
        1e-4);
    probes["`CCadTransform::aaback` leaves a bent direction as it is"] = InDouble([identity](double q) {
        CCadTransform bent = identity;
        bent.SetScale(Vector(2, 2, 1));
        const Vector local = OfSquaredLength(q / 4);
        Vector world;
        bent.aaback(local, world);
        return world.x() == 2 * local.x();
    });
    probes["`CCadTransform::LineInterPlane` calls a line parallel"] = InDouble([identity](double q) {
        Point out;
        return !identity.LineInterPlane(Point(0, 0, 1), Vector(Completion(q), 0, q), 2, out, false);
    });
    probes["`CCadTransform::LineInterPlaneTC` calls a line parallel"] = InDouble([identity](double q) {
        Point out;
        return !identity.LineInterPlaneTC(Point(0, 0, 1), Vector(Completion(q), 0, q), 2, out);
    });
    probes["`CCadTransform::AngleFromEllipsePointRad` takes the plain angle"] = Both([identity](auto q) {
        using T = decltype(q);
        return identity.AngleFromEllipsePointRad(P3<T>(1, 1, 0), q / 2, q) > 0.78;
    });
}

void AddBoxProbes(Probes& probes)
{
    probes["`CBoundingBox2d::IsAlmostEqual`"] = Both([](auto q) {
        using T = decltype(q);
        return CBoundingBox2d<T>(P2<T>(0, q), P2<T>(1, 1)).IsAlmostEqual(Box2<T>(0, 1));
    });
    probes["`CBoundingBox3d::IsAlmostEqual`"] = Both([](auto q) {
        using T = decltype(q);
        return CBoundingBox3d<T>(P3<T>(0, 0, q), P3<T>(1, 1, 1)).IsAlmostEqual(Box3<T>(0, 1));
    });
    probes["`CBoundingBox2d::LineSegmentIntersects` sees no motion along an axis"] = Both([](auto q) {
        using T = decltype(q);
        const CBoundingBox2d<T> box(P2<T>(0, q / 2), P2<T>(1, 1));
        return !box.LineSegmentIntersects(P2<T>(T(0.5), 0), P2<T>(T(0.5), q));
    });
    // A line beside the box along an axis writes the marker.
    probes["`CBoundingBox2d::RayPierce` sees no motion along an axis"] = Both([](auto q) {
        using T = decltype(q);
        T tNear;
        Box2<T>(0, 1).RayPierce(P2<T>(T(0.5), 2), V2<T>(1, q), &tNear, nullptr, nullptr, nullptr);
        return tNear == static_cast<T>(3.4028234663852886e38);
    });
    probes["`CBoundingBox3d::RayPierce` sees no motion along an axis"] = Both([](auto q) {
        using T = decltype(q);
        T tNear;
        Box3<T>(0, 1).RayPierce(P3<T>(T(0.5), 2, T(0.5)), V3<T>(1, q, 0), &tNear, nullptr, nullptr, nullptr);
        return tNear == static_cast<T>(3.4028234663852886e38);
    });
    probes["`CBoundingBox3d::SweptBoundingBoxIntersects` sees no motion along an axis"] = Both([](auto q) {
        using T = decltype(q);
        return !Box3<T>(0, 1).SweptBoundingBoxIntersects(Box3<T>(0, 1), V3<T>(q, 0, 0), 0);
    });
    probes["`CBoundingBox3d::PlaneIntersects` sees no normal"] = Both([](auto q) {
        using T = decltype(q);
        return Box3<T>(0, 1).PlaneIntersects(P3<T>(-5, 0, T(0.5)), OfSquaredLength(q), 1);
    });
    probes["`COrientedBox3d::ContainsPoint` sees no axis"] = Both([](auto q) {
        using T = decltype(q);
        COrientedBox3d<T> box = UnitOrientedBox<T>(0);
        box.SetAxis(0, OfSquaredLength(q));
        return box.ContainsPoint(P3<T>(100, T(0.5), T(0.5)), 0);
    });
    probes["`TriangleBoxOverlap` bridges a gap along a box axis"] = Both([](auto q) {
        using T = decltype(q);
        constexpr T s = T(0.25);
        const P3<T> triangle[] = {{q, -s, -s}, {q, s, -s}, {q, 0, s}};
        return TriangleBoxOverlap(Box3<T>(0, 0), triangle);
    });
    probes["`TriangleBoxOverlap` bridges a gap along an edge axis"] = Both([](auto q) {
        using T = decltype(q);
        constexpr T length = 1024, s = T(0.125);
        const T gap = q / length;
        const P3<T> triangle[] = {{gap, -s, -length / 2}, {gap, -s, length / 2}, {gap, s, 0}};
        return TriangleBoxOverlap(Box3<T>(0, 0), triangle);
    });
    probes["`TriangleBoxOverlap` bridges a gap along the normal"] = Both([](auto q) {
        using T = decltype(q);
        constexpr T length = 64;
        const T gap = q / (length * length);
        const P3<T> triangle[] = {
            {gap, -length / 4, -length / 4}, {gap, length * 3 / 4, -length / 4}, {gap, -length / 4, length * 3 / 4}};
        return TriangleBoxOverlap(Box3<T>(0, 0), triangle);
    });
}

/// A triangle of height q that ends a distance q from its start.
template <class T>
CCadPolyline3d<T> NearlyClosed(T q)
{
    CCadPolyline3d<T> polyline;
    for (const P3<T>& vertex : {P3<T>(0, 0, 0), P3<T>(1, 0, 0), P3<T>(1, 1, 0), P3<T>(0, q, 0)}) {
        polyline.AddPoint(vertex);
    }
    return polyline;
}

void AddPolylineProbes(Probes& probes)
{
    probes["`CCadPolyline3d::Close` takes the ends for equal"] = Both([](auto q) { return !NearlyClosed(q).Close(); });
    probes["`CCadPolyline3d::RemoveRedundantPoints` takes vertices for equal"] = Both([](auto q) {
        using T = decltype(q);
        CCadPolyline3d<T> polyline;
        polyline.AddPoint(P3<T>(0, 0, 0));
        polyline.AddPoint(P3<T>(0, q, 0));
        return polyline.RemoveRedundantPoints();
    });
    probes["`CCadPolyline3d::RemoveRedundantEndPoint` takes the ends for equal"] =
        Both([](auto q) { return NearlyClosed(q).RemoveRedundantEndPoint(); });
}

void AddFitProbes(Probes& probes)
{
    probes["`LineFit2` fails for two points"] = Both([](auto q) {
        using T = decltype(q);
        const P2<T> points[] = {{0, 0}, {q, 0}};
        P2<double> origin;
        V2<double> direction;
        double error;
        return !LineFit2(points, 2, origin, direction, error);
    });
    probes["`LineFit3` fails for two points"] = Both([](auto q) {
        using T = decltype(q);
        const P3<T> points[] = {{0, 0, 0}, {0, q, 0}};
        P3<double> origin;
        V3<double> direction;
        double error;
        return !LineFit3(points, 2, origin, direction, error);
    });
    probes["`PlaneFit3` fails for three points"] = Both([](auto q) {
        using T = decltype(q);
        const P3<T> points[] = {{0, 0, 0}, {1, 0, 0}, {0, q, 0}};
        P3<double> origin;
        V3<double> normal;
        double error;
        return !PlaneFit3(points, 3, origin, normal, error);
    });
    // Four points in a plane along y whose mean product of x and z is q. Without that product the normal is an axis.
    probes["`PlaneFit3` takes a mean product for 0"] = Both([](auto q) {
        using T = decltype(q);
        constexpr T x = T(1) / 2048;
        const T z = 2 * q / x;
        const P3<T> points[] = {{x, 0, z}, {-x, 0, -z}, {0, 1, 0}, {0, -1, 0}};
        P3<double> origin;
        V3<double> normal;
        double error;
        EXPECT_TRUE(PlaneFit3(points, 4, origin, normal, error));
        return std::fabs(normal.x() + normal.z()) > 0.5;
    });
    probes["`QuadraticCircleFit2` fails for three points"] = Both([](auto q) {
        using T = decltype(q);
        const P2<T> points[] = {{0, 0}, {1, 0}, {0, q}};
        P2<double> center;
        double radius;
        return !QuadraticCircleFit2(points, 3, center, radius, nullptr);
    });
    probes["`QuadraticCircleFit3` fails for three points"] = Both([](auto q) {
        using T = decltype(q);
        const P3<T> points[] = {{0, 0, 0}, {1, 0, 0}, {0, q, 0}};
        P3<double> center;
        V3<double> normal;
        double radius;
        return !QuadraticCircleFit3(points, 3, center, normal, radius, nullptr);
    });
    // For a circle of radius R around the origin the solution is (-R^2, 0, 0, 1), made unit length.
    probes["`QuadraticCircleFit2` takes a circle for a line"] = InDouble(
        [](double q) {
            const double radius = std::pow(1 / (q * q) - 1, 0.25);
            std::vector<P2<double>> points;
            for (int i = 0; i < 24; ++i) {
                points.emplace_back(radius * std::cos(0.2617993877991494 * i),
                                    radius * std::sin(0.2617993877991494 * i));
            }
            P2<double> center;
            double found;
            return !QuadraticCircleFit2(points.data(), points.size(), center, found, nullptr);
        },
        1e-3);
}

/// A triangle with the right angle at the origin whose squared normal is q, and a point above its inside.
struct SmallTriangle {
    explicit SmallTriangle(double q)
    {
        const V3<double> edge = OfSquaredLength(q);
        corner2.set(0, edge.x(), edge.y());
        above = P3<double>(0.25, edge.x() / 4, edge.y() / 4);
    }

    P3<double> corner0{0, 0, 0};
    P3<double> corner1{1, 0, 0};
    P3<double> corner2;
    P3<double> above;
};

void AddPierceProbes(Probes& probes)
{
    probes["`PierceTriangle` calls the line parallel"] = Both([](auto q) {
        using T = decltype(q);
        T t, u, v;
        return !PierceTriangle(P3<T>(T(0.25), q / 4, 1), V3<T>(0, 0, -1), P3<T>(0, 0, 0), P3<T>(1, 0, 0),
                               P3<T>(0, q, 0), t, u, v);
    });
    const auto hits = [](auto x, auto y) {
        using T = decltype(x);
        T t, u, v;
        return PierceTriangle(P3<T>(x, y, 1), V3<T>(0, 0, -1), P3<T>(0, 0, 0), P3<T>(1, 0, 0), P3<T>(0, 1, 0), t, u, v);
    };
    probes["`PierceTriangle` accepts u below 0"] = Both([hits](auto q) { return hits(-q, decltype(q)(0.5)); });
    probes["`PierceTriangle` accepts v below 0"] = Both([hits](auto q) { return hits(decltype(q)(0.5), -q); });
    probes["`PierceParallelogram` calls the line parallel"] = Both([](auto q) {
        using T = decltype(q);
        T t, u, v;
        return !PierceParallelogram(P3<T>(0, 0, 1), V3<T>(0, 0, -1), P3<T>(0, 0, 0), V3<T>(1, 0, 0), V3<T>(0, q, 0), t,
                                    u, v);
    });
    // One root of a linear equation, two of a quadratic one.
    probes["`PierceQuad` takes the equation for linear"] = InDouble([](double q) {
        const P3<double> corners[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, q}};
        CArray<P2<double>, const P2<double>&> uvs;
        CArray<double> ts;
        PierceQuad(P3<double>(0.3, 0.2, 1), V3<double>(0, 0.5, -1), corners, uvs, ts);
        return ts.GetSize() == 1;
    });
    probes["`PierceSphere` sees no direction"] = Both([](auto q) {
        using T = decltype(q);
        T t1, t2;
        return !PierceSphere(P3<T>(5, 0, 0), T(1), P3<T>(0, 0, 0), OfSquaredLength(q), t1, t2);
    });
    probes["`PierceCylinder` lets the line run along the axis"] = Both([](auto q) {
        using T = decltype(q);
        T t1 = 0, t2;
        return !PierceCylinder(P3<T>(0, 0, 0), V3<T>(0, 0, 1), T(1), P3<T>(T(0.5), 0, 0), V3<T>(q, 0, 1), t1, t2);
    });
    probes["`PierceCylinder` finds no crossing of the base plane"] = Both([](auto q) {
        using T = decltype(q);
        T t1 = 7, t2;
        PierceCylinder(P3<T>(0, 0, 0), V3<T>(0, 0, 1), T(1), P3<T>(1, 0, 5), V3<T>(0, 0, q), t1, t2);
        return t1 == 7;
    });
    probes["`PierceCylinder` finds a line along the axis on the surface"] = Both([](auto q) {
        using T = decltype(q);
        T t1 = 0, t2;
        return PierceCylinder(P3<T>(0, 0, 0), V3<T>(0, 0, 1), T(0), P3<T>(P3<T>(0, 0, 0) + OfSquaredLength(q)),
                              V3<T>(0, 0, 1), t1, t2);
    });
    probes["`DropTriangle` takes the triangle for its edges"] = InDouble([](double q) {
        const SmallTriangle triangle(q);
        double squared = 1, u, v;
        P3<double> foot;
        bool onEdge = false;
        DropTriangle(triangle.above, triangle.corner0, triangle.corner1, triangle.corner2, squared, u, v, foot, onEdge);
        return onEdge;
    });
    probes["`DropTriangle` without a foot gives u = v = 0"] = InDouble([](double q) {
        const SmallTriangle triangle(q);
        double u, v;
        DropTriangle(triangle.above, triangle.corner0, triangle.corner1, triangle.corner2, 1.0, u, v);
        return u == 0 && v == 0;
    });
    probes["`DropParallelogram` sees no plane"] = InDouble([](double q) {
        const SmallTriangle triangle(q);
        double u, v;
        DropParallelogram(triangle.above, triangle.corner0, triangle.corner1 - triangle.corner0,
                          triangle.corner2 - triangle.corner0, u, v);
        return u == 0 && v == 0;
    });
    probes["`DropParallelogram` sees no edge"] = InDouble([](double q) {
        double u, v;
        DropParallelogram(P3<double>(0.5, 0, 0), P3<double>(0, 0, 0), V3<double>(1, 0, 0), V3<double>(0, q, 0), u, v);
        return u == 0.5;
    });
}

void AddProjectionProbes(Probes& probes)
{
    probes["`ProjectLineOntoLine` calls lines parallel"] = Both([](auto q) {
        using T = decltype(q);
        T t1, t2;
        ProjectLineOntoLine(P3<T>(0, 0, 0), OfSquaredLength(q), P3<T>(1, 1, 1), V3<T>(0, 0, 1), t1, t2);
        return t1 == 0;
    });
    probes["`ProjectLineOntoLine` sees no second direction"] = Both([](auto q) {
        using T = decltype(q);
        T t1, t2;
        ProjectLineOntoLine(P3<T>(0, 0, 0), V3<T>(0, 0, 1), P3<T>(1, 0, 0), OfSquaredLength(q), t1, t2);
        return t2 == 0;
    });
    probes["`ProjectLineOntoLine2` fails for the first parameter"] = Both(
        [](auto q) {
            using T = decltype(q);
            T t1;
            return !ProjectLineOntoLine2(P3<T>(0, 0, 0), V3<T>(1, 0, 0), P3<T>(1 / q, 0, 0), V3<T>(0, 1, 0), t1,
                                         static_cast<T*>(nullptr));
        },
        1e-6);
    probes["`ProjectLineOntoLine2` fails for the second parameter"] = Both(
        [](auto q) {
            using T = decltype(q);
            T t1, t2;
            return !ProjectLineOntoLine2(P3<T>(0, 0, 0), V3<T>(1, 0, 0), P3<T>(0, 1 / q, 0), V3<T>(0, 1, 0), t1, &t2);
        },
        1e-6);
    probes["`IntersectLineWithLine2d` goes on to the relative test"] = Both([](auto q) {
        using T = decltype(q);
        T s, t;
        return !IntersectLineWithLine2d(P2<T>(0, 0), V2<T>(1, 0), P2<T>(0, 2), V2<T>(0, q), s, t);
    });
    probes["`IntersectLineWithLine2d` fails in the relative test"] = Both(
        [](auto q) {
            using T = decltype(q);
            constexpr T divisor = T(1) / (1 << 24);
            T s, t;
            return !IntersectLineWithLine2d(P2<T>(0, 0), V2<T>(1, 0), P2<T>(0, divisor / q), V2<T>(0, divisor), s, t);
        },
        1e-6);
    const auto ontoSegment = [](const auto& direction, const auto& point, auto& lineParameter) {
        using T = std::decay_t<decltype(lineParameter)>;
        P3<T> foot;
        T squared;
        return ProjectLineOntoLineSegment(point, direction, P3<T>(0, 0, 0), P3<T>(0, 0, 1), foot, squared,
                                          &lineParameter);
    };
    probes["`ProjectLineOntoLineSegment` calls line and segment parallel"] = Both([ontoSegment](auto q) {
        using T = decltype(q);
        T t;
        return ontoSegment(OfSquaredLength(q), P3<T>(0, 0, T(0.5)), t) == 0;
    });
    probes["`ProjectLineOntoLineSegment` sees no direction"] = Both([ontoSegment](auto q) {
        using T = decltype(q);
        T t;
        ontoSegment(OfSquaredLength(q), P3<T>(1, 0, T(0.5)), t);
        return t == 0;
    });
    probes["`ProjectLineSegmentOntoLineSegment` calls segments parallel"] = Both([](auto q) {
        using T = decltype(q);
        const V3<T> direction = OfSquaredLength(q);
        T squared;
        return ProjectLineSegmentOntoLineSegment(P3<T>(0, 0, 0), direction, P3<T>(P3<T>(0, 0, 0) + direction * T(0.5)),
                                                 V3<T>(0, 0, 1), squared) == 0;
    });
    probes["`ProjectLineSegmentOntoLineSegment` takes the first for a point"] = Both(
        [](auto q) {
            using T = decltype(q);
            T squared;
            return ProjectLineSegmentOntoLineSegment(P3<T>(-5, 0, 0), V3<T>(std::sqrt(q), 0, 0), P3<T>(0, 0, 0),
                                                     V3<T>(1, 0, 0), squared) == 0;
        },
        1e-3);
    probes["`ProjectLineSegmentOntoLineSegment` takes the second for a point"] = Both(
        [](auto q) {
            using T = decltype(q);
            T squared;
            return ProjectLineSegmentOntoLineSegment(P3<T>(0, 0, 0), V3<T>(1, 0, 0), P3<T>(T(0.5), 0, 0),
                                                     V3<T>(-std::sqrt(q), 0, 0), squared) == T(0.5);
        },
        1e-3);
    probes["`ComputeCurvature` fails"] = Both(
        [](auto q) {
            using T = decltype(q);
            T curvature;
            return !ComputeCurvature(V3<T>(1, 0, 0), V3<T>(0, 1 / q, 0), curvature);
        },
        1e-6);
}

template <class T>
bool IsOnOutline(T beside, T tolerance)
{
    const P2<T> outline[] = {{-1, -1}, {0, -1}, {0, 1}, {-1, 1}};
    return ClosedPolylineContainsPoint2d(outline, 4, P2<T>(beside, T(0.25)), tolerance, true);
}

CMatrix Matrix2(double a, double b, double c, double d)
{
    CMatrix matrix(2, 2);
    matrix(0, 0) = a;
    matrix(0, 1) = b;
    matrix(1, 0) = c;
    matrix(1, 1) = d;
    return matrix;
}

CVector Vector2(double a, double b)
{
    CVector vector(2);
    vector[0] = a;
    vector[1] = b;
    return vector;
}

void AddMatrixAndRootProbes(Probes& probes)
{
    probes["`ClosedPolylineContainsPoint2d` with tolerance 0 puts a point on the outline"] =
        Both([](auto q) { return IsOnOutline(q, decltype(q)(0)); });
    probes["`CMatrix::SolveLinearSystem` takes the right-hand side for 0"] = InDouble([](double q) {
        CVector solution(2);
        Matrix2(1, 0, 0, 1).SolveLinearSystem(Vector2(q, 0), solution);
        return solution[0] != q;
    });
    probes["`CMatrix::SolveLinearSystem` calls the matrix singular"] = InDouble([](double q) {
        CVector solution(2);
        return !Matrix2(1.0 / 1024, 0, 0, 1024 * q).SolveLinearSystem(Vector2(1, 1), solution);
    });
    probes["`CMatrix::SolveLinearSystem` takes a column for 0"] = InDouble([](double q) {
        CVector solution(2);
        return Matrix2(q, 1, 0, 0).SolveLinearSystem(Vector2(1, 0), solution);
    });
    // The product of the pivots does not have the sign of the row exchange, the expansion has.
    probes["`CMatrix::GetDeterminant` refuses a pivot"] = InDouble([](double q) {
        CMatrix matrix = CMatrix::GetIdentityMatrix(4);
        matrix(0, 0) = matrix(1, 1) = 0;
        matrix(0, 1) = matrix(1, 0) = 1;
        matrix(3, 3) = q;
        return matrix.GetDeterminant() < 0;
    });
    probes["`PolynomialRoots::FindB` takes an end for a root"] = InDouble([](double q) {
        const double coefficients[] = {-q, 1};
        PolynomialRoots roots(1e-12);
        EXPECT_TRUE(roots.FindB(Polynomial1(1, coefficients), 0, 1, 15));
        return roots.GetRoot(0) == 0;
    });
    probes["`PolynomialRoots::GetRootCount` drops a remainder"] = InDouble([](double q) {
        const double coefficients[] = {-q, 0, 1};
        return PolynomialRoots(0).GetRootCount(Polynomial1(2, coefficients), -1, 1) == 1;
    });
}

void AddProbesOfPassedTolerances(Probes& probes)
{
    probes["`CadPoint::isEqual`"] =
        Both([](auto q) { return P2<decltype(q)>(0, q).isEqual(P2<decltype(q)>(0, 0), decltype(q)(kPassed)); });
    probes["`CadPoint2d::whichSideOfLine` calls the point on the line"] = Both(
        [](auto q) {
            using T = decltype(q);
            return P2<T>(0, std::sqrt(q)).whichSideOfLine(P2<T>(0, 0), V2<T>(1, 0), T(kPassed)) == P2<T>::eOnLine;
        },
        1e-6);
    probes["`LinesAreColinear`"] = Both([](auto q) {
        using T = decltype(q);
        return LinesAreColinear<T, 3>(P3<T>(0, q, 0), V3<T>(1, 0, 0), P3<T>(0, 0, 0), V3<T>(1, 0, 0), T(kPassed), 1);
    });
    probes["`PlanesAreCoplanar`"] = Both([](auto q) {
        using T = decltype(q);
        return PlanesAreCoplanar(P3<T>(0, 0, q), V3<T>(0, 0, 1), P3<T>(0, 0, 0), V3<T>(0, 0, 1), T(kPassed), T(1));
    });
    probes["`NormalizeAngleDeg` leaves an angle below 0"] = InDouble([](double q) {
        double angle = -q;
        NormalizeAngleDeg(angle, kPassed);
        return angle == -q;
    });
    probes["`NormalizeEndAngleDeg` adds a turn to the end"] = InDouble([](double q) {
        double end = q;
        NormalizeEndAngleDeg(0, end, kPassed);
        return end > 360;
    });
    probes["`CBoundingBox2d::ContainsPoint`"] = Both([](auto q) {
        using T = decltype(q);
        return Box2<T>(-1, 0).ContainsPoint(P2<T>(q, T(-0.5)), T(kPassed));
    });
    probes["`CBoundingBox3d::ContainsPoint`"] = Both([](auto q) {
        using T = decltype(q);
        return Box3<T>(-1, 0).ContainsPoint(P3<T>(T(-0.5), q, T(-0.5)), T(kPassed));
    });
    probes["`CBoundingBox2d::BoundingBoxIntersects`"] =
        Both([](auto q) { return Box2<decltype(q)>(-1, 0).BoundingBoxIntersects(Box2<decltype(q)>(q, 1), kPassed); });
    probes["`CBoundingBox3d::BoundingBoxIntersects`"] =
        Both([](auto q) { return Box3<decltype(q)>(-1, 0).BoundingBoxIntersects(Box3<decltype(q)>(q, 1), kPassed); });
    probes["`CBoundingBox3d::IsEqual`"] =
        Both([](auto q) { return Box3<decltype(q)>(-1, 0).IsEqual(Box3<decltype(q)>(-1, q), kPassed); });
    probes["`CBoundingBox3d::PlaneIntersects`"] = Both([](auto q) {
        using T = decltype(q);
        return Box3<T>(-1, 0).PlaneIntersects(P3<T>(q, 0, 0), V3<T>(1, 0, 0), T(kPassed));
    });
    probes["`COrientedBox3d::ContainsPoint`"] = Both([](auto q) {
        using T = decltype(q);
        return UnitOrientedBox<T>(0).ContainsPoint(P3<T>(-q, T(0.5), T(0.5)), T(kPassed));
    });
    probes["`COrientedBox3d::OrientedBoxIntersects`"] = Both([](auto q) {
        using T = decltype(q);
        return UnitOrientedBox<T>(-1).OrientedBoxIntersects(UnitOrientedBox<T>(q), T(kPassed));
    });
    probes["`CCadPolyline3d::DataReduce` drops a vertex"] = Both([](auto q) {
        using T = decltype(q);
        CCadPolyline3d<T> polyline;
        for (const P3<T>& vertex : {P3<T>(0, 0, 0), P3<T>(1, q, 0), P3<T>(2, 0, 0)}) {
            polyline.AddPoint(vertex);
        }
        return polyline.DataReduce(T(kPassed));
    });
    probes["`ClosedPolylineContainsPoint2d` puts a point on the outline"] =
        Both([](auto q) { return IsOnOutline(q, decltype(q)(kPassed)); });
    probes["`DropTriangle` finds a foot nearer than distanceSquared"] = InDouble(
        [](double q) {
            double squared = kPassed, u, v;
            P3<double> foot;
            bool onEdge;
            return DropTriangle(P3<double>(0.25, 0.25, std::sqrt(q)), P3<double>(0, 0, 0), P3<double>(1, 0, 0),
                                P3<double>(0, 1, 0), squared, u, v, foot, onEdge);
        },
        1e-6);
    probes["`CVector::IsZero`"] = InDouble([](double q) { return Vector2(q, 0).IsZero(kPassed); });
    probes["`Polynomial1::Compress` drops a leading coefficient"] = InDouble([](double q) {
        const double coefficients[] = {1, q};
        Polynomial1 polynomial(1, coefficients);
        polynomial.Compress(kPassed);
        return polynomial.GetDegree() == 0;
    });
    probes["`Polynomial1::Divide` drops a leading coefficient"] = InDouble([](double q) {
        const double dividend[] = {0, q, 1};
        const double divisor[] = {0, 0, 1};
        Polynomial1 quotient, remainder;
        Polynomial1(2, dividend).Divide(Polynomial1(2, divisor), quotient, remainder, kPassed);
        return remainder.GetDegree() == 0;
    });
    const auto countRoots = [](double c0, double c1, double c2) {
        PolynomialRoots roots(kPassed);
        roots.FindA(c0, c1, c2);
        return roots.GetCount();
    };
    probes["`PolynomialRoots::FindA` lowers the degree of a quadratic"] =
        InDouble([countRoots](double q) { return countRoots(-1, 1, q) == 1; });
    probes["`PolynomialRoots::FindA` finds no root of a linear equation"] =
        InDouble([countRoots](double q) { return countRoots(-1, q, 0) == 0; });
    probes["`PolynomialRoots::FindA` gives a double root"] =
        InDouble([countRoots](double q) { return countRoots(-q / 4, 0, 1) == 1; });
}

Probes MakeProbes()
{
    Probes probes;
    AddVectorProbes(probes);
    AddTransformProbes(probes);
    AddBoxProbes(probes);
    AddPolylineProbes(probes);
    AddFitProbes(probes);
    AddPierceProbes(probes);
    AddProjectionProbes(probes);
    AddMatrixAndRootProbes(probes);
    AddProbesOfPassedTolerances(probes);
    return probes;
}

template <class T>
void Check(const std::function<bool(T)>& effect, const std::string& value, const std::string& atValue, double step)
{
    ASSERT_EQ(effect != nullptr, value != "-") << "the page and the probe differ about this instance";
    if (effect == nullptr) {
        return;
    }
    const T limit = static_cast<T>(value == "yours" ? kPassed : docs::ParseValue(value));
    const T below = step == 0 ? std::nextafter(limit, T(0)) : static_cast<T>(static_cast<double>(limit) * (1 - step));
    const T above = step == 0 ? std::nextafter(limit, T(1)) : static_cast<T>(static_cast<double>(limit) * (1 + step));
    ASSERT_LT(below, limit);
    ASSERT_GT(above, limit);
    EXPECT_TRUE(effect(below)) << "below the value, in " << sizeof(T) << " bytes";
    EXPECT_FALSE(effect(above)) << "above the value, in " << sizeof(T) << " bytes";
    if (atValue != "rounding decides") {
        ASSERT_TRUE(atValue == "within" || atValue == "beyond") << atValue;
        EXPECT_EQ(effect(limit), atValue == "within") << "at the value, in " << sizeof(T) << " bytes";
    }
}

TEST(TolerancesPage, StatesEachToleranceAsTheCodeHasIt)
{
    Probes probes = MakeProbes();
    const std::vector<docs::Row> rows = docs::ReadTables("tolerances.md", "Effect");
    ASSERT_FALSE(rows.empty());
    for (const docs::Row& row : rows) {
        SCOPED_TRACE(row[0]);
        ASSERT_EQ(row.size(), 6U);
        const auto probe = probes.find(row[0]);
        if (probe == probes.end()) {
            ADD_FAILURE() << "this row has no probe";
            continue;
        }
        Check(probe->second.inDouble, row[1], row[5], probe->second.step);
        Check(probe->second.inFloat, row[2], row[5], probe->second.step);
        probes.erase(probe);
    }
    for (const auto& [effect, probe] : probes) {
        ADD_FAILURE() << "the page has no row, or two, for: " << effect;
    }
}

} // namespace
