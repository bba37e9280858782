#include <algorithm>
#include <array>

#include <platform/ado/embedded/row_source.h>
#include <platform/ado/embedded/sql_tokens.h>
#include <platform/cp1252.h>

namespace ado20::embedded {

namespace {

std::string_view textOr(const char* text, std::string_view other = {}) {
    return text != nullptr ? std::string_view(text) : other;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Name and kind of a table or view as the database spells them.
struct Listed {
    std::string name;
    bool isTable = false;
    bool found = false;
};

Listed lookUp(Database& database, std::string_view name) {
    Statement find(database,
                   "SELECT name, type = 'table' FROM sqlite_schema WHERE type IN ('table', 'view') AND name "
                   "= ?1 COLLATE NOCASE "
                   "UNION ALL SELECT ?1, 1 WHERE lower(?1) IN ('sqlite_schema', 'sqlite_master')");
    find.bind(1, name);
    const ResetAtEnd reset(find);
    if (!find.step()) return {};
    return {reinterpret_cast<const char*>(sqlite3_column_text(find.get(), 0)),
            sqlite3_column_int(find.get(), 1) != 0, true};
}

/// A primary key that is not the rowid under another name (it has several columns, or is declared DESC) has
/// an index.
bool hasKeyIndex(Database& database, const char* table) {
    Statement find(database, "SELECT 1 FROM pragma_index_list(?1) WHERE origin = 'pk'");
    find.bind(1, std::string_view(table));
    const ResetAtEnd reset(find);
    return find.step();
}

/// Nullability and the key of a table's column.
void describe(Database& database, const char* table, const char* origin, Column& column) {
    const char* type = nullptr;
    int notNull = 0, primary = 0, counter = 0;
    if (sqlite3_table_column_metadata(database.handle(), nullptr, table, origin, &type, nullptr, &notNull,
                                      &primary, &counter) != SQLITE_OK)
        return;
    column.isKey =
        primary != 0 && platform::equalNoCase1252(textOr(type), "INTEGER") && !hasKeyIndex(database, table);
    if (primary != 0) column.attributes |= adFldKeyColumn;
    if (notNull != 0 || column.isKey) column.attributes &= ~(adFldIsNullable | adFldMayBeNull);
}

/// The columns of a prepared statement.
std::vector<Column> columnsOf(Database& database, const Statement& statement) {
    std::vector<Column> columns(static_cast<std::size_t>(statement.columnCount()));
    for (int i = 0; i < statement.columnCount(); ++i) {
        Column& column = columns[static_cast<std::size_t>(i)];
        column.name = platform::cp1252FromUtf8(textOr(sqlite3_column_name(statement.get(), i)));
        declare(column, textOr(sqlite3_column_decltype(statement.get(), i)));
        const char* origin = sqlite3_column_origin_name(statement.get(), i);
        if (origin == nullptr) continue;
        column.expression = quotedName(origin);
        describe(database, sqlite3_column_table_name(statement.get(), i), origin, column);
    }
    return columns;
}

/// A name of the key that no column has, empty when all are taken or the table has none.
std::string keyOf(Database& database, const std::string& from, const std::string& alias) {
    const Statement all(database, "SELECT * FROM " + from);
    for (const char* name : {"rowid", "_rowid_", "oid"}) {
        bool taken = false;
        for (int i = 0; i < all.columnCount(); ++i)
            taken = taken || platform::equalNoCase1252(textOr(sqlite3_column_name(all.get(), i)), name);
        if (taken) continue;
        try {
            std::string key = alias + '.' + name;
            Statement probe(database, std::string("SELECT ").append(key).append(" FROM ").append(from));
            return key;
        } catch (const _com_error&) {
            return {};
        }
    }
    return {};
}

/// The source of a query of one table, when it is one: its database stays null otherwise.
RowSource simpleSource(const std::shared_ptr<Database>& database, std::string_view sql,
                       const std::vector<Column>& columns, const Statement& statement) {
    RowSource source;
    const std::optional<SimpleQuery> query = simpleQuery(sql);
    if (!query) return source;
    const Listed listed = lookUp(*database, unquotedName(query->table));
    if (!listed.found || !listed.isTable) return source;
    for (int i = 0; i < statement.columnCount(); ++i)
        if (textOr(sqlite3_column_table_name(statement.get(), i)) != listed.name ||
            textOr(sqlite3_column_database_name(statement.get(), i)) != "main")
            return source;
    source.key = keyOf(*database, std::string(query->from), std::string(query->alias));
    if (source.key.empty()) return source;
    source.from = query->from;
    source.table = quotedName(listed.name);
    source.list = query->list;
    source.condition = query->condition;
    source.order = query->order;
    source.columns = columns;
    source.database = database;
    return source;
}

/// Types of columns that are computed: what their first value is.
void inferType(Column& column, int storageClass) {
    switch (storageClass) {
        case SQLITE_INTEGER:
            declare(column, adInteger, 0);
            break;
        case SQLITE_FLOAT:
            declare(column, adDouble, 0);
            break;
        case SQLITE_BLOB:
            declare(column, adLongVarBinary, 0);
            break;
        default:
            break;
    }
}

/// The rows of a statement, copied.
RowSource copySource(Statement& statement, std::vector<Column> columns) {
    std::vector<bool> inferred(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
        inferred[i] = sqlite3_column_decltype(statement.get(), static_cast<int>(i)) != nullptr;
    RowSource copy = privateSource(std::move(columns));
    copy.table.clear();
    Statement insert = insertStatement(copy);
    copy.database->run("BEGIN");
    while (statement.step()) {
        for (int i = 0; i < statement.columnCount(); ++i) {
            const int kind = sqlite3_column_type(statement.get(), i);
            const auto at = static_cast<std::size_t>(i);
            if (!inferred[at] && kind != SQLITE_NULL) inferType(copy.columns[at], kind), inferred[at] = true;
            sqlite3_bind_value(insert.get(), i + 1, sqlite3_column_value(statement.get(), i));
        }
        insert.run();
    }
    copy.database->run("COMMIT");
    for (Column& column : copy.columns) column.attributes &= ~adFldUpdatable;
    return copy;
}

}  // namespace

std::string RowSource::keyStatement(const std::string& sort) const {
    const bool needsList = !isPlain() && !list.empty() && list != "*";
    std::string sql = "SELECT " + (needsList ? list + ", " : std::string()) + key + " FROM " + from;
    if (!condition.empty()) sql += " WHERE " + condition;
    if (!sort.empty() && !order.empty()) return sql + " ORDER BY " + sort + ", " + order;
    if (!sort.empty()) return sql + " ORDER BY " + sort + ", " + key;
    if (!order.empty()) return sql + " ORDER BY " + order;
    return condition.empty() ? sql + " ORDER BY " + key : sql;
}

std::string unquotedName(std::string_view name) {
    name = trimmed(name);
    if (name.size() < 2) return std::string(name);
    const char open = name.front(), close = name.back();
    const bool bracketed = open == '[' && close == ']';
    if (!bracketed && !((open == '"' || open == '`') && open == close)) return std::string(name);
    std::string inner;
    for (std::size_t i = 1; i + 1 < name.size(); ++i) {
        inner += name[i];
        if (!bracketed && name[i] == open && i + 2 < name.size() && name[i + 1] == open) ++i;
    }
    return inner;
}

bool hasTable(Database& database, std::string_view name) {
    return lookUp(database, unquotedName(name)).found;
}

std::vector<Column> columnsOfTable(Database& database, std::string_view name) {
    return columnsOf(database, Statement(database, "SELECT * FROM " + quotedName(name)));
}

RowSource tableSource(const std::shared_ptr<Database>& database, std::string_view name) {
    const Listed listed = lookUp(*database, unquotedName(name));
    if (!listed.found)
        throw _com_error(
            hrNoTable, "Table ou requête introuvable : " + platform::cp1252FromUtf8(trimmed(name)), "SQLite");
    return statementSource(database, "SELECT * FROM " + quotedName(listed.name));
}

RowSource statementSource(const std::shared_ptr<Database>& database, std::string_view sql) {
    Statement statement(*database, sql);
    if (!statement) throw _com_error(hrErrorsInCommand, "Erreur dans la commande : elle est vide", "SQLite");
    if (statement.columnCount() == 0) return statement.run(), RowSource();
    std::vector<Column> columns = columnsOf(*database, statement);
    RowSource simple = simpleSource(database, sql, columns, statement);
    return simple.database != nullptr ? simple : copySource(statement, std::move(columns));
}

RowSource privateSource(std::vector<Column> columns) {
    RowSource source;
    source.database = Database::openPrivate();
    source.from = source.table = "records";
    source.key = "rowid";
    std::string definition;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].expression = "c" + std::to_string(i);
        columns[i].isKey = false;
        definition += (i > 0 ? ", " : "") + columns[i].expression;
    }
    source.columns = std::move(columns);
    source.database->run(("CREATE TABLE records(" + definition + ")").c_str());
    return source;
}

Statement insertStatement(const RowSource& source) {
    std::string parameters;
    for (std::size_t i = 0; i < source.columns.size(); ++i) parameters += i > 0 ? ", ?" : "?";
    return Statement(*source.database, "INSERT INTO " + source.from + " VALUES (" + parameters + ")");
}

bool startsLikeStatement(std::string_view text) {
    const std::string_view trimmedText = trimmed(text);
    const std::string word =
        platform::upperCased1252(trimmedText.substr(0, trimmedText.find_first_of(" \t\r\n(*")));
    constexpr std::array words = {"SELECT",  "WITH",      "VALUES",  "INSERT", "UPDATE", "DELETE",
                                  "REPLACE", "CREATE",    "DROP",    "ALTER",  "PRAGMA", "EXPLAIN",
                                  "ANALYZE", "VACUUM",    "REINDEX", "BEGIN",  "COMMIT", "ROLLBACK",
                                  "END",     "SAVEPOINT", "RELEASE"};
    return word.size() < trimmedText.size() && std::find(words.begin(), words.end(), word) != words.end();
}

}  // namespace ado20::embedded
