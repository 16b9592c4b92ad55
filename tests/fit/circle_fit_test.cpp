#include <cadgeom/fit/circle_fit.h>

#include <cadgeom/fit/plane_fit.h>

#include "fit/fit_test_support.h"

#include <chrono>
#include <limits>

namespace {

using namespace fit_test;

template <class T>
class CircleFit : public testing::Test {
protected:
    using Points2 = std::vector<CadPoint2d<T>>;
    using Points3 = std::vector<CadPoint3d<T>>;

    CadPoint2d<double> center2{7.0, 8.0};
    CadPoint3d<double> center3{7.0, 8.0, 9.0};
    CadVector3d<double> normal{4.0, 5.0, 6.0};
    double radius = 3.0;
    double error = -5.0;

    bool Quadratic2(const Points2& p) { return QuadraticCircleFit2(p.data(), p.size(), center2, radius, &error); }
    bool Geometric2(const Points2& p, int maxIterations = 100)
    {
        return CircleFit2(p.data(), p.size(), center2, radius, error, maxIterations);
    }
    bool Quadratic3(const Points3& p)
    {
        return QuadraticCircleFit3(p.data(), p.size(), center3, normal, radius, &error);
    }
    bool Geometric3(const Points3& p, int maxIterations = 100)
    {
        return CircleFit3(p.data(), p.size(), center3, normal, radius, error, maxIterations);
    }
    void ExpectUntouchedBut(bool isNormalWritten = false)
    {
        EXPECT_TRUE(SameBits(center2, {7.0, 8.0}));
        EXPECT_TRUE(SameBits(center3, {7.0, 8.0, 9.0}));
        if (!isNormalWritten) {
            EXPECT_TRUE(SameBits(normal, {4.0, 5.0, 6.0}));
        }
        EXPECT_EQ(radius, 3.0);
        EXPECT_EQ(error, -5.0);
    }
};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(CircleFit, Scalars);

TYPED_TEST(CircleFit, FailsUntouchedWithTooFewPointsOrNone)
{
    const typename TestFixture::Points2 two2 = {{0, 0}, {1, 0}};
    const typename TestFixture::Points3 two3 = {{0, 0, 0}, {1, 0, 0}};
    EXPECT_FALSE(this->Quadratic2(two2));
    EXPECT_FALSE(this->Geometric2(two2));
    EXPECT_FALSE(this->Quadratic3(two3));
    EXPECT_FALSE(this->Geometric3(two3));
    for (const std::uint64_t count : {std::uint64_t{0}, std::uint64_t{3}, std::uint64_t{4}, ~std::uint64_t{0}}) {
        EXPECT_FALSE(QuadraticCircleFit2<TypeParam>(nullptr, count, this->center2, this->radius, &this->error));
        EXPECT_FALSE(CircleFit2<TypeParam>(nullptr, count, this->center2, this->radius, this->error, 5));
        EXPECT_FALSE(
            QuadraticCircleFit3<TypeParam>(nullptr, count, this->center3, this->normal, this->radius, &this->error));
        EXPECT_FALSE(CircleFit3<TypeParam>(nullptr, count, this->center3, this->normal, this->radius, this->error, 5));
    }
    this->ExpectUntouchedBut();
}

TYPED_TEST(CircleFit, RejectsThreeCollinearPointsUntouched)
{
    const typename TestFixture::Points2 line2 = {{0, 0}, {1, 2}, {3, 6}};
    EXPECT_FALSE(this->Quadratic2(line2));
    EXPECT_FALSE(this->Geometric2(line2));
    const typename TestFixture::Points3 line3 = {{0, 0, 1}, {1, 2, 2}, {3, 6, 4}};
    EXPECT_FALSE(this->Quadratic3(line3));
    EXPECT_FALSE(this->Geometric3(line3));
    const typename TestFixture::Points3 equal3 = {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}};
    EXPECT_FALSE(this->Quadratic3(equal3));
    this->ExpectUntouchedBut();
}

TYPED_TEST(CircleFit, NeedsAParallelogramAbove2ToTheMinus23OfThreePoints)
{
    const auto area = static_cast<TypeParam>(kEpsilon);
    for (const auto& [y, isCircle] : {std::pair(std::nextafter(area, TypeParam(0)), false), std::pair(area, false),
                                      std::pair(std::nextafter(area, TypeParam(1)), true)}) {
        EXPECT_EQ(this->Quadratic2({{0, 0}, {1, 0}, {0, y}}), isCircle);
        EXPECT_EQ(this->Quadratic3({{0, 0, 0}, {1, 0, 0}, {0, y, 0}}), isCircle);
    }
}

TYPED_TEST(CircleFit, GoesThroughThreePoints)
{
    ASSERT_TRUE(this->Quadratic2({{0, 0}, {6, 0}, {0, 8}}));
    EXPECT_TRUE(SameBits(this->center2, {3.0, 4.0}));
    EXPECT_EQ(this->radius, 5.0);
    EXPECT_EQ(this->error, 0.0);
    this->radius = 0.0;
    this->error = -5.0;
    ASSERT_TRUE(this->Geometric2({{0, 0}, {6, 0}, {0, 8}}, 0));
    EXPECT_EQ(this->radius, 5.0);
    EXPECT_EQ(this->error, 0.0);

    this->error = -5.0;
    ASSERT_TRUE(this->Quadratic3({{0, 0, 2}, {6, 0, 2}, {0, 8, 2}}));
    EXPECT_TRUE(SameBits(this->center3, {3.0, 4.0, 2.0}));
    EXPECT_TRUE(SameBits(this->normal, {0.0, 0.0, 1.0}));
    EXPECT_EQ(this->radius, 5.0);
    EXPECT_EQ(this->error, 0.0);
    this->error = -5.0;
    ASSERT_TRUE(this->Geometric3({{2, 0, 0}, {2, 6, 0}, {2, 0, 8}}, 0));
    EXPECT_TRUE(SameBits(this->center3, {2.0, 3.0, 4.0}));
    EXPECT_TRUE(SameBits(this->normal, {1.0, 0.0, 0.0}));
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(CircleFit, TakesNullForTheError)
{
    const CadPoint2d<TypeParam> p2[] = {{0, 0}, {6, 0}, {0, 8}, {6, 8}};
    const CadPoint3d<TypeParam> p3[] = {{0, 0, 2}, {6, 0, 2}, {0, 8, 2}, {6, 8, 2}};
    for (const std::uint64_t count : {3u, 4u}) {
        ASSERT_TRUE(QuadraticCircleFit2(p2, count, this->center2, this->radius, nullptr));
        EXPECT_NEAR(this->radius, 5.0, 1e-13);
        ASSERT_TRUE(QuadraticCircleFit3(p3, count, this->center3, this->normal, this->radius, nullptr));
        EXPECT_NEAR(this->radius, 5.0, 1e-13);
    }
}

TYPED_TEST(CircleFit, ReturnsTheCircleOfPointsOnIt)
{
    // Pythagorean points: exact in both precisions.
    const typename TestFixture::Points2 points = {{5, 0}, {4, 3}, {3, 4}, {0, 5}, {-3, 4}, {-5, 0}, {0, -5}, {4, -3}};
    ASSERT_TRUE(this->Quadratic2(points));
    EXPECT_NEAR(this->center2.x(), 0.0, 1e-14);
    EXPECT_NEAR(this->center2.y(), 0.0, 1e-14);
    EXPECT_NEAR(this->radius, 5.0, 1e-14);
    EXPECT_NEAR(this->error, 0.0, 1e-14);

    // One repetition suffices: more of them change nothing.
    ASSERT_TRUE(this->Geometric2(points, 1));
    const CadPoint2d<double> center = this->center2;
    const double radiusAtRest = this->radius;
    ASSERT_TRUE(this->Geometric2(points, 1000));
    EXPECT_TRUE(SameBits(this->center2, center));
    EXPECT_EQ(this->radius, radiusAtRest);
    EXPECT_NEAR(this->error, 0.0, 1e-14);
}

TYPED_TEST(CircleFit, LeavesTheErrorWithoutIterations)
{
    const typename TestFixture::Points2 points = {{5, 0}, {4, 3}, {3, 4}, {0, 6}, {-3, 4}, {-5, 0}};
    ASSERT_TRUE(this->Quadratic2(points));
    const CadPoint2d<double> center = this->center2;
    const double algebraicRadius = this->radius;
    for (const int maxIterations : {0, -1, std::numeric_limits<int>::min()}) {
        this->error = -5.0;
        ASSERT_TRUE(this->Geometric2(points, maxIterations));
        EXPECT_TRUE(SameBits(this->center2, center));
        EXPECT_EQ(this->radius, algebraicRadius);
        EXPECT_EQ(this->error, -5.0);
    }
    // The first repetition measures the algebraic circle.
    const double measured = [&] {
        this->Quadratic2(points);
        return this->error;
    }();
    ASSERT_TRUE(this->Geometric2(points, 1));
    EXPECT_EQ(this->error, measured);
}

TYPED_TEST(CircleFit, InSpaceHasThePlanesErrorWithoutIterations)
{
    const typename TestFixture::Points3 points = {{5, 0, 1}, {4, 3, -1}, {3, 4, 1}, {0, 6, 0}, {-3, 4, 1}, {-5, 0, -1}};
    CadPoint3d<double> origin;
    CadVector3d<double> planeNormal;
    double planeError;
    ASSERT_TRUE(PlaneFit3(points.data(), points.size(), origin, planeNormal, planeError));
    ASSERT_TRUE(this->Geometric3(points, 0));
    EXPECT_EQ(this->error, planeError);
    EXPECT_TRUE(SameBits(this->normal, planeNormal));
    ASSERT_TRUE(this->Geometric3(points, 50));
    EXPECT_GT(this->error, planeError);
}

TYPED_TEST(CircleFit, CountsAPointOnTheCentreInTheErrorAlone)
{
    // Symmetric, so that the algebraic centre is (0, 0) up to rounding and the point there stays within 2^-23 of it.
    const typename TestFixture::Points2 points = {{5, 0}, {-5, 0}, {0, 5}, {0, -5}, {0, 0}};
    ASSERT_TRUE(this->Quadratic2(points));
    ASSERT_NEAR(this->center2.x(), 0.0, 1e-12);
    const double algebraicRadius = this->radius;
    ASSERT_TRUE(this->Geometric2(points, 1));
    EXPECT_NEAR(this->radius, 4.0, 1e-12); // 4 lengths of 5 over 5 points
    const double residual = 5.0 - algebraicRadius;
    EXPECT_NEAR(this->error, std::sqrt((4.0 * residual * residual + algebraicRadius * algebraicRadius) / 5.0), 1e-12);
}

TYPED_TEST(CircleFit, RejectsLinesUntouchedButForTheNormal)
{
    const typename TestFixture::Points2 line2 = {{0, 0}, {1000, 2000}, {3000, 6000}, {-500, -1000}};
    EXPECT_FALSE(this->Quadratic2(line2));
    EXPECT_FALSE(this->Geometric2(line2));
    const typename TestFixture::Points3 line3 = {{0, 0, 0}, {1000, 2000, 0}, {3000, 6000, 0}, {-500, -1000, 0}};
    EXPECT_FALSE(this->Quadratic3(line3));
    EXPECT_NEAR(this->normal.dot(CadVector3d<double>(1.0, 2.0, 0.0)), 0.0, 1e-15);
    this->normal.set(4.0, 5.0, 6.0);
    EXPECT_FALSE(this->Geometric3(line3));
    EXPECT_NEAR(this->normal.dot(CadVector3d<double>(1.0, 2.0, 0.0)), 0.0, 1e-15);
    this->ExpectUntouchedBut(true);
}

TEST(QuadraticCircleFit2, TakesLargeAndDistantCirclesForLines)
{
    std::mt19937_64 random(20240802);
    CadPoint2d<double> center;
    double radius;
    for (const auto& [x, r, isCircle] : {std::tuple(0.0, 2895.0, true), std::tuple(0.0, 2900.0, false),
                                         std::tuple(2890.0, 1.0, true), std::tuple(2900.0, 1.0, false)}) {
        const auto points = SampleEllipse<double>(random, 24, x, 0.0, r, r, 0.0, 0.0);
        EXPECT_EQ(QuadraticCircleFit2(points.data(), points.size(), center, radius, nullptr), isCircle)
            << x << ' ' << r;
    }
}

TEST(CircleFit2, CenteredAndScaledFitsLargeAndDistantCircles)
{
    std::mt19937_64 random(20240803);
    for (const double size : {1e-4, 1.0, 1e6}) {
        for (const double distance : {0.0, 10.0, 1e6}) {
            auto points =
                SampleEllipse<double>(random, 24, distance * size, -distance * size, size, size, 0.0, 0.0, 0.6);
            const BestAxes<2> axes(points);
            const CadPoint2d<double> mean(static_cast<double>(axes.mean[0]), static_cast<double>(axes.mean[1]));
            const double extent = static_cast<double>(std::sqrt(axes.eigen.values[1]));
            for (CadPoint2d<double>& p : points) {
                p = CadPoint2d<double>(0.0, 0.0) + (p - mean) / extent;
            }
            CadPoint2d<double> center;
            double radius;
            double error;
            ASSERT_TRUE(CircleFit2(points.data(), points.size(), center, radius, error, 100));
            const double bound = size * (1e-13 + 2e-15 * distance);
            EXPECT_NEAR(mean.x() + extent * center.x(), distance * size, bound);
            EXPECT_NEAR(mean.y() + extent * center.y(), -distance * size, bound);
            EXPECT_NEAR(extent * radius, size, bound);
        }
    }
}

TYPED_TEST(CircleFit, EndsOnBadCoordinatesHoweverManyIterationsAreAllowed)
{
    const auto start = std::chrono::steady_clock::now();
    constexpr int kAll = std::numeric_limits<int>::max();
    for (const auto bad : {std::numeric_limits<TypeParam>::quiet_NaN(), std::numeric_limits<TypeParam>::infinity(),
                           std::numeric_limits<TypeParam>::max(), static_cast<TypeParam>(1e150),
                           static_cast<TypeParam>(1e30), std::numeric_limits<TypeParam>::denorm_min()}) {
        for (std::size_t i = 0; i < 5; ++i) {
            typename TestFixture::Points2 p2 = {{1, 2}, {4, 0}, {-3, 3}, {0, -5}, {2, 2}};
            typename TestFixture::Points3 p3 = {{1, 2, 0}, {4, 0, 1}, {-3, 3, 0}, {0, -5, 2}, {2, 2, 1}};
            p2[i].x() = bad;
            p3[i].y() = bad;
            this->Quadratic2(p2);
            this->Geometric2(p2, kAll);
            this->Quadratic3(p3);
            this->Geometric3(p3, kAll);
            p2.resize(3);
            p3.resize(3);
            this->Geometric2(p2, kAll);
            this->Geometric3(p3, kAll);
        }
    }
    const typename TestFixture::Points2 equal2(6, CadPoint2d<TypeParam>(1, 2));
    this->Geometric2(equal2, kAll);
    const typename TestFixture::Points3 equal3(6, CadPoint3d<TypeParam>(1, 2, 3));
    this->Geometric3(equal3, kAll);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(CircleFit2, RepeatsNotANumbersLikeAPlainLoop)
{
    // An overflow makes the centre infinite, then not-a-number; the next repetition starts over from the mean, and so
    // on.
    const CadPoint2d<double> points[] = {{1e160, 0}, {-1e160, 0}, {0, 1e160}, {0, -1e160}, {1, 1}};
    for (const int maxIterations : {1, 2, 3, 4, 5, 6, 7, 1000, 1001, 2147483646, 2147483647}) {
        CadPoint2d<double> center(7.0, 7.0);
        double radius = 7.0;
        double error = 7.0;
        ASSERT_TRUE(CircleFit2(points, 5, center, radius, error, maxIterations));
        // Three states take turns.
        CadPoint2d<double> sameCenter;
        double sameRadius;
        double sameError;
        const int equivalent = maxIterations < 6 ? maxIterations : 6 + maxIterations % 3;
        ASSERT_TRUE(CircleFit2(points, 5, sameCenter, sameRadius, sameError, equivalent));
        EXPECT_TRUE(SameBits(center, sameCenter)) << maxIterations;
        EXPECT_TRUE(SameBits(radius, sameRadius)) << maxIterations;
        EXPECT_TRUE(SameBits(error, sameError)) << maxIterations;
    }
}

/// Least-squares circle by Gauss-Newton steps in extended precision, from a start near it.
struct BestCircle {
    template <class T>
    BestCircle(const std::vector<CadPoint2d<T>>& points, Real startX, Real startY, Real startRadius)
        : x(startX), y(startY), radius(startRadius)
    {
        for (int step = 0; step < 200; ++step) {
            Real a[3][4] = {};
            for (const auto& p : points) {
                const Real dx = Wide(p.x()) - x;
                const Real dy = Wide(p.y()) - y;
                const Real length = std::sqrt(dx * dx + dy * dy);
                const Real row[4] = {-dx / length, -dy / length, -1, radius - length};
                for (int i = 0; i < 3; ++i) {
                    for (int j = 0; j < 4; ++j) {
                        a[i][j] += row[i] * row[j];
                    }
                }
            }
            for (int k = 0; k < 3; ++k) {
                for (int i = 0; i < 3; ++i) {
                    const Real factor = i == k ? 0 : a[i][k] / a[k][k];
                    for (int j = 0; j < 4; ++j) {
                        a[i][j] -= factor * a[k][j];
                    }
                }
            }
            x += a[0][3] / a[0][0];
            y += a[1][3] / a[1][1];
            radius += a[2][3] / a[2][2];
        }
        Real sum = 0;
        for (const auto& p : points) {
            const Real residual = std::hypot(Wide(p.x()) - x, Wide(p.y()) - y) - radius;
            sum += residual * residual;
        }
        error = std::sqrt(sum / static_cast<Real>(points.size()));
    }

    Real x;
    Real y;
    Real radius;
    Real error;
};

TYPED_TEST(CircleFit, ReachesTheBestFitInExtendedPrecision)
{
    std::mt19937_64 random(20240804);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (const double noise : {0.0, 1e-3, 0.05}) {
        for (const double arc : {1.0, 0.6}) {
            for (const double distance : {0.0, 1.0, 10.0}) {
                for (int round = 0; round < 20; ++round) {
                    const double angle = kPi * unit(random);
                    const double x = distance * std::cos(angle);
                    const double y = distance * std::sin(angle);
                    const auto points = SampleEllipse<TypeParam>(random, 60, x, y, 1.0, 1.0, angle, noise, arc);
                    ASSERT_TRUE(this->Geometric2(points, 1000));
                    const BestCircle best(points, Wide(x), Wide(y), 1);
                    // The last step is at most 2^-23, and steps shrink by 0.85 or faster on these arcs.
                    constexpr double kBound = 1e-6;
                    EXPECT_NEAR(this->center2.x(), static_cast<double>(best.x), kBound);
                    EXPECT_NEAR(this->center2.y(), static_cast<double>(best.y), kBound);
                    EXPECT_NEAR(this->radius, static_cast<double>(best.radius), kBound);
                    EXPECT_NEAR(this->error, static_cast<double>(best.error), kBound);

                    // Without noise both fits return the circle that the points were sampled from.
                    if (noise == 0.0) {
                        const double ulp = std::is_same_v<TypeParam, float> ? 1.2e-7 : 2.3e-16;
                        const double bound = 4.0 * ulp * (1.0 + distance) + 1e-14 * std::pow(1.0 + distance, 3.0);
                        ASSERT_TRUE(this->Quadratic2(points));
                        EXPECT_NEAR(this->center2.x(), x, bound);
                        EXPECT_NEAR(this->center2.y(), y, bound);
                        EXPECT_NEAR(this->radius, 1.0, bound);
                        EXPECT_NEAR(this->error, 0.0, bound);
                    }
                }
            }
        }
    }
}

TYPED_TEST(CircleFit, InSpaceReachesTheCircleItWasSampledFrom)
{
    std::mt19937_64 random(20240805);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double ulp = std::is_same_v<TypeParam, float> ? 1.2e-7 : 2.3e-16;
    for (const double distance : {0.0, 1.0, 1e3, 1e5}) {
        for (int round = 0; round < 50; ++round) {
            const Frame frame = RandomFrame(random, distance);
            const auto planar = SampleEllipse<double>(random, 40, 0.0, 0.0, 1.0, 1.0, unit(random), 0.0, 0.7);
            const auto points = IntoSpace<TypeParam>(planar, frame);
            // Far away the points are off by the last place of their coordinates, and so is the fit.
            const double bound = 20.0 * ulp * (1.0 + distance) + 1e-13;
            for (const bool isGeometric : {false, true}) {
                ASSERT_TRUE(isGeometric ? this->Geometric3(points) : this->Quadratic3(points));
                EXPECT_LE(this->center3.distance(frame.origin), bound);
                EXPECT_NEAR(this->radius, 1.0, bound);
                EXPECT_LE(SineBetween<3>(this->normal, frame.z), bound);
                EXPECT_LE(this->error, bound + 4e-8); // the plane's error is a root of a rounded zero
            }
            const typename TestFixture::Points3 three = {points[0], points[13], points[30]};
            ASSERT_TRUE(this->Quadratic3(three));
            EXPECT_LE(this->center3.distance(frame.origin), bound);
            EXPECT_NEAR(this->radius, 1.0, bound);
        }
    }
}

} // namespace
