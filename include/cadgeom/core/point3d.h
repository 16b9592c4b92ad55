#pragma once
/// @file
/// `CadPoint3d`, a three-dimensional point with named coordinates, and its distance to planes.

#include <cadgeom/core/point.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector3d.h>

CADGEOM_FP_BEGIN

/// A point in space; adds names to CadPoint<T, 3> and no data. A plane is given by a point and a normal of any length.
template <class T>
class CADGEOM_API CadPoint3d : public CadPoint<T, 3> {
public:
    using Base = CadPoint<T, 3>;

    /// Leaves the coordinates uninitialised.
    CadPoint3d() = default;
    constexpr CadPoint3d(T x, T y, T z) : Base(cadgeom::detail::ConstantTag{}, x, y, z) {}
    CadPoint3d(const Base& other) : Base(other) {}

    void assign(T x, T y, T z) { set(x, y, z); }
    void assign(const Base& other) { Base::assign(other); }
    void set(T x, T y, T z)
    {
        (*this)[0] = x;
        (*this)[1] = y;
        (*this)[2] = z;
    }

    T& x() { return (*this)[0]; }
    T x() const { return (*this)[0]; }
    T& y() { return (*this)[1]; }
    T y() const { return (*this)[1]; }
    T& z() { return (*this)[2]; }
    T z() const { return (*this)[2]; }

    /// (x, y).
    CadPoint2d<T> get2d() const { return CadPoint2d<T>(x(), y()); }

    /// Squared distance to the plane through `origin` with `normal`. With |normal|^2 <= epsilon()^2 (1e-12 for double,
    /// 1e-8 for float) it is the squared difference in z.
    T distanceSquaredToPlane(const CadPoint3d& origin, const CadVector3d<T>& normal) const;
    /// Foot of the perpendicular on the plane through `origin` with `normal`. A zero normal gives non-finite
    /// coordinates.
    CadPoint3d projectOntoPlane(const CadPoint3d& origin, const CadVector3d<T>& normal) const;

    /// As CadVector2d::convertUnits.
    void convertUnits(CADUNITS from, CADUNITS to);
};

template <class T>
inline T CadPoint3d<T>::distanceSquaredToPlane(const CadPoint3d& origin, const CadVector3d<T>& normal) const
{
    using cadgeom::detail::Product;
    const T squared = normal.lengthSquared();
    const CadVector<T, 3> offset = *this - origin;
    if (squared <= cadgeom::detail::Tolerance<T>::squaredEpsilon()) {
        return Product(offset[2], offset[2]);
    }
    const T height = normal.dot(offset);
    return Product(height, height) / squared;
}

template <class T>
inline CadPoint3d<T> CadPoint3d<T>::projectOntoPlane(const CadPoint3d& origin, const CadVector3d<T>& normal) const
{
    return *this - normal * (normal.dot(*this - origin) / normal.lengthSquared());
}

template <class T>
inline void CadPoint3d<T>::convertUnits(CADUNITS from, CADUNITS to)
{
    cadgeom::detail::ConvertCoordinates(this->data(), 3, from, to);
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CadPoint3d<float>;
extern template class CADGEOM_API CadPoint3d<double>;

CADGEOM_FP_END
