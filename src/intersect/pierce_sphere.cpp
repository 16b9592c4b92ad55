#include <cadgeom/intersect/pierce.h>

// The foot of the centre on the line, and half the chord to either side of it. The distance of the foot is rounded as a
// distance before it is squared again.

template <class T>
bool PierceSphere(const CadPoint3d<T>& centre, T radius, const CadPoint3d<T>& origin, const CadVector3d<T>& direction,
                  T& t1, T& t2)
{
    const T nearest = centre.projectOntoLineParam(origin, direction);
    const T distance = centre.distance(origin + direction * nearest);
    const T squaredHalfChord = radius * radius - distance * distance;
    const T halfChord = cadgeom::detail::Sqrt(squaredHalfChord) / direction.length();
    const bool isMiss = squaredHalfChord <= T(0);
    t1 = isMiss ? nearest : nearest - halfChord;
    t2 = isMiss ? nearest : nearest + halfChord;
    return !isMiss;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool PierceSphere(const CadPoint3d<T>&, T, const CadPoint3d<T>&, const CadVector3d<T>&, T&, T&)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
