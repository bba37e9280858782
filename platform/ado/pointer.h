#pragma once
#include <cstddef>
#include <utility>

#include <platform/ado/com_error.h>

namespace ado20 {

/// What is shared by reference count. Counts are not atomic: an object belongs to one thread, as its database
/// does.
class DORSEL_API Counted {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    void AddRef() { ++m_references; }
    /// The last release deletes the object.
    void Release() {
        if (--m_references == 0) delete this;
    }

  protected:
    virtual ~Counted();

  private:
    unsigned m_references = 0;
};

/// A reference-counted interface pointer. A null one may be copied, compared and released; calling through it
/// throws `_com_error(E_POINTER)`.
template <class Interface>
class Pointer {
  public:
    Pointer() = default;
    Pointer(std::nullptr_t) {}
    /// Adds a reference of its own.
    Pointer(Interface* object) : m_object(object) {
        if (m_object != nullptr) m_object->AddRef();
    }
    Pointer(const Pointer& other) : Pointer(other.m_object) {}
    Pointer(Pointer&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Pointer& operator=(Pointer other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Pointer() {
        if (m_object != nullptr) m_object->Release();
    }

    Interface* operator->() const {
        if (m_object == nullptr) throw _com_error(hrPointer);
        return m_object;
    }
    /// The object, null for a null pointer.
    Interface* get() const { return m_object; }
    void Release() { *this = Pointer(); }
    explicit operator bool() const { return m_object != nullptr; }
    friend bool operator==(const Pointer& first, const Pointer& second) = default;

  private:
    Interface* m_object = nullptr;
};

}  // namespace ado20
