#pragma once
#include <cstdint>
#include <memory>

#include <platform/arrays.h>
#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/stream.h>

class CComboBox;
class CtesProj;
class Ellipsoide;
class MyPCharArray;

/// A project ("chantier"): one ".cht" file, its lines, the variables that they hold, and the place where it
/// is filed.
///
/// The file. Windows-1252 text, lines ended by LF or CR LF. A physical line has at most 4,998 bytes, its LF
/// included; a longer one is cut there and goes on as the next physical line. Its text ends at its first NUL
/// byte. Leading blanks (tab, space, CR, LF) of every physical line are dropped, trailing ones are dropped
/// from the accumulated text; while the accumulated text then ends with "+", that "+" goes and the next
/// physical line is appended directly. Where the file ends behind such a "+", the text is what stood before
/// it, blanks included. The result is a logical line.
///
/// A logical line is split at every ";": field 0 is the section tag ("$VARCHT"), field 1 the name, the rest
/// are values. Tags and names are compared without regard to case. A ";" inside a value is stored as the byte
/// 0x02. A line whose field 0 is "CHTIVAR" names in field 1 another project file that completes this one. A
/// line with fewer than two fields, and one that nobody asks for, is passed over: there are no comments.
///
/// Relative paths. In a value that is returned (field 2 and beyond), these prefixes stand for folders, at its
/// start and behind a ";" in it: "..\" the folder of the project file the line stands in, "..L\" the local
/// folder of `pvg`, "..N\" and "..R\" its network folder, "..C\" the folder of `chtdef`; letters in either
/// case. Each further "..\" climbs one folder; nothing climbs above a drive root or a share. A prefix whose
/// folder is empty is left as it is.
///
/// Writing. A line is written over where it stands, filled up with blanks before its line end; only when the
/// new one is longer what follows moves. A deleted line has "." for the second character of its tag; writing
/// the variable again takes that line, `Compresse` removes it. Each operation that writes happens whole or
/// not at all, whenever the process or the machine stops, and has reached the disk when it returns: while it
/// runs, an undo record stands beside the project ("plan.ch~"; docs/writing.md), which the next open applies.
/// It also lets one writer in at a time: others, and readers that come then, wait for up to 10 seconds and
/// then fail as when the project cannot be opened. Writers close the stream in the end, and need a folder
/// that may be written. A value that ends in "+", holds a line end or a NUL, or makes a piece of more than
/// 4,998 bytes is written as it is and does not read back as it was: `kestra::readsBack` tells.
///
/// What differs from what a reader may expect: the line buffer, the joined result, the last opened path and
/// the include arrays are shared by all objects, so that only one thread may read projects, and texts must be
/// copied before the next call. Project files are opened for reading and writing: one that may not be written
/// counts as missing. Null texts count as empty ones. No operation throws,
/// but for std::bad_alloc where memory runs out.
class KESTRA_API Cchantier {
  public:
    /// An object without project; opens nothing. `chemins_CHT` is read again from the settings.
    Cchantier();
    /// The same, then `Set(name, 0)`.
    explicit Cchantier(const char* name);
    /// Closes the stream if it is open.
    virtual ~Cchantier();
    /// Copies share the stream: closing one closes the other's.
    Cchantier(const Cchantier& other) = default;
    Cchantier& operator=(const Cchantier& other) = default;

    /// Opens a project file for reading and writing: a standard folder at the start of `name` is replaced
    /// (`ReplaceStdDir`, "R"), what stands behind the last "." cut (a dot in a folder name counts too),
    /// ".cht" appended, and the file looked for along `chemins_CHT`. A stream open before is closed in every
    /// case. Returns the full path of the file, valid until the next `Open` of any object; null for a name
    /// of fewer than 2 or more than 259 characters and when there is no such file. `m_cheminCht` stays.
    const char* Open(const char* name);
    /// Rewinds the open stream and returns the text of `m_cheminCht`, or opens `m_cheminCht` as above.
    const char* Open();
    /// Closes the stream if it is open; copies of the object find theirs closed.
    void Close();

    /// Reads the next logical line. `line` points to its text, valid until the next `Lisligne` or `Findvar`
    /// of any object; the caller may write into it. Returns the number of physical lines read; 0, and an
    /// empty text, at the end of the file and without an open stream.
    int Lisligne(char*& line);

    /// Finds, from the stream's position on, the next line of `section` whose name matches `name` ("*" any
    /// run, "?" any character; both texts count for 1,000 characters at most). Returns the file offset at
    /// which that line starts, with its text in `line` as `Lisligne` gives it; the stream then stands behind
    /// the line. Without an open stream `m_cheminCht` is opened for the call. -1, and an empty text, when
    /// there is none or it starts beyond 2,147,483,647 bytes. Include names met on the way are added to
    /// `m_ChtIVAR`.
    long Findvar(char*& line, const char* section, const char* name);

    /// Collects the fields of every line of a variable, from this file and its includes, into `out`, one line
    /// after the other with no mark between them, at most `maxFields` a line (0 or less: all). Returns the
    /// number of lines.
    ///
    /// - A name of at least 3 characters loses its leading "*"s: one means nothing, two or more leave out the
    ///   file's own lines.
    /// - All matching lines of the file itself are returned; when one bears the very name asked for (no
    ///   wildcard needed), no include is read.
    /// - Includes are read breadth first, each file once, the project itself counting as read. A name without
    ///   folder is looked for beside `m_cheminCht`, then as it stands. One that cannot be opened is passed
    ///   over. The very name ends the search in that included file only. Field 1 of an included line is "**"
    ///   and the name, or the name as it stands when two or more "*" were given.
    /// - A read error counts as the end of its file.
    ///
    /// `out` is emptied once the file is open; when it cannot be opened, or `section` or `name` is empty, the
    /// result is 0 and `out` stays. The stream is closed in the end.
    int Getvar(const char* section, const char* name, int maxFields, CStringArray& out);
    /// The same, the fields laid end to end in one text, each ended by a NUL. `starts`, when given, receives
    /// the position at which each field starts in it. `joined` is valid until the next call of this form on
    /// any object, and unchanged when the result is 0.
    int Getvar(char*& joined, const char* section, const char* name, int maxFields,
               CDWordArray* starts = nullptr);

    /// Writes one line: `section` and `name` (leading blanks dropped) in upper case, then `values` as they
    /// are
    /// (";" separates values), then CR LF. The line written over is the first of the variable, else the first
    /// deleted one of it; without any the line is added at the end, behind a line end. Returns the number of
    /// ";" in the line (2 or more); 1, with the file as it was, when it cannot be opened or written.
    ///
    /// - The very first line of the file is never written over: the variable is written elsewhere and both
    ///   lines remain.
    /// - With fewer than 4 bytes behind it, a line that grows covers them and moves nothing.
    /// - The end is looked for in the last 5 bytes, at the first CR, LF or 0x1A: a last line of fewer
    ///   than four characters is partly written over.
    /// - A line that starts beyond 2,147,483,647 bytes is not found: the variable is written again,
    ///   at the end.
    /// - Wildcards in `name` find a line as `Findvar` does, and are written.
    int Setvar(const char* section, const char* name, const char* values);
    /// Entry 0 is the section (19 characters count), entry 1 the name (254), the others values, whose ";" are
    /// written as 0x02. The line is broken by "+" CR LF before a value with which it would reach 80
    /// characters (separators between values not counted); a value itself is never cut. Result as above; 0,
    /// and nothing written, without section and name.
    int Setvar(const CStringArray& fields);
    /// The same with texts up to the first null one. Each ";" in the caller's value texts becomes 0x02.
    int Setvar(MyPCharArray& fields);
    /// Gives every line of a variable (wildcards as in `Findvar`) another section tag, in place. Without a
    /// new section the lines are marked deleted. Returns their number. -1, with the file as it was, when it
    /// cannot be opened or written or the new tag is longer than the old one; a shorter one leaves the rest
    /// of the old one standing.
    int Changevar(const char* section, const char* name, const char* newSection);
    /// Removes the deleted lines; every other byte stays. A copy is put in place in one step. Returns their
    /// number; -1, with the file as it was, when it cannot be opened or written.
    int Compresse();

    /// Loads a project: `name`, or `m_cheminCht` when it is null or empty. Returns 1 when the file was found,
    /// 2 when `viaService` is not 0 and it was found through its service folder (`Maj_DirService`), 0, with
    /// `m_titre` emptied and the rest as it was, when it was not found.
    ///
    /// `m_cheminCht` becomes the name as given (for 2, the corrected path); `chtdef` also copies it to
    /// `DOS::m_NomChtDef`. Then `m_service` (`Dir_serv`), `m_titre` ("TITRE"), `m_bDwg` ("DWG_DXF", else
    /// `DOS::Dwg_Dxf`), `m_fichiers` ("FICHIERS" of "$DORSEL", kept when missing), `m_projection` and
    /// `m_infoA`, `m_infoB` ("INFOS", second and first value) are read. Of a variable that stands twice the
    /// last line counts. Two are written back in their present form when they stand in the file in an old
    /// one: ".dxf" or "DWG" becomes ".DXF" or ".DWG", a numeric projection code its name.
    int Set(const char* name, int viaService);
    /// Makes a new project from a model and loads it. `newName` is cut at its first "." and gets ".CHT". Of
    /// the model's lines, each ended by CR LF in the new file, are copied: empty ones and those that begin
    /// with
    /// "'" or "#"; those that begin with "$$", without the first "$"; others that begin neither with "$" nor
    /// with a model command. Continuations go with their line. A missing folder is made. Returns the number
    /// of lines written; 0 when the model is missing, the project is there already, or it cannot be made,
    /// which a message tells the user. The file is put in place whole.
    int Create(const char* newName, const char* modelName);
    /// Calls `cht_charge` with `m_cheminCht`; 0 without a hook or a path of at least 2 characters.
    int PrjLoad() const;

    /// Folders around the project, each ended by ";": its own, and the one above when that is no drive root
    /// and at least 11 characters long, each followed by `subFolder` (may be null); then, when
    /// `withLibraryPaths` is not 0, `DOS::chemins_WAU`.
    CString GetPathWau(int withLibraryPaths, const char* subFolder) const;
    /// Folders for header files: those of "DIRENTETE" of `chtdef` (10 fields) that exist,
    /// `GetPathWau(0, "ENTETES\")`, the project's own when bit 0 of `flags` is set, `DOS::chemins_ENTETE`.
    CString GetPathEntete(int flags) const;
    /// The table files of "TABLES_DEF": buffers of `DOS::pathSize` bytes, each may be null. Missing ones are
    /// "TABLE.LGN" for `table2` and `table3`, empty for the others. With `locate` not 0 those of the file are
    /// looked up, the first three along `GetPathWau(1)`, the fourth along `GetPathEntete(1)`; one that is not
    /// found becomes empty. Returns the number of values.
    int GetTables(char* table1, char* table2, char* table3, char* table4, int locate);
    /// Projection name by index; 99 stands for 7. "_Non Définie" for any index without a name.
    static const char* GetNomProj(int index);

    // Services. "ini\services.ini" of the local folder, else "ini\services.def" of the network folder, maps
    // ranges of codes to folders: lines FROM;TO;FOLDER;RULE;RULE (`services_file.h`).

    /// The folder of a service code, ending in a separator, into `folder` (260 bytes). Returns its length; 0,
    /// with `folder` empty, when no line applies or the folder does not fit; -1, after a message to the user
    /// on every call, when there is no services file. The code counts in upper case, up to a "-" in the place
    /// of its 6th, 7th or 8th character, without an "A" before a digit.
    static int Serv_dir(const char* code, char* folder);
    /// The service code under which a project is filed: the name of its folder, or of the folder above (both
    /// without a leading "ACAD"), that leads back to it. Into `code` (260 bytes, may be null). Returns its
    /// length, 0 for none.
    static int Dir_serv(const char* project, char* code);
    /// Makes a full path of a service code or folder and a project name, in `name`: a code becomes its folder
    /// in `service`. Returns the length of `name`; 0, and no change, for an empty service.
    static int GetPathCht(CString& service, CString& name);
    /// The inverse: leaves the short name in `path`. Returns its length.
    static int GetNomCourtCht(CString& service, CString& path);
    /// Finds a project that is no longer where `m_cheminCht` says: when the folder is gone too, its name is
    /// taken as a service code. 2 when the file stands in the service's folder: `m_cheminCht` is then
    /// corrected and `Maj_DirCht` done. 1 when nothing has to be done, 0 when it was not found.
    int Maj_DirService();
    /// Records the project's folder in the file ("$VARCHT;MAJDIRCHT;", upper case unless it is a POSIX path)
    /// and, after a move, puts the new folder in the place of the one recorded before wherever that occurs.
    /// Without a record the second value of "$VARCHT;CHANTIER;" is taken, unless it is relative ("..\").
    /// `m_cheminCht` is opened as it stands. 1 when done, also, with the file as it was, when it cannot be
    /// read whole; 0, with the file as it was, when it cannot be opened or written.
    int Maj_DirCht();
    /// The extent of the layouts stored in a project: box receives minimum X and Y, maximum X and Y, cut to
    /// whole numbers, of the rectangles that the "$MEP;" lines describe, each within the 500 characters
    /// behind that tag, whatever line ends stand among them. Returns the number of layouts; lines that lack a
    /// number or "ECH,", or whose X is not above 20000, do not count, nor do extents beyond 32 bits. The path
    /// is opened as it stands.
    static int GetMinMaxMepCht(const char* project, std::int32_t box[4]);

    // Coordinate conversions. Points are arrays of three numbers: X and Y (metres) or longitude and latitude
    // (decimal degrees from Greenwich), and the height (metres). They are converted in place, and untouched,
    // with `scale`, when the result is 0. A null projection stands for the project's. `scale`, when given,
    // receives the scale factor of the projection at the point.

    /// Geographic to plane; the height stays. 1, or 0 without point or projection and where the projection
    /// fails.
    int GeoToXYZ(double* point, const CtesProj* projection, double* scale) const;
    /// Plane to geographic, the same way. Where the project's projection asks for a zone it is the point's.
    int XYZToGeo(double* point, const CtesProj* projection, double* scale) const;
    /// From one projection to another, the datum with it; the height is used and stays. One of the two may be
    /// null: the project's projection. 0 with both null, without the datum of either, and where a step fails;
    /// 1 with the point as it was, and `scale` untouched, when both are the same.
    int Lambert(double* point, const CtesProj* from, const CtesProj* to, double* scale) const;
    /// The same for X and Y in whole metres, cut towards zero, at height 0; 0 also when they would not fit.
    int Lambert(std::int32_t* point, const CtesProj* from, const CtesProj* to, double* scale) const;
    /// A geographic point from one datum to another; a null one is GRS80 without a shift. 0, with the point
    /// untouched, when both are the same object or the shift fails.
    int DatumShift(double* point, const Ellipsoide* from, const Ellipsoide* to) const;
    /// Scale factor at a plane point; 0 without projection and where there is none.
    static double LambertScale(const double* point, const CtesProj* projection);
    /// Fills a combo box that has fewer than 2 entries with the projections (`kestra::projectionChoices`) and
    /// selects the entry that equals `selection` without regard to case. Returns its index, -1 when there is
    /// none or no combo. Windows only (kestra/dialogs).
    static int UpdateComboProjection(const char* selection, CComboBox* combo);

    CString m_cheminCht;  ///< project file as last set, not resolved
    CString m_service;    ///< service code under which the project is filed
    CString m_titre;
    CString m_fichiers;   ///< file list, the remarks file
    std::int32_t m_bDwg;  ///< 1: drawings are ".DWG", 0: ".DXF"
    CString m_projection;
    CString m_infoA;
    CString m_infoB;
    std::int32_t m_spareA;                   ///< 0; copied, of no other use here
    std::int32_t m_spareB;                   ///< 0; copied, of no other use here
    std::shared_ptr<platform::Stream> m_fp;  ///< open file; null or closed: none
    std::int32_t m_spareC;                   ///< set to 0 by `Getvar`

    /// Folders searched for a project file, joined by ";"; a list of `DOS::Alloc_ini`, freed at the library's
    /// last exit.
    static char* chemins_CHT;
    /// Called when a project is loaded; null: nobody.
    static int (*cht_charge)(const char*);
    /// Include names that wait for their turn, and include names and resolved paths already visited, during
    /// one `Getvar`; empty after it. Names taken from the queue leave the array in batches.
    static CStringArray m_ChtIVAR;
    static CStringArray m_ChtIVAROK;
    /// The pair remembered by the search for a project's service; every construction resets it.
    static char last_dir_cht[260];
    static char last_service[260];

  private:
    void _Init_cht();
    bool isOpen() const { return m_fp != nullptr && m_fp->isOpen(); }
};

/// The default project of the process.
KESTRA_API extern Cchantier chtdef;

extern "C" {
/// `Getvar` on `chtdef`.
KESTRA_API int ChtdefGetVar(const char* section, const char* name, int maxFields, CStringArray& out);
/// `Setvar` on `chtdef`.
KESTRA_API int ChtdefSetVar(const CStringArray& fields);

#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
/// The affair part of a service code: what stands before its first "-" or "/", all of it when that is empty.
/// It returns a class: for hosts of the same compiler.
KESTRA_API CString GetAffaire(const char* code);
#ifdef __clang__
#pragma clang diagnostic pop
#endif
}
