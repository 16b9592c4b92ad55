#pragma once
// Probes the part as a measuring machine would: heights on a grid, and measured points against the surface.

#include "extents.h"
#include "progress_bar.h"

namespace part_report {

/// Heights of the part as it stands on its largest plane, seen from above.
struct HeightGrid {
    int columns = 0;
    int rows = 0;
    double pitch = 0;
    /// Row by row, in the frame of the stand; NaN where the probe misses the part.
    std::vector<double> heights;
    int hitCount = 0;
    double lowest = 0;
    double highest = 0;
    double mean = 0;
};

HeightGrid ProbeHeights(const Mesh& mesh, const Stand& stand, ProgressBar& progress);

struct Deviations {
    std::size_t pointCount = 0;
    /// What the measured points were displaced by.
    double largestApplied = 0;
    double rmsApplied = 0;
    /// How far they were found from the surface; `largest` is positive outside the part and negative inside.
    double largest = 0;
    double rms = 0;
    /// The measured point with the largest deviation, and where it fell on the surface.
    Point3 worstPoint = Point3::zero();
    Point3 worstFoot = Point3::zero();
};

/// Measures centres of facets that are displaced along their normals, by -3/3, -2/3 ... 3/3 of an amplitude of 1/10000 of
/// the size of the part, in turn.
Deviations MeasureDeviations(const Mesh& mesh, double size, ProgressBar& progress);

} // namespace part_report
