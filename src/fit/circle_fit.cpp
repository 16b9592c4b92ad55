#include <cadgeom/fit/circle_fit.h>

#include <cadgeom/core/tolerance.h>
#include <cadgeom/fit/plane_fit.h>
#include <cadgeom/intersect/line_projection.h>

#include "core/widen.h"
#include "fit/moments.h"
#include "fit/plane_frame.h"
#include "fit/symmetric_eigen_solver.h"

#include <cmath>
#include <cstdint>

// Method: the algebraic fit takes the eigenvector of the smallest eigenvalue of the moments of (1, x, y, x^2 + y^2);
// the geometric fit iterates centre and radius towards a stationary sum of squared distances (Chernov 2010, Landau
// 1987).
//
// Weak spots: the algebraic fit is neither centred nor scaled, so that it gives up on large or distant circles; the
// iteration converges linearly and judges rest by an absolute step.

namespace cadgeom::detail {
namespace {

struct Circle {
    CadPoint2d<double> center;
    double radius;
};

/// Sums of products of 1, x, y and r = x^2 + y^2, in the order of the points.
struct CircleMoments {
    Pair linear{0.0};  ///< x, y
    Pair squares{0.0}; ///< x x, y y
    Pair cubes{0.0};   ///< r x, r y
    Pair mixed{0.0};   ///< x y, r r
    double r = 0.0;

    void Add(Pair point)
    {
        const Pair square = point * point;
        const Pair squaredLength = square + square.Swapped();
        linear += point;
        squares += square;
        cubes += squaredLength * point;
        mixed += Firsts(point, squaredLength) * Seconds(point, squaredLength);
        r += squaredLength.First();
    }
};

/// Loads the mean moments, the lower triangle like the upper one.
void LoadMoments(SymmetricEigenSolver<4>& solver, const CircleMoments& sums, std::uint64_t count)
{
    const double n = static_cast<double>(count);
    const double x = sums.linear.First();
    const double y = sums.linear.Second();
    const double xy = sums.mixed.First();
    const double rx = sums.cubes.First();
    const double ry = sums.cubes.Second();
    const double rows[4][4] = {{n, x, y, sums.r},
                               {x, sums.squares.First(), xy, rx},
                               {y, xy, sums.squares.Second(), ry},
                               {sums.r, rx, ry, sums.mixed.Second()}};
    const double scale = 1.0 / n;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            solver.matrix[row][column] = rows[row][column] * scale;
        }
    }
}

/// The algebraic fit of four or more points; false when it is a line.
template <class Source>
bool FitAlgebraically(const Source& points, Circle& circle)
{
    CircleMoments sums;
    VisitPoints(points, [&](Pair point) { sums.Add(point); });
    SymmetricEigenSolver<4> solver;
    LoadMoments(solver, sums, points.Count());
    solver.TridiagonalizeN();
    solver.QLAlgorithm();
    solver.IncreasingSort();
    solver.GuaranteeRotation();
    const double e3 = solver.Eigenvector(0, 3);
    if (std::fabs(e3) <= kSingleEpsilon) {
        return false;
    }
    const double inverse = 1.0 / e3;
    const double x = -0.5 * solver.Eigenvector(0, 1) * inverse;
    const double y = -0.5 * solver.Eigenvector(0, 2) * inverse;
    circle.center.set(x, y);
    circle.radius = Sqrt(std::fabs(x * x + y * y - solver.Eigenvector(0, 0) * inverse));
    return true;
}

/// Calls visit(offset, length) for the offsets of the points from a centre, in order. The lengths are formed two at a
/// time: two packed square roots cost as much as one.
template <class Source, class Visit>
void VisitOffsets(const Source& points, const CadPoint2d<double>& origin, Visit visit)
{
    const Pair center = ToPair(origin);
    VisitIndices<2>(points.Data(), points.Count(), [&](std::uint64_t i) {
        const Pair first = points[i] - center;
        const Pair second = points[i + 1] - center;
        const Pair squares1 = first * first;
        const Pair squares2 = second * second;
        const Pair lengths = Sqrt(Firsts(squares1, squares2) + Seconds(squares1, squares2));
        visit(first, lengths.First());
        visit(second, lengths.Second());
    });
    if (points.Count() % 2 != 0) {
        const Pair last = points[points.Count() - 1] - center;
        const Pair squares = last * last;
        visit(last, Sqrt(squares.First() + squares.Second()));
    }
}

template <class Source>
double RootMeanSquareResidual(const Source& points, const Circle& circle)
{
    double sum = 0.0;
    VisitOffsets(points, circle.center, [&](Pair, double length) {
        const double residual = length - circle.radius;
        sum += residual * residual;
    });
    return Sqrt(sum / static_cast<double>(points.Count()));
}

/// One repetition of the geometric fit: the circle after `circle`, and the error of `circle` itself.
template <class Source>
Circle Improve(const Source& points, Pair mean, const Circle& circle, double& error)
{
    double residuals = 0.0;
    double lengths = 0.0;
    Pair directions(0.0);
    VisitOffsets(points, circle.center, [&](Pair offset, double length) {
        const double residual = length - circle.radius;
        residuals += residual * residual;
        if (length > kSingleEpsilon) {
            lengths += length;
            directions -= offset / Pair(length);
        }
    });
    const double count = static_cast<double>(points.Count());
    error = Sqrt(residuals / count);
    const double radius = lengths / count;
    return {ToPoint(mean + Pair(radius) * (directions / Pair(count))), radius};
}

bool IsAtRest(const CadPoint2d<double>& center, const CadPoint2d<double>& previous)
{
    return std::fabs(center.x() - previous.x()) <= kSingleEpsilon &&
           std::fabs(center.y() - previous.y()) <= kSingleEpsilon;
}

/// Finds out when a sequence of circles repeats itself, by comparing with a circle remembered after 1, 2, 4, 8 ...
/// steps (Brent 1980). A circle depends on the one before alone, so that what follows a repetition is known.
class CycleDetector {
public:
    explicit CycleDetector(const Circle& first) : m_remembered(first) {}

    /// @return the length of the cycle that `circle` closes, 0 when it closes none
    std::int64_t Advance(const Circle& circle)
    {
        ++m_steps;
        if (IsSame(circle.center.x(), m_remembered.center.x()) && IsSame(circle.center.y(), m_remembered.center.y()) &&
            IsSame(circle.radius, m_remembered.radius)) {
            return m_steps;
        }
        if (m_steps == m_limit) {
            m_remembered = circle;
            m_steps = 0;
            m_limit *= 2;
        }
        return 0;
    }

private:
    static bool IsSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

    Circle m_remembered;
    std::int64_t m_steps = 0;
    std::int64_t m_limit = 1;
};

/// The geometric fit of four or more points; `error` is written by its repetitions alone.
template <class Source>
bool FitGeometrically(const Source& points, Circle& circle, double& error, int maxIterations)
{
    const Pair mean = MeanOf(points);
    if (!FitAlgebraically(points, circle)) {
        return false;
    }
    CycleDetector cycle(circle);
    for (std::int64_t left = maxIterations; left > 0;) {
        const Circle previous = circle;
        circle = Improve(points, mean, previous, error);
        if (IsAtRest(circle.center, previous.center)) {
            break;
        }
        --left;
        const std::int64_t length = cycle.Advance(circle);
        if (length > 0) {
            left %= length;
        }
    }
    return true;
}

/// The circle through three points; false when they lie on a line.
bool JoinPoints(const CadPoint2d<double> (&points)[3], Circle& circle)
{
    const CadVector2d<double> edge1 = points[1] - points[0];
    const CadVector2d<double> edge2 = points[2] - points[0];
    if (std::fabs(edge2.y() * edge1.x() - edge2.x() * edge1.y()) <= kSingleEpsilon) {
        return false;
    }
    const CadPoint2d<double> middle1 = points[0] + edge1 * 0.5;
    const CadPoint2d<double> middle2 = points[0] + edge2 * 0.5;
    const CadVector2d<double> bisector1 = edge1.orthogonalVector();
    double t1;
    double t2;
    if (!IntersectLineWithLine2d<double>(middle1, bisector1, middle2, edge2.orthogonalVector(), t1, t2)) {
        return false;
    }
    circle.center = middle1 + bisector1 * t1;
    circle.radius = points[0].distance(circle.center);
    return true;
}

/// The circle through three points in space; false, with nothing written, when they lie on a line.
bool JoinPoints(const CadPoint3d<double> (&points)[3], CadPoint3d<double>& center, CadVector3d<double>& normal,
                double& radius)
{
    const CadVector3d<double> edge1 = points[1] - points[0];
    const CadVector3d<double> edge2 = points[2] - points[0];
    CadVector3d<double> unit = edge1.cross(edge2);
    if (!(unit.normalize() > kSingleEpsilon)) {
        return false;
    }
    const CadPoint3d<double> middle1 = points[0] + edge1 * 0.5;
    const CadPoint3d<double> middle2 = points[0] + edge2 * 0.5;
    const CadVector3d<double> bisector1 = edge1.cross(unit);
    double t;
    if (!ProjectLineOntoLine2<double>(middle1, bisector1, middle2, edge2.cross(unit), t, nullptr)) {
        return false;
    }
    center = middle1 + bisector1 * t;
    normal = unit;
    radius = points[0].distance(center);
    return true;
}

/// Fits a circle with `fit(points in the plane, circle, error in the plane)` in the plane of four or more points.
/// @param error  may be null
template <class T, class Fit>
bool FitInPlane(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center,
                CadVector3d<double>& normal, double& radius, double* error, Fit fit)
{
    CadPoint3d<double> origin;
    double planeError;
    if (!PlaneFit3(points, count, origin, normal, planeError)) {
        return false;
    }
    const PlaneFrame frame(normal, origin);
    Circle circle;
    double inPlaneError = 0.0;
    if (!fit(FramedPoints<T>(points, count, frame, planeError), circle, inPlaneError)) {
        return false;
    }
    center = frame.ToSpace(circle.center);
    radius = circle.radius;
    if (error != nullptr) {
        *error = Sqrt(inPlaneError * inPlaneError + planeError * planeError);
    }
    return true;
}

} // namespace
} // namespace cadgeom::detail

template <class T>
bool QuadraticCircleFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center, double& radius,
                         double* error)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 3) {
        return false;
    }
    Circle circle;
    double residual = 0.0;
    if (count == 3) {
        if (!JoinPoints({Widened(points[0]), Widened(points[1]), Widened(points[2])}, circle)) {
            return false;
        }
    } else {
        const PlanarPoints<T> source(points, count);
        if (!FitAlgebraically(source, circle)) {
            return false;
        }
        if (error != nullptr) {
            residual = RootMeanSquareResidual(source, circle);
        }
    }
    center = circle.center;
    radius = circle.radius;
    if (error != nullptr) {
        *error = residual;
    }
    return true;
}

template <class T>
bool CircleFit2(const CadPoint2d<T>* points, std::uint64_t count, CadPoint2d<double>& center, double& radius,
                double& error, int maxIterations)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 3) {
        return false;
    }
    if (count == 3) {
        return QuadraticCircleFit2(points, count, center, radius, &error);
    }
    Circle circle;
    double residual = 0.0;
    if (!FitGeometrically(PlanarPoints<T>(points, count), circle, residual, maxIterations)) {
        return false;
    }
    center = circle.center;
    radius = circle.radius;
    if (maxIterations > 0) {
        error = residual;
    }
    return true;
}

template <class T>
bool QuadraticCircleFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center,
                         CadVector3d<double>& normal, double& radius, double* error)
{
    using namespace cadgeom::detail;
    if (points == nullptr || count < 3) {
        return false;
    }
    if (count == 3) {
        if (!JoinPoints({Widened(points[0]), Widened(points[1]), Widened(points[2])}, center, normal, radius)) {
            return false;
        }
        if (error != nullptr) {
            *error = 0.0;
        }
        return true;
    }
    return FitInPlane(points, count, center, normal, radius, error,
                      [&](const auto& planar, Circle& circle, double& inPlaneError) {
                          if (!FitAlgebraically(planar, circle)) {
                              return false;
                          }
                          if (error != nullptr) {
                              inPlaneError = RootMeanSquareResidual(planar, circle);
                          }
                          return true;
                      });
}

template <class T>
bool CircleFit3(const CadPoint3d<T>* points, std::uint64_t count, CadPoint3d<double>& center,
                CadVector3d<double>& normal, double& radius, double& error, int maxIterations)
{
    using namespace cadgeom::detail;
    if (count == 3) {
        return QuadraticCircleFit3(points, count, center, normal, radius, &error);
    }
    if (points == nullptr || count < 3) {
        return false;
    }
    return FitInPlane(points, count, center, normal, radius, &error,
                      [&](const auto& planar, Circle& circle, double& inPlaneError) {
                          return FitGeometrically(planar, circle, inPlaneError, maxIterations);
                      });
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API bool QuadraticCircleFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&, double&,   \
                                                  double*);                                                            \
    template CADGEOM_API bool CircleFit2(const CadPoint2d<T>*, std::uint64_t, CadPoint2d<double>&, double&, double&,   \
                                         int);                                                                         \
    template CADGEOM_API bool QuadraticCircleFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,            \
                                                  CadVector3d<double>&, double&, double*);                             \
    template CADGEOM_API bool CircleFit3(const CadPoint3d<T>*, std::uint64_t, CadPoint3d<double>&,                     \
                                         CadVector3d<double>&, double&, double&, int)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
