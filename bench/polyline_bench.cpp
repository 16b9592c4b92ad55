// Polylines from ten thousand to a million vertices: appending beside std::vector, loading, measuring, mapping and
// simplifying. The reported rate is vertices per second; it must not fall with the number of vertices beyond what the
// caches explain.

#include <benchmark/benchmark.h>
#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/platform/file.h>
#include <cadgeom/polyline/polyline3d.h>
#include <cadgeom/transform/transform.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

/// A random walk whose steps are so uneven that about half of its vertices are redundant.
template <class T>
CCadPolyline3d<T> RandomWalk(std::int64_t count)
{
    std::mt19937 random(20240611);
    std::uniform_real_distribution<double> step(-1.0, 1.0);
    CCadPolyline3d<T> polyline;
    CadPoint3d<T> point(T(0), T(0), T(0));
    for (std::int64_t i = 0; i < count; ++i) {
        point += CadVector3d<T>(T(1), static_cast<T>(0.1 * step(random)), static_cast<T>(0.1 * step(random)));
        polyline.AddPoint(point);
    }
    return polyline;
}

template <class T>
void AddPoints(benchmark::State& state)
{
    const CadPoint3d<T> point(T(1), T(2), T(3));
    for (auto _ : state) {
        CCadPolyline3d<T> polyline;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            polyline.AddPoint(point);
        }
        benchmark::DoNotOptimize(polyline.GetData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void AddPointsToVector(benchmark::State& state)
{
    const CadPoint3d<T> point(T(1), T(2), T(3));
    for (auto _ : state) {
        std::vector<CadPoint3d<T>> vertices;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            vertices.push_back(point);
        }
        benchmark::DoNotOptimize(vertices.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// Runs `work` on a polyline that it leaves as it is.
template <class T, class Work>
void Measure(benchmark::State& state, Work work)
{
    CCadPolyline3d<T> polyline = RandomWalk<T>(state.range(0));
    for (auto _ : state) {
        work(polyline);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void ComputeLength(benchmark::State& state)
{
    Measure<T>(state, [](CCadPolyline3d<T>& polyline) { benchmark::DoNotOptimize(polyline.ComputeLength()); });
}

template <class T>
void ComputeBoundingBox(benchmark::State& state)
{
    Measure<T>(state, [](CCadPolyline3d<T>& polyline) {
        CBoundingBox3d<T> box;
        polyline.ComputeBoundingBox(box);
        benchmark::DoNotOptimize(box);
    });
}

template <class T>
void Drop(benchmark::State& state)
{
    const CadPoint3d<T> point(T(5000), T(3), T(-2));
    Measure<T>(state, [&point](CCadPolyline3d<T>& polyline) {
        CadPoint3d<T> foot;
        polyline.Drop(point, foot);
        benchmark::DoNotOptimize(foot);
    });
}

template <class T>
void Transform(benchmark::State& state)
{
    CCadTransform transform = CCadTransform::GetEmptyTransform();
    transform.RotAboutAxis(30.0, 2);
    Measure<T>(state, [&transform](CCadPolyline3d<T>& polyline) {
        polyline.TransformFrom(transform);
        benchmark::ClobberMemory();
    });
}

/// Loads into the same polyline again and again, so that the figure is that of reading and not of fresh memory.
template <class T>
void Load(benchmark::State& state)
{
    CMemFile file;
    {
        CCadPolyline3d<T> polyline = RandomWalk<T>(state.range(0));
        CArchive archive(&file, CArchive::store);
        polyline.Serialize(archive);
        archive.Close();
    }
    Measure<T>(state, [&file](CCadPolyline3d<T>& polyline) {
        file.SeekToBegin();
        CArchive archive(&file, CArchive::load);
        polyline.Serialize(archive);
    });
}

/// Runs `reduce` on fresh copies; copying is not timed.
template <class T, class Reduce>
void Simplify(benchmark::State& state, Reduce reduce)
{
    const CCadPolyline3d<T> original = RandomWalk<T>(state.range(0));
    CCadPolyline3d<T> polyline;
    for (auto _ : state) {
        state.PauseTiming();
        polyline = original;
        state.ResumeTiming();
        reduce(polyline);
        benchmark::DoNotOptimize(polyline.GetData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void DataReduce(benchmark::State& state)
{
    Simplify<T>(state, [](CCadPolyline3d<T>& polyline) { polyline.DataReduce(T(0.07)); });
}

template <class T>
void RemoveRedundantPoints(benchmark::State& state)
{
    Simplify<T>(state, [](CCadPolyline3d<T>& polyline) { polyline.RemoveRedundantPoints(); });
}

void Sizes(benchmark::internal::Benchmark* bench)
{
    bench->ArgName("vertices")->Arg(10000)->Arg(100000)->Arg(1000000);
}

} // namespace

#define CADGEOM_BENCH_POLYLINE(name)                                                                                   \
    BENCHMARK(name<double>)->Apply(Sizes);                                                                             \
    BENCHMARK(name<float>)->Apply(Sizes)

CADGEOM_BENCH_POLYLINE(AddPoints);
CADGEOM_BENCH_POLYLINE(AddPointsToVector);
CADGEOM_BENCH_POLYLINE(ComputeLength);
CADGEOM_BENCH_POLYLINE(ComputeBoundingBox);
CADGEOM_BENCH_POLYLINE(Drop);
CADGEOM_BENCH_POLYLINE(Transform);
CADGEOM_BENCH_POLYLINE(Load);
CADGEOM_BENCH_POLYLINE(DataReduce);
CADGEOM_BENCH_POLYLINE(RemoveRedundantPoints);
