#include <kestra/database/my_recordset_ptr.h>
#include <kestra/variables/variable.h>

#include "test_database.h"

namespace {

const char* const allKinds =
    "CREATE TABLE K (NUM INTEGER NOT NULL PRIMARY KEY, REEL DOUBLE, DEC DECIMAL(10,2), PRIX CURRENCY, VRAI "
    "BIT, "
    "QUAND DATETIME, TEXTE VARCHAR(10), MEMO MEMO)";

}  // namespace

TEST(RecordsetValues, EveryKindOfFieldIsReadAsEveryKindOfValue) {
    const TestDatabase data({allKinds});
    MyRecordsetPtr records;
    data.open(records, "K");
    ASSERT_EQ(records.AddNew(), 0);
    ASSERT_TRUE(records.SetValue("NUM", -7));
    ASSERT_TRUE(records.SetValue("REEL", 1234.5));
    ASSERT_TRUE(records.SetValue("DEC", "12,25"));
    ASSERT_TRUE(records.SetValue("PRIX", "99.5"));
    ASSERT_TRUE(records.SetValue(4, -1));
    ASSERT_TRUE(records.SetValue("QUAND", COleDateTime(2024, 5, 7, 12, 0, 0)));
    ASSERT_TRUE(records.SetValue(6, "42"));
    ASSERT_TRUE(records.SetValue("MEMO", "Chêne ; œuvre €\r\n"));
    ASSERT_EQ(records.Update(0), 0) << records.m_LastError.m_Description.GetString();
    const struct {
        const char *name, *text;
        bool isNumber;
        long integer;
        double real;
    } cases[] = {
        {"NUM", "-7", true, -7, -7},       {"REEL", "1234.5", true, 1234, 1234.5},
        {"DEC", "12.25", true, 12, 12.25}, {"PRIX", "99.5", true, 100, 99.5},
        {"VRAI", "-1", true, -1, -1},      {"QUAND", "07/05/2024 12:00:00", true, 45420, 45419.5},
        {"TEXTE", "42", true, 42, 42},     {"MEMO", "Chêne ; œuvre €\r\n", false, 0, 0},
    };
    const auto expectValues = [&](auto field, const auto& c) {
        CString text("x");
        long integer = 5;
        double real = 5;
        EXPECT_TRUE(records.GetValue(field, text)) << c.name;
        EXPECT_EQ(text, c.text);
        EXPECT_STREQ(records.GetStrValue(field), c.text);
        EXPECT_EQ(records.GetValue(field, integer), c.isNumber) << c.name;
        EXPECT_EQ(integer, c.integer) << c.name;
        EXPECT_EQ(records.GetValue(field, real), c.isNumber) << c.name;
        EXPECT_EQ(real, c.real);
    };
    long index = 0;
    for (const auto& c : cases) {
        expectValues(c.name, c);
        expectValues(index++, c);
    }
}

TEST(RecordsetValues, KeptTheStatusOfADateStaysAsItWas) {
    const TestDatabase data({allKinds, "INSERT INTO K (NUM, REEL) VALUES (1, 45419.5)"});
    MyRecordsetPtr records;
    data.open(records, "K");
    COleDateTime date;
    date.SetStatus(COleDateTime::null);
    EXPECT_TRUE(records.GetValue("REEL", date));
    EXPECT_EQ(date.m_dt, 45419.5);
    EXPECT_EQ(date.GetStatus(), COleDateTime::null);
    EXPECT_FALSE(records.GetValue("QUAND", date));
    EXPECT_EQ(date.m_dt, 0);
}

TEST(RecordsetValues, WhatCannotBeReadResetsTheValueWithoutAWord) {
    const TestDatabase data({allKinds, "INSERT INTO K (NUM) VALUES (1)"});
    MyRecordsetPtr records;
    RecordedTraces traces;
    for (int round = 0; round < 3; ++round) {
        // Never opened, then nulls and a field that does not exist, then behind the last record.
        if (round == 1) data.open(records, "K");
        if (round == 2) records.MoveNext();
        const auto expectNothing = [&](auto field) {
            CString text("x");
            double real = 5;
            EXPECT_FALSE(records.GetValue(field, text) || records.GetValue(field, real));
            EXPECT_TRUE(text.IsEmpty() && real == 0);
            EXPECT_STREQ(records.GetStrValue(field), "");
        };
        for (const char* name : {"REEL", "RIEN", static_cast<const char*>(nullptr)}) expectNothing(name);
        for (const long index : {1L, 99L, -1L}) expectNothing(index);
        long integer = 5;
        EXPECT_FALSE(records.GetValue("REEL", integer));
        EXPECT_EQ(integer, 0);
        EXPECT_FALSE(records.SetValue("RIEN", 1) || records.SetValue(99, "x"));
        EXPECT_EQ(records.SetValue("REEL", 1.5), round == 1);
    }
    EXPECT_EQ(errorLines(), std::vector<std::string>());
}

TEST(RecordsetValues, ValuesThatDoNotFitAreRefusedAndWideTextsKept) {
    const TestDatabase data({allKinds, "INSERT INTO K (NUM) VALUES (1)"});
    MyRecordsetPtr records;
    data.open(records, "K");
    EXPECT_FALSE(records.SetValue("NUM", "douze"));
    EXPECT_FALSE(records.SetValue("NUM", 1e12));
    EXPECT_FALSE(records.SetValue("TEXTE", "onze lettres"));
    EXPECT_FALSE(records.SetValue("QUAND", "31/02/2024"));
    const std::string wide(10'000'000, 'é');
    EXPECT_TRUE(records.SetValue("MEMO", wide.c_str()));
    EXPECT_EQ(records.Update(0), 0);
    CString read;
    EXPECT_TRUE(records.GetValue("MEMO", read));
    EXPECT_TRUE(read.view() == wide);
}

TEST(RecordsetValues, AVariableTakesANumberOrAText) {
    const TestDatabase data({allKinds, "INSERT INTO K (NUM, REEL, DEC, TEXTE) VALUES (1, 2.5, 3.25, 'mur')"});
    MyRecordsetPtr records;
    data.open(records, "K");
    const struct {
        const char* name;
        bool result;
        CVariable::VType type;
        double number;
        const char* text;
    } cases[] = {
        {"REEL", true, CVariable::vtNumber, 2.5, nullptr}, {"DEC", true, CVariable::vtNumber, 3.25, nullptr},
        {"NUM", true, CVariable::vtText, 0, "1"},          {"TEXTE", true, CVariable::vtText, 0, "mur"},
        {"RIEN", true, CVariable::vtText, 0, "avant"},     {"QUAND", false, CVariable::vtEmpty, 0, nullptr},
    };
    for (const auto& c : cases) {
        CVariable variable("v", CString("avant"));
        EXPECT_EQ(records.GetValue(c.name, variable), c.result) << c.name;
        EXPECT_EQ(variable.m_type, c.type) << c.name;
        if (c.type == CVariable::vtNumber) {
            EXPECT_EQ(variable.m_value.number, c.number);
        }
        EXPECT_STREQ(variable.lpctstr(), c.text);
    }
    CVariable textWithoutBuffer("v", CVariable::vtText, nullptr);
    EXPECT_TRUE(records.GetValue("TEXTE", textWithoutBuffer));
    EXPECT_STREQ(textWithoutBuffer.lpctstr(), "mur");
    records.Close();
    EXPECT_FALSE(records.GetValue("REEL", textWithoutBuffer));
    EXPECT_EQ(textWithoutBuffer.m_type, CVariable::vtEmpty);
}
