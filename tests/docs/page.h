#pragma once
/// @file
/// Reads the tables of the manual's pages, so that tests can hold them against the code.

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace docs {

using Row = std::vector<std::string>;

inline std::string Trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The cells of a line `| a | b |`; none for another line.
inline Row SplitRow(const std::string& line)
{
    Row cells;
    if (line.empty() || line[0] != '|') {
        return cells;
    }
    for (std::size_t begin = 1; begin < line.size();) {
        const std::size_t end = line.find('|', begin);
        if (end == std::string::npos) {
            break;
        }
        cells.push_back(Trimmed(line.substr(begin, end - begin)));
        begin = end + 1;
    }
    return cells;
}

/// The rows, without headings, of all tables of a page whose first heading is `title`.
inline std::vector<Row> ReadTables(const std::string& page, const std::string& title)
{
    std::ifstream file(std::string(CADGEOM_DOCS_DIR) + "/" + page);
    if (!file) {
        throw std::runtime_error("there is no page " + page);
    }
    std::vector<Row> rows;
    bool isWanted = false;
    for (std::string line; std::getline(file, line);) {
        const Row cells = SplitRow(line);
        if (cells.empty()) {
            isWanted = false;
        } else if (cells[0] == title) {
            isWanted = true;
        } else if (isWanted && cells[0].find_first_not_of("-:") != std::string::npos) {
            rows.push_back(cells);
        }
    }
    return rows;
}

/// A number as the pages write it: 1e-6, 0.25, 2^-23.
inline double ParseValue(const std::string& text)
{
    const std::size_t power = text.find("2^-");
    return power == 0 ? 1.0 / static_cast<double>(1ULL << std::stoul(text.substr(3))) : std::stod(text);
}

} // namespace docs
