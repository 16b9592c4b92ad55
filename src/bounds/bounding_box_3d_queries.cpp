#include <cadgeom/bounds/bounding_box_3d.h>

#include "bounds/box_extent.h"
#include "bounds/slabs.h"

#include <cadgeom/intersect/line_projection.h>

// Corners, edges, and the distances of a box to points, lines and planes. Most of them look at all eight corners, whose
// coordinates are two values for each axis: what depends on one coordinate is formed twice, not eight times.

namespace {

using cadgeom::detail::IsAtMaximum;
using cadgeom::detail::kLargestSingle;
using cadgeom::detail::SlabCrossing;
using cadgeom::detail::Tolerance;

constexpr int kCornerCount = 8;
constexpr int kEdgeCount = 12;
constexpr int kOutlineCount = 6;

struct Edge {
    int start;
    int end;
};

/// By corner number: the bottom face, the top face, the uprights.
constexpr Edge kEdges[kEdgeCount] = {{0, 4}, {4, 6}, {6, 2}, {2, 0}, {1, 5}, {5, 7},
                                     {7, 3}, {3, 1}, {0, 1}, {4, 5}, {6, 7}, {2, 3}};

/// By corner number: the outline seen along a direction with x >= 0, by the signs of y (2: negative) and z (1: negative).
constexpr int kOutlines[4][kOutlineCount] = {
    {4, 5, 1, 3, 2, 6}, {4, 5, 7, 3, 2, 0}, {4, 0, 1, 3, 7, 6}, {2, 0, 1, 5, 7, 6}};

template <class T>
constexpr T kStartOfMinimum = static_cast<T>(kLargestSingle);
template <class T>
constexpr T kStartOfMaximum = -static_cast<T>(kLargestSingle);

template <class T>
T Larger(T value, T running)
{
    return value > running ? value : running;
}

template <class T>
T Smaller(T value, T running)
{
    return value < running ? value : running;
}

/// Sums over the axes of a value that a corner coordinate has: terms[axis][0] at the minimum, [1] at the maximum.
template <class T>
void SumTerms(const T (&terms)[3][2], T* sums)
{
    for (int corner = 0; corner < kCornerCount; ++corner) {
        T sum = T(0);
        for (int axis = 0; axis < 3; ++axis) {
            sum += terms[axis][IsAtMaximum<3>(corner, axis) ? 1 : 0];
        }
        sums[corner] = sum;
    }
}

/// The corners of a box above a plane, in units of its normal.
template <class T>
struct CornerHeights {
    CornerHeights(const CadPoint3d<T>& min, const CadPoint3d<T>& max, const CadPoint3d<T>& origin,
                  const CadVector3d<T>& normal)
        : squaredNormal(normal.lengthSquared()), belowInZ(min[2] - origin[2]), aboveInZ(max[2] - origin[2])
    {
        T terms[3][2];
        for (int axis = 0; axis < 3; ++axis) {
            terms[axis][0] = normal[axis] * (min[axis] - origin[axis]);
            terms[axis][1] = normal[axis] * (max[axis] - origin[axis]);
        }
        SumTerms(terms, heights);
    }

    T SquaredDistance(int corner) const { return heights[corner] * heights[corner] / squaredNormal; }
    T SquaredDistanceInZ(int corner) const
    {
        const T distance = IsAtMaximum<3>(corner, 2) ? aboveInZ : belowInZ;
        return distance * distance;
    }

    bool AreOnBothSides() const
    {
        int aboveCount = 0;
        for (const T height : heights) {
            aboveCount += height >= T(0) ? 1 : 0;
        }
        return aboveCount != 0 && aboveCount != kCornerCount;
    }

    /// Whether a corner other than the first one is near the plane.
    bool AreWithin(T tolerance) const
    {
        const bool hasNormal = squaredNormal > Tolerance<T>::squaredEpsilon();
        for (int corner = 1; corner < kCornerCount; ++corner) {
            const T squaredDistance = hasNormal ? SquaredDistance(corner) : SquaredDistanceInZ(corner);
            if (squaredDistance <= tolerance * tolerance) {
                return true;
            }
        }
        return false;
    }

    /// Runs over the squared distances of the corners as CadPoint3d::distanceSquaredToPlane gives them.
    template <class Choice>
    T ChooseSquaredDistance(T start, Choice choice) const
    {
        const bool hasNoNormal = squaredNormal <= Tolerance<T>::squaredEpsilon();
        T chosen = start;
        for (int corner = 0; corner < kCornerCount; ++corner) {
            chosen = choice(hasNoNormal ? SquaredDistanceInZ(corner) : SquaredDistance(corner), chosen);
        }
        return chosen;
    }

    T squaredNormal;
    T belowInZ;
    T aboveInZ;
    T heights[kCornerCount];
};

/// A coordinate moved to the face that it lies beyond; of a crossed box the lower face comes first.
template <class T>
T MoveToFace(T coordinate, T min, T max)
{
    const T places[3] = {coordinate, max, min};
    const int isAbove = coordinate > max ? 1 : 0;
    return places[coordinate < min ? 2 : isAbove];
}

} // namespace

template <class T>
void CBoundingBox3d<T>::GetCornerPoints(CadPoint3d<T>* corners) const
{
    cadgeom::detail::WriteCorners<3>(m_min, m_max, corners);
}

template <class T>
void CBoundingBox3d<T>::GetLineSegments(CadPoint3d<T>* starts, CadPoint3d<T>* ends) const
{
    CadPoint3d<T> corners[kCornerCount];
    GetCornerPoints(corners);
    for (int i = 0; i < kEdgeCount; ++i) {
        starts[i] = corners[kEdges[i].start];
        ends[i] = corners[kEdges[i].end];
    }
}

template <class T>
bool CBoundingBox3d<T>::RayPierce(const CadPoint3d<T>& origin, const CadVector3d<T>& direction, T* tNear, T* tFar,
                                  CadPoint3d<T>* entry, CadPoint3d<T>* exit) const
{
    return cadgeom::detail::PierceBox<3, T, CadPoint3d<T>>(m_min, m_max, origin, direction, {tNear, tFar, entry, exit});
}

template <class T>
bool CBoundingBox3d<T>::PlaneIntersects(const CadPoint3d<T>& origin, const CadVector3d<T>& normal, T tolerance) const
{
    if (IsEmpty()) {
        return false;
    }
    const CornerHeights<T> corners(m_min, m_max, origin, normal);
    return corners.AreOnBothSides() || (tolerance != T(0) && corners.AreWithin(tolerance));
}

template <class T>
T CBoundingBox3d<T>::GetClosestDistanceSquared(const CadPoint3d<T>& point) const
{
    if (cadgeom::detail::BoxEncloses<3>(m_min.data(), m_max.data(), point.data(), point.data(), T(0))) {
        return T(0);
    }
    CadPoint3d<T> nearest;
    for (int axis = 0; axis < 3; ++axis) {
        nearest[axis] = MoveToFace(point[axis], m_min[axis], m_max[axis]);
    }
    return point.distanceSquared(nearest);
}

template <class T>
T CBoundingBox3d<T>::GetFarthestDistanceSquared(const CadPoint3d<T>& point) const
{
    T squares[3][2];
    for (int axis = 0; axis < 3; ++axis) {
        const T fromMin = m_min[axis] - point[axis];
        const T fromMax = m_max[axis] - point[axis];
        squares[axis][0] = fromMin * fromMin;
        squares[axis][1] = fromMax * fromMax;
    }
    T distances[kCornerCount];
    SumTerms(squares, distances);
    T farthest = T(0);
    for (const T distance : distances) {
        farthest = Larger(distance, farthest);
    }
    return farthest;
}

template <class T>
T CBoundingBox3d<T>::GetClosestDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& direction) const
{
    if (SlabCrossing<3, T>(m_min.data(), m_max.data(), origin.data(), direction.data()).Hits()) {
        return T(0);
    }
    CadPoint3d<T> corners[kCornerCount];
    GetCornerPoints(corners);
    T closest = kStartOfMinimum<T>;
    for (const Edge& edge : kEdges) {
        CadPoint3d<T> foot;
        T distance;
        ProjectLineOntoLineSegment<T>(origin, direction, corners[edge.start], corners[edge.end], foot, distance,
                                      nullptr);
        closest = Smaller(distance, closest);
    }
    return closest;
}

template <class T>
T CBoundingBox3d<T>::GetFarthestDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& direction) const
{
    CadPoint3d<T> corners[kCornerCount];
    GetCornerPoints(corners);
    T farthest = kStartOfMaximum<T>;
    for (const CadPoint3d<T>& corner : corners) {
        farthest = Larger(corner.distanceSquaredToLine(origin, direction), farthest);
    }
    return farthest;
}

template <class T>
T CBoundingBox3d<T>::GetClosestPlaneDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& normal) const
{
    const CornerHeights<T> corners(m_min, m_max, origin, normal);
    if (!IsEmpty() && corners.AreOnBothSides()) {
        return T(0);
    }
    return corners.ChooseSquaredDistance(kStartOfMinimum<T>, Smaller<T>);
}

template <class T>
T CBoundingBox3d<T>::GetFarthestPlaneDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& normal) const
{
    const CornerHeights<T> corners(m_min, m_max, origin, normal);
    return corners.ChooseSquaredDistance(kStartOfMaximum<T>, Larger<T>);
}

template <class T>
void CBoundingBox3d<T>::GetSweptPolygon(const CadVector3d<T>& direction, CadPoint3d<T>* polygon) const
{
    const T sign = direction[0] < T(0) ? T(-1) : T(1);
    const int yIsNegative = sign * direction[1] >= T(0) ? 0 : 2;
    const int zIsNegative = sign * direction[2] >= T(0) ? 0 : 1;
    CadPoint3d<T> corners[kCornerCount];
    GetCornerPoints(corners);
    for (int i = 0; i < kOutlineCount; ++i) {
        polygon[i] = corners[kOutlines[yIsNegative + zIsNegative][i]];
    }
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API void CBoundingBox3d<T>::GetCornerPoints(CadPoint3d<T>*) const;                                \
    template CADGEOM_API void CBoundingBox3d<T>::GetLineSegments(CadPoint3d<T>*, CadPoint3d<T>*) const;                \
    template CADGEOM_API bool CBoundingBox3d<T>::RayPierce(const CadPoint3d<T>&, const CadVector3d<T>&, T*, T*,        \
                                                           CadPoint3d<T>*, CadPoint3d<T>*) const;                      \
    template CADGEOM_API bool CBoundingBox3d<T>::PlaneIntersects(const CadPoint3d<T>&, const CadVector3d<T>&, T)       \
        const;                                                                                                         \
    template CADGEOM_API T CBoundingBox3d<T>::GetClosestDistanceSquared(const CadPoint3d<T>&) const;                   \
    template CADGEOM_API T CBoundingBox3d<T>::GetFarthestDistanceSquared(const CadPoint3d<T>&) const;                  \
    template CADGEOM_API T CBoundingBox3d<T>::GetClosestDistanceSquared(const CadPoint3d<T>&, const CadVector3d<T>&)   \
        const;                                                                                                         \
    template CADGEOM_API T CBoundingBox3d<T>::GetFarthestDistanceSquared(const CadPoint3d<T>&, const CadVector3d<T>&)  \
        const;                                                                                                         \
    template CADGEOM_API T CBoundingBox3d<T>::GetClosestPlaneDistanceSquared(const CadPoint3d<T>&,                     \
                                                                             const CadVector3d<T>&) const;             \
    template CADGEOM_API T CBoundingBox3d<T>::GetFarthestPlaneDistanceSquared(const CadPoint3d<T>&,                    \
                                                                              const CadVector3d<T>&) const;            \
    template CADGEOM_API void CBoundingBox3d<T>::GetSweptPolygon(const CadVector3d<T>&, CadPoint3d<T>*) const

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
