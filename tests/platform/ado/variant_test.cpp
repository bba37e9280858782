#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engines.h"

using namespace ado20;

namespace {

const double noon = platform::serialDate(2024, 5, 6, 12, 30, 0);

std::string textOf(const Variant& value) {
    std::string text;
    const HResult result = toText(value.view(), text);
    return result == hrOk ? text : result == hrOverflow ? "overflow" : "mismatch";
}

}  // namespace

TEST(Variant, BecomesText) {
    const struct {
        Variant value;
        const char* text;
    } cases[] = {
        {-7LL, "-7"},
        {0.1 + 0.2, "0.3"},
        {1e20, "1E+20"},
        {Variant::real4(0.1f), "0.1"},
        {true, "-1"},
        {"é|", "é|"},
        {Variant::currency(-12345), "-1.2345"},
        {Variant::currency(INT64_MIN), "-922337203685477.5808"},
        {Variant::decimal({1500, 0, 3, true}), "-1.5"},
        {Variant::decimal({0, 1, 0, false}), "18446744073709551616"},
        {Variant::decimal({5, 0, 4, false}), "0.0005"},
        {Variant::date(noon), "06/05/2024 12:30:00"},
        {Variant::date(std::floor(noon)), "06/05/2024"},
        {Variant::date(0.25), "06:00:00"},
        {Variant::date(-1.25), "29/12/1899 06:00:00"},
        {Variant::date(1e9), "overflow"},
        {Variant(), "mismatch"},
        {Variant::bytes("ab"), "mismatch"},
    };
    for (const auto& c : cases) EXPECT_EQ(textOf(c.value), c.text);
}

TEST(Variant, TextBecomesANumberOnlyWhenAllOfItIsOne) {
    const struct {
        const char* text;
        HResult result;
        double real;
    } cases[] = {
        {" 12 ", hrOk, 12},         {"1,5", hrOk, 1.5},           {"-1e3", hrOk, -1000},
        {"+.5", hrOk, 0.5},         {"1e-400", hrOk, 0},          {"", hrTypeMismatch, 0},
        {"12x", hrTypeMismatch, 0}, {"1.2.3", hrTypeMismatch, 0}, {"--1", hrTypeMismatch, 0},
        {"inf", hrTypeMismatch, 0}, {"0x10", hrTypeMismatch, 0},  {"1e400", hrOverflow, 0},
    };
    for (const auto& c : cases) {
        double real = 0;
        EXPECT_EQ(toReal(Variant(c.text).view(), real), c.result) << c.text;
        EXPECT_EQ(real, c.result == hrOk ? c.real : 0) << c.text;
    }
}

TEST(Variant, BecomesAnIntegerByRoundingHalvesToTheEvenOne) {
    const struct {
        Variant value;
        HResult result;
        int integer;
    } cases[] = {
        {2.5, hrOk, 2},
        {3.5, hrOk, 4},
        {-2.5, hrOk, -2},
        {"7,6", hrOk, 8},
        {true, hrOk, -1},
        {3000000000LL, hrOverflow, 0},
        {std::nan(""), hrOverflow, 0},
        {Variant::currency(25000), hrOk, 2},
    };
    for (const auto& c : cases) {
        std::int32_t integer = 0;
        EXPECT_EQ(toInt32(c.value.view(), integer), c.result) << textOf(c.value);
        EXPECT_EQ(integer, c.integer) << textOf(c.value);
    }
    std::int64_t wide = 0;
    EXPECT_EQ(toInt64(Variant("9223372036854775807").view(), wide), hrOk);
    EXPECT_EQ(wide, INT64_MAX);
}

TEST(Variant, ReadsDatesInTheFormsOfTheHouse) {
    const double day = std::floor(noon);
    const struct {
        const char* text;
        double serial;
    } cases[] = {
        {"06/05/2024", day},
        {"2024-05-06T12:30:00Z", noon},
        {"06/05/2024 12:30", noon},
        {"6.5.2024 12:30:00", noon},
        {"12:30", 12.5 / 24},
        {"05/13/2024", platform::serialDate(2024, 5, 13)},
        {"1/1/30", platform::serialDate(1930, 1, 1)},
        {"29/12/1899 06:00", -1.25},
        {"45418.25", 45418.25},
    };
    for (const auto& c : cases) {
        double serial = -1e9;
        EXPECT_EQ(toDate(Variant(c.text).view(), serial), hrOk) << c.text;
        EXPECT_NEAR(serial, c.serial, 1e-9) << c.text;
    }
    for (const char* wrong : {"31/02/2024", "2024-13-13", "06/05/2024 25:00", "06/05", "a/b/c",
                              "06/05/2024 12", "06/05-2024", "1e9"}) {
        double serial = 0;
        EXPECT_NE(toDate(Variant(wrong).view(), serial), hrOk) << wrong;
    }
}

TEST(Variant, ChangesTypeOrThrows) {
    EXPECT_EQ(Variant("Vrai").changeType(VarType::boolean), Variant(true));
    EXPECT_EQ(Variant("1.00004").changeType(VarType::currency), Variant::currency(10000));
    EXPECT_EQ(Variant("12.50").changeType(VarType::decimal), Variant::decimal({1250, 0, 2, false}));
    EXPECT_EQ(Variant("1e2").changeType(VarType::decimal), Variant::decimal({100, 0, 0, false}));
    EXPECT_EQ(Variant(255).changeType(VarType::byte), Variant::integer(VarType::byte, 255));
    const struct {
        Variant value;
        VarType type;
        HResult result;
    } cases[] = {
        {256, VarType::byte, hrOverflow},
        {1e39, VarType::real4, hrOverflow},
        {Variant::null(), VarType::text, hrTypeMismatch},
        {"79228162514264337593543950336", VarType::decimal, hrOverflow},
        {"1e99999999", VarType::decimal, hrOverflow},
        {1e30, VarType::currency, hrOverflow},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(failureOf([&] { c.value.changeType(c.type); }), c.result) << textOf(c.value);
    }
}
