#include <cadgeom/roots/polynomial_roots.h>

#include <cadgeom/core/tolerance.h>
#include <cadgeom/platform/array.h>

#include <cmath>
#include <memory>
#include <utility>

// Method: Sturm's theorem. The number of distinct real roots between two points is the difference of the numbers of
// sign changes in the sequence p, p', and the negated remainders of the Euclidean algorithm on them.

namespace {

/// Leading coefficients of remainders below this are taken for zero.
constexpr double kRemainderEpsilon = cadgeom::detail::kSingleEpsilon;

/// A Sturm sequence, which owns its polynomials.
class SturmSequence {
public:
    explicit SturmSequence(const Polynomial1& polynomial)
    {
        // Members are destroyed with the array when one of the later allocations fails.
        const Polynomial1* f0 = &Append(Polynomial1(polynomial));
        const Polynomial1* f1 = &Append(f0->GetDerivative());
        while (f1->GetDegree() > 0) {
            Polynomial1 quotient;
            Polynomial1 remainder;
            f0->Divide(*f1, quotient, remainder, kRemainderEpsilon);
            f0 = std::exchange(f1, &Append(-remainder));
        }
    }

    /// Number of changes of sign along the values that `valueOf` gives; those below epsilon count as 0. A zero counts
    /// as a change towards its successor.
    template <class ValueOf>
    int CountChanges(double epsilon, ValueOf valueOf) const
    {
        const auto signedValue = [&](std::int64_t i) {
            const double value = valueOf(*m_members.polynomials[i]);
            return std::fabs(value) < epsilon ? 0.0 : value;
        };
        int changes = 0;
        double previous = signedValue(0);
        for (std::int64_t i = 1; i < m_members.polynomials.GetSize(); ++i) {
            const double value = signedValue(i);
            if (previous * value < 0.0 || previous == 0.0) {
                ++changes;
            }
            previous = value;
        }
        return changes;
    }

private:
    struct Members {
        CArray<Polynomial1*> polynomials;

        Members() = default;
        Members(const Members&) = delete;
        Members& operator=(const Members&) = delete;
        ~Members()
        {
            for (std::int64_t i = 0; i < polynomials.GetSize(); ++i) {
                delete polynomials[i];
            }
        }
    };

    const Polynomial1& Append(Polynomial1 polynomial)
    {
        auto member = std::make_unique<Polynomial1>(std::move(polynomial));
        m_members.polynomials.Add(member.get());
        return *member.release();
    }

    Members m_members;
};

} // namespace

int PolynomialRoots::GetRootCount(const Polynomial1& polynomial, double t0, double t1) const
{
    using cadgeom::detail::kLargestSingle;
    if (polynomial.GetDegree() == 0) {
        return polynomial[0] == 0.0 ? -1 : 0;
    }
    if (polynomial.GetDegree() < 0) {
        return 0;
    }
    const auto atPlusInfinity = [](const Polynomial1& p) { return p[p.GetDegree()]; };
    const auto atMinusInfinity = [](const Polynomial1& p) {
        const double leading = p[p.GetDegree()];
        return p.GetDegree() % 2 != 0 ? -leading : leading;
    };
    const auto at = [](double t) { return [t](const Polynomial1& p) { return p(t); }; };

    const SturmSequence sequence(polynomial);
    const int before = t0 == -kLargestSingle ? sequence.CountChanges(m_epsilon, atMinusInfinity)
                                             : sequence.CountChanges(m_epsilon, at(t0));
    const int after = t1 == kLargestSingle ? sequence.CountChanges(m_epsilon, atPlusInfinity)
                                           : sequence.CountChanges(m_epsilon, at(t1));
    return before > after ? before - after : 0;
}
