#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include <platform/ado/embedded/database.h>

/// Fields of the embedded engine: their ADO types, and their values on the way in and out.
///
/// A declared column type names the field's type; what SQLite stores may be something else, as its columns
/// take any value. A stored value is converted to the field's type where that is possible and given as it is
/// otherwise.
/// - Dates are written as "yyyy-mm-dd hh:mm:ss" (with ".fff" when they have thousandths), read from that,
/// from the other
///   forms of variant.h, and from numbers as serial dates.
/// - Booleans are written as 1 and 0. Currencies and decimals are written as numbers, with the 15 digits of a
/// double.
/// - Texts are UTF-8 in the database. A character that Windows-1252 does not have is read as "?"; as only
/// fields that
///   were put are written, reading a record never harms it.
namespace ado20::embedded {

struct Column {
    std::string name;        ///< Windows-1252
    std::string expression;  ///< what selects it, and what is set in it: UTF-8
    DataTypeEnum type = adVarWChar;
    std::int64_t definedSize = 0;
    bool hasLimit = false;  ///< texts and bytes longer than `definedSize` are refused
    bool isKey = false;     ///< it is the rowid under another name
    long attributes = adFldIsNullable | adFldMayBeNull | adFldUpdatable;
};

/// The type, size and limit of a column as declared: "INTEGER", "VARCHAR(50)", ... An empty declaration is a
/// memo.
void declare(Column& column, std::string_view declaration);
/// The same by ADO's type, for fields that a host appends.
void declare(Column& column, DataTypeEnum type, std::int64_t definedSize);

/// A value as a page keeps it; texts (Windows-1252) and bytes stand in the page's own buffer.
struct Cell {
    std::int32_t kind = SQLITE_NULL;  ///< SQLite's storage class
    std::uint32_t size = 0;
    union {
        std::int64_t integer = 0;
        double real;
        std::uint64_t offset;  ///< of text and bytes in the buffer
    };
};

/// Copies a column of the row that a statement stands on.
Cell readCell(sqlite3_stmt* statement, int column, std::string& buffer);

/// The value of a cell in its field's type. A text that has to be made is put in `scratch`.
VariantView viewOf(const Column& column, const Cell& cell, const std::string& buffer, std::string& scratch);

/// Puts a value as the field takes it in `kept`; throws what `Field::PutValue` states, and leaves `kept`
/// then.
void fit(const Column& column, const Variant& value, Variant& kept);

/// Binds a value that fits. It and `scratch`, where its text may be made, must stay until the statement has
/// run.
void bind(Statement& statement, int parameter, const VariantView& value, std::string& scratch);

bool isTextType(DataTypeEnum type);

}  // namespace ado20::embedded
