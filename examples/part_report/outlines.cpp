#include "outlines.h"

#include "fitting.h"

#include <cadgeom/bounds/bounding_box_2d.h>
#include <cadgeom/fit/circle_fit.h>
#include <cadgeom/fit/ellipse_fit.h>
#include <cadgeom/fit/oriented_box_fit.h>
#include <cadgeom/intersect/planar_queries.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

namespace part_report {

namespace {

// All tolerances are parts of the size of the outline: of its largest distance from the mean of its vertices.

// An outline has a shape when the root mean square distance from it is no larger than this.
constexpr double kShapeTolerance = 0.005;
// Below this, residuals are rounding, and a smaller one says nothing.
constexpr double kEqualResidual = 1e-4;
// A shape with more parameters always fits a little better; it must fit better by this factor.
constexpr double kClearlyBetter = 3;
// The vertices of a facetted round outline lie on it, and its sides cut across: a regular polygon of 12 corners comes
// within 0.035. What cuts deeper has a flat side.
constexpr double kDeepestChord = 0.04;
constexpr std::size_t kFewestRoundVertices = 12;
constexpr int kCircleIterations = 200;

// Centres and areas that differ by less than this many tolerances are equal for the order of the outlines.
constexpr double kReadingStep = 1000;

constexpr std::size_t kFewestClosedVertices = 3;
constexpr std::size_t kFewestOpenVertices = 2;

using Points = std::vector<Point2>;

Point3 InPlane(const Point2& point)
{
    return Point3(point.x(), point.y(), 0);
}

/// Distance of a point from a round shape along the ray from its centre.
double RoundDistance(const Shape& shape, const Point2& point)
{
    const Vector2 offset = point - shape.center;
    const double along = offset.dot(shape.axis) / shape.radius1;
    const double across = shape.axis.crossZ(offset) / shape.radius2;
    const double relative = std::sqrt(along * along + across * across);
    return relative > 0 ? offset.length() * std::fabs(1 - 1 / relative) : shape.radius2;
}

bool HasFlatSide(const Shape& shape, const Points& points)
{
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point2& next = points[(i + 1) % points.size()];
        if (RoundDistance(shape, points[i] + (next - points[i]) * 0.5) > kDeepestChord)
            return true;
    }
    return false;
}

std::optional<Shape> FitCircle(const Points& points)
{
    Shape shape;
    shape.kind = ShapeKind::circle;
    if (points.size() < kFewestRoundVertices ||
        !CircleFit2(points.data(), points.size(), shape.center, shape.radius1, shape.rms, kCircleIterations))
        return std::nullopt;
    shape.radius2 = shape.radius1;
    return HasFlatSide(shape, points) ? std::nullopt : std::optional(shape);
}

/// EllipseFit2 looks for an eigenvalue that must be a simple one. Vertices that are spread evenly around an ellipse, as a
/// drawing program spreads them, have two equal eigenvalues, which rounding may turn into none: then the fit fails. Counting
/// a third of the vertices twice parts the eigenvalues.
bool FitEllipseToAny(const Points& points, Shape& shape)
{
    const auto fit = [&shape](const Points& vertices) {
        return EllipseFit2(vertices.data(), vertices.size(), shape.center, shape.axis, shape.radius1, shape.radius2,
                           &shape.rms);
    };
    if (fit(points))
        return true;
    Points uneven = points;
    uneven.insert(uneven.end(), points.begin(), points.begin() + static_cast<std::ptrdiff_t>(points.size() / 3));
    return fit(uneven);
}

std::optional<Shape> FitEllipse(const Points& points)
{
    Shape shape;
    shape.kind = ShapeKind::ellipse;
    if (points.size() < kFewestRoundVertices || !FitEllipseToAny(points, shape))
        return std::nullopt;
    // EllipseFit2 gives the mirror image of the direction.
    shape.axis.y() = -shape.axis.y();
    return HasFlatSide(shape, points) ? std::nullopt : std::optional(shape);
}

CCadPolyline3d<double> ClosedPolyline(const Points& points)
{
    CCadPolyline3d<double> polyline;
    for (const Point2& point : points)
        polyline.AddPoint(InPlane(point));
    polyline.Close();
    return polyline;
}

/// Root mean square distance between corners, each dropped on the other outline.
double CornerDistance(const Points& points, const Points& corners)
{
    const auto sumOfSquares = [](const Points& dropped, const Points& outline) {
        const CCadPolyline3d<double> polyline = ClosedPolyline(outline);
        double sum = 0;
        for (const Point2& point : dropped) {
            Point3 foot = InPlane(point);
            polyline.Drop(foot, foot);
            sum += foot.distanceSquared(InPlane(point));
        }
        return sum;
    };
    return std::sqrt((sumOfSquares(points, corners) + sumOfSquares(corners, points)) /
                     static_cast<double>(points.size() + corners.size()));
}

/// The rectangle around the points whose sides run along `axis`.
Shape RectangleAlong(const Vector2& axis, const Points& points)
{
    CBoundingBox2d<double> box;
    for (const Point2& point : points)
        box.CheckPoint(Point2(axis.dotPoint(point), axis.orthogonalVector().dotPoint(point)));
    const Point2 middle = box.GetMid();
    const Vector2 size = box.GetSize();
    Shape shape;
    shape.kind = ShapeKind::rectangle;
    shape.center = Point2::zero() + axis * middle.x() + axis.orthogonalVector() * middle.y();
    const bool isLonger = size.x() >= size.y();
    shape.axis = isLonger ? axis : axis.orthogonalVector();
    shape.radius1 = std::max(size.x(), size.y()) / 2;
    shape.radius2 = std::min(size.x(), size.y()) / 2;
    shape.rms = CornerDistance(points, CornersOfRectangle(shape));
    return shape;
}

Vector2 LongestSide(const Points& points)
{
    Vector2 longest = Vector2::zero();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Vector2 side = points[(i + 1) % points.size()] - points[i];
        if (side.lengthSquared() > longest.lengthSquared())
            longest = side;
    }
    longest.normalize();
    return longest;
}

std::optional<Shape> FitRectangle(const Points& points)
{
    Point2 center;
    Vector2 axis;
    Vector2 extents;
    if (!OrientedBoxFit2(points.data(), points.size(), center, axis, extents))
        return std::nullopt;
    // The corners of a square have no principal axes; its rectangle stands on a side.
    const Shape alongAxis = RectangleAlong(axis, points);
    const Shape alongSide = RectangleAlong(LongestSide(points), points);
    return alongAxis.rms <= alongSide.rms ? alongAxis : alongSide;
}

Shape FreeForm(const Points& points)
{
    CBoundingBox2d<double> box;
    for (const Point2& point : points)
        box.CheckPoint(point);
    Shape shape;
    shape.center = box.GetMid();
    shape.radius1 = box.GetSize().x() / 2;
    shape.radius2 = box.GetSize().y() / 2;
    return shape;
}

/// Decides for the shape with the smallest residual; a simpler shape wins as long as the other is not clearly better.
Shape Choose(const std::vector<Shape>& candidates, const Shape& otherwise)
{
    const Shape* best = nullptr;
    for (const Shape& candidate : candidates) {
        if (!(candidate.rms <= kShapeTolerance))
            continue;
        if (best == nullptr || std::max(candidate.rms, kEqualResidual) * kClearlyBetter < best->rms)
            best = &candidate;
    }
    return best == nullptr ? otherwise : *best;
}

Shape ShapeBack(const CentredPoints<2>& centred, Shape shape)
{
    shape.center = centred.PointBack(shape.center);
    for (double* const length : {&shape.radius1, &shape.radius2, &shape.rms})
        *length = centred.LengthBack(*length);
    return shape;
}

void FindShape(Outline& outline)
{
    const CentredPoints<2> centred(outline.points, 1);
    outline.shape = ShapeBack(centred, FreeForm(centred.points));
    if (!outline.isClosed)
        return;
    std::vector<Shape> candidates;
    for (const auto& fit : {FitCircle, FitRectangle, FitEllipse}) {
        if (const std::optional<Shape> candidate = fit(centred.points))
            candidates.push_back(*candidate);
    }
    outline.shape = ShapeBack(centred, Choose(candidates, FreeForm(centred.points)));
    for (const Shape& candidate : candidates)
        outline.candidates.push_back(ShapeBack(centred, candidate));
}

/// Larger outlines first; those of equal area row by row from the top, each row from the left.
void SortForReading(std::vector<Outline>& outlines, double step)
{
    const auto key = [step](const Outline& outline) {
        return std::tuple(-std::round(outline.area / (step * step)), -std::round(outline.shape.center.y() / step),
                          outline.shape.center.x());
    };
    std::stable_sort(outlines.begin(), outlines.end(),
                     [&](const Outline& a, const Outline& b) { return key(a) < key(b); });
}

/// Half the sum of the cross products, formed about the first vertex so that no digits are lost far from the origin.
double EnclosedArea(const Points& points)
{
    double doubled = 0;
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const Vector2 toThis = points[i] - points[0];
        doubled += toThis.crossZ(points[i + 1] - points[0]);
    }
    return std::fabs(doubled) / 2;
}

} // namespace

const char* NameOfShape(ShapeKind kind)
{
    switch (kind) {
    case ShapeKind::circle:
        return "circle";
    case ShapeKind::rectangle:
        return "rectangle";
    case ShapeKind::ellipse:
        return "ellipse";
    default:
        return "free form";
    }
}

std::vector<Point2> CornersOfRectangle(const Shape& rectangle)
{
    const Vector2 along = rectangle.axis * rectangle.radius1;
    const Vector2 across = rectangle.axis.orthogonalVector() * rectangle.radius2;
    const Point2& center = rectangle.center;
    return {center - along - across, center + along - across, center + along + across, center - along + across};
}

std::optional<Outline> MakeOutline(const std::vector<Point3>& localPoints, bool isClosed, const CCadTransform& frame,
                                   double tolerance)
{
    CCadPolyline3d<double> polyline;
    for (const Point3& point : localPoints)
        polyline.AddPoint(point);
    if (isClosed)
        polyline.Close();
    polyline.DataReduce(tolerance);

    Outline outline;
    outline.isClosed = isClosed;
    outline.length = polyline.ComputeLength();
    const std::int64_t count = polyline.GetNumPoints() - (isClosed ? 1 : 0);
    for (std::int64_t i = 0; i < count; ++i)
        outline.points.push_back(polyline.GetPoint(i).get2d());
    if (outline.points.size() < (isClosed ? kFewestClosedVertices : kFewestOpenVertices))
        return std::nullopt;
    if (isClosed)
        outline.area = EnclosedArea(outline.points);
    FindShape(outline);
    outline.polyline = polyline;
    outline.polyline.TransformFrom(frame);
    return outline;
}

void NestOutlines(std::vector<Outline>& outlines, double tolerance)
{
    SortForReading(outlines, tolerance * kReadingStep);
    for (std::size_t inner = 0; inner < outlines.size(); ++inner) {
        for (std::size_t outer = 0; outer < outlines.size(); ++outer) {
            const Points& around = outlines[outer].points;
            if (!(outlines[outer].area > outlines[inner].area) ||
                !ClosedPolylineContainsPoint2d(around.data(), around.size(), outlines[inner].points.front(), tolerance,
                                               false))
                continue;
            ++outlines[inner].depth;
            // Outlines further on are smaller: the last one found is the innermost.
            outlines[inner].parent = static_cast<int>(outer);
        }
    }
}

} // namespace part_report
