#pragma once
/// @file
/// Maps whole arrays of points through a transform.

#include <cadgeom/transform/transform.h>

/// Maps `count` points from world to the local coordinates of `transform`, in place, as its aaforw() on each. Nothing
/// happens for null; the identity changes nothing.
template <class T>
CADGEOM_API void PointsTransformTo(CadPoint3d<T>* points, std::uint64_t count, const CCadTransform& transform);
/// Maps `count` points from the local coordinates of `transform` to world, in place, as its aaback() on each. Nothing
/// happens for null; the identity changes nothing.
template <class T>
CADGEOM_API void PointsTransformFrom(CadPoint3d<T>* points, std::uint64_t count, const CCadTransform& transform);

extern template CADGEOM_API void PointsTransformTo(CadPoint3d<float>*, std::uint64_t, const CCadTransform&);
extern template CADGEOM_API void PointsTransformTo(CadPoint3d<double>*, std::uint64_t, const CCadTransform&);
extern template CADGEOM_API void PointsTransformFrom(CadPoint3d<float>*, std::uint64_t, const CCadTransform&);
extern template CADGEOM_API void PointsTransformFrom(CadPoint3d<double>*, std::uint64_t, const CCadTransform&);
