#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <kestra/controls/lra_list_ctrl.h>
#include <platform/prompt.h>
#include <platform/replaceable.h>

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
    /// The columns from left to right.
    std::string order() const {
        std::string all;
        for (int place = 0; place < m_HeaderCtrl.GetItemCount(); ++place)
            all += std::to_string(m_HeaderCtrl.OrderToIndex(place));
        return all;
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

/// Answers questions and keeps their texts.
struct AnsweringPrompt : platform::Prompt {
    platform::Answer answer = platform::answerYes;
    std::string asked;
    platform::Replaced<platform::Prompt> inForce{platform::replacePrompt, *this};
    platform::Answer ask(unsigned, const char* text, const char*) override {
        asked += text;
        return answer;
    }
};

/// Control is held down while it lives, as far as messages see it.
struct ControlHeld {
    explicit ControlHeld(bool held = true) { set(held); }
    ~ControlHeld() { set(false); }
    static void set(bool held) {
        BYTE keys[256] = {};
        keys[VK_CONTROL] = held ? 0x80 : 0;
        ::SetKeyboardState(keys);
    }
};

inline std::string textOf(const CWnd& window) {
    CString text;
    window.GetWindowText(text);
    return std::string(text.view());
}

/// The text of a part of a window.
inline std::string textOf(const CWnd& window, int id) {
    CString text;
    window.GetDlgItemText(id, text);
    return std::string(text.view());
}

/// The entries of a list or combo box, each with "|" behind it and the chosen one in brackets.
inline std::string entriesOf(HWND box) {
    char kind[20] = {}, entry[200] = {};
    ::GetClassNameA(box, kind, sizeof kind);
    const bool combo = _stricmp(kind, "ComboBox") == 0;
    const LRESULT chosen = ::SendMessageA(box, combo ? CB_GETCURSEL : LB_GETCURSEL, 0, 0);
    const LRESULT count = ::SendMessageA(box, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0);
    std::string all;
    for (LRESULT i = 0; i < count; ++i) {
        ::SendMessageA(box, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(i),
                       reinterpret_cast<LPARAM>(entry));
        all += i == chosen ? std::string("[") + entry + "]|" : std::string(entry) + "|";
    }
    return all;
}

/// A dialog that is worked as soon as it is shown; what is left open is then cancelled.
template <class Dialog>
class Worked : public Dialog {
  public:
    using Dialog::Dialog;
    std::function<void(Worked&)> work = [](Worked&) {};
    void press(int id) { this->SendMessage(WM_COMMAND, static_cast<WPARAM>(id)); }

  protected:
    BOOL OnInitDialog() override {
        const BOOL result = Dialog::OnInitDialog();
        this->PostMessage(WM_APP);
        return result;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_APP) work(*this), this->PostMessage(WM_COMMAND, IDCANCEL);
        return Dialog::WindowProc(message, wParam, lParam);
    }
};

/// Works the first dialog of this process that has a control of that number, as soon as it is there.
class DialogWorker {
  public:
    static constexpr int fileName = 0x47C;  ///< a control of the system's dialog for files

    DialogWorker(int control, std::function<void(HWND)> work) {
        s_control = control;
        s_work = std::move(work);
        s_timer = ::SetTimer(nullptr, 0, 50, &onTimer);
    }
    /// Answers the system's dialog for files with a name; an empty one cancels it.
    explicit DialogWorker(const std::string& file)
        : DialogWorker(fileName, [file](HWND dialog) {
              ::SetDlgItemTextA(dialog, fileName, file.c_str());
              ::PostMessageA(dialog, WM_COMMAND, file.empty() ? IDCANCEL : IDOK, 0);
          }) {}
    ~DialogWorker() { ::KillTimer(nullptr, s_timer); }
    DialogWorker(const DialogWorker&) = delete;
    DialogWorker& operator=(const DialogWorker&) = delete;

  private:
    static void CALLBACK onTimer(HWND, UINT, UINT_PTR timer, DWORD) {
        for (HWND window = nullptr;
             (window = ::FindWindowExA(nullptr, window, "#32770", nullptr)) != nullptr;) {
            if (::GetDlgItem(window, s_control) == nullptr) continue;
            ::KillTimer(nullptr, timer);
            s_work(window);
            return;
        }
    }
    static inline int s_control;
    static inline std::function<void(HWND)> s_work;
    static inline UINT_PTR s_timer;
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
    std::string text() const {
        return "GDI " + std::to_string(gdi) + ", user " + std::to_string(user) + ", kernel " +
               std::to_string(kernel);
    }
};

/// None of the tables may grow by more than a handful in so many rounds.
inline void expectNothingLeft(int rounds, const std::function<void(int)>& round) {
    for (int i = 0; i < 20; ++i) round(i);
    const HandleLevels before;
    for (int i = 0; i < rounds; ++i) round(i);
    const HandleLevels after;
    constexpr std::uintptr_t handful = 8;
    EXPECT_TRUE(after.gdi <= before.gdi + handful && after.user <= before.user + handful &&
                after.kernel <= before.kernel + handful)
        << before.text() << " -> " << after.text();
}

/// Dispatches what waits in the thread's queue.
inline void pumpMessages() {
    MSG message;
    while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageA(&message);
}
