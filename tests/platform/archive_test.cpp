#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "support/archives.h"

namespace {

using test_support::Bytes;
using test_support::BytesOfNumbers;
using test_support::CauseOfArchiveException;
using test_support::CauseOfFileException;
using test_support::Contents;
using test_support::Load;
using test_support::Stored;
using test_support::WatchedFile;
using test_support::operator+;

/// 0, 1, 2, ... 255, 0, ...
Bytes CountingBytes(std::size_t size)
{
    Bytes bytes;
    for (std::size_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(i));
    }
    return bytes;
}

TEST(Archive, KnowsItsDirectionFromOneBit)
{
    CMemFile file;
    EXPECT_TRUE(CArchive(&file, CArchive::store).IsStoring());
    EXPECT_FALSE(CArchive(&file, CArchive::store).IsLoading());
    EXPECT_TRUE(CArchive(&file, CArchive::load).IsLoading());
    EXPECT_TRUE(CArchive(&file, CArchive::load | 6U).IsLoading());
    EXPECT_TRUE(CArchive(&file, 6U).IsStoring());
    EXPECT_EQ(CArchive(&file, CArchive::load).GetFile(), &file);
}

TEST(Archive, StoresNumbersAsLittleEndianBytes)
{
    const Bytes bytes = Stored([](CArchive& archive) {
        archive << std::uint8_t(0x12) << std::int16_t(-2) << std::uint32_t(0x01020304)
                << std::int64_t(0x0102030405060708) << 1.0F << 1.0 << true << 'c';
    });
    const Bytes expected = Bytes{0x12, 0xFE, 0xFF, 4, 3, 2, 1, 8, 7, 6, 5, 4, 3, 2, 1, 0, 0, 0x80, 0x3F} +
                           Bytes{0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 1, 'c'};
    EXPECT_EQ(bytes, expected);
}

TEST(Archive, LoadsWhatItStored)
{
    for (const int bufferSize : {-1, 0, 1, 128, 129, 4096}) {
        const Bytes bytes = Stored(
            [](CArchive& archive) {
                for (int i = 0; i < 200; ++i) {
                    archive << static_cast<std::uint8_t>(i) << static_cast<double>(i) << static_cast<std::int16_t>(-i)
                            << static_cast<float>(i) << static_cast<std::uint64_t>(i);
                }
            },
            bufferSize);
        const auto load = [](CArchive& archive) {
            for (int i = 0; i < 200; ++i) {
                std::uint8_t byte = 0;
                double number = 0;
                std::int16_t word = 0;
                float single = 0;
                std::uint64_t quad = 0;
                archive >> byte >> number >> word >> single >> quad;
                ASSERT_EQ(byte, i);
                ASSERT_EQ(number, i);
                ASSERT_EQ(word, -i);
                ASSERT_EQ(single, static_cast<float>(i));
                ASSERT_EQ(quad, static_cast<std::uint64_t>(i));
            }
        };
        EXPECT_EQ(bytes.size(), 200U * 23U);
        EXPECT_EQ(Load(bytes, load, bufferSize), bytes.size());
    }
}

TEST(Archive, LoadsEveryByteButZeroAsTrue)
{
    Load({0, 1, 2, 255}, [](CArchive& archive) {
        for (const bool expected : {false, true, true, true}) {
            bool value = !expected;
            archive >> value;
            EXPECT_EQ(value, expected);
        }
    });
}

TEST(Archive, StoresCountsInTheShortestForm)
{
    const auto bytesOfCount = [](std::uint64_t count) {
        return Stored([count](CArchive& archive) { archive.WriteCount(count); });
    };
    EXPECT_EQ(bytesOfCount(0), (Bytes{0, 0}));
    EXPECT_EQ(bytesOfCount(0x1234), (Bytes{0x34, 0x12}));
    EXPECT_EQ(bytesOfCount(0xFFFE), (Bytes{0xFE, 0xFF}));
    EXPECT_EQ(bytesOfCount(0xFFFF), (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0}));
    EXPECT_EQ(bytesOfCount(0x10000), (Bytes{0xFF, 0xFF, 0, 0, 1, 0}));
    EXPECT_EQ(bytesOfCount(0xFFFFFFFE), (Bytes{0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(bytesOfCount(0xFFFFFFFF),
              (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOfCount(0x100000000), (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(bytesOfCount(~0ULL), Bytes(14, 0xFF));
}

TEST(Archive, LoadsCountsInAnyForm)
{
    for (const std::uint64_t count :
         {0ULL, 1ULL, 0xFFFEULL, 0xFFFFULL, 0x10000ULL, 0xFFFFFFFEULL, 0xFFFFFFFFULL, 0x100000000ULL, ~0ULL}) {
        const Bytes bytes = Stored([count](CArchive& archive) { archive.WriteCount(count); });
        EXPECT_EQ(Load(bytes, [count](CArchive& archive) { EXPECT_EQ(archive.ReadCount(), count); }), bytes.size());
    }
    Load({0xFF, 0xFF, 7, 0, 0, 0}, [](CArchive& archive) { EXPECT_EQ(archive.ReadCount(), 7U); });
}

TEST(Archive, RefusesToStoreWhileItLoads)
{
    const auto expectReadOnly = [](auto work) {
        CMemFile file;
        CArchive archive(&file, CArchive::load);
        archive.m_strFileName = "part.bin";
        std::string name;
        EXPECT_EQ(CauseOfArchiveException([&] { work(archive); }, &name), CArchiveException::readOnly);
        EXPECT_EQ(name, "part.bin");
        EXPECT_EQ(CauseOfArchiveException([&] { work(archive); }), CArchiveException::readOnly) << "closed by now";
    };
    expectReadOnly([](CArchive& archive) { archive << 1.0; });
    expectReadOnly([](CArchive& archive) { archive << std::uint8_t(1); });
    expectReadOnly([](CArchive& archive) { archive.Write("x", 1); });
    expectReadOnly([](CArchive& archive) { archive.Write(nullptr, 0); });
    expectReadOnly([](CArchive& archive) { archive.WriteCount(1); });
}

TEST(Archive, RefusesToLoadWhileItStores)
{
    const auto expectWriteOnly = [](auto work) {
        CMemFile file;
        CArchive archive(&file, CArchive::store);
        archive << std::uint8_t(1);
        archive.m_strFileName = "part.bin";
        std::string name;
        EXPECT_EQ(CauseOfArchiveException([&] { work(archive); }, &name), CArchiveException::writeOnly);
        EXPECT_EQ(name, "part.bin");
        EXPECT_EQ(archive.GetFile(), nullptr) << "closed";
        EXPECT_EQ(CauseOfArchiveException([&] { work(archive); }), CArchiveException::writeOnly);
        EXPECT_EQ(file.GetLength(), 0U) << "nothing reaches the file any more";
    };
    expectWriteOnly([](CArchive& archive) {
        double number = 0;
        archive >> number;
    });
    expectWriteOnly([](CArchive& archive) {
        char byte = 0;
        archive.Read(&byte, 1);
    });
    expectWriteOnly([](CArchive& archive) { archive.Read(nullptr, 0); });
    expectWriteOnly([](CArchive& archive) { archive.ReadCount(); });
    expectWriteOnly([](CArchive& archive) { archive.FillBuffer(1); });
}

TEST(Archive, IsClosedAndHarmlessWithoutAFile)
{
    double number = 5;
    {
        CArchive storing(nullptr, CArchive::store);
        EXPECT_EQ(CauseOfArchiveException([&] { storing << 1.0; }), CArchiveException::genericException);
        EXPECT_EQ(CauseOfArchiveException([&] { storing >> number; }), CArchiveException::writeOnly);
        EXPECT_EQ(CauseOfArchiveException([&] { storing.Flush(); }), CArchiveException::genericException);
        EXPECT_NO_THROW(storing.Close());
    }
    CArchive loading(nullptr, CArchive::load);
    EXPECT_EQ(CauseOfArchiveException([&] { loading >> number; }), CArchiveException::genericException);
    EXPECT_EQ(CauseOfArchiveException([&] { loading.Read(&number, 8); }), CArchiveException::genericException);
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(loading.MayHold(0));
    EXPECT_FALSE(loading.MayHold(1));
}

TEST(Archive, EndsInsideANumberWithoutTouchingIt)
{
    for (std::size_t size = 0; size < 8; ++size) {
        double number = 7;
        CMemFile file;
        const Bytes bytes = CountingBytes(size);
        CMemFile view(bytes.data(), bytes.size());
        CArchive archive(&view, CArchive::load);
        archive.m_strFileName = "part.bin";
        std::string name;
        EXPECT_EQ(CauseOfArchiveException([&] { archive >> number; }, &name), CArchiveException::endOfFile);
        EXPECT_EQ(name, "part.bin");
        EXPECT_EQ(number, 7);
        EXPECT_EQ(CauseOfArchiveException([&] { archive >> number; }), CArchiveException::genericException);
    }
}

TEST(Archive, ReadsBlocksUpToTheEndOfTheFile)
{
    const Bytes bytes = CountingBytes(1000);
    for (const int bufferSize : {128, 999, 1000, 1001, 4096}) {
        for (const std::uint32_t blockSize : {1U, 7U, 127U, 128U, 129U, 999U, 1000U, 1001U, 5000U}) {
            CMemFile file(bytes.data(), bytes.size());
            CArchive archive(&file, CArchive::load, bufferSize);
            Bytes loaded;
            for (;;) {
                Bytes block(blockSize, 0xEE);
                const std::uint32_t count = archive.Read(block.data(), blockSize);
                loaded.insert(loaded.end(), block.begin(), block.begin() + count);
                for (std::size_t i = count; i < blockSize; ++i) {
                    ASSERT_EQ(block[i], 0xEE) << "behind what was loaded";
                }
                if (count < blockSize) {
                    break;
                }
            }
            ASSERT_EQ(loaded, bytes);
            std::uint8_t byte = 0;
            EXPECT_EQ(archive.Read(&byte, 1), 0U) << "the end is no failure of a block";
            EXPECT_EQ(archive.GetFile(), &file);
        }
    }
}

TEST(Archive, MixesNumbersAndBlocks)
{
    const Bytes block = CountingBytes(300);
    for (const int bufferSize : {128, 300, 301, 4096}) {
        const Bytes bytes = Stored(
            [&](CArchive& archive) {
                for (int i = 0; i < 10; ++i) {
                    archive << i;
                    archive.Write(block.data(), static_cast<std::uint32_t>(i * 33));
                }
            },
            bufferSize);
        EXPECT_EQ(bytes.size(), 40U + 45U * 33U);
        Load(
            bytes,
            [&](CArchive& archive) {
                for (int i = 0; i < 10; ++i) {
                    int number = -1;
                    archive >> number;
                    ASSERT_EQ(number, i);
                    Bytes loaded(static_cast<std::size_t>(i) * 33);
                    ASSERT_EQ(archive.Read(loaded.data(), static_cast<std::uint32_t>(loaded.size())), loaded.size());
                    ASSERT_TRUE(std::equal(loaded.begin(), loaded.end(), block.begin()));
                }
            },
            bufferSize);
    }
}

TEST(Archive, PassesBlocksLargerThanItsBufferStraightToTheFile)
{
    const Bytes block = CountingBytes(1000);
    WatchedFile file;
    {
        CArchive archive(&file, CArchive::store, 200);
        archive << std::uint8_t(1);
        archive.Write(block.data(), 1000);
        archive.Write(block.data(), 200);
        archive.Write(block.data(), 201);
        EXPECT_EQ(file.m_writtenSizes, (std::vector<std::uint32_t>{1, 1000, 200, 201}));
        archive.Close();
    }
    EXPECT_EQ(file.m_writtenSizes.size(), 4U) << "an empty buffer is not written";
    file.SeekToBegin();
    Bytes loaded(1401);
    CArchive archive(&file, CArchive::load, 200);
    std::uint8_t byte = 0;
    archive >> byte;
    EXPECT_EQ(archive.Read(loaded.data(), 1401), 1401U);
    EXPECT_EQ(file.m_readSizes, (std::vector<std::uint32_t>{200, 1202}));
    EXPECT_TRUE(std::equal(block.begin(), block.end(), loaded.begin()));
}

TEST(Archive, FlushesWhenTheNextNumberDoesNotFit)
{
    WatchedFile file;
    CArchive archive(&file, CArchive::store, 128);
    for (int i = 0; i < 16; ++i) {
        archive << 1.0;
    }
    EXPECT_TRUE(file.m_writtenSizes.empty()) << "sixteen numbers fit exactly";
    archive << std::uint8_t(1);
    EXPECT_EQ(file.m_writtenSizes, (std::vector<std::uint32_t>{128}));
    for (int i = 0; i < 16; ++i) {
        archive << 1.0;
    }
    EXPECT_EQ(file.m_writtenSizes, (std::vector<std::uint32_t>{128, 121})) << "no number is cut";
}

TEST(Archive, UsesTheBufferOfTheCallerWhenItIsLargeEnough)
{
    Bytes buffer(256, 0xEE);
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store, 256, buffer.data());
        archive << std::uint32_t(0x01020304);
        EXPECT_EQ(buffer[0], 4);
        EXPECT_EQ(buffer[3], 1);
        EXPECT_EQ(buffer[4], 0xEE);
    }
    Bytes tooSmall(127, 0xEE);
    {
        CArchive archive(&file, CArchive::store, 127, tooSmall.data());
        archive << std::uint32_t(0x01020304);
    }
    EXPECT_EQ(tooSmall, Bytes(127, 0xEE));
    EXPECT_EQ(Contents(file), (Bytes{4, 3, 2, 1, 4, 3, 2, 1}));
}

TEST(Archive, FillsItsBufferOnRequest)
{
    const Bytes bytes = CountingBytes(130);
    CMemFile file(bytes.data(), bytes.size());
    CArchive archive(&file, CArchive::load, 128);
    archive.FillBuffer(100);
    std::uint8_t byte = 9;
    archive >> byte;
    EXPECT_EQ(byte, 0);
    EXPECT_THROW(archive.FillBuffer(2), CInvalidArgException) << "127 are buffered, and 128 fit";

    CMemFile again(bytes.data(), bytes.size());
    CArchive second(&again, CArchive::load, 128);
    second.FillBuffer(128);
    Bytes loaded(126);
    EXPECT_EQ(second.Read(loaded.data(), 126), 126U);
    second.FillBuffer(2);
    EXPECT_EQ(CauseOfArchiveException([&] { second.FillBuffer(1); }), CArchiveException::endOfFile);
}

TEST(Archive, GivesUnreadBytesBackWhenItIsFlushed)
{
    const Bytes bytes = CountingBytes(100);
    CMemFile file(bytes.data(), bytes.size());
    {
        CArchive archive(&file, CArchive::load);
        std::uint8_t byte = 0;
        archive >> byte >> byte;
        EXPECT_EQ(file.GetPosition(), 100U);
        archive.Flush();
        EXPECT_EQ(file.GetPosition(), 2U);
        archive >> byte;
        EXPECT_EQ(byte, 2);
    }
    EXPECT_EQ(file.GetPosition(), 3U) << "so does the destructor";
}

TEST(Archive, FlushesWhenItIsClosedAndWhenItIsDestroyed)
{
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        archive << std::uint8_t(1);
        archive.Flush();
        EXPECT_EQ(file.GetLength(), 1U);
        archive << std::uint8_t(2);
        archive.Close();
        EXPECT_EQ(file.GetLength(), 2U);
        EXPECT_NO_THROW(archive.Close());
        EXPECT_EQ(CauseOfArchiveException([&] { archive << std::uint8_t(3); }), CArchiveException::genericException);
    }
    {
        CArchive archive(&file, CArchive::store);
        archive << std::uint8_t(4);
    }
    {
        CArchive archive(&file, CArchive::store);
        archive << std::uint8_t(5);
        archive.Abort();
    }
    EXPECT_EQ(Contents(file), (Bytes{1, 2, 4}));
}

TEST(Archive, IsClosedByAFileThatFailsToWrite)
{
    WatchedFile file;
    file.m_transfersBeforeFailure = 0;
    {
        CArchive archive(&file, CArchive::store, 128);
        archive << 1.0;
        EXPECT_EQ(CauseOfFileException([&] { archive.Flush(); }), CFileException::hardIO);
        EXPECT_EQ(archive.GetFile(), nullptr);
        EXPECT_EQ(CauseOfArchiveException([&] { archive << 1.0; }), CArchiveException::genericException);
        EXPECT_EQ(CauseOfArchiveException([&] { archive.Flush(); }), CArchiveException::genericException);
    }
    {
        CArchive archive(&file, CArchive::store, 128);
        const Bytes block(1000);
        EXPECT_EQ(CauseOfFileException([&] { archive.Write(block.data(), 1000); }), CFileException::hardIO);
        EXPECT_EQ(archive.GetFile(), nullptr);
    }
    {
        CArchive archive(&file, CArchive::store, 128);
        archive << 1.0;
        EXPECT_EQ(CauseOfFileException([&] { archive.Close(); }), CFileException::hardIO);
    }
    {
        CArchive archive(&file, CArchive::store, 128);
        archive << 1.0; // the destructor has nobody to tell
    }
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(Archive, IsClosedByAFileThatFailsToRead)
{
    for (const std::uint32_t size : {8U, 1000U}) {
        WatchedFile file;
        const Bytes bytes = CountingBytes(2000);
        file.Write(bytes.data(), 2000);
        file.SeekToBegin();
        file.m_transfersBeforeFailure = 0;
        CArchive archive(&file, CArchive::load, 128);
        Bytes block(size);
        EXPECT_EQ(CauseOfFileException([&] { archive.Read(block.data(), size); }), CFileException::hardIO);
        EXPECT_EQ(archive.GetFile(), nullptr);
        EXPECT_EQ(CauseOfArchiveException([&] { archive.Read(block.data(), size); }),
                  CArchiveException::genericException);
    }
    WatchedFile file;
    file.m_transfersBeforeFailure = 0;
    CArchive archive(&file, CArchive::load);
    double number = 3;
    EXPECT_EQ(CauseOfFileException([&] { archive >> number; }), CFileException::hardIO);
    EXPECT_EQ(number, 3);
}

TEST(Archive, IsClosedByAFileThatCannotTakeBytesBack)
{
    WatchedFile file;
    const Bytes bytes = CountingBytes(100);
    file.Write(bytes.data(), 100);
    file.SeekToBegin();
    file.m_cannotSeek = true;
    {
        CArchive archive(&file, CArchive::load);
        std::uint8_t byte = 9;
        archive >> byte;
        EXPECT_TRUE(archive.MayHold(1000)) << "the length is not known";
        EXPECT_FALSE(archive.MayHold(1000, false));
        EXPECT_EQ(CauseOfFileException([&] { archive.Flush(); }), CFileException::badSeek);
        EXPECT_EQ(archive.GetFile(), nullptr);
    }
    CArchive archive(&file, CArchive::load);
    EXPECT_NO_THROW(archive.Close()) << "there is nothing to give back";
}

TEST(Archive, KnowsWhatTheFileMayStillHold)
{
    const Bytes bytes = CountingBytes(1000);
    CMemFile file(bytes.data(), bytes.size());
    CArchive archive(&file, CArchive::load, 128);
    EXPECT_TRUE(archive.MayHold(1000));
    EXPECT_FALSE(archive.MayHold(1001));
    double number = 0;
    archive >> number;
    EXPECT_TRUE(archive.MayHold(992));
    EXPECT_FALSE(archive.MayHold(993));
    EXPECT_FALSE(archive.MayHold(std::numeric_limits<std::uint64_t>::max()));
}

TEST(Archive, TakesTheNameOfItsFile)
{
    const std::string path = ::testing::TempDir() + "cadgeom_archive_name.bin";
    CFile file(path, CFile::modeCreate | CFile::modeReadWrite);
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(archive.m_strFileName, path);
    std::string name;
    EXPECT_EQ(CauseOfArchiveException([&] { archive.ReadCount(); }, &name), CArchiveException::endOfFile);
    EXPECT_EQ(name, path);
    file.Close();
    std::remove(path.c_str());
}

} // namespace
