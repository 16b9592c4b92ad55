#include <cadgeom/roots/polynomial_roots.h>

#include <cadgeom/core/tolerance.h>

#include <algorithm>
#include <cmath>

using std::fabs;

double PolynomialRoots::GetBound(double c0, double c1) const noexcept
{
    return fabs(c1) <= m_epsilon ? -1.0 : fabs(c0) * (1.0 / c1) + 1.0;
}

double PolynomialRoots::GetBound(double c0, double c1, double c2) noexcept
{
    if (fabs(c2) > m_epsilon) {
        return 1.0 + std::max(fabs(c0), fabs(c1)) * (1.0 / c2);
    }
    return FindA(c0, c1) ? m_roots[0] : cadgeom::detail::kLargestSingle;
}

double PolynomialRoots::GetBound(double c0, double c1, double c2, double c3) noexcept
{
    if (fabs(c3) > m_epsilon) {
        return 1.0 + std::max({fabs(c0), fabs(c1), fabs(c2)}) * (1.0 / c3);
    }
    return GetBound(c0, c1, c2);
}

double PolynomialRoots::GetBound(double c0, double c1, double c2, double c3, double c4) noexcept
{
    if (fabs(c4) > m_epsilon) {
        return 1.0 + std::max({fabs(c0), fabs(c1), fabs(c2), fabs(c3)}) * (1.0 / c4);
    }
    return GetBound(c0, c1, c2, c3);
}

double PolynomialRoots::GetBound(const Polynomial1& polynomial) const
{
    Polynomial1 monic(polynomial);
    monic.Compress(m_epsilon);
    if (monic.GetDegree() < 1) {
        return -1.0;
    }
    double largest = fabs(monic[0]);
    for (int i = 1; i < monic.GetDegree(); ++i) {
        largest = std::max(largest, fabs(monic[i]));
    }
    return 1.0 + largest;
}
