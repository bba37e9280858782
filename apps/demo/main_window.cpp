#include "main_window.h"

#include <kestra/database/database.h>
#include <kestra/project/chantier.h>
#include <platform/prompt.h>
#include <platform/window/file_dialog.h>
#include <platform/window/menu.h>

#include "convert_points.h"

namespace {

enum Command : UINT { openProject = 100, openDatabase, printList, copyList, convertTable, quit };

constexpr UINT listId = 1, tableId = 2, navigatorId = 3;
constexpr int navigatorHeight = 24, navigatorWidth = 330;
constexpr int linesPerPage = 60;
constexpr RECT startPlace = {30, 25, 830, 505};

/// Menu bar; the window takes it over.
HMENU makeMenu() {
    CMenu file;
    file.CreatePopupMenu();
    file.AppendMenu(MF_STRING, openProject, "&Ouvrir un chantier...");
    file.AppendMenu(MF_STRING, openDatabase, "Ouvrir une &table...");
    file.AppendMenu(MF_STRING, printList, "&Imprimer");
    file.AppendMenu(MF_STRING, copyList, "&Copier");
    file.AppendSeparator();
    file.AppendMenu(MF_STRING, quit, "&Quitter");
    CMenu bar;
    bar.CreateMenu();
    bar.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(file.Detach()), "&Fichier");
    CMenu tools;
    tools.CreatePopupMenu();
    tools.AppendMenu(MF_STRING, convertTable, "&Convertir les points...");
    bar.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(tools.Detach()), "&Outils");
    return bar.Detach();
}

CString titleOf(Cchantier& project) {
    CStringArray fields;
    if (project.Getvar("$VARCHT", "TITRE", 3, fields) == 0 || fields.GetSize() < 3) return {};
    return fields[2];
}

}  // namespace

bool MainWindow::create() {
    if (!CreateEx(0, nullptr, "Kestra", WS_OVERLAPPEDWINDOW, startPlace, nullptr, makeMenu())) return false;
    constexpr DWORD style = WS_CHILD | LVS_REPORT | LVS_SHOWSELALWAYS;
    if (!m_list.Create(style | WS_VISIBLE, GetClientRect(), this, listId) ||
        !m_table.Create(style, GetClientRect(), this, tableId) ||
        !m_navigator.Create(WS_CHILD, {0, 0, navigatorWidth, navigatorHeight}, this, navigatorId))
        return false;
    m_table.LinkRecordButton(&m_navigator);
    m_font.reset(::CreateFontA(-13, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, ANSI_CHARSET, OUT_DEFAULT_PRECIS,
                               CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, "Tahoma"));
    for (CLraListCtrl* list : {static_cast<CLraListCtrl*>(&m_list), static_cast<CLraListCtrl*>(&m_table)}) {
        list->SetFont(m_font.get());
        list->SetExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_HEADERDRAGDROP);
    }
    m_list.addColumns();
    return true;
}

int MainWindow::open(const char* path) {
    Cchantier project;
    project.m_cheminCht = path;
    const int count = m_list.show(project);
    if (count < 0) {
        AfxMessageBox((CString("Chantier introuvable : ") + path).GetString(), platform::iconExclamation);
        return count;
    }
    project.m_titre = titleOf(project);
    chtdef = project;
    SetWindowText((project.m_titre + " - Kestra").GetString());
    show(m_list);
    return count;
}

int MainWindow::openTable(const char* database, const char* table) {
    Database files;
    CString name(table);
    const _ConnectionPtr connection = files.OpenDB(database, Database::askWhenMissing, ado20::adUseClient);
    // A row that cannot be saved has told why.
    if (m_table.UpdateEdit(CEditListCtrl::commitAll) == 0) return -1;
    if (connection && name.IsEmpty() && files.SelectTable(name, connection, 0) != 0) return -1;
    const int count = connection ? m_table.show(connection, name) : -1;
    if (count < 0) {
        AfxMessageBox("Table non trouvée", platform::iconExclamation);
        return count;
    }
    m_connection = connection;
    m_tableName = name;
    SetWindowText((name + " - Kestra").GetString());
    show(m_table);
    return count;
}

CLraListCtrl& MainWindow::shown() {
    if (m_table.GetStyle() & WS_VISIBLE) return m_table;
    return m_list;
}

void MainWindow::show(CLraListCtrl& list) {
    shown().ShowWindow(SW_HIDE);
    list.ShowWindow(SW_SHOW);
    m_navigator.ShowWindow(&list == &m_table ? SW_SHOW : SW_HIDE);
    placeLists();
    list.SetFocus();
}

void MainWindow::placeLists() {
    CRect place = GetClientRect();
    m_list.MoveWindow(place);
    m_navigator.MoveWindow(
        {place.left, place.bottom - navigatorHeight, place.left + navigatorWidth, place.bottom});
    place.bottom -= navigatorHeight;
    m_table.MoveWindow(place);
}

LRESULT MainWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            placeLists();
            break;
        case WM_CLOSE:
            // A row that cannot be saved keeps the window open.
            if (m_table.UpdateEdit(CEditListCtrl::commitAll) == 0) return 0;
            break;
        case WM_SETFOCUS:
            shown().SetFocus();
            return 0;
        default:
            break;
    }
    return CWnd::WindowProc(message, wParam, lParam);
}

BOOL MainWindow::OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
        case openProject:
            chooseProject();
            return TRUE;
        case openDatabase:
            openTable("*.mdb", "");
            return TRUE;
        case printList:
            print();
            return TRUE;
        case copyList:
            shown().CopyToClipBoard(0);
            return TRUE;
        case convertTable:
            convert();
            return TRUE;
        case quit:
            SendMessage(WM_CLOSE);
            return TRUE;
        default:
            return CWnd::OnCommand(wParam, lParam);
    }
}

void MainWindow::chooseProject() {
    CFileDialog dialog(true, "cht", nullptr, OFN_HIDEREADONLY | OFN_FILEMUSTEXIST,
                       "Chantiers (*.cht)|*.cht|Tous (*.*)|*.*||", this);
    if (dialog.DoModal() == IDOK) open(dialog.GetPathName());
}

void MainWindow::print() {
    CString text;
    shown().PrintToHtml(nullptr, linesPerPage, text, 0);
}

void MainWindow::convert() {
    if (!m_connection || m_table.UpdateEdit(CEditListCtrl::commitAll) == 0) return;
    CDialProjections choice(this);
    choice.m_texte = CString("Points de la table ") + m_tableName;
    if (choice.Choose(3) != IDOK) return;
    const PointConversion result = convertPoints(m_connection, m_tableName, choice);
    CString message;
    if (result.done())
        message.Format("%d points convertis de %s en %s", result.converted, choice.m_projOrigine.GetString(),
                       choice.m_projFinale.GetString());
    else if (!result.failure.empty())
        message = "Conversion impossible : " + CString(result.failure);
    else
        message.Format("Ligne %d : point non converti ; la table est restée comme elle était",
                       result.failedRow);
    m_table.show(m_connection, m_tableName);
    AfxMessageBox(message, result.done() ? platform::iconInformation : platform::iconExclamation);
}
