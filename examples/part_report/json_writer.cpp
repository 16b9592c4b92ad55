#include "json_writer.h"

#include <cmath>
#include <cstdio>

namespace part_report {

namespace {

/// Puts the commas, quotes and indents of a JSON text.
class JsonStream {
public:
    explicit JsonStream(std::ostream& out) : m_out(out) {}

    JsonStream& Key(const char* name)
    {
        Separate();
        WriteString(name);
        m_out << ": ";
        m_isAfterKey = true;
        return *this;
    }

    void Begin(char bracket)
    {
        Separate();
        m_out << bracket;
        m_indent += 2;
        m_isFirst = true;
    }

    void End(char bracket)
    {
        m_indent -= 2;
        if (!m_isFirst)
            NewLine();
        m_out << bracket;
        m_isFirst = false;
    }

    void String(const std::string& value)
    {
        Separate();
        WriteString(value);
    }

    void Number(double value)
    {
        Separate();
        WriteNumber(value);
    }

    /// A list of numbers, on one line.
    template <class NumberAt>
    void NumberList(const NumberAt& numberAt, std::size_t count)
    {
        Separate();
        m_out << '[';
        for (std::size_t i = 0; i < count; ++i) {
            m_out << (i == 0 ? "" : ", ");
            WriteNumber(numberAt(i));
        }
        m_out << ']';
    }

    void Boolean(bool value)
    {
        Separate();
        m_out << (value ? "true" : "false");
    }

    void Null()
    {
        Separate();
        m_out << "null";
    }

private:
    void Separate()
    {
        if (m_isAfterKey) {
            m_isAfterKey = false;
            return;
        }
        if (!m_isFirst)
            m_out << ',';
        if (m_indent > 0)
            NewLine();
        m_isFirst = false;
    }

    void NewLine() { m_out << '\n' << std::string(m_indent, ' '); }

    void WriteNumber(double value)
    {
        char text[40];
        std::snprintf(text, sizeof text, "%.15g", value);
        m_out << (std::isfinite(value) ? text : "null");
    }

    void WriteString(const std::string& value)
    {
        m_out << '"';
        for (const char c : value) {
            if (c == '"' || c == '\\') {
                m_out << '\\' << c;
            } else if (static_cast<unsigned char>(c) < ' ') {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
                m_out << escape;
            } else {
                m_out << c;
            }
        }
        m_out << '"';
    }

    std::ostream& m_out;
    std::size_t m_indent = 0;
    bool m_isFirst = true;
    bool m_isAfterKey = false;
};

/// Writes the facts; its members are the parts of a report.
class ReportWriter {
public:
    ReportWriter(std::ostream& out, const LengthFormat& format) : m_json(out), m_format(format) {}

    void Write(const Report& report)
    {
        m_json.Begin('{');
        m_json.Key("part").String(report.part);
        m_json.Key("file_units").String(NameOfUnits(report.fileUnits));
        m_json.Key("units").String(NameOfUnits(m_format.Units()));
        WriteMesh(report);
        WriteExtents(report);
        WriteRegions(report.regions);
        m_json.Key("sections").Begin('[');
        for (const Section& section : report.sections)
            WriteSection(section);
        m_json.End(']');
        WriteHeights(report.heights);
        WriteDeviations(report.deviations);
        m_json.Key("picture").String(report.picture);
        m_json.Key("archive").Begin('{');
        m_json.Key("file").String(report.archive);
        Count("bytes", report.archiveSize);
        m_json.Key("identical_after_loading").Boolean(true);
        m_json.End('}');
        m_json.End('}');
    }

private:
    void Count(const char* name, std::uintmax_t count) { m_json.Key(name).Number(static_cast<double>(count)); }
    void Length(const char* name, double length) { m_json.Key(name).Number(m_format.Length(length)); }
    void Area(const char* name, double area) { m_json.Key(name).Number(m_format.Area(area)); }

    /// A position or sizes, in the unit of the report.
    template <class Tuple>
    void Position(const char* name, const Tuple& position)
    {
        m_json.Key(name).NumberList([&](std::size_t i) { return m_format.Length(position[static_cast<int>(i)]); },
                                    static_cast<std::size_t>(Tuple::NumAxes));
    }

    template <class Tuple>
    void Direction(const char* name, const Tuple& direction)
    {
        m_json.Key(name).NumberList([&](std::size_t i) { return direction[static_cast<int>(i)]; },
                                    static_cast<std::size_t>(Tuple::NumAxes));
    }

    void WriteMesh(const Report& report)
    {
        m_json.Key("mesh").Begin('{');
        Count("vertices", report.vertexCount);
        Count("facets", report.facetCount);
        Count("edges", report.topology.edgeCount);
        Count("open_edges", report.topology.openEdgeCount);
        Count("branching_edges", report.topology.branchingEdgeCount);
        m_json.Key("watertight").Boolean(report.topology.IsWatertight());
        Area("area", report.extents.area);
        m_json.End('}');
    }

    void WriteExtents(const Report& report)
    {
        CBoundingBox3d<double> box = report.extents.box;
        m_json.Key("box").Begin('{');
        Position("min", box.GetMin());
        Position("max", box.GetMax());
        Position("size", box.GetSize());
        m_json.End('}');
        const COrientedBox3d<double>& stand = report.stand.box;
        m_json.Key("box_on_largest_plane").Begin('{');
        m_json.Key("has_plane").Boolean(report.stand.hasPlane);
        Position("origin", stand.GetOrigin());
        Position("size", stand.GetSizes());
        Direction("x_axis", stand.GetAxis(0));
        Direction("y_axis", stand.GetAxis(1));
        Direction("z_axis", stand.GetAxis(2));
        m_json.End('}');
    }

    void WriteRegions(const std::vector<PlanarRegion>& regions)
    {
        m_json.Key("planar_regions").Begin('[');
        for (const PlanarRegion& region : regions) {
            m_json.Begin('{');
            Count("facets", region.facets.size());
            Area("area", region.area);
            Position("point", region.origin);
            Direction("normal", region.normal);
            Length("rms", region.rms);
            m_json.End('}');
        }
        m_json.End(']');
    }

    void WriteSection(const Section& section)
    {
        m_json.Begin('{');
        m_json.Key("axis").String(std::string(1, "xyz"[section.plane.axis]));
        Length("position", section.plane.position);
        Area("material_area", section.materialArea);
        m_json.Key("local_axes").String(LocalAxisNames(section.plane.axis));
        m_json.Key("outlines").Begin('[');
        for (const Outline& outline : section.outlines)
            WriteOutline(outline);
        m_json.End(']');
        m_json.End('}');
    }

    void WriteOutline(const Outline& outline)
    {
        m_json.Begin('{');
        m_json.Key("shape").String(NameOfShape(outline.shape.kind));
        m_json.Key("closed").Boolean(outline.isClosed);
        WriteDimensions(outline.shape);
        Count("vertices", outline.points.size());
        Length("length", outline.length);
        Area("area", outline.area);
        m_json.Key("inside");
        if (outline.parent == kNoParent)
            m_json.Null();
        else
            m_json.Number(outline.parent);
        Count("depth", static_cast<std::uintmax_t>(outline.depth));
        m_json.Key("rms_of_fits").Begin('{');
        for (const Shape& candidate : outline.candidates)
            Length(NameOfShape(candidate.kind), candidate.rms);
        m_json.End('}');
        m_json.End('}');
    }

    void WriteDimensions(const Shape& shape)
    {
        Position("center", shape.center);
        if (shape.kind == ShapeKind::circle) {
            Length("diameter", 2 * shape.radius1);
        } else {
            Length("length_1", 2 * shape.radius1);
            Length("length_2", 2 * shape.radius2);
            Direction("axis_1", shape.axis);
        }
    }

    void WriteHeights(const HeightGrid& grid)
    {
        m_json.Key("heights").Begin('{');
        Count("columns", static_cast<std::uintmax_t>(grid.columns));
        Count("rows", static_cast<std::uintmax_t>(grid.rows));
        Length("pitch", grid.pitch);
        Count("hits", static_cast<std::uintmax_t>(grid.hitCount));
        Length("highest", grid.highest);
        Length("lowest", grid.lowest);
        Length("mean", grid.mean);
        m_json.Key("grid").Begin('[');
        const auto columns = static_cast<std::size_t>(grid.columns);
        for (std::size_t row = 0; row * columns < grid.heights.size(); ++row)
            m_json.NumberList([&](std::size_t i) { return m_format.Length(grid.heights[row * columns + i]); }, columns);
        m_json.End(']');
        m_json.End('}');
    }

    void WriteDeviations(const Deviations& deviations)
    {
        m_json.Key("deviations").Begin('{');
        Count("points", deviations.pointCount);
        Length("largest_applied", deviations.largestApplied);
        Length("rms_applied", deviations.rmsApplied);
        Length("largest", deviations.largest);
        Length("rms", deviations.rms);
        Position("worst_point", deviations.worstPoint);
        Position("worst_foot", deviations.worstFoot);
        m_json.End('}');
    }

    JsonStream m_json;
    const LengthFormat& m_format;
};

} // namespace

void WriteJson(std::ostream& out, const Report& report, const LengthFormat& format)
{
    ReportWriter(out, format).Write(report);
    out << '\n';
}

} // namespace part_report
