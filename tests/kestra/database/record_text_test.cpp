#include "test_database.h"

TEST(RecordText, AFieldIsPackedInParts) {
    const TestDatabase data({"CREATE TABLE T (NUM INTEGER, NOM VARCHAR(20), NUL DOUBLE)",
                             "INSERT INTO T VALUES (12, 'a|b', NULL)"});
    MyRecordsetPtr records;
    data.open(records, "T");
    const auto fields = records.m_pRecordset->GetFields();
    const struct {
        long field;
        int flags;
        const char* text;
    } cases[] = {{0, 7, "3:NUM=12|"}, {0, 0, "|"},        {0, 1, "12|"},     {0, 2, "NUM=|"}, {0, 4, "3:|"},
                 {0, 8, "|"},         {1, 3, "NOM=a|b|"}, {2, 7, "5:NUL=|"}, {2, 1, "|"}};
    for (const auto& c : cases)
        EXPECT_STREQ(Database::PackRecord(fields->GetItem(c.field).get(), c.flags), c.text) << c.flags;
    EXPECT_STREQ(Database::PackRecord(nullptr, 7), "|");
    records.MoveNext();
    EXPECT_STREQ(Database::PackRecord(fields->GetItem(0L).get(), 7), "3:NUM=|") << "no current record";
    records.Close();
    EXPECT_STREQ(Database::PackRecord(fields->GetItem(0L).get(), 1), "|");

    EXPECT_STREQ(Database::PackRecordNul("NUM", 6), "0:NUM=|");
    EXPECT_STREQ(Database::PackRecordNul(nullptr, 2), "=|");
    EXPECT_STREQ(Database::PackRecordNul(Database::PackRecordNul("A", 2), 2), "A=|=|") << "the shared text";
}

TEST(RecordText, ARecordIsPackedAndLeavesNullsOut) {
    const TestDatabase data({"CREATE TABLE T (NUM INTEGER, NOM VARCHAR(20), VIDE VARCHAR(20), X DOUBLE)",
                             "INSERT INTO T VALUES (12, 'a|b', '', NULL)"});
    MyRecordsetPtr records;
    CString text("x");
    RecordedTraces traces;
    EXPECT_EQ(records.GetString(text, ';'), 0) << "not open";
    data.open(records, "T");
    EXPECT_EQ(records.GetString(text, '\t'), 4);
    EXPECT_EQ(text, "\tNUM|12\xFF\tNOM|a|b\xFF\tVIDE|\xFF");
    EXPECT_EQ(records.m_pRecordset->GetEditMode(), ado20::adEditNone) << "nothing is written";
    records.MoveNext();
    EXPECT_EQ(records.GetString(text, ';'), 0);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(RecordText, KeptReadingARecordWritesItsDate) {
    const OneMay clock;
    const TestDatabase data(
        {"CREATE TABLE T (NUM INTEGER NOT NULL PRIMARY KEY, Date DATETIME, NOM VARCHAR(9))",
         "INSERT INTO T VALUES (1, NULL, 'x')"});
    MyRecordsetPtr records;
    data.open(records, "T");
    CString text;
    EXPECT_EQ(records.GetString(text, ';'), 3);
    EXPECT_EQ(text, ";NUM|1\xFF;Date|07/05/2024 14:30:15\xFF;NOM|x\xFF");
    double stored = 0;
    MyRecordsetPtr again;
    data.open(again, "T", ado20::adLockReadOnly);
    EXPECT_TRUE(again.GetValue("DATE", stored));
    EXPECT_NEAR(stored, oneMay, 1e-9);
    EXPECT_EQ(again.GetString(text, ';'), 1) << "a date that cannot be set ends the text";
}
