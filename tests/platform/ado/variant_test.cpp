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
        {Variant::currency(INT64_MIN), text, "-922337203685477.5808"},
        {Variant::decimal({0, 1, 0, false}), text, "18446744073709551616"},
        {Variant::date(noon), text, "06/05/2024 12:30:00"},
        {Variant::date(-1.25), text, "29/12/1899 06:00:00"},
        {Variant::date(1e9), text, "overflow"},
        {Variant::null(), text, "mismatch"},
        // A text becomes a number only when all of it is one.
        {" 12 ", real8, "12"},
        {"1,5", real8, "1.5"},
        {"1e-400", real8, "0"},
        {"", real8, "mismatch"},
        {"12x", real8, "mismatch"},
        {"0x10", real8, "mismatch"},
        {"1e400", real8, "overflow"},
        {1e39, real4, "overflow"},
        // Halves are rounded to the even one.
        {2.5, int32, "2"},
        {-2.5, int32, "-2"},
        {Variant::currency(25000), int32, "2"},
        {3000000000LL, int32, "overflow"},
        {std::nan(""), int32, "overflow"},
        {256, byte, "overflow"},
        {"Vrai", boolean, "-1"},
        {1e30, currency, "overflow"},
        {"12.50", decimal, "12.5"},
        {"79228162514264337593543950336", decimal, "overflow"},
        {"1e99999999", decimal, "overflow"},
        {"06/05/2024", date, "06/05/2024"},
        {"2024-05-06T12:30:00Z", date, "06/05/2024 12:30:00"},
        {"05/13/2024", date, "13/05/2024"},
        {"1/1/30", date, "01/01/1930"},
        {"29/12/1899 06:00", date, "29/12/1899 06:00:00"},
        {"31/02/2024", date, "mismatch"},
        {"06/05/2024 25:00", date, "mismatch"},
        {"06/05-2024", date, "mismatch"},
        {"1e9", date, "overflow"},
    };
    for (const auto& c : cases) EXPECT_EQ(changed(c.value, c.type), c.changed) << &c - cases;
    std::int32_t integer = 5;
    EXPECT_EQ(toInt32(Variant(3000000000LL).view(), integer), hrOverflow);
    EXPECT_EQ(integer, 5);
}
