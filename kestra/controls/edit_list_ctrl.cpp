#include <kestra/controls/edit_list_ctrl.h>

#include <utility>
#include <vector>

#include <kestra/controls/grid_rules.h>
#include <kestra/controls/grid_watch.h>
#include <platform/prompt.h>

// The grid's life, and what a plain one does with its rows.

namespace {

constexpr UINT current = LVIS_SELECTED | LVIS_FOCUSED;

}  // namespace

const CRuntimeClass CEditListCtrl::runtimeClass{"CEditListCtrl", &CLraListCtrl::runtimeClass};

HHOOK CEditListCtrl::m_WindowsHook = nullptr;
std::int32_t CEditListCtrl::m_nWindowsHook = 0;

CEditListCtrl::CEditListCtrl() {
    if (m_WindowsHook == nullptr) {
        m_WindowsHook = ::SetWindowsHookExA(WH_KEYBOARD, KeyboardProc, nullptr, ::GetCurrentThreadId());
    }
    ++m_nWindowsHook;
}

CEditListCtrl::~CEditListCtrl() {
    if (ownsWindow()) DestroyWindow();
    LinkRecordButton(nullptr);
    if (--m_nWindowsHook < 1 && m_WindowsHook != nullptr) {
        ::UnhookWindowsHookEx(std::exchange(m_WindowsHook, nullptr));
    }
}

int CEditListCtrl::Initialize(int reset) {
    if (reset != 0) {
        forgetEditor();
        m_pCurCol = nullptr;
        m_EditFlags &= editable;
        m_PendingFlags = 0;
        return CLraListCtrl::Initialize(reset);
    }
    const int done = CLraListCtrl::Initialize(0);
    if (done != 0) createEditors();
    return done;
}

int CEditListCtrl::DeleteColumn(int col) {
    if (m_pCurCol != nullptr && col == m_FocusSubItem) {
        hideEditor();
        forgetEditor();
        m_pCurCol = nullptr;
        m_FocusSubItem = -1;
    }
    const int deleted = CLraListCtrl::DeleteColumn(col);
    if (deleted != 0 && col < m_FocusSubItem) --m_FocusSubItem;
    return deleted;
}

LRESULT CEditListCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            beforePainting();
            break;
        case WM_SETFOCUS: {
            const Watch watch(*this);
            const LRESULT result = CLraListCtrl::WindowProc(message, wParam, lParam);
            if (!watch.gone() && !m_focusOnItsWay) placeEditor();
            return result;
        }
        case WM_SETFONT: {
            const LRESULT result = CLraListCtrl::WindowProc(message, wParam, lParam);
            for (CWnd* editor : {static_cast<CWnd*>(&m_LeftEditor), static_cast<CWnd*>(&m_RightEditor),
                                 static_cast<CWnd*>(&m_CenterEditor)}) {
                editor->SendMessage(WM_SETFONT, wParam, lParam);
            }
            return result;
        }
        default:
            break;
    }
    return CLraListCtrl::WindowProc(message, wParam, lParam);
}

int CEditListCtrl::onSubItemChange(int, int) {
    return 1;
}

int CEditListCtrl::onSubItemChanged(int, int) {
    return 0;
}

int CEditListCtrl::DataBaseIsEmpty() {
    return 0;
}

int CEditListCtrl::UpdateMove(int row, int) {
    m_FocusRow = row;
    return 1;
}

int CEditListCtrl::GetSubItemValue(int col, CString& out) {
    return GetValue(m_FocusRow, col, out);
}

int CEditListCtrl::SetSubItemValue(int col, CString value) {
    return SetValue(m_FocusRow, col, std::move(value));
}

int CEditListCtrl::SetValue(int row, int col, CString value) {
    if (m_hWnd == nullptr || row < 0 || row >= GetItemCount()) return 0;
    if (col < 0 || col >= m_HeaderCtrl.GetItemCount()) return 0;
    return SetItemText(row, col, value) ? 1 : 0;
}

int CEditListCtrl::UpdateBookmarks() {
    return 0;
}

int CEditListCtrl::CancelUpdate() {
    return 0;
}

void CEditListCtrl::clearRowStates() {
    if (m_hWnd != nullptr) SetItemState(-1, 0, current);
}

int CEditListCtrl::AddNew() {
    const Watch watch(*this);
    if (m_EditFlags == 0 || watch.gone() || UpdateEdit(commitAll) == 0 || watch.gone()) return 0;
    clearRowStates();
    Invalidate();
    InsertItem(GetItemCount(), "");
    const int count = UpdateItemCount();
    m_FocusRow = m_FocusSubItem = -1;
    SetCurrentSubItem(count - 1, 0);
    return 1;
}

int CEditListCtrl::Delete() {
    const Watch watch(*this);
    if (m_EditFlags == 0 || watch.gone() || UpdateEdit(commitAll) == 0 || watch.gone()) return 0;
    std::vector<int> rows;
    for (int row = -1; (row = GetNextItem(row, LVNI_SELECTED)) >= 0;) rows.push_back(row);
    if (rows.empty()) return 0;
    CString question;
    question.Format("D'accord pour Effacer %d Enregistrements", static_cast<int>(rows.size()));
    const int answer = ::AfxMessageBox(question, platform::styleYesNo | platform::iconQuestion);
    if (answer != platform::answerYes || watch.gone()) return 0;

    std::vector<int> deleted;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        const bool went = DeleteItem(*row) != 0;
        if (watch.gone()) return 0;
        if (went) deleted.insert(deleted.begin(), *row);
    }
    const int next = controls::rowAfterDeletion(m_FocusRow, deleted);
    UpdateItemCount();
    UpdateBookmarks();
    clearRowStates();
    Invalidate();
    m_FocusRow = m_FocusSubItem = -1;
    SetCurrentSubItem(next, 0);
    if (!watch.gone()) Invalidate();
    return static_cast<int>(deleted.size());
}

int CEditListCtrl::LinkRecordButton(CRecordButton* button) {
    if (m_pRecordButton != nullptr && m_pRecordButton != button) m_pRecordButton->Link(nullptr);
    m_pRecordButton = button;
    if (button == nullptr) return 0;
    RecordTarget* const before = button->Target();
    if (before != nullptr && before != this) before->RecordButtonGone(*button);
    button->Link(this);
    button->SetRecord(m_FocusRow + 1, m_hWnd != nullptr ? GetItemCount() : 0);
    button->Refresh();
    return 1;
}

void CEditListCtrl::MoveToRecord(int record) {
    Initialize(0);
    SetCurrentSubItem(record - 1, m_FocusSubItem);
}

void CEditListCtrl::AddRecord() {
    const Watch watch(*this);
    if (AddNew() != 0 && !watch.gone()) SetFocus();
}

void CEditListCtrl::RecordButtonGone(CRecordButton& button) {
    if (m_pRecordButton == &button) m_pRecordButton = nullptr;
}
