#include <kestra/text/current_date.h>

#include <platform/clock.h>

CString GetCurDate() {
    const std::int64_t now = platform::theClock().now();
    platform::LocalTime time = platform::theClock().localTime(now);
    if (now == -1 || !time.valid) time = {.hour = -1, .minute = -1, .second = -1};
    CString text;
    text.Format("%02d/%02d/%d %02d:%02d:%02d\n", time.day, time.month, time.year, time.hour, time.minute,
                time.second);
    return text;
}
