#include <windows.h>

#include <platform/locale_date.h>

namespace platform {
namespace {

/// Seconds between the first day of Windows' clock (1601) and of ours.
constexpr std::int64_t windowsEpoch = 11'644'473'600;

bool systemTime(std::int64_t seconds, SYSTEMTIME& parts) {
    constexpr std::int64_t ticksPerSecond = 10'000'000;
    if (seconds < -windowsEpoch || seconds > INT64_MAX / ticksPerSecond - windowsEpoch) return false;
    ULARGE_INTEGER ticks;
    ticks.QuadPart = static_cast<ULONGLONG>((seconds + windowsEpoch) * ticksPerSecond);
    const FILETIME time{ticks.LowPart, ticks.HighPart};
    return ::FileTimeToSystemTime(&time, &parts) != 0;
}

}  // namespace

std::string utcDate(std::int64_t seconds, const char* picture) {
    SYSTEMTIME parts;
    char text[200] = "";
    if (systemTime(seconds, parts))
        ::GetDateFormatA(LOCALE_SYSTEM_DEFAULT, 0, &parts, picture, text, sizeof text);
    return text;
}

std::string utcTime(std::int64_t seconds, const char* picture) {
    SYSTEMTIME parts;
    char text[200] = "";
    if (systemTime(seconds, parts))
        ::GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, TIME_FORCE24HOURFORMAT, &parts, picture, text, sizeof text);
    return text;
}

}  // namespace platform
