// The loop that a host writes over its points.

#include <cadgeom/core/point3d.h>
#include <cadgeom/core/vector3d.h>

#include <cstddef>

double MoveAndMeasure(CadPoint3d<double>* points, std::size_t count, const CadVector3d<double>& step, double factor)
{
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        points[i] += step;
        points[i] *= factor;
        const CadVector3d<double> fromStart = points[i] - points[0];
        sum += fromStart.dot(step) + fromStart * step;
    }
    return sum;
}
