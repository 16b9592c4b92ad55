// Holds docs/failure.md against the code: each row has a call that fails as the row says, whose outputs are compared with
// what they were before.

#include "docs/page.h"

#include <cadgeom/cadgeom.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using Point2 = CadPoint2d<double>;
using Point3 = CadPoint3d<double>;
using Vector2 = CadVector2d<double>;
using Vector3 = CadVector3d<double>;
using Box2 = CBoundingBox2d<double>;
using Box3 = CBoundingBox3d<double>;

/// Outputs under observation, and which of them changed.
class Watch {
public:
    template <class T>
    void Add(const std::string& name, const T& output)
    {
        std::vector<unsigned char> before(sizeof output);
        std::memcpy(before.data(), &output, sizeof output);
        m_isWritten.emplace_back(name,
                                 [before, &output] { return std::memcmp(before.data(), &output, sizeof output) != 0; });
    }

    /// For outputs that are more than their bytes.
    void AddWhen(const std::string& name, std::function<bool()> isWritten)
    {
        m_isWritten.emplace_back(name, std::move(isWritten));
    }

    std::string Written() const
    {
        std::string names;
        for (const auto& [name, isWritten] : m_isWritten) {
            if (isWritten()) {
                names += (names.empty() ? "" : ", ") + name;
            }
        }
        return names.empty() ? "nothing" : names;
    }

private:
    std::vector<std::pair<std::string, std::function<bool()>>> m_isWritten;
};

struct Outcome {
    std::string returned;
    std::string written;
};

Outcome Report(bool result, const Watch& watch)
{
    return {result ? "true" : "false", watch.Written()};
}

template <class Exception, class Call>
Outcome ReportThrow(Call call, const Watch& watch)
{
    try {
        call();
    } catch (const Exception&) {
        return {"throws", watch.Written()};
    }
    return {"returns", watch.Written()};
}

/// Outputs hold numbers that no result below is equal to.
constexpr double kOld = 1234.5;

/// The outputs of the fits, by the names of their parameters.
struct FitOutputs {
    Point3 origin{kOld, kOld, kOld};
    Vector3 direction{kOld, kOld, kOld};
    Vector3 axis{kOld, kOld, kOld};
    Point2 planarOrigin{kOld, kOld};
    Vector2 planarDirection{kOld, kOld};
    Vector2 extents{kOld, kOld};
    double a = kOld;
    double b = kOld;
    double error = kOld;
    Point3 other{kOld, kOld, kOld};
    Watch watch;
};

/// Calls `fit(points, count, outputs)` on outputs watched under these names.
using Fit = std::function<bool(FitOutputs&)>;
std::function<Outcome()> SpatialLine(Fit fit)
{
    return [fit] {
        FitOutputs out;
        out.watch.Add("origin", out.origin);
        out.watch.Add("direction", out.direction);
        out.watch.Add("start", out.other);
        out.watch.Add("error", out.error);
        return Report(fit(out), out.watch);
    };
}

std::function<Outcome()> PlanarLine(Fit fit)
{
    return [fit] {
        FitOutputs out;
        out.watch.Add("origin", out.planarOrigin);
        out.watch.Add("direction", out.planarDirection);
        out.watch.Add("extents", out.extents);
        out.watch.Add("error", out.error);
        return Report(fit(out), out.watch);
    };
}

std::function<Outcome()> PlanarConic(Fit fit)
{
    return [fit] {
        FitOutputs out;
        out.watch.Add("center", out.planarOrigin);
        out.watch.Add("axis", out.planarDirection);
        out.watch.Add("a", out.a);
        out.watch.Add("b", out.b);
        out.watch.Add("error", out.error);
        return Report(fit(out), out.watch);
    };
}

std::function<Outcome()> SpatialConic(Fit fit)
{
    return [fit] {
        FitOutputs out;
        out.watch.Add("origin", out.origin);
        out.watch.Add("normal", out.direction);
        out.watch.Add("axis", out.axis);
        out.watch.Add("a", out.a);
        out.watch.Add("b", out.b);
        out.watch.Add("error", out.error);
        return Report(fit(out), out.watch);
    };
}

const Point3 kOnLine[] = {{0, 0, 1}, {1, 1, 1}, {2, 2, 1}, {3, 3, 1}};
const Point3 kCoincident[] = {{1, 2, 3}, {1, 2, 3}};
const Point2 kPlanarOnLine[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}};
const Point2 kPlanarCoincident[] = {{1, 2}, {1, 2}};
/// A square whose circle is so large that the algebraic fit takes it for a line.
const Point2 kPlanarHuge[] = {{9e6, 0}, {0, 9e6}, {-9e6, 0}, {0, -9e6}};
const Point3 kHuge[] = {{9e6, 0, 0}, {0, 9e6, 0}, {-9e6, 0, 0}, {0, -9e6, 0}};

using Calls = std::map<std::string, std::function<Outcome()>>;

void AddFits(Calls& calls)
{
    calls["`PointFit3`: there are no points"] =
        SpatialLine([](FitOutputs& o) { return PointFit3(kOnLine, 0, o.origin, &o.error); });
    calls["`LineFit2`: there is one point"] = PlanarLine(
        [](FitOutputs& o) { return LineFit2(kPlanarOnLine, 1, o.planarOrigin, o.planarDirection, o.error); });
    calls["`LineFit2`: two points coincide"] = PlanarLine(
        [](FitOutputs& o) { return LineFit2(kPlanarCoincident, 2, o.planarOrigin, o.planarDirection, o.error); });
    calls["`LineFit3`: there is one point"] =
        SpatialLine([](FitOutputs& o) { return LineFit3(kOnLine, 1, o.origin, o.direction, o.error); });
    calls["`LineFit3`: two points coincide"] =
        SpatialLine([](FitOutputs& o) { return LineFit3(kCoincident, 2, o.origin, o.direction, o.error); });
    calls["`LineSegmentFit3`: two points coincide"] =
        SpatialLine([](FitOutputs& o) { return LineSegmentFit3(kCoincident, 2, o.other, o.origin, o.error); });
    calls["`PlaneFit3`: there are two points"] =
        SpatialConic([](FitOutputs& o) { return PlaneFit3(kOnLine, 2, o.origin, o.direction, o.error); });
    calls["`PlaneFit3`: three points are collinear"] =
        SpatialConic([](FitOutputs& o) { return PlaneFit3(kOnLine, 3, o.origin, o.direction, o.error); });
    calls["`QuadraticCircleFit2`: three points are collinear"] =
        PlanarConic([](FitOutputs& o) { return QuadraticCircleFit2(kPlanarOnLine, 3, o.planarOrigin, o.a, &o.error); });
    calls["`QuadraticCircleFit2`: the circle is taken for a line"] =
        PlanarConic([](FitOutputs& o) { return QuadraticCircleFit2(kPlanarHuge, 4, o.planarOrigin, o.a, &o.error); });
    calls["`CircleFit2`: three points are collinear"] =
        PlanarConic([](FitOutputs& o) { return CircleFit2(kPlanarOnLine, 3, o.planarOrigin, o.a, o.error, 9); });
    calls["`CircleFit2`: the circle is taken for a line"] =
        PlanarConic([](FitOutputs& o) { return CircleFit2(kPlanarHuge, 4, o.planarOrigin, o.a, o.error, 9); });
    calls["`QuadraticCircleFit3`: three points are collinear"] = SpatialConic(
        [](FitOutputs& o) { return QuadraticCircleFit3(kOnLine, 3, o.origin, o.direction, o.a, &o.error); });
    calls["`QuadraticCircleFit3`: the circle is taken for a line"] =
        SpatialConic([](FitOutputs& o) { return QuadraticCircleFit3(kHuge, 4, o.origin, o.direction, o.a, &o.error); });
    calls["`CircleFit3`: three points are collinear"] =
        SpatialConic([](FitOutputs& o) { return CircleFit3(kOnLine, 3, o.origin, o.direction, o.a, o.error, 9); });
    calls["`CircleFit3`: the circle is taken for a line"] =
        SpatialConic([](FitOutputs& o) { return CircleFit3(kHuge, 4, o.origin, o.direction, o.a, o.error, 9); });
    calls["`EllipseFit2`: there are three points"] = PlanarConic([](FitOutputs& o) {
        return EllipseFit2(kPlanarOnLine, 3, o.planarOrigin, o.planarDirection, o.a, o.b, &o.error);
    });
    calls["`EllipseFit2`: the points are collinear"] = PlanarConic([](FitOutputs& o) {
        return EllipseFit2(kPlanarOnLine, 5, o.planarOrigin, o.planarDirection, o.a, o.b, &o.error);
    });
    calls["`EllipseFit3`: there are three points"] = SpatialConic(
        [](FitOutputs& o) { return EllipseFit3(kOnLine, 3, o.origin, o.direction, o.axis, o.a, o.b, &o.error); });
    calls["`EllipseFit3`: the fit in the plane fails"] = SpatialConic(
        [](FitOutputs& o) { return EllipseFit3(kOnLine, 4, o.origin, o.direction, o.axis, o.a, o.b, &o.error); });
    calls["`OrientedBoxFit2`: there are no points"] = PlanarLine(
        [](FitOutputs& o) { return OrientedBoxFit2(kPlanarOnLine, 0, o.planarOrigin, o.planarDirection, o.extents); });
}

/// PierceTriangle at u = x and v = y, by a line that sinks by `descent` for each unit along x.
template <class T>
std::function<Outcome()> PierceAt(T x, T y, T descent)
{
    return [=] {
        using P = CadPoint3d<T>;
        T t = T(kOld), u = T(kOld), v = T(kOld);
        Watch watch;
        watch.Add("t", t);
        watch.Add("u", u);
        watch.Add("v", v);
        return Report(
            PierceTriangle(P(x, y, 1), CadVector3d<T>(1, 0, -descent), P(1, 0, 0), P(2, 0, 0), P(1, 1, 0), t, u, v),
            watch);
    };
}

/// `pierce(t1, t2)`.
std::function<Outcome()> Parameters(std::function<bool(double&, double&)> pierce)
{
    return [pierce] {
        double t1 = kOld, t2 = kOld;
        Watch watch;
        watch.Add("t1", t1);
        watch.Add("t2", t2);
        return Report(pierce(t1, t2), watch);
    };
}

/// Drops a point onto the triangle (0, 0, 0), (1, 0, 0), (0, 1, 0), to be nearer than the squared distance 1.
std::function<Outcome()> DropFrom(const Point3& point, bool withFoot)
{
    return [=] {
        const Point3 corners[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        double squared = 1, u = kOld, v = kOld;
        Point3 foot(kOld, kOld, kOld);
        bool onEdge = true;
        Watch watch;
        watch.Add("distanceSquared", squared);
        watch.Add("u", u);
        watch.Add("v", v);
        watch.Add("foot", foot);
        watch.Add("onEdge", onEdge);
        const bool result = withFoot
                                ? DropTriangle(point, corners[0], corners[1], corners[2], squared, u, v, foot, onEdge)
                                : DropTriangle(point, corners[0], corners[1], corners[2], 1.0, u, v);
        return Report(result, watch);
    };
}

void AddIntersections(Calls& calls)
{
    calls["`PierceTriangle`: the line is parallel"] = PierceAt(0.25, 0.25, 0.0);
    calls["`PierceTriangle`: u is outside"] = PierceAt(-5.0, 0.25, 1.0);
    calls["`PierceTriangle`: v is outside"] = PierceAt(0.25, -3.0, 1.0);
    calls["`PierceTriangle`: u + v is outside"] = PierceAt(0.75, 0.75, 1.0);
    calls["`PierceTriangle<float>`: u + v is outside"] = PierceAt(0.75F, 0.75F, 1.0F);
    calls["`PierceParallelogram`: the line is parallel"] = [] {
        double t = kOld, u = kOld, v = kOld;
        Watch watch;
        watch.Add("t", t);
        watch.Add("u", u);
        watch.Add("v", v);
        return Report(PierceParallelogram(Point3(0, 0, 1), Vector3(1, 0, 0), Point3(0, 0, 0), Vector3(1, 0, 0),
                                          Vector3(0, 1, 0), t, u, v),
                      watch);
    };
    calls["`PierceQuad`: corners is null"] = [] {
        CArray<Point2, const Point2&> uvs;
        CArray<double> ts;
        uvs.Add(Point2(1, 2));
        ts.Add(3);
        Watch watch;
        watch.AddWhen("uvs (emptied)", [&] { return uvs.IsEmpty(); });
        watch.AddWhen("ts (emptied)", [&] { return ts.IsEmpty(); });
        return Report(PierceQuad(Point3(0, 0, 1), Vector3(0, 0, 1), nullptr, uvs, ts), watch);
    };
    calls["`PierceSphere`: the line misses"] = Parameters([](double& t1, double& t2) {
        return PierceSphere(Point3(0, 0, 0), 1.0, Point3(-5, 2, 0), Vector3(1, 0, 0), t1, t2);
    });
    calls["`PierceCylinder`: the line misses"] = Parameters([](double& t1, double& t2) {
        return PierceCylinder(Point3(0, 0, 0), Vector3(0, 0, 1), 1.0, Point3(-5, 2, 0), Vector3(1, 0, 0), t1, t2);
    });
    calls["`PierceCylinder`: the line along the axis misses"] = Parameters([](double& t1, double& t2) {
        return PierceCylinder(Point3(0, 0, 0), Vector3(0, 0, 1), 1.0, Point3(0, 2, 5), Vector3(0, 0, 1), t1, t2);
    });
    calls["`PierceCone`: the line misses"] = Parameters([](double& t1, double& t2) {
        return PierceCone(Point3(0, 0, 0), Vector3(0, 0, 1), 0.5, Point3(0, 2, 0), Vector3(1, 0, 0), t1, t2);
    });
    calls["`DropTriangle` with foot: the plane is too far"] = DropFrom(Point3(0.25, 0.25, 2), true);
    calls["`DropTriangle` with foot: only the edge is too far"] = DropFrom(Point3(-3, 0.5, 0), true);
    calls["`DropTriangle` without foot: the plane is too far"] = DropFrom(Point3(0.25, 0.25, 2), false);
    calls["`ProjectLineOntoLine2`: the lines are parallel"] = Parameters([](double& t1, double& t2) {
        return ProjectLineOntoLine2(Point3(0, 0, 0), Vector3(1, 0, 0), Point3(0, 1, 0), Vector3(1, 0, 0), t1, &t2);
    });
    calls["`ProjectLineOntoLine2`: the second parameter is too large"] = Parameters([](double& t1, double& t2) {
        return ProjectLineOntoLine2(Point3(0, 0, 0), Vector3(1, 0, 0), Point3(0, 9e6, 0), Vector3(0, 1, 0), t1, &t2);
    });
    calls["`IntersectLineWithLine2d`: the lines are parallel"] = Parameters([](double& s, double& t) {
        return IntersectLineWithLine2d(Point2(0, 0), Vector2(1, 0), Point2(0, 1), Vector2(1, 0), s, t);
    });
    calls["`ComputeCurvature`: the curve stands still"] = Parameters(
        [](double& curvature, double&) { return ComputeCurvature(Vector3(0, 0, 0), Vector3(0, 1, 0), curvature); });
}

template <class Box, class Point, class Vector>
std::function<Outcome()> RayPierce(const Box& box, const Point& origin, const Vector& direction)
{
    return [=] {
        double tNear = kOld, tFar = kOld;
        Point entry = origin, exit = origin;
        Watch watch;
        watch.Add("tNear", tNear);
        watch.Add("tFar", tFar);
        watch.Add("entry (some coordinates)", entry);
        watch.Add("exit (some coordinates)", exit);
        return Report(box.RayPierce(origin, direction, &tNear, &tFar, &entry, &exit), watch);
    };
}

template <class Box>
std::function<Outcome()> Clip(const Box& box, const Box& by)
{
    return [=] {
        Box clipped = box;
        Watch watch;
        const auto hasChanged = [&](int axis) {
            return clipped.GetMin()[axis] != box.GetMin()[axis] || clipped.GetMax()[axis] != box.GetMax()[axis];
        };
        const auto isCrossed = [&](int axis) { return clipped.GetMin()[axis] > clipped.GetMax()[axis]; };
        watch.AddWhen("x of the box", [=] { return hasChanged(0) && !isCrossed(0); });
        watch.AddWhen("x of the box (crossed)", [=] { return isCrossed(0); });
        watch.AddWhen("y of the box", [=] { return hasChanged(1) && !isCrossed(1); });
        watch.AddWhen("y of the box (crossed)", [=] { return isCrossed(1); });
        return Report(clipped.IntersectWithBoundingBox(by), watch);
    };
}

std::function<Outcome()> Sweep(const Box3& box, const Vector3& motion, bool isFull)
{
    return [=] {
        const Box3 other(Point3(3, 0, 0), Point3(4, 1, 1));
        double tEnter = kOld, tExit = kOld, tFull = kOld;
        Watch watch;
        watch.Add("tEnter", tEnter);
        watch.Add("tExit", tExit);
        watch.Add("tFull", tFull);
        return Report(isFull ? box.SweptBoundingBoxIntersectsFull(other, motion, tEnter, tExit, tFull, 0)
                             : box.SweptBoundingBoxIntersects(other, motion, tEnter, tExit, 0),
                      watch);
    };
}

void AddBoxes(Calls& calls)
{
    const Box2 square(Point2(0, 0), Point2(1, 1));
    const Box3 cube(Point3(0, 0, 0), Point3(1, 1, 1));
    calls["`CBoundingBox2d::RayPierce`: the line runs beside the box along an axis"] =
        RayPierce(square, Point2(-1, 2), Vector2(0, 1));
    calls["`CBoundingBox2d::RayPierce`: the line passes a corner"] = RayPierce(square, Point2(-5, -2), Vector2(1, 1));
    calls["`CBoundingBox3d::RayPierce`: the line runs beside the box along an axis"] =
        RayPierce(cube, Point3(-1, 2, 0.5), Vector3(0, 1, 0));
    calls["`CBoundingBox3d::RayPierce`: the line passes a corner"] =
        RayPierce(cube, Point3(-5, -2, 0.5), Vector3(1, 1, 0));
    calls["`CBoundingBox2d::IntersectWithBoundingBox`: the boxes are apart in x"] =
        Clip(square, Box2(Point2(2, 0.25), Point2(3, 0.75)));
    calls["`CBoundingBox2d::IntersectWithBoundingBox`: the boxes are apart in y"] =
        Clip(square, Box2(Point2(0.25, 2), Point2(0.75, 3)));
    calls["`CBoundingBox3d::IntersectWithBoundingBox`: the boxes are apart in x"] =
        Clip(cube, Box3(Point3(2, 0.25, 0.25), Point3(3, 0.75, 0.75)));
    calls["`CBoundingBox3d::SweptBoundingBoxIntersects`: a box is empty"] = Sweep(Box3(), Vector3(1, 0, 0), false);
    calls["`CBoundingBox3d::SweptBoundingBoxIntersects`: the motion is zero"] = Sweep(cube, Vector3(0, 0, 0), false);
    calls["`CBoundingBox3d::SweptBoundingBoxIntersects`: the boxes pass each other"] =
        Sweep(cube, Vector3(1, 5, 0), false);
    calls["`CBoundingBox3d::SweptBoundingBoxIntersectsFull`: the boxes pass each other"] =
        Sweep(cube, Vector3(1, 5, 0), true);
}

CCadTransform Bent()
{
    CCadTransform bent = CCadTransform::GetEmptyTransform();
    bent.SetScale(Vector3(1, 2, 3));
    return bent;
}

std::function<Outcome()> MeetPlane(int plane, bool isLocal)
{
    return [=] {
        const CCadTransform frame = CCadTransform::GetEmptyTransform();
        Point3 out(kOld, kOld, kOld);
        Watch watch;
        watch.Add("out", out);
        const Point3 point(0, 0, 1);
        const Vector3 direction(1, 0, 0);
        return Report(isLocal ? frame.LineInterPlaneTC(point, direction, plane, out)
                              : frame.LineInterPlane(point, direction, plane, out, true),
                      watch);
    };
}

/// Loads an object from two doubles and a half.
template <class Object, class Load>
std::function<Outcome()> LoadCut(const Object& initial, const std::string& name, Load load)
{
    return [=] {
        const double data[] = {1, 2, 3};
        CMemFile file(data, sizeof data - 4);
        CArchive archive(&file, CArchive::load);
        Object object = initial;
        Watch watch;
        watch.Add(name, object);
        return ReportThrow<CArchiveException>([&] { load(object, archive); }, watch);
    };
}

void AddTransformsAndRecords(Calls& calls)
{
    calls["`CCadTransform::aaback` of a length: the scale is not uniform"] =
        Parameters([](double& world, double&) { return Bent().aaback(2.0, world); });
    calls["`CCadTransform::aaforw` of a length: the scale is not uniform"] =
        Parameters([](double& local, double&) { return Bent().aaforw(2.0, local); });
    calls["`CCadTransform::LineInterPlane`: the line is parallel"] = MeetPlane(2, false);
    calls["`CCadTransform::LineInterPlane`: there is no such plane"] = MeetPlane(3, false);
    calls["`CCadTransform::LineInterPlaneTC`: the line is parallel"] = MeetPlane(2, true);
    calls["`CCadTransform::rotmat` to a direction: the direction is zero in the plane"] = [] {
        CCadTransform frame = CCadTransform::GetEmptyTransform();
        Watch watch;
        watch.AddWhen("axes", [&] { return !(frame == CCadTransform::GetEmptyTransform()); });
        return Report(frame.rotmat(Vector3(0, 0, 1), false), watch);
    };
    const CCadTransform identity = CCadTransform::GetEmptyTransform();
    calls["`CCadTransform::SerializeOld`: the data end early"] =
        LoadCut(identity, "the transform", [](CCadTransform& t, CArchive& archive) { t.SerializeOld(archive); });
    calls["`CCadTransform::SerializeNew`: the data end early"] = LoadCut(
        identity, "the parts loaded so far", [](CCadTransform& t, CArchive& archive) { t.SerializeNew(archive); });
    const std::string coordinates = "the coordinates loaded so far";
    calls["`CadPoint::serialize`: the data end early"] =
        LoadCut(Point3(kOld, kOld, kOld), coordinates, [](Point3& p, CArchive& archive) { p.serialize(archive); });
    calls["`CBoundingBox3d::Serialize`: the data end early"] =
        LoadCut(Box3(), coordinates, [](Box3& box, CArchive& archive) { box.Serialize(archive); });
}

void AddContainers(Calls& calls)
{
    calls["`CCadPolyline3d::Drop`: there are no vertices"] = [] {
        Point3 out(kOld, kOld, kOld);
        Watch watch;
        watch.Add("out", out);
        return Report(CCadPolyline3d<double>().Drop(Point3(0, 0, 0), out), watch);
    };
    calls["`CCadPolyline3d::ComputeBoundingBox`: there are no vertices"] = [] {
        Box3 box(Point3(0, 0, 0), Point3(1, 1, 1));
        Watch watch;
        watch.AddWhen("box (emptied)", [&] { return box.IsEmpty(); });
        return Report(CCadPolyline3d<double>().ComputeBoundingBox(box), watch);
    };
    calls["`CCadPolyline3d::SetPoint`: the index is bad"] = [] {
        CCadPolyline3d<double> polyline;
        polyline.AddPoint(Point3(1, 2, 3));
        Watch watch;
        watch.AddWhen("vertices", [&] { return polyline.GetNumPoints() != 1 || polyline.GetPoint(0).x() != 1; });
        return ReportThrow<CInvalidArgException>([&] { polyline.SetPoint(1, Point3(0, 0, 0)); }, watch);
    };
    calls["`CArray::SetSize`: the size is negative"] = [] {
        CArray<double> array;
        array.Add(1);
        Watch watch;
        watch.AddWhen("elements", [&] { return array.GetSize() != 1 || array.GetAt(0) != 1; });
        return ReportThrow<CInvalidArgException>([&] { array.SetSize(-1); }, watch);
    };
    calls["`CVector::SetSize`: the size is negative"] = [] {
        CVector vector(Vector3(1, 2, 3));
        Watch watch;
        watch.AddWhen("elements", [&] { return vector.GetNumElements() != 3 || vector[2] != 3; });
        return ReportThrow<CInvalidArgException>([&] { vector.SetSize(-1); }, watch);
    };
    calls["`CMatrix::SetSize`: a dimension is negative"] = [] {
        CMatrix matrix = CMatrix::GetIdentityMatrix(2);
        Watch watch;
        watch.AddWhen("elements", [&] { return matrix.GetNumElements() != 4 || matrix(1, 1) != 1; });
        return ReportThrow<CInvalidArgException>([&] { matrix.SetSize(2, -1); }, watch);
    };
    calls["`ProgressPercent::popTask`: there is no task"] = [] {
        ProgressPercent progress;
        Watch watch;
        watch.AddWhen("tasks", [&] { return !progress.isEmpty(); });
        return ReportThrow<std::length_error>([&] { progress.popTask(); }, watch);
    };
}

/// A query of a PolynomialRoots that holds two roots.
std::function<Outcome()> Query(std::function<bool(PolynomialRoots&)> find)
{
    return [find] {
        PolynomialRoots roots(1e-9);
        roots.FindA(-1, 0, 1);
        Watch watch;
        watch.AddWhen("the number of roots (0)", [&] { return roots.GetCount() == 0; });
        return Report(find(roots), watch);
    };
}

void AddNumbers(Calls& calls)
{
    calls["`ParseLongFastA`: no number starts here"] = [] {
        long value = 77;
        Watch watch;
        watch.AddWhen("value (0)", [&] { return value == 0; });
        return Outcome{std::to_string(ParseLongFastA(" - 3", value)), watch.Written()};
    };
    calls["`ParseFloatingPointFastA`: no number starts here"] = [] {
        double value = kOld;
        Watch watch;
        watch.AddWhen("value (0)", [&] { return value == 0; });
        return Outcome{std::to_string(ParseFloatingPointFastA(".e5", value)), watch.Written()};
    };
    const double coefficients[] = {0, 1};
    const Polynomial1 line(1, coefficients);
    calls["`PolynomialRoots::FindA`: there is no real root"] =
        Query([](PolynomialRoots& roots) { return roots.FindA(1, 0, 1); });
    calls["`PolynomialRoots::FindB`: the interval is empty"] =
        Query([line](PolynomialRoots& roots) { return roots.FindB(line, 1, -1, 6); });
    calls["`PolynomialRoots::FindE` of a polynomial: always"] =
        Query([line](PolynomialRoots& roots) { return roots.FindE(line, false); });
}

TEST(FailurePage, StatesWhatEachFunctionWritesWhenItFails)
{
    Calls calls;
    AddFits(calls);
    AddIntersections(calls);
    AddBoxes(calls);
    AddTransformsAndRecords(calls);
    AddContainers(calls);
    AddNumbers(calls);
    const std::vector<docs::Row> rows = docs::ReadTables("failure.md", "Call");
    ASSERT_FALSE(rows.empty());
    for (const docs::Row& row : rows) {
        ASSERT_EQ(row.size(), 4U);
        const std::string name = row[0] + ": " + row[1];
        SCOPED_TRACE(name);
        const auto call = calls.find(name);
        if (call == calls.end()) {
            ADD_FAILURE() << "this row has no call";
            continue;
        }
        const Outcome outcome = call->second();
        EXPECT_EQ(outcome.returned, row[2]);
        EXPECT_EQ(outcome.written, row[3]);
        calls.erase(call);
    }
    for (const auto& [name, call] : calls) {
        ADD_FAILURE() << "the page has no row, or two, for: " << name;
    }
}

} // namespace
