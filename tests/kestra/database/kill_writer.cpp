// Writes records until it is killed, and checks what such a one has left:
//
//     kestra_kill_writer write FILE   says on each line the number of the last record that is committed
//     kestra_kill_writer check FILE N everything up to N must be there, whole; says how many records there
//     are
#include <cstdio>
#include <cstdlib>
#include <string>

#include <kestra/database/my_recordset_ptr.h>
#include <platform/files.h>

namespace {

constexpr int batchEvery = 100, batchSize = 20;

/// What a record's text is, by its number: up to 20,000 characters.
std::string textOf(long number) {
    std::string text = "enregistrement n° " + std::to_string(number) + ' ';
    while (text.size() < static_cast<std::size_t>(number * 7919 % 20000)) text += text;
    return text;
}

_ConnectionPtr open(const char* file) {
    Database database;
    const bool isThere = platform::theFiles().kind(file) == platform::FileKind::file;
    if (!isThere && *database.CreateDatabase(file) == '\0') return nullptr;
    const _ConnectionPtr connection = database.OpenDB(file, 0, ado20::adUseClient);
    // The program may have been killed before the table was there.
    if (connection)
        connection->Execute("CREATE TABLE IF NOT EXISTS T (NUM INTEGER NOT NULL PRIMARY KEY, TEXTE MEMO)");
    return connection;
}

bool openTable(MyRecordsetPtr& records, const _ConnectionPtr& connection) {
    return connection && records.Open("T", connection, ado20::adCmdTable, ado20::adOpenKeyset,
                                      ado20::adLockOptimistic) >= 0;
}

bool add(MyRecordsetPtr& records, long number) {
    return records.AddNew() >= 0 && records.SetValue("NUM", number) &&
           records.SetValue("TEXTE", textOf(number).c_str()) && records.Update(0) >= 0;
}

/// One record at a time, and now and then a batch that must be there whole or not at all.
int write(const char* file) {
    const _ConnectionPtr connection = open(file);
    MyRecordsetPtr records;
    if (!openTable(records, connection)) return 1;
    long number = records.GetRecordCount();
    for (;;) {
        const bool isBatch = number % batchEvery == 0;
        if (isBatch) connection->BeginTrans();
        for (int i = 0; i < (isBatch ? batchSize : 1); ++i)
            if (!add(records, number + 1 + i)) return 1;
        if (isBatch) connection->CommitTrans();
        number += isBatch ? batchSize : 1;
        std::printf("%ld\n", number);
        std::fflush(stdout);
    }
}

int check(const char* file, long committed) {
    const _ConnectionPtr connection = open(file);
    MyRecordsetPtr records;
    if (!openTable(records, connection)) return 1;
    long count = 0;
    for (; records.Eof() == 0; records.MoveNext(), ++count) {
        CString text;
        if (!records.GetValue("TEXTE", text) || text.view() != textOf(count + 1)) return 2;
    }
    std::printf("%ld\n", count);
    const bool isWholeBatch = count % batchEvery == 0 || count % batchEvery >= batchSize;
    return count >= committed && isWholeBatch ? 0 : 3;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string what = count > 2 ? arguments[1] : "";
    if (what == "write") return write(arguments[2]);
    if (what == "check" && count > 3) return check(arguments[2], std::atol(arguments[3]));
    return 64;
}
