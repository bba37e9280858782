#include <kestra/text/txt_to_html.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <dorsel/paths.h>
#include <kestra/text/matching_files.h>
#include <kestra/text/report_page.h>
#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/machine.h>

namespace {

/// Path of the last page written.
std::string g_pagePath;

/// Full path of the first file that matches; empty when none does.
std::string firstMatch(const char* pattern) {
    const auto names = text::matchingFiles(pattern);
    if (names.empty()) return {};
    return platform::theFiles().absolute((text::splitPath(pattern).folder + names.front()).c_str());
}

std::string pagePathFor(const std::string& file) {
    const auto [folder, name] = text::splitPath(file);
    return folder + name.substr(0, name.rfind('.')) + ".htm";
}

/// A report read in pieces: the start, as far as its head reaches, stays in memory.
class ReportFile {
  public:
    static constexpr std::size_t pieceSize = std::size_t{256} * 1024;

    /// With `whole` all of it is kept in memory. False when it cannot be read.
    bool open(const std::string& path, bool whole);
    const report::Head& head() const { return m_head; }
    /// False when the file could not be read on.
    bool writeBody(report::BodyWriter& writer) const;

  private:
    bool findEnd();
    bool readStart(std::int64_t size);

    std::unique_ptr<platform::File> m_file;
    std::int64_t m_end = 0;  ///< behind the last CR
    std::string m_start;
    report::Head m_head;
};

bool ReportFile::open(const std::string& path, bool whole) {
    m_file = platform::theFiles().open(path.c_str(), platform::OpenMode::read);
    if (m_file == nullptr || !findEnd()) return false;
    if (!whole && m_end > std::ssize(m_start) && readStart(pieceSize) && m_head.complete) return true;
    return readStart(m_end);
}

// Kept: what stands behind the last CR never reaches the page.
bool ReportFile::findEnd() {
    char piece[4096];
    for (std::int64_t end = m_file->size(); end > 0;) {
        const std::int64_t start = std::max<std::int64_t>(0, end - std::ssize(piece));
        const std::int64_t got = m_file->readAt(start, piece, static_cast<std::size_t>(end - start));
        if (got < 0) return false;
        const std::size_t cr = std::string_view(piece, static_cast<std::size_t>(got)).rfind('\r');
        if (cr != std::string_view::npos) {
            m_end = start + static_cast<std::int64_t>(cr) + 1;
            return true;
        }
        end = start;
    }
    return m_file->size() >= 0;
}

bool ReportFile::readStart(std::int64_t size) {
    m_start.resize(static_cast<std::size_t>(std::min(size, m_end)));
    if (m_file->readAt(0, m_start.data(), m_start.size()) != std::ssize(m_start)) return false;
    m_head = report::readHead(m_start);
    return true;
}

bool ReportFile::writeBody(report::BodyWriter& writer) const {
    writer.write(std::string_view(m_start).substr(m_head.bodyStart));
    std::vector<char> piece(pieceSize);
    for (std::int64_t offset = std::ssize(m_start); offset < m_end;) {
        const auto wanted =
            static_cast<std::size_t>(std::min<std::int64_t>(m_end - offset, std::ssize(piece)));
        const std::int64_t got = m_file->readAt(offset, piece.data(), wanted);
        if (got <= 0) return false;
        writer.write({piece.data(), static_cast<std::size_t>(got)});
        offset += got;
    }
    return true;
}

/// The page's file, written from its start. A page that is there is written over and cut to its new size at
/// the end, which is faster than to make it anew.
class PageFile {
  public:
    explicit PageFile(const std::string& path)
        : m_file(platform::theFiles().open(path.c_str(), platform::OpenMode::update)) {
        if (m_file == nullptr) m_file = platform::theFiles().open(path.c_str(), platform::OpenMode::create);
    }
    void write(std::string_view piece) {
        m_whole = m_whole && m_file != nullptr && m_file->writeAt(m_size, piece.data(), piece.size());
        m_size += std::ssize(piece);
    }
    /// False when it could not be made or not written whole.
    bool finish() { return m_whole && m_file != nullptr && m_file->truncate(m_size); }

  private:
    std::unique_ptr<platform::File> m_file;
    std::int64_t m_size = 0;
    bool m_whole = true;
};

enum class Outcome { written, notWritten, notRead };

Outcome writePage(const std::string& path, const ReportFile& text) {
    PageFile page(path);
    report::BodyWriter body([&page](std::string_view piece) { page.write(piece); });
    page.write(report::pageHead(text.head()));
    const bool read = text.writeBody(body);
    body.finish();
    page.write("</BODY>");
    return !page.finish() ? Outcome::notWritten : read ? Outcome::written : Outcome::notRead;
}

void openPage(const std::string& path) {
    if (platform::theMachine().windowsNtVersion() > 0)
        DOS::Shell(("explorer \"" + path + "\"").c_str(), 0);
    else
        platform::theMachine().openDocument(path.c_str());
}

}  // namespace

const char* TxtToHtml(const char* file, int flags) {
    const std::string path = file != nullptr ? firstMatch(file) : std::string();
    if (path.empty()) return nullptr;
    const std::int64_t size = platform::theFiles().size(path.c_str());
    if (size < 0) return nullptr;  // it has gone meanwhile
    if (size <= 2) return g_pagePath.c_str();
    const std::string pagePath = pagePathFor(path);
    const bool inPlace = platform::equalNoCase1252(path, pagePath);
    Outcome outcome;
    {
        ReportFile text;
        if (!text.open(path, inPlace)) return nullptr;
        outcome = writePage(pagePath, text);
    }
    if (outcome == Outcome::notRead) return nullptr;
    g_pagePath = pagePath;
    // Last of all, and not when the page took its place: a report is not given up before its page is there.
    if ((flags & txtToHtmlDeleteText) != 0 && outcome == Outcome::written && !inPlace)
        platform::theFiles().remove(path.c_str());
    if ((flags & txtToHtmlOpen) != 0) openPage(g_pagePath);
    return g_pagePath.c_str();
}
