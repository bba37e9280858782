#pragma once
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <platform/ado/embedded/column.h>

/// Where a recordset's rows come from, in SQL. Every source has a 64-bit key: it is a table's rowid, of the
/// database or of a private copy.
namespace ado20::embedded {

struct RowSource {
    std::shared_ptr<Database> database;
    std::string from;       ///< the table as it stands behind FROM
    std::string table;      ///< the table as it stands behind UPDATE; empty for rows that cannot be written
    std::string key;        ///< the expression of the key
    std::string list;       ///< what the statement selected: condition and order may refer to it
    std::string condition;  ///< behind WHERE
    std::string order;      ///< behind ORDER BY
    std::vector<Column> columns;

    /// A column, and the key, as they stand where the table may have an alias, and where it has none.
    std::string qualified(const Column& column) const {
        return key.substr(0, key.size() - keyName().size()) + column.expression;
    }
    std::string_view keyName() const {
        const auto dot = key.rfind('.');
        return dot == std::string::npos ? std::string_view(key) : std::string_view(key).substr(dot + 1);
    }
    /// Rows come in the order of their keys, all of the table.
    bool isPlain() const { return condition.empty() && order.empty(); }
    /// The statement that gives the keys in order (`sort` first, if not empty); the key is its last column.
    std::string keyStatement(const std::string& sort) const;
};

/// A table or a view (`name` as a host writes it: [x], "x" or bare; UTF-8). Throws hrNoTable.
RowSource tableSource(const std::shared_ptr<Database>& database, std::string_view name);
/// True when there is such a table or view.
bool hasTable(Database& database, std::string_view name);

/// The columns of a table or view, by its bare name.
std::vector<Column> columnsOfTable(Database& database, std::string_view name);

/// The rows of a statement (UTF-8); its `database` is null when the statement gave no rows, it has run then.
RowSource statementSource(const std::shared_ptr<Database>& database, std::string_view sql);

/// An empty table of its own with these columns; rows are put in by `insertStatement`.
RowSource privateSource(std::vector<Column> columns);
/// INSERT with one parameter for each column of a private source.
Statement insertStatement(const RowSource& source);

/// Whether a text is to be taken as a statement rather than as a name: its first word says so.
bool startsLikeStatement(std::string_view text);

/// A name without its [ ], " " or ` `.
std::string unquotedName(std::string_view name);

}  // namespace ado20::embedded
