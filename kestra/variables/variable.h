#pragma once
#include <cstddef>
#include <cstdint>

#include <platform/cstring.h>
#include <platform/export.h>

class CModele;
class MyRecordsetPtr;
/// Result of an evaluator function. The host's formula engine gives its values; here it is only carried.
enum retEval : int;

/// A small named value of the hosts' formula evaluation: a tag, and 8 bytes that it gives a meaning to.
///
/// What differs from what a reader may expect:
/// - assignment and copy are shallow: an owned pointer or text is then shared, and only one of the two
///   variables may release it (set the other's `m_type` to `vtEmpty`); what the target held is not released;
/// - `Compare` is not symmetric;
/// - `fAjoute` says 1 even where a text that is no number was ignored.
///
/// Names are bytes; more than 20 are cut. Numbers and texts convert as `kestra/variables/number_text.h` says,
/// whatever the process's locale is. Results are "inf" or "nan" where a double overflows. A null `other` or
/// `source` counts as an empty variable, a null text as the empty text. An operand may be the variable
/// itself. When memory runs out, std::bad_alloc leaves the operation and the variable keeps its value.
class KESTRA_API CVariable {
  public:
    enum VType : std::uint32_t {
        vtEmpty = 0,
        vtRecord = 1,         ///< owned `Record`, from `new`
        vtFunction = 2,       ///< evaluator function, not owned
        vtNumber = 3,         ///< double
        vtShortText = 4,      ///< text of at most 7 characters, in place
        vtText = 5,           ///< owned text, from `new`; null is a text without buffer
        vtBlock = 6,          ///< owned block, from `operator new`; no destructor runs
        vtRecordset = 7,      ///< owned recordset holder
        vtLiveRecordset = 8,  ///< the same, its interface is released before
    };
    using Function = retEval (*)(CModele*, const char*&, CVariable&);
    struct Record {
        CString texts[5];
    };
    union Value {
        double number;
        char shortText[8];
        void* pointer;
        CString* text;
        Record* record;
        MyRecordsetPtr* recordset;
        Function function;
    };

    CVariable() = default;
    CVariable(double number);
    /// The variable owns the recordset, or the block, from now on.
    CVariable(MyRecordsetPtr* recordset);
    CVariable(void* block);
    /// A heap text of its own, copied from `text`.
    CVariable(const char* name, CString text);
    CVariable(const char* name, Function function);
    /// The pointer is taken as it is, and owned as the type says.
    CVariable(const char* name, VType type, void* pointer);
    /// An empty variable: the caller sets type and value.
    CVariable(const char* name);
    // Kept: copies share what is owned; hosts hand values on that way, and empty the source's type.
    CVariable(const CVariable& other) = default;
    CVariable& operator=(const CVariable& other) = default;
    ~CVariable();

    /// Releases what the type owns and empties the variable. A failure while releasing is swallowed.
    void Free();
    /// Whether the variable holds a recordset.
    bool prs() const { return m_type == vtRecordset || m_type == vtLiveRecordset; }
    /// The text of a `vtText` or `vtShortText`, null for any other type; valid until the value changes.
    const char* lpctstr();

    /// Turns the value into a heap text: 1 for a text or a number. Any other value is released and becomes
    /// the empty text: 0.
    int ToCstring();
    /// Releases the value and takes a copy of the source's: 1 for a number or a text. Any other source leaves
    /// the variable empty: 0. From itself, a number or a text stays as it is.
    int fSetValFrom(CVariable* source);

    /// Adds or appends: 1 when done, 0 when the two types do not go together (nothing changes then).
    /// - an empty variable becomes a copy of `other` (`fSetValFrom`);
    /// - to a number, a number is added, or the value of a text that begins with one of "+-0123456789."; a
    ///   text that begins otherwise is ignored (1); a text without buffer gives 0;
    /// - to a text, which becomes a heap text, a text or the text of a number is appended; anything else
    ///   leaves it as it is (1).
    int fAjoute(CVariable* other);
    /// The variable's number less, times or by the other's: 1 when done. An empty variable first becomes 0
    /// (`fSubstract`) or 1 (the other two). A text counts as the number it begins with, 0 when it begins with
    /// none. 0, and no change beyond that, when the variable is no number, or `other` neither a number nor a
    /// text with a buffer. A division by zero stores an infinity or not-a-number.
    int fSubstract(CVariable* other);
    int fMultiplie(CVariable* other);
    int fDivise(CVariable* other);

    /// 1, 0 or -1 for greater, equal or less; -2 when the two do not compare. Two numbers compare as such (0
    /// when one is not-a-number), two texts as unsigned codes up to their NUL. A short text compares with
    /// either kind of text, but a heap text compares with a heap text only: -2 when `other` is a short text.
    /// A text without buffer compares with nothing.
    int Compare(CVariable* other);

    char m_name[20] = {};  ///< NUL-terminated when shorter
    VType m_type = vtEmpty;
    Value m_value = {};

  private:
    int addToNumber(CVariable& other);
    int appendToText(CVariable& other);
    int apply(CVariable* other, double start, double (*operation)(double, double));
};

static_assert(sizeof(CVariable) == 32);
static_assert(offsetof(CVariable, m_name) == 0);
static_assert(offsetof(CVariable, m_type) == 20);
static_assert(offsetof(CVariable, m_value) == 24);

/// How a variable lets go of a recordset. The database room, which knows what a recordset is, puts its own in
/// force when it is loaded; without one a recordset is dropped as it is. Either function may throw.
struct RecordsetRelease {
    /// Gives back the interface of a `vtLiveRecordset`'s holder.
    void (*releaseInterface)(MyRecordsetPtr* recordset);
    /// Destroys and deletes the holder.
    void (*destroy)(MyRecordsetPtr* recordset);
};
/// Puts `release` in force, which must outlive its use (null: none); returns the one before.
KESTRA_API const RecordsetRelease* replaceRecordsetRelease(const RecordsetRelease* release);
