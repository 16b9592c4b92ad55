#pragma once
// Outlines of a section: their measures, what shape each of them is, and which lies inside which.

#include "mesh.h"

#include <cadgeom/polyline/polyline3d.h>
#include <cadgeom/transform/transform.h>

#include <optional>

namespace part_report {

/// What an outline may be. A shape with few parameters comes before one with more.
enum class ShapeKind {
    circle,
    rectangle,
    ellipse,
    freeForm
};

const char* NameOfShape(ShapeKind kind);

struct Shape {
    ShapeKind kind = ShapeKind::freeForm;
    Point2 center = Point2::zero();
    /// Unit vector along `radius1` of an ellipse, or along the sides of length 2 * radius1 of a rectangle.
    Vector2 axis = Vector2(1, 0);
    /// Radius of a circle; of an ellipse the larger radius; of a rectangle half the longer side.
    double radius1 = 0;
    /// Of a circle the same; of an ellipse the smaller radius; of a rectangle half the shorter side.
    double radius2 = 0;
    /// Root mean square distance between the outline and the shape.
    double rms = 0;
};

/// A rectangle's four corners, anticlockwise.
std::vector<Point2> CornersOfRectangle(const Shape& rectangle);

constexpr int kNoParent = -1;

struct Outline {
    /// In space; the last vertex of a closed one repeats the first.
    CCadPolyline3d<double> polyline;
    /// The same vertices in the plane of the section; the last one repeats nothing.
    std::vector<Point2> points;
    bool isClosed = false;
    double length = 0;
    /// Enclosed, whatever lies inside; 0 for an open outline.
    double area = 0;
    /// What it was taken for; a free form carries the centre and half the sides of its box along the local axes.
    Shape shape;
    /// All shapes that were fitted, to compare their residuals.
    std::vector<Shape> candidates;
    /// The smallest outline around this one, as an index into the section.
    int parent = kNoParent;
    /// The number of outlines around this one.
    int depth = 0;
};

/// Builds an outline from vertices in the coordinates of a section's frame, without those within `tolerance` of a straight
/// line. Nothing may be left of a tiny one.
std::optional<Outline> MakeOutline(const std::vector<Point3>& localPoints, bool isClosed, const CCadTransform& frame,
                                   double tolerance);

/// Finds parent and depth of each outline, and sorts them: larger ones first, equal ones as people read.
void NestOutlines(std::vector<Outline>& outlines, double tolerance);

} // namespace part_report
