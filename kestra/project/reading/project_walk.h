#pragma once
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include <kestra/project/chantier.h>
#include <kestra/project/reading/line_filter.h>
#include <kestra/project/reading/line_reader.h>

namespace kestra {

/// One pass over a project file and then, breadth first, over its includes, each file once. It reads through
/// the project's own stream and include arrays and leaves the one closed and the others empty.
class ProjectWalk {
  public:
    explicit ProjectWalk(Cchantier& project) : m_project(project) {}
    ~ProjectWalk();
    ProjectWalk(const ProjectWalk&) = delete;
    ProjectWalk& operator=(const ProjectWalk&) = delete;

    /// Puts the walk at the start of the project file; false, and nothing changed, when it cannot be opened.
    bool start();
    /// Next line of the current file that matches; valid until the next call.
    bool nextLine(const LineFilter& filter, std::string_view& line);
    /// Goes on with the next include that can be opened and was not read yet; false when there is none.
    bool nextInclude();
    /// Forgets the includes met up to here.
    void dropIncludes();

    /// Resolved path of the current file, and the folder that "..\" stands for in it.
    const std::string& file() const { return m_file; }
    const std::string& folder() const { return m_folder; }

  private:
    bool takeFirst(CString& entry);
    const char* openInclude(const CString& entry);
    bool wasVisited(const char* name) const;
    void markVisited(const char* name);
    void read(std::string file, std::string folder);
    void closeFile();

    Cchantier& m_project;
    bool m_started = false;
    std::string m_projectFolder;
    std::string m_file;
    std::string m_folder;
    std::shared_ptr<platform::Stream> m_stream;
    std::string m_joined;
    std::optional<LineReader> m_reader;
    int m_firstWaiting = 0;                     ///< entries of the queue before this one are taken
    std::unordered_set<std::string> m_visited;  ///< what `m_ChtIVAROK` holds, in upper case
};

}  // namespace kestra
