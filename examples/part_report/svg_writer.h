#pragma once
// The picture: every section at the same scale, the fitted shapes over it, dimensions beside them, a legend.

#include "report.h"

namespace part_report {

/// The whole text of a self-contained SVG file.
std::string DrawReport(const Report& report, const LengthFormat& format);

} // namespace part_report
