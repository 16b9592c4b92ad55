#pragma once
/// @file
/// The steps that map one position or direction. Whether a step has an effect is passed as a bool for one element and as
/// a compile-time constant for arrays, so that both go through the same lines.

#include <cmath>

namespace cadgeom::detail {

struct Triple {
    double x;
    double y;
    double z;
};

/// The numbers of a transform as its mappings use them.
struct Frame {
    Triple translation;
    Triple axes[3]; ///< for mappings to local: the columns of the inverse axis matrix
    Triple scale;
    bool isRotated;
    bool isScaled;
    bool isMoved;
    bool isUniform; ///< exactly equal scale factors
};

inline Triple operator+(const Triple& a, const Triple& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Triple operator-(const Triple& a, const Triple& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Triple operator*(const Triple& a, double factor)
{
    return {a.x * factor, a.y * factor, a.z * factor};
}

inline Triple ByComponent(const Triple& a, const Triple& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}

inline Triple DivideByComponent(const Triple& a, const Triple& b)
{
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}

inline double Dot(const Triple& a, const Triple& b)
{
    return 0.0 + a.x * b.x + a.y * b.y + a.z * b.z;
}

/// v.x * axes[0] + v.y * axes[1] + v.z * axes[2].
inline Triple AlongAxes(const Triple (&axes)[3], const Triple& v)
{
    return axes[0] * v.x + axes[1] * v.y + axes[2] * v.z;
}

inline Triple DotAxes(const Triple (&axes)[3], const Triple& v)
{
    return {Dot(v, axes[0]), Dot(v, axes[1]), Dot(v, axes[2])};
}

/// `v` made as long as `original`, unless it has no direction. The factor is formed in any case: loops over this have no
/// branch, and multiplying by 1 is exact.
inline Triple WithLengthOf(const Triple& original, const Triple& v)
{
    constexpr double kSquaredDegenerateLength = 1e-12;
    const double squared = Dot(v, v);
    const double factor = std::sqrt(Dot(original, original) / squared);
    return v * (squared > kSquaredDegenerateLength ? factor : 1.0);
}

template <class Scaled, class Rotated, class Moved>
inline Triple PointToWorld(const Frame& frame, Triple v, Scaled isScaled, Rotated isRotated, Moved isMoved)
{
    if (isScaled) {
        v = ByComponent(v, frame.scale);
    }
    if (isRotated) {
        v = AlongAxes(frame.axes, v);
    }
    if (isMoved) {
        v = v + frame.translation;
    }
    return v;
}

template <class Scaled, class Rotated>
inline Triple PointToLocal(const Frame& frame, Triple v, Scaled isScaled, Rotated isRotated)
{
    v = v - frame.translation;
    if (isRotated) {
        v = DotAxes(frame.axes, v);
    }
    if (isScaled) {
        v = DivideByComponent(v, frame.scale);
    }
    return v;
}

/// @param isBent  whether the scale is neither 1 nor uniform
template <class Bent, class Rotated>
inline Triple DirectionToWorld(const Frame& frame, const Triple& v, Bent isBent, Rotated isRotated)
{
    Triple w = v;
    if (isBent) {
        w = WithLengthOf(v, ByComponent(v, frame.scale));
    }
    if (isRotated) {
        w = AlongAxes(frame.axes, w);
    }
    return w;
}

/// @param isBent  whether the scale is neither 1 nor uniform
template <class Bent, class Rotated>
inline Triple DirectionToLocal(const Frame& frame, const Triple& v, Bent isBent, Rotated isRotated)
{
    Triple w = v;
    if (isRotated) {
        w = DotAxes(frame.axes, w);
    }
    if (isBent) {
        w = WithLengthOf(v, DivideByComponent(w, frame.scale));
    }
    return w;
}

} // namespace cadgeom::detail
