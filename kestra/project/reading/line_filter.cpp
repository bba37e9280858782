#include "line_filter.h"

#include <algorithm>
#include <cstring>

#include <dorsel/strings.h>
#include <platform/cp1252.h>

namespace kestra {
namespace {

constexpr std::size_t longestName = 1000;
static_assert(longestName + 1 + StartKey::size <= LineReader::longestPhysical);
constexpr std::string_view includeTag = "CHTIVAR";

/// Whether the text starts with `upper` (already in upper case), whatever the case of its letters.
bool startsWithNoCase(std::string_view text, std::string_view upper) {
    if (text.size() < upper.size()) return false;
    for (std::size_t i = 0; i < upper.size(); ++i)
        if (platform::upperCase1252[static_cast<unsigned char>(text[i])] !=
            static_cast<unsigned char>(upper[i]))
            return false;
    return true;
}

/// Whether the field that starts the text is `upper`, and another one follows.
bool startsWithField(std::string_view text, std::string_view upper) {
    return text.size() > upper.size() && text[upper.size()] == ';' && startsWithNoCase(text, upper);
}

}  // namespace

StartKey::StartKey(std::string_view upper) {
    char bits[size] = {};
    unsigned char mask[size] = {};
    for (std::size_t i = 0; i < std::min(upper.size(), size); ++i) {
        bits[i] = upper[i];
        const auto code = static_cast<unsigned char>(upper[i]);
        // The bits in which the two cases of the letter differ do not count.
        mask[i] = static_cast<unsigned char>(~(code ^ platform::lowerCase1252[code]));
    }
    std::memcpy(&m_bits, bits, size);
    std::memcpy(&m_mask, mask, size);
}

LineFilter::LineFilter() : m_everyVariable(true), m_includeKey(includeTag), m_sectionKey("$") {}

LineFilter::LineFilter(std::string_view section, std::string_view name)
    : m_section(platform::upperCased1252(section.substr(0, longestName))),
      m_name(platform::upperCased1252(name.substr(0, longestName))),
      m_hasWildcard(m_name.find_first_of("*?") != std::string::npos),
      m_nothing(m_section.find(';') != std::string::npos || m_name.find(';') != std::string::npos ||
                m_section == includeTag),
      m_includeKey(includeTag),
      m_sectionKey(m_section + ';'),
      m_nameKey(m_name.substr(0, m_name.find_first_of("*?"))),
      m_nameAt(m_section.size() + 1) {}

LineFilter LineFilter::everyVariable() {
    return LineFilter();
}

bool LineFilter::matches(std::string_view line) const {
    if (m_everyVariable)
        return line.size() > 1 && line[0] == '$' && line[1] != '.' && line.find(';') != line.npos;
    return !m_nothing && startsWithField(line, m_section) && nameMatches(line.substr(m_section.size() + 1));
}

bool LineFilter::nameMatches(std::string_view rest) const {
    if (!m_hasWildcard)
        return (rest.size() == m_name.size() && startsWithNoCase(rest, m_name)) ||
               startsWithField(rest, m_name);
    m_candidate.assign(rest.substr(0, rest.find(';')));
    return STR::Teste_ASCII(STR::Majuscules(m_candidate.data()), m_name.c_str(), nullptr) != 0;
}

bool fieldOf(std::string_view line, int index, std::string_view& field) {
    for (; index > 0; --index) {
        const std::size_t end = line.find(';');
        if (end == line.npos) return false;
        line.remove_prefix(end + 1);
    }
    field = line.substr(0, line.find(';'));
    return true;
}

bool findLine(LineReader& reader, const LineFilter& filter, std::string_view& line, CStringArray& includes) {
    const auto mayMatter = [&filter](const char* start) { return filter.mayMatter(start); };
    for (;;) {
        reader.passOver(mayMatter);
        if (reader.next(line) == 0) return false;
        std::string_view include;
        if (startsWithField(line, includeTag) && fieldOf(line, 1, include))
            includes.Add(CString(include));
        else if (filter.matches(line))
            return true;
    }
}

}  // namespace kestra
