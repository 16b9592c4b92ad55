#pragma once
/// @file
/// Area of triangles.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point3d.h>

/// Area of a triangle from its side lengths, which ComputeTriangleArea(l1, l2, l3) turns into the area.
template <class T>
CADGEOM_API T ComputeTriangleArea(const CadPoint3d<T>& a, const CadPoint3d<T>& b, const CadPoint3d<T>& c);

/// Area of a triangle with these side lengths, in any order; 0 when there is no such triangle, and for NaN.
///
/// With x >= y >= z it is 0.25 * sqrt((x + (y + z)) * (z - (x - y)) * (z + (x - y)) * (x + (y - z))), which keeps its
/// digits for needles too: Kahan, Miscalculating Area and Angles of a Needle-like Triangle (2014).
template <class T>
CADGEOM_API T ComputeTriangleArea(T length1, T length2, T length3);

#define CADGEOM_DECLARE_TRIANGLE_AREA(T)                                                                               \
    extern template CADGEOM_API T ComputeTriangleArea(const CadPoint3d<T>&, const CadPoint3d<T>&,                      \
                                                      const CadPoint3d<T>&);                                           \
    extern template CADGEOM_API T ComputeTriangleArea(T, T, T)

CADGEOM_DECLARE_TRIANGLE_AREA(float);
CADGEOM_DECLARE_TRIANGLE_AREA(double);

#undef CADGEOM_DECLARE_TRIANGLE_AREA
