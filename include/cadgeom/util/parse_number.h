#pragma once
/// @file
/// Reads decimal numbers from the start of a text, without locale and faster than the C library, and tells how many
/// characters were read, so that a caller can walk along a line of numbers. Each function has a narrow form (`A`) and
/// a wide form (`T`).
///
/// What holds for all of them:
/// - White space is space, tab, line feed, vertical tab, form feed and carriage return. A character beyond ASCII
///   (a negative `char`, a wide character above 127) is neither blank nor digit nor exponent letter.
/// - Reading stops at the first character that does not belong to the number, the terminating zero at the latest;
///   no character after that one is touched. A null text counts as an empty one.
/// - The count includes leading white space, the sign, the decimal point and the exponent part. It is 0 when no
///   number starts here, and INT_MAX when the number has more characters than an `int` can count.
/// - `value` is always written: 0 when no number starts here.

#include <cadgeom/core/export.h>

/// Reads a decimal integer: white space, an optional sign, digits.
/// @param text   the text, ended by any character that is not a digit
/// @param value  out: the integer modulo 2^32, as a 32-bit signed number whatever the width of `long`; there is no
///               overflow detection: "4294967297" is 1 and "2147483648" is -2147483648
/// @return number of characters read; 0, with value 0, when no digit follows the white space and the sign
CADGEOM_API int ParseLongFastA(const char* text, long& value);

/// Wide form of ParseLongFastA; the count is in wide characters.
CADGEOM_API int ParseLongFastT(const wchar_t* text, long& value);

/// Reads a decimal floating-point number: white space, an optional sign, digits, an optional point with digits, an
/// optional exponent. At least one digit must stand before or after the point. The exponent letter is `E`, `e`, `D` or
/// `d`, followed by an optional sign and digits; without digits it is read all the same and changes nothing. There are
/// no infinities, no NaN and no hexadecimal forms, and the decimal separator is always a point.
/// @param text   the text, ended by any character that cannot continue the number
/// @param value  out: the number; "-0" is -0.0. Too large a number is an infinity, too small a one is 0; the exponent
///               wraps at 32 bits, and "0e400" is NaN, being 0 times infinity
/// @return number of characters read; 0, with value 0, when there is no digit before the exponent
/// Accuracy: the result is not correctly rounded. Up to nine integer digits are exact, further ones cost one rounded
/// multiplication and addition each; each nine or ten fraction digits cost one rounded product with a power of ten and
/// one addition; an exponent costs one more product. Numbers printed with up to 17 digits are mostly exact or off by
/// one unit in the last place; near the ends of the range a power of ten may already be subnormal, 0 or infinite.
CADGEOM_API int ParseFloatingPointFastA(const char* text, double& value);

/// Wide form of ParseFloatingPointFastA; the count is in wide characters.
CADGEOM_API int ParseFloatingPointFastT(const wchar_t* text, double& value);
