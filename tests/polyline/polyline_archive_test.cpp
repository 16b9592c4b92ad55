#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>
#include <cadgeom/polyline/polyline3d.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "polyline/samples.h"
#include "support/archives.h"
#include "support/sanitizers.h"

namespace {

using polyline_testing::AnyVertices;
using polyline_testing::Polyline;
using polyline_testing::SameVertices;
using polyline_testing::Vertices;
using test_support::Bytes;
using test_support::BytesOfNumbers;
using test_support::CauseOfArchiveException;
using test_support::Load;
using test_support::NumberStream;
using test_support::Stored;
using test_support::operator+;

template <class T>
class PolylineArchive : public ::testing::Test {
protected:
    using Point = CadPoint3d<T>;

    /// The two ways of loading.
    static std::vector<std::function<void(CArchive&, CCadPolyline3d<T>&)>> Loaders()
    {
        return {[](CArchive& archive, CCadPolyline3d<T>& polyline) { polyline.Serialize(archive); },
                [](CArchive& archive, CCadPolyline3d<T>& polyline) { archive >> polyline; }};
    }

    static Bytes StoredByOperator(const CCadPolyline3d<T>& polyline)
    {
        return Stored([&](CArchive& archive) { EXPECT_EQ(&(archive << polyline), &archive); });
    }

    static Bytes StoredBySerialize(CCadPolyline3d<T>& polyline)
    {
        return Stored([&](CArchive& archive) { polyline.Serialize(archive); });
    }
};

using Scalars = ::testing::Types<float, double>;
TYPED_TEST_SUITE(PolylineArchive, Scalars);

TYPED_TEST(PolylineArchive, StoresTheCountAndTheCoordinates)
{
    using T = TypeParam;
    auto line = Polyline<T>({{1, 2, 3}, {-4, T(0.5), 0}});
    const Bytes expected = Bytes{2, 0} + BytesOfNumbers<T>({1, 2, 3, -4, T(0.5), 0});
    EXPECT_EQ(TestFixture::StoredByOperator(line), expected);
    EXPECT_EQ(TestFixture::StoredBySerialize(line), expected);
}

TYPED_TEST(PolylineArchive, StoresAnEmptyPolylineAsItsCount)
{
    CCadPolyline3d<TypeParam> line;
    EXPECT_EQ(TestFixture::StoredByOperator(line), (Bytes{0, 0}));
    EXPECT_EQ(TestFixture::StoredBySerialize(line), (Bytes{0, 0}));
    for (const auto& load : TestFixture::Loaders()) {
        auto loaded = Polyline<TypeParam>({{1, 2, 3}});
        EXPECT_EQ(Load({0, 0}, [&](CArchive& archive) { load(archive, loaded); }), 2U);
        EXPECT_TRUE(loaded.IsEmpty());
        EXPECT_EQ(loaded.GetCapacity(), 0);
    }
}

TYPED_TEST(PolylineArchive, LoadsWhatEitherFormStoredWithAnyBuffer)
{
    using T = TypeParam;
    NumberStream<T> numbers(83);
    for (const std::size_t count : {1U, 10U, 11U, 170U, 171U, 1000U, 65534U, 65535U, 70000U}) {
        const auto vertices = AnyVertices(count, numbers);
        auto line = Polyline(vertices);
        const Bytes bytes = TestFixture::StoredByOperator(line);
        ASSERT_EQ(bytes, TestFixture::StoredBySerialize(line));
        ASSERT_EQ(bytes.size(), (count < 0xFFFF ? 2 : 6) + count * 3 * sizeof(T));
        for (const auto& load : TestFixture::Loaders()) {
            for (const int bufferSize : {1, 128, 4096, 1000000}) {
                CCadPolyline3d<T> loaded;
                EXPECT_EQ(Load(
                              bytes + Bytes{1, 2, 3}, [&](CArchive& archive) { load(archive, loaded); }, bufferSize),
                          bytes.size());
                ASSERT_TRUE(SameVertices(vertices, Vertices(loaded)));
                EXPECT_EQ(loaded.GetCapacity(), static_cast<std::int64_t>(count));
            }
        }
    }
}

TYPED_TEST(PolylineArchive, ReplacesOldVerticesByTheGrowthRule)
{
    using T = TypeParam;
    auto line = Polyline<T>({{1, 2, 3}, {4, 5, 6}});
    const Bytes bytes = TestFixture::StoredByOperator(line);
    for (const auto& load : TestFixture::Loaders()) {
        CCadPolyline3d<T> loaded = Polyline<T>({{9, 9, 9}});
        Load(bytes, [&](CArchive& archive) { load(archive, loaded); });
        EXPECT_TRUE(SameVertices(Vertices(line), Vertices(loaded)));
        EXPECT_EQ(loaded.GetCapacity(), 1 + 4);
    }
}

TYPED_TEST(PolylineArchive, KeepsTheCoordinatesBeforeTheEndOfTheDataAndZerosAfter)
{
    using T = TypeParam;
    const std::vector<T> coordinates{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    auto line = Polyline<T>({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}});
    const Bytes whole = TestFixture::StoredByOperator(line);
    for (const auto& load : TestFixture::Loaders()) {
        for (const std::int64_t countBefore : {0, 2, 9, 2000}) {
            for (std::size_t size = 2; size < whole.size(); ++size) {
                const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
                CCadPolyline3d<T> loaded;
                for (std::int64_t i = 0; i < countBefore; ++i) {
                    loaded.AddPoint({-1, -1, -1});
                }
                const int cause =
                    CauseOfArchiveException([&] { Load(cut, [&](CArchive& archive) { load(archive, loaded); }); });
                ASSERT_EQ(cause, CArchiveException::endOfFile);
                ASSERT_EQ(loaded.GetNumPoints(), 4);
                for (std::size_t i = 0; i < 12; ++i) {
                    const T expected = (i + 1) * sizeof(T) + 2 <= size ? coordinates[i] : T(0);
                    const auto vertex = static_cast<std::int64_t>(i / 3);
                    ASSERT_SAME_BITS(expected, loaded.GetPoint(vertex)[static_cast<int>(i % 3)]);
                }
            }
        }
    }
}

TYPED_TEST(PolylineArchive, ClearsLongOldContentsWhenTheDataAreTooShort)
{
    using T = TypeParam;
    const Bytes cut = Bytes{0x10, 0x27} + BytesOfNumbers<T>({1, 2, 3});
    for (const auto& load : TestFixture::Loaders()) {
        CCadPolyline3d<T> loaded;
        for (int i = 0; i < 20000; ++i) {
            loaded.AddPoint({-1, -1, -1});
        }
        EXPECT_EQ(CauseOfArchiveException([&] { Load(cut, [&](CArchive& archive) { load(archive, loaded); }); }),
                  CArchiveException::endOfFile);
        ASSERT_EQ(loaded.GetNumPoints(), 10000);
        EXPECT_TRUE(loaded.GetPoint(0) == typename TestFixture::Point(1, 2, 3));
        for (std::int64_t i = 1; i < 10000; ++i) {
            ASSERT_TRUE(loaded.GetPoint(i).isZero()) << i;
        }
    }
}

TYPED_TEST(PolylineArchive, NamesTheFileWhereThePointRecordsDo)
{
    using T = TypeParam;
    const Bytes cut = Bytes{1, 0} + BytesOfNumbers<T>({1});
    std::vector<std::string> names;
    for (const auto& load : TestFixture::Loaders()) {
        CMemFile file(cut.data(), cut.size());
        CArchive archive(&file, CArchive::load);
        archive.m_strFileName = "walk.bin";
        CCadPolyline3d<T> loaded;
        std::string name;
        EXPECT_EQ(CauseOfArchiveException([&] { load(archive, loaded); }, &name), CArchiveException::endOfFile);
        names.push_back(name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"", "walk.bin"})) << "a block that comes back short carries no name";
}

TYPED_TEST(PolylineArchive, IsNotTouchedByDataThatEndInTheCount)
{
    using T = TypeParam;
    for (const auto& load : TestFixture::Loaders()) {
        for (const Bytes& cut : {Bytes{}, Bytes{1}, Bytes{0xFF, 0xFF, 1, 0, 0}}) {
            auto loaded = Polyline<T>({{1, 2, 3}});
            EXPECT_EQ(CauseOfArchiveException([&] { Load(cut, [&](CArchive& archive) { load(archive, loaded); }); }),
                      CArchiveException::endOfFile);
            EXPECT_TRUE(SameVertices<T>({{1, 2, 3}}, Vertices(loaded)));
        }
    }
}

TYPED_TEST(PolylineArchive, SurvivesCountsThatLie)
{
    using T = TypeParam;
    const Bytes manyVertices = Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF} + BytesOfNumbers<std::uint64_t>({1ULL << 33});
    const Bytes tooManyVertices =
        Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF} + BytesOfNumbers<std::uint64_t>({1ULL << 61});
    const Bytes negativeCount = Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF} + BytesOfNumbers<std::uint64_t>({~0ULL});
    for (const auto& load : TestFixture::Loaders()) {
        for (const std::int64_t countBefore : {0, 1, 5}) {
            CCadPolyline3d<T> loaded;
            for (std::int64_t i = 0; i < countBefore; ++i) {
                loaded.AddPoint({1, 2, 3});
            }
            const auto before = Vertices(loaded);
            EXPECT_THROW(Load(tooManyVertices, [&](CArchive& archive) { load(archive, loaded); }), CMemoryException);
            EXPECT_TRUE(SameVertices(before, Vertices(loaded)));
            EXPECT_THROW(Load(negativeCount, [&](CArchive& archive) { load(archive, loaded); }), CMemoryException);
            EXPECT_TRUE(SameVertices(before, Vertices(loaded)));
            EXPECT_EQ(
                CauseOfArchiveException([&] { Load(manyVertices, [&](CArchive& archive) { load(archive, loaded); }); }),
                CArchiveException::endOfFile);
        }
    }
}

TYPED_TEST(PolylineArchive, RefusesTheWrongDirection)
{
    using T = TypeParam;
    auto line = Polyline<T>({{1, 2, 3}});
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        EXPECT_EQ(CauseOfArchiveException([&] { archive >> line; }), CArchiveException::writeOnly);
    }
    {
        CArchive archive(&file, CArchive::load);
        EXPECT_EQ(CauseOfArchiveException([&] { archive << line; }), CArchiveException::readOnly);
    }
    EXPECT_TRUE(SameVertices<T>({{1, 2, 3}}, Vertices(line)));
    EXPECT_EQ(file.GetLength(), 0U);
}

TYPED_TEST(PolylineArchive, StoresPolylinesOneAfterTheOther)
{
    using T = TypeParam;
    CCadPolyline3d<T> lines[3] = {Polyline<T>({{1, 2, 3}}), CCadPolyline3d<T>(), Polyline<T>({{4, 5, 6}, {7, 8, 9}})};
    const Bytes bytes = Stored([&](CArchive& archive) { SerializeElements(archive, lines, 3); });
    EXPECT_EQ(bytes,
              (Bytes{1, 0} + BytesOfNumbers<T>({1, 2, 3}) + Bytes{0, 0, 2, 0} + BytesOfNumbers<T>({4, 5, 6, 7, 8, 9})));
    CCadPolyline3d<T> loaded[3];
    Load(bytes, [&](CArchive& archive) { SerializeElements(archive, loaded, 3); });
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(SameVertices(Vertices(lines[i]), Vertices(loaded[i])));
    }
    CArchive closed(nullptr, CArchive::load);
    EXPECT_NO_THROW(SerializeElements<CCadPolyline3d<T>>(closed, nullptr, 0));
    EXPECT_NO_THROW(SerializeElements<CCadPolyline3d<T>>(closed, nullptr, -1));
}

/// A file of any size that looks at no byte: it takes what is written, and delivers without writing what is asked for.
class BottomlessFile : public CFile {
public:
    std::uint32_t Read(void* /*buffer*/, std::uint32_t size) override
    {
        m_sizes.push_back(size);
        return size;
    }
    void Write(const void* /*buffer*/, std::uint32_t size) override { m_sizes.push_back(size); }
    std::uint64_t Seek(std::int64_t /*offset*/, unsigned /*from*/) override { return 0; }

    std::vector<std::uint32_t> m_sizes;
};

#if !defined(CADGEOM_TEST_IS_SANITIZED)
TYPED_TEST(PolylineArchive, MovesMoreThanTwoGigabytesInBlocksOfWholeVertices)
{
    using T = TypeParam;
    constexpr std::int64_t kBlock = sizeof(T) == sizeof(double) ? 89478485 : 178956970;
    CCadPolyline3d<T> line;
    // What is left for a second block is larger than the buffer of the archive, so that it is not buffered.
    line.SetNumPoints(kBlock + 100);
    const std::vector<std::uint32_t> expected{static_cast<std::uint32_t>(kBlock * 3 * std::int64_t(sizeof(T))),
                                              static_cast<std::uint32_t>(100 * 3 * sizeof(T))};
    BottomlessFile stored;
    CArchive storing(&stored, CArchive::store, 128);
    SerializeElements(storing, line.GetData(), line.GetNumPoints());
    EXPECT_EQ(stored.m_sizes, expected);

    BottomlessFile loaded;
    CArchive loading(&loaded, CArchive::load, 128);
    SerializeElements(loading, line.GetData(), line.GetNumPoints());
    EXPECT_EQ(loaded.m_sizes, expected);
}
#endif

} // namespace
