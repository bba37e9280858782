#pragma once
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <kestra/controls/lra_list_ctrl.h>
#include <platform/prompt.h>

/// What the tests of windows stand on: a real parent window that is never shown, and real lists below it.

class HiddenParent : public CWnd {
  public:
    HiddenParent() { CWnd::Create(nullptr, "parent", WS_OVERLAPPEDWINDOW, {0, 0, 600, 400}, nullptr, 0); }
};

/// A list with text columns "c0", "c1", ... of 60 pixels each.
class TestList : public CLraListCtrl {
  public:
    explicit TestList(const CWnd& parent, int columns = 0) {
        CLraListCtrl::Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, {0, 0, 500, 200}, &parent, 77);
        for (int col = 0; col < columns; ++col) {
            InsertColumn(col, ("c" + std::to_string(col)).c_str(), LVCFMT_LEFT, 60, 'T', 20);
        }
    }
    void addRow(std::initializer_list<const char*> cells, std::uint64_t data = 0) {
        const int row = InsertItem(GetItemCount(), "");
        int col = 0;
        for (const char* cell : cells) SetItemText(row, col++, cell);
        SetItemData(row, data);
        UpdateItemCount();
    }
    std::string text(int row, int col) {
        CString cell;
        GetItemText(row, col, cell);
        return std::string(cell.view());
    }
    /// The first cells, or the item data, from top to bottom with blanks between.
    std::string cells() {
        std::string all;
        for (int row = 0; row < GetItemCount(); ++row) all += (row > 0 ? " " : "") + text(row, 0);
        return all;
    }
    std::string data() {
        std::string all;
        for (int row = 0; row < GetItemCount(); ++row)
            all += (row > 0 ? " " : "") + std::to_string(GetItemData(row));
        return all;
    }
    /// Sends a header notification as the header sends it.
    LRESULT notify(UINT code, int item) {
        NMHEADERW message = {};
        message.hdr = {m_HeaderCtrl.m_hWnd, 0, code};
        message.iItem = item;
        return SendMessage(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&message));
    }
    /// Puts the cursor into the header and returns the place as mouse messages tell it.
    LPARAM placeCursor(int x) {
        POINT place = {x, 5};
        m_HeaderCtrl.ClientToScreen(&place);
        ::SetCursorPos(place.x, place.y);
        return MAKELPARAM(x, 5);
    }
    int formatOf(int col) const {
        HDITEMA item = {};
        item.mask = HDI_FORMAT;
        m_HeaderCtrl.GetItem(col, item);
        return item.fmt;
    }
};

/// Notes what the user would be told.
struct SilentPrompt : platform::Prompt {
    std::string asked;
    platform::Answer ask(unsigned, const char* text, const char*) override {
        asked += text;
        return platform::answerOk;
    }
};

/// How far the process's tables of handles are filled, by the highest of a few new ones of each kind. (Where
/// these programs are tested the system does not count them: GetGuiResources answers 0.)
struct HandleLevels {
    std::uintptr_t gdi = 0, user = 0, kernel = 0;

    HandleLevels() {
        std::vector<HPEN> pens;
        std::vector<HMENU> menus;
        std::vector<HANDLE> events;
        for (int i = 0; i < 32; ++i) {
            pens.push_back(::CreatePen(PS_SOLID, 1, RGB(1, 2, 3)));
            menus.push_back(::CreateMenu());
            events.push_back(::CreateEventA(nullptr, TRUE, FALSE, nullptr));
            gdi = std::max<std::uintptr_t>(gdi, LOWORD(pens.back()));
            user = std::max<std::uintptr_t>(user, LOWORD(menus.back()));
            kernel = std::max(kernel, reinterpret_cast<std::uintptr_t>(events.back()) / 4);
        }
        for (const HPEN pen : pens) ::DeleteObject(pen);
        for (const HMENU menu : menus) ::DestroyMenu(menu);
        for (const HANDLE event : events) ::CloseHandle(event);
    }
    /// Whether none has grown by more than a handful since `before`.
    bool heldSince(const HandleLevels& before) const {
        constexpr std::uintptr_t handful = 8;
        return gdi <= before.gdi + handful && user <= before.user + handful &&
               kernel <= before.kernel + handful;
    }
    std::string text() const {
        return "GDI " + std::to_string(gdi) + ", user " + std::to_string(user) + ", kernel " +
               std::to_string(kernel);
    }
};

/// Dispatches what waits in the thread's queue.
inline void pumpMessages() {
    MSG message;
    while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageA(&message);
}
