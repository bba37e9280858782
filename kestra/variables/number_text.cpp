#include <kestra/variables/number_text.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

namespace kestra {
namespace {

constexpr std::string_view decimalDigits = "0123456789";
constexpr std::string_view hexadecimalDigits = "0123456789abcdefABCDEF";

bool contains(std::string_view set, char character) {
    return set.find(character) != std::string_view::npos;
}

bool beginsHexadecimal(std::string_view text) {
    if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) return false;
    const std::size_t digit = text[2] == '.' ? 3 : 2;
    return digit < text.size() && contains(hexadecimalDigits, text[digit]);
}

/// Exponent written behind 'e' or 'p'; one that no `int` holds counts as the greatest.
long long exponentOf(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    int exponent = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) exponent = std::numeric_limits<int>::max();
    return negative ? -static_cast<long long>(exponent) : exponent;
}

/// Whether a number that no double holds is too large; otherwise it is too small. The place of its first
/// significant digit decides, counted from the point.
bool isTooLarge(std::string_view number, bool hexadecimal) {
    const std::string_view digits = hexadecimal ? hexadecimalDigits : decimalDigits;
    long long place = 0;
    bool behindPoint = false;
    bool significant = false;
    std::size_t i = 0;
    for (; i < number.size() && (number[i] == '.' || contains(digits, number[i])); ++i) {
        if (number[i] == '.') {
            behindPoint = true;
            continue;
        }
        significant = significant || number[i] != '0';
        if (significant && !behindPoint) ++place;
        if (!significant && behindPoint) --place;
    }
    if (hexadecimal) place *= 4;
    return place + exponentOf(number.substr(std::min(i + 1, number.size()))) > 0;
}

std::optional<double> magnitude(std::string_view number) {
    const bool hexadecimal = beginsHexadecimal(number);
    if (hexadecimal) number.remove_prefix(2);
    double value = 0.0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value,
                                      hexadecimal ? std::chars_format::hex : std::chars_format::general);
    if (read.ec == std::errc::invalid_argument) return std::nullopt;
    if (read.ec == std::errc()) return value;
    const std::string_view used(number.data(), static_cast<std::size_t>(read.ptr - number.data()));
    return isTooLarge(used, hexadecimal) ? std::numeric_limits<double>::infinity() : 0.0;
}

}  // namespace

std::string numberToText(double number) {
    char text[32];
    char* const end = std::to_chars(text, text + sizeof text, number, std::chars_format::general, 6).ptr;
    return std::string(text, end);
}

double textToNumber(const char* text) {
    if (text == nullptr) return 0.0;
    text += std::strspn(text, " \t\n\v\f\r");
    const bool negative = *text == '-';
    if (negative || *text == '+') ++text;
    if (*text == '-') return 0.0;
    const std::optional<double> value = magnitude(text);
    return value && negative ? -*value : value.value_or(0.0);
}

}  // namespace kestra
