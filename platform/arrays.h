#pragma once
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

#include <platform/cstring.h>
#include <platform/export.h>

/// The framework's invalid-argument exception: an index or a count outside what the operation admits.
class DORSEL_API CInvalidArgException : public std::invalid_argument {
  public:
    CInvalidArgException();
    ~CInvalidArgException() override;
};

/// The framework's growable arrays, under their usual operations: of pointers (not owned), of texts, of
/// 32-bit numbers.
///
/// Indices are `int`. An index outside the array raises `CInvalidArgException`, except where an operation
/// says that it grows. New elements are zero or empty. Growth is amortised: n `Add` calls cost O(n).
/// `SetSize` keeps the elements that still fit; its growth step is a hint and may be ignored.
template <class Element>
class FrameworkArray {
  public:
    int GetSize() const { return static_cast<int>(m_elements.size()); }
    int GetCount() const { return GetSize(); }
    int GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return m_elements.empty(); }
    void SetSize(int size, int growBy = -1) {
        (void)growBy;
        if (size < 0) throw CInvalidArgException();
        m_elements.resize(static_cast<std::size_t>(size));
    }
    void FreeExtra() { m_elements.shrink_to_fit(); }
    /// Empties the array and gives its memory back.
    void RemoveAll() { std::vector<Element>().swap(m_elements); }

    const Element& GetAt(int index) const { return m_elements[checked(index)]; }
    void SetAt(int index, const Element& element) { m_elements[checked(index)] = element; }
    Element& ElementAt(int index) { return m_elements[checked(index)]; }
    const Element& operator[](int index) const { return GetAt(index); }
    Element& operator[](int index) { return ElementAt(index); }
    /// First element, null when there is none; valid until the array grows.
    Element* GetData() { return m_elements.empty() ? nullptr : m_elements.data(); }
    const Element* GetData() const { return m_elements.empty() ? nullptr : m_elements.data(); }

    void SetAtGrow(int index, const Element& element) {
        if (index >= GetSize()) {
            const Element kept = element;
            SetSize(index + 1);
            m_elements[checked(index)] = kept;
        } else {
            SetAt(index, element);
        }
    }
    /// Index of the new element.
    int Add(const Element& element) {
        m_elements.push_back(element);
        return GetUpperBound();
    }
    /// Index of the first of the new elements.
    int Append(const FrameworkArray& other) {
        const int first = GetSize();
        const std::size_t count = other.m_elements.size();
        m_elements.reserve(m_elements.size() + count);
        for (std::size_t i = 0; i < count; ++i) m_elements.push_back(other.m_elements[i]);
        return first;
    }
    void Copy(const FrameworkArray& other) { m_elements = other.m_elements; }
    /// An index beyond the end first grows the array up to it.
    void InsertAt(int index, const Element& element, int count = 1) {
        if (index < 0 || count < 0) throw CInvalidArgException();
        const Element kept = element;
        if (index > GetSize()) SetSize(index);
        m_elements.insert(m_elements.begin() + index, static_cast<std::size_t>(count), kept);
    }
    void InsertAt(int index, const FrameworkArray* other) {
        if (index < 0 || other == nullptr) throw CInvalidArgException();
        const std::vector<Element> kept = other->m_elements;
        if (index > GetSize()) SetSize(index);
        m_elements.insert(m_elements.begin() + index, kept.begin(), kept.end());
    }
    void RemoveAt(int index, int count = 1) {
        if (index < 0 || count < 0 || index > GetSize() - count) throw CInvalidArgException();
        m_elements.erase(m_elements.begin() + index, m_elements.begin() + index + count);
    }

  protected:
    std::size_t checked(int index) const {
        if (index < 0 || index >= GetSize()) throw CInvalidArgException();
        return static_cast<std::size_t>(index);
    }
    std::vector<Element> m_elements;
};

class CPtrArray : public FrameworkArray<void*> {};
class CDWordArray : public FrameworkArray<std::uint32_t> {};
class CStringArray : public FrameworkArray<CString> {
  public:
    using FrameworkArray<CString>::Add;
    int Add(const char* text) { return Add(CString(text)); }
    int Add(CString&& text) {
        m_elements.push_back(std::move(text));
        return GetUpperBound();
    }
};
