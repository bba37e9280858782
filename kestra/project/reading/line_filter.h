#pragma once
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <kestra/project/reading/line_reader.h>
#include <platform/arrays.h>

namespace kestra {

/// The first bytes of a text (eight at most), compared in one step, roughly whatever the case of its letters:
/// what starts with the text always agrees, what agrees need not.
class StartKey {
  public:
    static constexpr std::size_t size = sizeof(std::uint64_t);
    StartKey() = default;
    explicit StartKey(std::string_view upper);
    /// `size` bytes must be readable at `text`.
    bool agrees(const char* text) const {
        std::uint64_t word;
        std::memcpy(&word, text, size);
        return ((word ^ m_bits) & m_mask) == 0;
    }

  private:
    std::uint64_t m_bits = 0;
    std::uint64_t m_mask = 0;
};

/// Which logical lines of a project file are wanted. Lines are looked at where they stand.
class LineFilter {
  public:
    /// Lines of `section` whose name matches `name` ("*", "?"); each text counts for 1,000 characters.
    LineFilter(std::string_view section, std::string_view name);
    /// Lines of any section ("$..."), but for deleted ones ("$....").
    static LineFilter everyVariable();

    bool matches(std::string_view line) const;
    /// False for a line that neither matches nor is an include line, by its first bytes, of which
    /// `LineReader::longestPhysical` must be readable.
    bool mayMatter(const char* start) const {
        return m_includeKey.agrees(start) ||
               (m_sectionKey.agrees(start) && m_nameKey.agrees(start + m_nameAt));
    }

  private:
    LineFilter();
    bool nameMatches(std::string_view rest) const;

    std::string m_section;  ///< upper case; empty: every variable
    std::string m_name;     ///< upper case
    bool m_everyVariable = false;
    bool m_hasWildcard = false;
    bool m_nothing = false;  ///< no line can match
    mutable std::string m_candidate;
    StartKey m_includeKey;
    StartKey m_sectionKey;
    StartKey m_nameKey;  ///< of what stands before the first wildcard
    std::size_t m_nameAt = 0;
};

/// The field `index` of a line; false when the line has no such field.
bool fieldOf(std::string_view line, int index, std::string_view& field);

/// Reads on to the next line that matches; adds the name of each include line passed over to `includes`.
bool findLine(LineReader& reader, const LineFilter& filter, std::string_view& line, CStringArray& includes);

}  // namespace kestra
