#include <cadgeom/roots/polynomial_roots.h>

#include "roots/bisection.h"

#include <cmath>
#include <utility>
#include <vector>

// Method: between two neighbouring roots of the derivative a polynomial is monotonic and has at most one root, which
// bisection finds. The roots of the derivative are found in the same way, so that the work goes from the linear
// derivative up.

namespace {

/// The derivatives of order 1, 2, ... down to the linear one.
std::vector<Polynomial1> Derivatives(const Polynomial1& polynomial)
{
    std::vector<Polynomial1> derivatives;
    derivatives.reserve(static_cast<std::size_t>(polynomial.GetDegree()));
    const Polynomial1* last = &polynomial;
    while (last->GetDegree() > 1) {
        derivatives.push_back(last->GetDerivative());
        last = &derivatives.back();
    }
    return derivatives;
}

} // namespace

bool PolynomialRoots::Bisection(const Polynomial1& polynomial, double xMin, double xMax, int digits,
                                double& root) const noexcept
{
    return cadgeom::detail::Bisect(polynomial, xMin, xMax, digits, root);
}

bool PolynomialRoots::FindB(const Polynomial1& polynomial, int digits)
{
    const double bound = GetBound(polynomial);
    return FindB(polynomial, -bound, bound, digits);
}

bool PolynomialRoots::FindB(const Polynomial1& polynomial, double xMin, double xMax, int digits)
{
    m_count = 0;
    const int degree = polynomial.GetDegree();
    if (degree <= 0 || !(xMin < xMax)) {
        return false;
    }
    const std::vector<Polynomial1> derivatives = Derivatives(polynomial);
    std::vector<double> breaks;
    std::vector<double> candidates;
    breaks.reserve(static_cast<std::size_t>(degree) + 1);
    candidates.reserve(static_cast<std::size_t>(degree));
    if (degree > m_maxRoot) {
        m_roots.reset(new double[static_cast<std::size_t>(degree)]());
        m_maxRoot = degree;
    }

    for (std::size_t order = derivatives.size() + 1; order-- > 0;) {
        breaks.assign(1, xMin);
        breaks.insert(breaks.end(), m_roots.get(), m_roots.get() + m_count);
        breaks.push_back(xMax);
        candidates.clear();
        cadgeom::detail::BisectBetween(order == 0 ? polynomial : derivatives[order - 1], breaks, digits, candidates);

        m_count = 0;
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            if (i == 0 || std::fabs(candidates[i] - candidates[i - 1]) > m_epsilon) {
                m_roots[m_count++] = candidates[i];
            }
        }
    }
    return m_count > 0;
}
