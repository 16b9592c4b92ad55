#include <cadgeom/transform/points_transform.h>

template <class T>
void PointsTransformTo(CadPoint3d<T>* points, std::uint64_t count, const CCadTransform& transform)
{
    transform.aaforw(points, count);
}

template <class T>
void PointsTransformFrom(CadPoint3d<T>* points, std::uint64_t count, const CCadTransform& transform)
{
    transform.aaback(points, count);
}

template CADGEOM_API void PointsTransformTo(CadPoint3d<float>*, std::uint64_t, const CCadTransform&);
template CADGEOM_API void PointsTransformTo(CadPoint3d<double>*, std::uint64_t, const CCadTransform&);
template CADGEOM_API void PointsTransformFrom(CadPoint3d<float>*, std::uint64_t, const CCadTransform&);
template CADGEOM_API void PointsTransformFrom(CadPoint3d<double>*, std::uint64_t, const CCadTransform&);
