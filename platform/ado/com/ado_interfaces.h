#pragma once
#include <windows.h>
#include <oaidl.h>

/// The dual interfaces of ADO as far as they are used, by their virtual tables: every method stands in its
/// place. 64-bit ADO has positions, counts and sizes of 64 bits (`Long`); where an older one writes 32 bits
/// only, the callers' variables begin as 0 and are widened by `signedPosition`.
///
/// Each interface is asked for under two identifiers: that of current Windows (0000 15xx) and the one before
/// it (0000 05xx).
namespace ado20::com {

using Long = LONG_PTR;

constexpr GUID adoIdentifier(unsigned long number) {
    return {number, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
}

/// A position or count as ADO wrote it: the negative ones of 32 bits stay negative.
inline std::int64_t signedPosition(Long value) {
    return value > INT32_MAX && value <= 0xFFFFFFFFLL ? static_cast<std::int32_t>(value) : value;
}

struct IAdo : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Properties(IDispatch** properties) = 0;
};

struct IAdoCollection : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Count(long* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE _NewEnum(IUnknown** enumerator) = 0;
    virtual HRESULT STDMETHODCALLTYPE Refresh() = 0;
};

struct IAdoError : IDispatch {
    static constexpr GUID identifiers[] = {adoIdentifier(0x0500), adoIdentifier(0x1500)};
    virtual HRESULT STDMETHODCALLTYPE get_Number(long* number) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Source(BSTR* source) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Description(BSTR* description) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_HelpFile(BSTR* file) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_HelpContext(long* context) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_SQLState(BSTR* state) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_NativeError(long* error) = 0;
};

struct IAdoErrors : IAdoCollection {
    virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, IAdoError** error) = 0;
    virtual HRESULT STDMETHODCALLTYPE Clear() = 0;
};

struct IAdoField : IAdo {
    static constexpr GUID identifiers[] = {adoIdentifier(0x1569), adoIdentifier(0x0569)};
    virtual HRESULT STDMETHODCALLTYPE get_ActualSize(Long* size) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Attributes(long* attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_DefinedSize(Long* size) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Type(int* type) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Value(VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Precision(BYTE* precision) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_NumericScale(BYTE* scale) = 0;
    virtual HRESULT STDMETHODCALLTYPE AppendChunk(VARIANT data) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetChunk(long length, VARIANT* data) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OriginalValue(VARIANT* value) = 0;
};

struct IAdoFields : IAdoCollection {
    static constexpr GUID identifiers[] = {adoIdentifier(0x1564), adoIdentifier(0x0564)};
    virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, IAdoField** field) = 0;
    virtual HRESULT STDMETHODCALLTYPE _Append(BSTR name, int type, Long definedSize, int attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE Delete(VARIANT index) = 0;
    virtual HRESULT STDMETHODCALLTYPE Append(BSTR name, int type, Long definedSize, int attributes,
                                             VARIANT value) = 0;
};

struct IAdoRecordset : IAdo {
    static constexpr GUID identifiers[] = {adoIdentifier(0x1556), adoIdentifier(0x0556)};
    virtual HRESULT STDMETHODCALLTYPE get_AbsolutePosition(Long* position) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_AbsolutePosition(Long position) = 0;
    virtual HRESULT STDMETHODCALLTYPE putref_ActiveConnection(IDispatch* connection) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ActiveConnection(VARIANT connection) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ActiveConnection(VARIANT* connection) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_BOF(VARIANT_BOOL* before) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Bookmark(VARIANT* bookmark) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Bookmark(VARIANT bookmark) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CacheSize(long* size) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_CacheSize(long size) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CursorType(int* type) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_CursorType(int type) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL* after) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Fields(IDispatch** fields) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LockType(int* type) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_LockType(int type) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_MaxRecords(Long* most) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_MaxRecords(Long most) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_RecordCount(Long* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE putref_Source(IDispatch* command) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Source(BSTR source) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Source(VARIANT* source) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddNew(VARIANT fields, VARIANT values) = 0;
    virtual HRESULT STDMETHODCALLTYPE CancelUpdate() = 0;
    virtual HRESULT STDMETHODCALLTYPE Close() = 0;
    virtual HRESULT STDMETHODCALLTYPE Delete(int affect) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRows(long rows, VARIANT start, VARIANT fields, VARIANT* values) = 0;
    virtual HRESULT STDMETHODCALLTYPE Move(Long records, VARIANT start) = 0;
    virtual HRESULT STDMETHODCALLTYPE MoveNext() = 0;
    virtual HRESULT STDMETHODCALLTYPE MovePrevious() = 0;
    virtual HRESULT STDMETHODCALLTYPE MoveFirst() = 0;
    virtual HRESULT STDMETHODCALLTYPE MoveLast() = 0;
    virtual HRESULT STDMETHODCALLTYPE Open(VARIANT source, VARIANT connection, int cursor, int lock,
                                           long options) = 0;
    virtual HRESULT STDMETHODCALLTYPE Requery(long options) = 0;
    virtual HRESULT STDMETHODCALLTYPE _xResync(int affect) = 0;
    virtual HRESULT STDMETHODCALLTYPE Update(VARIANT fields, VARIANT values) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_AbsolutePage(Long* page) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_AbsolutePage(Long page) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_EditMode(int* mode) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Filter(VARIANT* criteria) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Filter(VARIANT criteria) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_PageCount(Long* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_PageSize(long* size) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_PageSize(long size) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Sort(BSTR* sort) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Sort(BSTR sort) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Status(long* status) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_State(long* state) = 0;
    virtual HRESULT STDMETHODCALLTYPE _xClone(IDispatch** clone) = 0;
    virtual HRESULT STDMETHODCALLTYPE UpdateBatch(int affect) = 0;
    virtual HRESULT STDMETHODCALLTYPE CancelBatch(int affect) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CursorLocation(int* location) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_CursorLocation(int location) = 0;
    virtual HRESULT STDMETHODCALLTYPE NextRecordset(VARIANT* affected, IDispatch** next) = 0;
    virtual HRESULT STDMETHODCALLTYPE Supports(int options, VARIANT_BOOL* all) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Collect(VARIANT index, VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Collect(VARIANT index, VARIANT value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_MarshalOptions(int* options) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_MarshalOptions(int options) = 0;
    virtual HRESULT STDMETHODCALLTYPE Find(BSTR criteria, Long skip, int direction, VARIANT start) = 0;
};

struct IAdoConnection : IAdo {
    static constexpr GUID identifiers[] = {adoIdentifier(0x1550), adoIdentifier(0x0550)};
    virtual HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* text) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ConnectionString(BSTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CommandTimeout(long* seconds) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_CommandTimeout(long seconds) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ConnectionTimeout(long* seconds) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ConnectionTimeout(long seconds) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Version(BSTR* version) = 0;
    virtual HRESULT STDMETHODCALLTYPE Close() = 0;
    virtual HRESULT STDMETHODCALLTYPE Execute(BSTR command, VARIANT* affected, long options,
                                              IDispatch** recordset) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginTrans(long* level) = 0;
    virtual HRESULT STDMETHODCALLTYPE CommitTrans() = 0;
    virtual HRESULT STDMETHODCALLTYPE RollbackTrans() = 0;
    virtual HRESULT STDMETHODCALLTYPE Open(BSTR text, BSTR user, BSTR password, long options) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Errors(IAdoErrors** errors) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_DefaultDatabase(BSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_DefaultDatabase(BSTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_IsolationLevel(int* level) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_IsolationLevel(int level) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Attributes(long* attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Attributes(long attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CursorLocation(int* location) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_CursorLocation(int location) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Mode(int* mode) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Mode(int mode) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Provider(BSTR* provider) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Provider(BSTR provider) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_State(long* state) = 0;
    virtual HRESULT STDMETHODCALLTYPE OpenSchema(int schema, VARIANT restrictions, VARIANT identifier,
                                                 IDispatch** recordset) = 0;
};

}  // namespace ado20::com
