#include <kestra/containers/arrays.h>

#include <cstring>
#include <vector>

#include <kestra/containers/tri.h>

namespace {

unsigned char foldedAscii(char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}
unsigned char asItIs(char c) {
    return static_cast<unsigned char>(c);
}

/// Equality of two texts over their first `n` characters, or whole with `n` below 1.
bool equalTexts(const char* first, const char* second, int n, unsigned char (*fold)(char)) {
    for (int i = 0; n < 1 || i < n; ++i) {
        if (fold(first[i]) != fold(second[i])) return false;
        if (first[i] == '\0') return true;
    }
    return true;
}

int findLast(const CStringArray& texts, const char* text, int n, unsigned char (*fold)(char)) {
    int index = text != nullptr ? texts.GetUpperBound() : -1;
    while (index >= 0 && !equalTexts(texts.GetAt(index), text, n, fold)) --index;
    return index;
}

}  // namespace

CMyPtrArray::~CMyPtrArray() = default;

int CMyPtrArray::Sort(Comparaison compare, void* param) {
    CTri order(compare);
    order.SetParam(param);
    std::vector<void*> refused;
    for (int i = 0; i < GetSize(); ++i)
        if (order.Insert(GetAt(i), 0, 1) == nullptr) refused.push_back(GetAt(i));
    int index = 0;
    for (void* entry = order.Next(CTri::FrontGuard()); entry != nullptr; entry = order.Next())
        SetAt(index++, entry);
    for (void* entry : refused) SetAt(index++, entry);
    return GetUpperBound();
}

int CMyPtrArray::Find(void* p) {
    // Kept: an absent pointer gives 0, as the first entry does; callers look at the entry found.
    int index = GetUpperBound();
    while (index > 0 && GetAt(index) != p) --index;
    return index > 0 ? index : 0;
}

CMyStringArray::~CMyStringArray() {
    if (m_NonProprietaire != 0) return;
    for (int i = 0; i < GetSize(); ++i) delete[] static_cast<char*>(GetAt(i));
}

const char* CMyStringArray::Add(const char* text) {
    if (text == nullptr) text = "";
    const std::size_t size = std::strlen(text) + 1;
    char* const copy = new char[size];
    std::memcpy(copy, text, size);
    CPtrArray::Add(copy);
    return copy;
}

int CMyStringArray::fCompare(void* first, void* second, void*) {
    const int order = std::strcmp(static_cast<const char*>(first), static_cast<const char*>(second));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

CMyCStringArray::~CMyCStringArray() = default;

int CMyCStringArray::Find(const char* text, int n) {
    return findLast(*this, text, n, asItIs);
}

int CMyCStringArray::FindNoCase(const char* text, int n) {
    return findLast(*this, text, n, foldedAscii);
}
