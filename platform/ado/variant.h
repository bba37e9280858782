#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include <platform/ado/com_error.h>
#include <platform/export.h>

namespace ado20 {

/// What a variant holds, by COM's numbers.
enum class VarType : std::uint16_t {
    empty = 0,
    null = 1,
    int16 = 2,
    int32 = 3,
    real4 = 4,
    real8 = 5,
    currency = 6,
    date = 7,
    text = 8,
    error = 10,
    boolean = 11,
    decimal = 14,
    byte = 17,
    int64 = 20,
    bytes = 0x2011,  ///< an array of bytes
};

/// A decimal number: (high:low) / 10^scale, 96 bits, scale 0 to 28.
struct Decimal {
    std::uint64_t low;
    std::uint32_t high;
    std::uint8_t scale;
    bool negative;
    friend bool operator==(const Decimal&, const Decimal&) = default;
};

/// A value that somebody else owns; texts and bytes live as long as their owner leaves them. What holds what:
/// - `integer`: int16, int32, int64, byte; boolean as 0 or -1; currency in ten-thousandths; error as its
/// HRESULT;
/// - `real`: real4, real8, and date as its serial number (days since 30 December 1899, fraction = time of
/// day);
/// - `decimal`: decimal;     - `data`: text (Windows-1252) and bytes.
struct VariantView {
    VarType type = VarType::empty;
    union {
        std::int64_t integer = 0;
        double real;
        Decimal decimal;
    };
    std::string_view data;

    bool isNull() const { return type == VarType::null || type == VarType::empty; }
};

/// Conversions after the rules of VariantChangeType, the same on every system, whatever its locale:
/// - null and empty convert to nothing (type mismatch); bytes convert to bytes only;
/// - a text is a number when all of it but blanks around it is one: sign, digits, one `.` or `,` , exponent;
///   numbers become texts with a `.` and 15 significant digits (7 for real4), as "%.15G" writes them;
/// - a boolean is -1 or 0 as a number and as a text; "True", "Vrai", "False", "Faux" are read as booleans;
/// - a real becomes an integer by rounding, halves to the even one; what does not fit is an overflow;
/// - a date is its serial number; as a text it is "dd/mm/yyyy", "hh:mm:ss" (day 0) or both with a blank
/// between; read
///   are also "yyyy-mm-dd", "T" instead of the blank, a time without seconds, fractions of seconds, days and
///   months of one digit, `-` and `.` instead of `/`, two-digit years (00 to 29 are 2000 to 2029);
/// - currency has four decimals, rounded half to even.
/// They return 0 (`hrOk`), `hrTypeMismatch` or `hrOverflow`; the output is untouched on failure.
DORSEL_API HResult toText(const VariantView& value, std::string& text);
DORSEL_API HResult toReal(const VariantView& value, double& real);
DORSEL_API HResult toInt64(const VariantView& value, std::int64_t& integer);
DORSEL_API HResult toInt32(const VariantView& value, std::int32_t& integer);
DORSEL_API HResult toBoolean(const VariantView& value, bool& truth);
DORSEL_API HResult toDate(const VariantView& value, double& serial);
DORSEL_API HResult toCurrency(const VariantView& value, std::int64_t& tenThousandths);
DORSEL_API HResult toDecimal(const VariantView& value, Decimal& decimal);

/// A value with its owner. Implicit construction makes what COM's `_variant_t` makes of the same argument.
class DORSEL_API Variant {
  public:
    Variant() = default;
    Variant(int value);
    /// 32-bit integer; 64-bit when the value needs it.
    Variant(long value);
    Variant(long long value);
    Variant(double value);
    Variant(bool value);
    /// Text; a null pointer makes the empty text.
    Variant(const char* text);
    Variant(std::string_view text);
    Variant(const std::string& text) : Variant(std::string_view(text)) {}
    explicit Variant(const VariantView& value);

    static Variant null();
    /// The argument that was not given.
    static Variant missing();
    static Variant date(double serial);
    static Variant currency(std::int64_t tenThousandths);
    static Variant decimal(const Decimal& value);
    static Variant bytes(std::string_view content);
    static Variant integer(VarType type, std::int64_t value);
    static Variant real4(float value);

    VarType type() const { return m_value.type; }
    bool isNull() const { return m_value.isNull(); }
    bool isMissing() const;
    /// Bytes of a text or of bytes, 0 for anything else.
    std::size_t size() const { return m_data.size(); }
    /// Lives until the variant changes.
    VariantView view() const;
    operator VariantView() const { return view(); }

    /// The value in another type. Throws `_com_error` with the conversion's HRESULT.
    Variant changeType(VarType type) const;
    std::string text() const;
    double real() const;
    std::int32_t int32() const;

    /// Equal type and equal content.
    friend DORSEL_API bool operator==(const Variant& first, const Variant& second);

  private:
    VariantView m_value;
    std::string m_data;
};

}  // namespace ado20
