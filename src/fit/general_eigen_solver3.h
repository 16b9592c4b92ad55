#pragma once
/// @file
/// Real eigenvalues and eigenvectors of a general 3x3 matrix, by way of its characteristic cubic.

#include "fit/matrix3.h"

namespace cadgeom::detail {

class GeneralEigenSolver3 {
public:
    explicit GeneralEigenSolver3(const Matrix3& theMatrix) : matrix(theMatrix), diagonal{} {}

    /// On entry the matrix; in the end column j is an eigenvector of diagonal[j], of any length, or zero where none was
    /// found.
    Matrix3 matrix;
    /// In the end the eigenvalues, in the order in which the root finder lists them.
    Vector3 diagonal;

    /// @return false, with `matrix` unchanged, when the cubic does not have three real roots
    bool Solve();
};

} // namespace cadgeom::detail
