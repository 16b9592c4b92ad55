#include <cadgeom/intersect/pierce.h>

#include "core/widen.h"

#include <type_traits>

// Moeller and Trumbore: Cramer's rule for origin + t*direction = corner + u*edge1 + v*edge2, with the triple products
// sharing two cross products. The determinant test is absolute, so shapes with edges below about 1e-3 are never hit.
// Most lines miss most triangles by u already, so each rejection leaves at once; computing all quotients first and
// deciding afterwards takes longer even where a third of the lines hit.

namespace {

using cadgeom::detail::Widened;

/// Largest |determinant| of a line that runs along the plane.
constexpr double kLargestParallelDeterminant = 1e-6;

/// Width of the rim around the triangle that still counts, in barycentric units.
constexpr double kMargin = 0.0001;
constexpr double kOneAndMargin = 1.0001;

/// The equations and their solutions.
struct EdgeSystem {
    EdgeSystem(const CadPoint3d<double>& origin, const CadVector3d<double>& lineDirection,
               const CadPoint3d<double>& corner, const CadVector3d<double>& firstEdge,
               const CadVector3d<double>& secondEdge)
        : direction(lineDirection),
          edge1(firstEdge),
          edge2(secondEdge),
          offset(origin - corner),
          p(direction.cross(edge2)),
          determinant(edge1.dot(p))
    {}

    bool IsParallel() const { return cadgeom::detail::Absolute(determinant) <= kLargestParallelDeterminant; }

    /// The cross product that v and t share.
    CadVector3d<double> Q() const { return offset.cross(edge1); }

    double U() const { return offset.dot(p) / determinant; }
    double V(const CadVector3d<double>& q) const { return direction.dot(q) / determinant; }
    double Parameter(const CadVector3d<double>& q) const { return edge2.dot(q) / determinant; }

    CadVector3d<double> direction;
    CadVector3d<double> edge1;
    CadVector3d<double> edge2;
    CadVector3d<double> offset;
    CadVector3d<double> p;
    double determinant;
};

bool PierceTriangleInDouble(const CadPoint3d<double>& origin, const CadVector3d<double>& direction,
                            const CadPoint3d<double>& corner0, const CadPoint3d<double>& corner1,
                            const CadPoint3d<double>& corner2, double& t, double& u, double& v)
{
    const EdgeSystem system(origin, direction, corner0, corner1 - corner0, corner2 - corner0);
    if (system.IsParallel()) {
        return false;
    }
    const double hitU = system.U();
    u = hitU;
    if (hitU < -kMargin || hitU > kOneAndMargin) {
        return false;
    }
    const CadVector3d<double> q = system.Q();
    const double hitV = system.V(q);
    v = hitV;
    if (hitV < -kMargin || hitU + hitV > kOneAndMargin) {
        return false;
    }
    t = system.Parameter(q);
    return true;
}

template <class T>
bool PierceSpannedPlane(const CadPoint3d<T>& origin, const CadVector3d<T>& direction, const CadPoint3d<T>& corner,
                        const CadVector3d<T>& edge1, const CadVector3d<T>& edge2, T& t, T& u, T& v)
{
    const EdgeSystem system(Widened(origin), Widened(direction), Widened(corner), Widened(edge1), Widened(edge2));
    if (system.IsParallel()) {
        return false;
    }
    const CadVector3d<double> q = system.Q();
    t = static_cast<T>(system.Parameter(q));
    u = static_cast<T>(system.U());
    v = static_cast<T>(system.V(q));
    return true;
}

} // namespace

template <class T>
bool PierceTriangle(const CadPoint3d<T>& origin, const CadVector3d<T>& direction, const CadPoint3d<T>& corner0,
                    const CadPoint3d<T>& corner1, const CadPoint3d<T>& corner2, T& t, T& u, T& v)
{
    if constexpr (std::is_same_v<T, double>) {
        return PierceTriangleInDouble(origin, direction, corner0, corner1, corner2, t, u, v);
    } else {
        double wideT;
        double wideU;
        double wideV;
        if (!PierceTriangleInDouble(Widened(origin), Widened(direction), Widened(corner0), Widened(corner1),
                                    Widened(corner2), wideT, wideU, wideV)) {
            return false;
        }
        t = static_cast<T>(wideT);
        u = static_cast<T>(wideU);
        v = static_cast<T>(wideV);
        return true;
    }
}

template <class T>
bool PierceParallelogram(const CadPoint3d<T>& origin, const CadVector3d<T>& direction, const CadPoint3d<T>& corner,
                         const CadVector3d<T>& edge1, const CadVector3d<T>& edge2, T& t, T& u, T& v)
{
    return PierceSpannedPlane(origin, direction, corner, edge1, edge2, t, u, v);
}

bool PierceParallelogram(const CadPoint3d<float>& origin, const CadVector3d<float>& direction,
                         const CadPoint3d<float>& corner, const CadVector3d<float>& edge1,
                         const CadVector3d<float>& edge2, float& t, float& u, float& v)
{
    return PierceSpannedPlane(origin, direction, corner, edge1, edge2, t, u, v);
}

template CADGEOM_API bool PierceTriangle(const CadPoint3d<float>&, const CadVector3d<float>&, const CadPoint3d<float>&,
                                         const CadPoint3d<float>&, const CadPoint3d<float>&, float&, float&, float&);
template CADGEOM_API bool PierceTriangle(const CadPoint3d<double>&, const CadVector3d<double>&,
                                         const CadPoint3d<double>&, const CadPoint3d<double>&,
                                         const CadPoint3d<double>&, double&, double&, double&);
template CADGEOM_API bool PierceParallelogram(const CadPoint3d<double>&, const CadVector3d<double>&,
                                              const CadPoint3d<double>&, const CadVector3d<double>&,
                                              const CadVector3d<double>&, double&, double&, double&);
