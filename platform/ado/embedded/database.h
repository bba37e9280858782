#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

#include <platform/ado/ado.h>

/// SQLite under the words of ADO. Everything in here is UTF-8, as SQLite has it; names and texts are turned
/// into Windows-1252 where they leave (`column.h`, `fail`).
namespace ado20::embedded {

/// An open database. Failures throw `_com_error` with a French description that ends in SQLite's own words.
class Database {
  public:
    /// `path` as <platform/files.h> names files; ":memory:" and "" (a temporary file of its own) as SQLite
    /// has them. `flags` are SQLite's. What is not a database fails here.
    static std::shared_ptr<Database> open(const std::string& path, int flags, int busyMilliseconds);
    /// A temporary database for rows that are nobody else's: in memory while they are few, else in a file.
    static std::shared_ptr<Database> openPrivate();
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    sqlite3* handle() const { return m_handle; }
    /// Runs statements that give no rows.
    void run(const char* sql);
    /// Throws the failure that SQLite reports for its last call.
    [[noreturn]] void fail();
    const std::vector<ProviderError>& errors() const { return m_errors; }
    bool isReadOnly() const { return sqlite3_db_readonly(m_handle, "main") == 1; }
    bool isInTransaction() const { return sqlite3_get_autocommit(m_handle) == 0; }

  private:
    explicit Database(sqlite3* handle) : m_handle(handle) {}
    void prepareForUse(int busyMilliseconds);

    sqlite3* m_handle;
    std::vector<ProviderError> m_errors;
};

/// A prepared statement, finalized by the destructor. An empty one has no statement.
class Statement {
  public:
    Statement() = default;
    /// Prepares the first statement of a text. `tail`, when not null, gets what follows it; otherwise nothing
    /// may.
    Statement(Database& database, std::string_view sql, std::string_view* tail = nullptr);
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&& other) noexcept;
    ~Statement() { sqlite3_finalize(m_statement); }

    explicit operator bool() const { return m_statement != nullptr; }
    sqlite3_stmt* get() const { return m_statement; }
    int columnCount() const { return sqlite3_column_count(m_statement); }
    /// True for a row. At the end, and on failure, the statement is reset.
    bool step();
    /// Runs a statement that gives no rows (or whose rows do not matter) to its end.
    void run();
    void reset() { sqlite3_reset(m_statement); }
    void bind(int parameter, std::int64_t value);
    void bind(int parameter, double value);
    void bindNull(int parameter);
    /// The text is copied.
    void bind(int parameter, std::string_view text);
    /// The text, the bytes must stay until the statement has run.
    void bindKept(int parameter, std::string_view text);
    void bindBytes(int parameter, std::string_view bytes);

  private:
    void check(int code) {
        if (code != SQLITE_OK) m_database->fail();
    }

    Database* m_database = nullptr;
    sqlite3_stmt* m_statement = nullptr;
};

/// Resets a statement when the scope ends, so that no lock outlives a call.
class ResetAtEnd {
  public:
    explicit ResetAtEnd(Statement& statement) : m_statement(statement) {}
    ~ResetAtEnd() { m_statement.reset(); }
    ResetAtEnd(const ResetAtEnd&) = delete;
    ResetAtEnd& operator=(const ResetAtEnd&) = delete;

  private:
    Statement& m_statement;
};

/// An identifier between quotes that SQLite takes as nothing else.
std::string quotedName(std::string_view name);

/// The collation that orders texts as the library does: Windows-1252, without regard to case.
constexpr const char* textCollation = "KESTRA_TEXT";

/// The path that SQLite takes (UTF-8) for a name as <platform/files.h> has it.
std::string sqlitePath(const std::string& name);

}  // namespace ado20::embedded
