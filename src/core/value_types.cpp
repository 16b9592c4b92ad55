// The exported instances of the vector and point templates, their shared constants, and the members that are worth a
// call.

#include <cadgeom/core/archive_records.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/vector3d.h>

#include <cmath>
#include <limits>

#if defined(__GNUC__)
#define CADGEOM_INITIAL_EXEC __attribute__((tls_model("initial-exec")))
#else
#define CADGEOM_INITIAL_EXEC
#endif

namespace {

using cadgeom::detail::kRadiansPerDegree;

/// Squared cosine of an angle in degrees: converted in double, the cosine taken in T.
template <class T>
T SquaredCosine(T degrees)
{
    const T cosine = std::cos(static_cast<T>(static_cast<double>(degrees) * kRadiansPerDegree));
    return cosine * cosine;
}

/// Remembers the squared cosine of the last angle. Hosts test many vectors with one tolerance, and a cosine costs more
/// than the rest of the test. The value starts at NaN, which equals no tolerance, so that the first one is computed too.
template <class T>
class RememberedSquaredCosine {
public:
    template <class Angle>
    T For(T tolerance, Angle angle)
    {
        if (tolerance != m_tolerance) {
            m_squaredCosine = SquaredCosine<T>(angle(tolerance));
            m_tolerance = tolerance;
        }
        return m_squaredCosine;
    }

private:
    T m_tolerance = std::numeric_limits<T>::quiet_NaN();
    T m_squaredCosine = T(0);
};

/// The tests by angle; each remembers a cosine of its own.
enum class AngleTest {
    parallel,
    orthogonal,
    sameDirection
};

/// What one test remembers on this thread, at an address that takes no call to find. A variable of an exported member would be exported with it.
template <AngleTest test, class T, int N>
RememberedSquaredCosine<T>& Remembered()
{
    CADGEOM_INITIAL_EXEC thread_local RememberedSquaredCosine<T> remembered;
    return remembered;
}

template <class T>
T Itself(T degrees)
{
    return degrees;
}

template <class T>
T FromRightAngle(T degrees)
{
    return T(90) - degrees;
}

/// Squared dot product and product of the squared lengths of two vectors: what angle tests compare.
template <class T>
struct SquaredCosineOfPair {
    template <int N>
    SquaredCosineOfPair(const CadVector<T, N>& a, const CadVector<T, N>& b)
        : dot(a.dot(b)), squaredDot(dot * dot), squaredLengths(a.lengthSquared() * b.lengthSquared())
    {}

    /// The dot product never exceeds the lengths, so this holds only when one of them is zero.
    bool HasZeroVector() const { return squaredDot * cadgeom::detail::Tolerance<T>::epsilon() >= squaredLengths; }
    T Value() const { return squaredDot / squaredLengths; }

    T dot;
    T squaredDot;
    T squaredLengths;
};

} // namespace

template <class T, int N>
void CadVector<T, N>::rescaleToFinite()
{
    bool isFinite = true;
    for (int i = 0; i < N; ++i) {
        isFinite = isFinite && std::isfinite(m_components[i]);
    }
    if (isFinite) {
        *this /= maxAbsoluteValue();
        return;
    }
    for (int i = 0; i < N; ++i) {
        m_components[i] = std::isfinite(m_components[i]) ? T(0) : std::copysign(T(1), m_components[i]);
    }
}

template <class T, int N>
bool CadVector<T, N>::isParallel(const CadVector& other, T toleranceDegrees) const
{
    const T threshold = Remembered<AngleTest::parallel, T, N>().For(toleranceDegrees, Itself<T>);
    const SquaredCosineOfPair<T> pair(*this, other);
    return !pair.HasZeroVector() && pair.Value() >= threshold;
}

template <class T, int N>
bool CadVector<T, N>::isOrthogonal(const CadVector& other, T toleranceDegrees) const
{
    const T threshold = Remembered<AngleTest::orthogonal, T, N>().For(toleranceDegrees, FromRightAngle<T>);
    const SquaredCosineOfPair<T> pair(*this, other);
    return !pair.HasZeroVector() && pair.Value() <= threshold;
}

template <class T, int N>
bool CadVector<T, N>::isVectorDirectionEqual(const CadVector& other, T toleranceDegrees) const
{
    const SquaredCosineOfPair<T> pair(*this, other);
    if (pair.dot < T(0)) {
        return false;
    }
    const T threshold = Remembered<AngleTest::sameDirection, T, N>().For(toleranceDegrees, Itself<T>);
    return !pair.HasZeroVector() && pair.Value() >= threshold;
}

template <class T, int N>
const CadVector<T, N> CadVector<T, N>::s_zero{cadgeom::detail::ConstantTag{}};

template <class T, int N>
const CadPoint<T, N> CadPoint<T, N>::s_zero{cadgeom::detail::ConstantTag{}};

template <class T>
const CadVector3d<T> CadVector3d<T>::s_xAxis(T(1), T(0), T(0));
template <class T>
const CadVector3d<T> CadVector3d<T>::s_yAxis(T(0), T(1), T(0));
template <class T>
const CadVector3d<T> CadVector3d<T>::s_zAxis(T(0), T(0), T(1));

#define CADGEOM_INSTANTIATE(T, N)                                                                                      \
    template class CadVector<T, N>;                                                                                    \
    template class CadPoint<T, N>;                                                                                     \
    template CADGEOM_API CArchive& operator<<(CArchive&, const CadVector<T, N>&);                                      \
    template CADGEOM_API CArchive& operator<<(CArchive&, const CadPoint<T, N>&);                                       \
    template CADGEOM_API CArchive& operator>>(CArchive&, CadVector<T, N>&);                                            \
    template CADGEOM_API CArchive& operator>>(CArchive&, CadPoint<T, N>&);                                             \
    template CADGEOM_API void SerializeElements(CArchive&, CadVector<T, N>*, std::int64_t)

CADGEOM_INSTANTIATE(float, 2);
CADGEOM_INSTANTIATE(float, 3);
CADGEOM_INSTANTIATE(double, 2);
CADGEOM_INSTANTIATE(double, 3);

#undef CADGEOM_INSTANTIATE

template class CadVector2d<float>;
template class CadVector2d<double>;
template class CadVector3d<float>;
template class CadVector3d<double>;
template class CadPoint2d<float>;
template class CadPoint2d<double>;
template class CadPoint3d<float>;
template class CadPoint3d<double>;
