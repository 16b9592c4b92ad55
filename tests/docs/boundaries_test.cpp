// Holds docs/boundaries.md against the code: each row has a query of data exactly on the boundary.

#include "docs/page.h"

#include <cadgeom/cadgeom.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace {

using Point2 = CadPoint2d<double>;
using Point3 = CadPoint3d<double>;
using Vector2 = CadVector2d<double>;
using Vector3 = CadVector3d<double>;
using Box2 = CBoundingBox2d<double>;
using Box3 = CBoundingBox3d<double>;
using Queries = std::map<std::string, std::function<std::string()>>;

std::string YesNo(bool answer)
{
    return answer ? "yes" : "no";
}

std::string Name(EBoundingBoxPointLocation location)
{
    const char* const names[] = {"outside", "inside", "boundary"};
    return names[location];
}

COrientedBox3d<double> Oriented(const Point3& origin, const Vector3& sizes)
{
    COrientedBox3d<double> box;
    box.SetOrigin(origin);
    box.SetSizes(sizes);
    return box;
}

const Box2 kSquare(Point2(0, 0), Point2(1, 1));
const Box3 kCube(Point3(0, 0, 0), Point3(1, 1, 1));

void AddPlanarBoxes(Queries& queries)
{
    queries["`CBoundingBox2d::ContainsPoint`: the point lies on a side"] = [] {
        return YesNo(kSquare.ContainsPoint(Point2(0.5, 1), 0));
    };
    queries["`CBoundingBox2d::ContainsBoundingBox`: the boxes are equal"] = [] {
        return YesNo(kSquare.ContainsBoundingBox(kSquare, 0));
    };
    queries["`CBoundingBox2d::BoundingBoxIntersects`: the boxes share a corner"] = [] {
        return YesNo(kSquare.BoundingBoxIntersects(Box2(Point2(1, 1), Point2(2, 2)), 0));
    };
    queries["`CBoundingBox2d::IntersectWithBoundingBox`: the boxes share a side"] = [] {
        Box2 box(Point2(1, 0), Point2(2, 1));
        return YesNo(box.IntersectWithBoundingBox(kSquare));
    };
    queries["`CBoundingBox2d::LineSegmentIntersects`: the segment ends on a side"] = [] {
        return YesNo(kSquare.LineSegmentIntersects(Point2(3, 2), Point2(1, 0.5)));
    };
    queries["`CBoundingBox2d::RayPierce`: the line runs along a side"] = [] {
        return YesNo(kSquare.RayPierce(Point2(-3, 1), Vector2(1, 0), nullptr, nullptr, nullptr, nullptr));
    };
    queries["`CBoundingBox2d::ClassifyPointLocation`: the point lies on a side"] = [] {
        return Name(Box2(kSquare).ClassifyPointLocation(Point2(1, 0.5), 0));
    };
}

void AddSpatialBoxes(Queries& queries)
{
    queries["`CBoundingBox3d::ContainsPoint`: the point is a corner"] = [] {
        return YesNo(kCube.ContainsPoint(Point3(1, 0, 1), 0));
    };
    queries["`CBoundingBox3d::ContainsBoundingBox`: the boxes are equal"] = [] {
        return YesNo(kCube.ContainsBoundingBox(kCube, 0));
    };
    queries["`CBoundingBox3d::BoundingBoxIntersects`: the boxes share a face"] = [] {
        return YesNo(kCube.BoundingBoxIntersects(Box3(Point3(1, 0, 0), Point3(2, 1, 1)), 0));
    };
    queries["`CBoundingBox3d::IntersectWithBoundingBox`: the boxes share a face"] = [] {
        Box3 box(Point3(0, 1, 0), Point3(1, 2, 1));
        return YesNo(box.IntersectWithBoundingBox(kCube));
    };
    queries["`CBoundingBox3d::RayPierce`: the line passes through a corner"] = [] {
        return YesNo(kCube.RayPierce(Point3(0, 2, 1), Vector3(1, -1, 0), nullptr, nullptr, nullptr, nullptr));
    };
    queries["`CBoundingBox3d::ClassifyPointLocation`: the point lies on a face"] = [] {
        return Name(Box3(kCube).ClassifyPointLocation(Point3(0, 0.5, 0.5), 0));
    };
    queries["`CBoundingBox3d::PlaneIntersects`: the plane touches, the box lies against the normal"] = [] {
        return YesNo(kCube.PlaneIntersects(Point3(1, 0, 0), Vector3(1, 0, 0), 0));
    };
    queries["`CBoundingBox3d::PlaneIntersects`: the plane touches, the box lies along the normal"] = [] {
        return YesNo(kCube.PlaneIntersects(Point3(0, 0, 0), Vector3(1, 0, 0), 0));
    };
    const Box3 above(Point3(3, 0, 1), Point3(4, 1, 2));
    queries["`CBoundingBox3d::SweptBoundingBoxIntersects`: the box slides along a face"] = [above] {
        return YesNo(kCube.SweptBoundingBoxIntersects(above, Vector3(6, 0, 0), 0));
    };
    const Box3 ahead(Point3(3, 0, 0), Point3(4, 1, 1));
    queries["`CBoundingBox3d::SweptBoundingBoxIntersects`: the box arrives at t = 1"] = [ahead] {
        return YesNo(kCube.SweptBoundingBoxIntersects(ahead, Vector3(2, 0, 0), 0));
    };
}

void AddOrientedBoxes(Queries& queries)
{
    const auto unit = Oriented(Point3(0, 0, 0), Vector3(1, 1, 1));
    const auto meetsUnit = [unit](const Point3& origin, const Vector3& sizes) {
        return YesNo(unit.OrientedBoxIntersects(Oriented(origin, sizes), 0));
    };
    queries["`COrientedBox3d::ContainsPoint`: the point is a corner"] = [unit] {
        return YesNo(unit.ContainsPoint(Point3(1, 1, 0), 0));
    };
    queries["`COrientedBox3d::OrientedBoxIntersects`: equal boxes share a face"] = [=] {
        return meetsUnit(Point3(1, 0, 0), Vector3(1, 1, 1));
    };
    queries["`COrientedBox3d::OrientedBoxIntersects`: a smaller box stands on a face"] = [=] {
        return meetsUnit(Point3(0.25, 0.25, 1), Vector3(0.5, 0.5, 0.5));
    };
    queries["`COrientedBox3d::OrientedBoxIntersects`: the boxes share a part of an edge"] = [=] {
        return meetsUnit(Point3(1, 0.5, 1), Vector3(1, 1, 1));
    };
    queries["`COrientedBox3d::OrientedBoxIntersects`: crossed bars touch, no corner of one in the other"] = [] {
        const auto bar = Oriented(Point3(-5, 0, 0), Vector3(10, 1, 1));
        return YesNo(bar.OrientedBoxIntersects(Oriented(Point3(0, -5, 1), Vector3(1, 10, 1)), 0));
    };
    queries["`TriangleBoxOverlap`: a corner of the triangle touches a face"] = [] {
        const Point3 triangle[] = {{1, 0.5, 0.5}, {2, 0, 0}, {2, 1, 1}};
        return YesNo(TriangleBoxOverlap(kCube, triangle));
    };
}

std::string PierceAt(double x, double y)
{
    double t, u, v;
    return YesNo(
        PierceTriangle(Point3(x, y, 1), Vector3(0, 0, -1), Point3(0, 0, 0), Point3(1, 0, 0), Point3(0, 1, 0), t, u, v));
}

/// The nearest point of the triangle (0, 0, 0), (1, 0, 0), (0, 1, 0) that is nearer than the squared distance 1.
std::string DropFrom(const Point3& point)
{
    double squared = 1, u, v;
    Point3 foot;
    bool onEdge;
    if (!DropTriangle(point, Point3(0, 0, 0), Point3(1, 0, 0), Point3(0, 1, 0), squared, u, v, foot, onEdge)) {
        return "no";
    }
    return onEdge ? "found, on an edge" : "found, not on an edge";
}

std::string ContainsOnEdge(bool onBoundary)
{
    const Point2 outline[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    return YesNo(ClosedPolylineContainsPoint2d(outline, 4, Point2(1, 0.25), 0.0, onBoundary));
}

void AddIntersections(Queries& queries)
{
    const Vector3 up(0, 0, 1);
    queries["`PierceTriangle`: the line passes through a corner"] = [] { return PierceAt(1, 0); };
    queries["`PierceTriangle`: the line passes through an edge"] = [] { return PierceAt(0.5, 0.5); };
    queries["`PierceSphere`: the line is a tangent"] = [] {
        double t1, t2;
        return YesNo(PierceSphere(Point3(0, 0, 0), 1.0, Point3(-3, 1, 0), Vector3(1, 0, 0), t1, t2));
    };
    queries["`PierceCylinder`: the line is a tangent"] = [up] {
        double t1, t2;
        return YesNo(PierceCylinder(Point3(0, 0, 0), up, 1.0, Point3(-3, 1, 0), Vector3(1, 0, 0), t1, t2));
    };
    queries["`PierceCylinder`: the line lies in the surface"] = [up] {
        double t1 = 0, t2;
        return YesNo(PierceCylinder(Point3(0, 0, 0), up, 1.0, Point3(0, 1, 3), up, t1, t2));
    };
    queries["`PierceCone`: the line passes through the apex, outside the cone"] = [up] {
        double t1, t2;
        return YesNo(PierceCone(Point3(0, 0, 0), up, 0.5, Point3(-1, 0, 0), Vector3(1, 0, 0), t1, t2));
    };
    queries["`DropTriangle` with foot: the foot lies on an edge"] = [] { return DropFrom(Point3(0.5, 0, 0.5)); };
    queries["`DropTriangle` with foot: the foot is as near as the one before"] = [] {
        return DropFrom(Point3(0.25, 0.25, 1));
    };
    queries["`ClosedPolylineContainsPoint2d` with `onBoundary` true: the point lies on an edge"] = [] {
        return ContainsOnEdge(true);
    };
    queries["`ClosedPolylineContainsPoint2d` with `onBoundary` false: the point lies on an edge"] = [] {
        return ContainsOnEdge(false);
    };
    queries["`CadPoint2d::whichSideOfLine`: the point lies on the line"] = [] {
        const auto side = Point2(2, 2).whichSideOfLine(Point2(1, 1), Vector2(3, 3), 0);
        return side == Point2::eOnLine ? "on the line" : "beside it";
    };
    queries["`LinesAreColinear`: the point lies at the tolerance"] = [] {
        const Vector3 along(1, 0, 0);
        return YesNo(LinesAreColinear<double, 3>(Point3(0, 0.5, 0), along, Point3(0, 0, 0), along, 0.5, 1));
    };
    queries["`PlanesAreCoplanar`: the point lies at the tolerance"] = [up] {
        return YesNo(PlanesAreCoplanar(Point3(0, 0, 0.5), up, Point3(0, 0, 0), up, 0.5, 1.0));
    };
}

/// Roots of x^2 - 3 x + 2, which are 1 and 2, within 1e-6.
Polynomial1 Parabola()
{
    const double coefficients[] = {2, -3, 1};
    return Polynomial1(2, coefficients);
}

std::string FindIn(double xMin, double xMax)
{
    PolynomialRoots roots(1e-9);
    return roots.FindB(Parabola(), xMin, xMax, 9) ? "found" : "not found";
}

std::string CountIn(double t0, double t1)
{
    return PolynomialRoots(1e-9).GetRootCount(Parabola(), t0, t1) == 1 ? "counted" : "not counted";
}

void AddAnglesAndRoots(Queries& queries)
{
    queries["`NormalizeAngleDeg`: the angle is a full turn"] = [] {
        double angle = 360;
        NormalizeAngleDeg(angle, 0);
        return angle == 0 ? "0" : "360";
    };
    queries["`NormalizeEndAngleDeg`: the end equals the start"] = [] {
        double end = 30;
        NormalizeEndAngleDeg(30, end, 0);
        return end == 390 ? "start + 360" : "start";
    };
    queries["`GetDeltaAngleDeg`: the difference is -180"] = [] {
        return GetDeltaAngleDeg(180, 0) == 180 ? "180" : "-180";
    };
    queries["`PolynomialRoots::FindB`: the root is the left end of the interval"] = [] { return FindIn(1, 1.75); };
    queries["`PolynomialRoots::FindB`: the root is the right end of the interval"] = [] { return FindIn(1.75, 2); };
    queries["`PolynomialRoots::GetRootCount`: the root is the left end of the interval"] = [] {
        return CountIn(1, 1.75);
    };
    queries["`PolynomialRoots::GetRootCount`: the root is the right end of the interval"] = [] {
        return CountIn(1.75, 2);
    };
}

TEST(BoundariesPage, StatesWhatEachQueryAnswersOnTheBoundary)
{
    Queries queries;
    AddPlanarBoxes(queries);
    AddSpatialBoxes(queries);
    AddOrientedBoxes(queries);
    AddIntersections(queries);
    AddAnglesAndRoots(queries);
    const std::vector<docs::Row> rows = docs::ReadTables("boundaries.md", "Query");
    ASSERT_FALSE(rows.empty());
    for (const docs::Row& row : rows) {
        ASSERT_EQ(row.size(), 3U);
        const std::string name = row[0] + ": " + row[1];
        SCOPED_TRACE(name);
        const auto query = queries.find(name);
        if (query == queries.end()) {
            ADD_FAILURE() << "this row has no query";
            continue;
        }
        EXPECT_EQ(query->second(), row[2]);
        queries.erase(query);
    }
    for (const auto& [name, query] : queries) {
        ADD_FAILURE() << "the page has no row, or two, for: " << name;
    }
}

} // namespace
