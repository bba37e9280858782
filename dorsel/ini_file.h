#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace dorsel {

/// The text of a settings file, as `dorsel/settings.h` describes the format; internal. It holds no copy: the
/// text must outlive it, and so the views that it gives. Each operation reads the text once, in time
/// proportional to its length.
class IniFile {
  public:
    explicit IniFile(std::string_view text) : m_text(text) {}

    /// Values of a key, in file order.
    std::vector<std::string_view> values(std::string_view section, std::string_view key) const;
    /// Keys of a section, each once, as first spelled, in file order.
    std::vector<std::string_view> keys(std::string_view section) const;

    /// True when a section, a key and a value can be written so that `values` gives the value back: section
    /// and key would be read as such, and none holds a line end or NUL.
    static bool canHold(std::string_view section, std::string_view key, std::string_view value);
    /// The text with one value for the key, in the place of the first one it had (the others go), else behind
    /// the last line of the section, else in a new section at the end. New lines end as the first line of the
    /// text does; by CR LF when there is none.
    std::string withValue(std::string_view section, std::string_view key, std::string_view value) const;
    /// The text without the lines of a key.
    std::string withoutKey(std::string_view section, std::string_view key) const;

  private:
    std::string_view m_text;
};

/// A text without the blanks at both ends: space, tab, CR.
std::string_view withoutBlanks(std::string_view text);

}  // namespace dorsel
