#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <kestra/variables/number_text.h>

using kestra::numberToText;
using kestra::textToNumber;

namespace {

std::string printed(const char* format, double number) {
    char text[512];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, number))};
}

/// Takes a locale with a comma, made for the test where the system has its source only.
void takeCommaLocale() {
    for (const char* name : {"fr_FR.UTF-8", "de_DE.UTF-8", "French"})
        if (std::setlocale(LC_ALL, name) != nullptr) return;
#ifndef _WIN32
    const std::string folder = testing::TempDir() + "comma_locale";
    const std::string make =
        "mkdir -p " + folder + " && localedef -i fr_FR -f UTF-8 " + folder + "/fr_FR.UTF-8";
    if (std::system((make + " >/dev/null 2>&1").c_str()) != 0) return;
    setenv("LOCPATH", folder.c_str(), 1);
    std::setlocale(LC_ALL, "fr_FR.UTF-8");
    unsetenv("LOCPATH");
#endif
}

}  // namespace

TEST(NumberText, RandomDoublesGoBothWaysAsTheCLibraryHasThem) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 20'000; ++i) {
        double number = std::bit_cast<double>(random());
        if (i % 2 == 0) number = static_cast<double>(random() % 2'000'000'000) / std::exp2(i % 30);
        if (std::isnan(number)) continue;
        ASSERT_EQ(numberToText(number), printed("%g", number));
        for (const char* format : {"%.17g", "%.25e", "%.4f", "%a"}) {
            const std::string text = printed(format, number);
            ASSERT_EQ(textToNumber(text.c_str()), std::strtod(text.c_str(), nullptr)) << text;
        }
    }
}

TEST(NumberText, TextsAtTheEdgesReadAsTheCLibraryHasThem) {
    const std::string zeros(100'000, '0');
    std::stringstream texts(R"(
        abc -abc +-5 -+5 . e5 1,5 1e 1e+x -.5e1 12.5xyz 0x 0xg 0x10 0x.8P1 -0x1p-1074 0x1p5000 0x1p-5000 -INFinity
        infime 1e400 -1e400 1e-400 2e-324 3e-324 1e99999999999999999999 -1e-99999999999999999999 0e99999999999 )");
    texts.seekp(0, std::ios::end) << "1" << zeros << " 0." << zeros << "1 0x1" << zeros << " 0x1" << zeros
                                  << "p-400000 0x." << zeros << "1";
    for (std::string text; texts >> text;)
        EXPECT_EQ(textToNumber(text.c_str()), std::strtod(text.c_str(), nullptr)) << text.substr(0, 40);
    // Some C libraries give 0 here.
    EXPECT_EQ(textToNumber(("0." + zeros + "1e100001").c_str()), 1.0);
    EXPECT_EQ(textToNumber(" \t\n\v\f\r-1"), -1.0);
    EXPECT_EQ(textToNumber("\xA0"
                           "1"),
              0.0);
    EXPECT_EQ(textToNumber(nullptr), 0.0);
    EXPECT_TRUE(std::signbit(textToNumber("-0")));
    EXPECT_EQ(numberToText(textToNumber("-inf")), "-inf");
    EXPECT_EQ(numberToText(textToNumber("-NaN(1)")), "-nan");
}

TEST(NumberText, ACommaLocaleChangesNothing) {
    takeCommaLocale();
    const std::string ofTheLibrary = printed("%g", 1.5);
    const std::string ours = numberToText(1234.5);
    const double read = textToNumber("1234.5");
    std::setlocale(LC_ALL, "C");
    if (ofTheLibrary != "1,5") GTEST_SKIP() << "no locale with a comma here";
    EXPECT_EQ(ours, "1234.5");
    EXPECT_EQ(read, 1234.5);
}
