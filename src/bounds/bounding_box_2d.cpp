#include <cadgeom/bounds/bounding_box_2d.h>

#include "bounds/box_extent.h"
#include "bounds/slabs.h"

#include <cadgeom/core/archive_records.h>

#include <utility>

using cadgeom::detail::Tolerance;

template <class T>
bool CBoundingBox2d<T>::IntersectWithBoundingBox(const CBoundingBox2d& box)
{
    return cadgeom::detail::ClipBox<2>(m_min.data(), m_max.data(), box.m_min.data(), box.m_max.data());
}

template <class T>
bool CBoundingBox2d<T>::LineSegmentIntersects(const CadPoint2d<T>& start, const CadPoint2d<T>& end) const
{
    const CadVector2d<T> direction = end - start;
    const cadgeom::detail::SlabCrossing<2, T> crossing(m_min.data(), m_max.data(), start.data(), direction.data());
    return crossing.Hits() && crossing.Near() <= T(1) && crossing.Far() >= T(0);
}

template <class T>
bool CBoundingBox2d<T>::RayPierce(const CadPoint2d<T>& origin, const CadVector2d<T>& direction, T* tNear, T* tFar,
                                  CadPoint2d<T>* entry, CadPoint2d<T>* exit) const
{
    return cadgeom::detail::PierceBox<2, T, CadPoint2d<T>>(m_min, m_max, origin, direction, {tNear, tFar, entry, exit});
}

template <class T>
void CBoundingBox2d<T>::GetCornerPoints(CadPoint2d<T>* corners) const
{
    cadgeom::detail::WriteCorners<2>(m_min, m_max, corners);
}

template <class T>
void CBoundingBox2d<T>::GetLineSegments(CadPoint2d<T>* starts, CadPoint2d<T>* ends) const
{
    starts[0] = ends[3] = m_min;
    starts[1] = ends[0] = CadPoint2d<T>(m_max[0], m_min[1]);
    starts[2] = ends[1] = m_max;
    starts[3] = ends[2] = CadPoint2d<T>(m_min[0], m_max[1]);
}

template <class T>
void CBoundingBox2d<T>::Expand(T factor)
{
    if (!IsEmpty()) {
        cadgeom::detail::ExpandBox<2>(m_min.data(), m_max.data(), factor);
    }
}

template <class T>
void CBoundingBox2d<T>::ExpandByDistance(T distance)
{
    if (!IsEmpty()) {
        cadgeom::detail::ExpandBoxByDistance<2>(m_min.data(), m_max.data(), distance);
    }
}

template <class T>
void CBoundingBox2d<T>::ExpandByDistance(T distance, EUvAxis axis)
{
    if (!IsEmpty()) {
        m_min[axis] -= distance;
        m_max[axis] += distance;
    }
}

template <class T>
EBoundingBoxPointLocation CBoundingBox2d<T>::ClassifyPointLocation(const CadPoint2d<T>& point, T tolerance)
{
    return cadgeom::detail::ClassifyPoint<2>(m_min.data(), m_max.data(), point.data(), tolerance);
}

template <class T>
void CBoundingBox2d<T>::Translate(const CadVector2d<T>& displacement)
{
    if (!IsEmpty()) {
        m_min += displacement;
        m_max += displacement;
    }
}

template <class T>
void CBoundingBox2d<T>::Scale(const CadVector2d<T>& factors)
{
    if (IsEmpty()) {
        return;
    }
    for (int i = 0; i < 2; ++i) {
        m_min[i] *= factors[i];
        m_max[i] *= factors[i];
        if (factors[i] < T(0)) {
            std::swap(m_min[i], m_max[i]);
        }
    }
}

template <class T>
void CBoundingBox2d<T>::Scale(T factor)
{
    Scale(CadVector2d<T>(factor, factor));
}

template <class T>
bool CBoundingBox2d<T>::IsAlmostEqual(const CBoundingBox2d& box) const
{
    return cadgeom::detail::BoxesDifferAtMost<2>(m_min.data(), m_max.data(), box.m_min.data(), box.m_max.data(),
                                                 Tolerance<T>::epsilon());
}

template <class T>
void CBoundingBox2d<T>::Serialize(CArchive& archive)
{
    m_min.serialize(archive);
    m_max.serialize(archive);
}

template class CBoundingBox2d<float>;
template class CBoundingBox2d<double>;
