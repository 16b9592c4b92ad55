#include <cadgeom/intersect/planar_queries.h>

#include <algorithm>
#include <limits>

// Crossing count along the horizontal line through the point (Shimrat 1962), with runs of vertices on that line folded
// into one crossing. Most edges of a long outline lie wholly above or below the line; they are recognised sixteen at a
// time. That is exact: p.y - y falls monotonically with y, rounding included, so what holds for the highest and the
// lowest of some vertices holds for all of them, and a NaN vertex takes part in no crossing.

namespace {

using cadgeom::detail::Absolute;

/// Number of edges that are skipped at once.
constexpr std::uint64_t kBlockEdges = 16;

/// The point in question and the horizontal line through it.
template <class T>
struct Probe {
    CadPoint2d<T> point;
    T tolerance;

    bool LineHolds(T y) const { return Absolute(point.y() - y) <= tolerance; }
    bool IsNear(T x) const { return Absolute(point.x() - x) <= tolerance; }

    /// Whether none of the edges between these kBlockEdges + 1 vertices touches or crosses the line.
    bool LineMissesBlock(const CadPoint2d<T>* vertices) const;
};

template <class T>
bool Probe<T>::LineMissesBlock(const CadPoint2d<T>* vertices) const
{
    // Four chains hide the latency of minimum and maximum. Both pass over NaN.
    constexpr std::uint64_t kChains = 4;
    constexpr T kInfinity = std::numeric_limits<T>::infinity();
    T lowest[kChains] = {kInfinity, kInfinity, kInfinity, kInfinity};
    T highest[kChains] = {-kInfinity, -kInfinity, -kInfinity, -kInfinity};
    const auto include = [&lowest, &highest](std::uint64_t chain, T y) {
        lowest[chain] = y < lowest[chain] ? y : lowest[chain];
        highest[chain] = y > highest[chain] ? y : highest[chain];
    };
    for (std::uint64_t i = 0; i < kBlockEdges; ++i) {
        include(i % kChains, vertices[i].y());
    }
    include(0, vertices[kBlockEdges].y());
    const T bottom = std::min(std::min(lowest[0], lowest[1]), std::min(lowest[2], lowest[3]));
    const T top = std::max(std::max(highest[0], highest[1]), std::max(highest[2], highest[3]));
    return point.y() - top > tolerance || point.y() - bottom < -tolerance;
}

/// What a walk along the outline has met so far.
template <class T>
class Crossings {
public:
    explicit Crossings(const Probe<T>& probe) : m_probe(probe) {}

    /// Visits the next edge. Returns whether the point lies on it, or on the run along the line that it ends.
    bool Visit(const CadPoint2d<T>& from, const CadPoint2d<T>& to)
    {
        const bool isFromOnLine = m_probe.LineHolds(from.y());
        const bool isToOnLine = m_probe.LineHolds(to.y());
        if (isFromOnLine) {
            return !isToOnLine && EndRun(from, to);
        }
        if (isToOnLine) {
            m_runX = to.x();
            m_isRunBelow = m_probe.point.y() > from.y();
            return false;
        }
        return Cross(from, to);
    }

    bool IsOdd() const { return m_isOdd; }

private:
    bool Cross(const CadPoint2d<T>& from, const CadPoint2d<T>& to)
    {
        const T y = m_probe.point.y();
        if (!((y - to.y()) * (y - from.y()) < T(0))) {
            return false;
        }
        const T x = (to.x() - from.x()) * (y - from.y()) / (to.y() - from.y()) + from.x();
        if (m_probe.IsNear(x)) {
            return true;
        }
        m_isOdd ^= x > m_probe.point.x();
        return false;
    }

    bool EndRun(const CadPoint2d<T>& from, const CadPoint2d<T>& to)
    {
        if (m_probe.IsNear(m_runX) || m_probe.IsNear(from.x())) {
            return true;
        }
        const T x = m_probe.point.x();
        if (m_runX > x && from.x() > x) {
            m_isOdd ^= m_isRunBelow != (m_probe.point.y() > to.y());
            return false;
        }
        return (x - from.x()) * (x - m_runX) <= T(0);
    }

    const Probe<T>& m_probe;
    T m_runX = T(0); ///< where the present run along the line began
    bool m_isRunBelow = false;
    bool m_isOdd = false;
};

template <class T>
bool AreEqual(const CadPoint2d<T>& a, const CadPoint2d<T>& b, T tolerance)
{
    return Absolute(a.x() - b.x()) <= tolerance && Absolute(a.y() - b.y()) <= tolerance;
}

/// Whether the probe lies within the x range of an outline that runs along its line.
template <class T>
bool IsWithinRange(const CadPoint2d<T>* points, std::uint64_t count, const Probe<T>& probe)
{
    T lowest = points[0].x();
    T highest = points[0].x();
    for (std::uint64_t i = 1; i < count; ++i) {
        lowest = std::min(lowest, points[i].x());
        highest = std::max(highest, points[i].x());
    }
    const T x = probe.point.x();
    return x >= lowest - probe.tolerance && x <= highest + probe.tolerance;
}

} // namespace

template <class T>
bool ClosedPolylineContainsPoint2d(const CadPoint2d<T>* points, std::uint64_t count, const CadPoint2d<T>& point,
                                   T tolerance, bool onBoundary)
{
    if (points == nullptr || count == 0) {
        return false;
    }
    const Probe<T> probe = {point, tolerance > T(0) ? tolerance : cadgeom::detail::Tolerance<T>::epsilon()};
    if (count == 1) {
        return onBoundary && AreEqual(point, points[0], probe.tolerance);
    }

    const bool repeatsFirst = AreEqual(points[count - 1], points[0], probe.tolerance);
    const std::uint64_t vertices = repeatsFirst ? count - 1 : count;
    const CadPoint2d<T>* const first = std::find_if(
        points, points + vertices, [&probe](const CadPoint2d<T>& vertex) { return !probe.LineHolds(vertex.y()); });
    if (first == points + vertices) {
        return onBoundary && IsWithinRange(points, vertices, probe);
    }

    Crossings<T> crossings(probe);
    auto from = static_cast<std::uint64_t>(first - points);
    for (std::uint64_t remaining = count; remaining != 0;) {
        std::uint64_t edges = std::min(remaining, kBlockEdges);
        const bool isBlock = edges == kBlockEdges && vertices - from > kBlockEdges;
        if (isBlock && probe.LineMissesBlock(points + from)) {
            from += kBlockEdges;
            remaining -= kBlockEdges;
            continue;
        }
        remaining -= edges;
        for (; edges != 0; --edges) {
            const std::uint64_t to = from + 1 == vertices ? 0 : from + 1;
            if (crossings.Visit(points[from], points[to])) {
                return onBoundary;
            }
            from = to;
        }
    }
    return crossings.IsOdd();
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool ClosedPolylineContainsPoint2d(const CadPoint2d<T>*, std::uint64_t, const CadPoint2d<T>&, \
                                                            T, bool)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
