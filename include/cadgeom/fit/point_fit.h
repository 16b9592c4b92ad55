#pragma once
/// @file
/// The point closest to points in space. Next: fit/line_fit.h.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point3d.h>

#include <cstdint>

/// Fits a point to points in space: their mean, which makes the sum of squared distances smallest.
///
/// The float instance measures the distances in float, from the mean rounded to float, and adds their squares in
/// double; `center` is the unrounded mean.
/// @param points  count contiguous points; null makes the fit fail
/// @param count   at least 1
/// @param center  out: ComputeMeanPoint of the points
/// @param error   out, may be null: root mean square distance to `center`, in the unit of the points
/// @return false, with all outputs untouched, when points is null or count is 0
/// O(count), without allocation.
template <class T>
CADGEOM_API bool PointFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center, double* error);

extern template CADGEOM_API bool PointFit3(const CadPoint3d<float>*, std::uint64_t, CadPoint3d<double>&, double*);
extern template CADGEOM_API bool PointFit3(const CadPoint3d<double>*, std::uint64_t, CadPoint3d<double>&, double*);
