#pragma once
/// @file
/// Two doubles in one register: the coordinates of a planar point, or two sums that run side by side. Every lane rounds
/// as a scalar of its own, so that packing never changes a result.

#include <cadgeom/core/floating_point.h>

#include <cstring>

namespace cadgeom::detail {

#if defined(__SSE2__)

struct Pair {
    __m128d lanes;

    Pair() = default;
    explicit Pair(__m128d packed) : lanes(packed) {}
    explicit Pair(double both) : lanes(_mm_set1_pd(both)) {}
    Pair(double first, double second) : lanes(_mm_set_pd(second, first)) {}

    static Pair Load(const double* values) { return Pair(_mm_loadu_pd(values)); }
    static Pair Load(const float* values)
    {
        double bits;
        std::memcpy(&bits, values, sizeof bits);
        return Pair(_mm_cvtps_pd(_mm_castpd_ps(_mm_set_sd(bits))));
    }

    double First() const { return _mm_cvtsd_f64(lanes); }
    double Second() const { return _mm_cvtsd_f64(_mm_unpackhi_pd(lanes, lanes)); }

    /// (first, first), (second, second) and (second, first).
    Pair FirstTwice() const { return Pair(_mm_unpacklo_pd(lanes, lanes)); }
    Pair SecondTwice() const { return Pair(_mm_unpackhi_pd(lanes, lanes)); }
    Pair Swapped() const { return Pair(_mm_shuffle_pd(lanes, lanes, 1)); }
};

inline Pair operator+(Pair a, Pair b)
{
    return Pair(_mm_add_pd(a.lanes, b.lanes));
}
inline Pair operator-(Pair a, Pair b)
{
    return Pair(_mm_sub_pd(a.lanes, b.lanes));
}
inline Pair operator*(Pair a, Pair b)
{
    return Pair(_mm_mul_pd(a.lanes, b.lanes));
}
inline Pair operator/(Pair a, Pair b)
{
    return Pair(_mm_div_pd(a.lanes, b.lanes));
}
inline Pair Sqrt(Pair a)
{
    return Pair(_mm_sqrt_pd(a.lanes));
}

/// (a.First(), b.First()) and (a.Second(), b.Second()).
inline Pair Firsts(Pair a, Pair b)
{
    return Pair(_mm_unpacklo_pd(a.lanes, b.lanes));
}
inline Pair Seconds(Pair a, Pair b)
{
    return Pair(_mm_unpackhi_pd(a.lanes, b.lanes));
}

/// In each lane: value if value < running, else running; the running value stays when either is not a number.
inline Pair Lower(Pair value, Pair running)
{
    return Pair(_mm_min_pd(value.lanes, running.lanes));
}
/// In each lane: value if value > running, else running.
inline Pair Higher(Pair value, Pair running)
{
    return Pair(_mm_max_pd(value.lanes, running.lanes));
}

inline void PrefetchLine(const void* address)
{
    _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
}

#else

struct Pair {
    double first;
    double second;

    Pair() = default;
    explicit Pair(double both) : first(both), second(both) {}
    Pair(double theFirst, double theSecond) : first(theFirst), second(theSecond) {}

    template <class T>
    static Pair Load(const T* values)
    {
        return Pair(static_cast<double>(values[0]), static_cast<double>(values[1]));
    }

    double First() const { return first; }
    double Second() const { return second; }
    Pair FirstTwice() const { return Pair(first); }
    Pair SecondTwice() const { return Pair(second); }
    Pair Swapped() const { return Pair(second, first); }
};

inline Pair operator+(Pair a, Pair b)
{
    return Pair(a.first + b.first, a.second + b.second);
}
inline Pair operator-(Pair a, Pair b)
{
    return Pair(a.first - b.first, a.second - b.second);
}
inline Pair operator*(Pair a, Pair b)
{
    return Pair(a.first * b.first, a.second * b.second);
}
inline Pair operator/(Pair a, Pair b)
{
    return Pair(a.first / b.first, a.second / b.second);
}
inline Pair Sqrt(Pair a)
{
    return Pair(Sqrt(a.first), Sqrt(a.second));
}
inline Pair Firsts(Pair a, Pair b)
{
    return Pair(a.first, b.first);
}
inline Pair Seconds(Pair a, Pair b)
{
    return Pair(a.second, b.second);
}
inline Pair Lower(Pair value, Pair running)
{
    return Pair(value.first < running.first ? value.first : running.first,
                value.second < running.second ? value.second : running.second);
}
inline Pair Higher(Pair value, Pair running)
{
    return Pair(value.first > running.first ? value.first : running.first,
                value.second > running.second ? value.second : running.second);
}
inline void PrefetchLine(const void*) {}

#endif

inline Pair& operator+=(Pair& a, Pair b)
{
    return a = a + b;
}
inline Pair& operator-=(Pair& a, Pair b)
{
    return a = a - b;
}

} // namespace cadgeom::detail
