#include <cadgeom/polyline/polyline3d.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "polyline/samples.h"

namespace {

using polyline_testing::AnyVertices;
using polyline_testing::Polyline;
using polyline_testing::SameVertices;
using polyline_testing::Vertices;
using test_support::NumberStream;

/// The rules of simplification one vertex at a time, each removal a shift: quadratic, and easy to compare with the rules.
template <class T>
class PlainSimplifier {
public:
    explicit PlainSimplifier(std::vector<CadPoint3d<T>> vertices) : m_vertices(std::move(vertices)) {}

    bool DataReduce(T tolerance)
    {
        if (m_vertices.empty()) {
            return false;
        }
        bool hasRemoved = RemoveRepeated(tolerance);
        if (Count() >= 3) {
            for (std::size_t anchor = 0; anchor + 2 < Count(); ++anchor) {
                std::size_t k = anchor + 1;
                while (k + 1 < Count() && IsNearChord(anchor, k, tolerance)) {
                    ++k;
                }
                for (; k > anchor + 1; --k) {
                    Remove(anchor + 1);
                    hasRemoved = true;
                }
            }
        }
        if (Count() == 1 || (Count() == 2 && AreEqual(0, 1, tolerance))) {
            m_vertices.clear();
            return true;
        }
        return hasRemoved;
    }

    bool RemoveRepeated(T tolerance)
    {
        bool hasRemoved = false;
        for (std::size_t i = Count(); i-- > 1;) {
            if (AreEqual(i, i - 1, tolerance)) {
                Remove(i);
                hasRemoved = true;
            }
        }
        return hasRemoved;
    }

    const std::vector<CadPoint3d<T>>& Vertices() const { return m_vertices; }

private:
    static constexpr T kShortestSquaredChord = sizeof(T) == sizeof(double) ? T(1e-12) : T(1e-8);

    std::size_t Count() const { return m_vertices.size(); }
    void Remove(std::size_t index) { m_vertices.erase(m_vertices.begin() + static_cast<std::ptrdiff_t>(index)); }

    bool AreEqual(std::size_t a, std::size_t b, T tolerance) const
    {
        for (int axis = 0; axis < 3; ++axis) {
            if (!(std::fabs(m_vertices[a][axis] - m_vertices[b][axis]) <= tolerance)) {
                return false;
            }
        }
        return true;
    }

    bool IsNearChord(std::size_t anchor, std::size_t k, T tolerance) const
    {
        const auto& a = m_vertices[anchor];
        const auto& v = m_vertices[k];
        T c[3];
        T w[3];
        for (int i = 0; i < 3; ++i) {
            c[i] = m_vertices[k + 1][i] - a[i];
            w[i] = v[i] - a[i];
        }
        const T length = SumOfProducts(c, c);
        T s = 0;
        if (length > kShortestSquaredChord) {
            s = SumOfProducts(w, c) / length;
            if (s < T(0) || s > T(1)) {
                return false;
            }
        }
        T d[3];
        for (int i = 0; i < 3; ++i) {
            const volatile T step = s * c[i];
            const volatile T foot = a[i] + step;
            d[i] = foot - v[i];
        }
        const volatile T squaredTolerance = tolerance * tolerance;
        return !(SumOfProducts(d, d) > squaredTolerance);
    }

    static T SumOfProducts(const T* a, const T* b)
    {
        T sum = 0;
        for (int i = 0; i < 3; ++i) {
            const volatile T product = a[i] * b[i];
            sum += product;
        }
        return sum;
    }

    std::vector<CadPoint3d<T>> m_vertices;
};

template <class T>
class PolylineSimplify : public ::testing::Test {
protected:
    static constexpr T kNaN = std::numeric_limits<T>::quiet_NaN();
    static constexpr T kInfinity = std::numeric_limits<T>::infinity();
    static constexpr T kEpsilon = sizeof(T) == sizeof(double) ? T(1e-6) : T(1e-4);
    static constexpr T kSquaredEpsilon = sizeof(T) == sizeof(double) ? T(1e-12) : T(1e-8);

    static void ExpectAsPlain(const std::vector<CadPoint3d<T>>& vertices, T tolerance)
    {
        PlainSimplifier<T> plain(vertices);
        auto line = Polyline(vertices);
        const std::int64_t capacity = line.GetCapacity();
        const bool expected = plain.DataReduce(tolerance);
        ASSERT_EQ(line.DataReduce(tolerance), expected);
        ASSERT_TRUE(SameVertices(plain.Vertices(), Vertices(line)));
        ASSERT_EQ(line.GetCapacity(), line.IsEmpty() ? 0 : capacity);
    }
};

using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(PolylineSimplify, Scalars);

TYPED_TEST(PolylineSimplify, DropsAVertexNearTheChordOverIt)
{
    using T = TypeParam;
    auto line = Polyline<T>({{0, 0, 0}, {1, T(0.05), 0}, {2, 0, 0}, {3, 1, 0}});
    EXPECT_TRUE(line.DataReduce(T(0.1)));
    EXPECT_TRUE(SameVertices<T>({{0, 0, 0}, {2, 0, 0}, {3, 1, 0}}, Vertices(line)));
    EXPECT_FALSE(line.DataReduce(T(0.1)));
}

TYPED_TEST(PolylineSimplify, DropsAVertexAtTheToleranceAndKeepsItAbove)
{
    using T = TypeParam;
    const T tolerance = T(0.25);
    auto atTolerance = Polyline<T>({{0, 0, 0}, {1, tolerance, 0}, {2, 0, 0}});
    EXPECT_TRUE(atTolerance.DataReduce(tolerance));
    EXPECT_EQ(atTolerance.GetNumPoints(), 2);
    auto above = Polyline<T>({{0, 0, 0}, {1, std::nextafter(tolerance, T(1)), 0}, {2, 0, 0}});
    EXPECT_FALSE(above.DataReduce(tolerance));
    EXPECT_EQ(above.GetNumPoints(), 3);
}

TYPED_TEST(PolylineSimplify, MeasuresADroppedVertexAgainstTheChordToItsSuccessorOnly)
{
    using T = TypeParam;
    // Each step of the bend is near the chord to the next vertex, but the last chord misses the first ones by far.
    auto line = Polyline<T>({{0, 0, 0}, {1, T(0.5), 0}, {4, 4, 0}, {12, 16, 0}});
    EXPECT_TRUE(line.DataReduce(T(1.25)));
    EXPECT_TRUE(SameVertices<T>({{0, 0, 0}, {12, 16, 0}}, Vertices(line)));

    std::vector<CadPoint3d<T>> bend;
    for (int i = 0; i <= 20; ++i) {
        bend.emplace_back(T(i), T(0.05) * T(i) * T(i), T(0));
    }
    auto curve = Polyline(bend);
    EXPECT_TRUE(curve.DataReduce(T(0.5)));
    T farthest = 0;
    for (const auto& vertex : bend) {
        CadPoint3d<T> foot;
        EXPECT_TRUE(curve.Drop(vertex, foot));
        farthest = std::max(farthest, vertex.distance(foot));
    }
    EXPECT_GT(farthest, T(0.5));
}

TYPED_TEST(PolylineSimplify, KeepsAVertexWhoseFootLiesBeyondTheChord)
{
    using T = TypeParam;
    const std::vector<CadPoint3d<T>> backAndForth{{0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {3, 0, 0}};
    auto line = Polyline(backAndForth);
    EXPECT_FALSE(line.DataReduce(T(0.1))) << "(2, 0, 0) lies beyond the end, (1, 0, 0) before the start";
    EXPECT_TRUE(SameVertices(backAndForth, Vertices(line)));

    // With its foot at an end of the chord a vertex goes.
    auto atEnd = Polyline<T>({{0, 0, 0}, {2, T(0.5), 0}, {2, T(0), 0}});
    EXPECT_TRUE(atEnd.DataReduce(T(-0.5))) << "a negative tolerance makes no vertices equal";
    EXPECT_EQ(atEnd.GetNumPoints(), 2);
    auto atStart = Polyline<T>({{0, 0, 0}, {0, T(0.5), 0}, {2, T(0), 0}});
    EXPECT_TRUE(atStart.DataReduce(T(-0.5)));
    EXPECT_EQ(atStart.GetNumPoints(), 2);
}

TYPED_TEST(PolylineSimplify, TreatsAShortChordAsItsStart)
{
    using T = TypeParam;
    T longestShort = std::sqrt(TestFixture::kSquaredEpsilon);
    while (longestShort * longestShort > TestFixture::kSquaredEpsilon) {
        longestShort = std::nextafter(longestShort, T(0));
    }
    T shortestLong = longestShort;
    while (shortestLong * shortestLong <= TestFixture::kSquaredEpsilon) {
        shortestLong = std::nextafter(shortestLong, T(1));
    }
    // The vertex between lies before the start of the chord but within the tolerance of it. The tolerance is negative, so
    // that no vertices are equal.
    auto shortChord = Polyline<T>({{0, 0, 0}, {-1, 0, 0}, {longestShort, 0, 0}});
    EXPECT_TRUE(shortChord.DataReduce(T(-1)));
    EXPECT_EQ(shortChord.GetNumPoints(), 2);
    auto longChord = Polyline<T>({{0, 0, 0}, {-1, 0, 0}, {shortestLong, 0, 0}});
    EXPECT_FALSE(longChord.DataReduce(T(-1)));
    auto farVertex = Polyline<T>({{0, 0, 0}, {-1, 0, 0}, {longestShort, 0, 0}});
    EXPECT_FALSE(farVertex.DataReduce(T(-0.5)));
}

TYPED_TEST(PolylineSimplify, RemovesRepeatedVerticesFirst)
{
    using T = TypeParam;
    auto line = Polyline<T>({{0, 0, 0}, {0, 0, T(0.05)}, {1, 1, 0}, {1, T(0.95), 0}, {0, 0, 0}});
    EXPECT_TRUE(line.DataReduce(T(0.1)));
    EXPECT_TRUE(SameVertices<T>({{0, 0, 0}, {1, 1, 0}, {0, 0, 0}}, Vertices(line)));
}

TYPED_TEST(PolylineSimplify, KeepsTheFirstOfARunThatCreepsOn)
{
    using T = TypeParam;
    auto line = Polyline<T>({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {5, 5, 5}});
    EXPECT_TRUE(line.DataReduce(T(1)));
    EXPECT_TRUE(SameVertices<T>({{0, 0, 0}, {5, 5, 5}}, Vertices(line)));
}

TYPED_TEST(PolylineSimplify, EmptiesWhatShrinksToAPoint)
{
    using T = TypeParam;
    auto pair = Polyline<T>({{0, 0, 0}, {T(0.05), 0, 0}});
    EXPECT_TRUE(pair.DataReduce(T(0.1)));
    EXPECT_TRUE(pair.IsEmpty());
    EXPECT_EQ(pair.GetCapacity(), 0);
    EXPECT_EQ(pair.GetData(), nullptr);

    auto single = Polyline<T>({{1, 2, 3}});
    EXPECT_TRUE(single.DataReduce(T(0)));
    EXPECT_TRUE(single.IsEmpty());
    EXPECT_EQ(single.GetCapacity(), 0);

    auto notANumber = Polyline<T>({{TestFixture::kNaN, 0, 0}});
    EXPECT_TRUE(notANumber.DataReduce(T(0)));
    EXPECT_TRUE(notANumber.IsEmpty());

    // The vertex between equals neither end, but it is near the chord; without it, the ends are equal.
    const std::vector<CadPoint3d<T>> detour{{0, 0, 0}, {T(1.25), T(-0.25), T(0.5)}, {1, 1, 1}};
    auto kept = Polyline(detour);
    EXPECT_FALSE(kept.DataReduce(T(0.875)));
    auto collapsed = Polyline(detour);
    EXPECT_TRUE(collapsed.DataReduce(T(1.0625)));
    EXPECT_TRUE(collapsed.IsEmpty());
    EXPECT_EQ(collapsed.GetCapacity(), 0);
}

TYPED_TEST(PolylineSimplify, LeavesAnEmptyPolylineAndAPairApart)
{
    using T = TypeParam;
    CCadPolyline3d<T> empty;
    EXPECT_FALSE(empty.DataReduce(T(1)));
    EXPECT_FALSE(empty.RemoveRedundantPoints());
    EXPECT_FALSE(empty.RemoveRedundantEndPoint());

    CCadPolyline3d<T> reserved = Polyline<T>({{1, 1, 1}});
    reserved.RemoveAt(0);
    EXPECT_FALSE(reserved.DataReduce(T(1)));
    EXPECT_EQ(reserved.GetCapacity(), 1) << "nothing was reduced, so nothing is freed";

    auto pair = Polyline<T>({{0, 0, 0}, {1, 0, 0}});
    EXPECT_FALSE(pair.DataReduce(T(0.5)));
    EXPECT_EQ(pair.GetNumPoints(), 2);
}

TYPED_TEST(PolylineSimplify, TakesNegativeNaNAndInfiniteTolerancesAsTheComparisonsDo)
{
    using T = TypeParam;
    const std::vector<CadPoint3d<T>> vertices{{0, 0, 0}, {1, T(0.25), 0}, {1, T(0.25), 0}, {2, 0, 0}, {3, 1, 0}};
    auto negative = Polyline(vertices);
    EXPECT_TRUE(negative.DataReduce(T(-0.5))) << "only its square is compared with distances";
    EXPECT_EQ(negative.GetNumPoints(), 3);
    for (const T tolerance : {T(-0.5), T(0), -T(0), TestFixture::kNaN, TestFixture::kInfinity,
                              std::numeric_limits<T>::max(), std::numeric_limits<T>::denorm_min()}) {
        TestFixture::ExpectAsPlain(vertices, tolerance);
    }
    auto infinite = Polyline(vertices);
    EXPECT_TRUE(infinite.DataReduce(TestFixture::kInfinity));
    EXPECT_TRUE(infinite.IsEmpty());
}

TYPED_TEST(PolylineSimplify, DropsVerticesAtNaN)
{
    using T = TypeParam;
    auto line = Polyline<T>({{0, 0, 0}, {TestFixture::kNaN, 0, 0}, {2, 0, 0}, {2, 2, 0}});
    EXPECT_TRUE(line.DataReduce(T(0.1)));
    EXPECT_TRUE(SameVertices<T>({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}}, Vertices(line)));
}

TYPED_TEST(PolylineSimplify, GivesTheVerticesOfTheRulesForGridsFullOfTies)
{
    using T = TypeParam;
    NumberStream<T> numbers(61);
    for (int round = 0; round < 20000; ++round) {
        std::vector<CadPoint3d<T>> vertices(static_cast<std::size_t>(numbers.Integer(0, 24)));
        const int size = numbers.Integer(1, 4);
        for (auto& vertex : vertices) {
            vertex.set(T(numbers.Integer(0, size)), T(numbers.Integer(0, size)), T(numbers.Integer(0, size / 3)));
        }
        const T tolerances[] = {T(0), T(0.5), T(1), T(1.5), T(2)};
        ASSERT_NO_FATAL_FAILURE(TestFixture::ExpectAsPlain(vertices, tolerances[round % 5])) << round;
    }
}

TYPED_TEST(PolylineSimplify, GivesTheVerticesOfTheRulesForWalks)
{
    using T = TypeParam;
    NumberStream<T> numbers(67);
    for (int round = 0; round < 2000; ++round) {
        std::vector<CadPoint3d<T>> vertices(static_cast<std::size_t>(numbers.Integer(3, 120)));
        CadPoint3d<T> point = CadPoint3d<T>(0, 0, 0);
        for (auto& vertex : vertices) {
            point += CadVector3d<T>(numbers.Uniform(-0.2, 1), numbers.Uniform(-0.3, 0.3), numbers.Uniform(-0.1, 0.1));
            vertex = point;
        }
        ASSERT_NO_FATAL_FAILURE(TestFixture::ExpectAsPlain(vertices, numbers.Uniform(0, 0.5))) << round;
    }
}

TYPED_TEST(PolylineSimplify, GivesTheVerticesOfTheRulesForNumbersOfAnyKind)
{
    using T = TypeParam;
    NumberStream<T> numbers(71);
    for (int round = 0; round < 20000; ++round) {
        const auto vertices = AnyVertices(static_cast<std::size_t>(numbers.Integer(0, 12)), numbers);
        ASSERT_NO_FATAL_FAILURE(TestFixture::ExpectAsPlain(vertices, numbers.Any())) << round;
    }
}

TYPED_TEST(PolylineSimplify, RemovesRedundantPointsWithinTheTolerance)
{
    using T = TypeParam;
    const T above = std::nextafter(TestFixture::kEpsilon, T(1));
    for (int axis = 0; axis < 3; ++axis) {
        for (const T gap : {T(0), TestFixture::kEpsilon, above}) {
            CadPoint3d<T> second(0, 0, 0);
            second[axis] = -gap;
            auto line = Polyline<T>({{0, 0, 0}, second, {1, 0, 0}});
            EXPECT_EQ(line.RemoveRedundantPoints(), gap != above) << axis << " " << gap;
            EXPECT_EQ(line.GetNumPoints(), gap != above ? 2 : 3);
        }
    }
}

TYPED_TEST(PolylineSimplify, RemovesRedundantPointsAsTheRulesDo)
{
    using T = TypeParam;
    NumberStream<T> numbers(73);
    for (int round = 0; round < 5000; ++round) {
        std::vector<CadPoint3d<T>> vertices(static_cast<std::size_t>(numbers.Integer(2, 30)));
        for (auto& vertex : vertices) {
            vertex.set(TestFixture::kEpsilon * T(numbers.Integer(0, 2)), T(numbers.Integer(0, 7) == 0),
                       numbers.Integer(0, 40) == 0 ? TestFixture::kNaN : T(0));
        }
        PlainSimplifier<T> plain(vertices);
        auto line = Polyline(vertices);
        const std::int64_t capacity = line.GetCapacity();
        ASSERT_EQ(line.RemoveRedundantPoints(), plain.RemoveRepeated(TestFixture::kEpsilon));
        ASSERT_TRUE(SameVertices(plain.Vertices(), Vertices(line)));
        ASSERT_EQ(line.GetCapacity(), capacity);
    }
}

TYPED_TEST(PolylineSimplify, KeepsOneOfVerticesThatAreAllEqual)
{
    using T = TypeParam;
    auto line = Polyline<T>({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}});
    EXPECT_TRUE(line.RemoveRedundantPoints());
    EXPECT_TRUE(SameVertices<T>({{1, 2, 3}}, Vertices(line)));
    EXPECT_FALSE(line.RemoveRedundantPoints());
}

TYPED_TEST(PolylineSimplify, RemovesAnEndPointThatRepeatsTheFirst)
{
    using T = TypeParam;
    auto square = Polyline<T>({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}});
    const std::int64_t capacity = square.GetCapacity();
    EXPECT_TRUE(square.RemoveRedundantEndPoint());
    EXPECT_EQ(square.GetNumPoints(), 4);
    EXPECT_EQ(square.GetCapacity(), capacity);
    EXPECT_FALSE(square.RemoveRedundantEndPoint());

    auto pair = Polyline<T>({{0, 0, 0}, {0, TestFixture::kEpsilon, 0}});
    EXPECT_TRUE(pair.RemoveRedundantEndPoint());
    EXPECT_TRUE(SameVertices<T>({{0, 0, 0}}, Vertices(pair)));
    EXPECT_FALSE(pair.RemoveRedundantEndPoint());

    auto apart = Polyline<T>({{0, 0, 0}, {0, 0, std::nextafter(TestFixture::kEpsilon, T(1))}});
    EXPECT_FALSE(apart.RemoveRedundantEndPoint());
    auto notANumber = Polyline<T>({{TestFixture::kNaN, 0, 0}, {TestFixture::kNaN, 0, 0}});
    EXPECT_FALSE(notANumber.RemoveRedundantEndPoint());
}

TEST(PolylineSimplifyOfDoublesAndFloats, ComparesVerticesWithTheirOwnTolerance)
{
    auto doubles = Polyline<double>({{0, 0, 0}, {0, 0, 5e-7}, {1, 0, 0}});
    EXPECT_TRUE(doubles.RemoveRedundantPoints());
    EXPECT_TRUE(SameVertices<double>({{0, 0, 0}, {1, 0, 0}}, Vertices(doubles)));
    auto looser = Polyline<double>({{0, 0, 0}, {0, 0, 5e-5}, {1, 0, 0}});
    EXPECT_FALSE(looser.RemoveRedundantPoints());
    auto floats = Polyline<float>({{0, 0, 0}, {0, 0, 5e-5F}, {1, 0, 0}});
    EXPECT_TRUE(floats.RemoveRedundantPoints());
    EXPECT_EQ(floats.GetNumPoints(), 2);
}

/// The best of three times that reducing a straight run of `count` vertices takes. All but its ends are removed.
double SecondsToReduce(std::int64_t count)
{
    double best = std::numeric_limits<double>::infinity();
    for (int round = 0; round < 3; ++round) {
        CCadPolyline3d<double> line;
        for (std::int64_t i = 0; i < count; ++i) {
            line.AddPoint({static_cast<double>(i / 2), 0.0, 0.0});
        }
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(line.DataReduce(0.5));
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        EXPECT_EQ(line.GetNumPoints(), 2);
    }
    return best;
}

TEST(PolylineSimplifyTime, IsLinearInTheVertices)
{
    // A hundred times the vertices take a hundred times the time; if each removal shifted the rest, ten thousand times.
    const double small = SecondsToReduce(10000);
    const double large = SecondsToReduce(1000000);
    EXPECT_LT(large, 1000 * small);
}

} // namespace
