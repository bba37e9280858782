#include <gtest/gtest.h>

#include <platform/arrays.h>
#include <platform/cp1252.h>
#include <platform/cstring.h>

TEST(CString, CutsAndSearchesWithClampedIndices) {
    const CString text("Plan de masse");
    EXPECT_EQ(text.Left(-1), "");
    EXPECT_EQ(text.Right(100), text);
    EXPECT_EQ(text.Mid(99), "");
    EXPECT_EQ(text.Find('e'), 6);
    EXPECT_EQ(text.Find("masse", 9), -1);
    EXPECT_EQ(text.Find("", 14), -1);
    EXPECT_EQ(text.GetAt(13), '\0');
}

TEST(CString, ChangesInPlace) {
    CString text("\t  un;deux;;trois \r\n");
    EXPECT_EQ(text.Trim(), "un;deux;;trois");
    EXPECT_EQ(text.Replace(";", "; "), 3);
    EXPECT_EQ(text, "un; deux; ; trois");
    EXPECT_EQ(text.Replace("", "x"), 0);
    EXPECT_EQ(text.Insert(99, "!"), 18);
    EXPECT_EQ(text.Delete(2, 100), 2);
    text.Format("%s-%03d", text.GetString(), 7);
    EXPECT_EQ(text, "un-007");
    text.GetBuffer(20)[2] = '\0';
    text.ReleaseBuffer();
    EXPECT_EQ(text, "un");

    int position = 0;
    const CString list(";;a;bc");
    EXPECT_EQ(list.Tokenize(";", position), "a");
    EXPECT_EQ(list.Tokenize(";", position), "bc");
    EXPECT_EQ(list.Tokenize(";", position), "");
    EXPECT_EQ(position, -1);
}

TEST(Cp1252, EveryCodeConvertsThereAndBackAndKeepsItsCase) {
    for (unsigned code = 1; code < 256; ++code) {
        const std::string text(1, static_cast<char>(code));
        EXPECT_EQ(platform::cp1252FromUtf8(platform::utf8From1252(text)), text) << code;
        const unsigned char upper = platform::upperCase1252[code];
        EXPECT_EQ(platform::upperCase1252[upper], upper) << code;
        if (upper != code) {
            EXPECT_EQ(platform::lowerCase1252[upper], code) << code;
        }
    }
    EXPECT_EQ(platform::upperCased1252("h\xE9t\xE9rog\xE8ne \x9C\xFF \xDF\xF7\xB5"),
              "H\xC9T\xC9ROG\xC8NE \x8C\x9F \xDF\xF7\xB5");
    EXPECT_EQ(platform::utf8From1252("\x80 \xE9"), "\xE2\x82\xAC \xC3\xA9");
    EXPECT_EQ(platform::cp1252FromUtf8("\xF0\x9F\x98\x80|\xC3|\xE4\xB8\xAD"), "?|?|?");
}

TEST(FrameworkArrays, GrowAndRefuseWhatIsOutside) {
    CStringArray texts;
    texts.SetAtGrow(2, "c");
    texts.InsertAt(1, "b", 2);
    ASSERT_EQ(texts.GetSize(), 5);
    EXPECT_EQ(texts[1], "b");
    EXPECT_EQ(texts[4], "c");
    texts.Add(texts[4]);
    texts.RemoveAt(0, 4);
    EXPECT_EQ(texts.GetSize(), 2);
    EXPECT_THROW(texts.RemoveAt(1, 2), CInvalidArgException);
    EXPECT_THROW((void)texts[-1], CInvalidArgException);
    EXPECT_THROW(texts.SetSize(-1), CInvalidArgException);
}
