#pragma once
/// @file
/// 3x3 matrices on the stack, with the sums and products of CMatrix.

#include <array>

namespace cadgeom::detail {

using Vector3 = std::array<double, 3>;

/// Row by row.
using Matrix3 = std::array<Vector3, 3>;

/// a * v: sums from 0 along the columns of a.
inline Vector3 Multiply(const Matrix3& a, const Vector3& v)
{
    Vector3 product{};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t k = 0; k < 3; ++k) {
            product[row] += a[row][k] * v[k];
        }
    }
    return product;
}

inline Vector3 Column(const Matrix3& matrix, std::size_t column)
{
    return {matrix[0][column], matrix[1][column], matrix[2][column]};
}

inline Matrix3 Transposed(const Matrix3& matrix)
{
    return {Column(matrix, 0), Column(matrix, 1), Column(matrix, 2)};
}

inline Matrix3 Multiply(const Matrix3& a, const Matrix3& b)
{
    return Transposed({Multiply(a, Column(b, 0)), Multiply(a, Column(b, 1)), Multiply(a, Column(b, 2))});
}

} // namespace cadgeom::detail
