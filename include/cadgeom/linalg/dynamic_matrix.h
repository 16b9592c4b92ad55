#pragma once
/// @file
/// A dense matrix of doubles whose dimensions are chosen at run time, with inverse, determinant and linear solvers.
/// Read linalg/dynamic_vector.h first: rows, columns and right-hand sides are vectors of that kind.

#include <cadgeom/core/export.h>
#include <cadgeom/linalg/dynamic_vector.h>

#include <cstddef>
#include <utility>

/// A heap-backed matrix of `double`, stored row by row.
///
/// *Elements* are not initialised when a matrix is made or grows.
///
/// *Indices and the dimensions of operands are not checked*; they are the caller's duty. A negative dimension throws
/// CInvalidArgException; more than 2^31 - 1 elements, or memory that cannot be obtained, throw CMemoryException. The
/// matrix keeps its contents then.
///
/// *Memory* comes from the C heap, is grown to exactly the needed count and is kept until FreeMemory() or the
/// destructor releases it. Results returned by value own a buffer of exactly their size.
///
/// *Order of operations*: sums of products start from 0 and run along the inner index; no product is fused with a
/// sum. Results are therefore the same bits on every machine.
///
/// *Singularity* is judged against 2^-23, absolute: it is not scaled by the size of the entries.
///
/// *Threads*: distinct matrices may be used from distinct threads, Invert() and GetInverse() included. The identity
/// matrices of GetIdentityMatrix() are kept per thread.
class CADGEOM_API CMatrix {
public:
    /// A matrix of 0 x 0 elements without a buffer.
    CMatrix() noexcept = default;
    /// A matrix of uninitialised elements.
    CMatrix(int rows, int columns);
    /// A column: size x 1.
    CMatrix(const CVector& column);
    CMatrix(const CMatrix& other);
    /// Takes the buffer of `other`, which becomes 0 x 0.
    inline CMatrix(CMatrix&& other) noexcept;
    ~CMatrix();

    /// Copies dimensions and elements. A matrix without elements makes this one 0 x 0 with its buffer kept; assigning
    /// a matrix to itself changes nothing.
    const CMatrix& operator=(const CMatrix& other);
    /// Takes the buffer of `other`, which becomes 0 x 0; an `other` without elements leaves this 0 x 0 with its
    /// buffer kept.
    const CMatrix& operator=(CMatrix&& other) noexcept;

    /// Changes the dimensions. The buffer is reallocated (to exactly the new count) when it is too small; the values
    /// in it are not rearranged.
    void SetSize(int rows, int columns);
    int GetNumRows() const noexcept { return m_rows; }
    int GetNumColumns() const noexcept { return m_columns; }
    int GetNumElements() const noexcept { return m_rows * m_columns; }
    /// The elements, row by row; null for a matrix without a buffer.
    const double* GetData() const noexcept { return m_data; }
    double& operator()(int row, int column) noexcept { return Row(row)[column]; }
    double operator()(int row, int column) const noexcept { return Row(row)[column]; }

    /// Element-wise sum over this matrix's dimensions.
    CMatrix operator+(const CMatrix& other) const;
    /// Element-wise difference over this matrix's dimensions.
    CMatrix operator-(const CMatrix& other) const;
    const CMatrix& operator+=(const CMatrix& other) noexcept;
    const CMatrix& operator-=(const CMatrix& other) noexcept;
    CMatrix operator*(double factor) const;
    const CMatrix& operator*=(double factor) noexcept;
    /// Multiplies every element by -1.
    void Negate() noexcept;

    /// Matrix product: rows of this x columns of `other`.
    /// @param other  has as many rows as this has columns
    CMatrix operator*(const CMatrix& other) const;
    /// Matrix product in place. `m *= m` is the product of the old values.
    const CMatrix& operator*=(const CMatrix& other);
    /// Product with a column vector of as many elements as this has columns.
    CVector operator*(const CVector& vector) const;

    /// Transposes in place.
    const CMatrix& Transpose();
    CMatrix GetTranspose() const;

    /// Whether element (i, j) equals element (j, i) exactly, for every i < rows - 1 and every j > i; true for fewer
    /// than two rows, false when one of them is not-a-number. Several rows with more columns than rows are never
    /// symmetric.
    bool IsSymetric() const noexcept;

    /// Replaces this matrix by its inverse.
    ///
    /// There is no test for singularity: a zero pivot fills the result with infinities and not-a-numbers. A matrix
    /// that is not square becomes rows x rows not-a-numbers.
    /// Method: Gauss-Jordan elimination in two passes, the pivot of a column being the first of its largest absolute
    /// values (an initial not-a-number is not displaced); O(n^3). Up to 4 x 4 it does not allocate.
    void Invert();
    CMatrix GetInverse() const;

    /// The determinant; 0 for no rows. A matrix with more columns than rows counts without the surplus, one with
    /// fewer columns than rows has determinant 0.
    ///
    /// Up to 3 x 3 it is a closed form. From 4 x 4 up it is the product of the pivots of Gaussian elimination
    /// **without the sign of the row exchanges**: only its absolute value means something. When no candidate for a
    /// pivot exceeds 2^-23, it is instead the (signed) cofactor expansion along the first rows.
    ///
    /// The expansion takes O(n 2^n) time and 2^n doubles, and is made up to 20 x 20; for larger matrices the signed
    /// product of the pivots, whatever their size, takes its place.
    double GetDeterminant() const;

    /// Solves A x = b.
    ///
    /// - A right-hand side with no element above 2^-23 (an empty one, too) asks for a non-trivial solution: see
    ///   SolveLinearSystem(CVector&).
    /// - When |determinant| > 2^-23: Gaussian elimination with partial pivoting; false when a pivot is at most 2^-23.
    /// - When it is not above 2^-23 and a column holds nothing above 2^-23: that unknown is 0 and the others solve
    ///   the system without that column and without one equation, the first for which this succeeds.
    /// - Otherwise false, also when the determinant is not-a-number.
    ///
    /// The search through systems with zero columns may take factorial time; subsystems that failed once are not
    /// tried again, and after some 10^8 elementary steps (more for large matrices) the answer is false.
    /// @param b         as many elements as this has rows, or none
    /// @param solution  out: as many elements as this has columns, may be the same vector as b; valid but unspecified
    ///                  when the result is false
    /// @return false when the matrix is not square or no solution was found
    bool SolveLinearSystem(const CVector& b, CVector& solution) const;

    /// Looks for an x other than 0 with A x = 0.
    ///
    /// When |determinant| <= 2^-23 and a column holds nothing above 2^-23, that component is first tried as 0. After
    /// that each component in turn is set to 1 and the others are solved for with one equation left out. The left-out
    /// equation is not checked: **a regular matrix also yields true**, with a vector that solves all equations but
    /// one. An empty system has no solution, so that ((1, 0), (0, 0)) yields false although (0, 1) solves it. The
    /// search is limited as in the other form.
    /// @param solution  out: as many elements as this has columns; valid but unspecified when the result is false
    /// @return false when the matrix is not square or nothing was found
    bool SolveLinearSystem(CVector& solution) const;

    /// The n x n identity, made once per thread and kept until the thread ends.
    ///
    /// The reference stays valid on the calling thread until that thread first asks for a larger size, which may move
    /// the matrices kept; copy it at once.
    /// @param n  a negative size throws CInvalidArgException
    static const CMatrix& GetIdentityMatrix(int n);

    CVector GetRow(int row) const;
    CVector GetColumn(int column) const;
    /// Overwrites a row with the first elements of `values`.
    void SetRow(int row, const CVector& values) noexcept;
    /// Overwrites a column with the first elements of `values`.
    void SetColumn(int column, const CVector& values) noexcept;
    /// Drops a row and reallocates to exactly what is left.
    void RemoveRow(int row);
    /// Drops a column and reallocates to exactly what is left.
    void RemoveColumn(int column);

    /// Copies everything but one row and one column to `minor`, whose buffer is kept when it is large enough. `minor`
    /// may be this matrix. Throws CInvalidArgException when there is no row or no column.
    void GetSubset(int row, int column, CMatrix& minor) const;
    /// Copies the rows `firstRow` ... `lastRow` and the columns `firstColumn` ... `lastColumn`, all included, to
    /// `block`, which may be this matrix.
    void GetSubset(int firstRow, int firstColumn, int lastRow, int lastColumn, CMatrix& block) const;

    /// The largest absolute value; -1 for a matrix without elements.
    /// @param row, column  out, may be null: where it stands first in row order; -1 and -1 without elements.
    ///                     Not-a-number is never the largest.
    double GetMaxAbsValue(int* row, int* column) const noexcept;

    /// Releases the buffer: 0 x 0, no capacity.
    void FreeMemory() noexcept;

private:
    friend class CVector;

    double* Row(int row) const noexcept { return m_data + static_cast<std::ptrdiff_t>(row) * m_columns; }

    double* m_data = nullptr;
    int m_rows = 0;
    int m_columns = 0;
    int m_capacity = 0;
};

inline CMatrix::CMatrix(CMatrix&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)),
      m_rows(std::exchange(other.m_rows, 0)),
      m_columns(std::exchange(other.m_columns, 0)),
      m_capacity(std::exchange(other.m_capacity, 0))
{}
