// Finds out when a thrown ball is at a height, and where a beam does not bend: a quadratic in closed form, and a
// polynomial of degree 5 by bisection.

#include <cadgeom/roots/polynomial.h>
#include <cadgeom/roots/polynomial_roots.h>

#include <cmath>
#include <cstdio>

namespace {

void Print(const char* what, const PolynomialRoots& roots)
{
    std::printf("%s", what);
    for (int i = 0; i < roots.GetCount(); ++i)
        std::printf(" %.6f", roots.GetRoot(i));
    std::puts(roots.GetCount() == 0 ? " never" : "");
}

} // namespace

int main()
{
    // Numbers within this of zero count as zero, in coefficients and discriminants.
    PolynomialRoots roots(1e-9);

    // Coefficients come lowest power first. Height 1.5 + 12 t - 4.905 t^2 reaches 6 where the difference is 0.
    roots.FindA(1.5 - 6, 12, -4.905);
    Print("the ball is at 6 m after (s):", roots);
    const bool isTwice = roots.GetCount() == 2;
    roots.FindA(1.5 - 20, 12, -4.905);
    Print("the ball is at 20 m after (s):", roots);
    const bool isNever = roots.GetCount() == 0;

    // x^5 - 5 x^3 + 4 x = (x + 2)(x + 1) x (x - 1)(x - 2).
    const double coefficients[] = {0, 4, 0, -5, 0, 1};
    const Polynomial1 beam(5, coefficients);
    std::printf("real roots between -0.5 and 3: %d\n", roots.GetRootCount(beam, -0.5, 3));
    constexpr int kDecimalDigits = 12;
    roots.FindB(beam, -0.5, 3, kDecimalDigits);
    Print("and they are:", roots);

    bool isRight = isTwice && isNever && roots.GetCount() == 3;
    for (int i = 0; i < roots.GetCount(); ++i)
        isRight = isRight && std::fabs(roots.GetRoot(i) - i) < 1e-11;
    return isRight ? 0 : 1;
}
