#include "project_walk.h"

#include <utility>

#include <kestra/project/places/relative_paths.h>
#include <platform/cp1252.h>

namespace kestra {

ProjectWalk::~ProjectWalk() {
    if (!m_started) return;
    closeFile();
    dropIncludes();
    Cchantier::m_ChtIVAROK.RemoveAll();
}

bool ProjectWalk::start() {
    if (m_project.Open() == nullptr) return false;
    m_started = true;
    dropIncludes();
    Cchantier::m_ChtIVAROK.RemoveAll();
    m_projectFolder = folderOf(m_project.m_cheminCht);
    read(m_project.m_fp->path(), m_projectFolder);
    if (!m_file.empty()) markVisited(m_file.c_str());
    return true;
}

void ProjectWalk::read(std::string file, std::string folder) {
    m_file = std::move(file);
    m_folder = std::move(folder);
    m_stream = m_project.m_fp;
    m_reader.emplace(*m_stream, m_joined);
}

void ProjectWalk::closeFile() {
    m_reader.reset();
    m_stream.reset();
    m_project.Close();
}

bool ProjectWalk::nextLine(const LineFilter& filter, std::string_view& line) {
    return m_reader.has_value() && findLine(*m_reader, filter, line, Cchantier::m_ChtIVAR);
}

void ProjectWalk::dropIncludes() {
    Cchantier::m_ChtIVAR.RemoveAll();
    m_firstWaiting = 0;
}

// Taken entries leave the array in batches: removing each from the front would move all the others.
bool ProjectWalk::takeFirst(CString& entry) {
    CStringArray& queue = Cchantier::m_ChtIVAR;
    if (m_firstWaiting >= queue.GetSize()) return false;
    entry = std::move(queue[m_firstWaiting++]);
    if (m_firstWaiting * 2 > queue.GetSize()) queue.RemoveAt(0, std::exchange(m_firstWaiting, 0));
    return true;
}

bool ProjectWalk::wasVisited(const char* name) const {
    return m_visited.contains(platform::upperCased1252(name));
}

void ProjectWalk::markVisited(const char* name) {
    Cchantier::m_ChtIVAROK.Add(name);
    m_visited.insert(platform::upperCased1252(name));
}

const char* ProjectWalk::openInclude(const CString& entry) {
    if (entry.FindOneOf("\\/") < 0)
        if (const char* beside = m_project.Open((m_projectFolder + entry.GetString()).c_str())) return beside;
    return m_project.Open(entry);
}

bool ProjectWalk::nextInclude() {
    closeFile();
    CString entry;
    while (takeFirst(entry)) {
        if (wasVisited(entry)) continue;
        const char* opened = openInclude(entry);
        const bool isNew = opened != nullptr && !wasVisited(opened);
        markVisited(entry);
        if (isNew) {
            markVisited(opened);
            read(opened, folderOf(opened));
            return true;
        }
        m_project.Close();
    }
    return false;
}

}  // namespace kestra
