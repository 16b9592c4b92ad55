#include "report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace part_report {

namespace {

constexpr std::size_t kMostRegionsListed = 12;

std::string Counted(std::size_t count, const std::string& noun, const std::string& plural)
{
    return std::to_string(count) + " " + (count == 1 ? noun : plural);
}

std::string Column(const std::string& text, std::size_t width)
{
    return text.size() < width ? text + std::string(width - text.size(), ' ') : text;
}

/// A line of a name and what is said about it.
void Entry(std::ostream& out, const std::string& name, const std::string& value)
{
    out << "  " << Column(name, 22) << value << '\n';
}

template <class Tuple>
std::string PositionText(const Tuple& position, const LengthFormat& format)
{
    std::string text = "(";
    for (int axis = 0; axis < Tuple::NumAxes; ++axis)
        text += (axis == 0 ? "" : ", ") + format.Number(position[axis]);
    return text + ") " + format.Symbol();
}

std::string DirectionText(const Vector3& direction)
{
    // Rounded beforehand, and with 0 added, so that no -0.0000 comes out.
    const auto rounded = [](double component) { return std::round(component * 1e4) / 1e4 + 0.0; };
    char text[64];
    std::snprintf(text, sizeof text, "(%.4f, %.4f, %.4f)", rounded(direction.x()), rounded(direction.y()),
                  rounded(direction.z()));
    return text;
}

std::string SizesText(const Vector3& sizes, const LengthFormat& format)
{
    return format.Text(sizes.x()) + " x " + format.Text(sizes.y()) + " x " + format.Text(sizes.z());
}

void WriteMesh(std::ostream& out, const Report& report, const LengthFormat& format)
{
    const Topology& topology = report.topology;
    out << "\nMesh\n";
    Entry(out, "size",
          Counted(report.vertexCount, "vertex", "vertices") + ", " + Counted(report.facetCount, "facet", "facets"));
    Entry(out, "edges",
          std::to_string(topology.edgeCount) + ", of which " + std::to_string(topology.openEdgeCount) + " open, " +
              std::to_string(topology.branchingEdgeCount) +
              " branching: " + (topology.IsWatertight() ? "watertight" : "not watertight"));
    Entry(out, "surface area", format.AreaText(report.extents.area));
}

void WriteExtents(std::ostream& out, const Report& report, const LengthFormat& format)
{
    CBoundingBox3d<double> box = report.extents.box;
    const Stand& stand = report.stand;
    out << "\nExtents\n";
    Entry(out, "along the axes", SizesText(box.GetSize(), format));
    Entry(out, "  from", PositionText(box.GetMin(), format));
    Entry(out, "  to", PositionText(box.GetMax(), format));
    if (!stand.hasPlane) {
        Entry(out, "on the largest plane", "there is no plane; the axes of the file serve instead");
        return;
    }
    Entry(out, "on the largest plane", SizesText(stand.box.GetSizes(), format));
    Entry(out, "  from", PositionText(stand.box.GetOrigin(), format));
    for (int axis = 0; axis < 3; ++axis)
        Entry(out, std::string("  axis ") + "xyz"[axis], DirectionText(stand.box.GetAxis(axis)));
}

void WriteRegions(std::ostream& out, const Report& report, const LengthFormat& format)
{
    out << "\nPlanar regions of at least 1 % of the area: " << report.regions.size() << '\n';
    for (std::size_t i = 0; i < std::min(report.regions.size(), kMostRegionsListed); ++i) {
        const PlanarRegion& region = report.regions[i];
        out << "  " << Column(std::to_string(i + 1), 4) << Column(format.AreaText(region.area), 18)
            << Column(Counted(region.facets.size(), "facet", "facets"), 12) << "normal " << DirectionText(region.normal)
            << "  through " << PositionText(region.origin, format) << "  RMS " << format.SmallText(region.rms) << '\n';
    }
    if (report.regions.size() > kMostRegionsListed)
        out << "  and " << report.regions.size() - kMostRegionsListed << " smaller ones\n";
}

std::string ParentText(const Outline& outline, std::size_t section)
{
    if (outline.parent == kNoParent)
        return "outermost";
    return "inside " + std::to_string(section + 1) + "." + std::to_string(outline.parent + 1);
}

void WriteSection(std::ostream& out, const Section& section, std::size_t number, const LengthFormat& format)
{
    const char* const axes = LocalAxisNames(section.plane.axis);
    out << "\nSection " << number + 1 << ", " << TitleOf(section.plane, format) << ": "
        << Counted(section.outlines.size(), "outline", "outlines") << ", material "
        << format.AreaText(section.materialArea) << "; positions in " << axes[0] << " and " << axes[1] << '\n';
    if (section.outlines.empty())
        out << "  the plane does not meet the part\n";
    for (std::size_t i = 0; i < section.outlines.size(); ++i) {
        const Outline& outline = section.outlines[i];
        out << "  " << Column(std::to_string(number + 1) + "." + std::to_string(i + 1), 6)
            << Column(NameOfShape(outline.shape.kind), 11) << DimensionsOf(outline, format) << " at "
            << PositionText(outline.shape.center, format) << ", length " << format.Text(outline.length);
        if (!outline.isClosed)
            out << ", open";
        if (outline.shape.kind != ShapeKind::freeForm)
            out << ", RMS " << format.SmallText(outline.shape.rms);
        out << ", " << ParentText(outline, number) << '\n';
    }
}

void WriteProbes(std::ostream& out, const Report& report, const LengthFormat& format)
{
    const HeightGrid& grid = report.heights;
    out << "\nHeights over the " << (report.stand.hasPlane ? "largest plane" : "lowest corner") << '\n';
    Entry(out, "probes",
          std::to_string(grid.columns) + " x " + std::to_string(grid.rows) + ", " + format.Text(grid.pitch) +
              " apart; " + std::to_string(grid.hitCount) + " hit the part");
    if (grid.hitCount > 0) {
        Entry(out, "highest", format.Text(grid.highest));
        Entry(out, "lowest", format.Text(grid.lowest));
        Entry(out, "mean", format.Text(grid.mean));
    }

    const Deviations& deviations = report.deviations;
    out << "\nMeasured points (made up: facet centres, displaced along their normals in steps)\n";
    Entry(out, "points", std::to_string(deviations.pointCount));
    Entry(out, "displaced by",
          "up to " + format.SmallText(deviations.largestApplied) + ", RMS " + format.SmallText(deviations.rmsApplied));
    Entry(out, "largest deviation",
          format.SmallText(deviations.largest) + " at " + PositionText(deviations.worstPoint, format));
    Entry(out, "RMS deviation", format.SmallText(deviations.rms));
}

} // namespace

std::string TitleOf(const SectionPlane& plane, const LengthFormat& format)
{
    return std::string(1, "xyz"[plane.axis]) + " = " + format.Text(plane.position);
}

std::string DimensionsOf(const Outline& outline, const LengthFormat& format)
{
    const Shape& shape = outline.shape;
    if (shape.kind == ShapeKind::circle)
        return "diameter " + format.Text(2 * shape.radius1);
    const std::string sizes = format.Text(2 * shape.radius1) + " x " + format.Text(2 * shape.radius2);
    return shape.kind == ShapeKind::ellipse ? "axes " + sizes : sizes;
}

void WriteText(std::ostream& out, const Report& report, const LengthFormat& format)
{
    out << "Report on " << report.part << '\n';
    out << "The file is in " << NameOfUnits(report.fileUnits) << ", this report in " << NameOfUnits(format.Units())
        << ".\n";
    WriteMesh(out, report, format);
    WriteExtents(out, report, format);
    WriteRegions(out, report, format);
    for (std::size_t i = 0; i < report.sections.size(); ++i)
        WriteSection(out, report.sections[i], i, format);
    WriteProbes(out, report, format);
    out << "\nResults\n";
    Entry(out, "picture", report.picture);
    Entry(out, "archive",
          report.archive + ", " + std::to_string(report.archiveSize) + " bytes; loaded again, the same bit for bit");
}

} // namespace part_report
