#include "demo_run.h"

#include <algorithm>
#include <cstdlib>

#include <dorsel/globals.h>
#include <platform/cp1252.h>
#include <platform/files.h>
#include <platform/window/win_app.h>

namespace {

constexpr int patience = 10000;  // milliseconds
constexpr int pictureTime = 60000;

/// The path of a module of this process; empty when it is not loaded.
CString modulePath(const char* name) {
    char path[MAX_PATH] = "";
    const HMODULE module = ::GetModuleHandleA(name);
    if (module != nullptr) ::GetModuleFileNameA(module, path, sizeof path);
    return path;
}

void mouse(DWORD flags, LONG x, LONG y) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = x * 65536 / ::GetSystemMetrics(SM_CXSCREEN) + 1;
    input.mi.dy = y * 65536 / ::GetSystemMetrics(SM_CYSCREEN) + 1;
    input.mi.dwFlags = flags | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE;
    ::SendInput(1, &input, sizeof input);
}

/// Size in bytes of what the clipboard holds under a format, without its final NUL; -1 for nothing.
int clipboardBytes(UINT format) {
    if (!::OpenClipboard(nullptr)) return -1;
    const HANDLE data = ::GetClipboardData(format);
    int size = -1;
    if (data != nullptr) {
        size = static_cast<int>(::strnlen(static_cast<const char*>(::GlobalLock(data)), ::GlobalSize(data)));
        ::GlobalUnlock(data);
    }
    ::CloseClipboard();
    return size;
}

}  // namespace

int DemoRun::run(const char* project) {
    nameModules();
    openProject(project);
    sortByClick();
    hideColumn();
    fitColumn();
    print();
    copy();
    waitForPicture("window");
    openTable();
    sortTable();
    printTable();
    waitForPicture("table");
    platform::replaceWholeFile((m_folder + "rapport.txt").c_str(), m_report);
    return m_good ? 0 : 1;
}

void DemoRun::report(bool good, const CString& line) {
    m_report += (good ? "ok    " : "ECHEC ") + platform::utf8From1252(line.view()) + "\n";
    m_good = m_good && good;
}

void DemoRun::nameModules() {
    for (const char* name : {"Kestra2007x64.dll", "Dorsel64.dll"}) {
        const CString path = modulePath(name);
        report(!path.IsEmpty(), CString("bibliothèque chargée : ") + path);
    }
}

void DemoRun::openProject(const char* project) {
    const int count = m_window.open(project);
    CString line;
    line.Format("chantier \"%s\" ouvert : %d variables, inclusions comprises", chtdef.m_titre.GetString(),
                count);
    report(count > 0, line);
    line.Format("société \"%s\", projection \"%s\" lues dans les réglages", vfVar.society, pvg.projection);
    report(vfVar.society[0] != '\0' && pvg.projection[0] != '\0', line);
}

bool DemoRun::waitUntil(bool (*done)(DemoRun&), int milliseconds) {
    for (const ULONGLONG end = ::GetTickCount64() + static_cast<ULONGLONG>(milliseconds);
         ::GetTickCount64() < end;) {
        AfxGetApp()->PumpWaiting();
        if (done(*this)) return true;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    }
    return false;
}

void DemoRun::clickHeader(CLraListCtrl& list, int x, int clicks) {
    POINT place = {x, list.GetHeaderCtrl()->GetItemRect(0).bottom / 2};
    list.GetHeaderCtrl()->ClientToScreen(&place);
    mouse(0, place.x, place.y);
    for (int i = 0; i < clicks; ++i) {
        mouse(MOUSEEVENTF_LEFTDOWN, place.x, place.y);
        mouse(MOUSEEVENTF_LEFTUP, place.x, place.y);
    }
}

bool DemoRun::isSorted(int column) {
    CString before, text;
    for (int row = 0; row < m_window.m_list.GetItemCount(); ++row, before = text) {
        m_window.m_list.GetValue(row, column, text);
        if (row > 0 && text < before) return false;
    }
    return true;
}

void DemoRun::sortByClick() {
    const RECT caption = m_window.m_list.GetHeaderCtrl()->GetItemRect(VariableList::name);
    clickHeader(m_window.m_list, (caption.left + caption.right) / 2, 1);
    constexpr int ascending = VariableList::name + 1;
    const bool clicked =
        waitUntil([](DemoRun& run) { return run.m_window.m_list.m_ColSort == ascending; }, patience);
    CString first;
    m_window.m_list.GetValue(0, VariableList::name, first);
    report(clicked && isSorted(VariableList::name),
           CString("clic sur \"Nom\" : liste triée, première variable \"") + first + "\"");
}

void DemoRun::hideColumn() {
    VariableList& list = m_window.m_list;
    const int before = list.GetColumnWidth(VariableList::file);
    list.SetColumnWidth(VariableList::file, -before);
    CString line;
    line.Format("colonne \"Fichier\" masquée, largeur retenue %d", -list.GetColumnWidth(VariableList::file));
    report(list.GetColumnWidth(VariableList::file) == -before, line);
}

void DemoRun::fitColumn() {
    VariableList& list = m_window.m_list;
    static int before;
    before = list.GetColumnWidth(VariableList::value);
    clickHeader(list, list.GetHeaderCtrl()->GetItemRect(VariableList::value).right - 2, 2);
    const bool fitted = waitUntil(
        [](DemoRun& run) { return run.m_window.m_list.GetColumnWidth(VariableList::value) != before; },
        patience);
    CString line;
    line.Format("double clic au bord de \"Valeur\" : largeur %d ajustée à %d", before,
                list.GetColumnWidth(VariableList::value));
    report(fitted, line);
}

void DemoRun::print() {
    const std::string path = m_folder + "listing.htm";
    CString text("Variables du chantier, triées par nom");
    const int rows = m_window.m_list.PrintToHtml(path.c_str(), 0, text, 0);
    const auto bytes = static_cast<int>(platform::theFiles().size(path.c_str()));
    CString line;
    line.Format("listing.htm imprimé : %d lignes, %d octets", rows, bytes);
    report(rows == m_window.m_list.GetItemCount() && bytes > 0, line);
}

void DemoRun::copy() {
    const int rows = m_window.m_list.CopyToClipBoard(0);
    const int text = clipboardBytes(CF_TEXT);
    const int html = clipboardBytes(::RegisterClipboardFormatA("HTML Format"));
    CString line;
    line.Format("presse-papiers : %d lignes, texte de %d octets, HTML de %d octets", rows, text, html);
    report(rows > 0 && text > 0 && html > text, line);
}

void DemoRun::openTable() {
    const int count = m_window.openTable("*.mdb", "POINTS");
    CString line;
    line.Format("table \"POINTS\" de la base du chantier : %d enregistrements", count);
    report(count > 0, line);
}

void DemoRun::sortTable() {
    TableList& list = m_window.m_table;
    constexpr int height = 5;  // behind the row header
    const RECT caption = list.GetHeaderCtrl()->GetItemRect(height);
    clickHeader(list, (caption.left + caption.right) / 2, 1);
    waitUntil([](DemoRun& run) { return run.m_window.m_table.m_ColSort == height + 1; }, patience);
    // Nulls come first; below them the numbers rise.
    double before = -1e9;
    bool isSorted = list.m_ColSort == height + 1;
    CString text;
    for (int row = 0; row < list.GetItemCount(); ++row) {
        list.GetValue(row, height, text);
        if (text.IsEmpty()) continue;
        isSorted = isSorted && std::atof(text) >= before;
        before = std::atof(text);
    }
    report(isSorted, CString("clic sur \"Z\" : table triée par nombres, dernière altitude ") + text);
    const int first = list.GetItemCount() / 2;
    ::SendMessageA(list.m_hWnd, LVM_ENSUREVISIBLE, static_cast<WPARAM>(first), FALSE);
}

void DemoRun::printTable() {
    const std::string path = m_folder + "table.htm";
    CString text("Points levés, triés par altitude");
    const int rows = m_window.m_table.PrintToHtml(path.c_str(), 60, text, 0);
    CString line;
    line.Format("table.htm imprimé : %d lignes, %d octets", rows,
                static_cast<int>(platform::theFiles().size(path.c_str())));
    report(rows == m_window.m_table.GetItemCount(), line);
}

void DemoRun::waitForPicture(const char* name) {
    m_window.m_list.UnselectAll(0, 0);
    mouse(0, 1, ::GetSystemMetrics(SM_CYSCREEN) - 2);
    waitUntil([](DemoRun&) { return false; }, 300);
    static std::string ready;
    ready = m_folder + name + ".prete";
    platform::replaceWholeFile(ready.c_str(), "");
    const bool taken = waitUntil(
        [](DemoRun&) { return platform::theFiles().kind(ready.c_str()) == platform::FileKind::missing; },
        pictureTime);
    report(taken, CString("fenêtre montrée et photographiée : ") + name + ".png");
}
