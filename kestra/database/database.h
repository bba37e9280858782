#pragma once
#include <cstdint>
#include <string>

#include <platform/ado/ado.h>
#include <platform/cstring.h>
#include <platform/export.h>

/// The last failure of a database, or of a recordset.
struct KESTRA_API MyError {
    /// Stores an error's description (empty when it has none) and its HRESULT.
    void SetError(const _com_error& error);

    CString m_Description;
    std::int32_t m_Code = 0;
};

/// Finds or asks for a database file, opens and creates databases, and reports the errors of databases.
///
/// Where the texts go. `GetConnectString`, `CreateDatabase`, `PackRecord`, `PackRecordNul` here, and
/// `GetFieldName` and `GetStrValue` of `MyRecordsetPtr`, answer with one module-wide text: each call of any
/// of them overwrites it. It may be passed to any of them.
///
/// What differs from what a reader may expect: no operation throws. A failure is written with `mprintf` as
/// "***Erreur ", what was tried, ':' and the database's own words, and a neutral value is returned. Null
/// texts count as empty ones. Everything runs on one thread.
///
/// Settings, of source "TOREL" in mode "LR":
/// - "DATABASE", "DEBUG": a number, into `debug` at each construction;
/// - "DATABASE64", "TYPEFICH": filter of the file dialog;
/// - "DATABASE64", an extension with its dot (".MDB"): the connection string for such files, with "%s" where
///   the path stands.
class KESTRA_API Database {
  public:
    /// What `GetConnectString` and `OpenDB` are asked; values add up.
    enum Flags {
        askWhenMissing = 2,  ///< show the file dialog when no file matches
        askAlways = 4,
        readOnly = 8,
    };

    Database();

    /// The connection string for a file, which becomes the path of this object.
    ///
    /// - `pattern` is a path or a name with '*' and '?', looked for as it stands and in the folder "ACCESS"
    ///   beside the current project (`DOS::m_NomChtDef`, else the file of `chtdef`). One of fewer than 3
    ///   characters counts as "*.mdb". What is not found, and not chosen, is taken as it is.
    /// - A file chosen in the dialog is taken in upper case (unless it is only found as it was written). When
    ///   there is no such file a data-link file of its name is offered (`EditUdl`).
    /// - The string is "Provider =Microsoft.ACE.OLEDB.12.0;Data Source=PATH;", "File Name=PATH" for the
    ///   extension ".UDL" in capitals, or what the settings have for the extension: the first "%s" is the
    ///   path, "%%" a '%'. A path that holds a ';' is put between quotes, unless it stands in quotes already.
    /// - Read-only: every "ReadWrite" becomes "Read"; where there is none "Mode=ReadOnly;" is appended, as it
    ///   is: a data-link file wants a pattern of the settings that ends in ';'.
    const char* GetConnectString(const char* pattern, int flags);

    /// Opens a database on the connection string above; null when that failed, once it was reported. The
    /// connection is closed by its last reference.
    _ConnectionPtr OpenDB(const char* pattern, int flags, CursorLocationEnum location);

    /// Makes an empty Access database and returns its path, "" when that failed, once it was reported. A file
    /// of that name is deleted first. A null `path` makes the temporary database "C:\TEMP\~PIDTempDb.Mdb"
    /// (the number of the process, four hexadecimal digits or more), which the library deletes at its end.
    const char* CreateDatabase(const char* path);

    /// Lets the user edit a data-link file (".UDL", in any case; added to a name without extension), and
    /// comes back when the editor was closed (where that can be told). `path` null or empty: the path of this
    /// object. A missing file is made, empty, and becomes the path of this object; with bit 0 of `flags` the
    /// user is asked before. 1 when the file was there to edit; 0 for another extension, no name at all, a
    /// refusal, and a file that cannot be made.
    int EditUdl(const char* path, int flags);

    /// Lets the user choose a table or a query. 0 and its name in `table`; -1 when the user gave up, or when
    /// there was nothing to choose. With bit 0 of `flags` the choice starts on the name that `table` holds. A
    /// database that cannot be listed is reported, and offers what could be listed.
    long SelectTable(CString& table, _ConnectionPtr connection, int flags);

    /// Reports "***Erreur WHERE:MESSAGE"; -1. A null `where` is left out.
    static int Erreur(const char* message, const char* where);
    /// The same with the description of an error, which is kept in `m_LastError`; -4.
    static int Erreur(const _com_error& error, const char* where);

    /// One field as a text, its parts chosen by `flags` and ended by '|': 4 the field's type as ADO's number
    /// and ':', 2 its name and '=', 1 the value. A failure, a value that has no text included, ends it early:
    /// "3:NUM=12|", "3:NUM=|". Nothing is escaped or reported.
    static const char* PackRecord(ado20::Field* field, int flags);
    /// The same for a field without value: its type is 0.
    static const char* PackRecordNul(const char* name, int flags);

    CString m_Path;  ///< the database file in use

    static int debug;                ///< other than 0: `OpenDB` writes what it opens
    static MyError m_LastError;      ///< of the last error reported here
    static CString& m_TempDatabase;  ///< path of the temporary database; empty for none. Never destroyed

  private:
    void askForFile(std::string& file);
    bool makeDataLink(const std::string& file, int flags);
};
