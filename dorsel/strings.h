#pragma once
#include <cstdint>

#include <platform/export.h>

/// Text helpers of the base library. All work in place on NUL-terminated Windows-1252 texts and return the
/// text they were given; a null text is returned as it is.

/// Array of text pointers that `STR::Separe` fills. The texts are not owned: they point into the buffer that
/// was split.
class DORSEL_API MyPCharArray {
  public:
    MyPCharArray();
    ~MyPCharArray();
    MyPCharArray(const MyPCharArray& other);
    MyPCharArray& operator=(const MyPCharArray& other);

    int GetSize() const { return m_size; }
    /// New pointers are null. A negative size counts as 0. Returns the new size; the old one when memory is
    /// short.
    int SetSize(int size);
    /// Null outside the array.
    char* operator[](unsigned index) const {
        return index < static_cast<unsigned>(m_size) ? m_texts[index] : nullptr;
    }
    /// False outside the array.
    bool SetAt(unsigned index, char* text);
    /// Index of the new pointer; -1 when memory is short.
    int Add(char* text);

  private:
    char** m_texts = nullptr;
    int m_size = 0;
    int m_room = 0;
};

namespace STR {

/// Upper-case equivalent of each code of the code page, once `Init_tables_car` has run.
DORSEL_API extern unsigned char Chr_majuscule[256];
/// Lower-case equivalent of each code.
DORSEL_API extern unsigned char Chr_minuscule[256];

/// Builds the character tables. The other helpers do not depend on it.
DORSEL_API void Init_tables_car();

/// Upper-cases the text, accented letters included.
DORSEL_API char* Majuscules(char* text);

/// Strips leading and trailing blanks (space, tab, CR, LF, no-break space 0xA0).
DORSEL_API char* Espace(char* text);

/// Cuts the text at each `separator` and fills `pieces` with pointers to the pieces, in order; returns their
/// number, which is also the array's size. With `maximum` above 0 at most that many pieces are kept: each
/// still ends at its separator and what lies beyond is dropped. A text without separator is one piece; an
/// empty text is one empty piece; a null text gives none.
DORSEL_API int Separe(char* text, char separator, MyPCharArray& pieces, int maximum);

/// Number of digits at the start of the text, behind leading blanks: above 0 when the text begins with a
/// number. `flag` is 1.
DORSEL_API int Num(const char* text, int flag);

/// Removes the CR and LF characters at the end of the text; `removed`, when given, receives how many there
/// were.
DORSEL_API char* CR_LF(char* text, int* removed);

/// Replaces every '/' (code 47) by '\' (code 92).
DORSEL_API char* C47_92(char* text);
/// Replaces every '\' (code 92) by '/' (code 47).
DORSEL_API char* C92_47(char* text);

/// Writes a local date and time as "dd/mm/yyyy hh:mm:ss" (room for 32 characters). `time` counts seconds
/// since 1970-01-01 UTC; `time64`, when given, is used in its place. A time that has no local date gives the
/// empty text.
DORSEL_API char* StrDate(char* out, std::int32_t time, const std::int64_t* time64);

/// Non-zero when the text matches the pattern: '*' stands for any run of characters, '?' for any one,
/// everything else for itself (case counts). Takes time proportional to the product of both lengths at most.
/// A null text or pattern matches nothing. `unused` is null.
DORSEL_API int Teste_ASCII(const char* text, const char* pattern, const void* unused);

}  // namespace STR
