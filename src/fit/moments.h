#pragma once
/// @file
/// Second moments of points about a centre. The sums are in double and in the order of the points, side by side in
/// registers: a pass over the array takes two cycles a point, the latency of one addition.

#include <cadgeom/core/point3d.h>

#include "fit/point_source.h"

namespace cadgeom::detail {

/// Mean products of the planar offsets from a centre.
struct Moments2 {
    double xx;
    double xy;
    double yy;
};

/// Mean products of the offsets from a centre in space.
struct Moments3 {
    double xx;
    double xy;
    double xz;
    double yy;
    double yz;
    double zz;
};

template <class T>
inline Moments2 ComputeMoments(const CadPoint2d<T>* points, std::uint64_t count, const CadPoint<double, 2>& center)
{
    const Pair c = ToPair(center);
    Pair squares(0.0);
    Pair mixed(0.0);
    VisitPoints(PlanarPoints<T>(points, count), [&](Pair point) {
        const Pair d = point - c;
        squares += d * d;
        mixed += d * d.Swapped();
    });
    const Pair scale(1.0 / static_cast<double>(count));
    squares = squares * scale;
    mixed = mixed * scale;
    return {squares.First(), mixed.First(), squares.Second()};
}

template <class T>
inline Moments3 ComputeMoments(const CadPoint3d<T>* points, std::uint64_t count, const CadPoint<double, 3>& center)
{
    const Pair centerXY = Pair::Load(center.data());
    const Pair centerZ(center[2]);
    Pair squares(0.0);
    Pair withZ(0.0);
    Pair xyAndZZ(0.0);
    VisitIndices(points, count, [&](std::uint64_t i) {
        const Pair d = Pair::Load(points[i].data()) - centerXY;
        const Pair z = Pair(static_cast<double>(points[i].z())) - centerZ;
        squares += d * d;
        withZ += d * z;
        xyAndZZ += Firsts(d, z) * Seconds(d, z);
    });
    const Pair scale(1.0 / static_cast<double>(count));
    squares = squares * scale;
    withZ = withZ * scale;
    xyAndZZ = xyAndZZ * scale;
    return {squares.First(), xyAndZZ.First(), withZ.First(), squares.Second(), withZ.Second(), xyAndZZ.Second()};
}

} // namespace cadgeom::detail
