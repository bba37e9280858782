// Recordsets beside the SQLite C interface by hand, and a table as CSV beside sqlite3's own: a table of
// 1,000,000 records of 10 fields, the same file for both.
#include <cstdlib>
#include <filesystem>
#include <string>

#include <kestra/database/my_recordset_ptr.h>
#include <sqlite3.h>

#include "side_by_side.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* table =
    "CREATE TABLE P (NUM INTEGER NOT NULL PRIMARY KEY, MATRICULE VARCHAR(12), X DOUBLE, Y DOUBLE, Z DOUBLE, "
    "CODE VARCHAR(4), NATURE VARCHAR(40), STATION INTEGER, DATE_LEVE DATETIME, OBSERVATIONS MEMO)";
constexpr const char* million =
    "INSERT INTO P WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000000) SELECT "
    "i, "
    "'PT.' || i, 1527000 + i % 9973 / 10.0, 4194000 + i % 7919 / 10.0, CASE WHEN i % 7 THEN 148.5 + i % 97 / "
    "100.0 "
    "END, 'BOR', 'Borne du géomètre', i / 105, 45363 + i % 30 + i % 86400 / 86400.0, "
    "CASE WHEN i % 40 = 0 THEN 'Point levé deux fois' END FROM n";
constexpr const char* small = "CREATE TABLE T (NUM INTEGER NOT NULL PRIMARY KEY, NOM VARCHAR(20), X DOUBLE)";
constexpr int added = 100'000;

void require(bool isGood) {
    if (!isGood) std::abort();
}

_ConnectionPtr open(const char* file) {
    Database database;
    const _ConnectionPtr connection = database.OpenDB(file, 0, ado20::adUseClient);
    require(bool(connection));
    return connection;
}

/// A statement of the C interface, prepared on a file of its own.
class Statement {
  public:
    Statement(const char* file, const char* text) {
        require(sqlite3_open(file, &m_database) == SQLITE_OK);
        require(sqlite3_prepare_v2(m_database, text, -1, &m_statement, nullptr) == SQLITE_OK);
    }
    ~Statement() {
        sqlite3_finalize(m_statement);
        sqlite3_close(m_database);
    }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    void run(const char* text) {
        require(sqlite3_exec(m_database, text, nullptr, nullptr, nullptr) == SQLITE_OK);
    }
    operator sqlite3_stmt*() const { return m_statement; }

  private:
    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_statement = nullptr;
};

void walkOurs(const char* file) {
    MyRecordsetPtr records;
    require(records.Open("P", open(file), ado20::adCmdTable, ado20::adOpenForwardOnly,
                         ado20::adLockReadOnly) == 0);
    CString name;
    double x = 0, sum = 0;
    long number = 0;
    for (; records.Eof() == 0; records.MoveNext()) {
        records.GetValue("NUM", number);
        records.GetValue("MATRICULE", name);
        records.GetValue("X", x);
        sum += x + static_cast<double>(number) + name.GetLength();
    }
    bench::keep(sum);
}

void walkTheirs(const char* file) {
    const Statement statement(file, "SELECT NUM, MATRICULE, X FROM P");
    double sum = 0;
    std::string name;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        name = reinterpret_cast<const char*>(sqlite3_column_text(statement, 1));
        sum += sqlite3_column_double(statement, 2) + sqlite3_column_int(statement, 0) + double(name.size());
    }
    bench::keep(sum);
}

void addOurs(const char* file) {
    const _ConnectionPtr connection = open(file);
    connection->Execute("DELETE FROM T");
    MyRecordsetPtr records;
    require(records.Open("T", connection, ado20::adCmdTable, ado20::adOpenKeyset, ado20::adLockOptimistic) ==
            0);
    connection->BeginTrans();
    for (int i = 1; i <= added; ++i) {
        records.AddNew();
        records.SetValue("NUM", i);
        records.SetValue("NOM", "Borne OGE");
        records.SetValue("X", i * 0.5);
        require(records.Update(0) == 0);
    }
    connection->CommitTrans();
}

void addTheirs(const char* file) {
    Statement statement(file, "INSERT INTO T (NUM, NOM, X) VALUES (?, ?, ?)");
    statement.run("DELETE FROM T");
    statement.run("BEGIN");
    for (int i = 1; i <= added; ++i) {
        sqlite3_bind_int(statement, 1, i);
        sqlite3_bind_text(statement, 2, "Borne OGE", -1, SQLITE_TRANSIENT);
        sqlite3_bind_double(statement, 3, i * 0.5);
        require(sqlite3_step(statement) == SQLITE_DONE && sqlite3_reset(statement) == SQLITE_OK);
    }
    statement.run("COMMIT");
}

}  // namespace

int main() {
    const fs::path folder = fs::temp_directory_path() / "kestra_bench_records";
    fs::remove_all(folder);
    fs::create_directories(folder);
    const std::string file = (folder / "points.mdb").string();
    Database database;
    require(*database.CreateDatabase(file.c_str()) != '\0');
    for (const char* statement : {table, million, small}) open(file.c_str())->Execute(statement);

    bench::sideBySide(
        "GetValue, 3 fields of 1,000,000 records", 1.6, [&] { walkOurs(file.c_str()); }, "SQLite C interface",
        [&] { walkTheirs(file.c_str()); }, 5);
    bench::sideBySide(
        "AddNew, 3 SetValue, Update: 100,000 in a batch", 1.5, [&] { addOurs(file.c_str()); },
        "prepared inserts", [&] { addTheirs(file.c_str()); }, 5);
#ifdef KESTRA_BENCH_HOST
    const std::string ours =
        std::string(KESTRA_BENCH_HOST) + " table " + file + " P --csv > " + file + ".ours";
    const std::string theirs = "sqlite3 -csv " + file + " 'SELECT * FROM P' > " + file + ".theirs";
    bench::sideBySide(
        "kestra table --csv, 1,000,000 records of 10 fields", 1.5,
        [&] { require(std::system(ours.c_str()) == 0); }, "sqlite3 -csv",
        [&] { require(std::system(theirs.c_str()) == 0); }, 5);
#endif
    fs::remove_all(folder);
}
