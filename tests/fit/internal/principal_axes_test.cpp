#include "fit/principal_axes.h"

#include "fit/fit_test_support.h"

namespace {

using namespace fit_test;
using cadgeom::detail::PrincipalAxesFit2;

template <class T>
class PrincipalAxes : public testing::Test {
protected:
    CadPoint2d<double> center{7.0, 8.0};
    CadVector2d<double> axis{5.0, 6.0};
    CadVector2d<double> spreads{3.0, 4.0};

    bool Fit(const std::vector<CadPoint2d<T>>& points)
    {
        return PrincipalAxesFit2(points.data(), points.size(), center, axis, spreads);
    }
};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(PrincipalAxes, Scalars);

TYPED_TEST(PrincipalAxes, FailUntouchedWithoutPoints)
{
    const CadPoint2d<TypeParam> point(1, 2);
    EXPECT_FALSE(PrincipalAxesFit2(&point, 0, this->center, this->axis, this->spreads));
    EXPECT_FALSE(PrincipalAxesFit2<TypeParam>(nullptr, 3, this->center, this->axis, this->spreads));
    EXPECT_TRUE(SameBits(this->center, {7.0, 8.0}));
    EXPECT_TRUE(SameBits(this->axis, {5.0, 6.0}));
    EXPECT_TRUE(SameBits(this->spreads, {3.0, 4.0}));
}

TYPED_TEST(PrincipalAxes, OfOnePointAreX)
{
    ASSERT_TRUE(this->Fit({{1, 2}}));
    EXPECT_TRUE(SameBits(this->center, {1.0, 2.0}));
    EXPECT_TRUE(SameBits(this->axis, {1.0, 0.0}));
    EXPECT_TRUE(SameBits(this->spreads, {0.0, 0.0}));
}

TYPED_TEST(PrincipalAxes, OfTwoPointsJoinThem)
{
    ASSERT_TRUE(this->Fit({{1, 2}, {4, 6}}));
    EXPECT_TRUE(SameBits(this->center, {2.5, 4.0}));
    EXPECT_TRUE(SameBits(this->axis, {3.0 / 5.0, 4.0 / 5.0}));
    EXPECT_TRUE(SameBits(this->spreads, {5.0, 0.0}));
}

TYPED_TEST(PrincipalAxes, OfTwoCoincidentPointsAreY)
{
    ASSERT_TRUE(this->Fit({{1, 2}, {1, 2}}));
    EXPECT_TRUE(SameBits(this->axis, {0.0, 1.0}));
    EXPECT_TRUE(SameBits(this->spreads, {0.0, 0.0}));
}

TYPED_TEST(PrincipalAxes, BeginWithTheLeastSpread)
{
    ASSERT_TRUE(this->Fit({{2, 1}, {-2, 1}, {-2, -1}, {2, -1}}));
    EXPECT_TRUE(SameBits(this->center, {0.0, 0.0}));
    EXPECT_EQ(this->axis.x(), 0.0);
    EXPECT_EQ(std::fabs(this->axis.y()), 1.0);
    EXPECT_TRUE(SameBits(this->spreads, {1.0, 4.0}));
}

} // namespace
