// Frames from directions, and axes made orthonormal again.

#include <cadgeom/transform/transform.h>

#include "transform/tolerance.h"

#include <cmath>

namespace {

using Vector = CadVector3d<double>;

/// Degrees within which two axes count as parallel.
constexpr double kParallelDegrees = 0.001;

Vector Normalized(Vector vector)
{
    vector.normalize();
    return vector;
}

bool IsNegligible(const Vector& vector)
{
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(vector[i]) <= cadgeom::detail::kTransformTolerance)) {
            return false;
        }
    }
    return true;
}

} // namespace

CCadTransform::CCadTransform(const CadVector3d<double>& z, const CadPoint3d<double>& origin)
{
    newmat(z, origin);
}

CCadTransform::CCadTransform(const CadVector3d<double>& z, const CadVector3d<double>& x,
                             const CadPoint3d<double>& origin)
{
    newmat(z, x, origin);
}

void CCadTransform::SetFrame(const CadVector3d<double>& x, const CadVector3d<double>& y, const CadVector3d<double>& z,
                             const CadPoint3d<double>& origin)
{
    SetTranslate(origin);
    setAxesXYZ(x, y, z);
    SetScale(1.0);
    ClearFlag(eNonOrthoNormal);
}

void CCadTransform::newmat(const CadVector3d<double>& z, const CadPoint3d<double>& origin)
{
    constexpr double kNearlyAlongY = 0.99;
    const Vector normal = Normalized(z);
    const bool isAlongY = normal.y() < -kNearlyAlongY || normal.y() > kNearlyAlongY;
    const Vector& auxiliary = isAlongY ? Vector::zAxis() : Vector::yAxis();
    const Vector x = auxiliary.crossAndNormalize(normal);
    const Vector y = normal.crossAndNormalize(x);
    SetFrame(x, y, normal, origin);
}

void CCadTransform::newmat(const CadVector3d<double>& z, const CadVector3d<double>& x, const CadPoint3d<double>& origin)
{
    const Vector hint = x.projectOntoPlane(z);
    if (IsNegligible(hint)) {
        newmat(z, origin);
        return;
    }
    const Vector xAxis = Normalized(hint);
    const Vector normal = Normalized(z);
    SetFrame(xAxis, normal.cross(xAxis), normal, origin);
}

void CCadTransform::MakeOrthoNormal()
{
    Vector& x = m_axis[0];
    Vector& y = m_axis[1];
    Vector& z = m_axis[2];
    if (!x.isParallel(y, kParallelDegrees)) {
        z = x.cross(y);
        y = z.cross(x);
    } else if (!y.isParallel(z, kParallelDegrees)) {
        x = y.cross(z);
        z = x.cross(y);
    } else if (!z.isParallel(x, kParallelDegrees)) {
        y = z.cross(x);
        x = y.cross(z);
    } else {
        const CCadTransform frame(Normalized(y), CadPoint3d<double>(0.0, 0.0, 0.0));
        for (int i = 0; i < 3; ++i) {
            m_axis[i] = frame.m_axis[i];
        }
    }
    for (Vector& axis : m_axis) {
        axis.normalize();
    }
    ClearFlag(eNonOrthoNormal);
}

void CCadTransform::ForceOrthoNormal()
{
    Vector& z = m_axis[2];
    z.normalize();
    m_axis[1] = z.crossAndNormalize(m_axis[0]);
    m_axis[0] = m_axis[1].crossAndNormalize(z);
    m_scale.set(1.0, 1.0, 1.0);
}

void CCadTransform::maxabs(CadVector3d<double>& vector, int& axis) const
{
    constexpr int kOrder[] = {2, 1, 0};
    int closest = kOrder[0];
    double largest = 0.0;
    for (const int candidate : kOrder) {
        const double dot = vector.dot(m_axis[candidate]);
        if (candidate == kOrder[0] || std::fabs(dot) > largest) {
            closest = candidate;
            largest = std::fabs(dot);
            if (dot < 0.0) {
                vector.negate();
            }
        }
    }
    axis = closest;
}
