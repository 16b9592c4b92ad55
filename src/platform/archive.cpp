#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/exceptions.h>

#include <algorithm>

namespace {

constexpr int kSmallestBuffer = 128;
constexpr std::uint16_t kCountIsLong = 0xFFFF;
constexpr std::uint32_t kCountIsVeryLong = 0xFFFFFFFF;

} // namespace

CArchive::CArchive(CFile* file, unsigned mode, int bufferSize, void* buffer)
    : m_strFileName(file == nullptr ? std::string() : file->GetFilePath()),
      m_file(file),
      m_mode(mode),
      m_capacity(static_cast<std::uint32_t>(std::max(bufferSize, kSmallestBuffer))),
      m_buffer(bufferSize >= kSmallestBuffer ? static_cast<std::uint8_t*>(buffer) : nullptr)
{
    if (m_buffer == nullptr) {
        m_ownBuffer.reset(new std::uint8_t[m_capacity]);
        m_buffer = m_ownBuffer.get();
    }
    m_cursor = m_buffer;
    m_end = file != nullptr && IsStoring() ? m_buffer + m_capacity : m_buffer;
}

CArchive::~CArchive()
{
    try {
        Close();
    } catch (...) {
        // The archive is closed by now, and a destructor has nobody to tell.
    }
}

void CArchive::Abort() noexcept
{
    m_file = nullptr;
    m_cursor = m_buffer;
    m_end = m_buffer;
}

void CArchive::Raise(int cause)
{
    Abort();
    AfxThrowArchiveException(cause, m_strFileName.c_str());
}

void CArchive::RaiseDirection()
{
    Raise(IsLoading() ? CArchiveException::readOnly : CArchiveException::writeOnly);
}

/// Direction first, so that a wrong one is named even when the archive is closed.
void CArchive::Require(Mode direction)
{
    if ((m_mode & load) != direction) {
        RaiseDirection();
    }
    if (m_file == nullptr) {
        Raise(CArchiveException::genericException);
    }
}

/// Runs a transfer of the file; whatever it throws closes the archive on its way out.
template <class Transfer>
auto CArchive::OrAbort(Transfer transfer)
{
    try {
        return transfer();
    } catch (...) {
        Abort();
        throw;
    }
}

void CArchive::Flush()
{
    if (m_file == nullptr) {
        Raise(CArchiveException::genericException);
    }
    OrAbort([this] {
        if (IsStoring()) {
            if (m_cursor != m_buffer) {
                m_file->Write(m_buffer, static_cast<std::uint32_t>(m_cursor - m_buffer));
            }
        } else if (m_cursor != m_end) {
            m_file->Seek(m_cursor - m_end, CFile::current);
        }
    });
    m_cursor = m_buffer;
    m_end = IsStoring() ? m_buffer + m_capacity : m_buffer;
}

void CArchive::FillBuffer(std::uint32_t count)
{
    Require(load);
    const auto kept = static_cast<std::uint32_t>(m_end - m_cursor);
    if (count > m_capacity - kept) {
        Abort();
        AfxThrowInvalidArgException();
    }
    std::memmove(m_buffer, m_cursor, kept);
    m_cursor = m_buffer;
    m_end = m_buffer + kept;
    const std::uint8_t* const needed = m_end + count;
    while (m_end < needed) {
        const auto room = static_cast<std::uint32_t>(m_buffer + m_capacity - m_end);
        const std::uint32_t loaded = OrAbort([&] { return m_file->Read(m_end, room); });
        if (loaded == 0) {
            Raise(CArchiveException::endOfFile);
        }
        m_end += loaded;
    }
}

std::uint32_t CArchive::Read(void* destination, std::uint32_t size)
{
    Require(load);
    if (size == 0) {
        return 0;
    }
    auto* target = static_cast<std::uint8_t*>(destination);
    std::uint32_t missing = size;
    while (missing != 0) {
        const std::uint32_t buffered = std::min(missing, static_cast<std::uint32_t>(m_end - m_cursor));
        std::memcpy(target, m_cursor, buffered);
        m_cursor += buffered;
        target += buffered;
        missing -= buffered;
        if (missing == 0) {
            break;
        }
        std::uint32_t loaded = 0;
        if (missing >= m_capacity) {
            loaded = OrAbort([&] { return m_file->Read(target, missing); });
            target += loaded;
            missing -= loaded;
        } else {
            loaded = OrAbort([&] { return m_file->Read(m_buffer, m_capacity); });
            m_cursor = m_buffer;
            m_end = m_buffer + loaded;
        }
        if (loaded == 0) {
            break;
        }
    }
    return size - missing;
}

void CArchive::Write(const void* source, std::uint32_t size)
{
    Require(store);
    if (static_cast<std::uint64_t>(m_end - m_cursor) < size) {
        Flush();
    }
    if (size > m_capacity) {
        OrAbort([&] { m_file->Write(source, size); });
    } else if (size != 0) {
        std::memcpy(m_cursor, source, size);
        m_cursor += size;
    }
}

std::uint64_t CArchive::ReadCount()
{
    std::uint16_t shortCount = 0;
    *this >> shortCount;
    if (shortCount != kCountIsLong) {
        return shortCount;
    }
    std::uint32_t longCount = 0;
    *this >> longCount;
    if (longCount != kCountIsVeryLong) {
        return longCount;
    }
    std::uint64_t count = 0;
    *this >> count;
    return count;
}

void CArchive::WriteCount(std::uint64_t count)
{
    if (count < kCountIsLong) {
        *this << static_cast<std::uint16_t>(count);
        return;
    }
    *this << kCountIsLong;
    if (count < kCountIsVeryLong) {
        *this << static_cast<std::uint32_t>(count);
        return;
    }
    *this << kCountIsVeryLong << count;
}

void CArchive::Close()
{
    if (m_file != nullptr) {
        Flush();
        Abort();
    }
}

bool CArchive::MayHold(std::uint64_t count, bool whenUnknown) const noexcept
{
    if (m_file == nullptr) {
        return count == 0;
    }
    const auto buffered = static_cast<std::uint64_t>(m_end - m_cursor);
    try {
        const std::uint64_t position = m_file->GetPosition();
        const std::uint64_t length = m_file->GetLength();
        const std::uint64_t unread = length > position ? length - position : 0;
        return count <= buffered || count - buffered <= unread;
    } catch (...) {
        return whenUnknown;
    }
}
