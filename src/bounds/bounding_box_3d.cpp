#include <cadgeom/bounds/bounding_box_3d.h>

#include "bounds/box_extent.h"

#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/core/archive_records.h>
#include <cadgeom/transform/transform.h>

using cadgeom::detail::Tolerance;

template <class T>
CBoundingBox3d<T>::CBoundingBox3d(const COrientedBox3d<T>& box) : CBoundingBox3d()
{
    CheckOrientedBox(box);
}

template <class T>
void CBoundingBox3d<T>::CheckOrientedBox(const COrientedBox3d<T>& box)
{
    if (box.IsEmpty()) {
        return;
    }
    CadPoint3d<T> corners[8];
    box.GetCornerPoints(corners);
    for (const CadPoint3d<T>& corner : corners) {
        CheckPoint(corner);
    }
}

template <class T>
bool CBoundingBox3d<T>::IntersectWithBoundingBox(const CBoundingBox3d& box)
{
    return cadgeom::detail::ClipBox<3>(m_min.data(), m_max.data(), box.m_min.data(), box.m_max.data());
}

template <class T>
bool CBoundingBox3d<T>::IsEqual(const CBoundingBox3d& box, T tolerance) const
{
    if (IsEmpty() || box.IsEmpty()) {
        return IsEmpty() && box.IsEmpty();
    }
    return cadgeom::detail::BoxesDifferAtMost<3>(m_min.data(), m_max.data(), box.m_min.data(), box.m_max.data(),
                                                 tolerance);
}

template <class T>
bool CBoundingBox3d<T>::IsAlmostEqual(const CBoundingBox3d& box) const
{
    return cadgeom::detail::BoxesDifferAtMost<3>(m_min.data(), m_max.data(), box.m_min.data(), box.m_max.data(),
                                                 Tolerance<T>::epsilon());
}

template <class T>
EBoundingBoxPointLocation CBoundingBox3d<T>::ClassifyPointLocation(const CadPoint3d<T>& point, T tolerance)
{
    return cadgeom::detail::ClassifyPoint<3>(m_min.data(), m_max.data(), point.data(), tolerance);
}

template <class T>
void CBoundingBox3d<T>::Expand(T factor)
{
    if (!IsEmpty()) {
        cadgeom::detail::ExpandBox<3>(m_min.data(), m_max.data(), factor);
    }
}

template <class T>
void CBoundingBox3d<T>::ExpandByDistance(T distance)
{
    if (!IsEmpty()) {
        cadgeom::detail::ExpandBoxByDistance<3>(m_min.data(), m_max.data(), distance);
    }
}

template <class T>
void CBoundingBox3d<T>::ExpandByDistance(T distance, EAxis axis)
{
    if (!IsEmpty()) {
        m_min[axis] -= distance;
        m_max[axis] += distance;
    }
}

template <class T>
void CBoundingBox3d<T>::Translate(const CadVector3d<T>& displacement)
{
    if (!IsEmpty()) {
        m_min += displacement;
        m_max += displacement;
    }
}

template <class T>
void CBoundingBox3d<T>::Scale(const CadVector3d<T>& factors)
{
    if (IsEmpty()) {
        return;
    }
    for (int i = 0; i < 3; ++i) {
        m_min[i] *= factors[i];
        m_max[i] *= factors[i];
    }
}

template <class T>
void CBoundingBox3d<T>::Scale(T factor)
{
    Scale(CadVector3d<T>(factor, factor, factor));
}

template <class T>
void CBoundingBox3d<T>::TransformTo(const CCadTransform& transform)
{
    if (IsEmpty() || transform.IsEmptyTransform()) {
        return;
    }
    COrientedBox3d<T> box(*this, CCadTransform::GetEmptyTransform());
    box.TransformTo(transform);
    *this = CBoundingBox3d(box);
}

template <class T>
void CBoundingBox3d<T>::TransformFrom(const CCadTransform& transform)
{
    if (IsEmpty() || transform.IsEmptyTransform()) {
        return;
    }
    *this = CBoundingBox3d(COrientedBox3d<T>(*this, transform));
}

template <class T>
void CBoundingBox3d<T>::ConvertUnits(CADUNITS from, CADUNITS to)
{
    if (cadgeom::detail::IsConversion(from, to)) {
        Scale(static_cast<T>(GetConversionFactor(from, to)));
    }
}

template <class T>
void CBoundingBox3d<T>::Serialize(CArchive& archive)
{
    m_min.serialize(archive);
    m_max.serialize(archive);
}

// The queries are instantiated where they are defined.
template class CBoundingBox3d<float>;
template class CBoundingBox3d<double>;
