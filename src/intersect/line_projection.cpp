#include <cadgeom/intersect/line_projection.h>

// Closest approach of p1 + t1*d1 and p2 + t2*d2: the normal equations of |p2 + t2*d2 - p1 - t1*d1|^2, solved by
// eliminating t2. Their determinant is -|d1 x d2|^2, formed as a difference of products that loses all digits for
// nearly parallel lines: hence the thresholds.

namespace {

using cadgeom::detail::Absolute;
using cadgeom::detail::Tolerance;

/// Thresholds below which lines are parallel (determinant) or have no direction (squared length).
template <class T>
struct LineTolerance;

template <>
struct LineTolerance<double> {
    static constexpr double kDeterminant = 1e-24;
    static constexpr double kSquaredLength = Tolerance<double>::squaredEpsilon();
};

template <>
struct LineTolerance<float> {
    static constexpr float kDeterminant = 1e-16F;
    static constexpr float kSquaredLength = Tolerance<float>::squaredEpsilon();
    static_assert(kDeterminant == kSquaredLength * kSquaredLength,
                  "the determinant is of the order of |d1|^2 * |d2|^2");
};

/// Relative tolerance of divisors, in both precisions.
template <class T>
constexpr T kRelativeTolerance = static_cast<T>(cadgeom::detail::kSingleEpsilon);

/// The coefficients of the normal equations.
template <class T>
class LinePair {
public:
    LinePair(const CadPoint3d<T>& point1, const CadVector3d<T>& direction1, const CadPoint3d<T>& point2,
             const CadVector3d<T>& direction2)
        : a(direction1.lengthSquared()), b(direction1.dot(direction2)), c(direction2.lengthSquared())
    {
        const CadVector3d<T> between = point2 - point1;
        along1 = between.dot(direction1);
        along2 = between.dot(direction2);
    }

    T Determinant() const { return b * b - a * c; }
    T Numerator1() const { return along2 * b - along1 * c; }
    T Numerator2(T t1) const { return b * t1 - along2; }

    T a;
    T b;
    T c;
    T along1;
    T along2;
};

} // namespace

template <class T>
void ProjectLineOntoLine(const CadPoint3d<T>& point1, const CadVector3d<T>& direction1, const CadPoint3d<T>& point2,
                         const CadVector3d<T>& direction2, T& t1, T& t2)
{
    const LinePair<T> lines(point1, direction1, point2, direction2);
    if (!(lines.c > LineTolerance<T>::kSquaredLength)) {
        const T parameter = point2.projectOntoLineParam(point1, direction1);
        t2 = T(0);
        t1 = parameter;
        return;
    }
    const T determinant = lines.Determinant();
    t1 = Absolute(determinant) > LineTolerance<T>::kDeterminant ? lines.Numerator1() / determinant : T(0);
    t2 = lines.Numerator2(t1) / lines.c;
}

template <class T>
bool ProjectLineOntoLine2(const CadPoint3d<T>& point1, const CadVector3d<T>& direction1, const CadPoint3d<T>& point2,
                          const CadVector3d<T>& direction2, T& t1, T* t2)
{
    const LinePair<T> lines(point1, direction1, point2, direction2);
    const T determinant = lines.Determinant();
    const T numerator1 = lines.Numerator1();
    if (Absolute(determinant) <= Absolute(numerator1) * kRelativeTolerance<T>) {
        return false;
    }
    t1 = numerator1 / determinant;
    if (t2 == nullptr) {
        return true;
    }
    const T numerator2 = lines.Numerator2(t1);
    if (lines.c <= Absolute(numerator2) * kRelativeTolerance<T>) {
        return false;
    }
    *t2 = numerator2 / lines.c;
    return true;
}

template <class T>
bool IntersectLineWithLine2d(const CadPoint2d<T>& point1, const CadVector2d<T>& direction1, const CadPoint2d<T>& point2,
                             const CadVector2d<T>& direction2, T& s, T& t)
{
    const CadVector2d<T> between = point2 - point1;
    const T divisor = direction1.crossZ(direction2);
    const T numeratorS = between.crossZ(direction2);
    const T numeratorT = between.crossZ(direction1);
    if (Absolute(divisor) > kRelativeTolerance<T>) {
        s = numeratorS / divisor;
        t = numeratorT / divisor;
        return true;
    }
    const bool useS = Absolute(numeratorS) > Absolute(numeratorT);
    const T numerator = useS ? numeratorS : numeratorT;
    if (!(Absolute(divisor) > Absolute(numerator) * kRelativeTolerance<T>)) {
        return false;
    }
    const T quotient = numerator / divisor;
    const T projected = useS ? (point1 + direction1 * quotient).projectOntoLineParam(point2, direction2)
                             : (point2 + direction2 * quotient).projectOntoLineParam(point1, direction1);
    s = useS ? quotient : projected;
    t = useS ? projected : quotient;
    return true;
}

template <class T>
T ProjectLineOntoLineSegment(const CadPoint3d<T>& point, const CadVector3d<T>& direction, const CadPoint3d<T>& start,
                             const CadPoint3d<T>& end, CadPoint3d<T>& foot, T& distanceSquared, T* lineParameter)
{
    const CadVector3d<T> edge = end - start;
    const CadVector3d<T> offset = point - start;
    const T cosine = direction.dot(edge);
    const T squaredLength = direction.lengthSquared();
    const T along = offset.dot(direction);
    const T determinant = cosine * cosine - squaredLength * edge.lengthSquared();

    T s = T(0);
    CadPoint3d<T> nearest = start;
    if (Absolute(determinant) > LineTolerance<T>::kDeterminant) {
        const T unclamped = (along * cosine - offset.dot(edge) * squaredLength) / determinant;
        if (unclamped >= T(1)) {
            s = T(1);
            nearest = end;
        } else if (unclamped > T(0)) {
            s = unclamped;
            nearest = start + edge * s;
        }
    }

    T t = T(0);
    CadPoint3d<T> onLine = point;
    if (!(squaredLength <= LineTolerance<T>::kSquaredLength)) {
        t = (s * cosine - along) / squaredLength;
        onLine += direction * t;
    }
    foot = nearest;
    if (lineParameter != nullptr) {
        *lineParameter = t;
    }
    distanceSquared = onLine.distanceSquared(nearest);
    return s;
}

template <class T>
T ProjectLineSegmentOntoLineSegment(const CadPoint3d<T>& point1, const CadVector3d<T>& direction1,
                                    const CadPoint3d<T>& point2, const CadVector3d<T>& direction2, T& distanceSquared)
{
    const LinePair<T> lines(point1, direction1, point2, direction2);
    const CadPoint3d<T> end1 = point1 + direction1;
    const CadPoint3d<T> end2 = point2 + direction2;
    CadPoint3d<T> foot;

    const T determinant = lines.Determinant();
    if (Absolute(determinant) <= LineTolerance<T>::kDeterminant) {
        if (lines.a <= LineTolerance<T>::kSquaredLength) {
            point1.projectOntoLineSegment(point2, end2, foot, distanceSquared);
            return T(0);
        }
        if (lines.c <= LineTolerance<T>::kSquaredLength) {
            return point2.projectOntoLineSegment(point1, end1, foot, distanceSquared);
        }
        CadPoint3d<T> nearest;
        T unused;
        point1.projectOntoLineSegment(point2, end2, nearest, unused);
        return nearest.projectOntoLineSegment(point1, end1, foot, distanceSquared);
    }

    const T s = lines.Numerator1() / determinant;
    if (s <= T(0)) {
        point1.projectOntoLineSegment(point2, end2, foot, distanceSquared);
        return T(0);
    }
    if (s >= T(1)) {
        end1.projectOntoLineSegment(point2, end2, foot, distanceSquared);
        return T(1);
    }
    CadPoint3d<T>(point1 + direction1 * s).projectOntoLineSegment(point2, end2, foot, distanceSquared);
    return s;
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API void ProjectLineOntoLine(const CadPoint3d<T>&, const CadVector3d<T>&, const CadPoint3d<T>&,   \
                                                  const CadVector3d<T>&, T&, T&);                                      \
    template CADGEOM_API bool ProjectLineOntoLine2(const CadPoint3d<T>&, const CadVector3d<T>&, const CadPoint3d<T>&,  \
                                                   const CadVector3d<T>&, T&, T*);                                     \
    template CADGEOM_API bool IntersectLineWithLine2d(const CadPoint2d<T>&, const CadVector2d<T>&,                     \
                                                      const CadPoint2d<T>&, const CadVector2d<T>&, T&, T&);            \
    template CADGEOM_API T ProjectLineOntoLineSegment(const CadPoint3d<T>&, const CadVector3d<T>&,                     \
                                                      const CadPoint3d<T>&, const CadPoint3d<T>&, CadPoint3d<T>&, T&,  \
                                                      T*);                                                             \
    template CADGEOM_API T ProjectLineSegmentOntoLineSegment(const CadPoint3d<T>&, const CadVector3d<T>&,              \
                                                             const CadPoint3d<T>&, const CadVector3d<T>&, T&)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
