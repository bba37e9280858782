#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <kestra/containers/table.h>
#include "random_runs.h"

namespace {

TEST(Table, AgreesWithAModelAfterEachStepOfRandomRuns) {
    expectAgreement(checkTable, 60, 1500);
}

TEST(Table, FreeNumbersStartAtOneAndFollowTheHint) {
    CTbl table(typeDynamique);
    EXPECT_EQ(table.Add(-1, CEDynamique::Create("e", "1"))->m_Numero, 1);
    EXPECT_EQ(table.Add(-1, CEDynamique::Create("f", "2"))->m_Numero, 2);
    EXPECT_EQ(table.iLibre(0), 3);
    table.Add(0x7FFFFFFD, CEDynamique::Create("g", "3"));
    EXPECT_EQ(table.iLibre(0x7FFFFFFD), 3);  // Behind the last number the search goes on at 1.
    EXPECT_EQ(table.Add(0x7FFFFFFE, CEDynamique::Create("h", "4")), nullptr);
    EXPECT_EQ(table.Count(), 3);
    EXPECT_EQ(table.Clear(), 3);
    EXPECT_EQ(table.Count(), 3);  // Clear leaves the count and the hint.
    EXPECT_EQ(table.iCount(), 0);
}

TEST(Table, ParametersAndComparisonAreChosenAtConstruction) {
    struct {
        char text[8];
        int first, second;
    } cases[] = {{"12,34", 12, 34}, {"5|6|7", 5, 6}, {" 7  8", 7, 8}, {"9", 9, 0}, {"", 0, 0}};
    for (auto& c : cases) {
        const CTbl table(typeWau, tri_CWauElement, c.text);
        EXPECT_EQ(table.Param1(), c.first);
        EXPECT_EQ(table.Param2(), c.second);
    }
    EXPECT_EQ(CTbl(typeDynamique).Collection()->GetFunc(), tri_CEDynamique_binaire);
    EXPECT_EQ(CTbl(typeWau).Collection()->GetFunc(), triFctTexte);
}

TEST(Table, NamedTablesAreListedOnceUnderANormalisedName) {
    CTbl::NewCTbl("a/b\xE9", typeWau)->Add(1, new CWauElement());
    CTbl* const second = CTbl::NewCTbl("A\\B\xC9", TypeElement{5});
    EXPECT_EQ(CTbl::PremierCTbl, second);
    EXPECT_STREQ(second->Name(), "A\\B\xC9");
    CTbl* const points = CTbl::NewCTbl("POINTS", typeWau);
    EXPECT_EQ(CTbl::Localise("points"), points);
    EXPECT_EQ(CTbl::Localise("POINTS=12", typeWau), points);
    EXPECT_EQ(CTbl::Localise("POINTS=12", typeDynamique), nullptr);
    EXPECT_EQ(CTbl::Localise("POINTS=12"), nullptr);
    const std::string longName(1000, 'n');
    CTbl* longNamed = CTbl::NewCTbl(longName.c_str(), typeWau);
    EXPECT_EQ(CTbl::Localise(longName.c_str()), longNamed);
    EXPECT_EQ(CTbl::DeleteCTbl("a/B\xE9") + CTbl::DeleteCTbl(longNamed) + CTbl::DeleteCTbl("points"), 3);
    CTbl* none = nullptr;
    EXPECT_EQ(CTbl::DeleteCTbl(none) + CTbl::DeleteCTbl("points"), 0);
    EXPECT_EQ(CTbl::PremierCTbl, nullptr);
    delete CTbl::NewCTbl("", typeWau);
}

TEST(Table, IsTornDownOnce) {
    alignas(CTbl) char place[sizeof(CTbl)];
    CTbl* const table = new (place) CTbl(typeDynamique);
    table->Add(1, CEDynamique::Create("k", "v"));
    table->~CTbl();
    table->~CTbl();
}

TEST(Table, AWorkFileElementIsFoundUnderItsOtherDigits) {
    CTbl table(typeWau, tri_CWauElement);
    const auto add = [&](int number, const char* name, int link) {
        auto* const element = new CWauElement();
        element->PoseNom(name);
        if (link > 0) element->m_Liens[link - 1] = 99;
        return table.Add(number, element);
    };
    add(1, "2PILIER", 1);
    add(2, "3PILIER", 3);
    add(3, "1BORNE", 0);
    const std::string longName(32, 'x');
    add(4, (longName + "y").c_str(), 0);
    const std::pair<const char*, int> cases[] = {
        {"2PILIER", 1},                            // under its own name
        {"1PILIER", 1},                            // the next digit, whose link for digit 1 is set
        {"3BORNE", CTbl::iEOF},                    // found under digit 1, without a link for digit 3
        {"4PILIER", CTbl::iEOF},                   // no digit of the cycle
        {"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxz", 4},  // 32 characters count
    };
    for (const auto& [name, number] : cases) EXPECT_EQ(table.iFindCWauElement(name, 0), number) << name;
    CWauElement key;
    key.PoseNom("1PILIER");
    EXPECT_EQ(table.Find(&key, 0), table.At(1));
    EXPECT_EQ(key.m_Nom[0], '1');
    EXPECT_EQ(table.FindCWauElement(nullptr, 0), nullptr);
}

}  // namespace
