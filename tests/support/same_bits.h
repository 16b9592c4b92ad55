#pragma once
// Comparisons of floating-point numbers by their bits, for results that are promised exactly.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>

namespace test_support {

inline std::uint64_t BitsOf(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(value));
    return bits;
}

inline std::uint32_t BitsOf(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(value));
    return bits;
}

/// Whether two numbers have the same bits; all NaNs count as one.
template <class T>
::testing::AssertionResult SameBits(T expected, T actual)
{
    if (BitsOf(expected) == BitsOf(actual) || (std::isnan(expected) && std::isnan(actual))) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "expected " << ::testing::PrintToString(expected) << " (bits " << std::hex
                                         << BitsOf(expected) << "), got " << ::testing::PrintToString(actual)
                                         << " (bits " << BitsOf(actual) << ")";
}

} // namespace test_support

#define EXPECT_SAME_BITS(expected, actual) EXPECT_TRUE(::test_support::SameBits(expected, actual))
#define ASSERT_SAME_BITS(expected, actual) ASSERT_TRUE(::test_support::SameBits(expected, actual))
