#pragma once
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The rules of a project file's lines, written down as plainly as they are told: what the library's reader,
/// which works inside the stream's buffer, is compared with.
struct ReferenceLine {
    std::string text;
    std::int64_t offset;
    int pieces;
    bool operator==(const ReferenceLine&) const = default;
};

class ReferenceReader {
  public:
    explicit ReferenceReader(std::string_view content) : m_content(content) {}

    std::vector<ReferenceLine> lines() {
        std::vector<ReferenceLine> lines;
        while (m_position < m_content.size()) {
            ReferenceLine line{"", static_cast<std::int64_t>(m_position), 0};
            do {
                if (!line.text.empty()) line.text.pop_back();
                if (m_position == m_content.size()) break;
                line.text += physicalText();
                ++line.pieces;
                while (!line.text.empty() && isBlank(line.text.back())) line.text.pop_back();
            } while (!line.text.empty() && line.text.back() == '+');
            lines.push_back(line);
        }
        return lines;
    }

  private:
    static bool isBlank(char c) { return std::string_view(" \t\r\n").find(c) != std::string_view::npos; }

    std::string physicalText() {
        std::string line;
        while (m_position < m_content.size() && line.size() < 4998) {
            line += m_content[m_position++];
            if (line.back() == '\n') break;
        }
        line.resize(std::min(line.find('\0'), line.size()));
        const std::size_t first = line.find_first_not_of(" \t\r\n");
        return first == std::string::npos ? "" : line.substr(first);
    }

    std::string_view m_content;
    std::size_t m_position = 0;
};
