#include <cadgeom/fit/line_fit.h>

#include <cadgeom/core/point_sequence.h>
#include <cadgeom/core/tolerance.h>

#include "core/widen.h"
#include "fit/moments.h"
#include "fit/symmetric_eigen_solver.h"

#include <cmath>

// Method: the direction is the eigenvector of the smallest eigenvalue of trace * 1 - moments, which is the axis of
// largest spread; the eigenvalue itself is then the mean squared distance (Pearson 1901). In the plane that matrix is
// ((Syy, -Sxy), (-Sxy, Sxx)).
//
// Weak spot: the distance is the root of a difference of moments, so that it is lost below about 1e-8 of the extent.

namespace cadgeom::detail {
namespace {

/// Writes the line through two points; false, with `error` untouched, when they coincide.
template <class Point, class WidePoint, class Vector>
bool JoinPoints(const Point* points, WidePoint& origin, Vector& direction, double& error)
{
    const WidePoint first = Widened(points[0]);
    Vector unit = Widened(points[1]) - first;
    const double length = unit.normalize();
    origin = first;
    direction = unit;
    if (!(length > kSingleEpsilon)) {
        return false;
    }
    error = 0.0;
    return true;
}

} // namespace
} // namespace cadgeom::detail

template <class T>
bool LineFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& origin,
              CadVector2d<double>& direction, double& error)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 2) {
        return false;
    }
    if (count == 2) {
        return JoinPoints(points, origin, direction, error);
    }
    const CadPoint2d<double> mean = ToPoint(MeanOf(PlanarPoints<T>(points, count)));
    const Moments2 s = ComputeMoments(points, count, mean);
    SymmetricEigenSolver<2> solver;
    solver.LoadTridiagonal(s.yy, -s.xy, s.xx);
    solver.QLAlgorithm();
    solver.DecreasingSort();
    solver.GuaranteeRotation();
    origin = mean;
    direction.set(solver.Eigenvector(1, 0), solver.Eigenvector(1, 1));
    error = Sqrt(std::fabs(solver.diagonal[1]));
    return true;
}

template <class T>
bool LineFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& origin,
              CadVector3d<double>& direction, double& error)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 2) {
        return false;
    }
    if (count == 2) {
        return JoinPoints(points, origin, direction, error);
    }
    const CadPoint3d<double> mean = ComputeMeanPoint<T, 3>(points, count);
    const Moments3 s = ComputeMoments(points, count, mean);
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(s.yy + s.zz, -s.xy, -s.xz, s.xx + s.zz, -s.yz, s.xx + s.yy);
    solver.Tridiagonalize3();
    solver.QLAlgorithm();
    solver.DecreasingSort();
    solver.GuaranteeRotation();
    origin = mean;
    direction.set(solver.Eigenvector(2, 0), solver.Eigenvector(2, 1), solver.Eigenvector(2, 2));
    error = Sqrt(std::fabs(solver.diagonal[2]));
    return true;
}

template <class T>
bool LineSegmentFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& start,
                     CadPoint3d<double>& end, double& error)
{
    using namespace cadgeom::detail;
    CadPoint3d<double> origin;
    CadVector3d<double> direction;
    double lineError;
    if (!LineFit3(points, count, origin, direction, lineError)) {
        return false;
    }
    if ((Widened(points[count - 1]) - Widened(points[0])).dot(direction) < 0.0) {
        direction.negate();
    }
    const double squared = direction.lengthSquared();
    const bool hasDirection = !(squared <= Tolerance<double>::squaredEpsilon());
    double lowest = kLargestSingle;
    double highest = -kLargestSingle;
    VisitIndices(points, count, [&](std::uint64_t i) {
        const double t = hasDirection ? direction.dot(Widened(points[i]) - origin) / squared : 0.0;
        lowest = t < lowest ? t : lowest;
        highest = t > highest ? t : highest;
    });
    start = origin + direction * lowest;
    end = origin + direction * highest;
    error = lineError;
    return true;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool LineFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&, CadVector2d<double>&, \
                                       double&);                                                                       \
    template CADGEOM_API bool LineFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&, CadVector3d<double>&, \
                                       double&);                                                                       \
    template CADGEOM_API bool LineSegmentFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,                \
                                              CadPoint3d<double>&, double&)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
