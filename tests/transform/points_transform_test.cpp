#include <cadgeom/transform/points_transform.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "support/numbers.h"
#include "support/same_bits.h"
#include "transform/transform_model.h"

namespace {

using namespace transform_test;

constexpr std::array<Numbers, 3> kUnitAxes = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr std::array<Numbers, 3> kSlantedAxes = {{{1, 0.5, 0}, {-0.25, 1, 0.75}, {0, -0.5, 1.25}}};

template <class T>
class PointsTransform : public ::testing::Test {
protected:
    template <class Element>
    std::vector<Element> AnyElements(std::size_t count)
    {
        std::vector<Element> elements(count);
        for (Element& element : elements) {
            element.set(m_numbers.Any(), m_numbers.Any(), m_numbers.Any());
        }
        return elements;
    }

    template <class Element>
    static void ExpectSame(const std::vector<Element>& expected, const std::vector<Element>& actual)
    {
        for (std::size_t i = 0; i < expected.size(); ++i) {
            for (int k = 0; k < 3; ++k) {
                ASSERT_SAME_BITS(expected[i][k], actual[i][k]) << "element " << i << ", component " << k;
            }
        }
    }

    /// Array form against the single form, in both directions.
    template <class Element>
    void CompareWithSingleElements(const CCadTransform& transform, std::size_t count)
    {
        const std::vector<Element> elements = AnyElements<Element>(count);
        std::vector<Element> expected(elements);
        std::vector<Element> actual(elements);
        for (Element& element : expected) {
            transform.aaback(element, element);
        }
        transform.aaback(actual.data(), actual.size());
        ExpectSame(expected, actual);

        expected = elements;
        actual = elements;
        for (Element& element : expected) {
            transform.aaforw(element, element);
        }
        transform.aaforw(actual.data(), actual.size());
        ExpectSame(expected, actual);
    }

    test_support::NumberStream<T> m_numbers{77};
};

using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(PointsTransform, Scalars, );

/// States of every combination of flag bits, the flags determined and true to the numbers or (as setters leave them)
/// nearly so.
std::vector<State> StatesOfEveryKind(test_support::NumberStream<double>& numbers)
{
    std::vector<State> states;
    for (unsigned flags = 0; flags < 32; ++flags) {
        for (const bool isUniform : {false, true}) {
            State state;
            const auto any = [&numbers] { return numbers.Any(); };
            state.translation =
                (flags & kZeroTranslate) != 0 ? Numbers{5e-7, -0.0, -1e-6} : Numbers{any(), any(), any()};
            const double scale = any();
            state.scale = (flags & kUnityScale) != 0 ? Numbers{1 + 5e-7, 1, 1}
                          : isUniform                ? Numbers{scale, scale, scale}
                                                     : Numbers{any(), any(), any()};
            state.axes = (flags & kIdentityRotation) != 0 ? kUnitAxes : kSlantedAxes;
            state.flags = static_cast<std::uint8_t>(flags);
            states.push_back(state);
            state.axes[0] = {any(), any(), any()};
            states.push_back(state);
        }
    }
    return states;
}

TYPED_TEST(PointsTransform, MapsEachElementAsTheSingleFormDoes)
{
    using Point = CadPoint3d<TypeParam>;
    using Vector = CadVector3d<TypeParam>;
    test_support::NumberStream<double> numbers(5);
    for (int round = 0; round < 10; ++round) {
        for (const State& state : StatesOfEveryKind(numbers)) {
            std::size_t count = static_cast<std::size_t>(numbers.Integer(1, 40));
            SCOPED_TRACE(::testing::PrintToString(state));
            const CCadTransform transform = FromState(state);
            if (transform.IsEmptyTransform()) {
                continue;
            }
            ASSERT_NO_FATAL_FAILURE(this->template CompareWithSingleElements<Point>(transform, count));
            ASSERT_NO_FATAL_FAILURE(this->template CompareWithSingleElements<Vector>(transform, count));
        }
    }
}

TYPED_TEST(PointsTransform, MapsArraysLargerThanTheCacheInTheSameWay)
{
    using Point = CadPoint3d<TypeParam>;
    using Vector = CadVector3d<TypeParam>;
    const CCadTransform transform = FromState({{1, 2, 3}, kSlantedAxes, {1, 2, 3}, 0x10});
    // Around the size from which prefetching pays, and beyond it by a part of a run.
    constexpr std::size_t kMegabyte = 1048576 / sizeof(Point);
    for (const std::size_t count : {kMegabyte - 1, kMegabyte, kMegabyte + 1, 2 * kMegabyte + 37}) {
        ASSERT_NO_FATAL_FAILURE(this->template CompareWithSingleElements<Point>(transform, count));
        ASSERT_NO_FATAL_FAILURE(this->template CompareWithSingleElements<Vector>(transform, count));
    }
}

TYPED_TEST(PointsTransform, MapsToAndFromByFreeFunctions)
{
    using Point = CadPoint3d<TypeParam>;
    const CCadTransform transform = FromState({{1, 2, 3}, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}}, {2, 2, 2}, 0});
    std::vector<Point> points = {Point(1, 0, 0), Point(0, 1, 0), Point(0, 0, 1)};
    PointsTransformFrom(points.data(), points.size(), transform);
    TestFixture::ExpectSame({Point(1, 4, 3), Point(-1, 2, 3), Point(1, 2, 5)}, points);
    PointsTransformTo(points.data(), points.size(), transform);
    TestFixture::ExpectSame({Point(1, 0, 0), Point(0, 1, 0), Point(0, 0, 1)}, points);
}

TYPED_TEST(PointsTransform, ChangesNothingByTheIdentity)
{
    using Point = CadPoint3d<TypeParam>;
    using Vector = CadVector3d<TypeParam>;
    using Limits = std::numeric_limits<TypeParam>;
    // A signalling NaN would become quiet in any arithmetic.
    const Point strange(Limits::signaling_NaN(), -TypeParam(0), Limits::infinity());
    Point points[2];
    Vector vectors[2];
    static_assert(sizeof points[0] == sizeof strange, "points are bare numbers");
    for (int i = 0; i < 2; ++i) {
        std::memcpy(points[i].data(), strange.data(), sizeof strange);
        std::memcpy(vectors[i].data(), strange.data(), sizeof strange);
    }
    // The remainder that a setter leaves in the translation has no effect either.
    for (const double translation : {0.0, 5e-7}) {
        const CCadTransform identity = FromState({{translation, 0, 0}, kUnitAxes, {1, 1, 1}, 0x0F});
        identity.aaback(points, 2);
        identity.aaforw(points, 2);
        identity.aaback(vectors, 2);
        identity.aaforw(vectors, 2);
        PointsTransformTo(points, 2, identity);
        PointsTransformFrom(points, 2, identity);
    }
    EXPECT_EQ(std::memcmp(points[1].data(), strange.data(), sizeof strange), 0);
    EXPECT_EQ(std::memcmp(vectors[1].data(), strange.data(), sizeof strange), 0);
}

TYPED_TEST(PointsTransform, DeterminesTheFlagsOfAnEmptyArrayButNotOfNone)
{
    using Point = CadPoint3d<TypeParam>;
    using Vector = CadVector3d<TypeParam>;
    const State state = {{1, 2, 3}, kUnitAxes, {1, 1, 1}, 0};
    Point* const noPoints = nullptr;
    Vector* const noVectors = nullptr;
    CCadTransform transform = FromState(state);
    transform.aaback(noPoints, 3);
    transform.aaforw(noPoints, 3);
    transform.aaback(noVectors, 3);
    transform.aaforw(noVectors, 3);
    PointsTransformTo(noPoints, 3, transform);
    PointsTransformFrom(noPoints, 3, transform);
    EXPECT_EQ(StateOf(transform).flags, 0);
    Point point(1, 2, 3);
    transform.aaback(&point, 0);
    EXPECT_EQ(StateOf(transform).flags, 0x0B);
    EXPECT_EQ(point, Point(1, 2, 3));
}

} // namespace
