#include <kestra/controls/edit_list_ctrl.h>
#include <kestra/controls/grid_keys.h>
#include <kestra/controls/grid_watch.h>

// How keys reach a grid, and how what grid_keys.h decides is carried out.

namespace {

/// The last key that the hook swallowed: its release is swallowed too.
WPARAM swallowedKey = 0;

constexpr LPARAM keyReleased = 1LL << 31;
constexpr LPARAM altDown = 1LL << 29;

/// A window handle with an object for the time of a call.
class PassingWnd : public CWnd {
  public:
    explicit PassingWnd(HWND window) { Attach(window); }
    ~PassingWnd() override { Detach(); }
};

/// The grid that is, or holds, a window.
CEditListCtrl* gridAround(HWND window) {
    for (; window != nullptr; window = ::GetParent(window)) {
        CWnd* const object = CWnd::FromHandlePermanent(window);
        if (object != nullptr && object->IsKindOf(CEditListCtrl::runtimeClass)) {
            return static_cast<CEditListCtrl*>(object);
        }
    }
    return nullptr;
}

/// The key, once a grid has dealt with it; else 0.
WPARAM offerToGrid(WPARAM key, LPARAM info) {
    const HWND focus = ::GetForegroundWindow() != nullptr ? ::GetFocus() : nullptr;
    CEditListCtrl* const grid = gridAround(focus);
    if (grid == nullptr) return 0;
    PassingWnd passing(focus);
    return grid->KeyboardHook(&passing, key, info);
}

bool isDown(int key) {
    return ::GetKeyState(key) < 0;
}

}  // namespace

LRESULT CALLBACK CEditListCtrl::KeyboardProc(int code, WPARAM key, LPARAM info) {
    if (code == HC_ACTION && (info & keyReleased) == 0) {
        swallowedKey = 0;
        if (const WPARAM taken = offerToGrid(key, info)) {
            swallowedKey = taken;
            return 1;
        }
    } else if (code == HC_ACTION && swallowedKey != 0 && key == swallowedKey) {
        return code + 1;
    }
    return ::CallNextHookEx(m_WindowsHook, code, key, info);
}

controls::GridKeyState CEditListCtrl::keyState(HWND focus, LPARAM info) {
    controls::GridKeyState state;
    const LraListColum* const record = currentRecord();
    CWnd* const editor = activeEditor();
    state.focusOnGrid = focus == m_hWnd;
    state.focusOnEditor = editor != nullptr && (focus == editor->m_hWnd || ::IsChild(editor->m_hWnd, focus));
    state.hasColumn = record != nullptr;
    state.columnStyle = record != nullptr ? record->ColStyle : 0;
    state.editing = m_EditFlags != 0;
    state.control = isDown(VK_CONTROL);
    state.shift = isDown(VK_SHIFT);
    state.alt = (info & altDown) != 0;
    state.row = m_FocusRow;
    state.column = m_FocusSubItem;
    state.rowCount = GetItemCount();
    state.rowsPerPage = GetCountPerPage();
    state.escapes = m_nEscapes;
    state.caretAtStart = state.caretAtEnd = state.focusOnGrid;
    if (!state.focusOnEditor) return state;
    const bool combo = state.columnStyle == controls::comboColumn;
    DWORD start = 0, end = 0;
    ::SendMessageA(combo ? editor->m_hWnd : focus, combo ? CB_GETEDITSEL : EM_GETSEL,
                   reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    state.caretAtStart = start == 0;
    state.caretAtEnd = end >= static_cast<DWORD>(::GetWindowTextLengthA(editor->m_hWnd));
    state.listOpen = combo && editor->SendMessage(CB_GETDROPPEDSTATE) != 0;
    return state;
}

WPARAM CEditListCtrl::KeyboardHook(CWnd* focus, WPARAM key, LPARAM info) {
    if (focus == nullptr || focus->m_hWnd == nullptr || m_hWnd == nullptr) return 0;
    if (m_LeftEditor.m_hWnd == nullptr) return 0;
    const auto pressed = static_cast<unsigned>(key);
    const controls::GridKeyDecision decision =
        controls::decideGridKey(pressed, keyState(focus->m_hWnd, info));
    if (pressed != controls::keyEscape) {
        m_nEscapes = 0;
    } else if (decision.result != 0) {
        ++m_nEscapes;
    }
    carryOut(decision);
    return decision.result;
}

void CEditListCtrl::carryOut(const controls::GridKeyDecision& decision) {
    switch (decision.action) {
        case controls::GridAction::toggleCheckBox:
            toggleCheck();
            break;
        case controls::GridAction::deleteRows:
            Delete();
            break;
        case controls::GridAction::moveByColumns:
            SetCurrentSubItemOffset(decision.column);
            break;
        case controls::GridAction::moveToPosition:
            SetCurrentSubItemPos(decision.row, decision.column);
            break;
        case controls::GridAction::moveToCell:
            SetCurrentSubItem(decision.row, decision.column);
            break;
        case controls::GridAction::selectText:
            SetEditSel(0, 20001);
            break;
        case controls::GridAction::restoreCell:
            restoreCell();
            break;
        case controls::GridAction::cancelRow: {
            const Watch watch(*this);
            if (CancelUpdate() < 0 && !watch.gone()) restoreCell();
            break;
        }
        case controls::GridAction::none:
            break;
    }
}

void CEditListCtrl::restoreCell() {
    const int col = m_FocusSubItem;
    m_FocusSubItem = -1;
    SetCurrentSubItem(m_FocusRow, col);
}
