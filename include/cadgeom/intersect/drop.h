#pragma once
/// @file
/// Where a point falls on a triangle or a parallelogram, in coordinates u and v along two edges. Next:
/// intersect/pierce.h for lines.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point3d.h>

/// Finds a point of the filled triangle near `point`, if it is nearer than what was found before.
///
/// Coordinates are those of corner0 + u * (corner1 - corner0) + v * (corner2 - corner0). Above the inside the result is
/// the foot of the perpendicular. Elsewhere one edge is tried, the one opposite the first coordinate found out of range
/// (u < 0, v < 0, u + v > 1 in this order): near an obtuse corner the nearest point may lie on another edge.
/// A triangle without area, |n|^2 = 0 or determinant e1 . (e2 x n) at most 9.99999905104687e-9 in absolute value, is its
/// three edges, of which the nearest counts, the first on ties.
/// @param distanceSquared  in: the squared distance to beat, strictly; out: the new one, untouched on failure
/// @param u, v             out: of the foot; on failure untouched, or those of the perpendicular foot when only the
///                         edge was too far
/// @param foot             out: untouched on failure
/// @param onEdge           out: whether the foot was found on an edge; untouched on failure
/// @return whether a point nearer than `distanceSquared` was found
/// The system point - corner0 = u*e1 + v*e2 + w*n, n = e1 x e2, is solved by Cramer's rule with triple products
/// a . (b x c).
CADGEOM_API bool DropTriangle(const CadPoint3d<double>& point, const CadPoint3d<double>& corner0,
                              const CadPoint3d<double>& corner1, const CadPoint3d<double>& corner2,
                              double& distanceSquared, double& u, double& v, CadPoint3d<double>& foot, bool& onEdge);

/// Finds the coordinates of the perpendicular foot on the triangle's plane, inside the triangle or not.
///
/// A triangle with one edge vector (from corner0) of exactly zero is the segment along the other one, and u or v its
/// clamped parameter; with both zero it is a point. Exactly collinear corners, and a determinant of at most 2^-52 in
/// absolute value, give u = v = 0 and true.
/// @param maxDistanceSquared  squared distance to the plane, segment or point that must be undercut
/// @param u, v                out: untouched on failure
/// @return whether the distance is small enough; true for exactly collinear corners whatever the distance
CADGEOM_API bool DropTriangle(const CadPoint3d<double>& point, const CadPoint3d<double>& corner0,
                              const CadPoint3d<double>& corner1, const CadPoint3d<double>& corner2,
                              double maxDistanceSquared, double& u, double& v);

/// Finds the coordinates of the perpendicular foot on the plane of a parallelogram, inside it or not.
///
/// With |edge1 x edge2|^2 <= 2^-23 the parallelogram has no plane: if just one edge has a component above 1e-6 in
/// absolute value, the point is projected on the line along it, and the other coordinate is 0; otherwise both are 0.
/// @param u, v  out: along edge1 and edge2, always written
CADGEOM_API void DropParallelogram(const CadPoint3d<double>& point, const CadPoint3d<double>& corner,
                                   const CadVector3d<double>& edge1, const CadVector3d<double>& edge2, double& u,
                                   double& v);

/// Oblique coordinates of `d` in the triangle a, b, c: d = a + u * (b - a) + v * (c - b) for a point of its plane.
///
/// In general u is the parameter on the line ab of its closest approach to the line through `d` along bc, and v the
/// parameter on the line bc of its closest approach to the line through `d` along ab (ProjectLineOntoLine).
/// @param u, v  out: always written; 0 for a triangle whose edges ab and bc are parallel
template <class T>
CADGEOM_API void GetTriangleUVPoint(const CadPoint3d<T>& a, const CadPoint3d<T>& b, const CadPoint3d<T>& c,
                                    const CadPoint3d<T>& d, T& u, T& v);

extern template CADGEOM_API void GetTriangleUVPoint(const CadPoint3d<float>&, const CadPoint3d<float>&,
                                                    const CadPoint3d<float>&, const CadPoint3d<float>&, float&, float&);
extern template CADGEOM_API void GetTriangleUVPoint(const CadPoint3d<double>&, const CadPoint3d<double>&,
                                                    const CadPoint3d<double>&, const CadPoint3d<double>&, double&,
                                                    double&);
