#pragma once
/// @file
/// Determinants of square blocks, for the matrix class and for the solver of linear systems.

#include <cstddef>

namespace cadgeom::detail {

/// The determinant of a matrix and how much work it was.
struct Determinant {
    double value;
    double steps; ///< multiplications, roughly
};

/// Closed form for n = 0 ... 3 (0 for n = 0).
double SmallDeterminant(const double* matrix, std::ptrdiff_t stride, int n) noexcept;

/// The value that stands for the determinant of a matrix of n >= 4 rows in which elimination met a column without a
/// usable pivot: the cofactor expansion, or beyond its largest size the signed product of the pivots.
Determinant ExpandedDeterminant(const double* matrix, std::ptrdiff_t stride, int n);

/// The determinant as CMatrix::GetDeterminant() defines it, of the leading n x n block.
Determinant ComputeDeterminant(const double* matrix, std::ptrdiff_t stride, int n);

} // namespace cadgeom::detail
