#include <gtest/gtest.h>

#include <string>

#include <dorsel/strings.h>
#include <platform/clock.h>
#include <platform/replaceable.h>

TEST(Strings, HelpersChangeTheTextInPlaceAndReturnIt) {
    struct {
        char* (*helper)(char*);
        const char* text;
        const char* result;
    } const cases[] = {
        {STR::Majuscules, "Été à Œuvre ÿ ß÷µ 12", "ÉTÉ À ŒUVRE Ÿ ß÷µ 12"},
        {STR::Espace, "\xA0\t un  deux\r\n \xA0", "un  deux"},
        {STR::Espace, " \t\r\n", ""},
        {STR::C92_47, "D:\\a/b\\", "D:/a/b/"},
    };
    for (const auto& row : cases) {
        std::string text = row.text;
        EXPECT_EQ(row.helper(text.data()), text.data());
        EXPECT_STREQ(text.c_str(), row.result) << row.text;
        EXPECT_EQ(row.helper(nullptr), nullptr);
    }
    int removed = -1;
    std::string line = "a\rb\r\n\n";
    EXPECT_STREQ(STR::CR_LF(line.data(), &removed), "a\rb");
    EXPECT_EQ(removed, 3);
    EXPECT_EQ(STR::CR_LF(nullptr, &removed), nullptr);
    EXPECT_EQ(removed, 0);
}

TEST(Strings, SeparePointsIntoTheTextItCut) {
    struct {
        const char* text;
        int maximum;
        std::vector<std::string> pieces;
    } const cases[] = {
        {"a;b;;c", 0, {"a", "b", "", "c"}},
        {"a;b;c", 2, {"a", "b"}},
        {";", -1, {"", ""}},
        {"", 0, {""}},
    };
    MyPCharArray pieces;
    for (const auto& row : cases) {
        std::string text = row.text;
        ASSERT_EQ(STR::Separe(text.data(), ';', pieces, row.maximum), static_cast<int>(row.pieces.size()))
            << row.text;
        for (unsigned i = 0; i < row.pieces.size(); ++i) EXPECT_EQ(pieces[i], row.pieces[i]) << row.text;
        EXPECT_EQ(pieces[0], text.data());
        EXPECT_EQ(pieces[static_cast<unsigned>(pieces.GetSize())], nullptr);
    }
    EXPECT_EQ(STR::Separe(nullptr, ';', pieces, 0), 0);
    std::string many(100'000, ';');
    EXPECT_EQ(STR::Separe(many.data(), ';', pieces, 0), 100'001);
}

TEST(Strings, TesteAsciiMatchesStarAndQuestionMark) {
    struct {
        const char *text, *pattern;
        bool matches;
    } const cases[] = {
        {"FICHIERS", "*I?R*", true}, {"FICHIERS", "fichiers", false}, {"", "*", true}, {"", "", true},
        {"abcabcabd", "*abd", true}, {"abc", "abc**", true},
    };
    for (const auto& row : cases)
        EXPECT_EQ(STR::Teste_ASCII(row.text, row.pattern, nullptr) != 0, row.matches)
            << row.text << ' ' << row.pattern;
    EXPECT_EQ(STR::Teste_ASCII(nullptr, "*", nullptr), 0);
    EXPECT_EQ(STR::Teste_ASCII("", nullptr, nullptr), 0);
    const std::string text(20'000, 'a');
    EXPECT_EQ(STR::Teste_ASCII(text.c_str(), "*a*a*a*a*a*a*a*a*a*a*b", nullptr), 0);
}

TEST(Strings, StrDateWritesTheLocalTime) {
    struct : platform::Clock {
        std::int64_t now() override { return 0; }
        platform::LocalTime localTime(std::int64_t seconds) override {
            if (seconds < 0) return {};
            return {2009, 3, 7, 8, 5, static_cast<int>(seconds), true};
        }
    } clock;
    const platform::Replaced inForce(platform::replaceClock, clock);
    char out[32];
    const std::int64_t time64 = 59, none = -1;
    EXPECT_STREQ(STR::StrDate(out, 4, nullptr), "07/03/2009 08:05:04");
    EXPECT_STREQ(STR::StrDate(out, 4, &time64), "07/03/2009 08:05:59");
    EXPECT_STREQ(STR::StrDate(out, 4, &none), "");
}
