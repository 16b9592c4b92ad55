#pragma once
// Smallest and largest coordinates of many vertices.

#include "core/streaming.h"
#include "core/target_clones.h"

#include <cadgeom/bounds/box_lanes.h>

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace cadgeom::detail {

/// As many numbers as fit 16 bytes. The running value stays where a new one is equal or NaN.
template <class T>
struct Register {
    static constexpr int kLanes = 16 / sizeof(T);

#if defined(__SSE2__)
    static __m128d Load(const double* numbers)
    {
        return _mm_loadu_pd(numbers);
    }
    static __m128d Smaller(__m128d number, __m128d running)
    {
        return _mm_min_pd(number, running);
    }
    static __m128d Larger(__m128d number, __m128d running)
    {
        return _mm_max_pd(number, running);
    }
    static void Store(double* numbers, __m128d value)
    {
        _mm_storeu_pd(numbers, value);
    }

    static __m128 Load(const float* numbers)
    {
        return _mm_loadu_ps(numbers);
    }
    static __m128 Smaller(__m128 number, __m128 running)
    {
        return _mm_min_ps(number, running);
    }
    static __m128 Larger(__m128 number, __m128 running)
    {
        return _mm_max_ps(number, running);
    }
    static void Store(float* numbers, __m128 value)
    {
        _mm_storeu_ps(numbers, value);
    }
#endif
};

/// Extent of vertices, three numbers each, as strict comparisons in order give it: a box grown vertex by vertex.
///
/// Three registers hold whole vertices side by side, so that each minimum and maximum is several running ones, which do
/// not wait for each other. Only the sign of a zero can depend on that, and the first zero in order decides it.
template <class T>
class VertexExtent {
public:
    VertexExtent(const T* coordinates, std::uint64_t count)
    {
        SetBoxEmpty<kLanes>(m_min, m_max);
        const std::uint64_t inGroups = count / kVertices * kVertices;
        ForRunsOfPoints(coordinates, inGroups,
                        [this](const T* run, std::uint64_t runCount)
                            CADGEOM_ALWAYS_INLINE_LAMBDA { GrowByGroups(run, runCount); });
        for (std::uint64_t i = inGroups; i < count; ++i) {
            GrowBox<3>(m_min, m_max, coordinates + 3 * i);
        }
        for (int lane = 3; lane < kLanes; ++lane) {
            T& min = m_min[lane % 3];
            T& max = m_max[lane % 3];
            min = m_min[lane] < min ? m_min[lane] : min;
            max = m_max[lane] > max ? m_max[lane] : max;
        }
        for (int axis = 0; axis < 3; ++axis) {
            TakeFirstZero(m_min[axis], coordinates + axis, count);
            TakeFirstZero(m_max[axis], coordinates + axis, count);
        }
    }

    const T* Min() const { return m_min; }
    const T* Max() const { return m_max; }

private:
    static constexpr int kVertices = Register<T>::kLanes;
    static constexpr int kLanes = 3 * kVertices;

    void GrowByGroups(const T* coordinates, std::uint64_t count)
    {
        const T* const end = coordinates + 3 * count;
#if defined(__SSE2__)
        using R = Register<T>;
        constexpr int kSecond = R::kLanes;
        constexpr int kThird = 2 * R::kLanes;
        auto min0 = R::Load(m_min);
        auto min1 = R::Load(m_min + kSecond);
        auto min2 = R::Load(m_min + kThird);
        auto max0 = R::Load(m_max);
        auto max1 = R::Load(m_max + kSecond);
        auto max2 = R::Load(m_max + kThird);
        for (; coordinates != end; coordinates += kLanes) {
            const auto value0 = R::Load(coordinates);
            const auto value1 = R::Load(coordinates + kSecond);
            const auto value2 = R::Load(coordinates + kThird);
            min0 = R::Smaller(value0, min0);
            min1 = R::Smaller(value1, min1);
            min2 = R::Smaller(value2, min2);
            max0 = R::Larger(value0, max0);
            max1 = R::Larger(value1, max1);
            max2 = R::Larger(value2, max2);
        }
        R::Store(m_min, min0);
        R::Store(m_min + kSecond, min1);
        R::Store(m_min + kThird, min2);
        R::Store(m_max, max0);
        R::Store(m_max + kSecond, max1);
        R::Store(m_max + kThird, max2);
#else
        for (; coordinates != end; coordinates += kLanes) {
            GrowBox<kLanes>(m_min, m_max, coordinates);
        }
#endif
    }

    static void TakeFirstZero(T& extreme, const T* coordinates, std::uint64_t count)
    {
        for (std::uint64_t i = 0; extreme == T(0) && i < count; ++i) {
            if (coordinates[3 * i] == T(0)) {
                extreme = coordinates[3 * i];
                return;
            }
        }
    }

    T m_min[kLanes];
    T m_max[kLanes];
};

} // namespace cadgeom::detail
