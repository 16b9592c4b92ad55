#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/point_sequence.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/numbers.h"
#include "support/same_bits.h"

namespace {

using test_support::NumberStream;

template <class S, int N>
struct Instance {
    using Scalar = S;
    static constexpr int kAxes = N;
};

template <class I>
class PointSequence : public ::testing::Test {
protected:
    using Scalar = typename I::Scalar;
    static constexpr int N = I::kAxes;
    using Point = CadPoint<Scalar, N>;
    using Vector = CadVector<Scalar, N>;

    static std::vector<Point> Random(std::size_t count, std::uint32_t seed)
    {
        NumberStream<Scalar> numbers(seed);
        std::vector<Point> points(count);
        for (auto& point : points) {
            for (int i = 0; i < N; ++i) {
                point[i] = seed % 2 == 0 ? numbers.Any() : numbers.Uniform(-100, 100);
            }
        }
        return points;
    }

    static Point At(Scalar x, Scalar y)
    {
        Point point = Point::zero();
        point[0] = x;
        point[1] = y;
        return point;
    }
};

using Instances = ::testing::Types<Instance<float, 2>, Instance<float, 3>, Instance<double, 2>, Instance<double, 3>>;
TYPED_TEST_SUITE(PointSequence, Instances);

TYPED_TEST(PointSequence, HasItsMeanAtZeroWhenEmpty)
{
    using P = typename TestFixture::Point;
    EXPECT_TRUE(
        (ComputeMeanPoint<typename TestFixture::Scalar, TestFixture::N>(static_cast<const P*>(nullptr), 0)).isZero());
}

TYPED_TEST(PointSequence, HasItsMeanAtItsOnlyPoint)
{
    const auto point = this->At(typename TestFixture::Scalar(0.1F), typename TestFixture::Scalar(7));
    const auto mean = ComputeMeanPoint(&point, 1);
    EXPECT_EQ(mean[0], static_cast<double>(point[0]));
    EXPECT_EQ(mean[1], 7.0);
}

TYPED_TEST(PointSequence, AddsInOrderInDoubleAndMultipliesByTheReciprocalOfTheCount)
{
    for (std::uint32_t seed = 1; seed < 40; ++seed) {
        const auto points = this->Random(seed * 3, seed);
        const auto mean = ComputeMeanPoint(points.data(), points.size());
        for (int axis = 0; axis < TestFixture::N; ++axis) {
            double sum = 0;
            for (const auto& point : points) {
                sum = sum + static_cast<double>(point[axis]);
            }
            ASSERT_SAME_BITS(sum * (1.0 / static_cast<double>(points.size())), mean[axis]);
        }
    }
}

TYPED_TEST(PointSequence, HasNoLengthBelowTwoPoints)
{
    using T = typename TestFixture::Scalar;
    using V = typename TestFixture::Vector;
    const auto point = this->At(T(1), T(2));
    EXPECT_EQ(PolylineGetLength(&point, 0), T(0));
    EXPECT_EQ(PolylineGetLength(&point, 1), T(0));
    EXPECT_EQ((PolylineGetLength<T, TestFixture::N>(nullptr, 0)), T(0));
    EXPECT_EQ((VectorPolylineGetLength<T, TestFixture::N>(static_cast<const V*>(nullptr), 0)), T(0));
}

TYPED_TEST(PointSequence, MeasuresFiveFromTheOriginToThreeFour)
{
    using T = typename TestFixture::Scalar;
    const typename TestFixture::Point points[] = {this->At(T(0), T(0)), this->At(T(3), T(4)), this->At(T(3), T(4))};
    EXPECT_EQ(PolylineGetLength(points, 3), T(5));
}

TYPED_TEST(PointSequence, AddsSegmentLengthsInOrderInItsScalar)
{
    using T = typename TestFixture::Scalar;
    for (std::uint32_t seed = 1; seed < 60; ++seed) {
        const auto points = this->Random(seed, seed);
        std::vector<typename TestFixture::Vector> vectors(points.size());
        T length = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            for (int axis = 0; axis < TestFixture::N; ++axis) {
                vectors[i][axis] = points[i][axis];
            }
            if (i == 0) {
                continue;
            }
            T square = 0;
            for (int axis = 0; axis < TestFixture::N; ++axis) {
                const T difference = points[i][axis] - points[i - 1][axis];
                const T product = difference * difference;
                square = square + product;
            }
            length = length + std::sqrt(square);
        }
        ASSERT_SAME_BITS(length, PolylineGetLength(points.data(), points.size()));
        ASSERT_SAME_BITS(length, VectorPolylineGetLength(vectors.data(), vectors.size()));
    }
}

TYPED_TEST(PointSequence, FindsAntiparallelLinesColinearWithinTheDistance)
{
    using T = typename TestFixture::Scalar;
    const auto zero = this->At(T(0), T(0));
    const auto along = this->At(T(1), T(0)) - zero;
    const auto against = this->At(T(-2), T(0)) - zero;
    EXPECT_TRUE(LinesAreColinear(zero, along, this->At(T(5), T(0.001)), against, T(0.01), T(1)));
    EXPECT_TRUE(LinesAreColinear(zero, along, this->At(T(5), T(0.25)), against, T(0.25), T(1)));
    EXPECT_FALSE(LinesAreColinear(zero, along, this->At(T(5), std::nextafter(T(0.25), T(1))), against, T(0.25), T(1)));
}

TYPED_TEST(PointSequence, NeverFindsAZeroDirectionColinear)
{
    using T = typename TestFixture::Scalar;
    const auto zero = this->At(T(0), T(0));
    const auto along = this->At(T(1), T(0)) - zero;
    const auto none = zero - zero;
    EXPECT_FALSE(LinesAreColinear(zero, none, zero, along, T(1), T(90)));
    EXPECT_FALSE(LinesAreColinear(zero, along, zero, none, T(1), T(90)));
}

TYPED_TEST(PointSequence, MeasuresOnlyTheFirstLinesPoint)
{
    using T = typename TestFixture::Scalar;
    const auto zero = this->At(T(0), T(0));
    const auto far = this->At(T(1000), T(0));
    const auto along = this->At(T(1), T(0)) - zero;
    const auto tilted = this->At(T(1), T(0.01)) - zero;
    EXPECT_TRUE(LinesAreColinear(zero, along, zero, tilted, T(0.5), T(5)));
    EXPECT_FALSE(LinesAreColinear(far, along, zero, tilted, T(0.5), T(5)));
    EXPECT_TRUE(LinesAreColinear(zero, tilted, far, along, T(0.5), T(5)));
}

} // namespace
