#include <cadgeom/util/parse_number.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

// Digits are gathered in 32-bit integers and only scaled once per chunk of nine or ten, which costs far fewer rounded
// operations than scaling digit by digit. The weak spot is accuracy: each chunk and the exponent bring a rounded power
// of ten with them.

namespace {

/// A chunk no larger than this takes another digit within 32 bits: 10 * 429496728 + 9 = 2^32 - 7.
constexpr std::uint32_t kLargestOpenChunk = 429496728;

/// As many digits fit a chunk whatever they are: eight nines are still below the bound.
constexpr int kUncheckedDigits = 9;

// Literals, because every platform reads the same number from them, which cannot be said of its power function.
constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                              1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
constexpr double kInversePowers[] = {1e-0,  1e-1,  1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,  1e-8,  1e-9,
                                     1e-10, 1e-11, 1e-12, 1e-13, 1e-14, 1e-15, 1e-16, 1e-17, 1e-18, 1e-19};
constexpr std::ptrdiff_t kPowerCount = std::size(kPowers);
static_assert(std::size(kInversePowers) == kPowerCount);

double PowerOfTen(std::ptrdiff_t exponent)
{
    const bool isTabulated = exponent >= 0 && exponent < kPowerCount;
    return isTabulated ? kPowers[exponent] : std::pow(10.0, static_cast<double>(exponent));
}

/// 10 to the power -exponent.
double InversePowerOfTen(std::ptrdiff_t exponent)
{
    const bool isTabulated = exponent >= 0 && exponent < kPowerCount;
    return isTabulated ? kInversePowers[exponent] : std::pow(10.0, -static_cast<double>(exponent));
}

/// The character as an unsigned number, so that one comparison decides about a range.
template <class Char>
std::uint32_t CodeOf(Char c)
{
    return static_cast<std::make_unsigned_t<Char>>(c);
}

/// The value of a digit; 10 or more for any other character.
template <class Char>
std::uint32_t DigitOf(Char c)
{
    return CodeOf(c) - '0';
}

template <class Char>
bool IsDigit(Char c)
{
    return DigitOf(c) < 10;
}

template <class Char>
bool IsBlank(Char c)
{
    return CodeOf(c) == ' ' || CodeOf(c) - '\t' <= '\r' - '\t';
}

template <class Char>
bool IsExponentLetter(Char c)
{
    // 'D' and 'E' differ in bit 0x01, upper and lower case in bit 0x20.
    return ((CodeOf(c) - 'D') & ~0x21U) == 0;
}

template <class Char>
void SkipBlanks(const Char*& next)
{
    while (IsBlank(*next)) {
        ++next;
    }
}

/// Moves past an optional sign and tells whether it was a minus.
template <class Char>
bool ReadSign(const Char*& next)
{
    const bool isNegative = *next == '-';
    if (isNegative || *next == '+') {
        ++next;
    }
    return isNegative;
}

/// Reads digits, possibly none, as an integer modulo 2^32.
template <class Char>
std::uint32_t ReadWrappingInteger(const Char*& next)
{
    std::uint32_t value = 0;
    for (; IsDigit(*next); ++next) {
        value = value * 10 + DigitOf(*next);
    }
    return value;
}

/// Reads digits up to the first one that the chunk has no room for.
template <class Char>
std::uint32_t ReadChunk(const Char*& next)
{
    std::uint32_t chunk = 0;
    // Reading the first digits in a loop of their own saves a fifth of the time, more than converting eight at once.
    for (int i = 0; i < kUncheckedDigits && IsDigit(*next); ++i, ++next) {
        chunk = chunk * 10 + DigitOf(*next);
    }
    for (; IsDigit(*next) && chunk <= kLargestOpenChunk; ++next) {
        chunk = chunk * 10 + DigitOf(*next);
    }
    return chunk;
}

template <class Char>
double ReadIntegerPart(const Char*& next)
{
    double value = ReadChunk(next);
    for (; IsDigit(*next); ++next) {
        value = value * 10 + DigitOf(*next);
    }
    return value;
}

/// Reads the digits after the point and adds their value.
template <class Char>
double AddFraction(double value, const Char*& next)
{
    const Char* const first = next;
    do {
        const std::uint32_t chunk = ReadChunk(next);
        value += chunk * InversePowerOfTen(next - first);
    } while (IsDigit(*next));
    return value;
}

/// Reads what follows the exponent letter as a factor. A wrapped exponent is negative and keeps its written sign.
template <class Char>
double ReadExponentFactor(const Char*& next)
{
    const bool isNegative = ReadSign(next);
    const auto exponent = static_cast<std::int32_t>(ReadWrappingInteger(next));
    return isNegative ? InversePowerOfTen(exponent) : PowerOfTen(exponent);
}

template <class Char>
int CountOf(const Char* first, const Char* last)
{
    return static_cast<int>(std::min<std::ptrdiff_t>(last - first, INT_MAX));
}

template <class Char>
int ParseLong(const Char* text, long& value)
{
    value = 0;
    if (text == nullptr) {
        return 0;
    }
    const Char* next = text;
    SkipBlanks(next);
    const bool isNegative = ReadSign(next);
    if (!IsDigit(*next)) {
        return 0;
    }
    const std::uint32_t magnitude = ReadWrappingInteger(next);
    value = static_cast<std::int32_t>(isNegative ? 0 - magnitude : magnitude);
    return CountOf(text, next);
}

template <class Char>
int ParseFloatingPoint(const Char* text, double& value)
{
    value = 0;
    if (text == nullptr) {
        return 0;
    }
    const Char* next = text;
    SkipBlanks(next);
    const bool isNegative = ReadSign(next);

    bool hasDigits = IsDigit(*next);
    double magnitude = ReadIntegerPart(next);
    if (*next == '.') {
        ++next;
        hasDigits = hasDigits || IsDigit(*next);
        magnitude = AddFraction(magnitude, next);
    }
    if (!hasDigits) {
        return 0;
    }
    if (IsExponentLetter(*next)) {
        ++next;
        magnitude *= ReadExponentFactor(next);
    }
    value = isNegative ? -magnitude : magnitude;
    return CountOf(text, next);
}

} // namespace

int ParseLongFastA(const char* text, long& value)
{
    return ParseLong(text, value);
}

int ParseLongFastT(const wchar_t* text, long& value)
{
    return ParseLong(text, value);
}

int ParseFloatingPointFastA(const char* text, double& value)
{
    return ParseFloatingPoint(text, value);
}

int ParseFloatingPointFastT(const wchar_t* text, double& value)
{
    return ParseFloatingPoint(text, value);
}
