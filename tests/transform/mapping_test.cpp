#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/numbers.h"
#include "transform/transform_model.h"

namespace {

using namespace transform_test;
using Point = CadPoint3d<double>;
using Vector = CadVector3d<double>;

constexpr std::array<Numbers, 3> kUnitAxes = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr std::array<Numbers, 3> kTurnedAxes = {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}};

CCadTransform WithScale(double x, double y, double z)
{
    return FromState({{0, 0, 0}, kUnitAxes, {x, y, z}, 0});
}

template <class Value>
void ExpectNumbers(double x, double y, double z, const Value& actual)
{
    EXPECT_EQ(static_cast<double>(actual[0]), x);
    EXPECT_EQ(static_cast<double>(actual[1]), y);
    EXPECT_EQ(static_cast<double>(actual[2]), z);
}

template <class T>
class Mapping : public ::testing::Test {};

using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Mapping, Scalars, );

TYPED_TEST(Mapping, TranslatesAndScalesPointsButNotDirections)
{
    const CCadTransform transform = FromState({{1, 2, 3}, kUnitAxes, {2, 2, 2}, 0});
    CadPoint3d<TypeParam> point(1, 1, 1);
    transform.aaback(point, point);
    ExpectNumbers(3, 4, 5, point);
    transform.aaforw(point, point);
    ExpectNumbers(1, 1, 1, point);

    CadVector3d<TypeParam> vector(1, 0, 0);
    transform.aaback(vector, vector);
    ExpectNumbers(1, 0, 0, vector);
    transform.aaforw(vector, vector);
    ExpectNumbers(1, 0, 0, vector);

    TypeParam length = 1;
    EXPECT_TRUE(transform.aaback(length, length));
    EXPECT_EQ(length, TypeParam(2));
    EXPECT_TRUE(transform.aaforw(TypeParam(1), length));
    EXPECT_EQ(length, TypeParam(0.5));
}

TYPED_TEST(Mapping, BendsDirectionsByANonUniformScaleAndKeepsTheirLength)
{
    const CCadTransform transform = WithScale(1, 2, 1);
    CadVector3d<TypeParam> vector(1, 1, 0);
    transform.aaback(vector, vector);
    EXPECT_NEAR(static_cast<double>(vector.x()), std::sqrt(0.4), 1e-7);
    EXPECT_NEAR(static_cast<double>(vector.y()), 2 * std::sqrt(0.4), 1e-7);
    EXPECT_EQ(vector.z(), TypeParam(0));
    transform.aaforw(vector, vector);
    EXPECT_NEAR(static_cast<double>(vector.x()), 1, 2e-7);
    EXPECT_NEAR(static_cast<double>(vector.y()), 1, 2e-7);
}

TYPED_TEST(Mapping, RotatesThreeNumbersAsPointOrDirection)
{
    const CCadTransform transform = FromState({{1, 2, 3}, kTurnedAxes, {1, 1, 1}, 0});
    TypeParam numbers[6] = {1, 0, 0, 7, 7, 7};
    transform.aaback(0, numbers, numbers + 3);
    EXPECT_EQ(numbers[3], TypeParam(1));
    EXPECT_EQ(numbers[4], TypeParam(3));
    EXPECT_EQ(numbers[5], TypeParam(3));
    transform.aaforw(0, numbers + 3, numbers + 3);
    EXPECT_EQ(numbers[3], TypeParam(1));
    EXPECT_EQ(numbers[4], TypeParam(0));
    transform.aaback(-5, numbers, numbers + 1);
    EXPECT_EQ(numbers[0], TypeParam(1));
    EXPECT_EQ(numbers[1], TypeParam(0)) << "ranges may overlap";
    EXPECT_EQ(numbers[2], TypeParam(1));
    EXPECT_EQ(numbers[3], TypeParam(0));
    transform.aaforw(1, numbers + 1, numbers);
    EXPECT_EQ(numbers[0], TypeParam(1));
    EXPECT_EQ(numbers[1], TypeParam(0));
}

TYPED_TEST(Mapping, DoesNothingForNullNumbers)
{
    CCadTransform transform = FromState({{1, 2, 3}, kTurnedAxes, {2, 2, 2}, 0});
    TypeParam numbers[3] = {1, 2, 3};
    TypeParam* const null = nullptr;
    transform.aaback(0, null, numbers);
    transform.aaforw(0, null, numbers);
    transform.aaback(1, numbers, null);
    transform.aaforw(1, numbers, null);
    EXPECT_EQ(numbers[0], TypeParam(1));
    EXPECT_EQ(StateOf(transform).flags, 0) << "not even the flags are determined";
}

TYPED_TEST(Mapping, RefusesLengthsThatNoSingleFactorMaps)
{
    TypeParam out = 7;
    const CCadTransform uneven = WithScale(1, 2, 1);
    EXPECT_FALSE(uneven.aaforw(TypeParam(1), out));
    EXPECT_FALSE(uneven.aaback(TypeParam(1), out));
    const CCadTransform slanted = FromState({{0, 0, 0}, kUnitAxes, {1, 1, 1}, 0x10});
    EXPECT_FALSE(slanted.aaforw(TypeParam(1), out));
    EXPECT_FALSE(slanted.aaback(TypeParam(1), out));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const CCadTransform undefined = FromState({{0, 0, 0}, kUnitAxes, {nan, nan, nan}, 0x07});
    EXPECT_FALSE(undefined.aaback(TypeParam(1), out));
    EXPECT_EQ(out, TypeParam(7));
}

TYPED_TEST(Mapping, TakesLengthsUnchangedWhenTheScaleCountsAsOne)
{
    const CCadTransform nearly = FromState({{0, 0, 0}, kUnitAxes, {1 + 5e-7, 1, 1}, 0x0F});
    TypeParam out = 0;
    EXPECT_TRUE(nearly.aaback(TypeParam(3), out));
    EXPECT_EQ(out, TypeParam(3));
    EXPECT_TRUE(nearly.aaforw(TypeParam(5), out));
    EXPECT_EQ(out, TypeParam(5));
}

TYPED_TEST(Mapping, RoundsEachResultOnceFromDouble)
{
    test_support::NumberStream<TypeParam> numbers(4711);
    test_support::NumberStream<double> parts(42);
    for (int round = 0; round < 3000; ++round) {
        State state;
        for (std::size_t i = 0; i < 3; ++i) {
            state.translation[i] = parts.Any();
            state.scale[i] = parts.Any();
            state.axes[i] = {parts.Any(), parts.Any(), parts.Any()};
        }
        state.flags = static_cast<std::uint8_t>(parts.Integer(0, 31));
        const CCadTransform transform = FromState(state);
        Model model(state);
        const CadPoint3d<TypeParam> point(numbers.Any(), numbers.Any(), numbers.Any());
        const CadVector3d<TypeParam> vector(point[0], point[1], point[2]);
        const Numbers in = ToNumbers(point);
        CadPoint3d<TypeParam> mappedPoint;
        CadVector3d<TypeParam> mappedVector;
        const auto isSame = [](const Numbers& expected, const auto& actual) {
            for (int k = 0; k < 3; ++k) {
                const auto rounded = static_cast<TypeParam>(expected[static_cast<std::size_t>(k)]);
                if (!SameNumber(static_cast<double>(rounded), static_cast<double>(actual[k]))) {
                    return false;
                }
            }
            return true;
        };
        transform.aaback(point, mappedPoint);
        EXPECT_TRUE(isSame(model.PointToWorld(in), mappedPoint)) << state;
        transform.aaforw(point, mappedPoint);
        EXPECT_TRUE(isSame(model.PointToLocal(in), mappedPoint)) << state;
        transform.aaback(vector, mappedVector);
        EXPECT_TRUE(isSame(model.DirectionToWorld(in), mappedVector)) << state;
        transform.aaforw(vector, mappedVector);
        EXPECT_TRUE(isSame(model.DirectionToLocal(in), mappedVector)) << state;
    }
}

TEST(DirectionMapping, LeavesLengthlessDirectionsBent)
{
    // Below a squared length of 1e-12 after the scale, the length is not restored.
    const CCadTransform transform = WithScale(1e-3, 1, 1);
    Vector tiny(1e-4, 0, 0);
    transform.aaback(tiny, tiny);
    EXPECT_EQ(tiny.x(), 1e-4 * 1e-3);
    Vector longer(2e-3, 0, 0);
    transform.aaback(longer, longer);
    EXPECT_NEAR(longer.x(), 2e-3, 1e-18);
    Vector zero(0, 0, 0);
    transform.aaback(zero, zero);
    ExpectNumbers(0, 0, 0, zero);
    transform.aaforw(zero, zero);
    ExpectNumbers(0, 0, 0, zero);
}

TEST(DirectionMapping, KeepsLengthUnderAnyScaleOfOrthonormalAxes)
{
    test_support::NumberStream<double> numbers(99);
    for (int round = 0; round < 1000; ++round) {
        const auto any = [&numbers] { return numbers.Uniform(-3, 3); };
        CCadTransform transform({any(), any(), any()}, {any(), any(), any()}, Point(any(), any(), any()));
        transform.SetScale({numbers.Uniform(0.1, 4), numbers.Uniform(0.1, 4), numbers.Uniform(0.1, 4)});
        const Vector in(any(), any(), any());
        Vector out;
        transform.aaback(in, out);
        EXPECT_NEAR(out.length(), in.length(), 1e-13);
        transform.aaforw(in, out);
        EXPECT_NEAR(out.length(), in.length(), 1e-13);
    }
}

TEST(PointMapping, AlwaysSubtractsTheTranslation)
{
    // The flag says zero, as a setter leaves it; only the way to local notices the rest.
    const CCadTransform transform = FromState({{5e-7, 0, 0}, kUnitAxes, {1, 1, 1}, 0x0F});
    Point point(1, 1, 1);
    transform.aaback(point, point);
    ExpectNumbers(1, 1, 1, point);
    transform.aaforw(point, point);
    ExpectNumbers(1 - 5e-7, 1, 1, point);
}

TEST(PointMapping, UsesTheInverseMatrixOnlyForMarkedAxes)
{
    const std::array<Numbers, 3> slanted = {{{1, 0, 0}, {1, 1, 0}, {0, 0, 1}}};
    const CCadTransform marked = FromState({{0, 0, 0}, slanted, {1, 1, 1}, 0x10});
    Point local;
    marked.aaforw(Point(3, 2, 1), local);
    ExpectNumbers(1, 2, 1, local);
    const CCadTransform unmarked = FromState({{0, 0, 0}, slanted, {1, 1, 1}, 0});
    unmarked.aaforw(Point(3, 2, 1), local);
    ExpectNumbers(3, 5, 1, local);
}

TEST(PointMapping, GivesNonFiniteNumbersForSingularMarkedAxes)
{
    const std::array<Numbers, 3> flat = {{{1, 0, 0}, {0, 1, 0}, {1, 1, 0}}};
    const CCadTransform transform = FromState({{0, 0, 0}, flat, {1, 1, 1}, 0x10});
    Point local;
    transform.aaforw(Point(3, 2, 1), local);
    EXPECT_FALSE(std::isfinite(local.x()));
}

TEST(LineInterPlane, MeetsEachLocalPlane)
{
    const CCadTransform transform = FromState({{1, 2, 3}, kTurnedAxes, {1, 1, 1}, 0});
    for (int plane = 0; plane < 3; ++plane) {
        Point local;
        Point world;
        EXPECT_TRUE(transform.LineInterPlane(Point(4, 5, 6), {1, 2, 3}, plane, local, false));
        EXPECT_TRUE(transform.LineInterPlane(Point(4, 5, 6), {1, 2, 3}, plane, world, true));
        EXPECT_EQ(local[plane], 0.0);
        Point mapped;
        transform.aaback(local, mapped);
        EXPECT_TRUE(SameNumbers(ToNumbers(mapped), ToNumbers(world)));
        EXPECT_LT(world.distanceSquaredToLine(Point(4, 5, 6), Vector(1, 2, 3)), 1e-24);
    }
}

TEST(LineInterPlane, RejectsLinesParallelToThePlane)
{
    const CCadTransform& identity = CCadTransform::GetEmptyTransform();
    Point out(7, 8, 9);
    const double cosine = std::sqrt(1 - 1e-10);
    // Normalising leaves this direction as it is.
    Vector grazing(cosine, 0, 1e-5);
    Vector unit(grazing);
    unit.normalize();
    ASSERT_EQ(unit.z(), 1e-5);
    EXPECT_FALSE(identity.LineInterPlane(Point(0, 0, 1), grazing, 2, out, true));
    EXPECT_FALSE(identity.LineInterPlaneTC(Point(0, 0, 1), grazing, 2, out));
    grazing.z() = -1e-5;
    EXPECT_FALSE(identity.LineInterPlane(Point(0, 0, 1), grazing, 2, out, true));
    ExpectNumbers(7, 8, 9, out);
    grazing.z() = 1.1e-5;
    EXPECT_TRUE(identity.LineInterPlane(Point(0, 0, 1), grazing, 2, out, true));
    EXPECT_EQ(out.z(), 0.0);
}

TEST(LineInterPlane, TakesADirectionWithoutLengthAlongZ)
{
    const CCadTransform& identity = CCadTransform::GetEmptyTransform();
    Point out(7, 8, 9);
    EXPECT_FALSE(identity.LineInterPlane(Point(1, 2, 3), {0, 0, 0}, 0, out, true));
    EXPECT_TRUE(identity.LineInterPlane(Point(1, 2, 3), {0, 0, 0}, 2, out, true));
    ExpectNumbers(1, 2, 0, out);
}

TEST(LineInterPlane, RefusesOtherPlanes)
{
    CCadTransform transform = FromState({{1, 2, 3}, kTurnedAxes, {1, 1, 1}, 0});
    Point out(7, 8, 9);
    for (const int plane : {-1, 3, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_FALSE(transform.LineInterPlane(Point(1, 1, 1), {1, 1, 1}, plane, out, true));
        EXPECT_FALSE(transform.LineInterPlaneTC(Point(1, 1, 1), {1, 1, 1}, plane, out));
    }
    ExpectNumbers(7, 8, 9, out);
}

TEST(LineInterPlane, MayOverwriteItsOwnPoint)
{
    const CCadTransform transform = FromState({{1, 2, 3}, kTurnedAxes, {2, 2, 2}, 0});
    Point apart;
    EXPECT_TRUE(transform.LineInterPlane(Point(4, 5, 6), {1, 2, 3}, 1, apart, true));
    Point point(4, 5, 6);
    EXPECT_TRUE(transform.LineInterPlane(point, {1, 2, 3}, 1, point, true));
    EXPECT_TRUE(SameNumbers(ToNumbers(apart), ToNumbers(point)));
}

TEST(LineInterPlaneTC, IgnoresTheTransform)
{
    CCadTransform transform = FromState({{1, 2, 3}, kTurnedAxes, {2, 2, 2}, 0});
    Point out;
    EXPECT_TRUE(transform.LineInterPlaneTC(Point(1, 1, 1), {0, 0, -5}, 2, out));
    ExpectNumbers(1, 1, 0, out);
    EXPECT_EQ(StateOf(transform).flags, 0) << "its flags included";
}

} // namespace
