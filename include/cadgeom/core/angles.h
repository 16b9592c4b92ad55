#pragma once
/// @file
/// Angles: canonical ranges, angles between vectors, and the number of segments that approximate an arc. Every angle
/// function has a form in radians (`...Rad`) and one in degrees (`...Deg`).

#include <cadgeom/core/export.h>

template <class T, int N>
class CadVector;

/// Brings an angle into [-tolerance, full turn - tolerance) by adding or subtracting whole turns one after the other.
///
/// The tolerance shifts the range: an angle just below a full turn becomes a small negative one. NaN stays; so does an
/// angle so large that a turn is lost in its rounding (beyond about 1e16), or infinite.
CADGEOM_API void NormalizeAngleRad(double& angle, double tolerance);
CADGEOM_API void NormalizeAngleDeg(double& angle, double tolerance);

/// Brings the end of a sweep into (start + tolerance, start + full turn + tolerance]: an end equal to the start becomes
/// a full turn. Unreachable ranges are left as NormalizeAngleRad leaves them.
CADGEOM_API void NormalizeEndAngleRad(double start, double& end, double tolerance);
CADGEOM_API void NormalizeEndAngleDeg(double start, double& end, double tolerance);

/// Normalises both ends of a sweep: the start by NormalizeAngle with 0.001 degrees whatever `tolerance` is, the end by
/// NormalizeEndAngle with `tolerance`. A sweep within `tolerance` of a full turn becomes exactly 0 ... full turn.
CADGEOM_API void NormalizeStartAndEndAnglesRad(double& start, double& end, double tolerance);
CADGEOM_API void NormalizeStartAndEndAnglesDeg(double& start, double& end, double tolerance);

/// to - from, brought into (-half turn, half turn] by whole turns.
CADGEOM_API double GetDeltaAngleRad(double from, double to);
CADGEOM_API double GetDeltaAngleDeg(double from, double to);

/// Angle between two vectors, 0 ... pi; 0 when either is zero. The float instances form lengths and dot product in
/// float, the rest in double.
template <class T, int N>
CADGEOM_API T GetAngleBetweenRad(const CadVector<T, N>& a, const CadVector<T, N>& b);
/// GetAngleBetweenRad times 180/pi.
template <class T, int N>
CADGEOM_API T GetAngleBetweenDeg(const CadVector<T, N>& a, const CadVector<T, N>& b);
/// Angle between the lines along two vectors, 0 ... pi/2; 0 when either is zero.
template <class T, int N>
CADGEOM_API T GetAcuteAngleBetweenRad(const CadVector<T, N>& a, const CadVector<T, N>& b);
/// GetAcuteAngleBetweenRad times 180/pi.
template <class T, int N>
CADGEOM_API T GetAcuteAngleBetweenDeg(const CadVector<T, N>& a, const CadVector<T, N>& b);
/// Cosine of the angle between two vectors, within [-1, 1]; 0 when either is zero.
template <class T, int N>
CADGEOM_API T GetCosAngleBetween(const CadVector<T, N>& a, const CadVector<T, N>& b);

/// Number of equal segments for an arc: at least `minDivisionsPerCircle` for a full circle, in proportion, and as many
/// as keep the sagitta of each at most `chordTolerance` when the radius is above it.
/// @param radius, chordTolerance  in the same unit
/// @param sweepAngle              radians; its sign does not matter
/// @return 0 for a zero sweep; there is no upper limit. A count that is no int, as from a tolerance <= 0, is ignored.
CADGEOM_API int GetNumCircularArcDivisions(double radius, double chordTolerance, double sweepAngle,
                                           int minDivisionsPerCircle);
/// As GetNumCircularArcDivisions, with two more limits. A limit that is not above 0 does not apply.
/// @param maxDivisionAngle  radians that a segment may sweep
/// @param maxChordLength    longest segment, in the unit of the radius; above 2 * radius it does not apply
CADGEOM_API int GetNumCircularArcAngleDivisions(double radius, double chordTolerance, double maxDivisionAngle,
                                                double maxChordLength, double sweepAngle, int minDivisionsPerCircle);

#define CADGEOM_DECLARE_ANGLES_BETWEEN(T, N)                                                                           \
    extern template CADGEOM_API T GetAngleBetweenRad(const CadVector<T, N>&, const CadVector<T, N>&);                  \
    extern template CADGEOM_API T GetAngleBetweenDeg(const CadVector<T, N>&, const CadVector<T, N>&);                  \
    extern template CADGEOM_API T GetAcuteAngleBetweenRad(const CadVector<T, N>&, const CadVector<T, N>&);             \
    extern template CADGEOM_API T GetAcuteAngleBetweenDeg(const CadVector<T, N>&, const CadVector<T, N>&);             \
    extern template CADGEOM_API T GetCosAngleBetween(const CadVector<T, N>&, const CadVector<T, N>&)

CADGEOM_DECLARE_ANGLES_BETWEEN(float, 2);
CADGEOM_DECLARE_ANGLES_BETWEEN(float, 3);
CADGEOM_DECLARE_ANGLES_BETWEEN(double, 2);
CADGEOM_DECLARE_ANGLES_BETWEEN(double, 3);

#undef CADGEOM_DECLARE_ANGLES_BETWEEN
