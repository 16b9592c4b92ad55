#pragma once
// Helpers of the tests of vectors and matrices: construction, comparison bit by bit, and plain transcriptions of the
// algorithms with explicit row permutations.

#include <cadgeom/linalg/dynamic_matrix.h>

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace matrix_testing {

using Rows = std::vector<std::vector<double>>;

inline constexpr double kThreshold = 1.1920928955078125e-7;

inline CVector MakeVector(const std::vector<double>& values)
{
    CVector vector(static_cast<int>(values.size()));
    for (int i = 0; i < vector.GetNumElements(); ++i) {
        vector[i] = values[static_cast<std::size_t>(i)];
    }
    return vector;
}

inline CMatrix MakeMatrix(const Rows& rows)
{
    CMatrix matrix(static_cast<int>(rows.size()), rows.empty() ? 0 : static_cast<int>(rows[0].size()));
    for (int i = 0; i < matrix.GetNumRows(); ++i) {
        for (int j = 0; j < matrix.GetNumColumns(); ++j) {
            matrix(i, j) = rows[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
        }
    }
    return matrix;
}

inline std::vector<double> ToValues(const CVector& vector)
{
    std::vector<double> values;
    for (int i = 0; i < vector.GetNumElements(); ++i) {
        values.push_back(vector[i]);
    }
    return values;
}

inline Rows ToRows(const CMatrix& matrix)
{
    Rows rows(static_cast<std::size_t>(matrix.GetNumRows()));
    for (int i = 0; i < matrix.GetNumRows(); ++i) {
        for (int j = 0; j < matrix.GetNumColumns(); ++j) {
            rows[static_cast<std::size_t>(i)].push_back(matrix(i, j));
        }
    }
    return rows;
}

/// Same bits, any not-a-number being as good as another.
inline bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

inline bool SameBits(const std::vector<double>& a, const std::vector<double>& b)
{
    bool isSame = a.size() == b.size();
    for (std::size_t i = 0; isSame && i < a.size(); ++i) {
        isSame = SameBits(a[i], b[i]);
    }
    return isSame;
}

inline bool SameBits(const Rows& a, const Rows& b)
{
    bool isSame = a.size() == b.size();
    for (std::size_t i = 0; isSame && i < a.size(); ++i) {
        isSame = SameBits(a[i], b[i]);
    }
    return isSame;
}

/// What the elements of a random matrix look like.
enum class Flavour {
    eReal,    ///< within -1 ... 1
    eInteger, ///< within -3 ... 3
    eSparse,  ///< mostly zeros of either sign
    eExtreme, ///< infinities, not-a-numbers, denormals and zeros among ordinary values
    eFlavours
};

inline double RandomElement(std::mt19937& random, Flavour flavour)
{
    const double value = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
    const int choice = std::uniform_int_distribution<int>(0, 19)(random);
    switch (flavour) {
    case Flavour::eInteger:
        return choice % 7 - 3;
    case Flavour::eSparse:
        return choice < 13 ? (choice < 10 ? 0.0 : -0.0) : (choice < 17 ? 1.0 : value);
    case Flavour::eExtreme: {
        const double special[] = {std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN(),
                                  std::numeric_limits<double>::denorm_min(),
                                  std::numeric_limits<double>::max(),
                                  kThreshold,
                                  0.0};
        return choice < 7 ? special[choice] : value;
    }
    default:
        return value;
    }
}

inline Rows RandomRows(std::mt19937& random, int rows, int columns, Flavour flavour)
{
    Rows result(static_cast<std::size_t>(rows), std::vector<double>(static_cast<std::size_t>(columns)));
    for (auto& row : result) {
        for (double& element : row) {
            element = RandomElement(random, flavour);
        }
    }
    return result;
}

namespace plain {

/// Moves the row of the largest candidate to place k of the permutation and returns that candidate's absolute value.
inline double ChoosePivot(const Rows& a, std::vector<unsigned>& perm, std::size_t k)
{
    std::size_t best = k;
    double largest = std::fabs(a[perm[k]][k]);
    for (std::size_t i = k + 1; i < perm.size(); ++i) {
        if (std::fabs(a[perm[i]][k]) > largest) {
            largest = std::fabs(a[perm[i]][k]);
            best = i;
        }
    }
    std::swap(perm[k], perm[best]);
    return largest;
}

inline std::vector<unsigned> NoPermutation(std::size_t n)
{
    std::vector<unsigned> perm(n);
    std::iota(perm.begin(), perm.end(), 0U);
    return perm;
}

inline Rows Inverse(Rows a)
{
    const std::size_t n = a.size();
    Rows identity(n, std::vector<double>(n, 0.0));
    for (std::size_t i = 0; i < n; ++i) {
        identity[i][i] = 1.0;
    }
    std::vector<unsigned> perm = NoPermutation(n);
    for (std::size_t k = 0; k < n; ++k) {
        ChoosePivot(a, perm, k);
        const unsigned p = perm[k];
        const double s = 1.0 / a[p][k];
        for (std::size_t j = k + 1; j < n; ++j) {
            a[p][j] = a[p][j] * s;
        }
        for (std::size_t j = 0; j < n; ++j) {
            identity[p][j] = identity[p][j] * s;
        }
        for (std::size_t i = k + 1; i < n; ++i) {
            const unsigned r = perm[i];
            const double f = a[r][k];
            for (std::size_t j = k + 1; j < n; ++j) {
                a[r][j] = a[r][j] - f * a[p][j];
            }
            for (std::size_t j = 0; j < n; ++j) {
                identity[r][j] = identity[r][j] - f * identity[p][j];
            }
        }
    }
    for (std::size_t k = n; k-- > 1;) {
        for (std::size_t i = k; i-- > 0;) {
            const double f = a[perm[i]][k];
            for (std::size_t j = 0; j < n; ++j) {
                identity[perm[i]][j] = identity[perm[i]][j] - f * identity[perm[k]][j];
            }
        }
    }
    Rows result(n);
    for (std::size_t i = 0; i < n; ++i) {
        result[i] = identity[perm[i]];
    }
    return result;
}

inline Rows Minor(const Rows& a, std::size_t row, std::size_t column)
{
    Rows minor;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (i != row) {
            minor.push_back(a[i]);
            minor.back().erase(minor.back().begin() + static_cast<std::ptrdiff_t>(column));
        }
    }
    return minor;
}

inline double Cofactors(const Rows& a)
{
    switch (a.size()) {
    case 0:
        return 0.0;
    case 1:
        return a[0][0];
    case 2:
        return a[0][0] * a[1][1] - a[1][0] * a[0][1];
    case 3:
        return a[0][0] * (a[2][2] * a[1][1] - a[2][1] * a[1][2]) - a[0][1] * (a[2][2] * a[1][0] - a[2][0] * a[1][2]) +
               a[0][2] * (a[2][1] * a[1][0] - a[2][0] * a[1][1]);
    default:
        break;
    }
    double sum = 0.0;
    for (std::size_t j = 0; j < a.size(); ++j) {
        sum = sum + (j % 2 == 0 ? 1.0 : -1.0) * a[0][j] * Cofactors(Minor(a, 0, j));
    }
    return sum;
}

/// Triangular form in a permutation; false at a column without a candidate above the threshold.
inline bool Eliminate(Rows& a, std::vector<double>& b, std::vector<unsigned>& perm)
{
    perm = NoPermutation(a.size());
    for (std::size_t k = 0; k < a.size(); ++k) {
        if (ChoosePivot(a, perm, k) <= kThreshold) {
            return false;
        }
        const unsigned p = perm[k];
        for (std::size_t i = k + 1; i < a.size(); ++i) {
            const unsigned r = perm[i];
            const double f = a[r][k] / a[p][k];
            for (std::size_t j = k + 1; j < a.size(); ++j) {
                a[r][j] = a[r][j] - f * a[p][j];
            }
            b[r] = b[r] - f * b[p];
        }
    }
    return true;
}

inline double Determinant(const Rows& a)
{
    if (a.size() <= 3) {
        return Cofactors(a);
    }
    Rows reduced = a;
    std::vector<double> b(a.size());
    std::vector<unsigned> perm;
    if (!Eliminate(reduced, b, perm)) {
        return Cofactors(a);
    }
    double product = 1.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        product = product * reduced[perm[i]][i];
    }
    return product;
}

inline std::size_t ZeroColumn(const Rows& a)
{
    std::size_t j = 0;
    for (; j < a.size(); ++j) {
        bool isZero = true;
        for (const auto& row : a) {
            isZero = isZero && std::fabs(row[j]) <= kThreshold;
        }
        if (isZero) {
            break;
        }
    }
    return j;
}

inline bool SolveHomogeneous(const Rows& a, std::vector<double>& x);

inline bool Solve(const Rows& a, const std::vector<double>& b, std::vector<double>& x)
{
    bool isZero = true;
    for (const double value : b) {
        isZero = isZero && !(std::fabs(value) > kThreshold);
    }
    if (isZero) {
        return SolveHomogeneous(a, x);
    }
    const std::size_t n = a.size();
    const double d = Determinant(a);
    if (std::fabs(d) > kThreshold) {
        Rows reduced = a;
        std::vector<double> right = b;
        std::vector<unsigned> perm;
        if (!Eliminate(reduced, right, perm)) {
            return false;
        }
        x.assign(n, 0.0);
        for (std::size_t i = n; i-- > 0;) {
            const unsigned p = perm[i];
            double sum = 0.0;
            for (std::size_t j = i + 1; j < n; ++j) {
                sum = sum + reduced[p][j] * x[j];
            }
            if (std::fabs(reduced[p][i]) <= kThreshold) {
                return false;
            }
            x[i] = (right[p] - sum) / reduced[p][i];
        }
        return true;
    }
    if (std::fabs(d) <= kThreshold) {
        const std::size_t j = ZeroColumn(a);
        for (std::size_t i = 0; j < n && i < n; ++i) {
            std::vector<double> rest = b;
            rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
            if (Solve(Minor(a, i, j), rest, x)) {
                x.insert(x.begin() + static_cast<std::ptrdiff_t>(j), 0.0);
                return true;
            }
        }
    }
    return false;
}

inline bool SolveHomogeneous(const Rows& a, std::vector<double>& x)
{
    const std::size_t n = a.size();
    if (n > 0 && std::fabs(Determinant(a)) <= kThreshold) {
        const std::size_t j = ZeroColumn(a);
        for (std::size_t i = 0; j < n && i < n; ++i) {
            if (SolveHomogeneous(Minor(a, i, j), x)) {
                x.insert(x.begin() + static_cast<std::ptrdiff_t>(j), 0.0);
                return true;
            }
        }
    }
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
            std::vector<double> c;
            for (std::size_t r = 0; r < n; ++r) {
                if (r != i) {
                    c.push_back(-a[r][j]);
                }
            }
            if (Solve(Minor(a, i, j), c, x)) {
                x.insert(x.begin() + static_cast<std::ptrdiff_t>(j), 1.0);
                return true;
            }
        }
    }
    return false;
}

} // namespace plain
} // namespace matrix_testing
