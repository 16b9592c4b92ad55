#pragma once
/// @file
/// Whether planar points lie on one straight line, as far as their rounded coordinates can tell.
///
/// The moments of such points are singular, but rounding makes them regular, and a fit would return something
/// arbitrary. The points themselves are looked at instead: they are on a line when all of them are within the roundings
/// of their coordinates from the line through two of them. Anything further off is left to the fit.

#include "fit/point_source.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace cadgeom::detail {

/// Units in the last place by which coordinates of a point of a line may be off: origin + t * direction is rounded
/// twice, and the two points that the line is drawn through bring roundings of their own.
inline constexpr double kUnitsOffLine = 4.0;

/// Bound on the rounding errors of a cross product, relative to its two products.
inline constexpr double kErrorOfCross = 4.0 * std::numeric_limits<double>::epsilon();

/// Whether `point` may be on the line through `start` and `end`, with coordinates off by no more than `tolerance`.
/// False when something is not finite.
inline bool MayBeOnLine(Pair point, Pair start, Pair end, Pair tolerance)
{
    const Pair direction = end - start;
    const Pair slack = direction.Swapped() * tolerance;
    const Pair cross = direction * (point - start).Swapped();
    return std::fabs(cross.First() - cross.Second()) <=
           std::fabs(slack.First()) + std::fabs(slack.Second()) +
               kErrorOfCross * (std::fabs(cross.First()) + std::fabs(cross.Second()));
}

inline Pair Magnitude(Pair a)
{
    return Pair(std::fabs(a.First()), std::fabs(a.Second()));
}

/// The larger |coordinate|.
inline double Size(Pair a)
{
    return std::max(std::fabs(a.First()), std::fabs(a.Second()));
}

template <class Source>
std::uint64_t FarthestFromFirst(const Source& points)
{
    const Pair first = points[0];
    std::uint64_t farthest = 0;
    double distance = 0.0;
    VisitIndices(points.Data(), points.Count(), [&](std::uint64_t i) {
        const double size = Size(points[i] - first);
        if (size > distance) {
            distance = size;
            farthest = i;
        }
    });
    return farthest;
}

/// Whether three of the points are too far off a line for all of them to be on one. Decides nearly every case that is
/// not a line, without a pass over the points.
/// @param largest  upper bounds of the |coordinates| of all points
template <class Source>
bool HasCorner(const Source& points, Pair largest)
{
    const Pair first = points[0];
    Pair near = points[points.Count() / 3];
    Pair far = points[points.Count() / 3 * 2];
    if (Size(near - first) > Size(far - first)) {
        std::swap(near, far);
    }
    // Both other points may be off the line that all of them are near.
    return !MayBeOnLine(near, first, far, points.UnitInLastPlace(largest) * Pair(4.0 * kUnitsOffLine));
}

/// Whether all points (one or more) are on a line, up to the rounding of their coordinates.
/// @param largest  upper bounds of the |coordinates| of all points
template <class Source>
bool LieOnLine(const Source& points, Pair largest)
{
    if (HasCorner(points, largest)) {
        return false;
    }
    const Pair first = points[0];
    const Pair last = points[FarthestFromFirst(points)];
    const Pair tolerance = points.UnitInLastPlace(Higher(Magnitude(first), Magnitude(last))) * Pair(kUnitsOffLine);
    for (std::uint64_t i = 0; i < points.Count(); ++i) {
        if (!MayBeOnLine(points[i], first, last, tolerance)) {
            return false;
        }
    }
    return true;
}

} // namespace cadgeom::detail
