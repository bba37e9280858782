#include <algorithm>

#include <platform/ado/embedded/fields.h>
#include <platform/ado/embedded/recordset.h>
#include <platform/cp1252.h>

namespace ado20::embedded {

namespace {

constexpr long readOnlyAbilities =
    adHoldRecords | adMovePrevious | adBookmark | adApproxPosition | adFind | adResync;
constexpr long writingAbilities = adAddNew | adDelete | adUpdate;

std::string whereKey(const RowSource& source) {
    return " WHERE " + std::string(source.keyName()) + " = ?";
}

/// False for a record that is no longer there.
template <class Meets>
bool meetsWhereItStands(Meets&& meets) try {
    return meets();
} catch (const _com_error& error) {
    if (error.Error() != hrDeletedRow) throw;
    return false;
}

}  // namespace

Recordset::Recordset() = default;

Recordset::~Recordset() {
    abandon();
    if (m_fields) m_fields->release();
}

// Opening and closing.

Recordset::View& Recordset::open() const {
    if (m_view == nullptr) throw _com_error(hrObjectClosed);
    return *m_view;
}

HResult Recordset::Open(const Variant& source, const _ConnectionPtr& connection, CursorTypeEnum cursor,
                        LockTypeEnum lock, long options) {
    if (m_view != nullptr) throw _com_error(hrObjectOpen);
    m_connection =
        Pointer<Connection>(connection ? dynamic_cast<Connection*>(connection->GetEngineObject()) : nullptr);
    m_cursor = cursor == adOpenUnspecified ? adOpenForwardOnly : cursor;
    m_lock = lock == adLockUnspecified ? adLockReadOnly : lock;
    m_options = options;
    if (!m_connection && !m_appended.empty()) {
        if (lock == adLockUnspecified) m_lock = adLockOptimistic;
        start(privateSource(m_appended));
        return hrOk;
    }
    if (!m_connection || m_connection->GetState() != adStateOpen) throw _com_error(hrInvalidConnection);
    if (source.type() != VarType::text && m_text.empty()) throw _com_error(hrInvalidArgument);
    if (source.type() == VarType::text) m_text = source.view().data;
    RowSource rows = sourceOf(m_text, options);
    // A statement without rows has run; the recordset stays closed.
    if (rows.database != nullptr)
        start(std::move(rows));
    else
        m_connection->forgetRows();
    return hrOk;
}

RowSource Recordset::sourceOf(const std::string& text, long options) {
    const std::shared_ptr<Database>& database = m_connection->database();
    const std::string utf8 = platform::utf8From1252(text);
    const bool unknown =
        options == adOptionUnspecified || (options & (adCmdText | adCmdTable | adCmdTableDirect)) == 0;
    const bool named = !unknown && (options & (adCmdTable | adCmdTableDirect)) != 0;
    const bool asTable = named || (unknown && (!startsLikeStatement(text) || hasTable(*database, utf8)));
    return asTable ? tableSource(database, utf8) : statementSource(database, utf8);
}

void Recordset::openOver(RowSource source, const Pointer<Connection>& connection) {
    m_connection = connection;
    m_cursor = adOpenForwardOnly;
    m_lock = adLockReadOnly;
    start(std::move(source));
}

void Recordset::start(RowSource source) {
    if (m_connection && m_connection->GetMode() != adModeUnknown &&
        (m_connection->GetMode() & adModeWrite) == 0)
        m_lock = adLockReadOnly;
    m_view = std::make_unique<View>(std::move(source));
    m_pending.resize(m_view->source.columns.size());
    m_scratch.resize(m_pending.size());
    m_isPending.assign(m_pending.size(), 0);
    try {
        readKeys();
        goTo(0);
    } catch (...) {
        m_view.reset();
        throw;
    }
    if (m_fields) m_fields->release();
    m_fields = Pointer<FieldCollection>(new FieldCollection(this));
    if (m_connection) m_connection->enter(this);
}

HResult Recordset::Close() {
    open();
    if (m_edit != adEditNone) throw _com_error(hrIllegalOperation);
    abandon();
    return hrOk;
}

void Recordset::abandon() {
    if (m_connection) m_connection->leave(this);
    m_connection.Release();
    if (m_view == nullptr) return;
    dropPending();
    m_pending.clear();
    m_view.reset();
    m_sort.clear();
    m_filter.clear();
    if (m_fields) m_fields->release();
    m_fields.Release();
    m_appended.clear();
}

HResult Recordset::Requery() {
    open();
    finishEdit();
    if (m_connection && !m_text.empty()) {
        RowSource source = sourceOf(m_text, m_options);
        if (source.columns.size() != m_view->source.columns.size())
            throw _com_error(hrFail, "La structure de la table a changé", "SQLite");
        m_view = std::make_unique<View>(std::move(source));
    }
    readKeys();
    goTo(0);
    return hrOk;
}

void Recordset::forgetRows() {
    if (m_view != nullptr) m_view->page.forget();
}

// Keys: of a plain table they are read as far as somebody went, so that walking it reads it once.

/// On failure the keys are as they were.
void Recordset::readKeys() {
    View& view = open();
    KeyList keys;
    const bool lazily = view.source.isPlain() && m_sort.empty() && m_filter.empty();
    if (!lazily) {
        Statement statement(*view.source.database, view.source.keyStatement(sortClause()));
        const int column = statement.columnCount() - 1;
        while (statement.step()) keys.append(sqlite3_column_int64(statement.get(), column));
        if (!m_filter.empty()) keys = passing(keys);
    }
    view.keys = std::move(keys);
    view.keysComplete = !lazily;
    view.page.forget();
}

void Recordset::completeKeys() {
    View& view = open();
    if (view.keysComplete) return;
    const std::int64_t known = view.keys.size();
    const std::int64_t last = known > 0 ? view.keys.at(known - 1) : INT64_MIN;
    const RowSource& source = view.source;
    if (known == 0 || last < INT64_MAX) {
        Statement statement(*source.database, "SELECT " + source.key + " FROM " + source.from + " WHERE " +
                                                  source.key + " >= ?1 ORDER BY " + source.key);
        statement.bind(1, known > 0 ? last + 1 : last);
        while (statement.step()) view.keys.append(sqlite3_column_int64(statement.get(), 0));
    }
    view.keysComplete = true;
}

bool Recordset::reaches(std::int64_t index) {
    View& view = *m_view;
    if (index < view.keys.size()) return true;
    if (view.keysComplete) return false;
    if (index > view.keys.size()) {
        completeKeys();
    } else if (!view.page.readOn(view.keys)) {
        view.keysComplete = true;
    }
    return index < view.keys.size();
}

bool Recordset::isEmpty() {
    return !reaches(0);
}

std::string Recordset::sortClause() const {
    if (m_sort.empty()) return {};
    std::string clause;
    for (const SortKey& key : parseSort(m_sort)) {
        const Column& column = m_view->source.columns[columnNamed(key.field)];
        if (!clause.empty()) clause += ", ";
        clause += m_view->source.qualified(column);
        if (isTextType(column.type)) clause += std::string(" COLLATE ") + textCollation;
        if (key.descending) clause += " DESC";
    }
    return clause;
}

void Recordset::PutSort(std::string_view sort) {
    arrange(std::string(sort), m_filter);
}

void Recordset::PutFilter(std::string_view criteria) {
    arrange(m_sort, std::string(criteria));
}

/// What cannot be done leaves the arrangement that was there.
void Recordset::arrange(std::string sort, std::string filter) {
    open();
    finishEdit();
    std::swap(m_sort, sort);
    std::swap(m_filter, filter);
    try {
        readKeys();
    } catch (...) {
        m_sort = std::move(sort);
        m_filter = std::move(filter);
        throw;
    }
    goTo(0);
}

/// The keys of the records that pass the filter.
KeyList Recordset::passing(const KeyList& keys) const {
    const RowSource& source = m_view->source;
    Criteria criteria = parseCriteria(m_filter);
    std::vector<std::size_t> columns;
    for (Criterion& criterion : criteria.list) {
        columns.push_back(columnNamed(criterion.field));
        criterion = boundCriterion(criterion);
    }
    RowPage page(source);
    KeyList result;
    for (std::int64_t i = 0; i < keys.size(); ++i) {
        const auto passes = [&](std::size_t at) {
            return meets(criteria.list[at], page.value(keys, i, columns[at]));
        };
        if (meetsWhereItStands([&] { return criteria.hold(passes); })) result.append(keys.at(i));
    }
    return result;
}

std::size_t Recordset::columnNamed(std::string_view name) const {
    const auto& columns = m_view->source.columns;
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const Column& column) {
        return platform::equalNoCase1252(column.name, name);
    });
    if (found == columns.end()) throw _com_error(hrItemNotFound);
    return static_cast<std::size_t>(found - columns.begin());
}

/// A text that is compared with a field of another type is converted once; it is wrong where it cannot be.
Criterion Recordset::boundCriterion(const Criterion& criterion) const {
    const Column& column = m_view->source.columns[columnNamed(criterion.field)];
    Criterion bound = criterion;
    const bool convert = criterion.value.type() == VarType::text &&
                         criterion.comparison != Comparison::like && !isTextType(column.type) &&
                         column.type != adVarBinary && column.type != adLongVarBinary;
    if (!convert) return bound;
    double number = 0;
    const VariantView value = criterion.value.view();
    bool truth = false;
    if (column.type == adDate && toDate(value, number) == hrOk)
        bound.value = Variant::date(number);
    else if (column.type == adBoolean && toBoolean(value, truth) == hrOk)
        bound.value = truth;
    else if (toReal(value, number) == hrOk)
        bound.value = number;
    else
        throw _com_error(hrInvalidArgument);
    return bound;
}

// Positions.

void Recordset::goTo(std::int64_t index) {
    m_deleted = false;
    if (index < 0) {
        m_place = Place::before;
    } else if (reaches(index)) {
        m_place = Place::on;
        m_index = index;
    } else {
        m_place = Place::after;
    }
}

/// Moving away from an edited record updates it first.
void Recordset::finishEdit() {
    if (m_edit != adEditNone) Update();
}

HResult Recordset::MoveFirst() {
    open();
    finishEdit();
    if (isEmpty()) throw _com_error(hrNoCurrentRecord);
    goTo(0);
    return hrOk;
}

HResult Recordset::MoveLast() {
    open();
    finishEdit();
    completeKeys();
    if (isEmpty()) throw _com_error(hrNoCurrentRecord);
    goTo(m_view->keys.size() - 1);
    return hrOk;
}

HResult Recordset::MoveNext() {
    open();
    finishEdit();
    if (m_place == Place::after || (m_place == Place::before && isEmpty()))
        throw _com_error(hrNoCurrentRecord);
    goTo(m_place == Place::before ? 0 : m_deleted ? m_index : m_index + 1);
    return hrOk;
}

HResult Recordset::MovePrevious() {
    open();
    finishEdit();
    if (m_place == Place::before || (m_place == Place::after && isEmpty()))
        throw _com_error(hrNoCurrentRecord);
    if (m_place == Place::after) completeKeys();
    goTo(m_place == Place::after ? m_view->keys.size() - 1 : m_index - 1);
    return hrOk;
}

HResult Recordset::Move(std::int64_t records, const Variant& start) {
    View& view = open();
    finishEdit();
    if (isEmpty() && !m_deleted) throw _com_error(hrNoCurrentRecord);
    std::int64_t from = indexOfStart(start);
    const bool beyond = (from < 0 && records < 0) || (m_place == Place::after && from == view.keys.size() &&
                                                      view.keysComplete && records > 0);
    if (beyond) throw _com_error(hrNoCurrentRecord);
    if (m_deleted && from == m_index && records > 0) --from;
    std::int64_t target = 0;
    if (__builtin_add_overflow(from, records, &target)) target = records < 0 ? -1 : INT64_MAX;
    goTo(target);
    return hrOk;
}

/// -1 for the place before the first record, the count for the one behind the last.
std::int64_t Recordset::indexOfStart(const Variant& start) {
    const bool given = !start.isMissing() && !start.isNull() &&
                       !(start.type() == VarType::text && start.view().data.empty());
    const bool standard = start.type() == VarType::int32 || start.type() == VarType::int16;
    const std::int64_t number = given && standard ? start.view().integer : std::int64_t{adBookmarkCurrent};
    if (given && (!standard || number < 0 || number > adBookmarkLast)) {
        if (start.type() != VarType::int64) throw _com_error(hrBadBookmark);
        const std::int64_t key = start.view().integer;
        if (m_view->keys.find(key) < 0) completeKeys();
        const std::int64_t index = m_view->keys.find(key);
        if (index < 0) throw _com_error(hrBadBookmark);
        return index;
    }
    if (number == adBookmarkFirst) return 0;
    if (number == adBookmarkLast || m_place == Place::after) completeKeys();
    if (number == adBookmarkLast) return m_view->keys.size() - 1;
    return m_place == Place::before ? -1 : m_place == Place::after ? m_view->keys.size() : m_index;
}

bool Recordset::GetBOF() {
    open();
    return m_edit != adEditAdd && (m_place == Place::before || (m_place == Place::after && isEmpty()));
}

bool Recordset::GetEOF() {
    open();
    return m_edit != adEditAdd && (m_place == Place::after || (m_place == Place::before && isEmpty()));
}

std::int64_t Recordset::GetAbsolutePosition() {
    open();
    if (m_edit == adEditAdd || m_deleted || isEmpty()) return adPosUnknown;
    if (m_place == Place::on) return m_index + 1;
    return m_place == Place::before ? adPosBOF : adPosEOF;
}

void Recordset::PutAbsolutePosition(std::int64_t position) {
    open();
    finishEdit();
    if (position < 1 || !reaches(position - 1)) throw _com_error(hrInvalidArgument);
    goTo(position - 1);
}

std::int64_t Recordset::GetRecordCount() {
    completeKeys();
    return m_view->keys.size();
}

Variant Recordset::GetBookmark() {
    View& view = open();
    if (m_edit == adEditAdd) throw _com_error(hrNoCurrentRecord);
    requireCurrent();
    return static_cast<long long>(view.keys.at(m_index));
}

void Recordset::PutBookmark(const Variant& bookmark) {
    Move(0, bookmark);
}

HResult Recordset::Find(std::string_view text, std::int64_t skip, SearchDirectionEnum direction,
                        const Variant& start) {
    View& view = open();
    const Criterion criterion = boundCriterion(parseCriterion(text));
    const std::size_t column = columnNamed(criterion.field);
    finishEdit();
    std::int64_t at = indexOfStart(start);
    if (at < 0 || !reaches(at)) throw _com_error(hrNoCurrentRecord);
    if (__builtin_mul_overflow(skip, std::int64_t{direction}, &skip) || __builtin_add_overflow(at, skip, &at))
        at = skip < 0 ? -1 : INT64_MAX;
    RowPage page(view.source);
    const auto fits = [&] { return meets(criterion, page.value(view.keys, at, column)); };
    while (at >= 0 && reaches(at) && !meetsWhereItStands(fits)) at += direction;
    goTo(at);
    return hrOk;
}

// Values and changes.

void Recordset::requireCurrent() const {
    if (m_edit == adEditAdd) return;
    if (m_place != Place::on) throw _com_error(hrNoCurrentRecord);
    if (m_deleted) throw _com_error(hrDeletedRow);
}

bool Recordset::isWritable() const {
    return m_lock != adLockReadOnly && m_view != nullptr && !m_view->source.table.empty();
}

void Recordset::requireWritable() const {
    open();
    if (!isWritable()) throw _com_error(hrFeatureNotAvailable);
}

const std::vector<Column>& Recordset::columns() const {
    return m_view != nullptr ? m_view->source.columns : m_appended;
}

VariantView Recordset::value(std::size_t column, bool pendingToo) {
    View& view = open();
    if (m_edit != adEditNone || m_place != Place::on || m_deleted) {
        requireCurrent();
        if (pendingToo && m_isPending[column] != 0) return m_pending[column].view();
        if (m_edit == adEditAdd) return Variant::null().view();
    }
    return view.page.value(view.keys, m_index, column);
}

void Recordset::put(std::size_t column, const Variant& value) {
    requireWritable();
    requireCurrent();
    const Column& field = m_view->source.columns[column];
    if ((field.attributes & adFldUpdatable) == 0) throw _com_error(hrFeatureNotAvailable);
    fit(field, value, m_pending[column]);
    if (m_isPending[column] == 0) m_pendingColumns.push_back(column);
    m_isPending[column] = 1;
    if (m_edit == adEditNone) m_edit = adEditInProgress;
}

EditModeEnum Recordset::GetEditMode() {
    open();
    return m_deleted ? adEditDelete : m_edit;
}

HResult Recordset::AddNew() {
    requireWritable();
    finishEdit();
    completeKeys();
    m_edit = adEditAdd;
    return hrOk;
}

HResult Recordset::CancelUpdate() {
    open();
    dropPending();
    return hrOk;
}

void Recordset::dropPending() {
    for (const std::size_t column : m_pendingColumns) m_isPending[column] = 0;
    m_pendingColumns.clear();
    m_edit = adEditNone;
}

HResult Recordset::Update() {
    open();
    if (m_edit == adEditAdd) {
        insertRow();
    } else if (m_edit == adEditInProgress) {
        requireCurrent();
        updateRow();
    }
    dropPending();
    return hrOk;
}

void Recordset::bindPending(Statement& statement) {
    int parameter = 0;
    for (const std::size_t column : m_pendingColumns)
        bind(statement, ++parameter, m_pending[column].view(), m_scratch[column]);
}

void Recordset::insertRow() {
    View& view = *m_view;
    if (!view.insert || view.insertColumns != m_pendingColumns) {
        std::string names, parameters;
        for (const std::size_t column : m_pendingColumns) {
            names += (names.empty() ? "" : ", ") + view.source.columns[column].expression;
            parameters += parameters.empty() ? "?" : ", ?";
        }
        const std::string values =
            names.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + parameters + ")";
        view.insert = Statement(*view.source.database, "INSERT INTO " + view.source.table + values);
        view.insertColumns = m_pendingColumns;
    }
    bindPending(view.insert);
    view.insert.run();
    view.keys.append(sqlite3_last_insert_rowid(view.source.database->handle()));
    m_deleted = false;
    m_place = Place::on;
    m_index = view.keys.size() - 1;
}

void Recordset::updateRow() {
    View& view = *m_view;
    // Reading on starts behind the last key that is known: that one must not change before all are.
    const bool changesKey =
        std::any_of(m_pendingColumns.begin(), m_pendingColumns.end(),
                    [&](std::size_t column) { return view.source.columns[column].isKey; });
    if (changesKey) completeKeys();
    if (!view.update || view.updateColumns != m_pendingColumns) {
        std::string assignments;
        for (const std::size_t column : m_pendingColumns)
            assignments +=
                (assignments.empty() ? "" : ", ") + view.source.columns[column].expression + " = ?";
        view.update = Statement(*view.source.database, "UPDATE " + view.source.table + " SET " + assignments +
                                                           whereKey(view.source));
        view.updateColumns = m_pendingColumns;
    }
    bindPending(view.update);
    view.update.bind(static_cast<int>(m_pendingColumns.size()) + 1, view.keys.at(m_index));
    view.update.run();
    if (sqlite3_changes(view.source.database->handle()) == 0) throw _com_error(hrDeletedRow);
    for (const std::size_t column : m_pendingColumns)
        if (view.source.columns[column].isKey && !m_pending[column].isNull())
            view.keys.replace(m_index, m_pending[column].view().integer);
    view.page.refresh(view.keys, m_index);
}

HResult Recordset::Delete(AffectEnum) {
    requireWritable();
    dropPending();
    requireCurrent();
    View& view = *m_view;
    completeKeys();
    Statement statement(*view.source.database, "DELETE FROM " + view.source.table + whereKey(view.source));
    statement.bind(1, view.keys.at(m_index));
    statement.run();
    view.keys.erase(m_index);
    view.page.forget();
    m_deleted = true;
    return hrOk;
}

// The rest.

inline FieldCollection& Recordset::fields() {
    if (!m_fields) m_fields = Pointer<FieldCollection>(new FieldCollection(this));
    return *m_fields.get();
}

FieldsPtr Recordset::GetFields() {
    return FieldsPtr(&fields());
}

VariantView Recordset::GetCollectView(std::string_view name) {
    return value(fields().indexOf(name), true);
}

VariantView Recordset::GetCollectView(long index) {
    return value(fields().indexOf(index), true);
}

void Recordset::PutCollect(std::string_view name, const Variant& value) {
    put(fields().indexOf(name), value);
}

void Recordset::PutCollect(long index, const Variant& value) {
    put(fields().indexOf(index), value);
}

void Recordset::append(Column column) {
    m_appended.push_back(std::move(column));
}

_ConnectionPtr Recordset::GetActiveConnection() {
    return _ConnectionPtr(m_connection.get());
}

bool Recordset::Supports(long options) {
    open();
    const long abilities = readOnlyAbilities | (isWritable() ? writingAbilities : 0);
    return (options & ~abilities) == 0;
}

}  // namespace ado20::embedded
