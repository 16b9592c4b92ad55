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

constexpr int kAxisCount = 12;

template <class T>
T Smaller(T a, T b)
{
    return a < b ? a : b;
}

template <class T>
T Larger(T a, T b)
{
    return a > b ? a : b;
}

/// The projections of triangle and box on all axes but the normal.
template <class T>
class Projections {
public:
    void Add(T min, T max, T radius)
    {
        m_above[m_count] = min;
        m_below[m_count] = -max;
        m_radii[m_count] = radius;
        ++m_count;
    }

    /// Whether the triangle lies wholly beyond the box on some axis.
    bool AreApart() const
    {
        using Pair = cadgeom::detail::Lanes<T, 2>;
        auto apart = IsBeyond(Pair(m_above), Pair(m_below), Pair(m_radii));
        for (int i = 2; i < kAxisCount; i += 2) {
            apart = apart | IsBeyond(Pair(m_above + i), Pair(m_below + i), Pair(m_radii + i));
        }
        return apart.Any();
    }

private:
    template <class Pair>
    static auto IsBeyond(const Pair& above, const Pair& below, const Pair& radii)
    {
        return (above > radii) | (below > radii);
    }

    int m_count = 0;
    T m_above[kAxisCount];
    T m_below[kAxisCount];
    T m_radii[kAxisCount];
};

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

    /// On the cross product of a box axis and an edge two vertices have one projection: the third and one of the two,
    /// whichever the published tables name, suffice.
    void ProjectOnEdgeAxes(Projections<T>& projections) const
    {
        ProjectOnEdgeAxis<0>(0, 0, 2, projections);
        ProjectOnEdgeAxis<1>(0, 0, 2, projections);
        ProjectOnEdgeAxis<2>(0, 1, 2, projections);
        ProjectOnEdgeAxis<0>(1, 0, 2, projections);
        ProjectOnEdgeAxis<1>(1, 0, 2, projections);
        ProjectOnEdgeAxis<2>(1, 0, 1, projections);
        ProjectOnEdgeAxis<0>(2, 0, 1, projections);
        ProjectOnEdgeAxis<1>(2, 0, 1, projections);
        ProjectOnEdgeAxis<2>(2, 1, 2, projections);
    }

    void ProjectOnBoxAxes(Projections<T>& projections) const
    {
        for (int i = 0; i < 3; ++i) {
            const T first = m_vertices[0][i];
            projections.Add(Smaller(m_vertices[2][i], Smaller(m_vertices[1][i], first)),
                            Larger(m_vertices[2][i], Larger(m_vertices[1][i], first)),
                            m_half[i] + OverlapTolerance<T>::kBoxAxes);
        }
    }

    /// Whether the box reaches the plane of the triangle: with its corner farthest against the normal on or below it, and
    /// the opposite corner on or above.
    bool PlaneMeetsBox() const
    {
        constexpr T kTolerance = OverlapTolerance<T>::kPlane;
        const CadVector3d<T> normal = m_edges[0].cross(m_edges[1]);
        const T offset = -normal.dot(m_vertices[0]);
        CadVector3d<T> lowest;
        CadVector3d<T> highest;
        for (int i = 0; i < 3; ++i) {
            const T along = normal[i] > T(0) ? m_half[i] : -m_half[i];
            lowest[i] = -along;
            highest[i] = along;
        }
        return !(normal.dot(lowest) + offset > kTolerance) && (normal.dot(highest) + offset >= -kTolerance);
    }

private:
    template <int axis>
    void ProjectOnEdgeAxis(int edge, int firstVertex, int secondVertex, Projections<T>& projections) const
    {
        constexpr int kNext = (axis + 1) % 3;
        constexpr int kLast = (axis + 2) % 3;
        const CadVector3d<T>& e = m_edges[edge];
        const auto project = [&e](const CadVector3d<T>& q) { return e[kLast] * q[kNext] - e[kNext] * q[kLast]; };
        const T first = project(m_vertices[firstVertex]);
        const T second = project(m_vertices[secondVertex]);
        const T radius = Absolute(e[kLast]) * m_half[kNext] + Absolute(e[kNext]) * m_half[kLast];
        projections.Add(Smaller(first, second), Larger(second, first), radius + OverlapTolerance<T>::kEdgeAxes);
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
    Projections<T> projections;
    centred.ProjectOnEdgeAxes(projections);
    centred.ProjectOnBoxAxes(projections);
    return !projections.AreApart() && centred.PlaneMeetsBox();
}

template CADGEOM_API bool TriangleBoxOverlap(const CBoundingBox3d<float>&, const CadPoint3d<float>* const);
template CADGEOM_API bool TriangleBoxOverlap(const CBoundingBox3d<double>&, const CadPoint3d<double>* const);
