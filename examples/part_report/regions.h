#pragma once
// Planar regions of a mesh: facets grown together by their normals.

#include "progress_bar.h"
#include "topology.h"

namespace part_report {

struct PlanarRegion {
    std::vector<Index> facets;
    double area = 0;
    /// The plane that fits the region's vertices best; the normal points out of the part.
    Point3 origin = Point3::zero();
    Vector3 normal = Vector3::zAxis();
    /// Root mean square distance of the vertices from the plane.
    double rms = 0;
    /// From end to end.
    Vector3 longestEdge = Vector3::zero();
};

/// Finds the regions of at least 1 % of `totalArea`, the largest first.
/// @param size  of the part, the scale of the tolerances
std::vector<PlanarRegion> FindPlanarRegions(const Mesh& mesh, const Topology& topology, double totalArea, double size,
                                            ProgressBar& progress);

/// Unit normal by the order of the corners; (0, 0, 1) for a facet without area.
Vector3 FacetNormal(const Mesh& mesh, Index facet);

} // namespace part_report
