#pragma once
#include <cstddef>

/// Full lines of Base64: the loop in which a large attachment spends its time.
namespace base64 {

/// Encodes `lines` times 57 bytes into lines of 76 characters that begin `stride` characters apart; a stride
/// of 78 gets CR LF behind each line.
using LineEncoder = void (*)(const unsigned char* data, std::size_t lines, char* out, std::size_t stride);

/// The wide forms read up to `overread` bytes behind the last line.
constexpr std::size_t overread = 4;

/// Encodes `groups` groups of 3 bytes and returns the end of the output.
char* encodeGroups(const unsigned char* data, std::size_t groups, char* out);

void encodeLinesPlain(const unsigned char* data, std::size_t lines, char* out, std::size_t stride);
#if defined(__x86_64__)
void encodeLinesSsse3(const unsigned char* data, std::size_t lines, char* out, std::size_t stride);
void encodeLinesAvx2(const unsigned char* data, std::size_t lines, char* out, std::size_t stride);
#endif

inline void endLine(char* lineEnd, std::size_t stride) {
    if (stride == 78) {
        lineEnd[0] = '\r';
        lineEnd[1] = '\n';
    }
}

extern const char alphabet[65];

}  // namespace base64
