#pragma once
// Files that appear whole or not at all.

#include <string>

namespace part_report {

/// A result that is written under another name in the same folder and gets its own name when it is complete. What was
/// not published is removed by the destructor.
class OutputFile {
public:
    explicit OutputFile(std::string path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    const std::string& Path() const { return m_path; }
    /// Where to write.
    const std::string& DraftPath() const { return m_draftPath; }

    /// Writes a whole text as the draft; throws OutputError.
    void WriteDraft(const std::string& text) const;
    /// Gives the draft its name, replacing an older file; throws OutputError.
    void Publish();

private:
    std::string m_path;
    std::string m_draftPath;
    bool m_isPublished = false;
};

} // namespace part_report
