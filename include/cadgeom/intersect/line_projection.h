#pragma once
/// @file
/// Closest approach of lines and segments in space, and the intersection of lines in the plane. A line is a point and a
/// direction of any length; parameters are in lengths of that direction. Next: intersect/planar_queries.h.

#include <cadgeom/core/export.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>

/// Parameters of the closest approach of two lines in space.
///
/// With w = point2 - point1, a = |d1|^2, b = d1.d2, c = |d2|^2 and D = b*b - a*c these are
/// t1 = ((w.d2)*b - (w.d1)*c) / D and t2 = (b*t1 - w.d2) / c.
/// Lines with |D| <= 1e-24 (float: 1e-16) are parallel: t1 is 0 and t2 belongs to `point1`. A second direction with
/// c <= 1e-12 (float: 1e-8) is none: t2 is 0 and t1 is the parameter of the projection of `point2` on the first line,
/// which is 0 too when the first line has no direction either.
/// @param t1, t2  out: always written
template <class T>
CADGEOM_API void ProjectLineOntoLine(const CadPoint3d<T>& point1, const CadVector3d<T>& direction1,
                                     const CadPoint3d<T>& point2, const CadVector3d<T>& direction2, T& t1, T& t2);

/// As ProjectLineOntoLine, with a tolerance relative to the result: parameters of 2^23 and more count as parallel.
///
/// The quotients t1 = n1 / D and t2 = n2 / c are formed only where the divisor exceeds |numerator| * 2^-23.
/// @param t2  out; may be null, then only D is tested
/// @return false, with both outputs untouched, when |D| <= |n1| * 2^-23; false, with t1 written and t2 untouched, when
///         t2 is not null and c <= |n2| * 2^-23
template <class T>
CADGEOM_API bool ProjectLineOntoLine2(const CadPoint3d<T>& point1, const CadVector3d<T>& direction1,
                                      const CadPoint3d<T>& point2, const CadVector3d<T>& direction2, T& t1, T* t2);

/// Intersects two lines in the plane: point1 + s * direction1 = point2 + t * direction2.
///
/// With w = point2 - point1, s = (w x d2) / (d1 x d2) and t = (w x d1) / (d1 x d2). When |d1 x d2| <= 2^-23, only the
/// parameter with the larger numerator (t on ties) is that quotient; the other one is found by projecting the point
/// onto its line, and is 0 when that line's |direction|^2 <= 1e-12 (float: 1e-8).
/// @param s, t  out: untouched on failure
/// @return false for parallel lines: |d1 x d2| neither above 2^-23 nor above 2^-23 times the larger numerator
template <class T>
CADGEOM_API bool IntersectLineWithLine2d(const CadPoint2d<T>& point1, const CadVector2d<T>& direction1,
                                         const CadPoint2d<T>& point2, const CadVector2d<T>& direction2, T& s, T& t);

/// Finds the point of the segment from `start` to `end` that is closest to a line.
///
/// A segment parallel to the line, or without length, gives `start`. A line with |direction|^2 <= 1e-12 (float: 1e-8)
/// is measured from `point`; every segment is parallel to it.
/// @param foot             out: that point, exactly `start` or `end` when it is one of them
/// @param distanceSquared  out: its squared distance to the line
/// @param lineParameter    out, may be null: parameter on the line of the foot's projection; 0 without a direction
/// @return parameter of `foot` on the segment, 0 ... 1
template <class T>
CADGEOM_API T ProjectLineOntoLineSegment(const CadPoint3d<T>& point, const CadVector3d<T>& direction,
                                         const CadPoint3d<T>& start, const CadPoint3d<T>& end, CadPoint3d<T>& foot,
                                         T& distanceSquared, T* lineParameter);

/// Projects the segment point1 ... point1 + direction1 onto the segment point2 ... point2 + direction2.
///
/// The closest approach of the infinite lines is clamped to the first segment, and that point is projected onto the
/// second. The first parameter is not corrected afterwards: where the closest approach lies beyond the ends of the
/// second segment, the pair is not the closest one of the two segments.
/// Segments with |D| <= 1e-24 (float: 1e-16), see ProjectLineOntoLine, are parallel or points: a point, |d|^2 <= 1e-12
/// (float: 1e-8), is projected onto the other segment; else the nearest point of the second segment to `point1` is
/// projected back onto the first.
/// @param distanceSquared  out: squared distance from the point of the first segment to the second segment
/// @return parameter on the first segment, 0 ... 1
template <class T>
CADGEOM_API T ProjectLineSegmentOntoLineSegment(const CadPoint3d<T>& point1, const CadVector3d<T>& direction1,
                                                const CadPoint3d<T>& point2, const CadVector3d<T>& direction2,
                                                T& distanceSquared);

#define CADGEOM_DECLARE_LINE_PROJECTION(T)                                                                             \
    extern template CADGEOM_API void ProjectLineOntoLine(const CadPoint3d<T>&, const CadVector3d<T>&,                  \
                                                         const CadPoint3d<T>&, const CadVector3d<T>&, T&, T&);         \
    extern template CADGEOM_API bool ProjectLineOntoLine2(const CadPoint3d<T>&, const CadVector3d<T>&,                 \
                                                          const CadPoint3d<T>&, const CadVector3d<T>&, T&, T*);        \
    extern template CADGEOM_API bool IntersectLineWithLine2d(const CadPoint2d<T>&, const CadVector2d<T>&,              \
                                                             const CadPoint2d<T>&, const CadVector2d<T>&, T&, T&);     \
    extern template CADGEOM_API T ProjectLineOntoLineSegment(const CadPoint3d<T>&, const CadVector3d<T>&,              \
                                                             const CadPoint3d<T>&, const CadPoint3d<T>&,               \
                                                             CadPoint3d<T>&, T&, T*);                                  \
    extern template CADGEOM_API T ProjectLineSegmentOntoLineSegment(const CadPoint3d<T>&, const CadVector3d<T>&,       \
                                                                    const CadPoint3d<T>&, const CadVector3d<T>&, T&)

CADGEOM_DECLARE_LINE_PROJECTION(float);
CADGEOM_DECLARE_LINE_PROJECTION(double);

#undef CADGEOM_DECLARE_LINE_PROJECTION
