#pragma once
// A line against the slabs between opposite faces of an axis-aligned box (Kay and Kajiya 1986), in the plane and in
// space. Which face is met first and which axis decides depend on data that branches cannot predict, so both are
// selected by index; the branches that remain tell lines along the axes from others.

#include <cadgeom/core/components.h>
#include <cadgeom/core/tolerance.h>

#include <limits>

namespace cadgeom::detail {

template <int N, class T>
class SlabCrossing {
public:
    SlabCrossing(const T* min, const T* max, const T* origin, const T* direction)
    {
        for (int axis = 0; axis < N; ++axis) {
            m_faces[axis][0] = min[axis];
            m_faces[axis][1] = max[axis];
            if (Absolute(direction[axis]) > std::numeric_limits<T>::epsilon()) {
                CrossSlab(axis, origin[axis], direction[axis]);
            } else if (min[axis] > origin[axis] || origin[axis] > max[axis]) {
                m_near = static_cast<T>(kLargestSingle);
                m_far = -m_near;
                return;
            }
        }
    }

    /// Whether the line has a point within all slabs.
    bool Hits() const { return m_far >= m_near; }
    T Near() const { return m_near; }
    T Far() const { return m_far; }

    /// The points of entry and exit on a line that hits: exactly on the face that decided.
    void WriteEntry(const T* origin, const T* direction, T* entry) const
    {
        WritePoint(origin, direction, m_near, entry);
        if (m_nearAxis != kNoAxis) {
            entry[m_nearAxis] = NearFace(m_nearAxis);
        }
    }
    void WriteExit(const T* origin, const T* direction, T* exit) const
    {
        WritePoint(origin, direction, m_far, exit);
        if (m_farAxis != kNoAxis) {
            exit[m_farAxis] = FarFace(m_farAxis);
        }
    }

    /// What a line that misses leaves of the points of entry and exit: the faces that decided for a while.
    void WriteDecidingNearFaces(T* entry) const
    {
        for (int axis = 0; axis < N; ++axis) {
            if ((m_nearAxes >> axis & 1U) != 0) {
                entry[axis] = NearFace(axis);
            }
        }
    }
    void WriteDecidingFarFaces(T* exit) const
    {
        for (int axis = 0; axis < N; ++axis) {
            if ((m_farAxes >> axis & 1U) != 0) {
                exit[axis] = FarFace(axis);
            }
        }
    }

private:
    static constexpr int kNoAxis = -1;

    void CrossSlab(int axis, T origin, T direction)
    {
        const T t[2] = {(m_faces[axis][0] - origin) / direction, (m_faces[axis][1] - origin) / direction};
        const bool isAscending = t[1] >= t[0];
        const T enter = t[isAscending ? 0 : 1];
        const T leave = t[isAscending ? 1 : 0];
        m_isAscending[axis] = isAscending;

        const bool isFirst = m_nearAxis == kNoAxis;
        const bool isNear = isFirst || enter > m_near;
        const bool isFar = isFirst || m_far > leave;
        m_near = isFirst || enter > m_near ? enter : m_near;
        m_far = isFirst || leave < m_far ? leave : m_far;
        m_nearAxis = isNear ? axis : m_nearAxis;
        m_farAxis = isFar ? axis : m_farAxis;
        m_nearAxes |= static_cast<unsigned>(isNear) << axis;
        m_farAxes |= static_cast<unsigned>(isFar) << axis;
    }

    T NearFace(int axis) const { return m_faces[axis][m_isAscending[axis] ? 0 : 1]; }
    T FarFace(int axis) const { return m_faces[axis][m_isAscending[axis] ? 1 : 0]; }

    static void WritePoint(const T* origin, const T* direction, T t, T* point)
    {
        for (int axis = 0; axis < N; ++axis) {
            point[axis] = origin[axis] + t * direction[axis];
        }
    }

    T m_near = -static_cast<T>(kLargestSingle);
    T m_far = static_cast<T>(kLargestSingle);
    int m_nearAxis = kNoAxis;
    int m_farAxis = kNoAxis;
    unsigned m_nearAxes = 0;
    unsigned m_farAxes = 0;
    T m_faces[N][2];
    bool m_isAscending[N];
};

/// Outputs of a ray query; each may be null.
template <class T>
struct RayOutputs {
    T* near;
    T* far;
    T* entry;
    T* exit;
};

/// Intersects a line with a box. Inputs are copies, so that outputs may be the same objects.
template <int N, class T, class Point, class Vector>
bool PierceBox(const T* min, const T* max, const Point origin, const Vector direction, const RayOutputs<T>& outputs)
{
    const SlabCrossing<N, T> crossing(min, max, origin.data(), direction.data());
    if (outputs.near != nullptr) {
        *outputs.near = crossing.Near();
    }
    if (outputs.far != nullptr) {
        *outputs.far = crossing.Far();
    }
    const bool hits = crossing.Hits();
    if (outputs.entry != nullptr) {
        if (hits) {
            crossing.WriteEntry(origin.data(), direction.data(), outputs.entry);
        } else {
            crossing.WriteDecidingNearFaces(outputs.entry);
        }
    }
    if (outputs.exit != nullptr) {
        if (hits) {
            crossing.WriteExit(origin.data(), direction.data(), outputs.exit);
        } else {
            crossing.WriteDecidingFarFaces(outputs.exit);
        }
    }
    return hits;
}

} // namespace cadgeom::detail
