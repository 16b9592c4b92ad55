#include "fit/general_eigen_solver3.h"

#include <cadgeom/core/tolerance.h>
#include <cadgeom/linalg/dynamic_matrix.h>
#include <cadgeom/roots/polynomial_roots.h>

// Method: the eigenvalues are the roots of the characteristic cubic det(M - x), found as the eigenvalues of its
// companion matrix; an eigenvector is a non-trivial solution of (M - x) v = 0, one equation of which is left out.
//
// Weak spot: the tolerances of root finder and solver are absolute, so that the matrix ought to be of the order of 1.

namespace cadgeom::detail {

bool GeneralEigenSolver3::Solve()
{
    constexpr int kSize = 3;
    constexpr bool kDoBalancing = true;
    const Matrix3& m = matrix;
    const double determinant = m[0][0] * (m[2][2] * m[1][1] - m[2][1] * m[1][2]) -
                               m[0][1] * (m[2][2] * m[1][0] - m[2][0] * m[1][2]) +
                               m[0][2] * (m[2][1] * m[1][0] - m[2][0] * m[1][1]);
    const double linear = m[1][0] * m[0][1] + m[2][0] * m[0][2] + m[2][1] * m[1][2] - m[1][1] * m[0][0] -
                          m[2][2] * m[0][0] - m[2][2] * m[1][1];
    const double trace = m[0][0] + m[1][1] + m[2][2];
    PolynomialRoots roots(kSingleEpsilon);
    if (!roots.FindE(determinant, linear, trace, -1.0, kDoBalancing) || roots.GetCount() != kSize) {
        return false;
    }
    Matrix3 eigenvectors{};
    CMatrix singular(kSize, kSize);
    CVector vector;
    for (int k = 0; k < kSize; ++k) {
        const auto column = static_cast<std::size_t>(k);
        diagonal[column] = roots.GetRoot(k);
        for (int i = 0; i < kSize; ++i) {
            for (int j = 0; j < kSize; ++j) {
                const double element = m[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
                singular(i, j) = i == j ? element - diagonal[column] : element;
            }
        }
        if (singular.SolveLinearSystem(vector)) {
            eigenvectors[0][column] = vector[0];
            eigenvectors[1][column] = vector[1];
            eigenvectors[2][column] = vector[2];
        }
    }
    matrix = eigenvectors;
    return true;
}

} // namespace cadgeom::detail
