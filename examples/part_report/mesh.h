#pragma once
// A mesh of triangles. Lengths are millimetres from here on; only the reader and the writers know other units.

#include <cadgeom/core/point3d.h>

#include <array>
#include <cstdint>
#include <vector>

namespace part_report {

using Point2 = CadPoint2d<double>;
using Point3 = CadPoint3d<double>;
using Vector2 = CadVector2d<double>;
using Vector3 = CadVector3d<double>;

using Index = std::uint32_t;

struct Mesh {
    std::vector<Point3> points;
    std::vector<std::array<Index, 3>> facets;

    const Point3& Corner(Index facet, std::size_t corner) const { return points[facets[facet][corner]]; }
};

} // namespace part_report
