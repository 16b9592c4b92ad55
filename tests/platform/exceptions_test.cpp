#include <cadgeom/platform/exceptions.h>
#include <gtest/gtest.h>

#include <exception>
#include <set>
#include <string>

namespace {

/// What a person reads about the exception that `work` throws.
template <class Work>
std::string MessageOf(Work work)
{
    try {
        work();
    } catch (const std::exception& exception) {
        return exception.what();
    }
    return {};
}

template <class Exception>
void ExpectCauseAndName(void (*raise)(int, const char*), int cause, const char* name)
{
    try {
        raise(cause, name);
        FAIL();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.m_cause, cause);
        EXPECT_EQ(exception.m_strFileName, name == nullptr ? "" : name);
    }
}

TEST(Exceptions, CarryTheirCauseAndTheNameOfTheFile)
{
    for (const char* const name : {"part.bin", "", static_cast<const char*>(nullptr)}) {
        ExpectCauseAndName<CArchiveException>(&AfxThrowArchiveException, CArchiveException::endOfFile, name);
        ExpectCauseAndName<CFileException>(&AfxThrowFileException, CFileException::diskFull, name);
    }
}

TEST(Exceptions, HaveTheNumbersThatHostsKnow)
{
    EXPECT_EQ(CArchiveException::none, 0);
    EXPECT_EQ(CArchiveException::genericException, 1);
    EXPECT_EQ(CArchiveException::readOnly, 2);
    EXPECT_EQ(CArchiveException::endOfFile, 3);
    EXPECT_EQ(CArchiveException::writeOnly, 4);
}

TEST(Exceptions, AreCaughtByTheirCommonBases)
{
    EXPECT_THROW(AfxThrowArchiveException(CArchiveException::readOnly), CException);
    EXPECT_THROW(AfxThrowFileException(CFileException::badSeek), CException);
    EXPECT_THROW(AfxThrowInvalidArgException(), CInvalidArgException);
    EXPECT_THROW(AfxThrowInvalidArgException(), CException);
    EXPECT_THROW(AfxThrowMemoryException(), CMemoryException);
    EXPECT_THROW(AfxThrowMemoryException(), std::exception);
}

TEST(Exceptions, SayWhatHappenedAndToWhichFile)
{
    EXPECT_EQ(MessageOf([] { AfxThrowArchiveException(CArchiveException::endOfFile, "part.bin"); }),
              "the archive's data ended inside a value: part.bin");
    EXPECT_EQ(MessageOf([] { AfxThrowFileException(CFileException::fileNotFound); }), "the file was not found");
    EXPECT_EQ(MessageOf([] { AfxThrowInvalidArgException(); }), "an argument is outside its range");
    EXPECT_EQ(MessageOf([] { AfxThrowMemoryException(); }), "out of memory");
}

TEST(Exceptions, HaveASentenceForEveryCause)
{
    std::set<std::string> sentences;
    for (int cause = 0; cause <= CArchiveException::writeOnly; ++cause) {
        sentences.insert(CArchiveException(cause).what());
    }
    EXPECT_EQ(sentences.size(), 5U);
    EXPECT_EQ(sentences.count(""), 0U);
    EXPECT_STREQ(CArchiveException(99).what(), CArchiveException(CArchiveException::genericException).what());
    for (int cause = CFileException::none; cause <= CFileException::endOfFile + 1; ++cause) {
        EXPECT_STRNE(CFileException(cause).what(), "") << cause;
    }
}

TEST(Exceptions, KeepTheirTextWhenTheyAreCopied)
{
    CArchiveException copy;
    {
        const CArchiveException original(CArchiveException::writeOnly, "a name long enough to need memory of its own");
        copy = original;
    }
    EXPECT_EQ(std::string(copy.what()),
              "cannot load from an archive that is storing: a name long enough to need memory of its own");
    EXPECT_EQ(copy.m_cause, CArchiveException::writeOnly);
}

} // namespace
