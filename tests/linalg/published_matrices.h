#pragma once
// Reads the published matrices with their exact determinants and inverses.

#include "linalg/matrix_testing.h"

#include <fstream>
#include <sstream>
#include <string>

namespace matrix_testing {

struct PublishedMatrix {
    std::string name;
    int exchangeSign; ///< sign of the row exchanges of partial pivoting; 0 when some pivot is too small to be used
    double determinant;
    Rows rows;
    Rows inverse; ///< empty for a singular matrix
};

inline Rows ReadRows(std::istream& stream, std::size_t n)
{
    Rows rows(n, std::vector<double>(n));
    for (auto& row : rows) {
        for (double& element : row) {
            stream >> element;
        }
    }
    return rows;
}

inline std::vector<PublishedMatrix> ReadPublishedMatrices()
{
    std::ifstream file(std::string(CADGEOM_TEST_DATA_DIR) + "/matrices/matrices.txt");
    std::stringstream text;
    for (std::string line; std::getline(file, line);) {
        if (line[0] != '#') {
            text << line << '\n';
        }
    }
    std::vector<PublishedMatrix> matrices;
    std::string word;
    while (text >> word) {
        PublishedMatrix matrix;
        std::size_t n = 0;
        text >> matrix.name >> n >> matrix.exchangeSign >> matrix.determinant;
        matrix.rows = ReadRows(text, n);
        text >> word;
        if (word == "inverse") {
            matrix.inverse = ReadRows(text, n);
        }
        matrices.push_back(matrix);
    }
    return matrices;
}

/// Largest sum of absolute values along a row.
inline double RowSumNorm(const Rows& rows)
{
    double norm = 0.0;
    for (const auto& row : rows) {
        double sum = 0.0;
        for (const double element : row) {
            sum += std::fabs(element);
        }
        norm = std::max(norm, sum);
    }
    return norm;
}

/// Exact determinant of a small integer matrix, by the permutations.
inline long long ExactDeterminant(const Rows& rows)
{
    if (rows.empty()) {
        return 1;
    }
    long long sum = 0;
    for (std::size_t j = 0; j < rows.size(); ++j) {
        const auto element = static_cast<long long>(rows[0][j]);
        if (element != 0) {
            sum += (j % 2 == 0 ? element : -element) * ExactDeterminant(plain::Minor(rows, 0, j));
        }
    }
    return sum;
}

} // namespace matrix_testing
