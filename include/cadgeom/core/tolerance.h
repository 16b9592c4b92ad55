#pragma once
/// @file
/// The tolerances that the whole library shares, by scalar type.

namespace cadgeom::detail {

/// Single-precision machine epsilon 2^-23, the tolerance of unit length and of most fits, in both precisions.
inline constexpr double kSingleEpsilon = 1.1920928955078125e-7;

/// Largest single-precision value: the marker of empty boxes and missing roots, and the start of running minima and
/// maxima, in both precisions.
inline constexpr double kLargestSingle = 3.4028234663852886e38;

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kHalfPi = 1.5707963267948966;
inline constexpr double kRadiansPerDegree = 0.017453292519943295;
inline constexpr double kDegreesPerRadian = 57.29577951308232;

/// Tolerances of one scalar type.
template <class T>
struct Tolerance;

template <>
struct Tolerance<double> {
    /// Absolute tolerance of comparisons, per component.
    static constexpr double epsilon() { return 1e-6; }
    /// Squared length at or below which a direction has no direction.
    static constexpr double squaredEpsilon() { return 1e-12; }
};

template <>
struct Tolerance<float> {
    static constexpr float epsilon() { return 1e-4F; }
    static constexpr float squaredEpsilon() { return 1e-8F; }
};

} // namespace cadgeom::detail
