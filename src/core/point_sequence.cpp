#include <cadgeom/core/point.h>
#include <cadgeom/core/point_sequence.h>

#include "core/target_clones.h"

#include <cmath>

namespace {

/// Segments whose lengths are formed side by side before they are added in order.
constexpr std::uint64_t kBatch = 16;

/// Squared lengths of consecutive segments between positions that lie N scalars apart.
template <int N, class T>
void SquaredLengths(const T* positions, std::uint64_t count, T* squares)
{
    for (std::uint64_t i = 0; i < count; ++i) {
        const T* const start = positions + N * i;
        T difference[N];
        for (int axis = 0; axis < N; ++axis) {
            difference[axis] = start[N + axis] - start[axis];
        }
        squares[i] = cadgeom::detail::SumOfSquares<N>(difference);
    }
}

/// Length of the polyline through positions that lie N scalars apart. Roots are packed, the sum is not.
template <int N, class T>
T LengthOfPositions(const T* positions, std::uint64_t count)
{
    constexpr std::uint64_t kAhead = 4096 / (N * sizeof(T));
    T length = T(0);
    T lengths[kBatch];
    std::uint64_t segments = count - 1;
    for (; segments >= kBatch; segments -= kBatch, positions += N * kBatch) {
        if (segments > kAhead) {
            CADGEOM_PREFETCH_FOR_READING(positions + N * kAhead);
        }
        SquaredLengths<N>(positions, kBatch, lengths);
        for (T& value : lengths) {
            value = std::sqrt(value);
        }
        for (const T value : lengths) {
            length += value;
        }
    }
    SquaredLengths<N>(positions, segments, lengths);
    for (std::uint64_t i = 0; i < segments; ++i) {
        length += std::sqrt(lengths[i]);
    }
    return length;
}

} // namespace

template <class T, int N>
CadPoint<double, N> ComputeMeanPoint(const CadPoint<T, N>* points, std::uint64_t count)
{
    CadPoint<double, N> mean = CadPoint<double, N>::zero();
    if (count == 0) {
        return mean;
    }
    for (std::uint64_t i = 0; i < count; ++i) {
        for (int axis = 0; axis < N; ++axis) {
            mean[axis] += static_cast<double>(points[i][axis]);
        }
    }
    mean *= 1.0 / static_cast<double>(count);
    return mean;
}

template <class T, int N>
T PolylineGetLength(const CadPoint<T, N>* points, std::uint64_t count)
{
    return count < 2 ? T(0) : LengthOfPositions<N>(points->data(), count);
}

template <class T, int N>
T VectorPolylineGetLength(const CadVector<T, N>* vectors, std::uint64_t count)
{
    return count < 2 ? T(0) : LengthOfPositions<N>(vectors->data(), count);
}

template <class T, int N>
bool LinesAreColinear(const CadPoint<T, N>& point1, const CadVector<T, N>& direction1, const CadPoint<T, N>& point2,
                      const CadVector<T, N>& direction2, T distanceTolerance, T angleToleranceDegrees)
{
    return direction1.isParallel(direction2, angleToleranceDegrees) &&
           point1.distanceSquaredToLine(point2, direction2) <= distanceTolerance * distanceTolerance;
}

#define CADGEOM_INSTANTIATE(T, N)                                                                                      \
    template CADGEOM_API CadPoint<double, N> ComputeMeanPoint(const CadPoint<T, N>*, std::uint64_t);                   \
    template CADGEOM_API T PolylineGetLength(const CadPoint<T, N>*, std::uint64_t);                                    \
    template CADGEOM_API T VectorPolylineGetLength(const CadVector<T, N>*, std::uint64_t);                             \
    template CADGEOM_API bool LinesAreColinear(const CadPoint<T, N>&, const CadVector<T, N>&, const CadPoint<T, N>&,   \
                                               const CadVector<T, N>&, T, T)

CADGEOM_INSTANTIATE(float, 2);
CADGEOM_INSTANTIATE(float, 3);
CADGEOM_INSTANTIATE(double, 2);
CADGEOM_INSTANTIATE(double, 3);

#undef CADGEOM_INSTANTIATE
