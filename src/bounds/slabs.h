#pragma once
// A line against the slabs between opposite faces of an axis-aligned box (Kay and Kajiya 1986), in the plane and in
// space. Which face is met first and which axis decides depend on data that branches cannot predict, so both are
// selected; the branches that remain tell lines along the axes from others.

#include <cadgeom/core/components.h>
#include <cadgeom/core/tolerance.h>

#include <limits>

namespace cadgeom::detail {

template <int N, class T>
class SlabCrossing {
public:
    /// Of an axis: whether the line crosses its slab at all, instead of running along it.
    static bool Crosses(T direction) { return Absolute(direction) > std::numeric_limits<T>::epsilon(); }

    SlabCrossing(const T* min, const T* max, const T* origin, const T* direction) : m_min(min), m_max(max)
    {
        if (!CrossAllSlabs(origin, direction)) {
            CrossSomeSlabs(origin, direction);
        }
    }

    /// Whether the line has a point within all slabs.
    bool Hits() const { return m_far >= m_near; }
    T Near() const { return m_near; }
    T Far() const { return m_far; }

    /// Writes the point where a line that hits enters or leaves: exactly on the face that decided. A line that misses
    /// leaves the faces that decided for a while.
    void WriteEntry(const T* origin, const T* direction, T* entry) const
    {
        const Decision decision = Decide([](const Crossing& crossing) { return crossing.Enter(); });
        WritePoint(origin, direction, m_near, decision, entry,
                   [this](int axis) { return (m_crossings[axis].IsAscending() ? m_min : m_max)[axis]; });
    }
    void WriteExit(const T* origin, const T* direction, T* exit) const
    {
        const Decision decision = Decide([](const Crossing& crossing) { return -crossing.Leave(); });
        WritePoint(origin, direction, m_far, decision, exit,
                   [this](int axis) { return (m_crossings[axis].IsAscending() ? m_max : m_min)[axis]; });
    }

private:
    static constexpr int kNoAxis = -1;

    /// Parameters at the two faces across an axis. A NaN counts as descending. Selecting the place of a number instead of
    /// the number keeps compilers from branching.
    struct Crossing {
        bool IsAscending() const { return toMax >= toMin; }
        T Enter() const { return *(IsAscending() ? &toMin : &toMax); }
        T Leave() const { return *(IsAscending() ? &toMax : &toMin); }

        T toMin;
        T toMax;
    };

    /// The axis that decides in the end, and all that did for a while, one bit each.
    struct Decision {
        int axis = kNoAxis;
        unsigned axes = 0;
    };

    Crossing CrossSlab(int axis, T origin, T direction) const
    {
        return {(m_min[axis] - origin) / direction, (m_max[axis] - origin) / direction};
    }

    /// The common case, by minima and maxima alone.
    /// @return false when the line runs along an axis or a parameter is NaN: then nothing counts
    bool CrossAllSlabs(const T* origin, const T* direction)
    {
        for (int axis = 0; axis < N; ++axis) {
            if (!Crosses(direction[axis])) {
                return false;
            }
        }
        T near = T(0);
        T far = T(0);
        for (int axis = 0; axis < N; ++axis) {
            const Crossing crossing = CrossSlab(axis, origin[axis], direction[axis]);
            const T enter = crossing.toMax < crossing.toMin ? crossing.toMax : crossing.toMin;
            const T leave = crossing.toMin > crossing.toMax ? crossing.toMin : crossing.toMax;
            if (!(enter <= leave)) {
                return false;
            }
            near = axis == 0 || enter > near ? enter : near;
            far = axis == 0 || leave < far ? leave : far;
            m_crossings[axis] = crossing;
        }
        m_crossed = (1U << N) - 1U;
        m_near = near;
        m_far = far;
        return true;
    }

    void CrossSomeSlabs(const T* origin, const T* direction)
    {
        for (int axis = 0; axis < N; ++axis) {
            if (Crosses(direction[axis])) {
                const Crossing crossing = CrossSlab(axis, origin[axis], direction[axis]);
                m_near = m_crossed == 0 || crossing.Enter() > m_near ? crossing.Enter() : m_near;
                m_far = m_crossed == 0 || crossing.Leave() < m_far ? crossing.Leave() : m_far;
                m_crossings[axis] = crossing;
                m_crossed |= 1U << axis;
            } else if (m_min[axis] > origin[axis] || origin[axis] > m_max[axis]) {
                m_near = static_cast<T>(kLargestSingle);
                m_far = -m_near;
                return;
            }
        }
    }

    /// Which axes raised a value of the crossings, from the first on.
    template <class Value>
    Decision Decide(Value value) const
    {
        Decision decision;
        T largest = T(0);
        for (int axis = 0; axis < N; ++axis) {
            if ((m_crossed >> axis & 1U) == 0) {
                continue;
            }
            const T own = value(m_crossings[axis]);
            if (decision.axis == kNoAxis) {
                decision = {axis, 1U << axis};
                largest = own;
                continue;
            }
            const unsigned decides = own > largest ? 1U : 0U;
            const int candidates[2] = {decision.axis, axis};
            decision.axis = candidates[decides];
            decision.axes |= decides << axis;
            largest = own > largest ? own : largest;
        }
        return decision;
    }

    template <class Face>
    void WritePoint(const T* origin, const T* direction, T t, const Decision& decision, T* point, Face face) const
    {
        if (Hits()) {
            for (int axis = 0; axis < N; ++axis) {
                point[axis] = origin[axis] + t * direction[axis];
            }
            if (decision.axis != kNoAxis) {
                point[decision.axis] = face(decision.axis);
            }
            return;
        }
        for (int axis = 0; axis < N; ++axis) {
            if ((decision.axes >> axis & 1U) != 0) {
                point[axis] = face(axis);
            }
        }
    }

    const T* m_min;
    const T* m_max;
    T m_near = -static_cast<T>(kLargestSingle);
    T m_far = static_cast<T>(kLargestSingle);
    unsigned m_crossed = 0;
    Crossing m_crossings[N];
};

/// Outputs of a ray query; each may be null.
template <class T, class Point>
struct RayOutputs {
    T* near;
    T* far;
    Point* entry;
    Point* exit;

    void WriteParameters(T nearValue, T farValue) const
    {
        if (near != nullptr) {
            *near = nearValue;
        }
        if (far != nullptr) {
            *far = farValue;
        }
    }
};

/// Intersects a line with a box. All outputs may be parts of the inputs.
template <int N, class T, class Point, class Vector>
bool PierceBox(const Point& min, const Point& max, const Point& origin, const Vector& direction,
               const RayOutputs<T, Point>& outputs)
{
    const SlabCrossing<N, T> crossing(min.data(), max.data(), origin.data(), direction.data());
    if (outputs.entry == nullptr && outputs.exit == nullptr) {
        outputs.WriteParameters(crossing.Near(), crossing.Far());
        return crossing.Hits();
    }
    const Point start(origin);
    const Vector along(direction);
    outputs.WriteParameters(crossing.Near(), crossing.Far());
    if (outputs.entry != nullptr) {
        crossing.WriteEntry(start.data(), along.data(), outputs.entry->data());
    }
    if (outputs.exit != nullptr) {
        crossing.WriteExit(start.data(), along.data(), outputs.exit->data());
    }
    return crossing.Hits();
}

} // namespace cadgeom::detail
