#pragma once
#include <functional>
#include <string>
#include <vector>

#include <kestra/controls/lra_list_ctrl.h>
#include <platform/window/wnd.h>

/// What the tests of windows stand on: a real parent window that is never shown, and real lists below it.

/// Top-level window without a place on the screen.
class HiddenParent : public CWnd {
  public:
    HiddenParent() { CWnd::Create(nullptr, "parent", WS_OVERLAPPEDWINDOW, {0, 0, 600, 400}, nullptr, 0); }
    std::vector<std::pair<UINT, UINT>> notifications;  // id and code
    std::function<void()> onNotification;

  protected:
    BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override {
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        notifications.push_back({static_cast<UINT>(header.idFrom), header.code});
        if (onNotification) onNotification();
        return CWnd::OnNotify(wParam, lParam, result);
    }
};

/// A list with text columns "c0", "c1", ... of 60 pixels each.
class TestList : public CLraListCtrl {
  public:
    explicit TestList(const CWnd& parent, int columns = 0) {
        CLraListCtrl::Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, {0, 0, 500, 200}, &parent, 77);
        for (int col = 0; col < columns; ++col) {
            CString heading;
            heading.Format("c%d", col);
            InsertColumn(col, heading, LVCFMT_LEFT, 60, 'T', 20);
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
    /// The cells of a column from top to bottom, with blanks between.
    std::string columnText(int col) {
        std::string all;
        for (int row = 0; row < GetItemCount(); ++row) all += (row > 0 ? " " : "") + text(row, col);
        return all;
    }
    std::string dataText() {
        std::string all;
        for (int row = 0; row < GetItemCount(); ++row) {
            all += (row > 0 ? " " : "") + std::to_string(GetItemData(row));
        }
        return all;
    }
    /// Sends a header notification as the header sends it.
    LRESULT notify(UINT code, int item) {
        NMHEADERW message = {};
        message.hdr = {m_HeaderCtrl.m_hWnd, 0, code};
        message.iItem = item;
        return SendMessage(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&message));
    }
    void click(int col) { notify(HDN_ITEMCLICKW, col); }
};

/// Dispatches what waits in the thread's queue.
inline void pumpMessages() {
    MSG message;
    while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
}
