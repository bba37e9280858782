#pragma once
#include <string>
#include <string_view>

#include <platform/export.h>

/// Connection strings out of patterns.
namespace kestra {

/// The pattern for files of an extension (with its dot): what the settings have for it, else that of ".UDL"
/// or of the Access databases.
KESTRA_API std::string connectionPattern(std::string_view extension);
/// The pattern that opens read-only.
KESTRA_API std::string readOnlyPattern(std::string pattern);
/// The pattern with a path put in the place of its first "%s"; "%%" becomes "%", any other '%' stays.
KESTRA_API std::string connectionText(std::string_view pattern, std::string_view path);

}  // namespace kestra
