#include <cadgeom/core/archive_records.h>
#include <cadgeom/platform/array.h>
#include <cadgeom/platform/exceptions.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#if defined(__linux__)
#include <sys/resource.h>
#endif

#include "support/archives.h"
#include "support/sanitizers.h"

namespace {

using test_support::Bytes;
using test_support::BytesOfNumbers;
using test_support::CauseOfArchiveException;
using test_support::Load;
using test_support::Stored;
using test_support::operator+;

using IntArray = CArray<int, int>;

template <class TYPE, class ARG_TYPE>
std::vector<TYPE> Elements(const CArray<TYPE, ARG_TYPE>& array)
{
    return std::vector<TYPE>(array.GetData(), array.GetData() + array.GetSize());
}

void Fill(IntArray& array, std::initializer_list<int> elements)
{
    for (const int element : elements) {
        array.Add(element);
    }
}

/// A value with a life of its own: counts how many are alive, and can be made to fail when it is copied or built.
class Counted {
public:
    Counted() : Counted(0) {}
    explicit Counted(int value) : m_value(value)
    {
        Spend();
        ++s_alive;
    }
    Counted(const Counted& other) : m_value(other.m_value)
    {
        Spend();
        ++s_alive;
    }
    Counted(Counted&& other) noexcept : m_value(std::exchange(other.m_value, -1)) { ++s_alive; }
    Counted& operator=(const Counted&) = default;
    Counted& operator=(Counted&& other) noexcept
    {
        m_value = std::exchange(other.m_value, -1);
        return *this;
    }
    ~Counted() { --s_alive; }

    bool operator==(const Counted& other) const { return m_value == other.m_value; }

    int m_value;

    static int s_alive;
    static int s_budget; ///< constructions until one throws; below 0: never

private:
    static void Spend()
    {
        if (s_budget == 0) {
            throw std::string("no more");
        }
        --s_budget;
    }
};

int Counted::s_alive = 0;
int Counted::s_budget = -1;

/// As Counted, but with a move that may throw, so that growing has to copy.
class CopiedWhenGrown : public Counted {
public:
    using Counted::Counted;
    CopiedWhenGrown() = default;
    CopiedWhenGrown(const CopiedWhenGrown&) = default;
    CopiedWhenGrown(CopiedWhenGrown&& other) noexcept(false) : Counted(std::move(other)) {}
    CopiedWhenGrown& operator=(const CopiedWhenGrown&) = default;
    ~CopiedWhenGrown() = default;
};

class ArrayOfCounted : public ::testing::Test {
protected:
    void SetUp() override { Counted::s_budget = -1; }
    void TearDown() override
    {
        Counted::s_budget = -1;
        EXPECT_EQ(Counted::s_alive, 0);
    }

    template <class Array>
    static std::vector<int> Values(const Array& array)
    {
        std::vector<int> values;
        for (std::int64_t i = 0; i < array.GetSize(); ++i) {
            values.push_back(array[i].m_value);
        }
        return values;
    }
};

TEST(Array, IsBornEmptyWithoutBuffer)
{
    const IntArray array;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.GetCount(), 0);
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_EQ(array.GetCapacity(), 0);
    EXPECT_EQ(array.GetGrowBy(), 0);
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(Array, AllocatesTheFirstSizeExactly)
{
    IntArray array;
    array.SetSize(1000);
    EXPECT_EQ(array.GetCapacity(), 1000);
    EXPECT_EQ(Elements(array), std::vector<int>(1000, 0));
}

TEST(Array, AllocatesTheFirstSizeAtLeastAsLargeAsTheStep)
{
    IntArray array;
    array.SetSize(3, 10);
    EXPECT_EQ(array.GetCapacity(), 10);
    EXPECT_EQ(array.GetGrowBy(), 10);
    IntArray larger;
    larger.SetSize(12, 10);
    EXPECT_EQ(larger.GetCapacity(), 12);
}

TEST(Array, GrowsByTheGivenStep)
{
    IntArray array;
    array.SetSize(10, 7);
    array.SetSize(11);
    EXPECT_EQ(array.GetCapacity(), 17);
    array.SetSize(17);
    EXPECT_EQ(array.GetCapacity(), 17);
    array.SetSize(25);
    EXPECT_EQ(array.GetCapacity(), 25) << "more than a step";
    array.SetSize(26, 0);
    EXPECT_EQ(array.GetGrowBy(), 0);
    EXPECT_EQ(array.GetCapacity(), 25 + 4);
}

TEST(Array, GrowsByAnEighthOfTheCountWithin4And1024)
{
    const std::pair<std::int64_t, std::int64_t> stepOfCount[] = {
        {1, 4}, {32, 4}, {39, 4}, {40, 5}, {47, 5}, {48, 6}, {8184, 1023}, {8191, 1023}, {8192, 1024}, {100000, 1024}};
    for (const auto& [count, step] : stepOfCount) {
        IntArray array;
        array.SetSize(count);
        array.SetSize(count + 1);
        EXPECT_EQ(array.GetCapacity(), count + step);
    }
}

TEST(Array, TakesTheStepFromTheCountAndNotFromTheCapacity)
{
    IntArray array;
    array.SetSize(800);
    array.SetSize(8);
    EXPECT_EQ(array.GetCapacity(), 800);
    array.SetSize(801);
    EXPECT_EQ(array.GetCapacity(), 804);
}

TEST(Array, MakesElementsZeroEachTimeTheyAppear)
{
    IntArray array;
    for (const std::int64_t size : {3, 9, 10, 40, 41, 1000, 1001, 2050, 5000}) {
        const std::int64_t before = array.GetSize();
        array.SetSize(size);
        for (std::int64_t i = before; i < size; ++i) {
            ASSERT_EQ(array[i], 0) << size;
            array[i] = 7;
        }
        array.SetSize(size / 2);
        array.SetSize(size);
        for (std::int64_t i = 0; i < size; ++i) {
            ASSERT_EQ(array[i], i < size / 2 ? 7 : 0) << size;
            array[i] = 7;
        }
    }
}

TEST(Array, FreesItsBufferAtSizeZero)
{
    IntArray array;
    array.SetSize(5, 3);
    array.SetSize(0);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.GetCapacity(), 0);
    EXPECT_EQ(array.GetGrowBy(), 3);
}

TEST(Array, RefusesSizesThatCannotBe)
{
    IntArray array;
    Fill(array, {1, 2, 3});
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    EXPECT_THROW(array.SetSize(-1), CInvalidArgException);
    EXPECT_THROW(array.SetSize(std::numeric_limits<std::int64_t>::min()), CInvalidArgException);
    EXPECT_THROW(array.SetSize(kLargest), CMemoryException);
    EXPECT_THROW(array.SetSize(kLargest / 4), CMemoryException);
    EXPECT_THROW(array.SetAtGrow(kLargest, 1), CMemoryException);
    EXPECT_THROW(array.SetAtGrow(kLargest - 1, 1), CMemoryException);
    EXPECT_THROW(array.InsertAt(kLargest, 1), CMemoryException);
    EXPECT_THROW(array.InsertAt(0, 1, kLargest), CMemoryException);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(array.GetCapacity(), 5);

    IntArray empty;
    EXPECT_THROW(empty.SetSize(1, kLargest), CMemoryException);
    EXPECT_EQ(empty.GetCapacity(), 0);
}

TEST(Array, RefusesBadIndices)
{
    IntArray array;
    Fill(array, {1, 2, 3});
    const IntArray& constant = array;
    for (const std::int64_t index : {std::int64_t(-1), std::int64_t(3), std::numeric_limits<std::int64_t>::max(),
                                     std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_THROW(array[index], CInvalidArgException);
        EXPECT_THROW(constant[index], CInvalidArgException);
        EXPECT_THROW(array.GetAt(index), CInvalidArgException);
        EXPECT_THROW(constant.GetAt(index), CInvalidArgException);
        EXPECT_THROW(array.ElementAt(index), CInvalidArgException);
        EXPECT_THROW(constant.ElementAt(index), CInvalidArgException);
        EXPECT_THROW(array.SetAt(index, 9), CInvalidArgException);
    }
    EXPECT_THROW(array.SetAtGrow(-1, 9), CInvalidArgException);
    EXPECT_THROW(array.InsertAt(-1, 9), CInvalidArgException);
    EXPECT_THROW(array.InsertAt(0, 9, 0), CInvalidArgException);
    EXPECT_THROW(array.RemoveAt(-1), CInvalidArgException);
    EXPECT_THROW(array.RemoveAt(3), CInvalidArgException);
    EXPECT_THROW(array.RemoveAt(1, 3), CInvalidArgException);
    EXPECT_THROW(array.RemoveAt(0, -1), CInvalidArgException);
    EXPECT_THROW(array.RemoveAt(1, std::numeric_limits<std::int64_t>::max()), CInvalidArgException);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 2, 3}));
}

TEST(Array, GivesAccessToElements)
{
    IntArray array;
    Fill(array, {1, 2, 3});
    const IntArray& constant = array;
    array[0] = 10;
    array.ElementAt(1) = 20;
    array.GetAt(2) = 30;
    EXPECT_EQ(constant[0], 10);
    EXPECT_EQ(constant.GetAt(1), 20);
    EXPECT_EQ(constant.ElementAt(2), 30);
    array.SetAt(2, 31);
    EXPECT_EQ(constant.GetData()[2], 31);
    EXPECT_EQ(array.GetUpperBound(), 2);
}

TEST(Array, AddsAtTheEndAndReturnsTheIndex)
{
    IntArray array;
    EXPECT_EQ(array.Add(5), 0);
    EXPECT_EQ(array.Add(6), 1);
    EXPECT_EQ(Elements(array), (std::vector<int>{5, 6}));
}

TEST(Array, GrowsToTheIndexThatIsSet)
{
    IntArray array;
    Fill(array, {1, 2});
    array.SetAtGrow(1, 20);
    array.SetAtGrow(2, 30);
    array.SetAtGrow(5, 60);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 20, 30, 0, 0, 60}));
}

TEST(Array, InsertsInFrontAndBehindTheEnd)
{
    IntArray array;
    Fill(array, {1, 2, 3});
    array.InsertAt(1, 9, 2);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 9, 9, 2, 3}));
    array.InsertAt(5, 4);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 9, 9, 2, 3, 4}));
    array.InsertAt(8, 5, 2);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 9, 9, 2, 3, 4, 0, 0, 5, 5}));
    IntArray empty;
    empty.InsertAt(2, 7);
    EXPECT_EQ(Elements(empty), (std::vector<int>{0, 0, 7}));
}

TEST(Array, RemovesByShiftingAndKeepsTheCapacity)
{
    IntArray array;
    Fill(array, {1, 2, 3, 4, 5});
    const std::int64_t capacity = array.GetCapacity();
    array.RemoveAt(1, 2);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 4, 5}));
    array.RemoveAt(2);
    array.RemoveAt(2, 0);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 4}));
    array.RemoveAt(0, 2);
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetCapacity(), capacity);
    EXPECT_NE(array.GetData(), nullptr);
}

TEST(Array, GivesBackWhatTheCapacityHoldsBeyondTheCount)
{
    IntArray array;
    for (int i = 0; i < 100; ++i) {
        array.Add(i);
    }
    const auto before = Elements(array);
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), 100);
    EXPECT_EQ(Elements(array), before);
    array.RemoveAt(0, 100);
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), 0);
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(Array, CopiesByTheGrowthRule)
{
    IntArray source;
    Fill(source, {1, 2, 3, 4, 5, 6});
    IntArray target;
    target.SetSize(4);
    target.Copy(source);
    EXPECT_EQ(Elements(target), Elements(source));
    EXPECT_EQ(target.GetCapacity(), 8);
    const int* const data = target.GetData();
    target.Copy(target);
    EXPECT_EQ(target.GetData(), data);
    EXPECT_EQ(Elements(target), Elements(source));
    target.Copy(IntArray());
    EXPECT_EQ(target.GetCapacity(), 0);
}

TEST(Array, AppendsAnotherArrayOrItself)
{
    IntArray array;
    Fill(array, {1, 2, 3});
    IntArray other;
    Fill(other, {4, 5});
    EXPECT_EQ(array.Append(other), 3);
    EXPECT_EQ(array.Append(array), 5);
    EXPECT_EQ(array.Append(IntArray()), 10);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 2, 3, 4, 5, 1, 2, 3, 4, 5}));
}

TEST(Array, TakesElementsOfItsOwnAsArguments)
{
    CArray<int> array; // takes its arguments by reference
    array.Add(1);
    for (int i = 0; i < 5000; ++i) {
        array.Add(array[0]);
        array.SetAtGrow(array.GetSize(), array[0]);
        array.SetAtGrow(array.GetSize() + 10, array[0]);
        array.RemoveAt(array.GetSize() - 11, 10);
        array.InsertAt(0, array[array.GetUpperBound()]);
    }
    array.SetAt(1, array[0]);
    EXPECT_EQ(Elements(array), std::vector<int>(20001, 1));
}

TEST(Array, MovesByTakingTheBuffer)
{
    IntArray array;
    array.SetSize(3, 7);
    const int* const data = array.GetData();
    IntArray taken(std::move(array));
    EXPECT_EQ(taken.GetData(), data);
    EXPECT_EQ(taken.GetGrowBy(), 7);
    IntArray assigned;
    assigned.SetSize(100);
    assigned = std::move(taken);
    EXPECT_EQ(assigned.GetData(), data);
    EXPECT_EQ(assigned.GetCapacity(), 7);
    EXPECT_EQ(taken.GetSize(), 0); // NOLINT(bugprone-use-after-move): a moved array is empty
    IntArray& alias = assigned;
    assigned = std::move(alias);
    EXPECT_EQ(assigned.GetSize(), 3);
}

TEST(Array, HasDoubleWordsForPermutations)
{
    CDWordArray rows;
    rows.Add(4294967295U);
    EXPECT_EQ(rows[0], 4294967295U);
    EXPECT_EQ(Stored([&](CArchive& archive) { rows.Serialize(archive); }), (Bytes{1, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(ArrayOfCounted, BuildsMovesAndDestroysEachElementOnce)
{
    CArray<Counted> array;
    for (int i = 0; i < 100; ++i) {
        array.Add(Counted(i));
    }
    EXPECT_EQ(Counted::s_alive, 100);
    EXPECT_EQ(array[99].m_value, 99);
    array.SetSize(150);
    EXPECT_EQ(Counted::s_alive, 150);
    EXPECT_EQ(array[120].m_value, 0);
    array.SetSize(10);
    EXPECT_EQ(Counted::s_alive, 10);
    array.InsertAt(3, array[9], 2);
    EXPECT_EQ(Values(array), (std::vector<int>{0, 1, 2, 9, 9, 3, 4, 5, 6, 7, 8, 9}));
    array.RemoveAt(0, 4);
    EXPECT_EQ(Values(array), (std::vector<int>{9, 3, 4, 5, 6, 7, 8, 9}));
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), 8);
    EXPECT_EQ(Counted::s_alive, 8);
    CArray<Counted> copy;
    copy.Copy(array);
    EXPECT_EQ(Counted::s_alive, 16);
    EXPECT_EQ(copy.Append(copy), 8);
    EXPECT_EQ(Counted::s_alive, 24);
    copy.RemoveAll();
    EXPECT_EQ(Counted::s_alive, 8);
    array = std::move(copy);
    EXPECT_EQ(Counted::s_alive, 0);
}

TEST_F(ArrayOfCounted, StaysAsItWasWhenAnElementCannotBeBuilt)
{
    CArray<Counted> array;
    for (int i = 0; i < 5; ++i) {
        array.Add(Counted(i));
    }
    const auto before = Values(array);
    for (int budget = 0; budget < 3; ++budget) {
        Counted::s_budget = budget;
        EXPECT_THROW(array.SetSize(9), std::string);
        EXPECT_EQ(Values(array), before);
        EXPECT_EQ(Counted::s_alive, 5);
    }
}

TEST_F(ArrayOfCounted, StaysAsItWasWhenGrowingCannotCopy)
{
    CArray<CopiedWhenGrown> array;
    for (int i = 0; i < 5; ++i) {
        array.Add(CopiedWhenGrown(i));
    }
    array.FreeExtra();
    const auto before = Values(array);
    Counted::s_budget = 3;
    EXPECT_THROW(array.SetSize(6), std::string);
    EXPECT_EQ(Values(array), before);
    EXPECT_EQ(array.GetCapacity(), 5);
    EXPECT_EQ(Counted::s_alive, 5);
}

TEST(ArrayRecord, HoldsTheCountAndTheElements)
{
    IntArray array;
    Fill(array, {1, -2});
    EXPECT_EQ(Stored([&](CArchive& archive) { array.Serialize(archive); }),
              (Bytes{2, 0} + BytesOfNumbers<std::int32_t>({1, -2})));
    CArray<CadVector3d<float>> vectors;
    vectors.Add({1, 2, 3});
    const Bytes bytes = Stored([&](CArchive& archive) { vectors.Serialize(archive); });
    EXPECT_EQ(bytes, (Bytes{1, 0} + BytesOfNumbers<float>({1, 2, 3})));
    CArray<CadVector3d<float>> loaded;
    loaded.SetSize(3);
    Load(bytes, [&](CArchive& archive) { loaded.Serialize(archive); });
    EXPECT_EQ(loaded.GetSize(), 1);
    EXPECT_TRUE(loaded[0] == vectors[0]);
}

TEST(ArrayRecord, IsResizedWithZerosBehindDataThatEndEarly)
{
    for (const std::int64_t countBefore : {0, 2, 5, 20}) {
        IntArray array;
        CArray<CadVector2d<double>> vectors;
        for (std::int64_t i = 0; i < countBefore; ++i) {
            array.Add(-1);
            vectors.Add({-1, -1});
        }
        const Bytes ints = Bytes{5, 0} + BytesOfNumbers<std::int32_t>({1, 2}) + Bytes{3, 3, 3};
        EXPECT_EQ(CauseOfArchiveException([&] { Load(ints, [&](CArchive& archive) { array.Serialize(archive); }); }),
                  CArchiveException::endOfFile);
        EXPECT_EQ(Elements(array), (std::vector<int>{1, 2, 0, 0, 0}));
        const Bytes doubles = Bytes{3, 0} + BytesOfNumbers<double>({1, 2, 3});
        EXPECT_EQ(
            CauseOfArchiveException([&] { Load(doubles, [&](CArchive& archive) { vectors.Serialize(archive); }); }),
            CArchiveException::endOfFile);
        ASSERT_EQ(vectors.GetSize(), 3);
        EXPECT_TRUE(vectors[0] == CadVector2d<double>(1, 2));
        EXPECT_TRUE(vectors[1] == CadVector2d<double>(3, 0));
        EXPECT_TRUE(vectors[2] == CadVector2d<double>(0, 0));
    }
}

TEST(ArrayRecord, HoldsArraysOfArrays)
{
    CArray<IntArray, const IntArray&> arrays;
    arrays.SetSize(2);
    Fill(arrays[1], {7});
    const Bytes bytes = Stored([&](CArchive& archive) { arrays.Serialize(archive); });
    EXPECT_EQ(bytes, (Bytes{2, 0, 0, 0, 1, 0, 7, 0, 0, 0}));
    CArray<IntArray, const IntArray&> loaded;
    Load(bytes, [&](CArchive& archive) { loaded.Serialize(archive); });
    EXPECT_EQ(Elements(loaded[1]), (std::vector<int>{7}));
}

TEST(ArrayRecord, IsRefusedForTypesWithoutOne)
{
    CArray<std::string> texts;
    texts.Add("text");
    EXPECT_EQ(CauseOfArchiveException([&] { Stored([&](CArchive& archive) { texts.Serialize(archive); }); }),
              CArchiveException::genericException);
    CArray<const int*> pointers;
    pointers.SetSize(1);
    EXPECT_EQ(CauseOfArchiveException([&] { Stored([&](CArchive& archive) { pointers.Serialize(archive); }); }),
              CArchiveException::genericException);
}

Bytes LongCount(std::uint64_t count)
{
    return Bytes(6, 0xFF) + BytesOfNumbers<std::uint64_t>({count});
}

TEST(ArrayRecord, IsLeftAloneByCountsWhoseBytesOverflow)
{
    for (const std::uint64_t count : {~0ULL, 1ULL << 63, (1ULL << 63) - 1, 1ULL << 62, 1ULL << 61}) {
        IntArray array;
        Fill(array, {1, 2, 3});
        EXPECT_THROW(Load(LongCount(count), [&](CArchive& archive) { array.Serialize(archive); }), CMemoryException);
        EXPECT_EQ(Elements(array), (std::vector<int>{1, 2, 3}));
    }
}

TEST(ArrayRecord, EndsEarlyWhenTheFileCannotHoldTheElements)
{
    IntArray array;
    Fill(array, {1, 2, 3});
    EXPECT_EQ(CauseOfArchiveException(
                  [&] { Load(LongCount(1ULL << 60), [&](CArchive& archive) { array.Serialize(archive); }); }),
              CArchiveException::endOfFile);
    EXPECT_EQ(Elements(array), (std::vector<int>{1, 2, 3})) << "the memory cannot be obtained";
}

TEST(ArrayRecord, IsOutOfMemoryWhenTheLengthOfTheFileIsNotKnown)
{
    test_support::WatchedFile file;
    const Bytes bytes = LongCount(1ULL << 60);
    file.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    file.SeekToBegin();
    file.m_cannotSeek = true;
    CArchive archive(&file, CArchive::load);
    IntArray array;
    EXPECT_THROW(array.Serialize(archive), CMemoryException);
}

TEST(ArrayRecord, DoesNotBuildElementsThatTheFileCannotHold)
{
    CArray<IntArray, const IntArray&> arrays;
    arrays.SetSize(3);
    EXPECT_EQ(CauseOfArchiveException(
                  [&] { Load(LongCount(1ULL << 40), [&](CArchive& archive) { arrays.Serialize(archive); }); }),
              CArchiveException::endOfFile);
    EXPECT_EQ(arrays.GetSize(), 3);
}

#if defined(__linux__) && !defined(CADGEOM_TEST_IS_SANITIZED)
TEST(ArrayRecord, TakesNoMemoryForElementsThatAreNotThere)
{
    const auto residentKilobytes = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    const long before = residentKilobytes();
    for (const std::int64_t countBefore : {0, 1, 1000}) {
        CArray<double> array;
        array.SetSize(countBefore);
        // Two gigabytes, and eight.
        for (const std::uint64_t count : {1ULL << 28, 1ULL << 30}) {
            EXPECT_EQ(CauseOfArchiveException(
                          [&] { Load(LongCount(count), [&](CArchive& archive) { array.Serialize(archive); }); }),
                      CArchiveException::endOfFile);
        }
    }
    EXPECT_LT(residentKilobytes() - before, 256 * 1024);
}
#endif

} // namespace
