#include "linalg/elimination.h"

#include <algorithm>
#include <cmath>

namespace cadgeom::detail {

int PivotRow(const double* matrix, std::ptrdiff_t stride, int n, int k) noexcept
{
    int pivot = k;
    double largest = std::fabs(matrix[k * stride + k]);
    for (int row = k + 1; row < n; ++row) {
        const double candidate = std::fabs(matrix[row * stride + k]);
        if (candidate > largest) {
            largest = candidate;
            pivot = row;
        }
    }
    return pivot;
}

void ExchangeRows(double* a, double* b, int first, int count) noexcept
{
    if (a != b) {
        std::swap_ranges(a + first, a + count, b + first);
    }
}

Elimination EliminateBelow(double* matrix, int n, int columns, double threshold) noexcept
{
    const std::ptrdiff_t stride = columns;
    bool isOdd = false;
    for (int k = 0; k < n; ++k) {
        double* const pivot = matrix + k * stride;
        const int chosen = PivotRow(matrix, stride, n, k);
        isOdd ^= chosen != k;
        ExchangeRows(pivot, matrix + chosen * stride, k, columns);
        if (std::fabs(pivot[k]) <= threshold) {
            return {false, isOdd};
        }
        for (int i = k + 1; i < n; ++i) {
            double* const row = matrix + i * stride;
            SubtractMultiple(row, pivot, row[k] / pivot[k], k + 1, columns);
        }
    }
    return {true, isOdd};
}

double DiagonalProduct(const double* matrix, std::ptrdiff_t stride, int n) noexcept
{
    double product = 1.0;
    for (int i = 0; i < n; ++i) {
        product *= matrix[i * stride + i];
    }
    return product;
}

} // namespace cadgeom::detail
