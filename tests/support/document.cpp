#include "document.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#include <objbase.h>

void makeDocument(const std::string& path) {
    IStorage* storage = nullptr;
    const auto* bytes = reinterpret_cast<const unsigned char*>(path.c_str());
    const std::wstring name(bytes, bytes + path.size());
    const DWORD mode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
    ASSERT_EQ(::StgCreateDocfile(name.c_str(), mode, 0, &storage), S_OK);
    storage->Release();
}

std::int64_t changeTime(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    EXPECT_TRUE(::GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data));
    return static_cast<std::int64_t>(data.ftLastWriteTime.dwHighDateTime) << 32 |
           data.ftLastWriteTime.dwLowDateTime;
}

std::string fileWithoutProperties(const std::string& plainFile) {
    return plainFile;
}
#else
#include <sys/stat.h>

#include <platform/linux/drive_paths.h>

#include <platform/files.h>

void makeDocument(const std::string& path) {
    EXPECT_TRUE(platform::replaceWholeFile(path.c_str(), "contenu"));
}

std::int64_t changeTime(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(platform::posixPath(path.c_str()).c_str(), &status), 0);
    return status.st_ctim.tv_sec * 1'000'000'000 + status.st_ctim.tv_nsec;
}

std::string fileWithoutProperties(const std::string&) {
    return "/proc/self/status";
}
#endif
