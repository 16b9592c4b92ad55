#include "linalg/determinant.h"

#include <cadgeom/core/tolerance.h>
#include <cadgeom/linalg/dynamic_matrix.h>

#include "linalg/elimination.h"
#include "linalg/storage.h"

#include <bitset>
#include <cstdint>

// Method: closed forms up to 3 x 3, above that the product of the pivots of Gaussian elimination.
//
// A matrix without a usable pivot is expanded by cofactors along its first rows. All minors of m rows consist of the
// last m rows, so that each is known by its set of columns. The minors are tabulated by that set: 2^n of them take
// the place of the n! that a recursion would form, with the same operations on the same values.

namespace cadgeom::detail {
namespace {

/// The table of minors of a larger matrix would not fit into 2^20 doubles.
constexpr int kLargestExpansion = 20;

/// Every pivot but an exact zero is used.
constexpr double kNoThreshold = 0.0;

int CountColumns(std::uint32_t columns)
{
    return static_cast<int>(std::bitset<32>(columns).count());
}

int LowestColumn(std::uint32_t columns)
{
    return CountColumns((columns & (~columns + 1)) - 1);
}

/// Minor of the last three rows in three columns.
double MinorOfThree(const double* rows, std::ptrdiff_t stride, std::uint32_t columns)
{
    double minor[9];
    for (int j = 0; j < 3; ++j, columns &= columns - 1) {
        const int column = LowestColumn(columns);
        for (int i = 0; i < 3; ++i) {
            minor[3 * i + j] = rows[i * stride + column];
        }
    }
    return SmallDeterminant(minor, 3, 3);
}

/// Expansion along one row: the minors of the columns without one are in the table already.
double ExpandRow(const double* row, std::uint32_t columns, const double* minors)
{
    double sum = 0.0;
    double sign = 1.0;
    for (std::uint32_t rest = columns; rest != 0; rest &= rest - 1, sign = -sign) {
        const std::uint32_t column = rest & (~rest + 1);
        sum += sign * row[LowestColumn(rest)] * minors[columns ^ column];
    }
    return sum;
}

Determinant CofactorExpansion(const double* matrix, std::ptrdiff_t stride, int n)
{
    const std::uint32_t sets = std::uint32_t{1} << n;
    Scratch table(sets);
    double* const minors = table.Data();
    // Removing a column from a set gives a smaller number, so that counting up meets every minor after its own
    // minors.
    for (std::uint32_t columns = 0; columns < sets; ++columns) {
        const int size = CountColumns(columns);
        const double* const row = matrix + (n - size) * stride;
        if (size == 3) {
            minors[columns] = MinorOfThree(row, stride, columns);
        } else if (size > 3) {
            minors[columns] = ExpandRow(row, columns, minors);
        }
    }
    return {minors[sets - 1], static_cast<double>(sets) * n};
}

Determinant SignedPivotProduct(const double* matrix, std::ptrdiff_t stride, int n)
{
    Scratch copy(static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        CopyElements(copy.Data() + static_cast<std::ptrdiff_t>(i) * n, matrix + i * stride, n);
    }
    const Elimination elimination = EliminateBelow(copy.Data(), n, n, kNoThreshold);
    const double steps = static_cast<double>(n) * n * n;
    if (!elimination.isComplete) {
        return {0.0, steps};
    }
    const double product = DiagonalProduct(copy.Data(), n, n);
    return {elimination.isOdd ? -product : product, steps};
}

} // namespace

double SmallDeterminant(const double* matrix, std::ptrdiff_t stride, int n) noexcept
{
    if (n == 0) {
        return 0.0;
    }
    const double* const a = matrix;
    if (n == 1) {
        return a[0];
    }
    const double* const b = a + stride;
    if (n == 2) {
        return a[0] * b[1] - b[0] * a[1];
    }
    const double* const c = b + stride;
    return a[0] * (c[2] * b[1] - c[1] * b[2]) - a[1] * (c[2] * b[0] - c[0] * b[2]) + a[2] * (c[1] * b[0] - c[0] * b[1]);
}

Determinant ExpandedDeterminant(const double* matrix, std::ptrdiff_t stride, int n)
{
    return n <= kLargestExpansion ? CofactorExpansion(matrix, stride, n) : SignedPivotProduct(matrix, stride, n);
}

Determinant ComputeDeterminant(const double* matrix, std::ptrdiff_t stride, int n)
{
    if (n <= 3) {
        return {SmallDeterminant(matrix, stride, n), 1.0};
    }
    Scratch copy(static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        CopyElements(copy.Data() + static_cast<std::ptrdiff_t>(i) * n, matrix + i * stride, n);
    }
    if (EliminateBelow(copy.Data(), n, n, kSingleEpsilon).isComplete) {
        return {DiagonalProduct(copy.Data(), n, n), static_cast<double>(n) * n * n};
    }
    return ExpandedDeterminant(matrix, stride, n);
}

} // namespace cadgeom::detail

double CMatrix::GetDeterminant() const
{
    if (m_columns < m_rows) {
        return 0.0;
    }
    return cadgeom::detail::ComputeDeterminant(m_data, m_columns, m_rows).value;
}
