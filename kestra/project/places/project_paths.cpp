#include <cstdio>
#include <string>
#include <string_view>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <kestra/project/chantier.h>
#include <kestra/project/places/existing_entries.h>
#include <kestra/project/places/relative_paths.h>

namespace {

constexpr std::size_t shortestParent = 11;
constexpr const char* defaultTable = "TABLE.LGN";

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

bool isSeparatorAt(const std::string& path, std::size_t index) {
    return path[index] == '\\' || path[index] == '/';
}

/// The folder above, ending in its separator; empty when it is a drive root or too short to be searched.
std::string searchedParent(const std::string& folder) {
    const std::size_t separator =
        folder.size() < 2 ? folder.npos : folder.find_last_of("\\/", folder.size() - 2);
    const std::string parent = separator == folder.npos ? "" : folder.substr(0, separator + 1);
    if (parent.size() < shortestParent) return {};
    for (std::size_t back = 2; back <= 4; ++back)
        if (isSeparatorAt(parent, parent.size() - back)) return {};
    return parent;
}

/// Puts one table's file into a buffer of the caller, looked up along `list` unless that is null.
void giveTable(char* out, const CStringArray& fields, int index, const char* missing, const char* list) {
    if (out == nullptr) return;
    const bool isThere = index < fields.GetSize();
    std::snprintf(out, DOS::pathSize, "%s", isThere ? fields[index].GetString() : missing);
    if (isThere && list != nullptr && DOS::Localise_fichier(out, fields[index], list, 0) == nullptr)
        *out = '\0';
}

}  // namespace

CString Cchantier::GetPathWau(int withLibraryPaths, const char* subFolder) const {
    const std::string folder = kestra::folderOf(m_cheminCht);
    std::string list = folder + textOf(subFolder) + ';';
    if (const std::string parent = searchedParent(folder); !parent.empty())
        list += parent + textOf(subFolder) + ';';
    if (withLibraryPaths != 0) list += textOf(DOS::chemins_WAU);
    return CString(list);
}

CString Cchantier::GetPathEntete(int flags) const {
    CStringArray fields;
    chtdef.Getvar("$VARCHT", "DIRENTETE", 10, fields);
    std::string list;
    for (int i = 2; i < fields.GetSize(); ++i)
        if (kestra::anyEntryBeginsWith(fields[i].view())) list += std::string(fields[i].view()) + ';';
    list += GetPathWau(0, "ENTETES\\");
    if ((flags & 1) != 0) list += kestra::folderOf(m_cheminCht) + ';';
    return CString(list + textOf(DOS::chemins_ENTETE));
}

int Cchantier::GetTables(char* table1, char* table2, char* table3, char* table4, int locate) {
    CStringArray fields;
    Getvar("$VARCHT", "TABLES_DEF", 0, fields);
    CString around, headers;
    if (locate != 0) {
        around = GetPathWau(1, nullptr);
        headers = GetPathEntete(1);
    }
    const char* const searched = locate != 0 ? around.GetString() : nullptr;
    giveTable(table1, fields, 2, "", searched);
    giveTable(table2, fields, 3, defaultTable, searched);
    giveTable(table3, fields, 4, defaultTable, searched);
    giveTable(table4, fields, 5, "", locate != 0 ? headers.GetString() : nullptr);
    return fields.GetSize() > 2 ? fields.GetSize() - 2 : 0;
}
