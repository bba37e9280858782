#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The POSIX path (UTF-8) of a name as `platform/files.h` describes it. Components that do not exist are kept
/// as written; a path longer than the system's limit is not looked at.
std::string posixPath(const char* name);

/// True for "D:", "d:\x", "D:x".
bool hasDriveLetter(std::string_view name);

/// Length of "\\\\server\\share\\" at the start of a name, which ".." does not climb out of; 0 for a name
/// that is not a UNC one.
std::size_t uncRootLength(std::string_view name);

/// The components of a name, "." and ".." resolved by their text. Without a root to stop at, leading ".." are
/// kept.
std::vector<std::string_view> componentsOf(std::string_view name, bool rooted);

}  // namespace platform
