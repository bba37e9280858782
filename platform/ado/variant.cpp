#include <algorithm>
#include <cmath>
#include <cstring>

#include <platform/ado/variant.h>
#include <platform/ado/variant_text.h>

namespace ado20 {

namespace {

constexpr double currencyScale = 10000;

HResult realToInt64(double real, std::int64_t& integer) {
    const double rounded = std::nearbyint(real);
    if (!(rounded >= -9223372036854775808.0 && rounded < 9223372036854775808.0)) return hrOverflow;
    integer = static_cast<std::int64_t>(rounded);
    return hrOk;
}

bool isReal(VarType type) {
    return type == VarType::real4 || type == VarType::real8 || type == VarType::date;
}

/// Integers that stand for their own value.
bool isInteger(VarType type) {
    switch (type) {
        case VarType::int16:
        case VarType::int32:
        case VarType::int64:
        case VarType::byte:
        case VarType::boolean:
            return true;
        default:
            return false;
    }
}

bool isText(VarType type) {
    return type == VarType::text;
}

Variant changedNumber(const VariantView& value, VarType type, std::int64_t least, std::int64_t most) {
    std::int64_t integer = 0;
    if (const HResult result = toInt64(value, integer); result != hrOk) throw _com_error(result);
    if (integer < least || integer > most) throw _com_error(hrOverflow);
    return Variant::integer(type, integer);
}

template <class Value>
Value converted(HResult (*convert)(const VariantView&, Value&), const VariantView& value) {
    Value result{};
    if (const HResult failure = convert(value, result); failure != hrOk) throw _com_error(failure);
    return result;
}

}  // namespace

HResult toReal(const VariantView& value, double& real) {
    if (isReal(value.type)) return real = value.real, hrOk;
    if (isInteger(value.type)) return real = static_cast<double>(value.integer), hrOk;
    if (value.type == VarType::currency)
        return real = static_cast<double>(value.integer) / currencyScale, hrOk;
    if (value.type == VarType::decimal) return real = realOfDecimal(value.decimal), hrOk;
    if (isText(value.type)) return parseReal(value.data, real);
    return hrTypeMismatch;
}

HResult toInt64(const VariantView& value, std::int64_t& integer) {
    if (isInteger(value.type)) return integer = value.integer, hrOk;
    if (isText(value.type) && parseInteger(value.data, integer)) return hrOk;
    double real = 0;
    const HResult result = toReal(value, real);
    return result == hrOk ? realToInt64(real, integer) : result;
}

HResult toInt32(const VariantView& value, std::int32_t& integer) {
    std::int64_t wide = 0;
    if (const HResult result = toInt64(value, wide); result != hrOk) return result;
    if (wide < INT32_MIN || wide > INT32_MAX) return hrOverflow;
    integer = static_cast<std::int32_t>(wide);
    return hrOk;
}

HResult toBoolean(const VariantView& value, bool& truth) {
    if (isText(value.type) && parseBoolean(value.data, truth)) return hrOk;
    double real = 0;
    if (const HResult result = toReal(value, real); result != hrOk) return result;
    truth = real != 0;
    return hrOk;
}

HResult toDate(const VariantView& value, double& serial) {
    double real = 0;
    if (isText(value.type) && parseDate(value.data, real)) return serial = real, hrOk;
    if (const HResult result = toReal(value, real); result != hrOk) return result;
    if (!isSerialDate(real)) return hrOverflow;
    serial = real;
    return hrOk;
}

HResult toCurrency(const VariantView& value, std::int64_t& tenThousandths) {
    if (value.type == VarType::currency) return tenThousandths = value.integer, hrOk;
    double real = 0;
    if (const HResult result = toReal(value, real); result != hrOk) return result;
    return realToInt64(real * currencyScale, tenThousandths);
}

HResult toDecimal(const VariantView& value, Decimal& decimal) {
    if (value.type == VarType::decimal) return decimal = value.decimal, hrOk;
    std::string text;
    if (const HResult result = toText(value, text); result != hrOk) return result;
    return parseDecimal(text, decimal);
}

HResult toText(const VariantView& value, std::string& text) {
    if (value.type == VarType::text) return text.assign(value.data), hrOk;
    if (value.type == VarType::date) return dateText(value.real, text);
    if (isInteger(value.type)) return integerText(value.integer, text), hrOk;
    if (value.type == VarType::real8) return realText(value.real, 15, text), hrOk;
    if (value.type == VarType::real4) return realText(value.real, 7, text), hrOk;
    if (value.type == VarType::decimal) return decimalText(value.decimal, text), hrOk;
    if (value.type != VarType::currency) return hrTypeMismatch;
    const std::uint64_t size = value.integer < 0 ? 0 - static_cast<std::uint64_t>(value.integer)
                                                 : static_cast<std::uint64_t>(value.integer);
    Decimal decimal{size, 0, 4, value.integer < 0};
    decimalText(decimal, text);
    return hrOk;
}

Variant::Variant(int value) {
    m_value.type = VarType::int32;
    m_value.integer = value;
}

Variant::Variant(long value) : Variant(static_cast<long long>(value)) {
    if (value >= INT32_MIN && value <= INT32_MAX) m_value.type = VarType::int32;
}

Variant::Variant(long long value) {
    m_value.type = VarType::int64;
    m_value.integer = value;
}

Variant::Variant(double value) {
    m_value.type = VarType::real8;
    m_value.real = value;
}

Variant::Variant(bool value) {
    m_value.type = VarType::boolean;
    m_value.integer = value ? -1 : 0;
}

Variant::Variant(const char* text) : Variant(std::string_view(text != nullptr ? text : "")) {}

Variant::Variant(std::string_view text) : m_data(text) {
    m_value.type = VarType::text;
}

Variant::Variant(const VariantView& value) : m_value(value), m_data(value.data) {
    m_value.data = {};
}

Variant Variant::null() {
    Variant result;
    result.m_value.type = VarType::null;
    return result;
}

Variant Variant::missing() {
    return integer(VarType::error, hrParameterMissing);
}

Variant Variant::date(double serial) {
    Variant result(serial);
    result.m_value.type = VarType::date;
    return result;
}

Variant Variant::currency(std::int64_t tenThousandths) {
    return integer(VarType::currency, tenThousandths);
}

Variant Variant::decimal(const Decimal& value) {
    Variant result;
    result.m_value.type = VarType::decimal;
    result.m_value.decimal = value;
    return result;
}

Variant Variant::bytes(std::string_view content) {
    Variant result(content);
    result.m_value.type = VarType::bytes;
    return result;
}

Variant Variant::integer(VarType type, std::int64_t value) {
    Variant result;
    result.m_value.type = type;
    result.m_value.integer = value;
    return result;
}

Variant Variant::real4(float value) {
    Variant result(static_cast<double>(value));
    result.m_value.type = VarType::real4;
    return result;
}

bool Variant::isMissing() const {
    return type() == VarType::error && m_value.integer == hrParameterMissing;
}

VariantView Variant::view() const {
    VariantView view = m_value;
    view.data = m_data;
    return view;
}

Variant Variant::changeType(VarType type) const {
    const VariantView value = view();
    if (value.type == type) return *this;
    switch (type) {
        case VarType::text:
            return converted<std::string>(toText, value);
        case VarType::real8:
            return converted<double>(toReal, value);
        case VarType::real4: {
            const double real = converted<double>(toReal, value);
            if (std::isfinite(real) && std::fabs(real) > 3.4028234663852886e38) throw _com_error(hrOverflow);
            return real4(static_cast<float>(real));
        }
        case VarType::date:
            return date(converted<double>(toDate, value));
        case VarType::boolean:
            return converted<bool>(toBoolean, value);
        case VarType::currency:
            return currency(converted<std::int64_t>(toCurrency, value));
        case VarType::decimal:
            return decimal(converted<Decimal>(toDecimal, value));
        case VarType::byte:
            return changedNumber(value, type, 0, 255);
        case VarType::int16:
            return changedNumber(value, type, INT16_MIN, INT16_MAX);
        case VarType::int32:
            return changedNumber(value, type, INT32_MIN, INT32_MAX);
        case VarType::int64:
            return changedNumber(value, type, INT64_MIN, INT64_MAX);
        case VarType::null:
            return null();
        default:
            throw _com_error(hrTypeMismatch);
    }
}

std::string Variant::text() const {
    return converted<std::string>(toText, view());
}

double Variant::real() const {
    return converted<double>(toReal, view());
}

std::int32_t Variant::int32() const {
    return converted<std::int32_t>(toInt32, view());
}

bool operator==(const Variant& first, const Variant& second) {
    if (first.type() != second.type()) return false;
    if (isReal(first.type())) return first.m_value.real == second.m_value.real;
    if (first.type() == VarType::decimal) return first.m_value.decimal == second.m_value.decimal;
    if (first.type() == VarType::text || first.type() == VarType::bytes) return first.m_data == second.m_data;
    return first.isNull() || first.m_value.integer == second.m_value.integer;
}

}  // namespace ado20
