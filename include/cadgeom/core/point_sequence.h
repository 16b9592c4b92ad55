#pragma once
/// @file
/// Centroid and length of point sequences, and whether two lines coincide.

#include <cadgeom/core/export.h>

#include <cstdint>

template <class T, int N>
class CadPoint;
template <class T, int N>
class CadVector;

/// Arithmetic mean of `count` points, in double for float points too; the zero point when `count` is 0. The coordinates
/// are added in array order and multiplied by 1 / count. `points` may be null only when `count` is 0.
template <class T, int N>
CADGEOM_API CadPoint<double, N> ComputeMeanPoint(const CadPoint<T, N>* points, std::uint64_t count);

/// Length of the open polyline through `count` points: the lengths of its segments added in order, in T. 0 for fewer
/// than two points.
template <class T, int N>
CADGEOM_API T PolylineGetLength(const CadPoint<T, N>* points, std::uint64_t count);
/// As PolylineGetLength, for an array of vectors read as positions.
template <class T, int N>
CADGEOM_API T VectorPolylineGetLength(const CadVector<T, N>* vectors, std::uint64_t count);

/// Whether the first line lies on the second: parallel within an angle (CadVector::isParallel), and `point1` no further
/// than a distance from the second line. Only `point1` is measured, so the lines are not interchangeable. A zero
/// direction is never parallel.
/// @param distanceTolerance      compared, squared, with the squared distance; inclusive
/// @param angleToleranceDegrees  opposite directions count as parallel
template <class T, int N>
CADGEOM_API bool LinesAreColinear(const CadPoint<T, N>& point1, const CadVector<T, N>& direction1,
                                  const CadPoint<T, N>& point2, const CadVector<T, N>& direction2, T distanceTolerance,
                                  T angleToleranceDegrees);

#define CADGEOM_DECLARE_POINT_SEQUENCE(T, N)                                                                           \
    extern template CADGEOM_API CadPoint<double, N> ComputeMeanPoint(const CadPoint<T, N>*, std::uint64_t);            \
    extern template CADGEOM_API T PolylineGetLength(const CadPoint<T, N>*, std::uint64_t);                             \
    extern template CADGEOM_API T VectorPolylineGetLength(const CadVector<T, N>*, std::uint64_t);                      \
    extern template CADGEOM_API bool LinesAreColinear(const CadPoint<T, N>&, const CadVector<T, N>&,                   \
                                                      const CadPoint<T, N>&, const CadVector<T, N>&, T, T)

CADGEOM_DECLARE_POINT_SEQUENCE(float, 2);
CADGEOM_DECLARE_POINT_SEQUENCE(float, 3);
CADGEOM_DECLARE_POINT_SEQUENCE(double, 2);
CADGEOM_DECLARE_POINT_SEQUENCE(double, 3);

#undef CADGEOM_DECLARE_POINT_SEQUENCE
