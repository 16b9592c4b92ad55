// Simplification of polylines. Removing vertices one by one by shifting those behind them would cost quadratic time; here
// one index writes the vertices that stay while another reads ahead, which gives the same vertices: a vertex is only ever
// compared with vertices at or behind the reading index, and with the anchor, which is the vertex written last.

#include "polyline/vertex_equality.h"

#include <cadgeom/polyline/polyline3d.h>

namespace {

using cadgeom::detail::Tolerance;
using cadgeom::detail::VerticesAreEqual;

/// Whether `vertex` adds nothing to the chord that would replace it: its foot does not lie beyond the chord, and its
/// distance from the foot does not exceed the tolerance.
template <class T>
bool IsNearChord(const CadPoint3d<T>& vertex, const CadPoint3d<T>& start, const CadPoint3d<T>& end, T squaredTolerance)
{
    const CadVector<T, 3> chord = end - start;
    const T squaredLength = chord.lengthSquared();
    T parameter = T(0);
    if (squaredLength > Tolerance<T>::squaredEpsilon()) {
        parameter = (vertex - start).dot(chord) / squaredLength;
        if (parameter < T(0) || parameter > T(1)) {
            return false;
        }
    }
    return !((start + chord * parameter).distanceSquared(vertex) > squaredTolerance);
}

} // namespace

template <class T>
bool CCadPolyline3d<T>::RemoveRepeatedPoints(T tolerance)
{
    CadPoint3d<T>* const vertices = this->GetData();
    const std::int64_t count = GetNumPoints();
    std::int64_t kept = count == 0 ? 0 : 1;
    for (std::int64_t i = 1; i < count; ++i) {
        if (!VerticesAreEqual(vertices[i], vertices[i - 1], tolerance)) {
            vertices[kept] = vertices[i];
            ++kept;
        }
    }
    this->RemoveAt(kept, count - kept);
    return kept != count;
}

template <class T>
bool CCadPolyline3d<T>::RemovePointsNearChords(T tolerance)
{
    const T squaredTolerance = tolerance * tolerance;
    CadPoint3d<T>* const vertices = this->GetData();
    const std::int64_t last = GetNumPoints() - 1;
    std::int64_t anchor = 0;
    std::int64_t next = 1;
    while (next < last) {
        while (next < last && IsNearChord(vertices[next], vertices[anchor], vertices[next + 1], squaredTolerance)) {
            ++next;
        }
        ++anchor;
        vertices[anchor] = vertices[next];
        ++next;
    }
    const std::int64_t removed = next - anchor - 1;
    this->RemoveAt(anchor + 1, removed);
    return removed != 0;
}

template <class T>
bool CCadPolyline3d<T>::DataReduce(T tolerance)
{
    if (IsEmpty()) {
        return false;
    }
    const bool hasRemovedRepeated = RemoveRepeatedPoints(tolerance);
    const bool hasRemovedNear = RemovePointsNearChords(tolerance);
    const std::int64_t count = GetNumPoints();
    if (count == 1 || (count == 2 && VerticesAreEqual(GetPoint(0), GetPoint(1), tolerance))) {
        Empty();
        return true;
    }
    return hasRemovedRepeated || hasRemovedNear;
}

template <class T>
bool CCadPolyline3d<T>::RemoveRedundantPoints()
{
    return RemoveRepeatedPoints(Tolerance<T>::epsilon());
}

template <class T>
bool CCadPolyline3d<T>::RemoveRedundantEndPoint()
{
    const std::int64_t last = GetNumPoints() - 1;
    if (last < 1 || !VerticesAreEqual(GetPoint(last), GetPoint(0), Tolerance<T>::epsilon())) {
        return false;
    }
    this->RemoveAt(last);
    return true;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template bool CCadPolyline3d<T>::RemoveRepeatedPoints(T);                                                          \
    template bool CCadPolyline3d<T>::RemovePointsNearChords(T);                                                        \
    template bool CCadPolyline3d<T>::DataReduce(T);                                                                    \
    template bool CCadPolyline3d<T>::RemoveRedundantPoints();                                                          \
    template bool CCadPolyline3d<T>::RemoveRedundantEndPoint()

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
