#pragma once
/// @file
/// Files on disk and in memory, as an archive reads and writes them. Next: platform/archive.h.

#include <cadgeom/core/export.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

/// A file on disk, read and written without a buffer of its own, with 64-bit positions.
/// Not copyable; the destructor closes it. Distinct files may be used from distinct threads.
class CADGEOM_API CFile {
public:
    /// Flags of the constructor and of Open. One of the first three says what the file is opened for. The sharing flags
    /// and `typeBinary` are accepted for compatibility and change nothing.
    enum OpenFlags : unsigned {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,     ///< create the file when it is missing; empty it when it exists ...
        modeNoTruncate = 0x2000, ///< ... unless this is given too
        typeText = 0x4000,       ///< accepted; bytes are never translated
        typeBinary = 0x8000
    };

    enum SeekPosition : int {
        begin = 0,
        current = 1,
        end = 2
    };

    /// A closed file.
    CFile() noexcept;
    /// Opens `path`; throws CFileException (fileNotFound, accessDenied, ...) naming it when that fails.
    CFile(const std::string& path, unsigned flags);
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    virtual ~CFile();

    /// Closes the file that is open, if any, and opens `path`. Returns false, leaving this closed, when that fails.
    bool Open(const std::string& path, unsigned flags);

    /// Reads up to `size` bytes. Returns the number read, fewer than `size` only at the end of the file.
    /// Throws CFileException when the file is closed, is open for writing alone, or cannot be read.
    virtual std::uint32_t Read(void* buffer, std::uint32_t size);
    /// Writes `size` bytes. Throws CFileException when the file is closed, is open for reading, or is not written wholly.
    virtual void Write(const void* buffer, std::uint32_t size);
    /// Moves to `offset` from the beginning, the current position or the end (`from`: a SeekPosition) and returns the new
    /// position. Throws CFileException (badSeek) for a position below 0 or a file that cannot be positioned.
    virtual std::uint64_t Seek(std::int64_t offset, unsigned from);
    /// The position of the next byte read or written.
    virtual std::uint64_t GetPosition() const;
    /// The number of bytes in the file; the position is kept.
    virtual std::uint64_t GetLength() const;
    /// Hands everything written to the operating system.
    virtual void Flush();
    /// Closes the file; nothing happens when it is closed already. Throws CFileException when the last bytes written
    /// could not be stored; the file counts as closed all the same.
    virtual void Close();

    void SeekToBegin() { Seek(0, begin); }
    std::uint64_t SeekToEnd() { return Seek(0, end); }

    /// The path that the file was opened with; empty for a closed file and for a file in memory.
    const std::string& GetFilePath() const noexcept { return m_path; }

private:
    CADGEOM_HIDDEN int OpenHandle(const std::string& path, unsigned flags);
    CADGEOM_HIDDEN std::FILE* RequireOpen() const;
    [[noreturn]] CADGEOM_HIDDEN void Raise(int cause) const;

    /// What the handle did last: the C library wants a repositioning between reading and writing.
    enum class LastTransfer {
        eNone,
        eRead,
        eWrite
    };
    CADGEOM_HIDDEN void PrepareFor(LastTransfer transfer);

    std::FILE* m_handle = nullptr;
    unsigned m_access = modeRead;
    LastTransfer m_lastTransfer = LastTransfer::eNone;
    std::string m_path;
};

/// A file in memory.
class CADGEOM_API CMemFile : public CFile {
public:
    /// An empty file to write and read; it grows as it is written.
    CMemFile() noexcept;
    /// A file over `size` bytes to read, which are not copied and must outlive it. Writing throws CFileException
    /// (accessDenied). A null buffer counts as empty.
    CMemFile(const void* buffer, std::uint64_t size) noexcept;
    ~CMemFile() override;

    std::uint32_t Read(void* buffer, std::uint32_t size) override;
    /// Writes at the current position; a gap that an earlier Seek left behind the end is filled with zeros. Throws
    /// CMemoryException, with the contents kept, when the file cannot grow.
    void Write(const void* buffer, std::uint32_t size) override;
    /// Positions behind the end are allowed.
    std::uint64_t Seek(std::int64_t offset, unsigned from) override;
    std::uint64_t GetPosition() const override { return m_position; }
    std::uint64_t GetLength() const override { return m_isReadOnly ? m_viewSize : m_bytes.size(); }
    void Flush() override {}
    /// Releases the memory of a file to write; a file over the caller's bytes becomes empty.
    void Close() override;

private:
    const std::uint8_t* Bytes() const noexcept { return m_isReadOnly ? m_view : m_bytes.data(); }

    std::vector<std::uint8_t> m_bytes;
    const std::uint8_t* m_view = nullptr;
    std::uint64_t m_viewSize = 0;
    std::uint64_t m_position = 0;
    bool m_isReadOnly = false;
};
