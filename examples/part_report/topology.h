#pragma once
// Which facets of a mesh meet along an edge.

#include "mesh.h"

#include <limits>

namespace part_report {

constexpr Index kNoFacet = std::numeric_limits<Index>::max();

struct Topology {
    /// For each facet the facets beyond its edges 0-1, 1-2 and 2-0; kNoFacet where there is none, or more than one.
    std::vector<std::array<Index, 3>> neighbours;
    std::size_t edgeCount = 0;
    /// Edges of one facet alone: the surface has a border or a crack there.
    std::size_t openEdgeCount = 0;
    /// Edges of three facets and more.
    std::size_t branchingEdgeCount = 0;

    bool IsWatertight() const { return openEdgeCount == 0 && branchingEdgeCount == 0; }
};

Topology FindTopology(const Mesh& mesh);

} // namespace part_report
