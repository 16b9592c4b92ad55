#include <cadgeom/bounds/bounding_box_3d.h>

#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/core/angles.h>
#include <cadgeom/transform/transform.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "transform/tolerance.h"

// A box that turns about an axis against a box at rest: a test of samples. Their number grows with the angle and the
// inverse of the tolerance without limit, so boxes that cannot meet at any angle are told apart first.

namespace {

constexpr int kCornerCount = 8;
constexpr int kSamplesPerTurn = 4;

template <class T>
CadPoint3d<double> WidenedPoint(const CadPoint3d<T>& point)
{
    return {static_cast<double>(point[0]), static_cast<double>(point[1]), static_cast<double>(point[2])};
}

template <class T>
CadVector3d<double> WidenedVector(const CadVector3d<T>& vector)
{
    return {static_cast<double>(vector[0]), static_cast<double>(vector[1]), static_cast<double>(vector[2])};
}

/// How far rounding may move the corners of a turned box, relative to the largest coordinate in play, with much to spare;
/// and between which coordinates that holds because no square overflows or loses digits.
template <class T>
struct RotationRounding;

template <>
struct RotationRounding<double> {
    static constexpr double kRelative = 1e-9;
    static constexpr double kSmallest = 1e-120;
    static constexpr double kLargest = 1e120;
};

template <>
struct RotationRounding<float> {
    static constexpr double kRelative = 1e-4;
    static constexpr double kSmallest = 1e-12;
    static constexpr double kLargest = 1e15;
};

/// The space that the corners of a box can reach by turning about an axis: each runs on a circle.
class RotationReach {
public:
    RotationReach(const CadPoint3d<double>& axisPoint, const CadVector3d<double>& unitDirection)
        : m_axisPoint(axisPoint), m_direction(unitDirection), m_largest(axisPoint.maxAbsoluteValue())
    {
        for (int axis = 0; axis < 3; ++axis) {
            m_tilt[axis] = std::sqrt(std::max(0.0, 1.0 - m_direction[axis] * m_direction[axis]));
        }
    }

    void Add(const CadPoint3d<double>& corner)
    {
        const CadPoint3d<double> centre = corner.projectOntoLine(m_axisPoint, m_direction);
        const double radius = corner.distance(centre);
        for (int axis = 0; axis < 3; ++axis) {
            m_min[axis] = std::min(m_min[axis], centre[axis] - radius * m_tilt[axis]);
            m_max[axis] = std::max(m_max[axis], centre[axis] + radius * m_tilt[axis]);
        }
        m_largest = std::max({m_largest, corner.maxAbsoluteValue(), radius});
    }

    /// Whether a box stays more than `tolerance` away on some axis, whatever the rounding.
    template <class Rounding>
    bool IsClearOf(const CadPoint3d<double>& min, const CadPoint3d<double>& max, double tolerance) const
    {
        const double largest = std::max({m_largest, min.maxAbsoluteValue(), max.maxAbsoluteValue(), tolerance});
        if (!(largest >= Rounding::kSmallest && largest <= Rounding::kLargest)) {
            return false;
        }
        // A rotation loses a translation too small to count, and then runs about the origin instead of the axis.
        const double gap = tolerance + cadgeom::detail::kTransformTolerance + largest * Rounding::kRelative;
        for (int axis = 0; axis < 3; ++axis) {
            if (min[axis] - m_max[axis] > gap || m_min[axis] - max[axis] > gap) {
                return true;
            }
        }
        return false;
    }

private:
    CadPoint3d<double> m_axisPoint;
    CadVector3d<double> m_direction;
    double m_largest;
    double m_tilt[3];
    CadPoint3d<double> m_min{HUGE_VAL, HUGE_VAL, HUGE_VAL};
    CadPoint3d<double> m_max{-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
};

template <class T>
bool IsOrdered(const CBoundingBox3d<T>& box)
{
    for (int axis = 0; axis < 3; ++axis) {
        if (!(box.GetMin()[axis] <= box.GetMax()[axis])) {
            return false;
        }
    }
    return true;
}

/// Whether no angle brings the corners of a turning box so near to another one that a sample could find them in contact:
/// a face plane of the box at rest separates them at every angle.
template <class T>
bool StaysClear(const CBoundingBox3d<T>& turning, const CBoundingBox3d<T>& resting, const CadPoint3d<double>& axisPoint,
                const CadVector3d<double>& axisDirection, T tolerance)
{
    constexpr double kUnitLengthError = 1e-12;
    CadVector3d<double> direction(axisDirection);
    direction.normalize();
    const bool isUnit = std::fabs(direction.lengthSquared() - 1.0) < kUnitLengthError;
    if (!isUnit || !IsOrdered(turning) || !IsOrdered(resting)) {
        return false;
    }
    RotationReach reach(axisPoint, direction);
    CadPoint3d<T> corners[kCornerCount];
    turning.GetCornerPoints(corners);
    for (const CadPoint3d<T>& corner : corners) {
        reach.Add(WidenedPoint(corner));
    }
    return reach.IsClearOf<RotationRounding<T>>(WidenedPoint(resting.GetMin()), WidenedPoint(resting.GetMax()),
                                                std::fabs(static_cast<double>(tolerance)));
}

/// Distance of the farthest corner from the axis.
template <class T>
T LargestRadius(const CBoundingBox3d<T>& box, const CadPoint3d<T>& axisPoint, const CadVector3d<T>& axisDirection)
{
    CadPoint3d<T> corners[kCornerCount];
    box.GetCornerPoints(corners);
    T squared = T(0);
    for (const CadPoint3d<T>& corner : corners) {
        const T distance = corner.distanceSquaredToLine(axisPoint, axisDirection);
        squared = distance > squared ? distance : squared;
    }
    return std::sqrt(squared);
}

template <class T>
T SampleAngle(std::int64_t sample, int count, T angle)
{
    if (count == 0) {
        return T(0);
    }
    const T fraction = static_cast<T>(sample) / static_cast<T>(count);
    return (T(1) - fraction) * T(0) + fraction * angle;
}

} // namespace

template <class T>
bool CBoundingBox3d<T>::RotatedBoundingBoxIntersects(const CBoundingBox3d& box, const CadPoint3d<T>& axisPoint,
                                                     const CadVector3d<T>& axisDirection, T angle, T chordTolerance,
                                                     T tolerance) const
{
    const T radius = LargestRadius(*this, axisPoint, axisDirection);
    const int count = GetNumCircularArcDivisions(static_cast<double>(radius), static_cast<double>(chordTolerance),
                                                 static_cast<double>(angle), kSamplesPerTurn);
    const CadPoint3d<double> pivot = WidenedPoint(axisPoint);
    const CadVector3d<double> direction = WidenedVector(axisDirection);
    if (count < 0 || StaysClear(*this, box, pivot, direction, tolerance)) {
        return false;
    }
    const COrientedBox3d<T> resting(box, CCadTransform::GetEmptyTransform());
    // All samples of an empty box are alike.
    const std::int64_t last = IsEmpty() ? 0 : count;
    for (std::int64_t sample = 0; sample <= last; ++sample) {
        const auto turn = static_cast<double>(SampleAngle(sample, count, angle));
        const COrientedBox3d<T> turned(*this, CCadTransform::GetRotateAboutVector(turn, direction, pivot));
        if (turned.OrientedBoxIntersects(resting, tolerance)) {
            return true;
        }
    }
    return false;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool CBoundingBox3d<T>::RotatedBoundingBoxIntersects(                                         \
        const CBoundingBox3d<T>&, const CadPoint3d<T>&, const CadVector3d<T>&, T, T, T) const

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
