#pragma once
/// @file
/// Units of length, the factors between them, and bulk operations on arrays of points. Geometry carries no unit of its
/// own: callers know it and convert.

#include <cadgeom/core/export.h>
#include <cadgeom/core/floating_point.h>

#include <cstdint>

template <class T>
class CadPoint3d;
template <class T>
class CadVector3d;

/// A unit of length. Any other integer is accepted and behaves as a unit whose factors are 1.
enum CADUNITS : int {
    CADUNITS_INCHES = 0,
    CADUNITS_MILLIMETERS = 1,
    CADUNITS_MILS = 2, ///< thousandths of an inch
    CADUNITS_FEET = 3,
    CADUNITS_CENTIMETERS = 4,
    CADUNITS_METERS = 5,
    CADUNITS_MILES = 6,
    CADUNITS_KILOMETERS = 7,
    CADUNITS_MICRONS = 8, ///< micrometres
    CADUNITS_MICROINCHES = 9,
    CADUNITS_NONE = 99 ///< not known; conversions from and to it are skipped
};

/// How many of the unit make a millimetre; 1 for values outside the enumeration and for CADUNITS_NONE.
CADGEOM_API double GetUnitsPerMM(CADUNITS units);
/// How many of the unit make an inch; 1 for values outside the enumeration and for CADUNITS_NONE.
CADGEOM_API double GetUnitsPerInch(CADUNITS units);
/// What a length in `from` is multiplied by to be in `to`: GetUnitsPerMM(to) / GetUnitsPerMM(from).
/// 1 when the units are the same or either is CADUNITS_NONE.
CADGEOM_API double GetConversionFactor(CADUNITS from, CADUNITS to);

/// Multiplies the coordinates of `count` points by GetConversionFactor(from, to). Nothing happens for a null array, for
/// equal units, and when either unit is CADUNITS_NONE. Float coordinates are multiplied in double and rounded once.
template <class T>
CADGEOM_API void PointsConvertUnits(CadPoint3d<T>* points, std::uint64_t count, CADUNITS from, CADUNITS to);
/// As PointsConvertUnits, for displacements.
template <class T>
CADGEOM_API void DeltaVectorsConvertUnits(CadVector3d<T>* vectors, std::uint64_t count, CADUNITS from, CADUNITS to);
/// Adds `displacement` to `count` points. Nothing happens for a null array and for a displacement of exact zeros. Float
/// coordinates are added in double and rounded once.
template <class T>
CADGEOM_API void PointsTranslate(CadPoint3d<T>* points, std::uint64_t count, const CadVector3d<double>& displacement);
/// Multiplies the coordinates of `count` points by `factor`: scales about the origin. Nothing happens for a null array
/// and for a factor of exactly 1. Float coordinates are multiplied in double and rounded once.
template <class T>
CADGEOM_API void PointsScale(CadPoint3d<T>* points, std::uint64_t count, double factor);

extern template CADGEOM_API void PointsConvertUnits(CadPoint3d<float>*, std::uint64_t, CADUNITS, CADUNITS);
extern template CADGEOM_API void PointsConvertUnits(CadPoint3d<double>*, std::uint64_t, CADUNITS, CADUNITS);
extern template CADGEOM_API void DeltaVectorsConvertUnits(CadVector3d<float>*, std::uint64_t, CADUNITS, CADUNITS);
extern template CADGEOM_API void DeltaVectorsConvertUnits(CadVector3d<double>*, std::uint64_t, CADUNITS, CADUNITS);
extern template CADGEOM_API void PointsTranslate(CadPoint3d<float>*, std::uint64_t, const CadVector3d<double>&);
extern template CADGEOM_API void PointsTranslate(CadPoint3d<double>*, std::uint64_t, const CadVector3d<double>&);
extern template CADGEOM_API void PointsScale(CadPoint3d<float>*, std::uint64_t, double);
extern template CADGEOM_API void PointsScale(CadPoint3d<double>*, std::uint64_t, double);

CADGEOM_FP_BEGIN

namespace cadgeom::detail {

/// Whether a conversion between these units changes anything.
inline bool IsConversion(CADUNITS from, CADUNITS to)
{
    return from != to && from != CADUNITS_NONE && to != CADUNITS_NONE;
}

/// Multiplies `count` coordinates by the factor between two units, in double.
template <class T>
inline void ConvertCoordinates(T* coordinates, int count, CADUNITS from, CADUNITS to)
{
    if (IsConversion(from, to)) {
        const double factor = GetConversionFactor(from, to);
        for (int i = 0; i < count; ++i) {
            coordinates[i] = static_cast<T>(Product(static_cast<double>(coordinates[i]), factor));
        }
    }
}

} // namespace cadgeom::detail

CADGEOM_FP_END
