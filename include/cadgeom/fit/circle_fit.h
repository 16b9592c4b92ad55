#pragma once
/// @file
/// Circles closest to points in the plane and in space. Next: fit/ellipse_fit.h.
///
/// The Quadratic... fits are algebraic: one pass and a 4x4 eigenproblem. The others start there and move centre and
/// radius towards the smallest sum of squared distances.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

#include <cstdint>

/// Fits a circle to points in the plane algebraically.
///
/// Three points lie on the circle. For more, the fit minimises the sum of (e0 + e1 x + e2 y + e3 (x^2 + y^2))^2 over
/// all (e0, e1, e2, e3) of unit length. That depends on the origin and on the unit, and favours small circles when the
/// points cover a short arc.
/// @param points  count contiguous points in any one length unit; null makes the fit fail
/// @param count   at least 3
/// @param center  out
/// @param radius  out
/// @param error   out, may be null: root mean square of |point - center| - radius; 0 when count is 3
/// @return false, with all outputs untouched, when points is null, count < 3, three points span a parallelogram of at
///         most 2^-23 or have no intersecting bisectors, or |e3| <= 2^-23 (the circle is taken for a line)
///
/// @par Accuracy
/// The points are used as they are, and |e3| is an absolute measure: about 1 / R^2 for a circle of radius R around the
/// origin, and about 1 / D^2 for a small circle at distance D. Measured with 24 points exactly on a circle:
///
/// | circle                  | error of centre and radius      |
/// |-------------------------|---------------------------------|
/// | around the origin       | R * 3e-16 (R <= 10), R * 3e-13 up to R = 2895; fails from R = 2900 on |
/// | R = 1 at D = 10         | 3e-12                           |
/// | R = 1 at D = 100        | 3e-9                            |
/// | R = 1 at D = 1000       | 3e-6                            |
/// | R = 1 at D = 2890       | 6e-5; fails from D = 2900 on    |
///
/// Therefore subtract the mean, divide by the extent, fit, multiply centre, radius and error by the extent and add the
/// mean to the centre. The algebraic fit of noisy points changes by this (it depends on origin and unit), for the
/// better.
///
/// O(count), without allocation. Method: eigenvector of the smallest eigenvalue of the moments of (1, x, y, x^2 + y^2).
template <class T>
CADGEOM_API bool QuadraticCircleFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                                     double& radius, double* error);

/// Fits a circle to points in the plane: starts from QuadraticCircleFit2 and repeats center = mean + L * u, radius = L,
/// where L is the mean distance of the points from the old centre and u the mean of the unit vectors from the points to
/// it. Fixed points of this are circles with a stationary sum of squared distances.
///
/// A point no more than 2^-23 away from a centre takes part in the error only.
/// @param points         count contiguous points in any one length unit; null makes the fit fail
/// @param count          at least 3; the result for 3 is that of QuadraticCircleFit2
/// @param error          out: root mean square of |point - center| - radius, with the centre and the radius that the
///                       last repetition started from; untouched when there was none
/// @param maxIterations  bound on the repetitions, which end when no coordinate of the centre moves by more than 2^-23;
///                       0 and less give the algebraic circle
/// @return false, with all outputs untouched, where QuadraticCircleFit2 fails
///
/// @par Accuracy
/// Convergence is linear and slow on short arcs, so that the stop may come early: six scattered points of an arc take
/// 527 repetitions and end 5e-6 from the minimum. The start has the limits of QuadraticCircleFit2. Data smaller than
/// about 1e-3 stop after the first repetitions, since 2^-23 is no small step for them. Centre and scale the points as
/// described there. O(count) for each repetition, without allocation. A sequence of centres that repeats itself without
/// coming to rest (as not-a-numbers do) is recognised, so that its repetitions cost nothing. Method: fixed-point
/// iteration for the geometric circle fit (Chernov, Circular and Linear Regression, 2010).
template <class T>
CADGEOM_API bool CircleFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                            double& radius, double& error, int maxIterations);

/// Fits a circle to points in space: the plane of PlaneFit3, and QuadraticCircleFit2 of the points' projections in it.
///
/// Three points lie on the circle; it is constructed in space.
/// @param points  count contiguous points in any one length unit; null makes the fit fail
/// @param count   at least 3
/// @param center  out
/// @param normal  out: unit normal of the circle's plane; its sign carries no meaning
/// @param radius  out
/// @param error   out, may be null: root of the sum of the mean squares of the distances from the plane and, within it,
///                from the circle; 0 when count is 3
/// @return false, with all outputs untouched, when points is null, count < 3, or three points span a parallelogram of
///         at most 2^-23; false, with `normal` alone written, when the fit in the plane fails
///
/// The plane's frame has its origin at the mean of the points: the distance from the world's origin does not matter,
/// only the radius (see QuadraticCircleFit2) and the size (see PlaneFit3).
/// O(count), without allocation.
template <class T>
CADGEOM_API bool QuadraticCircleFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center,
                                     CadVector3d<double>& normal, double& radius, double* error);

/// Fits a circle to points in space: as QuadraticCircleFit3, with CircleFit2 in the plane.
///
/// @param error          out: as there; when `maxIterations` is 0 or less, the distance from the plane alone. Untouched
///                       on failure
/// @param maxIterations  as in CircleFit2
template <class T>
CADGEOM_API bool CircleFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center,
                            CadVector3d<double>& normal, double& radius, double& error, int maxIterations);

#define CADGEOM_DECLARE_CIRCLE_FIT(T)                                                                                  \
    extern template CADGEOM_API bool QuadraticCircleFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&,     \
                                                         double&, double*);                                            \
    extern template CADGEOM_API bool CircleFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&, double&,     \
                                                double&, int);                                                         \
    extern template CADGEOM_API bool QuadraticCircleFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,     \
                                                         CadVector3d<double>&, double&, double*);                      \
    extern template CADGEOM_API bool CircleFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,              \
                                                CadVector3d<double>&, double&, double&, int)

CADGEOM_DECLARE_CIRCLE_FIT(float);
CADGEOM_DECLARE_CIRCLE_FIT(double);

#undef CADGEOM_DECLARE_CIRCLE_FIT
