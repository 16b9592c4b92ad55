#include <cadgeom/intersect/drop.h>

#include <cadgeom/intersect/line_projection.h>

// Coordinates come from Cramer's rule for the edges and their normal. Its determinant is |n|^2, so triangles that are
// small in absolute terms (edges below about 1e-2) already count as degenerate in the search for the nearest point.

namespace {

using Point = CadPoint3d<double>;
using Vector = CadVector3d<double>;
using cadgeom::detail::Absolute;

/// Largest |determinant| of a triangle that is only its edges: the double of the single-precision value just below 1e-8.
constexpr double kLargestEdgesDeterminant = 9.99999905104687e-9;

/// Largest |determinant| without a solution: 2^-52.
constexpr double kLargestSingularDeterminant = 2.220446049250313e-16;

double TripleProduct(const Vector& a, const Vector& b, const Vector& c)
{
    return a.dot(b.cross(c));
}

/// Coordinates of an offset from the corner by Cramer's rule: offset = u*edge1 + v*edge2 + w*normal.
struct PlaneSystem {
    PlaneSystem(const Vector& firstEdge, const Vector& secondEdge)
        : edge1(firstEdge),
          edge2(secondEdge),
          normal(edge1.cross(edge2)),
          determinant(TripleProduct(edge1, edge2, normal))
    {}

    double U(const Vector& offset) const { return TripleProduct(offset, edge2, normal) / determinant; }
    double V(const Vector& offset) const { return TripleProduct(edge1, offset, normal) / determinant; }

    Vector edge1;
    Vector edge2;
    Vector normal;
    double determinant;
};

/// The nearest point of one edge: 0 runs from corner 0 to 1, 1 from corner 1 to 2, 2 from corner 2 to 0.
struct EdgeFoot {
    EdgeFoot(const Point& point, const Point* const (&corners)[3], int edge)
    {
        const double s = point.projectOntoLineSegment(*corners[edge], *corners[(edge + 1) % 3], foot, distanceSquared);
        u = edge == 0 ? s : (edge == 1 ? 1 - s : 0);
        v = edge == 0 ? 0 : (edge == 1 ? s : 1 - s);
    }

    Point foot;
    double distanceSquared;
    double u;
    double v;
};

/// The outputs of the search for the nearest point.
struct Nearest {
    double& distanceSquared;
    double& u;
    double& v;
    Point& foot;
    bool& onEdge;

    void Accept(const EdgeFoot& edgeFoot)
    {
        distanceSquared = edgeFoot.distanceSquared;
        u = edgeFoot.u;
        v = edgeFoot.v;
        foot = edgeFoot.foot;
        onEdge = true;
    }
};

bool DropOntoEdges(const Point& point, const Point* const (&corners)[3], Nearest nearest)
{
    const EdgeFoot edges[] = {{point, corners, 0}, {point, corners, 1}, {point, corners, 2}};
    bool isImproved = false;
    for (const EdgeFoot& edge : edges) {
        if (nearest.distanceSquared > edge.distanceSquared) {
            nearest.Accept(edge);
            isImproved = true;
        }
    }
    return isImproved;
}

} // namespace

bool DropTriangle(const CadPoint3d<double>& point, const CadPoint3d<double>& corner0, const CadPoint3d<double>& corner1,
                  const CadPoint3d<double>& corner2, double& distanceSquared, double& u, double& v,
                  CadPoint3d<double>& foot, bool& onEdge)
{
    const Point* const corners[] = {&corner0, &corner1, &corner2};
    Nearest nearest = {distanceSquared, u, v, foot, onEdge};
    const PlaneSystem system(corner1 - corner0, corner2 - corner0);
    if (system.normal.lengthSquared() == 0) {
        return DropOntoEdges(point, corners, nearest);
    }
    const double planeDistanceSquared = point.distanceSquaredToPlane(corner0, system.normal);
    if (distanceSquared <= planeDistanceSquared) {
        return false;
    }
    if (Absolute(system.determinant) <= kLargestEdgesDeterminant) {
        return DropOntoEdges(point, corners, nearest);
    }
    const Vector offset = point - corner0;
    u = system.U(offset);
    v = system.V(offset);

    constexpr int kInside = -1;
    const int edge = u < 0 ? 2 : (v < 0 ? 0 : (u + v > 1 ? 1 : kInside));
    if (edge == kInside) {
        distanceSquared = planeDistanceSquared;
        foot = (corner0 * (1 - u - v)).add(corner1 * u).add(corner2 * v);
        onEdge = false;
        return true;
    }
    const EdgeFoot edgeFoot(point, corners, edge);
    if (distanceSquared <= edgeFoot.distanceSquared) {
        return false;
    }
    nearest.Accept(edgeFoot);
    return true;
}

namespace {

/// Drops onto the segment that is left of a triangle; writes the parameter when it is near enough.
bool DropOntoSegment(const Point& point, const Point& start, const Point& end, double maxDistanceSquared,
                     double& parameter, double& otherParameter)
{
    Point foot;
    double distanceSquared;
    const double s = point.projectOntoLineSegment(start, end, foot, distanceSquared);
    if (!(maxDistanceSquared > distanceSquared)) {
        return false;
    }
    parameter = s;
    otherParameter = 0;
    return true;
}

} // namespace

bool DropTriangle(const CadPoint3d<double>& point, const CadPoint3d<double>& corner0, const CadPoint3d<double>& corner1,
                  const CadPoint3d<double>& corner2, double maxDistanceSquared, double& u, double& v)
{
    const PlaneSystem system(corner1 - corner0, corner2 - corner0);
    const bool isZero1 = system.edge1.isZero();
    const bool isZero2 = system.edge2.isZero();
    if (isZero1 && isZero2) {
        if (!(maxDistanceSquared > corner0.distanceSquared(point))) {
            return false;
        }
        u = 0;
        v = 0;
        return true;
    }
    if (isZero2) {
        return DropOntoSegment(point, corner0, corner1, maxDistanceSquared, u, v);
    }
    if (isZero1) {
        return DropOntoSegment(point, corner0, corner2, maxDistanceSquared, v, u);
    }
    if (!system.normal.isZero() && maxDistanceSquared <= point.distanceSquaredToPlane(corner0, system.normal)) {
        return false;
    }
    // Collinear corners have the determinant 0.
    if (Absolute(system.determinant) <= kLargestSingularDeterminant) {
        u = 0;
        v = 0;
        return true;
    }
    const Vector offset = point - corner0;
    u = system.U(offset);
    v = system.V(offset);
    return true;
}

void DropParallelogram(const CadPoint3d<double>& point, const CadPoint3d<double>& corner,
                       const CadVector3d<double>& edge1, const CadVector3d<double>& edge2, double& u, double& v)
{
    const PlaneSystem system(edge1, edge2);
    if (system.normal.lengthSquared() > cadgeom::detail::kSingleEpsilon) {
        const Vector offset = point - corner;
        u = system.U(offset);
        v = system.V(offset);
        return;
    }
    const bool hasLength1 = !edge1.isAlmostZero();
    const bool hasLength2 = !edge2.isAlmostZero();
    const double projectedU = hasLength1 && !hasLength2 ? point.projectOntoLineParam(corner, edge1) : 0;
    const double projectedV = hasLength2 && !hasLength1 ? point.projectOntoLineParam(corner, edge2) : 0;
    u = projectedU;
    v = projectedV;
}

template <class T>
void GetTriangleUVPoint(const CadPoint3d<T>& a, const CadPoint3d<T>& b, const CadPoint3d<T>& c, const CadPoint3d<T>& d,
                        T& u, T& v)
{
    const CadVector3d<T> ab = b - a;
    const CadVector3d<T> bc = c - b;
    T alongAB;
    T alongBC;
    T unused;
    ProjectLineOntoLine(a, ab, d, bc, alongAB, unused);
    ProjectLineOntoLine(b, bc, d, ab, alongBC, unused);
    u = alongAB;
    v = alongBC;
}

template CADGEOM_API void GetTriangleUVPoint(const CadPoint3d<float>&, const CadPoint3d<float>&,
                                             const CadPoint3d<float>&, const CadPoint3d<float>&, float&, float&);
template CADGEOM_API void GetTriangleUVPoint(const CadPoint3d<double>&, const CadPoint3d<double>&,
                                             const CadPoint3d<double>&, const CadPoint3d<double>&, double&, double&);
