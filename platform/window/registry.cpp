#include <platform/window/registry.h>

#include <shlwapi.h>

#include <cstring>
#include <utility>

#include <platform/replaceable.h>

namespace platform {

namespace {

class SystemRegistry : public Registry {
  public:
    LSTATUS create(HKEY parent, const char* path, HKEY& key) override {
        return ::RegCreateKeyExA(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                                 &key, nullptr);
    }
    LSTATUS open(HKEY parent, const char* path, REGSAM access, HKEY& key) override {
        return ::RegOpenKeyExA(parent, path, 0, access, &key);
    }
    LSTATUS close(HKEY key) override { return ::RegCloseKey(key); }
    LSTATUS deleteTree(HKEY parent, const char* path) override {
        return static_cast<LSTATUS>(::SHDeleteKeyA(parent, path));
    }
    LSTATUS query(HKEY key, const char* name, DWORD& type, void* data, DWORD& size) override {
        return ::RegQueryValueExA(key, name, nullptr, &type, static_cast<BYTE*>(data), &size);
    }
    LSTATUS set(HKEY key, const char* name, DWORD type, const void* data, DWORD size) override {
        return ::RegSetValueExA(key, name, 0, type, static_cast<const BYTE*>(data), size);
    }
    LSTATUS flush(HKEY key) override { return ::RegFlushKey(key); }
};

ServicePlace<Registry>& place() {
    static SystemRegistry system;
    static ServicePlace<Registry> only(system);
    return only;
}

}  // namespace

Registry::~Registry() = default;

Registry& theRegistry() {
    return place().inForce();
}

Registry* replaceRegistry(Registry* registry) {
    return place().replace(registry);
}

LSTATUS RegistryKey::create(HKEY parent, const char* path) {
    close();
    return theRegistry().create(parent, path, m_key);
}

LSTATUS RegistryKey::open(HKEY parent, const char* path, REGSAM access) {
    close();
    return theRegistry().open(parent, path, access, m_key);
}

void RegistryKey::close() {
    if (const HKEY key = release()) theRegistry().close(key);
}

HKEY RegistryKey::release() {
    return std::exchange(m_key, nullptr);
}

std::optional<std::int32_t> readNumber(HKEY key, const char* name) {
    DWORD type = 0;
    std::int32_t value = 0;
    DWORD size = sizeof value;
    const LSTATUS status = theRegistry().query(key, name, type, &value, size);
    if (status != ERROR_SUCCESS || type != REG_DWORD || size != sizeof value) return std::nullopt;
    return value;
}

std::optional<std::string> readText(HKEY key, const char* name, DWORD longest) {
    DWORD type = 0;
    DWORD size = longest;
    std::string value(longest, '\0');
    if (theRegistry().query(key, name, type, value.data(), size) != ERROR_SUCCESS || type != REG_SZ) {
        return std::nullopt;
    }
    value.resize(size);
    // The system does not promise that a text ends in a NUL, nor that it holds only one.
    value.resize(std::strlen(value.c_str()));
    return value;
}

bool writeNumber(HKEY key, const char* name, std::int32_t value) {
    return theRegistry().set(key, name, REG_DWORD, &value, sizeof value) == ERROR_SUCCESS;
}

}  // namespace platform
