#include <kestra/database/my_recordset_ptr.h>
#include <kestra/variables/variable.h>

#include <cstring>
#include <functional>

#include "test_database.h"

namespace {

using ado20::adLockOptimistic;

/// Thirty records, NUM from 0.
const char* const thirtyRows =
    "INSERT INTO T (NUM, NOM) WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 29) "
    "SELECT i, 'rang ' || i FROM n";
const char* const thirtyTable =
    "CREATE TABLE T (NUM INTEGER NOT NULL PRIMARY KEY, Nom VARCHAR(20), Date_Leve DATETIME)";

long number(MyRecordsetPtr& records) {
    long value = 0;
    return records.GetValue("NUM", value) ? value : -100;
}

}  // namespace

TEST(Recordset, KeptEveryFailureIsReportedUnderItsNameAndGivesANeutralValue) {
    using Records = MyRecordsetPtr;
    const struct {
        const char* where;
        long result;
        std::function<long(Records&)> work;
    } cases[] = {
        {"MyRecordsetPtr::Open", -1,
         [](Records& r) { return r.Open("T", nullptr, -1, ado20::adOpenStatic, adLockOptimistic); }},
        {"Erreur ADO::Move ", 1, [](Records& r) { return r.Move(5, 1); }},
        {"Erreur ADO::Move ", 1, [](Records& r) { return r.Move(5, -1); }},
        {"MyRecordsetPtr::MoveNext", -1, [](Records& r) { return r.MoveFirst(); }},
        {"MyRecordsetPtr::MoveNext", -1, [](Records& r) { return r.MoveNext(); }},
        {"MyRecordsetPtr::MoveNext", -1, [](Records& r) { return r.MoveLast(); }},
        {"MyRecordsetPtr::Eof", -1, [](Records& r) { return r.Eof(); }},
        {"MyRecordsetPtr::BOF", -1, [](Records& r) { return r.Bof(); }},
        {"MyRecordsetPtr::AddNew", -1, [](Records& r) { return r.AddNew(); }},
        {"MyRecordsetPtr::Update()", -1, [](Records& r) { return r.Update(0); }},
        {"MyRecordsetPtr::CancelUpdate()", -1, [](Records& r) { return r.CancelUpdate(); }},
        {"Erreur ADO::GetRecordCount ", 0, [](Records& r) { return r.GetRecordCount(); }},
        {"Erreur ADO::GetPosition ", 0, [](Records& r) { return r.GetPosition(); }},
        {"Erreur GetFieldCount ", 0, [](Records& r) { return r.GetFieldCount(); }},
        {"Erreur GetFieldName ", 0, [](Records& r) { return *r.GetFieldName(0); }},
        {"Erreur GetFieldCount ", -1, [](Records& r) { return r.GetIndexFromName("A"); }},
        {"Find impossible : ", -1, [](Records& r) { return r.Find("A = 1", 0, 0); }},
        {"MyRecordsetPtr::MoveTo", -1, [](Records& r) { return r.MoveTo(ado20::Variant(1)); }},
        {"MyRecordsetPtr::GetBookmark", 1, [](Records& r) { return r.GetBookmark().isNull(); }},
        {"MyRecordsetPtr::Filter", -1, [](Records& r) { return r.Filter(nullptr); }},
        {"MyRecordsetPtr::Sort", -1, [](Records& r) { return r.Sort(nullptr); }},
    };
    for (const auto& c : cases) {
        Records records;
        records.m_pRecordset = nullptr;
        records.m_Position = 3;
        RecordedTraces traces;
        EXPECT_EQ(c.work(records), c.result);
        const std::string expected = std::string("\n ***Erreur ") + c.where + ":";
        ASSERT_EQ(traces.lines().size(), 1u) << expected;
        EXPECT_EQ(traces.lines()[0].substr(0, expected.size()), expected);
        EXPECT_EQ(records.m_LastError.m_Code, ado20::hrPointer);
    }
    RecordedTraces traces;
    Records records;
    EXPECT_EQ(records.Eof(), -1);
    EXPECT_EQ(records.m_LastError.m_Code, ado20::hrObjectClosed);
    records.m_pRecordset = nullptr;
    EXPECT_EQ(records.Close(), 0);
    EXPECT_EQ(traces.lines().size(), 1u);
}

TEST(Recordset, KeptTheMessageIsItsOwnFormat) {
    RecordedTraces traces;
    MyRecordsetPtr records;
    EXPECT_EQ(records.Erreur("100 %% de %d%s%n %", "Lire "), -1);
    EXPECT_EQ(records.Erreur(static_cast<const char*>(nullptr), "w"), -1);
    EXPECT_EQ(records.Erreur(_com_error(ado20::hrFail, "100 %% %d"), "Lire"), -1);
    EXPECT_EQ(records.m_LastError.m_Description, "100 %% %d");
    EXPECT_EQ(traces.lines(), (std::vector<std::string>{"\n ***Erreur Lire :100 % de %d%s%n %",
                                                        "\n ***Erreur w:", "\n ***Erreur Lire:100 %% %d"}));
}

TEST(Recordset, KeptThePositionAdvancesThoughTheMoveFails) {
    const TestDatabase data({thirtyTable, thirtyRows});
    MyRecordsetPtr records;
    data.open(records, "T");
    EXPECT_EQ(records.m_Position, -1);
    EXPECT_EQ(records.GetPosition(), 0);
    int rows = 0;
    for (; records.Eof() == 0; records.MoveNext()) {
        EXPECT_EQ(number(records), rows);
        EXPECT_EQ(records.m_Position, rows++);
    }
    EXPECT_EQ(rows, 30);
    EXPECT_EQ(records.GetPosition(), -4) << "behind the last one";
    records.m_Position = 30;
    RecordedTraces traces;
    EXPECT_EQ(records.MoveNext(), -1);
    EXPECT_EQ(records.m_Position, 31);
    EXPECT_EQ(records.MoveLast(), 0);
    EXPECT_EQ(records.m_Position, 29);
    EXPECT_EQ(records.MoveFirst(), 0);
    EXPECT_EQ(records.m_Position, 0);

    data.open(records, "SELECT * FROM T WHERE NUM > 100");
    EXPECT_EQ(records.Eof(), -1);
    EXPECT_EQ(records.Bof(), -1);
    EXPECT_EQ(records.GetPosition(), -2);
}

TEST(Recordset, NearRecordsAreReachedFromWhereItStands) {
    const TestDatabase data({thirtyTable, thirtyRows});
    MyRecordsetPtr records;
    data.open(records, "T");
    // It stands on record 10; what is cached says whether the move is relative to that.
    const struct {
        int cached;
        long records, start, reached, position;
    } cases[] = {
        {4, 5, -1, 11, 5},     {0, 5, -1, 5, 5},     {20, 5, -1, 5, 5}, {-1, 5, -1, 5, 5},
        {5, 5, -1, 10, 5},     {9, 5, -1, 6, 5},     {10, 5, -1, 5, 5}, {3, 0, -1, 0, 0},
        {7, 5, 1, 5, 5},       {7, -2, 2, 27, 27},   {7, 3, 0, 13, 13}, {7, 100, 1, -100, -4},
        {7, -3, -1, -100, -3}, {7, -1, 1, -100, -3},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(records.Move(10, 1), 0);
        records.m_Position = c.cached;
        EXPECT_EQ(records.Move(c.records, c.start), 0);
        EXPECT_EQ(number(records), c.reached) << c.cached << " " << c.records << " " << c.start;
        EXPECT_EQ(records.m_Position, c.position);
    }
    RecordedTraces traces;
    records.m_Position = 7;
    EXPECT_EQ(records.Move(1, 77), 1) << "no such bookmark";
    EXPECT_EQ(records.m_Position, 0);
}

TEST(Recordset, RecordsAreFoundFilteredSortedAndMarked) {
    const TestDatabase data({thirtyTable, thirtyRows, "UPDATE T SET NOM = 'L''Étang' WHERE NUM = 20"});
    MyRecordsetPtr records;
    data.open(records, "T");
    const struct {
        const char* criteria;
        int skip, fromFirst, position;
    } cases[] = {
        {"NUM = 7", 0, 1, 7},           {"NUM > 7", 1, 0, 8},  {"NOM LIKE 'rang 2*'", 0, 1, 2},
        {"Nom = 'l''étang'", 0, 1, 20}, {"NUM = 7", 0, 0, -4},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(records.Find(c.criteria, c.skip, c.fromFirst), c.position) << c.criteria;
        EXPECT_EQ(records.m_Position, c.position);
    }
    RecordedTraces traces;
    for (const char* criteria :
         {static_cast<const char*>(nullptr), "NUM", "RIEN = 1", "NUM = 1; DROP TABLE T"})
        EXPECT_EQ(records.Find(criteria, 0, 1), -1);
    EXPECT_EQ(errorLines().size(), 4u);

    EXPECT_EQ(records.Move(12, -1), 0);
    const ado20::Variant mark = records.GetBookmark();
    EXPECT_EQ(records.Sort("NUM DESC"), 0);
    EXPECT_EQ(records.MoveTo(mark), 0);
    EXPECT_EQ(number(records), 12);
    EXPECT_EQ(records.m_Position, 17);
    EXPECT_EQ(records.Filter("NUM >= 10 AND NUM < 13"), 0);
    EXPECT_EQ(records.GetRecordCount(), 3);
    EXPECT_EQ(number(records), 12);
    EXPECT_EQ(records.Filter("NUM >"), -1);
    EXPECT_EQ(records.Filter(""), 0);
    EXPECT_EQ(records.GetRecordCount(), 30);
    EXPECT_EQ(records.Sort("RIEN"), -1);
}

TEST(Recordset, EditingIsWrittenKeptOrDropped) {
    const TestDatabase data({thirtyTable, thirtyRows});
    MyRecordsetPtr records;
    data.open(records, "T");
    EXPECT_EQ(records.AddNew(), 0);
    EXPECT_TRUE(records.SetValue("NUM", 30));
    EXPECT_TRUE(records.SetValue(1, "Chêne"));
    EXPECT_EQ(records.Update(0), 0);
    EXPECT_STREQ(records.GetStrValue("NOM"), "Chêne");
    EXPECT_EQ(records.GetRecordCount(), 31);

    RecordedTraces traces;
    records.AddNew();
    records.SetValue("NUM", 5);
    EXPECT_EQ(records.Update(0), -1) << "the key is taken";
    EXPECT_NE(records.m_pRecordset->GetEditMode(), ado20::adEditNone) << "still pending";
    EXPECT_EQ(records.CancelUpdate(), 0);
    records.AddNew();
    records.SetValue("NUM", 5);
    EXPECT_EQ(records.Update(1), -1);
    EXPECT_EQ(records.m_pRecordset->GetEditMode(), ado20::adEditNone);
    EXPECT_EQ(records.m_LastError.m_Code, ado20::hrIntegrityViolation);
    EXPECT_EQ(records.GetRecordCount(), 31);

    records.Move(3, 1);
    records.SetValue("NOM", "autre");
    EXPECT_EQ(records.Close(), -1) << "a record is being edited";
    EXPECT_EQ(records.CancelUpdate(), 0);
    EXPECT_STREQ(records.GetStrValue("NOM"), "rang 3");
    EXPECT_EQ(records.Close(), 0);
}

TEST(Recordset, AReadOnlyConnectionOpensReadOnly) {
    const TestDatabase data({thirtyTable, thirtyRows});
    Database database;
    const _ConnectionPtr connection =
        database.OpenDB(data.path().c_str(), Database::readOnly, ado20::adUseClient);
    ASSERT_TRUE(connection);
    MyRecordsetPtr records;
    ASSERT_EQ(records.Open("T", connection, -1, ado20::adOpenKeyset, adLockOptimistic), 0);
    EXPECT_EQ(records.m_pRecordset->GetLockType(), ado20::adLockReadOnly);
    RecordedTraces traces;
    EXPECT_EQ(records.AddNew(), -1);
    EXPECT_FALSE(records.SetValue("NOM", "x"));
    EXPECT_EQ(number(records), 0);
    for (const char* source : {"absente", "T; DROP TABLE T", "", "SELECT", "\"T"})
        EXPECT_EQ(records.Open(source, connection, -1, ado20::adOpenKeyset, adLockOptimistic), -1) << source;
    EXPECT_EQ(errorLines().size(), 6u);
}

TEST(Recordset, KeptACopyClosesTheRecordsetThatItShares) {
    const TestDatabase data({thirtyTable, thirtyRows});
    MyRecordsetPtr records;
    data.open(records, "T");
    records.Move(4, 1);
    {
        MyRecordsetPtr copy(records);
        EXPECT_EQ(copy.m_Position, 4);
        EXPECT_EQ(copy.MoveNext(), 0);
        EXPECT_EQ(number(records), 5);
    }
    EXPECT_EQ(records.m_pRecordset->GetState(), ado20::adStateClosed);

    // A variable owns its recordset; a live one lets go of the interface first.
    for (const CVariable::VType type : {CVariable::vtRecordset, CVariable::vtLiveRecordset}) {
        data.open(records, "T");
        CVariable variable("rs", type, new MyRecordsetPtr(records));
        variable.Free();
        EXPECT_EQ(records.m_pRecordset->GetState() == ado20::adStateOpen, type == CVariable::vtLiveRecordset);
    }
}

TEST(Recordset, FieldsAreFoundByName) {
    const TestDatabase data({thirtyTable, thirtyRows});
    MyRecordsetPtr records;
    data.open(records, "T");
    EXPECT_EQ(records.GetFieldCount(), 3);
    EXPECT_EQ(records.GetIndexFromName("NOM"), 1);
    EXPECT_EQ(records.GetIndexFromName(records.GetFieldName(2)), 2) << "the module-wide text handed in";
    EXPECT_EQ(records.GetIndexFromName("no"), -1);
    EXPECT_EQ(records.GetIndexFromName(nullptr), -1);
    RecordedTraces traces;
    EXPECT_STREQ(records.GetFieldName(3), "");
    EXPECT_STREQ(records.GetFieldName(-1), "");
    EXPECT_EQ(errorLines().size(), 2u);
}

TEST(Recordset, NothingEscapesFromADatabaseThatIsFullLockedOrChanged) {
    const TestDatabase data(
        {thirtyTable, thirtyRows, "PRAGMA max_page_count = 1", "PRAGMA busy_timeout = 20"});
    MyRecordsetPtr records;
    data.open(records, "T");
    RecordedTraces traces;
    const auto add = [&](long key) {
        records.AddNew();
        records.SetValue("NUM", key);
        records.SetValue("NOM", "vingt lettres et pas");
        return records.Update(1);
    };
    long key = 100;
    while (key < 100'000 && add(key) == 0) ++key;
    EXPECT_EQ(records.m_LastError.m_Code, ado20::hrMediumFull);
    EXPECT_EQ(records.GetRecordCount(), 30 + key - 100);
    data.run("PRAGMA max_page_count = 100000");
    EXPECT_EQ(add(key), 0) << "the disk has room again";

    Database database;
    const _ConnectionPtr other = database.OpenDB(data.path().c_str(), 0, ado20::adUseClient);
    other->BeginTrans();
    other->Execute("DELETE FROM T WHERE NUM = 3");
    EXPECT_EQ(add(key + 1), -1) << "locked";
    EXPECT_EQ(records.Move(3, 1), 0);
    EXPECT_EQ(number(records), 3) << "not committed";
    other->CommitTrans();
    EXPECT_EQ(add(key + 1), 0);

    other->Execute("ALTER TABLE T DROP COLUMN NOM");
    for (long row = 0; row < records.GetRecordCount(); ++row) {
        records.Move(row, -1);
        records.GetStrValue("NOM");
    }
    records.SetValue("NOM", "perdu");
    EXPECT_EQ(records.Update(1), -1);
    other->Execute("DROP TABLE T");
    EXPECT_EQ(add(1), -1);
    EXPECT_EQ(records.Close(), 0);
}
