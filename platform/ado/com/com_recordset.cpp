#include <platform/ado/com/com_recordset.h>

namespace ado20::com {

namespace {

Variant startOrMissing(const Variant& start) {
    const bool none = start.isNull() || (start.type() == VarType::text && start.view().data.empty());
    return none ? Variant::missing() : start;
}

}  // namespace

ComRecordset::ComRecordset() : m_inner(asked<IAdoRecordset>(createdObject(L"ADODB.Recordset").get())) {}

ComRecordset::ComRecordset(IUnknown* recordset) : m_inner(asked<IAdoRecordset>(recordset)) {}

HResult ComRecordset::Open(const Variant& source, const _ConnectionPtr& connection, CursorTypeEnum cursor,
                           LockTypeEnum lock, long options) {
    // Some implementations do not look whether the connection is open.
    if (connection && connection->GetState() != adStateOpen) throw _com_error(hrInvalidConnection);
    ComVariant active{Variant::missing()};
    if (auto* const adoConnection =
            dynamic_cast<ComConnection*>(connection ? connection->GetEngineObject() : nullptr)) {
        V_VT(active.out()) = VT_DISPATCH;
        V_DISPATCH(active.out()) = adoConnection->inner();
        adoConnection->inner()->AddRef();
    } else if (connection) {
        throw _com_error(hrInvalidConnection);
    }
    const HResult result =
        check(m_inner->Open(ComVariant(source).get(), active.get(), cursor, lock, options));
    m_connection = connection;
    m_fields.Release();
    return result;
}

HResult ComRecordset::Move(std::int64_t records, const Variant& start) {
    return check(m_inner->Move(records, ComVariant(startOrMissing(start)).get()));
}

bool ComRecordset::GetBOF() {
    VARIANT_BOOL before = VARIANT_FALSE;
    check(m_inner->get_BOF(&before));
    return before != VARIANT_FALSE;
}

bool ComRecordset::GetEOF() {
    VARIANT_BOOL after = VARIANT_FALSE;
    check(m_inner->get_EOF(&after));
    return after != VARIANT_FALSE;
}

std::int64_t ComRecordset::GetAbsolutePosition() {
    Long position = 0;
    check(m_inner->get_AbsolutePosition(&position));
    return signedPosition(position);
}

std::int64_t ComRecordset::GetRecordCount() {
    Long count = 0;
    check(m_inner->get_RecordCount(&count));
    return signedPosition(count);
}

Variant ComRecordset::GetBookmark() {
    ComVariant bookmark;
    check(m_inner->get_Bookmark(bookmark.out()));
    return bookmark.value();
}

HResult ComRecordset::Find(std::string_view criterion, std::int64_t skip, SearchDirectionEnum direction,
                           const Variant& start) {
    return check(
        m_inner->Find(Bstr(criterion).get(), skip, direction, ComVariant(startOrMissing(start)).get()));
}

std::string ComRecordset::GetSort() {
    Bstr sort;
    check(m_inner->get_Sort(sort.out()));
    return sort.text();
}

/// Without a filter ADO answers the number 0.
std::string ComRecordset::GetFilter() {
    ComVariant filter;
    check(m_inner->get_Filter(filter.out()));
    const Variant value = filter.value();
    return value.type() == VarType::text ? value.text() : std::string();
}

void ComRecordset::PutFilter(std::string_view criteria) {
    check(m_inner->put_Filter(ComVariant(criteria.empty() ? Variant(0) : Variant(criteria)).get()));
}

HResult ComRecordset::AddNew() {
    const ComVariant missing{Variant::missing()};
    return check(m_inner->AddNew(missing.get(), missing.get()));
}

HResult ComRecordset::Update() {
    const ComVariant missing{Variant::missing()};
    return check(m_inner->Update(missing.get(), missing.get()));
}

EditModeEnum ComRecordset::GetEditMode() {
    int mode = 0;
    check(m_inner->get_EditMode(&mode));
    return static_cast<EditModeEnum>(mode);
}

FieldsPtr ComRecordset::GetFields() {
    if (m_fields) return m_fields;
    ComPointer<IDispatch> fields;
    check(m_inner->get_Fields(fields.out()));
    return m_fields = comFields(fields.get());
}

ObjectStateEnum ComRecordset::GetState() {
    long state = 0;
    check(m_inner->get_State(&state));
    return (state & adStateOpen) != 0 ? adStateOpen : adStateClosed;
}

std::string ComRecordset::GetSource() {
    ComVariant source;
    check(m_inner->get_Source(source.out()));
    const Variant value = source.value();
    return value.type() == VarType::text ? value.text() : std::string();
}

CursorTypeEnum ComRecordset::GetCursorType() {
    int type = 0;
    check(m_inner->get_CursorType(&type));
    return static_cast<CursorTypeEnum>(type);
}

LockTypeEnum ComRecordset::GetLockType() {
    int type = 0;
    check(m_inner->get_LockType(&type));
    return static_cast<LockTypeEnum>(type);
}

CursorLocationEnum ComRecordset::GetCursorLocation() {
    int location = 0;
    check(m_inner->get_CursorLocation(&location));
    return static_cast<CursorLocationEnum>(location);
}

bool ComRecordset::Supports(long options) {
    VARIANT_BOOL all = VARIANT_FALSE;
    check(m_inner->Supports(static_cast<int>(options), &all));
    return all != VARIANT_FALSE;
}

}  // namespace ado20::com
