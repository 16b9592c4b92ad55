#include <cadgeom/intersect/planar_queries.h>

template <class T>
bool PlanesAreCoplanar(const CadPoint3d<T>& point1, const CadVector3d<T>& normal1, const CadPoint3d<T>& point2,
                       const CadVector3d<T>& normal2, T distanceTolerance, T angleToleranceDegrees)
{
    return normal1.isParallel(normal2, angleToleranceDegrees) &&
           point1.distanceSquaredToPlane(point2, normal2) <= distanceTolerance * distanceTolerance;
}

template <class T>
bool ComputeCurvature(const CadVector3d<T>& firstDerivative, const CadVector3d<T>& secondDerivative, T& curvature)
{
    const T speed = firstDerivative.length();
    const T cubedSpeed = speed * speed * speed;
    const T bend = firstDerivative.cross(secondDerivative).length();
    if (cubedSpeed <= bend * static_cast<T>(cadgeom::detail::kSingleEpsilon)) {
        return false;
    }
    curvature = bend / cubedSpeed;
    return true;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool PlanesAreCoplanar(const CadPoint3d<T>&, const CadVector3d<T>&, const CadPoint3d<T>&,     \
                                                const CadVector3d<T>&, T, T);                                          \
    template CADGEOM_API bool ComputeCurvature(const CadVector3d<T>&, const CadVector3d<T>&, T&)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
