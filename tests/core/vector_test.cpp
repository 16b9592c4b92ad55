#include <cadgeom/core/vector.h>
#include <cadgeom/core/vector2d.h>
#include <cadgeom/core/vector3d.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>
#include <type_traits>

#include "support/numbers.h"
#include "support/same_bits.h"

namespace {

using test_support::NumberStream;

template <class T, int N>
struct Instance {
    using Scalar = T;
    static constexpr int kAxes = N;
    using Vector = CadVector<T, N>;
};

template <class I>
class VectorOfEveryInstance : public ::testing::Test {
protected:
    using Scalar = typename I::Scalar;
    using Vector = typename I::Vector;
    static constexpr int N = I::kAxes;

    static Vector Filled(Scalar value)
    {
        Vector vector;
        for (int i = 0; i < N; ++i) {
            vector[i] = value;
        }
        return vector;
    }

    static Vector Random(NumberStream<Scalar>& numbers)
    {
        Vector vector;
        for (int i = 0; i < N; ++i) {
            vector[i] = numbers.Any();
        }
        return vector;
    }

    static Vector AlongAxis(int axis, Scalar value)
    {
        Vector vector = Vector::zero();
        vector[axis] = value;
        return vector;
    }
};

using Instances = ::testing::Types<Instance<float, 2>, Instance<float, 3>, Instance<double, 2>, Instance<double, 3>>;
TYPED_TEST_SUITE(VectorOfEveryInstance, Instances);

TYPED_TEST(VectorOfEveryInstance, HoldsItsComponentsAndNothingElse)
{
    using V = typename TestFixture::Vector;
    using T = typename TestFixture::Scalar;
    EXPECT_EQ(sizeof(V), sizeof(T) * static_cast<std::size_t>(TestFixture::N));
    EXPECT_TRUE(std::is_trivially_copyable_v<V>);
    EXPECT_TRUE(std::is_standard_layout_v<V>);
    EXPECT_EQ(int{V::NumAxes}, TestFixture::N);
    V vectors[2] = {TestFixture::Filled(T(1)), TestFixture::Filled(T(2))};
    EXPECT_EQ(vectors[0].data() + TestFixture::N, vectors[1].data());
    EXPECT_EQ(&vectors[1][TestFixture::N - 1], vectors[1].data() + TestFixture::N - 1);
}

TYPED_TEST(VectorOfEveryInstance, ReturnsOneZeroObject)
{
    using V = typename TestFixture::Vector;
    EXPECT_EQ(&V::zero(), &V::zero());
    EXPECT_TRUE(V::zero().isZero());
    for (int i = 0; i < TestFixture::N; ++i) {
        EXPECT_SAME_BITS(typename TestFixture::Scalar(0), V::zero()[i]);
    }
}

TYPED_TEST(VectorOfEveryInstance, SetsItselfToZeroAndAssigns)
{
    using T = typename TestFixture::Scalar;
    auto vector = TestFixture::Filled(T(3));
    auto copy = TestFixture::Filled(T(0));
    copy.assign(vector);
    EXPECT_EQ(copy[TestFixture::N - 1], T(3));
    vector.setZero();
    EXPECT_TRUE(vector.isZero());
}

TYPED_TEST(VectorOfEveryInstance, HasTheToleranceOfItsScalar)
{
    using T = typename TestFixture::Scalar;
    EXPECT_EQ(TestFixture::Vector::epsilon(), (std::is_same_v<T, float> ? T(0.0001F) : T(1e-6)));
}

TYPED_TEST(VectorOfEveryInstance, IsZeroOnlyForExactZerosOfEitherSign)
{
    using T = typename TestFixture::Scalar;
    EXPECT_TRUE(TestFixture::Filled(-T(0)).isZero());
    for (int axis = 0; axis < TestFixture::N; ++axis) {
        EXPECT_FALSE(TestFixture::AlongAxis(axis, std::numeric_limits<T>::denorm_min()).isZero());
        EXPECT_FALSE(TestFixture::AlongAxis(axis, std::numeric_limits<T>::quiet_NaN()).isZero());
    }
}

TYPED_TEST(VectorOfEveryInstance, IsAlmostZeroUpToAndIncludingTheTolerance)
{
    using T = typename TestFixture::Scalar;
    for (int axis = 0; axis < TestFixture::N; ++axis) {
        for (const T sign : {T(1), T(-1)}) {
            EXPECT_TRUE(TestFixture::AlongAxis(axis, sign * std::nextafter(T(0.25), T(0))).isAlmostZero(T(0.25)));
            EXPECT_TRUE(TestFixture::AlongAxis(axis, sign * T(0.25)).isAlmostZero(T(0.25)));
            EXPECT_FALSE(TestFixture::AlongAxis(axis, sign * std::nextafter(T(0.25), T(1))).isAlmostZero(T(0.25)));
        }
    }
}

TYPED_TEST(VectorOfEveryInstance, IsEqualUpToAndIncludingTheTolerance)
{
    using T = typename TestFixture::Scalar;
    const auto zero = TestFixture::Vector::zero();
    for (int axis = 0; axis < TestFixture::N; ++axis) {
        const auto at = TestFixture::AlongAxis(axis, T(0.25));
        const auto above = TestFixture::AlongAxis(axis, std::nextafter(T(0.25), T(1)));
        EXPECT_TRUE(at.isEqual(zero, T(0.25)));
        EXPECT_TRUE(zero.isEqual(at, T(0.25)));
        EXPECT_FALSE(above.isEqual(zero, T(0.25)));
        EXPECT_FALSE(zero.isEqual(above, T(0.25)));
    }
}

TYPED_TEST(VectorOfEveryInstance, ComparesEqualWithinEpsilonAndUnequalBeyond)
{
    using T = typename TestFixture::Scalar;
    const T epsilon = TestFixture::Vector::epsilon();
    const auto zero = TestFixture::Vector::zero();
    for (int axis = 0; axis < TestFixture::N; ++axis) {
        const auto at = TestFixture::AlongAxis(axis, epsilon);
        const auto above = TestFixture::AlongAxis(axis, std::nextafter(epsilon, T(1)));
        EXPECT_TRUE(at == zero);
        EXPECT_FALSE(at != zero);
        EXPECT_FALSE(above == zero);
        EXPECT_TRUE(above != zero);
    }
}

TYPED_TEST(VectorOfEveryInstance, NeverDiffersInNaN)
{
    using T = typename TestFixture::Scalar;
    const auto nan = TestFixture::Filled(std::numeric_limits<T>::quiet_NaN());
    EXPECT_TRUE(nan.isAlmostZero(T(0)));
    EXPECT_TRUE(nan == TestFixture::Filled(T(7)));
    EXPECT_FALSE(nan != TestFixture::Filled(T(7)));
    EXPECT_EQ(nan.compare(TestFixture::Filled(T(7))), 0);
    EXPECT_FALSE(nan < TestFixture::Filled(T(7)));
}

TYPED_TEST(VectorOfEveryInstance, OrdersByTheFirstComponentThatDiffers)
{
    using T = typename TestFixture::Scalar;
    const T epsilon = TestFixture::Vector::epsilon();
    const auto zero = TestFixture::Vector::zero();
    for (int axis = 0; axis < TestFixture::N; ++axis) {
        const auto above = TestFixture::AlongAxis(axis, std::nextafter(epsilon, T(1)));
        const auto below = TestFixture::AlongAxis(axis, -std::nextafter(epsilon, T(1)));
        EXPECT_EQ(above.compare(zero), 1);
        EXPECT_EQ(below.compare(zero), -1);
        EXPECT_TRUE(below < zero);
        EXPECT_FALSE(above < zero);
        EXPECT_EQ(TestFixture::AlongAxis(axis, epsilon).compare(zero), 0);
        EXPECT_FALSE(zero < zero);
    }
    auto small = TestFixture::AlongAxis(0, T(-1));
    small[1] = T(100);
    EXPECT_EQ(small.compare(zero), -1) << "later components do not matter once one differs";
}

TYPED_TEST(VectorOfEveryInstance, DoesArithmeticComponentByComponent)
{
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(101);
    for (int round = 0; round < 2000; ++round) {
        const auto a = TestFixture::Random(numbers);
        const auto b = TestFixture::Random(numbers);
        const T s = numbers.Any();
        auto sum = a;
        sum += b;
        auto difference = a;
        difference -= b;
        auto product = a;
        product *= s;
        auto quotient = a;
        quotient /= s;
        auto opposite = a;
        opposite.negate();
        for (int i = 0; i < TestFixture::N; ++i) {
            ASSERT_SAME_BITS(a[i] + b[i], (a + b)[i]);
            ASSERT_SAME_BITS(a[i] + b[i], sum[i]);
            ASSERT_SAME_BITS(a[i] - b[i], (a - b)[i]);
            ASSERT_SAME_BITS(a[i] - b[i], difference[i]);
            ASSERT_SAME_BITS(a[i] * s, (a * s)[i]);
            ASSERT_SAME_BITS(a[i] * s, product[i]);
            ASSERT_SAME_BITS(a[i] / s, (a / s)[i]);
            ASSERT_SAME_BITS(a[i] / s, quotient[i]);
            ASSERT_SAME_BITS(-a[i], (-a)[i]);
            ASSERT_SAME_BITS(-a[i], opposite[i]);
            ASSERT_SAME_BITS(a[i] * b[i], a.product(b)[i]);
        }
    }
}

TYPED_TEST(VectorOfEveryInstance, SumsProductsFromZeroInAxisOrder)
{
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(102);
    for (int round = 0; round < 2000; ++round) {
        const auto a = TestFixture::Random(numbers);
        const auto b = TestFixture::Random(numbers);
        CadPoint<T, TestFixture::N> point;
        T dot = T(0);
        T square = T(0);
        for (int i = 0; i < TestFixture::N; ++i) {
            point[i] = b[i];
            const T product = a[i] * b[i];
            dot = dot + product;
            const T squared = a[i] * a[i];
            square = square + squared;
        }
        ASSERT_SAME_BITS(dot, a.dot(b));
        ASSERT_SAME_BITS(dot, a * b);
        ASSERT_SAME_BITS(dot, a.dotPoint(point));
        ASSERT_SAME_BITS(square, a.lengthSquared());
        ASSERT_SAME_BITS(std::sqrt(square), a.length());
        ASSERT_SAME_BITS(std::sqrt(square), a.norm());
        auto moved = a;
        moved.addToThis(point);
        for (int i = 0; i < TestFixture::N; ++i) {
            ASSERT_SAME_BITS(a[i] + b[i], moved[i]);
        }
    }
}

TYPED_TEST(VectorOfEveryInstance, GivesPositiveZeroForADotProductOfNegativeZeros)
{
    using T = typename TestFixture::Scalar;
    const auto negative = TestFixture::Filled(-T(0));
    const auto ones = TestFixture::Filled(T(1));
    EXPECT_SAME_BITS(T(0), negative.dot(ones));
}

TYPED_TEST(VectorOfEveryInstance, NormalizesTheZeroVectorToTheLastAxis)
{
    using T = typename TestFixture::Scalar;
    auto vector = TestFixture::Vector::zero();
    EXPECT_SAME_BITS(T(0), vector.normalize());
    for (int i = 0; i < TestFixture::N; ++i) {
        EXPECT_SAME_BITS(i == TestFixture::N - 1 ? T(1) : T(0), vector[i]);
    }
}

TYPED_TEST(VectorOfEveryInstance, KeepsComponentsWhoseSquaresVanishWhenNormalizing)
{
    using T = typename TestFixture::Scalar;
    const T tiny = std::numeric_limits<T>::denorm_min();
    auto vector = TestFixture::AlongAxis(0, tiny);
    EXPECT_SAME_BITS(T(0), vector.normalize());
    EXPECT_SAME_BITS(tiny, vector[0]);
    EXPECT_SAME_BITS(T(1), vector[TestFixture::N - 1]);
}

TYPED_TEST(VectorOfEveryInstance, NormalizesByDividingEachComponentByTheLength)
{
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(103);
    for (int round = 0; round < 2000; ++round) {
        auto vector = TestFixture::Filled(T(0));
        for (int i = 0; i < TestFixture::N; ++i) {
            vector[i] = numbers.Uniform(-10, 10);
        }
        const auto before = vector;
        const T length = vector.normalize();
        ASSERT_SAME_BITS(before.length(), length);
        for (int i = 0; i < TestFixture::N; ++i) {
            ASSERT_SAME_BITS(static_cast<T>(static_cast<double>(before[i]) / static_cast<double>(length)), vector[i]);
        }
        ASSERT_TRUE(vector.isNormalized());
    }
}

TYPED_TEST(VectorOfEveryInstance, RescalesAVectorWhoseSquaresOverflow)
{
    using T = typename TestFixture::Scalar;
    const T large = std::is_same_v<T, float> ? T(1e30) : T(1e300);
    auto vector = TestFixture::Vector::zero();
    vector[0] = large;
    vector[1] = large;
    EXPECT_SAME_BITS(std::sqrt(T(2)), vector.normalize());
    EXPECT_SAME_BITS(T(1) / std::sqrt(T(2)), vector[0]);
    EXPECT_SAME_BITS(T(1) / std::sqrt(T(2)), vector[1]);
}

TYPED_TEST(VectorOfEveryInstance, ReplacesInfinitiesBySignsAndFiniteComponentsByZero)
{
    using T = typename TestFixture::Scalar;
    const T infinity = std::numeric_limits<T>::infinity();
    auto vector = TestFixture::Filled(T(5));
    vector[0] = infinity;
    vector[TestFixture::N - 1] = -infinity;
    EXPECT_SAME_BITS(std::sqrt(T(2)), vector.normalize());
    EXPECT_SAME_BITS(T(1) / std::sqrt(T(2)), vector[0]);
    EXPECT_SAME_BITS(T(-1) / std::sqrt(T(2)), vector[TestFixture::N - 1]);
    if (TestFixture::N == 3) {
        EXPECT_SAME_BITS(T(0), vector[1]);
    }
}

TYPED_TEST(VectorOfEveryInstance, TakesTheSignOfNaNWhenNormalizing)
{
    using T = typename TestFixture::Scalar;
    const T nan = std::numeric_limits<T>::quiet_NaN();
    auto vector = TestFixture::AlongAxis(1, std::copysign(nan, T(-1)));
    EXPECT_SAME_BITS(T(1), vector.normalize());
    EXPECT_SAME_BITS(T(-1), vector[1]);
    EXPECT_SAME_BITS(T(0), vector[0]);
}

TYPED_TEST(VectorOfEveryInstance, IsNormalizedWithinTheSinglePrecisionEpsilon)
{
    using T = typename TestFixture::Scalar;
    constexpr T kTolerance = T(1.1920928955078125e-7);
    const T at = T(1) - kTolerance;
    EXPECT_TRUE(TestFixture::AlongAxis(0, at).isNormalized());
    EXPECT_FALSE(TestFixture::AlongAxis(0, T(1) - T(2) * kTolerance).isNormalized());
    EXPECT_TRUE(TestFixture::AlongAxis(1, T(1) + kTolerance).isNormalized());
    EXPECT_FALSE(TestFixture::AlongAxis(1, T(1) + T(2) * kTolerance).isNormalized());
    EXPECT_FALSE(TestFixture::Filled(std::numeric_limits<T>::quiet_NaN()).isNormalized());
}

TYPED_TEST(VectorOfEveryInstance, FindsTheAxisOfTheLargestAndSmallestComponentWithTheLowestIndexOnTies)
{
    using T = typename TestFixture::Scalar;
    auto vector = TestFixture::Filled(T(-3));
    int axis = 9;
    EXPECT_EQ(vector.maxAbsoluteValue(&axis), T(3));
    EXPECT_EQ(axis, 0);
    axis = 9;
    EXPECT_EQ(vector.minAbsoluteValue(&axis), T(3));
    EXPECT_EQ(axis, 0);
    vector[1] = T(4);
    EAxis named = eZAxis;
    EXPECT_EQ(vector.maxAbsoluteValue(&named), T(4));
    EXPECT_EQ(named, eYAxis);
    vector[1] = T(-1);
    EXPECT_EQ(vector.minAbsoluteValue(&named), T(1));
    EXPECT_EQ(named, eYAxis);
    EXPECT_EQ(vector.minAbsoluteValue(static_cast<int*>(nullptr)), T(1));
    EXPECT_EQ(vector.maxAbsoluteValue(static_cast<EAxis*>(nullptr)), T(3));
}

TYPED_TEST(VectorOfEveryInstance, NeverReplacesARunningExtremeByNaN)
{
    using T = typename TestFixture::Scalar;
    auto vector = TestFixture::AlongAxis(1, std::numeric_limits<T>::quiet_NaN());
    int axis = 9;
    EXPECT_EQ(vector.maxAbsoluteValue(&axis), T(0));
    EXPECT_EQ(axis, 0);
    vector[0] = vector[1];
    EXPECT_TRUE(std::isnan(vector.minAbsoluteValue(&axis)));
    EXPECT_EQ(axis, 0);
}

TYPED_TEST(VectorOfEveryInstance, IsParallelToItsOppositeButNotOfEqualDirection)
{
    using T = typename TestFixture::Scalar;
    const auto a = TestFixture::AlongAxis(0, T(1));
    const auto b = TestFixture::AlongAxis(0, T(-2));
    EXPECT_TRUE(a.isParallel(b, T(1)));
    EXPECT_FALSE(a.isVectorDirectionEqual(b, T(1)));
    EXPECT_TRUE(a.isVectorDirectionEqual(-b, T(1)));
    EXPECT_FALSE(a.isOrthogonal(b, T(1)));
    EXPECT_TRUE(a.isOrthogonal(TestFixture::AlongAxis(1, T(5)), T(1)));
}

TYPED_TEST(VectorOfEveryInstance, HasNoAngleToAZeroVector)
{
    using T = typename TestFixture::Scalar;
    const auto zero = TestFixture::Vector::zero();
    const auto a = TestFixture::Filled(T(1));
    for (const T tolerance : {T(0), T(1), T(90), T(180)}) {
        EXPECT_FALSE(zero.isParallel(a, tolerance));
        EXPECT_FALSE(a.isParallel(zero, tolerance));
        EXPECT_FALSE(zero.isOrthogonal(a, tolerance));
        EXPECT_FALSE(a.isOrthogonal(zero, tolerance));
        EXPECT_FALSE(zero.isVectorDirectionEqual(a, tolerance));
        EXPECT_FALSE(zero.isVectorDirectionEqual(zero, tolerance));
    }
}

TYPED_TEST(VectorOfEveryInstance, SeparatesAnglesJustInsideAndJustOutsideTheTolerance)
{
    using T = typename TestFixture::Scalar;
    const auto turned = [](double degrees) {
        auto vector = TestFixture::Vector::zero();
        vector[0] = static_cast<T>(std::cos(degrees * 0.017453292519943295));
        vector[1] = static_cast<T>(std::sin(degrees * 0.017453292519943295));
        return vector;
    };
    const auto a = turned(0);
    for (const double tolerance : {1.0, 5.0, 30.0}) {
        const T t = static_cast<T>(tolerance);
        EXPECT_TRUE(a.isParallel(turned(tolerance - 0.01), t));
        EXPECT_FALSE(a.isParallel(turned(tolerance + 0.01), t));
        EXPECT_TRUE(a.isParallel(turned(180 - tolerance + 0.01), t));
        EXPECT_TRUE(a.isVectorDirectionEqual(turned(tolerance - 0.01), t));
        EXPECT_FALSE(a.isVectorDirectionEqual(turned(tolerance + 0.01), t));
        EXPECT_FALSE(a.isVectorDirectionEqual(turned(180), t));
        EXPECT_TRUE(a.isOrthogonal(turned(90 - tolerance + 0.01), t));
        EXPECT_TRUE(a.isOrthogonal(turned(90 + tolerance - 0.01), t));
        EXPECT_FALSE(a.isOrthogonal(turned(90 - tolerance - 0.01), t));
    }
}

TYPED_TEST(VectorOfEveryInstance, ComparesSquaredCosinesAsStatedForRandomVectorsAndChangingTolerances)
{
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(104);
    const auto squaredCosine = [](T degrees) {
        const T cosine = std::cos(static_cast<T>(static_cast<double>(degrees) * 0.017453292519943295));
        return cosine * cosine;
    };
    for (int round = 0; round < 4000; ++round) {
        const auto a = TestFixture::Random(numbers);
        auto b = TestFixture::Random(numbers);
        if (numbers.Integer(0, 2) == 0) {
            b = a * numbers.Uniform(-2, 2);
        }
        const T tolerance = numbers.Integer(0, 3) == 0 ? numbers.Any() : T(numbers.Integer(0, 3));
        const T dot = a.dot(b);
        const T lengths = a.lengthSquared() * b.lengthSquared();
        const bool hasZero = dot * dot * TestFixture::Vector::epsilon() >= lengths;
        const T ratio = dot * dot / lengths;
        const bool isParallel = !hasZero && ratio >= squaredCosine(tolerance);
        ASSERT_EQ(a.isParallel(b, tolerance), isParallel);
        ASSERT_EQ(a.isVectorDirectionEqual(b, tolerance), !(dot < T(0)) && isParallel);
        ASSERT_EQ(a.isOrthogonal(b, tolerance), !hasZero && ratio <= squaredCosine(T(90) - tolerance));
    }
}

TYPED_TEST(VectorOfEveryInstance, UsesTheCosineOfAZeroToleranceOnTheFirstCallOfAThread)
{
    using T = typename TestFixture::Scalar;
    bool isParallel = true;
    bool isEqual = true;
    bool isOrthogonal = true;
    std::thread([&] {
        const auto a = TestFixture::AlongAxis(0, T(1));
        auto b = a;
        b[1] = T(0.5);
        isParallel = a.isParallel(b, T(0));
        isEqual = a.isVectorDirectionEqual(b, T(0));
        isOrthogonal = a.isOrthogonal(b, T(0));
    }).join();
    EXPECT_FALSE(isParallel);
    EXPECT_FALSE(isEqual);
    EXPECT_FALSE(isOrthogonal);
}

TYPED_TEST(VectorOfEveryInstance, NeverPairsOneThreadsToleranceWithAnothersCosine)
{
    using T = typename TestFixture::Scalar;
    const auto a = TestFixture::AlongAxis(0, T(1));
    auto b = a;
    b[1] = T(0.1);
    int wrong = 0;
    const auto hammer = [&a, &b](T tolerance, bool expected, int& errors) {
        for (int i = 0; i < 20000; ++i) {
            errors += a.isParallel(b, tolerance) != expected || a.isVectorDirectionEqual(b, tolerance) != expected;
        }
    };
    int wrongOfOther = 0;
    std::thread other([&] { hammer(T(1), false, wrongOfOther); });
    hammer(T(10), true, wrong);
    other.join();
    EXPECT_EQ(wrong + wrongOfOther, 0);
}

TYPED_TEST(VectorOfEveryInstance, ProjectsOntoAVector)
{
    using T = typename TestFixture::Scalar;
    auto a = TestFixture::Filled(T(3));
    EXPECT_EQ(a.projectOntoVectorParam(TestFixture::AlongAxis(0, T(2))), T(1.5));
    const auto projected = a.projectOntoVector(TestFixture::AlongAxis(0, T(2)));
    EXPECT_EQ(projected[0], T(3));
    EXPECT_EQ(projected[1], T(0));
}

TYPED_TEST(VectorOfEveryInstance, ProjectsOntoNothingWhenTheSquaredLengthIsAtMostTheThreshold)
{
    using T = typename TestFixture::Scalar;
    const T threshold = std::is_same_v<T, float> ? T(1e-8F) : T(1e-12);
    const T length = std::sqrt(threshold);
    auto direction = TestFixture::AlongAxis(0, length);
    while (direction.lengthSquared() > threshold) {
        direction[0] = std::nextafter(direction[0], T(0));
    }
    EXPECT_EQ(TestFixture::Filled(T(1)).projectOntoVectorParam(direction), T(0));
    while (!(direction.lengthSquared() > threshold)) {
        direction[0] = std::nextafter(direction[0], T(1));
    }
    EXPECT_EQ(TestFixture::Filled(T(1)).projectOntoVectorParam(direction), direction[0] / direction.lengthSquared());
}

TYPED_TEST(VectorOfEveryInstance, CrossesPerpendicularlyToBothAndByTheFormula)
{
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(105);
    for (int round = 0; round < 1000; ++round) {
        const auto a = TestFixture::Random(numbers);
        const auto b = TestFixture::Random(numbers);
        const CadVector<T, 3> cross = a.cross(b);
        const auto minor = [&](int i, int j) {
            const T first = a[i] * b[j];
            const T second = a[j] * b[i];
            return first - second;
        };
        ASSERT_SAME_BITS(minor(0, 1), cross[2]);
        if constexpr (TestFixture::N == 3) {
            ASSERT_SAME_BITS(minor(1, 2), cross[0]);
            ASSERT_SAME_BITS(minor(2, 0), cross[1]);
        } else {
            ASSERT_SAME_BITS(T(0), cross[0]);
            ASSERT_SAME_BITS(T(0), cross[1]);
        }
        CadVector<T, 3> normalized = cross;
        normalized.normalize();
        for (int i = 0; i < 3; ++i) {
            ASSERT_SAME_BITS(normalized[i], a.crossAndNormalize(b)[i]);
        }
    }
}

TYPED_TEST(VectorOfEveryInstance, CrossesParallelVectorsToTheZAxisWhenNormalized)
{
    using T = typename TestFixture::Scalar;
    const auto a = TestFixture::Filled(T(2));
    const CadVector<T, 3> normal = a.crossAndNormalize(a);
    EXPECT_SAME_BITS(T(0), normal[0]);
    EXPECT_SAME_BITS(T(0), normal[1]);
    EXPECT_SAME_BITS(T(1), normal[2]);
}

TEST(Vector, KeepsDoublesOneMicrounitApartEqualAndSlightlyMoreUnequal)
{
    const CadVector3d<double> a(1, 2, 0);
    EXPECT_TRUE(a == CadVector3d<double>(1, 2, 1e-6));
    EXPECT_FALSE(a == CadVector3d<double>(1, 2, 1.1e-6));
    EXPECT_EQ(a.compare(CadVector3d<double>(1, 2, 1.1e-6)), -1);
    EXPECT_EQ(CadVector3d<double>(1, 2, 1.1e-6).compare(a), 1);
}

TEST(Vector, FindsTheLargestComponentOfMinusThreeThreeOneAtTheFirstAxis)
{
    int axis = -1;
    EXPECT_EQ(CadVector3d<double>(-3, 3, 1).maxAbsoluteValue(&axis), 3);
    EXPECT_EQ(axis, 0);
}

TEST(Vector, KeepsTheZerosOfEveryInstanceApart)
{
    EXPECT_NE(static_cast<const void*>(&CadVector<double, 3>::zero()),
              static_cast<const void*>(&CadPoint<double, 3>::zero()));
    EXPECT_NE(static_cast<const void*>(&CadVector<double, 3>::zero()),
              static_cast<const void*>(&CadVector<float, 3>::zero()));
}

} // namespace
