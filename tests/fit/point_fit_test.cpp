#include <cadgeom/fit/point_fit.h>

#include "fit/fit_test_support.h"

namespace {

using namespace fit_test;

template <class T>
class PointFit : public testing::Test {
protected:
    CadPoint3d<double> center{7.0, 8.0, 9.0};
    double error = 5.0;
};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(PointFit, Scalars);

TYPED_TEST(PointFit, FailsUntouchedWithoutPoints)
{
    const CadPoint3d<TypeParam> point(1, 2, 3);
    EXPECT_FALSE(PointFit3(&point, 0, this->center, &this->error));
    EXPECT_FALSE(PointFit3<TypeParam>(nullptr, 1, this->center, &this->error));
    EXPECT_FALSE(PointFit3<TypeParam>(nullptr, ~std::uint64_t{0}, this->center, nullptr));
    EXPECT_TRUE(SameBits(this->center, {7.0, 8.0, 9.0}));
    EXPECT_EQ(this->error, 5.0);
}

TYPED_TEST(PointFit, OfOnePointIsThatPoint)
{
    const CadPoint3d<TypeParam> point(1, 2, 3);
    ASSERT_TRUE(PointFit3(&point, 1, this->center, &this->error));
    EXPECT_TRUE(SameBits(this->center, {1.0, 2.0, 3.0}));
    EXPECT_EQ(this->error, 0.0);
}

TYPED_TEST(PointFit, WritesTheCentreAloneForANullError)
{
    const CadPoint3d<TypeParam> points[] = {{1, 2, 3}, {3, 4, 7}};
    ASSERT_TRUE(PointFit3(points, 2, this->center, nullptr));
    EXPECT_TRUE(SameBits(this->center, {2.0, 3.0, 5.0}));
}

TYPED_TEST(PointFit, MeasuresTheRootMeanSquareDistance)
{
    // Distances 3, 3, 1, 1 from the origin.
    const CadPoint3d<TypeParam> points[] = {{2, 2, 1}, {-2, -2, -1}, {0, 1, 0}, {0, -1, 0}};
    ASSERT_TRUE(PointFit3(points, 4, this->center, &this->error));
    EXPECT_TRUE(SameBits(this->center, {0.0, 0.0, 0.0}));
    EXPECT_EQ(this->error, std::sqrt(5.0));
}

TEST(PointFitFloat, MeasuresFromTheRoundedMeanInFloat)
{
    const CadPoint3d<float> points[] = {{0.1F, 0.2F, 0.3F}, {0.7F, 1.1F, 5.0F}, {100.3F, 2.0F, 1.0F}};
    CadPoint3d<double> center;
    double error;
    ASSERT_TRUE(PointFit3(points, 3, center, &error));
    double sum = 0.0;
    for (const CadPoint3d<float>& p : points) {
        const float dx = p.x() - static_cast<float>(center.x());
        const float dy = p.y() - static_cast<float>(center.y());
        const float dz = p.z() - static_cast<float>(center.z());
        sum += static_cast<double>(dx * dx + dy * dy + dz * dz);
    }
    EXPECT_EQ(error, std::sqrt(sum / 3.0));

    // The same values as double give another error, and the same centre.
    CadPoint3d<double> wide[3];
    for (int i = 0; i < 3; ++i) {
        wide[i] = Widened(points[i]);
    }
    CadPoint3d<double> wideCenter;
    double wideError;
    ASSERT_TRUE(PointFit3(wide, 3, wideCenter, &wideError));
    EXPECT_TRUE(SameBits(center, wideCenter));
    EXPECT_NE(error, wideError);
    EXPECT_NEAR(error, wideError, 1e-5 * wideError);
}

TYPED_TEST(PointFit, PassesOnWhatIsNotFinite)
{
    const CadPoint3d<TypeParam> points[] = {{1, 2, 3},
                                            {static_cast<TypeParam>(NAN), 1, static_cast<TypeParam>(INFINITY)}};
    ASSERT_TRUE(PointFit3(points, 2, this->center, &this->error));
    EXPECT_TRUE(std::isnan(this->center.x()));
    EXPECT_EQ(this->center.y(), 1.5);
    EXPECT_TRUE(std::isinf(this->center.z()));
    EXPECT_TRUE(std::isnan(this->error));
}

TYPED_TEST(PointFit, ReachesTheBestFitInExtendedPrecision)
{
    std::mt19937_64 random(20240725);
    std::normal_distribution<double> normal;
    for (const double distance : {0.0, 1e3, 1e6}) {
        std::vector<CadPoint3d<TypeParam>> points;
        for (int i = 0; i < 500; ++i) {
            points.push_back(
                MakePoint<TypeParam>(distance + normal(random), normal(random) - distance, normal(random)));
        }
        ASSERT_TRUE(PointFit3(points.data(), points.size(), this->center, &this->error));
        const BestAxes<3> best(points);
        Real squares = 0;
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(this->center[i], static_cast<double>(best.mean[i]), 5e-15 * (1.0 + distance));
            squares += best.eigen.values[i];
        }
        // Single precision sees distances to its last place at the mean.
        const double unit = std::is_same_v<TypeParam, float> ? 1.2e-7 : 2.3e-16;
        EXPECT_NEAR(this->error, static_cast<double>(std::sqrt(squares)), 10.0 * unit * (1.0 + distance));
    }
}

} // namespace
