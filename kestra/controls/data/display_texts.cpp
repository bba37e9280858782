#include <kestra/controls/data/display_texts.h>

#include <algorithm>

namespace controls {

namespace {

constexpr UINT westernCodePage = 1252;

template <class Item>
bool wantsText(const Item& item) {
    return (item.mask & LVIF_TEXT) != 0 && item.pszText != nullptr && item.cchTextMax > 0;
}

void answer(CLraListCtrl& list, LVITEMA& item) {
    if (!wantsText(item)) return;
    CString text;
    list.GetValue(item.iItem, item.iSubItem, text);
    ::lstrcpynA(item.pszText, text, item.cchTextMax);
}

void answer(CLraListCtrl& list, LVITEMW& item) {
    if (!wantsText(item)) return;
    CString text;
    list.GetValue(item.iItem, item.iSubItem, text);
    const int room = item.cchTextMax - 1;
    const int length =
        ::MultiByteToWideChar(westernCodePage, 0, text, std::min(text.GetLength(), room), item.pszText, room);
    item.pszText[length] = L'\0';
}

}  // namespace

bool answerDisplayText(CLraListCtrl& list, LPARAM notification) {
    switch (reinterpret_cast<const NMHDR*>(notification)->code) {
        case LVN_GETDISPINFOA:
            answer(list, reinterpret_cast<NMLVDISPINFOA*>(notification)->item);
            return true;
        case LVN_GETDISPINFOW:
            answer(list, reinterpret_cast<NMLVDISPINFOW*>(notification)->item);
            return true;
        default:
            return false;
    }
}

}  // namespace controls
