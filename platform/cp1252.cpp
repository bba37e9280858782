#include <platform/cp1252.h>

#include <algorithm>
#include <cstdint>

namespace platform {
namespace {

/// Code points of 0x80..0x9F (Unicode consortium, CP1252.TXT); the five undefined codes stand for themselves.
constexpr std::array<std::uint16_t, 32> highControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::array<unsigned char, 256> identityTable() {
    std::array<unsigned char, 256> table{};
    for (unsigned code = 0; code < 256; ++code) table[code] = static_cast<unsigned char>(code);
    return table;
}

/// Calls `pair(lower, upper)` for each letter that has both cases in the code page.
template <class Pair>
constexpr void forEachLetter(Pair pair) {
    for (unsigned code = 'a'; code <= 'z'; ++code) pair(code, code - 32);
    for (unsigned code = 0xE0; code <= 0xFE; ++code)
        if (code != 0xF7) pair(code, code - 32);
    pair(0x9Au, 0x8Au);
    pair(0x9Cu, 0x8Cu);
    pair(0x9Eu, 0x8Eu);
    pair(0xFFu, 0x9Fu);
}

constexpr std::array<unsigned char, 256> makeUpper() {
    auto table = identityTable();
    forEachLetter([&](unsigned lower, unsigned upper) { table[lower] = static_cast<unsigned char>(upper); });
    return table;
}

constexpr std::array<unsigned char, 256> makeLower() {
    auto table = identityTable();
    forEachLetter([&](unsigned lower, unsigned upper) { table[upper] = static_cast<unsigned char>(lower); });
    return table;
}

void appendUtf8(std::string& out, unsigned point) {
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0 | (point >> 6));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (point >> 12));
        out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    }
}

/// Length of the well-formed UTF-8 sequence at the start of `text` and its code point; length 0 when
/// malformed, longer than its code point needs included.
std::pair<std::size_t, unsigned> decodeUtf8(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return {1, lead};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || text.size() < length) return {0, 0};
    unsigned point = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80) return {0, 0};
        point = (point << 6) | (byte & 0x3Fu);
    }
    constexpr unsigned smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (point < smallest[length]) return {0, 0};
    return {length, point};
}

char codeOf(unsigned point) {
    if (point < 0x80 || (point >= 0xA0 && point <= 0xFF)) return static_cast<char>(point);
    const auto* const found = std::find(highControls.begin(), highControls.end(), point);
    return found == highControls.end() ? '?' : static_cast<char>(0x80 + (found - highControls.begin()));
}

/// Length of the ASCII text at the start; most texts are no more than that.
std::size_t asciiLength(std::string_view text) {
    const auto end =
        std::find_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    return static_cast<std::size_t>(end - text.begin());
}

}  // namespace

constinit const std::array<unsigned char, 256> upperCase1252 = makeUpper();
constinit const std::array<unsigned char, 256> lowerCase1252 = makeLower();

std::string utf8From1252(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t plain = asciiLength(text);
        out.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty()) break;
        const auto code = static_cast<unsigned char>(text.front());
        appendUtf8(out, code < 0xA0 ? highControls[code - 0x80u] : code);
        text.remove_prefix(1);
    }
    return out;
}

std::string cp1252FromUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t plain = asciiLength(text);
        out.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty()) break;
        const auto [length, point] = decodeUtf8(text);
        out += length == 0 ? '?' : codeOf(point);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return out;
}

int compareNoCase1252(std::string_view first, std::string_view second) {
    const std::size_t common = std::min(first.size(), second.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = upperCase1252[static_cast<unsigned char>(first[i])] -
                               upperCase1252[static_cast<unsigned char>(second[i])];
        if (difference != 0) return difference;
    }
    if (first.size() == second.size()) return 0;
    return first.size() < second.size() ? -1 : 1;
}

std::string upperCased1252(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(upperCase1252[static_cast<unsigned char>(c)]);
    return out;
}

}  // namespace platform
