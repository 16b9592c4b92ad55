// Positions, directions and lengths between local and world coordinates.

#include <cadgeom/transform/transform.h>

#include "transform/frame_of_transform.h"
#include "transform/map_arrays.h"

#include <cmath>

using cadgeom::detail::Frame;
using cadgeom::detail::Round;
using cadgeom::detail::Triple;
using cadgeom::detail::Widen;

namespace {

bool IsBent(const Frame& frame)
{
    return frame.isScaled && !frame.isUniform;
}

} // namespace

template <class T>
void CCadTransform::aaback(const CadPoint3d<T>& local, CadPoint3d<T>& world) const
{
    const Frame frame = FrameToWorld();
    Round(PointToWorld(frame, Widen(local.data()), frame.isScaled, frame.isRotated, frame.isMoved), world.data());
}

template <class T>
void CCadTransform::aaforw(const CadPoint3d<T>& world, CadPoint3d<T>& local) const
{
    const Frame frame = FrameToLocal();
    Round(PointToLocal(frame, Widen(world.data()), frame.isScaled, frame.isRotated), local.data());
}

template <class T>
void CCadTransform::aaback(const CadVector3d<T>& local, CadVector3d<T>& world) const
{
    const Frame frame = FrameToWorld();
    Round(DirectionToWorld(frame, Widen(local.data()), IsBent(frame), frame.isRotated), world.data());
}

template <class T>
void CCadTransform::aaforw(const CadVector3d<T>& world, CadVector3d<T>& local) const
{
    const Frame frame = FrameToLocal();
    Round(DirectionToLocal(frame, Widen(world.data()), IsBent(frame), frame.isRotated), local.data());
}

template <class T>
void CCadTransform::aaback(int isVector, const T* local, T* world) const
{
    if (local == nullptr || world == nullptr) {
        return;
    }
    const Frame frame = FrameToWorld();
    const Triple v = Widen(local);
    Round(isVector != 0 ? DirectionToWorld(frame, v, IsBent(frame), frame.isRotated)
                        : PointToWorld(frame, v, frame.isScaled, frame.isRotated, frame.isMoved),
          world);
}

template <class T>
void CCadTransform::aaforw(int isVector, const T* world, T* local) const
{
    if (local == nullptr || world == nullptr) {
        return;
    }
    const Frame frame = FrameToLocal();
    const Triple v = Widen(world);
    Round(isVector != 0 ? DirectionToLocal(frame, v, IsBent(frame), frame.isRotated)
                        : PointToLocal(frame, v, frame.isScaled, frame.isRotated),
          local);
}

template <class T>
void CCadTransform::aaback(CadPoint3d<T>* points, std::uint64_t count) const
{
    if (points != nullptr && !IsEmptyTransform() && count != 0) {
        cadgeom::detail::PointsToWorld(points->data(), count, FrameToWorld());
    }
}

template <class T>
void CCadTransform::aaforw(CadPoint3d<T>* points, std::uint64_t count) const
{
    if (points != nullptr && !IsEmptyTransform() && count != 0) {
        cadgeom::detail::PointsToLocal(points->data(), count, FrameToLocal());
    }
}

template <class T>
void CCadTransform::aaback(CadVector3d<T>* vectors, std::uint64_t count) const
{
    if (vectors != nullptr && !IsEmptyTransform() && count != 0) {
        const Frame frame = FrameToWorld();
        cadgeom::detail::DirectionsToWorld(vectors->data(), count, frame, IsBent(frame));
    }
}

template <class T>
void CCadTransform::aaforw(CadVector3d<T>* vectors, std::uint64_t count) const
{
    if (vectors != nullptr && !IsEmptyTransform() && count != 0) {
        const Frame frame = FrameToLocal();
        cadgeom::detail::DirectionsToLocal(vectors->data(), count, frame, IsBent(frame));
    }
}

bool CCadTransform::MapsLengths() const
{
    EnsureFlags();
    return !IsFlagSet(eNonOrthoNormal) && (IsFlagSet(eUnityScale) || IsUniformScale());
}

bool CCadTransform::aaback(double local, double& world) const
{
    const bool isMapped = MapsLengths();
    if (isMapped) {
        world = IsFlagSet(eUnityScale) ? local : local * m_scale.x();
    }
    return isMapped;
}

bool CCadTransform::aaforw(double world, double& local) const
{
    const bool isMapped = MapsLengths();
    if (isMapped) {
        local = IsFlagSet(eUnityScale) ? world : world / m_scale.x();
    }
    return isMapped;
}

bool CCadTransform::aaback(float local, float& world) const
{
    double mapped = 0.0;
    const bool isMapped = aaback(static_cast<double>(local), mapped);
    if (isMapped) {
        world = static_cast<float>(mapped);
    }
    return isMapped;
}

bool CCadTransform::aaforw(float world, float& local) const
{
    double mapped = 0.0;
    const bool isMapped = aaforw(static_cast<double>(world), mapped);
    if (isMapped) {
        local = static_cast<float>(mapped);
    }
    return isMapped;
}

namespace {

/// Where the line through `point` along `direction` meets the plane where coordinate `plane` is zero.
bool MeetPlane(const CadPoint3d<double>& point, const CadVector3d<double>& direction, int plane,
               CadPoint3d<double>& out)
{
    constexpr double kParallelToPlane = 1e-5;
    if (std::fabs(direction[plane]) <= kParallelToPlane) {
        return false;
    }
    const double t = -point[plane] / direction[plane];
    CadPoint3d<double> meeting;
    for (int k = 0; k < 3; ++k) {
        meeting[k] = k == plane ? 0.0 : point[k] + t * direction[k];
    }
    out = meeting;
    return true;
}

bool IsPlane(int plane)
{
    return plane >= 0 && plane <= 2;
}

} // namespace

bool CCadTransform::LineInterPlane(const CadPoint3d<double>& point, const CadVector3d<double>& direction, int plane,
                                   CadPoint3d<double>& out, bool toWorld) const
{
    CadVector3d<double> localDirection(direction);
    localDirection.normalize();
    aaforw(localDirection, localDirection);
    CadPoint3d<double> localPoint;
    aaforw(point, localPoint);
    if (!IsPlane(plane) || !MeetPlane(localPoint, localDirection, plane, out)) {
        return false;
    }
    if (toWorld) {
        aaback(out, out);
    }
    return true;
}

bool CCadTransform::LineInterPlaneTC(const CadPoint3d<double>& point, const CadVector3d<double>& direction, int plane,
                                     CadPoint3d<double>& out) const
{
    CadVector3d<double> unitDirection(direction);
    unitDirection.normalize();
    return IsPlane(plane) && MeetPlane(point, unitDirection, plane, out);
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API void CCadTransform::aaback(const CadPoint3d<T>&, CadPoint3d<T>&) const;                       \
    template CADGEOM_API void CCadTransform::aaforw(const CadPoint3d<T>&, CadPoint3d<T>&) const;                       \
    template CADGEOM_API void CCadTransform::aaback(const CadVector3d<T>&, CadVector3d<T>&) const;                     \
    template CADGEOM_API void CCadTransform::aaforw(const CadVector3d<T>&, CadVector3d<T>&) const;                     \
    template CADGEOM_API void CCadTransform::aaback(int, const T*, T*) const;                                          \
    template CADGEOM_API void CCadTransform::aaforw(int, const T*, T*) const;                                          \
    template CADGEOM_API void CCadTransform::aaback(CadPoint3d<T>*, std::uint64_t) const;                              \
    template CADGEOM_API void CCadTransform::aaforw(CadPoint3d<T>*, std::uint64_t) const;                              \
    template CADGEOM_API void CCadTransform::aaback(CadVector3d<T>*, std::uint64_t) const;                             \
    template CADGEOM_API void CCadTransform::aaforw(CadVector3d<T>*, std::uint64_t) const

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
