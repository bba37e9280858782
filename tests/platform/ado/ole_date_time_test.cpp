#include <gtest/gtest.h>

#include <platform/ole_date_time.h>

TEST(OleDateTime, SerialsAndFieldsAnswerEachOther) {
    const struct {
        int year, month, day, hour, minute, second;
        double serial;
    } cases[] = {
        {1899, 12, 30, 0, 0, 0, 0},
        {1899, 12, 29, 6, 0, 0, -1.25},
        {1900, 1, 1, 0, 0, 0, 2},
        {100, 1, 1, 0, 0, 0, -657434},
        {9999, 12, 31, 23, 59, 59, 2958465.999988426},
        {2000, 2, 29, 12, 0, 0, 36585.5},
    };
    for (const auto& c : cases) {
        const COleDateTime date(c.year, c.month, c.day, c.hour, c.minute, c.second);
        EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
        EXPECT_NEAR(date, c.serial, 1e-9);
        EXPECT_EQ(COleDateTime(date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(),
                               date.GetMinute(), date.GetSecond()),
                  date);
    }
    EXPECT_EQ(platform::dateOfSerial(45000 + 86399.6 / 86400).day, platform::dateOfSerial(45001).day);
}

TEST(OleDateTime, WhatIsNoDateIsInvalid) {
    EXPECT_EQ(COleDateTime(2023, 2, 29, 0, 0, 0).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(COleDateTime(99, 1, 1, 0, 0, 0).GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(COleDateTime(3e6).GetYear(), -1);
    EXPECT_FALSE(platform::dateOfSerial(platform::serialDate(2024, 0, 1)).valid);
}
