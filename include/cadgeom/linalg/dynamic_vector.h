#pragma once
/// @file
/// A vector of doubles whose length is chosen at run time: the right-hand sides, solutions, rows and columns of the
/// matrices in linalg/dynamic_matrix.h, which is the header to read next.

#include <cadgeom/core/export.h>
#include <cadgeom/core/vector3d.h>

#include <utility>

class CMatrix;

/// A heap-backed vector of `double`.
///
/// *Elements* are not initialised when a vector is made or grows; they hold whatever the heap gave.
///
/// *Sizes and indices are not checked*: an index outside 0 ... size - 1, or an operand shorter than this vector, is
/// the caller's error. A negative size throws CInvalidArgException; memory that cannot be obtained throws
/// CMemoryException and leaves the vector as it was.
///
/// *Memory* comes from the C heap. Growth is to exactly the needed count, and shrinking keeps the buffer until
/// FreeMemory() or the destructor releases it. Results returned by value own a buffer of exactly their size.
///
/// *Threads*: distinct vectors may be used from distinct threads.
class CADGEOM_API CVector {
public:
    /// An empty vector without a buffer.
    CVector() noexcept = default;
    /// A vector of `size` uninitialised elements.
    explicit CVector(int size);
    /// The three components of a vector in space.
    CVector(const CadVector3d<double>& vector);
    /// The three components of a vector in space, widened.
    CVector(const CadVector3d<float>& vector);
    CVector(const CVector& other);
    /// Takes the buffer of `other`, which becomes empty.
    inline CVector(CVector&& other) noexcept;
    ~CVector();

    /// Copies the elements. Copying an empty vector keeps the buffer and its capacity; assigning a vector to itself
    /// changes nothing.
    const CVector& operator=(const CVector& other);
    /// Takes the buffer of `other`, which becomes empty; an empty `other` leaves this empty with its buffer kept.
    const CVector& operator=(CVector&& other) noexcept;

    /// Changes the number of elements. Up to the capacity the buffer, and with it every old value, stays; beyond it
    /// the buffer grows to exactly `size` elements.
    void SetSize(int size);
    int GetNumElements() const noexcept { return m_size; }
    /// The elements; null for a vector without a buffer.
    const double* GetData() const noexcept { return m_data; }
    double& operator[](int index) noexcept { return m_data[index]; }
    double operator[](int index) const noexcept { return m_data[index]; }

    /// Element-wise sum over this vector's size.
    /// @param other  at least as long as this vector
    CVector operator+(const CVector& other) const;
    /// Element-wise difference over this vector's size.
    /// @param other  at least as long as this vector
    CVector operator-(const CVector& other) const;
    CVector operator*(double factor) const;
    const CVector& operator*=(double factor) noexcept;
    /// Multiplies every element by -1.
    void Negate() noexcept;

    /// Dot product over this vector's size, summed from 0 in the order of the elements.
    /// @param other  at least as long as this vector
    double operator*(const CVector& other) const noexcept;
    double GetLengthSquared() const noexcept;
    double GetLength() const noexcept;

    /// A matrix whose only row is this vector.
    CMatrix GetTranspose() const;
    /// Outer product of this vector, as a column, with the first row of `matrix`: element (i, j) of the result is
    /// this[i] * matrix(0, j).
    CMatrix operator*(const CMatrix& matrix) const;

    /// Copies the elements `first` ... `last`, both included, to `subset`, whose buffer is kept when it is large
    /// enough. `subset` may be this vector. Throws CInvalidArgException when last < first - 1.
    void GetSubset(int first, int last, CVector& subset) const;
    /// Copies all elements but the one at `skipped` to `subset`, which may be this vector.
    void GetSubset(int skipped, CVector& subset) const;
    /// Makes `value` the element at `index` (0 ... size), moving up those that stood there and behind.
    void InsertAt(int index, double value);

    /// Whether no element is larger in absolute value than `tolerance`; true for an empty vector. Not-a-number counts
    /// as not larger.
    bool IsZero(double tolerance) const noexcept;
    /// The largest absolute value; -1 for an empty vector.
    /// @param index  out, may be null: where it stands first; -1 for an empty vector. Not-a-number is never the
    ///               largest.
    double GetMaxAbsValue(int* index) const noexcept;

    /// Releases the buffer: no elements, no capacity.
    void FreeMemory() noexcept;

private:
    friend class CMatrix;

    double* m_data = nullptr;
    int m_size = 0;
    int m_capacity = 0;
};

inline CVector::CVector(CVector&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)),
      m_size(std::exchange(other.m_size, 0)),
      m_capacity(std::exchange(other.m_capacity, 0))
{}
