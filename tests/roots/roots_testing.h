#pragma once
// Helpers of the tests of polynomials and roots: construction, comparison, published polynomials, random factors.

#include <cadgeom/roots/polynomial_roots.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace roots_testing {

using Values = std::vector<double>;

inline constexpr double kLargest = 3.4028234663852886e38;
inline constexpr double kSingleEpsilon = 1.1920928955078125e-7;
inline const double kNan = std::numeric_limits<double>::quiet_NaN();
inline const double kInfinity = std::numeric_limits<double>::infinity();

inline Polynomial1 MakePolynomial(const Values& coefficients)
{
    return Polynomial1(static_cast<int>(coefficients.size()) - 1, coefficients.data());
}

inline Values ToValues(const Polynomial1& polynomial)
{
    Values values;
    for (int i = 0; i <= polynomial.GetDegree(); ++i) {
        values.push_back(polynomial[i]);
    }
    return values;
}

inline Values ToValues(const PolynomialRoots& roots)
{
    return Values(roots.GetRoots(), roots.GetRoots() + roots.GetCount());
}

inline Values Sorted(Values values)
{
    std::sort(values.begin(), values.end());
    return values;
}

/// Same bits, any not-a-number being as good as another.
inline bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

inline bool SameBits(const Values& a, const Values& b)
{
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](double x, double y) { return SameBits(x, y); });
}

/// Coefficients of the product.
inline Values Multiply(const Values& a, const Values& b)
{
    Values product(a.size() + b.size() - 1, 0.0);
    for (std::size_t i = 0; i < a.size(); ++i) {
        for (std::size_t j = 0; j < b.size(); ++j) {
            product[i + j] += a[i] * b[j];
        }
    }
    return product;
}

inline Values FromRoots(const Values& roots)
{
    Values product{1.0};
    for (const double root : roots) {
        product = Multiply(product, {-root, 1.0});
    }
    return product;
}

/// Distinct quarter integers within -4 ... 4, ascending: products of few such factors are exact.
inline Values RandomRoots(std::mt19937& random, std::size_t count)
{
    Values all;
    for (int i = -16; i <= 16; ++i) {
        all.push_back(i / 4.0);
    }
    std::shuffle(all.begin(), all.end(), random);
    all.resize(count);
    return Sorted(all);
}

/// Ordinary numbers, with zeros, infinities, not-a-numbers, denormals and huge values strewn in when `isHostile`.
inline double RandomCoefficient(std::mt19937& random, bool isHostile)
{
    const double value = std::uniform_real_distribution<double>(-3.0, 3.0)(random);
    const int choice = std::uniform_int_distribution<int>(0, 23)(random);
    if (choice < 3) {
        return choice - 1.0;
    }
    const double special[] = {kInfinity, -kInfinity, kNan, std::numeric_limits<double>::denorm_min(),
                              1e300,     -0.0,       1e-9};
    return isHostile && choice < 10 ? special[choice - 3] : value;
}

struct PublishedPolynomial {
    std::string name;
    int distinctRealRoots;
    double largestRealPart;
    double smallestRealPart;
    Values coefficients;
    Values roots;
    Values conditions; ///< relative
};

inline std::vector<PublishedPolynomial> ReadPublishedPolynomials()
{
    std::ifstream file(std::string(CADGEOM_TEST_DATA_DIR) + "/polynomials/polynomials.txt");
    std::stringstream text;
    for (std::string line; std::getline(file, line);) {
        if (line[0] != '#') {
            text << line << '\n';
        }
    }
    std::vector<PublishedPolynomial> polynomials;
    std::string word;
    const auto number = [&] {
        text >> word;
        return std::stod(word);
    };
    while (text >> word) {
        PublishedPolynomial polynomial;
        std::size_t degree = 0;
        text >> polynomial.name >> degree >> polynomial.distinctRealRoots;
        polynomial.largestRealPart = number();
        polynomial.smallestRealPart = number();
        for (std::size_t i = 0; i <= degree; ++i) {
            polynomial.coefficients.push_back(number());
        }
        std::size_t count = 0;
        text >> word >> count;
        for (std::size_t i = 0; i < count; ++i) {
            polynomial.roots.push_back(number());
            polynomial.conditions.push_back(number());
        }
        polynomials.push_back(polynomial);
    }
    return polynomials;
}

} // namespace roots_testing
