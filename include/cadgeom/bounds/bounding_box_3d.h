#pragma once
/// @file
/// `CBoundingBox3d`, an axis-aligned box in space. Next: bounds/oriented_box_3d.h for boxes with axes of their own.

#include <cadgeom/bounds/box_enums.h>
#include <cadgeom/bounds/box_lanes.h>
#include <cadgeom/core/axis.h>
#include <cadgeom/core/export.h>
#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector3d.h>

class CArchive;
class CCadTransform;

template <class T>
class COrientedBox3d;

CADGEOM_FP_BEGIN

/// An axis-aligned box: its corners of smallest and largest coordinates, and nothing else. T is float or double; the
/// float instance computes in float throughout, except where a member says otherwise.
///
/// The empty box has all coordinates of its minimum at 3.4028234663852886e38 (the largest single-precision value, in
/// both instances) and all of its maximum at the negative of that. IsEmpty(), and every member that treats an empty box
/// specially, looks at the x coordinate of the minimum alone. Nothing sorts the corners: a box may be crossed (minimum
/// above maximum), as a failed IntersectWithBoundingBox() or a negative Scale() leaves it; it is then not empty, and no
/// member detects it.
///
/// A tolerance is a distance in the unit of the box by which it is widened on every side; a negative one makes it
/// smaller. A NaN coordinate or tolerance makes containment tests fail and overlap tests succeed on its axis.
///
/// It differs from CBoundingBox2d: empty boxes are tested for in ContainsPoint(), CheckBoundingBox(),
/// BoundingBoxIntersects() and GetVolume(), and Scale() by a negative factor does not swap the corners.
template <class T>
class CADGEOM_API CBoundingBox3d {
public:
    /// The empty box.
    CBoundingBox3d() { Reset(); }
    /// Stores both corners as they are.
    CBoundingBox3d(const CadPoint3d<T>& min, const CadPoint3d<T>& max) : m_min(min), m_max(max) {}
    /// The box of the corners of an oriented box; empty when that is.
    CBoundingBox3d(const COrientedBox3d<T>& box);
    CBoundingBox3d(const CBoundingBox3d&) = default;
    CBoundingBox3d(CBoundingBox3d&&) = default;
    ~CBoundingBox3d() = default;
    CBoundingBox3d& operator=(const CBoundingBox3d&) = default;
    CBoundingBox3d& operator=(CBoundingBox3d&&) = default;

    /// Stores both corners as they are.
    void SetMinMax(const CadPoint3d<T>& min, const CadPoint3d<T>& max);
    /// Makes both corners this point: a box without size, but not an empty one.
    void SetToPoint(const CadPoint3d<T>& point);
    /// Makes the box empty.
    void Reset() { cadgeom::detail::SetBoxEmpty<3>(m_min.data(), m_max.data()); }
    bool IsEmpty() const { return m_min[0] == cadgeom::detail::kEmptyBoxMarker<T>; }

    const CadPoint3d<T>& GetMin() const { return m_min; }
    const CadPoint3d<T>& GetMax() const { return m_max; }
    /// Half the sum of the corners: the zero point for an empty box.
    CadPoint3d<T> GetMid();
    /// Maximum minus minimum, also for an empty box.
    CadVector3d<T> GetSize();
    /// Product of the sizes along y, x and z, in this order; 0 for an empty box.
    T GetVolume() const;

    /// Grows the box to contain a point. The first point of an empty box becomes both corners; NaN changes nothing.
    void CheckPoint(const CadPoint3d<T>& point);
    /// CheckPoint() of the point with these coordinates.
    void CheckVector(const CadVector3d<T>& coordinates);
    /// Grows the box to contain both corners of `box`; an empty `box` changes nothing.
    void CheckBoundingBox(const CBoundingBox3d& box);
    /// Grows the box to contain the eight corners of an oriented box; an empty one changes nothing.
    void CheckOrientedBox(const COrientedBox3d<T>& box);

    /// Whether a point lies in the box widened by `tolerance`, boundary included; false for an empty box.
    bool ContainsPoint(const CadPoint3d<T>& point, T tolerance) const;
    /// Whether `box` lies in this box widened by `tolerance`, boundary included. Every box, also an empty one, contains
    /// an empty box; an empty box contains no other one.
    bool ContainsBoundingBox(const CBoundingBox3d& box, T tolerance) const;
    /// Whether the boxes are at most `tolerance` apart on every axis; touching boxes are with tolerance 0. False when
    /// either is empty.
    bool BoundingBoxIntersects(const CBoundingBox3d& box, T tolerance) const;
    /// Clips this box to `box`, in the order x, y, z.
    /// @return false when the boxes are disjoint: the axis on which that was found is left crossed, and the axes after it
    ///         are untouched. Boxes that touch give a box without size on that axis, and true.
    bool IntersectWithBoundingBox(const CBoundingBox3d& box);

    /// Whether no coordinate differs by more than `tolerance`; NaN never differs. Two empty boxes are equal, and an empty
    /// box equals no other one.
    bool IsEqual(const CBoundingBox3d& box, T tolerance) const;
    /// Whether no coordinate differs by more than 1e-6 (float: 1e-4); NaN never differs.
    bool IsAlmostEqual(const CBoundingBox3d& box) const;

    /// Places a point within the box widened by `tolerance`, or outside of it; a point within is on the boundary unless
    /// point > min + tolerance and point < max + tolerance on every axis.
    ///
    /// So at the lower faces the boundary is 2 * tolerance thick, and at the upper faces it is the one value
    /// max + tolerance.
    EBoundingBoxPointLocation ClassifyPointLocation(const CadPoint3d<T>& point, T tolerance);

    /// Moves each face out by half of `factor` times the size on its axis. No effect on an empty box.
    void Expand(T factor);
    /// Moves each face out by `distance`. No effect on an empty box.
    void ExpandByDistance(T distance);
    /// Moves the two faces across one axis out by `distance`; the axis, 0 to 2, is not checked. No effect on an empty
    /// box.
    void ExpandByDistance(T distance, EAxis axis);
    /// No effect on an empty box.
    void Translate(const CadVector3d<T>& displacement);
    /// Scales about the origin of coordinates. A negative factor leaves the box crossed on its axis. No effect on an
    /// empty box.
    void Scale(const CadVector3d<T>& factors);
    void Scale(T factor);
    /// Replaces this box by the box of its eight corners in the local frame of `transform`. Nothing happens when the box
    /// is empty or the transform is the identity.
    ///
    /// The box is carried as a COrientedBox3d, so a rotated box grows, and each of its sizes is the length of the
    /// transformed edge from the transformed minimum. The transform's flags are determined.
    void TransformTo(const CCadTransform& transform);
    /// As TransformTo(), from the local frame of `transform` to the world.
    void TransformFrom(const CCadTransform& transform);
    /// Multiplies the coordinates by GetConversionFactor(from, to), which the float instance rounds to float first.
    /// Nothing happens when the box is empty, for equal units, and when either is CADUNITS_NONE.
    void ConvertUnits(CADUNITS from, CADUNITS to);

    /// Stores or loads the records of the minimum and the maximum, with nothing around them. Throws the exceptions of
    /// the archive; when loading fails, the coordinates loaded so far are written.
    void Serialize(CArchive& archive);

    /// Writes 8 corners. Corner k has the maximum of x where bit 2 of k is set, of y where bit 1 is, of z where bit 0
    /// is, and the minimum elsewhere.
    void GetCornerPoints(CadPoint3d<T>* corners) const;
    /// Writes the 12 edges: the face of smallest z anticlockwise seen from +z, starting from the minimum along x; the
    /// face of largest z in the same way; the four uprights from bottom to top, in the order of the corners of the
    /// bottom face.
    void GetLineSegments(CadPoint3d<T>* starts, CadPoint3d<T>* ends) const;

    /// Intersects the infinite line origin + t * direction with the closed box, as CBoundingBox2d::RayPierce does in the
    /// plane: the parameters are in lengths of `direction` and not clipped to t >= 0, and a component of it whose
    /// magnitude is at most the machine epsilon of T counts as 0.
    /// @param tNear, tFar  out, may be null: parameters of entry and exit, also written on failure;
    ///                     3.4028234663852886e38 and its negative when the line runs beside the box along an axis
    /// @param entry, exit  out, may be null: the points of entry and exit, each exactly on its face. On failure the
    ///                     coordinates of axes that were the nearest or farthest so far may be written.
    /// @return false when the line misses the box
    /// Method: slabs (Kay and Kajiya 1986).
    bool RayPierce(const CadPoint3d<T>& origin, const CadVector3d<T>& direction, T* tNear, T* tFar,
                   CadPoint3d<T>* entry, CadPoint3d<T>* exit) const;

    /// Whether the plane through `origin` with `normal`, of any length, has corners of the box on both sides, or one
    /// within `tolerance`. A corner on the plane counts to the side of the normal.
    ///
    /// The tolerance, unless it is 0, admits a corner whose squared distance is at most tolerance^2, but never the
    /// minimum corner. With |normal|^2 not above 1e-12 (float: 1e-8) the distance is the difference in z.
    /// @return false for an empty box
    bool PlaneIntersects(const CadPoint3d<T>& origin, const CadVector3d<T>& normal, T tolerance) const;

    /// Squared distance from a point to the closed box; 0 inside. NaN coordinates give NaN.
    T GetClosestDistanceSquared(const CadPoint3d<T>& point) const;
    /// Squared distance from a point to the farthest corner; at least 0.
    T GetFarthestDistanceSquared(const CadPoint3d<T>& point) const;
    /// Squared distance from the infinite line through `origin` along `direction` to the box; 0 where it passes through.
    T GetClosestDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& direction) const;
    /// Squared distance from the infinite line through `origin` along `direction` to the farthest corner.
    T GetFarthestDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& direction) const;
    /// Squared distance from the plane through `origin` with `normal` to the box: 0 when PlaneIntersects() with
    /// tolerance 0, else that of the nearest corner by CadPoint3d::distanceSquaredToPlane.
    T GetClosestPlaneDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& normal) const;
    /// Squared distance from the plane through `origin` with `normal` to the farthest corner.
    T GetFarthestPlaneDistanceSquared(const CadPoint3d<T>& origin, const CadVector3d<T>& normal) const;

    /// Whether this box, moved by t * motion, meets `box` widened by `tolerance` for some t in the open range 0 < t < 1.
    ///
    /// A component of `motion` whose magnitude is at most 2^-23 counts as 0: on such an axis boxes must overlap, not
    /// merely touch. A motion without any larger component meets nothing, not even a box that overlaps this one.
    /// @return false when either box is empty
    bool SweptBoundingBoxIntersects(const CBoundingBox3d& box, const CadVector3d<T>& motion, T tolerance) const;
    /// As above, for all t.
    /// @param tEnter, tExit  out: the range of t in which the boxes overlap; untouched when a box is empty or the motion
    ///                       counts as zero. On other failures they hold what the axes gave until it was found, starting
    ///                       from -3.4028234663852886e38 and 3.4028234663852886e38.
    /// @return tEnter < tExit, unless the boxes stay apart on an axis without motion
    bool SweptBoundingBoxIntersects(const CBoundingBox3d& box, const CadVector3d<T>& motion, T& tEnter, T& tExit,
                                    T tolerance) const;
    /// As above.
    /// @param tFull  out, written together with tEnter: where this box has wholly crossed the face that it enters by
    bool SweptBoundingBoxIntersectsFull(const CBoundingBox3d& box, const CadVector3d<T>& motion, T& tEnter, T& tExit,
                                        T& tFull, T tolerance) const;

    /// Whether this box, turned about an axis by some angle between 0 and `angle` (radians), meets `box`: tested with
    /// COrientedBox3d::OrientedBoxIntersects at angles k / n * angle for k = 0 ... n.
    ///
    /// n is GetNumCircularArcDivisions(R, chordTolerance, angle, 4), with R the distance of the farthest corner from the
    /// axis: the arcs between two samples rise at most chordTolerance above their chords. An angle for which n is 0 is
    /// tested once, unturned.
    /// @param axisDirection  of any length; the sense of rotation is right-handed
    /// @return false when n is negative, as for a NaN or huge angle
    /// Cost: grows with n, which is not limited, unless boxes so far apart that no angle brings them together.
    bool RotatedBoundingBoxIntersects(const CBoundingBox3d& box, const CadPoint3d<T>& axisPoint,
                                      const CadVector3d<T>& axisDirection, T angle, T chordTolerance,
                                      T tolerance) const;

    /// Writes the 6 corners of the outline of the box seen along `direction`, in order around it: all corners but the
    /// nearest and the farthest. Opposite directions have one outline; components that are 0 count as positive.
    void GetSweptPolygon(const CadVector3d<T>& direction, CadPoint3d<T>* polygon) const;

private:
    CadPoint3d<T> m_min;
    CadPoint3d<T> m_max;
};

template <class T>
inline void CBoundingBox3d<T>::SetMinMax(const CadPoint3d<T>& min, const CadPoint3d<T>& max)
{
    *this = CBoundingBox3d(min, max);
}

template <class T>
inline void CBoundingBox3d<T>::SetToPoint(const CadPoint3d<T>& point)
{
    SetMinMax(point, point);
}

template <class T>
inline CadPoint3d<T> CBoundingBox3d<T>::GetMid()
{
    return m_min.add(m_max) * T(0.5);
}

template <class T>
inline CadVector3d<T> CBoundingBox3d<T>::GetSize()
{
    return m_max - m_min;
}

template <class T>
inline T CBoundingBox3d<T>::GetVolume() const
{
    return IsEmpty() ? T(0) : (m_max[1] - m_min[1]) * (m_max[0] - m_min[0]) * (m_max[2] - m_min[2]);
}

template <class T>
inline void CBoundingBox3d<T>::CheckPoint(const CadPoint3d<T>& point)
{
    cadgeom::detail::GrowBox<3>(m_min.data(), m_max.data(), point.data());
}

template <class T>
inline void CBoundingBox3d<T>::CheckVector(const CadVector3d<T>& coordinates)
{
    cadgeom::detail::GrowBox<3>(m_min.data(), m_max.data(), coordinates.data());
}

template <class T>
inline void CBoundingBox3d<T>::CheckBoundingBox(const CBoundingBox3d& box)
{
    if (box.IsEmpty()) {
        return;
    }
    const CBoundingBox3d other(box);
    CheckPoint(other.m_min);
    CheckPoint(other.m_max);
}

template <class T>
inline bool CBoundingBox3d<T>::ContainsPoint(const CadPoint3d<T>& point, T tolerance) const
{
    return !IsEmpty() &&
           cadgeom::detail::BoxEncloses<3>(m_min.data(), m_max.data(), point.data(), point.data(), tolerance);
}

template <class T>
inline bool CBoundingBox3d<T>::ContainsBoundingBox(const CBoundingBox3d& box, T tolerance) const
{
    return box.IsEmpty() || (!IsEmpty() && cadgeom::detail::BoxEncloses<3>(m_min.data(), m_max.data(), box.m_min.data(),
                                                                           box.m_max.data(), tolerance));
}

template <class T>
inline bool CBoundingBox3d<T>::BoundingBoxIntersects(const CBoundingBox3d& box, T tolerance) const
{
    return !IsEmpty() && !box.IsEmpty() &&
           !cadgeom::detail::BoxesAreApart<3>(m_min.data(), m_max.data(), box.m_min.data(), box.m_max.data(),
                                              tolerance);
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CBoundingBox3d<float>;
extern template class CADGEOM_API CBoundingBox3d<double>;

CADGEOM_FP_END
