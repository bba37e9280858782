#pragma once
#include <string>
#include <string_view>
#include <vector>

#include <platform/export.h>

/// The terminal of a command-line program. Texts are Windows-1252 inside and UTF-8 outside, on a terminal as
/// in a file or a pipe.
namespace platform {

enum class Channel { output, error };

/// The arguments of the program behind its name. Characters that Windows-1252 does not hold become '?'.
DORSEL_API std::vector<std::string> programArguments(int count, char** arguments);
/// True when the channel is a terminal that somebody may be looking at.
DORSEL_API bool isTerminal(Channel channel);
/// Writes a text; false when that failed.
DORSEL_API bool writeConsole(Channel channel, std::string_view text);

}  // namespace platform
