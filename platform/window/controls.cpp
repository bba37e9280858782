#include <platform/window/controls.h>

#include <string>

#include <platform/window/image_list.h>
#include <platform/window/menu.h>

namespace {

LPARAM textParameter(const char* text) {
    return reinterpret_cast<LPARAM>(text);
}

/// Text of an entry of a list or combo box, through its two messages for length and text.
int entryText(const CWnd& control, UINT lengthMessage, UINT textMessage, int index, CString& text) {
    const WPARAM entry = static_cast<WPARAM>(index);
    const int length = static_cast<int>(control.SendMessage(lengthMessage, entry));
    if (length < 0 || control.m_hWnd == nullptr) return -1;
    std::string buffer(static_cast<std::size_t>(length) + 1, '\0');
    control.SendMessage(textMessage, entry, textParameter(buffer.data()));
    text = buffer.c_str();
    return text.GetLength();
}

}  // namespace

BOOL CButton::Create(const char* text, DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    return CWnd::Create("BUTTON", text, style, rect, parent, id);
}

BOOL CEdit::Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    return CWnd::Create("EDIT", "", style, rect, parent, id);
}

void CEdit::GetSel(int& start, int& end) const {
    DWORD from = 0, to = 0;
    SendMessage(EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    start = static_cast<int>(from);
    end = static_cast<int>(to);
}

void CEdit::SetSel(int start, int end) {
    SendMessage(EM_SETSEL, static_cast<WPARAM>(start), end);
}

void CEdit::ReplaceSel(const char* text, BOOL canUndo) {
    SendMessage(EM_REPLACESEL, static_cast<WPARAM>(canUndo), textParameter(text));
}

BOOL CListBox::Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    return CWnd::Create("LISTBOX", "", style, rect, parent, id);
}

int CListBox::AddString(const char* text) {
    return static_cast<int>(SendMessage(LB_ADDSTRING, 0, textParameter(text)));
}

int CListBox::GetText(int index, CString& text) const {
    return entryText(*this, LB_GETTEXTLEN, LB_GETTEXT, index, text);
}

DWORD_PTR CListBox::GetItemData(int index) const {
    return static_cast<DWORD_PTR>(SendMessage(LB_GETITEMDATA, static_cast<WPARAM>(index)));
}

int CListBox::SetItemData(int index, DWORD_PTR data) {
    return static_cast<int>(
        SendMessage(LB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data)));
}

BOOL CComboBox::Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id) {
    return CWnd::Create("COMBOBOX", "", style, rect, parent, id);
}

int CComboBox::AddString(const char* text) {
    return static_cast<int>(SendMessage(CB_ADDSTRING, 0, textParameter(text)));
}

int CComboBox::GetLBText(int index, CString& text) const {
    return entryText(*this, CB_GETLBTEXTLEN, CB_GETLBTEXT, index, text);
}

DWORD_PTR CComboBox::GetItemData(int index) const {
    return static_cast<DWORD_PTR>(SendMessage(CB_GETITEMDATA, static_cast<WPARAM>(index)));
}

int CComboBox::SetItemData(int index, DWORD_PTR data) {
    return static_cast<int>(
        SendMessage(CB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data)));
}

int CComboBox::FindStringExact(int after, const char* text) const {
    if (m_hWnd == nullptr) return -1;
    return static_cast<int>(SendMessage(CB_FINDSTRINGEXACT, static_cast<WPARAM>(after), textParameter(text)));
}

BOOL CMenu::CreateMenu() {
    return Attach(::CreateMenu());
}

BOOL CMenu::CreatePopupMenu() {
    return Attach(::CreatePopupMenu());
}

BOOL CMenu::Attach(HMENU menu) {
    m_menu.reset(menu);
    return menu != nullptr;
}

BOOL CMenu::AppendMenu(UINT flags, UINT_PTR id, const char* text) {
    return ::AppendMenuA(m_menu.get(), flags, id, text);
}

int CMenu::TrackPopupMenu(UINT flags, const POINT& screen, HWND owner) const {
    return ::TrackPopupMenu(m_menu.get(), flags, screen.x, screen.y, 0, owner, nullptr);
}

BOOL CImageList::Create(int width, int height, UINT flags, int initial, int grow) {
    m_images.reset(::ImageList_Create(width, height, flags, initial, grow));
    return m_images != nullptr;
}
