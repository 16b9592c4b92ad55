#include "roots/bisection.h"

#include <cadgeom/core/tolerance.h>

#include "core/int_conversion.h"

#include <cmath>

namespace cadgeom::detail {
namespace {

constexpr double kLn2 = 0.6931471805599453;
constexpr double kLn10 = 2.302585092994046;

/// An interval with a change of sign, while it is being halved.
struct Bracket {
    double xMin;
    double xMax;
    double valueAtMin;
    double root;
    int halvingsLeft;

    /// Takes the half that holds the change of sign. Ends the halving at an exact zero, at not-a-number, and when a
    /// further one would repeat this one.
    void Take(double middle, double value) noexcept
    {
        root = middle;
        --halvingsLeft;
        bool isUnchanged = true;
        if (value * valueAtMin < 0.0) {
            isUnchanged = xMax == middle;
            xMax = middle;
        } else if (value * valueAtMin > 0.0) {
            isUnchanged = xMin == middle;
            xMin = middle;
            valueAtMin = value;
        }
        if (isUnchanged) {
            halvingsLeft = 0;
        }
    }

    double Middle() const noexcept { return (xMin + xMax) / 2.0; }
};

/// Number of intervals that are halved side by side.
constexpr std::size_t kLanes = 4;

/// Below this degree the chain of operations is too short to be worth filling.
constexpr int kSmallestDegreeInLanes = 6;

enum class Start {
    eNoRoot,
    eAtEnd,
    eBracketed
};

/// Looks at the ends of an interval. On eAtEnd `bracket.root` is that end; on eBracketed it is the middle, the result
/// when there is nothing to halve.
Start StartBisection(const Polynomial1& polynomial, double xMin, double xMax, int digits, Bracket& bracket) noexcept
{
    const double p0 = polynomial(xMin);
    if (std::fabs(p0) <= kSingleEpsilon) {
        bracket.root = xMin;
        return Start::eAtEnd;
    }
    const double p1 = polynomial(xMax);
    if (std::fabs(p1) <= kSingleEpsilon) {
        bracket.root = xMax;
        return Start::eAtEnd;
    }
    if (p0 * p1 > 0.0) {
        return Start::eNoRoot;
    }
    bracket = {xMin, xMax, p0, 0.0, CountHalvings(xMin, xMax, digits)};
    bracket.root = bracket.Middle();
    return Start::eBracketed;
}

/// The values at kLanes places, each by Horner's rule as Polynomial1 evaluates.
void Evaluate(const Polynomial1& polynomial, const double (&x)[kLanes], double (&values)[kLanes]) noexcept
{
    double sums[kLanes];
    for (double& sum : sums) {
        sum = polynomial[polynomial.GetDegree()];
    }
    for (int i = polynomial.GetDegree() - 1; i >= 0; --i) {
        const double coefficient = polynomial[i];
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            sums[lane] = sums[lane] * x[lane] + coefficient;
        }
    }
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        values[lane] = sums[lane];
    }
}

/// Halves `active` brackets until one of them is done.
void HalveTogether(const Polynomial1& polynomial, Bracket* lanes, std::size_t active) noexcept
{
    // Lanes without a bracket evaluate 0, whose value nobody reads.
    double middles[kLanes] = {};
    double values[kLanes];
    for (bool isOneDone = active == 0; !isOneDone;) {
        for (std::size_t lane = 0; lane < active; ++lane) {
            middles[lane] = lanes[lane].Middle();
        }
        Evaluate(polynomial, middles, values);
        for (std::size_t lane = 0; lane < active; ++lane) {
            lanes[lane].Take(middles[lane], values[lane]);
            isOneDone = isOneDone || lanes[lane].halvingsLeft <= 0;
        }
    }
}

} // namespace

int CountHalvings(double xMin, double xMax, int digits) noexcept
{
    return TruncateToInt((std::log(xMax - xMin) + digits * kLn10) / kLn2 + 0.5);
}

bool Bisect(const Polynomial1& polynomial, double xMin, double xMax, int digits, double& root) noexcept
{
    Bracket bracket{};
    const Start start = StartBisection(polynomial, xMin, xMax, digits, bracket);
    if (start == Start::eNoRoot) {
        return false;
    }
    while (start == Start::eBracketed && bracket.halvingsLeft > 0) {
        const double middle = bracket.Middle();
        bracket.Take(middle, polynomial(middle));
    }
    root = bracket.root;
    return true;
}

void BisectBetween(const Polynomial1& polynomial, const std::vector<double>& breaks, int digits,
                   std::vector<double>& roots)
{
    if (polynomial.GetDegree() < kSmallestDegreeInLanes) {
        for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
            double root;
            if (Bisect(polynomial, breaks[i], breaks[i + 1], digits, root)) {
                roots.push_back(root);
            }
        }
        return;
    }
    // Horner's rule is one long chain of operations. Four brackets at a time keep the unit busy; a bracket that is done
    // gives its lane to the next interval.
    Bracket lanes[kLanes];
    std::size_t places[kLanes];
    std::size_t active = 0;
    std::size_t next = 0;
    const std::size_t intervals = breaks.size() - 1;
    while (active > 0 || next < intervals) {
        while (active < kLanes && next < intervals) {
            Bracket& bracket = lanes[active];
            const Start start = StartBisection(polynomial, breaks[next], breaks[next + 1], digits, bracket);
            ++next;
            if (start != Start::eNoRoot) {
                roots.push_back(bracket.root);
                places[active] = roots.size() - 1;
                active += start == Start::eBracketed && bracket.halvingsLeft > 0 ? 1 : 0;
            }
        }
        HalveTogether(polynomial, lanes, active);
        for (std::size_t lane = active; lane-- > 0;) {
            roots[places[lane]] = lanes[lane].root;
            if (lanes[lane].halvingsLeft <= 0) {
                --active;
                lanes[lane] = lanes[active];
                places[lane] = places[active];
            }
        }
    }
}

} // namespace cadgeom::detail
