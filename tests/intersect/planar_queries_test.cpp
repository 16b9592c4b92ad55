#include <cadgeom/intersect/planar_queries.h>

#include "meshes.h"
#include "samples.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

using samples::kInfinity;
using samples::kNaN;
using samples::kUntouched;

namespace {

template <class T>
class PlanarQueries : public ::testing::Test {};

template <class T>
class ClosedPolyline : public ::testing::Test {};

TYPED_TEST_SUITE(PlanarQueries, samples::ScalarTypes);
TYPED_TEST_SUITE(ClosedPolyline, samples::ScalarTypes);

template <class T>
using Outline = std::vector<CadPoint2d<T>>;

/// The answers for both values of onBoundary: "in", "out", or "on" when the answer is the argument.
template <class T>
std::string Locate(const Outline<T>& outline, const CadPoint2d<T>& point, T tolerance = T(0))
{
    const bool ifTrue = ClosedPolylineContainsPoint2d(outline.data(), outline.size(), point, tolerance, true);
    const bool ifFalse = ClosedPolylineContainsPoint2d(outline.data(), outline.size(), point, tolerance, false);
    if (ifTrue && !ifFalse) {
        return "on";
    }
    return ifTrue == ifFalse ? (ifTrue ? "in" : "out") : "contradiction";
}

/// The rule for every edge in turn, with indices taken modulo the number of vertices.
template <class T>
std::string LocateEdgeByEdge(const Outline<T>& points, const CadPoint2d<T>& p, T tolerance)
{
    const T e = tolerance > T(0) ? tolerance : (sizeof(T) == 8 ? T(1e-6) : T(1e-4));
    const std::size_t n = points.size();
    const auto isNear = [e](T a, T b) { return std::fabs(a - b) <= e; };
    std::size_t m = n;
    if (isNear(points[n - 1].x(), points[0].x()) && isNear(points[n - 1].y(), points[0].y())) {
        m = n - 1;
    }
    std::size_t s = 0;
    while (s < m && isNear(p.y(), points[s].y())) {
        ++s;
    }
    if (s == m) {
        return "undecided";
    }
    int crossings = 0;
    T runX = 0;
    bool runBelow = false;
    for (std::size_t step = 1; step <= n; ++step) {
        const CadPoint2d<T>& i = points[(s + step - 1) % m];
        const CadPoint2d<T>& j = points[(s + step) % m];
        const bool iOn = isNear(p.y(), i.y());
        const bool jOn = isNear(p.y(), j.y());
        if (!iOn && jOn) {
            runX = j.x();
            runBelow = p.y() > i.y();
        } else if (!iOn && !jOn) {
            if ((p.y() - j.y()) * (p.y() - i.y()) < T(0)) {
                const T x = (j.x() - i.x()) * (p.y() - i.y()) / (j.y() - i.y()) + i.x();
                if (std::fabs(p.x() - x) <= e) {
                    return "on";
                }
                crossings += x > p.x() ? 1 : 0;
            }
        } else if (iOn && !jOn) {
            if (std::fabs(p.x() - runX) <= e || std::fabs(p.x() - i.x()) <= e) {
                return "on";
            }
            if (runX > p.x() && i.x() > p.x()) {
                crossings += runBelow != (p.y() > j.y()) ? 1 : 0;
            } else if ((p.x() - i.x()) * (p.x() - runX) <= T(0)) {
                return "on";
            }
        }
    }
    return crossings % 2 == 1 ? "in" : "out";
}

template <class T>
Outline<T> UnitSquare()
{
    return {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
}

} // namespace

TYPED_TEST(PlanarQueries, CountsOppositeNormalsAsTheSamePlane)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_TRUE(PlanesAreCoplanar(Point(1, 2, 3), Vector(0, 0, 2), Point(1, 2, 3), Vector(0, 0, -1), T(0), T(1)));
    EXPECT_TRUE(PlanesAreCoplanar(Point(7, 8, 3), Vector(0, 0, 2), Point(1, 2, 3), Vector(0, 0, -1), T(0), T(1)));
}

TYPED_TEST(PlanarQueries, ComparesTheDistanceOfTheFirstPointInclusively)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Vector normal(0, 0, 4);
    const auto areCoplanarAt = [&normal](T height, T tolerance) {
        return PlanesAreCoplanar(Point(5, 5, height), normal, Point(0, 0, 0), normal, tolerance, T(1));
    };
    EXPECT_TRUE(areCoplanarAt(T(0.25), T(0.25)));
    EXPECT_TRUE(areCoplanarAt(T(-0.25), T(0.25)));
    EXPECT_FALSE(areCoplanarAt(T(0.25), std::nextafter(T(0.25), T(0))));
    EXPECT_TRUE(areCoplanarAt(T(0.25), T(-0.25)));
    EXPECT_FALSE(areCoplanarAt(kNaN<T>, T(1)));
}

TYPED_TEST(PlanarQueries, NeedsParallelNormalsOfSomeLength)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Point origin(0, 0, 0);
    EXPECT_FALSE(PlanesAreCoplanar(origin, Vector(0, T(0.1), 1), origin, Vector(0, 0, 1), T(1), T(5)));
    EXPECT_TRUE(PlanesAreCoplanar(origin, Vector(0, T(0.1), 1), origin, Vector(0, 0, 1), T(1), T(6)));
    EXPECT_FALSE(PlanesAreCoplanar(origin, Vector(0, 0, 0), origin, Vector(0, 0, 1), T(1), T(90)));
    EXPECT_FALSE(PlanesAreCoplanar(origin, Vector(0, 0, 1), origin, Vector(0, 0, 0), T(1), T(90)));
}

TYPED_TEST(PlanarQueries, ComputesTheCurvatureOfACircle)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T k = kUntouched<T>;
    EXPECT_TRUE(ComputeCurvature(Vector(1, 0, 0), Vector(0, 1, 0), k));
    EXPECT_EQ(k, T(1));
    // A circle of radius 4 run through at speed 8: the acceleration is 16, and what lies along the path plays no part.
    EXPECT_TRUE(ComputeCurvature(Vector(0, 8, 0), Vector(0, 5, 16), k));
    EXPECT_EQ(k, T(0.25));
    EXPECT_TRUE(ComputeCurvature(Vector(0, 8, 0), Vector(0, 5, 0), k));
    EXPECT_EQ(k, T(0));
}

TYPED_TEST(PlanarQueries, HasNoCurvatureWhereTheCurveStandsStill)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T k = kUntouched<T>;
    EXPECT_FALSE(ComputeCurvature(Vector(0, 0, 0), Vector(0, 1, 0), k));
    EXPECT_FALSE(ComputeCurvature(Vector(0, 0, 0), Vector(0, 0, 0), k));
    EXPECT_EQ(k, kUntouched<T>);
}

TYPED_TEST(PlanarQueries, BoundsTheCurvatureBelowTwoToThe23)
{
    CADGEOM_TEST_TYPES(TypeParam);
    T k = kUntouched<T>;
    const T limit = T(8388608);
    EXPECT_FALSE(ComputeCurvature(Vector(1, 0, 0), Vector(0, limit, 0), k));
    EXPECT_EQ(k, kUntouched<T>);
    const T below = std::nextafter(limit, T(0));
    EXPECT_TRUE(ComputeCurvature(Vector(1, 0, 0), Vector(0, below, 0), k));
    EXPECT_EQ(k, below);
    EXPECT_TRUE(ComputeCurvature(Vector(kNaN<T>, 0, 0), Vector(0, 1, 0), k));
    EXPECT_TRUE(std::isnan(k));
}

TYPED_TEST(ClosedPolyline, ContainsTheMiddleOfASquare)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Outline<T> square = UnitSquare<T>();
    EXPECT_EQ(Locate(square, Point2(T(0.5), T(0.5))), "in");
    EXPECT_EQ(Locate(square, Point2(T(1.5), T(0.5))), "out");
    EXPECT_EQ(Locate(square, Point2(T(-0.5), T(0.5))), "out");
    EXPECT_EQ(Locate(square, Point2(T(0.5), T(1.5))), "out");
    EXPECT_EQ(Locate(square, Point2(T(0.5), T(-0.5))), "out");
}

TYPED_TEST(ClosedPolyline, GivesTheAnswerForTheBoundaryOnEdgesAndVertices)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Outline<T> square = UnitSquare<T>();
    for (const Point2& point : {Point2(1, T(0.5)), Point2(0, T(0.5)), Point2(T(0.5), 0), Point2(T(0.5), 1),
                                Point2(0, 0), Point2(1, 0), Point2(1, 1), Point2(0, 1)}) {
        EXPECT_EQ(Locate(square, point), "on") << point.x() << ' ' << point.y();
    }
    EXPECT_EQ(Locate(square, Point2(-1, 0)), "out");
    EXPECT_EQ(Locate(square, Point2(2, 1)), "out");
    EXPECT_EQ(Locate(square, Point2(-1, 1)), "out");
}

TYPED_TEST(ClosedPolyline, CountsTheFirstEdgeOfAnExplicitlyClosedOutlineTwice)
{
    CADGEOM_TEST_TYPES(TypeParam);
    Outline<T> outline = {{1, -1}, {1, 1}, {-1, 1}, {-1, -1}};
    EXPECT_EQ(Locate(outline, Point2(0, 0)), "in");
    outline.push_back(outline.front());
    EXPECT_EQ(Locate(outline, Point2(0, 0)), "out");
    // A first edge to the left of the point, or beside its line, is not crossed either time.
    EXPECT_EQ(Locate(Outline<T>{{-1, 1}, {-1, -1}, {1, -1}, {1, 1}, {-1, 1}}, Point2(0, 0)), "in");
}

TYPED_TEST(ClosedPolyline, AnswersFalseWithoutVertices)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Outline<T> square = UnitSquare<T>();
    EXPECT_FALSE(ClosedPolylineContainsPoint2d<T>(nullptr, 4, Point2(0, 0), T(1), true));
    EXPECT_FALSE(ClosedPolylineContainsPoint2d<T>(nullptr, ~std::uint64_t(0), Point2(0, 0), T(1), true));
    EXPECT_FALSE(ClosedPolylineContainsPoint2d<T>(square.data(), 0, Point2(0, 0), T(1), true));
}

TYPED_TEST(ClosedPolyline, ComparesASingleVertexPerCoordinate)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Outline<T> vertex = {{2, 3}};
    EXPECT_EQ(Locate(vertex, Point2(2, 3)), "on");
    EXPECT_EQ(Locate(vertex, Point2(T(2.25), T(2.75)), T(0.25)), "on");
    EXPECT_EQ(Locate(vertex, Point2(T(2.25), T(2.75)), T(0.24)), "out");
    EXPECT_EQ(Locate(vertex, Point2(2, T(2.75)), T(0.24)), "out");
    EXPECT_EQ(Locate(vertex, Point2(kNaN<T>, 3), T(1)), "out");
}

TYPED_TEST(ClosedPolyline, ReplacesAToleranceThatIsNotPositive)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const T standard = sizeof(T) == 8 ? T(1e-6) : T(1e-4);
    const Outline<T> vertex = {{0, 3}};
    for (const T tolerance : {T(0), T(-1), kNaN<T>}) {
        EXPECT_EQ(Locate(vertex, Point2(standard, 3), tolerance), "on");
        EXPECT_EQ(Locate(vertex, Point2(std::nextafter(standard, T(1)), 3), tolerance), "out");
    }
}

TYPED_TEST(ClosedPolyline, HandlesTwoVertices)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Outline<T> segment = {{0, 0}, {2, 2}};
    EXPECT_EQ(Locate(segment, Point2(1, 1)), "on");
    EXPECT_EQ(Locate(segment, Point2(0, 1)), "out");
    EXPECT_EQ(Locate(Outline<T>{{0, 0}, {0, 0}}, Point2(0, 1)), "out");
    EXPECT_EQ(Locate(Outline<T>{{0, 0}, {0, 0}}, Point2(0, 0)), "on");
}

TYPED_TEST(ClosedPolyline, WidensTheRangeOfAnOutlineAlongTheLine)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Outline<T> flat = {{1, 0}, {4, T(0.125)}, {2, T(-0.125)}};
    EXPECT_EQ(Locate(flat, Point2(3, 0), T(0.25)), "on");
    EXPECT_EQ(Locate(flat, Point2(T(4.25), 0), T(0.25)), "on");
    EXPECT_EQ(Locate(flat, Point2(T(0.75), 0), T(0.25)), "on");
    EXPECT_EQ(Locate(flat, Point2(T(4.5), 0), T(0.25)), "out");
    EXPECT_EQ(Locate(flat, Point2(T(0.5), 0), T(0.25)), "out");
    EXPECT_EQ(Locate(flat, Point2(kNaN<T>, 0), T(0.25)), "out");
}

TYPED_TEST(ClosedPolyline, CrossesARunAlongTheLineOnceWhenSidesChange)
{
    CADGEOM_TEST_TYPES(TypeParam);
    // A step at y = 0, from x = 2 to x = 4: below at its left end, above at its right end.
    const Outline<T> step = {{0, -2}, {2, -2}, {2, 0}, {3, 0}, {4, 0}, {4, 2}, {0, 2}};
    EXPECT_EQ(Locate(step, Point2(1, 0)), "in");
    EXPECT_EQ(Locate(step, Point2(-1, 0)), "out");
    EXPECT_EQ(Locate(step, Point2(3, 0)), "on");
    EXPECT_EQ(Locate(step, Point2(T(2.5), 0)), "on");
    EXPECT_EQ(Locate(step, Point2(5, 0)), "out");
    // A notch that only touches the line from below is no crossing.
    const Outline<T> notch = {{0, -2}, {6, -2}, {6, 2}, {5, 2}, {4, 0}, {3, 0}, {2, 2}, {0, 2}};
    EXPECT_EQ(Locate(notch, Point2(1, 0)), "in");
    EXPECT_EQ(Locate(notch, Point2(T(5.5), 0)), "in");
    EXPECT_EQ(Locate(notch, Point2(-1, 0)), "out");
}

TYPED_TEST(ClosedPolyline, StartsBehindARunThatHoldsTheFirstVertices)
{
    CADGEOM_TEST_TYPES(TypeParam);
    const Outline<T> outline = {{3, 0}, {4, 0}, {4, 2}, {0, 2}, {0, -2}, {2, -2}, {2, 0}};
    EXPECT_EQ(Locate(outline, Point2(1, 0)), "in");
    EXPECT_EQ(Locate(outline, Point2(3, 0)), "on");
}

TYPED_TEST(ClosedPolyline, AgreesWithTheRuleEdgeByEdgeOnLattices)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(31);
    for (int i = 0; i < 20000; ++i) {
        Outline<T> outline(static_cast<std::size_t>(source.Integer(2, 60)));
        for (Point2& vertex : outline) {
            vertex.set(static_cast<T>(source.Integer(-3, 3)), static_cast<T>(source.Integer(-3, 3)));
        }
        const Point2 point(static_cast<T>(source.Integer(-6, 6)) / 2, static_cast<T>(source.Integer(-6, 6)) / 2);
        const std::string expected = LocateEdgeByEdge(outline, point, T(0));
        if (expected != "undecided") {
            ASSERT_EQ(Locate(outline, point), expected) << i;
        }
    }
}

TYPED_TEST(ClosedPolyline, AgreesWithTheRuleEdgeByEdgeOnLongOutlinesWithWildVertices)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(32);
    int contained = 0;
    for (int i = 0; i < 20000; ++i) {
        const int count = source.Integer(17, 130);
        Outline<T> outline;
        for (int k = 0; k < count; ++k) {
            const double angle = 6.283185307179586 * k / count;
            const T radius = source.Between(1, 1.1);
            outline.push_back(
                Point2(radius * static_cast<T>(std::cos(angle)), radius * static_cast<T>(std::sin(angle))));
        }
        for (int changes = source.Integer(0, 2); changes != 0; --changes) {
            outline[static_cast<std::size_t>(source.Integer(0, count - 1))] = source.WildPoint2d();
        }
        const Point2 point = source.Integer(0, 9) == 0 ? source.WildPoint2d() : source.Point2d(1.2);
        const T tolerance = source.Integer(0, 3) == 0 ? source.Wild() : T(0);
        const std::string expected = LocateEdgeByEdge(outline, point, tolerance);
        if (expected != "undecided") {
            ASSERT_EQ(Locate(outline, point, tolerance), expected) << i;
            contained += expected == "in" ? 1 : 0;
        }
    }
    EXPECT_GT(contained, 5000);
}

TYPED_TEST(ClosedPolyline, SeesAnEdgeThatStraddlesTheLineInEveryPlaceOfALongOutline)
{
    CADGEOM_TEST_TYPES(TypeParam);
    // All vertices lie high above the line but one, which hangs below it to the right of the point.
    for (std::size_t count = 20; count < 70; ++count) {
        for (std::size_t low = 0; low < count; ++low) {
            Outline<T> outline(count, Point2(2, 5));
            outline[(low + count - 1) % count].set(-2, 5);
            outline[low].set(0, -5);
            EXPECT_EQ(Locate(outline, Point2(0, 0)), "in") << count << ' ' << low;
            outline[low].set(0, 0);
            EXPECT_EQ(Locate(outline, Point2(0, 0)), "on") << count << ' ' << low;
        }
    }
}

TYPED_TEST(ClosedPolyline, PassesOverNaNVerticesInLongOutlines)
{
    CADGEOM_TEST_TYPES(TypeParam);
    Outline<T> outline;
    for (int k = 0; k < 64; ++k) {
        const double angle = 6.283185307179586 * (k + 0.5) / 64;
        outline.push_back(Point2(static_cast<T>(std::cos(angle)), static_cast<T>(std::sin(angle))));
    }
    for (std::size_t k = 4; k < 24; ++k) {
        outline[k].set(kNaN<T>, kNaN<T>);
    }
    EXPECT_EQ(Locate(outline, Point2(0, 0)), "in");
    outline.assign(64, Point2(kNaN<T>, kNaN<T>));
    EXPECT_EQ(Locate(outline, Point2(0, 0)), "out");
    EXPECT_EQ(Locate(outline, Point2(0, -kInfinity<T>)), "out");
}

TEST(ClosedPolylineContainsPoint2d, AgreesWithAWindingCountInIntegers)
{
    // The parity of crossings of a half-open ray, in exact integer arithmetic, for points that lie on no line of a vertex.
    samples::Source<double> source(33);
    for (int i = 0; i < 20000; ++i) {
        const int count = source.Integer(3, 40);
        std::vector<std::pair<long, long>> vertices;
        Outline<double> outline;
        for (int k = 0; k < count; ++k) {
            vertices.emplace_back(2 * source.Integer(-500, 500), 2 * source.Integer(-500, 500));
            outline.push_back(
                {static_cast<double>(vertices.back().first), static_cast<double>(vertices.back().second)});
        }
        if (vertices.front() == vertices.back()) {
            continue;
        }
        const long x = 2 * source.Integer(-300, 300) + 1;
        const long y = 2 * source.Integer(-300, 300) + 1;
        bool isInside = false;
        bool isOn = false;
        for (std::size_t k = 0; k < vertices.size(); ++k) {
            const auto [x0, y0] = vertices[k];
            const auto [x1, y1] = vertices[(k + 1) % vertices.size()];
            if ((y0 > y) != (y1 > y)) {
                // Sign of (x of the crossing - x) * (y1 - y0).
                const long side = (x1 - x0) * (y - y0) - (x - x0) * (y1 - y0);
                isOn = isOn || side == 0;
                isInside ^= (side > 0) == (y1 > y0);
            }
        }
        ASSERT_EQ(Locate<double>(outline, {static_cast<double>(x), static_cast<double>(y)}),
                  isOn ? "on" : (isInside ? "in" : "out"))
            << i;
    }
}

TEST(ClosedPolylineContainsPoint2d, FindsThePublishedLocations)
{
    std::ifstream file = meshes::OpenData("outlines/point_location.txt");
    int cases = 0;
    file >> cases;
    ASSERT_EQ(cases, 28);
    for (int i = 0; i < cases; ++i) {
        std::string published;
        CadPoint2d<double> point;
        std::size_t vertices = 0;
        file >> published >> point.x() >> point.y() >> vertices;
        Outline<double> outline(vertices);
        for (CadPoint2d<double>& vertex : outline) {
            file >> vertex.x() >> vertex.y();
        }
        ASSERT_TRUE(file.good());
        // The last two are nearer to the outline than the tolerance.
        const bool isOn = published == "boundary" || i >= 26;
        EXPECT_EQ(Locate(outline, point), isOn ? "on" : (published == "interior" ? "in" : "out")) << i;
    }
}
