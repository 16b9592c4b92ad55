#pragma once
/// @file
/// Mappings of whole arrays: three numbers an element, in place, with the bits of the mapping of one element.

#include "transform/frame.h"

#include <cstdint>

namespace cadgeom::detail {

void PointsToWorld(float* numbers, std::uint64_t count, const Frame& frame);
void PointsToWorld(double* numbers, std::uint64_t count, const Frame& frame);
void PointsToLocal(float* numbers, std::uint64_t count, const Frame& frame);
void PointsToLocal(double* numbers, std::uint64_t count, const Frame& frame);
/// @param isBent  whether the scale is neither 1 nor uniform
void DirectionsToWorld(float* numbers, std::uint64_t count, const Frame& frame, bool isBent);
void DirectionsToWorld(double* numbers, std::uint64_t count, const Frame& frame, bool isBent);
void DirectionsToLocal(float* numbers, std::uint64_t count, const Frame& frame, bool isBent);
void DirectionsToLocal(double* numbers, std::uint64_t count, const Frame& frame, bool isBent);

} // namespace cadgeom::detail
