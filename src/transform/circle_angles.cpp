// Circles and ellipses in the local xy plane, and turns of the axes within the coordinate planes.

#include <cadgeom/transform/transform.h>

#include <cmath>

namespace {

using cadgeom::detail::kDegreesPerRadian;
using cadgeom::detail::kRadiansPerDegree;
using Point = CadPoint3d<double>;
using Vector = CadVector3d<double>;

template <class T>
double AngleOf(T x, T y)
{
    const double angle = static_cast<double>(std::atan2(y, x));
    return angle < 0.0 ? angle + cadgeom::detail::kTwoPi : angle;
}

/// Parameter on an ellipse: the coordinate along the longer radius is compressed until the ellipse is a circle of the
/// shorter radius.
template <class T>
double EllipseAngleOf(T x, T y, T radiusX, T radiusY)
{
    constexpr T kNoRadius = cadgeom::detail::Tolerance<T>::epsilon();
    if (radiusY >= radiusX) {
        return radiusY <= kNoRadius ? AngleOf(x, y) : AngleOf(x, y * radiusX / radiusY);
    }
    return radiusX <= kNoRadius ? AngleOf(x, y) : AngleOf(x * radiusY / radiusX, y);
}

template <class Mapped>
Mapped MapToWorld(const CCadTransform& frame, const Mapped& local)
{
    Mapped world;
    frame.aaback(local, world);
    return world;
}

template <class Mapped>
Mapped MapToLocal(const CCadTransform& frame, const Mapped& world)
{
    Mapped local;
    frame.aaforw(world, local);
    return local;
}

} // namespace

CadPoint3d<double> CCadTransform::PointFromAngleRad(double angle, double radius) const
{
    return EllipsePointFromAngleRad(angle, radius, radius);
}

CadPoint3d<double> CCadTransform::PointFromAngleDeg(double angle, double radius) const
{
    return PointFromAngleRad(angle * kRadiansPerDegree, radius);
}

CadVector3d<double> CCadTransform::VectorFromAngleRad(double angle, double radius) const
{
    return EllipseVectorFromAngleRad(angle, radius, radius);
}

CadVector3d<double> CCadTransform::VectorFromAngleDeg(double angle, double radius) const
{
    return VectorFromAngleRad(angle * kRadiansPerDegree, radius);
}

CadPoint3d<double> CCadTransform::EllipsePointFromAngleRad(double angle, double radiusX, double radiusY) const
{
    return MapToWorld(*this, Point(radiusX * std::cos(angle), radiusY * std::sin(angle), 0.0));
}

CadPoint3d<double> CCadTransform::EllipsePointFromAngleDeg(double angle, double radiusX, double radiusY) const
{
    return EllipsePointFromAngleRad(angle * kRadiansPerDegree, radiusX, radiusY);
}

CadVector3d<double> CCadTransform::EllipseVectorFromAngleRad(double angle, double radiusX, double radiusY) const
{
    return MapToWorld(*this, Vector(radiusX * std::cos(angle), radiusY * std::sin(angle), 0.0));
}

CadVector3d<double> CCadTransform::EllipseVectorFromAngleDeg(double angle, double radiusX, double radiusY) const
{
    return EllipseVectorFromAngleRad(angle * kRadiansPerDegree, radiusX, radiusY);
}

template <class T>
double CCadTransform::AngleFromPointRad(const CadPoint3d<T>& point) const
{
    const CadPoint3d<T> local = MapToLocal(*this, point);
    return AngleOf(local.x(), local.y());
}

template <class T>
double CCadTransform::AngleFromPointDeg(const CadPoint3d<T>& point) const
{
    return AngleFromPointRad(point) * kDegreesPerRadian;
}

template <class T>
double CCadTransform::AngleFromVectorRad(const CadVector3d<T>& vector) const
{
    const CadVector3d<T> local = MapToLocal(*this, vector);
    return AngleOf(local.x(), local.y());
}

template <class T>
double CCadTransform::AngleFromEllipsePointRad(const CadPoint3d<T>& point, T radiusX, T radiusY) const
{
    const CadPoint3d<T> local = MapToLocal(*this, point);
    return EllipseAngleOf(local.x(), local.y(), radiusX, radiusY);
}

template <class T>
double CCadTransform::AngleFromEllipsePointDeg(const CadPoint3d<T>& point, T radiusX, T radiusY) const
{
    return AngleFromEllipsePointRad(point, radiusX, radiusY) * kDegreesPerRadian;
}

template <class T>
double CCadTransform::AngleFromEllipseVectorRad(const CadVector3d<T>& vector, T radiusX, T radiusY) const
{
    const CadVector3d<T> local = MapToLocal(*this, vector);
    return EllipseAngleOf(local.x(), local.y(), radiusX, radiusY);
}

template <class T>
double CCadTransform::AngleFromEllipseVectorDeg(const CadVector3d<T>& vector, T radiusX, T radiusY) const
{
    return AngleFromEllipseVectorRad(vector, radiusX, radiusY) * kDegreesPerRadian;
}

bool CCadTransform::rotmat(double angleDeg)
{
    const double angle = angleDeg * kRadiansPerDegree;
    return rotmat(Vector(std::cos(angle), std::sin(angle), 0.0), false);
}

bool CCadTransform::rotmat(const CadVector3d<double>& direction, bool isWorld)
{
    Vector inPlane = isWorld ? MapToLocal(*this, direction) : direction;
    if (inPlane.x() == 0.0 && inPlane.y() == 0.0) {
        return false;
    }
    inPlane.z() = 0.0;
    m_axis[0] = MapToWorld(*this, inPlane);
    m_axis[0].normalize();
    m_axis[1] = m_axis[2].crossAndNormalize(m_axis[0]);
    ClearFlag(eFlagsValid);
    return true;
}

bool CCadTransform::rotmat(double angleDeg, int axis)
{
    const double angle = angleDeg * kRadiansPerDegree;
    return math_for_rotmat(*this, std::cos(angle), std::sin(angle), axis);
}

bool CCadTransform::math_for_rotmat(CCadTransform& transform, double cosine, double sine, int axis)
{
    constexpr double kNothing = 1e-8;
    if (axis < 0 || axis > 5) {
        return false;
    }
    if (std::fabs(cosine) < kNothing && std::fabs(sine) < kNothing) {
        cosine = 1.0;
    }
    const int i = axis % 3;
    const int j = (i + 1) % 3;
    const int k = (i + 2) % 3;
    Vector turn[3] = {Vector::zero(), Vector::zero(), Vector::zero()};
    turn[i][i] = cosine;
    turn[i][j] = sine;
    turn[j][i] = -sine;
    turn[j][j] = cosine;
    turn[k][k] = 1.0;

    Vector turned[3];
    for (int r = 0; r < 3; ++r) {
        if (turn[r].length() > 0.0) {
            turn[r].normalize();
        }
        turned[r] = Vector::zero();
        for (int m = 0; m < 3; ++m) {
            turned[r] += transform.m_axis[m] * turn[r][m];
        }
    }
    transform.setAxesXYZ(turned[0], turned[1], turned[2]);
    return false;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API double CCadTransform::AngleFromPointRad(const CadPoint3d<T>&) const;                          \
    template CADGEOM_API double CCadTransform::AngleFromPointDeg(const CadPoint3d<T>&) const;                          \
    template CADGEOM_API double CCadTransform::AngleFromVectorRad(const CadVector3d<T>&) const;                        \
    template CADGEOM_API double CCadTransform::AngleFromEllipsePointRad(const CadPoint3d<T>&, T, T) const;             \
    template CADGEOM_API double CCadTransform::AngleFromEllipsePointDeg(const CadPoint3d<T>&, T, T) const;             \
    template CADGEOM_API double CCadTransform::AngleFromEllipseVectorRad(const CadVector3d<T>&, T, T) const;           \
    template CADGEOM_API double CCadTransform::AngleFromEllipseVectorDeg(const CadVector3d<T>&, T, T) const

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
