#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/replaceable.h>

#include "drive_paths.h"

namespace platform {
namespace {

class PosixFile : public File {
  public:
    explicit PosixFile(int descriptor) : m_descriptor(descriptor) {}
    ~PosixFile() override { ::close(m_descriptor); }
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;

    std::int64_t readAt(std::int64_t offset, void* buffer, std::size_t size) override {
        std::size_t done = 0;
        while (done < size) {
            const ssize_t got = ::pread(m_descriptor, static_cast<char*>(buffer) + done, size - done,
                                        offset + static_cast<off_t>(done));
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) return -1;
            if (got == 0) break;
            done += static_cast<std::size_t>(got);
        }
        return static_cast<std::int64_t>(done);
    }

    bool writeAt(std::int64_t offset, const void* data, std::size_t size) override {
        std::size_t done = 0;
        while (done < size) {
            const ssize_t put = ::pwrite(m_descriptor, static_cast<const char*>(data) + done, size - done,
                                         offset + static_cast<off_t>(done));
            if (put < 0 && errno == EINTR) continue;
            if (put <= 0) return false;
            done += static_cast<std::size_t>(put);
        }
        return true;
    }

    std::int64_t size() override {
        struct stat status;
        return ::fstat(m_descriptor, &status) == 0 ? status.st_size : -1;
    }

    bool truncate(std::int64_t size) override { return ::ftruncate(m_descriptor, size) == 0; }
    bool sync() override { return ::fsync(m_descriptor) == 0; }

    bool lock(int milliseconds) override {
        constexpr timespec pause{0, 2'000'000};
        for (int waited = 0;; waited += 2) {
            if (::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0) return true;
            if (errno != EWOULDBLOCK && errno != EINTR) return false;
            if (waited >= milliseconds) return false;
            ::nanosleep(&pause, nullptr);
        }
    }

  private:
    int m_descriptor;
};

int openFlags(OpenMode mode) {
    switch (mode) {
        case OpenMode::read:
            return O_RDONLY;
        case OpenMode::update:
            return O_RDWR;
        case OpenMode::create:
            return O_RDWR | O_CREAT | O_TRUNC;
        case OpenMode::createNew:
            return O_RDWR | O_CREAT | O_EXCL;
    }
    return O_RDONLY;
}

FileKind kindOf(const std::string& path) {
    struct stat status;
    if (::stat(path.c_str(), &status) != 0) return FileKind::missing;
    return S_ISDIR(status.st_mode) ? FileKind::folder : FileKind::file;
}

/// Makes the names of a folder durable after a rename in it.
void syncFolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    ::fsync(descriptor);
    ::close(descriptor);
}

/// Resolves "." and ".." in the part of `path` behind its root of `rootLength` characters.
std::string withoutDots(std::string_view path, std::size_t rootLength, char separator) {
    std::string out(path.substr(0, rootLength));
    path.remove_prefix(rootLength);
    while (!path.empty()) {
        std::size_t length = 0;
        while (length < path.size() && !isSeparator(path[length])) ++length;
        const std::string_view component = path.substr(0, length);
        const bool more = length < path.size();
        path.remove_prefix(more ? length + 1 : length);
        if (component == "..") {
            if (out.size() > rootLength) out.pop_back();
            while (out.size() > rootLength && !isSeparator(out.back())) out.pop_back();
        } else if (!component.empty() && component != ".") {
            out += component;
            if (more) out += separator;
        }
    }
    return out;
}

class PosixFileSystem : public FileSystem {
  public:
    std::unique_ptr<File> open(const char* path, OpenMode mode) override {
        const std::string name = posixPath(path);
        const int descriptor = ::open(name.c_str(), openFlags(mode) | O_CLOEXEC, 0666);
        if (descriptor < 0) return nullptr;
        auto file = std::make_unique<PosixFile>(descriptor);
        struct stat status;
        if (::fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)) return nullptr;
        return file;
    }

    bool remove(const char* path) override { return ::unlink(posixPath(path).c_str()) == 0; }

    bool rename(const char* from, const char* to, bool replace) override {
        const std::string target = posixPath(to);
        if (!replace && kindOf(target) != FileKind::missing) return false;
        if (std::rename(posixPath(from).c_str(), target.c_str()) != 0) return false;
        syncFolderOf(target);
        return true;
    }

    bool createFolder(const char* path) override {
        std::string name = posixPath(path);
        while (name.size() > 1 && name.back() == '/') name.pop_back();
        return makeFolders(name);
    }

    FileKind kind(const char* path) override { return kindOf(posixPath(path)); }

    std::int64_t size(const char* path) override {
        struct stat status;
        return ::stat(posixPath(path).c_str(), &status) == 0 && !S_ISDIR(status.st_mode) ? status.st_size
                                                                                         : -1;
    }

    bool list(const char* folder, const std::function<bool(const char*, FileKind)>& visit) override {
        const std::string name = posixPath(folder);
        DIR* directory = ::opendir(name.empty() ? "." : name.c_str());
        if (directory == nullptr) return false;
        while (const dirent* entry = ::readdir(directory)) {
            const std::string_view text = entry->d_name;
            if (text == "." || text == "..") continue;
            if (!visit(cp1252FromUtf8(text).c_str(), kindOf(name + '/' + entry->d_name))) break;
        }
        ::closedir(directory);
        return true;
    }

    std::string absolute(const char* path) override {
        const std::string_view text = path != nullptr ? path : "";
        if (text.empty()) return {};
        if (text.size() >= 2 && text[1] == ':') {
            const bool rooted = text.size() > 2 && isSeparator(text[2]);
            return withoutDots(rooted ? std::string(text)
                                      : std::string(text.substr(0, 2)) + '\\' + std::string(text.substr(2)),
                               3, '\\');
        }
        if (text.starts_with("\\\\")) return withoutDots(text, 2, '\\');
        if (isSeparator(text[0])) return withoutDots(text, 1, '/');
        char current[PATH_MAX];
        if (::getcwd(current, sizeof current) == nullptr) return {};
        return withoutDots(cp1252FromUtf8(current) + '/' + std::string(text), 1, '/');
    }

    std::string programFolder() override {
        char program[PATH_MAX];
        const ssize_t length = ::readlink("/proc/self/exe", program, sizeof program);
        if (length <= 0) return "./";
        const std::string path = cp1252FromUtf8({program, static_cast<std::size_t>(length)});
        return path.substr(0, path.rfind('/') + 1);
    }

    std::string temporaryFolder() override {
        const char* folder = std::getenv("TMPDIR");
        std::string path = cp1252FromUtf8(folder != nullptr && *folder != '\0' ? folder : "/tmp");
        if (path.back() != '/') path += '/';
        return path;
    }

  private:
    static bool makeFolders(const std::string& name) {
        if (name.empty() || kindOf(name) == FileKind::folder) return !name.empty();
        const std::size_t slash = name.rfind('/');
        if (slash != std::string::npos && slash > 0 && !makeFolders(name.substr(0, slash))) return false;
        return ::mkdir(name.c_str(), 0777) == 0 || kindOf(name) == FileKind::folder;
    }
};

ServicePlace<FileSystem, PosixFileSystem>& place() {
    static ServicePlace<FileSystem, PosixFileSystem> files;
    return files;
}

}  // namespace

FileSystem& theFiles() {
    return place().inForce();
}
FileSystem* replaceFiles(FileSystem* files) {
    return place().replace(files);
}

}  // namespace platform
