#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include <kestra/containers/comparisons.h>

namespace {

TEST(Elements, CreateLaysKeyAndValueSideBySide) {
    CEDynamique* const text = CEDynamique::Create("K", "valeur");
    EXPECT_STREQ(text->Cle(), "K");
    EXPECT_STREQ(static_cast<char*>(text->Valeur()), "valeur");
    EXPECT_EQ(text->Valeur(), reinterpret_cast<char*>(text) + CEDynamique::partieFixe + 2);
    CEDynamique* const none = CEDynamique::Create("K", nullptr);
    EXPECT_STREQ(static_cast<char*>(none->Valeur()), "");
    CEDynamique* const empty = CEDynamique::Create("K", nullptr, 0);
    EXPECT_EQ(empty->Valeur(), nullptr);
    char bytes[] = "cle\0\1\2\3";
    CEDynamique* const raw = CEDynamique::Create(bytes, 4, 3);
    EXPECT_EQ(std::memcmp(raw->Valeur(), "\1\2\3", 3), 0);
    for (CElement* element : {text, none, empty, raw}) delete element;
}

TEST(Elements, CreateRefusesWhatDoesNotFit) {
    const std::string longKey(32767, 'k'), longestKey(32766, 'k'), longValue(65535, 'v');
    EXPECT_EQ(CEDynamique::Create(nullptr, "v"), nullptr);
    EXPECT_EQ(CEDynamique::Create(longKey.c_str(), "v"), nullptr);
    EXPECT_EQ(CEDynamique::Create("k", longValue.c_str()), nullptr);
    EXPECT_EQ(CEDynamique::Create(nullptr, -1, 5), nullptr);
    CEDynamique* const longest = CEDynamique::Create(longestKey.c_str(), longValue.c_str() + 1);
    ASSERT_NE(longest, nullptr);
    EXPECT_STREQ(static_cast<char*>(longest->Valeur()), longValue.c_str() + 1);
    delete longest;
}

TEST(Elements, TheLengthThatTheAllocationWroteOutlivesTheConstructor) {
    for (const int extra : {0, 3, 65535}) {
        CEDynamique* const element = new (extra) CEDynamique();
        EXPECT_EQ(element->m_LongueurValeur, extra);
        EXPECT_EQ(element->m_Type, typeDynamique);
        EXPECT_TRUE(extra == 0 || static_cast<char*>(element->Valeur())[extra - 1] == 0);
        delete element;
    }
}

/// Operands as bytes, at odd addresses.
struct Operands {
    template <class Value>
    Operands(std::vector<Value> first, std::vector<Value> second) : left(1, ' '), right(1, ' ') {
        left.append(reinterpret_cast<char*>(first.data()), first.size() * sizeof(Value));
        right.append(reinterpret_cast<char*>(second.data()), second.size() * sizeof(Value));
    }
    std::string left, right;
};

TEST(Comparisons, Order) {
    using Longs = std::vector<std::int32_t>;
    using Doubles = std::vector<double>;
    using Texts = std::vector<char>;
    using Wides = std::vector<char16_t>;
    std::int32_t offsetAndLength[] = {1, 2}, length = 3;
    const struct {
        Comparaison compare;
        Operands operands;
        int expected;
        void* param = nullptr;
    } cases[] = {
        {tri_fct_LONG, {Longs{-5}, Longs{3}}, -1},
        {tri_fct_2LONG, {Longs{4, 9}, Longs{4, 8}}, 1},
        {tri_fct_DOUBLE, {Doubles{2.5}, Doubles{2.25}}, 1},
        {tri_fct_DOUBLE, {Doubles{std::nan("")}, Doubles{2}}, 0},
        {tri_fct_BINAIRE, {Texts{'a', 'b', '\xE9'}, Texts{'a', 'b', 'z'}}, 1, &length},
        {tri_fct_B_OFFSET, {Texts{'x', 'b', 'c'}, Texts{'a', 'b', 'c'}}, 0, offsetAndLength},
        {triFctTexte, {Texts{'a', 'z', 0}, Texts{'a', '\xE9', 0}}, -1},
        {triFctTexte, {Texts{'a', 0}, Texts{'a', 'b', 0}}, -1},
        {triFctTexteInv, {Texts{'a', 0}, Texts{'a', 'b', 0}}, 1},
        {tri_fct_WCHAR, {Wides{u'\u20AC', 0}, Wides{u'z', 0}}, 1},
        {tri_fct_WCHAR_INV, {Wides{u'a', 0}, Wides{u'a', 0}}, 0},
        {tri_fct_POINT2D, {Doubles{1.0, 2.0}, Doubles{1.00004, 2.00004}}, 0},
        {tri_fct_POINT2D, {Doubles{1.0, 2.0}, Doubles{1.0001, 2.0}}, -1},
        {tri_fct_POINT2D, {Doubles{1.0, 2.1}, Doubles{1.0, 2.0}}, 1},
    };
    void* const wildcard = reinterpret_cast<void*>(~std::uintptr_t{1});
    for (const auto& c : cases) {
        void* const left = const_cast<char*>(c.operands.left.data() + 1);
        void* const right = const_cast<char*>(c.operands.right.data() + 1);
        EXPECT_EQ(c.compare(left, right, c.param), c.expected) << &c - cases;
        EXPECT_EQ(c.compare(right, left, c.param), -c.expected) << &c - cases;
        for (void* none : {static_cast<void*>(nullptr), wildcard})
            EXPECT_TRUE(c.compare(left, none, c.param) == 0 && c.compare(none, right, c.param) == 0)
                << &c - cases;
    }
}

TEST(Comparisons, DynamicElementsByKey) {
    CEDynamique* const shorter = CEDynamique::Create("ab", "zz");
    CEDynamique* const longer = CEDynamique::Create("abcdefgh", nullptr, 0);
    CEDynamique* const bare = CEDynamique::Create(const_cast<char*>("ab"), 2, 0);
    CEDynamique* const barer = CEDynamique::Create(const_cast<char*>("abc"), 3, 0);
    EXPECT_EQ(tri_CEDynamique_ASCII(shorter, longer, nullptr), -1);
    EXPECT_EQ(tri_CEDynamique_binaire(shorter, longer, nullptr), -1);
    EXPECT_EQ(tri_CEDynamique_binaire(barer, bare, nullptr), 1);  // Reads no byte behind the shorter block.
    EXPECT_EQ(tri_fct_DWORD_PTR(nullptr, bare, nullptr), -1);
    for (CElement* element : {shorter, longer, bare, barer}) delete element;
}

}  // namespace
