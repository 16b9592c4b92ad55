#pragma once
// The report for programs.

#include "report.h"

namespace part_report {

/// One JSON object; lengths in the unit that it names. Not every number exists: a probe that misses is null.
void WriteJson(std::ostream& out, const Report& report, const LengthFormat& format);

} // namespace part_report
