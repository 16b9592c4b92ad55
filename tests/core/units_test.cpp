#include <cadgeom/core/point3d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector3d.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "support/numbers.h"
#include "support/same_bits.h"

namespace {

using test_support::NumberStream;

const CADUNITS kUnits[] = {CADUNITS_INCHES,      CADUNITS_MILLIMETERS, CADUNITS_MILS,  CADUNITS_FEET,
                           CADUNITS_CENTIMETERS, CADUNITS_METERS,      CADUNITS_MILES, CADUNITS_KILOMETERS,
                           CADUNITS_MICRONS,     CADUNITS_MICROINCHES};

TEST(Units, HaveTheTabulatedValuesPerMillimetre)
{
    const double expected[] = {
        0.03937007874015748, 1, 39.37007874015748, 0.0032808398950131233, 0.1, 0.001, 6.21371192237334e-07, 1e-06, 1000,
        39370.078740157485};
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(int{kUnits[i]}, i);
        EXPECT_EQ(GetUnitsPerMM(kUnits[i]), expected[i]);
    }
}

TEST(Units, HaveTheTabulatedValuesPerInch)
{
    const double expected[] = {
        1, 25.4, 1000, 0.08333333333333333, 2.54, 0.0254, 1.5782828282828283e-05, 2.5399999999999997e-05, 25400, 1e6};
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(GetUnitsPerInch(kUnits[i]), expected[i]);
    }
}

TEST(Units, CountAsOneOutsideTheTable)
{
    for (const int value : {-1, 10, 42, 98, 99, 100, INT_MAX, INT_MIN}) {
        EXPECT_EQ(GetUnitsPerMM(static_cast<CADUNITS>(value)), 1.0);
        EXPECT_EQ(GetUnitsPerInch(static_cast<CADUNITS>(value)), 1.0);
    }
    EXPECT_EQ(GetConversionFactor(static_cast<CADUNITS>(42), CADUNITS_MILLIMETERS), 1.0);
    EXPECT_EQ(GetConversionFactor(static_cast<CADUNITS>(42), CADUNITS_METERS), 0.001);
}

TEST(Units, ConvertInchesToMillimetresAndBack)
{
    EXPECT_EQ(GetConversionFactor(CADUNITS_INCHES, CADUNITS_MILLIMETERS), 25.4);
    EXPECT_EQ(GetConversionFactor(CADUNITS_MILLIMETERS, CADUNITS_INCHES), 0.03937007874015748);
}

TEST(Units, SkipConversionsBetweenEqualAndUnknownUnits)
{
    for (const CADUNITS units : kUnits) {
        EXPECT_EQ(GetConversionFactor(units, CADUNITS_NONE), 1.0);
        EXPECT_EQ(GetConversionFactor(CADUNITS_NONE, units), 1.0);
        EXPECT_EQ(GetConversionFactor(units, units), 1.0);
    }
}

TEST(Units, AgreeWithTheDefinitionsOfTheUnits)
{
    const double millimetres[] = {25.4, 1, 0.0254, 304.8, 10, 1000, 1609344, 1e6, 0.001, 2.54e-5};
    for (int from = 0; from < 10; ++from) {
        for (int to = 0; to < 10; ++to) {
            const double exact = millimetres[from] / millimetres[to];
            EXPECT_NEAR(GetConversionFactor(kUnits[from], kUnits[to]) / exact, 1.0, 2e-15);
        }
    }
}

template <class S>
class BulkOperations : public ::testing::Test {
protected:
    static std::vector<CadPoint3d<S>> Points(std::size_t count)
    {
        NumberStream<S> numbers(301);
        std::vector<CadPoint3d<S>> points(count);
        for (auto& point : points) {
            point.set(numbers.Any(), numbers.Any(), numbers.Any());
        }
        return points;
    }
};
using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(BulkOperations, Scalars);

TYPED_TEST(BulkOperations, MultiplyEveryCoordinateByTheFactorInDouble)
{
    for (const std::size_t count : {1U, 2U, 3U, 7U, 100U}) {
        const auto before = this->Points(count);
        for (const double factor : {10.0, 0.001, 25.4, -3.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
            auto points = before;
            PointsScale(points.data(), points.size(), factor);
            for (std::size_t i = 0; i < count; ++i) {
                for (int axis = 0; axis < 3; ++axis) {
                    ASSERT_SAME_BITS(static_cast<TypeParam>(static_cast<double>(before[i][axis]) * factor),
                                     points[i][axis]);
                }
            }
        }
    }
}

TYPED_TEST(BulkOperations, ConvertPointsAndDisplacementsAlike)
{
    for (const CADUNITS from : kUnits) {
        for (const CADUNITS to : kUnits) {
            const auto before = this->Points(9);
            auto points = before;
            std::vector<CadVector3d<TypeParam>> vectors(9);
            for (std::size_t i = 0; i < 9; ++i) {
                vectors[i].set(before[i].x(), before[i].y(), before[i].z());
            }
            PointsConvertUnits(points.data(), points.size(), from, to);
            DeltaVectorsConvertUnits(vectors.data(), vectors.size(), from, to);
            const double factor = GetUnitsPerMM(to) / GetUnitsPerMM(from);
            for (std::size_t i = 0; i < 9; ++i) {
                for (int axis = 0; axis < 3; ++axis) {
                    const TypeParam expected =
                        from == to ? before[i][axis]
                                   : static_cast<TypeParam>(static_cast<double>(before[i][axis]) * factor);
                    ASSERT_SAME_BITS(expected, points[i][axis]);
                    ASSERT_SAME_BITS(expected, vectors[i][axis]);
                }
            }
        }
    }
}

TYPED_TEST(BulkOperations, AddTheDisplacementInDouble)
{
    for (const std::size_t count : {1U, 2U, 5U, 64U}) {
        const auto before = this->Points(count);
        auto points = before;
        const CadVector3d<double> displacement(0.1, -0.0, 1e-9);
        PointsTranslate(points.data(), points.size(), displacement);
        for (std::size_t i = 0; i < count; ++i) {
            for (int axis = 0; axis < 3; ++axis) {
                ASSERT_SAME_BITS(static_cast<TypeParam>(static_cast<double>(before[i][axis]) + displacement[axis]),
                                 points[i][axis]);
            }
        }
    }
}

TYPED_TEST(BulkOperations, LeaveEveryBitAloneWhenNothingChanges)
{
    const auto before = this->Points(50);
    auto points = before;
    PointsScale(points.data(), points.size(), 1.0);
    PointsTranslate(points.data(), points.size(), CadVector3d<double>(0.0, -0.0, 0.0));
    PointsConvertUnits(points.data(), points.size(), CADUNITS_NONE, CADUNITS_FEET);
    PointsConvertUnits(points.data(), points.size(), CADUNITS_FEET, CADUNITS_NONE);
    PointsConvertUnits(points.data(), points.size(), CADUNITS_FEET, CADUNITS_FEET);
    PointsScale(points.data(), 0, 2.0);
    EXPECT_EQ(std::memcmp(points.data(), before.data(), before.size() * sizeof(before[0])), 0);
}

TYPED_TEST(BulkOperations, AddANaNDisplacement)
{
    auto points = this->Points(1);
    PointsTranslate(points.data(), points.size(), CadVector3d<double>(0, std::numeric_limits<double>::quiet_NaN(), 0));
    EXPECT_TRUE(std::isnan(points[0].y()));
}

TYPED_TEST(BulkOperations, AcceptANullArray)
{
    CadPoint3d<TypeParam>* const points = nullptr;
    CadVector3d<TypeParam>* const vectors = nullptr;
    PointsConvertUnits(points, 5, CADUNITS_FEET, CADUNITS_INCHES);
    DeltaVectorsConvertUnits(vectors, 5, CADUNITS_FEET, CADUNITS_INCHES);
    PointsTranslate(points, 5, CadVector3d<double>(1, 2, 3));
    PointsScale(points, 5, 2.0);
}

TYPED_TEST(BulkOperations, TouchNothingBehindTheArray)
{
    auto points = this->Points(8);
    const auto before = points;
    PointsScale(points.data(), 7, 2.0);
    PointsTranslate(points.data(), 7, CadVector3d<double>(1, 1, 1));
    PointsConvertUnits(points.data(), 7, CADUNITS_FEET, CADUNITS_INCHES);
    EXPECT_EQ(std::memcmp(&points[7], &before[7], sizeof(before[7])), 0);
}

} // namespace
