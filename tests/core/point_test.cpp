#include <cadgeom/core/point.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

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
class PointOfEveryInstance : public ::testing::Test {
protected:
    using Scalar = typename I::Scalar;
    static constexpr int N = I::kAxes;
    using Point = CadPoint<Scalar, N>;
    using Vector = CadVector<Scalar, N>;

    static Point At(Scalar x, Scalar y)
    {
        Point point = Point::zero();
        point[0] = x;
        point[1] = y;
        return point;
    }

    template <class P>
    static P Random(NumberStream<Scalar>& numbers)
    {
        P value;
        for (int i = 0; i < N; ++i) {
            value[i] = numbers.Any();
        }
        return value;
    }

    static Scalar SumOfSquares(const Vector& v)
    {
        Scalar sum = 0;
        for (int i = 0; i < N; ++i) {
            const Scalar square = v[i] * v[i];
            sum = sum + square;
        }
        return sum;
    }

    static Scalar Threshold() { return std::is_same_v<Scalar, float> ? Scalar(1e-8F) : Scalar(1e-12); }

    /// The longest direction along x whose squared length is at most the threshold, and the next longer one.
    static Scalar LongestDegenerate()
    {
        Scalar length = std::sqrt(Threshold());
        while (length * length > Threshold()) {
            length = std::nextafter(length, Scalar(0));
        }
        while (std::nextafter(length, Scalar(1)) * std::nextafter(length, Scalar(1)) <= Threshold()) {
            length = std::nextafter(length, Scalar(1));
        }
        return length;
    }
};

using Instances = ::testing::Types<Instance<float, 2>, Instance<float, 3>, Instance<double, 2>, Instance<double, 3>>;
TYPED_TEST_SUITE(PointOfEveryInstance, Instances);

TYPED_TEST(PointOfEveryInstance, HoldsItsCoordinatesAndNothingElse)
{
    using P = typename TestFixture::Point;
    using T = typename TestFixture::Scalar;
    EXPECT_EQ(sizeof(P), sizeof(T) * static_cast<std::size_t>(TestFixture::N));
    EXPECT_TRUE(std::is_trivially_copyable_v<P>);
    EXPECT_TRUE(std::is_standard_layout_v<P>);
    EXPECT_EQ(int{P::NumAxes}, TestFixture::N);
    EXPECT_EQ(&P::zero(), &P::zero());
    EXPECT_TRUE(P::zero().isZero());
}

TYPED_TEST(PointOfEveryInstance, MovesScalesAndAddsCoordinateByCoordinate)
{
    using P = typename TestFixture::Point;
    using V = typename TestFixture::Vector;
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(201);
    for (int round = 0; round < 2000; ++round) {
        const P p = TestFixture::template Random<P>(numbers);
        const P q = TestFixture::template Random<P>(numbers);
        const V v = TestFixture::template Random<V>(numbers);
        const T s = numbers.Any();
        P moved = p;
        moved += v;
        P back = p;
        back -= v;
        P scaled = p;
        scaled *= s;
        P divided = p;
        divided /= s;
        P accumulated = p;
        accumulated.addToThis(q);
        P assigned;
        assigned.assign(p);
        T dot = 0;
        for (int i = 0; i < TestFixture::N; ++i) {
            ASSERT_SAME_BITS(p[i] - q[i], (p - q)[i]);
            ASSERT_SAME_BITS(p[i] + v[i], (p + v)[i]);
            ASSERT_SAME_BITS(p[i] + v[i], moved[i]);
            ASSERT_SAME_BITS(p[i] - v[i], (p - v)[i]);
            ASSERT_SAME_BITS(p[i] - v[i], back[i]);
            ASSERT_SAME_BITS(p[i] * s, (p * s)[i]);
            ASSERT_SAME_BITS(p[i] * s, scaled[i]);
            ASSERT_SAME_BITS(p[i] / s, (p / s)[i]);
            ASSERT_SAME_BITS(p[i] / s, divided[i]);
            ASSERT_SAME_BITS(-p[i], (-p)[i]);
            ASSERT_SAME_BITS(p[i] + q[i], p.add(q)[i]);
            ASSERT_SAME_BITS(p[i] + q[i], accumulated[i]);
            ASSERT_SAME_BITS(p[i], assigned[i]);
            const T product = p[i] * q[i];
            dot = dot + product;
        }
        ASSERT_SAME_BITS(dot, p.dotPoint(q));
        ASSERT_SAME_BITS(TestFixture::SumOfSquares(p - q), p.distanceSquared(q));
        ASSERT_SAME_BITS(std::sqrt(TestFixture::SumOfSquares(p - q)), p.distance(q));
    }
}

TYPED_TEST(PointOfEveryInstance, ComparesWithinItsToleranceAsVectorsDo)
{
    using P = typename TestFixture::Point;
    using V = typename TestFixture::Vector;
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(202);
    for (int round = 0; round < 2000; ++round) {
        P p = TestFixture::template Random<P>(numbers);
        P q = TestFixture::template Random<P>(numbers);
        if (round % 2 == 0) {
            q = p;
            q[round / 2 % TestFixture::N] += P::epsilon() * T(numbers.Integer(-2, 2));
        }
        V v;
        V w;
        for (int i = 0; i < TestFixture::N; ++i) {
            v[i] = p[i];
            w[i] = q[i];
        }
        const T tolerance = numbers.Any();
        ASSERT_EQ(p.isEqual(q, tolerance), v.isEqual(w, tolerance));
        ASSERT_EQ(p == q, v == w);
        ASSERT_EQ(p != q, v != w);
        ASSERT_EQ(p.compare(q), v.compare(w));
        ASSERT_EQ(p < q, v < w);
        ASSERT_EQ(p.isZero(), v.isZero());
        ASSERT_EQ(p.isAlmostZero(tolerance), v.isAlmostZero(tolerance));
        ASSERT_SAME_BITS(v.maxAbsoluteValue(), p.maxAbsoluteValue());
        p.setZero();
        ASSERT_TRUE(p.isZero());
    }
}

TYPED_TEST(PointOfEveryInstance, ProjectsOntoALineWithoutClamping)
{
    using T = typename TestFixture::Scalar;
    const auto origin = TestFixture::At(T(1), T(0));
    const auto direction = TestFixture::At(T(2), T(0)) - TestFixture::Point::zero();
    const auto p = TestFixture::At(T(9), T(3));
    EXPECT_EQ(p.projectOntoLineParam(origin, direction), T(4));
    EXPECT_EQ(p.projectOntoLine(origin, direction)[0], T(9));
    EXPECT_EQ(p.projectOntoLine(origin, direction)[1], T(0));
    EXPECT_EQ(p.distanceSquaredToLine(origin, direction), T(9));
    EXPECT_EQ(p.distanceSquaredToLine(origin, origin + direction), T(9));
    EXPECT_EQ(TestFixture::At(T(-3), T(3)).projectOntoLineParam(origin, direction), T(-2));
}

TYPED_TEST(PointOfEveryInstance, ProjectsOntoTheFirstPointOfALineWithoutDirection)
{
    using T = typename TestFixture::Scalar;
    const T length = TestFixture::LongestDegenerate();
    const auto origin = TestFixture::Point::zero();
    const auto p = TestFixture::At(T(3), T(4));
    const auto shortest = TestFixture::At(length, T(0));
    const auto longer = TestFixture::At(std::nextafter(length, T(1)), T(0));
    EXPECT_EQ(p.projectOntoLineParam(origin, shortest - origin), T(0));
    EXPECT_EQ(p.distanceSquaredToLine(origin, shortest), T(25));
    EXPECT_EQ(p.distanceSquaredToLineSegment(origin, shortest), T(25));
    EXPECT_GT(p.projectOntoLineParam(origin, longer - origin), T(0));
    EXPECT_LT(p.distanceSquaredToLine(origin, longer), T(17));
    EXPECT_LT(p.distanceSquaredToLineSegment(origin, longer), T(25));
}

TYPED_TEST(PointOfEveryInstance, ClampsTheFootToTheSegment)
{
    using P = typename TestFixture::Point;
    using T = typename TestFixture::Scalar;
    const P start = TestFixture::At(T(0), T(0));
    const P end = TestFixture::At(T(4), T(0));
    struct Case {
        T x, parameter, footX, squared;
    };
    for (const Case& c :
         {Case{T(-3), T(0), T(0), T(25)}, Case{T(0), T(0), T(0), T(16)}, Case{T(1), T(0.25), T(1), T(16)},
          Case{T(4), T(1), T(4), T(16)}, Case{T(7), T(1), T(4), T(25)}}) {
        const P p = TestFixture::At(c.x, T(4));
        P foot = TestFixture::At(T(99), T(99));
        T squared = T(99);
        EXPECT_EQ(p.projectOntoLineSegment(start, end, foot, squared), c.parameter);
        EXPECT_EQ(foot[0], c.footX);
        EXPECT_EQ(foot[1], T(0));
        EXPECT_EQ(squared, c.squared);
        EXPECT_EQ(p.distanceSquaredToLineSegment(start, end), c.squared);
    }
}

TYPED_TEST(PointOfEveryInstance, WritesFootAndDistanceForASegmentOfOnePoint)
{
    using P = typename TestFixture::Point;
    using T = typename TestFixture::Scalar;
    const P start = TestFixture::At(T(1), T(2));
    P foot = P::zero();
    T squared = T(99);
    EXPECT_EQ(TestFixture::At(T(1), T(5)).projectOntoLineSegment(start, start, foot, squared), T(0));
    EXPECT_EQ(foot[0], T(1));
    EXPECT_EQ(foot[1], T(2));
    EXPECT_EQ(squared, T(9));
}

TYPED_TEST(PointOfEveryInstance, CarriesNaNThroughASegmentProjection)
{
    using P = typename TestFixture::Point;
    using T = typename TestFixture::Scalar;
    P foot = P::zero();
    T squared = T(0);
    const P start = TestFixture::At(T(0), T(0));
    const P end = TestFixture::At(T(4), T(0));
    const T parameter =
        TestFixture::At(std::numeric_limits<T>::quiet_NaN(), T(0)).projectOntoLineSegment(start, end, foot, squared);
    EXPECT_TRUE(std::isnan(parameter));
    EXPECT_TRUE(std::isnan(foot[0]));
    EXPECT_TRUE(std::isnan(squared));
}

TYPED_TEST(PointOfEveryInstance, MayWriteTheFootOverItsArguments)
{
    using P = typename TestFixture::Point;
    using T = typename TestFixture::Scalar;
    const P start = TestFixture::At(T(0), T(0));
    const P end = TestFixture::At(T(4), T(0));
    P p = TestFixture::At(T(1), T(3));
    T squared = T(0);
    EXPECT_EQ(p.projectOntoLineSegment(start, end, p, squared), T(0.25));
    EXPECT_EQ(p[1], T(0));
    EXPECT_EQ(squared, T(9));
}

TYPED_TEST(PointOfEveryInstance, FollowsTheStepsOfProjectionBitForBit)
{
    using P = typename TestFixture::Point;
    using V = typename TestFixture::Vector;
    using T = typename TestFixture::Scalar;
    NumberStream<T> numbers(203);
    for (int round = 0; round < 5000; ++round) {
        const P p = TestFixture::template Random<P>(numbers);
        const P a = TestFixture::template Random<P>(numbers);
        const P b = round % 16 == 0 ? a : TestFixture::template Random<P>(numbers);
        const V d = b - a;
        const T squaredLength = TestFixture::SumOfSquares(d);
        const bool isDegenerate = squaredLength <= TestFixture::Threshold();
        const T t = isDegenerate ? T(0) : (p - a).dot(d) / squaredLength;
        const P onLine = a + d * t;
        ASSERT_SAME_BITS(t, p.projectOntoLineParam(a, d));
        ASSERT_SAME_BITS(TestFixture::SumOfSquares(onLine - p), p.distanceSquaredToLine(a, d));
        ASSERT_SAME_BITS(TestFixture::SumOfSquares(onLine - p), p.distanceSquaredToLine(a, b));
        P expectedFoot = onLine;
        T expectedParameter = t;
        if (isDegenerate || t <= T(0)) {
            expectedFoot = a;
            expectedParameter = T(0);
        } else if (t >= T(1)) {
            expectedFoot = b;
            expectedParameter = T(1);
        }
        P foot;
        T squared;
        ASSERT_SAME_BITS(expectedParameter, p.projectOntoLineSegment(a, b, foot, squared));
        ASSERT_SAME_BITS(TestFixture::SumOfSquares(p - expectedFoot), squared);
        ASSERT_SAME_BITS(TestFixture::SumOfSquares(p - expectedFoot), p.distanceSquaredToLineSegment(a, b));
        for (int i = 0; i < TestFixture::N; ++i) {
            ASSERT_SAME_BITS(onLine[i], p.projectOntoLine(a, d)[i]);
            ASSERT_SAME_BITS(expectedFoot[i], foot[i]);
        }
    }
}

template <class S>
class NamedForms : public ::testing::Test {};
using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(NamedForms, Scalars);

TYPED_TEST(NamedForms, NameTheComponentsOfTheirBase)
{
    using T = TypeParam;
    CadPoint2d<T> p2(T(1), T(2));
    CadVector2d<T> v2(T(1), T(2));
    CadPoint3d<T> p3(T(1), T(2), T(3));
    CadVector3d<T> v3(T(1), T(2), T(3));
    EXPECT_EQ(&p2.x(), &p2.u());
    EXPECT_EQ(&p2.y(), &p2.v());
    EXPECT_EQ(&v2.x(), &v2.u());
    EXPECT_EQ(&v2.y(), &v2.v());
    EXPECT_EQ(&v3.x(), &v3.i());
    EXPECT_EQ(&v3.y(), &v3.j());
    EXPECT_EQ(&v3.z(), &v3.k());
    p3.z() = T(7);
    EXPECT_EQ(p3[2], T(7));
    EXPECT_EQ(&p3.x(), p3.data());
    const CadVector3d<T> constant(T(4), T(5), T(6));
    EXPECT_EQ(constant.i() + constant.y() + constant.k(), T(15));
    p3.set(T(8), T(9), T(10));
    EXPECT_EQ(p3.y(), T(9));
    p3.assign(T(1), T(2), T(3));
    EXPECT_EQ(p3.y(), T(2));
    v2.assign(CadVector<T, 2>::zero());
    EXPECT_TRUE(v2.isZero());
}

TYPED_TEST(NamedForms, AreTheirBaseInBothDirections)
{
    using T = TypeParam;
    EXPECT_EQ(sizeof(CadPoint3d<T>), 3 * sizeof(T));
    EXPECT_EQ(sizeof(CadVector2d<T>), 2 * sizeof(T));
    EXPECT_TRUE(std::is_trivially_copyable_v<CadPoint3d<T>>);
    const CadPoint3d<T> p(T(1), T(2), T(3));
    const CadPoint<T, 3> base = p;
    const CadPoint3d<T> back = base;
    EXPECT_EQ(back.z(), T(3));
    const CadVector3d<T> difference = back - CadPoint3d<T>(T(1), T(1), T(1));
    EXPECT_EQ(difference.z(), T(2));
    const CadPoint3d<T> moved = p + difference * T(2);
    EXPECT_EQ(moved.z(), T(7));
}

TYPED_TEST(NamedForms, HaveOneObjectForEachAxis)
{
    using T = TypeParam;
    using Vector = CadVector3d<T>;
    EXPECT_EQ(&Vector::xAxis(), &Vector::xAxis());
    const Vector* const axes[] = {&Vector::xAxis(), &Vector::yAxis(), &Vector::zAxis()};
    for (int axis = 0; axis < 3; ++axis) {
        for (int i = 0; i < 3; ++i) {
            EXPECT_SAME_BITS(i == axis ? T(1) : T(0), (*axes[axis])[i]);
        }
    }
}

TYPED_TEST(NamedForms, DropToTwoDimensions)
{
    using T = TypeParam;
    EXPECT_EQ((CadPoint3d<T>(T(1), T(2), T(3)).get2d().y()), T(2));
    EXPECT_EQ((CadVector3d<T>(T(1), T(2), T(3)).get2d().x()), T(1));
}

TYPED_TEST(NamedForms, TurnAndCrossInThePlane)
{
    using T = TypeParam;
    const CadVector2d<T> x(T(1), T(0));
    const CadVector2d<T> y(T(0), T(1));
    EXPECT_EQ(x.crossZ(y), T(1));
    EXPECT_EQ(y.crossZ(x), T(-1));
    const CadVector2d<T> turned = x.orthogonalVector();
    EXPECT_EQ(turned.x(), T(0));
    EXPECT_EQ(turned.y(), T(1));
}

TYPED_TEST(NamedForms, TellTheSideOfALine)
{
    using T = TypeParam;
    using Point = CadPoint2d<T>;
    const Point origin(T(0), T(0));
    const CadVector2d<T> direction(T(1), T(0));
    EXPECT_EQ(Point(T(0), T(1)).whichSideOfLine(origin, direction, T(0)), Point::eLeftOfLine);
    EXPECT_EQ(Point(T(0), T(-1)).whichSideOfLine(origin, direction, T(0)), Point::eRightOfLine);
    EXPECT_EQ(Point(T(5), T(0)).whichSideOfLine(origin, direction, T(0)), Point::eOnLine);
    EXPECT_EQ(int{Point::eOnLine}, 0);
    EXPECT_EQ(int{Point::eLeftOfLine}, 1);
    EXPECT_EQ(int{Point::eRightOfLine}, 2);
}

TYPED_TEST(NamedForms, CompareTheSideToleranceWithTheSquaredDistance)
{
    using T = TypeParam;
    using Point = CadPoint2d<T>;
    const Point origin(T(0), T(0));
    const CadVector2d<T> direction(T(1), T(0));
    EXPECT_EQ(Point(T(0), T(0.05)).whichSideOfLine(origin, direction, T(0.01)), Point::eOnLine);
    EXPECT_EQ(Point(T(0), T(0.5)).whichSideOfLine(origin, direction, T(0.25)), Point::eOnLine);
    EXPECT_EQ(Point(T(0), std::nextafter(T(0.5), T(1))).whichSideOfLine(origin, direction, T(0.25)),
              Point::eLeftOfLine);
    EXPECT_EQ(Point(T(0), T(-0.6)).whichSideOfLine(origin, direction, T(0.25)), Point::eRightOfLine);
    const T nan = std::numeric_limits<T>::quiet_NaN();
    EXPECT_EQ(Point(nan, T(1)).whichSideOfLine(origin, direction, T(0)), Point::eOnLine);
    EXPECT_EQ(Point(T(0), T(1)).whichSideOfLine(origin, direction, nan), Point::eLeftOfLine);
}

TYPED_TEST(NamedForms, MeasureTheDistanceToAPlaneOfAnyNormalLength)
{
    using T = TypeParam;
    const CadPoint3d<T> p(T(7), T(7), T(3));
    const CadPoint3d<T> origin(T(0), T(0), T(0));
    EXPECT_EQ(p.distanceSquaredToPlane(origin, CadVector3d<T>(T(0), T(0), T(5))), T(9));
    EXPECT_EQ(p.distanceSquaredToPlane(origin, CadVector3d<T>(T(-2), T(0), T(0))), T(49));
    EXPECT_EQ(p.distanceSquaredToPlane(origin, CadVector3d<T>(T(0), T(0), T(0))), T(9));
}

TYPED_TEST(NamedForms, MeasureAlongZWhenTheNormalIsDegenerate)
{
    using T = TypeParam;
    const CadPoint3d<T> p(T(7), T(7), T(3));
    const CadPoint3d<T> origin(T(0), T(0), T(0));
    const T threshold = std::is_same_v<T, float> ? T(1e-8F) : T(1e-12);
    T length = std::sqrt(threshold) * T(0.999);
    EXPECT_EQ(p.distanceSquaredToPlane(origin, CadVector3d<T>(length, T(0), T(0))), T(9));
    length = std::sqrt(threshold) * T(1.001);
    EXPECT_NEAR(p.distanceSquaredToPlane(origin, CadVector3d<T>(length, T(0), T(0))), T(49), T(1e-4));
}

TYPED_TEST(NamedForms, ProjectOntoPlanes)
{
    using T = TypeParam;
    const CadVector3d<T> normal(T(0), T(0), T(2));
    const CadPoint3d<T> foot =
        CadPoint3d<T>(T(1), T(2), T(3)).projectOntoPlane(CadPoint3d<T>(T(9), T(9), T(1)), normal);
    EXPECT_EQ(foot.x(), T(1));
    EXPECT_EQ(foot.y(), T(2));
    EXPECT_EQ(foot.z(), T(1));
    const CadVector3d<T> within = CadVector3d<T>(T(1), T(2), T(3)).projectOntoPlane(normal);
    EXPECT_EQ(within.y(), T(2));
    EXPECT_EQ(within.z(), T(0));
    EXPECT_TRUE(std::isnan(CadVector3d<T>(T(1), T(2), T(3)).projectOntoPlane(CadVector3d<T>(T(0), T(0), T(0))).x()));
}

TYPED_TEST(NamedForms, FollowTheStepsOfPlaneProjectionBitForBit)
{
    using T = TypeParam;
    NumberStream<T> numbers(204);
    for (int round = 0; round < 3000; ++round) {
        const CadPoint3d<T> p(numbers.Any(), numbers.Any(), numbers.Any());
        const CadPoint3d<T> o(numbers.Any(), numbers.Any(), numbers.Any());
        const CadVector3d<T> n(numbers.Any(), numbers.Any(), numbers.Any());
        const T d[] = {p[0] - o[0], p[1] - o[1], p[2] - o[2]};
        T dot = 0;
        T square = 0;
        for (int i = 0; i < 3; ++i) {
            const T product = n[i] * d[i];
            dot = dot + product;
            const T squared = n[i] * n[i];
            square = square + squared;
        }
        const T threshold = std::is_same_v<T, float> ? T(1e-8F) : T(1e-12);
        ASSERT_SAME_BITS(square <= threshold ? d[2] * d[2] : dot * dot / square, p.distanceSquaredToPlane(o, n));
        const T t = dot / square;
        for (int i = 0; i < 3; ++i) {
            const T step = t * n[i];
            ASSERT_SAME_BITS(p[i] - step, p.projectOntoPlane(o, n)[i]);
        }
    }
}

TYPED_TEST(NamedForms, MeasureTheAngleToAPlane)
{
    using T = TypeParam;
    const CadVector3d<T> normal(T(0), T(0), T(3));
    const T tolerance = std::is_same_v<T, float> ? T(1e-7) : T(1e-15);
    EXPECT_NEAR(CadVector3d<T>(T(1), T(0), T(0)).angleToPlaneRad(normal), T(0), tolerance);
    EXPECT_NEAR(CadVector3d<T>(T(0), T(0), T(-1)).angleToPlaneRad(normal), T(1.5707963267948966), tolerance);
    EXPECT_NEAR(CadVector3d<T>(T(1), T(0), T(1)).angleToPlaneRad(normal), T(0.7853981633974483), tolerance);
    EXPECT_SAME_BITS(static_cast<T>(1.5707963267948966),
                     CadVector3d<T>::zero().isZero() ? CadVector3d<T>(CadVector3d<T>::zero()).angleToPlaneRad(normal)
                                                     : T(0));
}

TYPED_TEST(NamedForms, ConvertUnitsInDoubleAndRoundOnce)
{
    using T = TypeParam;
    NumberStream<T> numbers(205);
    const double factor = 1.0 / 0.03937007874015748;
    for (int round = 0; round < 500; ++round) {
        const T x = numbers.Any();
        const T expected = static_cast<T>(static_cast<double>(x) * factor);
        CadPoint3d<T> p3(x, x, x);
        p3.convertUnits(CADUNITS_INCHES, CADUNITS_MILLIMETERS);
        CadPoint2d<T> p2(x, x);
        p2.convertUnits(CADUNITS_INCHES, CADUNITS_MILLIMETERS);
        CadVector3d<T> v3(x, x, x);
        v3.convertUnits(CADUNITS_INCHES, CADUNITS_MILLIMETERS);
        CadVector2d<T> v2(x, x);
        v2.convertUnits(CADUNITS_INCHES, CADUNITS_MILLIMETERS);
        for (const T actual : {p3.x(), p3.y(), p3.z(), p2.x(), p2.y(), v3.x(), v3.y(), v3.z(), v2.x(), v2.y()}) {
            ASSERT_SAME_BITS(expected, actual);
        }
    }
}

TYPED_TEST(NamedForms, LeaveCoordinatesAloneForTheSameOrNoUnit)
{
    using T = TypeParam;
    CadPoint3d<T> p(T(1), T(2), T(3));
    p.convertUnits(CADUNITS_METERS, CADUNITS_NONE);
    p.convertUnits(CADUNITS_NONE, CADUNITS_METERS);
    p.convertUnits(CADUNITS_METERS, CADUNITS_METERS);
    EXPECT_EQ(p.x() + p.y() * T(10) + p.z() * T(100), T(321));
}

} // namespace
