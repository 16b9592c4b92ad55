#include "roots/roots_testing.h"

#include <gtest/gtest.h>

#include <type_traits>

using roots_testing::kInfinity;
using roots_testing::kNan;
using roots_testing::MakePolynomial;
using roots_testing::ToValues;
using roots_testing::Values;

TEST(Polynomial, IsEmptyWithoutCoefficients)
{
    EXPECT_EQ(Polynomial1().GetDegree(), -1);
    EXPECT_EQ(Polynomial1(-1, nullptr).GetDegree(), -1);
    EXPECT_EQ(Polynomial1(-7, nullptr).GetDegree(), -1);
    EXPECT_EQ(Polynomial1(3, nullptr).GetDegree(), -1);
    EXPECT_EQ(Polynomial1()(2.0), 0.0);
}

TEST(Polynomial, KeepsItsCoefficientsLowestPowerFirst)
{
    Polynomial1 polynomial = MakePolynomial({1, 2, 3});
    EXPECT_EQ(polynomial.GetDegree(), 2);
    EXPECT_EQ(polynomial(2.0), 17.0);
    polynomial[0] = 5;
    EXPECT_EQ(ToValues(polynomial), (Values{5, 2, 3}));
}

TEST(Polynomial, IsEvaluatedByHornersRule)
{
    const Values c{0.1, -0.7, 1.3, 2.9};
    const double x = 1.7;
    EXPECT_EQ(MakePolynomial(c)(x), ((c[3] * x + c[2]) * x + c[1]) * x + c[0]);
    EXPECT_EQ(MakePolynomial({4})(kInfinity), 4.0);
    EXPECT_EQ(MakePolynomial({0, 1})(kInfinity), kInfinity);
    EXPECT_TRUE(std::isnan(MakePolynomial({0, kNan})(0.0)));
}

TEST(Polynomial, CopiesAndMoves)
{
    Polynomial1 polynomial = MakePolynomial({1, 2});
    Polynomial1 copy(polynomial);
    copy[0] = 9;
    EXPECT_EQ(ToValues(polynomial), (Values{1, 2}));
    const Polynomial1& same = polynomial;
    polynomial = same;
    EXPECT_EQ(ToValues(polynomial), (Values{1, 2}));
    polynomial = copy;
    EXPECT_EQ(ToValues(polynomial), (Values{9, 2}));
    Polynomial1 moved(std::move(copy));
    EXPECT_EQ(ToValues(moved), (Values{9, 2}));
    EXPECT_EQ(copy.GetDegree(), -1);
    copy = std::move(moved);
    EXPECT_EQ(ToValues(copy), (Values{9, 2}));
    EXPECT_EQ(moved.GetDegree(), -1);
    const Polynomial1 empty;
    copy = empty;
    EXPECT_EQ(copy.GetDegree(), -1);
    static_assert(std::is_nothrow_move_constructible_v<Polynomial1> && std::is_nothrow_move_assignable_v<Polynomial1>);
}

TEST(Polynomial, NegatesEveryCoefficient)
{
    const Values negated = ToValues(-MakePolynomial({0, -2, 3}));
    EXPECT_EQ(negated, (Values{0, 2, -3}));
    EXPECT_TRUE(std::signbit(negated[0]));
    EXPECT_EQ((-Polynomial1()).GetDegree(), -1);
}

TEST(Polynomial, HasADerivative)
{
    EXPECT_EQ(ToValues(MakePolynomial({5, 1, -2, 4}).GetDerivative()), (Values{1, -4, 12}));
    EXPECT_EQ(ToValues(MakePolynomial({5}).GetDerivative()), (Values{0}));
    EXPECT_EQ(Polynomial1().GetDerivative().GetDegree(), -1);
}

TEST(Polynomial, DividesWithRemainder)
{
    Polynomial1 quotient;
    Polynomial1 remainder;
    // (x^2 + 2 x + 3) (2 x - 4) + 5
    MakePolynomial({-7, -2, 0, 2}).Divide(MakePolynomial({-4, 2}), quotient, remainder, 0.0);
    EXPECT_EQ(ToValues(quotient), (Values{3, 2, 1}));
    EXPECT_EQ(ToValues(remainder), (Values{5}));
    // (x^2 + 1) (x - 1) + (3 x + 1)
    MakePolynomial({0, 4, -1, 1}).Divide(MakePolynomial({1, 0, 1}), quotient, remainder, 0.0);
    EXPECT_EQ(ToValues(quotient), (Values{-1, 1}));
    EXPECT_EQ(ToValues(remainder), (Values{1, 3}));
}

TEST(Polynomial, IsItsOwnRemainderBelowTheDegreeOfTheDivisor)
{
    Polynomial1 quotient;
    Polynomial1 remainder;
    MakePolynomial({1, 2}).Divide(MakePolynomial({1, 2, 3}), quotient, remainder, 10.0);
    EXPECT_EQ(ToValues(quotient), (Values{0}));
    EXPECT_EQ(ToValues(remainder), (Values{1, 2}));
    MakePolynomial({1, 2}).Divide(Polynomial1(), quotient, remainder, 10.0);
    EXPECT_EQ(ToValues(quotient), (Values{0}));
    EXPECT_EQ(ToValues(remainder), (Values{1, 2}));
    Polynomial1().Divide(Polynomial1(), quotient, remainder, 0.0);
    EXPECT_EQ(ToValues(quotient), (Values{0}));
    EXPECT_EQ(remainder.GetDegree(), -1);
}

TEST(Polynomial, LeavesAnEmptyRemainderBehindAConstant)
{
    Polynomial1 quotient;
    Polynomial1 remainder = MakePolynomial({1});
    MakePolynomial({2, 4}).Divide(MakePolynomial({2}), quotient, remainder, 0.0);
    EXPECT_EQ(ToValues(quotient), (Values{1, 2}));
    EXPECT_EQ(remainder.GetDegree(), -1);
}

TEST(Polynomial, DropsLeadingCoefficientsOfTheRemainderBelowEpsilon)
{
    Polynomial1 quotient;
    Polynomial1 remainder;
    const Polynomial1 divisor = MakePolynomial({0, 0, 0, 1});
    const double epsilon = 0.25;
    MakePolynomial({7, epsilon, 0.125, 1}).Divide(divisor, quotient, remainder, epsilon);
    EXPECT_EQ(ToValues(remainder), (Values{7, epsilon}));
    MakePolynomial({epsilon, 0.125, 0.125, 1}).Divide(divisor, quotient, remainder, epsilon);
    EXPECT_EQ(ToValues(remainder), (Values{epsilon}));
    MakePolynomial({0.125, 0.125, 0.125, 1}).Divide(divisor, quotient, remainder, epsilon);
    EXPECT_EQ(ToValues(remainder), (Values{0}));
}

TEST(Polynomial, DividesWhateverTheResultsOverwrite)
{
    Polynomial1 polynomial = MakePolynomial({-7, -2, 0, 2});
    Polynomial1 divisor = MakePolynomial({-4, 2});
    polynomial.Divide(divisor, divisor, polynomial, 0.0);
    EXPECT_EQ(ToValues(divisor), (Values{3, 2, 1}));
    EXPECT_EQ(ToValues(polynomial), (Values{5}));
    Polynomial1 remainder;
    polynomial.Divide(divisor, polynomial, remainder, 0.0);
    EXPECT_EQ(ToValues(polynomial), (Values{0}));
    EXPECT_EQ(ToValues(remainder), (Values{5}));
}

TEST(Polynomial, DividesAsTheReciprocalOfTheLeadingCoefficientSays)
{
    Polynomial1 quotient;
    Polynomial1 remainder;
    MakePolynomial({0, 5}).Divide(MakePolynomial({1, 49}), quotient, remainder, 0.0);
    EXPECT_EQ(quotient[0], 5.0 * (1.0 / 49.0));
    MakePolynomial({1, 1}).Divide(MakePolynomial({1, 0}), quotient, remainder, 0.0);
    EXPECT_EQ(quotient[0], kInfinity);
}

TEST(Polynomial, CompressesToAMonicPolynomial)
{
    Polynomial1 polynomial = MakePolynomial({2, 6, 4, 0.5, -0.5});
    polynomial.Compress(0.5);
    EXPECT_EQ(ToValues(polynomial), (Values{0.5, 1.5, 1}));
    polynomial = MakePolynomial({2, std::nextafter(0.5, 1.0)});
    polynomial.Compress(0.5);
    EXPECT_EQ(polynomial.GetDegree(), 1);
    polynomial = MakePolynomial({0.5, 0.25});
    polynomial.Compress(0.5);
    EXPECT_EQ(polynomial.GetDegree(), -1);
    polynomial.Compress(0.5);
    EXPECT_EQ(polynomial.GetDegree(), -1);
    polynomial = MakePolynomial({7});
    polynomial.Compress(0.0);
    EXPECT_EQ(ToValues(polynomial), (Values{1}));
    polynomial = MakePolynomial({5, 49});
    polynomial.Compress(0.0);
    EXPECT_EQ(polynomial[0], 5.0 / 49.0);
}
