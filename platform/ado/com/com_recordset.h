#pragma once
#include <platform/ado/com/com_connection.h>

namespace ado20::com {

/// A recordset of ADO itself.
class ComRecordset : public _Recordset {
  public:
    /// A new one, created from "ADODB.Recordset".
    ComRecordset();
    /// One that ADO answered.
    explicit ComRecordset(IUnknown* recordset);

    HResult Open(const Variant& source, const _ConnectionPtr& connection, CursorTypeEnum cursor,
                 LockTypeEnum lock, long options) override;
    HResult Close() override { return check(m_inner->Close()); }
    HResult Requery() override { return check(m_inner->Requery(adOptionUnspecified)); }
    HResult Move(std::int64_t records, const Variant& start) override;
    HResult MoveFirst() override { return check(m_inner->MoveFirst()); }
    HResult MoveLast() override { return check(m_inner->MoveLast()); }
    HResult MoveNext() override { return check(m_inner->MoveNext()); }
    HResult MovePrevious() override { return check(m_inner->MovePrevious()); }
    bool GetBOF() override;
    bool GetEOF() override;
    std::int64_t GetAbsolutePosition() override;
    void PutAbsolutePosition(std::int64_t position) override {
        check(m_inner->put_AbsolutePosition(position));
    }
    std::int64_t GetRecordCount() override;
    Variant GetBookmark() override;
    void PutBookmark(const Variant& bookmark) override {
        check(m_inner->put_Bookmark(ComVariant(bookmark).get()));
    }
    HResult Find(std::string_view criterion, std::int64_t skip, SearchDirectionEnum direction,
                 const Variant& start) override;
    std::string GetSort() override;
    void PutSort(std::string_view sort) override { check(m_inner->put_Sort(Bstr(sort).get())); }
    std::string GetFilter() override;
    void PutFilter(std::string_view criteria) override;
    HResult AddNew() override;
    HResult Update() override;
    HResult CancelUpdate() override { return check(m_inner->CancelUpdate()); }
    HResult Delete(AffectEnum affect) override { return check(m_inner->Delete(affect)); }
    EditModeEnum GetEditMode() override;
    FieldsPtr GetFields() override;
    VariantView GetCollectView(std::string_view name) override { return collected(name); }
    VariantView GetCollectView(long index) override { return collected(index); }
    void PutCollect(std::string_view name, const Variant& value) override {
        GetFields()->GetItem(name)->PutValue(value);
    }
    void PutCollect(long index, const Variant& value) override {
        GetFields()->GetItem(index)->PutValue(value);
    }
    ObjectStateEnum GetState() override;
    std::string GetSource() override;
    CursorTypeEnum GetCursorType() override;
    LockTypeEnum GetLockType() override;
    CursorLocationEnum GetCursorLocation() override;
    void PutCursorLocation(CursorLocationEnum location) override {
        check(m_inner->put_CursorLocation(location));
    }
    _ConnectionPtr GetActiveConnection() override { return m_connection; }
    bool Supports(long options) override;

  private:
    VariantView collected(auto field) {
        m_collected = GetFields()->GetItem(field)->GetValue();
        return m_collected.view();
    }

    ComApartment m_apartment;
    ComPointer<IAdoRecordset> m_inner;
    _ConnectionPtr m_connection;
    FieldsPtr m_fields;
    Variant m_collected;  ///< what `GetCollectView` shows
};

/// The fields of one; ADO keeps them as long as somebody holds them.
FieldsPtr comFields(IUnknown* fields);

}  // namespace ado20::com
