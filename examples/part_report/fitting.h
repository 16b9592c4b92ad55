#pragma once
// Points as the fits like them best: about their mean, and of a size that is chosen. The fits sum high powers of the
// coordinates and have absolute thresholds, so what they find far from the origin, or in a small unit, is worth less.

#include "mesh.h"

#include <cadgeom/core/point_sequence.h>

#include <algorithm>
#include <cmath>

namespace part_report {

template <int N>
struct CentredPoints {
    using Point = std::conditional_t<N == 2, Point2, Point3>;

    /// Moves the mean of `originals` to the origin, and scales so that the farthest of them is at distance `size`.
    CentredPoints(std::vector<Point> originals, double size) : points(std::move(originals))
    {
        // The library takes arrays of the plain points that both kinds of point derive from.
        mean = ComputeMeanPoint<double, N>(points.data(), points.size());
        double farthest = 0;
        for (const Point& point : points)
            farthest = std::max(farthest, point.distance(mean));
        factor = farthest > 0 ? size / farthest : 1;
        for (Point& point : points)
            point = Point::zero() + (point - mean) * factor;
    }

    Point PointBack(const Point& fitted) const { return mean + (fitted - Point::zero()) / factor; }
    double LengthBack(double fitted) const { return fitted / factor; }

    std::vector<Point> points;
    Point mean;
    double factor = 1;
};

} // namespace part_report
