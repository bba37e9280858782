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

/// A project ("chantier"): one ".cht" file, its lines, and the variables that they hold.
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
/// What differs from what a reader may expect: the line buffer, the joined result, the last opened path and
/// the include arrays are shared by all objects, so that only one thread may read projects, and texts must be
/// copied before the next call. Project files are opened for reading and writing: one that may not be written
/// counts as missing. Null texts count as empty ones. No operation throws.
class KESTRA_API Cchantier {
  public:
    /// An object without project; opens nothing. `chemins_CHT` is read again from the settings.
    Cchantier();
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
    ///
    /// `out` is emptied once the file is open; when it cannot be opened, or `section` or `name` is empty, the
    /// result is 0 and `out` stays. The stream is closed in the end.
    int Getvar(const char* section, const char* name, int maxFields, CStringArray& out);
    /// The same, the fields laid end to end in one text, each ended by a NUL. `starts`, when given, receives
    /// the position at which each field starts in it. `joined` is valid until the next call of this form on
    /// any object, and unchanged when the result is 0.
    int Getvar(char*& joined, const char* section, const char* name, int maxFields,
               CDWordArray* starts = nullptr);

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
}
