#pragma once
/// @file
/// The archive: a buffered stream of little-endian values over a file, either storing or loading.
/// Next: core/archive_records.h for the records of points and vectors, platform/array.h for counted arrays.

#include <cadgeom/core/export.h>
#include <cadgeom/platform/file.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

#if defined(__BYTE_ORDER__)
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "archive records are copied as they lie in memory");
#endif

/// Stores values into a file or loads them from it, in one direction for its whole life.
///
/// Every transfer in the wrong direction throws CArchiveException: `readOnly` when a loading archive is asked to store,
/// `writeOnly` when a storing one is asked to load. Data that end inside a value throw `endOfFile`. An exception that
/// leaves the archive, its file's included, closes it: later transfers throw (`genericException` unless the direction
/// is wrong too), nothing more reaches the file, and destroying it is safe.
class CADGEOM_API CArchive {
public:
    enum Mode : unsigned {
        store = 0,
        load = 1
    };

    /// @param file        outlives the archive; null makes an archive that is closed from the start
    /// @param mode        bit 0 is the direction: `store` or `load`; other bits are ignored
    /// @param bufferSize  bytes of the buffer; fewer than 128 count as 128
    /// @param buffer      memory for the buffer, of bufferSize bytes, kept by the caller; null, and memory of fewer than
    ///                    128 bytes, make the archive allocate its own
    CArchive(CFile* file, unsigned mode, int bufferSize = 4096, void* buffer = nullptr);
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;
    /// Closes the archive; an exception of the last flush is swallowed. Call Close() to see it.
    ~CArchive();

    bool IsLoading() const noexcept { return (m_mode & load) != 0; }
    bool IsStoring() const noexcept { return !IsLoading(); }

    /// Loads up to `size` raw bytes. Returns the number loaded, fewer than `size` only at the end of the file.
    /// A block larger than the buffer goes straight from the file to `destination`.
    std::uint32_t Read(void* destination, std::uint32_t size);
    /// Stores `size` raw bytes; a block larger than the buffer goes straight to the file.
    void Write(const void* source, std::uint32_t size);

    /// Stores what is buffered; a loading archive gives back to the file what it has buffered and not delivered, so that
    /// the file stands behind the last value loaded.
    void Flush();
    /// Makes at least `count` bytes more than are buffered available to the next values.
    /// Throws `endOfFile` when the file has fewer, CInvalidArgException when the buffer cannot hold them.
    void FillBuffer(std::uint32_t count);

    /// Loads an element count: 16 bits, or after 0xFFFF 32 bits, or after 0xFFFFFFFF 64 bits.
    std::uint64_t ReadCount();
    /// Stores an element count in the shortest of the three forms that ReadCount() knows.
    void WriteCount(std::uint64_t count);

    /// Flushes and parts from the file, which stays open. Nothing happens on a closed archive.
    void Close();
    /// Parts from the file without flushing.
    void Abort() noexcept;

    /// The file; null once the archive is closed.
    CFile* GetFile() const noexcept { return m_file; }

    /// Whether `count` more bytes can be loaded, as far as the file's length tells; `whenUnknown` when it does not tell.
    bool MayHold(std::uint64_t count, bool whenUnknown = true) const noexcept;

    /// Stores the bytes of one number.
    template <class S, class = std::enable_if_t<std::is_arithmetic_v<S> && (sizeof(S) <= 8)>>
    CArchive& operator<<(S value)
    {
        Put(&value, static_cast<std::uint32_t>(sizeof(S)));
        return *this;
    }

    /// Loads the bytes of one number. For a bool, every byte but 0 is true.
    template <class S, class = std::enable_if_t<std::is_arithmetic_v<S> && (sizeof(S) <= 8)>>
    CArchive& operator>>(S& value)
    {
        if constexpr (std::is_same_v<S, bool>) {
            std::uint8_t byte = 0;
            Get(&byte, 1);
            value = byte != 0;
        } else {
            Get(&value, static_cast<std::uint32_t>(sizeof(S)));
        }
        return *this;
    }

    /// Name that archive exceptions carry: at first the path of the file.
    std::string m_strFileName;

private:
    void Put(const void* value, std::uint32_t size)
    {
        if (IsLoading()) {
            RaiseDirection();
        }
        if (static_cast<std::uint64_t>(m_end - m_cursor) < size) {
            Flush();
        }
        std::memcpy(m_cursor, value, size);
        m_cursor += size;
    }

    void Get(void* value, std::uint32_t size)
    {
        if (IsStoring()) {
            RaiseDirection();
        }
        const auto buffered = static_cast<std::uint64_t>(m_end - m_cursor);
        if (buffered < size) {
            FillBuffer(size - static_cast<std::uint32_t>(buffered));
        }
        std::memcpy(value, m_cursor, size);
        m_cursor += size;
    }

    [[noreturn]] CADGEOM_HIDDEN void Raise(int cause);
    [[noreturn]] void RaiseDirection();
    CADGEOM_HIDDEN void Require(Mode direction);

    template <class Transfer>
    auto OrAbort(Transfer transfer);

    CFile* m_file;
    unsigned m_mode;
    std::uint32_t m_capacity;
    std::unique_ptr<std::uint8_t[]> m_ownBuffer;
    std::uint8_t* m_buffer;
    /// Storing: the free room lies between m_cursor and m_end, the end of the buffer.
    /// Loading: the bytes not yet delivered lie between m_cursor and m_end.
    /// Closed: both are equal, so that the next value leaves the short path.
    std::uint8_t* m_cursor;
    std::uint8_t* m_end;
};
