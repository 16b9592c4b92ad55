#pragma once
/// @file
/// `CCadPolyline3d`, a growable sequence of points joined by straight segments: measuring, dropping points onto it,
/// simplifying, transforming and storing it. Next: platform/array.h for the array that it is.

#include <cadgeom/core/archive_records.h>
#include <cadgeom/core/export.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector3d.h>
#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/array.h>

#include <cstdint>

class CCadTransform;

template <class T>
class CBoundingBox3d;

template <class T>
class CCadPolyline3d;

/// Stores what CArray::Serialize stores: the count (CArchive::WriteCount) and the records of the vertices.
template <class T>
CADGEOM_API CArchive& operator<<(CArchive& archive, const CCadPolyline3d<T>& polyline);
/// Loads a polyline that operator<< or CArray::Serialize stored. Data that end too early throw CArchiveException
/// (endOfFile), with the polyline resized to the stored count, the coordinates loaded so far written and zeros after them;
/// a count whose memory cannot be obtained fails as in CArray::Serialize.
template <class T>
CADGEOM_API CArchive& operator>>(CArchive& archive, CCadPolyline3d<T>& polyline);

/// A polyline in space: n vertices joined by n - 1 segments. T is float or double; the float instance computes in float,
/// except where a member says otherwise.
///
/// It is an array of points with the growth rule of CArray and holds nothing else. Whether it is closed shows only in its
/// last vertex repeating the first. Where vertices are compared, they are equal when no coordinate differs by more than
/// the tolerance, by default 1e-6 for double and 1e-4 for float; a NaN coordinate makes them different.
///
/// A bad index or a negative size throws CInvalidArgException, a size whose memory cannot be obtained CMemoryException;
/// either leaves the polyline as it was.
template <class T>
class CADGEOM_API CCadPolyline3d : public CArray<CadPoint3d<T>, const CadPoint3d<T>&> {
public:
    using Base = CArray<CadPoint3d<T>, const CadPoint3d<T>&>;

    /// No vertices and no buffer.
    CCadPolyline3d() noexcept = default;
    CCadPolyline3d(const CCadPolyline3d& other) : Base() { this->Copy(other); }
    /// Takes the vertices of `other` and leaves it empty.
    CCadPolyline3d(CCadPolyline3d&& other) noexcept = default;
    // With a body, because compilers do not agree on whether an instance exports a defaulted one.
    ~CCadPolyline3d() override {}
    /// Copies the vertices. The polyline is resized by the growth rule, so that its capacity may exceed its count;
    /// copying itself changes nothing.
    void operator=(const CCadPolyline3d& other) { this->Copy(other); }
    /// Takes the vertices, the capacity and the growth step of `other` and leaves it empty.
    void operator=(CCadPolyline3d&& other) noexcept { Base::operator=(static_cast<Base&&>(other)); }

    std::int64_t GetNumPoints() const noexcept { return this->GetCount(); }
    /// Changes the number of vertices by the growth rule; new vertices are (0, 0, 0).
    void SetNumPoints(std::int64_t count) { this->SetSize(count); }
    bool IsEmpty() const noexcept { return Base::IsEmpty(); }
    /// Frees the buffer; count and capacity become 0.
    void Empty() noexcept { this->RemoveAll(); }
    /// Appends a vertex, which may be one of this polyline. Appending n vertices costs O(n).
    void AddPoint(const CadPoint3d<T>& point) { this->Add(point); }
    void SetPoint(std::int64_t index, const CadPoint3d<T>& point) { this->SetAt(index, point); }
    const CadPoint3d<T>& GetPoint(std::int64_t index) const { return this->GetAt(index); }

    /// Appends a copy of the first vertex, unless the last equals it or there are fewer than 2.
    /// @return whether a vertex was appended
    bool Close();

    /// The lengths of the segments added in order, in T. 0 for fewer than 2 vertices.
    T ComputeLength() const;
    /// Finds the box of the vertices. NaN coordinates are passed over.
    /// @param box  out: always written, whatever it held; empty when there are no vertices
    /// @return whether the minimum along x differs from that of the empty box
    bool ComputeBoundingBox(CBoundingBox3d<T>& box) const;
    /// Finds the nearest point of the polyline, as CadPoint::projectOntoLineSegment does on each segment.
    /// @param out  out: the nearest point, on the earliest segment of those equally near. The first segment is kept when
    ///             its distance is NaN, and later ones whose distance is NaN are passed over. May be `point`.
    /// @return false, with `out` untouched, when there are no vertices
    bool Drop(const CadPoint3d<T>& point, CadPoint3d<T>& out) const;

    /// Maps the vertices from world to the local coordinates of `transform`, as its aaforw() for arrays: in double, each
    /// coordinate rounded once.
    void TransformTo(const CCadTransform& transform);
    /// Maps the vertices from the local coordinates of `transform` to world, as its aaback() for arrays.
    void TransformFrom(const CCadTransform& transform);
    /// As PointsTranslate().
    void Translate(const CadVector3d<double>& displacement);
    /// As PointsScale(): about the origin.
    void Scale(double factor);
    /// As PointsConvertUnits().
    void ConvertUnits(CADUNITS from, CADUNITS to);

    /// Removes vertices that add nothing to the shape, in one sweep from the first vertex on. First those go that equal
    /// their predecessor within `tolerance`. Then, from each vertex kept (the anchor), vertices are dropped as long as the
    /// next vertex lies within `tolerance` of the segment from the anchor to the vertex after it: its foot on that segment's
    /// line must not lie beyond the ends, and its distance to the foot must not exceed `tolerance`. A segment with a squared
    /// length of at most 1e-12 (float: 1e-8) counts as its start.
    ///
    /// A dropped vertex is measured against no other segment, so the result differs from that of Douglas and Peucker, and
    /// the vertices dropped in one go may lie further than `tolerance` from the segment that replaces them. A polyline of
    /// one vertex, or of two that are equal within `tolerance`, ends up empty, its buffer freed; otherwise the capacity
    /// stays. Distances that are NaN exceed nothing.
    /// @return whether anything was removed
    /// Cost: linear in the vertices; allocates nothing.
    bool DataReduce(T tolerance);
    /// Removes vertices that equal their predecessor: of a run of equal vertices the first stays. Vertices are compared
    /// with their original predecessor, so a run may creep on by more than the tolerance. The capacity stays.
    /// @return whether anything was removed
    /// Cost: linear in the vertices; allocates nothing.
    bool RemoveRedundantPoints();
    /// Removes the last vertex when it equals the first; of two equal vertices one stays. The capacity stays.
    /// @return whether it was removed
    bool RemoveRedundantEndPoint();

private:
    friend CArchive& operator>><>(CArchive& archive, CCadPolyline3d& polyline);

    CADGEOM_HIDDEN bool RemoveRepeatedPoints(T tolerance);
    CADGEOM_HIDDEN bool RemovePointsNearChords(T tolerance);
};

// After the bodies: g++ never inlines a member whose body it meets after the line that promises an instance.
#define CADGEOM_DECLARE_POLYLINE(T)                                                                                    \
    extern template class CADGEOM_API CCadPolyline3d<T>;                                                               \
    extern template CADGEOM_API CArchive& operator<<(CArchive&, const CCadPolyline3d<T>&);                             \
    extern template CADGEOM_API CArchive& operator>>(CArchive&, CCadPolyline3d<T>&);                                   \
    extern template CADGEOM_API void SerializeElements(CArchive&, CCadPolyline3d<T>*, std::int64_t)

CADGEOM_DECLARE_POLYLINE(float);
CADGEOM_DECLARE_POLYLINE(double);

#undef CADGEOM_DECLARE_POLYLINE
