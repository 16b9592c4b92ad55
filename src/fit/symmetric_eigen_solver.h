#pragma once
/// @file
/// Eigenvalues and eigenvectors of the small symmetric matrices of second moments that every fit ends in.

namespace cadgeom::detail {

/// One eigenproblem of a symmetric N x N matrix, N = 2, 3 or 4: reduce it to tridiagonal form, run QLAlgorithm(), sort,
/// GuaranteeRotation(), then read `diagonal` and the columns of `matrix`. For N = 2 the matrix is tridiagonal already:
/// LoadTridiagonal(). Everything lives inside the object; a fit of a few points would pay more for three buffers from
/// the heap than for the solution.
///
/// Instances exist for 2, 3 and 4; LoadTridiagonal(), LoadSymmetric() and Tridiagonalize3() only where the size fits.
template <int N>
class SymmetricEigenSolver {
public:
    /// On entry the symmetric matrix; after the reduction the orthogonal transform; in the end column j is the unit
    /// eigenvector of diagonal[j].
    double matrix[N][N];
    /// Diagonal of the tridiagonal form; in the end the eigenvalues.
    double diagonal[N];
    /// subdiagonal[i] couples rows i and i + 1; the last one is 0.
    double subdiagonal[N];
    /// Whether `matrix` has determinant 1 rather than -1, up to what DecreasingSort() and IncreasingSort() make of it.
    bool isRotation;

    /// Takes the 2 x 2 matrix ((a, b), (b, c)) as it is.
    void LoadTridiagonal(double a, double b, double c);

    /// Loads a 3 x 3 matrix by its upper triangle, row by row.
    void LoadSymmetric(double m00, double m01, double m02, double m11, double m12, double m22);

    /// Householder reduction in closed form; reads the upper triangle of `matrix` alone. An element (0, 2) of at most
    /// 2^-23 counts as 0.
    void Tridiagonalize3();

    /// Householder reduction for any N; reads the lower triangle.
    void TridiagonalizeN();

    /// Diagonalises the tridiagonal form by QL steps with implicit shifts, at most 32 for each eigenvalue.
    /// @return false when they did not suffice; what has been reached then stands in `diagonal` and `matrix`
    bool QLAlgorithm();

    /// Orders the eigenvalues, the eigenvectors with them; the first of equal eigenvalues stays in front. Each exchange
    /// of two columns toggles isRotation once for every row.
    void DecreasingSort();
    void IncreasingSort();

    /// Negates column 0 unless isRotation is set.
    void GuaranteeRotation();

    /// Component of the eigenvector of diagonal[column].
    double Eigenvector(int column, int row) const { return matrix[row][column]; }

private:
    void SetIdentity();
    int FindSplit(int first) const;
    void TransformStep(int first, int last);
    template <class Comes>
    void SortBy(Comes comesBefore);
};

} // namespace cadgeom::detail
