#pragma once
// Conversion of counts from double to int.

#include <limits>

namespace cadgeom::detail {

/// Truncates toward zero. NaN and values that no int holds become the most negative int.
inline int TruncateToInt(double value)
{
    constexpr double kBelowRange = -2147483649.0;
    constexpr double kAboveRange = 2147483648.0;
    return value > kBelowRange && value < kAboveRange ? static_cast<int>(value) : std::numeric_limits<int>::min();
}

} // namespace cadgeom::detail
