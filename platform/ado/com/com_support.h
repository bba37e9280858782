#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <platform/ado/ado.h>
#include <platform/ado/com/ado_interfaces.h>

namespace ado20::com {

/// A counted pointer to a COM object.
template <class Interface>
class ComPointer {
  public:
    ComPointer() = default;
    ComPointer(ComPointer&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ComPointer& operator=(ComPointer&& other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComPointer() {
        if (m_object != nullptr) m_object->Release();
    }
    Interface* get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    /// Where a call puts a new reference; the pointer must be null.
    Interface** out() { return &m_object; }

  private:
    Interface* m_object = nullptr;
};

/// A text of COM; Windows-1252 outside.
class Bstr {
  public:
    Bstr() = default;
    explicit Bstr(std::string_view text);
    ~Bstr() { SysFreeString(m_text); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    BSTR get() const { return m_text; }
    BSTR* out() { return &m_text; }
    std::string text() const;

  private:
    BSTR m_text = nullptr;
};

/// A VARIANT of COM.
class ComVariant {
  public:
    ComVariant() { VariantInit(&m_value); }
    explicit ComVariant(const Variant& value);
    ~ComVariant() { VariantClear(&m_value); }
    ComVariant(const ComVariant&) = delete;
    ComVariant& operator=(const ComVariant&) = delete;
    const VARIANT& get() const { return m_value; }
    VARIANT* out() { return &m_value; }
    /// Types that `VarType` does not have become the next larger one; objects become empty.
    Variant value() const;

  private:
    VARIANT m_value;
};

/// Throws a failure with what the object told of it; the result otherwise.
HResult check(HRESULT result);

/// The object under the first of the identifiers that it knows.
template <class Interface>
ComPointer<Interface> asked(IUnknown* object) {
    ComPointer<Interface> found;
    HRESULT result = E_POINTER;
    for (const GUID& identifier : Interface::identifiers) {
        if (object == nullptr) break;
        result = object->QueryInterface(identifier, reinterpret_cast<void**>(found.out()));
        if (SUCCEEDED(result)) return found;
    }
    check(result);
    return found;
}

/// A new object of a program identifier, in whatever class context there is.
ComPointer<IUnknown> createdObject(const wchar_t* programIdentifier);

}  // namespace ado20::com
