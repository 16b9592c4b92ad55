#include <cadgeom/intersect/pierce.h>

// Seen along the axis the cylinder is a circle and the line is a line with the same parameter, unless it runs along the
// axis itself.

namespace {

using cadgeom::detail::Absolute;

template <class T>
constexpr T kTolerance = static_cast<T>(cadgeom::detail::kSingleEpsilon);

/// Whether the line lies on the surface, for lines along the axis.
template <class T>
bool PierceAlongAxis(const CadPoint3d<T>& base, const CadVector3d<T>& axis, T radius, const CadPoint3d<T>& origin,
                     const CadVector3d<T>& direction, T& t1, T& t2)
{
    const T advance = axis.dot(direction);
    const T t = Absolute(advance) > kTolerance<T> ? axis.dot(base - origin) / advance : t1;
    const CadVector3d<T> fromBase = origin + direction * t - base;
    const T excess = fromBase.lengthSquared() - radius * radius;
    t1 = t;
    t2 = t;
    return Absolute(excess) <= kTolerance<T>;
}

} // namespace

template <class T>
bool PierceCylinder(const CadPoint3d<T>& base, const CadVector3d<T>& axis, T radius, const CadPoint3d<T>& origin,
                    const CadVector3d<T>& direction, T& t1, T& t2)
{
    const CadVector3d<T> across = direction.projectOntoPlane(axis);
    if (Absolute(across.x()) <= kTolerance<T> && Absolute(across.y()) <= kTolerance<T> &&
        Absolute(across.z()) <= kTolerance<T>) {
        return PierceAlongAxis(base, axis, radius, origin, direction, t1, t2);
    }
    const CadPoint3d<T> originAcross = origin.projectOntoPlane(base, axis);
    const T nearest = base.projectOntoLineParam(originAcross, across);
    const T squaredDistance = (originAcross + across * nearest).distanceSquared(base);
    const T squaredHalfChord = radius * radius - squaredDistance;
    const T halfChord = cadgeom::detail::Sqrt(squaredHalfChord) / across.length();
    const bool isHit = squaredDistance < radius * radius;
    t1 = isHit ? nearest - halfChord : nearest;
    t2 = isHit ? nearest + halfChord : nearest;
    return isHit;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool PierceCylinder(const CadPoint3d<T>&, const CadVector3d<T>&, T, const CadPoint3d<T>&,     \
                                             const CadVector3d<T>&, T&, T&)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
