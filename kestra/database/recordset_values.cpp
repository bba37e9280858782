// The value family of MyRecordsetPtr.
#include <string>
#include <string_view>

#include <kestra/database/my_recordset_ptr.h>
#include <kestra/database/result_text.h>
#include <kestra/variables/variable.h>

namespace {

using ado20::FieldPtr;
using ado20::HResult;
using ado20::VariantView;

void check(HResult result) {
    if (result < 0) throw _com_error(result);
}

std::string_view key(const char* name) {
    return name != nullptr ? name : "";
}

long key(long index) {
    return index;
}

void convert(const VariantView& view, std::string& value) {
    check(ado20::toText(view, value));
}

void convert(const VariantView& view, CString& value) {
    if (view.type == ado20::VarType::text) {
        value = view.data;
        return;
    }
    std::string text;
    convert(view, text);
    value = std::string_view(text);
}

void convert(const VariantView& view, long& value) {
    std::int32_t integer = 0;
    check(ado20::toInt32(view, integer));
    value = integer;
}

void convert(const VariantView& view, double& value) {
    check(ado20::toReal(view, value));
}

/// Reads a field; on failure the value is reset, whatever came of it before.
template <class Value>
bool read(const _RecordsetPtr& recordset, auto field, Value& value) {
    try {
        convert(recordset->GetCollectView(key(field)), value);
        return true;
    } catch (...) {
        value = Value();
        return false;
    }
}

bool write(const _RecordsetPtr& recordset, auto field, const ado20::Variant& value) {
    try {
        recordset->PutCollect(key(field), value);
        return true;
    } catch (...) {
        return false;
    }
}

const char* readText(const _RecordsetPtr& recordset, auto field) {
    std::string& text = kestra::databaseText();
    read(recordset, field, text);
    return text.c_str();
}

/// Null for a field that an open recordset does not have.
FieldPtr existingField(const _RecordsetPtr& recordset, const char* name) try {
    return recordset->GetFields()->GetItem(key(name));
} catch (const _com_error& error) {
    const bool isOpen = recordset && recordset->GetState() != ado20::adStateClosed;
    if (isOpen && error.Error() == ado20::hrItemNotFound) return nullptr;
    throw;
}

bool isNumber(ado20::DataTypeEnum type) {
    return type == ado20::adDouble || type == ado20::adDecimal;
}

void fill(CVariable& variable, const FieldPtr& field) {
    if (isNumber(field->GetType())) {
        variable.Free();
        convert(field->GetView(), variable.m_value.number);
        variable.m_type = CVariable::vtNumber;
        return;
    }
    variable.ToCstring();
    if (variable.m_value.text == nullptr) variable.m_value.text = new CString;
    convert(field->GetView(), *variable.m_value.text);
}

}  // namespace

bool MyRecordsetPtr::GetValue(const char* name, CString& value) {
    return read(m_pRecordset, name, value);
}
bool MyRecordsetPtr::GetValue(const char* name, long& value) {
    return read(m_pRecordset, name, value);
}
bool MyRecordsetPtr::GetValue(const char* name, double& value) {
    return read(m_pRecordset, name, value);
}
bool MyRecordsetPtr::GetValue(const char* name, COleDateTime& value) {
    // Kept: the status stays as it was, even "null"; callers set it themselves.
    return read(m_pRecordset, name, value.m_dt);
}
bool MyRecordsetPtr::GetValue(long index, CString& value) {
    return read(m_pRecordset, index, value);
}
bool MyRecordsetPtr::GetValue(long index, long& value) {
    return read(m_pRecordset, index, value);
}
bool MyRecordsetPtr::GetValue(long index, double& value) {
    return read(m_pRecordset, index, value);
}

bool MyRecordsetPtr::GetValue(const char* name, CVariable& value) {
    try {
        if (const FieldPtr field = existingField(m_pRecordset, name)) fill(value, field);
        return true;
    } catch (...) {
        value.Free();
        return false;
    }
}

const char* MyRecordsetPtr::GetStrValue(const char* name) {
    return readText(m_pRecordset, name);
}
const char* MyRecordsetPtr::GetStrValue(long index) {
    return readText(m_pRecordset, index);
}

bool MyRecordsetPtr::SetValue(const char* name, const char* value) {
    return write(m_pRecordset, name, value);
}
bool MyRecordsetPtr::SetValue(const char* name, long value) {
    return write(m_pRecordset, name, value);
}
bool MyRecordsetPtr::SetValue(const char* name, double value) {
    return write(m_pRecordset, name, value);
}
bool MyRecordsetPtr::SetValue(const char* name, COleDateTime value) {
    return write(m_pRecordset, name, ado20::Variant::date(value));
}
bool MyRecordsetPtr::SetValue(long index, const char* value) {
    return write(m_pRecordset, index, value);
}
bool MyRecordsetPtr::SetValue(long index, long value) {
    return write(m_pRecordset, index, value);
}
bool MyRecordsetPtr::SetValue(long index, double value) {
    return write(m_pRecordset, index, value);
}
