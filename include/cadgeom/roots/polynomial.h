#pragma once
/// @file
/// A real polynomial in one variable, as the root finders of roots/polynomial_roots.h take it. The class is defined
/// wholly in this header.

#include <cadgeom/core/floating_point.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

CADGEOM_FP_BEGIN

/// A polynomial c0 + c1 x + c2 x^2 + ... with `double` coefficients, stored lowest power first.
///
/// The degree is that of the coefficient array: leading coefficients may be zero. Degree -1 marks an empty
/// polynomial, which has no coefficients and evaluates to 0.
///
/// Indices are not checked. Memory comes from `new[]`, whose failure leaves every polynomial as it was. Distinct
/// polynomials may be used from distinct threads, one polynomial from several threads as long as it is only read.
class Polynomial1 {
public:
    /// An empty polynomial.
    Polynomial1() noexcept = default;
    /// @param degree        -1 and below make an empty polynomial
    /// @param coefficients  degree + 1 numbers, lowest power first; null makes an empty polynomial
    Polynomial1(int degree, const double* coefficients);
    Polynomial1(const Polynomial1& other);
    /// Takes the coefficients of `other`, which becomes empty.
    Polynomial1(Polynomial1&& other) noexcept;
    Polynomial1& operator=(const Polynomial1& other);
    Polynomial1& operator=(Polynomial1&& other) noexcept;
    ~Polynomial1() = default;

    int GetDegree() const noexcept { return m_degree; }
    /// Coefficient of the power `power`, 0 ... degree.
    double& operator[](int power) noexcept { return m_coefficients[static_cast<std::size_t>(power)]; }
    double operator[](int power) const noexcept { return m_coefficients[static_cast<std::size_t>(power)]; }

    /// The value at x, by Horner's rule from the highest coefficient down; 0 for an empty polynomial.
    double operator()(double x) const noexcept;

    /// The polynomial with every coefficient negated.
    Polynomial1 operator-() const;

    /// The derivative: one degree less; the constant 0 for a constant; empty for an empty polynomial.
    Polynomial1 GetDerivative() const;

    /// Polynomial division: *this = quotient * divisor + remainder.
    ///
    /// Where this has the lower degree, the quotient is the constant 0 and the remainder a copy of this; so it is for
    /// an empty divisor. Otherwise the leading coefficient of the divisor is divided by as it stands: a zero yields
    /// infinities and not-a-numbers.
    /// @param quotient, remainder  out; may be this polynomial or the divisor, but not one another
    /// @param epsilon  leading coefficients of the remainder below it in absolute value are dropped, and a constant
    ///                 remainder below it becomes 0
    void Divide(const Polynomial1& divisor, Polynomial1& quotient, Polynomial1& remainder, double epsilon) const;

    /// Drops leading coefficients of absolute value at most `epsilon` and divides what is left by the leading one,
    /// which becomes 1. When nothing is left the polynomial is empty.
    void Compress(double epsilon);

private:
    /// A polynomial with uninitialised coefficients.
    static Polynomial1 OfDegree(int degree);

    int m_degree = -1;
    std::unique_ptr<double[]> m_coefficients;
};

inline Polynomial1 Polynomial1::OfDegree(int degree)
{
    Polynomial1 polynomial;
    if (degree >= 0) {
        polynomial.m_coefficients.reset(new double[static_cast<std::size_t>(degree) + 1]);
        polynomial.m_degree = degree;
    }
    return polynomial;
}

inline Polynomial1::Polynomial1(int degree, const double* coefficients)
{
    if (degree >= 0 && coefficients != nullptr) {
        const std::size_t count = static_cast<std::size_t>(degree) + 1;
        m_coefficients.reset(new double[count]);
        std::copy_n(coefficients, count, m_coefficients.get());
        m_degree = degree;
    }
}

inline Polynomial1::Polynomial1(const Polynomial1& other) : Polynomial1(other.m_degree, other.m_coefficients.get()) {}

inline Polynomial1::Polynomial1(Polynomial1&& other) noexcept
    : m_degree(std::exchange(other.m_degree, -1)), m_coefficients(std::move(other.m_coefficients))
{}

inline Polynomial1& Polynomial1::operator=(const Polynomial1& other)
{
    if (this != &other) {
        *this = Polynomial1(other);
    }
    return *this;
}

inline Polynomial1& Polynomial1::operator=(Polynomial1&& other) noexcept
{
    if (this != &other) {
        m_degree = std::exchange(other.m_degree, -1);
        m_coefficients = std::move(other.m_coefficients);
    }
    return *this;
}

inline double Polynomial1::operator()(double x) const noexcept
{
    if (m_degree < 0) {
        return 0.0;
    }
    double value = (*this)[m_degree];
    for (int i = m_degree - 1; i >= 0; --i) {
        value = cadgeom::detail::Product(value, x) + (*this)[i];
    }
    return value;
}

inline Polynomial1 Polynomial1::operator-() const
{
    Polynomial1 negated = OfDegree(m_degree);
    for (int i = m_degree; i >= 0; --i) {
        negated[i] = -(*this)[i];
    }
    return negated;
}

inline Polynomial1 Polynomial1::GetDerivative() const
{
    if (m_degree == 0) {
        const double zero = 0.0;
        return Polynomial1(0, &zero);
    }
    Polynomial1 derivative = OfDegree(m_degree - 1);
    for (int i = 0; i < m_degree; ++i) {
        derivative[i] = static_cast<double>(i + 1) * (*this)[i + 1];
    }
    return derivative;
}

inline void Polynomial1::Divide(const Polynomial1& divisor, Polynomial1& quotient, Polynomial1& remainder,
                                double epsilon) const
{
    const int divisorDegree = divisor.m_degree;
    if (m_degree < divisorDegree || divisorDegree < 0) {
        const double zero = 0.0;
        Polynomial1 copy(*this);
        quotient = Polynomial1(0, &zero);
        remainder = std::move(copy);
        return;
    }

    Polynomial1 rest(*this);
    Polynomial1 ratio = OfDegree(m_degree - divisorDegree);
    const double inverse = 1.0 / divisor[divisorDegree];
    for (int k = ratio.m_degree; k >= 0; --k) {
        ratio[k] = rest[divisorDegree + k] * inverse;
        for (int j = divisorDegree + k - 1; j >= k; --j) {
            rest[j] -= cadgeom::detail::Product(ratio[k], divisor[j - k]);
        }
    }

    int restDegree = divisorDegree - 1;
    while (restDegree > 0 && std::fabs(rest[restDegree]) < epsilon) {
        --restDegree;
    }
    if (restDegree == 0 && std::fabs(rest[0]) < epsilon) {
        rest[0] = 0.0;
    }
    Polynomial1 shortened(restDegree, rest.m_coefficients.get());
    quotient = std::move(ratio);
    remainder = std::move(shortened);
}

inline void Polynomial1::Compress(double epsilon)
{
    int degree = m_degree;
    while (degree >= 0 && std::fabs((*this)[degree]) <= epsilon) {
        --degree;
    }
    if (degree != m_degree) {
        *this = Polynomial1(degree, m_coefficients.get());
    }
    if (m_degree >= 0) {
        const double leading = (*this)[m_degree];
        for (int i = 0; i < m_degree; ++i) {
            (*this)[i] /= leading;
        }
        (*this)[m_degree] = 1.0;
    }
}

CADGEOM_FP_END
