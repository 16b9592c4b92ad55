#include <cadgeom/fit/plane_fit.h>

#include <cadgeom/core/point_sequence.h>
#include <cadgeom/core/tolerance.h>

#include "core/widen.h"
#include "fit/moments.h"
#include "fit/symmetric_eigen_solver.h"

#include <cmath>

// Method: the normal is the eigenvector of the smallest eigenvalue of the moments about the mean, the eigenvalue the
// mean squared distance (Pearson 1901).

namespace cadgeom::detail {
namespace {

/// Writes the plane of a triangle; false, with `error` untouched, when it has no area.
template <class T>
bool PlaneOfTriangle(const CadPoint3d<T>* points, CadPoint3d<double>& origin, CadVector3d<double>& normal,
                     double& error)
{
    const CadVector3d<T> edge1 = points[1] - points[0];
    const CadVector3d<T> edge2 = points[2] - points[0];
    CadVector3d<double> unit = Widened(edge1).cross(Widened(edge2));
    const double length = unit.normalize();
    origin = ComputeMeanPoint<T, 3>(points, 3);
    normal = unit;
    if (!(length > kSingleEpsilon)) {
        return false;
    }
    error = 0.0;
    return true;
}

} // namespace
} // namespace cadgeom::detail

template <class T>
bool PlaneFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& origin,
               CadVector3d<double>& normal, double& error)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 3) {
        return false;
    }
    if (count == 3) {
        return PlaneOfTriangle(points, origin, normal, error);
    }
    const CadPoint3d<double> mean = ComputeMeanPoint<T, 3>(points, count);
    const Moments3 s = ComputeMoments(points, count, mean);
    SymmetricEigenSolver<3> solver;
    solver.LoadSymmetric(s.xx, s.xy, s.xz, s.yy, s.yz, s.zz);
    solver.Tridiagonalize3();
    solver.QLAlgorithm();
    solver.DecreasingSort();
    solver.GuaranteeRotation();
    origin = mean;
    normal.set(solver.Eigenvector(2, 0), solver.Eigenvector(2, 1), solver.Eigenvector(2, 2));
    error = Sqrt(std::fabs(solver.diagonal[2]));
    return true;
}

template CADGEOM_API bool PlaneFit3(const CadPoint3d<float>*, std::uint64_t, CadPoint3d<double>&, CadVector3d<double>&,
                                    double&);
template CADGEOM_API bool PlaneFit3(const CadPoint3d<double>*, std::uint64_t, CadPoint3d<double>&, CadVector3d<double>&,
                                    double&);
