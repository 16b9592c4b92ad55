#include <cadgeom/roots/polynomial_roots.h>

#include <cadgeom/core/tolerance.h>

namespace {

/// The closed forms and the companion matrices find no more roots than this.
constexpr int kInitialCapacity = 4;

constexpr int kInitialIterations = 128;

} // namespace

PolynomialRoots::PolynomialRoots(double epsilon)
    : m_epsilon(epsilon),
      m_maxRoot(kInitialCapacity),
      m_roots(new double[kInitialCapacity]()),
      m_maxIterations(kInitialIterations)
{}

PolynomialRoots::PolynomialRoots(const PolynomialRoots& other) = default;
PolynomialRoots& PolynomialRoots::operator=(const PolynomialRoots& other) = default;
PolynomialRoots::~PolynomialRoots() = default;

double PolynomialRoots::GetRoot(int index) const noexcept
{
    return index >= 0 && index < m_count ? m_roots[index] : cadgeom::detail::kLargestSingle;
}

bool PolynomialRoots::FindE(const Polynomial1&, bool) const noexcept
{
    return false;
}

bool PolynomialRoots::FindN(const Polynomial1&, int) const noexcept
{
    return false;
}

bool PolynomialRoots::FindN(const Polynomial1&, double, double, int) const noexcept
{
    return false;
}
