#include <dorsel/geodesy/decimal.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace geodesy {

namespace {

/// Powers of ten that a double holds exactly.
constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int mostDigits = 18;  // that a 64-bit integer surely holds
constexpr std::uint64_t exactIntegers = std::uint64_t{1} << std::numeric_limits<double>::digits;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\xA0' || c == '\r';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// The long way: exponents and more digits than an integer holds.
bool readAnyDecimal(std::string_view text, double& value) {
    char copy[512] = {};
    if (text.size() > sizeof copy) return false;
    bool hasDigit = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (!isDigit(c) && std::strchr("+-.,eE", c) == nullptr) return false;
        hasDigit = hasDigit || isDigit(c);
        copy[i] = c == ',' ? '.' : c;
    }
    double read = 0;
    const char* end = copy + text.size();
    const auto result = std::from_chars(copy, end, read);
    if (!hasDigit || result.ec != std::errc() || result.ptr != end) return false;
    value = read;
    return true;
}

}  // namespace

bool readDecimal(std::string_view text, double& value) {
    text = trimmed(text);
    if (text.empty()) return false;
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    if (text.empty() || text.front() == '-' || text.front() == '+') return false;

    std::uint64_t digits = 0;
    int count = 0, decimals = -1;
    for (const char c : text) {
        if (isDigit(c)) {
            digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
            ++count;
            if (decimals >= 0) ++decimals;
        } else if ((c == '.' || c == ',') && decimals < 0) {
            decimals = 0;
        } else {
            count = mostDigits + 1;
        }
        if (count > mostDigits) break;
    }
    double read = 0;
    // An integer and a power of ten that are both exact give the nearest double in one division.
    if (count > 0 && count <= mostDigits && digits < exactIntegers)
        read = static_cast<double>(digits) / exactPowers[decimals > 0 ? decimals : 0];
    else if (!readAnyDecimal(text, read))
        return false;
    value = negative ? -read : read;
    return true;
}

char* printDecimal(char* out, double value, int decimals, char mark) {
    const double scaled = std::fabs(value) * exactPowers[decimals];
    // Up to here the product is within a sixteenth of the true one, and rounds as that does.
    if (!(scaled < static_cast<double>(exactIntegers) / 16)) {
        const auto result = std::to_chars(out, out + decimalRoom, value, std::chars_format::fixed, decimals);
        if (char* point =
                static_cast<char*>(std::memchr(out, '.', static_cast<std::size_t>(result.ptr - out))))
            *point = mark;
        return result.ptr;
    }
    constexpr double half = 0.5;
    const auto rounded = static_cast<std::uint64_t>(scaled + half);
    const auto unit = static_cast<std::uint64_t>(exactPowers[decimals]);
    if (rounded != 0 && value < 0) *out++ = '-';
    out = std::to_chars(out, out + decimalRoom, rounded / unit).ptr;
    if (decimals == 0) return out;
    *out = mark;
    std::uint64_t fraction = rounded % unit;
    for (int place = decimals; place > 0; --place, fraction /= 10)
        out[place] = static_cast<char>('0' + fraction % 10);
    return out + decimals + 1;
}

}  // namespace geodesy
