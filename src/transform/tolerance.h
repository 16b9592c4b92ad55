#pragma once
/// @file
/// The tolerance of a transform's properties.

#include <cadgeom/core/vector3d.h>

#include <cmath>

namespace cadgeom::detail {

inline constexpr double kTransformTolerance = 1e-6;

/// Whether every factor is within the tolerance of 1; false for NaN.
inline bool IsUnity(const CadVector3d<double>& scale)
{
    return std::fabs(scale.x() - 1.0) <= kTransformTolerance && std::fabs(scale.y() - 1.0) <= kTransformTolerance &&
           std::fabs(scale.z() - 1.0) <= kTransformTolerance;
}

} // namespace cadgeom::detail
