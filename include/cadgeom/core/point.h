#pragma once
/// @file
/// `CadPoint`, a position in two or three dimensions, and its projections onto lines and segments. Next:
/// core/point2d.h and core/point3d.h for the forms with named coordinates.

#include <cadgeom/core/vector.h>

CADGEOM_FP_BEGIN

/// A position: N coordinates of type T in axis order, and nothing else. T is float or double, N is 2 or 3; the float
/// instances compute in float throughout. Sums and comparisons follow the rules of CadVector.
///
/// Lines are infinite and given by a point and a direction of any length, or by two points. A direction with
/// |direction|^2 <= epsilon()^2 (1e-12 for double, 1e-8 for float) has no direction: everything projects onto the
/// line's first point.
template <class T, int N>
class CADGEOM_API CadPoint {
    static_assert(N == 2 || N == 3, "points have two or three coordinates");

public:
    using Vector = CadVector<T, N>;

    /// Number of coordinates.
    static const int NumAxes = N;

    /// Leaves the coordinates uninitialised.
    CadPoint() = default;
    CadPoint(const CadPoint&) = default;
    CadPoint(CadPoint&&) noexcept = default;
    ~CadPoint() = default;
    CadPoint& operator=(const CadPoint&) = default;
    CadPoint& operator=(CadPoint&&) noexcept = default;

    void assign(const CadPoint& other) { *this = other; }

    /// Coordinate by index 0 ... N - 1; the index is not checked.
    T& operator[](int axis) { return m_components[axis]; }
    T operator[](int axis) const { return m_components[axis]; }

    /// The N coordinates in axis order.
    T* data() { return m_components; }
    const T* data() const { return m_components; }

    void setZero();

    /// The one zero point of this instance.
    static const CadPoint& zero() { return s_zero; }

    /// Tolerance of comparisons: 1e-6 for double, 1e-4 for float.
    static T epsilon() { return Tolerance::epsilon(); }

    /// Whether every coordinate is exactly 0; false for NaN.
    bool isZero() const;
    /// Whether no |coordinate| exceeds `tolerance`.
    bool isAlmostZero(T tolerance = epsilon()) const;
    /// Whether no pair of coordinates differs by more than `tolerance`; this is not a distance.
    bool isEqual(const CadPoint& other, T tolerance = epsilon()) const;
    bool operator==(const CadPoint& other) const { return isEqual(other, epsilon()); }
    bool operator!=(const CadPoint& other) const { return !isEqual(other, epsilon()); }
    /// Tolerant lexicographic order, as CadVector::compare.
    int compare(const CadPoint& other) const;
    bool operator<(const CadPoint& other) const { return compare(other) == -1; }

    /// Largest |coordinate|.
    T maxAbsoluteValue() const;

    /// The displacement from `other` to this point.
    Vector operator-(const CadPoint& other) const;
    CadPoint operator+(const Vector& displacement) const;
    CadPoint operator-(const Vector& displacement) const;
    CadPoint operator-() const;
    CadPoint operator*(T factor) const;
    /// Divides every coordinate; there is no test for zero.
    CadPoint operator/(T divisor) const;
    CadPoint& operator+=(const Vector& displacement);
    CadPoint& operator-=(const Vector& displacement);
    CadPoint& operator*=(T factor);
    CadPoint& operator/=(T divisor);

    /// Sum of the coordinates of two points, as means are accumulated.
    CadPoint add(const CadPoint& other) const;
    void addToThis(const CadPoint& other);

    /// Sum of the products of the coordinates.
    T dotPoint(const CadPoint& other) const;

    T distanceSquared(const CadPoint& other) const { return (*this - other).lengthSquared(); }
    T distance(const CadPoint& other) const { return cadgeom::detail::Sqrt(distanceSquared(other)); }

    /// Squared distance to the line through `origin` along `direction`.
    T distanceSquaredToLine(const CadPoint& origin, const Vector& direction) const;
    /// Squared distance to the line through two points.
    T distanceSquaredToLine(const CadPoint& start, const CadPoint& end) const;
    /// Squared distance to the segment between two points, ends included.
    T distanceSquaredToLineSegment(const CadPoint& start, const CadPoint& end) const;

    /// Parameter t of the foot origin + t * direction of the perpendicular on a line, in lengths of `direction`; 0 when
    /// it has no direction.
    T projectOntoLineParam(const CadPoint& origin, const Vector& direction) const;
    /// The foot of the perpendicular on a line.
    CadPoint projectOntoLine(const CadPoint& origin, const Vector& direction) const;
    /// The nearest point of the segment between two points.
    /// @param foot             out: that point; exactly `start` or `end` when it is one of them
    /// @param distanceSquared  out: squared distance to it
    /// @return its parameter, from 0 at `start` to 1 at `end`; 0 for a segment without direction
    T projectOntoLineSegment(const CadPoint& start, const CadPoint& end, CadPoint& foot, T& distanceSquared) const;

    /// Stores or loads the coordinates as CadVector::serialize does; the records are the same.
    void serialize(CArchive& archive);

protected:
    /// The given coordinates; those not given are 0.
    template <class... Coordinates>
    CADGEOM_HIDDEN constexpr explicit CadPoint(cadgeom::detail::ConstantTag, Coordinates... coordinates)
        : m_components{coordinates...}
    {}

private:
    using Tolerance = cadgeom::detail::Tolerance<T>;

    T m_components[N];

    static const CadPoint s_zero;
};

template <class T, int N>
inline void CadPoint<T, N>::setZero()
{
    for (int i = 0; i < N; ++i) {
        m_components[i] = T(0);
    }
}

template <class T, int N>
inline bool CadPoint<T, N>::isZero() const
{
    for (int i = 0; i < N; ++i) {
        if (!(m_components[i] == T(0))) {
            return false;
        }
    }
    return true;
}

template <class T, int N>
inline bool CadPoint<T, N>::isAlmostZero(T tolerance) const
{
    return cadgeom::detail::NoneExceeds<N>(m_components, tolerance);
}

template <class T, int N>
inline bool CadPoint<T, N>::isEqual(const CadPoint& other, T tolerance) const
{
    return cadgeom::detail::NoneDiffers<N>(m_components, other.m_components, tolerance);
}

template <class T, int N>
inline int CadPoint<T, N>::compare(const CadPoint& other) const
{
    return cadgeom::detail::CompareTolerantly<N>(m_components, other.m_components);
}

template <class T, int N>
inline T CadPoint<T, N>::maxAbsoluteValue() const
{
    return cadgeom::detail::Absolute(m_components[cadgeom::detail::AxisOfLargest<N>(m_components)]);
}

template <class T, int N>
inline CadVector<T, N> CadPoint<T, N>::operator-(const CadPoint& other) const
{
    Vector displacement;
    for (int i = 0; i < N; ++i) {
        displacement[i] = m_components[i] - other.m_components[i];
    }
    return displacement;
}

template <class T, int N>
inline CadPoint<T, N> CadPoint<T, N>::operator+(const Vector& displacement) const
{
    CadPoint moved(*this);
    moved += displacement;
    return moved;
}

template <class T, int N>
inline CadPoint<T, N> CadPoint<T, N>::operator-(const Vector& displacement) const
{
    CadPoint moved(*this);
    moved -= displacement;
    return moved;
}

template <class T, int N>
inline CadPoint<T, N> CadPoint<T, N>::operator-() const
{
    CadPoint opposite;
    for (int i = 0; i < N; ++i) {
        opposite.m_components[i] = -m_components[i];
    }
    return opposite;
}

template <class T, int N>
inline CadPoint<T, N> CadPoint<T, N>::operator*(T factor) const
{
    CadPoint scaled(*this);
    scaled *= factor;
    return scaled;
}

template <class T, int N>
inline CadPoint<T, N> CadPoint<T, N>::operator/(T divisor) const
{
    CadPoint scaled(*this);
    scaled /= divisor;
    return scaled;
}

template <class T, int N>
inline CadPoint<T, N>& CadPoint<T, N>::operator+=(const Vector& displacement)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] += displacement[i];
    }
    return *this;
}

template <class T, int N>
inline CadPoint<T, N>& CadPoint<T, N>::operator-=(const Vector& displacement)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] -= displacement[i];
    }
    return *this;
}

template <class T, int N>
inline CadPoint<T, N>& CadPoint<T, N>::operator*=(T factor)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] = cadgeom::detail::Product(m_components[i], factor);
    }
    return *this;
}

template <class T, int N>
inline CadPoint<T, N>& CadPoint<T, N>::operator/=(T divisor)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] /= divisor;
    }
    return *this;
}

template <class T, int N>
inline CadPoint<T, N> CadPoint<T, N>::add(const CadPoint& other) const
{
    CadPoint sum(*this);
    sum.addToThis(other);
    return sum;
}

template <class T, int N>
inline void CadPoint<T, N>::addToThis(const CadPoint& other)
{
    for (int i = 0; i < N; ++i) {
        m_components[i] += other.m_components[i];
    }
}

template <class T, int N>
inline T CadPoint<T, N>::dotPoint(const CadPoint& other) const
{
    return cadgeom::detail::SumOfProducts<N>(m_components, other.m_components);
}

template <class T, int N>
inline T CadPoint<T, N>::distanceSquaredToLine(const CadPoint& origin, const Vector& direction) const
{
    return projectOntoLine(origin, direction).distanceSquared(*this);
}

template <class T, int N>
inline T CadPoint<T, N>::distanceSquaredToLine(const CadPoint& start, const CadPoint& end) const
{
    return distanceSquaredToLine(start, end - start);
}

template <class T, int N>
inline T CadPoint<T, N>::distanceSquaredToLineSegment(const CadPoint& start, const CadPoint& end) const
{
    const Vector direction = end - start;
    const T squared = direction.lengthSquared();
    if (squared <= Tolerance::squaredEpsilon()) {
        return distanceSquared(start);
    }
    const T t = (*this - start).dot(direction) / squared;
    if (t <= T(0)) {
        return distanceSquared(start);
    }
    if (t >= T(1)) {
        return end.distanceSquared(*this);
    }
    return (start + direction * t).distanceSquared(*this);
}

template <class T, int N>
inline T CadPoint<T, N>::projectOntoLineParam(const CadPoint& origin, const Vector& direction) const
{
    return (*this - origin).projectOntoVectorParam(direction);
}

template <class T, int N>
inline CadPoint<T, N> CadPoint<T, N>::projectOntoLine(const CadPoint& origin, const Vector& direction) const
{
    return origin + direction * projectOntoLineParam(origin, direction);
}

template <class T, int N>
inline T CadPoint<T, N>::projectOntoLineSegment(const CadPoint& start, const CadPoint& end, CadPoint& foot,
                                                T& distanceSquared) const
{
    const CadPoint self(*this);
    const Vector direction = end - start;
    const T squared = direction.lengthSquared();
    T t = T(0);
    if (!(squared <= Tolerance::squaredEpsilon())) {
        t = (self - start).dot(direction) / squared;
    }
    if (t <= T(0)) {
        t = T(0);
        foot = start;
    } else if (t >= T(1)) {
        t = T(1);
        foot = end;
    } else {
        foot = start + direction * t;
    }
    distanceSquared = self.distanceSquared(foot);
    return t;
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CadPoint<float, 2>;
extern template class CADGEOM_API CadPoint<float, 3>;
extern template class CADGEOM_API CadPoint<double, 2>;
extern template class CADGEOM_API CadPoint<double, 3>;

CADGEOM_FP_END
