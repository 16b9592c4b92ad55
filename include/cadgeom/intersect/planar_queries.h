#pragma once
/// @file
/// Whether planes coincide, the curvature of a curve, and whether a polygon contains a point. For lines see
/// intersect/line_projection.h.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

#include <cstdint>

/// Whether two planes coincide: their normals are parallel, and `point1` lies no further than a distance from the
/// second plane. Only `point1` is measured, so the planes are not interchangeable.
/// @param normal1, normal2       of any length; opposite normals are parallel, a zero normal is parallel to nothing
/// @param distanceTolerance      compared, squared, with the squared distance; inclusive
/// @param angleToleranceDegrees  see CadVector::isParallel
template <class T>
CADGEOM_API bool PlanesAreCoplanar(const CadPoint3d<T>& point1, const CadVector3d<T>& normal1,
                                   const CadPoint3d<T>& point2, const CadVector3d<T>& normal2, T distanceTolerance,
                                   T angleToleranceDegrees);

/// Curvature |c' x c''| / |c'|^3 of a curve with these first and second derivatives.
/// @param curvature  out: 1 / length, not negative; untouched on failure
/// @return false when |c'|^3 <= |c' x c''| * 2^-23: the curvature is 2^23 or more, or the curve stands still
template <class T>
CADGEOM_API bool ComputeCurvature(const CadVector3d<T>& firstDerivative, const CadVector3d<T>& secondDerivative,
                                  T& curvature);

/// Whether a polygon contains a point: a ray towards +x crosses its outline an odd number of times.
///
/// A vertex within the tolerance of the point's y lies on the ray's line; a run of such vertices is one crossing when
/// the outline changes sides there. The point is on the outline when it is no further than the tolerance in x from
/// where an edge meets the line, or from the ends of a run along the line, or between those ends. When every vertex lies
/// on the line, the outline is the range of their x, widened by the tolerance.
///
/// Exactly `count` edges are visited, from the first vertex off the line on. An outline whose last vertex repeats the
/// first (within the tolerance in both coordinates) has one edge fewer, so that first edge is counted twice: leave out
/// the repeated vertex unless that is wanted.
/// @param points      count vertices, closed implicitly; null gives false
/// @param count       0 gives false; 1 gives `onBoundary` for a point within the tolerance in both coordinates
/// @param tolerance   absolute, in the unit of the points, inclusive; 1e-6 (float: 1e-4) replaces 0 or less and NaN
/// @param onBoundary  the answer for a point on the outline
/// A vertex whose y is NaN lies off the line. O(count), without allocation.
template <class T>
CADGEOM_API bool ClosedPolylineContainsPoint2d(const CadPoint2d<T>* points, std::uint64_t count,
                                               const CadPoint2d<T>& point, T tolerance, bool onBoundary);

#define CADGEOM_DECLARE_PLANAR_QUERIES(T)                                                                              \
    extern template CADGEOM_API bool PlanesAreCoplanar(const CadPoint3d<T>&, const CadVector3d<T>&,                    \
                                                       const CadPoint3d<T>&, const CadVector3d<T>&, T, T);             \
    extern template CADGEOM_API bool ComputeCurvature(const CadVector3d<T>&, const CadVector3d<T>&, T&);               \
    extern template CADGEOM_API bool ClosedPolylineContainsPoint2d(const CadPoint2d<T>*, std::uint64_t,                \
                                                                   const CadPoint2d<T>&, T, bool)

CADGEOM_DECLARE_PLANAR_QUERIES(float);
CADGEOM_DECLARE_PLANAR_QUERIES(double);

#undef CADGEOM_DECLARE_PLANAR_QUERIES
