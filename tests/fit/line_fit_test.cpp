#include <cadgeom/fit/line_fit.h>

#include "fit/fit_test_support.h"

#include <limits>

namespace {

using namespace fit_test;

template <class T>
class LineFit : public testing::Test {
protected:
    using P2 = CadPoint2d<T>;
    using P3 = CadPoint3d<T>;

    CadPoint2d<double> origin2{7.0, 8.0};
    CadVector2d<double> direction2{5.0, 6.0};
    CadPoint3d<double> origin3{7.0, 8.0, 9.0};
    CadVector3d<double> direction3{4.0, 5.0, 6.0};
    CadPoint3d<double> end3{1.0, 2.0, 3.0};
    double error = -5.0;

    void ExpectUntouched()
    {
        EXPECT_TRUE(SameBits(origin2, {7.0, 8.0}) && SameBits(direction2, {5.0, 6.0}));
        EXPECT_TRUE(SameBits(origin3, {7.0, 8.0, 9.0}) && SameBits(direction3, {4.0, 5.0, 6.0}));
        EXPECT_TRUE(SameBits(end3, {1.0, 2.0, 3.0}));
        EXPECT_EQ(error, -5.0);
    }
};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(LineFit, Scalars);

TYPED_TEST(LineFit, FailsUntouchedWithTooFewPointsOrNone)
{
    const CadPoint2d<TypeParam> p2(1, 2);
    const CadPoint3d<TypeParam> p3(1, 2, 3);
    for (const std::uint64_t count : {0u, 1u}) {
        EXPECT_FALSE(LineFit2(&p2, count, this->origin2, this->direction2, this->error));
        EXPECT_FALSE(LineFit3(&p3, count, this->origin3, this->direction3, this->error));
        EXPECT_FALSE(LineSegmentFit3(&p3, count, this->origin3, this->end3, this->error));
    }
    for (const std::uint64_t count : {std::uint64_t{0}, std::uint64_t{2}, std::uint64_t{3}, ~std::uint64_t{0}}) {
        EXPECT_FALSE(LineFit2<TypeParam>(nullptr, count, this->origin2, this->direction2, this->error));
        EXPECT_FALSE(LineFit3<TypeParam>(nullptr, count, this->origin3, this->direction3, this->error));
        EXPECT_FALSE(LineSegmentFit3<TypeParam>(nullptr, count, this->origin3, this->end3, this->error));
    }
    this->ExpectUntouched();
}

TYPED_TEST(LineFit, OfTwoPointsBeginsAtTheFirst)
{
    const CadPoint2d<TypeParam> p2[] = {{1, 2}, {4, 6}};
    ASSERT_TRUE(LineFit2(p2, 2, this->origin2, this->direction2, this->error));
    EXPECT_TRUE(SameBits(this->origin2, {1.0, 2.0}));
    EXPECT_TRUE(SameBits(this->direction2, {3.0 / 5.0, 4.0 / 5.0}));
    EXPECT_EQ(this->error, 0.0);

    const CadPoint3d<TypeParam> p3[] = {{1, 2, 3}, {3, 4, 4}};
    this->error = -5.0;
    ASSERT_TRUE(LineFit3(p3, 2, this->origin3, this->direction3, this->error));
    EXPECT_TRUE(SameBits(this->origin3, {1.0, 2.0, 3.0}));
    EXPECT_TRUE(SameBits(this->direction3, {2.0 / 3.0, 2.0 / 3.0, 1.0 / 3.0}));
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(LineFit, OfTwoCoincidentPointsFailsWithOriginAndLastAxisWritten)
{
    const CadPoint2d<TypeParam> p2[] = {{1, 2}, {1, 2}};
    EXPECT_FALSE(LineFit2(p2, 2, this->origin2, this->direction2, this->error));
    EXPECT_TRUE(SameBits(this->origin2, {1.0, 2.0}));
    EXPECT_TRUE(SameBits(this->direction2, {0.0, 1.0}));
    const CadPoint3d<TypeParam> p3[] = {{1, 2, 3}, {1, 2, 3}};
    EXPECT_FALSE(LineFit3(p3, 2, this->origin3, this->direction3, this->error));
    EXPECT_TRUE(SameBits(this->origin3, {1.0, 2.0, 3.0}));
    EXPECT_TRUE(SameBits(this->direction3, {0.0, 0.0, 1.0}));
    EXPECT_EQ(this->error, -5.0);
}

TYPED_TEST(LineFit, OfTwoPointsNeedsALengthAbove2ToTheMinus23)
{
    const auto length = static_cast<TypeParam>(kEpsilon);
    const auto longer = std::nextafter(length, TypeParam(1));
    const auto shorter = std::nextafter(length, TypeParam(0));
    for (const auto& [x, isLine] : {std::pair(shorter, false), std::pair(length, false), std::pair(longer, true)}) {
        const CadPoint2d<TypeParam> p2[] = {{0, 0}, {x, 0}};
        EXPECT_EQ(LineFit2(p2, 2, this->origin2, this->direction2, this->error), isLine);
        const CadPoint3d<TypeParam> p3[] = {{0, 0, 0}, {0, x, 0}};
        EXPECT_EQ(LineFit3(p3, 2, this->origin3, this->direction3, this->error), isLine);
        EXPECT_TRUE(SameBits(this->direction3, {0.0, 1.0, 0.0}));
        EXPECT_EQ(LineSegmentFit3(p3, 2, this->origin3, this->end3, this->error), isLine);
    }
}

TEST(LineFitFloat, FormsTheDifferenceOfTwoPointsInDouble)
{
    const CadPoint2d<float> points[] = {{16777216.0F, 0.0F}, {1.0F, 0.1F}};
    CadPoint2d<double> origin;
    CadVector2d<double> direction;
    double error;
    ASSERT_TRUE(LineFit2(points, 2, origin, direction, error));
    CadVector2d<double> expected(1.0 - 16777216.0, static_cast<double>(0.1F));
    expected.normalize();
    EXPECT_TRUE(SameBits(direction, expected));
}

TYPED_TEST(LineFit, FollowsTheAxisOfLargestSpread)
{
    // Spread 4 along x, 1 along y: the mean squared distance is 1.
    const CadPoint2d<TypeParam> p2[] = {{2, 1}, {-2, 1}, {-2, -1}, {2, -1}};
    ASSERT_TRUE(LineFit2(p2, 4, this->origin2, this->direction2, this->error));
    EXPECT_TRUE(SameBits(this->origin2, {0.0, 0.0}));
    EXPECT_EQ(std::fabs(this->direction2.x()), 1.0);
    EXPECT_EQ(this->direction2.y(), 0.0);
    EXPECT_EQ(this->error, 1.0);

    const CadPoint3d<TypeParam> p3[] = {{0, 3, 0}, {0, -3, 0}, {0, 3, 0}, {0, -3, 0},
                                        {1, 0, 0}, {-1, 0, 0}, {0, 0, 1}, {0, 0, -1}};
    ASSERT_TRUE(LineFit3(p3, 8, this->origin3, this->direction3, this->error));
    EXPECT_TRUE(SameBits(this->origin3, {0.0, 0.0, 0.0}));
    EXPECT_EQ(std::fabs(this->direction3.y()), 1.0);
    EXPECT_EQ(this->error, std::sqrt(0.5));
}

TYPED_TEST(LineFit, OfThreeCoincidentPointsIsAUnitVectorWithoutError)
{
    const CadPoint2d<TypeParam> p2[] = {{1, 2}, {1, 2}, {1, 2}};
    ASSERT_TRUE(LineFit2(p2, 3, this->origin2, this->direction2, this->error));
    EXPECT_EQ(this->direction2.length(), 1.0);
    EXPECT_EQ(this->error, 0.0);
    const CadPoint3d<TypeParam> p3[] = {{1, 2, 4}, {1, 2, 4}, {1, 2, 4}};
    ASSERT_TRUE(LineFit3(p3, 3, this->origin3, this->direction3, this->error));
    EXPECT_EQ(this->direction3.length(), 1.0);
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(LineFit, EndsOnBadCoordinates)
{
    for (const auto bad : {std::numeric_limits<TypeParam>::quiet_NaN(), std::numeric_limits<TypeParam>::infinity(),
                           std::numeric_limits<TypeParam>::max(), std::numeric_limits<TypeParam>::denorm_min()}) {
        const CadPoint2d<TypeParam> p2[] = {{1, bad}, {bad, 2}, {3, -bad}, {1, 1}};
        EXPECT_TRUE(LineFit2(p2, 4, this->origin2, this->direction2, this->error));
        const CadPoint3d<TypeParam> p3[] = {{1, bad, 0}, {bad, 2, 1}, {3, -bad, 4}, {1, 1, bad}};
        EXPECT_TRUE(LineFit3(p3, 4, this->origin3, this->direction3, this->error));
        EXPECT_TRUE(LineSegmentFit3(p3, 4, this->origin3, this->end3, this->error));
    }
    // Making a vector with an infinity unit length leaves the signs of its infinities.
    const CadPoint2d<TypeParam> two[] = {{0, 0}, {-std::numeric_limits<TypeParam>::infinity(), 5}};
    EXPECT_TRUE(LineFit2(two, 2, this->origin2, this->direction2, this->error));
    EXPECT_TRUE(SameBits(this->direction2, {-1.0, 0.0}));
}

TYPED_TEST(LineFit, SegmentRunsFromTheFirstPointToTheLast)
{
    const CadPoint3d<TypeParam> rightToLeft[] = {{5, 1, 2}, {3, 1, 2}, {4, 1, 2}, {1, 1, 2}};
    ASSERT_TRUE(LineSegmentFit3(rightToLeft, 4, this->origin3, this->end3, this->error));
    EXPECT_NEAR(this->origin3.x(), 5.0, 1e-15);
    EXPECT_NEAR(this->end3.x(), 1.0, 1e-15);
    EXPECT_TRUE(this->origin3.y() == 1.0 && this->end3.z() == 2.0);
    EXPECT_EQ(this->error, 0.0);
    const CadPoint3d<TypeParam> leftToRight[] = {{1, 1, 2}, {3, 1, 2}, {4, 1, 2}, {5, 1, 2}};
    ASSERT_TRUE(LineSegmentFit3(leftToRight, 4, this->origin3, this->end3, this->error));
    EXPECT_NEAR(this->origin3.x(), 1.0, 1e-15);
    EXPECT_NEAR(this->end3.x(), 5.0, 1e-15);
}

TYPED_TEST(LineFit, SegmentCoversPointsBeyondTheFirstAndTheLast)
{
    const CadPoint3d<TypeParam> points[] = {{0, 0, 0}, {-3, 0, 0}, {9, 0, 0}, {1, 0, 0}};
    ASSERT_TRUE(LineSegmentFit3(points, 4, this->origin3, this->end3, this->error));
    EXPECT_NEAR(this->origin3.x(), -3.0, 1e-15);
    EXPECT_NEAR(this->end3.x(), 9.0, 1e-15);
}

TYPED_TEST(LineFit, SegmentOfTwoPointsJoinsThem)
{
    const CadPoint3d<TypeParam> points[] = {{1, 2, 3}, {3, 4, 4}};
    ASSERT_TRUE(LineSegmentFit3(points, 2, this->origin3, this->end3, this->error));
    EXPECT_TRUE(SameBits(this->origin3, {1.0, 2.0, 3.0}));
    EXPECT_NEAR(this->end3.x(), 3.0, 1e-15);
    EXPECT_NEAR(this->end3.z(), 4.0, 1e-15);
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(LineFit, SegmentOfCoincidentPointsIsThatPoint)
{
    const CadPoint3d<TypeParam> points[] = {{1, 2, 4}, {1, 2, 4}, {1, 2, 4}};
    ASSERT_TRUE(LineSegmentFit3(points, 3, this->origin3, this->end3, this->error));
    const CadPoint3d<double> point(1.0, 2.0, 4.0);
    EXPECT_TRUE(this->origin3.isEqual(point, 1e-15));
    EXPECT_TRUE(this->end3.isEqual(point, 1e-15));
}

TYPED_TEST(LineFit, SegmentOfTwoCoincidentPointsFailsUntouched)
{
    const CadPoint3d<TypeParam> points[] = {{1, 2, 3}, {1, 2, 3}};
    EXPECT_FALSE(LineSegmentFit3(points, 2, this->origin3, this->end3, this->error));
    this->ExpectUntouched();
}

TEST(LineSegmentFit3, ReachesBeyondTheLargestSingle)
{
    const CadPoint3d<double> points[] = {{0, 0, 0}, {1e39, 0, 0}, {-1e39, 0, 0}};
    CadPoint3d<double> start;
    CadPoint3d<double> end;
    double error;
    ASSERT_TRUE(LineSegmentFit3(points, 3, start, end, error));
    EXPECT_EQ(start.x(), 1e39);
    EXPECT_EQ(end.x(), -1e39);
}

TYPED_TEST(LineFit, ReachesTheBestFitInExtendedPrecision)
{
    std::mt19937_64 random(20240726);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double ulp = std::is_same_v<TypeParam, float> ? 1.2e-7 : 2.3e-16;
    for (const double distance : {0.0, 1.0, 1e3, 1e6}) {
        for (const double noise : {0.0, 1e-3, 0.1}) {
            for (int round = 0; round < 50; ++round) {
                const Frame frame = RandomFrame(random, distance);
                std::vector<CadPoint3d<TypeParam>> points;
                std::vector<CadPoint2d<TypeParam>> planar;
                for (int i = 0; i < 60; ++i) {
                    const CadPoint3d<double> p = frame.origin + frame.x * unit(random) +
                                                 frame.y * (noise * unit(random)) + frame.z * (noise * unit(random));
                    points.push_back(MakePoint<TypeParam>(p.x(), p.y(), p.z()));
                    planar.push_back(points.back().get2d());
                }
                const BestAxes<3> best(points);
                ASSERT_TRUE(LineFit3(points.data(), points.size(), this->origin3, this->direction3, this->error));
                // The mean carries the rounding of 60 additions, which moves the axes in the second order only; far
                // from the origin rounding decides about the points, but not about the fit of what is left.
                const Real gap = best.eigen.values[2] - best.eigen.values[1];
                const Real meanError = 60 * 2.3e-16L * (1 + Wide(distance));
                const Real momentError = 1e-15L + meanError * meanError;
                EXPECT_LE(SineBetween<3>(this->direction3, best.eigen.vectors[2]), 10 * momentError / gap);
                const Real squared = std::fabs(best.eigen.values[0] + best.eigen.values[1]);
                EXPECT_LE(std::fabs(Wide(this->error) * Wide(this->error) - squared), 10 * momentError);

                // Points sampled from a line without noise give that line, up to the rounding of the points.
                if (noise == 0.0) {
                    EXPECT_LE(SineBetween<3>(this->direction3, frame.x), 8 * ulp * (1.0 + distance));
                    EXPECT_LE(this->error, 2.0 * ulp * (1.0 + distance) + 4e-8);
                }

                const BestAxes<2> best2(planar);
                ASSERT_TRUE(LineFit2(planar.data(), planar.size(), this->origin2, this->direction2, this->error));
                const Real gap2 = best2.eigen.values[1] - best2.eigen.values[0];
                EXPECT_LE(SineBetween<2>(this->direction2, best2.eigen.vectors[1]), 10 * momentError / gap2);
                EXPECT_LE(std::fabs(Wide(this->error) * Wide(this->error) - std::fabs(best2.eigen.values[0])),
                          10 * momentError);
            }
        }
    }
}

TEST(LineFit2, IsAsGoodForSmallDataAsForLarge)
{
    std::mt19937_64 random(20240727);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (const double size : {1e-100, 1e-9, 1e-4, 1e3, 1e100}) {
        for (int round = 0; round < 200; ++round) {
            const double angle = kPi * unit(random);
            std::vector<CadPoint2d<double>> points;
            for (int i = 0; i < 20; ++i) {
                const double t = size * unit(random);
                points.emplace_back(t * std::cos(angle), t * std::sin(angle));
            }
            CadPoint2d<double> origin;
            CadVector2d<double> direction;
            double error;
            ASSERT_TRUE(LineFit2(points.data(), points.size(), origin, direction, error));
            EXPECT_LE(SineBetween<2>(direction, CadVector2d<double>(std::cos(angle), std::sin(angle))), 2e-15L);
        }
    }
}

TEST(LineFit3, NeedsALargerUnitForSmallData)
{
    std::mt19937_64 random(20240728);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    int wrong = 0;
    for (int round = 0; round < 200; ++round) {
        const Frame frame = RandomFrame(random, 0.0);
        std::vector<CadPoint3d<double>> points;
        for (int i = 0; i < 20; ++i) {
            points.push_back(frame.origin + frame.x * (3e-4 * unit(random)));
        }
        CadPoint3d<double> origin;
        CadVector3d<double> direction;
        double error;
        ASSERT_TRUE(LineFit3(points.data(), points.size(), origin, direction, error));
        wrong += SineBetween<3>(direction, frame.x) > 1e-3L ? 1 : 0;
        for (CadPoint3d<double>& p : points) {
            p *= 1e4;
        }
        ASSERT_TRUE(LineFit3(points.data(), points.size(), origin, direction, error));
        EXPECT_LE(SineBetween<3>(direction, frame.x), 2e-15L);
    }
    EXPECT_GT(wrong, 100);
}

} // namespace
