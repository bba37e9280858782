// A record, or one field of it, as a line of text.
#include <string>
#include <string_view>

#include <kestra/database/my_recordset_ptr.h>
#include <kestra/database/result_text.h>
#include <platform/cp1252.h>

namespace {

enum FieldParts { valuePart = 1, namePart = 2, typePart = 4 };

constexpr char itemEnd = '|', fieldEnd = '\xFF';
constexpr std::string_view dateField = "DATE";

/// Appends the parts that are asked for, up to the first one that fails.
void appendParts(std::string& item, ado20::Field& field, int flags) {
    if ((flags & typePart) != 0) item += std::to_string(static_cast<int>(field.GetType())) + ':';
    if ((flags & namePart) != 0) item += field.GetName() + '=';
    if ((flags & valuePart) == 0) return;
    std::string value;
    if (ado20::toText(field.GetView(), value) >= 0) item += value;
}

}  // namespace

const char* Database::PackRecord(ado20::Field* field, int flags) {
    std::string item;
    try {
        if (field != nullptr) appendParts(item, *field, flags);
    } catch (...) {  // NOLINT(bugprone-empty-catch): a failure ends the item, by contract
    }
    return kestra::keepDatabaseText(item += itemEnd);
}

const char* Database::PackRecordNul(const char* name, int flags) {
    std::string item;
    if ((flags & typePart) != 0) item += "0:";
    if ((flags & namePart) != 0) item += std::string(name != nullptr ? name : "") + '=';
    return kestra::keepDatabaseText(item += itemEnd);
}

void MyRecordsetPtr::stampDate(long index) {
    const double now = COleDateTime::GetCurrentTime();
    m_pRecordset->GetFields()->GetItem(index)->PutValue(now);
    Update(0);
}

int MyRecordsetPtr::GetString(CString& text, char separator) {
    text.Empty();
    if (Eof() != 0) return 0;
    int visited = 0;
    try {
        for (; visited < GetFieldCount(); ++visited) {
            const std::string name = GetFieldName(visited);
            // Kept: reading a record writes to it; its date says when it was last handed out.
            if (platform::equalNoCase1252(name, dateField)) stampDate(visited);
            CString value;
            if (!GetValue(visited, value)) continue;
            text += separator;
            text += std::string_view(name);
            text += itemEnd;
            text += value;
            text += fieldEnd;
        }
    } catch (...) {  // NOLINT(bugprone-empty-catch): a failure ends the text, by contract
    }
    return visited;
}
