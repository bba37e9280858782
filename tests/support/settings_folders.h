#pragma once
#include <cstring>

#include <dorsel/globals.h>

#include "temporary_folder.h"

/// The local and the network folder in a new folder, for one test.
class SettingsFolders {
  public:
    SettingsFolders() : m_before(pvg) {
        std::strcpy(pvg.localFolder, m_folder.path("local\\").c_str());
        std::strcpy(pvg.networkFolder, m_folder.path("network\\").c_str());
    }
    ~SettingsFolders() { pvg = m_before; }
    SettingsFolders(const SettingsFolders&) = delete;
    SettingsFolders& operator=(const SettingsFolders&) = delete;

    const TemporaryFolder& folder() const { return m_folder; }
    void local(std::string_view source, std::string_view content) const { write("local\\", source, content); }
    void network(std::string_view source, std::string_view content) const {
        write("network\\", source, content);
    }
    std::string local(std::string_view source) const { return m_folder.read(name("local\\", source)); }
    std::string network(std::string_view source) const { return m_folder.read(name("network\\", source)); }

  private:
    static std::string name(std::string_view place, std::string_view source) {
        return std::string(place) + "ini\\" + std::string(source) + ".ini";
    }
    void write(std::string_view place, std::string_view source, std::string_view content) const {
        m_folder.write(name(place, source), content);
    }
    TemporaryFolder m_folder;
    DorselSeg m_before;
};
