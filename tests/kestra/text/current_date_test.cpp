#include <gtest/gtest.h>

#include <kestra/text/current_date.h>
#include <platform/clock.h>
#include <platform/replaceable.h>

namespace {

struct FixedClock : platform::Clock {
    explicit FixedClock(platform::LocalTime local, std::int64_t second = 1) : time(local), seconds(second) {}
    std::int64_t now() override { return seconds; }
    platform::LocalTime localTime(std::int64_t) override { return time; }
    platform::LocalTime time;
    std::int64_t seconds;
};

TEST(CurrentDate, IsTwoDigitsEachButTheYearAndEndsInALineFeed) {
    const std::pair<FixedClock, const char*> cases[] = {
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
