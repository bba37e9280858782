#include <algorithm>
#include <utility>

#include <platform/ado/embedded/database.h>
#include <platform/cp1252.h>
#ifndef _WIN32
#include <platform/linux/drive_paths.h>
#endif

namespace ado20::embedded {

namespace {

struct Failure {
    int primaryCode;
    HResult result;
    const char* text;
};

constexpr Failure failures[] = {
    {SQLITE_ERROR, hrErrorsInCommand, "Erreur dans la commande"},
    {SQLITE_BUSY, hrFail, "La base de données est verrouillée"},
    {SQLITE_LOCKED, hrFail, "La table est verrouillée"},
    {SQLITE_NOMEM, hrOutOfMemory, "Mémoire insuffisante"},
    {SQLITE_READONLY, hrPermissionDenied, "La base de données est en lecture seule"},
    {SQLITE_IOERR, hrFail, "Erreur de lecture ou d'écriture"},
    {SQLITE_CORRUPT, hrFail, "La base de données est endommagée"},
    {SQLITE_FULL, hrMediumFull, "Le disque est plein"},
    {SQLITE_CANTOPEN, hrFail, "Impossible d'ouvrir la base de données"},
    {SQLITE_TOOBIG, hrErrorsOccurred, "La valeur est trop grande"},
    {SQLITE_CONSTRAINT, hrIntegrityViolation, "Violation d'une contrainte"},
    {SQLITE_MISMATCH, hrErrorsOccurred, "La valeur ne convient pas au champ"},
    {SQLITE_AUTH, hrPermissionDenied, "Opération interdite"},
    {SQLITE_NOTADB, hrFail, "Format de base de données non reconnu"},
};
constexpr Failure otherFailure = {0, hrFail, "Erreur de la base de données"};
constexpr Failure noSuchTable = {SQLITE_ERROR, hrNoTable, "Table introuvable"};

const Failure& failureOf(int code, std::string_view message) {
    if (message.starts_with("no such table")) return noSuchTable;
    const auto found = std::find_if(std::begin(failures), std::end(failures), [&](const Failure& failure) {
        return failure.primaryCode == (code & 0xFF);
    });
    return found != std::end(failures) ? *found : otherFailure;
}

/// Takes one character off a UTF-8 text and gives its upper-case code, of Windows-1252 where that has it. A
/// text that is not UTF-8 is taken byte by byte.
unsigned takeUpper(const unsigned char*& at, const unsigned char* end) {
    const unsigned first = *at++;
    if (first < 0x80) return platform::upperCase1252[first];
    const unsigned length = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
    unsigned code = length == 0 ? first : first & (0x3Fu >> length);
    for (unsigned i = 0; i < length && at < end; ++i) code = code << 6 | (*at++ & 0x3Fu);
    switch (code) {
        case 0x153:
            return 0x152;  // œ
        case 0x161:
            return 0x160;  // š
        case 0x17E:
            return 0x17D;  // ž
        case 0xFF:
            return 0x178;  // ÿ
        default:
            return code >= 0xA0 && code < 0xFF ? platform::upperCase1252[code] : code;
    }
}

int compareTexts(void*, int firstSize, const void* first, int secondSize, const void* second) {
    const auto* a = static_cast<const unsigned char*>(first);
    const auto* b = static_cast<const unsigned char*>(second);
    const unsigned char* const endA = a + firstSize;
    const unsigned char* const endB = b + secondSize;
    while (a < endA && b < endB) {
        const unsigned upperA = takeUpper(a, endA), upperB = takeUpper(b, endB);
        if (upperA != upperB) return upperA < upperB ? -1 : 1;
    }
    return (a < endA) - (b < endB);
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

}  // namespace

std::string sqlitePath(const std::string& name) {
    if (name.empty() || name == ":memory:") return name;
#ifdef _WIN32
    return platform::utf8From1252(name);
#else
    return platform::posixPath(name.c_str());
#endif
}

std::shared_ptr<Database> Database::open(const std::string& path, int flags, int busyMilliseconds) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(sqlitePath(path).c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (handle == nullptr) throw _com_error(hrOutOfMemory);
    std::shared_ptr<Database> database(new Database(handle));
    if (code != SQLITE_OK) database->fail();
    database->prepareForUse(busyMilliseconds);
    return database;
}

std::shared_ptr<Database> Database::openPrivate() {
    std::shared_ptr<Database> database = open("", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, 0);
    database->run("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF");
    return database;
}

/// A file may come from anywhere: its schema must not reach functions that act, and pages are looked at
/// before they are believed. The first read tells whether it is a database at all.
void Database::prepareForUse(int busyMilliseconds) {
    sqlite3_extended_result_codes(m_handle, 1);
    sqlite3_busy_timeout(m_handle, busyMilliseconds);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_create_collation(m_handle, textCollation, SQLITE_UTF8, nullptr, compareTexts);
    run("PRAGMA cell_size_check=ON; PRAGMA foreign_keys=ON; SELECT count(*) FROM sqlite_schema");
}

Database::~Database() {
    sqlite3_close_v2(m_handle);
}

void Database::run(const char* sql) {
    if (sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

void Database::fail() {
    const int code = sqlite3_extended_errcode(m_handle);
    const std::string message = platform::cp1252FromUtf8(sqlite3_errmsg(m_handle));
    const Failure& failure = failureOf(code, message);
    const std::string description = std::string(failure.text) + " : " + message;
    m_errors.assign(1, {failure.result, code, description, "SQLite"});
    throw _com_error(failure.result, description, "SQLite");
}

Statement::Statement(Database& database, std::string_view sql, std::string_view* tail)
    : m_database(&database) {
    const char* rest = nullptr;
    if (sql.size() > INT32_MAX) throw _com_error(hrErrorsInCommand);
    if (sqlite3_prepare_v3(database.handle(), sql.data(), static_cast<int>(sql.size()), 0, &m_statement,
                           &rest) != SQLITE_OK)
        database.fail();
    const std::string_view after =
        rest != nullptr ? sql.substr(static_cast<std::size_t>(rest - sql.data())) : std::string_view();
    if (tail != nullptr) {
        *tail = after;
    } else if (!isBlank(after)) {
        // The destructor of what was not constructed does not run.
        sqlite3_finalize(m_statement);
        throw _com_error(hrErrorsInCommand, "Erreur dans la commande : une seule instruction est attendue",
                         "SQLite");
    }
}

Statement::Statement(Statement&& other) noexcept
    : m_database(other.m_database), m_statement(std::exchange(other.m_statement, nullptr)) {}

Statement& Statement::operator=(Statement&& other) noexcept {
    std::swap(m_database, other.m_database);
    std::swap(m_statement, other.m_statement);
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return sqlite3_reset(m_statement), false;
    // Resetting keeps the error code and its message, and lets go of the locks.
    sqlite3_reset(m_statement);
    m_database->fail();
}

void Statement::run() {
    while (step()) {
    }
}

void Statement::bind(int parameter, std::int64_t value) {
    check(sqlite3_bind_int64(m_statement, parameter, value));
}

void Statement::bind(int parameter, double value) {
    check(sqlite3_bind_double(m_statement, parameter, value));
}

void Statement::bindNull(int parameter) {
    check(sqlite3_bind_null(m_statement, parameter));
}

void Statement::bind(int parameter, std::string_view text) {
    check(
        sqlite3_bind_text64(m_statement, parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

// A null pointer would bind null.
void Statement::bindKept(int parameter, std::string_view text) {
    const char* const data = text.data() != nullptr ? text.data() : "";
    check(sqlite3_bind_text64(m_statement, parameter, data, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::bindBytes(int parameter, std::string_view bytes) {
    const char* const data = bytes.data() != nullptr ? bytes.data() : "";
    check(sqlite3_bind_blob64(m_statement, parameter, data, bytes.size(), SQLITE_STATIC));
}

std::string quotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

}  // namespace ado20::embedded
