#include "memory_files.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <platform/cp1252.h>

namespace {

class MemoryFile : public platform::File {
  public:
    explicit MemoryFile(std::shared_ptr<std::string> content) : m_content(std::move(content)) {}
    std::int64_t readAt(std::int64_t offset, void* buffer, std::size_t size) override {
        const std::size_t start = std::min(static_cast<std::size_t>(offset), m_content->size());
        const std::size_t count = std::min(size, m_content->size() - start);
        if (count > 0) std::memcpy(buffer, m_content->data() + start, count);
        return static_cast<std::int64_t>(count);
    }
    bool writeAt(std::int64_t offset, const void* data, std::size_t size) override {
        const auto start = static_cast<std::size_t>(offset);
        m_content->resize(std::max(m_content->size(), start + size));
        m_content->replace(start, size, static_cast<const char*>(data), size);
        return true;
    }
    std::int64_t size() override { return static_cast<std::int64_t>(m_content->size()); }
    bool truncate(std::int64_t size) override {
        m_content->resize(static_cast<std::size_t>(size));
        return true;
    }
    bool sync() override { return true; }
    bool lock(int) override { return true; }
    bool isAt(const char*) override { return true; }

  private:
    std::shared_ptr<std::string> m_content;
};

}  // namespace

void MemoryFiles::put(std::string_view path, std::string content) {
    m_files[platform::upperCased1252(path)] = std::make_shared<std::string>(std::move(content));
}

std::unique_ptr<platform::File> MemoryFiles::open(const char* path, platform::OpenMode mode) {
    const bool isThere = kind(path) == platform::FileKind::file;
    const bool mustExist = mode == platform::OpenMode::read || mode == platform::OpenMode::update;
    if (mustExist != isThere && mode != platform::OpenMode::create) return nullptr;
    if (!mustExist) put(path, {});
    return std::make_unique<MemoryFile>(m_files[platform::upperCased1252(path)]);
}

bool MemoryFiles::remove(const char* path) {
    return m_files.erase(platform::upperCased1252(path)) > 0;
}

bool MemoryFiles::rename(const char* from, const char* to, bool replace) {
    const auto found = m_files.find(platform::upperCased1252(from));
    if (found == m_files.end() || (!replace && kind(to) == platform::FileKind::file)) return false;
    auto content = std::move(found->second);
    m_files.erase(found);
    m_files[platform::upperCased1252(to)] = std::move(content);
    return true;
}

platform::FileKind MemoryFiles::kind(const char* path) {
    return m_files.contains(platform::upperCased1252(path)) ? platform::FileKind::file
                                                            : platform::FileKind::missing;
}

std::int64_t MemoryFiles::size(const char* path) {
    const auto found = m_files.find(platform::upperCased1252(path));
    return found == m_files.end() ? -1 : static_cast<std::int64_t>(found->second->size());
}
