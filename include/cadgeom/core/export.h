#pragma once
/// @file
/// Marks what the shared library exports. `CADGEOM_API` stands on exported functions, on classes, on class
/// templates and on their explicit instantiations; everything else stays hidden.

#if defined(_WIN32) || defined(__CYGWIN__)
#if defined(CADGEOM_STATIC)
#define CADGEOM_API
#elif defined(CADGEOM_BUILDING)
#define CADGEOM_API __declspec(dllexport)
#else
#define CADGEOM_API __declspec(dllimport)
#endif
#else
#define CADGEOM_API __attribute__((visibility("default")))
#endif
