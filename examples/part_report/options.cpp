#include "options.h"

#include "errors.h"
#include "units.h"

#include <cadgeom/util/parse_number.h>

#include <cmath>
#include <filesystem>
#include <optional>

namespace part_report {

namespace {

constexpr double kLargestPosition = 1e9;

SectionPlane ParseSection(const std::string& text)
{
    const std::string axes = "xyz";
    SectionPlane plane;
    const std::size_t axis = text.empty() ? std::string::npos : axes.find(text[0]);
    const std::string number = text.size() < 3 ? "" : text.substr(2);
    const int count = ParseFloatingPointFastA(number.c_str(), plane.position);
    if (axis == std::string::npos || text[1] != '=' || count == 0 || static_cast<std::size_t>(count) != number.size() ||
        !(std::fabs(plane.position) <= kLargestPosition))
        throw UsageError("\"" + text + "\" is no section; expected an axis and a number, as in z=0.35");
    plane.axis = static_cast<EAxis>(axis);
    return plane;
}

/// Walks along the arguments; "--name=value" and "--name value" are the same.
class ArgumentWalker {
public:
    explicit ArgumentWalker(const std::vector<std::string>& arguments) : m_arguments(arguments) {}

    bool Next()
    {
        if (m_value)
            throw UsageError("the option " + m_name + " takes no value");
        if (m_next == m_arguments.size())
            return false;
        m_name = m_arguments[m_next++];
        const std::size_t equals = m_name.find('=');
        if (m_name.rfind("--", 0) == 0 && equals != std::string::npos) {
            m_value = m_name.substr(equals + 1);
            m_name.erase(equals);
        }
        return true;
    }

    const std::string& Name() const { return m_name; }

    std::string Value()
    {
        if (m_value) {
            const std::string value = *m_value;
            m_value.reset();
            return value;
        }
        if (m_next == m_arguments.size())
            throw UsageError("the option " + m_name + " needs a value");
        return m_arguments[m_next++];
    }

private:
    const std::vector<std::string>& m_arguments;
    std::size_t m_next = 0;
    std::string m_name;
    std::optional<std::string> m_value;
};

bool IsSameFile(const std::string& a, const std::string& b)
{
    std::error_code ignored;
    return std::filesystem::absolute(a).lexically_normal() == std::filesystem::absolute(b).lexically_normal() ||
           std::filesystem::equivalent(a, b, ignored);
}

void NameResults(Options& options)
{
    const std::string stem = std::filesystem::path(options.part).stem().string();
    if (options.picture.empty())
        options.picture = stem + "_report.svg";
    if (options.archive.empty())
        options.archive = stem + "_report.sections";
    if (IsSameFile(options.picture, options.part) || IsSameFile(options.archive, options.part))
        throw UsageError("a result would replace the part " + options.part);
    if (IsSameFile(options.picture, options.archive))
        throw UsageError("the picture and the archive would both be " + options.picture);
}

} // namespace

Options ParseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    std::optional<CADUNITS> units;
    ArgumentWalker walker(arguments);
    while (walker.Next()) {
        const std::string& name = walker.Name();
        if (name == "--help" || name == "-h") {
            options.isHelp = true;
            return options;
        }
        if (name == "--json")
            options.isJson = true;
        else if (name == "--units")
            units = FindUnits(walker.Value());
        else if (name == "--file-units")
            options.fileUnits = FindUnits(walker.Value());
        else if (name == "--section")
            options.sections.push_back(ParseSection(walker.Value()));
        else if (name == "--svg")
            options.picture = walker.Value();
        else if (name == "--archive")
            options.archive = walker.Value();
        else if (name.rfind('-', 0) == 0)
            throw UsageError("there is no option " + name);
        else if (options.part.empty())
            options.part = name;
        else
            throw UsageError("one part at a time, but there are " + options.part + " and " + name);
    }
    if (options.part.empty())
        throw UsageError("which part?");
    options.units = units.value_or(options.fileUnits);
    for (SectionPlane& plane : options.sections)
        plane.position *= GetConversionFactor(options.fileUnits, CADUNITS_MILLIMETERS);
    NameResults(options);
    return options;
}

std::string HelpText()
{
    return R"(usage: part_report PART.off [options]

Inspects a part, given as a mesh of triangles in OFF format: measures it, finds its planes, cuts sections and says what
their outlines are, probes heights, compares measured points with the surface. Prints a report, draws the sections, and
keeps them in an archive.

  --units UNIT         unit of the report and the picture; as the file when not given
  --file-units UNIT    unit of the coordinates in the file, which the format does not tell; millimeters when not given
  --section AXIS=POS   cut across the axis x, y or z at this position, in the unit of the file; may be repeated.
                       Without it there are three sections, evenly spaced along the axis across the largest plane
  --json               print the facts for programs instead of for people
  --svg FILE           the picture; PART_report.svg in the current folder when not given
  --archive FILE       the sections, to be loaded again; PART_report.sections in the current folder when not given
  --help               print this and stop

UNIT is one of )" +
           ListOfUnits() + R"(.
Exit code: 0 when all went well, 1 when a result could not be written, 2 when the command line or the part is wrong.
)";
}

} // namespace part_report
