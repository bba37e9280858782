#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include <kestra/containers/arrays.h>
#include <kestra/containers/tri.h>

namespace {

TEST(Arrays, SortIsStableAndLosesNoEntry) {
    CMyStringArray texts;
    EXPECT_EQ(texts.Sort(CMyStringArray::fCompare, nullptr), -1);
    const char* const firstB = texts.Add("b");
    const char* const a = texts.Add("a");
    const char* const secondB = texts.Add("b");
    EXPECT_EQ(texts.Sort(CMyStringArray::fCompare, nullptr), 2);
    EXPECT_TRUE(texts[0] == a && texts[1] == firstB && texts[2] == secondB);

    int values[] = {3, -1, 2};
    CMyPtrArray mixed;
    for (void* entry : {static_cast<void*>(nullptr), static_cast<void*>(&values[0]), CTri::EndGuard(),
                        static_cast<void*>(&values[1]), static_cast<void*>(&values[2])})
        mixed.Add(entry);
    const auto throwing = [](void* first, void* second, void*) {
        if (*static_cast<int*>(second) < 0) throw std::runtime_error("no order");
        return *static_cast<int*>(first) - *static_cast<int*>(second);
    };
    EXPECT_EQ(mixed.Sort(throwing, nullptr), 4);
    void* const expected[] = {&values[2], &values[0], nullptr, CTri::EndGuard(), &values[1]};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(mixed[i], expected[i]) << i;
}

TEST(Arrays, PointersAreFoundFromTheEndAndAnAbsentOneGives0) {
    int x = 0, y = 0, z = 0;
    CMyPtrArray pointers;
    for (void* p : {&x, &y, &x}) pointers.Add(p);
    EXPECT_EQ(pointers.Find(&x), 2);
    EXPECT_EQ(pointers.Find(&y), 1);
    EXPECT_EQ(pointers.Find(&z), 0);  // Kept: an absent pointer gives 0, as the first entry does.
}

TEST(Arrays, TextsAreFreedUnlessTheArrayDoesNotOwnThem) {
    const char* text = nullptr;
    {
        CMyStringArray borrowed;
        text = borrowed.Add("texte");
        borrowed.Add(nullptr);
        delete[] static_cast<char*>(borrowed.GetAt(1));
        borrowed.m_NonProprietaire = 1;
    }
    EXPECT_STREQ(text, "texte");
    delete[] text;
}

TEST(Arrays, GrowableTextsAreFoundFromTheEnd) {
    CMyCStringArray texts;
    for (const char* text : {"ABC", "ABD", "\xC9T\xC9", "abc"}) texts.Add(text);
    const struct {
        const char* text;
        int n, exact, noCase;
    } cases[] = {
        {"AB", 2, 1, 3},  {"AB", 0, -1, -1},    {"aBD", -1, -1, 1},       {"ABCDEF", 3, 0, 3},
        {"ABC", 9, 0, 3}, {nullptr, 0, -1, -1}, {"\xE9t\xE9", 0, -1, -1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(texts.Find(c.text, c.n), c.exact) << &c - cases;
        EXPECT_EQ(texts.FindNoCase(c.text, c.n), c.noCase) << &c - cases;
    }
}

}  // namespace
