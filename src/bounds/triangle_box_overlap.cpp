#include <cadgeom/bounds/triangle_box_overlap.h>

#include <cadgeom/core/components.h>

// T. Akenine-Moller, "Fast 3D triangle-box overlap testing", Journal of Graphics Tools 6(1), 2001. With the box centred
// at the origin, an axis separates when the projections of the triangle's vertices lie wholly beyond the projection
// radius of the box. Where triangles fall at random no single axis decides predictably, so the axes are not tested one
// after the other: all projections are formed, and compared in packs.

namespace {

using cadgeom::detail::Absolute;

template <class T>
struct OverlapTolerance;

template <>
struct OverlapTolerance<float> {
    static constexpr float kEdgeAxes = 1e-4F;
    static constexpr float kBoxAxes = 1e-4F;
    static constexpr float kPlane = 1e-4F;
};

/// Only the box axes have a tolerance of double precision of their own.
template <>
struct OverlapTolerance<double> {
    static constexpr double kEdgeAxes = 9.999999747378752e-5;
    static constexpr double kBoxAxes = 1e-6;
    static constexpr double kPlane = 9.999999747378752e-5;
};

template <class T>
using Pair = cadgeom::detail::Lanes<T, 2>;

/// The projections of two vertices of the triangle on an axis, and the radius of the box on it.
template <class T>
struct Projection {
    T first;
    T second;
    T radius;
};

/// Whether an interval lies wholly beyond a radius, on two axes.
template <class T>
auto IsBeyond(const Pair<T>& min, const Pair<T>& max, const Pair<T>& radius)
{
    return (min > radius) | (-max > radius);
}

template <class T>
auto AreBeyond(const Projection<T>& a, const Projection<T>& b)
{
    const Pair<T> first(a.first, b.first);
    const Pair<T> second(a.second, b.second);
    return IsBeyond<T>(Pair<T>::Min(first, second), Pair<T>::Max(second, first), Pair<T>(a.radius, b.radius));
}

/// The triangle about the centre of the box.
template <class T>
class CentredTriangle {
public:
    CentredTriangle(const CBoundingBox3d<T>& box, const CadPoint3d<T>* triangle)
    {
        for (int i = 0; i < 3; ++i) {
            const T min = box.GetMin()[i];
            const T max = box.GetMax()[i];
            const T centre = T(0.5) * (min + max);
            m_half[i] = T(0.5) * (max - min);
            for (int k = 0; k < 3; ++k) {
                m_vertices[k][i] = triangle[k][i] - centre;
            }
        }
        for (int k = 0; k < 3; ++k) {
            m_edges[k] = m_vertices[(k + 1) % 3] - m_vertices[k];
        }
    }

    /// Whether the triangle lies wholly beyond the box on an axis of the box, or on the cross product of one with an edge.
    /// On such a product two vertices have one projection: one of them and the third vertex suffice.
    bool IsApart() const
    {
        const auto isApart = AreBeyondOnBoxAxes(0, 1) | AreBeyondOnBoxAxes(2, 2) |
                             AreBeyond(OnEdgeAxis<0>(0, 0, 2), OnEdgeAxis<1>(0, 0, 2)) |
                             AreBeyond(OnEdgeAxis<0>(1, 0, 2), OnEdgeAxis<1>(1, 0, 2)) |
                             AreBeyond(OnEdgeAxis<0>(2, 0, 1), OnEdgeAxis<1>(2, 0, 1)) |
                             AreBeyond(OnEdgeAxis<2>(0, 1, 2), OnEdgeAxis<2>(1, 0, 1)) |
                             AreBeyond(OnEdgeAxis<2>(2, 1, 2), OnEdgeAxis<2>(2, 1, 2));
        return isApart.Any();
    }

    /// Whether the box reaches the plane of the triangle. Along the normal its corners lie up to the sum of the half-sizes,
    /// each times the size of the normal's component, above and below the centre.
    bool PlaneMeetsBox() const
    {
        constexpr T kTolerance = OverlapTolerance<T>::kPlane;
        const CadVector3d<T> normal = m_edges[0].cross(m_edges[1]);
        const T offset = -normal.dot(m_vertices[0]);
        T reach = T(0);
        for (int i = 0; i < 3; ++i) {
            reach += Absolute(normal[i]) * m_half[i];
        }
        return !(offset - reach > kTolerance) && offset + reach >= -kTolerance;
    }

private:
    auto AreBeyondOnBoxAxes(int axis, int otherAxis) const
    {
        const auto vertex = [&](int k) { return Pair<T>(m_vertices[k][axis], m_vertices[k][otherAxis]); };
        const auto min = Pair<T>::Min(vertex(2), Pair<T>::Min(vertex(1), vertex(0)));
        const auto max = Pair<T>::Max(vertex(2), Pair<T>::Max(vertex(1), vertex(0)));
        return IsBeyond<T>(min, max, Pair<T>(m_half[axis], m_half[otherAxis]) + OverlapTolerance<T>::kBoxAxes);
    }

    /// On the cross product of a box axis and an edge, by two vertices.
    template <int axis>
    Projection<T> OnEdgeAxis(int edge, int firstVertex, int secondVertex) const
    {
        constexpr int kNext = (axis + 1) % 3;
        constexpr int kLast = (axis + 2) % 3;
        const CadVector3d<T>& e = m_edges[edge];
        const auto project = [&e](const CadVector3d<T>& q) { return e[kLast] * q[kNext] - e[kNext] * q[kLast]; };
        const T first = project(m_vertices[firstVertex]);
        const T second = project(m_vertices[secondVertex]);
        const T radius = Absolute(e[kLast]) * m_half[kNext] + Absolute(e[kNext]) * m_half[kLast];
        return {first, second, radius + OverlapTolerance<T>::kEdgeAxes};
    }

    CadVector3d<T> m_half;
    CadVector3d<T> m_vertices[3];
    CadVector3d<T> m_edges[3];
};

} // namespace

template <class T>
bool TriangleBoxOverlap(const CBoundingBox3d<T>& box, const CadPoint3d<T>* const triangle)
{
    const CentredTriangle<T> centred(box, triangle);
    return !centred.IsApart() && centred.PlaneMeetsBox();
}

template CADGEOM_API bool TriangleBoxOverlap(const CBoundingBox3d<float>&, const CadPoint3d<float>* const);
template CADGEOM_API bool TriangleBoxOverlap(const CBoundingBox3d<double>&, const CadPoint3d<double>* const);
