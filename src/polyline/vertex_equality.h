#pragma once
// When two vertices of a polyline count as the same.

#include <cadgeom/core/components.h>
#include <cadgeom/core/point3d.h>

namespace cadgeom::detail {

/// Whether every coordinate differs by at most `tolerance`. Unlike CadPoint::isEqual, a NaN makes vertices different.
template <class T>
inline bool VerticesAreEqual(const CadPoint3d<T>& a, const CadPoint3d<T>& b, T tolerance)
{
    return Absolute(a[0] - b[0]) <= tolerance && Absolute(a[1] - b[1]) <= tolerance &&
           Absolute(a[2] - b[2]) <= tolerance;
}

} // namespace cadgeom::detail
