#include "units.h"

#include "errors.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace part_report {

namespace {

struct UnitName {
    CADUNITS units;
    const char* name;
    const char* symbol;
};

constexpr UnitName kUnitNames[] = {
    {CADUNITS_MILLIMETERS, "millimeters", "mm"},
    {CADUNITS_INCHES, "inches", "in"},
    {CADUNITS_MILS, "mils", "mil"},
    {CADUNITS_FEET, "feet", "ft"},
    {CADUNITS_CENTIMETERS, "centimeters", "cm"},
    {CADUNITS_METERS, "meters", "m"},
    {CADUNITS_MILES, "miles", "mi"},
    {CADUNITS_KILOMETERS, "kilometers", "km"},
    {CADUNITS_MICRONS, "microns", "um"},
    {CADUNITS_MICROINCHES, "microinches", "uin"},
};

// Numbers resolve this part of the size of the part.
constexpr double kDigitsOfSize = 5;
constexpr int kMostDecimals = 12;
// What is smaller than this part of the size of the part is rounding.
constexpr double kRounding = 1e-12;

const UnitName& Find(CADUNITS units)
{
    return *std::find_if(std::begin(kUnitNames), std::end(kUnitNames) - 1,
                         [units](const UnitName& unit) { return unit.units == units; });
}

std::string Fixed(double value, int decimals)
{
    char text[400];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    const bool isMinusZero = text[0] == '-' && std::string(text).find_first_of("123456789") == std::string::npos;
    return isMinusZero ? text + 1 : text;
}

} // namespace

CADUNITS FindUnits(const std::string& name)
{
    for (const UnitName& unit : kUnitNames) {
        if (name == unit.name || name == unit.symbol)
            return unit.units;
    }
    throw UsageError("\"" + name + "\" is no unit of length; expected one of " + ListOfUnits());
}

std::string ListOfUnits()
{
    std::string list;
    for (const UnitName& unit : kUnitNames)
        list += (list.empty() ? "" : ", ") + std::string(unit.name) + " (" + unit.symbol + ")";
    return list;
}

std::string NameOfUnits(CADUNITS units)
{
    return Find(units).name;
}

std::string SymbolOfUnits(CADUNITS units)
{
    return Find(units).symbol;
}

LengthFormat::LengthFormat(CADUNITS units, double partSizeInMillimetres)
    : m_units(units),
      m_symbol(SymbolOfUnits(units)),
      m_factor(GetConversionFactor(CADUNITS_MILLIMETERS, units)),
      m_partSize(partSizeInMillimetres)
{
    const double size = Length(partSizeInMillimetres);
    const double decimals = size > 0 ? kDigitsOfSize - std::floor(std::log10(size)) : 0;
    m_decimals = static_cast<int>(std::clamp(decimals, 0.0, static_cast<double>(kMostDecimals)));
}

std::string LengthFormat::Number(double millimetres) const
{
    return Fixed(Length(millimetres), m_decimals);
}

std::string LengthFormat::Text(double millimetres) const
{
    return Number(millimetres) + " " + m_symbol;
}

std::string LengthFormat::ShortText(double millimetres) const
{
    std::string number = Number(millimetres);
    if (number.find('.') != std::string::npos) {
        number.erase(number.find_last_not_of('0') + 1);
        if (number.back() == '.')
            number.pop_back();
    }
    return number + " " + m_symbol;
}

std::string LengthFormat::SmallText(double millimetres) const
{
    char text[64];
    const bool isRounding = std::fabs(millimetres) < kRounding * m_partSize;
    std::snprintf(text, sizeof text, "%.2g", isRounding ? 0 : Length(millimetres));
    return text + (" " + m_symbol);
}

std::string LengthFormat::AreaText(double squareMillimetres) const
{
    char text[64];
    std::snprintf(text, sizeof text, "%.7g", Area(squareMillimetres));
    return text + (" " + m_symbol) + "^2";
}

} // namespace part_report
