#include <cadgeom/fit/point_fit.h>

#include <cadgeom/core/point_sequence.h>

#include "fit/point_source.h"

// Method: the mean. The distances of float points are formed in float, so that about seven digits of `error` mean
// something; far from the origin it is fewer, as the mean is rounded too.

template <class T>
bool PointFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center, double* error)
{
    if (points == nullptr || count == 0) {
        return false;
    }
    const CadPoint3d<double> mean = ComputeMeanPoint<T, 3>(points, count);
    if (error != nullptr) {
        const CadPoint3d<T> rounded(static_cast<T>(mean.x()), static_cast<T>(mean.y()), static_cast<T>(mean.z()));
        double sum = 0.0;
        cadgeom::detail::VisitIndices(
            points, count, [&](std::uint64_t i) { sum += static_cast<double>(points[i].distanceSquared(rounded)); });
        *error = cadgeom::detail::Sqrt(sum / static_cast<double>(count));
    }
    center = mean;
    return true;
}

template CADGEOM_API bool PointFit3(const CadPoint3d<float>*, std::uint64_t, CadPoint3d<double>&, double*);
template CADGEOM_API bool PointFit3(const CadPoint3d<double>*, std::uint64_t, CadPoint3d<double>&, double*);
