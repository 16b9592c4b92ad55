#include <cadgeom/fit/oriented_box_fit.h>

#include "fit/point_source.h"
#include "fit/principal_axes.h"

// Method: principal axes of the points orient the rectangle, the extreme projections onto them bound it.

template <class T>
bool OrientedBoxFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center,
                     CadVector2d<double>& axis, CadVector2d<double>& extents)
{
    using namespace cadgeom::detail;
    CadPoint2d<double> origin;
    CadVector2d<double> first;
    CadVector2d<double> spreads;
    if (!PrincipalAxesFit2(points, count, origin, first, spreads)) {
        return false;
    }
    const CadVector2d<double> second = first.orthogonalVector();
    const Pair offset = ToPair(origin);
    const Pair ofX(first.x(), second.x());
    const Pair ofY(first.y(), second.y());
    const PlanarPoints<T> source(points, count);
    Pair lowest = DotProducts(source[0] - offset, ofX, ofY);
    Pair highest = lowest;
    VisitPoints(source, [&](Pair point) {
        const Pair projections = DotProducts(point - offset, ofX, ofY);
        lowest = Lower(projections, lowest);
        highest = Higher(projections, highest);
    });
    const Pair sums = lowest + highest;
    const Pair halves = (highest - lowest) / Pair(2.0);
    center = origin + first * sums.First() / 2.0 + second * sums.Second() / 2.0;
    axis = first;
    extents.set(halves.First(), halves.Second());
    return true;
}

template CADGEOM_API bool OrientedBoxFit2(const CadPoint2d<float>*, std::uint64_t, CadPoint2d<double>&,
                                          CadVector2d<double>&, CadVector2d<double>&);
template CADGEOM_API bool OrientedBoxFit2(const CadPoint2d<double>*, std::uint64_t, CadPoint2d<double>&,
                                          CadVector2d<double>&, CadVector2d<double>&);
