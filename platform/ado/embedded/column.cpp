#include <algorithm>
#include <charconv>
#include <cstring>

#include <platform/ado/embedded/column.h>
#include <platform/ado/variant_text.h>
#include <platform/cp1252.h>

namespace ado20::embedded {

namespace {

/// The largest size of memos and long binaries, as the Access providers state it.
constexpr std::int64_t longSize = 0x3FFFFFFF;

struct DeclaredType {
    std::string_view name;
    DataTypeEnum type;
};

constexpr DeclaredType declaredTypes[] = {
    {"INTEGER", adInteger},
    {"INT", adInteger},
    {"LONG", adInteger},
    {"COUNTER", adInteger},
    {"AUTOINCREMENT", adInteger},
    {"MEDIUMINT", adInteger},
    {"SMALLINT", adSmallInt},
    {"SHORT", adSmallInt},
    {"INT2", adSmallInt},
    {"TINYINT", adUnsignedTinyInt},
    {"BYTE", adUnsignedTinyInt},
    {"BIGINT", adBigInt},
    {"INT8", adBigInt},
    {"REAL", adDouble},
    {"DOUBLE", adDouble},
    {"DOUBLE PRECISION", adDouble},
    {"FLOAT", adDouble},
    {"SINGLE", adSingle},
    {"FLOAT4", adSingle},
    {"DECIMAL", adDecimal},
    {"NUMERIC", adDecimal},
    {"NUMBER", adDecimal},
    {"CURRENCY", adCurrency},
    {"MONEY", adCurrency},
    {"BOOLEAN", adBoolean},
    {"BOOL", adBoolean},
    {"BIT", adBoolean},
    {"YESNO", adBoolean},
    {"LOGICAL", adBoolean},
    {"DATE", adDate},
    {"DATETIME", adDate},
    {"TIME", adDate},
    {"TIMESTAMP", adDate},
    {"CHAR", adVarWChar},
    {"NCHAR", adVarWChar},
    {"VARCHAR", adVarWChar},
    {"NVARCHAR", adVarWChar},
    {"CHARACTER", adVarWChar},
    {"TEXT", adVarWChar},
    {"STRING", adVarWChar},
    {"MEMO", adLongVarWChar},
    {"CLOB", adLongVarWChar},
    {"LONGTEXT", adLongVarWChar},
    {"NTEXT", adLongVarWChar},
    {"BLOB", adLongVarBinary},
    {"IMAGE", adLongVarBinary},
    {"LONGBINARY", adLongVarBinary},
    {"OLEOBJECT", adLongVarBinary},
    {"BINARY", adVarBinary},
    {"VARBINARY", adVarBinary},
    {"GUID", adVarWChar},
};

/// SQLite's own rules for a declaration that names no known type.
DataTypeEnum typeByAffinity(std::string_view name) {
    const auto holds = [&](const char* part) { return name.find(part) != std::string_view::npos; };
    if (name.empty()) return adLongVarWChar;
    if (holds("INT")) return adInteger;
    if (holds("CHAR") || holds("CLOB") || holds("TEXT")) return adLongVarWChar;
    if (holds("BLOB")) return adLongVarBinary;
    if (holds("REAL") || holds("FLOA") || holds("DOUB")) return adDouble;
    return adDecimal;
}

DataTypeEnum typeOfName(std::string_view name) {
    for (const DeclaredType& declared : declaredTypes)
        if (declared.name == name) return declared.type;
    return typeByAffinity(name);
}

std::int64_t fixedSize(DataTypeEnum type) {
    switch (type) {
        case adUnsignedTinyInt:
            return 1;
        case adSmallInt:
        case adBoolean:
            return 2;
        case adInteger:
        case adSingle:
            return 4;
        case adDecimal:
        case adNumeric:
            return 16;
        default:
            return 8;
    }
}

bool isBinaryType(DataTypeEnum type) {
    return type == adBinary || type == adVarBinary || type == adLongVarBinary;
}

/// Types as they are kept: a few of ADO's mean the same here.
DataTypeEnum keptType(DataTypeEnum type) {
    switch (type) {
        case adDBDate:
        case adDBTimeStamp:
            return adDate;
        case adNumeric:
            return adDecimal;
        default:
            return type;
    }
}

VariantView viewOfInteger(VarType type, std::int64_t integer) {
    VariantView view;
    view.type = type;
    view.integer = integer;
    return view;
}

VariantView viewOfReal(VarType type, double real) {
    VariantView view;
    view.type = type;
    view.real = real;
    return view;
}

VariantView viewOfText(VarType type, std::string_view data) {
    VariantView view;
    view.type = type;
    view.data = data;
    return view;
}

VarType smallestOf(std::int64_t value, VarType wanted, std::int64_t least, std::int64_t most) {
    if (value >= least && value <= most) return wanted;
    return value >= INT32_MIN && value <= INT32_MAX ? VarType::int32 : VarType::int64;
}

VariantView viewOfNumber(const Column& column, const VariantView& stored, std::string& scratch) {
    switch (column.type) {
        case adSingle:
        case adDouble: {
            double real = 0;
            toReal(stored, real);
            return viewOfReal(column.type == adSingle ? VarType::real4 : VarType::real8, real);
        }
        case adBoolean: {
            bool truth = false;
            toBoolean(stored, truth);
            return viewOfInteger(VarType::boolean, truth ? -1 : 0);
        }
        case adDate: {
            double serial = 0;
            return toDate(stored, serial) == hrOk ? viewOfReal(VarType::date, serial) : stored;
        }
        case adCurrency: {
            std::int64_t amount = 0;
            return toCurrency(stored, amount) == hrOk ? viewOfInteger(VarType::currency, amount) : stored;
        }
        case adDecimal: {
            VariantView view;
            view.type = VarType::decimal;
            return toDecimal(stored, view.decimal) == hrOk ? view : stored;
        }
        default:
            if (!isTextType(column.type) || toText(stored, scratch) != hrOk) return stored;
            return viewOfText(VarType::text, scratch);
    }
}

VariantView viewOfIntegerCell(const Column& column, std::int64_t value, std::string& scratch) {
    switch (column.type) {
        case adInteger:
            return viewOfInteger(smallestOf(value, VarType::int32, INT32_MIN, INT32_MAX), value);
        case adSmallInt:
            return viewOfInteger(smallestOf(value, VarType::int16, INT16_MIN, INT16_MAX), value);
        case adUnsignedTinyInt:
            return viewOfInteger(smallestOf(value, VarType::byte, 0, 255), value);
        case adBigInt:
            return viewOfInteger(VarType::int64, value);
        default:
            return viewOfNumber(column, viewOfInteger(VarType::int64, value), scratch);
    }
}

VariantView viewOfTextCell(const Column& column, std::string_view text) {
    double serial = 0;
    bool truth = false;
    if (column.type == adDate && parseDate(text, serial)) return viewOfReal(VarType::date, serial);
    if (column.type == adBoolean && parseBoolean(text, truth))
        return viewOfInteger(VarType::boolean, truth ? -1 : 0);
    return viewOfText(VarType::text, text);
}

/// Eight bytes at a time.
bool isAscii(std::string_view text) {
    std::uint64_t all = 0, word = 0;
    for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
        std::memcpy(&word, text.data(), sizeof word);
        all |= word;
    }
    for (const char c : text) all |= static_cast<unsigned char>(c);
    return (all & 0x8080808080808080u) == 0;
}

/// Appends a UTF-8 text as Windows-1252; most texts are the same in both.
void append1252(std::string& buffer, std::string_view utf8) {
    if (isAscii(utf8))
        buffer.append(utf8);
    else
        buffer.append(platform::cp1252FromUtf8(utf8));
}

VarType variantTypeOf(DataTypeEnum type) {
    switch (type) {
        case adSmallInt:
            return VarType::int16;
        case adInteger:
            return VarType::int32;
        case adBigInt:
            return VarType::int64;
        case adUnsignedTinyInt:
            return VarType::byte;
        case adSingle:
            return VarType::real4;
        case adDouble:
            return VarType::real8;
        case adCurrency:
            return VarType::currency;
        case adDecimal:
            return VarType::decimal;
        case adDate:
            return VarType::date;
        case adBoolean:
            return VarType::boolean;
        default:
            return isBinaryType(type) ? VarType::bytes : VarType::text;
    }
}

}  // namespace

bool isTextType(DataTypeEnum type) {
    return variantTypeOf(type) == VarType::text;
}

void declare(Column& column, std::string_view declaration) {
    const std::string upper = platform::upperCased1252(declaration);
    const std::string_view all = upper;
    const auto bracket = std::min(all.find('('), all.size());
    std::string_view name = all.substr(0, bracket);
    while (name.ends_with(' ')) name.remove_suffix(1);
    std::int64_t size = 0;
    if (bracket < all.size()) std::from_chars(all.data() + bracket + 1, all.data() + all.size(), size);
    const DataTypeEnum type = typeOfName(name);
    // Without a length, a text may be of any: that is a memo.
    declare(column,
            type == adVarWChar && size <= 0    ? adLongVarWChar
            : type == adVarBinary && size <= 0 ? adLongVarBinary
                                               : type,
            size);
}

void declare(Column& column, DataTypeEnum type, std::int64_t definedSize) {
    column.type = keptType(type);
    const bool sized = isTextType(column.type) || isBinaryType(column.type);
    const bool isLong =
        column.type == adLongVarWChar || column.type == adLongVarChar || column.type == adLongVarBinary;
    column.hasLimit = sized && !isLong && definedSize > 0;
    column.definedSize = !sized ? fixedSize(column.type) : column.hasLimit ? definedSize : longSize;
    if (!sized) column.attributes |= adFldFixed;
    if (isLong) column.attributes |= adFldLong | adFldMayDefer;
}

/// The database is open for one thread, so a column's value may be asked directly.
Cell readCell(sqlite3_stmt* statement, int column, std::string& buffer) {
    sqlite3_value* const value = sqlite3_column_value(statement, column);
    Cell cell;
    cell.kind = sqlite3_value_type(value);
    switch (cell.kind) {
        case SQLITE_INTEGER:
            cell.integer = sqlite3_value_int64(value);
            break;
        case SQLITE_FLOAT:
            cell.real = sqlite3_value_double(value);
            break;
        case SQLITE_TEXT:
        case SQLITE_BLOB: {
            cell.offset = buffer.size();
            const void* data =
                cell.kind == SQLITE_TEXT ? sqlite3_value_text(value) : sqlite3_value_blob(value);
            const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
            if (data == nullptr && size > 0) throw _com_error(hrOutOfMemory);
            const std::string_view bytes(static_cast<const char*>(data), data != nullptr ? size : 0);
            if (cell.kind == SQLITE_TEXT)
                append1252(buffer, bytes);
            else
                buffer.append(bytes);
            cell.size = static_cast<std::uint32_t>(buffer.size() - cell.offset);
            break;
        }
        default:
            break;
    }
    return cell;
}

VariantView viewOf(const Column& column, const Cell& cell, const std::string& buffer, std::string& scratch) {
    const auto data = [&] { return std::string_view(buffer.data() + cell.offset, cell.size); };
    switch (cell.kind) {
        case SQLITE_INTEGER:
            return viewOfIntegerCell(column, cell.integer, scratch);
        case SQLITE_FLOAT:
            if (column.type == adDouble) return viewOfReal(VarType::real8, cell.real);
            return viewOfNumber(column, viewOfReal(VarType::real8, cell.real), scratch);
        case SQLITE_TEXT:
            return viewOfTextCell(column, data());
        case SQLITE_BLOB:
            return viewOfText(VarType::bytes, data());
        default:
            return viewOfInteger(VarType::null, 0);
    }
}

void fit(const Column& column, const Variant& value, Variant& kept) {
    const auto checked = [&](const Variant& converted) -> const Variant& {
        const bool tooLong =
            column.hasLimit && converted.size() > static_cast<std::size_t>(column.definedSize);
        if (tooLong) throw _com_error(hrErrorsOccurred);
        return converted;
    };
    const VarType type = variantTypeOf(column.type);
    if (value.type() == type || value.isNull()) {
        kept = checked(value);
        return;
    }
    try {
        kept = checked(value.changeType(type));
    } catch (const _com_error& error) {
        throw _com_error(error.Error() == hrOverflow ? hrErrorsOccurred : error.Error());
    }
}

void bind(Statement& statement, int parameter, const VariantView& value, std::string& scratch) {
    double real = 0;
    switch (value.type) {
        case VarType::empty:
        case VarType::null:
            statement.bindNull(parameter);
            return;
        case VarType::boolean:
            statement.bind(parameter, std::int64_t{value.integer != 0});
            return;
        case VarType::byte:
        case VarType::int16:
        case VarType::int32:
        case VarType::int64:
            statement.bind(parameter, value.integer);
            return;
        case VarType::bytes:
            statement.bindBytes(parameter, value.data);
            return;
        case VarType::text: {
            const bool plain = isAscii(value.data);
            if (!plain) scratch = platform::utf8From1252(value.data);
            statement.bindKept(parameter, plain ? value.data : std::string_view(scratch));
            return;
        }
        case VarType::date:
            if (!isoDateText(value.real, scratch)) throw _com_error(hrErrorsOccurred);
            statement.bindKept(parameter, scratch);
            return;
        default:
            if (const HResult result = toReal(value, real); result != hrOk) throw _com_error(result);
            statement.bind(parameter, real);
    }
}

}  // namespace ado20::embedded
