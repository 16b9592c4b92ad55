#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/polyline/polyline3d.h>
#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "polyline/samples.h"

namespace {

using polyline_testing::AnyVertices;
using polyline_testing::Polyline;
using polyline_testing::SameVertices;
using polyline_testing::Vertices;
using test_support::NumberStream;

constexpr double kLargestSingle = 3.4028234663852886e38;

template <class T>
class Polyline3d : public ::testing::Test {
protected:
    using Point = CadPoint3d<T>;
    using Line = CCadPolyline3d<T>;

    static constexpr T kNaN = std::numeric_limits<T>::quiet_NaN();
    static constexpr T kInfinity = std::numeric_limits<T>::infinity();
    /// The tolerance of comparisons.
    static constexpr T kEpsilon = std::is_same_v<T, double> ? T(1e-6) : T(1e-4);

    static Line Square() { return Polyline<T>({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 0, 0}}); }
};

using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Polyline3d, Scalars);

TYPED_TEST(Polyline3d, IsBornEmptyWithoutBuffer)
{
    const typename TestFixture::Line line;
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_EQ(line.GetNumPoints(), 0);
    EXPECT_EQ(line.GetCapacity(), 0);
    EXPECT_EQ(line.GetGrowBy(), 0);
    EXPECT_EQ(line.GetData(), nullptr);
}

TYPED_TEST(Polyline3d, GrowsByFourWhileItIsShort)
{
    typename TestFixture::Line line;
    std::vector<std::int64_t> capacities;
    for (int i = 0; i < 21; ++i) {
        line.AddPoint({TypeParam(i), 0, 0});
        if (capacities.empty() || capacities.back() != line.GetCapacity()) {
            capacities.push_back(line.GetCapacity());
        }
    }
    EXPECT_EQ(capacities, (std::vector<std::int64_t>{1, 5, 9, 13, 17, 21}));
}

TYPED_TEST(Polyline3d, GrowsByAnEighthAndByAtMost1024)
{
    typename TestFixture::Line line;
    line.SetNumPoints(47);
    line.AddPoint(TestFixture::Point::zero());
    EXPECT_EQ(line.GetCapacity(), 47 + 5);

    line.Empty();
    line.SetNumPoints(10000);
    line.AddPoint(TestFixture::Point::zero());
    EXPECT_EQ(line.GetCapacity(), 10000 + 1024);
}

TYPED_TEST(Polyline3d, MakesNewVerticesZeroAlsoWithinTheCapacity)
{
    auto line = Polyline<TypeParam>({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    const std::int64_t capacity = line.GetCapacity();
    line.SetNumPoints(1);
    EXPECT_EQ(line.GetCapacity(), capacity);
    line.SetNumPoints(7);
    ASSERT_EQ(line.GetNumPoints(), 7);
    EXPECT_TRUE(SameVertices<TypeParam>({{1, 2, 3}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}},
                                        Vertices(line)));
}

TYPED_TEST(Polyline3d, FreesItsBufferWhenItIsEmptied)
{
    auto line = TestFixture::Square();
    line.Empty();
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_EQ(line.GetCapacity(), 0);
    EXPECT_EQ(line.GetData(), nullptr);

    line = TestFixture::Square();
    line.SetNumPoints(0);
    EXPECT_EQ(line.GetCapacity(), 0);
}

TYPED_TEST(Polyline3d, SetsAndGetsVertices)
{
    auto line = TestFixture::Square();
    line.SetPoint(4, {7, 8, 9});
    EXPECT_TRUE(line.GetPoint(4) == typename TestFixture::Point(7, 8, 9));
    EXPECT_EQ(&line.GetPoint(2), line.GetData() + 2);
}

TYPED_TEST(Polyline3d, RefusesBadIndicesAndSizesAndStaysAsItWas)
{
    auto line = TestFixture::Square();
    const auto before = Vertices(line);
    const typename TestFixture::Point point(1, 1, 1);
    EXPECT_THROW(line.GetPoint(-1), CInvalidArgException);
    EXPECT_THROW(line.GetPoint(5), CInvalidArgException);
    EXPECT_THROW(line.SetPoint(-1, point), CInvalidArgException);
    EXPECT_THROW(line.SetPoint(5, point), CInvalidArgException);
    EXPECT_THROW(line.SetPoint(std::numeric_limits<std::int64_t>::max(), point), CInvalidArgException);
    EXPECT_THROW(line.SetNumPoints(-1), CInvalidArgException);
    EXPECT_THROW(line.SetNumPoints(std::numeric_limits<std::int64_t>::max()), CMemoryException);
    EXPECT_THROW(line.SetNumPoints(std::int64_t(1) << 57), CMemoryException);
    EXPECT_TRUE(SameVertices(before, Vertices(line)));
}

TYPED_TEST(Polyline3d, AddsAVertexOfItsOwnWhileItGrows)
{
    auto line = Polyline<TypeParam>({{1, 2, 3}});
    for (int i = 0; i < 3000; ++i) {
        line.AddPoint(line.GetPoint(0));
    }
    for (std::int64_t i = 0; i < line.GetNumPoints(); ++i) {
        ASSERT_TRUE(line.GetPoint(i) == typename TestFixture::Point(1, 2, 3)) << i;
    }
}

TYPED_TEST(Polyline3d, CopiesByTheGrowthRule)
{
    const auto square = TestFixture::Square();
    const typename TestFixture::Line copy(square);
    EXPECT_TRUE(SameVertices(Vertices(square), Vertices(copy)));
    EXPECT_EQ(copy.GetCapacity(), 5);
    EXPECT_NE(copy.GetData(), square.GetData());

    typename TestFixture::Line shorter;
    shorter.SetNumPoints(3);
    shorter = square;
    EXPECT_TRUE(SameVertices(Vertices(square), Vertices(shorter)));
    EXPECT_EQ(shorter.GetCapacity(), 3 + 4) << "the capacity grows by the step, past the count";

    typename TestFixture::Line longer;
    longer.SetNumPoints(50);
    longer = square;
    EXPECT_TRUE(SameVertices(Vertices(square), Vertices(longer)));
    EXPECT_EQ(longer.GetCapacity(), 50);

    longer = typename TestFixture::Line(typename TestFixture::Line());
    EXPECT_TRUE(longer.IsEmpty());
    EXPECT_EQ(longer.GetCapacity(), 0);
    shorter = static_cast<const typename TestFixture::Line&>(longer);
    EXPECT_EQ(shorter.GetCapacity(), 0) << "copying an empty polyline frees the buffer";
}

TYPED_TEST(Polyline3d, IsNotChangedByAssigningItself)
{
    auto line = TestFixture::Square();
    const auto before = Vertices(line);
    const auto* const data = line.GetData();
    const auto& self = line;
    line = self;
    EXPECT_TRUE(SameVertices(before, Vertices(line)));
    EXPECT_EQ(line.GetData(), data);
    auto& alias = line;
    line = std::move(alias);
    EXPECT_TRUE(SameVertices(before, Vertices(line)));
    EXPECT_EQ(line.GetData(), data);
}

TYPED_TEST(Polyline3d, IsMovedByTakingItsBuffer)
{
    using Polyline3 = CCadPolyline3d<TypeParam>;
    static_assert(std::is_nothrow_move_constructible_v<Polyline3> && std::is_nothrow_move_assignable_v<Polyline3>);
    static_assert(std::is_same_v<void, decltype(std::declval<Polyline3&>() = std::declval<const Polyline3&>())>);
    auto line = TestFixture::Square();
    const auto before = Vertices(line);
    const auto* const data = line.GetData();
    Polyline3 taken(std::move(line));
    EXPECT_EQ(taken.GetData(), data);
    Polyline3 assigned = Polyline<TypeParam>({{9, 9, 9}});
    assigned = std::move(taken);
    EXPECT_EQ(assigned.GetData(), data);
    EXPECT_TRUE(SameVertices(before, Vertices(assigned)));
    EXPECT_EQ(taken.GetNumPoints(), 0); // NOLINT(bugprone-use-after-move): a moved polyline is empty
    EXPECT_EQ(taken.GetCapacity(), 0);
}

TYPED_TEST(Polyline3d, IsClosedByAppendingTheFirstVertex)
{
    auto line = Polyline<TypeParam>({{1, 2, 3}, {4, 5, 6}});
    EXPECT_TRUE(line.Close());
    EXPECT_TRUE(SameVertices<TypeParam>({{1, 2, 3}, {4, 5, 6}, {1, 2, 3}}, Vertices(line)));
    EXPECT_FALSE(line.Close());
    EXPECT_EQ(line.GetNumPoints(), 3);
}

TYPED_TEST(Polyline3d, IsNotClosedWithFewerThanTwoVertices)
{
    typename TestFixture::Line line;
    EXPECT_FALSE(line.Close());
    line.AddPoint({1, 1, 1});
    EXPECT_FALSE(line.Close());
    EXPECT_EQ(line.GetNumPoints(), 1);
}

TYPED_TEST(Polyline3d, CountsAsClosedUpToTheToleranceInEveryCoordinate)
{
    using T = TypeParam;
    const T below = std::nextafter(TestFixture::kEpsilon, T(0));
    const T above = std::nextafter(TestFixture::kEpsilon, T(1));
    for (int axis = 0; axis < 3; ++axis) {
        for (const T sign : {T(1), T(-1)}) {
            for (const T gap : {below, TestFixture::kEpsilon, above}) {
                typename TestFixture::Point last(0, 0, 0);
                last[axis] = sign * gap;
                auto line = Polyline<T>({{0, 0, 0}, {1, 0, 0}, last});
                EXPECT_EQ(line.Close(), gap == above) << axis << " " << gap;
                EXPECT_EQ(line.GetNumPoints(), gap == above ? 4 : 3);
            }
        }
    }
}

TEST(Polyline3dOfDoubles, IsClosedWithinTheToleranceOfDoubles)
{
    auto line = Polyline<double>({{0, 0, 0}, {1, 0, 0}, {0, 0, 5e-7}});
    EXPECT_FALSE(line.Close());
    EXPECT_EQ(line.GetNumPoints(), 3);
}

TEST(Polyline3dOfFloats, IsClosedWithinTheLooserToleranceOfFloats)
{
    auto line = Polyline<float>({{0, 0, 0}, {1, 0, 0}, {0, 0, 5e-5F}});
    EXPECT_FALSE(line.Close());
    line.SetPoint(2, {0, 0, 2e-4F});
    EXPECT_TRUE(line.Close());
    EXPECT_EQ(line.GetNumPoints(), 4);
}

TYPED_TEST(Polyline3d, IsNeverClosedAtNaN)
{
    using T = TypeParam;
    auto line = Polyline<T>({{0, 0, 0}, {1, 0, 0}, {0, TestFixture::kNaN, 0}});
    EXPECT_TRUE(line.Close());
    auto infinite = Polyline<T>({{TestFixture::kInfinity, 0, 0}, {1, 0, 0}, {TestFixture::kInfinity, 0, 0}});
    EXPECT_TRUE(infinite.Close()) << "the difference of infinities is NaN";
}

TYPED_TEST(Polyline3d, AddsTheLengthsOfItsSegments)
{
    EXPECT_EQ(TestFixture::Square().ComputeLength(), TypeParam(16));
    EXPECT_EQ(Polyline<TypeParam>({{0, 0, 0}, {1, 2, 2}, {1, 2, 2}}).ComputeLength(), TypeParam(3));
    EXPECT_EQ(typename TestFixture::Line().ComputeLength(), TypeParam(0));
    EXPECT_EQ(Polyline<TypeParam>({{5, 5, 5}}).ComputeLength(), TypeParam(0));
}

TYPED_TEST(Polyline3d, AddsLengthsInOrderAndInItsOwnPrecision)
{
    using T = TypeParam;
    NumberStream<T> numbers(41);
    for (std::size_t count = 2; count < 60; ++count) {
        const auto vertices = AnyVertices(count, numbers);
        T expected = 0;
        for (std::size_t i = 1; i < count; ++i) {
            const volatile T dx = vertices[i][0] - vertices[i - 1][0];
            const volatile T dy = vertices[i][1] - vertices[i - 1][1];
            const volatile T dz = vertices[i][2] - vertices[i - 1][2];
            const volatile T xx = dx * dx;
            const volatile T yy = dy * dy;
            const volatile T zz = dz * dz;
            const volatile T xy = xx + yy;
            const volatile T xyz = xy + zz;
            expected += static_cast<T>(std::sqrt(T(xyz)));
        }
        EXPECT_SAME_BITS(expected, Polyline(vertices).ComputeLength());
    }
}

TYPED_TEST(Polyline3d, FindsItsBoxAndForgetsWhatTheBoxHeld)
{
    using T = TypeParam;
    CBoundingBox3d<T> box({-100, -100, -100}, {100, 100, 100});
    EXPECT_TRUE(Polyline<T>({{1, 5, -3}, {2, 4, 7}, {0, 9, 0}}).ComputeBoundingBox(box));
    EXPECT_TRUE(SameVertices<T>({{0, 4, -3}, {2, 9, 7}}, {box.GetMin(), box.GetMax()}));

    EXPECT_TRUE(Polyline<T>({{1, 2, 3}}).ComputeBoundingBox(box));
    EXPECT_TRUE(SameVertices<T>({{1, 2, 3}, {1, 2, 3}}, {box.GetMin(), box.GetMax()}));
}

TYPED_TEST(Polyline3d, LeavesTheEmptyBoxWhenThereAreNoVertices)
{
    using T = TypeParam;
    constexpr T kMarker = static_cast<T>(kLargestSingle);
    CBoundingBox3d<T> box({1, 1, 1}, {2, 2, 2});
    EXPECT_FALSE(typename TestFixture::Line().ComputeBoundingBox(box));
    EXPECT_TRUE(
        SameVertices<T>({{kMarker, kMarker, kMarker}, {-kMarker, -kMarker, -kMarker}}, {box.GetMin(), box.GetMax()}));

    auto emptied = Polyline<T>({{1, 2, 3}});
    emptied.RemoveAt(0);
    EXPECT_FALSE(emptied.ComputeBoundingBox(box));
}

TYPED_TEST(Polyline3d, ReportsABoxByTheMinimumAlongXAlone)
{
    using T = TypeParam;
    constexpr T kMarker = static_cast<T>(kLargestSingle);
    CBoundingBox3d<T> box;
    EXPECT_FALSE(Polyline<T>({{TestFixture::kNaN, 1, 2}}).ComputeBoundingBox(box));
    EXPECT_TRUE(SameVertices<T>({{kMarker, 1, 2}, {-kMarker, 1, 2}}, {box.GetMin(), box.GetMax()}));
    EXPECT_FALSE(Polyline<T>({{TestFixture::kInfinity, 1, 2}}).ComputeBoundingBox(box));
    EXPECT_TRUE(Polyline<T>({{-TestFixture::kInfinity, 1, 2}}).ComputeBoundingBox(box));
    EXPECT_FALSE(Polyline<T>({{kMarker, 1, 2}}).ComputeBoundingBox(box));
    EXPECT_TRUE(Polyline<T>({{std::nextafter(kMarker, T(0)), 1, 2}}).ComputeBoundingBox(box));
}

TYPED_TEST(Polyline3d, FindsTheSameBoxAsStrictComparisonsInOrder)
{
    using T = TypeParam;
    NumberStream<T> numbers(43);
    for (std::size_t count = 1; count < 300; ++count) {
        auto vertices = AnyVertices(count, numbers);
        if (count % 3 == 0) {
            for (auto& vertex : vertices) {
                // Zeros of either sign as extremes.
                vertex.set(std::fabs(vertex.x()) < T(5) ? std::copysign(T(0), vertex.x()) : std::fabs(vertex.x()),
                           std::fabs(vertex.y()) < T(5) ? std::copysign(T(0), vertex.y()) : -std::fabs(vertex.y()),
                           std::copysign(T(0), vertex.z()));
            }
        }
        CadPoint3d<T> min(static_cast<T>(kLargestSingle), static_cast<T>(kLargestSingle),
                          static_cast<T>(kLargestSingle));
        CadPoint3d<T> max(-min.x(), -min.y(), -min.z());
        for (const auto& vertex : vertices) {
            for (int axis = 0; axis < 3; ++axis) {
                if (min[axis] > vertex[axis]) {
                    min[axis] = vertex[axis];
                }
                if (vertex[axis] > max[axis]) {
                    max[axis] = vertex[axis];
                }
            }
        }
        CBoundingBox3d<T> box;
        EXPECT_EQ(Polyline(vertices).ComputeBoundingBox(box), min.x() != static_cast<T>(kLargestSingle));
        ASSERT_TRUE(SameVertices<T>({min, max}, {box.GetMin(), box.GetMax()})) << count;
    }
}

TYPED_TEST(Polyline3d, DropsAPointOntoTheNearestSegment)
{
    using T = TypeParam;
    CadPoint3d<T> foot;
    EXPECT_TRUE(TestFixture::Square().Drop({3, 1, 5}, foot));
    EXPECT_TRUE(SameVertices<T>({{3, 0, 0}}, {foot})) << "as near as (4, 1, 0), but earlier";
    EXPECT_TRUE(TestFixture::Square().Drop({9, 9, 0}, foot));
    EXPECT_TRUE(SameVertices<T>({{4, 4, 0}}, {foot}));
}

TYPED_TEST(Polyline3d, DropsOntoTheEarlierOfTwoSegmentsEquallyNear)
{
    using T = TypeParam;
    CadPoint3d<T> foot;
    EXPECT_TRUE(Polyline<T>({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}).Drop({1, 1, 0}, foot));
    EXPECT_TRUE(SameVertices<T>({{1, 0, 0}}, {foot}));
    EXPECT_TRUE(Polyline<T>({{0, 2, 0}, {2, 2, 0}, {2, 0, 0}, {0, 0, 0}}).Drop({1, 1, 0}, foot));
    EXPECT_TRUE(SameVertices<T>({{1, 2, 0}}, {foot}));
}

TYPED_TEST(Polyline3d, DropsNothingWithoutVerticesAndOntoASingleVertex)
{
    using T = TypeParam;
    CadPoint3d<T> foot(7, 8, 9);
    EXPECT_FALSE(typename TestFixture::Line().Drop({1, 1, 1}, foot));
    EXPECT_TRUE(SameVertices<T>({{7, 8, 9}}, {foot}));
    EXPECT_TRUE(Polyline<T>({{1, 2, 3}}).Drop({TestFixture::kNaN, 1, 1}, foot));
    EXPECT_TRUE(SameVertices<T>({{1, 2, 3}}, {foot}));
}

TYPED_TEST(Polyline3d, DropsAPointInPlace)
{
    CadPoint3d<TypeParam> point(3, 1, 5);
    EXPECT_TRUE(TestFixture::Square().Drop(point, point));
    EXPECT_TRUE(SameVertices<TypeParam>({{3, 0, 0}}, {point}));
}

TYPED_TEST(Polyline3d, DropsOntoTheFootOfTheSmallestDistance)
{
    using T = TypeParam;
    NumberStream<T> numbers(47);
    for (std::size_t round = 0; round < 400; ++round) {
        const auto vertices = AnyVertices(2 + round % 7, numbers);
        const CadPoint3d<T> point(numbers.Any(), numbers.Any(), numbers.Any());
        CadPoint3d<T> expected;
        T smallest = 0;
        for (std::size_t i = 1; i < vertices.size(); ++i) {
            CadPoint3d<T> foot;
            T squaredDistance = 0;
            point.projectOntoLineSegment(vertices[i - 1], vertices[i], foot, squaredDistance);
            if (i == 1 || squaredDistance < smallest) {
                smallest = squaredDistance;
                expected = foot;
            }
        }
        CadPoint3d<T> foot;
        EXPECT_TRUE(Polyline(vertices).Drop(point, foot));
        ASSERT_TRUE(SameVertices<T>({expected}, {foot})) << round;
    }
}

TYPED_TEST(Polyline3d, IsTransformedVertexByVertex)
{
    using T = TypeParam;
    CCadTransform transform = CCadTransform::GetEmptyTransform();
    transform.RotAboutAxis(30.0, 2);
    transform.Translate({1.0, 2.0, 3.0});
    auto toLocal = TestFixture::Square();
    auto toWorld = TestFixture::Square();
    toLocal.TransformTo(transform);
    toWorld.TransformFrom(transform);
    for (std::int64_t i = 0; i < toLocal.GetNumPoints(); ++i) {
        CadPoint3d<T> local;
        CadPoint3d<T> world;
        transform.aaforw(TestFixture::Square().GetPoint(i), local);
        transform.aaback(TestFixture::Square().GetPoint(i), world);
        EXPECT_TRUE(SameVertices<T>({local, world}, {toLocal.GetPoint(i), toWorld.GetPoint(i)}));
    }
}

TYPED_TEST(Polyline3d, IsNotChangedByTheIdentity)
{
    using T = TypeParam;
    NumberStream<T> numbers(53);
    const auto vertices = AnyVertices<T>(100, numbers);
    auto line = Polyline(vertices);
    line.TransformTo(CCadTransform::GetEmptyTransform());
    line.TransformFrom(CCadTransform::GetEmptyTransform());
    line.Translate({0.0, 0.0, 0.0});
    line.Scale(1.0);
    line.ConvertUnits(CADUNITS_METERS, CADUNITS_NONE);
    line.ConvertUnits(CADUNITS_FEET, CADUNITS_FEET);
    EXPECT_TRUE(SameVertices(vertices, Vertices(line)));
}

TYPED_TEST(Polyline3d, IsMappedAlsoWhenItIsEmpty)
{
    typename TestFixture::Line line;
    CCadTransform transform = CCadTransform::GetEmptyTransform();
    transform.Translate({1.0, 2.0, 3.0});
    line.TransformTo(transform);
    line.TransformFrom(transform);
    line.Translate({1.0, 2.0, 3.0});
    line.Scale(2.0);
    line.ConvertUnits(CADUNITS_METERS, CADUNITS_FEET);
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_EQ(line.GetData(), nullptr);
}

TYPED_TEST(Polyline3d, IsMovedScaledAndConverted)
{
    using T = TypeParam;
    auto line = Polyline<T>({{1, 2, 3}, {-4, 5, 0}});
    line.Translate({0.5, -1.0, 2.0});
    EXPECT_TRUE(SameVertices<T>({{T(1.5), 1, 5}, {T(-3.5), 4, 2}}, Vertices(line)));
    line.Scale(2.0);
    EXPECT_TRUE(SameVertices<T>({{3, 2, 10}, {-7, 8, 4}}, Vertices(line)));
    line.ConvertUnits(CADUNITS_METERS, CADUNITS_MILLIMETERS);
    EXPECT_TRUE(SameVertices<T>({{3000, 2000, 10000}, {-7000, 8000, 4000}}, Vertices(line)));
}

struct PublishedPolyline {
    std::string name;
    std::vector<CadPoint3d<double>> vertices;
    double length;
    CadPoint3d<double> min;
    CadPoint3d<double> max;
    bool isClosed;
};

std::vector<PublishedPolyline> PublishedPolylines()
{
    std::ifstream file(CADGEOM_TEST_DATA_DIR "/polylines/polylines.txt");
    const auto readPoint = [&file] {
        CadPoint3d<double> point;
        file >> point.x() >> point.y() >> point.z();
        return point;
    };
    std::vector<PublishedPolyline> polylines;
    PublishedPolyline polyline;
    std::size_t count = 0;
    std::string closed;
    while (file >> polyline.name >> count >> polyline.length >> closed) {
        polyline.isClosed = closed == "closed";
        polyline.min = readPoint();
        polyline.max = readPoint();
        polyline.vertices.clear();
        for (std::size_t i = 0; i < count; ++i) {
            polyline.vertices.push_back(readPoint());
        }
        polylines.push_back(polyline);
    }
    return polylines;
}

TEST(PublishedPolylines, HaveTheirLengthsBoxesAndEnds)
{
    const auto published = PublishedPolylines();
    ASSERT_EQ(published.size(), 13U);
    for (const auto& expected : published) {
        SCOPED_TRACE(expected.name);
        auto line = Polyline(expected.vertices);
        const auto count = static_cast<double>(line.GetNumPoints());
        // Each addition and each segment is off by at most some units in the last place of the whole, and each printed
        // coordinate, as it is read, by half of one of its own.
        const double size = std::max(expected.min.maxAbsoluteValue(), expected.max.maxAbsoluteValue());
        const double bound = (count + 4) * std::numeric_limits<double>::epsilon() * (expected.length + 2 * size);
        EXPECT_NEAR(line.ComputeLength(), expected.length, bound);
        CBoundingBox3d<double> box;
        EXPECT_TRUE(line.ComputeBoundingBox(box));
        EXPECT_TRUE(SameVertices<double>({expected.min, expected.max}, {box.GetMin(), box.GetMax()}));
        EXPECT_EQ(line.RemoveRedundantEndPoint(), expected.isClosed);
        EXPECT_FALSE(line.RemoveRedundantPoints()) << "the sources repeat no vertex";
        EXPECT_TRUE(line.Close());
    }
}

} // namespace
