#pragma once
#include <kestra/containers/comparisons.h>
#include <platform/arrays.h>

/// Growable arrays with sorting and searching. The searches go from the last entry to the first, so that what
/// was added last is found.

/// Pointers, not owned.
class KESTRA_API CMyPtrArray : public CPtrArray {
  public:
    virtual ~CMyPtrArray();

    /// Orders the entries; equal ones keep their order. Returns the number of entries minus 1. Entries that a
    /// sorted collection refuses (null pointers, its guard values, those whose comparison threw) come last,
    /// in their former order.
    int Sort(Comparaison compare, void* param);
    /// Index of the last entry equal to `p`; 0 when it is not there, the same answer as for the first entry.
    int Find(void* p);

    std::int32_t m_NonProprietaire = 0;  ///< not 0: the array does not own what it points to
};

/// Texts; the array owns them unless `m_NonProprietaire` is set when it is destroyed.
class KESTRA_API CMyStringArray : public CMyPtrArray {
  public:
    CMyStringArray() = default;
    CMyStringArray(const CMyStringArray&) = delete;
    CMyStringArray& operator=(const CMyStringArray&) = delete;
    ~CMyStringArray() override;

    /// Appends a copy of the text (made with `new char[]`) and returns the copy; a null text is an empty one.
    const char* Add(const char* text);
    /// The comparison to pass to `Sort`: texts byte by byte as unsigned codes; -1, 0 or 1.
    static int fCompare(void* first, void* second, void* param);
};

/// Growable texts. `n` above 0: an entry matches when its first `n` characters equal those of `text`;
/// otherwise when the whole texts are equal.
class KESTRA_API CMyCStringArray : public CStringArray {
  public:
    virtual ~CMyCStringArray();

    /// Index of the last matching entry; -1 when there is none or `text` is null.
    int Find(const char* text, int n);
    /// The same, where the letters A to Z equal a to z.
    int FindNoCase(const char* text, int n);
};
