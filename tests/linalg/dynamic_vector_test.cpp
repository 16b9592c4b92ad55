#include "linalg/matrix_testing.h"

#include <cadgeom/core/point3d.h>
#include <cadgeom/platform/exceptions.h>

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

using matrix_testing::MakeMatrix;
using matrix_testing::MakeVector;
using matrix_testing::ToRows;
using matrix_testing::ToValues;
using Values = std::vector<double>;

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

TEST(DynamicVector, IsEmptyByDefault)
{
    const CVector vector;
    EXPECT_EQ(vector.GetNumElements(), 0);
    EXPECT_EQ(vector.GetData(), nullptr);
    EXPECT_EQ(CVector(0).GetNumElements(), 0);
}

TEST(DynamicVector, IsMadeOfVectorsInSpaceOfEitherPrecision)
{
    EXPECT_EQ(ToValues(CVector(CadVector3d<double>(0.1, -2.0, 3.0))), (Values{0.1, -2.0, 3.0}));
    EXPECT_EQ(ToValues(CVector(CadVector3d<float>(0.1F, -2.0F, 3.0F))), (Values{static_cast<double>(0.1F), -2.0, 3.0}));
}

TEST(DynamicVector, RejectsNegativeSizes)
{
    EXPECT_THROW(CVector(-1), CInvalidArgException);
    CVector vector = MakeVector({1, 2});
    EXPECT_THROW(vector.SetSize(INT_MIN), CInvalidArgException);
    EXPECT_EQ(ToValues(vector), (Values{1, 2}));
}

TEST(DynamicVector, KeepsItsBufferWhenAnEmptyVectorIsAssigned)
{
    CVector vector = MakeVector({1, 2, 3});
    const double* const buffer = vector.GetData();
    const CVector empty;
    vector = empty;
    EXPECT_EQ(vector.GetNumElements(), 0);
    EXPECT_EQ(vector.GetData(), buffer);
    vector.SetSize(3);
    EXPECT_EQ(ToValues(vector), (Values{1, 2, 3}));
    vector = CVector();
    EXPECT_EQ(vector.GetNumElements(), 0);
    EXPECT_EQ(vector.GetData(), buffer);
}

TEST(DynamicVector, CopiesIntoTheBufferItHas)
{
    CVector vector = MakeVector({1, 2, 3});
    const double* const buffer = vector.GetData();
    const CVector shorter = MakeVector({7, 8});
    vector = shorter;
    EXPECT_EQ(vector.GetData(), buffer);
    EXPECT_EQ(ToValues(vector), (Values{7, 8}));
    EXPECT_NE(shorter.GetData(), vector.GetData());
    const CVector longer = MakeVector({1, 2, 3, 4, 5});
    vector = longer;
    EXPECT_EQ(ToValues(vector), (Values{1, 2, 3, 4, 5}));
}

TEST(DynamicVector, SurvivesAssignmentToItself)
{
    CVector vector = MakeVector({1, 2, 3});
    const CVector& same = vector;
    vector = same;
    EXPECT_EQ(ToValues(vector), (Values{1, 2, 3}));
    vector = std::move(const_cast<CVector&>(same));
    EXPECT_EQ(ToValues(vector), (Values{1, 2, 3}));
}

TEST(DynamicVector, MovesItsBuffer)
{
    CVector source = MakeVector({1, 2, 3});
    const double* const buffer = source.GetData();
    CVector made(std::move(source));
    EXPECT_EQ(made.GetData(), buffer);
    EXPECT_EQ(source.GetNumElements(), 0);
    EXPECT_EQ(source.GetData(), nullptr);
    CVector assigned = MakeVector({9});
    assigned = std::move(made);
    EXPECT_EQ(assigned.GetData(), buffer);
    EXPECT_EQ(made.GetData(), nullptr);
    static_assert(std::is_nothrow_move_constructible_v<CVector> && std::is_nothrow_move_assignable_v<CVector>);
}

TEST(DynamicVector, CopiesAreIndependent)
{
    CVector vector = MakeVector({1, 2});
    CVector copy(vector);
    copy[0] = 5;
    EXPECT_EQ(ToValues(vector), (Values{1, 2}));
    EXPECT_EQ(ToValues(copy), (Values{5, 2}));
}

TEST(DynamicVector, KeepsOldValuesWhenShrunkAndGrownBack)
{
    CVector vector = MakeVector({1, 2, 3});
    const double* const buffer = vector.GetData();
    vector.SetSize(1);
    EXPECT_EQ(vector.GetNumElements(), 1);
    vector.SetSize(3);
    EXPECT_EQ(vector.GetData(), buffer);
    EXPECT_EQ(ToValues(vector), (Values{1, 2, 3}));
    vector.SetSize(4);
    vector[3] = 4;
    EXPECT_EQ(ToValues(vector), (Values{1, 2, 3, 4}));
}

TEST(DynamicVector, ReleasesItsMemoryOnRequest)
{
    CVector vector = MakeVector({1, 2, 3});
    vector.FreeMemory();
    EXPECT_EQ(vector.GetNumElements(), 0);
    EXPECT_EQ(vector.GetData(), nullptr);
    vector.FreeMemory();
    vector.SetSize(2);
    EXPECT_EQ(vector.GetNumElements(), 2);
}

TEST(DynamicVector, AddsSubtractsAndScalesOverItsOwnSize)
{
    const CVector a = MakeVector({1, 2, 3});
    const CVector b = MakeVector({10, 20, 30, 40});
    EXPECT_EQ(ToValues(a + b), (Values{11, 22, 33}));
    EXPECT_EQ(ToValues(a - b), (Values{-9, -18, -27}));
    EXPECT_EQ(ToValues(a * 0.5), (Values{0.5, 1, 1.5}));
    CVector c = a;
    EXPECT_EQ(&(c *= -2.0), &c);
    EXPECT_EQ(ToValues(c), (Values{-2, -4, -6}));
    c.Negate();
    EXPECT_EQ(ToValues(c), (Values{2, 4, 6}));
    EXPECT_TRUE(ToValues(CVector() + b).empty());
}

TEST(DynamicVector, NegatesZerosToo)
{
    CVector vector = MakeVector({0.0, -0.0});
    vector.Negate();
    EXPECT_TRUE(std::signbit(vector[0]));
    EXPECT_FALSE(std::signbit(vector[1]));
}

TEST(DynamicVector, SumsDotProductsInTheOrderOfTheElements)
{
    const CVector a = MakeVector({1e16, 1.0, -1e16, 1.0});
    const CVector ones = MakeVector({1, 1, 1, 1});
    EXPECT_EQ(a * ones, 1.0);
    EXPECT_EQ(CVector() * ones, 0.0);
    EXPECT_FALSE(std::signbit(MakeVector({-0.0}) * ones));
    EXPECT_EQ(MakeVector({3, 4}).GetLengthSquared(), 25.0);
    EXPECT_EQ(MakeVector({3, 4}).GetLength(), 5.0);
}

TEST(DynamicVector, BecomesARowWhenTransposed)
{
    EXPECT_EQ(ToRows(MakeVector({1, 2, 3}).GetTranspose()), (matrix_testing::Rows{{1, 2, 3}}));
    const CMatrix empty = CVector().GetTranspose();
    EXPECT_EQ(empty.GetNumRows(), 1);
    EXPECT_EQ(empty.GetNumColumns(), 0);
}

TEST(DynamicVector, FormsTheOuterProductWithTheFirstRow)
{
    const CMatrix matrix = MakeMatrix({{5, 6, 7}, {100, 100, 100}});
    EXPECT_EQ(ToRows(MakeVector({1, -2}) * matrix), (matrix_testing::Rows{{5, 6, 7}, {-10, -12, -14}}));
}

TEST(DynamicVector, GivesARangeOfElements)
{
    const CVector vector = MakeVector({7, 8, 9});
    CVector subset;
    vector.GetSubset(0, 1, subset);
    EXPECT_EQ(ToValues(subset), (Values{7, 8}));
    vector.GetSubset(2, 2, subset);
    EXPECT_EQ(ToValues(subset), (Values{9}));
    vector.GetSubset(2, 1, subset);
    EXPECT_EQ(subset.GetNumElements(), 0);
    EXPECT_THROW(vector.GetSubset(2, 0, subset), CInvalidArgException);
    EXPECT_THROW(vector.GetSubset(INT_MIN, INT_MAX, subset), CMemoryException);
}

TEST(DynamicVector, GivesAllElementsButOne)
{
    const CVector vector = MakeVector({7, 8, 9});
    CVector subset;
    vector.GetSubset(1, subset);
    EXPECT_EQ(ToValues(subset), (Values{7, 9}));
    vector.GetSubset(0, subset);
    EXPECT_EQ(ToValues(subset), (Values{8, 9}));
    vector.GetSubset(2, subset);
    EXPECT_EQ(ToValues(subset), (Values{7, 8}));
    EXPECT_THROW(CVector().GetSubset(0, subset), CInvalidArgException);
}

TEST(DynamicVector, ReusesTheBufferOfASubset)
{
    CVector subset = MakeVector({1, 2, 3, 4});
    const double* const buffer = subset.GetData();
    MakeVector({7, 8, 9}).GetSubset(1, subset);
    EXPECT_EQ(subset.GetData(), buffer);
}

TEST(DynamicVector, TakesASubsetOfItself)
{
    CVector vector = MakeVector({1, 2, 3, 4, 5});
    vector.GetSubset(1, 3, vector);
    EXPECT_EQ(ToValues(vector), (Values{2, 3, 4}));
    vector.GetSubset(1, vector);
    EXPECT_EQ(ToValues(vector), (Values{2, 4}));
}

TEST(DynamicVector, InsertsAnywhere)
{
    CVector vector = MakeVector({1, 2});
    vector.InsertAt(0, 5);
    EXPECT_EQ(ToValues(vector), (Values{5, 1, 2}));
    vector = MakeVector({1, 2});
    vector.InsertAt(2, 5);
    EXPECT_EQ(ToValues(vector), (Values{1, 2, 5}));
    vector.InsertAt(1, vector[2]);
    EXPECT_EQ(ToValues(vector), (Values{1, 5, 2, 5}));
    CVector empty;
    empty.InsertAt(0, 3);
    EXPECT_EQ(ToValues(empty), (Values{3}));
}

TEST(DynamicVector, InsertsWithoutReallocatingWhileThereIsRoom)
{
    CVector vector = MakeVector({1, 2, 3});
    const double* const buffer = vector.GetData();
    vector.SetSize(2);
    vector.InsertAt(1, 9);
    EXPECT_EQ(vector.GetData(), buffer);
    EXPECT_EQ(ToValues(vector), (Values{1, 9, 2}));
}

TEST(DynamicVector, IsZeroUpToAndIncludingTheTolerance)
{
    EXPECT_TRUE(CVector().IsZero(0.0));
    EXPECT_TRUE(MakeVector({0.5, -0.5}).IsZero(0.5));
    EXPECT_FALSE(MakeVector({0.0, std::nextafter(-0.5, -1.0)}).IsZero(0.5));
    EXPECT_FALSE(MakeVector({0.0}).IsZero(-1.0));
    EXPECT_TRUE(MakeVector({kNan}).IsZero(0.0));
    EXPECT_FALSE(MakeVector({kNan, kInfinity}).IsZero(1.0));
}

TEST(DynamicVector, FindsTheFirstOfItsLargestElements)
{
    int index = 7;
    EXPECT_EQ(MakeVector({-3, 3}).GetMaxAbsValue(&index), 3.0);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(MakeVector({1, -4, 4, 2}).GetMaxAbsValue(&index), 4.0);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(MakeVector({0.0}).GetMaxAbsValue(&index), 0.0);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(MakeVector({5}).GetMaxAbsValue(nullptr), 5.0);
}

TEST(DynamicVector, NeverFindsNotANumberLargest)
{
    int index = 7;
    EXPECT_EQ(CVector().GetMaxAbsValue(&index), -1.0);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(MakeVector({kNan, 1.0, kNan}).GetMaxAbsValue(&index), 1.0);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(MakeVector({kNan}).GetMaxAbsValue(&index), -1.0);
    EXPECT_EQ(index, -1);
}
