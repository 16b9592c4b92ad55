#pragma once
/// @file
/// `CadVector3d`, a three-dimensional vector with named components, and the unit axes.

#include <cadgeom/core/angles.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector.h>
#include <cadgeom/core/vector2d.h>

CADGEOM_FP_BEGIN

/// A vector in space; adds names to CadVector<T, 3> and no data. i, j and k are other names of x, y and z.
template <class T>
class CADGEOM_API CadVector3d : public CadVector<T, 3> {
public:
    using Base = CadVector<T, 3>;

    /// Leaves the components uninitialised.
    CadVector3d() = default;
    constexpr CadVector3d(T x, T y, T z) : Base(cadgeom::detail::ConstantTag{}, x, y, z) {}
    CadVector3d(const Base& other) : Base(other) {}

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
    T& i() { return (*this)[0]; }
    T i() const { return (*this)[0]; }
    T& j() { return (*this)[1]; }
    T j() const { return (*this)[1]; }
    T& k() { return (*this)[2]; }
    T k() const { return (*this)[2]; }

    /// The unit vectors (1, 0, 0), (0, 1, 0) and (0, 0, 1): one object each for a scalar type.
    static const CadVector3d& xAxis() { return s_xAxis; }
    static const CadVector3d& yAxis() { return s_yAxis; }
    static const CadVector3d& zAxis() { return s_zAxis; }

    /// (x, y).
    CadVector2d<T> get2d() const { return CadVector2d<T>(x(), y()); }

    /// The component of this vector in the plane with `normal`, which need not be unit length: v - (v.n / n.n) * n.
    /// A zero normal gives non-finite components.
    CadVector3d projectOntoPlane(const CadVector3d& normal) const;
    /// Angle to the plane with `normal`, in radians: |pi/2 - GetAngleBetweenRad(*this, normal)|.
    T angleToPlaneRad(const CadVector3d& normal) const;

    /// As CadVector2d::convertUnits.
    void convertUnits(CADUNITS from, CADUNITS to);

private:
    static const CadVector3d s_xAxis;
    static const CadVector3d s_yAxis;
    static const CadVector3d s_zAxis;
};

template <class T>
inline CadVector3d<T> CadVector3d<T>::projectOntoPlane(const CadVector3d& normal) const
{
    return *this - normal * (this->dot(normal) / normal.lengthSquared());
}

template <class T>
inline T CadVector3d<T>::angleToPlaneRad(const CadVector3d& normal) const
{
    const T angle = GetAngleBetweenRad<T, 3>(*this, normal);
    return static_cast<T>(std::fabs(cadgeom::detail::kHalfPi - static_cast<double>(angle)));
}

template <class T>
inline void CadVector3d<T>::convertUnits(CADUNITS from, CADUNITS to)
{
    cadgeom::detail::ConvertCoordinates(this->data(), 3, from, to);
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CadVector3d<float>;
extern template class CADGEOM_API CadVector3d<double>;

CADGEOM_FP_END
