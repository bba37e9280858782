#include "services_file.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include <platform/cp1252.h>

namespace kestra {
namespace {

constexpr std::size_t longestLine = 1998;
/// What an addition to a folder can at most be: nothing longer fits a path.
constexpr std::size_t longestAddition = 260;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Kept: every byte from 0x80 on ends a line as control characters do; services files are written that way.
bool endsLine(char c) {
    return static_cast<signed char>(c) <= 13;
}

/// Reads the lines of a services file, cut where they end.
class ServiceLines {
  public:
    explicit ServiceLines(platform::Stream& stream) : m_stream(stream) { m_stream.seek(0); }
    ~ServiceLines() { m_stream.skip(consumed()); }

    /// The physical line, its line end included, where it stands in the buffer; `longestLine` at most.
    bool next(std::string_view& line) {
        for (;;) {
            const std::size_t most = std::min(static_cast<std::size_t>(m_end - m_next), longestLine);
            const void* lineFeed = most > 0 ? std::memchr(m_next, '\n', most) : nullptr;
            if (lineFeed != nullptr || most == longestLine || (m_isLast && most > 0)) {
                const char* const end =
                    lineFeed != nullptr ? static_cast<const char*>(lineFeed) + 1 : m_next + most;
                line = {m_next, end};
                m_next = end;
                return true;
            }
            if (m_isLast) return false;
            refill();
        }
    }

  private:
    std::size_t consumed() const { return static_cast<std::size_t>(m_next - m_begin); }
    void refill() {
        m_stream.skip(consumed());
        const std::string_view bytes = m_stream.available(platform::Stream::bufferSize);
        m_isLast = bytes.size() < platform::Stream::bufferSize;
        m_begin = m_next = bytes.data();
        m_end = m_begin + bytes.size();
    }

    platform::Stream& m_stream;
    const char* m_begin = nullptr;
    const char* m_next = nullptr;
    const char* m_end = nullptr;
    bool m_isLast = false;
};

/// Order of the field that a line starts with, upper-cased, and a text; `length` receives that of the field.
int compareField(std::string_view line, std::string_view text, std::size_t& length) {
    int order = 0;
    for (length = 0; length < line.size() && line[length] != ';' && !endsLine(line[length]); ++length) {
        if (order != 0) continue;
        const int letter = platform::upperCase1252[static_cast<unsigned char>(line[length])];
        order = length < text.size() ? letter - static_cast<unsigned char>(text[length]) : 1;
    }
    return order == 0 && length < text.size() ? -1 : order;
}

/// Moves behind the field's ";"; false when the line ends with the field.
bool skipField(std::string_view& line, std::size_t length) {
    if (length == line.size() || line[length] != ';') return false;
    line.remove_prefix(length + 1);
    return true;
}

std::string_view withoutLeadingBlanks(std::string_view text) {
    while (!text.empty() && (text[0] == ' ' || text[0] == '\t')) text.remove_prefix(1);
    return text;
}

/// A whole number at the start of a text, behind blanks and with a sign, taken off it; 0 when there is none.
long takeNumber(std::string_view& text) {
    text = withoutLeadingBlanks(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    long number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec == std::errc::result_out_of_range) number = text[0] == '-' ? 0 : longestAddition;
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    return number;
}

/// The characters of the code that "s(a,b)" names; the pattern stands behind "s(" and is moved behind it.
std::string_view takePart(std::string_view& pattern, std::string_view code) {
    const long first = std::max(takeNumber(pattern), 1L);
    pattern.remove_prefix(std::min<std::size_t>(pattern.size(), 1));
    const long count = std::max(takeNumber(pattern), 0L);
    pattern.remove_prefix(std::min<std::size_t>(pattern.size(), 1));
    const auto start = std::min(static_cast<std::size_t>(first - 1), code.size());
    return code.substr(start, static_cast<std::size_t>(count));
}

std::string expandedPattern(std::string_view pattern, std::string_view code) {
    std::string out;
    while (!pattern.empty() && out.size() <= longestAddition) {
        if (pattern == "x") {
            out += code;
            break;
        }
        if (pattern.starts_with("s(")) {
            pattern.remove_prefix(2);
            out += takePart(pattern, code);
            continue;
        }
        out += pattern[0];
        pattern.remove_prefix(1);
    }
    return out;
}

/// The fields behind TO: FOLDER and the rules.
bool answerOf(std::string_view line, std::string_view code, std::string& folder) {
    const auto* const end = std::find_if(line.begin(), line.end(), endsLine);
    line = line.substr(0, static_cast<std::size_t>(end - line.begin()));
    std::size_t length = std::min(line.find(';'), line.size());
    const std::string_view place = line.substr(0, length);
    std::string addition;
    bool applies = !skipField(line, length);
    for (int rules = 2; !applies && rules > 0; --rules) {
        length = std::min(line.find(';'), line.size());
        applies = applyServiceRule(withoutLeadingBlanks(line.substr(0, length)), code, addition);
        if (!skipField(line, length)) break;
    }
    if (applies) folder = std::string(place) + addition;
    return applies;
}

}  // namespace

std::string normalizedServiceCode(std::string_view code) {
    std::string normal = platform::upperCased1252(code);
    const std::size_t dash = normal.find('-', 5);
    if (dash < 8) normal.resize(dash);
    if (normal.size() > 1 && normal[0] == 'A' && isDigit(normal[1])) normal.erase(0, 1);
    return normal;
}

bool applyServiceRule(std::string_view rule, std::string_view code, std::string& addition) {
    std::size_t digits = 0;
    while (digits < rule.size() && isDigit(rule[digits])) ++digits;
    if (digits > 0 && digits < rule.size() && rule[digits] == '>') {
        if (code.size() < static_cast<std::size_t>(takeNumber(rule))) return false;
        rule.remove_prefix(1);
        addition = expandedPattern(rule, code);
    } else if (rule.starts_with('x')) {
        addition = code;
    } else if (rule.starts_with('X')) {
        addition = "ACAD" + std::string(code);
    } else {
        addition = expandedPattern(rule, code);
    }
    return true;
}

bool findServiceFolder(platform::Stream& services, const std::string& code, std::string& folder) {
    std::string upper = code;
    if (upper.ends_with('*')) upper.back() = '\x7F';
    ServiceLines lines(services);
    std::string_view line;
    while (lines.next(line)) {
        std::size_t length = 0;
        if (compareField(line, upper, length) > 0 || !skipField(line, length)) continue;
        if (compareField(line, code, length) < 0 || !skipField(line, length)) continue;
        if (answerOf(line, code, folder)) return true;
    }
    return false;
}

}  // namespace kestra
