#pragma once
#include <string_view>

#include <platform/export.h>

/// Decimal numbers in text, whatever the process's locale is. Neither function allocates or throws.
namespace geodesy {

/// Reads a number that makes up all of `text` but for blanks (space, tab, no-break space) around it: sign,
/// digits, one decimal point or comma, exponent. False, with `value` untouched, for anything else: empty
/// text, text behind the number, "inf", "nan", hexadecimal digits, a number too large for a double.
DORSEL_API bool readDecimal(std::string_view text, double& value);

/// Room that `printDecimal` needs at most.
constexpr int decimalRoom = 352;

/// Writes a finite number rounded to `decimals` (0 to 15) digits behind the decimal `mark` and returns the
/// end of what was written, which has no NUL. A number that rounds to zero is written without a sign.
DORSEL_API char* printDecimal(char* out, double value, int decimals, char mark = '.');

}  // namespace geodesy
