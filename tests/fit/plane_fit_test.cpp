#include <cadgeom/fit/plane_fit.h>

#include "fit/fit_test_support.h"

#include <limits>

namespace {

using namespace fit_test;

template <class T>
class PlaneFit : public testing::Test {
protected:
    CadPoint3d<double> origin{7.0, 8.0, 9.0};
    CadVector3d<double> normal{4.0, 5.0, 6.0};
    double error = -5.0;
};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(PlaneFit, Scalars);

TYPED_TEST(PlaneFit, FailsUntouchedWithTooFewPointsOrNone)
{
    const CadPoint3d<TypeParam> points[] = {{0, 0, 0}, {1, 0, 0}};
    for (const std::uint64_t count : {0u, 1u, 2u}) {
        EXPECT_FALSE(PlaneFit3(points, count, this->origin, this->normal, this->error));
    }
    for (const std::uint64_t count : {std::uint64_t{0}, std::uint64_t{3}, std::uint64_t{4}, ~std::uint64_t{0}}) {
        EXPECT_FALSE(PlaneFit3<TypeParam>(nullptr, count, this->origin, this->normal, this->error));
    }
    EXPECT_TRUE(SameBits(this->origin, {7.0, 8.0, 9.0}));
    EXPECT_TRUE(SameBits(this->normal, {4.0, 5.0, 6.0}));
    EXPECT_EQ(this->error, -5.0);
}

TYPED_TEST(PlaneFit, OfThreePointsIsTheirTriangle)
{
    const CadPoint3d<TypeParam> points[] = {{0, 0, 5}, {3, 0, 5}, {0, 3, 5}};
    ASSERT_TRUE(PlaneFit3(points, 3, this->origin, this->normal, this->error));
    EXPECT_TRUE(SameBits(this->origin, {3.0 * (1.0 / 3.0), 3.0 * (1.0 / 3.0), 15.0 * (1.0 / 3.0)}));
    EXPECT_TRUE(SameBits(this->normal, {0.0, 0.0, 1.0}));
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(PlaneFit, OfThreeCollinearPointsFailsWithOriginAndNormalWritten)
{
    const CadPoint3d<TypeParam> points[] = {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}};
    EXPECT_FALSE(PlaneFit3(points, 3, this->origin, this->normal, this->error));
    EXPECT_TRUE(SameBits(this->origin, {3.0 * (1.0 / 3.0), 3.0 * (1.0 / 3.0), 3.0 * (1.0 / 3.0)}));
    EXPECT_TRUE(SameBits(this->normal, {0.0, 0.0, 1.0}));
    EXPECT_EQ(this->error, -5.0);
}

TYPED_TEST(PlaneFit, OfThreePointsNeedsAnAreaAbove2ToTheMinus23)
{
    const auto area = static_cast<TypeParam>(kEpsilon);
    for (const auto& [y, isPlane] : {std::pair(std::nextafter(area, TypeParam(0)), false), std::pair(area, false),
                                     std::pair(std::nextafter(area, TypeParam(1)), true)}) {
        const CadPoint3d<TypeParam> points[] = {{0, 0, 0}, {1, 0, 0}, {0, y, 0}};
        EXPECT_EQ(PlaneFit3(points, 3, this->origin, this->normal, this->error), isPlane);
        EXPECT_TRUE(SameBits(this->normal, {0.0, 0.0, 1.0}));
    }
}

TEST(PlaneFitFloat, FormsEdgesInFloatAndTheCrossProductInDouble)
{
    const CadPoint3d<float> points[] = {{0.1F, 0.2F, 0.3F}, {10.7F, 0.4F, 1e6F}, {3.3F, 5.1F, 0.7F}};
    CadPoint3d<double> origin;
    CadVector3d<double> normal;
    double error;
    ASSERT_TRUE(PlaneFit3(points, 3, origin, normal, error));
    CadVector3d<double> edges[2];
    for (int k = 0; k < 2; ++k) {
        for (int i = 0; i < 3; ++i) {
            const float difference = points[k + 1][i] - points[0][i];
            edges[k][i] = static_cast<double>(difference);
        }
    }
    EXPECT_TRUE(SameBits(normal, CadVector3d<double>(edges[0].crossAndNormalize(edges[1]))));
}

TYPED_TEST(PlaneFit, OfFourCollinearPointsIsPerpendicularToTheirLine)
{
    const CadPoint3d<TypeParam> points[] = {{0, 0, 0}, {1, 2, -1}, {2, 4, -2}, {3, 6, -3}};
    ASSERT_TRUE(PlaneFit3(points, 4, this->origin, this->normal, this->error));
    EXPECT_NEAR(this->normal.length(), 1.0, 1e-15);
    EXPECT_NEAR(this->normal.dot(CadVector3d<double>(1.0, 2.0, -1.0)), 0.0, 1e-15);
    EXPECT_NEAR(this->error, 0.0, 1e-7); // the root of a rounded zero
    const CadPoint3d<TypeParam> onAxis[] = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    ASSERT_TRUE(PlaneFit3(onAxis, 4, this->origin, this->normal, this->error));
    EXPECT_EQ(this->normal.x(), 0.0);
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(PlaneFit, OfFourCoincidentPointsIsAUnitNormalWithoutError)
{
    const std::vector<CadPoint3d<TypeParam>> points(4, CadPoint3d<TypeParam>(1, 2, 4));
    ASSERT_TRUE(PlaneFit3(points.data(), 4, this->origin, this->normal, this->error));
    EXPECT_EQ(this->normal.length(), 1.0);
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(PlaneFit, MeasuresTheRootMeanSquareDistance)
{
    const CadPoint3d<TypeParam> points[] = {{2, 2, 1}, {-2, 2, -1}, {-2, -2, 1}, {2, -2, -1}};
    ASSERT_TRUE(PlaneFit3(points, 4, this->origin, this->normal, this->error));
    EXPECT_TRUE(SameBits(this->origin, {0.0, 0.0, 0.0}));
    EXPECT_EQ(std::fabs(this->normal.z()), 1.0);
    EXPECT_EQ(this->error, 1.0);
}

TYPED_TEST(PlaneFit, EndsOnBadCoordinates)
{
    for (const auto bad : {std::numeric_limits<TypeParam>::quiet_NaN(), std::numeric_limits<TypeParam>::infinity(),
                           std::numeric_limits<TypeParam>::max(), static_cast<TypeParam>(1e150),
                           std::numeric_limits<TypeParam>::denorm_min()}) {
        const CadPoint3d<TypeParam> points[] = {{1, bad, 0}, {bad, 2, 1}, {3, -bad, 4}, {1, 1, bad}, {0, 1, 2}};
        EXPECT_TRUE(PlaneFit3(points, 5, this->origin, this->normal, this->error));
    }
    const auto nan = std::numeric_limits<TypeParam>::quiet_NaN();
    const CadPoint3d<TypeParam> triangle[] = {{nan, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    this->error = -5.0;
    PlaneFit3(triangle, 3, this->origin, this->normal, this->error);
    EXPECT_TRUE(std::isnan(this->origin.x()));
}

TYPED_TEST(PlaneFit, ReachesTheBestFitInExtendedPrecision)
{
    std::mt19937_64 random(20240729);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double ulp = std::is_same_v<TypeParam, float> ? 1.2e-7 : 2.3e-16;
    for (const double distance : {0.0, 1.0, 1e3, 1e6}) {
        for (const double noise : {0.0, 1e-3, 0.1}) {
            for (int round = 0; round < 50; ++round) {
                const Frame frame = RandomFrame(random, distance);
                std::vector<CadPoint3d<TypeParam>> points;
                for (int i = 0; i < 60; ++i) {
                    const CadPoint3d<double> p = frame.origin + frame.x * unit(random) + frame.y * unit(random) +
                                                 frame.z * (noise * unit(random));
                    points.push_back(MakePoint<TypeParam>(p.x(), p.y(), p.z()));
                }
                ASSERT_TRUE(PlaneFit3(points.data(), points.size(), this->origin, this->normal, this->error));
                const BestAxes<3> best(points);
                const Real gap = best.eigen.values[1] - best.eigen.values[0];
                const Real meanError = 60 * 2.3e-16L * (1 + Wide(distance));
                const Real momentError = 1e-15L + meanError * meanError;
                // A dropped mixed moment is below 2^-23; with points of this size that is rare, and mild.
                EXPECT_LE(SineBetween<3>(this->normal, best.eigen.vectors[0]),
                          10 * momentError / gap + 1.2e-6L * Wide(noise));
                EXPECT_LE(std::fabs(Wide(this->error) * Wide(this->error) - std::fabs(best.eigen.values[0])),
                          10 * momentError + 1e-12L * Wide(noise));
                if (noise == 0.0) {
                    EXPECT_LE(SineBetween<3>(this->normal, frame.z), 8 * ulp * (1.0 + distance));
                    EXPECT_LE(this->error, 2.0 * ulp * (1.0 + distance) + 4e-8);
                }
            }
        }
    }
}

TEST(PlaneFit3, NeedsALargerUnitForSmallData)
{
    std::mt19937_64 random(20240730);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    int wrong = 0;
    for (int round = 0; round < 200; ++round) {
        const Frame frame = RandomFrame(random, 0.0);
        std::vector<CadPoint3d<double>> points;
        for (int i = 0; i < 20; ++i) {
            points.push_back(frame.origin + frame.x * (3e-4 * unit(random)) + frame.y * (3e-4 * unit(random)));
        }
        CadPoint3d<double> origin;
        CadVector3d<double> normal;
        double error;
        ASSERT_TRUE(PlaneFit3(points.data(), points.size(), origin, normal, error));
        wrong += SineBetween<3>(normal, frame.z) > 1e-3L ? 1 : 0;
        for (CadPoint3d<double>& p : points) {
            p *= 1e4;
        }
        ASSERT_TRUE(PlaneFit3(points.data(), points.size(), origin, normal, error));
        EXPECT_LE(SineBetween<3>(normal, frame.z), 5e-15L);
    }
    EXPECT_GT(wrong, 100);
}

} // namespace
