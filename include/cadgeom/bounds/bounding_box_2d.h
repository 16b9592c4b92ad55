#pragma once
/// @file
/// `CBoundingBox2d`, an axis-aligned rectangle. Next: bounds/bounding_box_3d.h for boxes in space, which differ in some
/// operations.

#include <cadgeom/bounds/box_enums.h>
#include <cadgeom/bounds/box_lanes.h>
#include <cadgeom/core/export.h>
#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/vector2d.h>

class CArchive;

CADGEOM_FP_BEGIN

/// An axis-aligned rectangle: its lower-left and upper-right corners, and nothing else. T is float or double; the float
/// instance computes in float throughout.
///
/// The empty box has both coordinates of its minimum at 3.4028234663852886e38 (the largest single-precision value, in
/// both instances) and both of its maximum at the negative of that. IsEmpty() looks at the x coordinate of the minimum
/// alone. Nothing sorts the corners: a box may be crossed (minimum above maximum), as a failed
/// IntersectWithBoundingBox() leaves it, and is then not empty.
///
/// A tolerance is a distance in the unit of the box by which it is widened on every side; a negative one makes it
/// smaller. A NaN coordinate or tolerance makes containment tests fail and overlap tests succeed on its axis.
template <class T>
class CADGEOM_API CBoundingBox2d {
public:
    /// The empty box.
    CBoundingBox2d() { Reset(); }
    /// Stores both corners as they are.
    CBoundingBox2d(const CadPoint2d<T>& min, const CadPoint2d<T>& max) : m_min(min), m_max(max) {}
    CBoundingBox2d(const CBoundingBox2d&) = default;
    CBoundingBox2d(CBoundingBox2d&&) = default;
    ~CBoundingBox2d() = default;
    CBoundingBox2d& operator=(const CBoundingBox2d&) = default;
    CBoundingBox2d& operator=(CBoundingBox2d&&) = default;

    /// Stores both corners as they are.
    void SetMinMax(const CadPoint2d<T>& min, const CadPoint2d<T>& max);
    /// Makes the box empty.
    void Reset() { cadgeom::detail::SetBoxEmpty<2>(m_min.data(), m_max.data()); }
    bool IsEmpty() const { return m_min[0] == cadgeom::detail::kEmptyBoxMarker<T>; }

    const CadPoint2d<T>& GetMin() const { return m_min; }
    const CadPoint2d<T>& GetMax() const { return m_max; }
    /// Half the sum of the corners: (0, 0) for an empty box.
    CadPoint2d<T> GetMid();
    /// Maximum minus minimum, also for an empty box.
    CadVector2d<T> GetSize();
    /// Product of the two sizes, also for an empty box.
    T GetArea() const;

    /// Grows the box to contain a point. The first point of an empty box becomes both corners; NaN changes nothing.
    void CheckPoint(const CadPoint2d<T>& point);
    /// Grows the box to contain both corners of `box`, without a test whether that is empty: merging an empty box gives
    /// the box from -3.4028234663852886e38 to 3.4028234663852886e38 on both axes.
    void CheckBoundingBox(const CBoundingBox2d& box);

    /// Whether a point lies in the box widened by `tolerance`, boundary included. An empty box contains nothing unless
    /// the tolerance is as large as its marker.
    bool ContainsPoint(const CadPoint2d<T>& point, T tolerance) const;
    /// Whether `box` lies in this box widened by `tolerance`, boundary included. Every box, also an empty one, contains
    /// an empty box; an empty box contains no other one.
    bool ContainsBoundingBox(const CBoundingBox2d& box, T tolerance) const;
    /// Whether the boxes are at most `tolerance` apart on both axes; touching boxes are with tolerance 0. Empty boxes get
    /// no special treatment: their marker keeps them apart from ordinary boxes.
    bool BoundingBoxIntersects(const CBoundingBox2d& box, T tolerance) const;
    /// Clips this box to `box`, axis by axis.
    /// @return false when the boxes are disjoint: the axis on which that was found is left crossed, and y is untouched
    ///         when it was x. Boxes that touch give a box of zero width, and true.
    bool IntersectWithBoundingBox(const CBoundingBox2d& box);

    /// Whether a closed segment and the closed box have a point in common. A component of end - start whose magnitude is
    /// at most the machine epsilon of T counts as 0. Empty and crossed boxes are not told apart from others: they miss only
    /// segments along an axis for certain.
    bool LineSegmentIntersects(const CadPoint2d<T>& start, const CadPoint2d<T>& end) const;
    /// Intersects the infinite line origin + t * direction with the closed box. Parameters are in lengths of
    /// `direction` and not clipped to t >= 0; a component of it whose magnitude is at most the machine epsilon of T
    /// counts as 0.
    /// @param tNear, tFar  out, may be null: parameters of entry and exit, also written on failure;
    ///                     3.4028234663852886e38 and its negative when the line runs beside the box along an axis.
    ///                     The same two numbers with opposite signs, -3.4e38 and 3.4e38, for a zero direction inside.
    /// @param entry, exit  out, may be null: the points of entry and exit, each exactly on its face. On failure the
    ///                     coordinates of axes that were the nearest or farthest so far may be written.
    /// @return false when the line misses the box
    /// Method: slabs (Kay and Kajiya 1986).
    bool RayPierce(const CadPoint2d<T>& origin, const CadVector2d<T>& direction, T* tNear, T* tFar,
                   CadPoint2d<T>* entry, CadPoint2d<T>* exit) const;

    /// Writes 4 corners: (min, min), (min, max), (max, min), (max, max).
    void GetCornerPoints(CadPoint2d<T>* corners) const;
    /// Writes the 4 edges, anticlockwise from the minimum along x; each ends where the next one starts.
    void GetLineSegments(CadPoint2d<T>* starts, CadPoint2d<T>* ends) const;

    /// Moves each side out by half of `factor` times the size on its axis. No effect on an empty box.
    void Expand(T factor);
    /// Moves each side out by `distance`. No effect on an empty box.
    void ExpandByDistance(T distance);
    /// Moves the two sides across one axis out by `distance`; the axis, 0 or 1, is not checked. No effect on an empty
    /// box.
    void ExpandByDistance(T distance, EUvAxis axis);

    /// Places a point within the box widened by `tolerance`, or outside of it; a point within is on the boundary unless
    /// point > min + tolerance and point < max + tolerance on both axes.
    ///
    /// So along the lower sides the boundary is 2 * tolerance wide, and along the upper sides it is the one value
    /// max + tolerance.
    EBoundingBoxPointLocation ClassifyPointLocation(const CadPoint2d<T>& point, T tolerance);

    /// No effect on an empty box.
    void Translate(const CadVector2d<T>& displacement);
    /// Scales about the origin of coordinates; a negative factor swaps minimum and maximum on its axis. No effect on an
    /// empty box.
    void Scale(const CadVector2d<T>& factors);
    void Scale(T factor);

    /// Whether no coordinate differs by more than 1e-6 (float: 1e-4). Two empty boxes are equal; NaN never differs.
    bool IsAlmostEqual(const CBoundingBox2d& box) const;

    /// Stores or loads the records of the minimum and the maximum, with nothing around them. Throws the exceptions of
    /// the archive; when loading fails, the coordinates loaded so far are written.
    void Serialize(CArchive& archive);

private:
    CadPoint2d<T> m_min;
    CadPoint2d<T> m_max;
};

template <class T>
inline void CBoundingBox2d<T>::SetMinMax(const CadPoint2d<T>& min, const CadPoint2d<T>& max)
{
    *this = CBoundingBox2d(min, max);
}

template <class T>
inline CadPoint2d<T> CBoundingBox2d<T>::GetMid()
{
    return m_min.add(m_max) * T(0.5);
}

template <class T>
inline CadVector2d<T> CBoundingBox2d<T>::GetSize()
{
    return m_max - m_min;
}

template <class T>
inline T CBoundingBox2d<T>::GetArea() const
{
    return cadgeom::detail::Product(m_max[0] - m_min[0], m_max[1] - m_min[1]);
}

template <class T>
inline void CBoundingBox2d<T>::CheckPoint(const CadPoint2d<T>& point)
{
    cadgeom::detail::GrowBox<2>(m_min.data(), m_max.data(), point.data());
}

template <class T>
inline void CBoundingBox2d<T>::CheckBoundingBox(const CBoundingBox2d& box)
{
    const CBoundingBox2d other(box);
    CheckPoint(other.m_min);
    CheckPoint(other.m_max);
}

template <class T>
inline bool CBoundingBox2d<T>::ContainsPoint(const CadPoint2d<T>& point, T tolerance) const
{
    return cadgeom::detail::BoxEncloses<2>(m_min.data(), m_max.data(), point.data(), point.data(), tolerance);
}

template <class T>
inline bool CBoundingBox2d<T>::ContainsBoundingBox(const CBoundingBox2d& box, T tolerance) const
{
    return box.IsEmpty() || (!IsEmpty() && cadgeom::detail::BoxEncloses<2>(m_min.data(), m_max.data(), box.m_min.data(),
                                                                           box.m_max.data(), tolerance));
}

template <class T>
inline bool CBoundingBox2d<T>::BoundingBoxIntersects(const CBoundingBox2d& box, T tolerance) const
{
    return !cadgeom::detail::BoxesAreApart<2>(m_min.data(), m_max.data(), box.m_min.data(), box.m_max.data(),
                                              tolerance);
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API CBoundingBox2d<float>;
extern template class CADGEOM_API CBoundingBox2d<double>;

CADGEOM_FP_END
