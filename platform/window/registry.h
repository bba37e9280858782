#pragma once
#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

#include <platform/export.h>

/// The system's registry, replaceable for a test (counting calls, refusing them). Names and texts are
/// Windows-1252. Each function is one call of the system's function of that meaning and answers its status:
/// ERROR_SUCCESS, or why not. Keys that were opened or created are the caller's to close (`RegistryKey`).
namespace platform {

class DORSEL_API Registry {
  public:
    virtual ~Registry();
    /// Opens a key, creating it and what leads to it where missing (kept over restarts, full access).
    virtual LSTATUS create(HKEY parent, const char* path, HKEY& key) = 0;
    /// Opens a key that exists, for reading (`KEY_READ`) or everything (`KEY_ALL_ACCESS`).
    virtual LSTATUS open(HKEY parent, const char* path, REGSAM access, HKEY& key) = 0;
    virtual LSTATUS close(HKEY key) = 0;
    /// Deletes a key with all that is below it.
    virtual LSTATUS deleteTree(HKEY parent, const char* path) = 0;
    /// Reads a value of at most `size` bytes; `type` and `size` become the value's own. ERROR_MORE_DATA when
    /// it is longer.
    virtual LSTATUS query(HKEY key, const char* name, DWORD& type, void* data, DWORD& size) = 0;
    virtual LSTATUS set(HKEY key, const char* name, DWORD type, const void* data, DWORD size) = 0;
    /// Writes what was changed to the disk.
    virtual LSTATUS flush(HKEY key) = 0;
};

DORSEL_API Registry& theRegistry();
/// Puts another registry in force and returns the one before; null puts the system's back. Not owned.
DORSEL_API Registry* replaceRegistry(Registry* registry);

/// Owner of an open key; null for none.
class DORSEL_API RegistryKey {
  public:
    RegistryKey() = default;
    explicit RegistryKey(HKEY key) : m_key(key) {}
    ~RegistryKey() { close(); }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    /// As the registry's functions; what was held is closed first.
    LSTATUS create(HKEY parent, const char* path);
    LSTATUS open(HKEY parent, const char* path, REGSAM access);
    void close();
    HKEY release();
    HKEY get() const { return m_key; }
    explicit operator bool() const { return m_key != nullptr; }

  private:
    HKEY m_key = nullptr;
};

/// A REG_DWORD value; nothing when it is missing or of another type or size.
DORSEL_API std::optional<std::int32_t> readNumber(HKEY key, const char* name);
/// A REG_SZ value of at most `longest` bytes up to its first NUL; nothing when it is missing, longer or of
/// another type.
DORSEL_API std::optional<std::string> readText(HKEY key, const char* name, DWORD longest);
DORSEL_API bool writeNumber(HKEY key, const char* name, std::int32_t value);

}  // namespace platform
