#pragma once
// The command line.

#include "sections.h"

#include <cadgeom/core/units.h>

#include <string>
#include <vector>

namespace part_report {

struct Options {
    std::string part;
    CADUNITS fileUnits = CADUNITS_MILLIMETERS;
    CADUNITS units = CADUNITS_MILLIMETERS;
    /// Positions in millimetres; empty when the program is to choose.
    std::vector<SectionPlane> sections;
    std::string picture;
    std::string archive;
    bool isJson = false;
    bool isHelp = false;
};

/// Throws UsageError.
Options ParseOptions(const std::vector<std::string>& arguments);

std::string HelpText();

} // namespace part_report
