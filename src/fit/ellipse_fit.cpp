#include <cadgeom/fit/ellipse_fit.h>

#include <cadgeom/core/tolerance.h>
#include <cadgeom/fit/plane_fit.h>
#include <cadgeom/linalg/dynamic_matrix.h>

#include "fit/collinearity.h"
#include "fit/general_eigen_solver3.h"
#include "fit/matrix3.h"
#include "fit/plane_frame.h"

#include <cmath>
#include <utility>

// Method: Fitzgibbon, Pilu and Fisher's direct fit in the form of Halir and Flusser: the linear part of the conic is
// eliminated, and the quadratic part is an eigenvector of a 3x3 matrix. The products of the design matrices are sums
// over the points; they are accumulated without the matrices, each in the order in which a matrix product would add it.
//
// Weak spots: the points are not centred, so that the digits of a small ellipse far away are lost in the fourth powers;
// the eigenvalues come from a cubic with absolute tolerances.

namespace cadgeom::detail {
namespace {

/// Products of the quadratic part (x x, x y, y y) and the linear part (x, y, 1) of the design matrix.
class DesignProducts {
public:
    void Add(Pair point)
    {
        const Pair square = point * point;
        const Pair mixed = point * point.Swapped();
        const Pair mixedAndSquare = Firsts(mixed, square);
        const Pair mixedAndOther = Seconds(mixed, square);
        m_quartic += square * square;
        m_quarticMixed += square * mixed;
        m_quarticMiddle += mixedAndSquare * mixedAndOther;
        m_cubic += square * point;
        m_cubicCrossed += square * point.Swapped();
        m_cubicMixed += mixed * point;
        m_quadratic += square;
        m_quadraticMixed += mixed;
        m_linear += point;
    }

    /// Quadratic part by quadratic part.
    Matrix3 S1() const
    {
        const double x3y = m_quarticMixed.First();
        const double xy3 = m_quarticMixed.Second();
        const double x2y2 = m_quarticMiddle.Second();
        return {{{m_quartic.First(), x3y, x2y2}, {x3y, m_quarticMiddle.First(), xy3}, {x2y2, xy3, m_quartic.Second()}}};
    }

    /// Quadratic part by linear part.
    Matrix3 S2() const
    {
        return {{{m_cubic.First(), m_cubicCrossed.First(), m_quadratic.First()},
                 {m_cubicMixed.First(), m_cubicMixed.Second(), m_quadraticMixed.First()},
                 {m_cubicCrossed.Second(), m_cubic.Second(), m_quadratic.Second()}}};
    }

    /// Linear part by linear part.
    Matrix3 S3(std::uint64_t count) const
    {
        const double xy = m_quadraticMixed.First();
        return {{{m_quadratic.First(), xy, m_linear.First()},
                 {xy, m_quadratic.Second(), m_linear.Second()},
                 {m_linear.First(), m_linear.Second(), static_cast<double>(count)}}};
    }

    /// Upper bounds of the |coordinates| of the points.
    Pair Largest() const { return Sqrt(m_quadratic); }

private:
    Pair m_quartic{0.0};        ///< xx xx, yy yy
    Pair m_quarticMixed{0.0};   ///< xx xy, yy xy
    Pair m_quarticMiddle{0.0};  ///< xy xy, xx yy
    Pair m_cubic{0.0};          ///< xx x, yy y
    Pair m_cubicCrossed{0.0};   ///< xx y, yy x
    Pair m_cubicMixed{0.0};     ///< xy x, xy y
    Pair m_quadratic{0.0};      ///< xx, yy
    Pair m_quadraticMixed{0.0}; ///< xy, xy
    Pair m_linear{0.0};         ///< x, y
};

/// Inverse of the constraint 4 A C - B^2 as a matrix, ((0, 0, 2), (0, -1, 0), (2, 0, 0)).
constexpr Matrix3 kInverseConstraint = {{{0.0, 0.0, 0.5}, {0.0, -1.0, 0.0}, {0.5, 0.0, 0.0}}};

Matrix3 Inverse(const Matrix3& matrix)
{
    CMatrix work(3, 3);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            work(i, j) = matrix[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
        }
    }
    work.Invert();
    const double* const e = work.GetData();
    return {{{e[0], e[1], e[2]}, {e[3], e[4], e[5]}, {e[6], e[7], e[8]}}};
}

struct Conic {
    Vector3 quadratic; ///< A, B, C
    Vector3 linear;    ///< D, E, F
};

/// The conic of the fit; false when none of the three candidates is an ellipse.
bool FindConic(const DesignProducts& products, std::uint64_t count, Conic& conic)
{
    const Matrix3 s2 = products.S2();
    // Gives the linear part that goes with a quadratic part.
    Matrix3 linearOf = Multiply(Inverse(products.S3(count)), Transposed(s2));
    for (Vector3& row : linearOf) {
        for (double& element : row) {
            element *= -1.0;
        }
    }
    Matrix3 reduced = products.S1();
    const Matrix3 eliminated = Multiply(s2, linearOf);
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            reduced[i][j] += eliminated[i][j];
        }
    }
    GeneralEigenSolver3 solver(Multiply(kInverseConstraint, reduced));
    if (!solver.Solve()) {
        return false;
    }
    for (std::size_t k = 0; k < 3; ++k) {
        const Vector3 candidate = Column(solver.matrix, k);
        const auto [a, b, c] = candidate;
        if (4.0 * a * c - b * b > 0.0) {
            conic = {candidate, Multiply(linearOf, candidate)};
            return true;
        }
    }
    return false;
}

struct Ellipse {
    CadPoint2d<double> center;
    CadVector2d<double> axis; ///< the major axis, mirrored in the x axis
    double a;
    double b;
};

/// Centre, axis and radii of a conic; false when it is no ellipse or has a centre or radius out of all proportion.
bool ToEllipse(const Conic& conic, Ellipse& ellipse)
{
    const auto [a, b, c] = conic.quadratic;
    const auto [d, e, f] = conic.linear;
    const double h = b / 2.0;
    if (!(a * c - h * h > 0.0)) {
        return false;
    }
    const double denominator = 2.0 * (h * h - a * c);
    const double numeratorX = c * d - h * e;
    const double numeratorY = a * e - h * d;
    if (!(std::fabs(denominator) > kSingleEpsilon * std::fabs(numeratorX)) ||
        !(std::fabs(denominator) > kSingleEpsilon * std::fabs(numeratorY))) {
        return false;
    }
    const double x = numeratorX / denominator;
    const double y = numeratorY / denominator;

    // About its centre the conic is a' u u + 2 h' u v + c' v v = 1.
    const double scale = a * (x * x) + 2.0 * h * x * y + c * (y * y) - f;
    if (!(std::fabs(scale) > kSingleEpsilon)) {
        return false;
    }
    const double scaledA = a / scale;
    const double scaledH = h / scale;
    const double scaledC = c / scale;
    const double difference = scaledA - scaledC;
    const double discriminant = 4.0 * (scaledH * scaledH) + difference * difference;
    if (!(discriminant >= 0.0)) {
        return false;
    }
    const double root = Sqrt(discriminant);
    const double larger = (scaledA + scaledC + root) / 2.0;
    const double smaller = (scaledA + scaledC - root) / 2.0;
    if (!(larger >= 0.0) || !(smaller >= 0.0)) {
        return false;
    }
    const double inverseMinor = Sqrt(larger);
    const double inverseMajor = Sqrt(smaller);
    if (!(inverseMinor > kSingleEpsilon) || !(inverseMajor > kSingleEpsilon)) {
        return false;
    }
    ellipse.center.set(x, y);
    ellipse.a = 1.0 / inverseMajor;
    ellipse.b = 1.0 / inverseMinor;
    if (scaledA >= scaledC) {
        ellipse.axis.set(scaledH, larger - scaledC);
    } else {
        ellipse.axis.set(larger - scaledA, scaledH);
    }
    ellipse.axis.normalize();
    return true;
}

template <class Source>
bool Fit(const Source& points, Ellipse& ellipse)
{
    DesignProducts products;
    VisitPoints(points, [&](Pair point) { products.Add(point); });
    Conic conic;
    return !LieOnLine(points, products.Largest()) && FindConic(products, points.Count(), conic) &&
           ToEllipse(conic, ellipse);
}

/// The residuals are taken in coordinates (u, v) that make the ellipse the unit circle.
template <class Source>
double RootMeanSquareResidual(const Source& points, const Ellipse& ellipse)
{
    const Pair center = ToPair(ellipse.center);
    const Pair radii(ellipse.a, ellipse.b);
    const Pair ofX(ellipse.axis.x(), ellipse.axis.y());
    const Pair ofY(-ellipse.axis.y(), ellipse.axis.x());
    double sum = 0.0;
    VisitPoints(points, [&](Pair point) {
        const Pair d = point - center;
        const Pair uv = (ofX * d.FirstTwice() + ofY * d.SecondTwice()) / radii;
        const Pair squares = uv * uv;
        const double length = Sqrt(squares.First() + squares.Second());
        if (length <= kSingleEpsilon) {
            sum += ellipse.b * ellipse.b;
        } else {
            const Pair residual = (uv - uv / Pair(length)) * radii;
            const Pair terms = residual * residual;
            sum += terms.First() + terms.Second();
        }
    });
    return Sqrt(sum / static_cast<double>(points.Count()));
}

} // namespace
} // namespace cadgeom::detail

template <class T>
bool EllipseFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                 CadVector2d<double>& axis, double& a, double& b, double* error)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 4) {
        return false;
    }
    const PlanarPoints<T> source(points, count);
    Ellipse ellipse;
    if (!Fit(source, ellipse)) {
        return false;
    }
    const double residual = error != nullptr ? RootMeanSquareResidual(source, ellipse) : 0.0;
    center = ellipse.center;
    axis = ellipse.axis;
    a = ellipse.a;
    b = ellipse.b;
    if (error != nullptr) {
        *error = residual;
    }
    return true;
}

template <class T>
bool EllipseFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center,
                 CadVector3d<double>& normal, CadVector3d<double>& axis, double& a, double& b, double* error)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 4) {
        return false;
    }
    CadPoint3d<double> origin;
    double planeError;
    if (!PlaneFit3(points, count, origin, normal, planeError)) {
        return false;
    }
    const PlaneFrame frame(normal, origin);
    const FramedPoints<T> source(points, count, frame, planeError);
    Ellipse ellipse;
    if (!Fit(source, ellipse)) {
        return false;
    }
    if (error != nullptr) {
        const double inPlaneError = RootMeanSquareResidual(source, ellipse);
        *error = Sqrt(inPlaneError * inPlaneError + planeError * planeError);
    }
    center = frame.ToSpace(ellipse.center);
    axis = frame.ToSpace(ellipse.axis);
    a = ellipse.a;
    b = ellipse.b;
    return true;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool EllipseFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&,                    \
                                          CadVector2d<double>&, double&, double&, double*);                            \
    template CADGEOM_API bool EllipseFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,                    \
                                          CadVector3d<double>&, CadVector3d<double>&, double&, double&, double*)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
