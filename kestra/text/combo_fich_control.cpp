#include <kestra/text/combo_fich.h>
#include <platform/window/controls.h>

namespace {

std::vector<std::string> itemsOf(const CComboBox& combo) {
    std::vector<std::string> items;
    for (int index = 0; index < combo.GetCount(); ++index) {
        CString text;
        combo.GetLBText(index, text);
        items.emplace_back(text.view());
    }
    return items;
}

}  // namespace

int ComboFich(CComboBox* combo, const char* file, const char* folders, int flags) {
    if (combo == nullptr || file == nullptr) return -1;
    CString shown;
    combo->GetWindowText(shown);
    combo->ResetContent();
    for (std::string& pattern : text::comboPatterns(file, folders, flags != 0))
        combo->SendMessage(CB_DIR, DDL_READONLY, reinterpret_cast<LPARAM>(pattern.data()));
    for (const int index : text::repeatedItems(itemsOf(*combo))) combo->DeleteString(index);
    if (!shown.IsEmpty())
        combo->SendMessage(CB_SELECTSTRING, static_cast<WPARAM>(-1),
                           reinterpret_cast<LPARAM>(shown.GetString()));
    combo->Invalidate();
    return 1;
}
