#pragma once
#include <string>
#include <string_view>

#include <platform/arrays.h>
#include <platform/export.h>

namespace kestra {

/// What a ";" inside a value is stored as.
constexpr char storedSemicolon = '\x02';

/// A variable's line as the array forms of `Cchantier::Setvar` write it: ";" inside values stored as the byte
/// 0x02, and the line broken by "+" and a line end near 80 characters, between values only.
class WrittenLine {
  public:
    /// At most 19 characters of the section and 254 of the name count.
    WrittenLine(std::string_view section, std::string_view name);
    void add(std::string_view value);

    /// The whole line, its line end included.
    std::string text() const { return m_section + ';' + m_name + ';' + m_values + "\r\n"; }
    const std::string& section() const { return m_section; }
    const std::string& name() const { return m_name; }
    const std::string& values() const { return m_values; }

  private:
    std::string m_section;
    std::string m_name;
    std::string m_values;
    bool m_hasValues = false;
    std::size_t m_length;  ///< of the physical line so far, separators between values not counted
};

/// Whether the array forms of `Cchantier::Setvar` write these fields so that they read back as they are, the
/// section and the name in upper case. False for line ends, NUL and 0x02 in them, for a value that ends the
/// line with a "+" or with blanks, for one of thousands of characters.
KESTRA_API bool readsBack(const CStringArray& fields);

}  // namespace kestra
