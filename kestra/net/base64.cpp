#include <kestra/net/base64.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

#include <kestra/net/base64_code.h>
#include <kestra/net/base64_lines.h>
#include <platform/arrays.h>

namespace base64 {
namespace {

bool has(unsigned long flags, unsigned long flag) {
    return (flags & flag) != 0;
}

LineEncoder lineEncoder(Instructions instructions) {
#if defined(__x86_64__)
    if (instructions == Instructions::avx2) return encodeLinesAvx2;
    if (instructions == Instructions::ssse3) return encodeLinesSsse3;
#endif
    (void)instructions;
    return encodeLinesPlain;
}

/// The one or two bytes behind the last whole group.
char* encodeRemainder(const unsigned char* data, std::size_t count, bool padded, char* out) {
    if (count == 0) return out;
    const unsigned char group[3] = {data[0], count == 2 ? data[1] : static_cast<unsigned char>(0), 0};
    char characters[4];
    encodeGroups(group, 1, characters);
    std::memcpy(out, characters, count + 1);
    out += count + 1;
    for (std::size_t filled = count + 1; padded && filled < 4; ++filled) *out++ = '=';
    return out;
}

}  // namespace

std::uint64_t room(std::uint64_t count, unsigned long flags) {
    std::uint64_t room = 4 * count / 3;
    if (!has(flags, Base64Encoder::noPadding)) room += count % 3;
    const std::uint64_t lines = room / lineCharacters + 1;
    const std::uint64_t tail = room % lineCharacters;
    if (tail % 4 != 0) room += 4 - tail % 4;
    if (!has(flags, Base64Encoder::noLineBreaks)) room += 2 * lines;
    return room;
}

Instructions widest() {
#if defined(__x86_64__)
    static const Instructions found = __builtin_cpu_supports("avx2")    ? Instructions::avx2
                                      : __builtin_cpu_supports("ssse3") ? Instructions::ssse3
                                                                        : Instructions::plain;
    return found;
#else
    return Instructions::plain;
#endif
}

std::size_t encodeWith(Instructions instructions, const unsigned char* data, std::size_t count,
                       unsigned long flags, char* out) {
    // Kept: a last line that is full keeps its CR LF, any other has none; mail readers of the family rely on
    // the break between a full line and the "=" group behind it.
    const std::size_t stride = has(flags, Base64Encoder::noLineBreaks) ? lineCharacters : lineCharacters + 2;
    const std::size_t lines = count / lineBytes;
    const std::size_t inReach = count >= overread ? (count - overread) / lineBytes : 0;
    lineEncoder(instructions)(data, inReach, out, stride);
    encodeLinesPlain(data + inReach * lineBytes, lines - inReach, out + inReach * stride, stride);

    const unsigned char* rest = data + lines * lineBytes;
    const std::size_t restCount = count - lines * lineBytes;
    char* end = encodeGroups(rest, restCount / 3, out + lines * stride);
    end =
        encodeRemainder(rest + restCount / 3 * 3, restCount % 3, !has(flags, Base64Encoder::noPadding), end);
    return static_cast<std::size_t>(end - out);
}

std::size_t encode(const unsigned char* data, std::size_t count, unsigned long flags, char* out) {
    return encodeWith(widest(), data, count, flags, out);
}

}  // namespace base64

Base64Encoder::Base64Encoder() = default;

Base64Encoder::~Base64Encoder() {
    std::free(m_buffer);
}

char* Base64Encoder::Encode(const unsigned char* data, int length, unsigned long flags) {
    if (length < 0) throw CInvalidArgException();
    auto count = static_cast<std::size_t>(length);
    if (length == 0 && data != nullptr) count = std::strlen(reinterpret_cast<const char*>(data));
    if (std::uint64_t{4} * count > INT_MAX) throw CInvalidArgException();
    void* buffer = std::realloc(m_buffer, static_cast<std::size_t>(base64::room(count, flags)) + 12);
    if (buffer == nullptr) throw std::bad_alloc();
    m_buffer = static_cast<char*>(buffer);
    m_buffer[base64::encode(data, count, flags, m_buffer)] = '\0';
    return m_buffer;
}
