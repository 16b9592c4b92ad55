#pragma once
// Names of length units, and numbers with them. The program computes in millimetres; its writers convert here.

#include <cadgeom/core/units.h>

#include <string>

namespace part_report {

/// Finds a unit by its name or symbol ("inches", "in"); throws UsageError when there is none.
CADUNITS FindUnits(const std::string& name);

/// "inches, millimeters, ..."
std::string ListOfUnits();

std::string NameOfUnits(CADUNITS units);
std::string SymbolOfUnits(CADUNITS units);

/// Writes numbers in one unit, with as many decimals as make sense for a part of a given size.
class LengthFormat {
public:
    LengthFormat(CADUNITS units, double partSizeInMillimetres);

    CADUNITS Units() const { return m_units; }
    const std::string& Symbol() const { return m_symbol; }

    double Length(double millimetres) const { return millimetres * m_factor; }
    double Area(double squareMillimetres) const { return squareMillimetres * m_factor * m_factor; }

    /// "12.700 mm"
    std::string Text(double millimetres) const;
    /// "12.7 mm": without the zeros at the end.
    std::string ShortText(double millimetres) const;
    /// "3.2e-05 mm", for what is small beside the part; what is rounding alone is "0 mm".
    std::string SmallText(double millimetres) const;
    /// "161.29 mm^2"
    std::string AreaText(double squareMillimetres) const;
    /// "12.700", for lists that share a symbol.
    std::string Number(double millimetres) const;

private:
    CADUNITS m_units;
    std::string m_symbol;
    double m_factor;
    double m_partSize;
    int m_decimals;
};

} // namespace part_report
