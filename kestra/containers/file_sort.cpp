#include <kestra/containers/file_sort.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <dorsel/paths.h>
#include <dorsel/trace.h>
#include <kestra/containers/line_order.h>
#include <kestra/containers/tri.h>
#include <platform/files.h>

using line_order::Line;
using platform::theFiles;

namespace kestra {
namespace {

// Kept: the backup is the file ".bak" of the current folder, not the file's own name with another extension.
constexpr const char* backupName = ".bak";
constexpr std::int64_t smallestFile = 5;
constexpr std::ptrdiff_t longestDropped = 2;  ///< lines of up to so many characters are dropped

/// How much of a sort is done when each of its stages begins, in percent.
constexpr int afterReading = 20;
constexpr int afterSorting = 60;
constexpr int afterWriting = 100;

class Progress {
  public:
    explicit Progress(const std::function<void(int)>& report) : m_report(report) {}
    void stage(int from, int to, std::int64_t done, std::int64_t of) {
        const int percent = from + static_cast<int>(of > 0 ? (to - from) * done / of : 0);
        if (percent == m_last || !m_report) return;
        m_last = percent;
        m_report(percent);
    }

  private:
    const std::function<void(int)>& m_report;
    int m_last = -1;
};

/// The whole file, ended by a line feed that is not part of it.
struct Content {
    std::unique_ptr<char[]> bytes;
    std::int64_t size = 0;
    const char* end() const { return bytes.get() + size; }
};

LineSortOutcome read(const char* name, Content& content, Progress& progress) {
    constexpr std::int64_t piece = 16 << 20;
    const auto file = name != nullptr ? theFiles().open(name, platform::OpenMode::read) : nullptr;
    if (file == nullptr) return LineSortOutcome::missingOrEmpty;
    content.size = file->size();
    if (content.size < smallestFile) return LineSortOutcome::missingOrEmpty;
    content.bytes.reset(
        new (std::nothrow) char[static_cast<std::size_t>(content.size) + 1 + line_order::slack]);
    if (content.bytes == nullptr) return LineSortOutcome::unreadable;
    for (std::int64_t at = 0; at < content.size; at += piece) {
        const std::int64_t wanted = std::min(piece, content.size - at);
        if (file->readAt(at, content.bytes.get() + at, static_cast<std::size_t>(wanted)) != wanted)
            return LineSortOutcome::unreadable;
        progress.stage(0, afterReading, at + wanted, content.size);
    }
    std::memset(content.bytes.get() + content.size, '\n', 1 + line_order::slack);
    return LineSortOutcome::sorted;
}

const char* endOfLine(const char* text, const Content& content) {
    return static_cast<const char*>(
        std::memchr(text, '\n', static_cast<std::size_t>(content.end() - text) + 1));
}

std::vector<Line> linesOf(const Content& content) {
    std::vector<Line> lines;
    for (const char* text = content.bytes.get(); text <= content.end();) {
        const char* const end = endOfLine(text, content);
        if (end - text > longestDropped) lines.push_back({line_order::keyAt(text), text});
        text = end + 1;
    }
    return lines;
}

/// Takes the duplicates out of the sorted lines; returns them in file order.
std::vector<const char*> takeDuplicates(std::vector<Line>& lines) {
    std::vector<const char*> duplicates;
    std::erase_if(lines, [&](const Line& line) {
        if (line.key == Line::equalToPrevious) duplicates.push_back(line.text);
        return line.key == Line::equalToPrevious;
    });
    std::sort(duplicates.begin(), duplicates.end());
    return duplicates;
}

/// Puts lines one after the other into a file, a large piece at a time.
class LineWriter {
  public:
    /// `most`: bytes that will be written at most.
    LineWriter(platform::FileReplacement& file, std::int64_t most)
        : m_file(file), m_piece(static_cast<std::size_t>(std::min<std::int64_t>(most, largestPiece))) {}

    bool write(const char* text, const Content& content) {
        const auto room = static_cast<std::size_t>(m_piece.data() + m_piece.size() - m_next);
        if (void* const behind = ::memccpy(m_next, text, '\n', room)) {
            m_next = static_cast<char*>(behind);
            return true;
        }
        const auto length = static_cast<std::size_t>(endOfLine(text, content) + 1 - text);
        if (!flush()) return false;
        if (length > m_piece.size()) return put(text, length);
        std::memcpy(m_next, text, length);
        m_next += length;
        return true;
    }
    bool flush() {
        const auto length = static_cast<std::size_t>(m_next - m_piece.data());
        m_next = m_piece.data();
        return length == 0 || put(m_next, length);
    }

  private:
    static constexpr std::int64_t largestPiece = 1 << 20;
    bool put(const char* bytes, std::size_t length) { return m_file.append({bytes, length}); }

    platform::FileReplacement& m_file;
    std::vector<char> m_piece;
    char* m_next = m_piece.data();
};

bool writeLines(platform::FileReplacement& file, const std::vector<Line>& lines, const Content& content,
                bool descending, Progress& progress) {
    constexpr std::size_t fetchedAhead = 16, reportedEach = 1 << 14;
    LineWriter writer(file, content.size + 1);
    const std::size_t count = lines.size();
    const auto lineAt = [&](std::size_t i) { return lines[descending ? count - 1 - i : i].text; };
    for (std::size_t i = 0; i < count; ++i) {
        if (i + fetchedAhead < count) __builtin_prefetch(lineAt(i + fetchedAhead));
        if (!writer.write(lineAt(i), content)) return false;
        if (i % reportedEach == 0)
            progress.stage(afterSorting, afterWriting, static_cast<std::int64_t>(i),
                           static_cast<std::int64_t>(count));
    }
    return writer.flush();
}

enum class Backup { none, renamed, copied };

/// Keeps the file's present content under the backup's name: the file itself, or a copy when the backup is on
/// another drive.
Backup backUp(const char* file, const Content& content) {
    if (DOS::Rename(file, backupName, 1) != 0)
        return theFiles().kind(file) == platform::FileKind::missing ? Backup::renamed : Backup::copied;
    const std::string_view bytes(content.bytes.get(), static_cast<std::size_t>(content.size));
    return platform::replaceWholeFile(backupName, bytes) ? Backup::copied : Backup::none;
}

/// Writes the lines beside the file and puts them in its place, the present content in the backup's.
bool replaceFile(const char* file, const std::vector<Line>& lines, const Content& content, bool descending,
                 Progress& progress) {
    // Of a link the file that it leads to is sorted, and is what the backup keeps.
    const std::string target = theFiles().linkTarget(file);
    platform::FileReplacement sorted(target.c_str());
    if (!sorted.isOpen() || !writeLines(sorted, lines, content, descending, progress)) return false;
    sorted.takeIdentity();  // while the file still has its name
    const Backup backup = backUp(target.c_str(), content);
    if (backup == Backup::none) return false;
    // What still has the file's own name must not go before the new content is on the disk.
    using Replacement = platform::FileReplacement;
    const auto sync = backup == Backup::renamed ? Replacement::Sync::left : Replacement::Sync::first;
    if (sorted.commit(Replacement::Existing::replaced, sync)) return true;
    if (theFiles().kind(target.c_str()) == platform::FileKind::missing)
        DOS::Rename(backupName, target.c_str(), 0);
    return false;
}

LineSortResult sortWithMemory(const LineSort& request) {
    Progress progress(request.progress);
    Content content;
    const LineSortOutcome reading = read(request.file, content, progress);
    if (reading != LineSortOutcome::sorted) return {reading, 0, 0};

    std::vector<Line> lines = linesOf(content);
    line_order::sort(lines);
    std::vector<const char*> duplicates;
    if (request.unique) duplicates = takeDuplicates(lines);
    if (request.eliminated)
        for (const char* text : duplicates)
            request.eliminated({text, static_cast<std::size_t>(endOfLine(text, content) - text)});
    progress.stage(afterSorting, afterWriting, 0, 1);

    LineSortOutcome outcome = LineSortOutcome::nothingToSort;
    if (lines.size() >= 2)
        outcome = replaceFile(request.file, lines, content, request.descending, progress)
                      ? LineSortOutcome::sorted
                      : LineSortOutcome::notWritten;
    progress.stage(afterSorting, afterWriting, 1, 1);
    return {outcome, static_cast<std::int64_t>(lines.size()), static_cast<std::int64_t>(duplicates.size())};
}

}  // namespace

LineSortResult sortLines(const LineSort& request) {
    try {
        return sortWithMemory(request);
    } catch (const std::bad_alloc&) {
        return {LineSortOutcome::unreadable, 0, 0};
    }
}

}  // namespace kestra

namespace {

void reportOnStandardOutput(std::string_view line) {
    const std::size_t length = std::min(line.find('\0'), line.size());
    std::printf("\nEliminé : %.*s ", static_cast<int>(std::min<std::size_t>(length, INT32_MAX)), line.data());
}

int showMissingOrEmpty() {
    mMessageBox(0, "fichier non trouvé ou Vide", nullptr);
    return 1;
}

}  // namespace

int tri_de_fichier(const char* file, int mode, int unique) {
    constexpr int uniqueMode = 2, shortestRecord = 3;
    const std::int64_t kind = std::abs(std::int64_t{mode});
    const bool records = kind >= shortestRecord;
    // The comparison is looked up so that a table without it is reported.
    CTri().SetFunc(records ? "BINAIRE" : "TEXTE", FonctionsTriGeneral);
    if (DOS::Taille_fichier(file) < kestra::smallestFile) return showMissingOrEmpty();
    // Kept: records are ordered and not written back; callers count on the file and the 0.
    if (records) return 0;

    kestra::LineSort request;
    request.file = file;
    request.descending = mode < 0;
    request.unique = unique != 0 || kind == uniqueMode;
    request.eliminated = reportOnStandardOutput;
    const kestra::LineSortResult result = kestra::sortLines(request);
    if (result.outcome == kestra::LineSortOutcome::missingOrEmpty ||
        result.outcome == kestra::LineSortOutcome::unreadable)
        return showMissingOrEmpty();
    return static_cast<int>(std::min<std::int64_t>(result.kept, INT32_MAX));
}
