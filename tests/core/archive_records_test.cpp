#include <cadgeom/core/archive_records.h>
#include <cadgeom/platform/exceptions.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/archives.h"
#include "support/numbers.h"
#include "support/same_bits.h"

namespace {

using test_support::Bytes;
using test_support::BytesOfNumbers;
using test_support::CauseOfArchiveException;
using test_support::Load;
using test_support::NumberStream;
using test_support::Stored;
using test_support::operator+;

/// A value type with the form of its record.
template <class V, class S, int N>
struct RecordOf {
    using Value = V;
    using Scalar = S;
    static constexpr int kAxes = N;
};

template <class R>
class ArchiveRecord : public ::testing::Test {
protected:
    using Value = typename R::Value;
    using Scalar = typename R::Scalar;
    static constexpr int N = R::kAxes;

    static Value Counting(int first)
    {
        Value value;
        for (int i = 0; i < N; ++i) {
            value[i] = Scalar(first + i);
        }
        return value;
    }

    static Bytes BytesOf(const Value& value)
    {
        Bytes bytes;
        for (int i = 0; i < N; ++i) {
            bytes = bytes + BytesOfNumbers<Scalar>({value[i]});
        }
        return bytes;
    }
};

using Records = ::testing::Types<RecordOf<CadVector<float, 2>, float, 2>, RecordOf<CadVector<float, 3>, float, 3>,
                                 RecordOf<CadVector<double, 2>, double, 2>, RecordOf<CadVector<double, 3>, double, 3>,
                                 RecordOf<CadPoint<float, 2>, float, 2>, RecordOf<CadPoint<float, 3>, float, 3>,
                                 RecordOf<CadPoint<double, 2>, double, 2>, RecordOf<CadPoint<double, 3>, double, 3>,
                                 RecordOf<CadVector2d<float>, float, 2>, RecordOf<CadVector3d<float>, float, 3>,
                                 RecordOf<CadVector2d<double>, double, 2>, RecordOf<CadVector3d<double>, double, 3>,
                                 RecordOf<CadPoint2d<float>, float, 2>, RecordOf<CadPoint3d<float>, float, 3>,
                                 RecordOf<CadPoint2d<double>, double, 2>, RecordOf<CadPoint3d<double>, double, 3>>;
TYPED_TEST_SUITE(ArchiveRecord, Records);

TYPED_TEST(ArchiveRecord, IsTheComponentsInAxisOrderAndNothingElse)
{
    auto value = TestFixture::Counting(1);
    const Bytes expected = TestFixture::BytesOf(value);
    EXPECT_EQ(expected.size(), TestFixture::N * sizeof(typename TestFixture::Scalar));
    EXPECT_EQ(Stored([&](CArchive& archive) { value.serialize(archive); }), expected);
    EXPECT_EQ(Stored([&](CArchive& archive) { EXPECT_EQ(&(archive << value), &archive); }), expected);
}

TYPED_TEST(ArchiveRecord, IsLoadedBitByBit)
{
    NumberStream<typename TestFixture::Scalar> numbers(91);
    for (int round = 0; round < 200; ++round) {
        typename TestFixture::Value value;
        for (int i = 0; i < TestFixture::N; ++i) {
            value[i] = numbers.Any();
        }
        const Bytes bytes = TestFixture::BytesOf(value);
        typename TestFixture::Value serialized;
        typename TestFixture::Value extracted;
        EXPECT_EQ(Load(bytes, [&](CArchive& archive) { serialized.serialize(archive); }), bytes.size());
        Load(bytes, [&](CArchive& archive) { EXPECT_EQ(&(archive >> extracted), &archive); });
        EXPECT_EQ(TestFixture::BytesOf(serialized), bytes);
        EXPECT_EQ(TestFixture::BytesOf(extracted), bytes);
    }
}

TYPED_TEST(ArchiveRecord, LeavesTheComponentsBehindTheEndOfTheDataUnchanged)
{
    constexpr std::size_t kSize = sizeof(typename TestFixture::Scalar);
    const auto whole = TestFixture::Counting(1);
    const auto before = TestFixture::Counting(10);
    const Bytes bytes = TestFixture::BytesOf(whole);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        auto serialized = before;
        auto extracted = before;
        EXPECT_EQ(
            CauseOfArchiveException([&] { Load(cut, [&](CArchive& archive) { serialized.serialize(archive); }); }),
            CArchiveException::endOfFile);
        EXPECT_EQ(CauseOfArchiveException([&] { Load(cut, [&](CArchive& archive) { archive >> extracted; }); }),
                  CArchiveException::endOfFile);
        for (int i = 0; i < TestFixture::N; ++i) {
            const auto expected = (static_cast<std::size_t>(i) + 1) * kSize <= size ? whole[i] : before[i];
            EXPECT_SAME_BITS(expected, serialized[i]);
            EXPECT_SAME_BITS(expected, extracted[i]);
        }
    }
}

TYPED_TEST(ArchiveRecord, IsRefusedInTheWrongDirection)
{
    auto value = TestFixture::Counting(1);
    CMemFile file;
    CArchive storing(&file, CArchive::store);
    CArchive loading(&file, CArchive::load);
    EXPECT_EQ(CauseOfArchiveException([&] { storing >> value; }), CArchiveException::writeOnly);
    EXPECT_EQ(CauseOfArchiveException([&] { loading << value; }), CArchiveException::readOnly);
    EXPECT_EQ(TestFixture::BytesOf(value), TestFixture::BytesOf(TestFixture::Counting(1)));
}

TYPED_TEST(ArchiveRecord, RunsBackToBackWithoutACount)
{
    using Element = typename TypeParam::Value;
    std::vector<Element> values;
    Bytes expected;
    for (int i = 0; i < 700; ++i) {
        values.push_back(TestFixture::Counting(3 * i));
        expected = expected + TestFixture::BytesOf(values.back());
    }
    const Bytes bytes = Stored([&](CArchive& archive) { SerializeElements<Element>(archive, values.data(), 700); });
    EXPECT_EQ(bytes, expected);
    for (const int bufferSize : {128, 4096, 100000}) {
        std::vector<Element> loaded(700);
        EXPECT_EQ(
            Load(
                bytes, [&](CArchive& archive) { SerializeElements<Element>(archive, loaded.data(), 700); }, bufferSize),
            bytes.size());
        for (std::size_t i = 0; i < 700; ++i) {
            ASSERT_EQ(TestFixture::BytesOf(loaded[i]), TestFixture::BytesOf(values[i]));
        }
    }
}

TYPED_TEST(ArchiveRecord, RunsOfNoneTouchNeitherArchiveNorPointer)
{
    using Element = typename TypeParam::Value;
    for (const unsigned mode : {unsigned(CArchive::store), unsigned(CArchive::load)}) {
        CArchive closed(nullptr, mode);
        EXPECT_NO_THROW(SerializeElements<Element>(closed, nullptr, 0));
        EXPECT_NO_THROW(SerializeElements<Element>(closed, nullptr, -1));
        Element value = TestFixture::Counting(1);
        EXPECT_NO_THROW(SerializeElements<Element>(closed, &value, -5));
    }
}

TYPED_TEST(ArchiveRecord, RunsThatEndEarlyKeepWhatWasLoaded)
{
    using Element = typename TypeParam::Value;
    const auto before = TestFixture::Counting(50);
    const Bytes bytes = TestFixture::BytesOf(TestFixture::Counting(1)) + TestFixture::BytesOf(TestFixture::Counting(4));
    std::vector<Element> values(4, before);
    EXPECT_EQ(CauseOfArchiveException(
                  [&] { Load(bytes, [&](CArchive& a) { SerializeElements<Element>(a, values.data(), 4); }); }),
              CArchiveException::endOfFile);
    EXPECT_EQ(TestFixture::BytesOf(values[0]) + TestFixture::BytesOf(values[1]), bytes);
    EXPECT_EQ(TestFixture::BytesOf(values[2]), TestFixture::BytesOf(before));
    EXPECT_EQ(TestFixture::BytesOf(values[3]), TestFixture::BytesOf(before));
}

TEST(ArchiveRecords, HaveTheBytesOfTheExample)
{
    CadPoint3d<double> point(1, 2, 3);
    EXPECT_EQ(Stored([&](CArchive& archive) { point.serialize(archive); }),
              (Bytes{0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0x40, 0, 0, 0, 0, 0, 0, 8, 0x40}));
    CadVector2d<float> vector(1, -2);
    EXPECT_EQ(Stored([&](CArchive& archive) { vector.serialize(archive); }), (Bytes{0, 0, 0x80, 0x3F, 0, 0, 0, 0xC0}));
}

TEST(ArchiveRecords, OfVectorsAreReadAsPointsAndBack)
{
    CadVector<float, 2> vector = CadVector2d<float>(1.5F, -2.5F);
    const Bytes bytes = Stored([&](CArchive& archive) { vector.serialize(archive); });
    CadPoint<float, 2> point;
    Load(bytes, [&](CArchive& archive) { point.serialize(archive); });
    EXPECT_EQ(point[0], 1.5F);
    EXPECT_EQ(point[1], -2.5F);
    EXPECT_EQ(Stored([&](CArchive& archive) { point.serialize(archive); }), bytes);
}

TEST(ArchiveRecords, OfPointRunsRefuseANullArrayWithACount)
{
    CMemFile file;
    CArchive storing(&file, CArchive::store);
    EXPECT_THROW(SerializeElements<CadPoint3d<double>>(storing, nullptr, 1), CInvalidArgException);
    CArchive loading(&file, CArchive::load);
    EXPECT_THROW(SerializeElements<CadPoint3d<float>>(loading, nullptr, 1), CInvalidArgException);
}

TEST(ArchiveRecords, OfPointRunsEndEarlyWithoutAFileName)
{
    const Bytes bytes(10);
    CMemFile file(bytes.data(), bytes.size());
    CArchive archive(&file, CArchive::load);
    archive.m_strFileName = "part.bin";
    CadPoint3d<double> points[2];
    std::string name = "none yet";
    EXPECT_EQ(CauseOfArchiveException([&] { SerializeElements(archive, points, 2); }, &name),
              CArchiveException::endOfFile);
    EXPECT_EQ(name, "");
    double number = 0;
    EXPECT_EQ(CauseOfArchiveException([&] { archive >> number; }), CArchiveException::genericException)
        << "closed by then";
}

} // namespace
