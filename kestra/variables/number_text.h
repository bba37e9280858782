#pragma once
#include <string>

#include <platform/export.h>

/// Numbers and their texts as the C library's `printf("%g")` and `atof` give them in the "C" locale. The
/// process's locale plays no part: the decimal separator is always a point, on both builds.
namespace kestra {

/// "%g" of the number: six significant digits without trailing zeros, an exponent of at least two digits
/// below 1e-4 and from 1e6 on; "inf" and "nan", with their sign.
KESTRA_API std::string numberToText(double number);

/// The number that the text begins with, behind blanks (space, tab, LF, VT, FF, CR): decimal, "0x"
/// hexadecimal, "inf", "infinity" or "nan" in any case, rounded to the nearest double. What follows it is
/// ignored. A number too large gives a signed infinity, one too small a signed 0. A null text, or one that
/// begins with no number, gives 0.
KESTRA_API double textToNumber(const char* text);

}  // namespace kestra
