#include <cadgeom/platform/exceptions.h>

namespace {

std::string NameOrEmpty(const char* fileName)
{
    return fileName == nullptr ? std::string() : std::string(fileName);
}

std::string WithFileName(const char* sentence, const std::string& fileName)
{
    return fileName.empty() ? std::string(sentence) : sentence + (": " + fileName);
}

const char* ArchiveSentence(int cause)
{
    switch (cause) {
    case CArchiveException::none:
        return "no archive error";
    case CArchiveException::readOnly:
        return "cannot store into an archive that is loading";
    case CArchiveException::endOfFile:
        return "the archive's data ended inside a value";
    case CArchiveException::writeOnly:
        return "cannot load from an archive that is storing";
    default:
        return "the archive is closed or cannot do this";
    }
}

const char* FileSentence(int cause)
{
    switch (cause) {
    case CFileException::none:
        return "no file error";
    case CFileException::fileNotFound:
        return "the file was not found";
    case CFileException::badPath:
        return "the path is not valid";
    case CFileException::tooManyOpenFiles:
        return "too many files are open";
    case CFileException::accessDenied:
        return "access to the file is denied";
    case CFileException::invalidFile:
        return "the file is not open";
    case CFileException::badSeek:
        return "the file cannot be positioned there";
    case CFileException::hardIO:
        return "reading or writing the file failed";
    case CFileException::diskFull:
        return "there is no room to write the file";
    case CFileException::endOfFile:
        return "the end of the file was reached";
    default:
        return "the file operation failed";
    }
}

} // namespace

CException::~CException() = default;
const char* CException::what() const noexcept
{
    return m_message.c_str();
}

CArchiveException::CArchiveException(int cause, const std::string& fileName)
    : CException(WithFileName(ArchiveSentence(cause), fileName)), m_cause(cause), m_strFileName(fileName)
{}
CArchiveException::~CArchiveException() = default;

CInvalidArgException::CInvalidArgException() : CException("an argument is outside its range") {}
CInvalidArgException::~CInvalidArgException() = default;

CMemoryException::CMemoryException() : CException("out of memory") {}
CMemoryException::~CMemoryException() = default;

CFileException::CFileException(int cause, const std::string& fileName)
    : CException(WithFileName(FileSentence(cause), fileName)), m_cause(cause), m_strFileName(fileName)
{}
CFileException::~CFileException() = default;

void AfxThrowArchiveException(int cause, const char* fileName)
{
    throw CArchiveException(cause, NameOrEmpty(fileName));
}
void AfxThrowInvalidArgException()
{
    throw CInvalidArgException();
}
void AfxThrowMemoryException()
{
    throw CMemoryException();
}
void AfxThrowFileException(int cause, const char* fileName)
{
    throw CFileException(cause, NameOrEmpty(fileName));
}
