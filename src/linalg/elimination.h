#pragma once
/// @file
/// Gaussian elimination with partial pivoting, shared by the determinant and the solver of linear systems.

#include <cstddef>

namespace cadgeom::detail {

/// Index of the row among k ... n - 1 whose element in column k is largest in absolute value, the first of equal
/// ones. Not-a-number in row k is not displaced, elsewhere it is never larger.
int PivotRow(const double* matrix, std::ptrdiff_t stride, int n, int k) noexcept;

/// Exchanges the elements `first` ... `count` - 1 of two rows.
void ExchangeRows(double* a, double* b, int first, int count) noexcept;

/// row[j] -= factor * pivot[j] for j from `first` to `count` - 1.
inline void SubtractMultiple(double* row, const double* pivot, double factor, int first, int count) noexcept
{
    for (int j = first; j < count; ++j) {
        row[j] -= factor * pivot[j];
    }
}

/// Outcome of EliminateBelow.
struct Elimination {
    bool isComplete; ///< false when it stopped at a column without a candidate above the threshold
    bool isOdd;      ///< whether an odd number of rows was exchanged
};

/// Reduces n rows to upper triangular form, exchanging rows; columns n ... columns - 1 (a right-hand side) follow.
/// The elements below the diagonal are left unreduced. Stops at the first column whose largest candidate for the
/// pivot is at most `threshold`.
Elimination EliminateBelow(double* matrix, int n, int columns, double threshold) noexcept;

/// Product of the first n diagonal elements.
double DiagonalProduct(const double* matrix, std::ptrdiff_t stride, int n) noexcept;

} // namespace cadgeom::detail
