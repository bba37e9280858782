#include "returned_fields.h"

#include <algorithm>

#include <kestra/project/places/relative_paths.h>
#include <kestra/project/writing/written_line.h>

namespace kestra {

namespace {
constexpr int firstValue = 2;
}  // namespace

CString returnedField(std::string_view field, int index, const std::string& folder) {
    if (field.find_first_of("\x02.") == field.npos) return CString(field);
    std::string text(field);
    std::replace(text.begin(), text.end(), storedSemicolon, ';');
    return index < firstValue ? CString(text) : CString(expandRelativePaths(text, folder));
}

void appendFields(CStringArray& out, std::string_view line, int first, int maximum,
                  const std::string& folder) {
    for (int index = 0; maximum <= 0 || index < maximum; ++index) {
        const std::size_t end = line.find(';');
        if (index >= first) out.Add(returnedField(line.substr(0, end), index, folder));
        if (end == line.npos) return;
        line.remove_prefix(end + 1);
    }
}

}  // namespace kestra
