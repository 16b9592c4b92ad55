#pragma once
// Archives over memory, and files that fail, for tests of what is stored and loaded.

#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace test_support {

using Bytes = std::vector<std::uint8_t>;

/// Everything that a file holds.
inline Bytes Contents(CFile& file)
{
    Bytes bytes(static_cast<std::size_t>(file.GetLength()));
    file.SeekToBegin();
    EXPECT_EQ(file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size())), bytes.size());
    return bytes;
}

/// The bytes that `work` stores into an archive.
template <class Work>
Bytes Stored(Work work, int bufferSize = 4096)
{
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store, bufferSize);
        work(archive);
        archive.Close();
    }
    return Contents(file);
}

/// Runs `work` on an archive that loads `bytes`. Returns the number of bytes that it took.
template <class Work>
std::uint64_t Load(const Bytes& bytes, Work work, int bufferSize = 4096)
{
    CMemFile file(bytes.data(), bytes.size());
    CArchive archive(&file, CArchive::load, bufferSize);
    work(archive);
    archive.Close();
    return file.GetPosition();
}

/// The little-endian bytes of numbers, one after the other.
template <class S>
Bytes BytesOfNumbers(std::initializer_list<S> numbers)
{
    Bytes bytes(numbers.size() * sizeof(S));
    std::size_t offset = 0;
    for (const S number : numbers) {
        std::memcpy(bytes.data() + offset, &number, sizeof(S));
        offset += sizeof(S);
    }
    return bytes;
}

inline Bytes operator+(Bytes first, const Bytes& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The cause of the CArchiveException that `work` throws; -1 when it throws none.
template <class Work>
int CauseOfArchiveException(Work work, std::string* fileName = nullptr)
{
    try {
        work();
    } catch (const CArchiveException& exception) {
        if (fileName != nullptr) {
            *fileName = exception.m_strFileName;
        }
        return exception.m_cause;
    }
    return -1;
}

/// The cause of the CFileException that `work` throws; -1 when it throws none.
template <class Work>
int CauseOfFileException(Work work, std::string* fileName = nullptr)
{
    try {
        work();
    } catch (const CFileException& exception) {
        if (fileName != nullptr) {
            *fileName = exception.m_strFileName;
        }
        return exception.m_cause;
    }
    return -1;
}

/// A file that notes the sizes of the blocks that pass through it, and throws from a given transfer on.
class WatchedFile : public CMemFile {
public:
    std::uint32_t Read(void* buffer, std::uint32_t size) override
    {
        Count();
        m_readSizes.push_back(size);
        return CMemFile::Read(buffer, size);
    }
    void Write(const void* buffer, std::uint32_t size) override
    {
        Count();
        m_writtenSizes.push_back(size);
        CMemFile::Write(buffer, size);
    }
    std::uint64_t Seek(std::int64_t offset, unsigned from) override
    {
        if (m_cannotSeek) {
            AfxThrowFileException(CFileException::badSeek);
        }
        return CMemFile::Seek(offset, from);
    }
    std::uint64_t GetPosition() const override
    {
        if (m_cannotSeek) {
            AfxThrowFileException(CFileException::badSeek);
        }
        return CMemFile::GetPosition();
    }

    int m_transfersBeforeFailure = -1; ///< below 0: never fails
    bool m_cannotSeek = false;
    std::vector<std::uint32_t> m_readSizes;
    std::vector<std::uint32_t> m_writtenSizes;

private:
    void Count()
    {
        if (m_transfersBeforeFailure == 0) {
            AfxThrowFileException(CFileException::hardIO, "watched");
        }
        --m_transfersBeforeFailure;
    }
};

} // namespace test_support
