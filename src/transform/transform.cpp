#include <cadgeom/transform/transform.h>

#include "transform/tolerance.h"

using cadgeom::detail::IsUnity;
using cadgeom::detail::kTransformTolerance;

const CCadTransform CCadTransform::s_empty{IdentityTag{}};

CCadTransform::CCadTransform(const double* numbers)
{
    SetFromArray(numbers);
}

void CCadTransform::AssignFlag(EFlag flag, bool isSet) const
{
    if (isSet) {
        SetFlag(flag);
    } else {
        ClearFlag(flag);
    }
}

void CCadTransform::DetermineFlags() const
{
    bool isIdentityRotation = true;
    for (int i = 0; i < 3 && isIdentityRotation; ++i) {
        isIdentityRotation = m_axis[i].isEqual(s_empty.m_axis[i], kTransformTolerance);
    }
    AssignFlag(eIdentityRotation, isIdentityRotation);
    if (isIdentityRotation) {
        for (int i = 0; i < 3; ++i) {
            m_axis[i] = s_empty.m_axis[i];
        }
    }
    AssignFlag(eZeroTranslate, m_translate.point.isAlmostZero(kTransformTolerance));
    if (IsFlagSet(eZeroTranslate)) {
        m_translate.point.setZero();
    }
    AssignFlag(eUnityScale, m_scale.isEqual(s_empty.m_scale, kTransformTolerance));
    if (IsFlagSet(eUnityScale)) {
        m_scale = s_empty.m_scale;
    }
    SetFlag(eFlagsValid);
}

void CCadTransform::UpdateTranslateFlag() const
{
    if (IsFlagSet(eFlagsValid)) {
        AssignFlag(eZeroTranslate, m_translate.point.isAlmostZero(kTransformTolerance));
    }
}

bool CCadTransform::IsOrthoNormal() const
{
    if (IsIdentityRotation()) {
        return true;
    }
    const auto isNearZero = [](double value) { return !(std::fabs(value) > kTransformTolerance); };
    const CadVector3d<double>& x = m_axis[0];
    const CadVector3d<double>& y = m_axis[1];
    const CadVector3d<double>& z = m_axis[2];
    return isNearZero(x.dot(y)) && isNearZero(z.dot(y)) && isNearZero(z.dot(x)) &&
           isNearZero(1.0 - x.lengthSquared()) && isNearZero(1.0 - y.lengthSquared()) &&
           isNearZero(1.0 - z.lengthSquared());
}

bool CCadTransform::AlmostSame(const CCadTransform& other) const
{
    if (!m_translate.point.isEqual(other.m_translate.point, kTransformTolerance) ||
        !m_scale.isEqual(other.m_scale, kTransformTolerance)) {
        return false;
    }
    for (int i = 0; i < 3; ++i) {
        if (!m_axis[i].isEqual(other.m_axis[i], kTransformTolerance)) {
            return false;
        }
    }
    return true;
}

void CCadTransform::SetTranslate(const CadPoint3d<double>& translation)
{
    m_translate.point = translation;
    UpdateTranslateFlag();
}

void CCadTransform::SetTranslateVector(const CadVector3d<double>& translation)
{
    SetTranslate(CadPoint3d<double>(translation.x(), translation.y(), translation.z()));
}

void CCadTransform::SetAxis(const CadVector3d<double>& direction, int axis)
{
    m_axis[axis] = direction;
    ClearFlag(eFlagsValid);
}

void CCadTransform::setAxesXYZ(const CadVector3d<double>& x, const CadVector3d<double>& y, const CadVector3d<double>& z)
{
    // The arguments may be axes of this transform, in any order.
    const CadVector3d<double> axes[3] = {x, y, z};
    for (int i = 0; i < 3; ++i) {
        m_axis[i] = axes[i];
    }
    ClearFlag(eFlagsValid);
}

void CCadTransform::SetScale(double scale)
{
    SetScale(CadVector3d<double>(scale, scale, scale));
}

void CCadTransform::SetScale(const CadVector3d<double>& scale)
{
    m_scale = scale;
    if (IsFlagSet(eFlagsValid)) {
        AssignFlag(eUnityScale, IsUnity(m_scale));
    }
}

void CCadTransform::CopyToArray(double* numbers) const
{
    if (numbers == nullptr) {
        return;
    }
    for (int k = 0; k < 3; ++k) {
        numbers[k] = m_translate.point[k];
    }
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 3; ++k) {
            numbers[3 + 3 * i + k] = m_axis[i][k] * m_scale[i];
        }
    }
}

void CCadTransform::SetFromArray(const double* numbers)
{
    if (numbers == nullptr) {
        return;
    }
    m_translate.point = CadPoint3d<double>(numbers[0], numbers[1], numbers[2]);
    for (int i = 0; i < 3; ++i) {
        const double* const scaledAxis = numbers + 3 + 3 * i;
        m_axis[i].set(scaledAxis[0], scaledAxis[1], scaledAxis[2]);
        m_scale[i] = m_axis[i].normalize();
        if (std::fabs(m_scale[i] - 1.0) <= kTransformTolerance) {
            m_scale[i] = 1.0;
        }
    }
    if (m_scale.isZero()) {
        m_scale = s_empty.m_scale;
    }
    ClearFlag(eFlagsValid);
    AssignFlag(eNonOrthoNormal, !IsOrthoNormal());
}

void CCadTransform::GetGLMatrix(double* const matrix) const
{
    if (matrix == nullptr) {
        return;
    }
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 3; ++k) {
            matrix[4 * i + k] = m_axis[i][k] * m_scale[i];
        }
        matrix[4 * i + 3] = 0.0;
        matrix[12 + i] = m_translate.point[i];
    }
    matrix[15] = 1.0;
}

void CCadTransform::Translate(const CadVector3d<double>& displacement)
{
    SetTranslate(m_translate.point + displacement);
}

void CCadTransform::ScaleOrigin(double factor)
{
    SetTranslate(m_translate.point * factor);
}

void CCadTransform::ConvertUnits(CADUNITS from, CADUNITS to)
{
    if (cadgeom::detail::IsConversion(from, to)) {
        ScaleOrigin(GetConversionFactor(from, to));
    }
}

void CCadTransform::Mirror(ECadPlane plane)
{
    switch (plane) {
    case eMirrorX:
    case eMirrorY:
    case eMirrorZ:
        m_axis[plane].negate();
        ClearFlag(eFlagsValid);
        break;
    }
}
