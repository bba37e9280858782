#include <platform/cstring.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <platform/cp1252.h>

namespace {

constexpr const char* blanks = " \t\n\v\f\r";

std::string_view viewOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

std::size_t clamped(int value, std::size_t limit) {
    return value < 0 ? 0 : std::min(static_cast<std::size_t>(value), limit);
}

int indexOf(std::size_t position) {
    return position == std::string::npos ? -1 : static_cast<int>(position);
}

}  // namespace

CString::CString(const char* text, int length) {
    if (text != nullptr && length > 0) m_text.assign(text, static_cast<std::size_t>(length));
}

CString::CString(char character, int count) : m_text(clamped(count, std::string().max_size()), character) {}

void CString::Preallocate(int length) {
    m_text.reserve(clamped(length, m_text.max_size()));
}

char CString::GetAt(int index) const {
    return index >= 0 && index < GetLength() ? m_text[static_cast<std::size_t>(index)] : '\0';
}

void CString::SetAt(int index, char character) {
    if (index >= 0 && index < GetLength()) m_text[static_cast<std::size_t>(index)] = character;
}

CString& CString::operator=(const char* text) {
    m_text.assign(viewOf(text));
    return *this;
}

CString& CString::operator=(std::string_view text) {
    m_text.assign(text);
    return *this;
}

CString& CString::operator=(char character) {
    m_text.assign(1, character);
    return *this;
}

CString& CString::operator+=(const CString& text) {
    m_text += text.m_text;
    return *this;
}

CString& CString::operator+=(const char* text) {
    m_text += viewOf(text);
    return *this;
}

CString& CString::operator+=(char character) {
    m_text += character;
    return *this;
}

CString& CString::operator+=(std::string_view text) {
    m_text += text;
    return *this;
}

void CString::Append(const char* text, int length) {
    if (text != nullptr && length > 0) m_text.append(text, static_cast<std::size_t>(length));
}

int CString::Compare(const char* other) const {
    return std::string_view(m_text).compare(viewOf(other));
}

int CString::CompareNoCase(const char* other) const {
    return platform::compareNoCase1252(m_text, viewOf(other));
}

CString CString::Left(int count) const {
    return CString(view().substr(0, clamped(count, m_text.size())));
}

CString CString::Right(int count) const {
    return CString(view().substr(m_text.size() - clamped(count, m_text.size())));
}

CString CString::Mid(int first) const {
    return CString(view().substr(clamped(first, m_text.size())));
}

CString CString::Mid(int first, int count) const {
    return CString(view().substr(clamped(first, m_text.size()), clamped(count, m_text.size())));
}

CString CString::SpanIncluding(const char* set) const {
    return CString(view().substr(0, m_text.find_first_not_of(viewOf(set))));
}

CString CString::SpanExcluding(const char* set) const {
    return CString(view().substr(0, m_text.find_first_of(viewOf(set))));
}

CString CString::Tokenize(const char* separators, int& position) const {
    const std::string_view set = viewOf(separators);
    const std::size_t first =
        position < 0 ? std::string::npos : m_text.find_first_not_of(set, clamped(position, m_text.size()));
    if (first == std::string::npos) {
        position = -1;
        return CString();
    }
    const std::size_t last = std::min(m_text.find_first_of(set, first), m_text.size());
    position = static_cast<int>(last) + 1;
    return CString(view().substr(first, last - first));
}

CString& CString::MakeUpper() {
    for (char& c : m_text) c = static_cast<char>(platform::upperCase1252[static_cast<unsigned char>(c)]);
    return *this;
}

CString& CString::MakeLower() {
    for (char& c : m_text) c = static_cast<char>(platform::lowerCase1252[static_cast<unsigned char>(c)]);
    return *this;
}

CString& CString::MakeReverse() {
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

CString& CString::Trim() {
    return Trim(blanks);
}
CString& CString::TrimLeft() {
    return TrimLeft(blanks);
}
CString& CString::TrimRight() {
    return TrimRight(blanks);
}
CString& CString::Trim(const char* set) {
    return TrimRight(set).TrimLeft(set);
}

CString& CString::TrimLeft(const char* set) {
    m_text.erase(0, m_text.find_first_not_of(viewOf(set)));
    return *this;
}

CString& CString::TrimRight(const char* set) {
    m_text.erase(m_text.find_last_not_of(viewOf(set)) + 1);
    return *this;
}

int CString::Find(char character, int start) const {
    return start > GetLength() ? -1 : indexOf(m_text.find(character, clamped(start, m_text.size())));
}

int CString::Find(const char* text, int start) const {
    return start > GetLength() ? -1 : indexOf(m_text.find(viewOf(text), clamped(start, m_text.size())));
}

int CString::FindOneOf(const char* set) const {
    return indexOf(m_text.find_first_of(viewOf(set)));
}

int CString::ReverseFind(char character) const {
    return indexOf(m_text.rfind(character));
}

int CString::Replace(const char* before, const char* after) {
    const std::string_view sought = viewOf(before);
    if (sought.empty()) return 0;
    std::string out;
    int count = 0;
    std::size_t from = 0;
    for (std::size_t at; (at = m_text.find(sought, from)) != std::string::npos;
         from = at + sought.size(), ++count) {
        out.append(m_text, from, at - from);
        out += viewOf(after);
    }
    if (count == 0) return 0;
    out.append(m_text, from);
    m_text.swap(out);
    return count;
}

int CString::Replace(char before, char after) {
    const auto count = std::count(m_text.begin(), m_text.end(), before);
    std::replace(m_text.begin(), m_text.end(), before, after);
    return static_cast<int>(count);
}

int CString::Remove(char character) {
    return static_cast<int>(std::erase(m_text, character));
}

int CString::Insert(int index, const char* text) {
    m_text.insert(clamped(index, m_text.size()), viewOf(text));
    return GetLength();
}

int CString::Insert(int index, char character) {
    m_text.insert(clamped(index, m_text.size()), 1, character);
    return GetLength();
}

int CString::Delete(int index, int count) {
    m_text.erase(clamped(index, m_text.size()), clamped(count, m_text.size()));
    return GetLength();
}

void CString::Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
}

void CString::AppendFormat(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CString added;
    added.FormatV(format, arguments);
    va_end(arguments);
    *this += added;
}

void CString::FormatV(const char* format, va_list arguments) {
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    std::string out(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0) (void)std::vsnprintf(out.data(), out.size() + 1, format, arguments);
    m_text.swap(out);
}

char* CString::GetBuffer(int length) {
    if (length > GetLength()) m_text.resize(static_cast<std::size_t>(length));
    return m_text.data();
}

char* CString::GetBufferSetLength(int length) {
    m_text.resize(clamped(length, m_text.max_size()));
    return m_text.data();
}

void CString::ReleaseBuffer(int newLength) {
    m_text.resize(newLength < 0 ? std::strlen(m_text.c_str()) : clamped(newLength, m_text.size()));
}

CString operator+(const CString& first, const CString& second) {
    return CString(first) += second;
}
CString operator+(const CString& first, const char* second) {
    return CString(first) += second;
}
CString operator+(const char* first, const CString& second) {
    return CString(first) += second;
}
CString operator+(const CString& first, char second) {
    return CString(first) += second;
}
CString operator+(char first, const CString& second) {
    return CString(CString(first)) += second;
}
