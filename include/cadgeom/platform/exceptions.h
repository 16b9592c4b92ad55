#pragma once
/// @file
/// The exceptions of the platform layer and the functions that raise them. All are thrown by value and derive from
/// `std::exception` through `CException`.

#include <cadgeom/core/export.h>

#include <exception>
#include <string>
#include <utility>

/// Base of all exceptions of the platform layer.
class CADGEOM_API CException : public std::exception {
public:
    explicit CException(std::string message) : m_message(std::move(message)) {}
    CException(const CException&) = default;
    CException& operator=(const CException&) = default;
    ~CException() override;

    /// A sentence for a person to read.
    const char* what() const noexcept override;

private:
    std::string m_message;
};

/// An archive was used in the wrong direction, or its data ended.
class CADGEOM_API CArchiveException : public CException {
public:
    enum Cause : int {
        none = 0,
        genericException = 1, ///< the archive is closed, or an operation is not possible on it
        readOnly = 2,         ///< storing through a loading archive
        endOfFile = 3,        ///< the data ended inside a value
        writeOnly = 4         ///< loading from a storing archive
    };

    explicit CArchiveException(int cause = none, const std::string& fileName = {});
    ~CArchiveException() override;

    int m_cause;
    std::string m_strFileName; ///< empty when the archive's file has no name
};

/// An argument is outside its range: a negative size, a bad index, a null array with a count.
class CADGEOM_API CInvalidArgException : public CException {
public:
    CInvalidArgException();
    ~CInvalidArgException() override;
};

/// Memory for an array could not be obtained.
class CADGEOM_API CMemoryException : public CException {
public:
    CMemoryException();
    ~CMemoryException() override;
};

/// A file could not be opened, read, written or positioned.
class CADGEOM_API CFileException : public CException {
public:
    enum Cause : int {
        none = 0,
        genericException = 1,
        fileNotFound = 2,
        badPath = 3,
        tooManyOpenFiles = 4,
        accessDenied = 5,
        invalidFile = 6,
        removeCurrentDir = 7,
        directoryFull = 8,
        badSeek = 9,
        hardIO = 10,
        sharingViolation = 11,
        lockViolation = 12,
        diskFull = 13,
        endOfFile = 14
    };

    explicit CFileException(int cause = none, const std::string& fileName = {});
    ~CFileException() override;

    int m_cause;
    std::string m_strFileName; ///< empty for a file in memory
};

/// Throws CArchiveException.
/// @param cause     one of CArchiveException::Cause
/// @param fileName  name of the archive's file; null and empty mean that it has none
[[noreturn]] CADGEOM_API void AfxThrowArchiveException(int cause, const char* fileName = nullptr);

/// Throws CInvalidArgException.
[[noreturn]] CADGEOM_API void AfxThrowInvalidArgException();

/// Throws CMemoryException.
[[noreturn]] CADGEOM_API void AfxThrowMemoryException();

/// Throws CFileException.
/// @param cause     one of CFileException::Cause
/// @param fileName  name of the file; null and empty mean that it has none
[[noreturn]] CADGEOM_API void AfxThrowFileException(int cause, const char* fileName = nullptr);
