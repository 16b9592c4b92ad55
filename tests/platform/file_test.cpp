#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "support/archives.h"

namespace {

using test_support::Bytes;
using test_support::CauseOfFileException;
using test_support::Contents;

class FileOnDisk : public ::testing::Test {
protected:
    void SetUp() override
    {
        const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
        m_path = ::testing::TempDir() + "cadgeom_file_" + test->name() + ".bin";
        std::remove(m_path.c_str());
    }
    void TearDown() override { std::remove(m_path.c_str()); }

    void Write(const Bytes& bytes) const
    {
        CFile file(m_path, CFile::modeCreate | CFile::modeWrite);
        file.Write(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }

    Bytes Read() const
    {
        CFile file(m_path, CFile::modeRead);
        return Contents(file);
    }

    std::string m_path;
};

TEST_F(FileOnDisk, KeepsWhatIsWritten)
{
    Write({1, 2, 3});
    EXPECT_EQ(Read(), (Bytes{1, 2, 3}));
}

TEST_F(FileOnDisk, IsEmptiedWhenItIsCreatedUnlessToldOtherwise)
{
    Write({1, 2, 3});
    {
        CFile file(m_path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite);
        EXPECT_EQ(file.GetLength(), 3U);
        const std::uint8_t byte = 9;
        file.Write(&byte, 1);
    }
    EXPECT_EQ(Read(), (Bytes{9, 2, 3}));
    Write({7});
    EXPECT_EQ(Read(), (Bytes{7}));
    std::remove(m_path.c_str());
    CFile file(m_path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite);
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST_F(FileOnDisk, RefusesWhatItWasNotOpenedFor)
{
    std::uint8_t byte = 5;
    Write({1, 2, 3});
    CFile reading(m_path, CFile::modeRead);
    EXPECT_EQ(CauseOfFileException([&] { reading.Write(&byte, 1); }), CFileException::accessDenied);
    CFile writing(m_path, CFile::modeWrite);
    std::string name;
    EXPECT_EQ(CauseOfFileException([&] { writing.Read(&byte, 1); }, &name), CFileException::accessDenied);
    EXPECT_EQ(name, m_path);
    EXPECT_EQ(byte, 5);
    writing.Close();
    EXPECT_EQ(Read(), (Bytes{1, 2, 3})) << "opening for writing empties nothing";
}

TEST_F(FileOnDisk, ReadsAndWritesInTurns)
{
    Write({1, 2, 3, 4, 5});
    {
        CFile file(m_path, CFile::modeReadWrite);
        std::uint8_t byte = 0;
        EXPECT_EQ(file.Read(&byte, 1), 1U);
        EXPECT_EQ(byte, 1);
        byte = 20;
        file.Write(&byte, 1);
        EXPECT_EQ(file.Read(&byte, 1), 1U);
        EXPECT_EQ(byte, 3);
        byte = 40;
        file.Write(&byte, 1);
        EXPECT_EQ(file.GetPosition(), 4U);
    }
    EXPECT_EQ(Read(), (Bytes{1, 20, 3, 40, 5}));
}

TEST_F(FileOnDisk, ReadsFewerBytesAtItsEndOnly)
{
    Write({1, 2, 3});
    CFile file(m_path, CFile::modeRead);
    std::uint8_t bytes[5] = {};
    EXPECT_EQ(file.Read(bytes, 2), 2U);
    EXPECT_EQ(file.Read(bytes, 0), 0U);
    EXPECT_EQ(file.Read(bytes, 5), 1U);
    EXPECT_EQ(bytes[0], 3);
    EXPECT_EQ(file.Read(bytes, 5), 0U);
}

TEST_F(FileOnDisk, IsPositionedFromItsBeginningItsEndAndWhereItIs)
{
    Write({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    CFile file(m_path, CFile::modeRead);
    EXPECT_EQ(file.Seek(4, CFile::begin), 4U);
    EXPECT_EQ(file.Seek(-3, CFile::current), 1U);
    EXPECT_EQ(file.Seek(-1, CFile::end), 9U);
    EXPECT_EQ(file.SeekToEnd(), 10U);
    file.SeekToBegin();
    EXPECT_EQ(file.GetPosition(), 0U);
    file.Seek(7, CFile::begin);
    EXPECT_EQ(file.GetLength(), 10U);
    EXPECT_EQ(file.GetPosition(), 7U) << "asking for the length does not move";
    EXPECT_EQ(CauseOfFileException([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
    EXPECT_EQ(CauseOfFileException([&] { file.Seek(0, 3); }), CFileException::badSeek);
    EXPECT_EQ(file.GetPosition(), 7U);
}

TEST_F(FileOnDisk, HasPositionsBeyondFourGigabytes)
{
    constexpr std::int64_t kFar = (std::int64_t(1) << 32) + 5;
    CFile file(m_path, CFile::modeCreate | CFile::modeReadWrite);
    EXPECT_EQ(file.Seek(kFar, CFile::begin), static_cast<std::uint64_t>(kFar));
    std::uint8_t byte = 42;
    file.Write(&byte, 1);
    EXPECT_EQ(file.GetLength(), static_cast<std::uint64_t>(kFar) + 1);
    byte = 0;
    file.Seek(-1, CFile::end);
    EXPECT_EQ(file.Read(&byte, 1), 1U);
    EXPECT_EQ(byte, 42);
}

TEST_F(FileOnDisk, SaysWhyItCannotBeOpened)
{
    std::string name;
    EXPECT_EQ(CauseOfFileException([&] { const CFile file(m_path, CFile::modeRead); }, &name),
              CFileException::fileNotFound);
    EXPECT_EQ(name, m_path);
    EXPECT_EQ(CauseOfFileException([&] { const CFile file(m_path, CFile::modeWrite); }), CFileException::fileNotFound);
    EXPECT_EQ(CauseOfFileException([&] { const CFile file(m_path + "/below/it", CFile::modeCreate); }),
              CFileException::fileNotFound);
    Write({1});
    EXPECT_EQ(CauseOfFileException([&] { const CFile file(m_path + "/below", CFile::modeCreate); }),
              CFileException::badPath);
#if !defined(_WIN32)
    EXPECT_EQ(CauseOfFileException([&] { const CFile file(::testing::TempDir(), CFile::modeReadWrite); }),
              CFileException::accessDenied);
    if (geteuid() != 0) {
        chmod(m_path.c_str(), 0);
        EXPECT_EQ(CauseOfFileException([&] { const CFile file(m_path, CFile::modeRead); }),
                  CFileException::accessDenied);
    }
#endif
}

#if defined(__linux__)
TEST_F(FileOnDisk, SaysWhenThereIsNoRoom)
{
    CFile file("/dev/full", CFile::modeWrite);
    const Bytes bytes(10000);
    std::string name;
    EXPECT_EQ(CauseOfFileException([&] { file.Write(bytes.data(), 10000); }, &name), CFileException::diskFull);
    EXPECT_EQ(name, "/dev/full");
}

TEST_F(FileOnDisk, SaysWhenItCannotBeRead)
{
    CFile directory(::testing::TempDir(), CFile::modeRead);
    std::uint8_t byte = 0;
    EXPECT_EQ(CauseOfFileException([&] { directory.Read(&byte, 1); }), CFileException::accessDenied);
}
#endif

TEST_F(FileOnDisk, RefusesEverythingWhenItIsClosed)
{
    std::uint8_t byte = 0;
    const auto expectInvalid = [&](CFile& file) {
        EXPECT_EQ(CauseOfFileException([&] { file.Read(&byte, 1); }), CFileException::invalidFile);
        EXPECT_EQ(CauseOfFileException([&] { file.Write(&byte, 1); }), CFileException::invalidFile);
        EXPECT_EQ(CauseOfFileException([&] { file.Seek(0, CFile::begin); }), CFileException::invalidFile);
        EXPECT_EQ(CauseOfFileException([&] { file.GetPosition(); }), CFileException::invalidFile);
        EXPECT_EQ(CauseOfFileException([&] { file.GetLength(); }), CFileException::invalidFile);
        EXPECT_NO_THROW(file.Flush());
        EXPECT_NO_THROW(file.Close());
        EXPECT_EQ(file.GetFilePath(), "");
    };
    CFile neverOpened;
    expectInvalid(neverOpened);
    Write({1});
    CFile file(m_path, CFile::modeRead);
    EXPECT_EQ(file.GetFilePath(), m_path);
    file.Close();
    expectInvalid(file);
}

TEST_F(FileOnDisk, IsOpenedAgain)
{
    CFile file;
    EXPECT_FALSE(file.Open(m_path, CFile::modeRead));
    EXPECT_EQ(file.GetFilePath(), "");
    Write({1, 2});
    EXPECT_TRUE(file.Open(m_path, CFile::modeRead));
    std::uint8_t byte = 0;
    file.Read(&byte, 1);
    EXPECT_TRUE(file.Open(m_path, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary));
    EXPECT_EQ(file.GetPosition(), 0U);
    EXPECT_FALSE(file.Open(m_path + ".missing", CFile::modeRead));
    EXPECT_EQ(CauseOfFileException([&] { file.Read(&byte, 1); }), CFileException::invalidFile);
}

TEST(FileInMemory, GrowsAsItIsWritten)
{
    CMemFile file;
    const std::uint8_t bytes[] = {1, 2, 3};
    file.Write(bytes, 3);
    EXPECT_EQ(file.GetPosition(), 3U);
    file.Seek(1, CFile::begin);
    file.Write(bytes, 3);
    file.Write(nullptr, 0);
    EXPECT_EQ(Contents(file), (Bytes{1, 1, 2, 3}));
    file.Seek(0, CFile::begin);
    file.Write(bytes, 1);
    EXPECT_EQ(file.GetLength(), 4U) << "writing inside keeps the rest";
}

TEST(FileInMemory, FillsGapsWithZeros)
{
    CMemFile file;
    const std::uint8_t byte = 7;
    EXPECT_EQ(file.Seek(3, CFile::begin), 3U);
    EXPECT_EQ(file.GetLength(), 0U);
    std::uint8_t none = 5;
    EXPECT_EQ(file.Read(&none, 1), 0U);
    file.Write(&byte, 1);
    EXPECT_EQ(Contents(file), (Bytes{0, 0, 0, 7}));
}

TEST(FileInMemory, IsPositionedWithin64Bits)
{
    CMemFile file;
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(file.Seek(kLargest, CFile::begin), static_cast<std::uint64_t>(kLargest));
    EXPECT_EQ(CauseOfFileException([&] { file.Seek(1, CFile::current); }), CFileException::badSeek);
    EXPECT_EQ(CauseOfFileException([&] { file.Seek(kSmallest, CFile::current); }), CFileException::badSeek);
    EXPECT_EQ(file.Seek(-kLargest, CFile::current), 0U);
    EXPECT_EQ(CauseOfFileException([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
    EXPECT_EQ(CauseOfFileException([&] { file.Seek(0, 3); }), CFileException::badSeek);
    EXPECT_EQ(file.SeekToEnd(), 0U);
}

TEST(FileInMemory, KeepsItsContentsWhenItCannotGrow)
{
    CMemFile file;
    const std::uint8_t byte = 7;
    file.Write(&byte, 1);
    file.Seek(std::numeric_limits<std::int64_t>::max(), CFile::begin);
    EXPECT_THROW(file.Write(&byte, 1), CMemoryException);
    EXPECT_EQ(Contents(file), (Bytes{7}));
}

TEST(FileInMemory, ReadsTheBytesOfTheCaller)
{
    Bytes bytes{1, 2, 3};
    CMemFile file(bytes.data(), bytes.size());
    EXPECT_EQ(file.GetLength(), 3U);
    bytes[1] = 20;
    EXPECT_EQ(Contents(file), (Bytes{1, 20, 3})) << "a view, not a copy";
    EXPECT_EQ(CauseOfFileException([&] { file.Write(bytes.data(), 1); }), CFileException::accessDenied);
    file.SeekToBegin();
    std::uint8_t two[2] = {};
    EXPECT_EQ(file.Read(two, 2), 2U);
    EXPECT_EQ(file.Read(two, 2), 1U);
    file.Close();
    EXPECT_EQ(file.GetLength(), 0U);

    CMemFile nothing(nullptr, 5);
    EXPECT_EQ(nothing.GetLength(), 0U);
    EXPECT_EQ(nothing.Read(two, 2), 0U);
}

TEST(FileInMemory, IsEmptyAfterClosing)
{
    CMemFile file;
    const std::uint8_t byte = 7;
    file.Write(&byte, 1);
    file.Flush();
    EXPECT_EQ(file.GetFilePath(), "");
    file.Close();
    EXPECT_EQ(file.GetLength(), 0U);
    EXPECT_EQ(file.GetPosition(), 0U);
}

} // namespace
