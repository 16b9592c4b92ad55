#include <cadgeom/linalg/dynamic_matrix.h>

#include <algorithm>

// Method: the product is made tile by tile. The sums of a tile run side by side in registers, each along the inner
// index from 0, so that every element of the second factor is loaded once for several rows of the first.

namespace {

/// One tile of a product: kRows x kColumns sums of `inner` products each.
template <int kRows, int kColumns>
void MultiplyTile(double* product, std::ptrdiff_t productStride, const double* left, std::ptrdiff_t leftStride,
                  const double* right, std::ptrdiff_t rightStride, int inner) noexcept
{
    double sums[kRows][kColumns] = {};
    for (int k = 0; k < inner; ++k, right += rightStride) {
        for (int i = 0; i < kRows; ++i) {
            const double factor = left[i * leftStride + k];
            for (int j = 0; j < kColumns; ++j) {
                sums[i][j] += factor * right[j];
            }
        }
    }
    for (int i = 0; i < kRows; ++i) {
        std::copy_n(sums[i], kColumns, product + i * productStride);
    }
}

/// kRows rows of a product.
template <int kRows>
void MultiplyRows(double* product, const double* left, const double* right, int inner, int columns) noexcept
{
    constexpr int kTile = 4;
    int j = 0;
    for (; j + kTile <= columns; j += kTile) {
        MultiplyTile<kRows, kTile>(product + j, columns, left, inner, right + j, columns, inner);
    }
    for (; j < columns; ++j) {
        MultiplyTile<kRows, 1>(product + j, columns, left, inner, right + j, columns, inner);
    }
}

/// product = left * right, all stored row by row; there is at least one element to make.
void Multiply(double* product, const double* left, const double* right, int rows, int inner, int columns) noexcept
{
    constexpr int kTile = 3;
    if (inner == 0) {
        std::fill_n(product, static_cast<std::ptrdiff_t>(rows) * columns, 0.0);
        return;
    }
    std::ptrdiff_t i = 0;
    for (; i + kTile <= rows; i += kTile) {
        MultiplyRows<kTile>(product + i * columns, left + i * inner, right, inner, columns);
    }
    for (; i < rows; ++i) {
        MultiplyRows<1>(product + i * columns, left + i * inner, right, inner, columns);
    }
}

} // namespace

CMatrix CMatrix::operator*(const CMatrix& other) const
{
    CMatrix product(m_rows, other.m_columns);
    if (product.GetNumElements() != 0) {
        Multiply(product.m_data, m_data, other.m_data, m_rows, m_columns, other.m_columns);
    }
    return product;
}

const CMatrix& CMatrix::operator*=(const CMatrix& other)
{
    return *this = *this * other;
}

CVector CMatrix::operator*(const CVector& vector) const
{
    CVector product(m_rows);
    if (m_rows != 0) {
        Multiply(product.m_data, m_data, vector.m_data, m_rows, m_columns, 1);
    }
    return product;
}
