#include "undo_record.h"

#include <algorithm>

namespace kestra {
namespace {

constexpr std::size_t numberSize = 8;

void appendNumber(std::string& out, std::uint64_t number) {
    for (std::size_t i = 0; i < numberSize; ++i) out += static_cast<char>(number >> (8 * i) & 0xFF);
}

std::uint64_t checksum(std::string_view bytes) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    return sum;
}

/// Takes numbers and texts off the front of a record; `failed` once it is too short for what is asked.
class RecordReader {
  public:
    explicit RecordReader(std::string_view bytes) : m_bytes(bytes) {}

    std::uint64_t number() {
        std::uint64_t number = 0;
        const std::string_view bytes = text(numberSize);
        for (std::size_t i = bytes.size(); i-- > 0;)
            number = number << 8 | static_cast<unsigned char>(bytes[i]);
        return number;
    }
    std::string_view text(std::uint64_t length) {
        m_failed = m_failed || length > m_bytes.size();
        if (m_failed) return {};
        const std::string_view taken = m_bytes.substr(0, length);
        m_bytes.remove_prefix(length);
        return taken;
    }
    ByteChange change() {
        ByteChange change;
        change.offset = static_cast<std::int64_t>(number());
        const std::uint64_t before = number();
        change.replaced = number();
        const std::uint64_t length = number();
        change.before = text(before);
        change.text = text(length);
        m_failed = m_failed || change.offset < 0 || change.replaced > change.before.size();
        return change;
    }
    bool failed() const { return m_failed; }
    bool atEnd() const { return m_bytes.empty(); }

  private:
    std::string_view m_bytes;
    bool m_failed = false;
};

}  // namespace

std::string UndoRecord::toBytes() const {
    std::string bytes(mark);
    appendNumber(bytes, static_cast<std::uint64_t>(sizeBefore));
    appendNumber(bytes, changes.size());
    for (const ByteChange& change : changes) {
        appendNumber(bytes, static_cast<std::uint64_t>(change.offset));
        appendNumber(bytes, change.before.size());
        appendNumber(bytes, change.replaced);
        appendNumber(bytes, change.text.size());
        bytes += change.before;
        bytes += change.text;
    }
    appendNumber(bytes, checksum(bytes));
    return bytes;
}

std::optional<UndoRecord> UndoRecord::fromBytes(std::string_view bytes) {
    if (!bytes.starts_with(mark) || bytes.size() < mark.size() + 3 * numberSize) return std::nullopt;
    const std::string_view body = bytes.substr(0, bytes.size() - numberSize);
    if (RecordReader(bytes.substr(body.size())).number() != checksum(body)) return std::nullopt;
    RecordReader reader(body.substr(mark.size()));
    UndoRecord record;
    record.sizeBefore = static_cast<std::int64_t>(reader.number());
    for (std::uint64_t count = reader.number(); count > 0 && !reader.failed(); --count)
        record.changes.push_back(reader.change());
    if (reader.failed() || !reader.atEnd() || record.sizeBefore < 0) return std::nullopt;
    return record;
}

bool UndoRecord::isUnfinished(std::string_view bytes) {
    const std::size_t length = std::min(bytes.size(), mark.size());
    return bytes.substr(0, length) == mark.substr(0, length) || bytes.find_first_not_of('\0') == bytes.npos;
}

}  // namespace kestra
