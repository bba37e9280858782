#include <gtest/gtest.h>

#include <platform/files.h>

#include <random>

#include "engines.h"

using namespace ado20;

TEST(EmbeddedConnection, OpensWhatIsADatabaseAndNothingElse) {
    const TemporaryFolder folder;
    newDatabase(folder.path("été d'or [1].mdb"), "CREATE TABLE T(A)");
    const std::string whole = folder.read("été d'or [1].mdb");
    const std::string entire = folder.write("entier.db", whole);
    const std::string link =
        folder.write("lien.udl", "[oledb]\r\nProvider=SQLite;Data Source=" + entire + "\r\n");
    const std::pair<std::string, HResult> cases[] = {
        {fileString(folder.path("ÉTÉ d'or [1].MDB")), hrOk},
        {"Provider =Microsoft.ACE.OLEDB.12.0;Data Source=" + entire + ";", hrOk},
        {fileString(folder.write("vide.mdb", "")), hrOk},
        {fileString(folder.write("texte.mdb", std::string(5000, 'x'))), hrFail},
        {fileString(folder.write("coupe.mdb", whole.substr(0, whole.size() / 2))), hrFail},
        {fileString(folder.path("absent.mdb")), hrFail},
        {"Provider=SQLOLEDB;Data Source=x", hrProviderNotFound},
        {"File Name=" + link, hrOk},
        {"File Name=" + folder.path("absent.udl"), hrFail},
    };
    for (const auto& c : cases) {
        const _ConnectionPtr connection = createConnection(Engine::embedded);
        EXPECT_EQ(failureOf([&] { connection->Open(c.first); }), c.second) << c.first;
        EXPECT_EQ(connection->GetState(), c.second == hrOk ? adStateOpen : adStateClosed);
    }
    EXPECT_EQ(platform::theFiles().kind(folder.path("absent.mdb").c_str()), platform::FileKind::missing);
    EXPECT_EQ(failureOf([&] { newDatabase(folder.path("vide.mdb"), ""); }), hrDatabaseExists);
    EXPECT_EQ(failureOf([&] { _ConnectionPtr()->Close(); }), hrPointer);
}

TEST(EmbeddedConnection, ReadOnlyStaysReadOnly) {
    const TemporaryFolder folder;
    const std::string path = folder.path("lecture.mdb");
    newDatabase(path, "CREATE TABLE T(A INTEGER); INSERT INTO T VALUES(1)")->Close();
    const _ConnectionPtr connection = connected(fileString(path, "Mode=ReadOnly;"));
    EXPECT_EQ(connection->GetMode(), adModeRead);
    const _RecordsetPtr records = opened(connection, "T");
    EXPECT_EQ(records->GetLockType(), adLockReadOnly);
    EXPECT_EQ(failureOf([&] { records->AddNew(); }), hrFeatureNotAvailable);
    EXPECT_EQ(failureOf([&] { put(records, "A", 2); }), hrFeatureNotAvailable);
    EXPECT_EQ(failureOf([&] { connection->Execute("DELETE FROM T"); }), hrPermissionDenied);
    EXPECT_EQ(connection->GetErrors().at(0).number, hrPermissionDenied);
}

TEST(EmbeddedConnection, TransactionsNestAndBatch) {
    const TemporaryFolder folder;
    const _ConnectionPtr connection = newDatabase(folder.path("lot.mdb"), "CREATE TABLE T(A INTEGER)");
    EXPECT_EQ(failureOf([&] { connection->CommitTrans(); }), hrIllegalOperation);
    EXPECT_EQ(connection->BeginTrans(), 1);
    connection->Execute("INSERT INTO T VALUES(1)");
    EXPECT_EQ(connection->BeginTrans(), 2);
    connection->Execute("INSERT INTO T VALUES(2)");
    connection->RollbackTrans();
    EXPECT_EQ(connection->BeginTrans(), 2);
    connection->Execute("INSERT INTO T VALUES(3)");
    connection->CommitTrans();
    connection->CommitTrans();
    std::int64_t affected = 0;
    connection->BeginTrans();
    connection->Execute("UPDATE T SET A = 5; DELETE FROM T WHERE A = 5", &affected);
    EXPECT_EQ(affected, 4);
    const _RecordsetPtr records = opened(connection, "T");
    connection->Close();
    EXPECT_EQ(records->GetState(), adStateClosed);
    connection->Open(fileString(folder.path("lot.mdb")));
    EXPECT_EQ(firstOf(connection, "SELECT group_concat(A) FROM T"), "1,3")
        << "what was not committed is rolled back";
}

TEST(EmbeddedConnection, SchemaListsTablesAndViews) {
    const TemporaryFolder folder;
    const _ConnectionPtr connection = newDatabase(
        folder.path("schema.mdb"),
        "CREATE TABLE [b \"x\"](A INTEGER PRIMARY KEY AUTOINCREMENT, B VARCHAR(7) NOT NULL); CREATE TABLE "
        "É(A); CREATE VIEW V AS SELECT * FROM É; CREATE VIEW W AS SELECT * FROM absent");
    const auto listed = [&](SchemaEnum schema, std::initializer_list<const char*> fields) {
        std::string all;
        for (_RecordsetPtr rows = connection->OpenSchema(schema); !rows->GetEOF();
             rows->MoveNext(), all += ' ')
            for (const char* field : fields) all += ':' + textOf(rows, field);
        return all;
    };
    EXPECT_EQ(listed(adSchemaTables, {"TABLE_TYPE", "TABLE_NAME"}),
              ":SYSTEM TABLE:sqlite_sequence :TABLE:b \"x\" :TABLE:É :VIEW:V :VIEW:W ");
    EXPECT_EQ(listed(adSchemaColumns, {"COLUMN_NAME", "DATA_TYPE", "CHARACTER_MAXIMUM_LENGTH"}),
              ":A:3:null :B:202:7 :name:203:null :seq:203:null :A:203:null :A:203:null ");
    EXPECT_EQ(failureOf([&] { connection->OpenSchema(static_cast<SchemaEnum>(12)); }), hrFeatureNotAvailable);
}

TEST(EmbeddedRecordset, SourcesAreTablesViewsOrStatements) {
    const TemporaryFolder folder;
    const _ConnectionPtr connection = newDatabase(
        folder.path("sources.mdb"),
        "CREATE TABLE [nom d'été \"x\"](A INTEGER, rowid TEXT); INSERT INTO [nom d'été \"x\"] VALUES(1, "
        "'a'), (2, 'b');"
        "CREATE TABLE SelectX(A INTEGER PRIMARY KEY) WITHOUT ROWID; INSERT INTO SelectX VALUES(3);"
        "CREATE TABLE U(A INTEGER, B); INSERT INTO U VALUES(7, 'z');"
        "CREATE TABLE K(A INTEGER, B INTEGER, PRIMARY KEY(A, B)); INSERT INTO K VALUES(5, 6);"
        "CREATE VIEW V AS SELECT A, A * 1.5 AS D FROM [nom d'été \"x\"]");
    const struct {
        const char* source;
        const char* first;  ///< values of the first record, or "!" and the error
        bool writable;
    } cases[] = {
        {"nom d'été \"x\"", "1;a;", true},
        {"[nom d'été \"x\"]", "1;a;", true},
        {"V", "1;1.5;", false},
        {"select B AS Z from u as q where q.A > 0 and z = 'z' order by z desc;", "z;", true},
        {"SELECT DISTINCT A FROM U", "7;", false},
        {"SELECT U.A, SelectX.A FROM U, SelectX", "7;3;", false},
        {"WITH c AS (SELECT A FROM U) SELECT * FROM c", "7;", false},
        {"SELECT A FROM U LIMIT 1", "7;", false},
        {"SELECT A FROM U -- ' a comment\n WHERE A /* \" */ = 7", "7;", true},
        {"K", "5;6;", true},
        {"absent", "!80040e37", false},
        {"U; DROP TABLE U", "!80040e37", false},
        {"SELECT 1; DROP TABLE U", "!80040e14", false},
        {"", "!80040e37", false},
    };
    for (const auto& c : cases) {
        std::string seen;
        try {
            const _RecordsetPtr records = opened(connection, c.source);
            for (long i = 0; i < records->GetFields()->GetCount(); ++i) seen += textOf(records, i) + ";";
            EXPECT_EQ(records->Supports(adUpdate), c.writable) << c.source;
        } catch (const _com_error& error) {
            char text[16];
            std::snprintf(text, sizeof text, "!%x", static_cast<unsigned>(error.Error()));
            seen = text;
        }
        EXPECT_EQ(seen, c.first) << c.source;
    }
    EXPECT_EQ(firstOf(connection, "SELECT A FROM U"), "7");
    EXPECT_EQ(failureOf([&] { opened(nullptr, "U"); }), hrInvalidConnection);
}

TEST(EmbeddedRecordset, ColumnsHaveTheTypesTheyWereDeclaredWith) {
    const struct {
        const char* declared;
        DataTypeEnum type;
        std::int64_t size;
        Variant put;
        const char* got;     ///< type and text of what comes back
        const char* stored;  ///< as SQLite has it
    } cases[] = {
        {"INTEGER", adInteger, 4, "12", "3:12", "integer:12"},
        {"SMALLINT", adSmallInt, 2, 12.4, "2:12", "integer:12"},
        {"BIGINT", adBigInt, 8, 5000000000LL, "20:5000000000", "integer:5000000000"},
        {"DOUBLE", adDouble, 8, "1,25", "5:1.25", "real:1.25"},
        {"DECIMAL(10,2)", adDecimal, 16, "12.50", "14:12.5", "real:12.5"},
        {"CURRENCY", adCurrency, 8, 12.34567, "6:12.3457", "real:12.3457"},
        {"BOOLEAN", adBoolean, 2, true, "11:-1", "integer:1"},
        {"DATETIME", adDate, 8, Variant::date(45418.5), "7:06/05/2024 12:00:00", "text:2024-05-06 12:00:00"},
        {"VARCHAR(5)", adVarWChar, 5, "Œuvré", "8:Œuvré", "text:Œuvré"},
        {"TEXT", adLongVarWChar, 0x3FFFFFFF, 5, "8:5", "text:5"},
        {"BLOB", adLongVarBinary, 0x3FFFFFFF, Variant::bytes({"a\0b", 3}), "8209:3 bytes", "blob:a"},
        {"", adLongVarWChar, 0x3FFFFFFF, 1.5, "8:1.5", "text:1.5"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.declared);
        const _ConnectionPtr connection =
            connected(fileString(":memory:"), "CREATE TABLE T(A " + std::string(c.declared) + ")");
        const _RecordsetPtr records = opened(connection, "T");
        const FieldPtr field = records->GetFields()->GetItem(0L);
        EXPECT_EQ(field->GetType(), c.type);
        EXPECT_EQ(field->GetDefinedSize(), c.size);
        records->AddNew();
        field->PutValue(c.put);
        records->Update();
        const Variant value = field->GetValue();
        EXPECT_EQ(std::to_string(static_cast<int>(value.type())) + ":" + shown(value), c.got);
        EXPECT_STREQ(
            firstOf(connection, "SELECT typeof(A) || ':' || coalesce(CAST(A AS TEXT), '') FROM T").c_str(),
            c.stored);
    }
}

TEST(EmbeddedRecordset, ValuesThatAreNotOfTheirTypeComeAsTheyAre) {
    const _ConnectionPtr connection = connected(
        fileString(":memory:"),
        "CREATE TABLE T(I INTEGER, D DATE, B BOOLEAN); INSERT INTO T VALUES('abc', 'jamais', 'true'), (9e9, "
        "45418, 2), (1.5, 1e9, NULL), (x'00', '2024-05-06T07:08:09.5Z', 'x')");
    std::string seen;
    for (_RecordsetPtr r = opened(connection, "T"); !r->GetEOF(); r->MoveNext())
        for (const char* field : {"I", "D", "B"})
            seen += std::to_string(static_cast<int>(r->GetFields()->GetItem(field)->GetValue().type())) + " ";
    EXPECT_EQ(seen, "8 8 11 20 7 11 5 20 1 8209 7 8 ");
    EXPECT_EQ(failureOf([&] { put(opened(connection, "T"), "I", 3000000000LL); }), hrErrorsOccurred);
}

TEST(EmbeddedRecordset, StandsStillWhileOthersWrite) {
    const TemporaryFolder folder;
    const _ConnectionPtr mine =
        newDatabase(folder.path("deux.mdb"),
                    "CREATE TABLE T(A INTEGER PRIMARY KEY, B TEXT); WITH RECURSIVE n(i) AS (SELECT 1 UNION "
                    "ALL SELECT i + 1 FROM n WHERE i < 3000) INSERT INTO T SELECT i * 2, 'v' || i FROM n");
    const std::string impatient = fileString(folder.path("deux.mdb"), "Busy Timeout=50");
    const _ConnectionPtr other = connected(impatient);
    const _RecordsetPtr records = opened(mine, "T");
    EXPECT_EQ(records->GetRecordCount(), 3000);
    other->Execute(
        "INSERT INTO T VALUES(1, 'new'); DELETE FROM T WHERE A = 2000; UPDATE T SET B = 'changed' WHERE A = "
        "2002");
    EXPECT_EQ(records->GetRecordCount(), 3000);
    records->PutAbsolutePosition(1000);
    EXPECT_EQ(failureOf([&] { textOf(records, "B"); }), hrDeletedRow);
    records->MoveNext();
    EXPECT_EQ(textOf(records, "B"), "changed");
    other->Execute("DELETE FROM T WHERE A = 2004");
    records->Move(1);
    put(records, "B", "x");
    EXPECT_EQ(failureOf([&] { records->Update(); }), hrDeletedRow);
    records->CancelUpdate();
    records->Requery();
    EXPECT_EQ(records->GetRecordCount(), 2999);
    // A writer that holds the database is waited for, then reported; what waits is not lost.
    other->BeginTrans();
    other->Execute("UPDATE T SET B = 'held'");
    mine->Close();
    mine->Open(impatient);
    const _RecordsetPtr again = opened(mine, "T");
    put(again, "B", "mine");
    EXPECT_EQ(failureOf([&] { again->Update(); }), hrFail);
    other->RollbackTrans();
    again->Update();
    EXPECT_EQ(textOf(again, "B"), "mine");
    other->Execute("ALTER TABLE T DROP COLUMN B");
    again->MoveLast();
    EXPECT_EQ(failureOf([&] { textOf(again, "B"); }), hrErrorsInCommand);
}

TEST(EmbeddedRecordset, ConstraintsAreToldByUpdate) {
    const _ConnectionPtr connection = connected(
        fileString(":memory:"),
        "CREATE TABLE T(ID INTEGER PRIMARY KEY, A TEXT NOT NULL UNIQUE); INSERT INTO T VALUES(5, 'a')");
    const _RecordsetPtr records = opened(connection, "T");
    records->AddNew();
    put(records, "A", "a");
    EXPECT_EQ(failureOf([&] { records->Update(); }), hrIntegrityViolation);
    EXPECT_EQ(connection->GetErrors().at(0).description,
              "Violation d'une contrainte : UNIQUE constraint failed: T.A");
    EXPECT_EQ(records->GetEditMode(), adEditAdd);
    put(records, "A", "b");
    records->Update();
    EXPECT_EQ(textOf(records, "ID"), "6");
    put(records, "ID", 2);
    records->Update();
    EXPECT_EQ(textOf(records, "ID") + textOf(records, "A"), "2b");
    EXPECT_EQ(records->GetAbsolutePosition(), 2) << "a record keeps its place when its key changes";
}

TEST(EmbeddedRecordset, RenumberingAWholeTableVisitsEachRecordOnce) {
    const _ConnectionPtr connection = createConnection(Engine::embedded);
    connection->Open(fileString(":memory:"));
    connection->Execute(
        "CREATE TABLE T(ID INTEGER PRIMARY KEY); WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 "
        "FROM N WHERE I < 40) INSERT INTO T SELECT I FROM N");
    for (const int step : {1000, -2000}) {
        const _RecordsetPtr records = opened(connection, "T");
        int visited = 0;
        for (; !records->GetEOF() && visited < 100; records->MoveNext(), ++visited) {
            put(records, "ID", std::stoi(textOf(records, "ID")) + step);
            records->Update();
        }
        EXPECT_EQ(visited, 40);
        EXPECT_EQ(records->GetRecordCount(), 40);
    }
}

TEST(EmbeddedRecordset, LargeTextsAndManyRecordsAreReadByPage) {
    const _ConnectionPtr connection = connected(fileString(":memory:"), "CREATE TABLE T(N INTEGER, M MEMO)");
    const _RecordsetPtr records = opened(connection, "T");
    connection->BeginTrans();
    const std::string large = std::string(10 << 20, 'm') + "é";
    for (int i = 0; i < 1500; ++i) {
        records->AddNew();
        put(records, "N", i);
        put(records, "M", i == 7 ? large : "m" + std::to_string(i));
        records->Update();
    }
    connection->CommitTrans();
    int walked = 0;
    for (records->MoveFirst(); !records->GetEOF(); records->MoveNext(), ++walked)
        ASSERT_EQ(textOf(records, "M").size(),
                  walked == 7 ? large.size() : 1 + std::to_string(walked).size());
    for (records->MoveLast(); !records->GetBOF(); records->MovePrevious())
        ASSERT_EQ(textOf(records, "N"), std::to_string(--walked));
    for (int i = 0, at = 0; i < 500; ++i, at = (at * 31 + 17) % 1500) {
        records->PutAbsolutePosition(at + 1);
        ASSERT_EQ(textOf(records, "N"), std::to_string(at));
    }
}

TEST(EmbeddedRecordset, DamagedDatabasesFailOrAnswer) {
    const TemporaryFolder folder;
    newDatabase(folder.path("sain.mdb"),
                "PRAGMA page_size = 512; VACUUM; CREATE TABLE T(A INTEGER PRIMARY KEY, B TEXT, C BLOB); "
                "CREATE INDEX I ON T(B);"
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300) INSERT INTO T "
                "SELECT i, 'v' || i, randomblob(i * 5 % 900) FROM n")
        ->Close();
    const std::string sound = folder.read("sain.mdb");
    std::mt19937 random(7);
    int refused = 0;
    for (int round = 0; round < 200; ++round) {
        std::string damaged = sound;
        for (int i = 0; i < 1 + round % 20; ++i)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        if (round % 5 == 0) damaged.resize(random() % damaged.size());
        const HResult failure = failureOf([&] {
            const _RecordsetPtr records =
                opened(connected(fileString(folder.write("abime.mdb", damaged))), "T");
            for (; !records->GetEOF(); records->MoveNext()) textOf(records, "B");
            records->PutSort("B DESC");
            records->AddNew();
            put(records, "B", "neuf");
            records->Update();
            records->Find("A = 250", 0, adSearchBackward);
        });
        refused += failure != hrOk ? 1 : 0;
    }
    EXPECT_GT(refused, 50);
}
