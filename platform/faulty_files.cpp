#include <platform/faulty_files.h>

namespace platform {

class FaultyFile : public File {
  public:
    FaultyFile(FaultyFiles& owner, std::unique_ptr<File> below) : m_owner(owner), m_below(std::move(below)) {}

    std::int64_t readAt(std::int64_t offset, void* buffer, std::size_t size) override {
        return m_owner.callAllowed() ? m_below->readAt(offset, buffer, size) : -1;
    }
    bool writeAt(std::int64_t offset, const void* data, std::size_t size) override {
        if (!m_owner.callAllowed() || m_owner.m_full) return false;
        switch (m_owner.nextWrite()) {
            case FaultyFiles::WriteFate::whole:
                return m_below->writeAt(offset, data, size);
            case FaultyFiles::WriteFate::half:
                m_below->writeAt(offset, data, size / 2);
                return false;
            case FaultyFiles::WriteFate::none:
                break;
        }
        return false;
    }
    std::int64_t size() override { return m_owner.callAllowed() ? m_below->size() : -1; }
    bool truncate(std::int64_t size) override {
        return m_owner.callAllowed() && m_owner.nextWrite() == FaultyFiles::WriteFate::whole &&
               m_below->truncate(size);
    }
    bool sync() override { return m_owner.callAllowed() && !m_owner.stopped() && m_below->sync(); }
    bool lock(int milliseconds) override { return m_owner.callAllowed() && m_below->lock(milliseconds); }
    bool isAt(const char* path) override { return m_owner.callAllowed() && m_below->isAt(path); }

  private:
    FaultyFiles& m_owner;
    std::unique_ptr<File> m_below;
};

FaultyFiles::~FaultyFiles() = default;

void FaultyFiles::failAtCall(long n) {
    m_calls = 0;
    m_failAt = n;
}

void FaultyFiles::stopAfterWrites(long n) {
    m_writes = 0;
    m_stopAfter = n;
}

bool FaultyFiles::callAllowed() {
    return ++m_calls != m_failAt;
}

FaultyFiles::WriteFate FaultyFiles::nextWrite() {
    ++m_writes;
    if (m_stopAfter < 0 || m_writes <= m_stopAfter) return WriteFate::whole;
    return m_writes == m_stopAfter + 1 ? WriteFate::half : WriteFate::none;
}

std::unique_ptr<File> FaultyFiles::open(const char* path, OpenMode mode) {
    if (!callAllowed()) return nullptr;
    const bool changes = mode == OpenMode::createNew || mode == OpenMode::create;
    if (changes && nextWrite() != WriteFate::whole) return nullptr;
    auto file = m_below.open(path, mode);
    return file != nullptr ? std::make_unique<FaultyFile>(*this, std::move(file)) : nullptr;
}

bool FaultyFiles::remove(const char* path) {
    return callAllowed() && nextWrite() == WriteFate::whole && m_below.remove(path);
}

bool FaultyFiles::rename(const char* from, const char* to, bool replace) {
    return callAllowed() && nextWrite() == WriteFate::whole && m_below.rename(from, to, replace);
}

bool FaultyFiles::createFolder(const char* path) {
    return callAllowed() && nextWrite() == WriteFate::whole && m_below.createFolder(path);
}

void FaultyFiles::copyIdentity(const char* from, const char* to) {
    if (callAllowed() && !stopped()) m_below.copyIdentity(from, to);
}

bool FaultyFiles::syncFolder(const char* path) {
    return callAllowed() && !stopped() && m_below.syncFolder(path);
}

std::int64_t FaultyFiles::size(const char* path) {
    return callAllowed() ? m_below.size(path) : -1;
}

bool FaultyFiles::list(const char* folder, const std::function<bool(const char*, FileKind)>& visit) {
    return callAllowed() && m_below.list(folder, visit);
}

}  // namespace platform
