#include "regions.h"

#include "fitting.h"

#include <cadgeom/fit/plane_fit.h>
#include <cadgeom/intersect/triangle_area.h>

#include <algorithm>
#include <numeric>

namespace part_report {

namespace {

// A facet belongs to the plane of the seed when its normal turns by no more than this ...
constexpr double kAngleToleranceDegrees = 0.5;
// ... and its corners lie no further from it than this part of the size of the part.
constexpr double kDistanceTolerance = 1e-5;
// Regions of a smaller part of the whole area are facets of something round.
constexpr double kSmallestArea = 0.01;
// The size of the fitted points: PlaneFit3 loses nothing to its thresholds there.
constexpr double kFitSize = 1000;

class RegionGrower {
public:
    RegionGrower(const Mesh& mesh, const Topology& topology, double size)
        : m_mesh(mesh), m_topology(topology), m_tolerance(kDistanceTolerance * size), m_isTaken(mesh.facets.size())
    {
        for (Index facet = 0; facet < mesh.facets.size(); ++facet) {
            m_normals.push_back(FacetNormal(mesh, facet));
            m_areas.push_back(ComputeTriangleArea(mesh.Corner(facet, 0), mesh.Corner(facet, 1), mesh.Corner(facet, 2)));
        }
    }

    /// Large facets have the most reliable normals.
    std::vector<Index> SeedsByArea() const
    {
        std::vector<Index> seeds(m_mesh.facets.size());
        std::iota(seeds.begin(), seeds.end(), Index(0));
        std::stable_sort(seeds.begin(), seeds.end(), [this](Index a, Index b) { return m_areas[a] > m_areas[b]; });
        return seeds;
    }

    bool IsTaken(Index facet) const { return m_isTaken[facet]; }

    PlanarRegion Grow(Index seed)
    {
        PlanarRegion region;
        Take(seed, region);
        for (std::size_t next = 0; next < region.facets.size(); ++next) {
            for (const Index neighbour : m_topology.neighbours[region.facets[next]]) {
                if (neighbour != kNoFacet && !m_isTaken[neighbour] && IsInPlaneOf(seed, neighbour))
                    Take(neighbour, region);
            }
        }
        return region;
    }

    const Vector3& Normal(Index facet) const { return m_normals[facet]; }

private:
    void Take(Index facet, PlanarRegion& region)
    {
        m_isTaken[facet] = true;
        region.facets.push_back(facet);
        region.area += m_areas[facet];
    }

    bool IsInPlaneOf(Index seed, Index facet) const
    {
        const Vector3& normal = m_normals[seed];
        if (!normal.isVectorDirectionEqual(m_normals[facet], kAngleToleranceDegrees))
            return false;
        const auto& corners = m_mesh.facets[facet];
        return std::all_of(corners.begin(), corners.end(), [&](Index corner) {
            return m_mesh.points[corner].distanceSquaredToPlane(m_mesh.Corner(seed, 0), normal) <=
                   m_tolerance * m_tolerance;
        });
    }

    const Mesh& m_mesh;
    const Topology& m_topology;
    double m_tolerance;
    std::vector<bool> m_isTaken;
    std::vector<Vector3> m_normals;
    std::vector<double> m_areas;
};

std::vector<Point3> PointsOf(const Mesh& mesh, const PlanarRegion& region)
{
    std::vector<Index> corners;
    for (const Index facet : region.facets)
        corners.insert(corners.end(), mesh.facets[facet].begin(), mesh.facets[facet].end());
    std::sort(corners.begin(), corners.end());
    corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
    std::vector<Point3> points;
    for (const Index corner : corners)
        points.push_back(mesh.points[corner]);
    return points;
}

void FitPlane(const Mesh& mesh, const Vector3& outward, PlanarRegion& region)
{
    const CentredPoints<3> centred(PointsOf(mesh, region), kFitSize);
    Point3 origin = Point3::zero();
    Vector3 normal = outward;
    double error = 0;
    PlaneFit3(centred.points.data(), centred.points.size(), origin, normal, error);
    region.origin = centred.PointBack(origin);
    region.normal = normal.dot(outward) < 0 ? -normal : normal;
    region.rms = centred.LengthBack(error);
}

/// The longest edge on the border of the region, along which a person would lay a ruler.
Vector3 LongestBorderEdge(const Mesh& mesh, const Topology& topology, const PlanarRegion& region)
{
    std::vector<Index> members = region.facets;
    std::sort(members.begin(), members.end());
    Vector3 longest = Vector3::zero();
    for (const Index facet : region.facets) {
        for (std::size_t side = 0; side < 3; ++side) {
            if (std::binary_search(members.begin(), members.end(), topology.neighbours[facet][side]))
                continue;
            const Vector3 edge = mesh.Corner(facet, (side + 1) % 3) - mesh.Corner(facet, side);
            if (edge.lengthSquared() > longest.lengthSquared())
                longest = edge;
        }
    }
    return longest;
}

} // namespace

Vector3 FacetNormal(const Mesh& mesh, Index facet)
{
    const Vector3 edge1 = mesh.Corner(facet, 1) - mesh.Corner(facet, 0);
    const Vector3 edge2 = mesh.Corner(facet, 2) - mesh.Corner(facet, 0);
    return edge1.crossAndNormalize(edge2);
}

std::vector<PlanarRegion> FindPlanarRegions(const Mesh& mesh, const Topology& topology, double totalArea, double size,
                                            ProgressBar& progress)
{
    ProgressBar::Task task(progress, "growing planar regions", mesh.facets.size());
    RegionGrower grower(mesh, topology, size);
    std::vector<PlanarRegion> regions;
    for (const Index seed : grower.SeedsByArea()) {
        task.Step();
        if (grower.IsTaken(seed))
            continue;
        PlanarRegion region = grower.Grow(seed);
        if (region.area < kSmallestArea * totalArea)
            continue;
        FitPlane(mesh, grower.Normal(seed), region);
        region.longestEdge = LongestBorderEdge(mesh, topology, region);
        regions.push_back(std::move(region));
    }
    std::stable_sort(regions.begin(), regions.end(),
                     [](const PlanarRegion& a, const PlanarRegion& b) { return a.area > b.area; });
    return regions;
}

} // namespace part_report
