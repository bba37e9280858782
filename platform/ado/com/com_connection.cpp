#include <platform/ado/com/com_connection.h>
#include <platform/ado/com/com_recordset.h>

namespace ado20::com {

namespace {

ProviderError errorOf(IAdoError* error) {
    ProviderError result;
    long number = 0, native = 0;
    Bstr description, source;
    error->get_Number(&number);
    error->get_NativeError(&native);
    error->get_Description(description.out());
    error->get_Source(source.out());
    result.number = static_cast<HResult>(number);
    result.nativeError = static_cast<std::int32_t>(native);
    result.description = description.text();
    result.source = source.text();
    return result;
}

}  // namespace

ComConnection::ComConnection() : m_inner(asked<IAdoConnection>(createdObject(L"ADODB.Connection").get())) {}

HResult ComConnection::Open(std::string_view connectionString, std::string_view user,
                            std::string_view password, long options) {
    const std::string text = connectionString.empty() ? GetConnectionString() : std::string(connectionString);
    return check(m_inner->Open(Bstr(text).get(), Bstr(user).get(), Bstr(password).get(), options));
}

_RecordsetPtr ComConnection::Execute(std::string_view command, std::int64_t* recordsAffected, long options) {
    ComPointer<IDispatch> recordset;
    ComVariant affected;
    check(m_inner->Execute(Bstr(command).get(), affected.out(), options, recordset.out()));
    if (recordsAffected != nullptr && toInt64(affected.value().view(), *recordsAffected) != hrOk)
        *recordsAffected = -1;
    return _RecordsetPtr(recordset.get() != nullptr ? new ComRecordset(recordset.get()) : new ComRecordset);
}

long ComConnection::BeginTrans() {
    long level = 0;
    check(m_inner->BeginTrans(&level));
    return level;
}

_RecordsetPtr ComConnection::OpenSchema(SchemaEnum schema) {
    ComPointer<IDispatch> recordset;
    const ComVariant missing{Variant::missing()};
    check(m_inner->OpenSchema(schema, missing.get(), missing.get(), recordset.out()));
    return _RecordsetPtr(new ComRecordset(recordset.get()));
}

std::vector<ProviderError> ComConnection::GetErrors() {
    ComPointer<IAdoErrors> errors;
    long count = 0;
    std::vector<ProviderError> result;
    if (FAILED(m_inner->get_Errors(errors.out())) || FAILED(errors->get_Count(&count))) return result;
    for (long i = 0; i < count; ++i) {
        ComPointer<IAdoError> error;
        if (SUCCEEDED(errors->get_Item(ComVariant(Variant(i)).get(), error.out())) && error.get() != nullptr)
            result.push_back(errorOf(error.get()));
    }
    return result;
}

std::string ComConnection::GetConnectionString() {
    Bstr text;
    check(m_inner->get_ConnectionString(text.out()));
    return text.text();
}

ConnectModeEnum ComConnection::GetMode() {
    int mode = 0;
    check(m_inner->get_Mode(&mode));
    return static_cast<ConnectModeEnum>(mode);
}

CursorLocationEnum ComConnection::GetCursorLocation() {
    int location = 0;
    check(m_inner->get_CursorLocation(&location));
    return static_cast<CursorLocationEnum>(location);
}

ObjectStateEnum ComConnection::GetState() {
    long state = 0;
    check(m_inner->get_State(&state));
    return (state & adStateOpen) != 0 ? adStateOpen : adStateClosed;
}

std::string ComConnection::GetProvider() {
    if (GetState() == adStateClosed) return {};
    Bstr provider;
    check(m_inner->get_Provider(provider.out()));
    return provider.text();
}

}  // namespace ado20::com
