#include <cadgeom/intersect/pierce.h>

// A point of the patch lies on the line when (S(u, v) - origin) x direction = 0. Eliminating v by a product with the
// v-derivative leaves a quadratic equation in u alone, and the other way round.

namespace {

using Point2 = CadPoint2d<double>;
using Point3 = CadPoint3d<double>;
using Vector3 = CadVector3d<double>;
using Point2Array = CArray<CadPoint2d<double>, const CadPoint2d<double>&>;

/// Largest |quadratic coefficient| of a linear equation.
constexpr double kLargestLinearCoefficient = 1e-6;

/// Surface parameters of the corners.
constexpr double kCornerU[] = {0, 1, 0, 1};
constexpr double kCornerV[] = {0, 0, 1, 1};

/// (a/2) * x^2 + b * x + c = 0.
struct Equation {
    double a;
    double b;
    double c;
};

struct Roots {
    int count = 0;
    double values[2];
};

/// What becomes of a discriminant that is NaN, because its products overflow.
enum class UndefinedDiscriminant {
    givesNaNRoots,
    givesNoRoots
};

Roots FindRoots(const Equation& equation, UndefinedDiscriminant undefined)
{
    Roots roots;
    const double a = equation.a;
    const double b = equation.b;
    const double c = equation.c;
    if (cadgeom::detail::Absolute(a) <= kLargestLinearCoefficient) {
        if (b != 0) {
            roots.count = 1;
            roots.values[0] = -c / b;
        }
        return roots;
    }
    const double discriminant = b * b - 2 * a * c;
    const bool isReal = undefined == UndefinedDiscriminant::givesNaNRoots ? !(discriminant < 0) : discriminant >= 0;
    if (isReal) {
        const double root = cadgeom::detail::Sqrt(discriminant);
        roots.count = 2;
        roots.values[0] = (root - b) / a;
        roots.values[1] = (-b - root) / a;
    }
    return roots;
}

Point3 Evaluate(const Point3* corners, double u, double v)
{
    const Point3 bottom = (corners[0] * (1 - u)).add(corners[1] * u);
    const Point3 top = (corners[2] * (1 - u)).add(corners[3] * u);
    return (bottom * (1 - v)).add(top * v);
}

bool PierceAsTriangle(const Point3& origin, const Vector3& direction, const Point3* corners, const int (&indices)[3],
                      Point2Array& uvs, CArray<double>& ts)
{
    double t;
    double u;
    double v;
    if (!PierceTriangle(origin, direction, corners[indices[0]], corners[indices[1]], corners[indices[2]], t, u, v)) {
        return false;
    }
    const auto parameters = [&indices](int i) { return Point2(kCornerU[indices[i]], kCornerV[indices[i]]); };
    uvs.Add((parameters(0) * (1 - u - v)).add(parameters(1) * u).add(parameters(2) * v));
    ts.Add(t);
    return true;
}

bool PierceTwisted(const Point3& origin, const Vector3& direction, const Point3* corners, Point2Array& uvs,
                   CArray<double>& ts)
{
    const Vector3 edge1 = corners[1] - corners[0];
    const Vector3 edge2 = corners[2] - corners[0];
    const Vector3 twist = corners[3] - corners[2] - edge1;
    const Vector3 offset = origin - corners[0];
    const Vector3 g = direction.cross(twist);
    const Vector3 h = direction.cross(edge2);
    const Vector3 k = direction.cross(edge1);
    const double alongTwist = offset.dot(g);

    const Equation uEquation = {-2 * edge1.dot(g), alongTwist - edge1.dot(h), offset.dot(h)};
    const Equation vEquation = {-2 * edge2.dot(g), alongTwist - edge2.dot(k), offset.dot(k)};
    const Roots us = FindRoots(uEquation, UndefinedDiscriminant::givesNaNRoots);
    const Roots vs = FindRoots(vEquation, UndefinedDiscriminant::givesNoRoots);
    for (int i = 0; i < us.count; ++i) {
        for (int j = 0; j < vs.count; ++j) {
            const Point3 onPatch = Evaluate(corners, us.values[i], vs.values[j]);
            uvs.Add(Point2(us.values[i], vs.values[j]));
            ts.Add(onPatch.projectOntoLineParam(origin, direction));
        }
    }
    return !ts.IsEmpty();
}

bool PierceCorners(const Point3& origin, const Vector3& direction, const Point3* corners, Point2Array& uvs,
                   CArray<double>& ts)
{
    if (corners[2] == corners[0] || corners[1] == corners[0]) {
        return PierceAsTriangle(origin, direction, corners, {1, 3, 2}, uvs, ts);
    }
    if (corners[3] == corners[2] || corners[1] == corners[3]) {
        return PierceAsTriangle(origin, direction, corners, {0, 1, 2}, uvs, ts);
    }
    return PierceTwisted(origin, direction, corners, uvs, ts);
}

} // namespace

bool PierceQuad(const CadPoint3d<double>& origin, const CadVector3d<double>& direction,
                const CadPoint3d<double>* const corners, CArray<CadPoint2d<double>, const CadPoint2d<double>&>& uvs,
                CArray<double>& ts)
{
    uvs.RemoveAll();
    ts.RemoveAll();
    if (corners == nullptr) {
        return false;
    }
    try {
        return PierceCorners(origin, direction, corners, uvs, ts);
    } catch (...) {
        uvs.RemoveAll();
        ts.RemoveAll();
        throw;
    }
}
