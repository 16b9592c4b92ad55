#pragma once
// What the axis-aligned boxes of the plane and of space do alike, on their two corners.

#include <cadgeom/bounds/box_enums.h>
#include <cadgeom/bounds/box_lanes.h>
#include <cadgeom/core/components.h>

namespace cadgeom::detail {

/// Clips a box to another one, axis by axis; stops at the first axis on which nothing is left.
template <int N, class T>
inline bool ClipBox(T* min, T* max, const T* otherMin, const T* otherMax)
{
    for (int i = 0; i < N; ++i) {
        min[i] = otherMin[i] > min[i] ? otherMin[i] : min[i];
        max[i] = otherMax[i] < max[i] ? otherMax[i] : max[i];
        if (min[i] > max[i]) {
            return false;
        }
    }
    return true;
}

template <int N, class T>
inline EBoundingBoxPointLocation ClassifyPoint(const T* min, const T* max, const T* point, T tolerance)
{
    using Pack = Lanes<T, N>;
    const Pack upper = Pack(max) + tolerance;
    const Pack coordinates(point);
    if (!((coordinates >= Pack(min) - tolerance) & (upper >= coordinates)).All()) {
        return ePointOutsideBox;
    }
    const bool isInside = ((coordinates > Pack(min) + tolerance) & (upper > coordinates)).All();
    return isInside ? ePointInsideBox : ePointOnBoxBoundary;
}

template <int N, class T>
inline bool BoxesDifferAtMost(const T* min, const T* max, const T* otherMin, const T* otherMax, T tolerance)
{
    return NoneDiffers<N>(min, otherMin, tolerance) && NoneDiffers<N>(max, otherMax, tolerance);
}

/// Moves each side out by half of a fraction of the size.
template <int N, class T>
inline void ExpandBox(T* min, T* max, T factor)
{
    for (int i = 0; i < N; ++i) {
        const T half = T(0.5) * factor * (max[i] - min[i]);
        min[i] -= half;
        max[i] += half;
    }
}

template <int N, class T>
inline void ExpandBoxByDistance(T* min, T* max, T distance)
{
    for (int i = 0; i < N; ++i) {
        min[i] -= distance;
        max[i] += distance;
    }
}

/// Whether a corner lies on the far side of an axis: the bits of its number are the axes, the last axis lowest.
template <int N>
constexpr bool IsAtMaximum(int corner, int axis)
{
    return (corner >> (N - 1 - axis) & 1) != 0;
}

template <int N, class Point>
inline void WriteCorners(const Point& min, const Point& max, Point* corners)
{
    constexpr int kCount = 1 << N;
    for (int corner = 0; corner < kCount; ++corner) {
        for (int axis = 0; axis < N; ++axis) {
            corners[corner][axis] = IsAtMaximum<N>(corner, axis) ? max[axis] : min[axis];
        }
    }
}

} // namespace cadgeom::detail
