#pragma once
/// @file
/// `CadPoint2d`, a two-dimensional point with named coordinates, and the side of a line that it lies on.

#include <cadgeom/core/point.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector2d.h>

CADGEOM_FP_BEGIN

/// A point in the plane; adds names to CadPoint<T, 2> and no data. u and v are other names of x and y.
template <class T>
class CADGEOM_API CadPoint2d : public CadPoint<T, 2> {
public:
    using Base = CadPoint<T, 2>;

    /// Side of a directed line, y axis up.
    enum LinePointLocation : int {
        eOnLine = 0,
        eLeftOfLine = 1,
        eRightOfLine = 2
    };

    /// Leaves the coordinates uninitialised.
    CadPoint2d() = default;
    CadPoint2d(T x, T y) { set(x, y); }
    CadPoint2d(const Base& other) : Base(other) {}

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

    /// Side of the line through `origin` along `direction` on which this point lies.
    /// @param squaredTolerance  a squared distance: a point whose squared distance to the line is at most this is on it.
    ///                          With 0 only an exact zero of the cross product (or a NaN) is on the line.
    LinePointLocation whichSideOfLine(const CadPoint2d& origin, const CadVector2d<T>& direction,
                                      T squaredTolerance) const;

    /// As CadVector2d::convertUnits.
    void convertUnits(CADUNITS from, CADUNITS to);
};

template <class T>
inline typename CadPoint2d<T>::LinePointLocation
CadPoint2d<T>::whichSideOfLine(const CadPoint2d& origin, const CadVector2d<T>& direction, T squaredTolerance) const
{
    using cadgeom::detail::Product;
    if (squaredTolerance != T(0) && squaredTolerance >= this->distanceSquaredToLine(origin, direction)) {
        return eOnLine;
    }
    const T side = Product(x() - origin.x(), direction.y()) - Product(y() - origin.y(), direction.x());
    if (side > T(0)) {
        return eRightOfLine;
    }
    return side < T(0) ? eLeftOfLine : eOnLine;
}

template <class T>
inline void CadPoint2d<T>::convertUnits(CADUNITS from, CADUNITS to)
{
    cadgeom::detail::ConvertCoordinates(this->data(), 2, from, to);
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CadPoint2d<float>;
extern template class CADGEOM_API CadPoint2d<double>;

CADGEOM_FP_END
