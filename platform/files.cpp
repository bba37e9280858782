#include <platform/files.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <exception>

namespace platform {
namespace {

/// A number that no other process and no other call is likely to draw.
unsigned long long uniqueNumber() {
    static std::atomic<unsigned long long> calls{0};
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    const auto place = reinterpret_cast<std::uintptr_t>(&calls);
    return static_cast<unsigned long long>(now) * 31 + place + ++calls * 0x9E3779B97F4A7C15ull;
}

/// A new file in the folder of `path`. Its short name holds nothing of the file's own, which may already be
/// as long as a name can be. What a killed process left behind is never in the way.
std::unique_ptr<File> openCopy(const char* path, std::string& name) {
    const std::string_view target = path;
    const std::string folder(target.substr(0, target.find_last_of("\\/:") + 1));
    for (int attempt = 0; attempt < 100; ++attempt) {
        char unique[32];
        (void)std::snprintf(unique, sizeof unique, "~%010llx.tmp", uniqueNumber() & 0xFFFFFFFFFF);
        name = folder + unique;
        if (auto file = theFiles().open(name.c_str(), OpenMode::createNew)) return file;
        if (theFiles().kind(name.c_str()) == FileKind::missing) break;
    }
    name.clear();
    return nullptr;
}

bool putInPlace(const char* path, std::string_view content, FileReplacement::Existing existing) {
    FileReplacement replacement(path);
    return replacement.append(content) && replacement.commit(existing);
}

}  // namespace

File::~File() = default;
FileSystem::~FileSystem() = default;
void FileSystem::copyIdentity(const char*, const char*) {}
std::string FileSystem::linkTarget(const char* path) {
    return path;
}
bool FileSystem::syncFolder(const char*) {
    return true;
}

// A link stays one: the file that it leads to is replaced.
FileReplacement::FileReplacement(const char* path)
    : m_path(theFiles().linkTarget(path)), m_file(openCopy(m_path.c_str(), m_copy)) {}

FileReplacement::~FileReplacement() {
    if (m_copy.empty()) return;
    m_file.reset();
    theFiles().remove(m_copy.c_str());
}

bool FileReplacement::append(std::string_view bytes) {
    m_failed = m_failed || m_file == nullptr || !m_file->writeAt(m_size, bytes.data(), bytes.size());
    m_size += static_cast<std::int64_t>(bytes.size());
    return !m_failed;
}

void FileReplacement::takeIdentity() {
    theFiles().copyIdentity(m_path.c_str(), m_copy.c_str());
}

bool FileReplacement::commit(Existing existing, Sync sync) {
    if (m_failed || m_file == nullptr || (sync == Sync::first && !m_file->sync())) return false;
    m_file.reset();
    const bool replace = existing == Existing::replaced;
    if (replace) takeIdentity();
    if (!theFiles().rename(m_copy.c_str(), m_path.c_str(), replace)) return false;
    m_copy.clear();
    return true;
}

bool readWholeFile(const char* path, std::string& content, std::int64_t limit) {
    const auto file = theFiles().open(path, OpenMode::read);
    if (file == nullptr) return false;
    const std::int64_t size = file->size();
    if (size < 0 || size > limit) return false;
    std::string bytes;
    try {
        bytes.resize(static_cast<std::size_t>(size));
    } catch (const std::exception&) {
        return false;
    }
    if (file->readAt(0, bytes.data(), bytes.size()) != size) return false;
    content.swap(bytes);
    return true;
}

bool replaceWholeFile(const char* path, std::string_view content) {
    if (path == nullptr) return false;
    const bool exists = theFiles().kind(path) != FileKind::missing;
    if (exists && theFiles().open(path, OpenMode::update) == nullptr) return false;
    return putInPlace(path, content, FileReplacement::Existing::replaced);
}

bool createWholeFile(const char* path, std::string_view content) {
    return path != nullptr && theFiles().kind(path) == FileKind::missing &&
           putInPlace(path, content, FileReplacement::Existing::refused);
}

}  // namespace platform
