#include "grid_run.h"

#include <cstdlib>

#include <kestra/database/database.h>
#include <platform/files.h>

namespace {

enum Column { header, number, name, east, north, height, code, nature, station, date, checked };

constexpr int editedRow = 3;
constexpr int patience = 60000;  // milliseconds; the script works meanwhile

CString quoted(const CString& text) {
    return CString("\"") + text + "\"";
}

std::string widthFile(const std::string& folder) {
    return folder + "largeur.txt";
}

}  // namespace

int GridRun::run(const char* project) {
    if (openPoints(project)) {
        for (const int col : {east, north, station, date})
            grid().SetColumnWidth(col, -std::abs(grid().GetColumnWidth(col)));
        grid().GetValue(editedRow, number, m_number);
        typeIntoCell();
        leaveRow();
        toggleCheck();
        widenColumn();
        printFromMenu();
        addRow();
        deleteRow();
    }
    CString width;
    width.Format("%d", grid().GetColumnWidth(name));
    platform::replaceWholeFile(widthFile(m_folder).c_str(), std::string(width.view()));
    return finish();
}

int GridRun::again(const char* project) {
    if (openPoints(project)) {
        std::string left;
        platform::readWholeFile(widthFile(m_folder).c_str(), left);
        CString line;
        line.Format("au retour : \"MATRICULE\" large de %d comme avant, X et Y toujours masquées",
                    grid().GetColumnWidth(name));
        report(std::to_string(grid().GetColumnWidth(name)) == left && grid().GetColumnWidth(east) < 0 &&
                   grid().GetColumnWidth(north) < 0,
               line);
        step("retour", cell(editedRow, name));
    }
    return finish();
}

int GridRun::finish() {
    const std::string path = m_folder + "rapport_grille.txt";
    std::string before;
    platform::readWholeFile(path.c_str(), before);
    platform::replaceWholeFile(path.c_str(), before + m_report);
    return m_good ? 0 : 1;
}

bool GridRun::openPoints(const char* project) {
    m_window.open(project);
    const int count = m_window.openTable("*.mdb", "POINTS");
    CString line;
    line.Format("grille de la table \"POINTS\" : %d enregistrements, %d lignes lues", count,
                static_cast<int>(grid().RowsRead()));
    report(count > 0, line);
    return count > 0;
}

void GridRun::step(const char* stepName, POINT place) {
    waitUntil([](DemoRun&) { return false; }, 300);
    grid().ClientToScreen(&place);
    static std::string ready;
    ready = m_folder + stepName + ".prete";
    CString text;
    text.Format("%ld %ld\n", place.x, place.y);
    platform::replaceWholeFile(ready.c_str(), std::string(text.view()));
    const bool done = waitUntil(
        [](DemoRun&) { return platform::theFiles().kind(ready.c_str()) == platform::FileKind::missing; },
        patience);
    if (!done) report(false, CString("étape sans réponse : ") + stepName);
    waitUntil([](DemoRun&) { return false; }, 300);
}

POINT GridRun::cell(int row, int col) {
    CRect bounds;
    grid().GetItemRect(row, bounds, LVIR_BOUNDS);
    const CRect caption = grid().GetHeaderCtrl()->GetItemRect(col);
    return {bounds.left + (caption.left + caption.right) / 2, (bounds.top + bounds.bottom) / 2};
}

CString GridRun::stored(const char* query) {
    try {
        const _RecordsetPtr answer = grid().m_Recordset.m_pRecordset->GetActiveConnection()->Execute(query);
        if (answer->GetEOF()) return "rien";
        const ado20::Variant value = answer->GetFields()->GetItem(0)->GetValue();
        return value.isNull() ? CString("null") : CString(std::string_view(value.text()));
    } catch (const _com_error& error) {
        return CString(std::string_view(error.Description()));
    }
}

void GridRun::typeIntoCell() {
    step("cellule", cell(editedRow, name));
    CString text;
    grid().GetValue(editedRow, name, text);
    report(text == "BORNE12" && grid().m_FocusSubItem > name,
           CString("clic, saisie, Tab : la cellule montre ") + quoted(text));
}

void GridRun::leaveRow() {
    step("ligne", cell(editedRow, name));
    const CString text = stored(CString("SELECT MATRICULE FROM POINTS WHERE NUM=") + m_number);
    report(text == "BORNE12" && grid().m_FocusRow == editedRow + 1,
           CString("flèche bas : la base contient ") + quoted(text));
}

void GridRun::toggleCheck() {
    const CString query = CString("SELECT CONTROLE FROM POINTS WHERE NUM=") + m_number;
    const CString before = stored(query);
    step("case", cell(editedRow, checked));
    const CString after = stored(query);
    report(before != after, CString("clic sur la case puis flèche bas : ") + before + " devient " + after);
}

void GridRun::widenColumn() {
    const int before = grid().GetColumnWidth(name);
    const CRect caption = grid().GetHeaderCtrl()->GetItemRect(name);
    step("largeur", {caption.right - 2, caption.Height() / 2});
    CString line;
    line.Format("bord de \"MATRICULE\" tiré : largeur %d devenue %d", before, grid().GetColumnWidth(name));
    report(grid().GetColumnWidth(name) > before, line);
}

void GridRun::printFromMenu() {
    step("menu", cell(editedRow, header));
    CString path;
    path.Format("C:\\TEMP\\POINTS_%04x.HTM", static_cast<unsigned>(::GetCurrentThreadId()));
    std::string page;
    platform::readWholeFile(path, page);
    platform::replaceWholeFile((m_folder + "impression.htm").c_str(), page);
    CString line;
    line.Format("clic droit, \"Imprimer Tout (HTML)\" : %d octets", static_cast<int>(page.size()));
    report(page.size() > 100000, line);
}

void GridRun::addRow() {
    const int before = grid().GetItemCount();
    POINT place = {};
    ::MapWindowPoints(::GetDlgItem(m_window.m_navigator, CRecordButton::added), grid(), &place, 1);
    step("ajout", {place.x + 8, place.y + 8});
    const CString text = stored("SELECT MATRICULE FROM POINTS WHERE NUM=9001");
    report(text == "AJOUT" && grid().GetItemCount() == before + 1,
           CString("navigateur \"Nouveau\", saisie : la base contient ") + quoted(text));
}

void GridRun::deleteRow() {
    const int before = grid().GetItemCount();
    grid().SetCurrentSubItem(before - 1, 0);
    step("suppression", cell(before - 1, header));
    const CString text = stored("SELECT COUNT(*) FROM POINTS WHERE NUM=9001");
    report(text == "0" && grid().GetItemCount() == before - 1,
           CString("touche Suppr, Oui : il reste ") + text + " enregistrement 9001");
}
