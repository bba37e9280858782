#pragma once
#include <string_view>

/// Writes a variable of "$VARCHT" into a project in memory and compares the file with what the plain rules
/// make of it; a stop after any write must leave it before or after, and what `kestra::readsBack` promises
/// must read back. False when anything differs.
bool writesByTheRules(std::string_view content, std::string_view name, std::string_view value);

/// Compacts a project in memory and compares in the same way.
bool compactsByTheRules(std::string_view content);
