#include <gtest/gtest.h>

#include <kestra/text/current_date.h>
#include <platform/clock.h>
#include <platform/replaceable.h>

namespace {

class FixedClock : public platform::Clock {
  public:
    explicit FixedClock(platform::LocalTime time, std::int64_t seconds = 1) : m_time(time), m_now(seconds) {}
    std::int64_t now() override { return m_now; }
    platform::LocalTime localTime(std::int64_t) override { return m_time; }

  private:
    platform::LocalTime m_time;
    std::int64_t m_now;
};

TEST(CurrentDate, IsTwoDigitsEachButTheYearAndEndsInALineFeed) {
    const struct {
        FixedClock clock;
        const char* text;
    } cases[] = {
        {FixedClock({2026, 3, 9, 7, 5, 2, true}), "09/03/2026 07:05:02\n"},
        {FixedClock({1999, 12, 31, 23, 59, 60, true}), "31/12/1999 23:59:60\n"},
        {FixedClock({2026, 3, 9, 7, 5, 2, false}), "00/00/0 -1:-1:-1\n"},
        {FixedClock({1969, 12, 31, 23, 59, 59, true}, -1), "00/00/0 -1:-1:-1\n"},
    };
    for (auto [clock, text] : cases) {
        const platform::Replaced inForce(platform::replaceClock, clock);
        EXPECT_EQ(GetCurDate(), text);
    }
}

}  // namespace
