#pragma once
/// @file
/// Real roots of polynomials: closed forms up to degree 4, companion matrices for cubics and quartics, and bisection
/// between the roots of the derivatives for any degree. Read roots/polynomial.h first: it holds the polynomial
/// itself.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/linalg/dynamic_matrix.h>
#include <cadgeom/linalg/dynamic_vector.h>
#include <cadgeom/roots/polynomial.h>

#include <memory>

/// Finds real roots and keeps those of its last query. Complex roots are never reported.
///
/// Coefficients are passed lowest power first: c0 + c1 x + c2 x^2 + ... The object's epsilon is "zero" for
/// coefficients, discriminants and values: absolute, not scaled, and compared as |value| <= epsilon unless a member
/// says otherwise. An epsilon of 0 or below is allowed; it recognises exact zeros alone, or none.
///
/// Each query overwrites the number of roots and the roots found before; entries of the buffer beyond the number are
/// stale. Not-a-number and infinite coefficients end like any others, with roots that mean nothing or none.
///
/// *Copies* share one buffer of roots with their original: a query of either writes what the other reads. The buffer
/// lives as long as one of them. A query that needs a larger buffer takes a new one and leaves the other's alone.
///
/// *Threads*: distinct objects may be used from distinct threads, unless they are copies of one another.
class CADGEOM_API PolynomialRoots {
public:
    /// An object without roots, for queries of at most 128 iterations.
    explicit PolynomialRoots(double epsilon);
    PolynomialRoots(const PolynomialRoots& other);
    PolynomialRoots& operator=(const PolynomialRoots& other);
    ~PolynomialRoots();

    double Epsilon() const noexcept { return m_epsilon; }
    double& Epsilon() noexcept { return m_epsilon; }
    /// Number of QR steps after which FindE takes the smallest subdiagonal element for zero; 0 and below take it at
    /// once.
    int MaxIterations() const noexcept { return m_maxIterations; }
    int& MaxIterations() noexcept { return m_maxIterations; }

    /// Number of roots that the last query found.
    int GetCount() const noexcept { return m_count; }
    /// The roots of the last query, GetCount() of them.
    const double* GetRoots() const noexcept { return m_roots.get(); }
    /// One root of the last query; 3.4028234663852886e38, the largest single-precision value, outside 0 ... count -
    /// 1.
    double GetRoot(int index) const noexcept;

    /// @name Closed forms
    /// A leading coefficient of absolute value at most epsilon makes the polynomial one of lower degree, except that
    /// a linear one is solved when |c1| >= epsilon.
    /// @return false, with no roots, when no real root was found
    /// @{

    /// Linear: -c0 / c1.
    bool FindA(double c0, double c1);
    /// Quadratic: two roots, the one with the negative square root first, or the double root once.
    bool FindA(double c0, double c1, double c2);
    /// Cubic, by Cardano's formulas: one or three roots; a double root is listed twice. Always true when c3 is not
    /// zero.
    bool FindA(double c0, double c1, double c2, double c3);
    /// Quartic, by Ferrari's method: pairs of roots.
    bool FindA(double c0, double c1, double c2, double c3, double c4);
    /// @}

    /// @name Companion matrices
    /// The real roots are eigenvalues of the companion matrix, found by double-shift QR steps. Convergence is linear;
    /// of cubics with roots a quarter apart some 2 %, of quartics some 7 % take more than 128 steps. Without
    /// convergence within MaxIterations() steps, the smallest subdiagonal element is taken for zero, and the roots are
    /// as near as that. Lower degrees go to the closed forms.
    /// @param doBalancing  scale rows and columns first, so that their norms are within a thousandth of each other
    /// @{

    /// Cubic. When |c0| < epsilon, 0 is a root: it is appended to those of the remaining quadratic, whose result is
    /// returned, so that false may come with the single root 0. False, with the roots of the previous query
    /// untouched, when balancing does not settle in 16 sweeps.
    bool FindE(double c0, double c1, double c2, double c3, bool doBalancing);
    /// Quartic. Balancing that does not settle is taken as it is after 16 sweeps.
    bool FindE(double c0, double c1, double c2, double c3, double c4, bool doBalancing);
    /// @}

    /// @name Bisection
    /// Real roots of a polynomial of any degree, in the order of the interval: between two roots of the derivative
    /// there is at most one. Degree n takes O(n^3) operations for each bit of the result and O(n^2) memory.
    ///
    /// A value within 2^-23 of zero at an end of an interval counts as a root there. A root that lies within epsilon
    /// of its predecessor is dropped. Degree 0 and below has no roots.
    /// @param digits  decimal digits behind the point to which roots are found. What would take more than 2^31
    ///                halvings takes none: roots are then the midpoints between those of the derivative. Halving ends
    ///                when the interval does not shrink any more.
    /// @return whether any root was found
    /// @{

    /// In [-bound, bound], where bound is GetBound(polynomial).
    bool FindB(const Polynomial1& polynomial, int digits);
    /// In [xMin, xMax]. An interval of no width or turned round, and one with not-a-number for an end, holds no
    /// roots; in one of infinite width roots are not-a-numbers.
    bool FindB(const Polynomial1& polynomial, double xMin, double xMax, int digits);
    /// @}

    /// @name Not provided
    /// Always false; nothing changes.
    /// @{
    bool FindE(const Polynomial1& polynomial, bool doBalancing) const noexcept;
    bool FindN(const Polynomial1& polynomial, int digits) const noexcept;
    bool FindN(const Polynomial1& polynomial, double xMin, double xMax, int digits) const noexcept;
    /// @}

    /// The real root r of a r^3 + b r = c. The roots kept are untouched.
    /// @param a, b  positive
    double SpecialCubic(double a, double b, double c) const noexcept;

    /// @name Bounds
    /// 1 + max |ci| / cn over the coefficients below the leading one cn, **with the sign of cn**: a negative leading
    /// coefficient gives a value below 1 that bounds nothing.
    /// @{

    /// |c0| / c1 + 1; -1 when |c1| <= epsilon.
    double GetBound(double c0, double c1) const noexcept;
    /// When |c2| <= epsilon: the root -c0 / c1, kept as the only root, where |c1| >= epsilon; otherwise
    /// 3.4028234663852886e38, with no roots kept.
    double GetBound(double c0, double c1, double c2) noexcept;
    /// When |c3| <= epsilon: that of the first three coefficients.
    double GetBound(double c0, double c1, double c2, double c3) noexcept;
    /// When |c4| <= epsilon: that of the first four coefficients.
    double GetBound(double c0, double c1, double c2, double c3, double c4) noexcept;
    /// @}

    /// Cauchy's bound of the absolute values of all roots: 1 + max |ci / cn|, where leading coefficients of absolute
    /// value at most epsilon do not count. -1 when fewer than two coefficients are left.
    double GetBound(const Polynomial1& polynomial) const;

    /// Number of distinct real roots between t0 and t1, by Sturm's theorem.
    ///
    /// Values of the sequence below epsilon in absolute value count as 0. t0 = -3.4028234663852886e38 and t1 =
    /// +3.4028234663852886e38, the largest single-precision values, stand for minus and plus infinity.
    /// @return -1 for the constant 0; 0 for other constants and for an empty polynomial
    int GetRootCount(const Polynomial1& polynomial, double t0, double t1) const;

    /// Whether all roots, the complex ones included, have a negative real part. True for degree 0 and below.
    bool AllRealPartsNegative(const Polynomial1& polynomial) const;
    /// Whether all roots, the complex ones included, have a positive real part. True for degree 0 and below.
    bool AllRealPartsPositive(const Polynomial1& polynomial) const;

private:
    double GetRowNorm(int row, const CMatrix& A) const noexcept;
    double GetColNorm(int column, const CMatrix& A) const noexcept;
    void ScaleRow(int row, double scale, CMatrix& A) const noexcept;
    void ScaleCol(int column, double scale, CMatrix& A) const noexcept;
    bool IsBalanced3(const CMatrix& A) const noexcept;
    bool Balance3(CMatrix& A) const noexcept;
    bool IsBalancedCompanion3(double a10, double a21, double a02, double a12, double a22) const noexcept;
    bool BalanceCompanion3(CMatrix& A) const noexcept;
    bool QRIteration3(CMatrix& H);
    bool IsBalancedCompanion4(double a10, double a21, double a32, double a03, double a13, double a23,
                              double a33) const noexcept;
    void BalanceCompanion4(CMatrix& A) const noexcept;
    bool QRIteration4(CMatrix& H);
    void GetHouseholderVector(int size, const CadPoint3d<double>& u, CadPoint3d<double>& v) const noexcept;
    void PremultiplyHouseholder(CMatrix& H, CVector& W, int firstRow, int lastRow, int firstColumn, int lastColumn,
                                int size, const CadPoint3d<double>& v) const noexcept;
    void PostmultiplyHouseholder(CMatrix& H, CVector& W, int firstRow, int lastRow, int firstColumn, int lastColumn,
                                 int size, const CadPoint3d<double>& v) const noexcept;
    void FrancisQRStep(CMatrix& H, CVector& W) const noexcept;
    bool Bisection(const Polynomial1& polynomial, double xMin, double xMax, int digits, double& root) const noexcept;

    double m_epsilon;
    int m_count = 0;
    int m_maxRoot;
    std::shared_ptr<double[]> m_roots;
    int m_maxIterations;
};
