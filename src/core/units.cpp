#include <cadgeom/core/point3d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/core/vector3d.h>

#include "core/coordinate_arrays.h"

namespace {

constexpr unsigned kUnitCount = 10;

constexpr double kUnitsPerMillimetre[kUnitCount] = {
    0.03937007874015748, 1.0, 39.37007874015748, 0.0032808398950131233, 0.1, 0.001, 6.21371192237334e-07, 1e-06, 1000.0,
    39370.078740157485,
};

constexpr double kUnitsPerInch[kUnitCount] = {
    1.0, 25.4, 1000.0, 0.08333333333333333, 2.54, 0.0254, 1.5782828282828283e-05, 2.5399999999999997e-05, 25400.0, 1e6,
};

double FactorOf(const double (&table)[kUnitCount], CADUNITS units)
{
    const auto index = static_cast<unsigned>(units);
    return index < kUnitCount ? table[index] : 1.0;
}

template <class T>
void ConvertTriples(T* coordinates, std::uint64_t count, CADUNITS from, CADUNITS to)
{
    if (cadgeom::detail::IsConversion(from, to)) {
        cadgeom::detail::ScaleCoordinates(coordinates, count, GetConversionFactor(from, to));
    }
}

} // namespace

double GetUnitsPerMM(CADUNITS units)
{
    return FactorOf(kUnitsPerMillimetre, units);
}

double GetUnitsPerInch(CADUNITS units)
{
    return FactorOf(kUnitsPerInch, units);
}

double GetConversionFactor(CADUNITS from, CADUNITS to)
{
    return cadgeom::detail::IsConversion(from, to) ? GetUnitsPerMM(to) / GetUnitsPerMM(from) : 1.0;
}

template <class T>
void PointsConvertUnits(CadPoint3d<T>* points, std::uint64_t count, CADUNITS from, CADUNITS to)
{
    if (points != nullptr && count != 0) {
        ConvertTriples(points->data(), count, from, to);
    }
}

template <class T>
void DeltaVectorsConvertUnits(CadVector3d<T>* vectors, std::uint64_t count, CADUNITS from, CADUNITS to)
{
    if (vectors != nullptr && count != 0) {
        ConvertTriples(vectors->data(), count, from, to);
    }
}

template <class T>
void PointsTranslate(CadPoint3d<T>* points, std::uint64_t count, const CadVector3d<double>& displacement)
{
    if (points != nullptr && !displacement.isZero()) {
        cadgeom::detail::TranslateCoordinates(points->data(), count, displacement.data());
    }
}

template <class T>
void PointsScale(CadPoint3d<T>* points, std::uint64_t count, double factor)
{
    if (points != nullptr && count != 0 && factor != 1.0) {
        cadgeom::detail::ScaleCoordinates(points->data(), count, factor);
    }
}

#define CADGEOM_INSTANTIATE(T)                                                                                         \
    template CADGEOM_API void PointsConvertUnits(CadPoint3d<T>*, std::uint64_t, CADUNITS, CADUNITS);                   \
    template CADGEOM_API void DeltaVectorsConvertUnits(CadVector3d<T>*, std::uint64_t, CADUNITS, CADUNITS);            \
    template CADGEOM_API void PointsTranslate(CadPoint3d<T>*, std::uint64_t, const CadVector3d<double>&);              \
    template CADGEOM_API void PointsScale(CadPoint3d<T>*, std::uint64_t, double)

CADGEOM_INSTANTIATE(float);
CADGEOM_INSTANTIATE(double);

#undef CADGEOM_INSTANTIATE
