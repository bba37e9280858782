#pragma once
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <platform/export.h>
#include <platform/files.h>

namespace platform {

/// A file with a position, read through one kept buffer and written straight through.
///
/// Reading never allocates once the buffer is there (64 KiB, taken at the first read). A write or a
/// truncation drops the buffer. Not thread-safe.
class DORSEL_API Stream {
  public:
    static constexpr std::size_t bufferSize = 64UL * 1024;

    /// Null when the file cannot be opened.
    static std::shared_ptr<Stream> open(const char* path, OpenMode mode);
    explicit Stream(std::unique_ptr<File> file, std::string path = {});
    ~Stream();
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    bool isOpen() const { return m_file != nullptr; }
    void close();
    File* file() { return m_file.get(); }
    /// The path that `open` was given; empty when the stream was made over a file.
    const std::string& path() const { return m_path; }

    std::int64_t tell() const { return m_bufferStart + static_cast<std::int64_t>(m_next); }
    void seek(std::int64_t offset);
    /// Size in bytes; -1 on failure.
    std::int64_t size();

    /// Bytes buffered at the position, read from the file when there are none; empty at the end of the file
    /// and on a failed read, which `failed` tells apart. Valid until the next call that moves, reads or
    /// writes.
    std::string_view available();
    /// As `available`, but with at least `wanted` bytes (at most `bufferSize`) unless the file ends before.
    std::string_view available(std::size_t wanted);
    /// Moves past `count` of the bytes that `available` gave, at most to their end.
    void skip(std::size_t count) { m_next += count < m_filled - m_next ? count : m_filled - m_next; }
    /// Bytes read, fewer than `size` only at the end of the file and on a failed read.
    std::size_t read(void* buffer, std::size_t size);
    /// True once a read has failed: what follows was cut short, it is not the end of the file.
    bool failed() const { return m_failed; }

    /// Writes at the position and moves it.
    bool write(const void* data, std::size_t size);
    bool truncate(std::int64_t size);
    bool sync();

  private:
    void dropBuffer();

    std::unique_ptr<File> m_file;
    std::string m_path;
    std::vector<char> m_buffer;
    std::int64_t m_bufferStart = 0;  ///< file offset of m_buffer[0]
    std::size_t m_next = 0;          ///< position inside the buffer
    std::size_t m_filled = 0;        ///< bytes in the buffer
    bool m_failed = false;
};

}  // namespace platform
