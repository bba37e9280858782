#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <platform/ado/types.h>
#include <platform/export.h>

namespace ado20 {

/// "Key=value;Key=value": keys without regard to case and to blanks around them, values without the blanks
/// around them or in ' or " (doubled inside). An item without "=" is left out. Of a key that comes twice, the
/// last one holds.
class DORSEL_API ConnectionString {
  public:
    ConnectionString() = default;
    explicit ConnectionString(std::string_view text);

    /// Null when the key is not there; lives as long as this object does.
    const std::string* find(std::string_view key) const;
    /// The value, "" when the key is not there.
    std::string value(std::string_view key) const;
    /// A text that parses to the same items; values are quoted where they need it.
    std::string text() const;
    friend bool operator==(const ConnectionString&, const ConnectionString&) = default;

  private:
    std::vector<std::pair<std::string, std::string>> m_items;
};

/// The mode that "Read", "ReadOnly", "Write", "ReadWrite", "Share Deny None" ... name, several joined by "|";
/// words that name none are left out.
DORSEL_API ConnectModeEnum modeOfText(std::string_view text);

/// The providers that the Access databases are opened with: "Microsoft.Jet.OLEDB..." and
/// "Microsoft.ACE.OLEDB...".
DORSEL_API bool isAccessProvider(std::string_view provider);
/// The providers that the embedded engine takes: "SQLite", the Access ones, and none.
DORSEL_API bool isEmbeddedProvider(std::string_view provider);

/// The connection string of a data-link file (UTF-16 with byte order mark, or Windows-1252), empty when it
/// cannot be read or holds none.
DORSEL_API std::string readDataLink(const char* path);

/// The string itself, or what stands in the data-link file that it names ("File Name=").
DORSEL_API std::string resolveDataLink(std::string_view connectionString);

}  // namespace ado20
