#pragma once
#include <string>

namespace platform {

/// The POSIX path (UTF-8) of a name as `platform/files.h` describes it. Components that do not exist are kept
/// as written.
std::string posixPath(const char* name);

}  // namespace platform
