#include <cadgeom/fit/ellipse_fit.h>

#include <cadgeom/transform/transform.h>

#include "fit/fit_test_support.h"

#include <limits>

namespace {

using namespace fit_test;

template <class T>
class EllipseFit : public testing::Test {
protected:
    using Points2 = std::vector<CadPoint2d<T>>;
    using Points3 = std::vector<CadPoint3d<T>>;

    CadPoint2d<double> center2{7.0, 8.0};
    CadVector2d<double> axis2{5.0, 6.0};
    CadPoint3d<double> center3{7.0, 8.0, 9.0};
    CadVector3d<double> normal{4.0, 5.0, 6.0};
    CadVector3d<double> axis3{1.0, 2.0, 3.0};
    double a = 3.0;
    double b = 2.0;
    double error = -5.0;

    bool Fit2(const Points2& p) { return EllipseFit2(p.data(), p.size(), center2, axis2, a, b, &error); }
    bool Fit3(const Points3& p) { return EllipseFit3(p.data(), p.size(), center3, normal, axis3, a, b, &error); }
    void ExpectUntouched(bool isNormalWritten = false)
    {
        EXPECT_TRUE(SameBits(center2, {7.0, 8.0}) && SameBits(axis2, {5.0, 6.0}));
        EXPECT_TRUE(SameBits(center3, {7.0, 8.0, 9.0}) && SameBits(axis3, {1.0, 2.0, 3.0}));
        if (!isNormalWritten) {
            EXPECT_TRUE(SameBits(normal, {4.0, 5.0, 6.0}));
        }
        EXPECT_TRUE(a == 3.0 && b == 2.0 && error == -5.0);
    }
};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(EllipseFit, Scalars);

/// Points exactly on an ellipse, at random parameters: even spacing makes two eigenvalues coincide.
template <class T>
std::vector<CadPoint2d<T>> RandomEllipse(std::mt19937_64& random, int count, double x, double y, double a, double b,
                                         double angle)
{
    std::uniform_real_distribution<double> turn(-kPi, kPi);
    std::vector<CadPoint2d<T>> points;
    for (int i = 0; i < count; ++i) {
        const double t = turn(random);
        const double u = a * std::cos(t);
        const double v = b * std::sin(t);
        points.push_back(
            MakePoint<T>(x + u * std::cos(angle) - v * std::sin(angle), y + u * std::sin(angle) + v * std::cos(angle)));
    }
    return points;
}

TYPED_TEST(EllipseFit, FailsUntouchedWithTooFewPointsOrNone)
{
    EXPECT_FALSE(this->Fit2({{1, 0}, {0, 1}, {-1, 0}}));
    EXPECT_FALSE(this->Fit3({{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}}));
    for (const std::uint64_t count : {std::uint64_t{0}, std::uint64_t{4}, ~std::uint64_t{0}}) {
        EXPECT_FALSE(
            EllipseFit2<TypeParam>(nullptr, count, this->center2, this->axis2, this->a, this->b, &this->error));
        EXPECT_FALSE(EllipseFit3<TypeParam>(nullptr, count, this->center3, this->normal, this->axis3, this->a, this->b,
                                            &this->error));
    }
    this->ExpectUntouched();
}

TYPED_TEST(EllipseFit, OfTheUnitCircleIsTheUnitCircle)
{
    ASSERT_TRUE(this->Fit2({{1, 0}, {0, 1}, {-1, 0}, {0, -1}}));
    EXPECT_EQ(this->center2.x(), 0.0);
    EXPECT_EQ(this->center2.y(), 0.0);
    EXPECT_EQ(this->a, 1.0);
    EXPECT_EQ(this->b, 1.0);
    EXPECT_EQ(this->error, 0.0);
    EXPECT_TRUE(SameBits(this->axis2, {0.0, 1.0})); // what normalising makes of (0, 0)
}

TYPED_TEST(EllipseFit, MirrorsTheAxis)
{
    // The major axis at 30 degrees is written as (cos 30, -sin 30), up to its sign.
    std::mt19937_64 random(20240806);
    ASSERT_TRUE(this->Fit2(RandomEllipse<TypeParam>(random, 30, 0.0, 0.0, 2.0, 1.0, kPi / 6.0)));
    const CadVector2d<double> mirrored(std::cos(kPi / 6.0), -std::sin(kPi / 6.0));
    EXPECT_LE(SineBetween<2>(this->axis2, mirrored), 1e-6L);
    EXPECT_NEAR(this->axis2.length(), 1.0, 1e-15);
}

TYPED_TEST(EllipseFit, MeasuresResidualsTowardsTheCentre)
{
    // Symmetric in both axes, so that the ellipse is too; the residuals follow from its radii.
    const typename TestFixture::Points2 points = {{4, 0}, {-4, 0}, {0, 2}, {0, -2}, {3, 2}, {-3, 2}, {3, -2}, {-3, -2}};
    ASSERT_TRUE(this->Fit2(points));
    EXPECT_NEAR(this->center2.x(), 0.0, 1e-12);
    EXPECT_NEAR(this->center2.y(), 0.0, 1e-12);
    EXPECT_NEAR(std::fabs(this->axis2.x()), 1.0, 1e-12);
    double sum = 0.0;
    for (const auto& p : points) {
        const double x = static_cast<double>(p.x());
        const double y = static_cast<double>(p.y());
        const double length = std::hypot(x / this->a, y / this->b);
        sum += std::pow(x - x / length, 2.0) + std::pow(y - y / length, 2.0);
    }
    EXPECT_NEAR(this->error, std::sqrt(sum / 8.0), 1e-12);
    EXPECT_GT(this->error, 0.05);
}

TYPED_TEST(EllipseFit, CountsAPointOnTheCentreWithTheSmallerRadius)
{
    const typename TestFixture::Points2 points = {{4, 0},  {-4, 0}, {0, 2},   {0, -2}, {3, 2},
                                                  {-3, 2}, {3, -2}, {-3, -2}, {0, 0}};
    ASSERT_TRUE(this->Fit2(points));
    ASSERT_NEAR(this->center2.x(), 0.0, 1e-12);
    double sum = this->b * this->b;
    for (std::size_t i = 0; i < 8; ++i) {
        const double x = static_cast<double>(points[i].x());
        const double y = static_cast<double>(points[i].y());
        const double length = std::hypot(x / this->a, y / this->b);
        sum += std::pow(x - x / length, 2.0) + std::pow(y - y / length, 2.0);
    }
    EXPECT_NEAR(this->error, std::sqrt(sum / 9.0), 1e-12);
}

TYPED_TEST(EllipseFit, TakesNullForTheError)
{
    const CadPoint2d<TypeParam> p2[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    ASSERT_TRUE(EllipseFit2(p2, 4, this->center2, this->axis2, this->a, this->b, nullptr));
    EXPECT_EQ(this->a, 1.0);
    const CadPoint3d<TypeParam> p3[] = {{1, 0, 2}, {0, 1, 2}, {-1, 0, 2}, {0, -1, 2}};
    ASSERT_TRUE(EllipseFit3(p3, 4, this->center3, this->normal, this->axis3, this->a, this->b, nullptr));
    EXPECT_TRUE(SameBits(this->center3, {0.0, 0.0, 2.0}));
}

TYPED_TEST(EllipseFit, RejectsStraightLinesUntouched)
{
    std::mt19937_64 random(20240807);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (const double place : {0.0, 1.0, 100.0, 1e6}) {
        for (int round = 0; round < 500; ++round) {
            const double angle = round % 10 == 0 ? kPi / 2.0 * (round % 4) : kPi * unit(random);
            const double size = std::pow(10.0, 2.0 * unit(random));
            const double x = place * unit(random);
            const double y = place * unit(random);
            typename TestFixture::Points2 points;
            for (int i = 4 + static_cast<int>(random() % 30); i > 0; --i) {
                const double t = size * unit(random);
                points.push_back(MakePoint<TypeParam>(x + t * std::cos(angle), y + t * std::sin(angle)));
            }
            ASSERT_FALSE(this->Fit2(points)) << "seed 20240807, place " << place << ", round " << round;
        }
    }
    EXPECT_FALSE(this->Fit2({{0, 0}, {1, 1}, {2, 2}, {3, 3}}));
    EXPECT_FALSE(this->Fit2({{5, 5}, {5, 5}, {5, 5}, {5, 5}}));
    this->ExpectUntouched();
}

TYPED_TEST(EllipseFit, InSpaceRejectsStraightLinesButWritesTheNormal)
{
    std::mt19937_64 random(20240808);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (const double place : {0.0, 1.0, 100.0, 1e4}) {
        for (int round = 0; round < 500; ++round) {
            const Frame frame = RandomFrame(random, place);
            typename TestFixture::Points3 points;
            for (int i = 4 + static_cast<int>(random() % 30); i > 0; --i) {
                const CadPoint3d<double> p = frame.origin + frame.x * (10.0 * unit(random));
                points.push_back(MakePoint<TypeParam>(p.x(), p.y(), p.z()));
            }
            this->normal.setZero();
            ASSERT_FALSE(this->Fit3(points)) << "seed 20240808, place " << place << ", round " << round;
            EXPECT_NEAR(this->normal.length(), 1.0, 1e-14);
        }
    }
    this->ExpectUntouched(true);
}

TYPED_TEST(EllipseFit, KeepsFlatEllipses)
{
    std::mt19937_64 random(20240809);
    for (int round = 0; round < 100; ++round) {
        ASSERT_TRUE(this->Fit2(RandomEllipse<TypeParam>(random, 30, 0.0, 0.0, 1000.0, 10.0, 0.1 * round)));
        EXPECT_NEAR(this->a, 1000.0, 0.1);
        EXPECT_NEAR(this->b, 10.0, 0.01);
    }
}

TYPED_TEST(EllipseFit, EndsOnBadCoordinates)
{
    for (const auto bad :
         {std::numeric_limits<TypeParam>::quiet_NaN(), std::numeric_limits<TypeParam>::infinity(),
          std::numeric_limits<TypeParam>::max(), static_cast<TypeParam>(1e150), static_cast<TypeParam>(1e30)}) {
        for (std::size_t i = 0; i < 6; ++i) {
            typename TestFixture::Points2 p2 = {{3, 0}, {0, 1}, {-3, 0.5}, {0, -1}, {2, 1}, {-1, -1}};
            typename TestFixture::Points3 p3 = {{3, 0, 1}, {0, 1, 2}, {-3, 0, 0}, {0, -1, 0}, {2, 1, 1}, {-1, -1, 0}};
            p2[i].y() = bad;
            p3[i].z() = bad;
            const bool isHuge = std::isfinite(bad) && bad < static_cast<TypeParam>(1e31);
            EXPECT_TRUE(!this->Fit2(p2) || isHuge);
            this->Fit3(p3);
        }
    }
    // Fourth powers that vanish.
    const auto tiny = static_cast<TypeParam>(1e-35);
    EXPECT_FALSE(this->Fit2({{tiny, 0}, {0, tiny}, {-tiny, 0}, {0, -tiny}}));
}

TYPED_TEST(EllipseFit, ReturnsTheEllipseThatPointsWereSampledFrom)
{
    std::mt19937_64 random(20240810);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const bool isFloat = std::is_same_v<TypeParam, float>;
    for (const double size : {1.0, 100.0}) {
        for (const double distance : {0.0, 1.0, 10.0}) {
            for (int round = 0; round < 100; ++round) {
                const double angle = kPi * unit(random);
                const double place = kPi * unit(random);
                const double x = size * distance * std::cos(place);
                const double y = size * distance * std::sin(place);
                ASSERT_TRUE(this->Fit2(RandomEllipse<TypeParam>(random, 40, x, y, size, 0.4 * size, angle)));
                // The rounding of float points, and what the fourth powers lose away from the origin.
                const double lost = distance == 0.0 ? 1e-13 : distance == 1.0 ? 1e-11 : 1e-5;
                const double bound = size * (lost + (isFloat ? 3e-6 * (1.0 + distance) : 0.0));
                EXPECT_NEAR(this->center2.x(), x, bound);
                EXPECT_NEAR(this->center2.y(), y, bound);
                EXPECT_NEAR(this->a, size, bound);
                EXPECT_NEAR(this->b, 0.4 * size, bound);
                EXPECT_LE(this->error, bound);
                const CadVector2d<double> mirrored(std::cos(angle), -std::sin(angle));
                EXPECT_LE(SineBetween<2>(this->axis2, mirrored), 3.0 * bound / size);
            }
        }
    }
}

TEST(EllipseFit2, CenteredAndScaledFitsAnyEllipse)
{
    std::mt19937_64 random(20240811);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (const double size : {1e-6, 1.0, 1e6}) {
        for (const double distance : {0.0, 10.0, 1e4}) {
            for (int round = 0; round < 50; ++round) {
                auto points = RandomEllipse<double>(random, 40, distance * size, -distance * size, size, 0.4 * size,
                                                    kPi * unit(random));
                const BestAxes<2> axes(points);
                const CadPoint2d<double> mean(static_cast<double>(axes.mean[0]), static_cast<double>(axes.mean[1]));
                const double extent = static_cast<double>(std::sqrt(axes.eigen.values[1]));
                for (CadPoint2d<double>& p : points) {
                    p = CadPoint2d<double>(0.0, 0.0) + (p - mean) / extent;
                }
                CadPoint2d<double> center;
                CadVector2d<double> axis;
                double a;
                double b;
                double error;
                ASSERT_TRUE(EllipseFit2(points.data(), points.size(), center, axis, a, b, &error));
                const double bound = size * (1e-12 + 3e-14 * distance);
                EXPECT_NEAR(mean.x() + extent * center.x(), distance * size, bound);
                EXPECT_NEAR(mean.y() + extent * center.y(), -distance * size, bound);
                EXPECT_NEAR(extent * a, size, bound);
                EXPECT_NEAR(extent * b, 0.4 * size, bound);
                EXPECT_LE(extent * error, bound);
            }
        }
    }
}

TEST(EllipseFit2, MissesEvenlySpreadExactEllipses)
{
    std::mt19937_64 random(20240812);
    CadPoint2d<double> center;
    CadVector2d<double> axis;
    double a;
    double b;
    int missed = 0;
    int missedWithNoise = 0;
    for (int round = 0; round < 100; ++round) {
        const auto exact = SampleEllipse<double>(random, 30, 0.0, 0.0, 1.0, 0.4, 0.1 * round, 0.0);
        missed += EllipseFit2(exact.data(), exact.size(), center, axis, a, b, nullptr) ? 0 : 1;
        const auto noisy = SampleEllipse<double>(random, 30, 0.0, 0.0, 1.0, 0.4, 0.1 * round, 1e-2);
        missedWithNoise += EllipseFit2(noisy.data(), noisy.size(), center, axis, a, b, nullptr) ? 0 : 1;
    }
    EXPECT_EQ(missed, 100);
    EXPECT_EQ(missedWithNoise, 0);
}

TEST(EllipseFit2, MissesSmallEllipses)
{
    std::mt19937_64 random(20240813);
    CadPoint2d<double> center;
    CadVector2d<double> axis;
    double a;
    double b;
    for (int round = 0; round < 100; ++round) {
        const auto points = RandomEllipse<double>(random, 30, 0.0, 0.0, 0.1, 0.04, 0.1 * round);
        EXPECT_FALSE(EllipseFit2(points.data(), points.size(), center, axis, a, b, nullptr));
    }
}

TYPED_TEST(EllipseFit, InSpaceReturnsTheEllipseThatPointsWereSampledFrom)
{
    std::mt19937_64 random(20240814);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double ulp = std::is_same_v<TypeParam, float> ? 1.2e-7 : 2.3e-16;
    for (const double distance : {0.0, 1.0, 1e3}) {
        for (int round = 0; round < 100; ++round) {
            const Frame frame = RandomFrame(random, distance);
            const auto planar = RandomEllipse<double>(random, 40, 0.0, 0.0, 1.0, 0.4, kPi * unit(random));
            const auto points = IntoSpace<TypeParam>(planar, frame);
            ASSERT_TRUE(this->Fit3(points));
            const double bound = 40.0 * ulp * (1.0 + distance) + 1e-11;
            EXPECT_LE(this->center3.distance(frame.origin), bound);
            EXPECT_NEAR(this->a, 1.0, bound);
            EXPECT_NEAR(this->b, 0.4, bound);
            EXPECT_LE(SineBetween<3>(this->normal, frame.z), bound);
            EXPECT_LE(this->error, bound + 4e-8);
            EXPECT_NEAR(this->axis3.length(), 1.0, 1e-14);
            EXPECT_NEAR(this->axis3.dot(this->normal), 0.0, 1e-14);

            // Mirrored back in the frame of the normal, the axis is the major axis: the ellipse's farthest point lies
            // on it.
            CadPoint3d<double> origin(0.0, 0.0, 0.0);
            for (const auto& p : points) {
                origin.addToThis(Widened(p));
            }
            origin *= 1.0 / static_cast<double>(points.size());
            const CCadTransform transform(this->normal, origin);
            CadVector3d<double> local;
            transform.aaforw(this->axis3, local);
            local.y() = -local.y();
            CadVector3d<double> major;
            transform.aaback(local, major);
            for (const auto& p : points) {
                const CadVector3d<double> d = Widened(p) - this->center3;
                const double u = d.dot(major);
                const double v = d.dot(this->normal.cross(major));
                EXPECT_NEAR(u * u + v * v / 0.16, 1.0, 20.0 * bound);
            }
        }
    }
}

TYPED_TEST(EllipseFit, InSpaceAddsThePlanesError)
{
    const typename TestFixture::Points3 points = {{4, 0, 1},  {-4, 0, 1},  {0, 2, 1},   {0, -2, 1},
                                                  {3, 2, -1}, {-3, 2, -1}, {3, -2, -1}, {-3, -2, -1}};
    typename TestFixture::Points2 planar;
    for (const auto& p : points) {
        planar.push_back(p.get2d());
    }
    ASSERT_TRUE(this->Fit2(planar));
    const double inPlane = this->error;
    const double major = this->a;
    ASSERT_TRUE(this->Fit3(points));
    EXPECT_NEAR(std::fabs(this->normal.z()), 1.0, 1e-14);
    EXPECT_NEAR(this->a, major, 1e-12);
    EXPECT_NEAR(this->error, std::sqrt(inPlane * inPlane + 1.0), 1e-12);
}

} // namespace
