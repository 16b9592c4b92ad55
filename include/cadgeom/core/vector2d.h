#pragma once
/// @file
/// `CadVector2d`, a two-dimensional vector with named components.

#include <cadgeom/core/units.h>
#include <cadgeom/core/vector.h>

CADGEOM_FP_BEGIN

/// A vector in the plane; adds names to CadVector<T, 2> and no data. u and v are other names of x and y.
template <class T>
class CADGEOM_API CadVector2d : public CadVector<T, 2> {
public:
    using Base = CadVector<T, 2>;

    /// Leaves the components uninitialised.
    CadVector2d() = default;
    CadVector2d(T x, T y) { set(x, y); }
    CadVector2d(const Base& other) : Base(other) {}

    void assign(T x, T y) { set(x, y); }
    void assign(const Base& other) { Base::assign(other); }
    void set(T x, T y)
    {
        (*this)[0] = x;
        (*this)[1] = y;
    }

    T& x() { return (*this)[0]; }
    T x() const { return (*this)[0]; }
    T& y() { return (*this)[1]; }
    T y() const { return (*this)[1]; }
    T& u() { return (*this)[0]; }
    T u() const { return (*this)[0]; }
    T& v() { return (*this)[1]; }
    T v() const { return (*this)[1]; }

    /// z of the three-dimensional cross product: x * other.y - y * other.x. Positive when `other` lies anticlockwise.
    T crossZ(const CadVector2d& other) const;
    /// This vector turned by +90 degrees: (-y, x).
    CadVector2d orthogonalVector() const { return CadVector2d(-y(), x()); }

    /// Multiplies every component by GetConversionFactor(from, to); in the float instance in double, rounded once.
    /// Nothing happens when the units are the same or either is CADUNITS_NONE.
    void convertUnits(CADUNITS from, CADUNITS to);
};

template <class T>
inline T CadVector2d<T>::crossZ(const CadVector2d& other) const
{
    using cadgeom::detail::Product;
    return Product(x(), other.y()) - Product(y(), other.x());
}

template <class T>
inline void CadVector2d<T>::convertUnits(CADUNITS from, CADUNITS to)
{
    cadgeom::detail::ConvertCoordinates(this->data(), 2, from, to);
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CadVector2d<float>;
extern template class CADGEOM_API CadVector2d<double>;

CADGEOM_FP_END
