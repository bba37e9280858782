#pragma once
#include <cstddef>
#include <cstdint>

/// The encoding behind `Base64Encoder`, over memory of the caller.
namespace base64 {

constexpr std::size_t lineBytes = 57;       ///< input of a full line
constexpr std::size_t lineCharacters = 76;  ///< output of a full line, without its CR LF

/// Room that `encode` may need for `count` bytes, its NUL not counted. At least the produced length.
std::uint64_t room(std::uint64_t count, unsigned long flags);

/// Encodes `count` bytes into `out` under the flags of `Base64Encoder` and returns the produced length; no
/// NUL is written. Blocks of a multiple of 57 bytes encoded one behind the other give what one call for all
/// of them gives.
std::size_t encode(const unsigned char* data, std::size_t count, unsigned long flags, char* out);

/// Instructions that full lines are encoded with. Wider ones are there only on x86-64.
enum class Instructions { plain, ssse3, avx2 };

/// The widest that this processor has.
Instructions widest();

/// The same as `encode`, with chosen instructions, which the processor must have.
std::size_t encodeWith(Instructions instructions, const unsigned char* data, std::size_t count,
                       unsigned long flags, char* out);

}  // namespace base64
