#include "roots/roots_testing.h"

#include <gtest/gtest.h>

using roots_testing::kLargest;
using roots_testing::kNan;
using roots_testing::MakePolynomial;
using roots_testing::ToValues;
using roots_testing::Values;

TEST(PolynomialRootsObject, StartsWithoutRoots)
{
    PolynomialRoots roots(1e-9);
    EXPECT_EQ(roots.Epsilon(), 1e-9);
    EXPECT_EQ(roots.MaxIterations(), 128);
    EXPECT_EQ(roots.GetCount(), 0);
    EXPECT_NE(roots.GetRoots(), nullptr);
    roots.Epsilon() = 0.5;
    roots.MaxIterations() = 3;
    EXPECT_EQ(static_cast<const PolynomialRoots&>(roots).Epsilon(), 0.5);
    EXPECT_EQ(static_cast<const PolynomialRoots&>(roots).MaxIterations(), 3);
}

TEST(PolynomialRootsObject, HasNoRootOutsideItsCount)
{
    PolynomialRoots roots(1e-9);
    EXPECT_TRUE(roots.FindA(-1, 0, 1));
    EXPECT_EQ(roots.GetRoot(0), -1.0);
    EXPECT_EQ(roots.GetRoot(1), 1.0);
    EXPECT_EQ(roots.GetRoot(-1), kLargest);
    EXPECT_EQ(roots.GetRoot(2), kLargest);
}

TEST(PolynomialRootsObject, SharesItsBufferWithItsCopies)
{
    PolynomialRoots original(1e-9);
    original.FindA(-1, 0, 1);
    PolynomialRoots assigned(0.5);
    {
        PolynomialRoots copy(original);
        assigned = copy;
        EXPECT_EQ(copy.GetRoots(), original.GetRoots());
    }
    EXPECT_EQ(assigned.GetRoots(), original.GetRoots());
    EXPECT_EQ(assigned.Epsilon(), 1e-9);
    EXPECT_EQ(assigned.GetCount(), 2);
    EXPECT_TRUE(assigned.FindA(-7, 1));
    EXPECT_EQ(original.GetCount(), 2);
    EXPECT_EQ(original.GetRoot(0), 7.0);
}

TEST(PolynomialRootsObject, LeavesTheSharedBufferWhenItNeedsALargerOne)
{
    PolynomialRoots original(1e-9);
    original.FindA(-1, 0, 1);
    PolynomialRoots copy(original);
    EXPECT_TRUE(copy.FindB(MakePolynomial(roots_testing::FromRoots({-2, -1, 0, 1, 2})), -3, 3, 6));
    EXPECT_NE(copy.GetRoots(), original.GetRoots());
    EXPECT_EQ(ToValues(original), (Values{-1, 1}));
    EXPECT_EQ(copy.GetCount(), 5);
    const PolynomialRoots& same = copy;
    copy = same;
    EXPECT_EQ(copy.GetCount(), 5);
}

TEST(PolynomialRootsObject, DoesNotProvideTheOtherFinders)
{
    PolynomialRoots roots(1e-9);
    roots.FindA(-1, 0, 1);
    const Polynomial1 polynomial = MakePolynomial({-2, 1});
    EXPECT_FALSE(roots.FindE(polynomial, true));
    EXPECT_FALSE(roots.FindE(Polynomial1(), false));
    EXPECT_FALSE(roots.FindN(polynomial, 6));
    EXPECT_FALSE(roots.FindN(polynomial, -3, 3, 6));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1}));
}

TEST(PolynomialRootsBound, OfLinearPolynomialsCarriesTheSignOfTheLeadingCoefficient)
{
    const PolynomialRoots roots(0.25);
    EXPECT_EQ(roots.GetBound(1, -2), 0.5);
    EXPECT_EQ(roots.GetBound(-3, 2), 2.5);
    EXPECT_EQ(roots.GetBound(1, 0.25), -1.0);
    EXPECT_EQ(roots.GetBound(1, -0.25), -1.0);
    EXPECT_EQ(roots.GetBound(1, 0.5), 3.0);
    EXPECT_EQ(roots.GetBound(5, 49), 5.0 * (1.0 / 49.0) + 1.0);
}

TEST(PolynomialRootsBound, OfHigherDegreesTakesTheLargestCoefficient)
{
    PolynomialRoots roots(0.25);
    EXPECT_EQ(roots.GetBound(1, -6, 2), 4.0);
    EXPECT_EQ(roots.GetBound(-8, 6, 2), 5.0);
    EXPECT_EQ(roots.GetBound(1, -6, -2), -2.0);
    EXPECT_EQ(roots.GetBound(1, 2, -8, 4), 3.0);
    EXPECT_EQ(roots.GetBound(1, -6, 2, 0.25), 4.0);
    EXPECT_EQ(roots.GetBound(1, 2, 3, -8, 2), 5.0);
    EXPECT_EQ(roots.GetBound(1, 2, -8, 4, -0.25), 3.0);
    EXPECT_EQ(roots.GetBound(1, -6, 2, 0, 0), 4.0);
    EXPECT_EQ(roots.GetCount(), 0);
}

TEST(PolynomialRootsBound, OfAQuadraticThatIsLinearIsItsRoot)
{
    PolynomialRoots roots(0.25);
    EXPECT_EQ(roots.GetBound(3, 0.25, 0.25), -12.0);
    EXPECT_EQ(ToValues(roots), (Values{-12}));
    EXPECT_EQ(roots.GetBound(1, 0.125, 0), kLargest);
    EXPECT_EQ(roots.GetCount(), 0);
    EXPECT_EQ(roots.GetBound(6, -2, 0, 0, 0), 3.0);
    EXPECT_EQ(roots.GetCount(), 1);
}

TEST(PolynomialRootsBound, OfAnyPolynomialIsCauchys)
{
    const PolynomialRoots roots(0.25);
    EXPECT_EQ(roots.GetBound(MakePolynomial({1, -6, -2})), 4.0);
    EXPECT_EQ(roots.GetBound(MakePolynomial({1, -6, -2, 0.25})), 4.0);
    EXPECT_EQ(roots.GetBound(MakePolynomial({5})), -1.0);
    EXPECT_EQ(roots.GetBound(MakePolynomial({5, 0.25})), -1.0);
    EXPECT_EQ(roots.GetBound(Polynomial1()), -1.0);
    EXPECT_TRUE(std::isnan(roots.GetBound(MakePolynomial({1, 2, kNan}))));
}

TEST(PolynomialRootsBound, HoldsAllPublishedRoots)
{
    for (const auto& published : roots_testing::ReadPublishedPolynomials()) {
        const double bound = PolynomialRoots(0.0).GetBound(MakePolynomial(published.coefficients));
        for (const double root : published.roots) {
            EXPECT_LE(std::fabs(root), bound) << published.name;
        }
    }
}
