#include <cadgeom/linalg/dynamic_matrix.h>

#include "linalg/elimination.h"
#include "linalg/storage.h"

#include <algorithm>
#include <limits>
#include <type_traits>

// Method: Gauss-Jordan elimination of the matrix with the identity beside it, in two passes: forward to a unit upper
// triangle with partial pivoting, then backward. Rows are exchanged where they lie, so that the right half ends as
// the inverse.
//
// Both passes work in panels of pivots. The columns of a panel are reduced pivot by pivot; the columns behind it are
// then reduced by all pivots of the panel in one sweep, each element by one pivot after the other as if there were no
// panels. This loads and stores each element once instead of once for each pivot.

namespace cadgeom::detail {
namespace {

/// row -= factors[0] * pivots, then row -= factors[factorStep] * (the next pivot row), and so on, for `columns`
/// elements.
template <int kPivots>
void SubtractPanel(double* __restrict row, const double* __restrict pivots, std::ptrdiff_t pivotStep,
                   const double* factors, int factorStep, int columns) noexcept
{
    double factor[kPivots];
    for (int t = 0; t < kPivots; ++t) {
        factor[t] = factors[t * factorStep];
    }
    for (int j = 0; j < columns; ++j) {
        double value = row[j];
        for (int t = 0; t < kPivots; ++t) {
            value -= factor[t] * pivots[t * pivotStep + j];
        }
        row[j] = value;
    }
}

/// The matrix and, to its right, what started as the identity: n rows of 2 n elements.
/// @tparam kPanel  number of pivots that one sweep applies
/// @tparam Size    int, or an integral constant for sizes whose loops are worth unrolling
template <int kPanel, class Size>
class GaussJordan {
public:
    GaussJordan(double* elements, Size n) noexcept : m_elements(elements), m_n(n) {}

    void Invert() noexcept
    {
        for (int first = 0; first < m_n; first += kPanel) {
            Forward(first, std::min<int>(first + kPanel, m_n));
        }
        for (int last = m_n - 1; last >= 0; last -= kPanel) {
            Backward(last, std::max(last - kPanel + 1, 0));
        }
    }

private:
    double* Row(int row) const noexcept { return m_elements + row * static_cast<std::ptrdiff_t>(2 * m_n); }

    /// Reduces the columns `first` ... `end` - 1 and brings everything right of them up to date.
    void Forward(int first, int end) noexcept
    {
        double scale[kPanel];
        for (int k = first; k < end; ++k) {
            ExchangeRows(Row(k), Row(PivotRow(m_elements, 2 * m_n, m_n, k)), first, 2 * m_n);
            double* const pivot = Row(k);
            const double s = 1.0 / pivot[k];
            scale[k - first] = s;
            Scale(pivot, s, k + 1, end);
            for (int r = k + 1; r < m_n; ++r) {
                SubtractMultiple(Row(r), pivot, Row(r)[k], k + 1, end);
            }
        }
        for (int k = first; k < end; ++k) {
            double* const row = Row(k);
            for (int earlier = first; earlier < k; ++earlier) {
                SubtractMultiple(row, Row(earlier), row[earlier], end, 2 * m_n);
            }
            Scale(row, scale[k - first], end, 2 * m_n);
        }
        // Rows are left only behind a full panel.
        for (int r = end; r < m_n; ++r) {
            SubtractPanel<kPanel>(Row(r) + end, Row(first) + end, 2 * m_n, Row(r) + first, 1, 2 * m_n - end);
        }
    }

    /// Clears the columns `last`, `last` - 1, ... `first` above the diagonal, in the right half alone.
    void Backward(int last, int first) noexcept
    {
        for (int k = last; k > first; --k) {
            for (int r = k - 1; r >= first; --r) {
                SubtractMultiple(Row(r), Row(k), Row(r)[k], m_n, 2 * m_n);
            }
        }
        for (int r = first - 1; r >= 0; --r) {
            SubtractPanel<kPanel>(Row(r) + m_n, Row(last) + m_n, -static_cast<std::ptrdiff_t>(2 * m_n), Row(r) + last,
                                  -1, m_n);
        }
    }

    static void Scale(double* row, double factor, int first, int count) noexcept
    {
        for (int j = first; j < count; ++j) {
            row[j] *= factor;
        }
    }

    double* m_elements;
    Size m_n;
};

/// Replaces the n x n matrix by its inverse.
template <int kPanel, class Size>
void InvertMatrix(double* matrix, Size n)
{
    const auto size = static_cast<std::size_t>(int{n});
    Scratch memory(size * size * 2);
    double* const elements = memory.Data();
    for (std::size_t i = 0; i < size; ++i) {
        double* const row = elements + i * size * 2;
        std::copy_n(matrix + i * size, size, row);
        std::fill_n(row + size, size, 0.0);
        row[size + i] = 1.0;
    }
    GaussJordan<kPanel, Size>(elements, n).Invert();
    for (std::size_t i = 0; i < size; ++i) {
        std::copy_n(elements + i * size * 2 + size, size, matrix + i * size);
    }
}

template <int kSize>
using Fixed = std::integral_constant<int, kSize>;

/// Four pivots and four factors leave enough of sixteen registers for the elements in flight.
constexpr int kPivotsPerPanel = 4;

} // namespace
} // namespace cadgeom::detail

void CMatrix::Invert()
{
    using cadgeom::detail::Fixed;
    using cadgeom::detail::InvertMatrix;
    if (m_rows != m_columns) {
        SetSize(m_rows, m_rows);
        std::fill_n(m_data, GetNumElements(), std::numeric_limits<double>::quiet_NaN());
        return;
    }
    switch (m_rows) {
    case 0:
        return;
    case 1:
        return InvertMatrix<1>(m_data, Fixed<1>());
    case 2:
        return InvertMatrix<1>(m_data, Fixed<2>());
    case 3:
        return InvertMatrix<1>(m_data, Fixed<3>());
    case 4:
        return InvertMatrix<1>(m_data, Fixed<4>());
    default:
        return InvertMatrix<cadgeom::detail::kPivotsPerPanel>(m_data, m_rows);
    }
}

CMatrix CMatrix::GetInverse() const
{
    CMatrix inverse(*this);
    inverse.Invert();
    return inverse;
}
