#pragma once
#include <map>
#include <string>

#include <platform/replaceable.h>
#include <platform/window/registry.h>

/// While it lives the system's registry answers, its calls are counted and, behind the first `allowed` ones,
/// refused as a registry without rights does. Closing a key is never refused.
class CountedRegistry : public platform::Registry {
  public:
    int calls = 0;
    int allowed = 1 << 30;
    int openKeys = 0;
    std::map<std::string, DWORD> written;  ///< sizes of the values that were set

    LSTATUS create(HKEY parent, const char* path, HKEY& key) override {
        return opened(pass() ? m_system.create(parent, path, key) : ERROR_ACCESS_DENIED);
    }
    LSTATUS open(HKEY parent, const char* path, REGSAM access, HKEY& key) override {
        return opened(pass() ? m_system.open(parent, path, access, key) : ERROR_ACCESS_DENIED);
    }
    LSTATUS close(HKEY key) override {
        ++calls;
        --openKeys;
        return m_system.close(key);
    }
    LSTATUS deleteTree(HKEY parent, const char* path) override {
        return pass() ? m_system.deleteTree(parent, path) : ERROR_ACCESS_DENIED;
    }
    LSTATUS query(HKEY key, const char* name, DWORD& type, void* data, DWORD& size) override {
        return pass() ? m_system.query(key, name, type, data, size) : ERROR_ACCESS_DENIED;
    }
    LSTATUS set(HKEY key, const char* name, DWORD type, const void* data, DWORD size) override {
        written[name] = size;
        return pass() ? m_system.set(key, name, type, data, size) : ERROR_ACCESS_DENIED;
    }
    LSTATUS flush(HKEY key) override { return pass() ? m_system.flush(key) : ERROR_ACCESS_DENIED; }

  private:
    bool pass() { return ++calls <= allowed; }
    LSTATUS opened(LSTATUS status) {
        if (status == ERROR_SUCCESS) ++openKeys;
        return status;
    }

    platform::Registry& m_system = platform::theRegistry();
    platform::Replaced<platform::Registry> m_inForce{platform::replaceRegistry, *this};
};
