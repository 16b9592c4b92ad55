#include "sections.h"

#include "extents.h"

#include <cadgeom/core/point_sequence.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace part_report {

namespace {

// Parts of the size of the part: closer vertices lie on the plane, ...
constexpr double kOnPlane = 1e-9;
// ... closer ends of cuts are one point (facets may meet without sharing vertices), and what lies closer to a straight
// line is left out.
constexpr double kSamePoint = 1e-6;

constexpr std::size_t kNoPoint = std::numeric_limits<std::size_t>::max();

/// Numbers points; those within a tolerance of an earlier one get its number.
class PointWelder {
public:
    explicit PointWelder(double tolerance) : m_tolerance(tolerance) {}

    std::size_t NumberOf(const Point3& point)
    {
        if (m_points.empty())
            m_origin = point;
        const std::int64_t column = CellOf(point.x() - m_origin.x());
        const std::int64_t row = CellOf(point.y() - m_origin.y());
        for (std::int64_t x = column - 1; x <= column + 1; ++x) {
            for (std::int64_t y = row - 1; y <= row + 1; ++y) {
                const std::size_t number = FindInCell(KeyOf(x, y), point);
                if (number != kNoPoint)
                    return number;
            }
        }
        m_cells[KeyOf(column, row)].push_back(m_points.size());
        m_points.push_back(point);
        return m_points.size() - 1;
    }

    const std::vector<Point3>& Points() const { return m_points; }

private:
    // Cells of twice the tolerance: no point within the tolerance is further away than the next cell.
    std::int64_t CellOf(double offset) const
    {
        return static_cast<std::int64_t>(std::floor(offset / (2 * m_tolerance)));
    }

    static std::uint64_t KeyOf(std::int64_t column, std::int64_t row)
    {
        constexpr std::uint64_t kLargePrime = 0x9E3779B97F4A7C15;
        return static_cast<std::uint64_t>(column) * kLargePrime ^ static_cast<std::uint64_t>(row);
    }

    std::size_t FindInCell(std::uint64_t key, const Point3& point) const
    {
        const auto cell = m_cells.find(key);
        if (cell == m_cells.end())
            return kNoPoint;
        const auto found = std::find_if(cell->second.begin(), cell->second.end(), [&](std::size_t number) {
            return m_points[number].isEqual(point, m_tolerance);
        });
        return found == cell->second.end() ? kNoPoint : *found;
    }

    double m_tolerance;
    Point3 m_origin = Point3::zero();
    std::vector<Point3> m_points;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> m_cells;
};

/// The straight cuts of single facets, and what becomes of them when they are joined end to end.
class CutChainer {
public:
    explicit CutChainer(double tolerance) : m_welder(tolerance) {}

    void AddCut(const Point3& start, const Point3& end)
    {
        const std::size_t first = m_welder.NumberOf(start);
        const std::size_t second = m_welder.NumberOf(end);
        if (first != second)
            m_cuts.push_back({first, second});
    }

    /// Points of a closed chain: the first one is not repeated.
    struct Chain {
        std::vector<Point3> points;
        bool isClosed = false;
    };

    std::vector<Chain> Join()
    {
        m_cutsAtPoint.assign(m_welder.Points().size(), {});
        for (std::size_t cut = 0; cut < m_cuts.size(); ++cut) {
            for (const std::size_t end : m_cuts[cut])
                m_cutsAtPoint[end].push_back(cut);
        }
        m_isUsed.assign(m_cuts.size(), false);
        std::vector<Chain> chains;
        // Open chains first, from their ends: what remains is closed.
        for (std::size_t point = 0; point < m_cutsAtPoint.size(); ++point) {
            if (m_cutsAtPoint[point].size() % 2 == 1)
                AddChainFrom(point, chains);
        }
        for (const auto& cut : m_cuts)
            AddChainFrom(cut[0], chains);
        return chains;
    }

private:
    void AddChainFrom(std::size_t start, std::vector<Chain>& chains)
    {
        std::vector<std::size_t> numbers{start};
        for (std::size_t next = Advance(start); next != kNoPoint; next = Advance(next)) {
            numbers.push_back(next);
            if (next == start)
                break;
        }
        if (numbers.size() < 2)
            return;
        Chain chain;
        chain.isClosed = numbers.back() == start;
        if (chain.isClosed) {
            numbers.pop_back();
            StartAtCorner(numbers);
        }
        for (const std::size_t number : numbers)
            chain.points.push_back(m_welder.Points()[number]);
        chains.push_back(std::move(chain));
    }

    /// Walks along a cut that nobody has walked yet.
    std::size_t Advance(std::size_t point)
    {
        for (const std::size_t cut : m_cutsAtPoint[point]) {
            if (!m_isUsed[cut]) {
                m_isUsed[cut] = true;
                return m_cuts[cut][0] == point ? m_cuts[cut][1] : m_cuts[cut][0];
            }
        }
        return kNoPoint;
    }

    /// Simplification keeps the first point, which therefore should not lie within a straight side. The point farthest
    /// from the middle is a corner.
    void StartAtCorner(std::vector<std::size_t>& numbers) const
    {
        const std::vector<Point3>& points = m_welder.Points();
        std::vector<Point3> chain;
        for (const std::size_t number : numbers)
            chain.push_back(points[number]);
        const Point3 middle = ComputeMeanPoint<double, 3>(chain.data(), chain.size());
        const auto farthest = std::max_element(chain.begin(), chain.end(), [&](const Point3& a, const Point3& b) {
            return a.distanceSquared(middle) < b.distanceSquared(middle);
        });
        std::rotate(numbers.begin(), numbers.begin() + (farthest - chain.begin()), numbers.end());
    }

    PointWelder m_welder;
    std::vector<std::array<std::size_t, 2>> m_cuts;
    std::vector<std::vector<std::size_t>> m_cutsAtPoint;
    std::vector<bool> m_isUsed;
};

CCadTransform FrameOf(const SectionPlane& plane)
{
    Point3 origin = Point3::zero();
    origin[plane.axis] = plane.position;
    switch (plane.axis) {
    case eXAxis:
        return CCadTransform(Vector3::xAxis(), Vector3::yAxis(), origin);
    case eYAxis:
        return CCadTransform(-Vector3::yAxis(), Vector3::xAxis(), origin);
    default:
        return CCadTransform(Vector3::zAxis(), Vector3::xAxis(), origin);
    }
}

/// Where the edge between two points on either side of the plane z = 0 meets it.
Point3 Crossing(const CCadTransform& frame, const Point3& a, const Point3& b)
{
    constexpr int kAcrossZ = 2;
    // The edge is walked the same way for both facets that share it, so that both get the same bits.
    const auto [from, to] = a.z() < b.z() ? std::pair(a, b) : std::pair(b, a);
    Point3 crossing;
    if (!frame.LineInterPlaneTC(from, to - from, kAcrossZ, crossing)) {
        // The edge runs along the plane, within 1e-5 of its length: its nearer end is on it.
        crossing = -from.z() < to.z() ? from : to;
    }
    crossing.z() = 0;
    return crossing;
}

/// Cuts one facet, given by its local corners. A corner on the plane counts as above it, so that facets within the plane
/// give nothing and each outline is cut once.
void CutFacet(const CCadTransform& frame, const std::array<Point3, 3>& corners, CutChainer& chainer)
{
    std::array<Point3, 2> ends;
    std::size_t count = 0;
    for (std::size_t side = 0; side < 3; ++side) {
        const Point3& a = corners[side];
        const Point3& b = corners[(side + 1) % 3];
        if ((a.z() >= 0) != (b.z() >= 0))
            ends[count++] = Crossing(frame, a, b);
    }
    if (count == 2)
        chainer.AddCut(ends[0], ends[1]);
}

std::vector<Point3> LocalPointsWithPlane(const Mesh& mesh, const CCadTransform& frame, double size)
{
    std::vector<Point3> points = LocalPoints(mesh, frame);
    for (Point3& point : points) {
        if (std::fabs(point.z()) <= kOnPlane * size)
            point.z() = 0;
    }
    return points;
}

double MaterialArea(const std::vector<Outline>& outlines)
{
    double area = 0;
    for (const Outline& outline : outlines)
        area += outline.depth % 2 == 0 ? outline.area : -outline.area;
    return area;
}

} // namespace

const char* LocalAxisNames(EAxis axis)
{
    constexpr const char* kNames[] = {"yz", "xz", "xy"};
    return kNames[axis];
}

Section CutSection(const Mesh& mesh, const SectionPlane& plane, double size, ProgressBar& progress)
{
    ProgressBar::Task task(progress, "cutting sections", mesh.facets.size());
    Section section;
    section.plane = plane;
    section.frame = FrameOf(plane);
    const std::vector<Point3> points = LocalPointsWithPlane(mesh, section.frame, size);
    CutChainer chainer(kSamePoint * size);
    for (const auto& facet : mesh.facets) {
        CutFacet(section.frame, {points[facet[0]], points[facet[1]], points[facet[2]]}, chainer);
        task.Step();
    }
    for (const CutChainer::Chain& chain : chainer.Join()) {
        if (auto outline = MakeOutline(chain.points, chain.isClosed, section.frame, kSamePoint * size))
            section.outlines.push_back(std::move(*outline));
    }
    NestOutlines(section.outlines, kSamePoint * size);
    section.materialArea = MaterialArea(section.outlines);
    return section;
}

} // namespace part_report
