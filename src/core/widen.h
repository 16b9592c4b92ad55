#pragma once
/// @file
/// Float arguments of functions that compute in double; doubles pass as they are.

#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

namespace cadgeom::detail {

template <class T>
inline CadPoint2d<double> Widened(const CadPoint2d<T>& point)
{
    return {static_cast<double>(point.x()), static_cast<double>(point.y())};
}

template <class T>
inline CadPoint3d<double> Widened(const CadPoint3d<T>& point)
{
    return {static_cast<double>(point.x()), static_cast<double>(point.y()), static_cast<double>(point.z())};
}

template <class T>
inline CadVector3d<double> Widened(const CadVector3d<T>& vector)
{
    return {static_cast<double>(vector.x()), static_cast<double>(vector.y()), static_cast<double>(vector.z())};
}

} // namespace cadgeom::detail
