#include <utility>

#include <platform/ado/connection_string.h>
#include <platform/ado/embedded/connection.h>
#include <platform/ado/embedded/recordset.h>
#include <platform/ado/embedded/schema.h>
#include <platform/cp1252.h>
#include <platform/files.h>

namespace ado20::embedded {

namespace {

constexpr int busyMilliseconds = 5000;

/// The key "Busy Timeout", in milliseconds: how long a locked database is waited for.
int busyTimeOf(const ConnectionString& string) {
    std::int32_t milliseconds = busyMilliseconds;
    if (const std::string* text = string.find("Busy Timeout")) toInt32(Variant(*text).view(), milliseconds);
    return milliseconds < 0 ? 0 : milliseconds;
}

bool wantsToWrite(ConnectModeEnum mode) {
    return (mode & adModeReadWrite) == 0 || (mode & adModeWrite) != 0;
}

bool isBlank(std::string_view sql) {
    return sql.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

std::string savepoint(long level) {
    return "level_" + std::to_string(level);
}

}  // namespace

Connection::~Connection() {
    closeRecordsets();
}

HResult Connection::Open(std::string_view connectionString, std::string_view, std::string_view, long) {
    if (m_database != nullptr) throw _com_error(hrObjectOpen);
    openFile(connectionString.empty() ? std::string_view(m_string) : connectionString, false);
    return hrOk;
}

void Connection::openFile(std::string_view connectionString, bool create) {
    const std::string text(connectionString);
    const ConnectionString string(resolveDataLink(text));
    if (!isEmbeddedProvider(string.value("Provider"))) throw _com_error(hrProviderNotFound);
    const std::string path = string.value("Data Source");
    if (path.empty())
        throw _com_error(
            hrFail, "Impossible d'ouvrir la base de données : la chaîne de connexion ne nomme pas de fichier",
            "SQLite");
    const std::string* modeText = string.find("Mode");
    const ConnectModeEnum mode = modeText != nullptr ? modeOfText(*modeText) : m_mode;
    if (create && platform::theFiles().kind(path.c_str()) != platform::FileKind::missing)
        throw _com_error(hrDatabaseExists);
    const int flags = (wantsToWrite(mode) || create ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY) |
                      (create || path == ":memory:" ? SQLITE_OPEN_CREATE : 0);
    m_openErrors.clear();
    try {
        m_database = Database::open(path, flags, busyTimeOf(string));
    } catch (const _com_error& error) {
        m_openErrors.assign(1, {error.Error(), 0, error.Description(), error.Source()});
        throw;
    }
    // An empty file does not say that it is a database yet; another program should see one.
    if (create) m_database->run("PRAGMA user_version=1; PRAGMA user_version=0");
    m_string = text;
    const int access = m_database->isReadOnly() ? adModeRead : adModeReadWrite;
    m_mode = static_cast<ConnectModeEnum>((mode & ~adModeReadWrite) | access);
    m_level = 0;
}

HResult Connection::Close() {
    database();
    closeRecordsets();
    m_openErrors.clear();
    if (m_database->isInTransaction()) m_database->run("ROLLBACK");
    m_database.reset();
    m_mode = adModeUnknown;
    return hrOk;
}

void Connection::closeRecordsets() {
    for (Recordset* recordset : std::exchange(m_recordsets, {})) recordset->abandon();
}

void Connection::forgetRows() {
    for (Recordset* recordset : m_recordsets) recordset->forgetRows();
}

const std::shared_ptr<Database>& Connection::database() {
    if (m_database == nullptr) throw _com_error(hrObjectClosed);
    return m_database;
}

void Connection::PutConnectionString(std::string_view connectionString) {
    if (m_database != nullptr) throw _com_error(hrObjectOpen);
    m_string = connectionString;
}

void Connection::PutMode(ConnectModeEnum mode) {
    if (m_database != nullptr) throw _com_error(hrObjectOpen);
    m_mode = mode;
}

std::vector<ProviderError> Connection::GetErrors() {
    return m_database != nullptr ? m_database->errors() : m_openErrors;
}

/// Statements up to the first that gives rows are run; those rows are the answer, and it has to be the last
/// one.
_RecordsetPtr Connection::Execute(std::string_view command, std::int64_t* recordsAffected, long options) {
    Database& database = *this->database();
    std::string sql = platform::utf8From1252(command);
    if (options != adOptionUnspecified && (options & (adCmdTable | adCmdTableDirect)) != 0)
        sql = "SELECT * FROM " + quotedName(platform::utf8From1252(unquotedName(command)));
    const std::int64_t before = sqlite3_total_changes64(database.handle());
    Pointer<Recordset> result(new Recordset);
    std::string_view rest = sql;
    std::int64_t affected = 0;
    while (!isBlank(rest)) {
        std::string_view tail;
        Statement statement(database, rest, &tail);
        const std::string_view text = rest.substr(0, rest.size() - tail.size());
        rest = tail;
        if (!statement) continue;
        if (statement.columnCount() == 0 || !isBlank(rest)) {
            statement.run();
            continue;
        }
        statement = Statement();
        const Pointer<Connection> self(this);
        result->openOver(statementSource(m_database, text), self);
        affected = -1;
    }
    if (affected == 0) affected = sqlite3_total_changes64(database.handle()) - before;
    if (affected > 0) forgetRows();
    if (recordsAffected != nullptr) *recordsAffected = affected;
    return _RecordsetPtr(result.get());
}

long Connection::BeginTrans() {
    Database& database = *this->database();
    if (m_level == 0)
        // The lock is taken now, where it can be waited for, rather than at the first change, where it could
        // not.
        database.run(database.isReadOnly() ? "BEGIN" : "BEGIN IMMEDIATE");
    else
        database.run(("SAVEPOINT " + savepoint(m_level)).c_str());
    return ++m_level;
}

HResult Connection::CommitTrans() {
    return endTransaction("COMMIT", "RELEASE " + savepoint(m_level - 1));
}

HResult Connection::RollbackTrans() {
    const std::string inner = savepoint(m_level - 1);
    const HResult result = endTransaction("ROLLBACK", "ROLLBACK TO " + inner + "; RELEASE " + inner);
    forgetRows();
    return result;
}

/// After a full disk or a failed write, SQLite may have rolled the whole transaction back by itself.
HResult Connection::endTransaction(const char* outermost, const std::string& inner) {
    Database& database = *this->database();
    if (m_level == 0) throw _com_error(hrIllegalOperation);
    if (!database.isInTransaction()) {
        m_level = 0;
        throw _com_error(hrFail, "La transaction a été annulée à la suite d'une erreur", "SQLite");
    }
    database.run(m_level == 1 ? outermost : inner.c_str());
    --m_level;
    return hrOk;
}

_RecordsetPtr Connection::OpenSchema(SchemaEnum schema) {
    Pointer<Recordset> recordset(new Recordset);
    recordset->openOver(schemaSource(*database(), schema), Pointer<Connection>(this));
    return _RecordsetPtr(recordset.get());
}

}  // namespace ado20::embedded
