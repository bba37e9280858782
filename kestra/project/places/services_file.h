#pragma once
#include <string>
#include <string_view>

#include <platform/stream.h>

namespace kestra {

/// A services file: ranges of service codes and their folders. Text; each line is read at most 1,998 bytes at
/// a time and ends at its first byte of 13 or less or of 0x80 or more (kept: an accented letter ends the
/// line). Its fields are FROM;TO;FOLDER;RULE1;RULE2, the rules optional; a line with fewer than 3 is passed
/// over.
///
/// A line is for a code K when FROM (upper-cased) is not above K, a "*" at the end of K counting as the byte
/// 0x7F, and TO not below K, byte by byte. The first line with a rule that applies answers:
///
///     no rule, or an empty one   FOLDER
///     x...                       FOLDER and K
///     X...                       FOLDER, "ACAD" and K
///     N>pattern                  FOLDER and the pattern, when K has at least N characters
///     pattern                    FOLDER and the pattern
///
/// In a pattern "x" at the end stands for K, "s(a,b)" for b characters of K from the a-th on, anything else
/// for itself.

/// A code as it is looked up: upper case, ended by a "-" in the place of its 6th, 7th or 8th character,
/// without an "A" before a digit.
std::string normalizedServiceCode(std::string_view code);

/// What a rule makes of a code; false when it does not apply. `rule` has lost its leading blanks.
bool applyServiceRule(std::string_view rule, std::string_view code, std::string& addition);

/// Looks a normalised code up, from the start of the file. False when no line applies.
bool findServiceFolder(platform::Stream& services, const std::string& code, std::string& folder);

}  // namespace kestra
