#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <platform/ado/ado.h>
#include <platform/ado/embedded/database.h>
#include <platform/files.h>

#include "side_by_side.h"

// The embedded engine beside the same work through SQLite's C interface by hand, on one table of a million
// rows of ten columns. `bench_ado` makes the table in the folder of temporary files and removes it.
namespace {

using namespace ado20;

constexpr int rowCount = 1000000;
constexpr int addedCount = 100000;

void require(bool good, const char* what) {
    if (good) return;
    std::fprintf(stderr, "bench_ado: %s\n", what);
    std::exit(1);
}

struct Handle {
    explicit Handle(const std::string& path) {
        require(sqlite3_open(embedded::sqlitePath(path).c_str(), &db) == SQLITE_OK, "open");
    }
    ~Handle() { sqlite3_close(db); }
    void run(const char* sql) { require(sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql); }
    sqlite3* db = nullptr;
};

struct Prepared {
    Prepared(Handle& handle, const char* sql) {
        require(sqlite3_prepare_v2(handle.db, sql, -1, &statement, nullptr) == SQLITE_OK, sql);
    }
    ~Prepared() { sqlite3_finalize(statement); }
    bool step() { return sqlite3_step(statement) == SQLITE_ROW; }
    operator sqlite3_stmt*() const { return statement; }
    sqlite3_stmt* statement = nullptr;
};

std::string makeTable(const std::string& path) {
    platform::theFiles().remove(path.c_str());
    Handle handle(path);
    handle.run(
        "PRAGMA synchronous=OFF; CREATE TABLE POINTS(NUM INTEGER PRIMARY KEY, NOM VARCHAR(20), X DOUBLE, Y "
        "DOUBLE, Z DOUBLE,"
        " CODE INTEGER, JOUR DATETIME, VALIDE BOOLEAN, PRIX CURRENCY, NOTE MEMO);"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000000) INSERT INTO "
        "POINTS SELECT i, 'Point ' || i,"
        " i * 1.25, i * 2.5, i / 7.0, i % 40, '2024-05-06 12:30:00', i % 2, i / 100.0, 'borne en limite de "
        "parcelle' FROM n");
    return path;
}

_ConnectionPtr connected(const std::string& path) {
    const _ConnectionPtr connection = createConnection(Engine::embedded);
    connection->Open("Provider=SQLite;Data Source=\"" + path + "\"");
    return connection;
}

_RecordsetPtr openedTable(const _ConnectionPtr& connection, const char* table) {
    const _RecordsetPtr records = createRecordset(Engine::embedded);
    records->Open(table, connection, adOpenStatic, adLockOptimistic);
    return records;
}

/// All ten values of the current record, as texts or numbers.
std::size_t readRecord(const _RecordsetPtr& records) {
    const FieldsPtr fields = records->GetFields();
    std::size_t sum = 0;
    for (long i = 0; i < 10; ++i) {
        const VariantView value = fields->GetItem(i)->GetView();
        sum += value.data.size() + static_cast<std::size_t>(value.type);
    }
    return sum;
}

void openAndRead(const std::string& path) {
    const _ConnectionPtr connection = connected(path);
    const _RecordsetPtr records = openedTable(connection, "POINTS");
    std::size_t sum = 0;
    for (int i = 0; i < 1000; ++i, records->MoveNext()) sum += readRecord(records);
    records->MoveLast();
    sum += readRecord(records);
    require(records->GetAbsolutePosition() == rowCount, "position of the last");
    bench::keep(sum);
}

std::size_t readRow(sqlite3_stmt* row) {
    std::size_t sum = 0;
    for (int i = 0; i < 10; ++i) {
        switch (sqlite3_column_type(row, i)) {
            case SQLITE_INTEGER:
                sum += static_cast<std::size_t>(sqlite3_column_int64(row, i)) & 1;
                break;
            case SQLITE_FLOAT:
                sum += sqlite3_column_double(row, i) > 0;
                break;
            default:
                sum += static_cast<std::size_t>(sqlite3_column_text(row, i)[0]) +
                       static_cast<std::size_t>(sqlite3_column_bytes(row, i));
        }
    }
    return sum;
}

std::size_t readByHand(Handle& handle) {
    std::size_t sum = 0;
    Prepared first(handle, "SELECT * FROM POINTS ORDER BY NUM LIMIT 1000"),
        last(handle, "SELECT * FROM POINTS ORDER BY NUM DESC LIMIT 1");
    while (first.step()) sum += readRow(first);
    while (last.step()) sum += readRow(last);
    return sum;
}

/// The same service: every position can be gone to, so the keys are known.
void openAndReadByHand(const std::string& path) {
    Handle handle(path);
    std::vector<std::int64_t> keys;
    Prepared all(handle, "SELECT NUM FROM POINTS ORDER BY NUM");
    while (all.step()) keys.push_back(sqlite3_column_int64(all, 0));
    bench::keep(readByHand(handle));
    require(keys.size() == rowCount, "keys");
}

/// Less: the position of the last only.
void openAndCountByHand(const std::string& path) {
    Handle handle(path);
    Prepared count(handle, "SELECT count(*) FROM POINTS");
    require(count.step() && sqlite3_column_int(count, 0) == rowCount, "count");
    bench::keep(readByHand(handle));
}

void walk(const std::string& path) {
    const _ConnectionPtr connection = connected(path);
    const _RecordsetPtr records = openedTable(connection, "POINTS");
    double sum = 0;
    std::string name;
    int walked = 0;
    for (; !records->GetEOF(); records->MoveNext(), ++walked) {
        std::int32_t number = 0;
        double x = 0;
        toInt32(records->GetFields()->GetItem("NUM")->GetView(), number);
        toText(records->GetFields()->GetItem("NOM")->GetView(), name);
        toReal(records->GetFields()->GetItem("X")->GetView(), x);
        sum += number + x + static_cast<double>(name.size());
    }
    require(walked == rowCount, "rows walked");
    bench::keep(sum);
}

void walkByHand(const std::string& path) {
    Handle handle(path);
    Prepared rows(handle, "SELECT NUM, NOM, X FROM POINTS");
    double sum = 0;
    std::string name;
    int walked = 0;
    for (; rows.step(); ++walked) {
        name.assign(reinterpret_cast<const char*>(sqlite3_column_text(rows, 1)),
                    static_cast<std::size_t>(sqlite3_column_bytes(rows, 1)));
        sum +=
            sqlite3_column_int(rows, 0) + sqlite3_column_double(rows, 2) + static_cast<double>(name.size());
    }
    require(walked == rowCount, "rows walked");
    bench::keep(sum);
}

constexpr const char* addedTable =
    "DROP TABLE IF EXISTS AJOUTS; CREATE TABLE AJOUTS(NUM INTEGER, NOM VARCHAR(20), X DOUBLE)";

void add(const std::string& path) {
    const _ConnectionPtr connection = connected(path);
    const _RecordsetPtr records = openedTable(connection, "AJOUTS");
    connection->BeginTrans();
    for (int i = 0; i < addedCount; ++i) {
        records->AddNew();
        records->GetFields()->GetItem("NUM")->PutValue(i);
        records->GetFields()->GetItem("NOM")->PutValue("Point ajouté");
        records->GetFields()->GetItem("X")->PutValue(i * 1.25);
        records->Update();
    }
    connection->CommitTrans();
    require(records->GetRecordCount() >= addedCount, "records added");
}

void addByHand(const std::string& path) {
    Handle handle(path);
    Prepared insert(handle, "INSERT INTO AJOUTS(NUM, NOM, X) VALUES (?, ?, ?)");
    handle.run("BEGIN");
    for (int i = 0; i < addedCount; ++i) {
        sqlite3_bind_int(insert, 1, i);
        sqlite3_bind_text(insert, 2, "Point ajout\xC3\xA9", -1, SQLITE_TRANSIENT);
        sqlite3_bind_double(insert, 3, i * 1.25);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    handle.run("COMMIT");
}

/// Largest memory of a process of its own that opens the table, reads rows and goes through all positions.
void printPeakMemory([[maybe_unused]] const std::string& path) {
#ifndef _WIN32
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        openAndRead(path);
        walk(path);
        _exit(0);
    }
    int status = 0;
    rusage usage{};
    require(wait4(child, &status, 0, &usage) == child && status == 0, "the process that is measured");
    std::printf("%-56s %10.1f MB  (at most 64)%s\n", "ado: peak memory, 1,000,000 rows opened and walked",
                static_cast<double>(usage.ru_maxrss) / 1024, usage.ru_maxrss <= 64 * 1024 ? "" : "  MISSED");
#endif
}

}  // namespace

int main() {
    const std::string path = makeTable(platform::theFiles().temporaryFolder() + "kestra_bench_ado.db");
    printPeakMemory(path);
    bench::sideBySide(
        "ado: open 1,000,000 x 10, rows 1-1,000 and the last", 1.3, [&] { openAndRead(path); },
        "SQLite: keys, rows", [&] { openAndReadByHand(path); }, 5);
    bench::sideBySide(
        "ado: the same beside a mere count", 0, [&] { openAndRead(path); }, "SQLite: count(*), rows",
        [&] { openAndCountByHand(path); }, 5);
    bench::sideBySide(
        "ado: walk 1,000,000 rows, three fields by name", 1.6, [&] { walk(path); }, "SQLite: SELECT of three",
        [&] { walkByHand(path); }, 5);
    const auto emptied = [&] {
        Handle handle(path);
        handle.run(addedTable);
    };
    bench::againstBest("ado: 100,000 x AddNew, 3 values, Update in a batch", 1.5,
                       {"ado", [&] { add(path); }, emptied},
                       {{"SQLite: prepared inserts", [&] { addByHand(path); }, emptied}}, 5);
    platform::theFiles().remove(path.c_str());
}
