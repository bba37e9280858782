#include <chrono>
#include <limits>

#include <platform/ole_date_time.h>

namespace platform {

namespace {

constexpr std::chrono::sys_days dayZero{std::chrono::year{1899} / 12 / 30};
constexpr long long secondsPerDay = 86400;

}  // namespace

double serialDate(int year, int month, int day, int hour, int minute, int second) {
    const std::chrono::year_month_day date{std::chrono::year{year},
                                           std::chrono::month{static_cast<unsigned>(month)},
                                           std::chrono::day{static_cast<unsigned>(day)}};
    const bool good = year >= 100 && year <= 9999 && month >= 1 && day >= 1 && date.ok() && hour >= 0 &&
                      hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 60;
    if (!good) return std::numeric_limits<double>::quiet_NaN();
    const auto days = static_cast<double>((std::chrono::sys_days{date} - dayZero).count());
    const double time = (hour * 3600 + minute * 60 + second) / static_cast<double>(secondsPerDay);
    return days < 0 ? days - time : days + time;
}

double serialDate(const LocalTime& time) {
    if (!time.valid) return std::numeric_limits<double>::quiet_NaN();
    return serialDate(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

LocalTime dateOfSerial(double serial) {
    if (!(serial > firstSerialDate - 1 && serial < serialDateEnd)) return {};
    double days = std::trunc(serial);
    long long seconds = std::llround(std::fabs(serial - days) * static_cast<double>(secondsPerDay));
    if (seconds == secondsPerDay) {
        seconds = 0;
        ++days;
    }
    const std::chrono::year_month_day date{dayZero + std::chrono::days{static_cast<int>(days)}};
    LocalTime time;
    time.year = static_cast<int>(date.year());
    time.month = static_cast<int>(static_cast<unsigned>(date.month()));
    time.day = static_cast<int>(static_cast<unsigned>(date.day()));
    time.hour = static_cast<int>(seconds / 3600);
    time.minute = static_cast<int>(seconds / 60 % 60);
    time.second = static_cast<int>(seconds % 60);
    time.valid = time.year <= 9999;
    return time;
}

}  // namespace platform

COleDateTime COleDateTime::GetCurrentTime() {
    platform::Clock& clock = platform::theClock();
    const platform::LocalTime time = clock.localTime(clock.now());
    COleDateTime now;
    now.SetDateTime(time.valid ? time.year : 0, time.month, time.day, time.hour, time.minute, time.second);
    return now;
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) {
    const double serial = platform::serialDate(year, month, day, hour, minute, second);
    const bool good = !std::isnan(serial);
    m_dt = good ? serial : 0;
    m_status = good ? valid : invalid;
    return good ? 0 : 1;
}
