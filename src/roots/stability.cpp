#include <cadgeom/roots/polynomial_roots.h>

#include <vector>

// Method: the Routh-Hurwitz criterion by repeated reduction of the degree. A monic polynomial with only left roots
// has a positive second coefficient, and its product with a linear factor, freed of odd or even powers, gives a
// polynomial of lower degree that is stable exactly when the first one is.

namespace {

std::vector<double> MonicCoefficients(const Polynomial1& polynomial)
{
    std::vector<double> a;
    const int degree = polynomial.GetDegree();
    if (degree < 0) {
        return a;
    }
    a.reserve(static_cast<std::size_t>(degree) + 1);
    const double leading = polynomial[degree];
    for (int i = 0; i < degree; ++i) {
        a.push_back(leading == 1.0 ? polynomial[i] : polynomial[i] / leading);
    }
    a.push_back(1.0);
    return a;
}

/// The polynomial of lower degree that has only left roots when the monic `a` has, made monic.
std::vector<double> Reduce(const std::vector<double>& a)
{
    const std::size_t n = a.size() - 1;
    const double next = a[n - 1];
    std::vector<double> t(n);
    t[0] = 2.0 * a[0] * next;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        t[i] = next * a[i];
        if ((n - i) % 2 == 0) {
            t[i] -= a[i - 1];
        }
        t[i] *= 2.0;
    }
    t[n - 1] = 2.0 * (next * next);
    while (!t.empty() && t.back() == 0.0) {
        t.pop_back();
    }
    for (std::size_t i = 0; i + 1 < t.size(); ++i) {
        t[i] /= t.back();
    }
    return t;
}

bool HasOnlyLeftRoots(std::vector<double> a)
{
    while (a.size() > 1) {
        if (a[a.size() - 2] <= 0.0) {
            return false;
        }
        if (a.size() == 2) {
            return true;
        }
        a = Reduce(a);
    }
    return true;
}

} // namespace

bool PolynomialRoots::AllRealPartsNegative(const Polynomial1& polynomial) const
{
    return HasOnlyLeftRoots(MonicCoefficients(polynomial));
}

bool PolynomialRoots::AllRealPartsPositive(const Polynomial1& polynomial) const
{
    // Mirrored at the imaginary axis, right roots are left ones.
    std::vector<double> a = MonicCoefficients(polynomial);
    for (std::size_t i = a.size(); i > 1; i -= 2) {
        a[i - 2] *= -1.0;
    }
    return HasOnlyLeftRoots(std::move(a));
}
