#include "output_file.h"

#include "errors.h"

#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace part_report {

OutputFile::OutputFile(std::string path)
    : m_path(std::move(path)), m_draftPath(m_path + ".draft-" + std::to_string(getpid()))
{}

OutputFile::~OutputFile()
{
    std::error_code ignored;
    if (!m_isPublished)
        std::filesystem::remove(m_draftPath, ignored);
}

void OutputFile::WriteDraft(const std::string& text) const
{
    try {
        CFile file(m_draftPath, CFile::modeCreate | CFile::modeWrite);
        constexpr std::size_t kLargestBlock = 1 << 30;
        for (std::size_t done = 0; done < text.size();) {
            const std::size_t size = std::min(text.size() - done, kLargestBlock);
            file.Write(text.data() + done, static_cast<std::uint32_t>(size));
            done += size;
        }
        file.Close();
    } catch (const CFileException& error) {
        throw OutputError(m_path, error.what());
    }
}

void OutputFile::Publish()
{
    std::error_code error;
    std::filesystem::rename(m_draftPath, m_path, error);
    if (error)
        throw OutputError(m_path, "cannot be written: " + error.message());
    m_isPublished = true;
}

} // namespace part_report
