#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <platform/export.h>

/// Files and folders, replaceable for a test (`platform/faulty_files.h` has the failing forms).
///
/// Names are 8-bit Windows-1252 texts. On Windows they are taken as they are. Elsewhere a name is looked at
/// first:
/// - `D:\a\b` is folder `d/a/b` below the drive root, the folder that the environment variable KESTRA_DRIVES
///   names (`~/.kestra/drives` when it is not set); `\\server\share\x` is `unc/server/share/x` below it;
/// - in any other name that holds a `\`, `\` stands for `/`;
/// - components of these two kinds are matched without regard to case, an exact match first; what does not
///   exist yet is created in lower case for the drive letter and as written for the rest;
/// - a name without drive letter and without `\` is a POSIX path and taken as it is.
/// Components are UTF-8 on disk.
namespace platform {

enum class OpenMode {
    read,       ///< must exist
    update,     ///< must exist; reading and writing
    create,     ///< made, or emptied when it exists; reading and writing
    createNew,  ///< made; fails when it exists
};

enum class FileKind { missing, file, folder };

/// An open file; closed by the destructor. Positions are absolute, in bytes: a file has no position of its
/// own.
class DORSEL_API File {
  public:
    virtual ~File();
    /// Bytes read, fewer than `size` only at the end of the file; -1 on failure.
    virtual std::int64_t readAt(std::int64_t offset, void* buffer, std::size_t size) = 0;
    /// Writes all of it or fails; after a failure part of it may have been written.
    virtual bool writeAt(std::int64_t offset, const void* data, std::size_t size) = 0;
    /// Size in bytes; -1 on failure.
    virtual std::int64_t size() = 0;
    virtual bool truncate(std::int64_t size) = 0;
    /// True when what was written is on the disk.
    virtual bool sync() = 0;
    /// Keeps other processes that lock the file out until it is closed; waits at most `milliseconds`. False
    /// when somebody else still holds it then. Readers that do not lock are not kept out.
    virtual bool lock(int milliseconds) = 0;
    /// Whether `path` still names this file: false once it was removed or replaced there.
    virtual bool isAt(const char* path) = 0;
};

class DORSEL_API FileSystem {
  public:
    virtual ~FileSystem();
    /// Null on failure. A folder cannot be opened.
    virtual std::unique_ptr<File> open(const char* path, OpenMode mode) = 0;
    virtual bool remove(const char* path) = 0;
    /// Renames a file in one step, so that `to` is at any moment either the old file or the new one. With
    /// `replace` false an existing `to` makes it fail.
    virtual bool rename(const char* from, const char* to, bool replace) = 0;
    /// Makes a folder and the missing ones above it. True when it is there afterwards.
    virtual bool createFolder(const char* path) = 0;
    /// Gives a file what belongs to the other one's name rather than to its content: on POSIX systems its
    /// permission bits, its owner where that is allowed, and its extended attributes. Nothing elsewhere.
    virtual void copyIdentity(const char* from, const char* to);
    /// The file that a symbolic link of that name leads to; the path itself for anything else, and for a file
    /// whose name Windows-1252 does not hold.
    virtual std::string linkTarget(const char* path);
    /// True when the names made, renamed and removed in the folder of `path` are on the disk; at once where
    /// the system writes them in the order in which they happened.
    virtual bool syncFolder(const char* path);
    virtual FileKind kind(const char* path) = 0;
    /// Size of a file in bytes; -1 when it is missing or a folder.
    virtual std::int64_t size(const char* path) = 0;
    /// Calls `visit` with the name (Windows-1252, no folder) and kind of each entry of a folder but "." and
    /// "..", in no particular order, until it answers false. False when the folder cannot be read.
    virtual bool list(const char* folder,
                      const std::function<bool(const char* name, FileKind kind)>& visit) = 0;
    /// The absolute form of a path: relative ones start at the current folder, "." and ".." are resolved by
    /// their text and do not climb out of a drive or a share. Drive and UNC paths keep their case and get `\`
    /// for every separator; elsewhere than on Windows any other path becomes a POSIX path, with what exists
    /// of it as it is spelled on the disk. Empty when it cannot be formed.
    virtual std::string absolute(const char* path) = 0;
    /// Folder of the running program and the folder for temporary files, each ending in a separator.
    virtual std::string programFolder() = 0;
    virtual std::string temporaryFolder() = 0;
};

DORSEL_API FileSystem& theFiles();
/// Puts another file system in force and returns the one before; null puts the system's back. Not owned.
DORSEL_API FileSystem* replaceFiles(FileSystem* files);

inline bool isSeparator(char c) {
    return c == '\\' || c == '/';
}

/// A new content for a file, put in its place in one step: it is written to a copy beside the file, under a
/// name that no other file has, which `commit` syncs and renames. Without a commit the copy goes. Of a link
/// the file that it leads to is replaced.
class DORSEL_API FileReplacement {
  public:
    explicit FileReplacement(const char* path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    bool isOpen() const { return m_file != nullptr; }
    /// Adds to the end of the new content. Once it has failed `commit` fails too.
    bool append(std::string_view bytes);
    /// Gives the new content the identity of the file that is there, for a caller who moves that file away
    /// before `commit`, which does this too.
    void takeIdentity();
    enum class Existing { replaced, refused };
    /// Puts the content in place; a file that was there gives it its identity (`FileSystem::copyIdentity`),
    /// or makes it fail. After a failure that file is as it was.
    ///
    /// `Sync::left` renames without waiting for the disk: for who keeps what was there under another name.
    enum class Sync { first, left };
    bool commit(Existing existing, Sync sync = Sync::first);

  private:
    std::string m_path;
    std::string m_copy;
    std::unique_ptr<File> m_file;
    std::int64_t m_size = 0;
    bool m_failed = false;
};

/// Reads a whole file. False, with `content` untouched, when it cannot be opened, fails while reading or is
/// larger than `limit` bytes or than memory.
DORSEL_API bool readWholeFile(const char* path, std::string& content, std::int64_t limit = INT64_MAX);
/// Puts a whole file in place in one step: a copy beside it, under a name that no other file has, is written,
/// synced and renamed onto it. The file keeps its identity (`copyIdentity`). A file that may not be written
/// is not replaced either. On failure the file that was there is as it was.
DORSEL_API bool replaceWholeFile(const char* path, std::string_view content);
/// The same for a file that must not be there yet: an existing one makes it fail.
DORSEL_API bool createWholeFile(const char* path, std::string_view content);

}  // namespace platform
