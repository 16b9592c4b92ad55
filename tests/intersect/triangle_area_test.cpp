#include <cadgeom/intersect/triangle_area.h>

#include "meshes.h"
#include "samples.h"

#include <cmath>

using samples::kInfinity;
using samples::kNaN;
using samples::SameBits;

namespace {

template <class T>
class TriangleArea : public ::testing::Test {};

TYPED_TEST_SUITE(TriangleArea, samples::ScalarTypes);

} // namespace

TYPED_TEST(TriangleArea, FollowsFromTheSideLengthsInAnyOrder)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_EQ(ComputeTriangleArea(T(3), T(4), T(5)), T(6));
    EXPECT_EQ(ComputeTriangleArea(T(3), T(5), T(4)), T(6));
    EXPECT_EQ(ComputeTriangleArea(T(4), T(3), T(5)), T(6));
    EXPECT_EQ(ComputeTriangleArea(T(4), T(5), T(3)), T(6));
    EXPECT_EQ(ComputeTriangleArea(T(5), T(3), T(4)), T(6));
    EXPECT_EQ(ComputeTriangleArea(T(5), T(4), T(3)), T(6));
}

TYPED_TEST(TriangleArea, IsZeroWithoutATriangle)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_EQ(ComputeTriangleArea(T(1), T(2), T(3)), T(0));
    EXPECT_EQ(ComputeTriangleArea(T(1), T(1), T(3)), T(0));
    EXPECT_EQ(ComputeTriangleArea(T(0), T(0), T(0)), T(0));
    EXPECT_EQ(ComputeTriangleArea(kNaN<T>, T(1), T(1)), T(0));
    EXPECT_EQ(ComputeTriangleArea(T(1), kNaN<T>, T(1)), T(0));
    EXPECT_EQ(ComputeTriangleArea(T(1), T(1), kNaN<T>), T(0));
    EXPECT_EQ(ComputeTriangleArea(kInfinity<T>, kInfinity<T>, T(1)), T(0));
}

TYPED_TEST(TriangleArea, FollowsFromTheCorners)
{
    CADGEOM_TEST_TYPES(TypeParam);
    EXPECT_EQ(ComputeTriangleArea(Point(1, 1, 7), Point(4, 1, 7), Point(1, 5, 7)), T(6));
    EXPECT_EQ(ComputeTriangleArea(Point(1, 1, 7), Point(1, 1, 7), Point(1, 5, 7)), T(0));
}

TYPED_TEST(TriangleArea, EvaluatesTheBracketsAsStated)
{
    CADGEOM_TEST_TYPES(TypeParam);
    samples::Source<T> source(91);
    for (int i = 0; i < 10000; ++i) {
        const T z = source.Between(0, 1);
        const T y = source.Between(1, 2);
        const T x = source.Between(2, 3);
        const T product = (x + (y + z)) * (z - (x - y)) * (z + (x - y)) * (x + (y - z));
        const T expected = product > T(0) ? T(0.25) * std::sqrt(product) : T(0);
        ASSERT_TRUE(SameBits(ComputeTriangleArea(y, z, x), expected)) << i;
        const Point a = source.Point(1);
        const Point b = source.Point(1);
        const Point c = source.Point(1);
        ASSERT_TRUE(SameBits(ComputeTriangleArea(a, b, c),
                             ComputeTriangleArea((b - a).length(), (c - b).length(), (a - c).length())))
            << i;
    }
}

TEST(ComputeTriangleArea, KeepsItsDigitsForNeedles)
{
    // Sides 100000, 99999.99979 and 0.00029 of Kahan's table: Heron's plain formula has no correct digit.
    EXPECT_NEAR(ComputeTriangleArea(100000.0, 99999.99979, 0.00029), 9.9999999895, 1e-6);
}

TEST(ComputeTriangleArea, AddsUpToThePublishedAreasOfMeshes)
{
    const auto area = [](const std::string& name) {
        const meshes::Mesh mesh = meshes::ReadMesh(name);
        double sum = 0;
        for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
            sum += ComputeTriangleArea(mesh.Corner(i, 0), mesh.Corner(i, 1), mesh.Corner(i, 2));
        }
        return sum;
    };
    EXPECT_NEAR(area("featuretype"), 53.8273861181822, 1e-9);
    EXPECT_NEAR(area("ballA"), 605.909413288794, 1e-10);
}
