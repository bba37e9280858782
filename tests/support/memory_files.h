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
    MemoryFiles();
    ~MemoryFiles() override;
    /// Makes a file, or replaces its content, on the disk.
    void put(std::string_view path, std::string content);
    /// Leaves what a power cut could leave: of what was written and not synced, and of the names made,
    /// renamed and removed in a folder not synced since, only what `seed` chooses.
    void cutPower(unsigned seed);

    std::unique_ptr<platform::File> open(const char* path, platform::OpenMode mode) override;
    bool remove(const char* path) override;
    bool rename(const char* from, const char* to, bool replace) override;
    bool createFolder(const char*) override { return true; }
    bool syncFolder(const char* path) override;
    platform::FileKind kind(const char* path) override;
    std::int64_t size(const char* path) override;
    bool list(const char*, const std::function<bool(const char*, platform::FileKind)>&) override {
        return false;
    }
    std::string absolute(const char* path) override { return path; }
    std::string programFolder() override { return "C:\\program\\"; }
    std::string temporaryFolder() override { return "C:\\temp\\"; }

  private:
    struct Content;
    friend class MemoryFile;
    using Names = std::map<std::string, std::shared_ptr<Content>>;  ///< by upper-cased name
    Names m_files;
    Names m_durable;
};
