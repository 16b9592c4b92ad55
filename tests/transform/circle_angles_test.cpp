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

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

CCadTransform Identity()
{
    return CCadTransform::GetEmptyTransform();
}

template <class T>
class CircleAngles : public ::testing::Test {
protected:
    static double AngleOf(T x, T y)
    {
        const double angle = static_cast<double>(std::atan2(y, x));
        return angle < 0 ? angle + kTwoPi : angle;
    }
};

using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(CircleAngles, Scalars, );

TYPED_TEST(CircleAngles, RunFromXTowardsYWithinAFullTurn)
{
    using P = CadPoint3d<TypeParam>;
    using V = CadVector3d<TypeParam>;
    const CCadTransform identity = Identity();
    EXPECT_EQ(identity.AngleFromPointDeg(P(1, 0, 0)), 0.0);
    EXPECT_NEAR(identity.AngleFromPointRad(P(0, -1, 0)), 1.5 * kPi, 1e-7);
    EXPECT_NEAR(identity.AngleFromPointDeg(P(0, -1, 0)), 270.0, 1e-5);
    EXPECT_NEAR(identity.AngleFromVectorRad(V(-1, 0, 5)), kPi, 1e-7);
    EXPECT_NEAR(identity.AngleFromPointRad(P(0, 3, 5)), kPi / 2, 1e-7) << "z is ignored";
    EXPECT_EQ(identity.AngleFromPointRad(P(0, 0, 1)), 0.0);
}

TEST(CircleAnglesInDouble, AreExactWhereDoubleIs)
{
    const CCadTransform identity = Identity();
    EXPECT_EQ(identity.AngleFromPointRad(Point(0, -1, 0)), kTwoPi - kPi / 2);
    EXPECT_EQ(identity.AngleFromPointDeg(Point(0, -1, 0)), 270.0);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(Point(0, 1, 0), 2.0, 1.0), kPi / 2);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(Point(1, 1, 0), 2.0, 1.0), std::atan2(1.0, 0.5));
}

TYPED_TEST(CircleAngles, CompressTheLongerRadiusOfAnEllipse)
{
    using P = CadPoint3d<TypeParam>;
    using V = CadVector3d<TypeParam>;
    const CCadTransform identity = Identity();
    const TypeParam half = TypeParam(0.5);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(P(1, 1, 0), TypeParam(2), TypeParam(1)), this->AngleOf(half, 1));
    EXPECT_EQ(identity.AngleFromEllipsePointRad(P(1, 1, 0), TypeParam(1), TypeParam(2)), this->AngleOf(1, half));
    EXPECT_EQ(identity.AngleFromEllipseVectorRad(V(1, 1, 0), TypeParam(2), TypeParam(1)), this->AngleOf(half, 1));
    EXPECT_EQ(identity.AngleFromEllipseVectorRad(V(1, -1, 0), TypeParam(1), TypeParam(2)), this->AngleOf(1, -half));
    EXPECT_EQ(identity.AngleFromEllipsePointDeg(P(1, 1, 0), TypeParam(2), TypeParam(1)),
              this->AngleOf(half, 1) * 57.29577951308232);
    EXPECT_EQ(identity.AngleFromEllipseVectorDeg(V(1, 1, 0), TypeParam(1), TypeParam(2)),
              this->AngleOf(1, half) * 57.29577951308232);
}

TYPED_TEST(CircleAngles, AreThePlainAnglesWhenTheLongerRadiusIsWithinTheTolerance)
{
    using P = CadPoint3d<TypeParam>;
    const CCadTransform identity = Identity();
    const TypeParam tolerance = std::is_same_v<TypeParam, float> ? TypeParam(1e-4F) : TypeParam(1e-6);
    const TypeParam shorter = tolerance / 2;
    const TypeParam above = std::nextafter(tolerance, TypeParam(1));
    const P point(3, 4, 0);
    const double plain = this->AngleOf(3, 4);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(point, TypeParam(0), TypeParam(0)), plain);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(point, shorter, tolerance), plain);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(point, tolerance, shorter), plain);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(point, TypeParam(-5), TypeParam(-7)), plain);
    EXPECT_EQ(identity.AngleFromEllipsePointRad(point, shorter, above),
              this->AngleOf(3, TypeParam(4) * shorter / above));
    EXPECT_EQ(identity.AngleFromEllipsePointRad(point, above, shorter),
              this->AngleOf(TypeParam(3) * shorter / above, 4));
}

TYPED_TEST(CircleAngles, FollowTheStepsInTheirOwnPrecision)
{
    test_support::NumberStream<TypeParam> numbers(31);
    test_support::NumberStream<double> parts(32);
    for (int round = 0; round < 3000; ++round) {
        State state;
        for (std::size_t i = 0; i < 3; ++i) {
            state.translation[i] = parts.Any();
            state.scale[i] = parts.Any();
            state.axes[i] = {parts.Any(), parts.Any(), parts.Any()};
        }
        state.flags = static_cast<std::uint8_t>(parts.Integer(0, 31));
        const CCadTransform frame = FromState(state);
        Model model(state);
        const CadPoint3d<TypeParam> point(numbers.Any(), numbers.Any(), numbers.Any());
        const CadVector3d<TypeParam> vector(point[0], point[1], point[2]);
        const TypeParam rx = numbers.Any();
        const TypeParam ry = numbers.Any();
        const TypeParam e = std::is_same_v<TypeParam, float> ? TypeParam(1e-4F) : TypeParam(1e-6);
        for (const bool isPoint : {true, false}) {
            const Numbers local =
                isPoint ? model.PointToLocal(ToNumbers(point)) : model.DirectionToLocal(ToNumbers(vector));
            TypeParam x = static_cast<TypeParam>(local[0]);
            TypeParam y = static_cast<TypeParam>(local[1]);
            const double plain = isPoint ? frame.AngleFromPointRad(point) : frame.AngleFromVectorRad(vector);
            EXPECT_TRUE(SameNumber(this->AngleOf(x, y), plain));
            if (ry >= rx) {
                y = ry <= e ? y : y * rx / ry;
            } else {
                x = rx <= e ? x : x * ry / rx;
            }
            const double expected = this->AngleOf(x, y);
            EXPECT_TRUE(SameNumber(expected, isPoint ? frame.AngleFromEllipsePointRad(point, rx, ry)
                                                     : frame.AngleFromEllipseVectorRad(vector, rx, ry)));
            EXPECT_TRUE(
                SameNumber(expected * 57.29577951308232, isPoint ? frame.AngleFromEllipsePointDeg(point, rx, ry)
                                                                 : frame.AngleFromEllipseVectorDeg(vector, rx, ry)));
        }
    }
}

TEST(CircleAnglesInDouble, AreFoundAgainFromTheirPoints)
{
    test_support::NumberStream<double> numbers(8);
    for (int round = 0; round < 1000; ++round) {
        const auto any = [&numbers] { return numbers.Uniform(-3, 3); };
        CCadTransform frame({any(), any(), any()}, Point(any(), any(), any()));
        frame.SetScale(numbers.Uniform(0.5, 2));
        const double angle = numbers.Uniform(0.001, 6.28);
        const double rx = numbers.Uniform(0.5, 5);
        const double ry = numbers.Uniform(0.5, 5);
        EXPECT_NEAR(frame.AngleFromPointRad(frame.PointFromAngleRad(angle, rx)), angle, 1e-13);
        EXPECT_NEAR(frame.AngleFromVectorRad(frame.VectorFromAngleRad(angle, rx)), angle, 1e-13);
        EXPECT_NEAR(frame.AngleFromEllipsePointRad(frame.EllipsePointFromAngleRad(angle, rx, ry), rx, ry), angle,
                    1e-13);
        EXPECT_NEAR(frame.AngleFromEllipseVectorRad(frame.EllipseVectorFromAngleRad(angle, rx, ry), rx, ry), angle,
                    1e-13);
        const double degrees = angle * 57.29577951308232;
        EXPECT_NEAR(frame.AngleFromPointDeg(frame.PointFromAngleDeg(degrees, rx)), degrees, 1e-11);
        EXPECT_NEAR(frame.AngleFromEllipsePointDeg(frame.EllipsePointFromAngleDeg(degrees, rx, ry), rx, ry), degrees,
                    1e-11);
        EXPECT_NEAR(frame.AngleFromEllipseVectorDeg(frame.EllipseVectorFromAngleDeg(degrees, rx, ry), rx, ry), degrees,
                    1e-11);
    }
}

TEST(PointFromAngle, LiesOnTheCircleOrEllipse)
{
    const CCadTransform identity = Identity();
    const Point onEllipse = identity.EllipsePointFromAngleDeg(90, 2, 1);
    EXPECT_EQ(onEllipse.x(), std::cos(90 * 0.017453292519943295) * 2);
    EXPECT_NEAR(onEllipse.x(), 0, 1e-15);
    EXPECT_EQ(onEllipse.y(), 1.0);
    EXPECT_EQ(onEllipse.z(), 0.0);

    CCadTransform frame = Identity();
    frame.SetTranslate(Point(1, 2, 3));
    frame.SetScale(2.0);
    const Point onCircle = frame.PointFromAngleDeg(0, 5);
    EXPECT_EQ(onCircle, Point(11, 2, 3));
    const Vector direction = frame.VectorFromAngleDeg(0, 5);
    EXPECT_EQ(direction, Vector(5, 0, 0)) << "a uniform scale leaves directions alone";
    frame.SetScale({1, 2, 1});
    const Vector bent = frame.EllipseVectorFromAngleRad(0.5, 2, 1);
    const Vector local(2 * std::cos(0.5), std::sin(0.5), 0);
    EXPECT_NEAR(bent.length(), local.length(), 1e-15);
    EXPECT_NEAR(bent.y() / bent.x(), 2 * local.y() / local.x(), 1e-15);
}

TEST(Rotmat, TurnsXAndYByAnAngle)
{
    CCadTransform frame = Identity();
    frame.SetScale(3.0);
    EXPECT_TRUE(frame.rotmat(90));
    EXPECT_NEAR(frame.xAxis().x(), 0, 1e-15);
    EXPECT_EQ(frame.xAxis().y(), 1.0);
    EXPECT_EQ(frame.yAxis().x(), -1.0);
    EXPECT_EQ(frame.zAxis(), Vector(0, 0, 1));
    EXPECT_EQ(frame.GetScale(), Vector(3, 3, 3));
    EXPECT_EQ(StateOf(frame).flags & 0x01, 0);
}

TEST(Rotmat, TurnsXTowardsADirection)
{
    CCadTransform frame = FromState({{1, 2, 3}, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}, {1, 1, 1}, 0});
    EXPECT_TRUE(frame.rotmat({7, 0, 2}, true));
    EXPECT_EQ(frame.xAxis(), Vector(0, 0, 1)) << "world (7, 0, 2) within the plane of y and z";
    EXPECT_EQ(frame.yAxis(), Vector(0, -1, 0));
    EXPECT_TRUE(frame.rotmat({0, -3, 9}, false));
    EXPECT_EQ(frame.xAxis(), Vector(0, 1, 0));
    EXPECT_EQ(frame.GetTranslate(), Point(1, 2, 3));
}

TEST(Rotmat, RefusesADirectionAlongZ)
{
    CCadTransform frame = Identity();
    EXPECT_FALSE(frame.rotmat({0, 0, 1}, false));
    EXPECT_FALSE(frame.rotmat({0, -0.0, -1}, true));
    EXPECT_EQ(StateOf(frame), Model().state);
    EXPECT_TRUE(frame.rotmat({0, kNaN, 1}, false)) << "NaN is not zero";
    EXPECT_EQ(StateOf(frame).flags & 0x01, 0);
}

TEST(Rotmat, TurnsOneAxisTowardsTheNextAndReturnsFalse)
{
    for (const int axis : {0, 3}) {
        CCadTransform frame = Identity();
        EXPECT_FALSE(frame.rotmat(90, axis));
        EXPECT_NEAR((frame.xAxis() - Vector(0, 1, 0)).length(), 0, 1e-15);
        EXPECT_NEAR((frame.yAxis() - Vector(-1, 0, 0)).length(), 0, 1e-15);
        EXPECT_EQ(frame.zAxis(), Vector(0, 0, 1));
        EXPECT_EQ(StateOf(frame).flags, 0x0E);
    }
    for (const int axis : {1, 4}) {
        CCadTransform frame = Identity();
        EXPECT_FALSE(frame.rotmat(90, axis));
        EXPECT_NEAR((frame.yAxis() - Vector(0, 0, 1)).length(), 0, 1e-15);
        EXPECT_NEAR((frame.zAxis() - Vector(0, -1, 0)).length(), 0, 1e-15);
    }
    for (const int axis : {2, 5}) {
        CCadTransform frame = Identity();
        EXPECT_FALSE(frame.rotmat(90, axis));
        EXPECT_NEAR((frame.zAxis() - Vector(1, 0, 0)).length(), 0, 1e-15);
        EXPECT_NEAR((frame.xAxis() - Vector(0, 0, -1)).length(), 0, 1e-15);
    }
}

TEST(Rotmat, ChangesNothingForOtherAxes)
{
    const State state = {{1, 2, 3}, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}, {2, 3, 4}, 0x01};
    for (const int axis : {-1, 6, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        CCadTransform frame = FromState(state);
        EXPECT_FALSE(frame.rotmat(90, axis));
        EXPECT_EQ(StateOf(frame), state);
    }
}

} // namespace
