#pragma once
// Everything that is known about a part, and the report for people.

#include "options.h"
#include "probes.h"
#include "units.h"

#include <ostream>

namespace part_report {

struct Report {
    std::string part;
    CADUNITS fileUnits = CADUNITS_MILLIMETERS;
    std::size_t vertexCount = 0;
    std::size_t facetCount = 0;
    Topology topology;
    Extents extents;
    std::vector<PlanarRegion> regions;
    Stand stand;
    std::vector<Section> sections;
    HeightGrid heights;
    Deviations deviations;
    std::string picture;
    std::string archive;
    std::uintmax_t archiveSize = 0;
};

/// "z = 8.890 mm"
std::string TitleOf(const SectionPlane& plane, const LengthFormat& format);

/// "diameter 6.747 mm", "127.000 x 63.500 mm", ...
std::string DimensionsOf(const Outline& outline, const LengthFormat& format);

void WriteText(std::ostream& out, const Report& report, const LengthFormat& format);

} // namespace part_report
