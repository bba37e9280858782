#include "main_window.h"

#include <kestra/project/chantier.h>
#include <platform/prompt.h>
#include <platform/window/file_dialog.h>
#include <platform/window/menu.h>

namespace {

enum Command : UINT { openProject = 100, printList, copyList, quit };

constexpr UINT listId = 1;
constexpr int linesPerPage = 60;
constexpr RECT startPlace = {30, 25, 830, 505};

/// Menu bar; the window takes it over.
HMENU makeMenu() {
    CMenu file;
    file.CreatePopupMenu();
    file.AppendMenu(MF_STRING, openProject, "&Ouvrir un chantier...\tCtrl+O");
    file.AppendMenu(MF_STRING, printList, "&Imprimer\tCtrl+P");
    file.AppendMenu(MF_STRING, copyList, "&Copier\tCtrl+C");
    file.AppendSeparator();
    file.AppendMenu(MF_STRING, quit, "&Quitter");
    CMenu bar;
    bar.CreateMenu();
    bar.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(file.Detach()), "&Fichier");
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
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS;
    if (!m_list.Create(style, GetClientRect(), this, listId)) return false;
    m_font.reset(::CreateFontA(-13, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, ANSI_CHARSET, OUT_DEFAULT_PRECIS,
                               CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, "Tahoma"));
    m_list.SetFont(m_font.get());
    m_list.SetExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_HEADERDRAGDROP);
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
    return count;
}

LRESULT MainWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            m_list.MoveWindow(GetClientRect());
            break;
        case WM_SETFOCUS:
            m_list.SetFocus();
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
        case printList:
            print();
            return TRUE;
        case copyList:
            m_list.CopyToClipBoard(0);
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
    m_list.PrintToHtml(nullptr, linesPerPage, text, 0);
}
