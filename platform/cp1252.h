#pragma once
#include <array>
#include <string>
#include <string_view>

#include <platform/export.h>

/// Windows-1252, the code page of every text of the library.
///
/// The tables hold for all 256 codes. The five codes that the code page leaves undefined (0x81, 0x8D, 0x8F,
/// 0x90, 0x9D) stand for themselves, as Windows' own conversion has it.
namespace platform {

/// Upper-case equivalent of each code: ASCII letters, 0xE0..0xFE but for the division sign 0xF7, and
/// 0x9A, 0x9C, 0x9E, 0xFF (whose capitals are 0x8A, 0x8C, 0x8E and 0x9F). Codes without a capital in the code
/// page (0x83, 0xAA, 0xB5, 0xBA, 0xDF) map to themselves.
DORSEL_API extern const std::array<unsigned char, 256> upperCase1252;
/// Lower-case equivalent of each code, the inverse of `upperCase1252`.
DORSEL_API extern const std::array<unsigned char, 256> lowerCase1252;

/// UTF-8 of a Windows-1252 text, for terminals and POSIX file names.
DORSEL_API std::string utf8From1252(std::string_view text);
/// Windows-1252 of a UTF-8 text; what the code page does not hold, and bytes that are not UTF-8, become '?'.
DORSEL_API std::string cp1252FromUtf8(std::string_view text);

/// Order of two texts byte by byte as unsigned codes, upper-cased; negative, 0 or positive.
DORSEL_API int compareNoCase1252(std::string_view first, std::string_view second);
inline bool equalNoCase1252(std::string_view first, std::string_view second) {
    return first.size() == second.size() && compareNoCase1252(first, second) == 0;
}
/// Copy of a text in upper case.
DORSEL_API std::string upperCased1252(std::string_view text);

}  // namespace platform
