#include <kestra/net/base64_lines.h>

#include <kestra/net/base64_code.h>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace base64 {

const char alphabet[65] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

char* encodeGroups(const unsigned char* data, std::size_t groups, char* out) {
    for (; groups > 0; --groups, data += 3, out += 4) {
        out[0] = alphabet[data[0] >> 2];
        out[1] = alphabet[(data[0] & 0x03) << 4 | data[1] >> 4];
        out[2] = alphabet[(data[1] & 0x0F) << 2 | data[2] >> 6];
        out[3] = alphabet[data[2] & 0x3F];
    }
    return out;
}

void encodeLinesPlain(const unsigned char* data, std::size_t lines, char* out, std::size_t stride) {
    for (; lines > 0; --lines, data += lineBytes, out += stride)
        endLine(encodeGroups(data, lineBytes / 3, out), stride);
}

#if defined(__x86_64__)

// Both wide forms follow W. Mula and D. Lemire, "Faster Base64 Encoding and Decoding using AVX2 Instructions"
// (ACM Transactions on the Web 12, 2018): bytes are spread to 6-bit fields by two multiplications; a field's
// character is the field plus an offset that depends on its class only. A line is 4 blocks of 12 bytes and a
// fifth one that begins 3 bytes early, so that its 16 characters end exactly where the line ends.

namespace {

constexpr int spread = 0x0FC0FC00, spreadFactor = 0x04000040, keep = 0x003F03F0, keepFactor = 0x01000010;
constexpr std::size_t lastBlock = lineBytes - 12, lastCharacters = lineCharacters - 16;

__attribute__((target("ssse3"))) inline void encodeBlock(const unsigned char* data, char* out) {
    const __m128i order = _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
    const __m128i offsets =
        _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                      '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
    __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
    bytes = _mm_shuffle_epi8(bytes, order);
    const __m128i high =
        _mm_mulhi_epu16(_mm_and_si128(bytes, _mm_set1_epi32(spread)), _mm_set1_epi32(spreadFactor));
    const __m128i low =
        _mm_mullo_epi16(_mm_and_si128(bytes, _mm_set1_epi32(keep)), _mm_set1_epi32(keepFactor));
    const __m128i fields = _mm_or_si128(high, low);
    __m128i kind = _mm_subs_epu8(fields, _mm_set1_epi8(51));
    const __m128i isCapital = _mm_cmpgt_epi8(_mm_set1_epi8(26), fields);
    kind = _mm_or_si128(kind, _mm_and_si128(isCapital, _mm_set1_epi8(13)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_add_epi8(fields, _mm_shuffle_epi8(offsets, kind)));
}

__attribute__((target("avx2"))) inline void encodeTwoBlocks(const unsigned char* data, char* out) {
    const __m256i order =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
    const __m256i offsets = _mm256_broadcastsi128_si256(
        _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                      '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0));
    __m256i bytes = _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(data + 12),
                                        reinterpret_cast<const __m128i*>(data));
    bytes = _mm256_shuffle_epi8(bytes, order);
    const __m256i high = _mm256_mulhi_epu16(_mm256_and_si256(bytes, _mm256_set1_epi32(spread)),
                                            _mm256_set1_epi32(spreadFactor));
    const __m256i low =
        _mm256_mullo_epi16(_mm256_and_si256(bytes, _mm256_set1_epi32(keep)), _mm256_set1_epi32(keepFactor));
    const __m256i fields = _mm256_or_si256(high, low);
    __m256i kind = _mm256_subs_epu8(fields, _mm256_set1_epi8(51));
    const __m256i isCapital = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), fields);
    kind = _mm256_or_si256(kind, _mm256_and_si256(isCapital, _mm256_set1_epi8(13)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out),
                        _mm256_add_epi8(fields, _mm256_shuffle_epi8(offsets, kind)));
}

}  // namespace

__attribute__((target("ssse3"))) void encodeLinesSsse3(const unsigned char* data, std::size_t lines,
                                                       char* out, std::size_t stride) {
    for (; lines > 0; --lines, data += lineBytes, out += stride) {
        for (std::size_t block = 0; block < 4; ++block) encodeBlock(data + 12 * block, out + 16 * block);
        encodeBlock(data + lastBlock, out + lastCharacters);
        endLine(out + lineCharacters, stride);
    }
}

__attribute__((target("avx2"))) void encodeLinesAvx2(const unsigned char* data, std::size_t lines, char* out,
                                                     std::size_t stride) {
    for (; lines > 0; --lines, data += lineBytes, out += stride) {
        encodeTwoBlocks(data, out);
        encodeTwoBlocks(data + 24, out + 32);
        encodeBlock(data + lastBlock, out + lastCharacters);
        endLine(out + lineCharacters, stride);
    }
}

#endif

}  // namespace base64
