#pragma once
/// @file
/// Comparisons of all coordinates at once, which the axis-aligned boxes of the plane and of space share.
///
/// Where points fall in or beside a box at random, a branch for each coordinate costs more than all the comparisons
/// together. So the coordinates are compared as a pack and the answer is read from one mask; on targets without SSE2
/// the same operations are loops.

#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/tolerance.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

CADGEOM_FP_BEGIN

namespace cadgeom::detail {

#if defined(__SSE2__)

template <class T, int N>
class Lanes;

/// (x, y).
template <>
class Lanes<double, 2> {
public:
    explicit Lanes(const double* coordinates) : m_xy(_mm_loadu_pd(coordinates)) {}
    Lanes(double x, double y) : m_xy(_mm_setr_pd(x, y)) {}

    Lanes operator+(double value) const { return Lanes(_mm_add_pd(m_xy, _mm_set1_pd(value))); }
    Lanes operator-(double value) const { return Lanes(_mm_sub_pd(m_xy, _mm_set1_pd(value))); }
    Lanes operator>(const Lanes& other) const { return Lanes(_mm_cmpgt_pd(m_xy, other.m_xy)); }
    Lanes operator>=(const Lanes& other) const { return Lanes(_mm_cmpge_pd(m_xy, other.m_xy)); }
    Lanes operator&(const Lanes& other) const { return Lanes(_mm_and_pd(m_xy, other.m_xy)); }
    Lanes operator|(const Lanes& other) const { return Lanes(_mm_or_pd(m_xy, other.m_xy)); }
    bool All() const { return _mm_movemask_pd(m_xy) == 3; }
    bool Any() const { return _mm_movemask_pd(m_xy) != 0; }
    /// The smaller or larger of two; `b` where they are equal or one is NaN.
    static Lanes Min(const Lanes& a, const Lanes& b) { return Lanes(_mm_min_pd(a.m_xy, b.m_xy)); }
    static Lanes Max(const Lanes& a, const Lanes& b) { return Lanes(_mm_max_pd(a.m_xy, b.m_xy)); }
    Lanes operator-() const { return Lanes(_mm_xor_pd(m_xy, _mm_set1_pd(-0.0))); }

private:
    explicit Lanes(__m128d xy) : m_xy(xy) {}

    __m128d m_xy;
};

/// (x, y) and (z, z).
template <>
class Lanes<double, 3> {
public:
    explicit Lanes(const double* coordinates) : m_xy(_mm_loadu_pd(coordinates)), m_zz(_mm_load1_pd(coordinates + 2)) {}

    Lanes operator+(double value) const
    {
        return Lanes(_mm_add_pd(m_xy, _mm_set1_pd(value)), _mm_add_pd(m_zz, _mm_set1_pd(value)));
    }
    Lanes operator-(double value) const
    {
        return Lanes(_mm_sub_pd(m_xy, _mm_set1_pd(value)), _mm_sub_pd(m_zz, _mm_set1_pd(value)));
    }
    Lanes operator>(const Lanes& other) const
    {
        return Lanes(_mm_cmpgt_pd(m_xy, other.m_xy), _mm_cmpgt_pd(m_zz, other.m_zz));
    }
    Lanes operator>=(const Lanes& other) const
    {
        return Lanes(_mm_cmpge_pd(m_xy, other.m_xy), _mm_cmpge_pd(m_zz, other.m_zz));
    }
    Lanes operator&(const Lanes& other) const
    {
        return Lanes(_mm_and_pd(m_xy, other.m_xy), _mm_and_pd(m_zz, other.m_zz));
    }
    Lanes operator|(const Lanes& other) const
    {
        return Lanes(_mm_or_pd(m_xy, other.m_xy), _mm_or_pd(m_zz, other.m_zz));
    }
    bool All() const { return _mm_movemask_pd(_mm_and_pd(m_xy, m_zz)) == 3; }
    bool Any() const { return _mm_movemask_pd(_mm_or_pd(m_xy, m_zz)) != 0; }

private:
    Lanes(__m128d xy, __m128d zz) : m_xy(xy), m_zz(zz) {}

    __m128d m_xy;
    __m128d m_zz;
};

/// (x, y, x, y) or (x, y, z, z).
template <int N>
class Lanes<float, N> {
public:
    explicit Lanes(const float* coordinates)
    {
        const __m128 xy = _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(coordinates));
        m_lanes = _mm_movelh_ps(xy, N == 2 ? xy : _mm_load1_ps(coordinates + N - 1));
    }
    Lanes(float x, float y) : m_lanes(_mm_setr_ps(x, y, x, y)) {}

    Lanes operator+(float value) const { return Lanes(_mm_add_ps(m_lanes, _mm_set1_ps(value))); }
    Lanes operator-(float value) const { return Lanes(_mm_sub_ps(m_lanes, _mm_set1_ps(value))); }
    Lanes operator>(const Lanes& other) const { return Lanes(_mm_cmpgt_ps(m_lanes, other.m_lanes)); }
    Lanes operator>=(const Lanes& other) const { return Lanes(_mm_cmpge_ps(m_lanes, other.m_lanes)); }
    Lanes operator&(const Lanes& other) const { return Lanes(_mm_and_ps(m_lanes, other.m_lanes)); }
    Lanes operator|(const Lanes& other) const { return Lanes(_mm_or_ps(m_lanes, other.m_lanes)); }
    bool All() const { return _mm_movemask_ps(m_lanes) == 15; }
    bool Any() const { return _mm_movemask_ps(m_lanes) != 0; }
    static Lanes Min(const Lanes& a, const Lanes& b) { return Lanes(_mm_min_ps(a.m_lanes, b.m_lanes)); }
    static Lanes Max(const Lanes& a, const Lanes& b) { return Lanes(_mm_max_ps(a.m_lanes, b.m_lanes)); }
    Lanes operator-() const { return Lanes(_mm_xor_ps(m_lanes, _mm_set1_ps(-0.0F))); }

private:
    explicit Lanes(__m128 lanes) : m_lanes(lanes) {}

    __m128 m_lanes;
};

#else

/// Answer of a comparison for every axis, one bit each.
template <int N>
class LaneMask {
public:
    explicit LaneMask(unsigned bits) : m_bits(bits) {}

    LaneMask operator&(LaneMask other) const { return LaneMask(m_bits & other.m_bits); }
    LaneMask operator|(LaneMask other) const { return LaneMask(m_bits | other.m_bits); }
    bool All() const { return m_bits == (1U << N) - 1U; }
    bool Any() const { return m_bits != 0; }

private:
    unsigned m_bits;
};

template <class T, int N>
class Lanes {
public:
    explicit Lanes(const T* coordinates)
    {
        for (int i = 0; i < N; ++i) {
            m_lanes[i] = coordinates[i];
        }
    }
    Lanes(T x, T y) : m_lanes{x, y} {}

    Lanes operator+(T value) const
    {
        Lanes sum(*this);
        for (int i = 0; i < N; ++i) {
            sum.m_lanes[i] += value;
        }
        return sum;
    }
    Lanes operator-(T value) const
    {
        Lanes difference(*this);
        for (int i = 0; i < N; ++i) {
            difference.m_lanes[i] -= value;
        }
        return difference;
    }
    static Lanes Min(const Lanes& a, const Lanes& b)
    {
        Lanes smaller(b);
        for (int i = 0; i < N; ++i) {
            smaller.m_lanes[i] = a.m_lanes[i] < b.m_lanes[i] ? a.m_lanes[i] : b.m_lanes[i];
        }
        return smaller;
    }
    static Lanes Max(const Lanes& a, const Lanes& b)
    {
        Lanes larger(b);
        for (int i = 0; i < N; ++i) {
            larger.m_lanes[i] = a.m_lanes[i] > b.m_lanes[i] ? a.m_lanes[i] : b.m_lanes[i];
        }
        return larger;
    }
    Lanes operator-() const
    {
        Lanes opposite(*this);
        for (int i = 0; i < N; ++i) {
            opposite.m_lanes[i] = -m_lanes[i];
        }
        return opposite;
    }
    LaneMask<N> operator>(const Lanes& other) const
    {
        unsigned bits = 0;
        for (int i = 0; i < N; ++i) {
            bits |= static_cast<unsigned>(m_lanes[i] > other.m_lanes[i]) << i;
        }
        return LaneMask<N>(bits);
    }
    LaneMask<N> operator>=(const Lanes& other) const
    {
        unsigned bits = 0;
        for (int i = 0; i < N; ++i) {
            bits |= static_cast<unsigned>(m_lanes[i] >= other.m_lanes[i]) << i;
        }
        return LaneMask<N>(bits);
    }

private:
    T m_lanes[N];
};

#endif

/// The marker of an empty box: its minimum on every axis, and the negative of its maximum.
template <class T>
inline constexpr T kEmptyBoxMarker = static_cast<T>(kLargestSingle);

template <int N, class T>
inline void SetBoxEmpty(T* min, T* max)
{
    for (int i = 0; i < N; ++i) {
        min[i] = kEmptyBoxMarker<T>;
        max[i] = -kEmptyBoxMarker<T>;
    }
}

/// Moves the faces of a box outwards until a point lies within. NaN moves nothing.
template <int N, class T>
inline void GrowBox(T* min, T* max, const T* point)
{
    for (int i = 0; i < N; ++i) {
        const T coordinate = point[i];
        min[i] = coordinate < min[i] ? coordinate : min[i];
        max[i] = coordinate > max[i] ? coordinate : max[i];
    }
}

/// Whether `lower` and `upper` lie on the inner side of the faces of a box widened by `tolerance`.
template <int N, class T>
inline bool BoxEncloses(const T* min, const T* max, const T* lower, const T* upper, T tolerance)
{
    using Pack = Lanes<T, N>;
    return ((Pack(lower) >= Pack(min) - tolerance) & (Pack(max) + tolerance >= Pack(upper))).All();
}

/// Whether a gap wider than `tolerance` separates two boxes on some axis. NaN separates nothing.
template <int N, class T>
inline bool BoxesAreApart(const T* min, const T* max, const T* otherMin, const T* otherMax, T tolerance)
{
    using Pack = Lanes<T, N>;
    return ((Pack(min) > Pack(otherMax) + tolerance) | (Pack(otherMin) - tolerance > Pack(max))).Any();
}

} // namespace cadgeom::detail

CADGEOM_FP_END
