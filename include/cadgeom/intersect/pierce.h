#pragma once
/// @file
/// Where a line pierces a triangle, a parallelogram, a bilinear patch, a sphere, a cylinder and a cone. The line is
/// `origin` + t * `direction` for all t, negative ones too; the direction may have any length, and t counts in it.
/// Next: intersect/drop.h for the points of a triangle nearest to a point.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/platform/array.h>

/// Pierces the triangle `corner0`, `corner1`, `corner2`, seen from either side.
///
/// The hit is corner0 + u * (corner1 - corner0) + v * (corner2 - corner0). It counts within an absolute margin of 0.0001
/// in these coordinates: -0.0001 <= u <= 1.0001, -0.0001 <= v, u + v <= 1.0001, so that neighbours leave no gap.
/// @param t, u, v  out: see the result; untouched by the float instance when it returns false
/// @return false, with the outputs untouched, when the determinant (corner1 - corner0) . (direction x (corner2 -
///         corner0)) lies in -1e-6 ... 1e-6: the line runs along the plane, or the triangle or the direction is tiny;
///         false, with only u written, when u is outside; false, with u and v written, when v or u + v is outside
/// The float instance computes in double and rounds the results of a hit.
/// Method: Moeller and Trumbore, Fast Minimum Storage Ray/Triangle Intersection (1997).
template <class T>
CADGEOM_API bool PierceTriangle(const CadPoint3d<T>& origin, const CadVector3d<T>& direction,
                                const CadPoint3d<T>& corner0, const CadPoint3d<T>& corner1,
                                const CadPoint3d<T>& corner2, T& t, T& u, T& v);

/// Pierces the plane of the parallelogram that the edges `edge1` and `edge2` span from `corner`, by the method of
/// PierceTriangle. The hit is corner + u * edge1 + v * edge2; it lies within the parallelogram when u and v are in
/// 0 ... 1, which is not tested.
/// @param t, u, v  out: untouched on failure
/// @return false when the determinant edge1 . (direction x edge2) lies in -1e-6 ... 1e-6
/// There is no other instance than double; the overload below serves float.
template <class T>
CADGEOM_API bool PierceParallelogram(const CadPoint3d<T>& origin, const CadVector3d<T>& direction,
                                     const CadPoint3d<T>& corner, const CadVector3d<T>& edge1,
                                     const CadVector3d<T>& edge2, T& t, T& u, T& v);

/// Computes in double and rounds the results.
CADGEOM_API bool PierceParallelogram(const CadPoint3d<float>& origin, const CadVector3d<float>& direction,
                                     const CadPoint3d<float>& corner, const CadVector3d<float>& edge1,
                                     const CadVector3d<float>& edge2, float& t, float& u, float& v);

/// Pierces the bilinear patch S(u, v) = (1-v) * ((1-u)*q0 + u*q1) + v * ((1-u)*q2 + u*q3).
///
/// The coordinates of a hit are roots of one quadratic equation in u and one in v. Every combination of their roots is
/// reported, first root of u with each root of v, then the second, without a test of 0 ... 1 or of which belong
/// together: the hits are those pairs whose point, origin + t * direction, is S(u, v).
/// A quadratic coefficient of at most 1e-6 in absolute value counts as 0.
/// A patch with two neighbouring corners within 1e-6 per coordinate is the triangle of the others, tried in the order
/// q2 ~ q0, q1 ~ q0 (triangle q1, q3, q2), q3 ~ q2, q1 ~ q3 (triangle q0, q1, q2); PierceTriangle gives its one hit.
/// @param corners  the four corners q0 (0,0), q1 (1,0), q2 (0,1), q3 (1,1): not in cyclic order; null gives false
/// @param uvs, ts  out: emptied first, their buffers freed; then (u, v) and t of each pair. t is the parameter of the
///                 projection of S(u, v) on the line, 0 when |direction|^2 <= 1e-12
/// @return whether there is an entry
/// When the memory for an entry cannot be obtained, both arrays are empty and CMemoryException is thrown.
CADGEOM_API bool PierceQuad(const CadPoint3d<double>& origin, const CadVector3d<double>& direction,
                            const CadPoint3d<double>* const corners,
                            CArray<CadPoint2d<double>, const CadPoint2d<double>&>& uvs, CArray<double>& ts);

/// Pierces a sphere.
/// @param t1, t2  out: always written; t1 <= t2 on a hit, otherwise both the parameter of the point nearest to `centre`
///                (0 when |direction|^2 <= 1e-12, float: 1e-8)
/// @return false when the line passes at a distance of `radius` or more: a tangent misses
/// No allocation; the float instance computes in float.
template <class T>
CADGEOM_API bool PierceSphere(const CadPoint3d<T>& centre, T radius, const CadPoint3d<T>& origin,
                              const CadVector3d<T>& direction, T& t1, T& t2);

/// Pierces the infinite cylinder around the line from `base` along `axis`.
///
/// A line whose direction, projected onto the plane across the axis, has no component above 2^-23 in absolute value runs
/// along the axis; it hits when the squared distance of its crossing with the plane of `base` differs from radius^2 by
/// at most 2^-23.
/// @param axis    of any length but 0
/// @param t1, t2  out: t1 <= t2 on a hit, otherwise both the parameter of the closest approach to the axis. For a line
///                along the axis both are the crossing of the plane through `base` across the axis; when
///                |axis . direction| <= 2^-23 there is none, and t1 keeps its value, which must be a number, for both
/// @return false when the line passes at a distance of `radius` or more
/// No allocation; the float instance computes in float.
template <class T>
CADGEOM_API bool PierceCylinder(const CadPoint3d<T>& base, const CadVector3d<T>& axis, T radius,
                                const CadPoint3d<T>& origin, const CadVector3d<T>& direction, T& t1, T& t2);

/// Pierces the infinite double cone (both nappes) around the line from `apex` along `axis`.
///
/// With M = axis * axis^T - cos^2(halfAngle) * I and w = origin - apex, the crossings solve
/// c0*t^2 + 2*c1*t + c2 = 0, where c2 = (w^T*M)*w, c1 = (d^T*M)*w and c0 = (d^T*M)*d.
/// @param axis       a unit vector; of another length it changes the angle
/// @param halfAngle  between axis and surface, in radians
/// @param t1, t2     out: always written. On a hit (-c1 - sqrt(D)) / c0 and (sqrt(D) - c1) / c0, D = c1*c1 - c0*c2,
///                   which are not finite for a line parallel to the surface (c0 = 0); otherwise both the parameter of
///                   the closest approach to the axis (ProjectLineOntoLine)
/// @return false when D is negative or NaN
/// No allocation; the float instance computes in double and rounds the results.
template <class T>
CADGEOM_API bool PierceCone(const CadPoint3d<T>& apex, const CadVector3d<T>& axis, T halfAngle,
                            const CadPoint3d<T>& origin, const CadVector3d<T>& direction, T& t1, T& t2);

#define CADGEOM_DECLARE_PIERCE(T)                                                                                      \
    extern template CADGEOM_API bool PierceTriangle(const CadPoint3d<T>&, const CadVector3d<T>&, const CadPoint3d<T>&, \
                                                    const CadPoint3d<T>&, const CadPoint3d<T>&, T&, T&, T&);           \
    extern template CADGEOM_API bool PierceSphere(const CadPoint3d<T>&, T, const CadPoint3d<T>&,                       \
                                                  const CadVector3d<T>&, T&, T&);                                      \
    extern template CADGEOM_API bool PierceCylinder(const CadPoint3d<T>&, const CadVector3d<T>&, T,                    \
                                                    const CadPoint3d<T>&, const CadVector3d<T>&, T&, T&);              \
    extern template CADGEOM_API bool PierceCone(const CadPoint3d<T>&, const CadVector3d<T>&, T, const CadPoint3d<T>&,  \
                                                const CadVector3d<T>&, T&, T&)

CADGEOM_DECLARE_PIERCE(float);
CADGEOM_DECLARE_PIERCE(double);

#undef CADGEOM_DECLARE_PIERCE

extern template CADGEOM_API bool PierceParallelogram(const CadPoint3d<double>&, const CadVector3d<double>&,
                                                     const CadPoint3d<double>&, const CadVector3d<double>&,
                                                     const CadVector3d<double>&, double&, double&, double&);
