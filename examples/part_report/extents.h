#pragma once
// How large the part is: along the axes of the file, and in the frame of its largest plane.

#include "regions.h"

#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/transform/transform.h>

namespace part_report {

struct Extents {
    CBoundingBox3d<double> box;
    double diagonal = 0;
    double area = 0;
};

Extents MeasureExtents(const Mesh& mesh);

/// The part as it would stand on its largest plane.
struct Stand {
    /// Origin on the plane, z into the part, x along the longest edge of the plane. Without planes, the axes of the file
    /// and the lowest corner of the box.
    CCadTransform frame;
    /// In the coordinates of the frame.
    CBoundingBox3d<double> localBox;
    /// The same box in space.
    COrientedBox3d<double> box;
    bool hasPlane = false;
};

Stand FindStand(const Mesh& mesh, const Extents& extents, const std::vector<PlanarRegion>& regions);

/// The points of a mesh in the coordinates of a frame.
std::vector<Point3> LocalPoints(const Mesh& mesh, const CCadTransform& frame);

} // namespace part_report
