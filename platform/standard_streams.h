#pragma once
#include <cstddef>
#include <string_view>

#include <platform/export.h>

/// The process's standard streams, as bytes: line ends and encodings pass as they are on every system
/// (`platform/console.h` is for texts).
namespace platform {

/// Bytes read, at least one unless the input has ended (0); -1 on failure.
DORSEL_API std::ptrdiff_t readStandardInput(void* buffer, std::size_t size);
/// Writes all of it or answers false.
DORSEL_API bool writeStandardOutput(std::string_view bytes);

}  // namespace platform
