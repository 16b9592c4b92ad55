// Boxes. Points, boxes, lines and triangles fall at random, about half of them in or on the box, so that no branch on an
// answer can be predicted; there are enough of them that no answer is remembered.

#include <benchmark/benchmark.h>
#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/bounds/triangle_box_overlap.h>
#include <cadgeom/transform/transform.h>

#include <array>
#include <cstddef>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kCount = 4096;

template <class T>
class Numbers {
public:
    T Within(double low, double high)
    {
        return static_cast<T>(std::uniform_real_distribution<double>(low, high)(m_engine));
    }
    CadPoint3d<T> Point(double size) { return {Within(-size, size), Within(-size, size), Within(-size, size)}; }
    CadVector3d<T> Vector(double size) { return {Within(-size, size), Within(-size, size), Within(-size, size)}; }
    CBoundingBox3d<T> Box(double place, double size)
    {
        const CadPoint3d<T> min = Point(place);
        return {min, CadPoint3d<T>(min[0] + Within(0, size), min[1] + Within(0, size), min[2] + Within(0, size))};
    }

private:
    std::mt19937 m_engine{1};
};

template <class Item, class Make>
std::vector<Item> Repeat(Make make)
{
    std::vector<Item> items;
    items.reserve(kCount);
    for (std::size_t i = 0; i < kCount; ++i) {
        items.push_back(make());
    }
    return items;
}

/// Runs a query on every item; the answers are summed as a host would count them.
template <class Item, class Query>
void Run(benchmark::State& state, const std::vector<Item>& items, Query query)
{
    for (auto _ : state) {
        auto sum = query(items[0]);
        sum = decltype(sum)(0);
        for (const Item& item : items) {
            sum += query(item);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items.size()));
}

template <class T>
CBoundingBox3d<T> Cube(double half)
{
    const T h = static_cast<T>(half);
    return {CadPoint3d<T>(-h, -h, -h), CadPoint3d<T>(h, h, h)};
}

template <class T>
void GrowByPoints(benchmark::State& state)
{
    Numbers<T> numbers;
    const auto points = Repeat<CadPoint3d<T>>([&] { return numbers.Point(100); });
    for (auto _ : state) {
        CBoundingBox3d<T> box;
        for (const auto& point : points) {
            box.CheckPoint(point);
        }
        benchmark::DoNotOptimize(box);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}

template <class T>
void ContainsPoint(benchmark::State& state)
{
    Numbers<T> numbers;
    const auto box = Cube<T>(8);
    const auto points = Repeat<CadPoint3d<T>>([&] { return numbers.Point(10); });
    Run(state, points, [&](const CadPoint3d<T>& point) { return box.ContainsPoint(point, T(0.01)) ? 1 : 0; });
}

template <class T>
void BoxesIntersect(benchmark::State& state)
{
    Numbers<T> numbers;
    const auto box = Cube<T>(5);
    const auto boxes = Repeat<CBoundingBox3d<T>>([&] { return numbers.Box(10, 5); });
    Run(state, boxes,
        [&](const CBoundingBox3d<T>& other) { return box.BoundingBoxIntersects(other, T(0.01)) ? 1 : 0; });
}

template <class T>
struct Line {
    CadPoint3d<T> origin;
    CadVector3d<T> direction;
};

template <class T>
std::vector<Line<T>> RandomLines()
{
    Numbers<T> numbers;
    return Repeat<Line<T>>([&] { return Line<T>{numbers.Point(10), numbers.Vector(1)}; });
}

template <class T>
void RayPierce(benchmark::State& state)
{
    const auto box = Cube<T>(5);
    const auto lines = RandomLines<T>();
    Run(state, lines, [&](const Line<T>& line) {
        T tNear;
        T tFar;
        return box.RayPierce(line.origin, line.direction, &tNear, &tFar, nullptr, nullptr) ? 1 : 0;
    });
}

template <class T>
void RayPiercePoints(benchmark::State& state)
{
    const auto box = Cube<T>(5);
    const auto lines = RandomLines<T>();
    Run(state, lines, [&](const Line<T>& line) {
        CadPoint3d<T> entry(T(0), T(0), T(0));
        CadPoint3d<T> exit(T(0), T(0), T(0));
        box.RayPierce(line.origin, line.direction, nullptr, nullptr, &entry, &exit);
        return entry[0] + exit[1];
    });
}

template <class T>
void PlaneIntersects(benchmark::State& state)
{
    const auto box = Cube<T>(3);
    const auto planes = RandomLines<T>();
    Run(state, planes,
        [&](const Line<T>& plane) { return box.PlaneIntersects(plane.origin, plane.direction, T(0)) ? 1 : 0; });
}

template <class T>
void ClosestDistanceToPoint(benchmark::State& state)
{
    Numbers<T> numbers;
    const auto box = Cube<T>(5);
    const auto points = Repeat<CadPoint3d<T>>([&] { return numbers.Point(10); });
    Run(state, points, [&](const CadPoint3d<T>& point) { return box.GetClosestDistanceSquared(point); });
}

template <class T>
void ClosestDistanceToLine(benchmark::State& state)
{
    const auto box = Cube<T>(2);
    const auto lines = RandomLines<T>();
    Run(state, lines, [&](const Line<T>& line) { return box.GetClosestDistanceSquared(line.origin, line.direction); });
}

template <class T>
void SweptBoxesIntersect(benchmark::State& state)
{
    Numbers<T> numbers;
    const auto boxes = Repeat<CBoundingBox3d<T>>([&] { return numbers.Box(10, 5); });
    const auto box = Cube<T>(3);
    const CadVector3d<T> motion(T(3), T(-2), T(1));
    Run(state, boxes,
        [&](const CBoundingBox3d<T>& other) { return box.SweptBoundingBoxIntersects(other, motion, T(0)) ? 1 : 0; });
}

template <class T>
void OrientedBoxesIntersect(benchmark::State& state)
{
    Numbers<T> numbers;
    const auto boxes = Repeat<COrientedBox3d<T>>([&] {
        const CadVector3d<double> axis(static_cast<double>(numbers.Within(-1, 1)),
                                       static_cast<double>(numbers.Within(-1, 1)),
                                       static_cast<double>(numbers.Within(-1, 1)));
        return COrientedBox3d<T>(numbers.Box(6, 5),
                                 CCadTransform::GetRotateAboutVector(static_cast<double>(numbers.Within(-3, 3)), axis,
                                                                     CadPoint3d<double>(0, 0, 0)));
    });
    const COrientedBox3d<T> box = boxes[1];
    Run(state, boxes, [&](const COrientedBox3d<T>& other) { return box.OrientedBoxIntersects(other, T(0)) ? 1 : 0; });
}

template <class T>
void TransformBox(benchmark::State& state)
{
    Numbers<T> numbers;
    const auto boxes = Repeat<CBoundingBox3d<T>>([&] { return numbers.Box(10, 5); });
    const CCadTransform turn =
        CCadTransform::GetRotateAboutVector(0.5, CadVector3d<double>(1, 2, 3), CadPoint3d<double>(1, 1, 1));
    Run(state, boxes, [&](const CBoundingBox3d<T>& box) {
        CBoundingBox3d<T> turned(box);
        turned.TransformFrom(turn);
        return turned.GetMin()[0];
    });
}

template <class T>
void TriangleOverlaps(benchmark::State& state)
{
    Numbers<T> numbers;
    using Triangle = std::array<CadPoint3d<T>, 3>;
    const auto box = Cube<T>(4);
    const auto triangles = Repeat<Triangle>([&] {
        return Triangle{numbers.Point(10), numbers.Point(10), numbers.Point(10)};
    });
    Run(state, triangles, [&](const Triangle& triangle) { return TriangleBoxOverlap(box, triangle.data()) ? 1 : 0; });
}

BENCHMARK(GrowByPoints<double>);
BENCHMARK(GrowByPoints<float>);
BENCHMARK(ContainsPoint<double>);
BENCHMARK(ContainsPoint<float>);
BENCHMARK(BoxesIntersect<double>);
BENCHMARK(BoxesIntersect<float>);
BENCHMARK(RayPierce<double>);
BENCHMARK(RayPierce<float>);
BENCHMARK(RayPiercePoints<double>);
BENCHMARK(PlaneIntersects<double>);
BENCHMARK(ClosestDistanceToPoint<double>);
BENCHMARK(ClosestDistanceToLine<double>);
BENCHMARK(SweptBoxesIntersect<double>);
BENCHMARK(OrientedBoxesIntersect<double>);
BENCHMARK(TransformBox<double>);
BENCHMARK(TransformBox<float>);
BENCHMARK(TriangleOverlaps<double>);
BENCHMARK(TriangleOverlaps<float>);

} // namespace
