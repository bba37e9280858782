#include <platform/stream.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform {

std::shared_ptr<Stream> Stream::open(const char* path, OpenMode mode) {
    auto file = theFiles().open(path, mode);
    return file != nullptr ? std::make_shared<Stream>(std::move(file), path) : nullptr;
}

Stream::Stream(std::unique_ptr<File> file, std::string path)
    : m_file(std::move(file)), m_path(std::move(path)) {}
Stream::~Stream() = default;

void Stream::close() {
    dropBuffer();
    m_file.reset();
}

void Stream::seek(std::int64_t offset) {
    if (offset >= m_bufferStart && offset <= m_bufferStart + static_cast<std::int64_t>(m_filled)) {
        m_next = static_cast<std::size_t>(offset - m_bufferStart);
        return;
    }
    m_bufferStart = std::max<std::int64_t>(offset, 0);
    m_next = m_filled = 0;
}

std::int64_t Stream::size() {
    return m_file != nullptr ? m_file->size() : -1;
}

std::string_view Stream::available() {
    return available(1);
}

std::string_view Stream::available(std::size_t wanted) {
    wanted = std::min(wanted, bufferSize);
    if (m_filled - m_next < wanted && m_file != nullptr) {
        if (m_buffer.empty()) m_buffer.resize(bufferSize);
        const std::size_t kept = m_filled - m_next;
        if (kept > 0 && m_next > 0) std::memmove(m_buffer.data(), m_buffer.data() + m_next, kept);
        m_bufferStart += static_cast<std::int64_t>(m_next);
        m_next = 0;
        const std::int64_t got = m_file->readAt(m_bufferStart + static_cast<std::int64_t>(kept),
                                                m_buffer.data() + kept, bufferSize - kept);
        m_failed = m_failed || got < 0;
        m_filled = kept + (got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    return m_buffer.empty() ? std::string_view()
                            : std::string_view(m_buffer.data() + m_next, m_filled - m_next);
}

std::size_t Stream::read(void* buffer, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const std::string_view bytes = available();
        if (bytes.empty()) break;
        const std::size_t count = std::min(bytes.size(), size - done);
        std::memcpy(static_cast<char*>(buffer) + done, bytes.data(), count);
        skip(count);
        done += count;
    }
    return done;
}

bool Stream::write(const void* data, std::size_t size) {
    const std::int64_t offset = tell();
    dropBuffer();
    if (m_file == nullptr || !m_file->writeAt(offset, data, size)) return false;
    m_bufferStart = offset + static_cast<std::int64_t>(size);
    return true;
}

bool Stream::truncate(std::int64_t size) {
    dropBuffer();
    return m_file != nullptr && m_file->truncate(size);
}

bool Stream::sync() {
    return m_file != nullptr && m_file->sync();
}

void Stream::dropBuffer() {
    m_bufferStart = tell();
    m_next = m_filled = 0;
}

}  // namespace platform
