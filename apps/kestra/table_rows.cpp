#include "table_rows.h"

#include <algorithm>
#include <utility>

namespace {

bool isNumeric(ado20::DataTypeEnum type) {
    switch (type) {
        case ado20::adSmallInt:
        case ado20::adInteger:
        case ado20::adSingle:
        case ado20::adDouble:
        case ado20::adCurrency:
        case ado20::adDecimal:
        case ado20::adUnsignedTinyInt:
        case ado20::adBigInt:
        case ado20::adNumeric:
            return true;
        default:
            return false;
    }
}

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += digits[code >> 4];
        text += digits[code & 15];
    }
    return text;
}

}  // namespace

TableRows::TableRows(_RecordsetPtr records) : m_records(std::move(records)) {
    const ado20::FieldsPtr fields = m_records->GetFields();
    for (long index = 0; index < fields->GetCount(); ++index) {
        m_fields.push_back(fields->GetItem(index));
        const std::string name = m_fields.back()->GetName();
        m_columns.push_back({name, isNumeric(m_fields.back()->GetType()), name.size()});
    }
}

std::int64_t TableRows::count() {
    return m_records->GetRecordCount();
}

void TableRows::rewind() {
    if (m_hasStarted) m_records->MoveFirst();
    m_hasStarted = false;
}

void TableRows::sample(int rows) {
    while (rows-- > 0 && next())
        for (std::size_t column = 0; column < m_columns.size(); ++column)
            m_columns[column].width = std::max(m_columns[column].width, text(column).size());
    rewind();
}

bool TableRows::next() {
    if (m_records->GetEOF()) return false;
    if (m_hasStarted) m_records->MoveNext();
    m_hasStarted = true;
    return !m_records->GetEOF();
}

std::string_view TableRows::text(std::size_t column) {
    const ado20::VariantView value = m_fields[column]->GetView();
    if (value.type == ado20::VarType::text) return value.data;
    if (value.type == ado20::VarType::bytes) return m_text = hexadecimal(value.data);
    if (value.isNull() || ado20::toText(value, m_text) < 0) return {};
    return m_text;
}
