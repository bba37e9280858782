#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <platform/ado/pointer.h>
#include <platform/ado/types.h>
#include <platform/ado/variant.h>
#include <platform/export.h>

/// The ADO objects, as C++ interfaces over two engines: ADO itself through COM (Windows), and an embedded one
/// over SQLite (everywhere). The engine is chosen when a connection is opened, by its connection string.
///
/// What differs from the interfaces that a compiler makes of ADO's type library:
/// - texts are Windows-1252 `std::string`s, positions and counts 64-bit integers;
/// - collections that are only walked are plain vectors (`GetErrors`);
/// - `Field::GetView` and `_Recordset::GetCollectView` read a value without a copy.
/// As there: a failure is thrown as `_com_error`, a call through a null pointer as E_POINTER, operations
/// return the HRESULT of success.
///
/// Objects belong to the thread that made them. Closing a connection closes its recordsets; a recordset keeps
/// its connection alive.
namespace ado20 {

class _Connection;
class _Recordset;
class Fields;
class Field;
class Catalog;
using _ConnectionPtr = Pointer<_Connection>;
using _RecordsetPtr = Pointer<_Recordset>;
using FieldsPtr = Pointer<Fields>;
using FieldPtr = Pointer<Field>;
using CatalogPtr = Pointer<Catalog>;

/// One error of a provider, in the collection of its connection.
struct ProviderError {
    HResult number = 0;
    std::int32_t nativeError = 0;  ///< the provider's own code (SQLite: the extended result code)
    std::string description;
    std::string source;
};

enum class Engine {
    automatic,  ///< chosen by the connection string
    com,        ///< ADO; creating it throws REGDB_E_CLASSNOTREG where there is none, as on Linux
    embedded,
};

class DORSEL_API _Connection : public Counted {
  public:
    /// Opens a database. An empty `connectionString` stands for the property of that name. Options are ADO's;
    /// the embedded engine has no use for them, nor for user and password. Keys of the string, without regard
    /// to case and to blanks around them, `;` between items, values in quotes where they hold a `;`:
    /// - `Provider`: "SQLite" is the embedded engine. The Access providers ("Microsoft.Jet.OLEDB.",
    /// "Microsoft.ACE.OLEDB.")
    ///   are opened by ADO where there is one; when that open fails and the file is an SQLite database, or
    ///   empty, the embedded engine opens it and one trace line says so. Where there is no ADO they go to the
    ///   embedded engine straight away. Anything else belongs to ADO alone (3706 where there is none).
    /// - `Data Source`: the file, as <platform/files.h> names files. It must exist: only `Catalog::Create`
    /// makes one.
    ///   ":memory:" is a database of the connection's own.
    /// - `Mode`: "Read" or "ReadOnly", "Write", "ReadWrite", "Share Deny None" ...; without it the property
    /// `Mode`.
    /// - `File Name`: a data-link file (".UDL"), whose text holds the connection string.
    /// - `Busy Timeout` (embedded engine): how long an operation waits for a database that somebody else has
    /// locked, in
    ///   milliseconds; 5000 without it.
    virtual HResult Open(std::string_view connectionString = {}, std::string_view user = {},
                         std::string_view password = {}, long options = adOptionUnspecified) = 0;
    /// Rolls back what was not committed and closes the recordsets. 3704 when it is not open.
    virtual HResult Close() = 0;
    /// Runs a statement. A statement that gives rows answers an open read-only recordset, another one a
    /// closed recordset; `recordsAffected` (may be null) gets the number of changed rows, -1 for a statement
    /// that gives rows.
    virtual _RecordsetPtr Execute(std::string_view command, std::int64_t* recordsAffected = nullptr,
                                  long options = adCmdText) = 0;
    /// Nesting level of the new transaction, 1 for the outermost. Everything up to `CommitTrans` is one
    /// batch.
    virtual long BeginTrans() = 0;
    /// 3219 without a transaction.
    virtual HResult CommitTrans() = 0;
    virtual HResult RollbackTrans() = 0;
    /// A recordset of the database's tables or columns (see `SchemaEnum`); 3251 for another schema.
    virtual _RecordsetPtr OpenSchema(SchemaEnum schema) = 0;

    /// The errors of the last failed operation, as the provider gave them.
    virtual std::vector<ProviderError> GetErrors() = 0;
    virtual std::string GetConnectionString() = 0;
    /// 3705 while it is open; so are the two below, but for the cursor location.
    virtual void PutConnectionString(std::string_view connectionString) = 0;
    /// What the database was opened for, as ADO states it; the embedded engine always says so on an open
    /// connection: `adModeRead` or `adModeReadWrite` in its two low bits. Before, it is what was put
    /// (`adModeUnknown` at first).
    virtual ConnectModeEnum GetMode() = 0;
    virtual void PutMode(ConnectModeEnum mode) = 0;
    virtual CursorLocationEnum GetCursorLocation() = 0;
    virtual void PutCursorLocation(CursorLocationEnum location) = 0;
    virtual ObjectStateEnum GetState() = 0;
    /// "SQLite", or the name of ADO's provider; "" while closed.
    virtual std::string GetProvider() = 0;
    /// The engine that the connection was opened with; `automatic` before.
    virtual Engine GetEngine() = 0;
    /// The connection of the engine itself, where this one passes calls on to it; lives as long as this one
    /// is open.
    virtual _Connection* GetEngineObject() { return this; }
    /// A number that tells this connection from others, for traces.
    virtual std::uintptr_t GetHandle() = 0;
};

/// The records of a table, a query or a schema, with one of them current.
///
/// Positions: records are numbered from 1. Before the first one BOF is true, behind the last one EOF; both
/// are true in an empty recordset. After opening, the first record is current. Moving beyond an end lands on
/// BOF or EOF; moving on from there is error 3021. Moving while a record is edited or added updates it first.
///
/// The embedded engine: every cursor type and location is its client cursor. Keys are read first and stay, so
/// positions and bookmarks are stable while others write; rows are read by page when they are visited, and
/// show what is in the database then. A record that somebody else deleted fails with DB_E_DELETEDROW when it
/// is read. A table, or a query of columns of one table, can be edited; everything else (views, joins,
/// DISTINCT, GROUP BY, tables without rowid) is a read-only copy from the moment of opening. No lock is held
/// between two calls.
class DORSEL_API _Recordset : public Counted {
  public:
    /// `source` is a statement or the name of a table or view, see `options` (`CommandTypeEnum`). A null
    /// connection is error 3709, unless fields were appended: then the recordset lives in memory. 3705 when
    /// it is open.
    virtual HResult Open(const Variant& source, const _ConnectionPtr& connection,
                         CursorTypeEnum cursor = adOpenUnspecified, LockTypeEnum lock = adLockUnspecified,
                         long options = adOptionUnspecified) = 0;
    /// 3704 when it is not open, 3219 while a record is edited.
    virtual HResult Close() = 0;
    /// Opens the same source anew; the first record becomes current, filter and sort stay.
    virtual HResult Requery() = 0;

    /// Moves by `records` from `start`: missing or empty text is the current record, a 32-bit integer is a
    /// standard bookmark (0 current, 1 first, 2 last), anything else a value of `GetBookmark`.
    /// DB_E_BADBOOKMARK for others.
    virtual HResult Move(std::int64_t records, const Variant& start = Variant::missing()) = 0;
    /// 3021 in an empty recordset, and when the end that they move to was reached before.
    virtual HResult MoveFirst() = 0;
    virtual HResult MoveLast() = 0;
    virtual HResult MoveNext() = 0;
    virtual HResult MovePrevious() = 0;
    virtual bool GetBOF() = 0;
    virtual bool GetEOF() = 0;
    /// 1 to RecordCount; `adPosBOF`, `adPosEOF`; `adPosUnknown` for an empty recordset and a record being
    /// added.
    virtual std::int64_t GetAbsolutePosition() = 0;
    /// 3001 outside 1..RecordCount.
    virtual void PutAbsolutePosition(std::int64_t position) = 0;
    virtual std::int64_t GetRecordCount() = 0;
    /// A 64-bit integer that names the current record as long as the recordset is open, whatever is sorted,
    /// filtered, added or deleted. 3021 without a current record.
    virtual Variant GetBookmark() = 0;
    virtual void PutBookmark(const Variant& bookmark) = 0;

    /// Goes to the next record, from `start` (as for `Move`) and `skip` records further, that meets one
    /// criterion: field, operator, value. The field may stand in [ ] or " "; operators are = < > <= >= <> and
    /// LIKE; a value is a number, True or False, a text between ' (doubled inside) or a date between #, day
    /// first or year first as `toDate` reads it (ADO reads month first). NULL goes with = and <>. In a LIKE
    /// text `*` and `%` stand for any characters. Texts compare without regard to case. Nothing found leaves
    /// EOF (BOF when searching backward). 3001 for a criterion that does not parse, 3265 for an unknown
    /// field, 3021 when the search would start at an end.
    virtual HResult Find(std::string_view criterion, std::int64_t skip = 0,
                         SearchDirectionEnum direction = adSearchForward,
                         const Variant& start = Variant::missing()) = 0;
    /// "FIELD [ASC|DESC], ...", "" for the order of opening. Nulls first, texts without regard to case;
    /// records that are equal stay as they were opened. The first record becomes current. Sorting and
    /// filtering read the keys anew.
    virtual std::string GetSort() = 0;
    virtual void PutSort(std::string_view sort) = 0;
    /// Criteria as for `Find`, joined by AND and OR (AND binds closer, parentheses allowed); "" lifts the
    /// filter. The first record that passes becomes current.
    virtual std::string GetFilter() = 0;
    virtual void PutFilter(std::string_view criteria) = 0;

    /// Begins a new record, with all fields null until they are put; it becomes current. 3251 when read-only.
    virtual HResult AddNew() = 0;
    /// Writes the fields that were put, and only those. On failure they stay pending. Nothing to write is a
    /// success.
    virtual HResult Update() = 0;
    /// Drops what is pending. After `AddNew` the record that was current before is current again.
    virtual HResult CancelUpdate() = 0;
    /// Deletes the current record. It stays current, without values (DB_E_DELETEDROW), until the next move.
    virtual HResult Delete(AffectEnum affect = adAffectCurrent) = 0;
    virtual EditModeEnum GetEditMode() = 0;

    /// The fields of the open recordset; on a closed one the collection to append to (see `Fields::Append`).
    virtual FieldsPtr GetFields() = 0;
    /// `GetView` and `PutValue` of a field that is named or numbered, in one call: for loops over values.
    /// They do, and fail, as the field of `GetFields()->GetItem` does.
    virtual VariantView GetCollectView(std::string_view name) = 0;
    virtual VariantView GetCollectView(long index) = 0;
    virtual void PutCollect(std::string_view name, const Variant& value) = 0;
    virtual void PutCollect(long index, const Variant& value) = 0;
    virtual ObjectStateEnum GetState() = 0;
    virtual std::string GetSource() = 0;
    virtual CursorTypeEnum GetCursorType() = 0;
    virtual LockTypeEnum GetLockType() = 0;
    virtual CursorLocationEnum GetCursorLocation() = 0;
    virtual void PutCursorLocation(CursorLocationEnum location) = 0;
    virtual _ConnectionPtr GetActiveConnection() = 0;
    /// Whether all of the `CursorOptionEnum` bits hold.
    virtual bool Supports(long options) = 0;
};

class DORSEL_API Fields : public Counted {
  public:
    virtual long GetCount() = 0;
    /// By 0-based index, or by name without regard to case. 3265 when there is none.
    virtual FieldPtr GetItem(long index) = 0;
    virtual FieldPtr GetItem(std::string_view name) = 0;
    /// By a text variant or an integer variant, as ADO has it.
    FieldPtr GetItem(const Variant& index);
    FieldPtr GetItem(const char* name) { return GetItem(std::string_view(name)); }
    FieldPtr GetItem(int index) { return GetItem(static_cast<long>(index)); }
    /// Adds a field to a closed recordset that is to live in memory. `definedSize` in characters or bytes for
    /// types that have one. 3705 when it is open, 3001 for a name that is taken or empty.
    virtual HResult Append(std::string_view name, DataTypeEnum type, std::int64_t definedSize = 0,
                           long attributes = adFldIsNullable) = 0;
};

/// A column; its value is that of the current record. It stays valid as long as somebody holds it, and
/// answers 3704 once the recordset was closed.
class DORSEL_API Field : public Counted {
  public:
    virtual std::string GetName() = 0;
    virtual DataTypeEnum GetType() = 0;
    /// Largest size of a value: characters of a text, bytes of anything else.
    virtual std::int64_t GetDefinedSize() = 0;
    /// Size of the current value, 0 for null.
    virtual std::int64_t GetActualSize() = 0;
    /// `FieldAttributeEnum` bits.
    virtual long GetAttributes() = 0;
    /// The value without a copy, valid until the next call on the recordset or on a field of it. Null for a
    /// null. 3021 without a current record.
    virtual VariantView GetView() = 0;
    Variant GetValue() { return Variant(GetView()); }
    /// Makes a value pending until `Update`, converted to the field's type: hrTypeMismatch when it cannot be,
    /// and DB_E_ERRORSOCCURRED when it does not fit (a text longer than the field, a number out of range).
    /// Null is allowed; what the table says of it is told by `Update`. 3251 when the recordset or the field
    /// cannot be written.
    virtual void PutValue(const Variant& value) = 0;
    /// The value before anything was put.
    virtual Variant GetOriginalValue() = 0;
};

class DORSEL_API Catalog : public Counted {
  public:
    /// Makes a new database and opens it. Providers as for `_Connection::Open`: where ADO cannot, the Access
    /// providers' strings make an SQLite database. `hrDatabaseExists` when the file exists.
    virtual _ConnectionPtr Create(std::string_view connectionString) = 0;
};

/// New objects. With `Engine::automatic` they are of no engine until they are opened.
DORSEL_API _ConnectionPtr createConnection(Engine engine = Engine::automatic);
DORSEL_API _RecordsetPtr createRecordset(Engine engine = Engine::automatic);
DORSEL_API CatalogPtr createCatalog(Engine engine = Engine::automatic);

/// COM of the calling thread, initialised while it lives; nothing where there is no COM. The objects of the
/// COM engine hold one themselves, so they outlive their creator's.
class DORSEL_API ComApartment {
  public:
    ComApartment();
    ~ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

  private:
    bool m_initialised = false;
};

/// Where the trace lines of the engines go: a text without line end. Returns the one before; null, as at
/// first, drops them.
using TraceLine = void (*)(const char* text);
DORSEL_API TraceLine replaceTraceLine(TraceLine output);

}  // namespace ado20
using ado20::_ConnectionPtr;
using ado20::_RecordsetPtr;
using ado20::CursorLocationEnum;
using ado20::CursorTypeEnum;
using ado20::LockTypeEnum;
