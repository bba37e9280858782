#pragma once
#include <cmath>

#include <platform/clock.h>
#include <platform/export.h>

namespace platform {

/// Serial dates: days since 30 December 1899 00:00; the fraction is the time of day, counted forward from
/// midnight before that day too (-1.25 is 29 December 1899, 06:00). Good from 1 January 100 to 31 December
/// 9999.
constexpr double firstSerialDate = -657434.0;
constexpr double serialDateEnd = 2958466.0;

/// NaN when the fields are no date of that range; the day of the month is checked against the month, second
/// 60 is the second after 59.
DORSEL_API double serialDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
DORSEL_API double serialDate(const LocalTime& time);
/// Rounded to the nearest second; not valid outside the range.
DORSEL_API LocalTime dateOfSerial(double serial);

}  // namespace platform

/// The framework's date and time: a serial date and a status.
class DORSEL_API COleDateTime {
  public:
    enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

    COleDateTime() = default;
    /// Valid inside the range of serial dates.
    COleDateTime(double serial) : m_dt(serial) { SetStatus(inRange(serial) ? valid : invalid); }
    COleDateTime(int year, int month, int day, int hour, int minute, int second) {
        SetDateTime(year, month, day, hour, minute, second);
    }
    /// The local date and time of the clock in force.
    static COleDateTime GetCurrentTime();

    operator double() const { return m_dt; }
    /// 0 for a valid date; 1, and the status invalid, for fields that are none.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second);
    DateTimeStatus GetStatus() const { return m_status; }
    void SetStatus(DateTimeStatus status) { m_status = status; }

    /// -1 when the date is not valid.
    int GetYear() const { return field(&platform::LocalTime::year); }
    int GetMonth() const { return field(&platform::LocalTime::month); }
    int GetDay() const { return field(&platform::LocalTime::day); }
    int GetHour() const { return field(&platform::LocalTime::hour); }
    int GetMinute() const { return field(&platform::LocalTime::minute); }
    int GetSecond() const { return field(&platform::LocalTime::second); }

    double m_dt = 0;
    DateTimeStatus m_status = valid;

  private:
    static bool inRange(double serial) {
        return serial >= platform::firstSerialDate && serial < platform::serialDateEnd;
    }
    int field(int platform::LocalTime::*member) const {
        const platform::LocalTime time = platform::dateOfSerial(m_dt);
        return m_status == valid && time.valid ? time.*member : -1;
    }
};
