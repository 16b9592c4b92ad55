#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#if !defined(_WIN32)
#include <sys/types.h>
#endif

namespace {

constexpr unsigned kAccessMask = CFile::modeWrite | CFile::modeReadWrite;

int CauseOfErrno(int error)
{
    switch (error) {
    case ENOENT:
        return CFileException::fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case EINVAL:
        return CFileException::badPath;
    case EMFILE:
    case ENFILE:
        return CFileException::tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return CFileException::accessDenied;
    case EBADF:
        return CFileException::invalidFile;
    case EIO:
        return CFileException::hardIO;
    case ENOSPC:
    case EFBIG:
        return CFileException::diskFull;
    default:
        return CFileException::genericException;
    }
}

bool SeekHandle(std::FILE* handle, std::int64_t offset, int from)
{
#if defined(_WIN32)
    return _fseeki64(handle, offset, from) == 0;
#else
    return fseeko(handle, static_cast<off_t>(offset), from) == 0;
#endif
}

std::int64_t TellHandle(std::FILE* handle)
{
#if defined(_WIN32)
    return _ftelli64(handle);
#else
    return static_cast<std::int64_t>(ftello(handle));
#endif
}

std::FILE* OpenUnbuffered(const std::string& path, const char* mode)
{
    std::FILE* const handle = std::fopen(path.c_str(), mode);
    if (handle != nullptr) {
        std::setvbuf(handle, nullptr, _IONBF, 0);
    }
    return handle;
}

} // namespace

CFile::CFile() noexcept = default;

CFile::CFile(const std::string& path, unsigned flags)
{
    const int error = OpenHandle(path, flags);
    if (error != 0) {
        AfxThrowFileException(CauseOfErrno(error), path.c_str());
    }
}

CFile::~CFile()
{
    if (m_handle != nullptr) {
        std::fclose(m_handle);
    }
}

bool CFile::Open(const std::string& path, unsigned flags)
{
    Close();
    return OpenHandle(path, flags) == 0;
}

int CFile::OpenHandle(const std::string& path, unsigned flags)
{
    std::string nameToKeep = path;
    const bool isForReadingOnly = (flags & kAccessMask) == modeRead;
    const bool mayCreate = (flags & modeCreate) != 0;
    const bool mayTruncate = mayCreate && (flags & modeNoTruncate) == 0;
    errno = 0;
    if (mayTruncate) {
        m_handle = OpenUnbuffered(path, "w+b");
    } else {
        m_handle = OpenUnbuffered(path, isForReadingOnly ? "rb" : "r+b");
        if (m_handle == nullptr && mayCreate && errno == ENOENT) {
            m_handle = OpenUnbuffered(path, "w+b");
        }
    }
    if (m_handle == nullptr) {
        return errno != 0 ? errno : EIO;
    }
    m_access = flags & kAccessMask;
    m_lastTransfer = LastTransfer::eNone;
    m_path = std::move(nameToKeep);
    return 0;
}

std::FILE* CFile::RequireOpen() const
{
    if (m_handle == nullptr) {
        Raise(CFileException::invalidFile);
    }
    return m_handle;
}

void CFile::Raise(int cause) const
{
    AfxThrowFileException(cause, m_path.c_str());
}

void CFile::PrepareFor(LastTransfer transfer)
{
    if (m_lastTransfer != LastTransfer::eNone && m_lastTransfer != transfer) {
        SeekHandle(m_handle, 0, SEEK_CUR);
    }
    m_lastTransfer = transfer;
}

std::uint32_t CFile::Read(void* buffer, std::uint32_t size)
{
    std::FILE* const handle = RequireOpen();
    if (m_access == modeWrite) {
        Raise(CFileException::accessDenied);
    }
    if (size == 0) {
        return 0;
    }
    PrepareFor(LastTransfer::eRead);
    errno = 0;
    const std::size_t count = std::fread(buffer, 1, size, handle);
    if (count < size && std::ferror(handle) != 0) {
        std::clearerr(handle);
        Raise(CauseOfErrno(errno));
    }
    return static_cast<std::uint32_t>(count);
}

void CFile::Write(const void* buffer, std::uint32_t size)
{
    std::FILE* const handle = RequireOpen();
    if (m_access == modeRead) {
        Raise(CFileException::accessDenied);
    }
    if (size == 0) {
        return;
    }
    PrepareFor(LastTransfer::eWrite);
    errno = 0;
    if (std::fwrite(buffer, 1, size, handle) != size) {
        std::clearerr(handle);
        Raise(CauseOfErrno(errno));
    }
}

std::uint64_t CFile::Seek(std::int64_t offset, unsigned from)
{
    static constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    std::FILE* const handle = RequireOpen();
    if (from > end || !SeekHandle(handle, offset, kOrigins[from])) {
        Raise(CFileException::badSeek);
    }
    m_lastTransfer = LastTransfer::eNone;
    return GetPosition();
}

std::uint64_t CFile::GetPosition() const
{
    const std::int64_t position = TellHandle(RequireOpen());
    if (position < 0) {
        Raise(CFileException::badSeek);
    }
    return static_cast<std::uint64_t>(position);
}

std::uint64_t CFile::GetLength() const
{
    std::FILE* const handle = RequireOpen();
    const std::int64_t position = TellHandle(handle);
    if (position < 0 || !SeekHandle(handle, 0, SEEK_END)) {
        Raise(CFileException::badSeek);
    }
    const std::int64_t length = TellHandle(handle);
    if (!SeekHandle(handle, position, SEEK_SET) || length < 0) {
        Raise(CFileException::badSeek);
    }
    return static_cast<std::uint64_t>(length);
}

void CFile::Flush()
{
    if (m_handle != nullptr && std::fflush(m_handle) != 0) {
        Raise(CauseOfErrno(errno));
    }
}

void CFile::Close()
{
    if (m_handle == nullptr) {
        return;
    }
    const std::string path = std::move(m_path);
    m_path.clear();
    const bool isStored = std::fclose(m_handle) == 0;
    m_handle = nullptr;
    if (!isStored) {
        AfxThrowFileException(CauseOfErrno(errno), path.c_str());
    }
}

CMemFile::CMemFile() noexcept = default;

CMemFile::CMemFile(const void* buffer, std::uint64_t size) noexcept
    : m_view(static_cast<const std::uint8_t*>(buffer)), m_viewSize(buffer == nullptr ? 0 : size), m_isReadOnly(true)
{}

CMemFile::~CMemFile() = default;

std::uint32_t CMemFile::Read(void* buffer, std::uint32_t size)
{
    const std::uint64_t length = GetLength();
    if (m_position >= length) {
        return 0;
    }
    const auto count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, length - m_position));
    if (count != 0) {
        std::memcpy(buffer, Bytes() + m_position, count);
        m_position += count;
    }
    return count;
}

void CMemFile::Write(const void* buffer, std::uint32_t size)
{
    if (m_isReadOnly) {
        AfxThrowFileException(CFileException::accessDenied);
    }
    if (size == 0) {
        return;
    }
    const std::uint64_t newEnd = m_position + size;
    const auto* const source = static_cast<const std::uint8_t*>(buffer);
    try {
        if (m_position == m_bytes.size()) {
            m_bytes.insert(m_bytes.end(), source, source + size);
        } else {
            m_bytes.resize(std::max<std::uint64_t>(newEnd, m_bytes.size()));
            std::memcpy(m_bytes.data() + m_position, source, size);
        }
    } catch (const std::length_error&) {
        AfxThrowMemoryException();
    } catch (const std::bad_alloc&) {
        AfxThrowMemoryException();
    }
    m_position = newEnd;
}

std::uint64_t CMemFile::Seek(std::int64_t offset, unsigned from)
{
    if (from > end) {
        AfxThrowFileException(CFileException::badSeek);
    }
    const std::uint64_t origin = from == begin ? 0 : (from == current ? m_position : GetLength());
    const std::uint64_t distance =
        offset < 0 ? ~static_cast<std::uint64_t>(offset) + 1 : static_cast<std::uint64_t>(offset);
    constexpr std::uint64_t kLargestPosition = INT64_MAX;
    if (offset < 0 ? distance > origin : distance > kLargestPosition - origin) {
        AfxThrowFileException(CFileException::badSeek);
    }
    m_position = offset < 0 ? origin - distance : origin + distance;
    return m_position;
}

void CMemFile::Close()
{
    m_bytes = {};
    m_viewSize = 0;
    m_position = 0;
}
