#include <cadgeom/linalg/dynamic_matrix.h>

#include <cadgeom/core/tolerance.h>

#include "linalg/determinant.h"
#include "linalg/elimination.h"
#include "linalg/storage.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

// Method: Gaussian elimination for regular systems. Systems whose determinant vanishes are searched for a solution
// with one unknown fixed and one equation left out, recursively.
//
// Weak spot: that search is factorial in the number of vanishing columns. It remembers the subsystems that failed,
// which makes it polynomial for the matrices met in practice (zero, diagonal, few distinct rows), and it gives up
// when the steps spent exceed a bound that no successful search of reasonable size comes near.

namespace cadgeom::detail {
namespace {

/// Steps after which a search gives up: about a second.
constexpr double kSearchSteps = 268435456.0;

/// A search may always eliminate this many matrices of the size it started with.
constexpr double kEliminationsOfFullSize = 16.0;

/// Remembering a subsystem costs memory; counted as steps for each of its elements it stays within some 100 MB.
constexpr double kStepsPerRememberedElement = 64.0;

/// Forming a subsystem and looking it up, counted as steps for each of its elements.
constexpr double kStepsPerCopiedElement = 4.0;

/// Subsystems below this size are solved anew rather than looked up.
constexpr int kSmallestRemembered = 4;

bool IsNegligible(double value)
{
    return std::fabs(value) <= kSingleEpsilon;
}

bool IsZeroVector(const double* values, int n)
{
    return std::none_of(values, values + n, [](double value) { return std::fabs(value) > kSingleEpsilon; });
}

/// First column without an element above the threshold; n when there is none.
int FirstZeroColumn(const double* a, int n)
{
    for (int j = 0; j < n; ++j) {
        int i = 0;
        while (i < n && IsNegligible(a[static_cast<std::ptrdiff_t>(i) * n + j])) {
            ++i;
        }
        if (i == n) {
            return j;
        }
    }
    return n;
}

/// Copies a square matrix without one row and one column.
void CopyMinor(double* minor, const double* a, int n, int row, int column)
{
    for (int i = 0; i < n; ++i, a += n) {
        if (i != row) {
            CopyElements(minor, a, column);
            CopyElements(minor + column, a + column + 1, n - 1 - column);
            minor += n - 1;
        }
    }
}

/// Solves an upper triangular system, its right-hand side in column n. False at a negligible pivot.
bool BackSubstitute(const double* system, int n, double* x)
{
    const std::ptrdiff_t stride = n + 1;
    for (int i = n - 1; i >= 0; --i) {
        const double* const row = system + i * stride;
        if (IsNegligible(row[i])) {
            return false;
        }
        double known = 0.0;
        for (int j = i + 1; j < n; ++j) {
            known += row[j] * x[j];
        }
        x[i] = (row[n] - known) / row[i];
    }
    return true;
}

/// One search for a solution; it lives as long as the outermost call.
class SystemSolver {
public:
    explicit SystemSolver(int n) : m_stepsLeft(std::max(kSearchSteps, kEliminationsOfFullSize * Cube(n))) {}

    /// Solves a x = b for an n x n matrix.
    bool Solve(const double* a, const double* b, int n, double* x);
    /// Looks for a non-trivial x with a x = 0.
    bool SolveHomogeneous(const double* a, int n, double* x);

private:
    enum class Outcome {
        eSolved,
        eFailed,
        eSingular
    };

    static double Square(int n) { return static_cast<double>(n) * n; }
    static double Cube(int n) { return Square(n) * n; }

    Outcome SolveRegular(const double* a, const double* b, int n, double* x);
    bool SolveWithFixedUnknown(const double* a, const double* b, int n, int fixed, double value, double* x);
    bool SolveSubsystem(const double* a, const double* b, int n, double* x);

    double m_stepsLeft;
    std::set<std::string> m_failed; ///< matrix and right-hand side, as bytes
};

/// Handles the case |determinant| > 2^-23. From 4 x 4 up the determinant is made of the pivots that the solution
/// needs, so that one elimination serves both.
SystemSolver::Outcome SystemSolver::SolveRegular(const double* a, const double* b, int n, double* x)
{
    Scratch memory(static_cast<std::size_t>(n) * static_cast<std::size_t>(n + 1));
    double* const system = memory.Data();
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        CopyElements(system + i * (n + 1), a + i * n, n);
        system[i * (n + 1) + n] = b[i];
    }
    const bool isComplete = EliminateBelow(system, n, n + 1, kSingleEpsilon).isComplete;
    m_stepsLeft -= Cube(n);

    double determinant;
    if (n <= 3) {
        determinant = SmallDeterminant(a, n, n);
    } else if (isComplete) {
        determinant = DiagonalProduct(system, n + 1, n);
    } else {
        const Determinant expanded = ExpandedDeterminant(a, n, n);
        m_stepsLeft -= expanded.steps;
        determinant = expanded.value;
    }
    if (IsNegligible(determinant)) {
        return Outcome::eSingular;
    }
    const bool isSolved = !std::isnan(determinant) && isComplete && BackSubstitute(system, n, x);
    return isSolved ? Outcome::eSolved : Outcome::eFailed;
}

bool SystemSolver::Solve(const double* a, const double* b, int n, double* x)
{
    if (IsZeroVector(b, n)) {
        return SolveHomogeneous(a, n, x);
    }
    const Outcome outcome = SolveRegular(a, b, n, x);
    if (outcome != Outcome::eSingular) {
        return outcome == Outcome::eSolved;
    }
    const int zeroColumn = FirstZeroColumn(a, n);
    return zeroColumn < n && SolveWithFixedUnknown(a, b, n, zeroColumn, 0.0, x);
}

bool SystemSolver::SolveHomogeneous(const double* a, int n, double* x)
{
    const int zeroColumn = FirstZeroColumn(a, n);
    if (zeroColumn < n) {
        const Determinant determinant = ComputeDeterminant(a, n, n);
        m_stepsLeft -= determinant.steps;
        if (IsNegligible(determinant.value) && SolveWithFixedUnknown(a, nullptr, n, zeroColumn, 0.0, x)) {
            return true;
        }
    }
    Scratch negatedColumn(static_cast<std::size_t>(n));
    for (int j = 0; j < n && m_stepsLeft > 0.0; ++j) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
            negatedColumn.Data()[i] = a[i * n + j] * -1.0;
        }
        if (SolveWithFixedUnknown(a, negatedColumn.Data(), n, j, 1.0, x)) {
            return true;
        }
    }
    return false;
}

/// Solves the system without the column of one unknown and without one equation: the first for which this succeeds.
/// @param b  null for the homogeneous system
bool SystemSolver::SolveWithFixedUnknown(const double* a, const double* b, int n, int fixed, double value, double* x)
{
    const int size = n - 1;
    Scratch minor(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    Scratch rest(static_cast<std::size_t>(size));
    for (int i = 0; i < n && m_stepsLeft > 0.0; ++i) {
        m_stepsLeft -= kStepsPerCopiedElement * Square(size);
        CopyMinor(minor.Data(), a, n, i, fixed);
        if (b != nullptr) {
            CopyElements(rest.Data(), b, i);
            CopyElements(rest.Data() + i, b + i + 1, size - i);
        }
        if (SolveSubsystem(minor.Data(), b != nullptr ? rest.Data() : nullptr, size, x)) {
            std::copy_backward(x + fixed, x + size, x + n);
            x[fixed] = value;
            return true;
        }
    }
    return false;
}

/// Solve or, for a null b, SolveHomogeneous, unless the same subsystem has failed before.
bool SystemSolver::SolveSubsystem(const double* a, const double* b, int n, double* x)
{
    const auto solve = [&] { return b != nullptr ? Solve(a, b, n, x) : SolveHomogeneous(a, n, x); };
    if (n < kSmallestRemembered) {
        return solve();
    }
    const auto bytes = [](const double* values, std::size_t count) {
        return std::string(reinterpret_cast<const char*>(values), count * sizeof(double));
    };
    const auto size = static_cast<std::size_t>(n);
    const auto key = [&] { return bytes(a, size * size) + (b != nullptr ? bytes(b, size) : std::string()); };
    if (!m_failed.empty() && m_failed.count(key()) != 0) {
        return false;
    }
    if (solve()) {
        return true;
    }
    m_stepsLeft -= kStepsPerRememberedElement * Square(n);
    m_failed.insert(key());
    return false;
}

} // namespace
} // namespace cadgeom::detail

bool CMatrix::SolveLinearSystem(const CVector& b, CVector& solution) const
{
    if (m_rows != m_columns) {
        return false;
    }
    // Asked of the vector itself, so that an empty one is zero, too, and not read.
    if (b.IsZero(cadgeom::detail::kSingleEpsilon)) {
        return SolveLinearSystem(solution);
    }
    cadgeom::detail::Scratch x(static_cast<std::size_t>(m_rows));
    if (!cadgeom::detail::SystemSolver(m_rows).Solve(m_data, b.m_data, m_rows, x.Data())) {
        return false;
    }
    solution.SetSize(m_rows);
    cadgeom::detail::CopyElements(solution.m_data, x.Data(), m_rows);
    return true;
}

bool CMatrix::SolveLinearSystem(CVector& solution) const
{
    if (m_rows != m_columns) {
        return false;
    }
    cadgeom::detail::Scratch x(static_cast<std::size_t>(m_rows));
    if (!cadgeom::detail::SystemSolver(m_rows).SolveHomogeneous(m_data, m_rows, x.Data())) {
        return false;
    }
    solution.SetSize(m_rows);
    cadgeom::detail::CopyElements(solution.m_data, x.Data(), m_rows);
    return true;
}
