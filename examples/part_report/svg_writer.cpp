#include "svg_writer.h"

#include <cadgeom/bounds/bounding_box_2d.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace part_report {

namespace {

using Box2 = CBoundingBox2d<double>;

// Sizes on the page, in pixels.
constexpr double kMargin = 30;
constexpr double kPageWidth = 1240;
constexpr double kLargestDrawingWidth = 1080;
constexpr double kLargestDrawingHeight = 480;
constexpr double kHeaderHeight = 84;
constexpr double kLegendHeight = 96;
// Around a drawing: its title and labels above, dimension lines below and on the left, labels on the right.
constexpr double kAbove = 64;
constexpr double kBelow = 60;
constexpr double kLeft = 64;
constexpr double kRight = 24;
constexpr double kDimensionGap = 26;

constexpr double kTextSize = 13;
constexpr double kTitleSize = 16;
// Width of a character in parts of its size: rather too wide, since the reader's font is not known.
constexpr double kCharacterWidth = 0.62;
constexpr double kLabelGap = 6;

constexpr char kOutlineColour[] = "#30343a";
constexpr char kMaterialColour[] = "#e9edf2";

// Told apart by people who see colours differently, too (Okabe and Ito 2008).
const char* ColourOf(ShapeKind kind)
{
    switch (kind) {
    case ShapeKind::circle:
        return "#0072b2";
    case ShapeKind::rectangle:
        return "#00795a";
    case ShapeKind::ellipse:
        return "#d55e00";
    default:
        return kOutlineColour;
    }
}

std::string Pixels(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += static_cast<unsigned char>(c) < ' ' ? '?' : c;
        }
    }
    return escaped;
}

/// Collects the elements of the picture; y grows downwards here.
class Canvas {
public:
    void Line(const Point2& a, const Point2& b, const std::string& style)
    {
        m_body += "<line x1=\"" + Pixels(a.x()) + "\" y1=\"" + Pixels(a.y()) + "\" x2=\"" + Pixels(b.x()) + "\" y2=\"" +
                  Pixels(b.y()) + "\" " + style + "/>\n";
    }

    void Rectangle(const Point2& corner, double width, double height, const std::string& style)
    {
        m_body += "<rect x=\"" + Pixels(corner.x()) + "\" y=\"" + Pixels(corner.y()) + "\" width=\"" + Pixels(width) +
                  "\" height=\"" + Pixels(height) + "\" " + style + "/>\n";
    }

    /// `angleDegrees` turns the first radius towards the lower edge of the page.
    void Ellipse(const Point2& center, double radius1, double radius2, double angleDegrees, const std::string& style)
    {
        const std::string x = Pixels(center.x());
        const std::string y = Pixels(center.y());
        m_body += "<ellipse cx=\"" + x + "\" cy=\"" + y + "\" rx=\"" + Pixels(radius1) + "\" ry=\"" + Pixels(radius2) +
                  "\" transform=\"rotate(" + Pixels(angleDegrees) + " " + x + " " + y + ")\" " + style + "/>\n";
    }

    void Path(const std::string& data, const std::string& style)
    {
        m_body += "<path d=\"" + data + "\" " + style + "/>\n";
    }

    void Text(const Point2& middle, const std::string& text, const std::string& style)
    {
        m_body += "<text x=\"" + Pixels(middle.x()) + "\" y=\"" + Pixels(middle.y()) + "\" " + style + ">" +
                  Escaped(text) + "</text>\n";
    }

    void TextUpwards(const Point2& middle, const std::string& text, const std::string& style)
    {
        Text(middle, text, style + " transform=\"rotate(-90 " + Pixels(middle.x()) + " " + Pixels(middle.y()) + ")\"");
    }

    const std::string& Body() const { return m_body; }

private:
    std::string m_body;
};

std::string TextStyle(const std::string& anchor, double size, const std::string& colour = kOutlineColour)
{
    return "text-anchor=\"" + anchor + "\" font-size=\"" + Pixels(size) + "\" fill=\"" + colour + "\"";
}

/// An area with a raised 2.
std::string AreaOf(double area, const LengthFormat& format)
{
    const std::string text = format.AreaText(area);
    return text.substr(0, text.find('^')) + "\u00b2";
}

std::string StrokeStyle(const std::string& colour, double width)
{
    return "fill=\"none\" stroke=\"" + colour + "\" stroke-width=\"" + Pixels(width) + "\"";
}

std::string FitStyle(ShapeKind kind)
{
    return StrokeStyle(ColourOf(kind), 2.5) + " stroke-dasharray=\"7 3\"";
}

bool IsRound(const Shape& shape)
{
    return shape.kind == ShapeKind::circle || shape.kind == ShapeKind::ellipse;
}

Box2 BoxOf(const Section& section)
{
    Box2 box;
    for (const Outline& outline : section.outlines) {
        for (const Point2& point : outline.points)
            box.CheckPoint(point);
    }
    return box;
}

Vector2 SizeOf(const Section& section)
{
    Box2 box = BoxOf(section);
    return box.IsEmpty() ? Vector2(0, 0) : box.GetSize();
}

/// The label of an outline, fit for a drawing.
std::string LabelOf(const Outline& outline, const std::string& name, const LengthFormat& format)
{
    const Shape& shape = outline.shape;
    if (shape.kind == ShapeKind::circle)
        return name + "  \u00d8 " + format.ShortText(2 * shape.radius1);
    const std::string sizes = format.ShortText(2 * shape.radius1) + " \u00d7 " + format.ShortText(2 * shape.radius2);
    return name + "  " + sizes;
}

/// Number of characters of a UTF-8 text.
std::size_t CharacterCount(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

/// Finds room for labels: they must not cross a line, nor each other, nor leave the cell.
class LabelPlacer {
public:
    explicit LabelPlacer(const Box2& cell) : m_cell(cell) {}

    void AddObstacle(const Point2& start, const Point2& end) { m_lines.push_back({start, end - start}); }
    void AddObstacle(const Box2& box) { m_boxes.push_back(box); }

    /// Finds the middle of a label of this size for an outline with this box on the page.
    bool Place(Box2 box, double width, double height, bool isBesideFirst, Point2& middle)
    {
        const Point2 centre = box.GetMid();
        const double right = box.GetMax().x() + width / 2 + kLabelGap;
        const double left = box.GetMin().x() - width / 2 - kLabelGap;
        const double above = box.GetMin().y() - height / 2 - kLabelGap;
        const double below = box.GetMax().y() + height / 2 + kLabelGap;
        const double innerTop = box.GetMin().y() + height / 2 + kLabelGap;
        const double innerBottom = box.GetMax().y() - height / 2 - kLabelGap;
        const double flushLeft = box.GetMin().x() + width / 2;
        const double flushRight = box.GetMax().x() - width / 2;
        std::vector<Point2> places{{right, centre.y()}, {left, centre.y()}};
        for (const double x : {centre.x(), flushLeft, flushRight, right, left}) {
            places.emplace_back(x, above);
            places.emplace_back(x, below);
        }
        const std::vector<Point2> inside{centre, {centre.x(), innerTop}, {centre.x(), innerBottom}};
        places.insert(isBesideFirst ? places.end() : places.begin(), inside.begin(), inside.end());
        for (const Point2& place : places) {
            const Box2 label(place - Vector2(width / 2, height / 2), place + Vector2(width / 2, height / 2));
            if (IsFree(label)) {
                m_boxes.push_back(label);
                middle = place;
                return true;
            }
        }
        return false;
    }

private:
    struct Segment {
        Point2 start;
        Vector2 direction;
    };

    bool IsFree(const Box2& label) const
    {
        return m_cell.ContainsBoundingBox(label, 0) &&
               std::none_of(m_boxes.begin(), m_boxes.end(),
                            [&](const Box2& box) { return box.BoundingBoxIntersects(label, 2); }) &&
               std::none_of(m_lines.begin(), m_lines.end(), [&](const Segment& line) { return Crosses(line, label); });
    }

    static bool Crosses(const Segment& line, const Box2& label)
    {
        double enter = 0;
        double leave = 0;
        return label.RayPierce(line.start, line.direction, &enter, &leave, nullptr, nullptr) && enter <= 1 &&
               leave >= 0;
    }

    Box2 m_cell;
    std::vector<Segment> m_lines;
    std::vector<Box2> m_boxes;
};

/// Draws one section into its cell of the page.
class SectionDrawing {
public:
    SectionDrawing(Canvas& canvas, const Section& section, std::size_t number, const LengthFormat& format, double scale,
                   const Box2& cell)
        : m_canvas(canvas),
          m_section(section),
          m_number(number),
          m_format(format),
          m_scale(scale),
          m_cell(cell),
          m_box(BoxOf(section)),
          m_labels(cell)
    {}

    void Draw()
    {
        DrawTitle();
        if (m_section.outlines.empty()) {
            m_canvas.Text(m_cell.GetMid(), "the plane does not meet the part", TextStyle("middle", kTextSize));
            return;
        }
        DrawOutlines();
        DrawOverallDimensions();
        for (const Outline& outline : m_section.outlines)
            DrawShape(outline.shape);
        DrawLabels();
    }

private:
    Point2 OnPage(const Point2& local) const
    {
        return Point2(m_cell.GetMin().x() + kLeft + (local.x() - m_box.GetMin().x()) * m_scale,
                      m_cell.GetMin().y() + kAbove + (m_box.GetMax().y() - local.y()) * m_scale);
    }

    void DrawTitle()
    {
        const std::string axes = LocalAxisNames(m_section.plane.axis);
        const Point2 corner = m_cell.GetMin();
        m_canvas.Text(Point2(corner.x(), corner.y() + 20),
                      "Section " + std::to_string(m_number) + ": " + TitleOf(m_section.plane, m_format),
                      TextStyle("start", kTitleSize) + " font-weight=\"bold\"");
        m_canvas.Text(Point2(corner.x(), corner.y() + 38),
                      axes.substr(0, 1) + " to the right, " + axes.substr(1) + " up; material " +
                          AreaOf(m_section.materialArea, m_format),
                      TextStyle("start", kTextSize));
    }

    std::string PathOf(const Outline& outline) const
    {
        std::string path;
        for (const Point2& point : outline.points) {
            const Point2 onPage = OnPage(point);
            path += (path.empty() ? "M" : "L") + Pixels(onPage.x()) + " " + Pixels(onPage.y());
        }
        return outline.isClosed ? path + "Z" : path;
    }

    void DrawOutlines()
    {
        std::string material;
        std::string borders;
        for (const Outline& outline : m_section.outlines) {
            const std::string path = PathOf(outline);
            borders += path;
            if (outline.isClosed)
                material += path;
            for (std::size_t i = outline.isClosed ? 0 : 1; i < outline.points.size(); ++i) {
                const std::size_t previous = (i + outline.points.size() - 1) % outline.points.size();
                m_labels.AddObstacle(OnPage(outline.points[previous]), OnPage(outline.points[i]));
            }
        }
        m_canvas.Path(material, std::string("stroke=\"none\" fill-rule=\"evenodd\" fill=\"") + kMaterialColour + "\"");
        m_canvas.Path(borders, StrokeStyle(kOutlineColour, 1));
    }

    void DrawShape(const Shape& shape)
    {
        const Point2 center = OnPage(shape.center);
        switch (shape.kind) {
        case ShapeKind::circle:
        case ShapeKind::ellipse: {
            constexpr double kDegreesPerRadian = 57.29577951308232;
            m_canvas.Ellipse(center, shape.radius1 * m_scale, shape.radius2 * m_scale,
                             -std::atan2(shape.axis.y(), shape.axis.x()) * kDegreesPerRadian, FitStyle(shape.kind));
            DrawCentre(center, ColourOf(shape.kind));
            break;
        }
        case ShapeKind::rectangle: {
            std::string path;
            for (const Point2& corner : CornersOfRectangle(shape)) {
                const Point2 onPage = OnPage(corner);
                path += (path.empty() ? "M" : "L") + Pixels(onPage.x()) + " " + Pixels(onPage.y());
            }
            m_canvas.Path(path + "Z", FitStyle(shape.kind));
            break;
        }
        default:
            break;
        }
    }

    void DrawCentre(const Point2& center, const std::string& colour)
    {
        constexpr double kArm = 4;
        m_labels.AddObstacle(Box2(center - Vector2(kArm, kArm), center + Vector2(kArm, kArm)));
        m_canvas.Line(center - Vector2(kArm, 0), center + Vector2(kArm, 0), StrokeStyle(colour, 1));
        m_canvas.Line(center - Vector2(0, kArm), center + Vector2(0, kArm), StrokeStyle(colour, 1));
    }

    void DrawOverallDimensions()
    {
        const std::string style = StrokeStyle("#707680", 1);
        const std::string arrows = style + " marker-start=\"url(#arrow)\" marker-end=\"url(#arrow)\"";
        const Vector2 size = m_box.GetSize();
        const Point2 lowerLeft = OnPage(m_box.GetMin());
        const Point2 upperLeft = lowerLeft - Vector2(0, size.y() * m_scale);
        const Point2 lowerRight = lowerLeft + Vector2(size.x() * m_scale, 0);
        const Vector2 down(0, kDimensionGap);
        const Vector2 left(-kDimensionGap, 0);
        for (const Point2& point : {lowerLeft, lowerRight})
            m_canvas.Line(point + Vector2(0, 4), point + down + Vector2(0, 4), style);
        for (const Point2& point : {lowerLeft, upperLeft})
            m_canvas.Line(point - Vector2(4, 0), point + left - Vector2(4, 0), style);
        m_canvas.Line(lowerLeft + down, lowerRight + down, arrows);
        m_canvas.Line(lowerLeft + left, upperLeft + left, arrows);
        const Point2 below = lowerLeft + down + Vector2(size.x() * m_scale / 2, kTextSize + 3);
        const Point2 beside = lowerLeft + left - Vector2(kLabelGap, size.y() * m_scale / 2);
        m_canvas.Text(below, m_format.ShortText(size.x()), TextStyle("middle", kTextSize));
        m_canvas.TextUpwards(beside, m_format.ShortText(size.y()), TextStyle("middle", kTextSize));
        m_labels.AddObstacle(Box2(lowerLeft + Vector2(0, 2), lowerRight + down + Vector2(0, kTextSize + kLabelGap)));
        m_labels.AddObstacle(Box2(upperLeft + left - Vector2(kTextSize + kLabelGap, 0), lowerLeft - Vector2(2, 0)));
        m_labels.AddObstacle(Box2(m_cell.GetMin(), Point2(m_cell.GetMax().x(), m_cell.GetMin().y() + 42)));
    }

    void DrawLabels()
    {
        std::size_t leftOut = 0;
        for (std::size_t i = 0; i < m_section.outlines.size(); ++i) {
            const Outline& outline = m_section.outlines[i];
            const std::string name = std::to_string(m_number) + "." + std::to_string(i + 1);
            const std::string label = LabelOf(outline, name, m_format);
            Box2 box;
            for (const Point2& point : outline.points)
                box.CheckPoint(OnPage(point));
            const double width = static_cast<double>(CharacterCount(label)) * kTextSize * kCharacterWidth;
            Point2 middle;
            if (m_labels.Place(box, width, kTextSize, IsRound(outline.shape), middle))
                m_canvas.Text(middle + Vector2(0, kTextSize * 0.36), label,
                              TextStyle("middle", kTextSize, ColourOf(outline.shape.kind)));
            else
                ++leftOut;
        }
        if (leftOut > 0)
            m_canvas.Text(Point2(m_cell.GetMin().x(), m_cell.GetMin().y() + 54),
                          "no room for " + std::to_string(leftOut) + " labels; see the report",
                          TextStyle("start", kTextSize));
    }

    Canvas& m_canvas;
    const Section& m_section;
    std::size_t m_number;
    const LengthFormat& m_format;
    double m_scale;
    Box2 m_cell;
    Box2 m_box;
    LabelPlacer m_labels;
};

/// A round length of about a sixth of the largest drawing: 1, 2 or 5 times a power of ten, in the unit of the report.
double RoundLength(double largest)
{
    const double power = std::pow(10, std::floor(std::log10(largest / 6)));
    const double leading = largest / 6 / power;
    return power * (leading >= 5 ? 5 : leading >= 2 ? 2 : 1);
}

void DrawLegend(Canvas& canvas, double top, double scale, double largestWidth, const LengthFormat& format)
{
    constexpr double kSampleWidth = 34;
    constexpr double kColumnWidth = 190;
    const Point2 start(kMargin, top + 30);
    canvas.Text(start, "Legend", TextStyle("start", kTitleSize) + " font-weight=\"bold\"");
    double x = kMargin;
    const double y = top + 56;
    const auto entry = [&](const std::string& text, const std::string& style, double width) {
        canvas.Line(Point2(x, y - 4), Point2(x + kSampleWidth, y - 4), style);
        canvas.Text(Point2(x + kSampleWidth + 8, y), text, TextStyle("start", kTextSize));
        x += width;
    };
    entry("cut outline", StrokeStyle(kOutlineColour, 1), kColumnWidth - 30);
    for (const ShapeKind kind : {ShapeKind::circle, ShapeKind::rectangle, ShapeKind::ellipse})
        entry(std::string("fitted ") + NameOfShape(kind), FitStyle(kind), kColumnWidth);
    canvas.Rectangle(Point2(x, y - 12), kSampleWidth, 14,
                     std::string("stroke=\"none\" fill=\"") + kMaterialColour + "\"");
    canvas.Text(Point2(x + kSampleWidth + 8, y), "material", TextStyle("start", kTextSize));

    const double length = RoundLength(format.Length(largestWidth));
    const double pixels = length / format.Length(1) * scale;
    const Point2 ruler(kMargin, top + 84);
    canvas.Line(ruler, ruler + Vector2(pixels, 0), StrokeStyle(kOutlineColour, 3));
    canvas.Text(
        ruler + Vector2(pixels + 8, 4),
        format.ShortText(length / format.Length(1)) +
            ", all sections. Labels give number and size of an outline; of a free form, its box along the axes.",
        TextStyle("start", kTextSize));
}

void DrawHeader(Canvas& canvas, const Report& report, const LengthFormat& format)
{
    CBoundingBox3d<double> box = report.extents.box;
    const Vector3 size = box.GetSize();
    canvas.Text(Point2(kMargin, 42), "Sections of " + report.part, TextStyle("start", 22) + " font-weight=\"bold\"");
    canvas.Text(Point2(kMargin, 66),
                "box " + format.ShortText(size.x()) + " \u00d7 " + format.ShortText(size.y()) + " \u00d7 " +
                    format.ShortText(size.z()) + ", surface " + AreaOf(report.extents.area, format),
                TextStyle("start", kTextSize));
}

/// Draws the sections in rows, as many side by side as there is room for. Returns where the last row ends.
double DrawSections(Canvas& canvas, const Report& report, const LengthFormat& format, double scale, double cellWidth)
{
    const auto columns = static_cast<std::size_t>(std::max(1.0, std::floor((kPageWidth - 2 * kMargin) / cellWidth)));
    const std::vector<Section>& sections = report.sections;
    double top = kHeaderHeight;
    for (std::size_t row = 0; row < sections.size(); row += columns) {
        const std::size_t end = std::min(row + columns, sections.size());
        double height = 0;
        for (std::size_t i = row; i < end; ++i)
            height = std::max(height, SizeOf(sections[i]).y() * scale);
        height += kAbove + kBelow;
        for (std::size_t i = row; i < end; ++i) {
            const Point2 corner(kMargin + static_cast<double>(i - row) * cellWidth, top);
            const Box2 cell(corner, corner + Vector2(cellWidth, height));
            SectionDrawing(canvas, sections[i], i + 1, format, scale, cell).Draw();
        }
        top += height;
    }
    return top;
}

} // namespace

std::string DrawReport(const Report& report, const LengthFormat& format)
{
    Vector2 largest(0, 0);
    for (const Section& section : report.sections) {
        const Vector2 size = SizeOf(section);
        largest.set(std::max(largest.x(), size.x()), std::max(largest.y(), size.y()));
    }
    if (!(largest.x() > 0) || !(largest.y() > 0))
        largest.set(report.extents.diagonal, report.extents.diagonal);
    const double scale = std::min(kLargestDrawingWidth / largest.x(), kLargestDrawingHeight / largest.y());

    Canvas canvas;
    DrawHeader(canvas, report, format);
    const double legendTop = DrawSections(canvas, report, format, scale, largest.x() * scale + kLeft + kRight);
    DrawLegend(canvas, legendTop, scale, largest.x(), format);

    const std::string width = Pixels(kPageWidth);
    const std::string height = Pixels(legendTop + kLegendHeight + kMargin);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
           "\" viewBox=\"0 0 " + width + " " + height +
           "\" font-family=\"DejaVu Sans, Verdana, Arial, sans-serif\">\n"
           "<defs><marker id=\"arrow\" viewBox=\"0 0 10 10\" refX=\"10\" refY=\"5\" markerWidth=\"8\" "
           "markerHeight=\"8\" orient=\"auto-start-reverse\"><path d=\"M0 2L10 5L0 8Z\" fill=\"#707680\"/></marker>"
           "</defs>\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n" +
           canvas.Body() + "</svg>\n";
}

} // namespace part_report
