#pragma once
#include <memory>
#include <string>
#include <vector>

#include <platform/ado/criteria.h>
#include <platform/ado/embedded/connection.h>
#include <platform/ado/embedded/row_page.h>

namespace ado20::embedded {

class FieldCollection;

/// A recordset of the embedded engine: keys, a page of rows, a position, and the values that wait for
/// `Update`.
class Recordset : public _Recordset {
  public:
    Recordset();
    ~Recordset() override;

    HResult Open(const Variant& source, const _ConnectionPtr& connection, CursorTypeEnum cursor,
                 LockTypeEnum lock, long options) override;
    HResult Close() override;
    HResult Requery() override;
    HResult Move(std::int64_t records, const Variant& start) override;
    HResult MoveFirst() override;
    HResult MoveLast() override;
    HResult MoveNext() override;
    HResult MovePrevious() override;
    bool GetBOF() override;
    bool GetEOF() override;
    std::int64_t GetAbsolutePosition() override;
    void PutAbsolutePosition(std::int64_t position) override;
    std::int64_t GetRecordCount() override;
    Variant GetBookmark() override;
    void PutBookmark(const Variant& bookmark) override;
    HResult Find(std::string_view text, std::int64_t skip, SearchDirectionEnum direction,
                 const Variant& start) override;
    std::string GetSort() override { return m_sort; }
    void PutSort(std::string_view sort) override;
    std::string GetFilter() override { return m_filter; }
    void PutFilter(std::string_view criteria) override;
    HResult AddNew() override;
    HResult Update() override;
    HResult CancelUpdate() override;
    HResult Delete(AffectEnum affect) override;
    EditModeEnum GetEditMode() override;
    FieldsPtr GetFields() override;
    VariantView GetCollectView(std::string_view name) override;
    VariantView GetCollectView(long index) override;
    void PutCollect(std::string_view name, const Variant& value) override;
    void PutCollect(long index, const Variant& value) override;
    ObjectStateEnum GetState() override { return m_view != nullptr ? adStateOpen : adStateClosed; }
    std::string GetSource() override { return m_text; }
    CursorTypeEnum GetCursorType() override { return m_cursor; }
    LockTypeEnum GetLockType() override { return m_lock; }
    CursorLocationEnum GetCursorLocation() override { return m_location; }
    void PutCursorLocation(CursorLocationEnum location) override { m_location = location; }
    _ConnectionPtr GetActiveConnection() override;
    bool Supports(long options) override;

    /// Opens over rows that are there already, read-only: a schema.
    void openOver(RowSource source, const Pointer<Connection>& connection);
    /// Closes whatever the state is; what is pending is lost.
    void abandon();
    /// Rows of the page may have changed.
    void forgetRows();

    // For the fields.
    const std::vector<Column>& columns() const;
    VariantView value(std::size_t column, bool pendingToo);
    void put(std::size_t column, const Variant& value);
    bool isWritable() const;
    void append(Column column);

  private:
    enum class Place { before, on, after };
    /// What an open recordset has.
    struct View {
        explicit View(RowSource rows) : source(std::move(rows)), page(source) {}
        RowSource source;
        KeyList keys;
        bool keysComplete = false;
        RowPage page;
        Statement insert, update;
        std::vector<std::size_t> insertColumns, updateColumns;
    };

    FieldCollection& fields();
    void start(RowSource source);
    RowSource sourceOf(const std::string& text, long options);
    View& open() const;
    void readKeys();
    void completeKeys();
    bool reaches(std::int64_t index);
    bool isEmpty();
    void goTo(std::int64_t index);
    void requireCurrent() const;
    void requireWritable() const;
    void finishEdit();
    void dropPending();
    std::int64_t indexOfStart(const Variant& start);
    std::string sortClause() const;
    KeyList passing(const KeyList& keys) const;
    void arrange(std::string sort, std::string filter);
    std::size_t columnNamed(std::string_view name) const;
    Criterion boundCriterion(const Criterion& criterion) const;
    void insertRow();
    void updateRow();
    void bindPending(Statement& statement);

    Pointer<Connection> m_connection;
    std::unique_ptr<View> m_view;
    Pointer<FieldCollection> m_fields;
    std::vector<Column> m_appended;
    std::string m_text, m_sort, m_filter;
    long m_options = adOptionUnspecified;
    CursorTypeEnum m_cursor = adOpenForwardOnly;
    LockTypeEnum m_lock = adLockReadOnly;
    CursorLocationEnum m_location = adUseClient;

    Place m_place = Place::before;
    std::int64_t m_index = 0;  ///< of the current record, 0-based; of the one behind a deleted one
    bool m_deleted = false;
    EditModeEnum m_edit = adEditNone;
    std::vector<Variant> m_pending;  ///< by column; their memory stays from record to record
    std::vector<char> m_isPending;
    std::vector<std::string> m_scratch;         ///< by column: texts on their way into the database
    std::vector<std::size_t> m_pendingColumns;  ///< in the order in which they were put first
};

}  // namespace ado20::embedded
