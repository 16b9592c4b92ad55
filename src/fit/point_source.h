#pragma once
/// @file
/// Planar points as the fits in the plane see them: a source gives the coordinates of point i in double, whatever the
/// caller's array holds. fit/plane_frame.h has the source for points in space.

#include <cadgeom/core/point2d.h>

#include "fit/pair.h"

#include <cstdint>
#include <limits>

namespace cadgeom::detail {

/// A caller's array of planar points, widened on the fly.
template <class T>
class PlanarPoints {
public:
    PlanarPoints(const CadPoint2d<T>* points, std::uint64_t count) : m_points(points), m_count(count) {}

    const CadPoint2d<T>* Data() const { return m_points; }
    std::uint64_t Count() const { return m_count; }
    Pair operator[](std::uint64_t i) const { return Pair::Load(m_points[i].data()); }

    /// The weight of the last place of coordinates of this size, at most.
    static Pair UnitInLastPlace(Pair magnitude) { return magnitude * Pair(static_cast<double>(kEpsilon)); }

private:
    static constexpr T kEpsilon = std::numeric_limits<T>::epsilon();

    const CadPoint2d<T>* m_points;
    std::uint64_t m_count;
};

/// Calls visit(i) for the first index i of each whole group of kGroup elements of an array, in order. In large arrays
/// the element some 4096 bytes later is sent for each time, since the processor's own prefetching stops at the end of a
/// page.
template <int kGroup = 1, class Point, class Visit>
inline void VisitIndices(const Point* points, std::uint64_t count, Visit visit)
{
    constexpr std::uint64_t kAhead = 4096 / sizeof(Point);
    constexpr std::uint64_t kWorthPrefetching = (std::uint64_t{1} << 20) / sizeof(Point);
    std::uint64_t i = 0;
    if (count > kWorthPrefetching) {
        for (; i < count - kAhead; i += kGroup) {
            PrefetchLine(points + i + kAhead);
            visit(i);
        }
    }
    for (; i + kGroup <= count; i += kGroup) {
        visit(i);
    }
}

/// Calls visit(point) for the points of a source in order.
template <class Source, class Visit>
inline void VisitPoints(const Source& points, Visit visit)
{
    VisitIndices(points.Data(), points.Count(), [&](std::uint64_t i) { visit(points[i]); });
}

/// The mean, as ComputeMeanPoint() forms it.
template <class Source>
inline Pair MeanOf(const Source& points)
{
    Pair sum(0.0);
    VisitPoints(points, [&](Pair point) { sum += point; });
    return sum * Pair(1.0 / static_cast<double>(points.Count()));
}

inline CadPoint2d<double> ToPoint(Pair point)
{
    return {point.First(), point.Second()};
}

inline Pair ToPair(const CadPoint<double, 2>& point)
{
    return Pair::Load(point.data());
}

inline Pair ToPair(const CadVector<double, 2>& vector)
{
    return Pair::Load(vector.data());
}

/// 0 + x * p + y * q in each lane: the two dot products of (x, y) with (p.First(), q.First()) and
/// (p.Second(), q.Second()), summed from 0 as CadVector::dot does.
inline Pair DotProducts(Pair point, Pair p, Pair q)
{
    return Pair(0.0) + point.FirstTwice() * p + point.SecondTwice() * q;
}

} // namespace cadgeom::detail
