#pragma once
/// @file
/// Points in space as planar points of a fitted plane, mapped where they are used: a fit passes over them a few times,
/// and mapping them again costs less than storing them.

#include <cadgeom/transform/transform.h>

#include "fit/moments.h"
#include "fit/point_source.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cadgeom::detail {

/// The frame on a plane: its z axis is the normal.
class PlaneFrame {
public:
    PlaneFrame(const CadVector3d<double>& normal, const CadPoint3d<double>& origin)
        : m_transform(normal, origin),
          m_isIdentityRotation(m_transform.IsIdentityRotation()),
          m_originXY(Pair::Load(m_transform.GetTranslate().data())),
          m_originZ(m_transform.GetTranslate().z()),
          m_ofX(m_transform.xAxis().x(), m_transform.yAxis().x()),
          m_ofY(m_transform.xAxis().y(), m_transform.yAxis().y()),
          m_ofZ(m_transform.xAxis().z(), m_transform.yAxis().z())
    {}

    /// x and y of CCadTransform::aaforw(point). The origin lies in the plane, so z is of no use to anyone.
    template <class T>
    Pair ToPlane(const CadPoint3d<T>& point) const
    {
        const Pair d = Pair::Load(point.data()) - m_originXY;
        if (m_isIdentityRotation) {
            return d;
        }
        const double z = static_cast<double>(point.z()) - m_originZ;
        return Pair(0.0) + d.FirstTwice() * m_ofX + d.SecondTwice() * m_ofY + Pair(z) * m_ofZ;
    }

    /// The position of (x, y, 0) in space.
    CadPoint3d<double> ToSpace(const CadPoint<double, 2>& point) const
    {
        CadPoint3d<double> position(point[0], point[1], 0.0);
        m_transform.aaback(position, position);
        return position;
    }

    /// The direction of (x, y, 0) in space.
    CadVector3d<double> ToSpace(const CadVector<double, 2>& vector) const
    {
        CadVector3d<double> direction(vector[0], vector[1], 0.0);
        m_transform.aaback(direction, direction);
        return direction;
    }

    /// Distance of the frame's origin from the world's.
    double OriginDistance() const { return m_transform.GetTranslateVector().length(); }

private:
    CCadTransform m_transform;
    bool m_isIdentityRotation;
    Pair m_originXY;
    double m_originZ;
    Pair m_ofX; ///< what a step along the world's x axis is in the plane; likewise y and z
    Pair m_ofY;
    Pair m_ofZ;
};

/// Points in space as the planar points of a frame.
template <class T>
class FramedPoints {
public:
    /// @param planeError  root mean square distance of the points from the plane
    FramedPoints(const CadPoint3d<T>* points, std::uint64_t count, const PlaneFrame& frame, double planeError)
        : m_points(points),
          m_count(count),
          m_frame(frame),
          m_reach(frame.OriginDistance() + planeError * std::sqrt(static_cast<double>(count)))
    {}

    const CadPoint3d<T>* Data() const { return m_points; }
    std::uint64_t Count() const { return m_count; }
    Pair operator[](std::uint64_t i) const { return m_frame.ToPlane(m_points[i]); }

    /// The weight of the last place of the coordinates in space, of points with planar coordinates of this size, at
    /// most: a rounding there reaches both coordinates in the plane.
    Pair UnitInLastPlace(Pair magnitude) const
    {
        const double reach = m_reach + std::max(magnitude.First(), magnitude.Second());
        return Pair(reach * static_cast<double>(std::numeric_limits<T>::epsilon()));
    }

private:
    const CadPoint3d<T>* m_points;
    std::uint64_t m_count;
    const PlaneFrame& m_frame;
    double m_reach; ///< distance of a point from the world's origin, beyond what it has in the plane
};

} // namespace cadgeom::detail
