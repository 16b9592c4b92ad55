#pragma once
// Random geometry with fixed seeds, and comparison of bits, for the tests of this folder.

#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <type_traits>

/// The types of a typed test, by the names that every test uses.
#define CADGEOM_TEST_TYPES(Scalar)                                                                                     \
    using T [[maybe_unused]] = Scalar;                                                                                 \
    using Point [[maybe_unused]] = CadPoint3d<T>;                                                                      \
    using Vector [[maybe_unused]] = CadVector3d<T>;                                                                    \
    using Point2 [[maybe_unused]] = CadPoint2d<T>;                                                                     \
    using Vector2 [[maybe_unused]] = CadVector2d<T>

namespace samples {

/// Value that no function computes: what an untouched output still holds.
template <class T>
inline constexpr T kUntouched = T(-12345.0625);

template <class T>
inline constexpr T kInfinity = std::numeric_limits<T>::infinity();

template <class T>
inline constexpr T kNaN = std::numeric_limits<T>::quiet_NaN();

using ScalarTypes = ::testing::Types<float, double>;

template <class T>
class Source {
public:
    explicit Source(unsigned seed) : m_engine(seed) {}

    T Between(double low, double high)
    {
        return static_cast<T>(std::uniform_real_distribution<double>(low, high)(m_engine));
    }
    int Integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    CadPoint2d<T> Point2d(double size) { return {Between(-size, size), Between(-size, size)}; }
    CadPoint3d<T> Point(double size) { return {Between(-size, size), Between(-size, size), Between(-size, size)}; }
    CadVector3d<T> Vector(double size) { return {Between(-size, size), Between(-size, size), Between(-size, size)}; }

    /// Mostly a number of ordinary size; now and then a zero, a tiny, a huge or a non-finite one.
    T Wild()
    {
        using Limits = std::numeric_limits<T>;
        static const T kSpecial[] = {T(0),           T(-0.0),       T(1),          Limits::denorm_min(),
                                     Limits::min(),  Limits::max(), -kInfinity<T>, kInfinity<T>,
                                     kNaN<T>,        T(1e-7),       T(1e-6),       T(1e-12),
                                     -Limits::max(), T(1e30),       T(-1e-30),     Limits::epsilon()};
        const int choice = Integer(0, 79);
        return choice < 16 ? kSpecial[choice] : Between(-4, 4);
    }
    CadPoint2d<T> WildPoint2d() { return {Wild(), Wild()}; }
    CadPoint3d<T> WildPoint() { return {Wild(), Wild(), Wild()}; }
    CadVector3d<T> WildVector() { return {Wild(), Wild(), Wild()}; }

private:
    std::mt19937 m_engine;
};

/// Same bits; one NaN is as good as another.
template <class T, class = std::enable_if_t<std::is_floating_point_v<T>>>
bool SameBits(T a, T b)
{
    return (a != a && b != b) || std::memcmp(&a, &b, sizeof a) == 0;
}

template <class T, int N>
bool SameBits(const CadPoint<T, N>& a, const CadPoint<T, N>& b)
{
    for (int axis = 0; axis < N; ++axis) {
        if (!SameBits(a[axis], b[axis])) {
            return false;
        }
    }
    return true;
}

} // namespace samples
