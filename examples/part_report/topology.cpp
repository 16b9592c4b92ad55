#include "topology.h"

#include <algorithm>
#include <tuple>

namespace part_report {

namespace {

/// One facet's use of an edge; the two corners are sorted so that all uses of an edge are equal.
struct EdgeUse {
    Index low;
    Index high;
    Index facet;
    Index side;

    bool IsSameEdge(const EdgeUse& other) const { return low == other.low && high == other.high; }
};

std::vector<EdgeUse> SortedEdgeUses(const Mesh& mesh)
{
    std::vector<EdgeUse> uses;
    uses.reserve(3 * mesh.facets.size());
    for (Index facet = 0; facet < mesh.facets.size(); ++facet) {
        for (Index side = 0; side < 3; ++side) {
            const auto [low, high] = std::minmax(mesh.facets[facet][side], mesh.facets[facet][(side + 1) % 3]);
            uses.push_back({low, high, facet, side});
        }
    }
    std::sort(uses.begin(), uses.end(), [](const EdgeUse& a, const EdgeUse& b) {
        return std::tie(a.low, a.high, a.facet, a.side) < std::tie(b.low, b.high, b.facet, b.side);
    });
    return uses;
}

} // namespace

Topology FindTopology(const Mesh& mesh)
{
    Topology topology;
    topology.neighbours.assign(mesh.facets.size(), {kNoFacet, kNoFacet, kNoFacet});
    const std::vector<EdgeUse> uses = SortedEdgeUses(mesh);
    for (auto first = uses.begin(); first != uses.end();) {
        const auto last =
            std::find_if_not(first, uses.end(), [&](const EdgeUse& use) { return use.IsSameEdge(*first); });
        ++topology.edgeCount;
        if (last - first == 1) {
            ++topology.openEdgeCount;
        } else if (last - first == 2) {
            topology.neighbours[first[0].facet][first[0].side] = first[1].facet;
            topology.neighbours[first[1].facet][first[1].side] = first[0].facet;
        } else {
            ++topology.branchingEdgeCount;
        }
        first = last;
    }
    return topology;
}

} // namespace part_report
