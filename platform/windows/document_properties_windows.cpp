#include <windows.h>
#include <objbase.h>
#include <propidl.h>

#include <string>
#include <vector>

#include <platform/document_properties.h>

namespace platform {
namespace {

const GUID summaryInformation = {
    0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};
const GUID propertySetStorage = {0x0000013A, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

constexpr DWORD readFile = STGM_READ | STGM_SHARE_DENY_WRITE,
                changeFile = STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                readSet = STGM_READ | STGM_SHARE_EXCLUSIVE, changeSet = STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                createSet = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

struct ReleaseInterface {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using Owned = std::unique_ptr<Interface, ReleaseInterface>;

/// Windows-1252 whatever the system's code page is.
std::wstring wide(const char* text) {
    const int size = ::MultiByteToWideChar(1252, 0, text, -1, nullptr, 0);
    std::wstring out(static_cast<std::size_t>(size > 0 ? size : 1), L'\0');
    ::MultiByteToWideChar(1252, 0, text, -1, out.data(), size);
    return out;
}

PROPSPEC specOf(DocumentProperty property) {
    PROPSPEC spec{};
    spec.ulKind = PRSPEC_PROPID;
    spec.propid = static_cast<PROPID>(property);
    return spec;
}

class PropertySet : public DocumentProperties {
  public:
    PropertySet(Owned<IPropertySetStorage> storage, Owned<IPropertyStorage> set)
        : m_storage(std::move(storage)), m_set(std::move(set)) {}

    std::int32_t read(std::span<const DocumentProperty> properties, char** texts) override {
        std::vector<PROPSPEC> specs;
        for (const DocumentProperty property : properties) specs.push_back(specOf(property));
        std::vector<PROPVARIANT> values(specs.size());
        const HRESULT result =
            m_set->ReadMultiple(static_cast<ULONG>(specs.size()), specs.data(), values.data());
        if (FAILED(result)) return result;
        for (PROPVARIANT& value : values) {
            const bool isText = value.vt == VT_LPSTR;
            *texts++ = isText ? value.pszVal : nullptr;
            if (!isText) ::PropVariantClear(&value);
        }
        return result;
    }

    std::int32_t write(std::span<const PropertyText> texts) override {
        std::vector<PROPSPEC> specs;
        std::vector<PROPVARIANT> values;
        for (const PropertyText& text : texts) {
            specs.push_back(specOf(text.property));
            PROPVARIANT value{};
            value.vt = VT_LPSTR;
            value.pszVal = const_cast<char*>(text.text);
            values.push_back(value);
        }
        constexpr PROPID firstNamed = 2;
        return m_set->WriteMultiple(static_cast<ULONG>(specs.size()), specs.data(), values.data(),
                                    firstNamed);
    }

  private:
    Owned<IPropertySetStorage> m_storage;
    Owned<IPropertyStorage> m_set;
};

HRESULT openFile(const std::wstring& path, DWORD mode, Owned<IPropertySetStorage>& storage) {
    void* opened = nullptr;
    HRESULT result =
        ::StgOpenStorageEx(path.c_str(), mode, STGFMT_ANY, 0, nullptr, nullptr, propertySetStorage, &opened);
    if (FAILED(result)) return result;
    // Some systems give the storage itself, whatever interface was asked for.
    const Owned<IUnknown> object(static_cast<IUnknown*>(opened));
    void* sets = nullptr;
    result = object->QueryInterface(propertySetStorage, &sets);
    if (SUCCEEDED(result)) storage.reset(static_cast<IPropertySetStorage*>(sets));
    return result;
}

/// A new set would keep 8-bit texts as Unicode, which not every reader turns back whole. Only an empty set
/// takes this.
void useCodePage(IPropertyStorage& set) {
    constexpr PROPID codePage = 1;
    PROPSPEC spec{};
    spec.ulKind = PRSPEC_PROPID;
    spec.propid = codePage;
    PROPVARIANT value{};
    value.vt = VT_I2;
    value.iVal = 1252;
    set.WriteMultiple(1, &spec, &value, 2);
}

HRESULT openSet(IPropertySetStorage& storage, PropertyAccess access, Owned<IPropertyStorage>& set) {
    IPropertyStorage* opened = nullptr;
    bool made = false;
    HRESULT result =
        storage.Open(summaryInformation, access == PropertyAccess::read ? readSet : changeSet, &opened);
    if (FAILED(result) && access == PropertyAccess::write) {
        result = storage.Create(summaryInformation, nullptr, 0, createSet, &opened);
        made = SUCCEEDED(result);
    }
    // A failed call may leave a pointer that means nothing.
    if (SUCCEEDED(result)) set.reset(opened);
    if (made) useCodePage(*set);
    return result;
}

}  // namespace

std::int32_t openDocumentProperties(const char* path, PropertyAccess access,
                                    std::unique_ptr<DocumentProperties>& properties) {
    const std::wstring name = wide(path);
    Owned<IPropertySetStorage> storage;
    Owned<IPropertyStorage> set;
    HRESULT result = openFile(name, readFile, storage);
    if (FAILED(result)) return result;
    result = openSet(*storage, access, set);
    if (FAILED(result) && access == PropertyAccess::write) {
        // A compound file opened for reading takes no changes to its sets: it is opened anew for them.
        storage.reset();
        result = openFile(name, changeFile, storage);
        if (SUCCEEDED(result)) result = openSet(*storage, access, set);
    }
    if (FAILED(result)) return result;
    properties = std::make_unique<PropertySet>(std::move(storage), std::move(set));
    return result;
}

void freePropertyText(char* text) {
    ::CoTaskMemFree(text);
}

}  // namespace platform
