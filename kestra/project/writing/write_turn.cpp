#include "write_turn.h"

#include <kestra/project/reading/line_reader.h>

namespace kestra {
namespace {

/// Goes over the lines of the open project that match, until `visit` answers false.
template <class Visit>
void forEachLine(platform::Stream& stream, const LineFilter& filter, const Visit& visit) {
    stream.seek(0);
    std::string joined;
    CStringArray includes;
    LineReader reader(stream, joined);
    std::string_view line;
    while (findLine(reader, filter, line, includes) && reader.lineStart() <= INT32_MAX &&
           visit(LinePlace{reader.lineStart(), reader.position()})) {
    }
}

}  // namespace

WriteTurn::WriteTurn(Cchantier& project) : m_project(project) {
    if (m_project.Open() == nullptr) return;
    m_path = m_project.m_fp->path();
    // Another process may write, or put another file in place, before the turn comes.
    m_project.Close();
    m_turn = ChangeFile::take(m_path);
    if (m_turn != nullptr)
        m_project.m_fp = platform::Stream::open(m_path.c_str(), platform::OpenMode::update);
}

LinePlace WriteTurn::find(const LineFilter& filter) {
    LinePlace found;
    forEachLine(*m_project.m_fp, filter, [&](const LinePlace& place) {
        found = place;
        return false;
    });
    return found;
}

std::vector<LinePlace> WriteTurn::findAll(const LineFilter& filter) {
    std::vector<LinePlace> found;
    forEachLine(*m_project.m_fp, filter, [&](const LinePlace& place) {
        found.push_back(place);
        return true;
    });
    return found;
}

}  // namespace kestra
