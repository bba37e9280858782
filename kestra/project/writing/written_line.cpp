#include "written_line.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <kestra/project/reading/line_filter.h>
#include <kestra/project/reading/line_reader.h>
#include <kestra/project/reading/returned_fields.h>
#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/stream.h>

namespace kestra {
namespace {

constexpr std::size_t longestSection = 19;
constexpr std::size_t longestName = 254;
constexpr std::size_t lineLength = 80;
constexpr std::string_view continuation = "+\r\n";

/// A text as a file that can be read.
class TextFile : public platform::File {
  public:
    explicit TextFile(std::string text) : m_text(std::move(text)) {}
    std::int64_t readAt(std::int64_t offset, void* buffer, std::size_t size) override {
        const std::size_t start = std::min(static_cast<std::size_t>(offset), m_text.size());
        return static_cast<std::int64_t>(m_text.copy(static_cast<char*>(buffer), size, start));
    }
    bool writeAt(std::int64_t, const void*, std::size_t) override { return false; }
    std::int64_t size() override { return static_cast<std::int64_t>(m_text.size()); }
    bool truncate(std::int64_t) override { return false; }
    bool sync() override { return true; }
    bool lock(int) override { return true; }
    bool isAt(const char*) override { return true; }

  private:
    std::string m_text;
};

bool sameFields(std::string_view line, const CStringArray& fields) {
    for (int i = 0; i < fields.GetSize(); ++i) {
        std::string_view stored;
        if (!fieldOf(line, i, stored)) return false;
        const std::string expected =
            i < 2 ? platform::upperCased1252(fields[i].view()) : std::string(fields[i].view());
        if (returnedField(stored, 0, {}).view() != expected) return false;
    }
    std::string_view beyond;
    return fields.GetSize() == 2 || !fieldOf(line, fields.GetSize(), beyond);
}

}  // namespace

WrittenLine::WrittenLine(std::string_view section, std::string_view name)
    : m_section(platform::upperCased1252(section.substr(0, longestSection))),
      m_name(platform::upperCased1252(name.substr(0, longestName))),
      m_length(m_section.size() + m_name.size() + 2) {}

void WrittenLine::add(std::string_view value) {
    if (m_hasValues) m_values += ';';
    m_hasValues = true;
    if (m_length != 0 && m_length + value.size() >= lineLength) {
        m_values += continuation;
        m_length = 0;
    }
    const std::size_t start = m_values.size();
    m_values += value;
    std::replace(m_values.begin() + static_cast<std::ptrdiff_t>(start), m_values.end(), ';', storedSemicolon);
    m_length += value.size();
}

bool readsBack(const CStringArray& fields) {
    if (fields.GetSize() < 2) return false;
    WrittenLine written(fields[0].GetString(), fields[1].GetString());
    for (int i = 2; i < fields.GetSize(); ++i) written.add(fields[i].GetString());
    platform::Stream stream(std::make_unique<TextFile>(written.text()));
    std::string joined;
    LineReader reader(stream, joined);
    std::string_view line;
    if (reader.next(line) == 0 || !sameFields(line, fields)) return false;
    return reader.position() == stream.size();
}

}  // namespace kestra
