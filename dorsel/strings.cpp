#include <dorsel/strings.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <platform/clock.h>
#include <platform/cp1252.h>

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\xA0';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

char* replaceAll(char* text, char from, char to) {
    if (text != nullptr) std::replace(text, text + std::strlen(text), from, to);
    return text;
}

}  // namespace

MyPCharArray::MyPCharArray() = default;

MyPCharArray::~MyPCharArray() {
    std::free(m_texts);
}

MyPCharArray::MyPCharArray(const MyPCharArray& other) {
    *this = other;
}

MyPCharArray& MyPCharArray::operator=(const MyPCharArray& other) {
    if (this != &other) {
        SetSize(other.m_size);
        std::copy(other.m_texts, other.m_texts + m_size, m_texts);
    }
    return *this;
}

int MyPCharArray::SetSize(int size) {
    size = std::max(size, 0);
    if (size > m_room) {
        const int room = std::max(size, m_room > INT_MAX / 2 ? INT_MAX : m_room * 2);
        void* texts = std::realloc(m_texts, static_cast<std::size_t>(room) * sizeof *m_texts);
        if (texts == nullptr) return m_size;
        m_texts = static_cast<char**>(texts);
        m_room = room;
    }
    if (size > m_size) std::fill(m_texts + m_size, m_texts + size, nullptr);
    m_size = size;
    return m_size;
}

bool MyPCharArray::SetAt(unsigned index, char* text) {
    if (index >= static_cast<unsigned>(m_size)) return false;
    m_texts[index] = text;
    return true;
}

int MyPCharArray::Add(char* text) {
    const int index = m_size;
    if (m_size == INT_MAX || SetSize(m_size + 1) == index) return -1;
    m_texts[index] = text;
    return index;
}

namespace STR {

unsigned char Chr_majuscule[256];
unsigned char Chr_minuscule[256];

void Init_tables_car() {
    std::copy(platform::upperCase1252.begin(), platform::upperCase1252.end(), Chr_majuscule);
    std::copy(platform::lowerCase1252.begin(), platform::lowerCase1252.end(), Chr_minuscule);
}

char* Majuscules(char* text) {
    if (text == nullptr) return text;
    for (char* c = text; *c != '\0'; ++c)
        *c = static_cast<char>(platform::upperCase1252[static_cast<unsigned char>(*c)]);
    return text;
}

char* Espace(char* text) {
    if (text == nullptr) return text;
    const char* start = text;
    while (isBlank(*start)) ++start;
    std::size_t length = std::strlen(start);
    while (length > 0 && isBlank(start[length - 1])) --length;
    std::memmove(text, start, length);
    text[length] = '\0';
    return text;
}

int Separe(char* text, char separator, MyPCharArray& pieces, int maximum) {
    pieces.SetSize(0);
    while (text != nullptr && (maximum <= 0 || pieces.GetSize() < maximum)) {
        if (pieces.Add(text) < 0) break;
        text = separator != '\0' ? std::strchr(text, separator) : nullptr;
        if (text != nullptr) *text++ = '\0';
    }
    return pieces.GetSize();
}

int Num(const char* text, int) {
    if (text == nullptr) return 0;
    while (isBlank(*text)) ++text;
    const char* end = text;
    while (isDigit(*end) && end - text < INT_MAX) ++end;
    return static_cast<int>(end - text);
}

char* CR_LF(char* text, int* removed) {
    if (removed != nullptr) *removed = 0;
    if (text == nullptr) return text;
    const std::size_t length = std::strlen(text);
    std::size_t kept = length;
    while (kept > 0 && (text[kept - 1] == '\r' || text[kept - 1] == '\n')) --kept;
    text[kept] = '\0';
    if (removed != nullptr) *removed = static_cast<int>(length - kept);
    return text;
}

char* C47_92(char* text) {
    return replaceAll(text, '/', '\\');
}

char* C92_47(char* text) {
    return replaceAll(text, '\\', '/');
}

char* StrDate(char* out, std::int32_t time, const std::int64_t* time64) {
    if (out == nullptr) return out;
    constexpr std::size_t room = 32;
    const platform::LocalTime local = platform::theClock().localTime(time64 != nullptr ? *time64 : time);
    *out = '\0';
    if (local.valid)
        (void)std::snprintf(out, room, "%02d/%02d/%04d %02d:%02d:%02d", local.day, local.month, local.year,
                            local.hour, local.minute, local.second);
    return out;
}

int Teste_ASCII(const char* text, const char* pattern, const void*) {
    if (text == nullptr || pattern == nullptr) return 0;
    // On a mismatch the last '*' takes one character more: an earlier one never has to be looked at again.
    const char* star = nullptr;
    const char* starText = nullptr;
    while (*text != '\0') {
        if (*pattern == '*') {
            star = pattern++;
            starText = text;
        } else if (*pattern == *text || *pattern == '?') {
            ++pattern;
            ++text;
        } else if (star != nullptr) {
            pattern = star + 1;
            text = ++starText;
        } else {
            return 0;
        }
    }
    while (*pattern == '*') ++pattern;
    return *pattern == '\0';
}

}  // namespace STR
