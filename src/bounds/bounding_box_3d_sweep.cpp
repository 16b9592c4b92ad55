#include <cadgeom/bounds/bounding_box_3d.h>

#include <cadgeom/core/components.h>

// A box that moves along a straight line against a box at rest: a slab test in time. On each axis the boxes overlap from
// one parameter to another.

namespace {

using cadgeom::detail::Absolute;
using cadgeom::detail::kLargestSingle;

/// Components of a motion up to this size count as none, in both precisions.
template <class T>
constexpr T kStillMotion = static_cast<T>(cadgeom::detail::kSingleEpsilon);

template <class T>
bool IsStill(const CadVector3d<T>& motion)
{
    for (int axis = 0; axis < 3; ++axis) {
        if (!(Absolute(motion[axis]) <= kStillMotion<T>)) {
            return false;
        }
    }
    return true;
}

/// The parameters for which a moving box overlaps one at rest.
template <class T>
class Sweep {
public:
    Sweep(const CBoundingBox3d<T>& moving, const CBoundingBox3d<T>& resting, T tolerance)
        : m_moving(moving), m_resting(resting)
    {
        if (tolerance != T(0)) {
            m_resting.ExpandByDistance(tolerance);
        }
    }

    /// @return false when the boxes stay apart on an axis without motion; the axes after it are not looked at
    bool Run(const CadVector3d<T>& motion)
    {
        for (int axis = 0; axis < 3; ++axis) {
            if (Absolute(motion[axis]) > kStillMotion<T>) {
                Move(axis, motion[axis]);
            } else if (StaysApart(axis)) {
                return false;
            }
        }
        return true;
    }

    T tEnter = -static_cast<T>(kLargestSingle);
    T tExit = static_cast<T>(kLargestSingle);
    T tFull = -static_cast<T>(kLargestSingle);

private:
    bool StaysApart(int axis) const
    {
        return m_resting.GetMin()[axis] >= m_moving.GetMax()[axis] ||
               m_moving.GetMin()[axis] >= m_resting.GetMax()[axis];
    }

    void Move(int axis, T motion)
    {
        const bool isForward = motion > T(0);
        const CadPoint3d<T>& entered = isForward ? m_resting.GetMin() : m_resting.GetMax();
        const CadPoint3d<T>& left = isForward ? m_resting.GetMax() : m_resting.GetMin();
        const CadPoint3d<T>& front = isForward ? m_moving.GetMax() : m_moving.GetMin();
        const CadPoint3d<T>& back = isForward ? m_moving.GetMin() : m_moving.GetMax();

        const T enter = (entered[axis] - front[axis]) / motion;
        const T leave = (left[axis] - back[axis]) / motion;
        if (enter > tEnter) {
            tEnter = enter;
            tFull = (entered[axis] - back[axis]) / motion;
        }
        tExit = leave < tExit ? leave : tExit;
    }

    const CBoundingBox3d<T>& m_moving;
    CBoundingBox3d<T> m_resting;
};

} // namespace

template <class T>
bool CBoundingBox3d<T>::SweptBoundingBoxIntersects(const CBoundingBox3d& box, const CadVector3d<T>& motion,
                                                   T tolerance) const
{
    if (IsEmpty() || box.IsEmpty() || IsStill(motion)) {
        return false;
    }
    Sweep<T> sweep(*this, box, tolerance);
    return sweep.Run(motion) && sweep.tEnter < sweep.tExit && sweep.tEnter < T(1) && sweep.tExit > T(0);
}

template <class T>
bool CBoundingBox3d<T>::SweptBoundingBoxIntersects(const CBoundingBox3d& box, const CadVector3d<T>& motion, T& tEnter,
                                                   T& tExit, T tolerance) const
{
    T unused;
    return SweptBoundingBoxIntersectsFull(box, motion, tEnter, tExit, unused, tolerance);
}

template <class T>
bool CBoundingBox3d<T>::SweptBoundingBoxIntersectsFull(const CBoundingBox3d& box, const CadVector3d<T>& motion,
                                                       T& tEnter, T& tExit, T& tFull, T tolerance) const
{
    if (IsEmpty() || box.IsEmpty() || IsStill(motion)) {
        return false;
    }
    Sweep<T> sweep(*this, box, tolerance);
    const bool overlapsWhereStill = sweep.Run(motion);
    tEnter = sweep.tEnter;
    tExit = sweep.tExit;
    tFull = sweep.tFull;
    return overlapsWhereStill && sweep.tEnter < sweep.tExit;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool CBoundingBox3d<T>::SweptBoundingBoxIntersects(const CBoundingBox3d<T>&,                  \
                                                                            const CadVector3d<T>&, T) const;           \
    template CADGEOM_API bool CBoundingBox3d<T>::SweptBoundingBoxIntersects(const CBoundingBox3d<T>&,                  \
                                                                            const CadVector3d<T>&, T&, T&, T) const;   \
    template CADGEOM_API bool CBoundingBox3d<T>::SweptBoundingBoxIntersectsFull(                                       \
        const CBoundingBox3d<T>&, const CadVector3d<T>&, T&, T&, T&, T) const

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
