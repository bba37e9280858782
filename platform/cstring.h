#pragma once
#include <cstdarg>
#include <string>
#include <string_view>

#include <platform/export.h>

/// The framework's growable 8-bit text (Windows-1252), NUL-terminated, under its usual operations.
///
/// What differs from what a reader may expect:
/// - it holds any bytes, NUL included; operations that take a `const char*` stop at the first NUL, a null
/// pointer
///   counts as the empty text;
/// - indices are `int`, in bytes; out-of-range indices and counts are clamped, `GetAt` outside the text gives
/// 0;
/// - growth is amortised: n appended characters cost O(n);
/// - case follows Windows-1252 (`platform/cp1252.h`), whatever the process's locale is;
/// - pointers returned by the conversion and by `GetBuffer` live until the next change of the text.
/// Not thread-safe; copies are independent.
class DORSEL_API CString {
  public:
    CString() = default;
    CString(const char* text) : m_text(text != nullptr ? text : "") {}
    CString(const char* text, int length);
    CString(std::string_view text) : m_text(text) {}
    explicit CString(char character, int count = 1);

    operator const char*() const { return m_text.c_str(); }
    const char* GetString() const { return m_text.c_str(); }
    std::string_view view() const { return m_text; }

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    /// Gives back the memory beyond the text.
    void FreeExtra() { m_text.shrink_to_fit(); }
    void Preallocate(int length);
    char GetAt(int index) const;
    void SetAt(int index, char character);
    char operator[](int index) const { return GetAt(index); }

    CString& operator=(const char* text);
    CString& operator=(std::string_view text);
    CString& operator=(char character);
    CString& operator+=(const CString& text);
    CString& operator+=(const char* text);
    CString& operator+=(char character);
    CString& operator+=(std::string_view text);
    void Append(const char* text, int length);

    /// Order as unsigned codes: negative, 0 or positive. `CompareNoCase` upper-cases both sides first.
    int Compare(const char* other) const;
    int CompareNoCase(const char* other) const;

    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    /// Longest start made only of (or of none of) the characters of `set`.
    CString SpanIncluding(const char* set) const;
    CString SpanExcluding(const char* set) const;
    /// Next piece from `position` on that is free of `separators`; moves `position` behind it, -1 when there
    /// is none left (the result is then empty). Runs of separators count as one.
    CString Tokenize(const char* separators, int& position) const;

    CString& MakeUpper();
    CString& MakeLower();
    CString& MakeReverse();
    /// Blanks are space, tab, line feed, vertical tab, form feed and carriage return.
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim(const char* set);
    CString& TrimLeft(const char* set);
    CString& TrimRight(const char* set);

    /// Index of the first occurrence at or after `start`, -1 when there is none.
    int Find(char character, int start = 0) const;
    int Find(const char* text, int start = 0) const;
    int FindOneOf(const char* set) const;
    int ReverseFind(char character) const;

    /// Number of replacements; an empty `before` replaces nothing.
    int Replace(const char* before, const char* after);
    int Replace(char before, char after);
    /// Number of characters removed.
    int Remove(char character);
    /// New length. An index beyond the end inserts at the end, a negative one at the start.
    int Insert(int index, const char* text);
    int Insert(int index, char character);
    int Delete(int index, int count = 1);

    /// printf rules. The text itself may be one of the arguments.
    void Format(const char* format, ...) KESTRA_PRINTF(2, 3);
    void AppendFormat(const char* format, ...) KESTRA_PRINTF(2, 3);
    void FormatV(const char* format, va_list arguments);

    /// Buffer of at least `length` characters plus a NUL; `ReleaseBuffer` must follow: with -1 the text ends
    /// at the first NUL, else after `newLength` characters.
    char* GetBuffer(int length = 0);
    char* GetBufferSetLength(int length);
    void ReleaseBuffer(int newLength = -1);

    // Friends, so that they are candidates only where one side is a CString already.
    friend bool operator==(const CString& first, const CString& second) {
        return first.view() == second.view();
    }
    friend bool operator==(const CString& first, const char* second) { return first.Compare(second) == 0; }
    friend bool operator<(const CString& first, const CString& second) {
        return first.view() < second.view();
    }

  private:
    std::string m_text;
};

DORSEL_API CString operator+(const CString& first, const CString& second);
DORSEL_API CString operator+(const CString& first, const char* second);
DORSEL_API CString operator+(const char* first, const CString& second);
DORSEL_API CString operator+(const CString& first, char second);
DORSEL_API CString operator+(char first, const CString& second);
