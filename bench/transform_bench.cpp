// Mapping of single points and of arrays, products and inverses of transforms, beside Eigen's affine transform.

#include <benchmark/benchmark.h>
#include <cadgeom/transform/points_transform.h>

#include <cstdint>
#include <random>
#include <vector>

#if __has_include(<Eigen/Geometry>)
#define CADGEOM_BENCH_EIGEN
#include <Eigen/Geometry>
#endif

namespace {

template <class T>
std::vector<CadPoint3d<T>> RandomPoints(std::size_t count)
{
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> coordinate(-1000.0, 1000.0);
    std::vector<CadPoint3d<T>> points(count);
    for (CadPoint3d<T>& point : points) {
        for (int k = 0; k < 3; ++k) {
            point[k] = static_cast<T>(coordinate(random));
        }
    }
    return points;
}

CCadTransform Frame(std::int64_t kind)
{
    CCadTransform frame({1, 2, 3}, CadPoint3d<double>(0.1, -0.2, 0.3));
    if (kind == 1) {
        frame.SetScale({0.5, 1.0, 2.0});
    }
    if (kind == 2) {
        frame.setAxesXYZ({1, 0, 0}, {0, 1, 0}, {0, 0, 1});
    }
    frame.IsEmptyTransform();
    return frame;
}

template <class Map>
void MapArray(benchmark::State& state, const Map& map)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        map(count);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void PointsToWorld(benchmark::State& state)
{
    auto points = RandomPoints<T>(static_cast<std::size_t>(state.range(0)));
    const CCadTransform frame = Frame(state.range(1));
    MapArray(state, [&](std::size_t count) { frame.aaback(points.data(), count); });
}

template <class T>
void PointsToLocal(benchmark::State& state)
{
    auto points = RandomPoints<T>(static_cast<std::size_t>(state.range(0)));
    const CCadTransform frame = Frame(state.range(1));
    MapArray(state, [&](std::size_t count) { frame.aaforw(points.data(), count); });
}

/// One call for each point.
void SinglePoint(benchmark::State& state)
{
    auto points = RandomPoints<double>(1000);
    const CCadTransform frame = Frame(state.range(0));
    for (auto _ : state) {
        for (CadPoint3d<double>& point : points) {
            frame.aaback(point, point);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

void Product(benchmark::State& state)
{
    CCadTransform a = Frame(0);
    const CCadTransform b = Frame(0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a * b);
    }
}

void Inverse(benchmark::State& state)
{
    const CCadTransform a = Frame(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(a.GetInverse());
    }
}

#ifdef CADGEOM_BENCH_EIGEN

Eigen::Affine3d EigenFrame()
{
    return Eigen::Translation3d(0.1, -0.2, 0.3) * Eigen::AngleAxisd(0.7, Eigen::Vector3d(1, 2, 3).normalized());
}

void EigenPointsToWorld(benchmark::State& state)
{
    auto points = RandomPoints<double>(static_cast<std::size_t>(state.range(0)));
    const Eigen::Affine3d frame = EigenFrame();
    MapArray(state, [&](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            Eigen::Map<Eigen::Vector3d> point(points[i].data());
            point = frame * Eigen::Vector3d(point);
        }
    });
}

void EigenProduct(benchmark::State& state)
{
    Eigen::Affine3d a = EigenFrame();
    Eigen::Affine3d b = EigenFrame();
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(Eigen::Affine3d(a * b));
    }
}

void EigenInverse(benchmark::State& state)
{
    Eigen::Affine3d a = EigenFrame();
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(Eigen::Affine3d(a.inverse(Eigen::Affine)));
    }
}

BENCHMARK(EigenPointsToWorld)->ArgName("count")->Arg(1000)->Arg(100000)->Arg(10000000);
BENCHMARK(EigenProduct);
BENCHMARK(EigenInverse);

#endif

/// Kinds of frame: 0 rigid, 1 with a scale for each axis, 2 a translation.
void Arrays(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"count", "kind"});
    for (const int count : {1, 1000, 100000, 10000000}) {
        for (const int kind : {0, 1, 2}) {
            bench->Args({count, kind});
        }
    }
}

} // namespace

BENCHMARK(PointsToWorld<double>)->Apply(Arrays);
BENCHMARK(PointsToWorld<float>)->Apply(Arrays);
BENCHMARK(PointsToLocal<double>)->Apply(Arrays);
BENCHMARK(SinglePoint)->ArgName("kind")->DenseRange(0, 2);
BENCHMARK(Product);
BENCHMARK(Inverse)->ArgName("kind")->DenseRange(0, 2);
