#include "fichder.h"

#include <kestra/project/recent_files.h>
#include <platform/window/controls.h>

namespace {

class ComboEntries : public kestra::RecentEntries {
  public:
    explicit ComboEntries(CComboBox* combo) : m_combo(*combo) {}
    int count() const override { return m_combo.GetCount(); }
    std::string at(int index) const override {
        CString text;
        m_combo.GetLBText(index, text);
        return std::string(text.view());
    }
    void insertFirst(const std::string& text) override {
        m_combo.SendMessage(CB_INSERTSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    void remove(int index) override { m_combo.DeleteString(index); }

  private:
    CComboBox& m_combo;
};

}  // namespace

Cfichder::Cfichder(const char* section, CComboBox* combo, int most)
    : m_pCombo(combo), m_nMax(most), m_cle(section) {}

void Cfichder::Add(const char* path, int keep) {
    if (m_pCombo == nullptr) return;
    ComboEntries entries(m_pCombo);
    kestra::addRecent(entries, path != nullptr ? path : "", keep != 0);
}

void Cfichder::ReadList() {
    if (m_pCombo == nullptr) return;
    ComboEntries entries(m_pCombo);
    kestra::readRecent(entries, m_cle.GetString(), m_nMax);
    CString shown;
    m_pCombo->GetWindowText(shown);
    if (shown.IsEmpty() && entries.count() > 0) m_pCombo->SetWindowText(entries.at(0).c_str());
}

void Cfichder::WriteList() {
    if (m_pCombo == nullptr) return;
    kestra::writeRecent(ComboEntries(m_pCombo), m_cle.GetString(), m_nMax);
}
