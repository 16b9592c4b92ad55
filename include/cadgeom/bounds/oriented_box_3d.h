#pragma once
/// @file
/// `COrientedBox3d`, a box with axes of its own: what an axis-aligned box becomes under a transform.

#include <cadgeom/core/export.h>
#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector3d.h>

class CCadTransform;

template <class T>
class CBoundingBox3d;

CADGEOM_FP_BEGIN

/// A box in any orientation: a corner (the origin), three sizes, and three axes, normally unit vectors at right angles.
/// With the sized vectors u, v and w (each size times its axis) it is the set of origin + a*u + b*v + c*w for a, b, c in
/// 0 ... 1. T is float or double.
///
/// The empty box has the sizes -1; IsEmpty() looks at the x size alone, and only the members that say so treat an empty
/// box specially.
///
/// Tests measure along axes and normals by CadPoint::projectOntoLineParam, in units of the axis; an axis with
/// |axis|^2 <= 1e-12 (float: 1e-8) gives 0, so that it neither grows nor excludes anything.
template <class T>
class CADGEOM_API COrientedBox3d {
public:
    /// An empty box; as Reset().
    COrientedBox3d() { Reset(); }
    /// An empty box with the zero point as its origin and the axes of a transform, without its scale.
    COrientedBox3d(const CCadTransform& transform);
    /// The box of SetBoundingBox(); of an empty `box` as Reset() makes it.
    COrientedBox3d(const CBoundingBox3d<T>& box, const CCadTransform& transform);
    COrientedBox3d(const COrientedBox3d&) = default;
    COrientedBox3d(COrientedBox3d&&) = default;
    ~COrientedBox3d() = default;
    COrientedBox3d& operator=(const COrientedBox3d&) = default;
    COrientedBox3d& operator=(COrientedBox3d&&) = default;

    /// Takes an axis-aligned box to the world as TransformFrom() does. An empty `box` makes this box empty, with the
    /// origin and axes that it had.
    void SetBoundingBox(const CBoundingBox3d<T>& box, const CCadTransform& transform);
    /// Makes the sizes -1; origin and axes stay.
    void Empty() { m_sizes.set(T(-1), T(-1), T(-1)); }
    /// Makes the box empty, with the zero point as its origin and the unit axes.
    void Reset();
    bool IsEmpty() const { return m_sizes[0] == T(-1); }

    const CadPoint3d<T>& GetOrigin() const { return m_origin; }
    const CadVector3d<T>& GetSizes() const { return m_sizes; }
    /// Axis 0, 1 or 2; the index is not checked.
    const CadVector3d<T>& GetAxis(int axis) const { return m_axes[axis]; }
    void SetOrigin(const CadPoint3d<T>& origin) { m_origin = origin; }
    void SetSizes(const CadVector3d<T>& sizes) { m_sizes = sizes; }
    /// Sets axis 0, 1 or 2 as it is, without normalising; the index is not checked.
    void SetAxis(int axis, const CadVector3d<T>& direction) { m_axes[axis] = direction; }

    /// The axis-aligned box of the eight corners; empty for an empty box.
    CBoundingBox3d<T> GetBoundingBox();
    /// This box as an axis-aligned one about the origin of a frame.
    /// @param box    out: from -sizes / 2 to sizes / 2; empty for an empty box
    /// @param frame  out: the axes of this box with GetMid() as translation, scale 1, flags undetermined; the identity for
    ///               an empty box
    void GetBoundingBox(CBoundingBox3d<T>& box, CCadTransform& frame) const;
    /// Writes u, v and w.
    void GetSizedVectors(CadVector3d<T>* sizedVectors) const;
    /// Writes 8 corners: origin, origin + u, origin + v, origin + w, the opposite corner F = origin + u + v + w, F - u,
    /// F - v, F - w.
    void GetCornerPoints(CadPoint3d<T>* corners) const;
    /// Writes the 6 face planes: through the origin with the negated axes as normals, then through the opposite corner
    /// with the axes.
    void GetPlanes(CadPoint3d<T>* points, CadVector3d<T>* normals) const;
    /// Writes the 12 edges: a start, the sized vector to the other end, and the outward normals of the two faces that
    /// meet in the edge. First the three from the origin along u, v, w; then the three from the opposite corner along
    /// -u, -v, -w; then along v and w from origin + u, along u and w from origin + v, along u and v from origin + w.
    void GetBoxLines(CadPoint3d<T>* points, CadVector3d<T>* directions, CadVector3d<T> (*normals)[2]) const;
    /// The opposite corner, origin + u + v + w.
    CadPoint3d<T> GetMax();
    /// Half the sum of the origin and the opposite corner.
    CadPoint3d<T> GetMid();

    /// Grows the box along its own axes to contain a point. An empty box gets the point as its origin, sizes 0, and keeps
    /// its axes.
    void CheckPoint(const CadPoint3d<T>& point);
    /// CheckPoint() of the eight corners, in the order of CBoundingBox3d::GetCornerPoints; there is no test whether `box`
    /// is empty.
    void CheckBoundingBox(const CBoundingBox3d<T>& box);
    /// CheckPoint() of the eight corners; there is no test whether `box` is empty.
    void CheckOrientedBox(const COrientedBox3d& box);

    /// Whether a point lies in the box widened by `tolerance` on each side, boundary included. There is no test whether
    /// the box is empty; a NaN is not outside.
    bool ContainsPoint(const CadPoint3d<T>& point, T tolerance) const;
    /// OrientedBoxIntersects() with an axis-aligned box.
    bool BoundingBoxIntersects(const CBoundingBox3d<T>& box, T tolerance) const;
    /// Whether two boxes intersect, or are less than `tolerance` apart at each of their face planes.
    ///
    /// Boxes are apart when a face plane of either separates them; those that only a plane along an edge of each would
    /// separate are reported as intersecting. Boxes of which one has a corner in the other (boundary included, without
    /// tolerance) intersect; beyond that, a corner that lies on a plane counts as beyond it.
    bool OrientedBoxIntersects(const COrientedBox3d& other, T tolerance) const;
    /// SweptOrientedBoxIntersects() with an axis-aligned box.
    bool SweptBoundingBoxIntersects(const CBoundingBox3d<T>& box, const CadVector3d<T>& motion, T tolerance) const;
    /// Whether this box, moved by t * motion for t from 0 to 1, meets `other`: as OrientedBoxIntersects(), with the volume
    /// that the box sweeps.
    ///
    /// The boxes are also apart when a plane along the motion and a silhouette edge of this box separates them. Such
    /// planes are not looked at when the motion is parallel to an axis of this box within 0.001 degrees.
    /// A motion parallel to a face, but not to an axis, makes planes of it whose outer side is not known: then boxes that
    /// do not reach beyond the face may be reported as apart although they meet.
    /// @param tolerance  a corner counts as beyond a plane when it is at least this far beyond it
    bool SweptOrientedBoxIntersects(const COrientedBox3d& other, const CadVector3d<T>& motion, T tolerance) const;

    /// Takes the box to the local frame of `transform`. The origin and the ends of the three edges at it are mapped as
    /// positions, and each size becomes the length of its mapped edge; the axes are mapped as directions and not
    /// normalised. There is no test whether the box is empty. The transform's flags are determined.
    void TransformTo(const CCadTransform& transform);
    /// As TransformTo(), from the local frame of `transform` to the world.
    void TransformFrom(const CCadTransform& transform);
    /// Moves the origin.
    void Translate(const CadVector3d<T>& displacement) { m_origin += displacement; }
    /// Multiplies origin and sizes. An empty box does not stay empty.
    void Scale(T factor);
    /// Scale() by GetConversionFactor(from, to), which the float instance rounds to float first. Nothing happens for equal
    /// units and when either is CADUNITS_NONE.
    void ConvertUnits(CADUNITS from, CADUNITS to);

private:
    CADGEOM_HIDDEN CadPoint3d<T> OppositeCorner() const;
    CADGEOM_HIDDEN CadPoint3d<T> Middle() const;

    CadPoint3d<T> m_origin;
    CadVector3d<T> m_sizes;
    CadVector3d<T> m_axes[3];
};

template <class T>
inline void COrientedBox3d<T>::Reset()
{
    Empty();
    m_origin.setZero();
    m_axes[0].set(T(1), T(0), T(0));
    m_axes[1].set(T(0), T(1), T(0));
    m_axes[2].set(T(0), T(0), T(1));
}

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
extern template class CADGEOM_API COrientedBox3d<float>;
extern template class CADGEOM_API COrientedBox3d<double>;

CADGEOM_FP_END
