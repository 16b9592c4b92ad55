#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/bounds/oriented_box_3d.h>
#include <cadgeom/core/tolerance.h>
#include <cadgeom/transform/transform.h>

// Oriented boxes against points and each other, at rest and along a straight sweep: separating planes, after quick tests
// for corners inside. At rest only face planes are tried, and in a sweep the planes along silhouette edges as well, so
// that "intersects" may be said of boxes that only another plane would separate, but never the reverse.

namespace {

constexpr int kCornerCount = 8;
constexpr int kPlaneCount = 6;
constexpr int kLineCount = 12;

/// Measures points along a line, as CadPoint::projectOntoLineParam does, with the length of the direction formed once.
template <class T>
class Ruler {
public:
    Ruler() = default;
    Ruler(const CadPoint3d<T>& origin, const CadVector3d<T>& direction)
        : m_origin(origin), m_direction(direction), m_squaredLength(direction.lengthSquared())
    {}

    T SquaredLength() const { return m_squaredLength; }

    T Measure(const CadPoint3d<T>& point) const
    {
        const bool hasDirection = !(m_squaredLength <= cadgeom::detail::Tolerance<T>::squaredEpsilon());
        return hasDirection ? (point - m_origin).dot(m_direction) / m_squaredLength : T(0);
    }

private:
    CadPoint3d<T> m_origin;
    CadVector3d<T> m_direction;
    T m_squaredLength;
};

/// A plane with a tolerance; its normal may have any length.
template <class T>
class SeparatingPlane {
public:
    SeparatingPlane(const CadPoint3d<T>& point, const CadVector3d<T>& normal, T tolerance)
        : m_height(point, normal), m_tolerance(tolerance)
    {}

    bool IsBeyond(const CadPoint3d<T>& point) const
    {
        const T t = m_height.Measure(point);
        return t >= T(0) && (m_tolerance == T(0) || t * t * m_height.SquaredLength() >= m_tolerance * m_tolerance);
    }

    bool AreBeyond(const CadPoint3d<T> (&points)[kCornerCount]) const
    {
        for (const CadPoint3d<T>& point : points) {
            if (!IsBeyond(point)) {
                return false;
            }
        }
        return true;
    }

private:
    Ruler<T> m_height;
    T m_tolerance;
};

/// A box with what its tests need, formed once.
template <class T>
struct BoxParts {
    explicit BoxParts(const COrientedBox3d<T>& of) : box(of)
    {
        box.GetCornerPoints(corners);
        box.GetPlanes(planePoints, planeNormals);
        for (int j = 0; j < 3; ++j) {
            axes[j] = Ruler<T>(box.GetOrigin(), box.GetAxis(j));
        }
    }

    /// Whether the box holds a point, boundary included; it does not hold a NaN.
    bool Holds(const CadPoint3d<T>& point) const
    {
        for (int j = 0; j < 3; ++j) {
            const T t = axes[j].Measure(point);
            if (!(t >= T(0) && t <= box.GetSizes()[j])) {
                return false;
            }
        }
        return true;
    }

    /// ContainsPoint() without tolerance: unlike Holds(), it does not exclude a NaN.
    bool Contains(const CadPoint3d<T>& point) const
    {
        for (int j = 0; j < 3; ++j) {
            const T t = axes[j].Measure(point);
            if (t < T(0) || t > box.GetSizes()[j]) {
                return false;
            }
        }
        return true;
    }

    SeparatingPlane<T> Plane(int i, T tolerance) const
    {
        return SeparatingPlane<T>(planePoints[i], planeNormals[i], tolerance);
    }

    const COrientedBox3d<T>& box;
    Ruler<T> axes[3];
    CadPoint3d<T> corners[kCornerCount];
    CadPoint3d<T> planePoints[kPlaneCount];
    CadVector3d<T> planeNormals[kPlaneCount];
};

template <class T>
bool FacePlanesSeparate(const BoxParts<T>& from, const BoxParts<T>& other, T tolerance)
{
    for (int i = 0; i < kPlaneCount; ++i) {
        if (from.Plane(i, tolerance).AreBeyond(other.corners)) {
            return true;
        }
    }
    return false;
}

template <class T>
bool HasCornerIn(const BoxParts<T>& box, const BoxParts<T>& other)
{
    for (const CadPoint3d<T>& corner : other.corners) {
        if (box.Contains(corner)) {
            return true;
        }
    }
    for (const CadPoint3d<T>& corner : box.corners) {
        if (other.Holds(corner)) {
            return true;
        }
    }
    return false;
}

/// A box that moves from t = 0 to t = 1.
template <class T>
class SweptBox {
public:
    SweptBox(const BoxParts<T>& start, const CadVector3d<T>& motion, T tolerance)
        : m_start(start), m_motion(motion), m_tolerance(tolerance)
    {
        for (int i = 0; i < kCornerCount; ++i) {
            m_endCorners[i] = m_start.corners[i] + m_motion;
        }
    }

    /// Whether a corner of one box lies in the other, before or after the motion.
    bool HasCornerIn(const BoxParts<T>& other) const
    {
        for (const CadPoint3d<T>& corner : other.corners) {
            if (m_start.Contains(corner) || m_start.Holds(corner - m_motion)) {
                return true;
            }
        }
        for (int i = 0; i < kCornerCount; ++i) {
            if (other.Holds(m_start.corners[i]) || other.Holds(m_endCorners[i])) {
                return true;
            }
        }
        return false;
    }

    /// Whether a face plane of this box, where it lies outermost during the motion, separates the other one.
    bool OwnFacePlanesSeparate(const BoxParts<T>& other) const
    {
        for (int i = 0; i < kPlaneCount; ++i) {
            const CadPoint3d<T>& point = m_start.planePoints[i];
            const CadVector3d<T>& normal = m_start.planeNormals[i];
            const CadPoint3d<T> outermost = m_motion.dot(normal) < T(0) ? point : CadPoint3d<T>(point + m_motion);
            if (SeparatingPlane<T>(outermost, normal, m_tolerance).AreBeyond(other.corners)) {
                return true;
            }
        }
        return false;
    }

    /// Whether a face plane of the other box separates both ends of the motion.
    bool FacePlanesSeparate(const BoxParts<T>& other) const
    {
        for (int i = 0; i < kPlaneCount; ++i) {
            const SeparatingPlane<T> plane = other.Plane(i, m_tolerance);
            if (plane.AreBeyond(m_start.corners) && plane.AreBeyond(m_endCorners)) {
                return true;
            }
        }
        return false;
    }

    bool MovesAlongAxis() const
    {
        constexpr T kToleranceDegrees = T(0.001);
        for (int j = 0; j < 3; ++j) {
            if (m_motion.isParallel(m_start.box.GetAxis(j), kToleranceDegrees)) {
                return true;
            }
        }
        return false;
    }

    /// Whether a plane along the motion through a silhouette edge separates the other box.
    bool EdgePlanesSeparate(const BoxParts<T>& other) const
    {
        CadPoint3d<T> points[kLineCount];
        CadVector3d<T> directions[kLineCount];
        CadVector3d<T> normals[kLineCount][2];
        m_start.box.GetBoxLines(points, directions, normals);
        for (int i = 0; i < kLineCount; ++i) {
            const bool isOnSilhouette = m_motion.dot(normals[i][0]) * m_motion.dot(normals[i][1]) <= T(0);
            if (!isOnSilhouette) {
                continue;
            }
            CadVector3d<T> normal = m_motion.cross(directions[i]);
            if (normal.isAlmostZero()) {
                continue;
            }
            if (normals[i][0].dot(normal) < T(0)) {
                normal.negate();
            }
            if (SeparatingPlane<T>(points[i], normal, m_tolerance).AreBeyond(other.corners)) {
                return true;
            }
        }
        return false;
    }

private:
    const BoxParts<T>& m_start;
    const CadVector3d<T>& m_motion;
    T m_tolerance;
    CadPoint3d<T> m_endCorners[kCornerCount];
};

template <class T>
COrientedBox3d<T> Aligned(const CBoundingBox3d<T>& box)
{
    return COrientedBox3d<T>(box, CCadTransform::GetEmptyTransform());
}

} // namespace

template <class T>
bool COrientedBox3d<T>::ContainsPoint(const CadPoint3d<T>& point, T tolerance) const
{
    for (int j = 0; j < 3; ++j) {
        const T t = point.projectOntoLineParam(m_origin, m_axes[j]);
        if (t < -tolerance || t > m_sizes[j] + tolerance) {
            return false;
        }
    }
    return true;
}

template <class T>
bool COrientedBox3d<T>::BoundingBoxIntersects(const CBoundingBox3d<T>& box, T tolerance) const
{
    return OrientedBoxIntersects(Aligned(box), tolerance);
}

template <class T>
bool COrientedBox3d<T>::OrientedBoxIntersects(const COrientedBox3d& other, T tolerance) const
{
    const BoxParts<T> own(*this);
    const BoxParts<T> others(other);
    return HasCornerIn(own, others) ||
           !(FacePlanesSeparate(own, others, tolerance) || FacePlanesSeparate(others, own, tolerance));
}

template <class T>
bool COrientedBox3d<T>::SweptBoundingBoxIntersects(const CBoundingBox3d<T>& box, const CadVector3d<T>& motion,
                                                   T tolerance) const
{
    return SweptOrientedBoxIntersects(Aligned(box), motion, tolerance);
}

template <class T>
bool COrientedBox3d<T>::SweptOrientedBoxIntersects(const COrientedBox3d& other, const CadVector3d<T>& motion,
                                                   T tolerance) const
{
    const BoxParts<T> own(*this);
    const BoxParts<T> others(other);
    const SweptBox<T> swept(own, motion, tolerance);
    if (swept.HasCornerIn(others)) {
        return true;
    }
    if (swept.OwnFacePlanesSeparate(others) || swept.FacePlanesSeparate(others)) {
        return false;
    }
    return swept.MovesAlongAxis() || !swept.EdgePlanesSeparate(others);
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool COrientedBox3d<T>::ContainsPoint(const CadPoint3d<T>&, T) const;                         \
    template CADGEOM_API bool COrientedBox3d<T>::BoundingBoxIntersects(const CBoundingBox3d<T>&, T) const;             \
    template CADGEOM_API bool COrientedBox3d<T>::OrientedBoxIntersects(const COrientedBox3d<T>&, T) const;             \
    template CADGEOM_API bool COrientedBox3d<T>::SweptBoundingBoxIntersects(const CBoundingBox3d<T>&,                  \
                                                                            const CadVector3d<T>&, T) const;           \
    template CADGEOM_API bool COrientedBox3d<T>::SweptOrientedBoxIntersects(const COrientedBox3d<T>&,                  \
                                                                            const CadVector3d<T>&, T) const

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
