#include "memory_files.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include <platform/cp1252.h>

/// What is in memory, what is on the disk, and what was written in between. A write without bytes cuts the
/// file.
struct MemoryFiles::Content {
    struct Write {
        std::size_t offset;
        std::string bytes;
    };
    std::string now, durable;
    std::vector<Write> pending;

    static void apply(std::string& content, const Write& write) {
        content.resize(write.bytes.empty() ? write.offset
                                           : std::max(content.size(), write.offset + write.bytes.size()));
        content.replace(write.offset, write.bytes.size(), write.bytes);
    }
    void write(std::size_t offset, std::string bytes) {
        pending.push_back({offset, std::move(bytes)});
        apply(now, pending.back());
    }
    void sync() {
        durable = now;
        pending.clear();
    }
};

class MemoryFile : public platform::File {
  public:
    explicit MemoryFile(std::shared_ptr<MemoryFiles::Content> content, const MemoryFiles& files)
        : m_content(std::move(content)), m_files(files) {}
    std::int64_t readAt(std::int64_t offset, void* buffer, std::size_t size) override {
        const std::string& bytes = m_content->now;
        const std::size_t start = std::min(static_cast<std::size_t>(offset), bytes.size());
        return static_cast<std::int64_t>(bytes.copy(static_cast<char*>(buffer), size, start));
    }
    bool writeAt(std::int64_t offset, const void* data, std::size_t size) override {
        if (size > 0)
            m_content->write(static_cast<std::size_t>(offset), {static_cast<const char*>(data), size});
        return true;
    }
    std::int64_t size() override { return static_cast<std::int64_t>(m_content->now.size()); }
    bool truncate(std::int64_t size) override {
        m_content->write(static_cast<std::size_t>(size), {});
        return true;
    }
    bool sync() override {
        m_content->sync();
        return true;
    }
    bool lock(int) override { return true; }
    bool isAt(const char* path) override {
        const auto found = m_files.m_files.find(platform::upperCased1252(path));
        return found != m_files.m_files.end() && found->second == m_content;
    }

  private:
    std::shared_ptr<MemoryFiles::Content> m_content;
    const MemoryFiles& m_files;
};

MemoryFiles::MemoryFiles() = default;
MemoryFiles::~MemoryFiles() = default;

void MemoryFiles::put(std::string_view path, std::string content) {
    auto& file = m_files[platform::upperCased1252(path)] = std::make_shared<Content>();
    file->now = file->durable = std::move(content);
    m_durable = m_files;
}

void MemoryFiles::cutPower(unsigned seed) {
    std::minstd_rand random(seed);
    const auto happens = [&] { return random() / 7 % 2 == 0; };
    Names left;
    for (const Names* names : {&m_durable, &m_files}) {
        const Names& others = names == &m_durable ? m_files : m_durable;
        for (const auto& [name, content] : *names) {
            const auto other = others.find(name);
            const bool isSure = other != others.end() && other->second == content;
            if (isSure || happens()) left[name] = content;
        }
    }
    for (auto& [name, content] : left) {
        auto after = std::make_shared<Content>();
        after->durable = content->durable;
        for (auto write : content->pending) {
            if (!happens()) continue;
            if (!write.bytes.empty() && happens()) write.bytes.resize(write.bytes.size() / 2 + 1);
            Content::apply(after->durable, write);
        }
        after->now = after->durable;
        content = std::move(after);
    }
    m_files = m_durable = left;
}

std::unique_ptr<platform::File> MemoryFiles::open(const char* path, platform::OpenMode mode) {
    const bool isThere = kind(path) == platform::FileKind::file;
    const bool mustExist = mode == platform::OpenMode::read || mode == platform::OpenMode::update;
    if (mustExist != isThere && mode != platform::OpenMode::create) return nullptr;
    auto& content = m_files[platform::upperCased1252(path)];
    if (!mustExist) content = std::make_shared<Content>();
    return std::make_unique<MemoryFile>(content, *this);
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
    return syncFolder(to);
}

bool MemoryFiles::syncFolder(const char*) {
    m_durable = m_files;
    return true;
}

platform::FileKind MemoryFiles::kind(const char* path) {
    return m_files.contains(platform::upperCased1252(path)) ? platform::FileKind::file
                                                            : platform::FileKind::missing;
}

std::int64_t MemoryFiles::size(const char* path) {
    const auto found = m_files.find(platform::upperCased1252(path));
    return found == m_files.end() ? -1 : static_cast<std::int64_t>(found->second->now.size());
}
