// Fits of ten, a thousand and a million points. The rate is points per second; for small counts it is the time of one
// call that matters.

#include <benchmark/benchmark.h>
#include <cadgeom/fit/circle_fit.h>
#include <cadgeom/fit/ellipse_fit.h>
#include <cadgeom/fit/line_fit.h>
#include <cadgeom/fit/oriented_box_fit.h>
#include <cadgeom/fit/plane_fit.h>
#include <cadgeom/fit/point_fit.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace {

/// Noisy points of an ellipse with radii 3 and 2 around (1, 2).
template <class T>
std::vector<CadPoint2d<T>> PlanarPoints(std::int64_t count)
{
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> angle(-3.141592653589793, 3.141592653589793);
    std::normal_distribution<double> noise(0.0, 0.01);
    std::vector<CadPoint2d<T>> points;
    for (std::int64_t i = 0; i < count; ++i) {
        const double t = angle(random);
        points.emplace_back(static_cast<T>(1.0 + 3.0 * std::cos(t) + noise(random)),
                            static_cast<T>(2.0 + 2.0 * std::sin(t) + noise(random)));
    }
    return points;
}

/// The same points on a tilted plane.
template <class T>
std::vector<CadPoint3d<T>> SpatialPoints(std::int64_t count)
{
    std::vector<CadPoint3d<T>> points;
    for (const CadPoint2d<T>& p : PlanarPoints<T>(count)) {
        points.emplace_back(p.x(), p.y(), static_cast<T>(0.3) * p.x() - static_cast<T>(0.2) * p.y());
    }
    return points;
}

struct Results {
    CadPoint2d<double> point2;
    CadVector2d<double> vector2;
    CadVector2d<double> extents;
    CadPoint3d<double> point3;
    CadPoint3d<double> end3;
    CadVector3d<double> vector3;
    CadVector3d<double> axis3;
    double a;
    double b;
    double error;
};

constexpr int kIterations = 20;

template <class T>
struct Fits {
    using P2 = const CadPoint2d<T>*;
    using P3 = const CadPoint3d<T>*;

    static bool Point(P3 p, std::uint64_t n, Results& r) { return PointFit3(p, n, r.point3, &r.error); }
    static bool Line(P3 p, std::uint64_t n, Results& r) { return LineFit3(p, n, r.point3, r.vector3, r.error); }
    static bool Segment(P3 p, std::uint64_t n, Results& r) { return LineSegmentFit3(p, n, r.point3, r.end3, r.error); }
    static bool Plane(P3 p, std::uint64_t n, Results& r) { return PlaneFit3(p, n, r.point3, r.vector3, r.error); }
    static bool LineInPlane(P2 p, std::uint64_t n, Results& r) { return LineFit2(p, n, r.point2, r.vector2, r.error); }
    static bool Box(P2 p, std::uint64_t n, Results& r) { return OrientedBoxFit2(p, n, r.point2, r.vector2, r.extents); }
    static bool Quadratic(P2 p, std::uint64_t n, Results& r)
    {
        return QuadraticCircleFit2(p, n, r.point2, r.a, &r.error);
    }
    static bool Circle(P2 p, std::uint64_t n, Results& r)
    {
        return CircleFit2(p, n, r.point2, r.a, r.error, kIterations);
    }
    static bool CircleInSpace(P3 p, std::uint64_t n, Results& r)
    {
        return CircleFit3(p, n, r.point3, r.vector3, r.a, r.error, kIterations);
    }
    static bool Ellipse(P2 p, std::uint64_t n, Results& r)
    {
        return EllipseFit2(p, n, r.point2, r.vector2, r.a, r.b, &r.error);
    }
    static bool EllipseInSpace(P3 p, std::uint64_t n, Results& r)
    {
        return EllipseFit3(p, n, r.point3, r.vector3, r.axis3, r.a, r.b, &r.error);
    }
};

template <class Points, class Fit>
void Run(benchmark::State& state, const Points& points, Fit fit)
{
    Results results;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fit(points.data(), points.size(), results));
        benchmark::DoNotOptimize(results);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T, bool (*kFit)(const CadPoint2d<T>*, std::uint64_t, Results&)>
void InPlane(benchmark::State& state)
{
    Run(state, PlanarPoints<T>(state.range(0)), kFit);
}

template <class T, bool (*kFit)(const CadPoint3d<T>*, std::uint64_t, Results&)>
void InSpace(benchmark::State& state)
{
    Run(state, SpatialPoints<T>(state.range(0)), kFit);
}

} // namespace

#define CADGEOM_BENCH_COUNTS Arg(10)->Arg(1000)->Arg(1000000)
#define CADGEOM_BENCH(T)                                                                                               \
    BENCHMARK(InSpace<T, Fits<T>::Point>)->CADGEOM_BENCH_COUNTS;                                                       \
    BENCHMARK(InSpace<T, Fits<T>::Line>)->CADGEOM_BENCH_COUNTS;                                                        \
    BENCHMARK(InSpace<T, Fits<T>::Segment>)->CADGEOM_BENCH_COUNTS;                                                     \
    BENCHMARK(InSpace<T, Fits<T>::Plane>)->CADGEOM_BENCH_COUNTS;                                                       \
    BENCHMARK(InPlane<T, Fits<T>::LineInPlane>)->CADGEOM_BENCH_COUNTS;                                                 \
    BENCHMARK(InPlane<T, Fits<T>::Box>)->CADGEOM_BENCH_COUNTS;                                                         \
    BENCHMARK(InPlane<T, Fits<T>::Quadratic>)->CADGEOM_BENCH_COUNTS;                                                   \
    BENCHMARK(InPlane<T, Fits<T>::Circle>)->CADGEOM_BENCH_COUNTS;                                                      \
    BENCHMARK(InSpace<T, Fits<T>::CircleInSpace>)->CADGEOM_BENCH_COUNTS;                                               \
    BENCHMARK(InPlane<T, Fits<T>::Ellipse>)->CADGEOM_BENCH_COUNTS;                                                     \
    BENCHMARK(InSpace<T, Fits<T>::EllipseInSpace>)->CADGEOM_BENCH_COUNTS

CADGEOM_BENCH(double);
CADGEOM_BENCH(float);
