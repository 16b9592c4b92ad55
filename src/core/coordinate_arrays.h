#pragma once
/// @file
/// Scaling and moving arrays of points, three numbers a point, in place. Float numbers are computed on in double and
/// rounded once.

#include <cstdint>

namespace cadgeom::detail {

void ScaleCoordinates(float* numbers, std::uint64_t count, double factor);
void ScaleCoordinates(double* numbers, std::uint64_t count, double factor);
void TranslateCoordinates(float* numbers, std::uint64_t count, const double* displacement);
void TranslateCoordinates(double* numbers, std::uint64_t count, const double* displacement);

} // namespace cadgeom::detail
