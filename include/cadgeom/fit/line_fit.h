#pragma once
/// @file
/// Lines and segments closest to points in the plane and in space. Next: fit/plane_fit.h.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

#include <cstdint>

/// Fits an infinite line to points in the plane by total least squares: the sum of squared distances is smallest.
///
/// @param points     count contiguous points in any one length unit; null makes the fit fail
/// @param count      at least 2
/// @param origin     out: a point of the line (the mean; points[0] when count is 2)
/// @param direction  out: unit vector along the axis of largest spread; its sign carries no meaning
/// @param error      out: root mean square distance to the line, in the unit of the points; 0 when count is 2
/// @return false, with all outputs untouched, when points is null or count < 2; false, with origin and direction
///         written and error untouched, when count is 2 and the points lie no more than 2^-23 apart
///
/// Three or more coincident points give some unit vector and error 0. Where an infinity or NaN takes part in the fit of
/// three or more points the result is true and meaningless.
/// Unlike the fits in space this one has no absolute threshold: it is as good for small data as for large.
/// O(count), without allocation. Method: eigenvector of the moment matrix about the mean (Pearson 1901).
template <class T>
CADGEOM_API bool LineFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& origin,
                          CadVector2d<double>& direction, double& error);

/// Fits an infinite line to points in space; as LineFit2 otherwise, also in what is written on failure.
///
/// @par Accuracy
/// As PlaneFit3, with the same way around its threshold: points spread over +-L along a line of random direction gave
/// directions exact to 1e-15 down to L = 0.1, off by up to 4e-3 (one line in 50 by more than 1e-6) at L = 0.01, and
/// mostly wrong below L = 0.001.
template <class T>
CADGEOM_API bool LineFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& origin,
                          CadVector3d<double>& direction, double& error);

/// Fits a segment to points in space: the part of LineFit3's line between the outermost projections of the points.
///
/// @param points  count contiguous points; null makes the fit fail
/// @param count   at least 2
/// @param start   out: the end at which the points begin: the segment points the way from the first to the last one
/// @param end     out: the other end
/// @param error   out: root mean square distance to the infinite line, as LineFit3 writes it
/// @return false, with all outputs untouched, where LineFit3 returns false
///
/// O(count), without allocation.
template <class T>
CADGEOM_API bool LineSegmentFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& start,
                                 CadPoint3d<double>& end, double& error);

#define CADGEOM_DECLARE_LINE_FIT(T)                                                                                    \
    extern template CADGEOM_API bool LineFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&,                \
                                              CadVector2d<double>&, double&);                                          \
    extern template CADGEOM_API bool LineFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,                \
                                              CadVector3d<double>&, double&);                                          \
    extern template CADGEOM_API bool LineSegmentFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,         \
                                                     CadPoint3d<double>&, double&)

CADGEOM_DECLARE_LINE_FIT(float);
CADGEOM_DECLARE_LINE_FIT(double);

#undef CADGEOM_DECLARE_LINE_FIT
