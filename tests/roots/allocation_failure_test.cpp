#include "roots/roots_testing.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

// Every allocation of a query fails in turn. The replaced operators count what is alive, for the whole program.
namespace {

long allocationsUntilFailure = -1;
long liveAllocations = 0;

void* Allocate(std::size_t size)
{
    if (allocationsUntilFailure == 0) {
        throw std::bad_alloc();
    }
    if (allocationsUntilFailure > 0) {
        --allocationsUntilFailure;
    }
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++liveAllocations;
    return memory;
}

void Release(void* memory) noexcept
{
    liveAllocations -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

/// Runs a query with its first, second, ... allocation failing until none fails any more; returns the number of
/// failures.
template <class Query>
int FailEachAllocation(Query query)
{
    for (int failures = 0;; ++failures) {
        const long before = liveAllocations;
        bool hasFailed = false;
        allocationsUntilFailure = failures;
        try {
            query();
        } catch (const std::bad_alloc&) {
            hasFailed = true;
        }
        allocationsUntilFailure = -1;
        EXPECT_EQ(liveAllocations, before) << "after " << failures << " allocations";
        if (!hasFailed) {
            return failures;
        }
    }
}

} // namespace

void* operator new(std::size_t size)
{
    return Allocate(size);
}

void* operator new[](std::size_t size)
{
    return Allocate(size);
}

void operator delete(void* memory) noexcept
{
    Release(memory);
}

void operator delete[](void* memory) noexcept
{
    Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    Release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    Release(memory);
}

TEST(FailingAllocation, LeaksNothingFromASturmSequence)
{
    const Polynomial1 polynomial = roots_testing::MakePolynomial(roots_testing::FromRoots({-2, -1, 0.5, 1, 3}));
    const PolynomialRoots roots(1e-9);
    int count = 0;
    const int failures =
        FailEachAllocation([&] { count = roots.GetRootCount(polynomial, -roots_testing::kLargest, 4); });
    EXPECT_EQ(count, 5);
    EXPECT_GT(failures, 12);
}

TEST(FailingAllocation, LeaksNothingFromBisection)
{
    const Polynomial1 polynomial = roots_testing::MakePolynomial(roots_testing::FromRoots({-2, -1, 0.5, 1, 3}));
    int count = 0;
    const int failures = FailEachAllocation([&] {
        PolynomialRoots roots(1e-9);
        roots.FindB(polynomial, 6);
        count = roots.GetCount();
    });
    EXPECT_EQ(count, 5);
    EXPECT_GT(failures, 8);
}

TEST(FailingAllocation, LeavesAnObjectWithoutRoots)
{
    const Polynomial1 polynomial = roots_testing::MakePolynomial(roots_testing::FromRoots({-2, -1, 0.5, 1, 3}));
    PolynomialRoots roots(1e-9);
    roots.FindA(-1, 0, 1);
    allocationsUntilFailure = 0;
    EXPECT_THROW(roots.FindB(polynomial, -4, 4, 6), std::bad_alloc);
    allocationsUntilFailure = -1;
    EXPECT_EQ(roots.GetCount(), 0);
    EXPECT_TRUE(roots.FindB(polynomial, -4, 4, 6));
    EXPECT_EQ(roots.GetCount(), 5);
}

TEST(FailingAllocation, LeavesPolynomialsAsTheyWere)
{
    const Polynomial1 dividend = roots_testing::MakePolynomial({-7, -2, 0, 2});
    const Polynomial1 divisor = roots_testing::MakePolynomial({-4, 2});
    const int failures = FailEachAllocation([&] {
        Polynomial1 quotient;
        Polynomial1 remainder;
        try {
            dividend.Divide(divisor, quotient, remainder, 0.0);
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(quotient.GetDegree(), -1);
            EXPECT_EQ(remainder.GetDegree(), -1);
            throw;
        }
    });
    EXPECT_EQ(failures, 3);
}

TEST(FailingAllocation, LeaksNothingFromStabilityTests)
{
    const Polynomial1 polynomial = roots_testing::MakePolynomial(roots_testing::FromRoots({-2, -1, -3}));
    bool isLeft = false;
    EXPECT_GT(FailEachAllocation([&] { isLeft = PolynomialRoots(1e-9).AllRealPartsNegative(polynomial); }), 2);
    EXPECT_TRUE(isLeft);
}
