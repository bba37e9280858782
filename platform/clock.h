#pragma once
#include <cstdint>

#include <platform/export.h>

/// The clock of the machine, replaceable for a test.
namespace platform {

/// A date and time in the local time zone. When `valid` is false the other fields mean nothing.
struct LocalTime {
    int year = 0;    ///< four digits
    int month = 0;   ///< 1 to 12
    int day = 0;     ///< 1 to 31
    int hour = 0;    ///< 0 to 23
    int minute = 0;  ///< 0 to 59
    int second = 0;  ///< 0 to 60
    bool valid = false;
};

class DORSEL_API Clock {
  public:
    virtual ~Clock();
    /// Seconds since 1970-01-01 00:00:00 UTC; -1 when the clock cannot be read.
    virtual std::int64_t now() = 0;
    /// The local time of such a number; not valid when it cannot be computed.
    virtual LocalTime localTime(std::int64_t seconds) = 0;
};

/// The clock in force: the system's unless one was put in its place.
DORSEL_API Clock& theClock();
/// Puts another clock in force and returns the one before; null puts the system's back. The clock is not
/// owned.
DORSEL_API Clock* replaceClock(Clock* clock);

}  // namespace platform
