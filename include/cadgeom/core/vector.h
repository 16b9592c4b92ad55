#pragma once
/// @file
/// `CadVector`, a displacement or direction in two or three dimensions. Next: core/point.h for positions,
/// core/vector2d.h and core/vector3d.h for the forms with named components.

#include <cadgeom/core/axis.h>
#include <cadgeom/core/components.h>
#include <cadgeom/core/export.h>
#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/tolerance.h>

#include <cmath>

class CArchive;

template <class T, int N>
class CadPoint;

namespace cadgeom::detail {

/// Marks the constructors of the shared constants, which exist before any code runs.
struct ConstantTag {};

} // namespace cadgeom::detail

CADGEOM_FP_BEGIN

/// A displacement or direction: N components of type T in axis order, and nothing else, so that an array of vectors is
/// an array of scalars. T is float or double, N is 2 or 3; the float instances compute in float throughout.
///
/// Sums of squares and dot products start from 0 and add their terms in axis order. Comparisons are per component
/// against an absolute tolerance, by default epsilon(); a difference equal to the tolerance is still equal, and a NaN
/// component never differs.
template <class T, int N>
class CADGEOM_API CadVector {
    static_assert(N == 2 || N == 3, "vectors have two or three components");

public:
    /// Number of components.
    static const int NumAxes = N;

    /// Leaves the components uninitialised.
    CadVector() = default;
    CadVector(const CadVector&) = default;
    CadVector(CadVector&&) noexcept = default;
    ~CadVector() = default;
    CadVector& operator=(const CadVector&) = default;
    CadVector& operator=(CadVector&&) noexcept = default;

    void assign(const CadVector& other) { *this = other; }

    /// Component by index 0 ... N - 1; the index is not checked.
    T& operator[](int axis) { return m_components[axis]; }
    T operator[](int axis) const { return m_components[axis]; }

    /// The N components in axis order.
    T* data() { return m_components; }
    const T* data() const { return m_components; }

    void setZero();

    /// The one zero vector of this instance.
    static const CadVector& zero() { return s_zero; }

    /// Tolerance of comparisons: 1e-6 for double, 1e-4 for float.
    static T epsilon() { return Tolerance::epsilon(); }

    /// Whether every component is exactly 0; false for NaN.
    bool isZero() const;
    /// Whether no |component| exceeds `tolerance`.
    bool isAlmostZero(T tolerance = epsilon()) const;
    /// Whether no pair of components differs by more than `tolerance`; this is not a distance.
    bool isEqual(const CadVector& other, T tolerance = epsilon()) const;
    bool operator==(const CadVector& other) const { return isEqual(other, epsilon()); }
    bool operator!=(const CadVector& other) const { return !isEqual(other, epsilon()); }
    /// Tolerant lexicographic order.
    /// @return -1 or 1 by the first component that differs by more than epsilon(), 0 when none does. Closer than
    ///         epsilon() the order is not transitive.
    int compare(const CadVector& other) const;
    bool operator<(const CadVector& other) const { return compare(other) == -1; }

    CadVector operator+(const CadVector& other) const;
    CadVector operator-(const CadVector& other) const;
    CadVector operator-() const;
    CadVector operator*(T factor) const;
    /// Divides every component; there is no test for zero.
    CadVector operator/(T divisor) const;
    CadVector& operator+=(const CadVector& other);
    CadVector& operator-=(const CadVector& other);
    CadVector& operator*=(T factor);
    CadVector& operator/=(T divisor);

    /// Adds a point's coordinates to this vector.
    void addToThis(const CadPoint<T, N>& point);
    /// Flips the sign of every component.
    void negate();

    T operator*(const CadVector& other) const { return dot(other); }
    T dot(const CadVector& other) const;
    /// Dot product with a point's coordinates.
    T dotPoint(const CadPoint<T, N>& point) const;
    /// Component-wise product.
    CadVector product(const CadVector& other) const;

    T lengthSquared() const;
    T length() const { return cadgeom::detail::Sqrt(lengthSquared()); }
    /// The same as length().
    T norm() const { return length(); }

    /// Makes this vector unit length.
    ///
    /// A vector whose length is not finite is rescaled first: divided by its largest |component|, or, when a component
    /// is itself not finite, replaced by the signs of the components that are not (the others become 0). A zero vector
    /// becomes the unit vector along the last axis.
    /// @return the length that the (rescaled) vector was divided by; 0 for a zero vector
    T normalize();
    /// Whether the length differs from 1 by no more than 2^-23, in both precisions.
    bool isNormalized() const;

    /// Cross product; in two dimensions the vector (0, 0, x1 * y2 - y1 * x2).
    CadVector<T, 3> cross(const CadVector& other) const;
    /// cross() made unit length by normalize(): (0, 0, 1) for parallel vectors.
    CadVector<T, 3> crossAndNormalize(const CadVector& other) const;

    /// Largest |component|.
    /// @param axis  out, may be null: its index, the lowest on ties
    T maxAbsoluteValue(int* axis = nullptr) const;
    T maxAbsoluteValue(EAxis* axis) const;
    /// Smallest |component|.
    /// @param axis  out, may be null: its index, the lowest on ties
    T minAbsoluteValue(int* axis = nullptr) const;
    T minAbsoluteValue(EAxis* axis) const;

    /// Whether the lines along both vectors enclose at most `toleranceDegrees`; opposite vectors are parallel.
    /// A zero vector is parallel to nothing.
    ///
    /// The squared cosine of the last tolerance is remembered on each thread, for each scalar type, dimension and test.
    bool isParallel(const CadVector& other, T toleranceDegrees) const;
    /// Whether the angle to `other` is a right angle within `toleranceDegrees`. A zero vector is orthogonal to nothing.
    bool isOrthogonal(const CadVector& other, T toleranceDegrees) const;
    /// As isParallel(), but opposite vectors do not count.
    bool isVectorDirectionEqual(const CadVector& other, T toleranceDegrees) const;

    /// Parameter t of the projection t * direction of this vector; 0 when |direction|^2 <= epsilon()^2.
    T projectOntoVectorParam(const CadVector& direction) const;
    /// The component of this vector along `direction`.
    CadVector projectOntoVector(const CadVector& direction) const;

    /// Stores or loads the components in axis order, little-endian, with nothing around them. When loading fails, the
    /// components loaded so far are written. Defined in core/archive_records.h.
    void serialize(CArchive& archive);

protected:
    /// The given components; those not given are 0.
    template <class... Components>
    CADGEOM_HIDDEN constexpr explicit CadVector(cadgeom::detail::ConstantTag, Components... components)
        : m_components{components...}
    {}

private:
    using Tolerance = cadgeom::detail::Tolerance<T>;

    void rescaleToFinite();

    T m_components[N];

    static const CadVector s_zero;
};

CADGEOM_FP_END

#include <cadgeom/core/point.h>

CADGEOM_FP_BEGIN

template <class T, int N>
inline void CadVector<T, N>::setZero()
{
    for (int i = 0; i < N; ++i) {
        m_components[i] = T(0);
    }
}

template <class T, int N>
inline bool CadVector<T, N>::isZero() const
{
    for (int i = 0; i < N; ++i) {
        if (!(m_components[i] == T(0))) {
            return false;
        }
    }
    return true;
}

template <class T, int N>
inline bool CadVector<T, N>::isAlmostZero(T tolerance) const
{
    return cadgeom::detail::NoneExceeds<N>(m_components, tolerance);
}

template <class T, int N>
inline bool CadVector<T, N>::isEqual(const CadVector& other, T tolerance) const
{
    return cadgeom::detail::NoneDiffers<N>(m_components, other.m_components, tolerance);
}

template <class T, int N>
inline int CadVector<T, N>::compare(const CadVector& other) const
{
    return cadgeom::detail::CompareTolerantly<N>(m_components, other.m_components);
}

template <class T, int N>
inline CadVector<T, N> CadVector<T, N>::operator+(const CadVector& other) const
{
    CadVector sum(*this);
    sum += other;
    return sum;
}

template <class T, int N>
inline CadVector<T, N> CadVector<T, N>::operator-(const CadVector& other) const
{
    CadVector difference(*this);
    difference -= other;
    return difference;
}

template <class T, int N>
inline CadVector<T, N> CadVector<T, N>::operator-() const
{
    CadVector opposite(*this);
    opposite.negate();
    return opposite;
}

template <class T, int N>
inline CadVector<T, N> CadVector<T, N>::operator*(T factor) const
{
    CadVector scaled(*this);
    scaled *= factor;
    return scaled;
}

template <class T, int N>
inline CadVector<T, N> CadVector<T, N>::operator/(T divisor) const
{
    CadVector scaled(*this);
    scaled /= divisor;
    return scaled;
}

template <class T, int N>
inline CadVector<T, N>& CadVector<T, N>::operator+=(const CadVector& other)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] += other.m_components[i];
    }
    return *this;
}

template <class T, int N>
inline CadVector<T, N>& CadVector<T, N>::operator-=(const CadVector& other)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] -= other.m_components[i];
    }
    return *this;
}

template <class T, int N>
inline CadVector<T, N>& CadVector<T, N>::operator*=(T factor)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] = cadgeom::detail::Product(m_components[i], factor);
    }
    return *this;
}

template <class T, int N>
inline CadVector<T, N>& CadVector<T, N>::operator/=(T divisor)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] /= divisor;
    }
    return *this;
}

template <class T, int N>
inline void CadVector<T, N>::addToThis(const CadPoint<T, N>& point)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] += point[i];
    }
}

template <class T, int N>
inline void CadVector<T, N>::negate()
{
    for (int i = 0; i < N; ++i) {
        m_components[i] = -m_components[i];
    }
}

template <class T, int N>
inline T CadVector<T, N>::dot(const CadVector& other) const
{
    return cadgeom::detail::SumOfProducts<N>(m_components, other.m_components);
}

template <class T, int N>
inline T CadVector<T, N>::dotPoint(const CadPoint<T, N>& point) const
{
    return cadgeom::detail::SumOfProducts<N>(m_components, point.data());
}

template <class T, int N>
inline T CadVector<T, N>::lengthSquared() const
{
    return cadgeom::detail::SumOfSquares<N>(m_components);
}

template <class T, int N>
inline CadVector<T, N> CadVector<T, N>::product(const CadVector& other) const
{
    CadVector result;
    for (int i = 0; i < N; ++i) {
        result.m_components[i] = cadgeom::detail::Product(m_components[i], other.m_components[i]);
    }
    return result;
}

template <class T, int N>
inline T CadVector<T, N>::normalize()
{
    T divisor = length();
    if (!std::isfinite(divisor)) {
        rescaleToFinite();
        divisor = length();
    }
    if (divisor > T(0)) {
        *this /= divisor;
    } else {
        m_components[N - 1] = T(1);
    }
    return divisor;
}

template <class T, int N>
inline bool CadVector<T, N>::isNormalized() const
{
    return cadgeom::detail::Absolute(T(1) - length()) <= T(cadgeom::detail::kSingleEpsilon);
}

template <class T, int N>
inline CadVector<T, 3> CadVector<T, N>::cross(const CadVector& other) const
{
    using cadgeom::detail::Product;
    const T* const a = m_components;
    const T* const b = other.m_components;
    CadVector<T, 3> result;
    if constexpr (N == 3) {
        result[0] = Product(a[1], b[2]) - Product(a[2], b[1]);
        result[1] = Product(a[2], b[0]) - Product(a[0], b[2]);
    } else {
        result[0] = T(0);
        result[1] = T(0);
    }
    result[2] = Product(a[0], b[1]) - Product(a[1], b[0]);
    return result;
}

template <class T, int N>
inline CadVector<T, 3> CadVector<T, N>::crossAndNormalize(const CadVector& other) const
{
    CadVector<T, 3> result = cross(other);
    result.normalize();
    return result;
}

template <class T, int N>
inline T CadVector<T, N>::maxAbsoluteValue(int* axis) const
{
    const int largest = cadgeom::detail::AxisOfLargest<N>(m_components);
    cadgeom::detail::WriteAxis(axis, largest);
    return cadgeom::detail::Absolute(m_components[largest]);
}

template <class T, int N>
inline T CadVector<T, N>::maxAbsoluteValue(EAxis* axis) const
{
    const int largest = cadgeom::detail::AxisOfLargest<N>(m_components);
    cadgeom::detail::WriteAxis(axis, largest);
    return cadgeom::detail::Absolute(m_components[largest]);
}

template <class T, int N>
inline T CadVector<T, N>::minAbsoluteValue(int* axis) const
{
    const int smallest = cadgeom::detail::AxisOfSmallest<N>(m_components);
    cadgeom::detail::WriteAxis(axis, smallest);
    return cadgeom::detail::Absolute(m_components[smallest]);
}

template <class T, int N>
inline T CadVector<T, N>::minAbsoluteValue(EAxis* axis) const
{
    const int smallest = cadgeom::detail::AxisOfSmallest<N>(m_components);
    cadgeom::detail::WriteAxis(axis, smallest);
    return cadgeom::detail::Absolute(m_components[smallest]);
}

template <class T, int N>
inline T CadVector<T, N>::projectOntoVectorParam(const CadVector& direction) const
{
    const T squared = direction.lengthSquared();
    return squared <= Tolerance::squaredEpsilon() ? T(0) : dot(direction) / squared;
}

template <class T, int N>
inline CadVector<T, N> CadVector<T, N>::projectOntoVector(const CadVector& direction) const
{
    return direction * projectOntoVectorParam(direction);
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CadVector<float, 2>;
extern template class CADGEOM_API CadVector<float, 3>;
extern template class CADGEOM_API CadVector<double, 2>;
extern template class CADGEOM_API CadVector<double, 3>;

CADGEOM_FP_END
