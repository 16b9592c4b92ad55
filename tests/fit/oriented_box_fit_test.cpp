#include <cadgeom/fit/oriented_box_fit.h>

#include "fit/fit_test_support.h"

#include <limits>

namespace {

using namespace fit_test;

template <class T>
class OrientedBoxFit : public testing::Test {
protected:
    CadPoint2d<double> center{7.0, 8.0};
    CadVector2d<double> axis{5.0, 6.0};
    CadVector2d<double> extents{3.0, 4.0};

    bool Fit(const std::vector<CadPoint2d<T>>& points)
    {
        return OrientedBoxFit2(points.data(), points.size(), center, axis, extents);
    }
};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(OrientedBoxFit, Scalars);

TYPED_TEST(OrientedBoxFit, FailsUntouchedWithoutPoints)
{
    const CadPoint2d<TypeParam> point(1, 2);
    EXPECT_FALSE(OrientedBoxFit2(&point, 0, this->center, this->axis, this->extents));
    EXPECT_FALSE(OrientedBoxFit2<TypeParam>(nullptr, 0, this->center, this->axis, this->extents));
    EXPECT_FALSE(OrientedBoxFit2<TypeParam>(nullptr, 4, this->center, this->axis, this->extents));
    EXPECT_TRUE(SameBits(this->center, {7.0, 8.0}));
    EXPECT_TRUE(SameBits(this->axis, {5.0, 6.0}));
    EXPECT_TRUE(SameBits(this->extents, {3.0, 4.0}));
}

TYPED_TEST(OrientedBoxFit, OfOnePointIsThatPoint)
{
    ASSERT_TRUE(this->Fit({{1, 2}}));
    EXPECT_TRUE(SameBits(this->center, {1.0, 2.0}));
    EXPECT_TRUE(SameBits(this->axis, {1.0, 0.0}));
    EXPECT_TRUE(SameBits(this->extents, {0.0, 0.0}));
}

TYPED_TEST(OrientedBoxFit, OfTwoPointsIsTheirSegment)
{
    ASSERT_TRUE(this->Fit({{1, 2}, {1, 6}}));
    EXPECT_TRUE(SameBits(this->center, {1.0, 4.0}));
    EXPECT_TRUE(SameBits(this->axis, {0.0, 1.0}));
    EXPECT_TRUE(SameBits(this->extents, {2.0, 0.0}));
}

TYPED_TEST(OrientedBoxFit, OfTwoCoincidentPointsHasNoExtent)
{
    ASSERT_TRUE(this->Fit({{1, 2}, {1, 2}}));
    EXPECT_TRUE(SameBits(this->center, {1.0, 2.0}));
    EXPECT_TRUE(SameBits(this->axis, {0.0, 1.0}));
    EXPECT_TRUE(SameBits(this->extents, {0.0, 0.0}));
}

TYPED_TEST(OrientedBoxFit, OfARectanglesCornersIsTheRectangle)
{
    ASSERT_TRUE(this->Fit({{4, 2}, {0, 2}, {0, 0}, {4, 0}}));
    EXPECT_TRUE(SameBits(this->center, {2.0, 1.0}));
    EXPECT_EQ(this->axis.x(), 0.0);
    EXPECT_EQ(std::fabs(this->axis.y()), 1.0);
    EXPECT_TRUE(SameBits(this->extents, {1.0, 2.0}));
}

TYPED_TEST(OrientedBoxFit, OfCollinearPointsHasNoWidth)
{
    ASSERT_TRUE(this->Fit({{0, 5}, {2, 5}, {1, 5}, {7, 5}}));
    EXPECT_EQ(std::fabs(this->axis.y()), 1.0);
    EXPECT_EQ(this->extents.x(), 0.0);
    EXPECT_EQ(this->extents.y(), 3.5);
    EXPECT_EQ(this->center.x(), 3.5);
}

TYPED_TEST(OrientedBoxFit, IsCenteredBetweenTheExtremesNotAtTheMean)
{
    ASSERT_TRUE(this->Fit({{0, 0}, {0, 1}, {0, 0}, {0, 1}, {10, 0}}));
    EXPECT_GT(this->extents.y(), 4.9);
    const CadVector2d<double> across = this->axis.orthogonalVector();
    double lowest = 1e9;
    double highest = -1e9;
    for (const CadPoint2d<double> p : {CadPoint2d<double>(0, 0), CadPoint2d<double>(0, 1), CadPoint2d<double>(10, 0)}) {
        const double v = (p - this->center).dot(across);
        lowest = std::min(lowest, v);
        highest = std::max(highest, v);
    }
    EXPECT_NEAR(lowest, -this->extents.y(), 1e-14);
    EXPECT_NEAR(highest, this->extents.y(), 1e-14);
}

TYPED_TEST(OrientedBoxFit, EndsOnBadCoordinates)
{
    for (const auto bad : {std::numeric_limits<TypeParam>::quiet_NaN(), std::numeric_limits<TypeParam>::infinity(),
                           std::numeric_limits<TypeParam>::max(), static_cast<TypeParam>(1e150)}) {
        EXPECT_TRUE(this->Fit({{bad, 1}}));
        EXPECT_TRUE(this->Fit({{bad, 1}, {2, bad}}));
        EXPECT_TRUE(this->Fit({{bad, 1}, {2, bad}, {3, 3}, {-bad, 0}}));
    }
    EXPECT_TRUE(this->Fit({{1, 1}, {2, std::numeric_limits<TypeParam>::quiet_NaN()}, {3, 3}}));
    EXPECT_TRUE(std::isnan(this->extents.x()));
}

TYPED_TEST(OrientedBoxFit, ReachesTheBoxOfTheBestAxesInExtendedPrecision)
{
    std::mt19937_64 random(20240731);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double ulp = std::is_same_v<TypeParam, float> ? 1.2e-7 : 2.3e-16;
    for (const double distance : {0.0, 1e3, 1e6}) {
        for (int round = 0; round < 100; ++round) {
            // Points in a rectangle of half sides 1 and 0.3, its corners among them.
            const double angle = kPi * unit(random);
            const CadVector2d<double> u(std::cos(angle), std::sin(angle));
            const CadVector2d<double> v = u.orthogonalVector();
            const CadPoint2d<double> middle(distance * unit(random), distance * unit(random));
            std::vector<CadPoint2d<TypeParam>> points;
            for (int i = 0; i < 400; ++i) {
                const CadPoint2d<double> p = middle + u * unit(random) + v * (0.3 * unit(random));
                points.push_back(MakePoint<TypeParam>(p.x(), p.y()));
            }
            ASSERT_TRUE(this->Fit(points));
            const BestAxes<2> best(points);
            const Real gap = best.eigen.values[1] - best.eigen.values[0];
            const Real meanError = 400 * 2.3e-16L * (1 + Wide(distance));
            EXPECT_LE(SineBetween<2>(this->axis, best.eigen.vectors[0]), 10 * (1e-15L + meanError * meanError) / gap);
            Real bounds[2][2] = {{1e9L, -1e9L}, {1e9L, -1e9L}};
            for (const auto& p : points) {
                for (int k = 0; k < 2; ++k) {
                    const Real t = (Wide(p.x()) - best.mean[0]) * best.eigen.vectors[k][0] +
                                   (Wide(p.y()) - best.mean[1]) * best.eigen.vectors[k][1];
                    bounds[k][0] = std::min(bounds[k][0], t);
                    bounds[k][1] = std::max(bounds[k][1], t);
                }
            }
            const double tolerance = 1e-14 + 2.0 * static_cast<double>(meanError);
            EXPECT_NEAR(this->extents.x(), static_cast<double>((bounds[0][1] - bounds[0][0]) / 2), tolerance);
            EXPECT_NEAR(this->extents.y(), static_cast<double>((bounds[1][1] - bounds[1][0]) / 2), tolerance);
            // The rectangle that the points came from is met as well as 400 random points meet it.
            EXPECT_LE(SineBetween<2>(this->axis, v), 0.1L + Wide(ulp * distance));
        }
    }
}

TYPED_TEST(OrientedBoxFit, EnclosesItsPoints)
{
    std::mt19937_64 random(20240801);
    std::normal_distribution<double> normal;
    for (int round = 0; round < 500; ++round) {
        std::vector<CadPoint2d<TypeParam>> points;
        for (int i = 1 + static_cast<int>(random() % 20); i > 0; --i) {
            points.push_back(MakePoint<TypeParam>(3.0 * normal(random), normal(random)));
        }
        ASSERT_TRUE(this->Fit(points));
        EXPECT_NEAR(this->axis.length(), 1.0, 1e-15);
        for (const auto& p : points) {
            const CadVector2d<double> d = Widened(p) - this->center;
            EXPECT_LE(std::fabs(d.dot(this->axis)), this->extents.x() + 1e-14);
            EXPECT_LE(std::fabs(d.dot(this->axis.orthogonalVector())), this->extents.y() + 1e-14);
        }
    }
}

} // namespace
