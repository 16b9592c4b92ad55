#pragma once
/// @file
/// Bisection of one interval or of several disjoint ones, with the rules by which the root finders accept a root.

#include <cadgeom/roots/polynomial.h>

#include <cstddef>
#include <vector>

namespace cadgeom::detail {

/// Number of halvings that shrink an interval below 10^-digits; the most negative int when there is no such number.
int CountHalvings(double xMin, double xMax, int digits) noexcept;

/// Finds one root in [xMin, xMax].
/// @param root  out: an end whose value is within 2^-23 of zero, or the last midpoint; untouched on failure
/// @return false when the values at the ends have the same sign
bool Bisect(const Polynomial1& polynomial, double xMin, double xMax, int digits, double& root) noexcept;

/// Appends the roots that Bisect finds between `breaks[i]` and `breaks[i + 1]`, for each i. The results are those of
/// single calls; the halvings of several intervals run side by side.
void BisectBetween(const Polynomial1& polynomial, const std::vector<double>& breaks, int digits,
                   std::vector<double>& roots);

} // namespace cadgeom::detail
