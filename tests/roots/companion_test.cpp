#include "roots/roots_testing.h"

#include <cadgeom/linalg/dynamic_matrix.h>

#include <gtest/gtest.h>

#include <tuple>

using roots_testing::FromRoots;
using roots_testing::kNan;
using roots_testing::RandomRoots;
using roots_testing::Sorted;
using roots_testing::ToValues;
using roots_testing::Values;

// The machinery behind the finders is private: explicit instantiation, which ignores access, hands out pointers to it.
namespace {

template <class Tag, auto kMember>
struct Reveal {
    friend constexpr auto Private(Tag) { return kMember; }
};

#define CADGEOM_TEST_REVEAL(Name)                                                                                      \
    struct Name {                                                                                                      \
        friend constexpr auto Private(Name);                                                                           \
    };                                                                                                                 \
    template struct Reveal<Name, &PolynomialRoots::Name>

CADGEOM_TEST_REVEAL(GetRowNorm);
CADGEOM_TEST_REVEAL(GetColNorm);
CADGEOM_TEST_REVEAL(ScaleRow);
CADGEOM_TEST_REVEAL(ScaleCol);
CADGEOM_TEST_REVEAL(IsBalanced3);
CADGEOM_TEST_REVEAL(Balance3);
CADGEOM_TEST_REVEAL(IsBalancedCompanion3);
CADGEOM_TEST_REVEAL(BalanceCompanion3);
CADGEOM_TEST_REVEAL(IsBalancedCompanion4);
CADGEOM_TEST_REVEAL(BalanceCompanion4);
CADGEOM_TEST_REVEAL(QRIteration3);
CADGEOM_TEST_REVEAL(GetHouseholderVector);
CADGEOM_TEST_REVEAL(FrancisQRStep);

template <class Tag, class Object, class... Arguments>
auto Call(Tag tag, Object& object, Arguments&&... arguments)
{
    return (object.*Private(tag))(std::forward<Arguments>(arguments)...);
}

CMatrix MakeMatrix(int n, const Values& elements)
{
    CMatrix matrix(n, n);
    for (int i = 0; i < n * n; ++i) {
        matrix(i / n, i % n) = elements[static_cast<std::size_t>(i)];
    }
    return matrix;
}

constexpr double kUnit = std::numeric_limits<double>::epsilon();

bool FindE(PolynomialRoots& roots, const Values& c, bool doBalancing)
{
    return c.size() == 4 ? roots.FindE(c[0], c[1], c[2], c[3], doBalancing)
                         : roots.FindE(c[0], c[1], c[2], c[3], c[4], doBalancing);
}

} // namespace

TEST(CompanionCubic, AppendsTheRootZeroToThoseOfTheQuadratic)
{
    for (const bool doBalancing : {false, true}) {
        PolynomialRoots roots(1e-9);
        EXPECT_TRUE(roots.FindE(0, -1, 0, 1, doBalancing));
        EXPECT_EQ(ToValues(roots), (Values{-1, 1, 0}));
    }
}

TEST(CompanionCubic, KeepsTheRootZeroOfAQuadraticWithoutRealRoots)
{
    PolynomialRoots roots(1e-9);
    EXPECT_FALSE(roots.FindE(0, 1, 0, 1, true));
    EXPECT_EQ(ToValues(roots), (Values{0}));
    EXPECT_FALSE(roots.FindE(0, 5, 0, 0, true));
    EXPECT_EQ(ToValues(roots), (Values{0}));
}

TEST(CompanionCubic, TakesConstantsBelowEpsilonAloneForZero)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindE(std::nextafter(0.25, 0.0), -4, 0, 1, false));
    EXPECT_EQ(roots.GetRoot(2), 0.0);
    EXPECT_TRUE(roots.FindE(0.25, -4, 0, 1, false));
    for (const double root : ToValues(roots)) {
        EXPECT_NE(root, 0.0);
    }
}

TEST(CompanionCubic, IsQuadraticForALeadingCoefficientEqualToEpsilon)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindE(-1, 0, 1, 0.25, true));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1}));
    EXPECT_FALSE(roots.FindE(1, 0, 1, kNan, true));
}

TEST(CompanionQuartic, IsCubicForALeadingCoefficientEqualToEpsilon)
{
    PolynomialRoots roots(0.25);
    EXPECT_TRUE(roots.FindE(-8, 0, 0, 1, 0.25, true));
    ASSERT_EQ(roots.GetCount(), 1);
    EXPECT_NEAR(roots.GetRoot(0), 2.0, 8 * kUnit);
}

TEST(CompanionCubic, LeavesThePreviousRootsWhenBalancingFails)
{
    PolynomialRoots roots(1e-9);
    roots.FindA(-1, 0, 1);
    EXPECT_FALSE(roots.FindE(kNan, 1, 1, 1, true));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1}));
    EXPECT_TRUE(roots.FindE(kNan, 1, 1, 1, false));
}

TEST(Companion, FindsTheRootsOfRandomFactors)
{
    // The steps converge slowly for some matrices, whose roots are then what 128 iterations leave.
    for (const std::size_t degree : {std::size_t{3}, std::size_t{4}}) {
        for (const bool doBalancing : {false, true}) {
            std::mt19937 random(8401);
            int converged = 0;
            for (int round = 0; round < 1000; ++round) {
                Values expected = RandomRoots(random, degree);
                if (std::count(expected.begin(), expected.end(), 0.0) != 0) {
                    expected = Values{-3, -1, 1, 3};
                    expected.resize(degree);
                }
                PolynomialRoots roots(1e-14);
                ASSERT_TRUE(FindE(roots, FromRoots(expected), doBalancing)) << "round " << round;
                const Values found = Sorted(ToValues(roots));
                ASSERT_EQ(found.size(), expected.size()) << "round " << round;
                bool isClose = true;
                for (std::size_t i = 0; i < found.size(); ++i) {
                    isClose = isClose && std::fabs(found[i] - expected[i]) < 1e-9;
                }
                converged += isClose ? 1 : 0;
            }
            EXPECT_GT(converged, degree == 3 ? 950 : 850) << degree << doBalancing;
        }
    }
}

TEST(Companion, DropsComplexPairs)
{
    PolynomialRoots roots(1e-12);
    EXPECT_TRUE(roots.FindE(-5, 3, 1, 1, false));
    ASSERT_EQ(roots.GetCount(), 1);
    EXPECT_NEAR(roots.GetRoot(0), 1.0, 1e-12);
    // (x^2 + 1) (x^2 + 4)
    EXPECT_FALSE(roots.FindE(4, 0, 5, 0, 1, false) && roots.GetCount() > 0);
    // (x^2 + x + 1) (x - 2) (x + 3)
    const Values c = roots_testing::Multiply({1, 1, 1}, FromRoots({2, -3}));
    EXPECT_TRUE(roots.FindE(c[0], c[1], c[2], c[3], c[4], true));
    const Values found = Sorted(ToValues(roots));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NEAR(found[0], -3.0, 1e-11);
    EXPECT_NEAR(found[1], 2.0, 1e-11);
}

TEST(Companion, ExtractsRootsWithoutAnyIteration)
{
    PolynomialRoots roots(1e-12);
    roots.MaxIterations() = 0;
    // Both subdiagonal elements are 1: the first block is taken off. Its quadratic is x^2 - h22 x - h12.
    EXPECT_TRUE(roots.FindE(-6, 11, -6, 1, false));
    EXPECT_EQ(roots.GetCount(), 1);
    EXPECT_EQ(roots.GetRoot(0), 0.0);
    // All three are 1: the first one counts as smallest.
    EXPECT_TRUE(roots.FindE(24, -50, 35, -10, 1, false));
    EXPECT_EQ(roots.GetRoot(roots.GetCount() - 1), 0.0);
}

TEST(Companion, EndsForHostileCoefficients)
{
    std::mt19937 random(8403);
    for (int round = 0; round < 3000; ++round) {
        Values c;
        for (int i = 0; i < 4 + round % 2; ++i) {
            c.push_back(roots_testing::RandomCoefficient(random, true));
        }
        PolynomialRoots roots(round % 3 == 0 ? 0.0 : (round % 3 == 1 ? -1.0 : 1e-9));
        FindE(roots, c, round % 4 < 2);
        ASSERT_LT(roots.GetCount(), static_cast<int>(c.size()));
    }
}

TEST(CompanionMachinery, MeasuresAndScalesRowsAndColumns)
{
    const PolynomialRoots roots(1e-9);
    CMatrix matrix = MakeMatrix(3, {1, -5, 2, 0, 3, -7, 4, 4, 1});
    EXPECT_EQ(Call(GetRowNorm(), roots, 0, matrix), 5.0);
    EXPECT_EQ(Call(GetRowNorm(), roots, 1, matrix), 7.0);
    EXPECT_EQ(Call(GetColNorm(), roots, 0, matrix), 4.0);
    EXPECT_EQ(Call(GetColNorm(), roots, 2, matrix), 7.0);
    Call(ScaleRow(), roots, 1, 2.0, matrix);
    Call(ScaleCol(), roots, 2, -1.0, matrix);
    const Values expected{1, -5, -2, 0, 6, 14, 4, 4, -1};
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), matrix.GetData()));
}

TEST(CompanionMachinery, BalancesAnyMatrixOfThreeRows)
{
    const PolynomialRoots roots(1e-9);
    CMatrix matrix = MakeMatrix(3, {1, 1000, 0, 1, 1, 100, 1, 1, 1});
    EXPECT_FALSE(Call(IsBalanced3(), roots, matrix));
    EXPECT_TRUE(Call(Balance3(), roots, matrix));
    EXPECT_TRUE(Call(IsBalanced3(), roots, matrix));
    // A similarity by a diagonal matrix keeps the diagonal and the determinant.
    EXPECT_NEAR(matrix(0, 0), 1.0, 1e-13);
    EXPECT_NEAR(matrix.GetDeterminant(), 1 * (1 - 100) - 1000 * (1 - 100), 1e-8);
    CMatrix zero = MakeMatrix(3, Values(9, 0.0));
    EXPECT_FALSE(Call(Balance3(), roots, zero));
}

TEST(CompanionMachinery, KeepsEigenvaluesAndSignsWhenItBalancesCompanions)
{
    const PolynomialRoots roots(1e-9);
    CMatrix cubic = MakeMatrix(3, {0, 0, -600, 1, 0, 110, 0, 1, -6});
    const double determinant = cubic.GetDeterminant();
    EXPECT_FALSE(Call(IsBalancedCompanion3(), roots, 1.0, 1.0, 600.0, 110.0, 6.0));
    ASSERT_TRUE(Call(BalanceCompanion3(), roots, cubic));
    EXPECT_TRUE(Call(IsBalancedCompanion3(), roots, cubic(1, 0), cubic(2, 1), -cubic(0, 2), cubic(1, 2), -cubic(2, 2)));
    EXPECT_NEAR(cubic.GetDeterminant(), determinant, 1e-10);
    EXPECT_LT(cubic(0, 2), 0.0);
    EXPECT_GT(cubic(1, 2), 0.0);
    EXPECT_EQ(cubic(2, 2), -6.0);

    CMatrix quartic = MakeMatrix(4, {0, 0, 0, -5000, 1, 0, 0, 600, 0, 1, 0, -20, 0, 0, 1, 3});
    const double quarticDeterminant = quartic.GetDeterminant();
    Call(BalanceCompanion4(), roots, quartic);
    EXPECT_TRUE(Call(IsBalancedCompanion4(), roots, quartic(1, 0), quartic(2, 1), quartic(3, 2), -quartic(0, 3),
                     quartic(1, 3), -quartic(2, 3), quartic(3, 3)));
    EXPECT_NEAR(std::fabs(quartic.GetDeterminant()), std::fabs(quarticDeterminant), 1e-9);
    EXPECT_EQ(quartic(3, 3), 3.0);
}

TEST(CompanionMachinery, LeavesAMatrixUnchangedThatItCannotBalance)
{
    const PolynomialRoots roots(1e-9);
    const Values elements{0, 0, 0, 1, 0, 5, 0, 1, 2};
    CMatrix matrix = MakeMatrix(3, elements);
    EXPECT_FALSE(Call(BalanceCompanion3(), roots, matrix));
    EXPECT_TRUE(std::equal(elements.begin(), elements.end(), matrix.GetData()));
}

TEST(CompanionMachinery, ReflectsAVectorOntoItsFirstAxis)
{
    const PolynomialRoots roots(0.25);
    CadPoint3d<double> v;
    Call(GetHouseholderVector(), roots, 3, CadPoint3d<double>(1, 2, 2), v);
    EXPECT_EQ(v.x(), 1.0);
    EXPECT_EQ(v.y(), 0.5);
    EXPECT_EQ(v.z(), 0.5);
    Call(GetHouseholderVector(), roots, 3, CadPoint3d<double>(-1, 2, 2), v);
    EXPECT_EQ(v.y(), -0.5);
    Call(GetHouseholderVector(), roots, 2, CadPoint3d<double>(3, 4, 99), v);
    EXPECT_EQ(v.y(), 0.5);
    Call(GetHouseholderVector(), roots, 3, CadPoint3d<double>(0, 0.25, 0), v);
    EXPECT_EQ(v.y(), 0.0);
    Call(GetHouseholderVector(), roots, 3, CadPoint3d<double>(0, std::nextafter(0.25, 1.0), 0), v);
    EXPECT_EQ(v.y(), 1.0);
}

TEST(CompanionMachinery, KeepsTraceDeterminantAndShapeInAQrStep)
{
    const PolynomialRoots roots(1e-12);
    for (const int n : {3, 4}) {
        CMatrix H = n == 3 ? MakeMatrix(3, {1, 2, 3, 4, 5, 6, 0, 7, 9})
                           : MakeMatrix(4, {1, 2, 3, 4, 5, 6, 7, 8, 0, 9, 1, 2, 0, 0, 3, 5});
        double trace = 0.0;
        for (int i = 0; i < n; ++i) {
            trace += H(i, i);
        }
        const double determinant = std::fabs(H.GetDeterminant());
        CVector W(n);
        Call(FrancisQRStep(), roots, H, W);
        double newTrace = 0.0;
        for (int i = 0; i < n; ++i) {
            newTrace += H(i, i);
            for (int j = 0; j + 1 < i; ++j) {
                EXPECT_NEAR(H(i, j), 0.0, 1e-12);
            }
        }
        EXPECT_NEAR(newTrace, trace, 1e-12);
        EXPECT_NEAR(std::fabs(H.GetDeterminant()), determinant, 1e-9);
    }
}

TEST(CompanionMachinery, TakesAQrStepByReflectionsOfTheWholeMatrix)
{
    using Matrix = std::vector<std::vector<long double>>;
    const auto reflect = [](Matrix& H, std::size_t first, const std::vector<long double>& u) {
        // P = 1 - 2 v v^T / (v^T v) on both sides.
        long double length = 0.0L;
        for (const long double element : u) {
            length += element * element;
        }
        std::vector<long double> v(H.size(), 0.0L);
        std::copy(u.begin(), u.end(), v.begin() + static_cast<std::ptrdiff_t>(first));
        v[first] += std::copysign(std::sqrt(length), u[0]);
        long double norm = 0.0L;
        for (const long double element : v) {
            norm += element * element;
        }
        const auto apply = [&](auto&& at) {
            for (std::size_t c = 0; c < H.size(); ++c) {
                long double dot = 0.0L;
                for (std::size_t r = 0; r < H.size(); ++r) {
                    dot += v[r] * at(r, c);
                }
                for (std::size_t r = 0; r < H.size(); ++r) {
                    at(r, c) -= 2.0L * v[r] * dot / norm;
                }
            }
        };
        apply([&](std::size_t r, std::size_t c) -> long double& { return H[r][c]; });
        apply([&](std::size_t r, std::size_t c) -> long double& { return H[c][r]; });
    };

    const PolynomialRoots roots(1e-12);
    for (const std::size_t n : {std::size_t{3}, std::size_t{4}}) {
        CMatrix H = n == 3 ? MakeMatrix(3, {1, 2, 3, 4, 5, 6, 0, 7, 9})
                           : MakeMatrix(4, {1, 2, 3, 4, 5, 6, 7, 8, 0, 9, 1, 2, 0, 0, 3, 5});
        Matrix M(n, std::vector<long double>(n));
        for (std::size_t i = 0; i < n * n; ++i) {
            M[i / n][i % n] = static_cast<long double>(H.GetData()[i]);
        }
        const long double trace = M[n - 2][n - 2] + M[n - 1][n - 1];
        const long double determinant = M[n - 2][n - 2] * M[n - 1][n - 1] - M[n - 2][n - 1] * M[n - 1][n - 2];
        reflect(M, 0,
                {M[0][0] * M[1][1] + M[0][1] * M[1][0] - trace * M[0][0] + determinant,
                 M[1][0] * (M[0][0] + M[1][1] - trace), M[1][0] * M[2][1]});
        for (std::size_t i = 1; i + 2 < n; ++i) {
            reflect(M, i, {M[i][i - 1], M[i + 1][i - 1], M[i + 2][i - 1]});
        }
        reflect(M, n - 2, {M[n - 2][n - 3], M[n - 1][n - 3]});

        CVector W(static_cast<int>(n));
        Call(FrancisQRStep(), roots, H, W);
        for (std::size_t i = 0; i < n * n; ++i) {
            EXPECT_NEAR(H.GetData()[i], static_cast<double>(M[i / n][i % n]), 1e-13) << n << " " << i;
        }
    }
}

TEST(CompanionMachinery, SplitsAtTheFirstNegligibleElement)
{
    PolynomialRoots roots(1e-3);
    CMatrix H = MakeMatrix(3, {5, 7, 7, 0.001, 0, 1, 0, 1, 0});
    EXPECT_TRUE(Call(QRIteration3(), roots, H));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1, 5}));
    H = MakeMatrix(3, {0, 1, 7, 1, 0, 7, 0, 0.001, 5});
    EXPECT_TRUE(Call(QRIteration3(), roots, H));
    EXPECT_EQ(ToValues(roots), (Values{-1, 1, 5}));
}
