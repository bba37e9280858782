#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <dorsel/globals.h>
#include <dorsel/strings.h>
#include <kestra/project/chantier.h>
#include <kestra/project/reading/variable_lookup.h>
#include <platform/cp1252.h>

namespace {

constexpr const char* projectNames[] = {
    "_Non Définie", "L-I  :",     "L-II :",     "L-III:",     "L-IV :",     "L-IIE:",
    "L-93 :",       "_Locale",    "LZ93-CC41:", "LZ93-CC42:", "LZ93-CC43:", "LZ93-CC44:",
    "LZ93-CC45:",   "LZ93-CC46:", "LZ93-CC47:", "LZ93-CC48:", "LZ93-CC49:", "LZ93-CC50:",
};
constexpr int localCode = 99;
constexpr int localIndex = 7;

constexpr const char* varcht = "$VARCHT";
constexpr const char* vortlin = "$VORTLIN";

CString fieldAt(const CStringArray& fields, int index) {
    return index < fields.GetSize() ? fields[index] : CString();
}

/// Field `index` of the variable's line in force, empty when missing.
CString valueOf(Cchantier& project, const char* section, const char* name, int index = 2) {
    return fieldAt(kestra::lastLineOf(project, section, name, index + 1), index);
}

bool isOldCode(const CString& projection) {
    return projection.GetLength() < 4 && projection.GetAt(0) >= '0' && projection.GetAt(0) <= '9';
}

void readDrawingFormat(Cchantier& project) {
    const CStringArray fields = kestra::lastLineOf(project, varcht, "DWG_DXF", 3);
    const bool isStored = fields.GetSize() > 2;
    const CString stored = isStored ? fields[2] : CString(DOS::Dwg_Dxf);
    CString format = stored;
    format.MakeUpper();
    if (format != ".DXF" && format != ".DWG") format = ".DWG";
    project.m_bDwg = format == ".DWG" ? 1 : 0;
    if (isStored && format != stored) project.Setvar(varcht, "DWG_DXF", format);
}

void readProjection(Cchantier& project) {
    project.m_projection = valueOf(project, vortlin, "PROJECTION");
    if (!isOldCode(project.m_projection)) return;
    project.m_projection = Cchantier::GetNomProj(std::atoi(project.m_projection));
    project.Setvar(vortlin, "PROJECTION", project.m_projection);
}

void readFields(Cchantier& project) {
    project.m_titre = valueOf(project, varcht, "TITRE");
    readDrawingFormat(project);
    if (const CStringArray fields = kestra::lastLineOf(project, "$DORSEL", "FICHIERS", 3);
        fields.GetSize() > 2)
        project.m_fichiers = fields[2];
    readProjection(project);
    const CStringArray infos = kestra::lastLineOf(project, vortlin, "INFOS", 0);
    const bool areThere = infos.GetSize() >= 4;
    project.m_infoA = areThere ? infos[3] : CString();
    project.m_infoB = areThere ? infos[2] : CString();
}

}  // namespace

Cchantier::Cchantier(const char* name) : Cchantier() {
    Set(name, 0);
}

int Cchantier::Set(const char* name, int viaService) {
    const CString asked = name != nullptr && *name != '\0' ? CString(name) : m_cheminCht;
    int result = 1;
    if (Open(asked) != nullptr) {
        m_cheminCht = asked;
        if (this == &chtdef)
            std::snprintf(DOS::m_NomChtDef, sizeof DOS::m_NomChtDef, "%s", asked.GetString());
    } else {
        const CString before = m_cheminCht;
        if (viaService != 0) m_cheminCht = asked;
        if (viaService == 0 || Maj_DirService() <= 1 || Open(m_cheminCht) == nullptr) {
            m_cheminCht = before;
            m_titre.Empty();
            return 0;
        }
        result = 2;
    }
    char code[sizeof last_service];
    m_service = Dir_serv(m_cheminCht, code) > 0 ? code : "";
    readFields(*this);
    Close();
    return result;
}

int Cchantier::PrjLoad() const {
    return cht_charge != nullptr && m_cheminCht.GetLength() >= 2 ? cht_charge(m_cheminCht) : 0;
}

const char* Cchantier::GetNomProj(int index) {
    if (index == localCode) index = localIndex;
    return projectNames[index >= 0 && index < static_cast<int>(std::size(projectNames)) ? index : 0];
}
