#pragma once
/// @file
/// The rectangle around planar points, oriented by their principal axes.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point2d.h>

#include <cstdint>

/// Fits a rectangle around points in the plane. Its sides are parallel to the principal axes of the points and enclose
/// them up to rounding; this is not the rectangle of least area.
///
/// One point gives itself, with the axis (1, 0). Two points give the segment between them, `axis` from the first to the
/// second ((0, 1) when they coincide).
/// @param points   count contiguous points in any one length unit; null makes the fit fail
/// @param count    at least 1
/// @param center   out: centre of the rectangle
/// @param axis     out: unit vector; for three and more points along the **least** spread, with a sign that carries no
///                 meaning
/// @param extents  out: half the lengths of the sides, x along `axis`, y along (-axis.y, axis.x): the corners are
///                 center +- extents.x * axis +- extents.y * (-axis.y, axis.x)
/// @return false, with all outputs untouched, when points is null or count is 0
///
/// Points of equal spread in all directions (the corners of a square, say) have no principal axes and get arbitrary
/// ones. Where an infinity or NaN takes part the result is true and meaningless.
/// O(count), without allocation.
template <class T>
CADGEOM_API bool OrientedBoxFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                                 CadVector2d<double>& axis, CadVector2d<double>& extents);

extern template CADGEOM_API bool OrientedBoxFit2(const CadPoint2d<float>*, std::uint64_t, CadPoint2d<double>&,
                                                 CadVector2d<double>&, CadVector2d<double>&);
extern template CADGEOM_API bool OrientedBoxFit2(const CadPoint2d<double>*, std::uint64_t, CadPoint2d<double>&,
                                                 CadVector2d<double>&, CadVector2d<double>&);
