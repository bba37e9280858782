#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include <platform/files.h>
#include <platform/system_services.h>
#include <platform/windows/handle.h>

namespace platform {
namespace {

OVERLAPPED positionOf(std::int64_t offset) {
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(offset & 0xFFFFFFFF);
    position.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return position;
}

/// ReadFile and WriteFile count in 32 bits: larger requests go in pieces of this size.
constexpr std::size_t largestPiece = 1u << 30;
constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class WindowsFile : public File {
  public:
    explicit WindowsFile(UniqueHandle handle) : m_handle(std::move(handle)) {}

    std::int64_t readAt(std::int64_t offset, void* buffer, std::size_t size) override {
        if (offset < 0) return -1;
        std::size_t done = 0;
        while (done < size) {
            OVERLAPPED position = positionOf(offset + static_cast<std::int64_t>(done));
            const auto piece = static_cast<DWORD>(std::min(size - done, largestPiece));
            DWORD got = 0;
            if (!::ReadFile(m_handle.get(), static_cast<char*>(buffer) + done, piece, &got, &position)) {
                if (::GetLastError() == ERROR_HANDLE_EOF) break;
                return -1;
            }
            if (got == 0) break;
            done += got;
        }
        return static_cast<std::int64_t>(done);
    }

    bool writeAt(std::int64_t offset, const void* data, std::size_t size) override {
        if (offset < 0) return false;  // -1 would mean the end of the file
        std::size_t done = 0;
        while (done < size) {
            OVERLAPPED position = positionOf(offset + static_cast<std::int64_t>(done));
            const auto piece = static_cast<DWORD>(std::min(size - done, largestPiece));
            DWORD put = 0;
            if (!::WriteFile(m_handle.get(), static_cast<const char*>(data) + done, piece, &put, &position) ||
                put == 0)
                return false;
            done += put;
        }
        return true;
    }

    std::int64_t size() override {
        LARGE_INTEGER size;
        return ::GetFileSizeEx(m_handle.get(), &size) ? size.QuadPart : -1;
    }

    bool truncate(std::int64_t size) override {
        LARGE_INTEGER position;
        position.QuadPart = size;
        return ::SetFilePointerEx(m_handle.get(), position, nullptr, FILE_BEGIN) &&
               ::SetEndOfFile(m_handle.get());
    }

    bool sync() override { return ::FlushFileBuffers(m_handle.get()) != 0; }

    bool lock(int milliseconds) override {
        // One byte far behind any content: it keeps other lockers out, not readers.
        OVERLAPPED position = positionOf(INT64_MAX - 1);
        // Not counted in pauses: one lasts up to 16 ms.
        const ULONGLONG start = ::GetTickCount64();
        for (;;) {
            if (::LockFileEx(m_handle.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                             &position))
                return true;
            if (::GetLastError() != ERROR_LOCK_VIOLATION && ::GetLastError() != ERROR_IO_PENDING)
                return false;
            if (static_cast<std::int64_t>(::GetTickCount64() - start) >= milliseconds) return false;
            ::Sleep(2);
        }
    }

    bool isAt(const char* path) override {
        const UniqueHandle named(::CreateFileA(path, FILE_READ_ATTRIBUTES, shareAll, nullptr, OPEN_EXISTING,
                                               FILE_ATTRIBUTE_NORMAL, nullptr));
        BY_HANDLE_FILE_INFORMATION theirs, own;
        return named.get() != INVALID_HANDLE_VALUE && ::GetFileInformationByHandle(named.get(), &theirs) &&
               ::GetFileInformationByHandle(m_handle.get(), &own) &&
               theirs.dwVolumeSerialNumber == own.dwVolumeSerialNumber &&
               theirs.nFileIndexHigh == own.nFileIndexHigh && theirs.nFileIndexLow == own.nFileIndexLow;
    }

  private:
    UniqueHandle m_handle;
};

FileKind kindOf(const char* path) {
    const DWORD attributes = ::GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::missing;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::folder : FileKind::file;
}

std::string endedBySeparator(std::string path) {
    if (!path.empty() && !isSeparator(path.back())) path += '\\';
    return path;
}

class WindowsFileSystem : public FileSystem {
  public:
    std::unique_ptr<File> open(const char* path, OpenMode mode) override {
        if (path == nullptr) return nullptr;
        const DWORD access = mode == OpenMode::read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
        const DWORD creation = mode == OpenMode::create      ? CREATE_ALWAYS
                               : mode == OpenMode::createNew ? CREATE_NEW
                                                             : OPEN_EXISTING;
        const HANDLE handle =
            ::CreateFileA(path, access, shareAll, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) return nullptr;
        UniqueHandle owned(handle);
        BY_HANDLE_FILE_INFORMATION information;
        if (!::GetFileInformationByHandle(handle, &information)) return nullptr;
        // Wine opens both for an administrator.
        const DWORD refused =
            FILE_ATTRIBUTE_DIRECTORY | (mode == OpenMode::update ? FILE_ATTRIBUTE_READONLY : 0u);
        if ((information.dwFileAttributes & refused) != 0) return nullptr;
        return std::make_unique<WindowsFile>(std::move(owned));
    }

    bool remove(const char* path) override { return path != nullptr && ::DeleteFileA(path) != 0; }

    bool rename(const char* from, const char* to, bool replace) override {
        if (from == nullptr || to == nullptr) return false;
        const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0u);
        for (int attempt = 0; !::MoveFileExA(from, to, flags); ++attempt) {
            if (!mayPass(::GetLastError(), to) || attempt == renameAttempts) return false;
            ::Sleep(renamePause);
        }
        return true;
    }

    bool createFolder(const char* path) override {
        std::string name = path != nullptr ? path : "";
        while (name.size() > 1 && isSeparator(name.back()) && name[name.size() - 2] != ':') name.pop_back();
        return name.size() < longestName && makeFolders(name);
    }

    FileKind kind(const char* path) override { return path != nullptr ? kindOf(path) : FileKind::missing; }

    std::int64_t size(const char* path) override {
        WIN32_FILE_ATTRIBUTE_DATA data;
        if (path == nullptr || !::GetFileAttributesExA(path, GetFileExInfoStandard, &data)) return -1;
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return -1;
        return (static_cast<std::int64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    }

    bool list(const char* folder, const std::function<bool(const char*, FileKind)>& visit) override {
        struct CloseSearch {
            using pointer = HANDLE;
            void operator()(HANDLE handle) const { ::FindClose(handle); }
        };
        const std::string pattern =
            endedBySeparator(folder != nullptr && *folder != '\0' ? folder : ".") + "*";
        WIN32_FIND_DATAA entry;
        const HANDLE handle = ::FindFirstFileA(pattern.c_str(), &entry);
        if (handle == INVALID_HANDLE_VALUE) return false;
        const std::unique_ptr<void, CloseSearch> search(handle);
        do {
            const std::string_view name = entry.cFileName;
            const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            if (name != "." && name != ".." &&
                !visit(entry.cFileName, isFolder ? FileKind::folder : FileKind::file))
                break;
        } while (::FindNextFileA(handle, &entry));
        return true;
    }

    std::string absolute(const char* path) override {
        if (path == nullptr || *path == '\0') return {};
        std::string out(::GetFullPathNameA(path, 0, nullptr, nullptr), '\0');
        const DWORD length = ::GetFullPathNameA(path, static_cast<DWORD>(out.size()), out.data(), nullptr);
        return length < out.size() ? out.substr(0, length) : std::string();
    }

    std::string programFolder() override {
        char program[MAX_PATH * 4];
        const DWORD length = ::GetModuleFileNameA(nullptr, program, sizeof program);
        const std::string path(program, length);
        return path.substr(0, path.rfind('\\') + 1);
    }

    std::string temporaryFolder() override {
        char folder[MAX_PATH + 1];
        const DWORD length = ::GetTempPathA(sizeof folder, folder);
        return endedBySeparator(std::string(folder, length < sizeof folder ? length : 0));
    }

  private:
    static constexpr std::size_t longestName = 1024;
    static constexpr int renameAttempts = 10;
    static constexpr DWORD renamePause = 20;

    /// True when somebody else, a virus scanner or an indexer as a rule, has a file open for a moment.
    static bool mayPass(DWORD error, const char* to) {
        if (error == ERROR_SHARING_VIOLATION) return true;
        const DWORD attributes = ::GetFileAttributesA(to);
        return error == ERROR_ACCESS_DENIED && attributes != INVALID_FILE_ATTRIBUTES &&
               (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) == 0;
    }

    static bool makeFolders(const std::string& name) {
        if (name.empty() || kindOf(name.c_str()) == FileKind::folder) return !name.empty();
        const std::size_t slash = name.find_last_of("\\/");
        if (slash != std::string::npos && slash > 0 && name[slash - 1] != ':' &&
            !isSeparator(name[slash - 1]) && !makeFolders(name.substr(0, slash)))
            return false;
        return ::CreateDirectoryA(name.c_str(), nullptr) || kindOf(name.c_str()) == FileKind::folder;
    }
};

}  // namespace

FileSystem& systemFiles() {
    static WindowsFileSystem files;
    return files;
}

}  // namespace platform
