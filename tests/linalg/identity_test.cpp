#include "linalg/matrix_testing.h"

#include <cadgeom/platform/exceptions.h>

#include <gtest/gtest.h>

#include <climits>
#include <thread>

using matrix_testing::Rows;
using matrix_testing::ToRows;

TEST(IdentityMatrix, HasOnesOnItsDiagonal)
{
    EXPECT_EQ(ToRows(CMatrix::GetIdentityMatrix(3)), (Rows{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}));
    EXPECT_EQ(ToRows(CMatrix::GetIdentityMatrix(1)), (Rows{{1}}));
    EXPECT_EQ(CMatrix::GetIdentityMatrix(0).GetNumElements(), 0);
}

TEST(IdentityMatrix, IsTheSameObjectEachTime)
{
    const CMatrix& first = CMatrix::GetIdentityMatrix(3);
    EXPECT_EQ(&CMatrix::GetIdentityMatrix(3), &first);
    EXPECT_EQ(&CMatrix::GetIdentityMatrix(2), &first - 1);
    EXPECT_EQ(&CMatrix::GetIdentityMatrix(0), &first - 3);
    EXPECT_EQ(&CMatrix::GetIdentityMatrix(3), &first);
    EXPECT_EQ(ToRows(first), (Rows{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}));
}

TEST(IdentityMatrix, KeepsItsElementsWhereTheyAreWhenTheCacheGrows)
{
    const double* const elements = CMatrix::GetIdentityMatrix(4).GetData();
    CMatrix::GetIdentityMatrix(60);
    EXPECT_EQ(CMatrix::GetIdentityMatrix(4).GetData(), elements);
}

TEST(IdentityMatrix, RejectsNegativeAndUncountableSizes)
{
    EXPECT_THROW(CMatrix::GetIdentityMatrix(-1), CInvalidArgException);
    EXPECT_THROW(CMatrix::GetIdentityMatrix(INT_MIN), CInvalidArgException);
    EXPECT_THROW(CMatrix::GetIdentityMatrix(INT_MAX), CMemoryException);
    EXPECT_EQ(CMatrix::GetIdentityMatrix(2).GetNumRows(), 2);
}

TEST(IdentityMatrix, IsKeptPerThread)
{
    const CMatrix* const mine = &CMatrix::GetIdentityMatrix(5);
    const CMatrix* other = nullptr;
    Rows rows;
    std::thread thread([&] {
        other = &CMatrix::GetIdentityMatrix(5);
        for (int n = 1; n < 100; ++n) {
            CMatrix::GetIdentityMatrix(n);
        }
        rows = ToRows(CMatrix::GetIdentityMatrix(5));
    });
    thread.join();
    EXPECT_NE(other, mine);
    EXPECT_EQ(&CMatrix::GetIdentityMatrix(5), mine);
    EXPECT_EQ(rows, ToRows(*mine));
}
