#include <cadgeom/bounds/oriented_box_3d.h>

#include <cadgeom/bounds/bounding_box_3d.h>
#include <cadgeom/core/tolerance.h>
#include <cadgeom/transform/transform.h>

#include <iterator>

// Building, growing and moving an oriented box. Its intersection tests have a source of their own.

namespace {

template <class Wide, class Narrow>
Wide Widened(const Narrow& components)
{
    return Wide(static_cast<double>(components[0]), static_cast<double>(components[1]),
                static_cast<double>(components[2]));
}

/// What a mapping moves: the corner and the ends of the three edges at it, and the axes.
template <class T>
struct MappedParts {
    CadPoint3d<T> points[4];
    CadVector3d<T> axes[3];
};

/// Replaces a box by its image under a mapping of its parts.
template <class T, class Mapping>
void MapBox(COrientedBox3d<T>& box, Mapping map)
{
    CadVector3d<T> sizedVectors[3];
    box.GetSizedVectors(sizedVectors);
    MappedParts<T> parts;
    parts.points[0] = box.GetOrigin();
    for (int j = 0; j < 3; ++j) {
        parts.points[1 + j] = box.GetOrigin() + sizedVectors[j];
        parts.axes[j] = box.GetAxis(j);
    }
    map(parts);
    CadVector3d<T> sizes;
    for (int j = 0; j < 3; ++j) {
        sizes[j] = (parts.points[1 + j] - parts.points[0]).length();
        box.SetAxis(j, parts.axes[j]);
    }
    box.SetOrigin(parts.points[0]);
    box.SetSizes(sizes);
}

} // namespace

template <class T>
COrientedBox3d<T>::COrientedBox3d(const CCadTransform& transform) : COrientedBox3d()
{
    for (int i = 0; i < 3; ++i) {
        m_axes[0][i] = static_cast<T>(transform.xAxis()[i]);
        m_axes[1][i] = static_cast<T>(transform.yAxis()[i]);
        m_axes[2][i] = static_cast<T>(transform.zAxis()[i]);
    }
}

template <class T>
COrientedBox3d<T>::COrientedBox3d(const CBoundingBox3d<T>& box, const CCadTransform& transform) : COrientedBox3d()
{
    SetBoundingBox(box, transform);
}

template <class T>
void COrientedBox3d<T>::SetBoundingBox(const CBoundingBox3d<T>& box, const CCadTransform& transform)
{
    if (box.IsEmpty()) {
        Empty();
        return;
    }
    Reset();
    m_origin = box.GetMin();
    m_sizes = box.GetMax() - box.GetMin();
    if (transform.IsEmptyTransform()) {
        // The identity returns what it is given, but sizes are measured between rounded ends all the same.
        MapBox(*this, [](MappedParts<T>&) {});
    } else {
        TransformFrom(transform);
    }
}

template <class T>
CBoundingBox3d<T> COrientedBox3d<T>::GetBoundingBox()
{
    return CBoundingBox3d<T>(*this);
}

template <class T>
void COrientedBox3d<T>::GetBoundingBox(CBoundingBox3d<T>& box, CCadTransform& frame) const
{
    box.Reset();
    frame = CCadTransform::GetEmptyTransform();
    if (IsEmpty()) {
        return;
    }
    const CadVector3d<T> half = m_sizes / T(2);
    box.CheckPoint(CadPoint3d<T>::zero() - half);
    box.CheckPoint(CadPoint3d<T>::zero() + half);

    for (int j = 0; j < 3; ++j) {
        frame.SetAxis(Widened<CadVector3d<double>>(m_axes[j]), j);
    }
    frame.SetTranslate(Widened<CadPoint3d<double>>(Middle()));
    frame.UndetermineFlags();
}

template <class T>
void COrientedBox3d<T>::GetSizedVectors(CadVector3d<T>* sizedVectors) const
{
    for (int j = 0; j < 3; ++j) {
        sizedVectors[j] = m_axes[j] * m_sizes[j];
    }
}

template <class T>
void COrientedBox3d<T>::GetCornerPoints(CadPoint3d<T>* corners) const
{
    CadVector3d<T> sizedVectors[3];
    GetSizedVectors(sizedVectors);
    corners[0] = m_origin;
    corners[4] = OppositeCorner();
    for (int j = 0; j < 3; ++j) {
        corners[1 + j] = m_origin + sizedVectors[j];
        corners[5 + j] = corners[4] - sizedVectors[j];
    }
}

template <class T>
void COrientedBox3d<T>::GetPlanes(CadPoint3d<T>* points, CadVector3d<T>* normals) const
{
    const CadPoint3d<T> opposite = OppositeCorner();
    for (int j = 0; j < 3; ++j) {
        points[j] = m_origin;
        normals[j] = -m_axes[j];
        points[3 + j] = opposite;
        normals[3 + j] = m_axes[j];
    }
}

template <class T>
void COrientedBox3d<T>::GetBoxLines(CadPoint3d<T>* points, CadVector3d<T>* directions,
                                    CadVector3d<T> (*normals)[2]) const
{
    CadVector3d<T> sizedVectors[3];
    GetSizedVectors(sizedVectors);
    const CadPoint3d<T> opposite = OppositeCorner();
    for (int j = 0; j < 3; ++j) {
        const int next = (j + 1) % 3;
        const int last = (j + 2) % 3;
        points[j] = m_origin;
        directions[j] = sizedVectors[j];
        normals[j][0] = -m_axes[next];
        normals[j][1] = -m_axes[last];
        points[3 + j] = opposite;
        directions[3 + j] = -sizedVectors[j];
        normals[3 + j][0] = m_axes[next];
        normals[3 + j][1] = m_axes[last];
    }
    // The other edges start at the far end of u, v or w and run along another axis. Their two faces are the far one
    // across the axis of their start and the near one across the third; the first normal is the one of the axis that
    // follows the direction's.
    int line = 6;
    for (int start = 0; start < 3; ++start) {
        for (int along = 0; along < 3; ++along) {
            if (along == start) {
                continue;
            }
            const int across = 3 - start - along;
            const int startNormal = (along + 1) % 3 == start ? 0 : 1;
            points[line] = m_origin + sizedVectors[start];
            directions[line] = sizedVectors[along];
            normals[line][startNormal] = m_axes[start];
            normals[line][1 - startNormal] = -m_axes[across];
            ++line;
        }
    }
}

template <class T>
CadPoint3d<T> COrientedBox3d<T>::OppositeCorner() const
{
    CadVector3d<T> sizedVectors[3];
    GetSizedVectors(sizedVectors);
    return m_origin + sizedVectors[0] + sizedVectors[1] + sizedVectors[2];
}

template <class T>
CadPoint3d<T> COrientedBox3d<T>::Middle() const
{
    return m_origin.add(OppositeCorner()) * T(0.5);
}

template <class T>
CadPoint3d<T> COrientedBox3d<T>::GetMax()
{
    return OppositeCorner();
}

template <class T>
CadPoint3d<T> COrientedBox3d<T>::GetMid()
{
    return Middle();
}

template <class T>
void COrientedBox3d<T>::CheckPoint(const CadPoint3d<T>& point)
{
    if (IsEmpty()) {
        m_origin = point;
        m_sizes.setZero();
        return;
    }
    const CadPoint3d<T> added(point);
    for (int j = 0; j < 3; ++j) {
        const T t = added.projectOntoLineParam(m_origin, m_axes[j]);
        if (t < T(0)) {
            m_origin += m_axes[j] * t;
            m_sizes[j] -= t;
        } else if (t > m_sizes[j]) {
            m_sizes[j] = t;
        }
    }
}

template <class T>
void COrientedBox3d<T>::CheckBoundingBox(const CBoundingBox3d<T>& box)
{
    CadPoint3d<T> corners[8];
    box.GetCornerPoints(corners);
    for (const CadPoint3d<T>& corner : corners) {
        CheckPoint(corner);
    }
}

template <class T>
void COrientedBox3d<T>::CheckOrientedBox(const COrientedBox3d& box)
{
    CadPoint3d<T> corners[8];
    box.GetCornerPoints(corners);
    for (const CadPoint3d<T>& corner : corners) {
        CheckPoint(corner);
    }
}

template <class T>
void COrientedBox3d<T>::TransformTo(const CCadTransform& transform)
{
    MapBox(*this, [&transform](MappedParts<T>& parts) {
        if (transform.IsEmptyTransform()) {
            // Array forms skip the identity; single positions still take a translation that was too small to count.
            for (CadPoint3d<T>& point : parts.points) {
                transform.aaforw(point, point);
            }
        } else {
            transform.aaforw(parts.points, std::size(parts.points));
            transform.aaforw(parts.axes, std::size(parts.axes));
        }
    });
}

template <class T>
void COrientedBox3d<T>::TransformFrom(const CCadTransform& transform)
{
    MapBox(*this, [&transform](MappedParts<T>& parts) {
        transform.aaback(parts.points, std::size(parts.points));
        transform.aaback(parts.axes, std::size(parts.axes));
    });
}

template <class T>
void COrientedBox3d<T>::Scale(T factor)
{
    m_origin *= factor;
    m_sizes *= factor;
}

template <class T>
void COrientedBox3d<T>::ConvertUnits(CADUNITS from, CADUNITS to)
{
    if (cadgeom::detail::IsConversion(from, to)) {
        Scale(static_cast<T>(GetConversionFactor(from, to)));
    }
}

// The intersection tests are instantiated where they are defined.
template class COrientedBox3d<float>;
template class COrientedBox3d<double>;
