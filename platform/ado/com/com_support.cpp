#include <windows.h>
#include <ole2.h>
#include <oleauto.h>

#include <cstring>

#include <platform/ado/com/com_support.h>

namespace ado20::com {

namespace {

constexpr UINT codePage = 1252;

Variant bytesOf(SAFEARRAY* array) {
    void* data = nullptr;
    LONG lower = 0, upper = -1;
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    if (FAILED(SafeArrayAccessData(array, &data))) return {};
    Variant result =
        Variant::bytes({static_cast<const char*>(data), static_cast<std::size_t>(upper - lower + 1)});
    SafeArrayUnaccessData(array);
    return result;
}

SAFEARRAY* arrayOf(std::string_view bytes) {
    SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
    void* data = nullptr;
    if (array == nullptr || FAILED(SafeArrayAccessData(array, &data))) throw _com_error(hrOutOfMemory);
    std::memcpy(data, bytes.data(), bytes.size());
    SafeArrayUnaccessData(array);
    return array;
}

DECIMAL decimalOf(const Decimal& value) {
    DECIMAL decimal{};
    decimal.scale = value.scale;
    decimal.sign = value.negative ? DECIMAL_NEG : 0;
    decimal.Hi32 = value.high;
    decimal.Lo64 = value.low;
    return decimal;
}

}  // namespace

Bstr::Bstr(std::string_view text) {
    const int size = static_cast<int>(text.size());
    const int wide = size > 0 ? MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0) : 0;
    m_text = SysAllocStringLen(nullptr, static_cast<UINT>(wide));
    if (m_text == nullptr) throw _com_error(hrOutOfMemory);
    if (wide > 0) MultiByteToWideChar(codePage, 0, text.data(), size, m_text, wide);
}

std::string Bstr::text() const {
    const int size = static_cast<int>(SysStringLen(m_text));
    if (size == 0) return {};
    std::string narrow(static_cast<std::size_t>(
                           WideCharToMultiByte(codePage, 0, m_text, size, nullptr, 0, nullptr, nullptr)),
                       '\0');
    WideCharToMultiByte(codePage, 0, m_text, size, narrow.data(), static_cast<int>(narrow.size()), nullptr,
                        nullptr);
    return narrow;
}

ComVariant::ComVariant(const Variant& value) {
    VariantInit(&m_value);
    const VariantView view = value.view();
    const auto type = static_cast<VARTYPE>(view.type);
    switch (view.type) {
        case VarType::empty:
        case VarType::null:
            break;
        case VarType::text: {
            Bstr text(view.data);
            std::swap(V_BSTR(&m_value), *text.out());
            break;
        }
        case VarType::bytes:
            V_ARRAY(&m_value) = arrayOf(view.data);
            break;
        case VarType::real4:
            V_R4(&m_value) = static_cast<float>(view.real);
            break;
        case VarType::real8:
        case VarType::date:
            V_R8(&m_value) = view.real;
            break;
        case VarType::decimal:
            V_DECIMAL(&m_value) = decimalOf(view.decimal);
            break;
        case VarType::byte:
            V_UI1(&m_value) = static_cast<BYTE>(view.integer);
            break;
        case VarType::int16:
        case VarType::boolean:
            V_I2(&m_value) = static_cast<SHORT>(view.integer);
            break;
        case VarType::int32:
        case VarType::error:
            V_I4(&m_value) = static_cast<LONG>(view.integer);
            break;
        default:
            V_I8(&m_value) = view.integer;
            break;
    }
    // A decimal lies over the type, so that is written last.
    V_VT(&m_value) = type;
}

Variant ComVariant::value() const {
    const VARIANT& v = m_value;
    switch (V_VT(&v)) {
        case VT_NULL:
            return Variant::null();
        case VT_I1:
            return Variant(static_cast<int>(V_I1(&v)));
        case VT_UI1:
            return Variant::integer(VarType::byte, V_UI1(&v));
        case VT_I2:
            return Variant::integer(VarType::int16, V_I2(&v));
        case VT_UI2:
            return Variant(static_cast<int>(V_UI2(&v)));
        case VT_I4:
        case VT_INT:
            return Variant::integer(VarType::int32, V_I4(&v));
        case VT_UI4:
        case VT_UINT:
            return Variant(static_cast<long long>(V_UI4(&v)));
        case VT_I8:
        case VT_UI8:
            return Variant(static_cast<long long>(V_I8(&v)));
        case VT_ERROR:
            return Variant::integer(VarType::error, V_ERROR(&v));
        case VT_BOOL:
            return Variant(V_BOOL(&v) != VARIANT_FALSE);
        case VT_R4:
            return Variant::real4(V_R4(&v));
        case VT_R8:
            return Variant(V_R8(&v));
        case VT_DATE:
            return Variant::date(V_DATE(&v));
        case VT_CY:
            return Variant::currency(V_CY(&v).int64);
        case VT_DECIMAL: {
            const DECIMAL& decimal = V_DECIMAL(&v);
            return Variant::decimal({decimal.Lo64, decimal.Hi32, decimal.scale, decimal.sign != 0});
        }
        case VT_BSTR: {
            Bstr text;
            *text.out() = V_BSTR(&v);
            Variant result(text.text());
            *text.out() = nullptr;
            return result;
        }
        case VT_ARRAY | VT_UI1:
            return bytesOf(V_ARRAY(&v));
        default:
            return {};
    }
}

/// ADO tells more of a failure through the thread's error object; what does not tell has the text of its
/// code.
HResult check(HRESULT result) {
    if (SUCCEEDED(result)) return static_cast<HResult>(result);
    const auto code = static_cast<HResult>(result);
    ComPointer<IErrorInfo> info;
    if (GetErrorInfo(0, info.out()) != S_OK) throw _com_error(code);
    Bstr description, source;
    info->GetDescription(description.out());
    info->GetSource(source.out());
    if (description.text().empty()) throw _com_error(code);
    throw _com_error(code, description.text(), source.text());
}

ComPointer<IUnknown> createdObject(const wchar_t* programIdentifier) {
    CLSID identifier;
    check(CLSIDFromProgID(programIdentifier, &identifier));
    ComPointer<IUnknown> object;
    check(CoCreateInstance(identifier, nullptr, CLSCTX_ALL, IID_IUnknown,
                           reinterpret_cast<void**>(object.out())));
    // Local and remote servers want to be started; for the others this does nothing.
    check(OleRun(object.get()));
    return object;
}

}  // namespace ado20::com
