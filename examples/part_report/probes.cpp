#include "probes.h"

#include <cadgeom/core/point_sequence.h>
#include <cadgeom/core/units.h>
#include <cadgeom/intersect/drop.h>
#include <cadgeom/intersect/pierce.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace part_report {

namespace {

// Probes along the longer side of the grid.
constexpr int kProbesAlongSide = 48;
constexpr std::size_t kMostMeasuredPoints = 500;
// Displacement of the measured points in parts of the size of the part, and the number of steps to either side.
constexpr double kAmplitude = 1e-4;
constexpr int kAmplitudeSteps = 3;
// Piercing and dropping take triangles of less than 1e-6 or so, in squared units, for lines. A part is probed at this size,
// so that it does not matter how small it is.
constexpr double kProbedSize = 1000;

CBoundingBox3d<double> FacetBox(const std::array<Index, 3>& facet, const std::vector<Point3>& points)
{
    CBoundingBox3d<double> box;
    for (const Index corner : facet)
        box.CheckPoint(points[corner]);
    return box;
}

/// Facets in the coordinates of the stand, to be hit from above.
class HeightProbe {
public:
    HeightProbe(const Mesh& mesh, const Stand& stand)
        : m_facets(mesh.facets),
          m_points(LocalPoints(mesh, stand.frame)),
          m_range(stand.localBox),
          m_factor(kProbedSize / m_range.GetSize().length())
    {
        PointsScale(m_points.data(), m_points.size(), m_factor);
        m_range.Scale(m_factor);
        for (const auto& facet : m_facets)
            m_boxes.push_back(FacetBox(facet, m_points));
    }

    /// Keeps the facets that the probes of one row can hit.
    void SelectRow(double y)
    {
        const double rowY = y * m_factor;
        const Point3& min = m_range.GetMin();
        const Point3& max = m_range.GetMax();
        const CBoundingBox3d<double> row(Point3(min.x(), rowY, min.z()), Point3(max.x(), rowY, max.z()));
        m_row.clear();
        for (Index facet = 0; facet < m_facets.size(); ++facet) {
            if (m_boxes[facet].BoundingBoxIntersects(row, 0))
                m_row.push_back(facet);
        }
    }

    /// The height of the highest hit; NaN when there is none.
    double HeightAt(double x, double y) const
    {
        const double top = m_range.GetMax().z();
        const Point3 above(x * m_factor, y * m_factor, top);
        const Vector3 down = -Vector3::zAxis();
        double nearest = std::numeric_limits<double>::infinity();
        for (const Index facet : m_row) {
            double depth = 0;
            if (!m_boxes[facet].RayPierce(above, down, &depth, nullptr, nullptr, nullptr) || depth >= nearest)
                continue;
            const auto& [a, b, c] = m_facets[facet];
            double t = 0;
            double u = 0;
            double v = 0;
            if (PierceTriangle(above, down, m_points[a], m_points[b], m_points[c], t, u, v))
                nearest = std::min(nearest, t);
        }
        return std::isfinite(nearest) ? (top - nearest) / m_factor : std::numeric_limits<double>::quiet_NaN();
    }

private:
    const std::vector<std::array<Index, 3>>& m_facets;
    std::vector<Point3> m_points;
    CBoundingBox3d<double> m_range;
    double m_factor;
    std::vector<CBoundingBox3d<double>> m_boxes;
    std::vector<Index> m_row;
};

HeightGrid MakeGrid(const Stand& stand)
{
    CBoundingBox3d<double> box = stand.localBox;
    const Vector3 size = box.GetSize();
    HeightGrid grid;
    grid.pitch = std::max(size.x(), size.y()) / kProbesAlongSide;
    const auto count = [&](double length) {
        return std::clamp(static_cast<int>(std::lround(length / grid.pitch)), 1, kProbesAlongSide);
    };
    grid.columns = count(size.x());
    grid.rows = count(size.y());
    return grid;
}

void Summarise(HeightGrid& grid)
{
    double sum = 0;
    for (const double height : grid.heights) {
        if (std::isnan(height))
            continue;
        grid.lowest = grid.hitCount == 0 ? height : std::min(grid.lowest, height);
        grid.highest = grid.hitCount == 0 ? height : std::max(grid.highest, height);
        sum += height;
        ++grid.hitCount;
    }
    grid.mean = grid.hitCount == 0 ? 0 : sum / grid.hitCount;
}

/// Finds the nearest point of a surface, facet by facet.
class SurfaceDropper {
public:
    SurfaceDropper(const Mesh& mesh, double size)
        : m_facets(mesh.facets), m_points(mesh.points), m_factor(kProbedSize / size)
    {
        PointsScale(m_points.data(), m_points.size(), m_factor);
        for (const auto& facet : m_facets)
            m_boxes.push_back(FacetBox(facet, m_points));
    }

    struct Foot {
        Point3 point;
        Index facet = 0;
        double distance = 0;
    };

    Foot Drop(const Point3& measured) const
    {
        const Point3 point = measured * m_factor;
        Foot foot;
        double distanceSquared = std::numeric_limits<double>::max();
        for (Index facet = 0; facet < m_boxes.size(); ++facet) {
            if (m_boxes[facet].GetClosestDistanceSquared(point) >= distanceSquared)
                continue;
            double u = 0;
            double v = 0;
            bool onEdge = false;
            const auto& [a, b, c] = m_facets[facet];
            if (DropTriangle(point, m_points[a], m_points[b], m_points[c], distanceSquared, u, v, foot.point, onEdge))
                foot.facet = facet;
        }
        foot.point /= m_factor;
        foot.distance = std::sqrt(distanceSquared) / m_factor;
        return foot;
    }

private:
    const std::vector<std::array<Index, 3>>& m_facets;
    std::vector<Point3> m_points;
    double m_factor;
    std::vector<CBoundingBox3d<double>> m_boxes;
};

struct MeasuredPoint {
    Point3 position;
    double displacement;
};

std::vector<MeasuredPoint> MakeMeasuredPoints(const Mesh& mesh, double amplitude)
{
    const std::size_t stride = 1 + (mesh.facets.size() - 1) / kMostMeasuredPoints;
    std::vector<MeasuredPoint> points;
    for (std::size_t i = 0; i * stride < mesh.facets.size(); ++i) {
        const auto facet = static_cast<Index>(i * stride);
        const std::array<Point3, 3> corners{mesh.Corner(facet, 0), mesh.Corner(facet, 1), mesh.Corner(facet, 2)};
        const Point3 centre = ComputeMeanPoint<double, 3>(corners.data(), corners.size());
        const int step = static_cast<int>(i % (2 * kAmplitudeSteps + 1)) - kAmplitudeSteps;
        const double displacement = amplitude * step / kAmplitudeSteps;
        points.push_back({centre + FacetNormal(mesh, facet) * displacement, displacement});
    }
    return points;
}

} // namespace

HeightGrid ProbeHeights(const Mesh& mesh, const Stand& stand, ProgressBar& progress)
{
    HeightGrid grid = MakeGrid(stand);
    ProgressBar::Task task(progress, "probing heights", static_cast<std::uint64_t>(grid.rows));
    HeightProbe probe(mesh, stand);
    CBoundingBox3d<double> box = stand.localBox;
    const Vector3 size = box.GetSize();
    for (int row = 0; row < grid.rows; ++row) {
        // In the middle of the cells, where no probe runs along a side of the part.
        const double y = box.GetMin().y() + size.y() * (row + 0.5) / grid.rows;
        probe.SelectRow(y);
        for (int column = 0; column < grid.columns; ++column)
            grid.heights.push_back(probe.HeightAt(box.GetMin().x() + size.x() * (column + 0.5) / grid.columns, y));
        task.Step();
    }
    Summarise(grid);
    return grid;
}

Deviations MeasureDeviations(const Mesh& mesh, double size, ProgressBar& progress)
{
    const std::vector<MeasuredPoint> points = MakeMeasuredPoints(mesh, kAmplitude * size);
    ProgressBar::Task task(progress, "measuring deviations", points.size());
    const SurfaceDropper dropper(mesh, size);
    Deviations result;
    result.pointCount = points.size();
    double sumFound = 0;
    double sumApplied = 0;
    for (const MeasuredPoint& point : points) {
        const SurfaceDropper::Foot foot = dropper.Drop(point.position);
        const bool isOutside = FacetNormal(mesh, foot.facet).dot(point.position - foot.point) >= 0;
        if (foot.distance > std::fabs(result.largest)) {
            result.largest = isOutside ? foot.distance : -foot.distance;
            result.worstPoint = point.position;
            result.worstFoot = foot.point;
        }
        result.largestApplied = std::max(result.largestApplied, std::fabs(point.displacement));
        sumFound += foot.distance * foot.distance;
        sumApplied += point.displacement * point.displacement;
        task.Step();
    }
    result.rms = std::sqrt(sumFound / static_cast<double>(points.size()));
    result.rmsApplied = std::sqrt(sumApplied / static_cast<double>(points.size()));
    return result;
}

} // namespace part_report
