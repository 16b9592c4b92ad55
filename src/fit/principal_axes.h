#pragma once
/// @file
/// Principal axes of planar points: the step that orients a rectangle.

#include <cadgeom/core/point2d.h>

#include <cstdint>

namespace cadgeom::detail {

/// @param center   out: mean of the points
/// @param axis     out: unit vector along the least spread; for two points along their difference, for one point (1, 0)
/// @param spreads  out: mean squared offsets along `axis` and at right angles to it; for two points the distance
///                 between them and 0, for one point zero
/// @return false, with all outputs untouched, when points is null or count is 0
template <class T>
bool PrincipalAxesFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                       CadVector2d<double>& axis, CadVector2d<double>& spreads);

extern template bool PrincipalAxesFit2(const CadPoint2d<float>*, std::uint64_t, CadPoint2d<double>&,
                                       CadVector2d<double>&, CadVector2d<double>&);
extern template bool PrincipalAxesFit2(const CadPoint2d<double>*, std::uint64_t, CadPoint2d<double>&,
                                       CadVector2d<double>&, CadVector2d<double>&);

} // namespace cadgeom::detail
