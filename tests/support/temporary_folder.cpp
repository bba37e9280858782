#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>

#include <platform/files.h>

namespace {

#ifdef _WIN32
std::string newFolder(const std::string& unique) {
    return platform::theFiles().temporaryFolder() + unique;
}
void removeFolder(const std::string& folder) {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}
#else
std::filesystem::path driveRoot() {
    // Never destroyed: it is removed at the very end, behind the static objects.
    static const auto& root = *new const std::filesystem::path([] {
        auto path =
            std::filesystem::temp_directory_path() /
            ("kestra_drives_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
        std::filesystem::create_directories(path / "c");
        ::setenv("KESTRA_DRIVES", path.c_str(), 1);
        std::atexit([] { std::filesystem::remove_all(driveRoot()); });
        return path;
    }());
    return root;
}
std::string newFolder(const std::string& unique) {
    driveRoot();
    return "C:\\" + unique;
}
void removeFolder(const std::string& folder) {
    std::string below = folder.substr(3);
    below.pop_back();
    std::error_code ignored;
    std::filesystem::remove_all(driveRoot() / "c" / below, ignored);
}
#endif

}  // namespace

TemporaryFolder::TemporaryFolder() {
    static std::atomic<int> number{0};
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    m_folder = newFolder("kestra_" + std::to_string(ticks) + "_" + std::to_string(number++)) + '\\';
    EXPECT_TRUE(platform::theFiles().createFolder(m_folder.c_str())) << m_folder;
}

TemporaryFolder::~TemporaryFolder() {
    removeFolder(m_folder);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
    const std::string file = path(name);
    platform::theFiles().createFolder(file.substr(0, file.rfind('\\')).c_str());
    const auto made = platform::theFiles().open(file.c_str(), platform::OpenMode::create);
    EXPECT_TRUE(made != nullptr && made->writeAt(0, content.data(), content.size())) << file;
    return file;
}

std::string TemporaryFolder::read(std::string_view name) const {
    std::string content;
    EXPECT_TRUE(platform::readWholeFile(path(name).c_str(), content)) << name;
    return content;
}
