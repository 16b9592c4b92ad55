// Fits a circle to a scanned arc that lies far from the origin. The algebraic fit that every circle fit starts from
// loses digits with the distance from the origin, and fails at about 3000 radii. So the points are centred and scaled
// first, and the result is mapped back.

#include <cadgeom/core/point_sequence.h>
#include <cadgeom/fit/circle_fit.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

using Point = CadPoint2d<double>;

const Point kTrueCenter(52000, -31000);
constexpr double kTrueRadius = 12.5;
constexpr double kNoise = 0.01;

// Half a circle of 90 points, each off by up to kNoise along the radius.
std::vector<Point> Scan()
{
    std::vector<Point> points;
    for (int i = 0; i < 90; ++i) {
        const double angle = 0.035 * i;
        const double radius = kTrueRadius + kNoise * std::sin(37.0 * i);
        points.emplace_back(kTrueCenter.x() + radius * std::cos(angle), kTrueCenter.y() + radius * std::sin(angle));
    }
    return points;
}

// CircleFit2 of the points after subtracting their mean and dividing by their extent.
bool FitCentredAndScaled(std::vector<Point> points, Point& center, double& radius, double& error)
{
    const Point mean = ComputeMeanPoint<double, 2>(points.data(), points.size());
    double extent = 0;
    for (Point& point : points) {
        point -= mean - Point::zero();
        extent = std::max(extent, point.maxAbsoluteValue());
    }
    for (Point& point : points)
        point /= extent;
    constexpr int kIterations = 100;
    if (!CircleFit2(points.data(), points.size(), center, radius, error, kIterations))
        return false;
    center = mean + (center - Point::zero()) * extent;
    radius *= extent;
    error *= extent;
    return true;
}

} // namespace

int main()
{
    const std::vector<Point> points = Scan();
    Point center;
    double radius, error;
    if (CircleFit2(points.data(), points.size(), center, radius, error, 100))
        std::printf("as scanned:         centre off by %g, radius %g\n", center.distance(kTrueCenter), radius);
    else
        std::puts("as scanned:         no circle, the points are too far from the origin");
    if (!FitCentredAndScaled(points, center, radius, error)) {
        std::puts("centred and scaled: no circle");
        return 1;
    }
    std::printf("centred and scaled: centre (%.3f, %.3f), radius %.4f, rms error %.4f\n", center.x(), center.y(),
                radius, error);
    const bool isRight = center.distance(kTrueCenter) < kNoise && std::fabs(radius - kTrueRadius) < kNoise;
    return isRight && error < kNoise ? 0 : 1;
}
