#pragma once
#include <platform/export.h>

/// Base64 text (RFC 4648, alphabet "A-Z a-z 0-9 + /", pad "=") in lines of 76 characters, as mails carry it.
///
/// What differs from what a reader may expect: the line end is missing behind the last line, except behind a
/// last line that is full (input of a multiple of 57 bytes, or one of its whole groups). 57 bytes give 76
/// characters and CR LF, 56 bytes give 76 characters and nothing more.
///
/// The object owns one buffer from the C heap, the last result. It cannot be copied. Not thread-safe; two
/// objects are independent.
class KESTRA_API Base64Encoder {
  public:
    /// Flags of `Encode`.
    static constexpr unsigned long noPadding = 1;     ///< the last group is not filled up with "="
    static constexpr unsigned long noLineBreaks = 2;  ///< no CR LF anywhere

    Base64Encoder();
    ~Base64Encoder();
    Base64Encoder(const Base64Encoder&) = delete;
    Base64Encoder& operator=(const Base64Encoder&) = delete;

    /// Encodes `length` bytes; with `length` 0, `data` is a text and measured up to its first NUL byte (a
    /// null pointer counts as the empty text). Returns the object's own buffer, NUL-terminated, which stays
    /// valid until the next call or the end of the object; the caller must not free it. Raises
    /// `CInvalidArgException` when four times the byte count exceeds 2147483647, or `length` is negative, and
    /// `std::bad_alloc` when there is no memory; the last result is then still there.
    char* Encode(const unsigned char* data, int length, unsigned long flags);

  private:
    char* m_buffer = nullptr;
};
