#include <cadgeom/platform/exceptions.h>
#include <cadgeom/transform/transform.h>
#include <gtest/gtest.h>

#include <cstring>

#include "transform/transform_model.h"

namespace {

using namespace transform_test;

const State kState = {{1, 2, 3}, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}, {2, 3, 4}, 0x10};

/// Bytes of the record that `store` writes.
template <class Store>
std::vector<std::uint8_t> BytesOf(Store store)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    store(archive);
    archive.Close();
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.GetLength()));
    file.Seek(0, CFile::begin);
    file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    return bytes;
}

std::vector<std::uint8_t> BytesOfNumbers(const std::vector<double>& numbers)
{
    std::vector<std::uint8_t> bytes(numbers.size() * sizeof(double));
    std::memcpy(bytes.data(), numbers.data(), bytes.size());
    return bytes;
}

TEST(TransformRecord, HoldsFifteenNumbersAndTheFlagByte)
{
    CCadTransform transform = FromState(kState);
    std::vector<std::uint8_t> expected = BytesOfNumbers({1, 2, 3, 0, 1, 0, 0, 0, 1, 1, 0, 0, 2, 3, 4});
    expected.push_back(0x10);
    EXPECT_EQ(expected.size(), 121U);
    EXPECT_EQ(Record(transform), expected);
    EXPECT_EQ(expected[6], 0xF0) << "1.0 is little-endian 00 00 00 00 00 00 F0 3F";
    EXPECT_EQ(expected[7], 0x3F);
}

TEST(TransformRecord, RestoresAnyFlagByte)
{
    for (unsigned flags = 0; flags < 256; ++flags) {
        State state = kState;
        state.flags = static_cast<std::uint8_t>(flags);
        CCadTransform transform = FromState(state);
        EXPECT_EQ(StateOf(transform), state);
    }
}

TEST(TransformRecord, LeavesThePartsBehindTheEndOfTheDataAlone)
{
    std::vector<std::uint8_t> bytes = BytesOfNumbers({9, 8, 7, 6, 5});
    CMemFile file(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    CCadTransform transform = FromState(kState);
    try {
        transform.SerializeNew(archive);
        FAIL() << "the data end early";
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
    }
    State expected = kState;
    expected.translation = {9, 8, 7};
    expected.axes[0] = {6, 5, 0};
    EXPECT_EQ(StateOf(transform), expected);
}

TEST(TransformRecord, OldFormHoldsTheTwelveNumbersOfTheArray)
{
    CCadTransform transform = FromState(kState);
    const auto bytes = BytesOf([&transform](CArchive& archive) { transform.SerializeOld(archive); });
    EXPECT_EQ(bytes.size(), 96U);
    EXPECT_EQ(bytes, BytesOfNumbers({1, 2, 3, 0, 2, 0, 0, 0, 3, 4, 0, 0}));
    EXPECT_EQ(StateOf(transform), kState) << "storing changes nothing";
}

TEST(TransformRecord, OldFormDerivesScaleAndFlags)
{
    std::vector<std::uint8_t> bytes = BytesOfNumbers({1, 2, 3, 0, 2, 0, 0, 0, 3, 4, 0, 0});
    CMemFile file(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    CCadTransform transform;
    transform.SerializeOld(archive);
    State expected = kState;
    expected.flags = 0x01;
    EXPECT_EQ(StateOf(transform), expected);
}

TEST(TransformRecord, OldFormChangesNothingWhenTheDataEndEarly)
{
    std::vector<std::uint8_t> bytes(95);
    CMemFile file(bytes.data(), 95);
    CArchive archive(&file, CArchive::load);
    CCadTransform transform = FromState(kState);
    try {
        transform.SerializeOld(archive);
        FAIL() << "the data end early";
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
    }
    EXPECT_EQ(StateOf(transform), kState);
}

TEST(TransformRecord, FollowsTheNextRecordWithoutAGap)
{
    CCadTransform first = FromState(kState);
    CCadTransform second = CCadTransform::GetEmptyTransform();
    auto bytes = BytesOf([&](CArchive& archive) {
        first.SerializeNew(archive);
        second.SerializeOld(archive);
        first.SerializeNew(archive);
    });
    EXPECT_EQ(bytes.size(), 121U + 96U + 121U);
    CMemFile file(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    CCadTransform loaded[3];
    loaded[0].SerializeNew(archive);
    loaded[1].SerializeOld(archive);
    loaded[2].SerializeNew(archive);
    EXPECT_EQ(StateOf(loaded[0]), kState);
    EXPECT_EQ(StateOf(loaded[1]), Model().state);
    EXPECT_EQ(StateOf(loaded[2]), kState);
}

} // namespace
