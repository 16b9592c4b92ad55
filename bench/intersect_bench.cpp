// Lines against surfaces, points against triangles and polygons. Inputs are random and too many to be learnt by the
// branch predictor; the share of hits is reported beside the time.

#include <benchmark/benchmark.h>
#include <cadgeom/intersect/drop.h>
#include <cadgeom/intersect/line_projection.h>
#include <cadgeom/intersect/pierce.h>
#include <cadgeom/intersect/planar_queries.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kInputs = 8192;

template <class T>
struct Input {
    CadPoint3d<T> points[4];
    CadVector3d<T> direction;
    CadVector3d<T> axis;
    T size;
};

/// Points and vectors in the cube of half-width 1.
template <class T>
const std::vector<Input<T>>& Inputs()
{
    static const std::vector<Input<T>> inputs = [] {
        std::mt19937_64 random(20240611);
        std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
        std::vector<Input<T>> made(kInputs);
        for (Input<T>& input : made) {
            for (int axis = 0; axis < 3; ++axis) {
                for (CadPoint3d<T>& point : input.points) {
                    point[axis] = static_cast<T>(coordinate(random));
                }
                input.direction[axis] = static_cast<T>(coordinate(random));
                input.axis[axis] = static_cast<T>(coordinate(random));
            }
            input.size = static_cast<T>(0.75 + 0.5 * coordinate(random));
        }
        return made;
    }();
    return inputs;
}

/// Runs a query on one input after the other.
template <class T, class Query>
void Run(benchmark::State& state, Query query)
{
    const std::vector<Input<T>>& inputs = Inputs<T>();
    T results[3] = {0, 0, 0};
    std::size_t i = 0;
    std::int64_t hits = 0;
    for (auto unused : state) {
        static_cast<void>(unused);
        hits += query(inputs[i], results) ? 1 : 0;
        benchmark::DoNotOptimize(results);
        i = (i + 1) % kInputs;
    }
    state.counters["hits"] = static_cast<double>(hits) / static_cast<double>(state.iterations());
}

template <class T>
void Triangle(benchmark::State& state)
{
    Run<T>(state, [](const Input<T>& in, T(&out)[3]) {
        return PierceTriangle(in.points[0], in.direction, in.points[1], in.points[2], in.points[3], out[0], out[1],
                              out[2]);
    });
}

template <class T>
void Sphere(benchmark::State& state)
{
    Run<T>(state, [](const Input<T>& in, T(&out)[3]) {
        return PierceSphere(in.points[1], in.size, in.points[0], in.direction, out[0], out[1]);
    });
}

template <class T>
void Cylinder(benchmark::State& state)
{
    Run<T>(state, [](const Input<T>& in, T(&out)[3]) {
        return PierceCylinder(in.points[1], in.axis, in.size, in.points[0], in.direction, out[0], out[1]);
    });
}

template <class T>
void Cone(benchmark::State& state)
{
    Run<T>(state, [](const Input<T>& in, T(&out)[3]) {
        return PierceCone(in.points[1], in.axis, in.size, in.points[0], in.direction, out[0], out[1]);
    });
}

template <class T>
void SegmentOntoSegment(benchmark::State& state)
{
    Run<T>(state, [](const Input<T>& in, T(&out)[3]) {
        out[0] = ProjectLineSegmentOntoLineSegment(in.points[0], in.direction, in.points[1], in.axis, out[1]);
        return true;
    });
}

void DropOntoTriangle(benchmark::State& state)
{
    Run<double>(state, [](const Input<double>& in, double(&out)[3]) {
        CadPoint3d<double> foot;
        bool onEdge = false;
        out[0] = 1;
        return DropTriangle(in.points[0], in.points[1], in.points[2], in.points[3], out[0], out[1], out[2], foot,
                            onEdge);
    });
}

/// A star of range(0) vertices and a point near its middle.
template <class T>
void PointInPolygon(benchmark::State& state)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> radius(0.9, 1.0);
    std::vector<CadPoint2d<T>> outline;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(state.range(0));
        const double r = radius(random);
        outline.emplace_back(static_cast<T>(r * std::cos(angle)), static_cast<T>(r * std::sin(angle)));
    }
    CadPoint2d<T> point(T(0.1), T(0.2));
    for (auto unused : state) {
        static_cast<void>(unused);
        benchmark::DoNotOptimize(point);
        benchmark::DoNotOptimize(ClosedPolylineContainsPoint2d(outline.data(), outline.size(), point, T(0), true));
    }
}

} // namespace

BENCHMARK_TEMPLATE(Triangle, double);
BENCHMARK_TEMPLATE(Triangle, float);
BENCHMARK_TEMPLATE(Sphere, double);
BENCHMARK_TEMPLATE(Sphere, float);
BENCHMARK_TEMPLATE(Cylinder, double);
BENCHMARK_TEMPLATE(Cylinder, float);
BENCHMARK_TEMPLATE(Cone, double);
BENCHMARK_TEMPLATE(Cone, float);
BENCHMARK_TEMPLATE(SegmentOntoSegment, double);
BENCHMARK_TEMPLATE(SegmentOntoSegment, float);
BENCHMARK(DropOntoTriangle);
BENCHMARK_TEMPLATE(PointInPolygon, double)->Arg(10)->Arg(100)->Arg(10000);
BENCHMARK_TEMPLATE(PointInPolygon, float)->Arg(10000);
