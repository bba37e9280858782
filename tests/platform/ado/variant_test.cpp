#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engines.h"

using namespace ado20;

namespace {

/// The text of a value that was changed to another type, or why it was not.
std::string changed(const Variant& value, VarType type) {
    std::string text;
    const HResult result = failureOf([&] { text = value.changeType(type).text(); });
    return result == hrOk ? text : result == hrOverflow ? "overflow" : "mismatch";
}

}  // namespace

TEST(Variant, ChangesTypeOrTellsWhyNot) {
    const double noon = platform::serialDate(2024, 5, 6, 12, 30, 0);
    using enum VarType;
    const struct {
        Variant value;
        VarType type;
        const char* changed;
    } cases[] = {
        {-7LL, text, "-7"},
        {0.1 + 0.2, text, "0.3"},
        {1e20, text, "1E+20"},
        {Variant::real4(0.1f), text, "0.1"},
        {true, text, "-1"},
        {"é|", text, "é|"},
        {Variant::currency(-12345), text, "-1.2345"},
        {Variant::currency(INT64_MIN), text, "-922337203685477.5808"},
        {Variant::decimal({1500, 0, 3, true}), text, "-1.5"},
        {Variant::decimal({0, 1, 0, false}), text, "18446744073709551616"},
        {Variant::decimal({5, 0, 4, false}), text, "0.0005"},
        {Variant::date(noon), text, "06/05/2024 12:30:00"},
        {Variant::date(std::floor(noon)), text, "06/05/2024"},
        {Variant::date(0.25), text, "06:00:00"},
        {Variant::date(-1.25), text, "29/12/1899 06:00:00"},
        {Variant::date(1e9), text, "overflow"},
        {Variant::null(), text, "mismatch"},
        {Variant::bytes("ab"), text, "mismatch"},
        // A text becomes a number only when all of it is one.
        {" 12 ", real8, "12"},
        {"1,5", real8, "1.5"},
        {"-1e3", real8, "-1000"},
        {"+.5", real8, "0.5"},
        {"1e-400", real8, "0"},
        {"", real8, "mismatch"},
        {"12x", real8, "mismatch"},
        {"1.2.3", real8, "mismatch"},
        {"--1", real8, "mismatch"},
        {"inf", real8, "mismatch"},
        {"0x10", real8, "mismatch"},
        {"1e400", real8, "overflow"},
        {1e39, real4, "overflow"},
        // Halves are rounded to the even one.
        {2.5, int32, "2"},
        {3.5, int32, "4"},
        {-2.5, int32, "-2"},
        {"7,6", int32, "8"},
        {Variant::currency(25000), int32, "2"},
        {3000000000LL, int32, "overflow"},
        {std::nan(""), int32, "overflow"},
        {"9223372036854775807", int64, "9223372036854775807"},
        {256, byte, "overflow"},
        {"Vrai", boolean, "-1"},
        {"1.00004", currency, "1"},
        {1e30, currency, "overflow"},
        {"12.50", decimal, "12.5"},
        {"1e2", decimal, "100"},
        {"79228162514264337593543950336", decimal, "overflow"},
        {"1e99999999", decimal, "overflow"},
        {"06/05/2024", date, "06/05/2024"},
        {"2024-05-06T12:30:00Z", date, "06/05/2024 12:30:00"},
        {"6.5.2024 12:30", date, "06/05/2024 12:30:00"},
        {"12:30", date, "12:30:00"},
        {"05/13/2024", date, "13/05/2024"},
        {"1/1/30", date, "01/01/1930"},
        {"29/12/1899 06:00", date, "29/12/1899 06:00:00"},
        {"45418.25", date, "06/05/2024 06:00:00"},
        {"31/02/2024", date, "mismatch"},
        {"06/05/2024 25:00", date, "mismatch"},
        {"06/05", date, "mismatch"},
        {"06/05/2024 12", date, "mismatch"},
        {"06/05-2024", date, "mismatch"},
        {"1e9", date, "overflow"},
    };
    for (const auto& c : cases) EXPECT_EQ(changed(c.value, c.type), c.changed) << &c - cases;
    std::int32_t integer = 5;
    EXPECT_EQ(toInt32(Variant(3000000000LL).view(), integer), hrOverflow);
    EXPECT_EQ(integer, 5);
}
