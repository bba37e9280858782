#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include <platform/ado/variant.h>

/// The texts of numbers and dates, written and read; the rules stand in variant.h.
namespace ado20 {

/// False for a text that is not an integer of 64 bits: the number may still be one with a fraction.
bool parseInteger(std::string_view text, std::int64_t& integer);
HResult parseReal(std::string_view text, double& real);
HResult parseDecimal(std::string_view text, Decimal& decimal);
bool parseBoolean(std::string_view text, bool& truth);
/// False for a text that is no date; a time alone is of day 0.
bool parseDate(std::string_view text, double& serial);
bool isSerialDate(double serial);

void integerText(std::int64_t integer, std::string& text);
void realText(double real, int digits, std::string& text);
void decimalText(const Decimal& decimal, std::string& text);
HResult dateText(double serial, std::string& text);
/// "yyyy-mm-dd hh:mm:ss", with ".fff" where the date has thousandths of a second; false outside the range.
bool isoDateText(double serial, std::string& text);

double realOfDecimal(const Decimal& decimal);

}  // namespace ado20
