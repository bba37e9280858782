#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <kestra/project/writing/undo_record.h>
#include <platform/files.h>

namespace kestra {

/// Bytes of a file that are to be replaced by a text. Where the lengths differ what stands behind moves.
struct Replacement {
    std::int64_t offset;
    std::int64_t length;
    std::string text;
};

/// The file beside a project through which the project is changed: a lock that lets one writer in at a time,
/// and the undo record of what that writer does. It is named like the project, its last letter a "~"
/// ("plan.ch~"; of a link, like the file that it leads to), and is there only while somebody writes, or when
/// somebody was stopped while writing.
///
/// A change in place goes: undo record written and synced; project written and synced; record removed.
/// Wherever that stops, either there is no whole record, and the project is as it was or as it should be, or
/// there is one, and whoever takes the file next writes back what it says. A record that is not whole (it
/// ends in a checksum), and one whose project was changed by others since, is dropped.
class ChangeFile {
  public:
    /// How long a writer or reader waits for another writer (ms).
    static constexpr int patience = 10'000;

    /// Waits for the turn to change the project `named` and undoes what a stopped writer left. Null when
    /// another process still writes after `patience`, when the file cannot be made or the undoing fails, and
    /// when a file of that name is none of ours.
    static std::unique_ptr<ChangeFile> take(const std::string& named);
    /// Gives the turn back.
    ~ChangeFile();
    ChangeFile(const ChangeFile&) = delete;
    ChangeFile& operator=(const ChangeFile&) = delete;

    /// Makes all the replacements or none; true when they are on the disk. They stand in ascending order and
    /// do not overlap; only the last one may change the length. `file` is the open project.
    bool apply(platform::File& file, std::vector<Replacement> replacements);

    /// For readers: true at once when nobody writes; otherwise waits and undoes as `take` does. False when
    /// the content of the project cannot be trusted: another process still writes, or the undoing fails.
    static bool settle(const std::string& named);

    static std::string nameFor(const std::string& project);

  private:
    enum class Left { nothing, notOurs, unsettled };

    ChangeFile(const std::string& project, std::unique_ptr<platform::File> file);
    /// Undoes what a stopped writer left.
    Left settleWhatIsLeft();
    bool writeRecord(const UndoRecord& record);
    bool remove();

    std::string m_project;
    std::string m_name;
    std::unique_ptr<platform::File> m_file;  ///< locked
    bool m_ends = true;                      ///< removed with the object
};

}  // namespace kestra
