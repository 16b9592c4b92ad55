#include "fit/collinearity.h"

#include "fit/fit_test_support.h"

#include <limits>

namespace {

using namespace fit_test;
using cadgeom::detail::LieOnLine;
using cadgeom::detail::Pair;
using cadgeom::detail::PlanarPoints;

template <class T>
bool AreOnLine(const std::vector<CadPoint2d<T>>& points)
{
    // The bound that the fits have at hand: the root of the sum of squares.
    double x = 0.0;
    double y = 0.0;
    for (const CadPoint2d<T>& p : points) {
        x += static_cast<double>(p.x()) * static_cast<double>(p.x());
        y += static_cast<double>(p.y()) * static_cast<double>(p.y());
    }
    return LieOnLine(PlanarPoints<T>(points.data(), points.size()), Pair(std::sqrt(x), std::sqrt(y)));
}

template <class T>
class Collinearity : public testing::Test {};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(Collinearity, Scalars);

TYPED_TEST(Collinearity, IsSeenInAnyDirectionAtAnyPlace)
{
    std::mt19937_64 random(20240723);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int round = 0; round < 20000; ++round) {
        const double place = std::pow(10.0, 5.0 * unit(random));
        const double size = std::pow(10.0, 3.0 * unit(random));
        const double angle = kPi * unit(random);
        const auto x = static_cast<TypeParam>(place * unit(random));
        const auto y = static_cast<TypeParam>(place * unit(random));
        const auto dx = static_cast<TypeParam>(std::cos(angle));
        const auto dy = static_cast<TypeParam>(std::sin(angle));
        std::vector<CadPoint2d<TypeParam>> points;
        for (int i = 4 + static_cast<int>(random() % 30); i > 0; --i) {
            const auto t = static_cast<TypeParam>(size * unit(random));
            points.emplace_back(static_cast<TypeParam>(x + t * dx), static_cast<TypeParam>(y + t * dy));
        }
        ASSERT_TRUE(AreOnLine(points)) << "seed 20240723, round " << round;
    }
}

TYPED_TEST(Collinearity, IsNotSeenSixteenUnitsInTheLastPlaceOffALine)
{
    std::mt19937_64 random(20240724);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double units = 16.0 * static_cast<double>(std::numeric_limits<TypeParam>::epsilon());
    for (int round = 0; round < 20000; ++round) {
        const double angle = kPi * unit(random);
        const double x = unit(random);
        const double y = unit(random);
        std::vector<CadPoint2d<TypeParam>> points;
        for (int i = 4 + static_cast<int>(random() % 30); i > 0; --i) {
            const double t = unit(random);
            points.push_back(MakePoint<TypeParam>(x + t * std::cos(angle), y + t * std::sin(angle)));
        }
        CadPoint2d<TypeParam>& moved = points[random() % points.size()];
        const double size = 2.0 * (std::fabs(x) + std::fabs(y) + 2.0);
        points.push_back(MakePoint<TypeParam>(static_cast<double>(moved.x()) - units * size * std::sin(angle),
                                              static_cast<double>(moved.y()) + units * size * std::cos(angle)));
        ASSERT_FALSE(AreOnLine(points)) << "seed 20240724, round " << round;
    }
}

TYPED_TEST(Collinearity, OfCoincidentPointsIsSeen)
{
    EXPECT_TRUE(AreOnLine(std::vector<CadPoint2d<TypeParam>>(5, CadPoint2d<TypeParam>(3, 4))));
    EXPECT_TRUE(AreOnLine(std::vector<CadPoint2d<TypeParam>>(5, CadPoint2d<TypeParam>(0, 0))));
}

TYPED_TEST(Collinearity, IsNotSeenWhenAnyPointLeavesTheLine)
{
    for (std::size_t corner = 0; corner < 9; ++corner) {
        std::vector<CadPoint2d<TypeParam>> points;
        for (int i = 0; i < 9; ++i) {
            points.emplace_back(static_cast<TypeParam>(i), static_cast<TypeParam>(2 * i));
        }
        points[corner].y() += static_cast<TypeParam>(0.01);
        EXPECT_FALSE(AreOnLine(points)) << corner;
    }
}

TYPED_TEST(Collinearity, IsNotSeenInPointsThatAreNotFinite)
{
    for (const auto bad : {std::numeric_limits<TypeParam>::quiet_NaN(), std::numeric_limits<TypeParam>::infinity()}) {
        for (std::size_t index = 0; index < 6; ++index) {
            std::vector<CadPoint2d<TypeParam>> points;
            for (int i = 0; i < 6; ++i) {
                points.emplace_back(static_cast<TypeParam>(i), static_cast<TypeParam>(i));
            }
            points[index].x() = bad;
            EXPECT_FALSE(AreOnLine(points));
        }
    }
}

} // namespace
