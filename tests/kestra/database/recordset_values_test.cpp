#include <kestra/database/my_recordset_ptr.h>
#include <kestra/variables/variable.h>

#include "test_database.h"

namespace {

const char* const allKinds =
    "CREATE TABLE K (NUM INTEGER NOT NULL PRIMARY KEY, REEL DOUBLE, DEC DECIMAL(10,2), PRIX CURRENCY, VRAI "
    "BIT, "
    "QUAND DATETIME, TEXTE VARCHAR(10), MEMO MEMO)";
const char* const nameOf[] = {"NUM", "REEL", "DEC", "PRIX", "VRAI", "QUAND", "TEXTE", "MEMO"};

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
        const char* text;
        bool isLong;
        long integer;
        bool isReal;
        double real;
    } cases[] = {
        {"-7", true, -7, true, -7},       {"1234.5", true, 1234, true, 1234.5},
        {"12.25", true, 12, true, 12.25}, {"99.5", true, 100, true, 99.5},
        {"-1", true, -1, true, -1},       {"07/05/2024 12:00:00", true, 45420, true, 45419.5},
        {"42", true, 42, true, 42},       {"Chêne ; œuvre €\r\n", false, 0, false, 0},
    };
    long index = 0;
    for (const auto& c : cases) {
        const char* name = nameOf[index];
        CString text("x"), indexedText;
        long integer = 5, indexedInteger = 5;
        double real = 5, indexedReal = 5;
        EXPECT_TRUE(records.GetValue(name, text)) << name;
        EXPECT_TRUE(records.GetValue(index, indexedText));
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(indexedText, c.text);
        EXPECT_STREQ(records.GetStrValue(name), c.text);
        EXPECT_STREQ(records.GetStrValue(index), c.text);
        EXPECT_EQ(records.GetValue(name, integer), c.isLong) << name;
        EXPECT_EQ(records.GetValue(index, indexedInteger), c.isLong);
        EXPECT_EQ(integer, c.integer) << name;
        EXPECT_EQ(indexedInteger, c.integer);
        EXPECT_EQ(records.GetValue(name, real), c.isReal) << name;
        EXPECT_EQ(records.GetValue(index, indexedReal), c.isReal);
        EXPECT_EQ(real, c.real);
        EXPECT_EQ(indexedReal, c.real);
        ++index;
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
        for (const char* name : {"REEL", "QUAND", "MEMO", "RIEN", static_cast<const char*>(nullptr)}) {
            CString text("x");
            long integer = 5;
            double real = 5;
            EXPECT_FALSE(records.GetValue(name, text) || records.GetValue(name, integer) ||
                         records.GetValue(name, real));
            EXPECT_TRUE(text.IsEmpty() && integer == 0 && real == 0);
            EXPECT_STREQ(records.GetStrValue(name), "");
        }
        for (const long index : {1L, 99L, -1L}) {
            CString text("x");
            double real = 5;
            EXPECT_FALSE(records.GetValue(index, text) || records.GetValue(index, real));
            EXPECT_TRUE(text.IsEmpty() && real == 0);
            EXPECT_STREQ(records.GetStrValue(index), "");
        }
        EXPECT_FALSE(records.SetValue("RIEN", 1) || records.SetValue(99, "x"));
        if (round != 1) {
            EXPECT_FALSE(records.SetValue("REEL", 1.5));
        }
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
        {"MEMO", false, CVariable::vtEmpty, 0, nullptr},
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
