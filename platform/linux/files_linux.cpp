#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
        for (;;) {
            if (::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0) return true;
            if (errno != EWOULDBLOCK && errno != EINTR) return false;
            if (std::chrono::steady_clock::now() >= end) return false;
            ::nanosleep(&pause, nullptr);
        }
    }

    bool isAt(const char* path) override {
        struct stat named, own;
        return ::stat(posixPath(path).c_str(), &named) == 0 && ::fstat(m_descriptor, &own) == 0 &&
               named.st_dev == own.st_dev && named.st_ino == own.st_ino;
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

/// Kind of a folder's entry; asked of the file itself where the listing does not say it (links, odd disks).
FileKind kindOf(const std::string& folder, const dirent& entry) {
    if (entry.d_type == DT_REG) return FileKind::file;
    if (entry.d_type == DT_DIR) return FileKind::folder;
    return kindOf(folder + '/' + entry.d_name);
}

/// Renames where no file is in the way, in one step where the disk can do it.
bool renameNew(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return kindOf(to) == FileKind::missing && std::rename(from.c_str(), to.c_str()) == 0;
}

/// Makes the names of a path's folder durable.
bool syncFolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return false;
    const bool done = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return done;
}

/// `root` and, behind it, the components of `rest`; a separator at the end stays.
std::string joined(std::string root, std::string_view rest, char separator) {
    const auto components = componentsOf(rest, true);
    for (const std::string_view component : components) {
        if (!root.empty() && !isSeparator(root.back())) root += separator;
        root += component;
    }
    if (!components.empty() && isSeparator(rest.back())) root += separator;
    return root;
}

/// `\\server\share\` with `\` for its separators.
std::string uncRoot(std::string_view text) {
    std::string root(text);
    std::replace(root.begin(), root.end(), '/', '\\');
    return root;
}

/// Copies the extended attributes that users set, such as a document's title.
void copyAttributes(const char* from, const char* to) {
    std::string names(XATTR_LIST_MAX, '\0'), value(XATTR_SIZE_MAX, '\0');
    const ssize_t length = ::listxattr(from, names.data(), names.size());
    for (ssize_t at = 0; at < length;
         at += static_cast<ssize_t>(std::strlen(&names[static_cast<std::size_t>(at)])) + 1) {
        const char* name = &names[static_cast<std::size_t>(at)];
        if (!std::string_view(name).starts_with("user.")) continue;
        const ssize_t size = ::getxattr(from, name, value.data(), value.size());
        if (size >= 0) ::setxattr(to, name, value.data(), static_cast<std::size_t>(size), 0);
    }
}

class PosixFileSystem : public FileSystem {
  public:
    std::unique_ptr<File> open(const char* path, OpenMode mode) override {
        const std::string name = posixPath(path);
        // O_NONBLOCK: a pipe's name must not make the caller wait. It changes nothing for a file.
        const int descriptor = ::open(name.c_str(), openFlags(mode) | O_CLOEXEC | O_NONBLOCK, 0666);
        if (descriptor < 0) return nullptr;
        auto file = std::make_unique<PosixFile>(descriptor);
        struct stat status;
        if (::fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode) || S_ISFIFO(status.st_mode))
            return nullptr;
        return file;
    }

    bool remove(const char* path) override { return ::unlink(posixPath(path).c_str()) == 0; }

    bool rename(const char* from, const char* to, bool replace) override {
        const std::string source = posixPath(from), target = posixPath(to);
        if (!(replace ? std::rename(source.c_str(), target.c_str()) == 0 : renameNew(source, target)))
            return false;
        syncFolderOf(target);
        return true;
    }

    bool createFolder(const char* path) override {
        std::string name = posixPath(path);
        while (name.size() > 1 && name.back() == '/') name.pop_back();
        return name.size() < PATH_MAX && makeFolders(name);
    }

    void copyIdentity(const char* from, const char* to) override {
        const std::string source = posixPath(from), target = posixPath(to);
        struct stat status, own;
        if (::stat(source.c_str(), &status) != 0 || ::stat(target.c_str(), &own) != 0) return;
        copyAttributes(source.c_str(), target.c_str());
        const bool owned = (status.st_uid == own.st_uid && status.st_gid == own.st_gid) ||
                           ::chown(target.c_str(), status.st_uid, status.st_gid) == 0;
        // A file that is somebody else's now must not get rights that were meant for its owner.
        ::chmod(target.c_str(), status.st_mode & (owned ? 07777 : 0777));
    }

    std::string linkTarget(const char* path) override {
        const std::string name = posixPath(path);
        struct stat status;
        char target[PATH_MAX];
        if (::lstat(name.c_str(), &status) != 0 || !S_ISLNK(status.st_mode) ||
            ::realpath(name.c_str(), target) == nullptr)
            return path;
        std::string text = cp1252FromUtf8(target);
        return utf8From1252(text) == target ? text : path;
    }

    bool syncFolder(const char* path) override { return syncFolderOf(posixPath(path)); }

    FileKind kind(const char* path) override { return kindOf(posixPath(path)); }

    std::int64_t size(const char* path) override {
        struct stat status;
        return ::stat(posixPath(path).c_str(), &status) == 0 && !S_ISDIR(status.st_mode) ? status.st_size
                                                                                         : -1;
    }

    bool list(const char* folder, const std::function<bool(const char*, FileKind)>& visit) override {
        struct Close {
            void operator()(DIR* directory) const { ::closedir(directory); }
        };
        std::string name = posixPath(folder);
        if (name.empty()) name = ".";
        const std::unique_ptr<DIR, Close> directory(::opendir(name.c_str()));
        if (directory == nullptr) return false;
        while (const dirent* entry = ::readdir(directory.get())) {
            const std::string_view text = entry->d_name;
            if (text != "." && text != ".." && !visit(cp1252FromUtf8(text).c_str(), kindOf(name, *entry)))
                break;
        }
        return true;
    }

    std::string absolute(const char* path) override {
        const std::string_view text = path != nullptr ? path : "";
        if (text.empty()) return {};
        if (hasDriveLetter(text)) return joined(std::string(text.substr(0, 2)) + '\\', text.substr(2), '\\');
        if (const std::size_t root = uncRootLength(text); root > 0)
            return joined(uncRoot(text.substr(0, root)), text.substr(root), '\\');
        std::string posix(text);
        if (text.find('\\') != std::string_view::npos) {
            posix = cp1252FromUtf8(posixPath(path));
            if (isSeparator(text.back())) posix += '/';
        }
        if (posix[0] == '/') return joined("/", posix, '/');
        char current[PATH_MAX];
        if (::getcwd(current, sizeof current) == nullptr) return {};
        return joined("/", cp1252FromUtf8(current) + '/' + posix, '/');
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
