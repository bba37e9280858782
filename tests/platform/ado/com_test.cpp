#include <gtest/gtest.h>

#include <platform/files.h>

#include <string>
#include <vector>

#include "engines.h"

using namespace ado20;

/// What goes through COM, as far as Debian's Wine has it: connection and recordset objects without a
/// provider, and no ADOX. Unproved without a real Windows: opening a database, Execute, transactions,
/// OpenSchema, the recordset of a provider, the catalog.
namespace {

std::vector<std::string> traced;

void keepTrace(const char* text) {
    traced.emplace_back(text);
}

}  // namespace

TEST(ComEngine, ARecordsetInMemoryTakesRecordsAndGivesThem) {
    const _RecordsetPtr records = createRecordset(Engine::com);
    EXPECT_EQ(failureOf([&] { records->Close(); }), hrObjectClosed);
    for (const _ConnectionPtr& closed :
         {_ConnectionPtr(), createConnection(Engine::com), createConnection(Engine::embedded)})
        EXPECT_EQ(failureOf([&] { records->Open("T", closed); }), hrInvalidConnection);
    const std::pair<DataTypeEnum, Variant> values[] = {{adInteger, 5},
                                                       {adVarWChar, "é|œ"},
                                                       {adDate, Variant::date(45418.5)},
                                                       {adVarBinary, Variant::bytes("a")},
                                                       {adDecimal, Variant::decimal({15, 0, 1, true})},
                                                       {adVarWChar, Variant::null()}};
    long count = 0;
    for (const auto& [type, value] : values)
        records->GetFields()->Append("F" + std::to_string(count++), type, 20);
    records->Open(Variant::missing(), nullptr, adOpenStatic, adLockOptimistic);
    EXPECT_TRUE(records->GetBOF() && records->GetEOF());
    for (int record = 0; record < 2; ++record) {
        records->AddNew();
        for (long i = 0; i < count; ++i) records->GetFields()->GetItem(i)->PutValue(values[i].second);
        for (long i = 0; i < count; ++i)
            EXPECT_EQ(records->GetFields()->GetItem(i)->GetValue(), values[i].second) << i;
    }
    // Wine keeps the number of records, but not their values once the next one was begun.
    EXPECT_EQ(records->GetRecordCount(), 2);
    int walked = 0;
    for (records->MoveFirst(); !records->GetEOF() && walked < 9; records->MoveNext()) ++walked;
    EXPECT_EQ(walked, 2);
    EXPECT_EQ(failureOf([&] { records->GetFields()->GetItem("absent"); }), hrItemNotFound);
    records->Close();
    EXPECT_EQ(records->GetState(), adStateClosed);
}

TEST(ComEngine, TheEmbeddedEngineOpensWhatAdoCannotAndOneTraceLineSaysSo) {
    const TemporaryFolder folder;
    const TraceLine before = replaceTraceLine(keepTrace);
    const std::string path = folder.path("affaire.mdb"),
                      ace = "Provider =Microsoft.ACE.OLEDB.12.0;Data Source=" + path + ";";
    traced.clear();
    createCatalog()
        ->Create("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + ";")
        ->Execute("CREATE TABLE T(A INTEGER); INSERT INTO T VALUES(7)");
    EXPECT_EQ(traced.size(), 1u);
    const _ConnectionPtr connection = createConnection();
    EXPECT_EQ(connection->GetEngine(), Engine::automatic);
    connection->PutCursorLocation(adUseClient);
    connection->Open(ace);
    EXPECT_EQ(traced.size(), 2u);
    EXPECT_EQ(connection->GetEngine(), Engine::embedded);
    const _RecordsetPtr records = createRecordset();
    EXPECT_EQ(failureOf([&] { records->GetEOF(); }), hrObjectClosed);
    records->Open("T", connection, adOpenStatic, adLockOptimistic);
    EXPECT_EQ(textOf(records, "A"), "7");
    // What is neither ADO's nor SQLite's fails as ADO failed, and is left as it was.
    const std::string other = folder.write("autre.mdb", std::string("\0\1\0\0Standard Jet DB", 19));
    const std::string jet = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + other;
    EXPECT_LT(failureOf([&] { createConnection()->Open(jet); }), 0);
    EXPECT_LT(failureOf([&] { createCatalog()->Create(jet); }), 0);
    EXPECT_LT(failureOf([&] { createConnection()->Open("Provider=Inconnu;Data Source=" + path); }), 0);
    EXPECT_EQ(platform::theFiles().size(other.c_str()), 19);
    EXPECT_EQ(traced.size(), 2u);
    replaceTraceLine(before);
}
