#pragma once
#include <platform/files.h>

namespace platform {

/// A file system over another one that fails on purpose: at the N-th call, or as a power cut would.
///
///     FaultyFiles faulty(theFiles());
///     faulty.stopAfterWrites(3);
///     Replaced inForce(replaceFiles, faulty);
class DORSEL_API FaultyFiles : public FileSystem {
  public:
    explicit FaultyFiles(FileSystem& below) : m_below(below) {}
    ~FaultyFiles() override;

    /// The `n`-th call from now on (counted from 1, any operation that touches the disk) fails, the ones
    /// after it work again; 0: none fails.
    void failAtCall(long n);
    /// Of the writes from now on (writing, truncating, renaming, removing, making files and folders) the
    /// first `n` happen; the next one, when it writes bytes, stops half-way; all later ones fail and change
    /// nothing, as when the machine has stopped. Reading goes on. Negative: no stop.
    void stopAfterWrites(long n);
    /// Every write of bytes from now on fails and changes nothing, as on a full disk.
    void diskFull(bool full) { m_full = full; }

    long calls() const { return m_calls; }
    long writes() const { return m_writes; }
    bool stopped() const { return m_stopAfter >= 0 && m_writes > m_stopAfter; }

    std::unique_ptr<File> open(const char* path, OpenMode mode) override;
    bool remove(const char* path) override;
    bool rename(const char* from, const char* to, bool replace) override;
    bool createFolder(const char* path) override;
    void copyIdentity(const char* from, const char* to) override;
    std::string linkTarget(const char* path) override { return m_below.linkTarget(path); }
    bool syncFolder(const char* path) override;
    FileKind kind(const char* path) override { return m_below.kind(path); }
    std::int64_t size(const char* path) override;
    bool list(const char* folder, const std::function<bool(const char*, FileKind)>& visit) override;
    std::string absolute(const char* path) override { return m_below.absolute(path); }
    std::string programFolder() override { return m_below.programFolder(); }
    std::string temporaryFolder() override { return m_below.temporaryFolder(); }

  private:
    friend class FaultyFile;
    /// Counts a call; true when it may go on.
    bool callAllowed();
    enum class WriteFate { whole, half, none };
    WriteFate nextWrite();

    FileSystem& m_below;
    long m_calls = 0;
    long m_failAt = 0;
    long m_writes = 0;
    long m_stopAfter = -1;
    bool m_full = false;
};

}  // namespace platform
