#include "fit/symmetric_eigen_solver.h"

#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/tolerance.h>

#include <cmath>
#include <cstring>
#include <utility>

// Method: Householder reduction and QL with implicit shifts (Bowdler, Martin, Reinsch and Wilkinson, Handbook for
// Automatic Computation II, 1971: tred2 and imtql2). The fits promise their results bit for bit, so every sum keeps its
// order.
//
// Weak spots: the closed-form reduction takes an element below 2^-23 for 0, whatever the size of the others, which
// makes the eigenvectors of very small matrices wrong; and a pair of columns that changes places toggles the flag of
// the determinant once for each row, so that for even sizes an exchange leaves it as it was.

namespace cadgeom::detail {
namespace {

constexpr int kMaxIterations = 32;

} // namespace

template <int N>
void SymmetricEigenSolver<N>::SetIdentity()
{
    for (int row = 0; row < N; ++row) {
        for (int column = 0; column < N; ++column) {
            matrix[row][column] = row == column ? 1.0 : 0.0;
        }
    }
    isRotation = true;
}

template <>
void SymmetricEigenSolver<2>::LoadTridiagonal(double a, double b, double c)
{
    diagonal[0] = a;
    diagonal[1] = c;
    subdiagonal[0] = b;
    subdiagonal[1] = 0.0;
    SetIdentity();
}

template <>
void SymmetricEigenSolver<3>::LoadSymmetric(double m00, double m01, double m02, double m11, double m12, double m22)
{
    const double rows[3][3] = {{m00, m01, m02}, {m01, m11, m12}, {m02, m12, m22}};
    std::memcpy(matrix, rows, sizeof rows);
}

template <>
void SymmetricEigenSolver<3>::Tridiagonalize3()
{
    const double m01 = matrix[0][1];
    const double m02 = matrix[0][2];
    const double m11 = matrix[1][1];
    const double m12 = matrix[1][2];
    const double m22 = matrix[2][2];
    diagonal[0] = matrix[0][0];
    subdiagonal[2] = 0.0;
    SetIdentity();
    if (std::fabs(m02) > kSingleEpsilon) {
        const double length = Sqrt(m01 * m01 + m02 * m02);
        const double inverseLength = 1.0 / length;
        const double a = m01 * inverseLength;
        const double b = m02 * inverseLength;
        const double q = 2.0 * a * m12 + b * (m22 - m11);
        diagonal[1] = m11 + b * q;
        diagonal[2] = m22 - b * q;
        subdiagonal[0] = length;
        subdiagonal[1] = m12 - a * q;
        matrix[1][1] = a;
        matrix[1][2] = b;
        matrix[2][1] = b;
        matrix[2][2] = -a;
        isRotation = false;
    } else {
        diagonal[1] = m11;
        diagonal[2] = m22;
        subdiagonal[0] = m01;
        subdiagonal[1] = m12;
    }
}

template <int N>
void SymmetricEigenSolver<N>::TridiagonalizeN()
{
    auto& m = matrix;
    for (int i = N - 1; i > 0; --i) {
        const int k = i - 1;
        double scale = 0.0;
        for (int j = 0; k > 0 && j <= k; ++j) {
            scale += std::fabs(m[i][j]);
        }
        if (scale == 0.0) {
            subdiagonal[i] = m[i][k];
            diagonal[i] = 0.0;
            continue;
        }
        // The row becomes the vector u of the reflection 1 - u u' / h.
        double h = 0.0;
        for (int j = 0; j <= k; ++j) {
            m[i][j] /= scale;
            h += m[i][j] * m[i][j];
        }
        const double f = m[i][k];
        const double g = f > 0.0 ? -Sqrt(h) : Sqrt(h);
        subdiagonal[i] = scale * g;
        h -= f * g;
        m[i][k] = f - g;
        // p = A u / h, of which only the lower triangle of A is known.
        double product = 0.0;
        for (int j = 0; j <= k; ++j) {
            m[j][i] = m[i][j] / h;
            double sum = 0.0;
            for (int l = 0; l <= j; ++l) {
                sum += m[j][l] * m[i][l];
            }
            for (int l = j + 1; l <= k; ++l) {
                sum += m[l][j] * m[i][l];
            }
            subdiagonal[j] = sum / h;
            product += subdiagonal[j] * m[i][j];
        }
        // A - u q' - q u' with q = p - u (u'p / 2h).
        const double half = product / (h + h);
        for (int j = 0; j <= k; ++j) {
            const double u = m[i][j];
            const double q = subdiagonal[j] - half * u;
            subdiagonal[j] = q;
            for (int l = 0; l <= j; ++l) {
                m[j][l] -= u * subdiagonal[l] + q * m[i][l];
            }
        }
        diagonal[i] = h;
    }
    diagonal[0] = 0.0;
    for (int i = 0; i < N; ++i) {
        for (int j = 0; diagonal[i] != 0.0 && j < i; ++j) {
            double sum = 0.0;
            for (int l = 0; l < i; ++l) {
                sum += m[i][l] * m[l][j];
            }
            for (int l = 0; l < i; ++l) {
                m[l][j] -= sum * m[l][i];
            }
        }
        diagonal[i] = m[i][i];
        m[i][i] = 1.0;
        for (int j = 0; j < i; ++j) {
            m[i][j] = 0.0;
            m[j][i] = 0.0;
        }
    }
    for (int i = 1; i < N; ++i) {
        subdiagonal[i - 1] = subdiagonal[i];
    }
    subdiagonal[N - 1] = 0.0;
    isRotation = N % 2 == 0;
}

/// First index from `first` on whose coupling to the next row vanishes in rounding.
template <int N>
int SymmetricEigenSolver<N>::FindSplit(int first) const
{
    for (int i = first; i < N - 1; ++i) {
        const double sum = std::fabs(diagonal[i]) + std::fabs(diagonal[i + 1]);
        if (std::fabs(subdiagonal[i]) + sum == sum) {
            return i;
        }
    }
    return N - 1;
}

/// One implicit QL step on the block `first` ... `last`.
template <int N>
void SymmetricEigenSolver<N>::TransformStep(int first, int last)
{
    double g = (diagonal[first + 1] - diagonal[first]) / (2.0 * subdiagonal[first]);
    double r = Sqrt(g * g + 1.0);
    g = diagonal[last] - diagonal[first] + subdiagonal[first] / (g < 0.0 ? g - r : g + r);
    double sin = 1.0;
    double cos = 1.0;
    double p = 0.0;
    for (int i = last - 1; i >= first; --i) {
        double f = sin * subdiagonal[i];
        const double b = cos * subdiagonal[i];
        if (std::fabs(f) >= std::fabs(g)) {
            cos = g / f;
            r = Sqrt(cos * cos + 1.0);
            subdiagonal[i + 1] = f * r;
            sin = 1.0 / r;
            cos *= sin;
        } else {
            sin = f / g;
            r = Sqrt(sin * sin + 1.0);
            subdiagonal[i + 1] = g * r;
            cos = 1.0 / r;
            sin *= cos;
        }
        g = diagonal[i + 1] - p;
        r = (diagonal[i] - g) * sin + 2.0 * b * cos;
        p = sin * r;
        diagonal[i + 1] = g + p;
        g = cos * r - b;
        for (double(&row)[N] : matrix) {
            f = row[i + 1];
            row[i + 1] = sin * row[i] + cos * f;
            row[i] = cos * row[i] - sin * f;
        }
    }
    diagonal[first] -= p;
    subdiagonal[first] = g;
    subdiagonal[last] = 0.0;
}

template <int N>
bool SymmetricEigenSolver<N>::QLAlgorithm()
{
    for (int first = 0; first < N; ++first) {
        int iteration = 0;
        for (int last = FindSplit(first); last != first; last = FindSplit(first)) {
            TransformStep(first, last);
            if (++iteration == kMaxIterations) {
                return false;
            }
        }
    }
    return true;
}

template <int N>
template <class Comes>
void SymmetricEigenSolver<N>::SortBy(Comes comesBefore)
{
    for (int i = 0; i < N - 1; ++i) {
        int best = i;
        for (int j = i + 1; j < N; ++j) {
            if (comesBefore(diagonal[j], diagonal[best])) {
                best = j;
            }
        }
        if (best != i) {
            std::swap(diagonal[i], diagonal[best]);
            for (double(&row)[N] : matrix) {
                std::swap(row[i], row[best]);
                isRotation = !isRotation;
            }
        }
    }
}

template <int N>
void SymmetricEigenSolver<N>::DecreasingSort()
{
    SortBy([](double value, double best) { return value > best; });
}

template <int N>
void SymmetricEigenSolver<N>::IncreasingSort()
{
    SortBy([](double value, double best) { return value < best; });
}

template <int N>
void SymmetricEigenSolver<N>::GuaranteeRotation()
{
    for (int row = 0; !isRotation && row < N; ++row) {
        matrix[row][0] = -matrix[row][0];
    }
}

template class SymmetricEigenSolver<2>;
template class SymmetricEigenSolver<3>;
template class SymmetricEigenSolver<4>;

} // namespace cadgeom::detail
