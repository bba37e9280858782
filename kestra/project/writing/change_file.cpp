#include "change_file.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <thread>

#include <dorsel/trace.h>

namespace kestra {
namespace {

using platform::File;
using platform::FileKind;
using platform::OpenMode;
using platform::theFiles;

bool writeAll(File& file, std::int64_t offset, std::string_view bytes) {
    return file.writeAt(offset, bytes.data(), bytes.size());
}

bool readAll(File& file, std::int64_t offset, std::int64_t length, std::string& bytes) {
    bytes.resize(static_cast<std::size_t>(length));
    return file.readAt(offset, bytes.data(), bytes.size()) == length;
}

std::optional<std::string> contentOf(File& file) {
    std::string bytes;
    const std::int64_t size = file.size();
    if (size < 0 || !readAll(file, 0, size, bytes)) return std::nullopt;
    return bytes;
}

/// What the file holds now where it is about to be changed.
std::optional<UndoRecord> recordOf(File& file, std::vector<Replacement>& replacements) {
    UndoRecord record;
    record.sizeBefore = file.size();
    for (Replacement& replacement : replacements) {
        ByteChange change{replacement.offset,
                          {},
                          static_cast<std::size_t>(replacement.length),
                          std::move(replacement.text)};
        const std::int64_t length =
            change.moves() ? record.sizeBefore - replacement.offset : replacement.length;
        if (length < replacement.length || !readAll(file, replacement.offset, length, change.before))
            return std::nullopt;
        if (change.moves() || change.before != change.text) record.changes.push_back(std::move(change));
    }
    return record;
}

bool writeChanges(File& file, const UndoRecord& record) {
    return std::all_of(record.changes.begin(), record.changes.end(),
                       [&](const ByteChange& change) {
                           return change.moves() ? writeAll(file, change.offset, change.after())
                                                 : writeAll(file, change.offset, change.text);
                       }) &&
           file.sync();
}

bool writeBack(File& file, const UndoRecord& record) {
    return std::all_of(
               record.changes.begin(), record.changes.end(),
               [&](const ByteChange& change) { return writeAll(file, change.offset, change.before); }) &&
           file.truncate(record.sizeBefore) && file.sync();
}

/// Whether the file is in the middle of this change: of a size between the two, and every byte where it
/// changes either the old or the new one. Otherwise somebody else has changed it since.
bool isMidway(File& file, const UndoRecord& record) {
    const std::int64_t size = file.size();
    std::int64_t sizeAfter = record.sizeBefore;
    for (const ByteChange& change : record.changes) {
        std::string now;
        const std::string after = change.after();
        sizeAfter +=
            static_cast<std::int64_t>(after.size()) - static_cast<std::int64_t>(change.before.size());
        if (!readAll(file, change.offset, static_cast<std::int64_t>(change.before.size()), now)) return false;
        for (std::size_t i = 0; i < now.size(); ++i)
            if (now[i] != change.before[i] && (i >= after.size() || now[i] != after[i])) return false;
    }
    return size >= record.sizeBefore && size <= sizeAfter;
}

enum class Absent { make, leave };

/// Opens the file and waits for its lock. The one that was waited for may be gone by then: its owner removes
/// it. `gone` tells that there is none, which with `Absent::make` is a failure to make it.
std::unique_ptr<File> openLocked(const std::string& name, Absent absent, bool& gone) {
    using namespace std::chrono;
    constexpr int mostRefusals = 100;  // a removed file's name stays taken while somebody holds it open
    const auto deadline = steady_clock::now() + milliseconds(ChangeFile::patience);
    for (int refusals = 0; steady_clock::now() < deadline;) {
        auto file = theFiles().open(name.c_str(), OpenMode::update);
        if (file == nullptr && absent == Absent::make)
            file = theFiles().open(name.c_str(), OpenMode::createNew);
        if (file != nullptr) {
            const auto left = duration_cast<milliseconds>(deadline - steady_clock::now()).count();
            if (!file->lock(static_cast<int>(std::max<std::int64_t>(left, 0)))) return nullptr;
            if (file->isAt(name.c_str())) return file;
            continue;
        }
        const FileKind kind = theFiles().kind(name.c_str());
        gone = kind == FileKind::missing;
        if (kind == FileKind::folder || (gone && absent == Absent::leave) || ++refusals > mostRefusals) break;
        std::this_thread::sleep_for(milliseconds(2));
    }
    return nullptr;
}

}  // namespace

std::string ChangeFile::nameFor(const std::string& project) {
    return project.substr(0, project.size() - 1) + '~';
}

ChangeFile::ChangeFile(const std::string& project, std::unique_ptr<File> file)
    : m_project(project), m_name(nameFor(project)), m_file(std::move(file)) {}

ChangeFile::~ChangeFile() {
    if (m_ends) remove();
}

std::unique_ptr<ChangeFile> ChangeFile::take(const std::string& named) {
    const std::string project = theFiles().linkTarget(named.c_str());
    bool gone = false;
    auto file = openLocked(nameFor(project), Absent::make, gone);
    if (file == nullptr) return nullptr;
    std::unique_ptr<ChangeFile> taken(new ChangeFile(project, std::move(file)));
    return taken->settleWhatIsLeft() == Left::nothing ? std::move(taken) : nullptr;
}

bool ChangeFile::settle(const std::string& named) {
    const std::string project = theFiles().linkTarget(named.c_str());
    if (theFiles().kind(nameFor(project).c_str()) != FileKind::file) return true;
    bool gone = false;
    auto file = openLocked(nameFor(project), Absent::leave, gone);
    if (file == nullptr) return gone;
    return ChangeFile(project, std::move(file)).settleWhatIsLeft() != Left::unsettled;
}

ChangeFile::Left ChangeFile::settleWhatIsLeft() {
    m_ends = false;
    const std::optional<std::string> bytes = contentOf(*m_file);
    if (!bytes) return Left::unsettled;
    const auto record = UndoRecord::fromBytes(*bytes);
    if (!record && !UndoRecord::isUnfinished(*bytes)) {
        mprintf("$G$%s is none of ours and in the way of writing %s", m_name.c_str(), m_project.c_str());
        return Left::notOurs;
    }
    if (record) {
        const auto project = theFiles().open(m_project.c_str(), OpenMode::update);
        if (project == nullptr) return Left::unsettled;
        if (!isMidway(*project, *record))
            mprintf("$G$%s was changed after a write of it had stopped: it stays as it is",
                    m_project.c_str());
        else if (!writeBack(*project, *record))
            return Left::unsettled;
    }
    m_ends = true;
    return bytes->empty() || m_file->truncate(0) ? Left::nothing : Left::unsettled;
}

bool ChangeFile::writeRecord(const UndoRecord& record) {
    return writeAll(*m_file, 0, record.toBytes()) && m_file->sync() && theFiles().syncFolder(m_name.c_str());
}

// The name goes while the lock is still held: the next writer finds none, or a new one.
bool ChangeFile::remove() {
    const bool removed = theFiles().remove(m_name.c_str());
    m_ends = m_ends && !removed;
    return removed;
}

bool ChangeFile::apply(File& file, std::vector<Replacement> replacements) {
    const auto record = recordOf(file, replacements);
    if (!record) return false;
    if (record->changes.empty()) return true;
    if (!writeRecord(*record)) return false;
    // Emptied before it goes: where a removed name stays until all have closed it, who waits finds no record.
    if (writeChanges(file, *record) && m_file->truncate(0))
        return remove() ? theFiles().syncFolder(m_name.c_str()) : m_file->sync();
    // The record is given up only once the file is as it was.
    m_ends = writeBack(file, *record);
    return false;
}

}  // namespace kestra
