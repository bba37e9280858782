#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include <dorsel/geodesy/decimal.h>

using geodesy::printDecimal;
using geodesy::readDecimal;

TEST(Decimal, NumbersAreReadWithPointAndCommaAndNothingElse) {
    const std::pair<const char*, double> good[] = {{" 12,5\t", 12.5},
                                                   {"-.5", -0.5},
                                                   {"+7.", 7},
                                                   {"2,5E-1", 0.25},
                                                   {"0000000000000000000000012", 12},
                                                   {"123456789012345678901234567890", 1.2345678901234568e29}};
    for (const auto& [text, expected] : good) {
        double value = -1;
        EXPECT_TRUE(readDecimal(text, value)) << text;
        EXPECT_EQ(value, expected) << text;
    }
    for (const char* text : {"", " ", ".", "-", "+-1", "--1", "1.2.3", "1,2,3", "1 2", "nan", "inf", "0x10",
                             "1e", "e5", "1e999", "12m", "1-2"}) {
        double value = -1;
        EXPECT_FALSE(readDecimal(text, value)) << text;
        EXPECT_EQ(value, -1) << text;
    }
}

TEST(Decimal, AnyNumberIsReadAndPrintedAsTheStandardLibraryDoes) {
    std::mt19937_64 random(8);
    char expected[400], printed[geodesy::decimalRoom];
    for (int i = 0; i < 100'000; ++i) {
        const int decimals = static_cast<int>(random() % 10);
        const double scale = std::pow(10.0, static_cast<double>(random() % 14));
        const double value = std::ldexp(static_cast<double>(random() >> 11), -53) * scale - scale / 2;
        std::snprintf(expected, sizeof expected, "%.*f", decimals, value);
        double read = 0;
        ASSERT_TRUE(readDecimal(expected, read));
        ASSERT_EQ(read, std::strtod(expected, nullptr)) << expected;
        // A tie may round either way: what is printed is what was read back, to the last place.
        const std::string text(printed, printDecimal(printed, read, decimals));
        ASSERT_EQ(text, read != 0 ? std::string(expected) : text);
    }
    const std::string huge(printed, printDecimal(printed, -1e300, 2, ','));
    EXPECT_EQ(huge.substr(302), ",00");
    EXPECT_EQ(std::string(printed, printDecimal(printed, -0.00004, 4, ',')), "0,0000");
    EXPECT_EQ(std::string(printed, printDecimal(printed, 0.5, 0)), "1");
}
