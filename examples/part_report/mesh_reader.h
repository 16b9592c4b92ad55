#pragma once
// Reads a triangle mesh from a text file in OFF format.

#include "mesh.h"
#include "progress_bar.h"

#include <cadgeom/core/units.h>

#include <string>

namespace part_report {

/// Reads the mesh and converts it from the unit of the file, which the format does not name, to millimetres.
/// Throws InputError, naming the line, when the file is not exactly what it announces.
Mesh ReadMesh(const std::string& path, CADUNITS fileUnits, ProgressBar& progress);

} // namespace part_report
