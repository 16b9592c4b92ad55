#include <cadgeom/bounds/triangle_box_overlap.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <type_traits>
#include <vector>

#include "box_testing.h"
#include "space_kit.h"

namespace {

using box_testing::AnyComponents;
using box_testing::NumberStream;
using box_testing::OrderedBox;
using box_testing::OrderedIntegerBox;
using box_testing::SmallIntegers;
using box_testing::UniformComponents;

template <class Scalar>
class TriangleAndBox : public ::testing::Test {
protected:
    static bool Overlaps(const CBoundingBox3d<Scalar>& box, const CadPoint3d<Scalar>& a, const CadPoint3d<Scalar>& b,
                         const CadPoint3d<Scalar>& c)
    {
        const CadPoint3d<Scalar> triangle[3] = {a, b, c};
        return TriangleBoxOverlap(box, triangle);
    }
};

TYPED_TEST_SUITE(TriangleAndBox, box_testing::Scalars);

TYPED_TEST(TriangleAndBox, OverlapInAFacePlane)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 2, 2, 2);
    EXPECT_TRUE(this->Overlaps(box, P(0.5, 0.5, 2), P(1.5, 0.5, 2), P(0.5, 1.5, 2)));
    EXPECT_TRUE(this->Overlaps(box, P(0, 0.5, 0.5), P(0, 1.5, 0.5), P(0, 0.5, 1.5)));
    EXPECT_FALSE(this->Overlaps(box, P(0.5, 0.5, 2.01), P(1.5, 0.5, 2.01), P(0.5, 1.5, 2.01)));
}

TYPED_TEST(TriangleAndBox, OverlapInsideAndThrough)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 2, 2, 2);
    EXPECT_TRUE(this->Overlaps(box, P(0.5, 0.5, 0.5), P(1.5, 0.5, 0.75), P(0.5, 1.5, 1)));
    // All vertices far outside: the plane decides.
    EXPECT_TRUE(this->Overlaps(box, P(-50, -50, 1), P(50, -50, 1), P(0, 80, 1)));
    EXPECT_TRUE(this->Overlaps(box, P(-50, -50, 5), P(50, -50, 5), P(0, 80, -6)));
    EXPECT_FALSE(this->Overlaps(box, P(10, 0, 0), P(0, 10, 0), P(0, 0, 10)));
    EXPECT_TRUE(this->Overlaps(box, P(6, 0, 0), P(0, 6, 0), P(0, 0, 6)));
}

TYPED_TEST(TriangleAndBox, AreSeparatedByAnEdgeAxisAlone)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(-1, -1, -1, 1, 1, 1);
    // Beside the edge x = y = 1, across the diagonal; within the box on every axis, and its plane meets the box.
    EXPECT_FALSE(this->Overlaps(box, P(2.25, 0, 0), P(0, 2.25, 0), P(2.25, 2.25, 0.5)));
    EXPECT_TRUE(this->Overlaps(box, P(1.75, 0, 0), P(0, 1.75, 0), P(2.25, 2.25, 0.5)));
}

TYPED_TEST(TriangleAndBox, DifferInTheToleranceOfTheBoxAxes)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    const auto beyond = [&](double gap) {
        return this->Overlaps(box, P(1 + gap, 0.4, 0.4), P(1 + gap, 0.6, 0.4), P(1 + gap, 0.4, 0.6));
    };
    EXPECT_TRUE(beyond(0));
    if (std::is_same_v<T, double>) {
        EXPECT_TRUE(beyond(0.9e-6));
        EXPECT_FALSE(beyond(1.1e-6));
        EXPECT_FALSE(beyond(5e-5));
    } else {
        // The edges are short, so that the other axes, which are not normalised, are generous.
        EXPECT_TRUE(beyond(5e-5));
        EXPECT_TRUE(beyond(0.99e-4));
        EXPECT_FALSE(beyond(1.01e-4));
    }
}

TYPED_TEST(TriangleAndBox, HaveAToleranceInUnitsOfTheAxisOtherwise)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(-1, -1, -1, 1, 1, 1);
    // A plane tilted against the box: the normal (1, 1, 1) * k^2 meets the corner (1, 1, 1) at distance gap * k^2.
    const auto beyondCorner = [&](double size, double gap) {
        const double s = 1 + gap / 3;
        return this->Overlaps(box, P(s + 2 * size, s - size, s - size), P(s - size, s + 2 * size, s - size),
                              P(s - size, s - size, s + 2 * size));
    };
    EXPECT_TRUE(beyondCorner(1.0, 0.0));
    // |e0 x e1| = 9 along each axis for size 1: the tolerance 1e-4 is reached at a gap of 1e-4 / 9.
    EXPECT_TRUE(beyondCorner(1.0, 0.9e-5));
    EXPECT_FALSE(beyondCorner(1.0, 1.4e-5));
    EXPECT_FALSE(beyondCorner(4.0, 0.9e-5));
}

TEST(TriangleAndBoxInDouble, HaveTheSinglePrecisionToleranceOnEdgeAxes)
{
    // The edge from (1, 0) to (0, 1) in x and y, lifted by a gap: q x e is 1 + 2 * gap against a radius of 1, with a box
    // of half-size 1/2.
    const CBoundingBox3d<double> box(CadPoint3d<double>(-0.5, -0.5, -0.5), CadPoint3d<double>(0.5, 0.5, 0.5));
    constexpr double kTolerance = 9.999999747378752e-5;
    const auto overlaps = [&](double gap) {
        const CadPoint3d<double> triangle[3] = {
            {1.0 + gap, 0.0, 0.0}, {0.0, 1.0 + gap, 0.0}, {1.0 + gap, 1.0 + gap, 0.25}};
        return TriangleBoxOverlap(box, triangle);
    };
    // (1 + gap)^2 against (1 + gap) + tolerance: gap * (1 + gap) is the excess.
    const double critical = (std::sqrt(1.0 + 4.0 * kTolerance) - 1.0) / 2.0;
    EXPECT_TRUE(overlaps(critical - 1e-12));
    EXPECT_FALSE(overlaps(critical + 1e-12));
}

TYPED_TEST(TriangleAndBox, LeaveDegenerateTrianglesToTheBoxAxes)
{
    CADGEOM_USE_SPACE_TYPES;
    const Box box = Of(0, 0, 0, 1, 1, 1);
    EXPECT_TRUE(this->Overlaps(box, P(0.5, 0.5, 0.5), P(0.5, 0.5, 0.5), P(0.5, 0.5, 0.5)));
    EXPECT_TRUE(this->Overlaps(box, P(1, 1, 1), P(1, 1, 1), P(1, 1, 1)));
    EXPECT_FALSE(this->Overlaps(box, P(1.001, 1, 1), P(1.001, 1, 1), P(1.001, 1, 1)));
    EXPECT_TRUE(this->Overlaps(box, P(-1, -1, -1), P(2, 2, 2), P(3, 3, 3)));
    EXPECT_FALSE(this->Overlaps(box, P(-1, -1, -3), P(2, 2, -3), P(3, 3, -3)));
}

TYPED_TEST(TriangleAndBox, RejectOrdinaryTrianglesForAnEmptyBox)
{
    CADGEOM_USE_SPACE_TYPES;
    EXPECT_FALSE(this->Overlaps(Box(), P(0, 0, 0), P(1, 0, 0), P(0, 1, 0)));
}

TYPED_TEST(TriangleAndBox, GiveOneAnswerForEveryOrderOfTheVertices)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(1);
    for (int trial = 0; trial < 5000; ++trial) {
        const auto box = OrderedIntegerBox<Box, Point>(numbers, 4);
        std::array<Point, 3> t;
        std::generate(t.begin(), t.end(), [&] { return SmallIntegers<Point>(numbers, 8); });
        const bool overlaps = this->Overlaps(box, t[0], t[1], t[2]);
        EXPECT_EQ(overlaps, this->Overlaps(box, t[1], t[2], t[0]));
        EXPECT_EQ(overlaps, this->Overlaps(box, t[2], t[1], t[0]));
    }
}

/// A fraction in lowest terms.
struct Fraction {
    Fraction(std::int64_t n = 0, std::int64_t d = 1)
    {
        const std::int64_t divisor = std::max<std::int64_t>(1, std::gcd(n, d));
        numerator = (d < 0 ? -n : n) / divisor;
        denominator = std::abs(d) / divisor;
    }
    Fraction operator+(const Fraction& o) const
    {
        return {numerator * o.denominator + o.numerator * denominator, denominator * o.denominator};
    }
    Fraction operator-(const Fraction& o) const { return *this + Fraction(-o.numerator, o.denominator); }
    Fraction operator*(const Fraction& o) const
    {
        const Fraction a(numerator, o.denominator);
        const Fraction b(o.numerator, denominator);
        return {a.numerator * b.numerator, a.denominator * b.denominator};
    }
    Fraction operator/(const Fraction& o) const { return *this * Fraction(o.denominator, o.numerator); }
    bool IsNegative() const { return numerator < 0; }

    std::int64_t numerator;
    std::int64_t denominator;
};

using ExactPoint = std::array<Fraction, 3>;

/// Clips a polygon to the half-space where sign * (coordinate - bound) >= 0 (Sutherland and Hodgman), exactly.
std::vector<ExactPoint> Clip(const std::vector<ExactPoint>& polygon, std::size_t axis, int bound, int sign)
{
    const auto height = [&](const ExactPoint& p) { return Fraction(sign) * (p[axis] - Fraction(bound)); };
    std::vector<ExactPoint> clipped;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const ExactPoint& from = polygon[i];
        const ExactPoint& to = polygon[(i + 1) % polygon.size()];
        const Fraction h0 = height(from);
        const Fraction h1 = height(to);
        if (!h0.IsNegative()) {
            clipped.push_back(from);
        }
        if ((h0.numerator < 0 && h1.numerator > 0) || (h0.numerator > 0 && h1.numerator < 0)) {
            const Fraction t = h0 / (h0 - h1);
            ExactPoint crossing;
            for (std::size_t k = 0; k < 3; ++k) {
                crossing[k] = from[k] + t * (to[k] - from[k]);
            }
            clipped.push_back(crossing);
        }
    }
    return clipped;
}

TYPED_TEST(TriangleAndBox, AgreeWithExactClipping)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(2);
    int overlapCount = 0;
    constexpr int kTrials = 20000;
    for (int trial = 0; trial < kTrials; ++trial) {
        const auto box = OrderedIntegerBox<Box, Point>(numbers, 3);
        Point triangle[3];
        std::vector<ExactPoint> polygon;
        for (Point& vertex : triangle) {
            vertex = SmallIntegers<Point>(numbers, 5);
            polygon.push_back({Fraction(static_cast<int>(vertex[0])), Fraction(static_cast<int>(vertex[1])),
                               Fraction(static_cast<int>(vertex[2]))});
        }
        for (int axis = 0; axis < 3 && !polygon.empty(); ++axis) {
            const auto at = static_cast<std::size_t>(axis);
            polygon = Clip(polygon, at, static_cast<int>(box.GetMin()[axis]), 1);
            polygon = Clip(polygon, at, static_cast<int>(box.GetMax()[axis]), -1);
        }
        ASSERT_EQ(!polygon.empty(), TriangleBoxOverlap(box, triangle)) << "trial " << trial;
        overlapCount += polygon.empty() ? 0 : 1;
    }
    EXPECT_GT(overlapCount, kTrials / 10);
    EXPECT_LT(overlapCount, kTrials * 9 / 10);
}

/// The thirteen tests one after the other, each leaving at once; returns the number of the one that separated, or 0.
template <class T>
int SeparatingTestStepByStep(const CBoundingBox3d<T>& box, const CadPoint3d<T>* tri)
{
    constexpr bool kIsFloat = std::is_same_v<T, float>;
    const T edgeTol = kIsFloat ? static_cast<T>(1e-4F) : static_cast<T>(9.999999747378752e-5);
    const T boxTol = kIsFloat ? static_cast<T>(1e-4F) : static_cast<T>(1e-6);
    CadVector3d<T> h;
    CadVector3d<T> q[3];
    for (int i = 0; i < 3; ++i) {
        const T m = T(0.5) * (box.GetMin()[i] + box.GetMax()[i]);
        h[i] = T(0.5) * (box.GetMax()[i] - box.GetMin()[i]);
        for (int k = 0; k < 3; ++k) {
            q[k][i] = tri[k][i] - m;
        }
    }
    const CadVector3d<T> e[3] = {q[1] - q[0], q[2] - q[1], q[0] - q[2]};
    const auto apart = [](T a, T b, T radius, T eps) {
        const T min = a < b ? a : b;
        const T max = a < b ? b : a;
        return min > radius + eps || max < -radius - eps;
    };
    struct Test {
        int edge;
        int axis;
        int first;
        int second;
    };
    const Test tests[9] = {{0, 0, 0, 2}, {0, 1, 0, 2}, {0, 2, 1, 2}, {1, 0, 0, 2}, {1, 1, 0, 2},
                           {1, 2, 0, 1}, {2, 0, 0, 1}, {2, 1, 0, 1}, {2, 2, 1, 2}};
    for (int i = 0; i < 9; ++i) {
        const CadVector3d<T>& edge = e[tests[i].edge];
        const T fx = std::fabs(edge[0]);
        const T fy = std::fabs(edge[1]);
        const T fz = std::fabs(edge[2]);
        T p[2];
        const int vertices[2] = {tests[i].first, tests[i].second};
        T radius = T(0);
        for (int k = 0; k < 2; ++k) {
            const CadVector3d<T>& v = q[vertices[k]];
            if (tests[i].axis == 0) {
                p[k] = edge[2] * v[1] - edge[1] * v[2];
                radius = fz * h[1] + fy * h[2];
            } else if (tests[i].axis == 1) {
                p[k] = edge[0] * v[2] - edge[2] * v[0];
                radius = fz * h[0] + fx * h[2];
            } else {
                p[k] = edge[1] * v[0] - edge[0] * v[1];
                radius = fy * h[0] + fx * h[1];
            }
        }
        if (apart(p[0], p[1], radius, edgeTol)) {
            return i + 1;
        }
    }
    for (int i = 0; i < 3; ++i) {
        T min = q[0][i];
        T max = q[0][i];
        for (int k = 1; k < 3; ++k) {
            if (q[k][i] < min) {
                min = q[k][i];
            }
            if (q[k][i] > max) {
                max = q[k][i];
            }
        }
        if (min > h[i] + boxTol || max < -h[i] - boxTol) {
            return 10 + i;
        }
    }
    const CadVector3d<T> n = e[0].cross(e[1]);
    const T d = -n.dot(q[0]);
    CadVector3d<T> vmin;
    CadVector3d<T> vmax;
    for (int i = 0; i < 3; ++i) {
        vmin[i] = n[i] > T(0) ? -h[i] : h[i];
        vmax[i] = n[i] > T(0) ? h[i] : -h[i];
    }
    if (n.dot(vmin) + d > edgeTol) {
        return 13;
    }
    return n.dot(vmax) + d >= -edgeTol ? 0 : 13;
}

TYPED_TEST(TriangleAndBox, AgreeWithTheTestsOneAfterTheOther)
{
    CADGEOM_USE_SPACE_TYPES;
    NumberStream<T> numbers(3);
    int counts[14] = {};
    for (int trial = 0; trial < 60000; ++trial) {
        const bool isSpecial = trial % 4 == 0;
        const Box box = isSpecial ? Box(AnyComponents<Point>(numbers), AnyComponents<Point>(numbers))
                                  : OrderedBox<Box, Point>(numbers, 3.0);
        Point triangle[3];
        for (Point& vertex : triangle) {
            vertex = isSpecial ? AnyComponents<Point>(numbers) : UniformComponents<Point>(numbers, 5.0);
        }
        const int separating = SeparatingTestStepByStep(box, triangle);
        ASSERT_EQ(separating == 0, TriangleBoxOverlap(box, triangle)) << "trial " << trial;
        ++counts[separating];
    }
    for (int test = 0; test < 14; ++test) {
        EXPECT_GT(counts[test], 20) << "test " << test;
    }
}

} // namespace
