#include <cadgeom/core/angles.h>
#include <cadgeom/core/vector.h>

#include <algorithm>
#include <cmath>

#include "core/int_conversion.h"

namespace {

using cadgeom::detail::kHalfPi;
using cadgeom::detail::kPi;
using cadgeom::detail::kSingleEpsilon;
using cadgeom::detail::kTwoPi;
using cadgeom::detail::TruncateToInt;

struct Radians {
    static constexpr double kFullTurn = kTwoPi;
    static constexpr double kHalfTurn = kPi;
    static constexpr double kStartTolerance = 1.7453292519943296e-5;
};

struct Degrees {
    static constexpr double kFullTurn = 360.0;
    static constexpr double kHalfTurn = 180.0;
    static constexpr double kStartTolerance = 0.001;
};

/// Exact sum of the steps that adding `turn` over and over would make from `value` without leaving its binade or coming
/// near `limit`. Inside one binade every such addition rounds to the same multiple of the last place, so the steps can be
/// taken at once, with the bits that taking them one by one would give. Only halfway cases depend on the parity of the
/// value, which the first addition inside the binade settles: so two steps must agree.
double WholeStepsAhead(double value, double turn, double limit)
{
    constexpr double kWorthJumping = 1048576.0;
    if (std::fabs(value) < kWorthJumping) {
        return 0.0;
    }
    const double next = value + turn;
    const double step = next - value;
    if ((next + turn) - next != step) {
        return 0.0;
    }
    const double floorOfBinade = std::ldexp(1.0, std::ilogb(value));
    const double toBinadeEnd = value < 0.0 ? -floorOfBinade - value : 2.0 * floorOfBinade - value;
    constexpr double kSafetySteps = 2.0;
    const double steps = std::floor(std::min(toBinadeEnd, limit - value) / step) - kSafetySteps;
    return steps > 0.0 ? steps * step : 0.0;
}

/// Adds `turn` until `isReached`; gives up where a turn is lost in the rounding of the angle.
template <class IsReached>
double RaiseByTurns(double angle, double turn, double limit, IsReached isReached)
{
    while (!isReached(angle)) {
        const double next = angle + turn;
        if (next == angle) {
            break;
        }
        angle = next;
        if (!isReached(angle) && angle + turn != angle) {
            angle += WholeStepsAhead(angle, turn, limit);
        }
    }
    return angle;
}

double RaiseTo(double angle, double turn, double limit)
{
    return RaiseByTurns(angle, turn, limit, [limit](double value) { return value >= limit; });
}

double RaiseAbove(double angle, double turn, double limit)
{
    return RaiseByTurns(angle, turn, limit, [limit](double value) { return value > limit; });
}

// Lowering is raising seen in the mirror: rounding is symmetric about zero. Subtracted from 0, because a negated 0 would
// be -0, which no subtraction of turns gives.
double LowerTo(double angle, double turn, double limit)
{
    return 0.0 - RaiseTo(-angle, turn, -limit);
}
double LowerBelow(double angle, double turn, double limit)
{
    return 0.0 - RaiseAbove(-angle, turn, -limit);
}

template <class Unit>
void NormalizeAngle(double& angle, double tolerance)
{
    if (angle < -tolerance) {
        angle = RaiseTo(angle, Unit::kFullTurn, -tolerance);
    } else if (angle >= Unit::kFullTurn - tolerance) {
        angle = LowerBelow(angle, Unit::kFullTurn, Unit::kFullTurn - tolerance);
    }
}

template <class Unit>
void NormalizeEndAngle(double start, double& end, double tolerance)
{
    if (end <= start + tolerance) {
        end = RaiseAbove(end, Unit::kFullTurn, start + tolerance);
    } else if (end > start + Unit::kFullTurn + tolerance) {
        end = LowerTo(end, Unit::kFullTurn, start + Unit::kFullTurn + tolerance);
    }
}

template <class Unit>
void NormalizeStartAndEndAngles(double& start, double& end, double tolerance)
{
    NormalizeAngle<Unit>(start, Unit::kStartTolerance);
    NormalizeEndAngle<Unit>(start, end, tolerance);
    if (end - start >= Unit::kFullTurn - tolerance) {
        start = 0.0;
        end = Unit::kFullTurn;
    }
}

template <class Unit>
double GetDeltaAngle(double from, double to)
{
    const double delta = to - from;
    if (delta > Unit::kHalfTurn) {
        return LowerTo(delta, Unit::kFullTurn, Unit::kHalfTurn);
    }
    if (delta <= -Unit::kHalfTurn) {
        return RaiseAbove(delta, Unit::kFullTurn, -Unit::kHalfTurn);
    }
    return delta;
}

/// Lengths and dot product of two vectors, formed in T and kept in double.
struct AngleTerms {
    template <class T, int N>
    AngleTerms(const CadVector<T, N>& a, const CadVector<T, N>& b)
        : dot(static_cast<double>(a.dot(b))),
          lengths(static_cast<double>(a.length()) * static_cast<double>(b.length())),
          hasZeroVector(dot * static_cast<double>(CadVector<T, N>::epsilon()) >= lengths)
    {}

    double Cosine() const { return dot / lengths; }

    double dot;
    double lengths;
    /// The dot product never exceeds the lengths, so this holds only when one of them is zero.
    bool hasZeroVector;
};

int MinimumDivisions(double sweepAngle, int minDivisionsPerCircle)
{
    // The small deduction keeps an exact multiple from being rounded up.
    return TruncateToInt(std::ceil(minDivisionsPerCircle * std::fabs(sweepAngle) / kTwoPi - kSingleEpsilon));
}

int SagittaDivisions(double radius, double chordTolerance, double sweepAngle)
{
    return TruncateToInt(std::ceil(std::fabs(sweepAngle) / 2.0 / std::acos(1.0 - chordTolerance / radius)));
}

int ChordDivisions(double radius, double maxChordLength, double sweepAngle)
{
    return TruncateToInt(std::ceil(std::fabs(sweepAngle) / 2.0 / std::asin(maxChordLength / (2.0 * radius))));
}

} // namespace

void NormalizeAngleRad(double& angle, double tolerance)
{
    NormalizeAngle<Radians>(angle, tolerance);
}
void NormalizeAngleDeg(double& angle, double tolerance)
{
    NormalizeAngle<Degrees>(angle, tolerance);
}

void NormalizeEndAngleRad(double start, double& end, double tolerance)
{
    NormalizeEndAngle<Radians>(start, end, tolerance);
}
void NormalizeEndAngleDeg(double start, double& end, double tolerance)
{
    NormalizeEndAngle<Degrees>(start, end, tolerance);
}

void NormalizeStartAndEndAnglesRad(double& start, double& end, double tolerance)
{
    NormalizeStartAndEndAngles<Radians>(start, end, tolerance);
}
void NormalizeStartAndEndAnglesDeg(double& start, double& end, double tolerance)
{
    NormalizeStartAndEndAngles<Degrees>(start, end, tolerance);
}

double GetDeltaAngleRad(double from, double to)
{
    return GetDeltaAngle<Radians>(from, to);
}
double GetDeltaAngleDeg(double from, double to)
{
    return GetDeltaAngle<Degrees>(from, to);
}

template <class T, int N>
T GetAngleBetweenRad(const CadVector<T, N>& a, const CadVector<T, N>& b)
{
    const AngleTerms terms(a, b);
    if (terms.hasZeroVector) {
        return T(0);
    }
    const double cosine = terms.Cosine();
    if (cosine >= 1.0) {
        return T(0);
    }
    return cosine <= -1.0 ? static_cast<T>(kPi) : static_cast<T>(std::acos(cosine));
}

template <class T, int N>
T GetAngleBetweenDeg(const CadVector<T, N>& a, const CadVector<T, N>& b)
{
    return GetAngleBetweenRad(a, b) * static_cast<T>(cadgeom::detail::kDegreesPerRadian);
}

template <class T, int N>
T GetAcuteAngleBetweenRad(const CadVector<T, N>& a, const CadVector<T, N>& b)
{
    const T angle = GetAngleBetweenRad(a, b);
    return angle > static_cast<T>(kHalfPi) ? static_cast<T>(kPi) - angle : angle;
}

template <class T, int N>
T GetAcuteAngleBetweenDeg(const CadVector<T, N>& a, const CadVector<T, N>& b)
{
    return GetAcuteAngleBetweenRad(a, b) * static_cast<T>(cadgeom::detail::kDegreesPerRadian);
}

template <class T, int N>
T GetCosAngleBetween(const CadVector<T, N>& a, const CadVector<T, N>& b)
{
    const AngleTerms terms(a, b);
    if (terms.hasZeroVector) {
        return T(0);
    }
    const double cosine = terms.Cosine();
    if (cosine > 1.0) {
        return T(1);
    }
    return cosine < -1.0 ? T(-1) : static_cast<T>(cosine);
}

int GetNumCircularArcDivisions(double radius, double chordTolerance, double sweepAngle, int minDivisionsPerCircle)
{
    const int minimum = MinimumDivisions(sweepAngle, minDivisionsPerCircle);
    return radius > chordTolerance ? std::max(minimum, SagittaDivisions(radius, chordTolerance, sweepAngle)) : minimum;
}

int GetNumCircularArcAngleDivisions(double radius, double chordTolerance, double maxDivisionAngle,
                                    double maxChordLength, double sweepAngle, int minDivisionsPerCircle)
{
    int count = MinimumDivisions(sweepAngle, minDivisionsPerCircle);
    if (chordTolerance > 0.0 && radius > chordTolerance) {
        count = std::max(count, SagittaDivisions(radius, chordTolerance, sweepAngle));
    }
    if (maxDivisionAngle > 0.0) {
        count = std::max(count, TruncateToInt(std::ceil(std::fabs(sweepAngle) / maxDivisionAngle - kSingleEpsilon)));
    }
    if (maxChordLength > 0.0) {
        count = std::max(count, ChordDivisions(radius, maxChordLength, sweepAngle));
    }
    return count;
}

#define CADGEOM_INSTANTIATE(T, N)                                                                                      \
    template CADGEOM_API T GetAngleBetweenRad(const CadVector<T, N>&, const CadVector<T, N>&);                         \
    template CADGEOM_API T GetAngleBetweenDeg(const CadVector<T, N>&, const CadVector<T, N>&);                         \
    template CADGEOM_API T GetAcuteAngleBetweenRad(const CadVector<T, N>&, const CadVector<T, N>&);                    \
    template CADGEOM_API T GetAcuteAngleBetweenDeg(const CadVector<T, N>&, const CadVector<T, N>&);                    \
    template CADGEOM_API T GetCosAngleBetween(const CadVector<T, N>&, const CadVector<T, N>&)

CADGEOM_INSTANTIATE(float, 2);
CADGEOM_INSTANTIATE(float, 3);
CADGEOM_INSTANTIATE(double, 2);
CADGEOM_INSTANTIATE(double, 3);

#undef CADGEOM_INSTANTIATE
