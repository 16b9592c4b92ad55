#pragma once
/// @file
/// Marks what the shared library exports. `CADGEOM_API` stands on exported functions, on classes, on class
/// templates and on their explicit instantiations; everything else stays hidden. `CADGEOM_HIDDEN` stands on
/// members of an exported class that the library alone uses.

#if defined(_WIN32) || defined(__CYGWIN__)
#if defined(CADGEOM_STATIC)
#define CADGEOM_API
#elif defined(CADGEOM_BUILDING)
#define CADGEOM_API __declspec(dllexport)
#else
#define CADGEOM_API __declspec(dllimport)
#endif
#define CADGEOM_HIDDEN
#else
#define CADGEOM_API __attribute__((visibility("default")))
#define CADGEOM_HIDDEN __attribute__((visibility("hidden")))
#endif
