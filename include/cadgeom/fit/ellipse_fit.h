#pragma once
/// @file
/// Ellipses closest to points in the plane and in space. Next: fit/oriented_box_fit.h.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

#include <cstdint>

/// Fits an ellipse to points in the plane: among the conics A x^2 + B x y + C y^2 + D x + E y + F = 0 with 4 A C - B^2
/// = 1 the one with the smallest sum of squares of that expression over the points.
///
/// @param points  count contiguous points in any one length unit; null makes the fit fail
/// @param count   at least 4 (with fewer than 5 the points determine no ellipse, and the fit picks one of many)
/// @param center  out
/// @param axis    out: unit vector (cos t, -sin t) for a major axis at the angle t: **the direction of the major axis
///                mirrored in the x axis**; (0, 1) for a circle
/// @param a       out: the larger radius
/// @param b       out: the smaller radius
/// @param error   out, may be null: root mean square of the residuals. A residual is the distance from the point to the
///                ellipse along the ray from the centre in coordinates that make the ellipse the unit circle, measured
///                in the plane; it overestimates the distance where the ellipse is flat
/// @return false, with all outputs untouched, when points is null, count < 4, the points lie on a straight line (to
///         within four units in the last place of their coordinates), or the steps of the method find no ellipse
///
/// @par Accuracy
/// The points are used as they are, neither centred nor scaled; fourth powers of the coordinates are summed, and the
/// tolerances of the root finder are absolute. Measured with points exactly on ellipses of b = 0.4 a, at random
/// parameters, error of centre and radii relative to a:
///
/// | distance of the centre from the origin | 0     | a     | 2 a   | 5 a  | 10 a | 30 a | 100 a           |
/// |----------------------------------------|-------|-------|-------|------|------|------|-----------------|
/// | error                                  | 1e-14 | 1e-12 | 5e-11 | 1e-8 | 4e-7 | 3e-4 | half are wrong  |
///
/// - Noisy points give the exact direct fit to about 2e-8 of a, however they are placed: the eigenvalues are found to
///   2^-23 of their size.
/// - Ellipses with a below about 0.3 are missed: the fit returns false (always at a = 0.1).
/// - Points exactly on the ellipse **and** evenly spread over it give a cubic with a double root, which is mostly
///   missed too. Noise from 1e-2 of a on, or an uneven spread, makes them found.
///
/// Therefore centre and scale first: subtract the mean, divide by the extent, fit, multiply center, a, b and error by
/// the extent and add the mean to the centre; the axis holds as it is.
/// O(count), a few small blocks from the heap whatever the count. Method: direct least-squares fit of ellipses
/// (Fitzgibbon, Pilu and Fisher 1999) in the stable form of Halir and Flusser (1998).
template <class T>
CADGEOM_API bool EllipseFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                             CadVector2d<double>& axis, double& a, double& b, double* error);

/// Fits an ellipse to points in space: the plane of PlaneFit3, and EllipseFit2 of the points' projections in it.
///
/// @param points  count contiguous points in any one length unit; null makes the fit fail
/// @param count   at least 4
/// @param center  out
/// @param normal  out: unit normal of the ellipse's plane; its sign carries no meaning
/// @param axis    out: EllipseFit2's axis (the mirrored one) in the frame CCadTransform(normal, mean), in space
/// @param a       out: the larger radius
/// @param b       out: the smaller radius
/// @param error   out, may be null: root of the sum of the mean squares of the distances from the plane and of
///                EllipseFit2's residuals within it
/// @return false, with all outputs untouched, when points is null or count < 4; false, with `normal` alone written,
///         when the fit in the plane fails
///
/// The plane's frame has its origin at the mean of the points: the distance from the world's origin does not matter,
/// only the size (see EllipseFit2 and PlaneFit3).
/// O(count); allocates as EllipseFit2.
template <class T>
CADGEOM_API bool EllipseFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center,
                             CadVector3d<double>& normal, CadVector3d<double>& axis, double& a, double& b,
                             double* error);

#define CADGEOM_DECLARE_ELLIPSE_FIT(T)                                                                                 \
    extern template CADGEOM_API bool EllipseFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&,             \
                                                 CadVector2d<double>&, double&, double&, double*);                     \
    extern template CADGEOM_API bool EllipseFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,             \
                                                 CadVector3d<double>&, CadVector3d<double>&, double&, double&,         \
                                                 double*)

CADGEOM_DECLARE_ELLIPSE_FIT(float);
CADGEOM_DECLARE_ELLIPSE_FIT(double);

#undef CADGEOM_DECLARE_ELLIPSE_FIT
