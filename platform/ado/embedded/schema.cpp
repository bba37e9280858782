#include <platform/ado/embedded/schema.h>
#include <platform/cp1252.h>

namespace ado20::embedded {

namespace {

constexpr std::int64_t nameSize = 255;

Column schemaColumn(const char* name, DataTypeEnum type) {
    Column column;
    column.name = name;
    declare(column, type, isTextType(type) ? nameSize : 0);
    column.attributes &= ~adFldUpdatable;
    return column;
}

RowSource readOnlySource(std::vector<Column> columns) {
    RowSource source = privateSource(std::move(columns));
    source.table.clear();
    return source;
}

RowSource tables(Database& database) {
    RowSource source =
        readOnlySource({schemaColumn("TABLE_CATALOG", adVarWChar), schemaColumn("TABLE_SCHEMA", adVarWChar),
                        schemaColumn("TABLE_NAME", adVarWChar), schemaColumn("TABLE_TYPE", adVarWChar),
                        schemaColumn("TABLE_GUID", adVarWChar), schemaColumn("DESCRIPTION", adVarWChar),
                        schemaColumn("TABLE_PROPID", adInteger), schemaColumn("DATE_CREATED", adDate),
                        schemaColumn("DATE_MODIFIED", adDate)});
    Statement list(
        database,
        "SELECT name, CASE WHEN name LIKE 'sqlite^_%' ESCAPE '^' THEN 'SYSTEM TABLE' ELSE upper(type) END AS "
        "kind "
        "FROM sqlite_schema WHERE type IN ('table', 'view') ORDER BY kind, name COLLATE KESTRA_TEXT");
    Statement insert = insertStatement(source);
    while (list.step()) {
        sqlite3_bind_value(insert.get(), 3, sqlite3_column_value(list.get(), 0));
        sqlite3_bind_value(insert.get(), 4, sqlite3_column_value(list.get(), 1));
        insert.run();
    }
    return source;
}

/// The columns of one table, put in by their order. A view over something that is gone has none.
void addColumns(Database& database, const std::string& table, Statement& insert) try {
    std::int64_t ordinal = 0;
    for (const Column& column : columnsOfTable(database, table)) {
        insert.bind(1, std::string_view(table));
        insert.bind(2, std::string_view(platform::utf8From1252(column.name)));
        insert.bind(3, ++ordinal);
        insert.bind(4, std::int64_t{column.type});
        insert.bind(5, std::int64_t{(column.attributes & adFldIsNullable) != 0});
        if (column.hasLimit)
            insert.bind(6, column.definedSize);
        else
            insert.bindNull(6);
        insert.run();
    }
} catch (const _com_error&) {
}

RowSource columns(Database& database) {
    RowSource source = readOnlySource(
        {schemaColumn("TABLE_NAME", adVarWChar), schemaColumn("COLUMN_NAME", adVarWChar),
         schemaColumn("ORDINAL_POSITION", adInteger), schemaColumn("DATA_TYPE", adInteger),
         schemaColumn("IS_NULLABLE", adBoolean), schemaColumn("CHARACTER_MAXIMUM_LENGTH", adInteger)});
    Statement list(
        database,
        "SELECT name FROM sqlite_schema WHERE type IN ('table', 'view') ORDER BY name COLLATE KESTRA_TEXT");
    Statement insert = insertStatement(source);
    while (list.step())
        addColumns(database, reinterpret_cast<const char*>(sqlite3_column_text(list.get(), 0)), insert);
    return source;
}

}  // namespace

RowSource schemaSource(Database& database, SchemaEnum schema) {
    if (schema == adSchemaTables) return tables(database);
    if (schema == adSchemaColumns) return columns(database);
    throw _com_error(hrFeatureNotAvailable);
}

}  // namespace ado20::embedded
