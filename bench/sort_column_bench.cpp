#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <bench/side_by_side.h>
#include <kestra/controls/lra_list_ctrl.h>
#include <platform/window/list_control.h>

/// Sorting a list of 100,000 rows by a text column, each sort turning the order of the one before, against
/// the platform's own sort with a comparer that only reads keys which were made beforehand.

namespace {

constexpr int rowCount = 100000;

std::vector<std::string> randomTexts() {
    std::mt19937 random(1);
    std::vector<std::string> texts(rowCount);
    for (std::string& text : texts) {
        text = "Borne ";
        for (int i = 0; i < 8; ++i) text += static_cast<char>('a' + random() % 26);
    }
    return texts;
}

void fill(CListCtrl& list, const std::vector<std::string>& texts) {
    list.SendMessage(WM_SETREDRAW, FALSE);
    list.SendMessage(LVM_SETITEMCOUNT, rowCount);
    for (int row = 0; row < rowCount; ++row) {
        LVITEMA item = {};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = row;
        item.pszText = const_cast<char*>(texts[static_cast<std::size_t>(row)].c_str());
        item.lParam = row + 1;
        list.CListCtrl::InsertItem(item);
    }
    list.SendMessage(WM_SETREDRAW, TRUE);
}

/// The keys of the peer, by item data, and the direction of its sort.
struct Keys {
    const std::vector<std::string>* texts;
    int direction;
};

int CALLBACK compareKeys(LPARAM first, LPARAM second, LPARAM context) {
    const Keys& keys = *reinterpret_cast<const Keys*>(context);
    const auto& texts = *keys.texts;
    return keys.direction * std::strcmp(texts[static_cast<std::size_t>(first - 1)].c_str(),
                                        texts[static_cast<std::size_t>(second - 1)].c_str());
}

}  // namespace

int main() {
    CWnd parent;
    parent.Create(nullptr, "bench", WS_OVERLAPPEDWINDOW, {0, 0, 600, 400}, nullptr, 0);
    const std::vector<std::string> texts = randomTexts();

    CLraListCtrl ours;
    ours.CListCtrl::Create(WS_CHILD | LVS_REPORT, {0, 0, 500, 300}, &parent, 1);
    ours.InsertColumn(0, "Nom", LVCFMT_LEFT, 100, 'T', 0);
    fill(ours, texts);

    CListCtrl plain;
    plain.Attach(::CreateWindowExA(0, WC_LISTVIEWA, "", WS_CHILD | LVS_REPORT, 0, 0, 500, 300, parent,
                                   nullptr, nullptr, nullptr));
    LVCOLUMNA column = {};
    column.mask = LVCF_WIDTH;
    column.cx = 100;
    plain.InsertColumn(0, column);
    fill(plain, texts);

    int direction = -1;
    Keys keys{&texts, -1};
    bench::sideBySide(
        "SortColum, 100,000 rows by a text column", 2.0, [&] { ours.SortColum(direction = -direction); },
        "LVM_SORTITEMS, ready keys",
        [&] {
            keys.direction = -keys.direction;
            plain.SortItems(compareKeys, reinterpret_cast<LPARAM>(&keys));
        });
    ours.UnselectAll(rowCount / 2, 0);
    bench::sideBySide(
        "SortColum, the same with a current row", 2.0, [&] { ours.SortColum(direction = -direction); },
        "LVM_SORTITEMS, ready keys",
        [&] {
            keys.direction = -keys.direction;
            plain.SortItems(compareKeys, reinterpret_cast<LPARAM>(&keys));
        });
    return 0;
}
