#include "test_database.h"

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
