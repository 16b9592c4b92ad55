// Inspects a part: see HelpText() in options.cpp for what it does, README.md for how.

#include "archive_store.h"
#include "errors.h"
#include "json_writer.h"
#include "mesh_reader.h"
#include "output_file.h"
#include "svg_writer.h"

#include <cadgeom/platform/exceptions.h>

#include <filesystem>
#include <iostream>

namespace part_report {

namespace {

constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitWrongInput = 2;

/// Three sections, evenly spaced along the axis that is closest to the normal of the largest plane.
std::vector<SectionPlane> DefaultSections(const Report& report)
{
    constexpr int kCount = 3;
    Vector3 normal = report.regions.empty() ? Vector3::zAxis() : report.regions.front().normal;
    EAxis axis = eZAxis;
    normal.maxAbsoluteValue(&axis);
    const CBoundingBox3d<double>& box = report.extents.box;
    std::vector<SectionPlane> planes;
    for (int i = 1; i <= kCount; ++i) {
        const double share = static_cast<double>(i) / (kCount + 1);
        planes.push_back({axis, box.GetMin()[axis] + share * (box.GetMax()[axis] - box.GetMin()[axis])});
    }
    return planes;
}

Report Inspect(const Options& options)
{
    constexpr int kFixedSteps = 5;
    ProgressBar progress;
    ProgressBar::Task task(progress, "reading", kFixedSteps + std::max<std::size_t>(options.sections.size(), 3));
    const Mesh mesh = ReadMesh(options.part, options.fileUnits, progress);

    Report report;
    report.part = std::filesystem::path(options.part).filename().string();
    report.fileUnits = options.fileUnits;
    report.picture = options.picture;
    report.archive = options.archive;
    report.vertexCount = mesh.points.size();
    report.facetCount = mesh.facets.size();
    report.extents = MeasureExtents(mesh);
    const double size = report.extents.diagonal;
    if (!(size > 0))
        throw InputError(options.part, 2, "a part with an extent: all corners are one point");

    report.topology = FindTopology(mesh);
    report.regions = FindPlanarRegions(mesh, report.topology, report.extents.area, size, progress);
    report.stand = FindStand(mesh, report.extents, report.regions);
    for (const SectionPlane& plane : options.sections.empty() ? DefaultSections(report) : options.sections)
        report.sections.push_back(CutSection(mesh, plane, size, progress));
    report.heights = ProbeHeights(mesh, report.stand, progress);
    report.deviations = MeasureDeviations(mesh, size, progress);
    return report;
}

/// Stores the sections and loads them again.
void StoreSections(Report& report, const OutputFile& file)
{
    try {
        const StoredSections stored = CollectSections(report.stand, report.sections);
        Store(stored, file.DraftPath());
        if (!AreIdentical(stored, Load(file.DraftPath())))
            throw OutputError(file.Path(), "the sections came back changed");
        report.archiveSize = std::filesystem::file_size(file.DraftPath());
    } catch (const CException& error) {
        throw OutputError(file.Path(), error.what());
    }
}

void Print(const Report& report, const LengthFormat& format, bool isJson)
{
    if (isJson)
        WriteJson(std::cout, report, format);
    else
        WriteText(std::cout, report, format);
    std::cout.flush();
    if (!std::cout)
        throw OutputError("standard output", "cannot be written");
}

void Run(const Options& options)
{
    Report report = Inspect(options);
    const LengthFormat format(options.units, report.extents.diagonal);
    OutputFile archive(options.archive);
    OutputFile picture(options.picture);
    StoreSections(report, archive);
    picture.WriteDraft(DrawReport(report, format));
    archive.Publish();
    picture.Publish();
    Print(report, format, options.isJson);
}

int Fail(const std::exception& error, int exitCode)
{
    std::cerr << "part_report: " << error.what() << '\n';
    return exitCode;
}

int Main(const std::vector<std::string>& arguments)
{
    try {
        const Options options = ParseOptions(arguments);
        if (options.isHelp)
            std::cout << HelpText();
        else
            Run(options);
        return kExitOk;
    } catch (const InputError& error) {
        return Fail(error, kExitWrongInput);
    } catch (const UsageError& error) {
        const int exitCode = Fail(error, kExitWrongInput);
        std::cerr << "part_report --help says how it is used\n";
        return exitCode;
    } catch (const std::exception& error) {
        return Fail(error, kExitFailure);
    }
}

} // namespace

} // namespace part_report

int main(int argc, char** argv)
{
    return part_report::Main(std::vector<std::string>(argv + 1, argv + argc));
}
