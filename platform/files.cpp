#include <platform/files.h>

namespace platform {

File::~File() = default;
FileSystem::~FileSystem() = default;

bool readWholeFile(const char* path, std::string& content, std::int64_t limit) {
    const auto file = theFiles().open(path, OpenMode::read);
    if (file == nullptr) return false;
    const std::int64_t size = file->size();
    if (size < 0 || size > limit) return false;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (file->readAt(0, bytes.data(), bytes.size()) != size) return false;
    content.swap(bytes);
    return true;
}

bool replaceWholeFile(const char* path, std::string_view content) {
    const std::string copy = std::string(path) + ".tmp$";
    bool written = false;
    if (const auto file = theFiles().open(copy.c_str(), OpenMode::create))
        written = file->writeAt(0, content.data(), content.size()) && file->sync();
    if (written && theFiles().rename(copy.c_str(), path, true)) return true;
    theFiles().remove(copy.c_str());
    return false;
}

}  // namespace platform
