#pragma once
/// @file
/// The overlap of a triangle and an axis-aligned box.

#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/core/export.h>
#include <cadgeom/core/point3d.h>

/// Whether a triangle overlaps a box; touching counts.
///
/// Thirteen axes may separate them: the cross products of a box axis and an edge, the box axes, the normal. On the box
/// axes a gap of up to 1e-6 (float: 1e-4) is no separation, and on the other axes one of up to 1e-4 in units of the axis,
/// which is not normalised: the longer the edges, the smaller the distance that this stands for.
/// @param triangle  3 points; of a degenerate triangle (a point or a segment) the box axes decide where the others are 0
/// An empty box has no special treatment: its negative half-sizes separate it from ordinary triangles.
/// Method: separating axes (Akenine-Moller 2001).
template <class T>
CADGEOM_API bool TriangleBoxOverlap(const CBoundingBox3d<T>& box, const CadPoint3d<T>* const triangle);

extern template CADGEOM_API bool TriangleBoxOverlap(const CBoundingBox3d<float>&, const CadPoint3d<float>* const);
extern template CADGEOM_API bool TriangleBoxOverlap(const CBoundingBox3d<double>&, const CadPoint3d<double>* const);
