#include <cadgeom/intersect/line_projection.h>
#include <cadgeom/intersect/pierce.h>

#include "core/widen.h"

#include <cmath>

// The cone is the quadric x^T * M * x = 0 with M = n*n^T - cos^2(theta)*I; see Eberly, 3D Game Engine Design,
// "line and cone". The products are formed as dense matrices would form them, sums from 0 in index order.

namespace {

using cadgeom::detail::Widened;

class ConeMatrix {
public:
    ConeMatrix(const CadVector3d<double>& axis, double squaredCosine)
    {
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column) {
                // The zero is part of the product: an infinite or NaN angle spoils every element.
                const double identity = row == column ? 1.0 : 0.0;
                m_elements[row][column] = axis[row] * axis[column] - identity * squaredCosine;
            }
        }
    }

    /// The row v^T * M.
    CadVector3d<double> ProductFromLeft(const CadVector3d<double>& v) const
    {
        CadVector3d<double> product;
        for (int column = 0; column < 3; ++column) {
            const CadVector3d<double> elements(m_elements[0][column], m_elements[1][column], m_elements[2][column]);
            product[column] = v.dot(elements);
        }
        return product;
    }

private:
    double m_elements[3][3];
};

} // namespace

template <class T>
bool PierceCone(const CadPoint3d<T>& apex, const CadVector3d<T>& axis, T halfAngle, const CadPoint3d<T>& origin,
                const CadVector3d<T>& direction, T& t1, T& t2)
{
    const CadVector3d<double> d = Widened(direction);
    const CadVector3d<double> w = Widened(origin) - Widened(apex);
    const double cosine = std::cos(static_cast<double>(halfAngle));
    const ConeMatrix matrix(Widened(axis), cosine * cosine);
    const CadVector3d<double> alongDirection = matrix.ProductFromLeft(d);
    const double c2 = matrix.ProductFromLeft(w).dot(w);
    const double c1 = alongDirection.dot(w);
    const double c0 = alongDirection.dot(d);
    const double discriminant = c1 * c1 - c0 * c2;
    if (discriminant >= 0) {
        const double root = cadgeom::detail::Sqrt(discriminant);
        t1 = static_cast<T>((-c1 - root) / c0);
        t2 = static_cast<T>((root - c1) / c0);
        return true;
    }
    double nearest;
    double onAxis;
    ProjectLineOntoLine(Widened(origin), d, Widened(apex), Widened(axis), nearest, onAxis);
    t1 = static_cast<T>(nearest);
    t2 = static_cast<T>(nearest);
    return false;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool PierceCone(const CadPoint3d<T>&, const CadVector3d<T>&, T, const CadPoint3d<T>&,         \
                                         const CadVector3d<T>&, T&, T&)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
