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

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void ExpectNumbers(double x, double y, double z, const Vector& actual)
{
    EXPECT_EQ(actual.x(), x);
    EXPECT_EQ(actual.y(), y);
    EXPECT_EQ(actual.z(), z);
}

void ExpectNear(double x, double y, double z, const Vector& actual)
{
    EXPECT_NEAR(actual.x(), x, 1e-15);
    EXPECT_NEAR(actual.y(), y, 1e-15);
    EXPECT_NEAR(actual.z(), z, 1e-15);
}

CCadTransform Identity()
{
    return CCadTransform::GetEmptyTransform();
}

unsigned FlagsOf(CCadTransform& transform)
{
    return StateOf(transform).flags;
}

TEST(Transform, IsTheIdentityAfterReset)
{
    const State identity = {{0, 0, 0}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {1, 1, 1}, 0x0F};
    CCadTransform reset;
    reset.Reset();
    EXPECT_EQ(StateOf(reset), identity);
    CCadTransform empty;
    empty.SetEmptyTransform();
    EXPECT_EQ(StateOf(empty), identity);
    CCadTransform copy(CCadTransform::GetEmptyTransform());
    EXPECT_EQ(StateOf(copy), identity);
    EXPECT_EQ(&CCadTransform::GetEmptyTransform(), &CCadTransform::GetEmptyTransform());
}

TEST(Transform, StartsWithUndeterminedFlags)
{
    const Vector z(0, 0, 1);
    const Vector x(1, 0, 0);
    const Point origin(0, 0, 0);
    CCadTransform fromZ(z, origin);
    EXPECT_EQ(FlagsOf(fromZ), 0U);
    CCadTransform fromZAndX(z, x, origin);
    EXPECT_EQ(FlagsOf(fromZAndX), 0U);
}

TEST(Transform, SnapsWhatIsNearlyTheIdentity)
{
    CCadTransform transform = Identity();
    transform.setAxesXYZ({1 - 5e-7, 5e-7, -5e-7}, {5e-7, 1 + 5e-7, 0}, {0, -5e-7, 1});
    EXPECT_TRUE(transform.IsEmptyTransform());
    ExpectNumbers(1, 0, 0, transform.xAxis());
    ExpectNumbers(0, 1, 0, transform.yAxis());
    ExpectNumbers(0, 0, 1, transform.zAxis());
}

TEST(Transform, DeterminesEachPropertyAtItsTolerance)
{
    // 1e-6 itself is within; a difference from 1 cannot be exactly 1e-6.
    const double kOffsets[] = {1e-6, -1e-6, std::nextafter(1e-6, 1.0), 1.1e-6, -1.1e-6};
    const bool kIsWithin[] = {true, true, false, false, false};
    for (std::size_t i = 0; i < 5; ++i) {
        for (int k = 0; k < 3; ++k) {
            CCadTransform moved = Identity();
            Point translation(0, 0, 0);
            translation[k] = kOffsets[i];
            moved.UndetermineFlags();
            moved.SetTranslate(translation);
            EXPECT_EQ(moved.IsZeroTranslate(), kIsWithin[i]);
            EXPECT_EQ(moved.GetTranslate()[k], kIsWithin[i] ? 0.0 : kOffsets[i]);

            CCadTransform turned = Identity();
            for (int a = 0; a < 3; ++a) {
                if (a != k) {
                    Vector axis = turned.GetAxis(static_cast<ERotateAxis>(a));
                    axis[k] = kOffsets[i];
                    turned.SetAxis(axis, a);
                    EXPECT_EQ(turned.IsIdentityRotation(), kIsWithin[i]);
                    EXPECT_EQ(turned.GetAxis(static_cast<ERotateAxis>(a))[k], kIsWithin[i] ? 0.0 : kOffsets[i]);
                    turned.Reset();
                }
            }
        }
    }
    for (const double scale : {1 - 0.9e-6, 1 + 0.9e-6, 1 - 1.1e-6, 1 + 1.1e-6}) {
        const bool isWithin = std::fabs(scale - 1) < 1e-6;
        for (int k = 0; k < 3; ++k) {
            CCadTransform scaled = Identity();
            Vector factors(1, 1, 1);
            factors[k] = scale;
            scaled.SetScale(factors);
            EXPECT_EQ(scaled.IsUnityScale(), isWithin);
            EXPECT_EQ(scaled.GetScale()[k], scale) << "a setter does not snap";
            scaled.UndetermineFlags();
            EXPECT_EQ(scaled.IsUnityScale(), isWithin);
            EXPECT_EQ(scaled.GetScale()[k], isWithin ? 1.0 : scale);
        }
    }
}

TEST(Transform, TakesNaNForTheIdentityExceptWhereAScaleIsSet)
{
    CCadTransform transform = Identity();
    transform.SetScale(kNaN);
    EXPECT_FALSE(transform.IsUnityScale());
    transform.SetTranslate(Point(kNaN, 0, 0));
    EXPECT_TRUE(transform.IsZeroTranslate());
    EXPECT_TRUE(std::isnan(transform.GetTranslate().x())) << "a setter does not snap";
    transform.UndetermineFlags();
    EXPECT_TRUE(transform.IsEmptyTransform());
    EXPECT_EQ(StateOf(transform), Model().state);
}

TEST(Transform, ShowsItsTranslationAsPointAndVector)
{
    CCadTransform transform = Identity();
    transform.SetTranslate(Point(1, 2, 3));
    ExpectNumbers(1, 2, 3, transform.GetTranslateVector());
    const Vector& view = transform.GetTranslateVector();
    transform.SetTranslateVector(Vector(4, 5, 6));
    EXPECT_EQ(transform.GetTranslate(), Point(4, 5, 6));
    ExpectNumbers(4, 5, 6, view);
    transform.SetTranslateVector(transform.GetTranslateVector());
    ExpectNumbers(4, 5, 6, view);
}

TEST(Transform, ComparesScaleExactlyForUniformity)
{
    CCadTransform transform = Identity();
    transform.SetScale(3.0);
    EXPECT_TRUE(transform.IsUniformScale());
    transform.SetScale({3, 3, std::nextafter(3.0, 4.0)});
    EXPECT_FALSE(transform.IsUniformScale());
    transform.SetScale({3, std::nextafter(3.0, 4.0), 3});
    EXPECT_FALSE(transform.IsUniformScale());
    transform.SetScale(kNaN);
    EXPECT_FALSE(transform.IsUniformScale());
}

TEST(Transform, IgnoresTheScaleInItsDeterminant)
{
    CCadTransform transform = Identity();
    transform.SetScale({-1, 1, 1});
    EXPECT_EQ(transform.GetDeterminant(), 1.0);
    EXPECT_FALSE(transform.IsMirrorTransform());
    transform.Mirror(eMirrorY);
    EXPECT_EQ(transform.GetDeterminant(), -1.0);
    EXPECT_TRUE(transform.IsMirrorTransform());
    transform.setAxesXYZ({2, 0, 0}, {0, 0, 3}, {0, 4, 0});
    EXPECT_EQ(transform.GetDeterminant(), -24.0);
}

TEST(Transform, DeterminesNothingInItsPlainQueries)
{
    CCadTransform transform = Identity();
    transform.setAxisX({1 + 5e-7, 0, 0});
    const State before = StateOf(transform);
    const CCadTransform& query = transform;
    double numbers[16];
    EXPECT_EQ(query.GetDeterminant(), 1 + 5e-7);
    EXPECT_FALSE(query.IsMirrorTransform());
    EXPECT_TRUE(query.IsUniformScale());
    query.CopyToArray(numbers);
    EXPECT_EQ(numbers[3], 1 + 5e-7);
    query.GetGLMatrix(numbers);
    EXPECT_EQ(numbers[0], 1 + 5e-7);
    EXPECT_TRUE(query == Identity());
    EXPECT_TRUE(query.AlmostSame(Identity()));
    EXPECT_EQ(StateOf(transform), before);
}

TEST(Transform, SplitsScaledAxesOfAnArray)
{
    const double numbers[12] = {7, 8, 9, 2, 0, 0, 0, 3, 0, 0, 0, 4};
    CCadTransform transform(numbers);
    EXPECT_EQ(StateOf(transform), (State{{7, 8, 9}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {2, 3, 4}, 0x03}));
    double copy[12];
    transform.CopyToArray(copy);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(copy[i], numbers[i]);
    }
}

TEST(Transform, TakesZeroAxesOfAnArrayAlongZ)
{
    const double zeros[12] = {};
    CCadTransform transform(zeros);
    EXPECT_EQ(StateOf(transform), (State{{0, 0, 0}, {{{0, 0, 1}, {0, 0, 1}, {0, 0, 1}}}, {1, 1, 1}, 0x1D}));
    const double oneAxis[12] = {0, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0, 0};
    transform.SetFromArray(oneAxis);
    ExpectNumbers(5, 0, 0, transform.GetScale());
}

TEST(Transform, SnapsScalesOfAnArrayOneByOne)
{
    const double numbers[12] = {0, 0, 0, 1 + 9e-7, 0, 0, 0, 1 + 2e-6, 0, 0, 0, 1 - 9e-7};
    CCadTransform transform(numbers);
    ExpectNumbers(1, 1 + 2e-6, 1, transform.GetScale());
}

TEST(Transform, MarksAxesOfAnArrayThatAreNotOrthogonal)
{
    double numbers[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 1};
    CCadTransform transform(numbers);
    EXPECT_EQ(FlagsOf(transform), 0x15U) << "the second axis has length sqrt(2)";
    EXPECT_FALSE(transform.IsOrthoNormal());
    numbers[6] = 0;
    transform.SetFromArray(numbers);
    EXPECT_EQ(FlagsOf(transform), 0x0FU);
}

TEST(Transform, IgnoresNullArrays)
{
    const State start = {{1, 2, 3}, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}, {1, 2, 3}, 0x10};
    CCadTransform transform = FromState(start);
    transform.SetFromArray(nullptr);
    transform.CopyToArray(nullptr);
    transform.GetGLMatrix(nullptr);
    EXPECT_EQ(StateOf(transform), start);
}

TEST(Transform, WritesTheMatrixColumnByColumn)
{
    const State state = {{7, 8, 9}, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}, {2, 3, 4}, 0};
    CCadTransform transform = FromState(state);
    double matrix[16];
    transform.GetGLMatrix(matrix);
    const double expected[16] = {0, 2, 0, 0, 0, 0, 3, 0, 4, 0, 0, 0, 7, 8, 9, 1};
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(matrix[i], expected[i]) << i;
    }
}

TEST(Transform, ChecksOrthonormalityAtItsTolerance)
{
    CCadTransform transform = Identity();
    transform.setAxesXYZ({0, 1, 0}, {1e-6, 0, 1}, {1, 0, 0});
    EXPECT_TRUE(transform.IsOrthoNormal()) << "1e-6 itself is within";
    transform.setAxisY({1.1e-6, 0, 1});
    EXPECT_FALSE(transform.IsOrthoNormal());
    transform.setAxesXYZ({0, 1 + 4e-7, 0}, {0, 0, 1}, {1, 0, 0});
    EXPECT_TRUE(transform.IsOrthoNormal()) << "the squared length counts";
    transform.setAxisX({0, 1 + 6e-7, 0});
    EXPECT_FALSE(transform.IsOrthoNormal());
    transform.setAxesXYZ({0, kNaN, 0}, {0, 0, 1}, {1, 0, 0});
    EXPECT_TRUE(transform.IsOrthoNormal()) << "NaN does not exceed a tolerance";
    transform.setAxesXYZ({0, 1, 0}, {0, 0, 1}, {1, 0, 0});
    transform.SetScale({1, 2, 3});
    EXPECT_TRUE(transform.IsOrthoNormal()) << "the scale is not looked at";
}

TEST(Transform, EqualsWhatDiffersByItsTolerance)
{
    CCadTransform a = Identity();
    CCadTransform b = Identity();
    for (int k = 0; k < 3; ++k) {
        Point moved(0, 0, 0);
        moved[k] = 1e-6;
        b.SetTranslate(moved);
        EXPECT_TRUE(a == b);
        EXPECT_FALSE(a != b);
        moved[k] = -1.1e-6;
        b.SetTranslate(moved);
        EXPECT_FALSE(a == b);
        EXPECT_TRUE(a != b);
        EXPECT_FALSE(a.AlmostSame(b));
        b.Reset();
        Vector scale(1, 1, 1);
        scale[k] = 1 + 1.1e-6;
        b.SetScale(scale);
        EXPECT_FALSE(a == b);
        b.Reset();
        for (int axis = 0; axis < 3; ++axis) {
            Vector direction = a.GetAxis(static_cast<ERotateAxis>(axis));
            direction[k] += 1.1e-6;
            b.SetAxis(direction, axis);
            EXPECT_FALSE(a == b);
            b.Reset();
        }
    }
    b.SetTranslate(Point(kNaN, 0, 0));
    EXPECT_TRUE(a == b) << "NaN never differs";
}

TEST(Transform, TellsTheSameMapWithAnotherSplitApart)
{
    CCadTransform byScale = Identity();
    byScale.SetScale(2.0);
    CCadTransform byAxes = Identity();
    byAxes.setAxesXYZ({2, 0, 0}, {0, 2, 0}, {0, 0, 2});
    EXPECT_FALSE(byScale == byAxes);
}

TEST(Transform, BuildsAFrameFromItsZAxis)
{
    CCadTransform transform({0, 1, 0}, Point(1, 2, 3));
    ExpectNumbers(-1, 0, 0, transform.xAxis());
    ExpectNumbers(0, 0, 1, transform.yAxis());
    ExpectNumbers(0, 1, 0, transform.zAxis());
    EXPECT_EQ(transform.GetTranslate(), Point(1, 2, 3));
    ExpectNumbers(1, 1, 1, transform.GetScale());
    transform.newmat({0, 0, 5}, Point(0, 0, 0));
    EXPECT_TRUE(transform.IsEmptyTransform());
    transform.newmat({0, 0, 0}, Point(0, 0, 0));
    EXPECT_TRUE(transform.IsEmptyTransform()) << "no direction is along z";
}

TEST(Transform, ChangesTheAuxiliaryAxisBeyond99Hundredths)
{
    // Unit vectors on both sides of y = 0.99: with the y axis as auxiliary, x has no y component.
    for (const double sign : {1.0, -1.0}) {
        const double belowY = 0.98999;
        const CCadTransform below({std::sqrt(1 - belowY * belowY), sign * belowY, 0}, Point(0, 0, 0));
        EXPECT_EQ(below.xAxis().y(), 0.0);
        ExpectNear(0, 0, -1, below.xAxis());
        const double aboveY = 0.99001;
        const CCadTransform above({std::sqrt(1 - aboveY * aboveY), sign * aboveY, 0}, Point(0, 0, 0));
        EXPECT_EQ(above.xAxis().z(), 0.0);
        EXPECT_LT(above.xAxis().x() * sign, -0.9);
    }
}

TEST(Transform, BuildsAFrameWithAHintForX)
{
    const CCadTransform transform({0, 0, 2}, {3, 0, 7}, Point(1, 2, 3));
    ExpectNumbers(1, 0, 0, transform.xAxis());
    ExpectNumbers(0, 1, 0, transform.yAxis());
    ExpectNumbers(0, 0, 1, transform.zAxis());
    EXPECT_EQ(transform.GetTranslate(), Point(1, 2, 3));
}

TEST(Transform, IgnoresAHintAlongZ)
{
    for (const Vector& hint : {Vector(0, 5, 0), Vector(0, 0, 0), Vector(1e-6, 5, -1e-6)}) {
        const CCadTransform withHint({0, 1, 0}, hint, Point(0, 0, 0));
        ExpectNumbers(-1, 0, 0, withHint.xAxis());
    }
    const CCadTransform followed({0, 1, 0}, {1.1e-6, 5, 0}, Point(0, 0, 0));
    ExpectNumbers(1, 0, 0, followed.xAxis());
}

TEST(Transform, AcceptsItsOwnAxesAsDirections)
{
    CCadTransform transform({1, 2, 3}, Point(1, 1, 1));
    const CCadTransform copy(transform);
    CCadTransform expected;
    expected.newmat(copy.xAxis(), copy.zAxis(), copy.GetTranslate());
    transform.newmat(transform.xAxis(), transform.zAxis(), transform.GetTranslate());
    EXPECT_EQ(StateOf(transform), StateOf(expected));
}

TEST(Transform, RebuildsAxesFromTheFirstPairThatIsNotParallel)
{
    CCadTransform transform = Identity();
    transform.SetScale({2, 3, 4});
    transform.setAxesXYZ({2, 0, 0}, {1, 1, 0}, {5, 5, 5});
    transform.MakeOrthoNormal();
    ExpectNumbers(1, 0, 0, transform.xAxis());
    ExpectNumbers(0, 1, 0, transform.yAxis());
    ExpectNumbers(0, 0, 1, transform.zAxis());
    ExpectNumbers(2, 3, 4, transform.GetScale());

    transform.setAxesXYZ({0, 2, 0}, {0, -1, 0}, {0, 3, 4});
    transform.MakeOrthoNormal();
    ExpectNumbers(-1, 0, 0, transform.xAxis());
    ExpectNumbers(0, -1, 0, transform.yAxis());
    ExpectNumbers(0, 0, 1, transform.zAxis());

    // A zero axis is parallel to nothing, so x and y count as a pair.
    transform.setAxesXYZ({0, 0, 0}, {0, 1, 0}, {1, 0, 0});
    transform.MakeOrthoNormal();
    ExpectNumbers(0, 0, 1, transform.xAxis());
}

TEST(Transform, MakesAllParallelAxesTheNewZ)
{
    CCadTransform transform = Identity();
    transform.setAxesXYZ({0, 0, 1}, {0, 0, -3}, {0, 0, 2});
    transform.MakeOrthoNormal();
    ExpectNumbers(0, 0, -1, transform.zAxis());
    EXPECT_EQ(transform.GetDeterminant(), 1.0);
    EXPECT_TRUE(transform.IsOrthoNormal());
}

TEST(Transform, KeepsFlagsWhenMadeOrthonormal)
{
    const std::array<Numbers, 3> slanted = {{{1, 0, 0}, {1, 1, 0}, {0, 0, 1}}};
    for (const unsigned flags : {0x00U, 0x01U, 0x1FU, 0x10U, 0x1EU}) {
        CCadTransform made = FromState({{0, 0, 0}, slanted, {2, 3, 4}, static_cast<std::uint8_t>(flags)});
        made.MakeOrthoNormal();
        EXPECT_EQ(FlagsOf(made), flags & 0x0FU);
        ExpectNumbers(2, 3, 4, made.GetScale());
        CCadTransform forced = FromState({{0, 0, 0}, slanted, {2, 3, 4}, static_cast<std::uint8_t>(flags)});
        forced.ForceOrthoNormal();
        EXPECT_EQ(FlagsOf(forced), flags);
        ExpectNumbers(1, 1, 1, forced.GetScale());
        ExpectNumbers(1, 0, 0, forced.xAxis());
        ExpectNumbers(0, 1, 0, forced.yAxis());
    }
}

TEST(Transform, FindsTheClosestAxis)
{
    CCadTransform transform = Identity();
    int axis = -1;
    Vector along(0, 0, -1);
    transform.maxabs(along, axis);
    EXPECT_EQ(axis, 2);
    ExpectNumbers(0, 0, 1, along);

    Vector diagonal = Vector(1, 1, 0) / std::sqrt(2.0);
    transform.maxabs(diagonal, axis);
    EXPECT_EQ(axis, 1) << "y is looked at before x";

    Vector equal(1, 1, 1);
    transform.maxabs(equal, axis);
    EXPECT_EQ(axis, 2);

    // Chosen and negated twice: z first, then y of the negated vector.
    Vector twice(0, 2, -1);
    transform.maxabs(twice, axis);
    EXPECT_EQ(axis, 1);
    ExpectNumbers(0, 2, -1, twice);

    Vector towardsX(-3, 2, 1);
    transform.maxabs(towardsX, axis);
    EXPECT_EQ(axis, 0);
    ExpectNumbers(3, -2, -1, towardsX);

    Vector zero(0, 0, 0);
    transform.maxabs(zero, axis);
    EXPECT_EQ(axis, 2);
}

TEST(Transform, ConvertsItsTranslationAlone)
{
    CCadTransform transform = Identity();
    transform.SetTranslate(Point(1, 2, 3));
    transform.SetScale(2.0);
    transform.ConvertUnits(CADUNITS_INCHES, CADUNITS_MILLIMETERS);
    EXPECT_EQ(transform.GetTranslate(), Point(25.4, 50.8, 3 * 25.4));
    ExpectNumbers(2, 2, 2, transform.GetScale());
    const State before = StateOf(transform);
    transform.ConvertUnits(CADUNITS_INCHES, CADUNITS_NONE);
    transform.ConvertUnits(CADUNITS_NONE, CADUNITS_INCHES);
    transform.ConvertUnits(CADUNITS_FEET, CADUNITS_FEET);
    EXPECT_EQ(StateOf(transform), before);
    transform.ConvertUnits(static_cast<CADUNITS>(42), CADUNITS_METERS);
    EXPECT_EQ(transform.GetTranslate().x(), before.translation[0] * 0.001);
}

TEST(Transform, MirrorsInOnePlane)
{
    CCadTransform transform = Identity();
    transform.Mirror(static_cast<ECadPlane>(3));
    EXPECT_EQ(StateOf(transform), Model().state) << "flags stay valid";
    transform.Mirror(static_cast<ECadPlane>(-1));
    EXPECT_EQ(StateOf(transform), Model().state);
    transform.Mirror(eMirrorZ);
    ExpectNumbers(0, 0, -1, transform.zAxis());
    EXPECT_EQ(FlagsOf(transform), 0x0EU);
}

TEST(Transform, ComposesRightOperandFirst)
{
    CCadTransform moved = Identity();
    moved.SetTranslate(Point(10, 0, 0));
    CCadTransform turned = Identity();
    turned.setAxesXYZ({0, 1, 0}, {-1, 0, 0}, {0, 0, 1});
    Point p(1, 0, 0);
    (moved * turned).aaback(p, p);
    EXPECT_EQ(p, Point(10, 1, 0));
    p.set(1, 0, 0);
    (turned * moved).aaback(p, p);
    EXPECT_EQ(p, Point(0, 11, 0));
}

TEST(Transform, MarksTheLeftOperandOfAProductNotTheResult)
{
    CCadTransform a = Identity();
    const double slanted[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 1};
    CCadTransform b(slanted);
    EXPECT_EQ(FlagsOf(b) & kNonOrthoNormal, kNonOrthoNormal);
    b.SetScale(1.0);
    CCadTransform product = a * b;
    EXPECT_EQ(FlagsOf(a), 0x1FU);
    EXPECT_EQ(FlagsOf(product), 0U);
    product = b * b;
    EXPECT_EQ(FlagsOf(product), 0U) << "also when the left operand itself was marked";

    CCadTransform frame = Identity();
    CCadTransform marked(b);
    marked.TransformFrom(frame);
    EXPECT_EQ(FlagsOf(frame), 0x1FU);
    EXPECT_EQ(FlagsOf(marked), 0U);
}

TEST(Transform, MarksTheResultOfANonUniformScaleAndARotation)
{
    CCadTransform stretched = Identity();
    stretched.SetScale({2, 3, 4});
    CCadTransform turned({1, 2, 3}, Point(1, 1, 1));
    CCadTransform product = stretched * turned;
    EXPECT_EQ(FlagsOf(product), kNonOrthoNormal);
    ExpectNumbers(1, 1, 1, product.GetScale());
    for (int i = 0; i < 3; ++i) {
        const Vector axis = turned.GetAxis(static_cast<ERotateAxis>(i));
        ExpectNumbers(2 * axis.x(), 3 * axis.y(), 4 * axis.z(), product.GetAxis(static_cast<ERotateAxis>(i)));
    }
    // Without a rotation on the right the scales multiply and nothing bends.
    CCadTransform doubled = Identity();
    doubled.SetScale(2.0);
    CCadTransform scaled = stretched * doubled;
    EXPECT_EQ(FlagsOf(scaled), 0U);
    ExpectNumbers(4, 6, 8, scaled.GetScale());
}

TEST(Transform, LeavesTheFlagsOfTheRightOperandBehindAnIdentityRotation)
{
    CCadTransform moved = Identity();
    moved.SetTranslate(Point(1, 0, 0));
    CCadTransform nearly = Identity();
    nearly.setAxisX({1, 5e-7, 0});
    const State before = StateOf(nearly);
    CCadTransform product = moved * nearly;
    EXPECT_EQ(StateOf(nearly), before);
    EXPECT_EQ(product.xAxis().y(), 5e-7);
    CCadTransform turned({1, 0, 0}, Point(0, 0, 0));
    product = turned * nearly;
    EXPECT_EQ(nearly.xAxis().y(), 0.0) << "a rotation on the left has to know";
}

TEST(Transform, InvertsTheIdentityToItself)
{
    CCadTransform empty = FromState({{5e-7, 0, 0}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {1, 1, 1}, 0x1F});
    CCadTransform inverse = empty.GetInverse();
    EXPECT_EQ(StateOf(inverse), StateOf(empty)) << "flags and what is not snapped included";
}

TEST(Transform, InvertsByHand)
{
    const State state = {{1, 2, 3}, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}}, {2, 4, 8}, 0};
    CCadTransform transform = FromState(state);
    CCadTransform inverse = transform.GetInverse();
    ExpectNumbers(0, -0.5, 0, inverse.xAxis());
    ExpectNumbers(2, 0, 0, inverse.yAxis());
    ExpectNumbers(0, 0, 1, inverse.zAxis());
    ExpectNumbers(0.5, 0.25, 0.125, inverse.GetScale());
    EXPECT_EQ(inverse.GetTranslate(), Point(-1, 0.25, -0.375));
    EXPECT_EQ(FlagsOf(inverse), 0U);
}

TEST(Transform, InvertsToNonFiniteNumbersWhenSingular)
{
    CCadTransform flat = Identity();
    flat.SetScale({1, 0, 1});
    const CCadTransform inverse = flat.GetInverse();
    EXPECT_EQ(inverse.GetScale().y(), kInfinity);
    const double zeros[12] = {};
    CCadTransform collapsed(zeros);
    const CCadTransform inverseOfCollapsed = collapsed.GetInverse();
    EXPECT_FALSE(std::isfinite(inverseOfCollapsed.xAxis().x()));
}

TEST(Transform, ScalesAboutTheWorldOrigin)
{
    CCadTransform transform = Identity();
    transform.SetTranslate(Point(1, 2, 3));
    transform.Scale(2.0);
    EXPECT_EQ(transform.GetTranslate(), Point(2, 4, 6));
    ExpectNumbers(2, 2, 2, transform.GetScale());
    EXPECT_EQ(FlagsOf(transform), 0U);

    CCadTransform unmoved = Identity();
    unmoved.Scale({2, 3, 4});
    EXPECT_EQ(StateOf(unmoved), (State{{0, 0, 0}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {2, 3, 4}, 0x07}));
}

TEST(Transform, ScalesByFactorsNearOneOnlyWithoutTranslationAndRotation)
{
    CCadTransform moved = Identity();
    moved.SetTranslate(Point(1, 0, 0));
    moved.Scale(1 + 5e-7);
    ExpectNumbers(1, 1, 1, moved.GetScale());
    EXPECT_EQ(FlagsOf(moved), 0x08U) << "the result of a product, with the scale looked at";
    CCadTransform unmoved = Identity();
    unmoved.Scale(1 + 5e-7);
    EXPECT_EQ(unmoved.GetScale().x(), 1 + 5e-7);
    EXPECT_EQ(FlagsOf(unmoved), 0x0FU);
}

TEST(Transform, BendsTheAxesOfARotatedTransformWhenScaledUnevenly)
{
    CCadTransform transform = Identity();
    transform.RotAboutAxis(45, 2);
    transform.Scale({2, 1, 1});
    EXPECT_EQ(FlagsOf(transform), kNonOrthoNormal | kUnityScale);
    const double h = std::sqrt(0.5);
    ExpectNear(2 * h, h, 0, transform.xAxis());
    ExpectNear(-2 * h, h, 0, transform.yAxis());
}

TEST(Transform, ScalesItsOriginAlone)
{
    CCadTransform transform = Identity();
    transform.SetTranslate(Point(1, 2, 3));
    transform.ScaleOrigin(1e-7);
    EXPECT_EQ(FlagsOf(transform), 0x0FU);
    EXPECT_EQ(transform.GetTranslate().z(), 3 * 1e-7) << "not snapped";
    transform.ScaleOrigin(1e7);
    EXPECT_EQ(FlagsOf(transform), 0x0BU);
}

TEST(Transform, RotatesAboutACoordinateAxis)
{
    CCadTransform aboutZ = Identity();
    aboutZ.RotAboutAxis(90, 2);
    ExpectNear(0, 1, 0, aboutZ.xAxis());
    ExpectNear(-1, 0, 0, aboutZ.yAxis());
    EXPECT_EQ(aboutZ.GetTranslate(), Point(0, 0, 0));
    EXPECT_EQ(FlagsOf(aboutZ), 0x0EU) << "undetermined";
    CCadTransform aboutX = Identity();
    aboutX.RotAboutAxis(90, 0);
    ExpectNear(0, 0, 1, aboutX.yAxis());
    CCadTransform aboutY = Identity();
    aboutY.RotAboutAxis(90, 1);
    ExpectNear(1, 0, 0, aboutY.zAxis());
    CCadTransform aboutOther = Identity();
    aboutOther.RotAboutAxis(90, 7);
    EXPECT_EQ(StateOf(aboutOther), StateOf(aboutZ));
}

TEST(Transform, RotatesInItsLocalFrame)
{
    CCadTransform transform({1, 0, 0}, Point(5, 5, 5));
    transform.SetScale(2.0);
    transform.RotAboutAxis(30, 2);
    ExpectNear(1, 0, 0, transform.zAxis());
    EXPECT_EQ(transform.GetTranslate(), Point(5, 5, 5));
    ExpectNumbers(2, 2, 2, transform.GetScale());
}

TEST(Transform, KeepsThePivotOfARotation)
{
    const Point pivot(1, 2, 3);
    CCadTransform rotation = CCadTransform::GetRotateAboutVector(0.7, {1, -2, 0.5}, pivot);
    EXPECT_EQ(FlagsOf(rotation) & kValid, 0U);
    Point fixed;
    rotation.aaback(pivot, fixed);
    EXPECT_LT(fixed.distance(pivot), 1e-14);
    Point along = pivot + Vector(1, -2, 0.5);
    Point mapped;
    rotation.aaback(along, mapped);
    EXPECT_LT(mapped.distance(along), 1e-14) << "the line itself stays";
    EXPECT_TRUE(rotation.IsOrthoNormal());
    EXPECT_FALSE(rotation.IsMirrorTransform());

    CCadTransform about0 = CCadTransform::GetRotateAboutVector(0.7, {1, -2, 0.5}, Point(0, -0.0, 0));
    EXPECT_EQ(FlagsOf(about0), 0x0EU);
    CCadTransform aboutNaN = CCadTransform::GetRotateAboutVector(0.7, {1, -2, 0.5}, Point(0, kNaN, 0));
    EXPECT_TRUE(std::isnan(aboutNaN.GetTranslate().y())) << "NaN counts as a pivot";
}

class RandomTransforms : public ::testing::Test {
protected:
    Vector AnyVector() { return {m_numbers.Uniform(-10, 10), m_numbers.Uniform(-10, 10), m_numbers.Uniform(-10, 10)}; }
    Point AnyPoint()
    {
        const Vector v = AnyVector();
        return {v.x(), v.y(), v.z()};
    }
    double Factor() { return m_numbers.Uniform(0.5, 2); }
    CCadTransform Rigid() { return {AnyVector(), AnyVector(), AnyPoint()}; }
    CCadTransform Uniform()
    {
        CCadTransform transform = Rigid();
        transform.SetScale(Factor());
        return transform;
    }
    CCadTransform Stretched()
    {
        CCadTransform transform = Rigid();
        transform.SetScale({Factor(), Factor(), Factor()});
        return transform;
    }

    static constexpr int kRounds = 2000;
    static constexpr double kTolerance = 1e-11;
    test_support::NumberStream<double> m_numbers{20240917};
};

TEST_F(RandomTransforms, AreUndoneByTheirInverse)
{
    for (int round = 0; round < kRounds; ++round) {
        CCadTransform transform = round % 2 == 0 ? Uniform() : Stretched();
        const CCadTransform inverse = transform.GetInverse();
        const Point p = AnyPoint();
        Point there;
        Point back;
        transform.aaback(p, there);
        inverse.aaback(there, back);
        EXPECT_LT(back.distance(p), kTolerance);
        transform.aaforw(there, back);
        EXPECT_LT(back.distance(p), kTolerance);
    }
}

TEST_F(RandomTransforms, AreUndoneByTheirInverseWithSlantedAxes)
{
    for (int round = 0; round < kRounds; ++round) {
        CCadTransform transform = Stretched() * Rigid();
        if (std::fabs(transform.GetDeterminant()) < 0.1) {
            continue;
        }
        const CCadTransform inverse = transform.GetInverse();
        const Point p = AnyPoint();
        Point there;
        Point back;
        transform.aaback(p, there);
        inverse.aaback(there, back);
        EXPECT_LT(back.distance(p), kTolerance);
        transform.aaforw(there, back);
        EXPECT_LT(back.distance(p), kTolerance);
    }
}

TEST_F(RandomTransforms, ComposeAsTheirMapsDo)
{
    for (int round = 0; round < kRounds; ++round) {
        CCadTransform a = round % 2 == 0 ? Uniform() : Stretched();
        CCadTransform b = round % 3 == 0 ? Uniform() : Stretched();
        const CCadTransform product = a * b;
        const Point p = AnyPoint();
        Point step;
        a.aaback((b.aaback(p, step), step), step);
        Point direct;
        product.aaback(p, direct);
        EXPECT_LT(direct.distance(step), kTolerance);
    }
}

TEST_F(RandomTransforms, ComposeAssociatively)
{
    for (int round = 0; round < kRounds; ++round) {
        CCadTransform a = Uniform();
        CCadTransform b = Uniform();
        CCadTransform c = Uniform();
        CCadTransform left = (a * b) * c;
        CCadTransform right = a * (b * c);
        const Point p = AnyPoint();
        Point byLeft;
        Point byRight;
        left.aaback(p, byLeft);
        right.aaback(p, byRight);
        EXPECT_LT(byLeft.distance(byRight), kTolerance);
    }
}

TEST_F(RandomTransforms, ReturnFromTheFrameTheyWereTakenTo)
{
    for (int round = 0; round < kRounds; ++round) {
        const CCadTransform frame = Uniform();
        CCadTransform transform = Uniform();
        const CCadTransform original = transform;
        transform.TransformTo(frame);
        transform.TransformFrom(frame);
        EXPECT_TRUE(transform == original);
    }
}

TEST_F(RandomTransforms, SurviveTheirArrayForm)
{
    for (int round = 0; round < kRounds; ++round) {
        CCadTransform transform = Stretched();
        double numbers[12];
        transform.CopyToArray(numbers);
        const CCadTransform copy(numbers);
        EXPECT_TRUE(transform == copy);
        EXPECT_TRUE(copy.IsOrthoNormal());
    }
}

} // namespace
