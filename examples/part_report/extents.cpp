#include "extents.h"

#include <cadgeom/intersect/triangle_area.h>
#include <cadgeom/transform/points_transform.h>

namespace part_report {

namespace {

CBoundingBox3d<double> BoxOf(const std::vector<Point3>& points)
{
    CBoundingBox3d<double> box;
    for (const Point3& point : points)
        box.CheckPoint(point);
    return box;
}

} // namespace

std::vector<Point3> LocalPoints(const Mesh& mesh, const CCadTransform& frame)
{
    std::vector<Point3> points = mesh.points;
    PointsTransformTo(points.data(), points.size(), frame);
    return points;
}

Extents MeasureExtents(const Mesh& mesh)
{
    Extents extents;
    // Vertices that no facet uses are no part of the surface.
    for (const auto& facet : mesh.facets) {
        for (const Index corner : facet)
            extents.box.CheckPoint(mesh.points[corner]);
        extents.area += ComputeTriangleArea(mesh.points[facet[0]], mesh.points[facet[1]], mesh.points[facet[2]]);
    }
    extents.diagonal = extents.box.GetSize().length();
    return extents;
}

Stand FindStand(const Mesh& mesh, const Extents& extents, const std::vector<PlanarRegion>& regions)
{
    Stand stand;
    stand.hasPlane = !regions.empty();
    if (stand.hasPlane) {
        const PlanarRegion& largest = regions.front();
        stand.frame = CCadTransform(-largest.normal, largest.longestEdge, largest.origin);
    } else {
        stand.frame = CCadTransform(Vector3::zAxis(), Vector3::xAxis(), extents.box.GetMin());
    }
    stand.localBox = BoxOf(LocalPoints(mesh, stand.frame));
    stand.box = COrientedBox3d<double>(stand.localBox, stand.frame);
    return stand;
}

} // namespace part_report
