#pragma once
// Cuts the part by planes across the axes, and chains the cuts into outlines.

#include "outlines.h"
#include "progress_bar.h"

#include <cadgeom/core/axis.h>
#include <cadgeom/transform/transform.h>

namespace part_report {

struct SectionPlane {
    EAxis axis = eZAxis;
    double position = 0;
};

struct Section {
    SectionPlane plane;
    /// Its local z is across the plane; local x and y are those axes of the file in which people look at such a cut.
    CCadTransform frame;
    std::vector<Outline> outlines;
    /// Outlines within an even number of others enclose material, the others enclose holes.
    double materialArea = 0;
};

/// Names of the local axes, "xy" for a plane across z.
const char* LocalAxisNames(EAxis axis);

/// @param size  of the part, the scale of the tolerances
Section CutSection(const Mesh& mesh, const SectionPlane& plane, double size, ProgressBar& progress);

} // namespace part_report
