#include "fit/principal_axes.h"
#include "core/widen.h"
#include "fit/moments.h"
#include "fit/point_source.h"
#include "fit/symmetric_eigen_solver.h"

namespace cadgeom::detail {

template <class T>
bool PrincipalAxesFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                       CadVector2d<double>& axis, CadVector2d<double>& spreads)
{
    if (points == nullptr || count == 0) {
        return false;
    }
    if (count == 1) {
        center = Widened(points[0]);
        axis.set(1.0, 0.0);
        spreads.setZero();
        return true;
    }
    if (count == 2) {
        const CadPoint2d<double> first = Widened(points[0]);
        const CadPoint2d<double> second = Widened(points[1]);
        center = first.add(second) / 2.0;
        axis = second - first;
        spreads.set(axis.normalize(), 0.0);
        return true;
    }
    const CadPoint2d<double> mean = ToPoint(MeanOf(PlanarPoints<T>(points, count)));
    const Moments2 s = ComputeMoments(points, count, mean);
    SymmetricEigenSolver<2> solver;
    solver.LoadTridiagonal(s.xx, s.xy, s.yy);
    solver.QLAlgorithm();
    solver.IncreasingSort();
    solver.GuaranteeRotation();
    center = mean;
    axis.set(solver.Eigenvector(0, 0), solver.Eigenvector(0, 1));
    spreads.set(solver.diagonal[0], solver.diagonal[1]);
    return true;
}

template bool PrincipalAxesFit2(const CadPoint2d<float>*, std::uint64_t, CadPoint2d<double>&, CadVector2d<double>&,
                                CadVector2d<double>&);
template bool PrincipalAxesFit2(const CadPoint2d<double>*, std::uint64_t, CadPoint2d<double>&, CadVector2d<double>&,
                                CadVector2d<double>&);

} // namespace cadgeom::detail
