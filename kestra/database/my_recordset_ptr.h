#pragma once
#include <cstdint>

#include <kestra/database/database.h>
#include <platform/ole_date_time.h>

class CVariable;

using ado20::CursorTypeEnum;
using ado20::LockTypeEnum;

/// A recordset whose failures never reach the caller: each is kept in `m_LastError`, written with `mprintf`
/// as " ***Erreur ", the operation, ':' and the database's own words, and turned into a neutral value. The
/// value family (`GetValue`, `GetStrValue`, `SetValue`) fails without a word.
///
/// What differs from what a reader may expect:
/// - copies share one recordset, and the first of them that is destroyed closes it for all;
/// - statuses are HRESULTs, 0 for success, -1 for a failure that was reported, unless it says otherwise;
/// - the current position is kept here as far as it is known (`m_Position`); after `AddNew`, `Find` and moves
///   beyond an end it may be off until `GetPosition`;
/// - positions are those of ADO less one: 0 for the first record, -4 behind the last one, -3 before the
///   first, -2 where there is none;
/// - `Eof` and `Bof` are -1 for true, and for a failure, so that a loop over records ends there too;
/// - `GetFieldName` and `GetStrValue` answer with the module-wide text of <kestra/database/database.h>.
///
/// Rows on demand: `Move(row, -1)` costs nothing that grows with the table, whatever the row; so does
/// `MoveTo` a bookmark. Fields by index are reached without a search.
class KESTRA_API MyRecordsetPtr {
  public:
    /// A recordset that is not open.
    MyRecordsetPtr();
    /// Takes an open recordset: of a schema, of a statement.
    explicit MyRecordsetPtr(_RecordsetPtr recordset);
    MyRecordsetPtr(const MyRecordsetPtr& other) = default;
    MyRecordsetPtr& operator=(const MyRecordsetPtr& other) = default;
    /// Closes the recordset, and never the connection.
    ~MyRecordsetPtr();

    /// Opens a table or a statement, after `Close`. 0; -1. On a connection that may not be written through it
    /// is opened read-only, whatever `lock` says. `m_Position` becomes -1.
    long Open(const char* source, _ConnectionPtr connection, long options, CursorTypeEnum cursor,
              LockTypeEnum lock);
    /// 0, also when it was not open; -1. A record that is being edited makes it fail.
    long Close();

    /// `start` -1: goes to the record at the 0-based position `records`, from where it stands when that is
    /// nearer than the first record. Any other `start` is one of ADO's standard bookmarks (0 the current
    /// record, 1 the first, 2 the last), from which it moves `records` records. 1, with the position taken
    /// for 0, on a failure.
    long Move(long records, long start);
    long MoveFirst();
    long MoveNext();
    long MoveLast();
    int Eof();
    int Bof();
    /// Number of records, 0 on a failure.
    long GetRecordCount();
    /// Asks for the position; 0 on a failure.
    long GetPosition();
    /// Names the current record as long as the recordset is open; null without one.
    ado20::Variant GetBookmark();
    /// Goes to a record by its bookmark.
    long MoveTo(const ado20::Variant& bookmark);
    /// Goes to the first record, when `fromFirst` is not 0, then on to the record that meets `criteria`
    /// (`ado20::_Recordset::Find`), passing over `skip` records. Its position (-4 when there is none); -1.
    int Find(const char* criteria, int skip, int fromFirst);
    /// Shows only the records that meet criteria joined by AND and OR, or in the order of fields, each with
    /// ASC or DESC (`ado20::_Recordset::PutFilter`, `PutSort`); empty for all, and for the order of opening.
    /// The first record becomes current. 0; -1.
    long Filter(const char* criteria);
    long Sort(const char* fields);

    long AddNew();
    /// Writes what is pending. On a failure it stays so, but is dropped with bit 0 of `cancelOnError`.
    long Update(int cancelOnError);
    long CancelUpdate();

    /// Number of fields, 0 on a failure.
    int GetFieldCount();
    /// "" on a failure.
    const char* GetFieldName(long index);
    /// Index of the first field of that name, without regard to case; -1 when there is none.
    int GetIndexFromName(const char* name);

    /// Reads a field of the current record by name, or by index from 0, converted as
    /// <platform/ado/variant.h> says. False, and `value` empty or 0, when it cannot be read or converted; a
    /// null cannot. Of a date only the serial number is touched, its status stays as it was.
    bool GetValue(const char* name, CString& value);
    bool GetValue(const char* name, long& value);
    bool GetValue(const char* name, double& value);
    bool GetValue(const char* name, COleDateTime& value);
    bool GetValue(long index, CString& value);
    bool GetValue(long index, long& value);
    bool GetValue(long index, double& value);
    /// A number for a field of type double or decimal, else a text; what the variable held is released. A
    /// field that does not exist leaves it as it was (true); any other failure empties it (false).
    bool GetValue(const char* name, CVariable& value);
    /// The field's text, "" on a failure.
    const char* GetStrValue(const char* name);
    const char* GetStrValue(long index);
    /// Makes a field's value pending until `Update`; `AddNew`, or nothing, goes before.
    bool SetValue(const char* name, const char* value);
    bool SetValue(const char* name, long value);
    bool SetValue(const char* name, double value);
    bool SetValue(const char* name, COleDateTime value);
    bool SetValue(long index, const char* value);
    bool SetValue(long index, long value);
    bool SetValue(long index, double value);
    /// So that literal numbers need no suffix.
    bool GetValue(int index, auto& value) { return GetValue(static_cast<long>(index), value); }
    bool SetValue(long index, int value) { return SetValue(index, static_cast<long>(value)); }
    bool SetValue(int index, auto value) { return SetValue(static_cast<long>(index), value); }
    bool SetValue(const char* name, int value) { return SetValue(name, static_cast<long>(value)); }

    /// The current record as one text: for each field that has a text `separator`, its name, '|', the text
    /// and a byte 255. Returns the number of fields, those left out included; 0 at the end of the records.
    /// WRITES to the record: a field named "DATE" (in any case) gets the current date and time, and the
    /// record is updated, at every call. A date that cannot be set ends the text there.
    int GetString(CString& text, char separator);

    /// Reports " ***Erreur WHERE:MESSAGE"; -1. A null `where` is left out. "%%" is written as "%".
    int Erreur(const char* message, const char* where);
    /// The same with the description of an error, which is kept in `m_LastError`; -1.
    int Erreur(const _com_error& error, const char* where);

    _RecordsetPtr m_pRecordset;
    MyError m_LastError;
    std::int32_t m_Position = -1;

  private:
    void stampDate(long index);
};
