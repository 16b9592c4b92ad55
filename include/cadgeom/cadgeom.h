#pragma once
/// @file
/// Includes every public header of cadgeom. A host that wants less includes the headers of its topics.

#include <cadgeom/core/angles.h>
#include <cadgeom/core/archive_records.h>
#include <cadgeom/core/axis.h>
#include <cadgeom/core/components.h>
#include <cadgeom/core/export.h>
#include <cadgeom/core/floating_point.h>
#include <cadgeom/core/point.h>
#include <cadgeom/core/point2d.h>
#include <cadgeom/core/point3d.h>
#include <cadgeom/core/point_sequence.h>
#include <cadgeom/core/tolerance.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector.h>
#include <cadgeom/core/vector2d.h>
#include <cadgeom/core/vector3d.h>
#include <cadgeom/platform/archive.h>
#include <cadgeom/platform/array.h>
#include <cadgeom/platform/exceptions.h>
#include <cadgeom/platform/file.h>
