#include <cadgeom/roots/polynomial_roots.h>

#include <algorithm>
#include <cmath>

// Methods: Cardano for the cubic, Ferrari by a resolvent cubic for the quartic, a hyperbolic substitution written
// with a cube root for the special cubic.
//
// Weak spot: discriminants are compared with an absolute epsilon, so that polynomials with coefficients far from 1
// take the branch of multiple roots too early or too late. Companion matrices and bisection do not depend on a
// discriminant.

namespace {

constexpr double kThird = 0.3333333333333333;
constexpr double kTwentySeventh = 0.037037037037037035;
constexpr double kSqrt3 = 1.7320508075688772;

double CubeRoot(double value)
{
    return value >= 0.0 ? std::pow(value, kThird) : -std::pow(-value, kThird);
}

} // namespace

bool PolynomialRoots::FindA(double c0, double c1)
{
    m_count = 0;
    if (std::fabs(c1) >= m_epsilon) {
        m_roots[m_count++] = -c0 / c1;
    }
    return m_count > 0;
}

bool PolynomialRoots::FindA(double c0, double c1, double c2)
{
    if (std::fabs(c2) <= m_epsilon) {
        return FindA(c0, c1);
    }
    m_count = 0;
    double discriminant = c1 * c1 - 4.0 * c0 * c2;
    if (std::fabs(discriminant) <= m_epsilon) {
        discriminant = 0.0;
    } else if (discriminant < 0.0) {
        return false;
    }
    const double t = 0.5 / c2;
    if (discriminant > 0.0) {
        const double root = std::sqrt(discriminant);
        m_roots[m_count++] = (-c1 - root) * t;
        m_roots[m_count++] = (root - c1) * t;
    } else {
        m_roots[m_count++] = -c1 * t;
    }
    return true;
}

bool PolynomialRoots::FindA(double c0, double c1, double c2, double c3)
{
    if (std::fabs(c3) <= m_epsilon) {
        return FindA(c0, c1, c2);
    }
    // With x = y - offset: y^3 + 3 (b / 3) y + 2 q = 0.
    const double inverse = 1.0 / c3;
    const double a = c2 * inverse;
    const double offset = a * kThird;
    const double b = c1 * inverse - offset * a;
    const double q = ((2.0 * (a * a) - 9.0 * c1 * inverse) * a * kTwentySeventh + c0 * inverse) * 0.5;
    const double discriminant = b * b * b * kTwentySeventh + q * q;

    m_count = 0;
    if (std::fabs(discriminant) > m_epsilon && discriminant > 0.0) {
        const double root = std::sqrt(discriminant);
        m_roots[m_count++] = CubeRoot(root - q) + CubeRoot(-q - root) - offset;
    } else if (std::fabs(discriminant) > m_epsilon) {
        const double distance = std::sqrt(-b * kThird);
        const double angle = std::atan2(std::sqrt(-discriminant), -q) * kThird;
        const double cosine = std::cos(angle);
        const double sine = std::sin(angle);
        m_roots[m_count++] = 2.0 * distance * cosine - offset;
        m_roots[m_count++] = -distance * (cosine + kSqrt3 * sine) - offset;
        m_roots[m_count++] = -distance * (cosine - kSqrt3 * sine) - offset;
    } else {
        const double t = -CubeRoot(q);
        m_roots[m_count++] = 2.0 * t - offset;
        m_roots[m_count++] = -t - offset;
        m_roots[m_count++] = -t - offset;
    }
    return true;
}

bool PolynomialRoots::FindA(double c0, double c1, double c2, double c3, double c4)
{
    if (std::fabs(c4) <= m_epsilon) {
        return FindA(c0, c1, c2, c3);
    }
    const double a0 = c0 / c4;
    const double a1 = c1 / c4;
    const double a2 = c2 / c4;
    const double a3 = c3 / c4;
    const double squaredA3 = a3 * a3;

    FindA(4.0 * a2 * a0 - squaredA3 * a0 - a1 * a1, a3 * a1 - 4.0 * a0, -a2, 1.0);
    const double y = m_roots[0];
    m_count = 0;

    const double quarterA3 = a3 / 4.0;
    const double squaredR = squaredA3 / 4.0 - a2 + y;
    if (std::fabs(squaredR) > m_epsilon && squaredR < 0.0) {
        return false;
    }
    if (std::fabs(squaredR) > m_epsilon) {
        const double r = std::sqrt(squaredR);
        const double t1 = 0.75 * squaredA3 - squaredR - 2.0 * a2;
        const double t2 = (4.0 * a3 * a2 - 8.0 * a1 - squaredA3 * a3) / (4.0 * r);
        const auto orZero = [this](double value) { return std::fabs(value) <= m_epsilon ? 0.0 : value; };
        const double squaredD = orZero(t1 + t2);
        const double squaredE = orZero(t1 - t2);
        if (squaredD >= 0.0) {
            const double d = std::sqrt(squaredD);
            m_roots[m_count++] = -quarterA3 + (r + d) / 2.0;
            m_roots[m_count++] = -quarterA3 + (r - d) / 2.0;
        }
        if (squaredE >= 0.0) {
            const double e = std::sqrt(squaredE);
            m_roots[m_count++] = -quarterA3 + (e - r) / 2.0;
            m_roots[m_count++] = -quarterA3 - (r + e) / 2.0;
        }
        return m_count > 0;
    }

    const double squaredS = y * y - 4.0 * a0;
    if (squaredS < -m_epsilon) {
        return false;
    }
    const double s = std::sqrt(std::max(squaredS, 0.0));
    const double t1 = 0.75 * squaredA3 - 2.0 * a2;
    if (t1 + 2.0 * s >= m_epsilon) {
        const double d = std::sqrt(t1 + 2.0 * s) / 2.0;
        m_roots[m_count++] = -quarterA3 + d;
        m_roots[m_count++] = -quarterA3 - d;
    }
    if (t1 - 2.0 * s >= m_epsilon) {
        const double e = std::sqrt(t1 - 2.0 * s) / 2.0;
        m_roots[m_count++] = -quarterA3 + e;
        m_roots[m_count++] = -quarterA3 - e;
    }
    return m_count > 0;
}

double PolynomialRoots::SpecialCubic(double a, double b, double c) const noexcept
{
    const double d = std::sqrt(4.0 * b / (3.0 * a));
    const double e = 4.0 * c / (a * (d * d * d));
    const double f = std::pow(e + std::sqrt(e * e + 1.0), kThird);
    return d / 2.0 * (f - 1.0 / f);
}
