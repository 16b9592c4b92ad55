// Products, inverses, and the edits that are products.

#include <cadgeom/transform/transform.h>

#include "transform/frame_of_transform.h"
#include "transform/tolerance.h"

#include <cmath>
#include <utility>

namespace {

using cadgeom::detail::Frame;
using cadgeom::detail::Round;
using cadgeom::detail::Triple;
using cadgeom::detail::Widen;
using Vector = CadVector3d<double>;

/// An axis mapped by all of `frame`'s linear part, its scale included.
Vector MapLinearly(const CCadTransform& frame, const Vector& axis)
{
    Vector mapped(0.0, 0.0, 0.0);
    for (int j = 0; j < 3; ++j) {
        const double weight = frame.GetScale()[j] * axis[j];
        mapped += frame.GetAxis(static_cast<ERotateAxis>(j)) * weight;
    }
    return mapped;
}

} // namespace

CCadTransform CCadTransform::Compose(const CCadTransform& a, const CCadTransform& b)
{
    if (a.IsFlagSet(eNonOrthoNormal) || b.IsFlagSet(eNonOrthoNormal)) {
        a.SetFlag(eNonOrthoNormal);
    }
    CCadTransform product;
    const Frame frame = a.FrameToWorld();
    const Triple origin =
        PointToWorld(frame, Widen(b.m_translate.point.data()), frame.isScaled, frame.isRotated, frame.isMoved);
    product.m_translate.point.set(origin.x, origin.y, origin.z);

    const bool isUniform = a.IsUniformScale();
    if (isUniform && a.IsIdentityRotation()) {
        product.setAxesXYZ(b.m_axis[0], b.m_axis[1], b.m_axis[2]);
    } else if (b.IsIdentityRotation()) {
        product.setAxesXYZ(a.m_axis[0], a.m_axis[1], a.m_axis[2]);
    } else if (isUniform) {
        for (int i = 0; i < 3; ++i) {
            Round(AlongAxes(frame.axes, Widen(b.m_axis[i].data())), product.m_axis[i].data());
        }
    } else {
        for (int i = 0; i < 3; ++i) {
            product.m_axis[i] = MapLinearly(a, b.m_axis[i]);
        }
        product.m_scale = b.m_scale;
        product.SetFlag(eNonOrthoNormal);
        return product;
    }
    product.m_scale = b.m_scale.product(a.m_scale);
    return product;
}

CCadTransform CCadTransform::operator*(const CCadTransform& b)
{
    return Compose(*this, b);
}

const CCadTransform& CCadTransform::operator*=(const CCadTransform& b)
{
    *this = Compose(*this, b);
    return *this;
}

void CCadTransform::TransformFrom(const CCadTransform& frame)
{
    *this = Compose(frame, *this);
}

void CCadTransform::TransformTo(const CCadTransform& frame)
{
    *this = Compose(frame.GetInverse(), *this);
}

// Gauss-Jordan elimination of the axes with the identity beside them, forward to a unit upper triangle with partial
// pivoting, then backward. Exchanged rows stay where they are; `order` says which row takes which place.
void CCadTransform::GetInverseMatrix(CadPoint3d<double>* const rows) const
{
    double left[3][3];
    double right[3][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    int order[3] = {0, 1, 2};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            left[i][j] = m_axis[i][j];
        }
    }
    const auto subtract = [&right](int row, int pivotRow, double factor) {
        for (int j = 0; j < 3; ++j) {
            right[row][j] -= factor * right[pivotRow][j];
        }
    };

    for (int k = 0; k < 3; ++k) {
        int largest = k;
        for (int i = k + 1; i < 3; ++i) {
            if (std::fabs(left[order[i]][k]) > std::fabs(left[order[largest]][k])) {
                largest = i;
            }
        }
        std::swap(order[k], order[largest]);

        const int pivotRow = order[k];
        const double reciprocal = 1.0 / left[pivotRow][k];
        for (int j = k + 1; j < 3; ++j) {
            left[pivotRow][j] *= reciprocal;
        }
        for (double& element : right[pivotRow]) {
            element *= reciprocal;
        }
        for (int i = k + 1; i < 3; ++i) {
            const int row = order[i];
            const double factor = left[row][k];
            for (int j = k + 1; j < 3; ++j) {
                left[row][j] -= factor * left[pivotRow][j];
            }
            subtract(row, pivotRow, factor);
        }
    }
    for (int k = 2; k > 0; --k) {
        for (int i = k - 1; i >= 0; --i) {
            subtract(order[i], order[k], left[order[i]][k]);
        }
    }
    for (int i = 0; i < 3; ++i) {
        rows[i].set(right[order[i]][0], right[order[i]][1], right[order[i]][2]);
    }
}

CCadTransform CCadTransform::GetInverse() const
{
    if (IsEmptyTransform()) {
        return *this;
    }
    CCadTransform inverse;
    if (IsFlagSet(eNonOrthoNormal)) {
        CadPoint3d<double> rows[3];
        GetInverseMatrix(rows);
        for (int k = 0; k < 3; ++k) {
            inverse.m_axis[k].set(rows[k].x(), rows[k].y(), rows[k].z());
        }
    } else {
        for (int k = 0; k < 3; ++k) {
            inverse.m_axis[k].set(m_axis[0][k], m_axis[1][k], m_axis[2][k]);
        }
    }
    CadPoint3d<double> origin;
    for (int i = 0; i < 3; ++i) {
        origin[i] = inverse.m_axis[0][i] * m_translate.point[0] + inverse.m_axis[1][i] * m_translate.point[1] +
                    inverse.m_axis[2][i] * m_translate.point[2];
    }
    inverse.m_scale = s_empty.m_scale;
    // A factor of exactly 1 changes nothing, and fifteen divisions are most of the work.
    if (!(m_scale.x() == 1.0 && IsUniformScale())) {
        for (int i = 0; i < 3; ++i) {
            for (int k = 0; k < 3; ++k) {
                inverse.m_axis[k][i] = inverse.m_axis[k][i] * m_scale[k] / m_scale[i];
            }
            origin[i] /= m_scale[i];
            inverse.m_scale[i] = 1.0 / m_scale[i];
        }
    }
    inverse.m_translate.point = -origin;
    return inverse;
}

void CCadTransform::Scale(double factor)
{
    Scale(CadVector3d<double>(factor, factor, factor));
}

void CCadTransform::Scale(const CadVector3d<double>& factors)
{
    if (IsIdentityRotation() && IsZeroTranslate()) {
        m_scale = m_scale.product(factors);
    } else {
        CCadTransform scaling(s_empty);
        if (!factors.isEqual(s_empty.m_scale, cadgeom::detail::kTransformTolerance)) {
            scaling.m_scale = factors;
            scaling.ClearFlag(eUnityScale);
        }
        *this = Compose(scaling, *this);
    }
    AssignFlag(eUnityScale, cadgeom::detail::IsUnity(m_scale));
}

CCadTransform CCadTransform::GetRotateAboutVector(double angleRad, const CadVector3d<double>& direction,
                                                  const CadPoint3d<double>& pivot)
{
    Vector u(direction);
    u.normalize();
    const double c = std::cos(angleRad);
    const double s = std::sin(angleRad);
    const double k = 1.0 - c;
    CCadTransform rotation(s_empty);
    rotation.setAxesXYZ(Vector(u.x() * u.x() * k + c, u.x() * u.y() * k + u.z() * s, u.x() * u.z() * k - u.y() * s),
                        Vector(u.x() * u.y() * k - u.z() * s, u.y() * u.y() * k + c, u.y() * u.z() * k + u.x() * s),
                        Vector(u.x() * u.z() * k + u.y() * s, u.y() * u.z() * k - u.x() * s, u.z() * u.z() * k + c));
    if (!pivot.isZero()) {
        CadPoint3d<double> rotatedPivot;
        rotation.aaback(pivot, rotatedPivot);
        for (int i = 0; i < 3; ++i) {
            rotation.m_translate.point[i] = pivot[i] - rotatedPivot[i];
        }
        rotation.ClearFlag(eFlagsValid);
    }
    return rotation;
}

void CCadTransform::RotateAboutVector(double angleDeg, const CadVector3d<double>& direction,
                                      const CadPoint3d<double>& pivot)
{
    const bool isEmpty = IsEmptyTransform();
    const CCadTransform rotation =
        GetRotateAboutVector(angleDeg * cadgeom::detail::kRadiansPerDegree, direction, pivot);
    *this = isEmpty ? rotation : Compose(*this, rotation);
}

void CCadTransform::RotAboutAxis(double angleDeg, int axis)
{
    const Vector& direction = axis == 0 ? Vector::xAxis() : axis == 1 ? Vector::yAxis() : Vector::zAxis();
    RotateAboutVector(angleDeg, direction, CadPoint3d<double>::zero());
}
