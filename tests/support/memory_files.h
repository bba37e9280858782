#pragma once
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <platform/files.h>

/// A small file system in memory, for tests and fuzz targets that would spend their time on a disk: files are
/// put in by their full names, read and written; folders are whatever a file's name mentions.
class MemoryFiles : public platform::FileSystem {
  public:
    /// Makes a file, or replaces its content.
    void put(std::string_view path, std::string content);

    std::unique_ptr<platform::File> open(const char* path, platform::OpenMode mode) override;
    bool remove(const char* path) override;
    bool rename(const char* from, const char* to, bool replace) override;
    bool createFolder(const char*) override { return true; }
    platform::FileKind kind(const char* path) override;
    std::int64_t size(const char* path) override;
    bool list(const char*, const std::function<bool(const char*, platform::FileKind)>&) override {
        return false;
    }
    std::string absolute(const char* path) override { return path; }
    std::string programFolder() override { return "C:\\program\\"; }
    std::string temporaryFolder() override { return "C:\\temp\\"; }

  private:
    std::map<std::string, std::shared_ptr<std::string>> m_files;  ///< by upper-cased name
};
