#pragma once
#include <cstdint>
#include <string>

#include <platform/export.h>

/// Dates in the words of the system's locale.
namespace platform {

/// Date and time in UTC of a number of seconds since 1970-01-01 00:00:00 UTC, under pictures of Windows:
/// "ddd" and "MMM" are the short names of day and month, "dd", "yyyy", "HH", "mm", "ss" numbers, "tt" the
/// locale's mark of the half of the day (nothing where it has none), text between single quotes stands for
/// itself. Windows-1252; "" when it cannot be computed.
DORSEL_API std::string utcDate(std::int64_t seconds, const char* picture);
DORSEL_API std::string utcTime(std::int64_t seconds, const char* picture);

}  // namespace platform
