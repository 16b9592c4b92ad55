#pragma once
// Numbers to test with: random ones, and the special values that every formula meets sooner or later.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace test_support {

/// Zeros, ones, the ends of the range, denormals, infinities and NaN.
template <class T>
std::vector<T> SpecialValues()
{
    using Limits = std::numeric_limits<T>;
    return {T(0),
            -T(0),
            T(1),
            T(-1),
            Limits::min(),
            -Limits::min(),
            Limits::max(),
            -Limits::max(),
            Limits::denorm_min(),
            Limits::infinity(),
            -Limits::infinity(),
            Limits::quiet_NaN(),
            Limits::epsilon(),
            T(1e-6),
            T(1e-4)};
}

/// A stream of numbers that is the same on every run: mostly of everyday size, some of any size, some special.
template <class T>
class NumberStream {
public:
    explicit NumberStream(std::uint32_t seed) : m_engine(seed), m_special(SpecialValues<T>()) {}

    /// Uniform in [low, high).
    T Uniform(double low, double high)
    {
        return static_cast<T>(std::uniform_real_distribution<double>(low, high)(m_engine));
    }

    /// A whole number in [low, high].
    int Integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }

    /// An everyday number, or once in eight a special one or one of any magnitude.
    T Any()
    {
        const int kind = Integer(0, 15);
        if (kind == 0) {
            return m_special[static_cast<std::size_t>(Integer(0, static_cast<int>(m_special.size()) - 1))];
        }
        if (kind == 1) {
            constexpr int kExponents = std::numeric_limits<T>::max_exponent - 2;
            return static_cast<T>(std::ldexp(Uniform(-1, 1), Integer(-kExponents, kExponents)));
        }
        return Uniform(-10, 10);
    }

private:
    std::mt19937 m_engine;
    std::vector<T> m_special;
};

} // namespace test_support
