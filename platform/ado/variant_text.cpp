#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>

#include <platform/ado/variant_text.h>
#include <platform/cp1252.h>
#include <platform/ole_date_time.h>

namespace ado20 {

namespace {

using Wide = unsigned __int128;

constexpr int largestScale = 28;
constexpr double millisecondsPerDay = 86400000;
constexpr std::string_view blanks = " \t\r\n\xA0";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Reads what stands at the front of a text and shortens it.
struct Scanner {
    std::string_view rest;

    bool take(char wanted) {
        if (rest.empty() || rest.front() != wanted) return false;
        rest.remove_prefix(1);
        return true;
    }
    char takeOneOf(std::string_view set) {
        if (rest.empty() || set.find(rest.front()) == std::string_view::npos) return '\0';
        const char found = rest.front();
        rest.remove_prefix(1);
        return found;
    }
    std::string_view digits(std::size_t most = std::string_view::npos) {
        std::size_t count = 0;
        while (count < rest.size() && count < most && isDigit(rest[count])) ++count;
        const std::string_view found = rest.substr(0, count);
        rest.remove_prefix(count);
        return found;
    }
};

int numberOf(std::string_view digits) {
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// What from_chars should not see: signs of its own, hexadecimal numbers, infinities.
bool startsLikeNumber(std::string_view text) {
    return !text.empty() &&
           (isDigit(text[0]) || ((text[0] == '.' || text[0] == ',') && text.size() > 1 && isDigit(text[1])));
}

struct CalendarDay {
    int year, month, day;
};

int fullYear(std::string_view digits) {
    const int year = numberOf(digits);
    if (digits.size() > 2) return year;
    return year + (year < 30 ? 2000 : 1900);
}

/// "dd/mm/yyyy", "yyyy-mm-dd" and their like.
std::optional<CalendarDay> scanDay(Scanner& scan) {
    const std::string_view first = scan.digits(4);
    const char separator = scan.takeOneOf("/-.");
    const std::string_view second = scan.digits(2);
    if (first.empty() || separator == '\0' || second.empty() || !scan.take(separator)) return {};
    const std::string_view third = scan.digits(4);
    if (third.empty()) return {};
    CalendarDay day = first.size() > 2 ? CalendarDay{numberOf(first), numberOf(second), numberOf(third)}
                                       : CalendarDay{fullYear(third), numberOf(second), numberOf(first)};
    if (day.month > 12 && day.day <= 12) std::swap(day.month, day.day);
    return day;
}

/// Milliseconds of "h:mm", "h:mm:ss", "h:mm:ss.fff".
std::optional<double> scanTime(Scanner& scan) {
    const std::string_view hour = scan.digits(2);
    if (hour.empty() || !scan.take(':')) return {};
    const std::string_view minute = scan.digits(2);
    if (minute.empty()) return {};
    double seconds = 0;
    if (scan.take(':')) {
        const std::string_view whole = scan.digits(2);
        if (whole.empty()) return {};
        seconds = numberOf(whole);
        if (scan.take('.')) {
            const std::string_view fraction = scan.digits();
            seconds += numberOf(fraction.substr(0, 6)) /
                       std::pow(10.0, static_cast<double>(std::min<std::size_t>(fraction.size(), 6)));
        }
    }
    if (numberOf(hour) > 23 || numberOf(minute) > 59 || seconds >= 60) return {};
    return (numberOf(hour) * 3600 + numberOf(minute) * 60 + seconds) * 1000;
}

struct DayAndTime {
    platform::LocalTime day;
    int milliseconds;  ///< since midnight
};

DayAndTime splitSerial(double serial) {
    double day = std::trunc(serial);
    double milliseconds = std::nearbyint(std::fabs(serial - day) * millisecondsPerDay);
    if (milliseconds >= millisecondsPerDay) {
        milliseconds = 0;
        ++day;
    }
    return {platform::dateOfSerial(day), static_cast<int>(milliseconds)};
}

/// Multiplies and adds; false when 96 bits are not enough.
bool appendDigit(Wide& number, int digit) {
    const Wide next = number * 10 + static_cast<unsigned>(digit);
    if (next >> 96 != 0) return false;
    number = next;
    return true;
}

struct DecimalDigits {
    Wide number = 0;
    int scale = 0;
    bool overflow = false;

    /// Digits behind the point beyond what fits are dropped.
    void add(std::string_view digits, bool behindPoint) {
        for (const char digit : digits) {
            if (behindPoint && scale == largestScale) return;
            if (!appendDigit(number, digit - '0')) {
                overflow = overflow || !behindPoint;
                return;
            }
            if (behindPoint) ++scale;
        }
    }
    void shift(int exponent) {
        for (; exponent > 0 && scale > 0; --exponent) --scale;
        for (; exponent > 0 && number != 0 && !overflow; --exponent) overflow = !appendDigit(number, 0);
        for (; exponent < 0 && scale < largestScale; ++exponent) ++scale;
        for (; exponent < 0 && number != 0; ++exponent) number /= 10;
    }
};

Wide wideOf(const Decimal& decimal) {
    return (static_cast<Wide>(decimal.high) << 64) | decimal.low;
}

}  // namespace

bool parseInteger(std::string_view text, std::int64_t& integer) {
    text = trimmed(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.empty()) return false;
    integer = value;
    return true;
}

HResult parseReal(std::string_view text, double& real) {
    text = trimmed(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    if (!startsLikeNumber(text)) return hrTypeMismatch;
    std::string pointed;
    if (const auto comma = text.find(','); comma != std::string_view::npos) {
        pointed = text;
        pointed[comma] = '.';
        text = pointed;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end != text.data() + text.size()) return hrTypeMismatch;
    if (error == std::errc::result_out_of_range) {
        // Too small a number is zero.
        if (text.find("e-") == std::string_view::npos && text.find("E-") == std::string_view::npos &&
            text[0] != '0' && text[0] != '.')
            return hrOverflow;
        value = 0;
    }
    real = negative ? -value : value;
    return hrOk;
}

HResult parseDecimal(std::string_view text, Decimal& decimal) {
    Scanner scan{trimmed(text)};
    const bool negative = scan.takeOneOf("+-") == '-';
    if (!startsLikeNumber(scan.rest)) return hrTypeMismatch;
    DecimalDigits digits;
    digits.add(scan.digits(), false);
    if (scan.takeOneOf(".,") != '\0') digits.add(scan.digits(), true);
    if (scan.takeOneOf("eE") != '\0') {
        const bool down = scan.takeOneOf("+-") == '-';
        const std::string_view exponent = scan.digits();
        if (exponent.empty()) return hrTypeMismatch;
        const int size = exponent.size() > 4 ? 9999 : numberOf(exponent);
        digits.shift(down ? -size : size);
    }
    if (!scan.rest.empty()) return hrTypeMismatch;
    if (digits.overflow) return hrOverflow;
    decimal.low = static_cast<std::uint64_t>(digits.number);
    decimal.high = static_cast<std::uint32_t>(digits.number >> 64);
    decimal.scale = static_cast<std::uint8_t>(digits.scale);
    decimal.negative = negative && digits.number != 0;
    return hrOk;
}

bool parseBoolean(std::string_view text, bool& truth) {
    text = trimmed(text);
    for (const char* word : {"True", "Vrai"})
        if (platform::equalNoCase1252(text, word)) return truth = true;
    for (const char* word : {"False", "Faux"})
        if (platform::equalNoCase1252(text, word)) return truth = false, true;
    return false;
}

bool parseDate(std::string_view text, double& serial) {
    Scanner scan{trimmed(text)};
    if (const std::optional<double> time = scanTime(scan); time && scan.rest.empty())
        return serial = *time / millisecondsPerDay, true;
    scan.rest = trimmed(text);
    const std::optional<CalendarDay> day = scanDay(scan);
    if (!day) return false;
    const double date = platform::serialDate(day->year, day->month, day->day);
    if (std::isnan(date)) return false;
    if (scan.rest.empty()) return serial = date, true;
    if (scan.takeOneOf(" T") == '\0') return false;
    scan.rest = trimmed(scan.rest);
    const std::optional<double> time = scanTime(scan);
    scan.take('Z');
    if (!time || !scan.rest.empty()) return false;
    const double fraction = *time / millisecondsPerDay;
    serial = date < 0 ? date - fraction : date + fraction;
    return true;
}

bool isSerialDate(double serial) {
    return platform::dateOfSerial(serial).valid;
}

void integerText(std::int64_t integer, std::string& text) {
    char buffer[24];
    text.assign(buffer, std::to_chars(buffer, buffer + sizeof buffer, integer).ptr);
}

void realText(double real, int digits, std::string& text) {
    char buffer[40];
    char* const end =
        std::to_chars(buffer, buffer + sizeof buffer, real, std::chars_format::general, digits).ptr;
    std::replace(buffer, end, 'e', 'E');
    text.assign(buffer, end);
}

void decimalText(const Decimal& decimal, std::string& text) {
    std::string digits;
    for (Wide number = wideOf(decimal); number != 0; number /= 10)
        digits += static_cast<char>('0' + static_cast<int>(number % 10));
    if (digits.size() <= decimal.scale) digits.append(decimal.scale - digits.size() + 1u, '0');
    std::reverse(digits.begin(), digits.end());
    if (decimal.scale != 0) {
        digits.insert(digits.size() - decimal.scale, 1, '.');
        digits.erase(digits.find_last_not_of('0') + 1);
        if (digits.back() == '.') digits.pop_back();
    }
    if (decimal.negative) digits.insert(0, 1, '-');
    text = std::move(digits);
}

HResult dateText(double serial, std::string& text) {
    const platform::LocalTime time = platform::dateOfSerial(serial);
    if (!time.valid) return hrOverflow;
    char day[32] = "", hour[16] = "";
    const bool hasDay = std::fabs(serial) >= 1 || time.day != 30 || time.year != 1899;
    const bool hasTime = time.hour != 0 || time.minute != 0 || time.second != 0;
    if (hasDay) std::snprintf(day, sizeof day, "%02d/%02d/%04d", time.day, time.month, time.year);
    if (hasTime || !hasDay)
        std::snprintf(hour, sizeof hour, "%02d:%02d:%02d", time.hour, time.minute, time.second);
    text = day;
    if (hasDay && hasTime) text += ' ';
    text += hour;
    return hrOk;
}

bool isoDateText(double serial, std::string& text) {
    const DayAndTime split = splitSerial(serial);
    if (!split.day.valid) return false;
    const int seconds = split.milliseconds / 1000;
    char buffer[64];
    int size = std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", split.day.year,
                             split.day.month, split.day.day, seconds / 3600, seconds / 60 % 60, seconds % 60);
    if (split.milliseconds % 1000 != 0)
        size += std::snprintf(buffer + size, sizeof buffer - static_cast<std::size_t>(size), ".%03d",
                              split.milliseconds % 1000);
    text.assign(buffer, static_cast<std::size_t>(size));
    return true;
}

double realOfDecimal(const Decimal& decimal) {
    const auto number = static_cast<long double>(wideOf(decimal));
    const auto size = static_cast<double>(number / std::pow(10.0L, static_cast<long double>(decimal.scale)));
    return decimal.negative ? -size : size;
}

}  // namespace ado20
