#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <kestra/project/chantier.h>
#include <kestra/project/reading/line_filter.h>
#include <kestra/project/writing/change_file.h>

namespace kestra {

/// A logical line of the open project: from its first byte to behind its line end.
struct LinePlace {
    std::int64_t start = -1;  ///< -1: no such line
    std::int64_t end = -1;
    bool isFound() const { return start >= 0; }
};

/// A project opened for writing: its file, and the turn to change it. The project is closed in the end.
class WriteTurn {
  public:
    /// Opens the project, or takes the one that is open, and waits for its turn.
    explicit WriteTurn(Cchantier& project);
    ~WriteTurn() { m_project.Close(); }
    WriteTurn(const WriteTurn&) = delete;
    WriteTurn& operator=(const WriteTurn&) = delete;

    bool isOpen() const { return m_turn != nullptr && m_project.m_fp != nullptr; }
    platform::File& file() { return *m_project.m_fp->file(); }
    const std::string& path() const { return m_path; }

    /// First line that matches, from the start of the file.
    LinePlace find(const LineFilter& filter);
    /// Every line that matches, in file order.
    std::vector<LinePlace> findAll(const LineFilter& filter);
    /// Makes all the replacements or none; see `ChangeFile::apply`. False also when the file could not be
    /// read to its end: what was not found may be there.
    bool apply(std::vector<Replacement> replacements) {
        return !m_project.m_fp->failed() && m_turn->apply(file(), std::move(replacements));
    }

  private:
    Cchantier& m_project;
    std::string m_path;
    std::unique_ptr<ChangeFile> m_turn;
};

}  // namespace kestra
