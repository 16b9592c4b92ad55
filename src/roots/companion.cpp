#include <cadgeom/roots/polynomial_roots.h>

#include <algorithm>
#include <cmath>

// Method: the roots of a monic polynomial are the eigenvalues of its companion matrix, an upper Hessenberg matrix
// that implicit double-shift QR steps (Francis) reduce to blocks of one or two rows. Blocks of two rows give their
// characteristic quadratics to the closed form, so that complex pairs drop out there.
//
// Weak spot: the first vector of a step takes h00 h11 where the shifted square of the matrix has h00^2. The steps
// remain similarities, but convergence is linear rather than quadratic, and slow for some matrices.
//
// Balancing scales rows and columns to like norms by a diagonal similarity. For companion matrices only the entries
// that are not zero are tracked.

namespace {

constexpr double kBalanceTolerance = 0.001;
constexpr int kBalanceSweeps = 16;

bool IsNearOne(double ratio)
{
    return std::fabs(1.0 - ratio) <= kBalanceTolerance;
}

/// Monic characteristic polynomial c0 + c1 x + x^2 of the 2 x 2 block at (first, first).
struct BlockPolynomial {
    double c0;
    double c1;

    BlockPolynomial(const CMatrix& H, int first)
        : c0(H(first, first) * H(first + 1, first + 1) - H(first, first + 1) * H(first + 1, first)),
          c1(-(H(first, first) + H(first + 1, first + 1)))
    {}
};

double WithSignOf(double magnitude, double initial)
{
    return initial >= 0.0 ? magnitude : -magnitude;
}

} // namespace

bool PolynomialRoots::FindE(double c0, double c1, double c2, double c3, bool doBalancing)
{
    if (std::fabs(c0) < m_epsilon) {
        const bool isFound = FindA(c1, c2, c3);
        m_roots[m_count++] = 0.0;
        return isFound;
    }
    if (!(std::fabs(c3) > m_epsilon)) {
        return FindA(c0, c1, c2);
    }
    CMatrix H(3, 3);
    H(0, 0) = 0.0;
    H(0, 1) = 0.0;
    H(0, 2) = -c0 / c3;
    H(1, 0) = 1.0;
    H(1, 1) = 0.0;
    H(1, 2) = -c1 / c3;
    H(2, 0) = 0.0;
    H(2, 1) = 1.0;
    H(2, 2) = -c2 / c3;
    return (!doBalancing || BalanceCompanion3(H)) && QRIteration3(H);
}

bool PolynomialRoots::FindE(double c0, double c1, double c2, double c3, double c4, bool doBalancing)
{
    if (!(std::fabs(c4) > m_epsilon)) {
        return FindA(c0, c1, c2, c3);
    }
    CMatrix H(4, 4);
    std::fill_n(&H(0, 0), H.GetNumElements(), 0.0);
    H(1, 0) = 1.0;
    H(2, 1) = 1.0;
    H(3, 2) = 1.0;
    H(0, 3) = -c0 / c4;
    H(1, 3) = -c1 / c4;
    H(2, 3) = -c2 / c4;
    H(3, 3) = -c3 / c4;
    if (doBalancing) {
        BalanceCompanion4(H);
    }
    return QRIteration4(H);
}

double PolynomialRoots::GetRowNorm(int row, const CMatrix& A) const noexcept
{
    double norm = std::fabs(A(row, 0));
    for (int j = 1; j < A.GetNumColumns(); ++j) {
        norm = std::max(norm, std::fabs(A(row, j)));
    }
    return norm;
}

double PolynomialRoots::GetColNorm(int column, const CMatrix& A) const noexcept
{
    double norm = std::fabs(A(0, column));
    for (int i = 1; i < A.GetNumRows(); ++i) {
        norm = std::max(norm, std::fabs(A(i, column)));
    }
    return norm;
}

void PolynomialRoots::ScaleRow(int row, double scale, CMatrix& A) const noexcept
{
    for (int j = 0; j < A.GetNumColumns(); ++j) {
        A(row, j) *= scale;
    }
}

void PolynomialRoots::ScaleCol(int column, double scale, CMatrix& A) const noexcept
{
    for (int i = 0; i < A.GetNumRows(); ++i) {
        A(i, column) *= scale;
    }
}

bool PolynomialRoots::IsBalanced3(const CMatrix& A) const noexcept
{
    for (int i = 0; i < 3; ++i) {
        if (!IsNearOne(GetColNorm(i, A) / GetRowNorm(i, A))) {
            return false;
        }
    }
    return true;
}

bool PolynomialRoots::Balance3(CMatrix& A) const noexcept
{
    for (int sweep = 0; sweep < kBalanceSweeps; ++sweep) {
        for (int i = 0; i < 3; ++i) {
            const double scale = std::sqrt(GetColNorm(i, A) / GetRowNorm(i, A));
            ScaleRow(i, scale, A);
            ScaleCol(i, 1.0 / scale, A);
        }
        if (IsBalanced3(A)) {
            return true;
        }
    }
    return false;
}

bool PolynomialRoots::IsBalancedCompanion3(double a10, double a21, double a02, double a12, double a22) const noexcept
{
    return IsNearOne(a10 / a02) && IsNearOne(a21 / std::max(a10, a12)) &&
           IsNearOne(std::max({a02, a12, a22}) / std::max(a21, a22));
}

bool PolynomialRoots::BalanceCompanion3(CMatrix& A) const noexcept
{
    double a10 = std::fabs(A(1, 0));
    double a21 = std::fabs(A(2, 1));
    double a02 = std::fabs(A(0, 2));
    double a12 = std::fabs(A(1, 2));
    const double a22 = std::fabs(A(2, 2));
    bool isBalanced = false;
    for (int sweep = 0; sweep < kBalanceSweeps && !isBalanced; ++sweep) {
        a02 *= std::sqrt(a10 / a02);
        a10 = a02;

        const double s1 = std::sqrt(a21 / std::max(a10, a12));
        a12 *= s1;
        a21 /= s1;
        a10 *= s1;

        const double s2 = std::sqrt(std::max({a02, a12, a22}) / std::max(a21, a22));
        a21 *= s2;
        a02 /= s2;
        a12 /= s2;

        isBalanced = IsBalancedCompanion3(a10, a21, a02, a12, a22);
    }
    if (isBalanced) {
        A(1, 0) = WithSignOf(a10, A(1, 0));
        A(2, 1) = WithSignOf(a21, A(2, 1));
        A(0, 2) = WithSignOf(a02, A(0, 2));
        A(1, 2) = WithSignOf(a12, A(1, 2));
        A(2, 2) = WithSignOf(a22, A(2, 2));
    }
    return isBalanced;
}

bool PolynomialRoots::IsBalancedCompanion4(double a10, double a21, double a32, double a03, double a13, double a23,
                                           double a33) const noexcept
{
    return IsNearOne(a10 / a03) && IsNearOne(a21 / std::max(a10, a13)) && IsNearOne(a32 / std::max(a21, a23)) &&
           IsNearOne(std::max({a03, a13, a23, a33}) / std::max(a32, a33));
}

void PolynomialRoots::BalanceCompanion4(CMatrix& A) const noexcept
{
    double a10 = std::fabs(A(1, 0));
    double a21 = std::fabs(A(2, 1));
    double a32 = std::fabs(A(3, 2));
    double a03 = std::fabs(A(0, 3));
    double a13 = std::fabs(A(1, 3));
    double a23 = std::fabs(A(2, 3));
    const double a33 = std::fabs(A(3, 3));
    bool isBalanced = false;
    for (int sweep = 0; sweep < kBalanceSweeps && !isBalanced; ++sweep) {
        a03 *= std::sqrt(a10 / a03);
        a10 = a03;

        const double s1 = std::sqrt(a21 / std::max(a10, a13));
        a13 *= s1;
        a21 /= s1;
        a10 *= s1;

        const double s2 = std::sqrt(a32 / std::max(a21, a23));
        a23 *= s2;
        a21 *= s2;
        a32 /= s2;

        const double s3 = std::sqrt(std::max({a03, a13, a23, a33}) / std::max(a32, a33));
        a32 *= s3;
        a23 /= s3;
        a13 /= s3;
        a03 /= s3;

        isBalanced = IsBalancedCompanion4(a10, a21, a32, a03, a13, a23, a33);
    }
    A(1, 0) = WithSignOf(a10, A(1, 0));
    A(2, 1) = WithSignOf(a21, A(2, 1));
    A(3, 2) = WithSignOf(a32, A(3, 2));
    A(0, 3) = WithSignOf(a03, A(0, 3));
    A(1, 3) = WithSignOf(a13, A(1, 3));
    A(2, 3) = WithSignOf(a23, A(2, 3));
    A(3, 3) = WithSignOf(a33, A(3, 3));
}

bool PolynomialRoots::QRIteration3(CMatrix& H)
{
    const auto isNegligible = [&](int row) {
        return std::fabs(H(row, row - 1)) <= m_epsilon * (std::fabs(H(row - 1, row - 1)) + std::fabs(H(row, row)));
    };
    // The roots of the block of two rows come first, then the single eigenvalue.
    const auto split = [&](int block, int single) {
        const BlockPolynomial polynomial(H, block);
        FindA(polynomial.c0, polynomial.c1, 1.0);
        m_roots[m_count++] = H(single, single);
        return true;
    };

    CVector W(3);
    for (int i = 0; i < m_maxIterations; ++i) {
        if (isNegligible(1)) {
            return split(1, 0);
        }
        if (isNegligible(2)) {
            return split(0, 2);
        }
        FrancisQRStep(H, W);
    }
    return std::fabs(H(2, 1)) >= std::fabs(H(1, 0)) ? split(1, 0) : split(0, 2);
}

bool PolynomialRoots::QRIteration4(CMatrix& H)
{
    const auto isNegligible = [&](int row) {
        return std::fabs(H(row, row - 1)) <= m_epsilon * (std::fabs(H(row - 1, row - 1)) + std::fabs(H(row, row)));
    };
    const auto splitSingle = [&](int block, int single) {
        CMatrix rest;
        H.GetSubset(block, block, block + 2, block + 2, rest);
        QRIteration3(rest);
        m_roots[m_count++] = H(single, single);
        return true;
    };
    const auto splitMiddle = [&] {
        const BlockPolynomial upper(H, 0);
        FindA(upper.c0, upper.c1, 1.0);
        const int kept = m_count;
        const double keptRoots[] = {m_roots[0], m_roots[1]};

        const BlockPolynomial lower(H, 2);
        FindA(lower.c0, lower.c1, 1.0);
        for (int i = 0; i < kept; ++i) {
            m_roots[m_count++] = keptRoots[i];
        }
        return m_count > 0;
    };

    CVector W(4);
    for (int i = 0; i < m_maxIterations; ++i) {
        if (isNegligible(1)) {
            return splitSingle(1, 0);
        }
        if (isNegligible(2)) {
            return splitMiddle();
        }
        if (isNegligible(3)) {
            return splitSingle(0, 3);
        }
        FrancisQRStep(H, W);
    }
    int smallest = 1;
    for (int row = 2; row <= 3; ++row) {
        if (std::fabs(H(row, row - 1)) < std::fabs(H(smallest, smallest - 1))) {
            smallest = row;
        }
    }
    if (smallest == 2) {
        return splitMiddle();
    }
    return smallest == 1 ? splitSingle(1, 0) : splitSingle(0, 3);
}

void PolynomialRoots::GetHouseholderVector(int size, const CadPoint3d<double>& u, CadPoint3d<double>& v) const noexcept
{
    double squaredLength = 0.0;
    for (int i = 0; i < size; ++i) {
        squaredLength += u[i] * u[i];
    }
    const double length = std::sqrt(squaredLength);
    v = CadPoint3d<double>(1.0, 0.0, 0.0);
    if (length > m_epsilon) {
        const double divisor = u[0] + WithSignOf(length, u[0]);
        for (int i = 1; i < size; ++i) {
            v[i] = u[i] / divisor;
        }
    }
}

void PolynomialRoots::PremultiplyHouseholder(CMatrix& H, CVector& W, int firstRow, int lastRow, int firstColumn,
                                             int lastColumn, int size, const CadPoint3d<double>& v) const noexcept
{
    const int rows = lastRow - firstRow + 1;
    const int columns = lastColumn - firstColumn + 1;
    double squaredLength = 0.0;
    for (int r = 0; r < size; ++r) {
        squaredLength += v[r] * v[r];
    }
    const double beta = -2.0 / squaredLength;
    for (int c = 0; c < columns; ++c) {
        double sum = 0.0;
        for (int r = 0; r < rows; ++r) {
            sum += v[r] * H(firstRow + r, firstColumn + c);
        }
        W[c] = beta * sum;
    }
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c) {
            H(firstRow + r, firstColumn + c) += v[r] * W[c];
        }
    }
}

void PolynomialRoots::PostmultiplyHouseholder(CMatrix& H, CVector& W, int firstRow, int lastRow, int firstColumn,
                                              int lastColumn, int size, const CadPoint3d<double>& v) const noexcept
{
    const int rows = lastRow - firstRow + 1;
    const int columns = lastColumn - firstColumn + 1;
    double squaredLength = 0.0;
    for (int c = 0; c < size; ++c) {
        squaredLength += v[c] * v[c];
    }
    const double beta = -2.0 / squaredLength;
    for (int r = 0; r < rows; ++r) {
        double sum = 0.0;
        for (int c = 0; c < columns; ++c) {
            sum += H(firstRow + r, firstColumn + c) * v[c];
        }
        W[r] = beta * sum;
    }
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c) {
            H(firstRow + r, firstColumn + c) += W[r] * v[c];
        }
    }
}

void PolynomialRoots::FrancisQRStep(CMatrix& H, CVector& W) const noexcept
{
    const int n = H.GetNumRows();
    CadPoint3d<double> v;
    // Chases the bulge: a reflection of `size` rows from `row` on, and of the columns of the same numbers.
    const auto reflect = [&](const CadPoint3d<double>& u, int size, int row, int firstColumn, int lastRow) {
        GetHouseholderVector(size, u, v);
        const int last = row + size - 1;
        PremultiplyHouseholder(H, W, row, last, firstColumn, n - 1, size, v);
        PostmultiplyHouseholder(H, W, 0, lastRow, row, last, size, v);
    };

    const double trace = H(n - 2, n - 2) + H(n - 1, n - 1);
    const double determinant = H(n - 2, n - 2) * H(n - 1, n - 1) - H(n - 2, n - 1) * H(n - 1, n - 2);
    const CadPoint3d<double> first(H(0, 0) * H(1, 1) + H(0, 1) * H(1, 0) - trace * H(0, 0) + determinant,
                                   H(1, 0) * (H(0, 0) + H(1, 1) - trace), H(1, 0) * H(2, 1));
    reflect(first, 3, 0, 0, n - 1);
    for (int i = 1; i <= n - 3; ++i) {
        const CadPoint3d<double> u(H(i, i - 1), H(i + 1, i - 1), H(i + 2, i - 1));
        reflect(u, 3, i, i - 1, std::min(i + 3, n - 1));
    }
    const CadPoint3d<double> last(H(n - 2, n - 3), H(n - 1, n - 3), 0.0);
    reflect(last, 2, n - 2, n - 3, n - 1);
}
