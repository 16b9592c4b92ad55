#include "linalg/matrix_testing.h"

#include <cadgeom/platform/exceptions.h>

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

#if defined(CADGEOM_HAVE_EIGEN)
#include <Eigen/Core>
#endif

using matrix_testing::Flavour;
using matrix_testing::MakeMatrix;
using matrix_testing::MakeVector;
using matrix_testing::RandomRows;
using matrix_testing::Rows;
using matrix_testing::SameBits;
using matrix_testing::ToRows;
using matrix_testing::ToValues;
using Values = std::vector<double>;

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();

Rows PlainProduct(const Rows& a, const Rows& b, std::size_t columns)
{
    Rows product(a.size(), Values(columns, 0.0));
    for (std::size_t i = 0; i < a.size(); ++i) {
        for (std::size_t j = 0; j < columns; ++j) {
            for (std::size_t k = 0; k < b.size(); ++k) {
                product[i][j] = product[i][j] + a[i][k] * b[k][j];
            }
        }
    }
    return product;
}

} // namespace

TEST(DynamicMatrix, IsEmptyByDefault)
{
    const CMatrix matrix;
    EXPECT_EQ(matrix.GetNumRows(), 0);
    EXPECT_EQ(matrix.GetNumColumns(), 0);
    EXPECT_EQ(matrix.GetNumElements(), 0);
    EXPECT_EQ(matrix.GetData(), nullptr);
}

TEST(DynamicMatrix, StoresItsElementsRowByRow)
{
    CMatrix matrix(2, 3);
    EXPECT_EQ(matrix.GetNumElements(), 6);
    for (int i = 0; i < 6; ++i) {
        matrix(i / 3, i % 3) = i;
    }
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(matrix.GetData()[i], i);
    }
}

TEST(DynamicMatrix, IsAColumnWhenMadeOfAVector)
{
    EXPECT_EQ(ToRows(CMatrix(MakeVector({1, 2, 3}))), (Rows{{1}, {2}, {3}}));
    const CMatrix empty{CVector()};
    EXPECT_EQ(empty.GetNumRows(), 0);
    EXPECT_EQ(empty.GetNumColumns(), 1);
}

TEST(DynamicMatrix, RejectsNegativeAndUncountableDimensions)
{
    EXPECT_THROW(CMatrix(-1, 2), CInvalidArgException);
    EXPECT_THROW(CMatrix(2, -1), CInvalidArgException);
    EXPECT_THROW(CMatrix(-2, -2), CInvalidArgException);
    EXPECT_THROW(CMatrix(INT_MAX, INT_MAX), CMemoryException);
    EXPECT_THROW(CMatrix(65536, 32768), CMemoryException);
    CMatrix matrix = MakeMatrix({{1, 2}, {3, 4}});
    EXPECT_THROW(matrix.SetSize(46341, 46341), CMemoryException);
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 2}, {3, 4}}));
}

TEST(DynamicMatrix, KeepsItsBufferWhenAnEmptyMatrixIsAssigned)
{
    CMatrix matrix = MakeMatrix({{1, 2}, {3, 4}});
    const double* const buffer = matrix.GetData();
    const CMatrix noColumns(3, 0);
    matrix = noColumns;
    EXPECT_EQ(matrix.GetNumRows(), 0);
    EXPECT_EQ(matrix.GetNumColumns(), 0);
    EXPECT_EQ(matrix.GetData(), buffer);
    matrix.SetSize(2, 2);
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 2}, {3, 4}}));
    matrix = CMatrix();
    EXPECT_EQ(matrix.GetData(), buffer);
    EXPECT_EQ(matrix.GetNumElements(), 0);
}

TEST(DynamicMatrix, SurvivesAssignmentToItself)
{
    CMatrix matrix = MakeMatrix({{1, 2}, {3, 4}});
    const CMatrix& same = matrix;
    matrix = same;
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 2}, {3, 4}}));
    matrix = std::move(const_cast<CMatrix&>(same));
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 2}, {3, 4}}));
}

TEST(DynamicMatrix, CopiesIntoTheBufferItHas)
{
    CMatrix matrix(3, 3);
    const double* const buffer = matrix.GetData();
    const CMatrix smaller = MakeMatrix({{1, 2, 3}, {4, 5, 6}});
    matrix = smaller;
    EXPECT_EQ(matrix.GetData(), buffer);
    EXPECT_EQ(ToRows(matrix), ToRows(smaller));
}

TEST(DynamicMatrix, MovesItsBuffer)
{
    CMatrix source = MakeMatrix({{1, 2}, {3, 4}});
    const double* const buffer = source.GetData();
    CMatrix made(std::move(source));
    EXPECT_EQ(made.GetData(), buffer);
    EXPECT_EQ(source.GetNumElements(), 0);
    EXPECT_EQ(source.GetData(), nullptr);
    CMatrix assigned(5, 5);
    assigned = std::move(made);
    EXPECT_EQ(assigned.GetData(), buffer);
    EXPECT_EQ(ToRows(assigned), (Rows{{1, 2}, {3, 4}}));
    static_assert(std::is_nothrow_move_constructible_v<CMatrix> && std::is_nothrow_move_assignable_v<CMatrix>);
}

TEST(DynamicMatrix, DoesNotRearrangeValuesWhenItsDimensionsChange)
{
    CMatrix matrix = MakeMatrix({{1, 2, 3}, {4, 5, 6}});
    const double* const buffer = matrix.GetData();
    matrix.SetSize(3, 2);
    EXPECT_EQ(matrix.GetData(), buffer);
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 2}, {3, 4}, {5, 6}}));
    matrix.SetSize(1, 7);
    matrix(0, 6) = 7;
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 2, 3, 4, 5, 6, 7}}));
}

TEST(DynamicMatrix, ReleasesItsMemoryOnRequest)
{
    CMatrix matrix(2, 2);
    matrix.FreeMemory();
    EXPECT_EQ(matrix.GetNumRows(), 0);
    EXPECT_EQ(matrix.GetNumColumns(), 0);
    EXPECT_EQ(matrix.GetData(), nullptr);
    matrix.FreeMemory();
}

TEST(DynamicMatrix, AddsSubtractsAndScales)
{
    const CMatrix a = MakeMatrix({{1, 2}, {3, 4}});
    const CMatrix b = MakeMatrix({{10, 20}, {30, 40}});
    EXPECT_EQ(ToRows(a + b), (Rows{{11, 22}, {33, 44}}));
    EXPECT_EQ(ToRows(a - b), (Rows{{-9, -18}, {-27, -36}}));
    EXPECT_EQ(ToRows(a * 2.0), (Rows{{2, 4}, {6, 8}}));
    CMatrix c = a;
    EXPECT_EQ(&(c += b), &c);
    EXPECT_EQ(ToRows(c), (Rows{{11, 22}, {33, 44}}));
    EXPECT_EQ(&(c -= a), &c);
    EXPECT_EQ(ToRows(c), ToRows(b));
    EXPECT_EQ(&(c *= 0.1), &c);
    EXPECT_EQ(ToRows(c), (Rows{{1, 2}, {3, 4}}));
    c.Negate();
    EXPECT_EQ(ToRows(c), (Rows{{-1, -2}, {-3, -4}}));
    const CMatrix& same = c;
    c -= same;
    EXPECT_EQ(ToRows(c), (Rows{{0, 0}, {0, 0}}));
}

TEST(DynamicMatrix, MultipliesLikeThePlainTripleLoop)
{
    std::mt19937 random(7201);
    for (int round = 0; round < 400; ++round) {
        const int rows = round % 8;
        const int inner = round % 5 == 0 ? round % 21 : round % 7;
        const int columns = round % 11;
        const Flavour flavour = static_cast<Flavour>(round % static_cast<int>(Flavour::eFlavours));
        const Rows a = RandomRows(random, rows, inner, flavour);
        const Rows b = RandomRows(random, inner, columns, flavour);
        CMatrix left(rows, inner);
        CMatrix right(inner, columns);
        if (rows * inner != 0) {
            left = MakeMatrix(a);
        }
        if (inner * columns != 0) {
            right = MakeMatrix(b);
        }
        const CMatrix product = left * right;
        ASSERT_EQ(product.GetNumRows(), rows);
        ASSERT_EQ(product.GetNumColumns(), columns);
        ASSERT_TRUE(SameBits(ToRows(product), PlainProduct(a, b, static_cast<std::size_t>(columns))))
            << rows << " x " << inner << " x " << columns;
    }
}

TEST(DynamicMatrix, SumsEachElementOfAProductAlongTheInnerIndex)
{
    const CMatrix row = MakeMatrix({{1e16, 1.0, -1e16, 1.0}});
    CMatrix ones(4, 6);
    for (int i = 0; i < 24; ++i) {
        ones(i / 6, i % 6) = 1.0;
    }
    EXPECT_EQ(ToRows(row * ones), (Rows{{1, 1, 1, 1, 1, 1}}));
}

TEST(DynamicMatrix, MultipliesItselfByItself)
{
    CMatrix matrix = MakeMatrix({{1, 2}, {3, 4}});
    EXPECT_EQ(&(matrix *= matrix), &matrix);
    EXPECT_EQ(ToRows(matrix), (Rows{{7, 10}, {15, 22}}));
    CMatrix wide = MakeMatrix({{1, 2, 3}});
    wide *= MakeMatrix({{1}, {2}, {3}});
    EXPECT_EQ(ToRows(wide), (Rows{{14}}));
}

TEST(DynamicMatrix, MultipliesAVector)
{
    const CMatrix matrix = MakeMatrix({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(ToValues(matrix * MakeVector({1, -1, 2})), (Values{5, 11}));
    std::mt19937 random(7202);
    for (int size = 1; size < 12; ++size) {
        const Rows a = RandomRows(random, size, 13, Flavour::eReal);
        const Rows column = RandomRows(random, 13, 1, Flavour::eReal);
        Values x;
        for (const auto& row : column) {
            x.push_back(row[0]);
        }
        const Values product = ToValues(MakeMatrix(a) * MakeVector(x));
        const Rows expected = PlainProduct(a, column, 1);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(product[i], expected[i][0]);
        }
    }
}

TEST(DynamicMatrix, TransposesInPlaceAndAsACopy)
{
    const Rows shapes[] = {{{1, 2}, {3, 4}}, {{1, 2, 3}, {4, 5, 6}}, {{1, 2, 3}}, {{1}, {2}}};
    const Rows transposed[] = {{{1, 3}, {2, 4}}, {{1, 4}, {2, 5}, {3, 6}}, {{1}, {2}, {3}}, {{1, 2}}};
    for (int i = 0; i < 4; ++i) {
        CMatrix matrix = MakeMatrix(shapes[i]);
        const double* const buffer = matrix.GetData();
        EXPECT_EQ(ToRows(matrix.GetTranspose()), transposed[i]);
        EXPECT_EQ(&matrix.Transpose(), &matrix);
        EXPECT_EQ(ToRows(matrix), transposed[i]);
        EXPECT_EQ(matrix.GetData(), buffer);
    }
    CMatrix empty(0, 3);
    EXPECT_EQ(empty.GetTranspose().GetNumRows(), 3);
    EXPECT_EQ(empty.Transpose().GetNumRows(), 3);
}

TEST(DynamicMatrix, ComparesForSymmetryExactly)
{
    EXPECT_TRUE(CMatrix().IsSymetric());
    EXPECT_TRUE(MakeMatrix({{kNan}}).IsSymetric());
    EXPECT_TRUE(MakeMatrix({{1, 2, 3}}).IsSymetric());
    EXPECT_TRUE(MakeMatrix({{1, 2, 3}, {2, 4, 5}, {3, 5, 6}}).IsSymetric());
    EXPECT_TRUE(MakeMatrix({{kNan, 0.0}, {-0.0, kNan}}).IsSymetric());
    EXPECT_FALSE(MakeMatrix({{1, 2}, {std::nextafter(2.0, 3.0), 1}}).IsSymetric());
    EXPECT_FALSE(MakeMatrix({{1, kNan}, {kNan, 1}}).IsSymetric());
    EXPECT_FALSE(MakeMatrix({{1, 2, 3}, {2, 4, 5}, {3, 6, 6}}).IsSymetric());
}

TEST(DynamicMatrix, ComparesOnlyElementsThatExistForSymmetry)
{
    EXPECT_TRUE(MakeMatrix({{1, 2}, {2, 1}, {7, 8}}).IsSymetric());
    EXPECT_FALSE(MakeMatrix({{1, 2}, {3, 1}, {7, 8}}).IsSymetric());
    EXPECT_FALSE(MakeMatrix({{1, 2, 3}, {2, 1, 3}}).IsSymetric());
}

TEST(DynamicMatrix, CopiesAndOverwritesRowsAndColumns)
{
    CMatrix matrix = MakeMatrix({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(ToValues(matrix.GetRow(1)), (Values{4, 5, 6}));
    EXPECT_EQ(ToValues(matrix.GetColumn(2)), (Values{3, 6}));
    matrix.SetRow(0, MakeVector({7, 8, 9, 10}));
    matrix.SetColumn(1, MakeVector({0, 1, 2}));
    EXPECT_EQ(ToRows(matrix), (Rows{{7, 0, 9}, {4, 1, 6}}));
}

TEST(DynamicMatrix, DropsRows)
{
    const Rows rows{{1, 2}, {3, 4}, {5, 6}};
    CMatrix matrix = MakeMatrix(rows);
    matrix.RemoveRow(0);
    EXPECT_EQ(ToRows(matrix), (Rows{{3, 4}, {5, 6}}));
    matrix.RemoveRow(1);
    EXPECT_EQ(ToRows(matrix), (Rows{{3, 4}}));
    matrix.RemoveRow(0);
    EXPECT_EQ(matrix.GetNumRows(), 0);
    EXPECT_EQ(matrix.GetNumColumns(), 2);
    EXPECT_EQ(matrix.GetData(), nullptr);
    EXPECT_THROW(matrix.RemoveRow(0), CInvalidArgException);
}

TEST(DynamicMatrix, DropsColumns)
{
    CMatrix matrix = MakeMatrix({{1, 2, 3}, {4, 5, 6}});
    matrix.RemoveColumn(1);
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 3}, {4, 6}}));
    matrix.RemoveColumn(0);
    EXPECT_EQ(ToRows(matrix), (Rows{{3}, {6}}));
    matrix.RemoveColumn(0);
    EXPECT_EQ(matrix.GetNumRows(), 2);
    EXPECT_EQ(matrix.GetNumColumns(), 0);
    EXPECT_THROW(matrix.RemoveColumn(0), CInvalidArgException);
}

TEST(DynamicMatrix, GivesMinors)
{
    const CMatrix matrix = MakeMatrix({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    CMatrix minor;
    matrix.GetSubset(0, 0, minor);
    EXPECT_EQ(ToRows(minor), (Rows{{5, 6}, {8, 9}}));
    matrix.GetSubset(1, 1, minor);
    EXPECT_EQ(ToRows(minor), (Rows{{1, 3}, {7, 9}}));
    matrix.GetSubset(2, 2, minor);
    EXPECT_EQ(ToRows(minor), (Rows{{1, 2}, {4, 5}}));
    MakeMatrix({{1}}).GetSubset(0, 0, minor);
    EXPECT_EQ(minor.GetNumElements(), 0);
    EXPECT_THROW(CMatrix().GetSubset(0, 0, minor), CInvalidArgException);
}

TEST(DynamicMatrix, GivesBlocks)
{
    const CMatrix matrix = MakeMatrix({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    CMatrix block;
    matrix.GetSubset(1, 0, 2, 1, block);
    EXPECT_EQ(ToRows(block), (Rows{{4, 5}, {7, 8}}));
    matrix.GetSubset(0, 2, 2, 2, block);
    EXPECT_EQ(ToRows(block), (Rows{{3}, {6}, {9}}));
    matrix.GetSubset(1, 1, 0, 2, block);
    EXPECT_EQ(block.GetNumRows(), 0);
    EXPECT_EQ(block.GetNumColumns(), 2);
    EXPECT_THROW(matrix.GetSubset(2, 0, 0, 0, block), CInvalidArgException);
}

TEST(DynamicMatrix, TakesSubsetsOfItself)
{
    CMatrix matrix = MakeMatrix({{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}});
    matrix.GetSubset(1, 2, matrix);
    EXPECT_EQ(ToRows(matrix), (Rows{{1, 2, 4}, {9, 10, 12}}));
    matrix.GetSubset(0, 1, 1, 2, matrix);
    EXPECT_EQ(ToRows(matrix), (Rows{{2, 4}, {10, 12}}));
}

TEST(DynamicMatrix, FindsTheFirstOfItsLargestElements)
{
    int row = 5;
    int column = 5;
    EXPECT_EQ(MakeMatrix({{1, -2}, {3, 0}, {-3, 3}}).GetMaxAbsValue(&row, &column), 3.0);
    EXPECT_EQ(row, 1);
    EXPECT_EQ(column, 0);
    EXPECT_EQ(MakeMatrix({{kNan, 1}}).GetMaxAbsValue(&row, nullptr), 1.0);
    EXPECT_EQ(row, 0);
    EXPECT_EQ(MakeMatrix({{1, 2}}).GetMaxAbsValue(nullptr, &column), 2.0);
    EXPECT_EQ(column, 1);
    EXPECT_EQ(CMatrix(3, 0).GetMaxAbsValue(&row, &column), -1.0);
    EXPECT_EQ(row, -1);
    EXPECT_EQ(column, -1);
}

#if defined(CADGEOM_HAVE_EIGEN)
TEST(DynamicMatrix, MultipliesAsEigenDoes)
{
    std::mt19937 random(7203);
    using EigenMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
    const CMatrix a = MakeMatrix(RandomRows(random, 37, 41, Flavour::eReal));
    const CMatrix b = MakeMatrix(RandomRows(random, 41, 29, Flavour::eReal));
    const CMatrix product = a * b;
    const EigenMatrix expected =
        Eigen::Map<const EigenMatrix>(a.GetData(), 37, 41) * Eigen::Map<const EigenMatrix>(b.GetData(), 41, 29);
    const double error = (Eigen::Map<const EigenMatrix>(product.GetData(), 37, 29) - expected).cwiseAbs().maxCoeff();
    // 41 products below 1 each, summed in either order.
    EXPECT_LE(error, 2 * 41 * 41 * std::numeric_limits<double>::epsilon());
}
#endif
