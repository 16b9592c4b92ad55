#include "mesh_reader.h"

#include "errors.h"

#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>
#include <cadgeom/util/parse_number.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace part_report {

namespace {

// Larger coordinates leave too few digits for the shape of a part, whatever the unit.
constexpr double kLargestCoordinate = 1e9;
// ParseLongFastA reads integers modulo 2^32: longer texts would come back as other numbers.
constexpr int kMostDigits = 9;
// "0 0 0" and its line end: what a vertex or a facet takes at least, so that a wrong count reserves no memory.
constexpr std::size_t kShortestLine = 6;
// How much of a wrong text is quoted.
constexpr std::size_t kLongestQuote = 24;

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string ReadWholeFile(const std::string& path)
{
    try {
        CFile file(path, CFile::modeRead);
        std::string text;
        std::vector<char> block(1 << 16);
        while (const std::uint32_t size = file.Read(block.data(), static_cast<std::uint32_t>(block.size())))
            text.append(block.data(), size);
        return text;
    } catch (const CFileException& error) {
        throw InputError(path, 1, std::string("a mesh in OFF format, but the file cannot be read: ") + error.what());
    }
}

/// Hands out the lines of a text that hold more than blanks and a comment, each ended by a zero where its line end or
/// its comment was, as the number parsers want it.
class LineReader {
public:
    explicit LineReader(std::string text) : m_text(std::move(text)) {}

    bool Next()
    {
        while (m_next < m_text.size()) {
            const std::size_t begin = m_next;
            const std::size_t lineEnd = std::min(m_text.find('\n', begin), m_text.size());
            m_next = lineEnd + 1;
            ++m_number;
            char* const line = m_text.data() + begin;
            char* const end = std::find(line, m_text.data() + lineEnd, '#');
            *end = '\0';
            m_at = line;
            m_end = end;
            SkipBlanks();
            if (m_at != m_end)
                return true;
        }
        ++m_number;
        return false;
    }

    /// What is left of the line.
    const char* At() const { return m_at; }
    bool IsAtEnd() const { return m_at == m_end; }
    std::size_t Number() const { return m_number; }
    std::size_t Size() const { return m_text.size(); }

    /// Passes `count` characters, if a blank or the end of the line follows them.
    bool Pass(int count)
    {
        const char* const after = m_at + count;
        if (count <= 0 || after > m_end || (after < m_end && !IsBlank(*after)))
            return false;
        m_at = after;
        SkipBlanks();
        return true;
    }

    /// The next word, fit for a message.
    std::string Word() const
    {
        if (IsAtEnd())
            return "the end of the line";
        const char* const end = std::find_if(m_at, m_end, IsBlank);
        std::string word(m_at, std::min(static_cast<std::size_t>(end - m_at), kLongestQuote));
        for (char& c : word)
            c = c >= ' ' && c <= '~' ? c : '?';
        return "\"" + word + "\"";
    }

private:
    void SkipBlanks() { m_at = std::find_if_not(m_at, m_end, IsBlank); }

    std::string m_text;
    std::size_t m_next = 0;
    std::size_t m_number = 0;
    const char* m_at = nullptr;
    const char* m_end = nullptr;
};

class OffReader {
public:
    OffReader(const std::string& path, ProgressBar& progress)
        : m_path(path), m_progress(progress), m_lines(ReadWholeFile(path))
    {}

    Mesh Read()
    {
        NextLine("the word OFF");
        if (std::strncmp(m_lines.At(), "OFF", 3) != 0 || !m_lines.Pass(3))
            FailAtWord("the word OFF");
        if (m_lines.IsAtEnd())
            NextLine("the numbers of vertices and facets");
        m_pointCount = ReadCount("the number of vertices");
        m_facetCount = ReadCount("the number of facets");
        if (!m_lines.IsAtEnd())
            ReadCount("the number of edges");
        RequireEndOfLine();
        ReadPoints();
        ReadFacets();
        if (m_lines.Next())
            FailAtWord("the end of the file after " + std::to_string(m_facetCount) + " facets");
        return std::move(m_mesh);
    }

private:
    void ReadPoints()
    {
        ProgressBar::Task task(m_progress, "reading vertices", m_pointCount);
        m_mesh.points.reserve(std::min<std::size_t>(m_pointCount, m_lines.Size() / kShortestLine));
        for (Index i = 0; i < m_pointCount; ++i) {
            const std::string name = " of vertex " + Ordinal(i, m_pointCount);
            NextLine("the 3 coordinates" + name);
            const double x = ReadCoordinate("x" + name);
            const double y = ReadCoordinate("y" + name);
            const double z = ReadCoordinate("z" + name);
            RequireEndOfLine();
            m_mesh.points.emplace_back(x, y, z);
            task.Step();
        }
    }

    void ReadFacets()
    {
        ProgressBar::Task task(m_progress, "reading facets", m_facetCount);
        m_mesh.facets.reserve(std::min<std::size_t>(m_facetCount, m_lines.Size() / kShortestLine));
        for (Index i = 0; i < m_facetCount; ++i) {
            const std::string name = " of facet " + Ordinal(i, m_facetCount);
            NextLine("the 3 corners" + name);
            const std::string corners = "3, the number of corners" + name;
            if (ReadWholeNumber(corners, 4) != 3)
                Fail(corners + ": only triangles are understood");
            std::array<Index, 3> facet{};
            for (Index& corner : facet)
                corner = ReadWholeNumber("a vertex index below " + std::to_string(m_pointCount) + name, m_pointCount);
            RequireColour();
            m_mesh.facets.push_back(facet);
            task.Step();
        }
    }

    static std::string Ordinal(Index index, Index count)
    {
        return std::to_string(index + 1) + " of " + std::to_string(count);
    }

    void NextLine(const std::string& expected)
    {
        if (!m_lines.Next())
            Fail(expected + ", found the end of the file");
    }

    Index ReadCount(const std::string& name) { return ReadWholeNumber(name, 1'000'000'000); }

    Index ReadWholeNumber(const std::string& expected, Index limit)
    {
        const char* const digits = m_lines.At();
        long value = 0;
        const int count = ParseLongFastA(digits, value);
        if (count > kMostDigits || !IsDigit(*digits) || value < 0 || static_cast<unsigned long>(value) >= limit)
            FailAtWord(expected);
        if (!m_lines.Pass(count))
            FailAtWord(expected);
        return static_cast<Index>(value);
    }

    double ReadCoordinate(const std::string& expected)
    {
        double value = 0;
        const int count = ParseFloatingPointFastA(m_lines.At(), value);
        if (count == 0 || !(std::fabs(value) <= kLargestCoordinate) || !m_lines.Pass(count))
            FailAtWord(expected + ", a number between -1e9 and 1e9");
        return value;
    }

    /// A facet may be followed by a colour: up to four numbers, which nobody here needs.
    void RequireColour()
    {
        for (int i = 0; i < 4 && !m_lines.IsAtEnd(); ++i) {
            double ignored = 0;
            if (!m_lines.Pass(ParseFloatingPointFastA(m_lines.At(), ignored)))
                FailAtWord("the end of the line or a colour");
        }
        RequireEndOfLine();
    }

    void RequireEndOfLine() const
    {
        if (!m_lines.IsAtEnd())
            FailAtWord("the end of the line");
    }

    [[noreturn]] void FailAtWord(const std::string& expected) const { Fail(expected + ", found " + m_lines.Word()); }
    [[noreturn]] void Fail(const std::string& expected) const { throw InputError(m_path, m_lines.Number(), expected); }

    const std::string& m_path;
    ProgressBar& m_progress;
    LineReader m_lines;
    Index m_pointCount = 0;
    Index m_facetCount = 0;
    Mesh m_mesh;
};

} // namespace

Mesh ReadMesh(const std::string& path, CADUNITS fileUnits, ProgressBar& progress)
{
    Mesh mesh = OffReader(path, progress).Read();
    if (mesh.facets.empty())
        throw InputError(path, 2, "a mesh with at least one facet");
    PointsConvertUnits(mesh.points.data(), mesh.points.size(), fileUnits, CADUNITS_MILLIMETERS);
    return mesh;
}

} // namespace part_report
