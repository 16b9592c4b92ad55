// Vertices, measures, mappings and archive records of polylines.

#include "polyline/vertex_equality.h"
#include "polyline/vertex_extent.h"

#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/core/point_sequence.h>
#include <cadgeom/polyline/polyline3d.h>
#include <cadgeom/transform/points_transform.h>

namespace {

using cadgeom::detail::Tolerance;
using cadgeom::detail::VerticesAreEqual;

} // namespace

template <class T>
bool CCadPolyline3d<T>::Close()
{
    const std::int64_t count = GetNumPoints();
    if (count < 2 || VerticesAreEqual(GetPoint(count - 1), GetPoint(0), Tolerance<T>::epsilon())) {
        return false;
    }
    AddPoint(GetPoint(0));
    return true;
}

template <class T>
T CCadPolyline3d<T>::ComputeLength() const
{
    return PolylineGetLength<T, 3>(this->GetData(), static_cast<std::uint64_t>(GetNumPoints()));
}

template <class T>
bool CCadPolyline3d<T>::ComputeBoundingBox(CBoundingBox3d<T>& box) const
{
    const std::int64_t count = GetNumPoints();
    box.Reset();
    if (count != 0) {
        const cadgeom::detail::VertexExtent<T> extent(GetPoint(0).data(), static_cast<std::uint64_t>(count));
        const T* const min = extent.Min();
        const T* const max = extent.Max();
        box.SetMinMax({min[0], min[1], min[2]}, {max[0], max[1], max[2]});
    }
    return !box.IsEmpty();
}

template <class T>
bool CCadPolyline3d<T>::Drop(const CadPoint3d<T>& point, CadPoint3d<T>& out) const
{
    const CadPoint3d<T>* const vertices = this->GetData();
    const std::int64_t count = GetNumPoints();
    if (count == 0) {
        return false;
    }
    CadPoint3d<T> nearest = vertices[0];
    T smallest = T(0);
    for (std::int64_t i = 1; i < count; ++i) {
        CadPoint3d<T> foot;
        T squaredDistance;
        point.projectOntoLineSegment(vertices[i - 1], vertices[i], foot, squaredDistance);
        if (i == 1 || squaredDistance < smallest) {
            nearest = foot;
            smallest = squaredDistance;
        }
    }
    out = nearest;
    return true;
}

template <class T>
void CCadPolyline3d<T>::TransformTo(const CCadTransform& transform)
{
    PointsTransformTo(this->GetData(), static_cast<std::uint64_t>(GetNumPoints()), transform);
}

template <class T>
void CCadPolyline3d<T>::TransformFrom(const CCadTransform& transform)
{
    PointsTransformFrom(this->GetData(), static_cast<std::uint64_t>(GetNumPoints()), transform);
}

template <class T>
void CCadPolyline3d<T>::Translate(const CadVector3d<double>& displacement)
{
    PointsTranslate(this->GetData(), static_cast<std::uint64_t>(GetNumPoints()), displacement);
}

template <class T>
void CCadPolyline3d<T>::Scale(double factor)
{
    PointsScale(this->GetData(), static_cast<std::uint64_t>(GetNumPoints()), factor);
}

template <class T>
void CCadPolyline3d<T>::ConvertUnits(CADUNITS from, CADUNITS to)
{
    PointsConvertUnits(this->GetData(), static_cast<std::uint64_t>(GetNumPoints()), from, to);
}

template <class T>
CArchive& operator<<(CArchive& archive, const CCadPolyline3d<T>& polyline)
{
    const auto count = static_cast<std::uint64_t>(polyline.GetNumPoints());
    archive.WriteCount(count);
    cadgeom::detail::StoreRaw(archive, polyline.GetData(), count);
    return archive;
}

template <class T>
CArchive& operator>>(CArchive& archive, CCadPolyline3d<T>& polyline)
{
    polyline.ResizeForLoading(archive, archive.ReadCount());
    cadgeom::detail::LoadRaw(archive, polyline.GetData(), static_cast<std::uint64_t>(polyline.GetNumPoints()),
                             archive.m_strFileName.c_str());
    return archive;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template class CCadPolyline3d<T>;                                                                                  \
    template CADGEOM_API CArchive& operator<<(CArchive&, const CCadPolyline3d<T>&);                                    \
    template CADGEOM_API CArchive& operator>>(CArchive&, CCadPolyline3d<T>&);                                          \
    template CADGEOM_API void SerializeElements(CArchive&, CCadPolyline3d<T>*, std::int64_t)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
