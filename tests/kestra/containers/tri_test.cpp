#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <set>
#include <stdexcept>
#include <vector>

#include <kestra/containers/tri.h>
#include "../../support/recorders.h"
#include "random_runs.h"

namespace {

std::vector<int> integers(int count) {
    std::vector<int> values;
    for (int i = 0; i < count; ++i) values.push_back(i);
    return values;
}

int throwsAtNegative(void* first, void* second, void*) {
    if (*static_cast<int*>(second) < 0) throw std::runtime_error("no order");
    return tri_fct_LONG(first, second, nullptr);
}

/// Answers that contradict each other.
int inconsistent(void*, void*, void*) {
    static std::mt19937 random(11);
    return static_cast<int>(random() % 3) - 1;
}

TEST(Tri, AgreesWithAModelAfterEachStepOfRandomRuns) {
    expectAgreement(checkTri, 40, 1200);
}

TEST(Tri, SplitsAreBiasedTowardTheInsertion) {
    auto values = integers(129);
    CTri ascending(tri_fct_LONG), descending(tri_fct_LONG);
    for (int& value : values) ascending.Insert(&value, 0, 1);
    for (int i = 128; i >= 0; --i) descending.Insert(&values[static_cast<std::size_t>(i)], 0, 1);
    for (const auto& [tri, first] : {std::pair{&ascending, 96}, std::pair{&descending, 33}}) {
        const TriNode* root = tri->root();
        ASSERT_TRUE(root->kind == TriNode::inner && root->count == 2);
        EXPECT_EQ(static_cast<const TriNode*>(root->entries[0])->count, first);
        EXPECT_EQ(static_cast<const TriNode*>(root->entries[1])->count, 129 - first);
    }
}

TEST(Tri, HoldsThroughInnerSplitsAndNearlyEmptyLeaves) {
    auto values = integers(40000);
    CTri tri(tri_fct_LONG);
    for (std::size_t i = 0; i < values.size(); ++i)
        ASSERT_EQ(tri.Insert(&values[i * 7919 % values.size()], 1, 1), &values[i * 7919 % values.size()]);
    ASSERT_STREQ(tri.verify(), nullptr);
    for (int& value : values) ASSERT_EQ(value % 60 == 0 ? 1 : tri.Erase(&value), 1);
    ASSERT_STREQ(tri.verify(), nullptr);
    for (int& value : values) {
        const int greater = (value + 59) / 60 * 60;
        auto* const found = static_cast<int*>(tri.Find(&value, 1));
        ASSERT_EQ(found != nullptr ? *found : 40020, greater);
    }
    EXPECT_EQ(tri.Clear(), 667);
}

TEST(Tri, AComparisonThatThrowsChangesNothingAndLeavesNoCurrentElement) {
    auto values = integers(300);
    CTri tri(throwsAtNegative);
    for (int& value : values) tri.Insert(&value, 0, 1);
    int bad = -1;
    const std::function<bool()> failing[] = {
        [&] { return tri.Insert(&bad, 0, 1) == nullptr; },
        [&] { return tri.Find(&bad, 1) == nullptr; },
        [&] { return tri.FindPtr(&bad) == nullptr; },
        [&] { return tri.Next(&bad) == nullptr; },
        [&] { return tri.Erase(&bad) == 0; },
    };
    for (const auto& fails : failing) {
        tri.Find(&values[5], 0);
        EXPECT_TRUE(fails() && tri.GetCurrent() == nullptr) << &fails - failing;
        EXPECT_STREQ(tri.verify(), nullptr);
    }
    EXPECT_EQ(tri.GetCount(), 300);
}

TEST(Tri, AnInconsistentComparisonLosesNoElement) {
    auto values = integers(3000);
    CTri tri(inconsistent);
    std::vector<void*> expected;
    for (int& value : values)
        if (tri.Insert(&value, 0, value % 3 - 1) != nullptr) expected.push_back(&value);
    for (std::size_t i = 0; i < expected.size(); i += 2) {
        if (tri.Erase(expected[i]) == 1) expected[i] = nullptr;
        tri.Find(expected[i + 1], static_cast<int>(i % 5) - 2);
    }
    std::erase(expected, nullptr);
    std::vector<void*> held;
    for (void* e = tri.Next(CTri::FrontGuard()); e != nullptr; e = tri.Next()) held.push_back(e);
    std::sort(held.begin(), held.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(held, expected);
}

void* const wildcard = reinterpret_cast<void*>(~std::uintptr_t{1});

TEST(Tri, TheWildcardFindsTheFirstOrTheLastElement) {
    char texts[][2] = {"a", "b", "c"};
    CTri tri;
    for (auto& text : texts) tri.Insert(text, 0, 1);
    EXPECT_EQ(tri.Find(wildcard, 0), texts[0]);
    EXPECT_EQ(tri.Find(wildcard, 1), texts[2]);
}

TEST(Tri, TextOrdersAgreeWithTheirComparison) {
    constexpr struct {
        Comparaison order;
        std::size_t offset;
    } cases[] = {{triFctTexte, 0},
                 {triFctTexteInv, 0},
                 {tri_CEDynamique_ASCII, CEDynamique::partieFixe},
                 {tri_CWauElement, CWauElement::decalageNom}};
    std::mt19937 random(17);
    for (const auto& [order, offset] : cases) {
        SCOPED_TRACE(&order - &cases[0].order);
        const auto before = [order = order](void* a, void* b) { return order(a, b, nullptr) < 0; };
        std::multiset<void*, decltype(before)> model(before);
        std::vector<std::array<char, 40>> elements(6000);
        CTri tri(order);
        for (auto& element : elements) {
            element.fill(0);
            for (auto length = random() % 13; length > 0; --length)
                element[offset + length - 1] = "aa\xE9"[random() % 3];
            if (random() % 2 == 0) continue;
            tri.Insert(element.data(), 0, 1);
            model.insert(element.data());
        }
        ASSERT_STREQ(tri.verify(), nullptr);
        for (auto& key : elements) {
            const auto equal = model.equal_range(key.data());
            void* const greater = equal.second != model.end() ? *equal.second : nullptr;
            ASSERT_EQ(tri.Find(key.data(), 1),
                      equal.first != equal.second ? *std::prev(equal.second) : greater);
        }
    }
}

TEST(Tri, AHeldWildcardHidesNothingFromAWalk) {
    std::vector<std::array<char, 4>> texts(1000);
    CTri tri;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::snprintf(texts[i].data(), 4, "%03d", static_cast<int>(i * 7 % 1000));
        tri.Insert(texts[i].data(), 0, 1);
        if (i % 5 == 0) tri.Insert(wildcard, 0, 1);
    }
    int walked = 0;
    for (void* e = tri.Next(CTri::FrontGuard()); e != nullptr; e = tri.Next()) ++walked;
    EXPECT_EQ(walked, 1200);
}

TEST(Tri, SetFuncFindsARowInAnyCaseAndReportsAMissingOne) {
    RecordingPrompt prompt;
    const platform::Replaced shown(platform::replacePrompt, prompt);
    CTri tri;
    EXPECT_EQ(tri.SetFunc("texte_inv", FonctionsTriGeneral), 1);
    EXPECT_EQ(tri.GetFunc(), triFctTexteInv);
    EXPECT_EQ(tri.SetFunc(nullptr, FonctionsTriGeneral) + tri.SetFunc("", FonctionsTriGeneral) +
                  tri.SetFunc("LONG", nullptr),
              0);
    EXPECT_TRUE(prompt.texts.empty());
    EXPECT_EQ(tri.SetFunc("AUTRE", FonctionsTriGeneral), 0);
    EXPECT_EQ(prompt.texts, std::vector<std::string>{"Fonction Tri :AUTRE NON Trouvée Voir TREMBOLE "});
    EXPECT_EQ(prompt.styles, std::vector<unsigned>{16});
}

TEST(Tri, AnEmptyNodeIsReported) {
    RecordingPrompt prompt;
    const platform::Replaced shown(platform::replacePrompt, prompt);
    int value = 1;
    CTri tri(tri_fct_LONG);
    tri.Insert(&value, 0, 1);
    const_cast<TriNode*>(tri.root())->count = 0;
    EXPECT_EQ(tri.Find(&value, 0), nullptr);
    EXPECT_EQ(prompt.texts, std::vector<std::string>{"erreure Ligne Tri Vide"});
}

TEST(Tri, ACopySharesTheNodesAndAHeaderIsTornDownOnce) {
    int value = 1;
    alignas(CTri) char place[sizeof(CTri)];
    CTri* const tri = new (place) CTri(tri_fct_LONG);
    tri->Insert(&value, 0, 1);
    alignas(CTri) char copyPlace[sizeof(CTri)];
    CTri* const copy = new (copyPlace) CTri(*tri);
    EXPECT_EQ(copy->root(), tri->root());
    EXPECT_EQ(copy->Find(&value, 0), &value);
    tri->~CTri();
    std::memcpy(copyPlace, place, sizeof place);
    copy->~CTri();  // A torn-down header has no mark: its nodes are not freed again.
}

}  // namespace
