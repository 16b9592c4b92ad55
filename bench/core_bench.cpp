// Value types and point sequences. Arrays of 1e3 points stay in the first cache, those of 1e7 stream from memory.

#include <benchmark/benchmark.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/point_sequence.h>
#include <cadgeom/core/units.h>

#include <cstddef>
#include <random>
#include <vector>

namespace {

template <class T>
std::vector<CadPoint3d<T>> RandomPoints(std::int64_t count)
{
    std::mt19937 engine(1);
    std::uniform_real_distribution<T> uniform(T(-100), T(100));
    std::vector<CadPoint3d<T>> points(static_cast<std::size_t>(count));
    for (auto& point : points) {
        point.set(uniform(engine), uniform(engine), uniform(engine));
    }
    return points;
}

void CountPoints(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void MeanPoint(benchmark::State& state)
{
    const auto points = RandomPoints<T>(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(ComputeMeanPoint(static_cast<const CadPoint<T, 3>*>(points.data()), points.size()));
    }
    CountPoints(state);
}

template <class T>
void PolylineLength(benchmark::State& state)
{
    const auto points = RandomPoints<T>(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(PolylineGetLength(static_cast<const CadPoint<T, 3>*>(points.data()), points.size()));
    }
    CountPoints(state);
}

template <class T>
void Translate(benchmark::State& state)
{
    auto points = RandomPoints<T>(state.range(0));
    const CadVector3d<double> displacement(1e-9, 0, -1e-9);
    for (auto _ : state) {
        PointsTranslate(points.data(), points.size(), displacement);
    }
    CountPoints(state);
}

template <class T>
void Scale(benchmark::State& state)
{
    auto points = RandomPoints<T>(state.range(0));
    const double factor = state.range(1) != 0 ? -1.0 : 1.0000000001;
    for (auto _ : state) {
        PointsScale(points.data(), points.size(), factor);
    }
    CountPoints(state);
}

template <class T>
void Normalize(benchmark::State& state)
{
    const auto points = RandomPoints<T>(1000);
    for (auto _ : state) {
        for (const auto& point : points) {
            CadVector3d<T> vector = point - CadPoint3d<T>::zero();
            vector.normalize();
            benchmark::DoNotOptimize(vector);
        }
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

void Dot(benchmark::State& state)
{
    const auto points = RandomPoints<double>(1001);
    std::vector<double> products(1000);
    for (auto _ : state) {
        for (std::size_t i = 0; i < 1000; ++i) {
            products[i] = points[i].dotPoint(points[i + 1]);
        }
        benchmark::DoNotOptimize(products.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

/// Tests of one tolerance, or of two that alternate and so are never remembered.
void Parallel(benchmark::State& state)
{
    const CadVector3d<double> a(1, 2, 3);
    const CadVector3d<double> b(1, 2, 3.1);
    const double tolerances[] = {1.0, state.range(0) != 0 ? 2.0 : 1.0};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(a.isParallel(b, tolerances[i++ % 2]));
    }
}

BENCHMARK_TEMPLATE(MeanPoint, double)->Arg(1000)->Arg(100000)->Arg(10000000);
BENCHMARK_TEMPLATE(MeanPoint, float)->Arg(1000)->Arg(10000000);
BENCHMARK_TEMPLATE(PolylineLength, double)->Arg(1000)->Arg(100000)->Arg(10000000);
BENCHMARK_TEMPLATE(PolylineLength, float)->Arg(1000)->Arg(10000000);
BENCHMARK_TEMPLATE(Translate, double)->Arg(1000)->Arg(100000)->Arg(10000000);
BENCHMARK_TEMPLATE(Translate, float)->Arg(1000)->Arg(10000000);
BENCHMARK_TEMPLATE(Scale, double)->Args({1000, 0})->Args({100000, 0})->Args({10000000, 0});
BENCHMARK_TEMPLATE(Scale, float)->Args({1000, 0})->Args({1000, 1})->Args({10000000, 1});
BENCHMARK_TEMPLATE(Normalize, double);
BENCHMARK_TEMPLATE(Normalize, float);
BENCHMARK(Dot);
BENCHMARK(Parallel)->Arg(0)->Arg(1);

} // namespace
