#include <kestra/controls/data/ado_list_ctrl.h>

#include <cstring>
#include <utility>

#include <dorsel/globals.h>
#include <gtest/gtest.h>
#include <kestra/controls/data/ado_combo_box.h>
#include <kestra/controls/data/ptr_list_ctrl.h>
#include <tests/support/counted_registry.h>

#include "edit_list_support.h"

namespace {

constexpr char layout[] = "Software\\Kestra Essais\\Bornes";

/// A list over a real table of some survey marks.
class AdoList : public testing::Test {
  protected:
    AdoList() {
        connection = ado20::createConnection(ado20::Engine::embedded);
        connection->Open("Provider=SQLite;Data Source=:memory:");
        connection->Execute(
            "CREATE TABLE BORNES (NUM INTEGER NOT NULL PRIMARY KEY, NOM VARCHAR(8), Z DOUBLE, POSEE "
            "BOOLEAN)");
        for (const char* values :
             {"1,'Église',12.5,-1", "2,'Pont',9.25,0", "3,'Mairie',NULL,0", "10,'Gare',100,-1"}) {
            connection->Execute(std::string("INSERT INTO BORNES VALUES (") + values + ")");
        }
        list.Create(WS_CHILD | WS_VISIBLE, {0, 0, 600, 300}, &parent, 79);
        list.Open("BORNES", connection);
        list.SetFocus();
    }
    ~AdoList() override {
        list.m_RegName.Empty();
        platform::theRegistry().deleteTree(HKEY_CURRENT_USER, "Software\\Kestra Essais");
    }

    enum Column { header, num, name, height, placed };
    GridParent parent;
    AnsweringPrompt prompt;
    _ConnectionPtr connection;
    CAdoListCtrl list;

    std::string text(int row, int col) {
        CString out;
        list.GetItemText(row, col, out);  // as anybody outside would read it
        return std::string(out.view());
    }
    std::string column(int col) {
        std::string all;
        for (int row = 0; row < list.GetItemCount(); ++row) all += text(row, col) + " ";
        return all;
    }
    std::string stored(const char* query) {
        const _RecordsetPtr answer = connection->Execute(query);
        std::string all;
        for (; !answer->GetEOF(); answer->MoveNext()) {
            const ado20::Variant value = answer->GetFields()->GetItem(0)->GetValue();
            all += (value.isNull() ? "null" : value.text()) + " ";
        }
        return all;
    }
    void type(const char* typed) {
        ASSERT_NE(list.m_pActiveEditor, nullptr);
        list.m_pActiveEditor->SetWindowText(typed);
    }
    std::string current() const {
        return std::to_string(list.m_FocusRow) + "," + std::to_string(list.m_FocusSubItem);
    }
    void press(WPARAM key) { list.KeyboardHook(CWnd::FromHandlePermanent(::GetFocus()), key, 1); }
};

TEST_F(AdoList, FieldsBecomeColumnsOfTheirKind) {
    EXPECT_EQ(list.m_HeaderCtrl.GetItemCount(), 5);
    EXPECT_EQ(column(name), "Église Pont Mairie Gare ");
    EXPECT_EQ(column(height), "12.5 9.25  100 ");
    EXPECT_EQ(list.GetMyListHeader(name)->nParam, 8);
    EXPECT_EQ(list.GetMyListHeader(placed)->ColStyle, 3);
    EXPECT_EQ(list.m_EditFlags, CEditListCtrl::editable);
    EXPECT_EQ(list.Open("RIEN", connection), -1);
    EXPECT_EQ(list.GetItemCount(), 4) << "what was shown stays";
}

TEST_F(AdoList, ARowIsWrittenWhenItIsLeft) {
    list.SetCurrentSubItem(1, name);
    type("Pont 9");
    press(VK_TAB);
    EXPECT_EQ(text(1, name), "Pont 9") << "shown";
    EXPECT_EQ(stored("SELECT NOM FROM BORNES WHERE NUM=2"), "Pont ") << "not written yet";
    press(VK_DOWN);
    EXPECT_EQ(current(), "2,3");
    EXPECT_EQ(stored("SELECT NOM FROM BORNES WHERE NUM=2"), "Pont 9 ");
    list.SetCurrentSubItem(2, name);
    type("Mairie annexe");
    press(VK_DOWN);
    EXPECT_EQ(current(), "2,2") << "more letters than the field holds";
    EXPECT_EQ(prompt.asked, "Problème de Données sur 'NOM'");
}

TEST_F(AdoList, AnEmptyNumberBecomesNullAndChecksAreWritten) {
    list.SetCurrentSubItem(1, height);
    type("");
    press(VK_TAB);
    press(VK_SPACE);
    EXPECT_EQ(text(1, placed), "-1");
    press(VK_DOWN);
    EXPECT_EQ(current(), "2,4");
    EXPECT_EQ(stored("SELECT Z FROM BORNES WHERE NUM=2") + stored("SELECT POSEE FROM BORNES WHERE NUM=2"),
              "null -1 ");
    list.SetCurrentSubItem(2, height);
    type("douze");
    EXPECT_EQ(list.SetCurrentSubItem(2, name), 0);
    EXPECT_EQ(prompt.asked, "Problème de Données sur 'Z'");
    press(VK_ESCAPE);
    list.SetCurrentSubItem(2, name);
    type("Cure");
    press(VK_TAB);
    press(VK_ESCAPE);
    press(VK_ESCAPE);
    EXPECT_EQ(text(2, name), "Mairie") << "a second Escape drops the row's changes";
    EXPECT_EQ(stored("SELECT NOM FROM BORNES WHERE NUM=3"), "Mairie ");
}

TEST_F(AdoList, RowsAreAddedAndDeleted) {
    EXPECT_EQ(list.AddNew(), 1);
    EXPECT_EQ(current(), "4,1");
    list.SetCurrentSubItem(0, num);
    EXPECT_EQ(list.GetItemCount(), 4) << "a new row without anything typed goes";
    list.AddNew();
    type("7");
    press(VK_TAB);
    type("Moulin");
    press(VK_UP);
    EXPECT_EQ(current(), "3,2");
    EXPECT_EQ(column(num), "1 2 3 10 7 ");
    EXPECT_EQ(stored("SELECT NOM FROM BORNES WHERE NUM=7"), "Moulin ");
    list.AddNew();
    type("7");
    press(VK_UP);
    EXPECT_EQ(current(), "5,1") << "a key that is there already";
    EXPECT_NE(prompt.asked, "");
    press(VK_ESCAPE);
    press(VK_ESCAPE);
    EXPECT_EQ(list.GetItemCount(), 5);
    list.SetItemState(-1, 0, LVIS_SELECTED);
    for (const int row : {1, 4}) list.SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(list.Delete(), 2);
    EXPECT_EQ(column(num), "1 3 10 ");
    EXPECT_EQ(stored("SELECT COUNT(*) FROM BORNES"), "3 ");
}

TEST_F(AdoList, ColumnsSortAsTheirFieldsAndTheRecordStaysCurrent) {
    list.SetCurrentSubItem(3, name);
    EXPECT_EQ(list.SortColum(-(height + 1)), 1);
    EXPECT_EQ(column(height), "100 12.5 9.25  ");
    EXPECT_EQ(current(), "0,2");
    EXPECT_EQ(list.SortColum(num + 1), 1);
    EXPECT_EQ(column(num), "1 2 3 10 ");
    EXPECT_EQ(current(), "3,2");
    EXPECT_EQ(list.SortColum("PAS DE CHAMP"), 0);
    EXPECT_EQ(list.SortColum(0), 1);
}

TEST_F(AdoList, TheSortExpressionIsKeptAndItsLengthLeavesOutTheFinalNul) {
    CountedRegistry registry;
    list.SortColum("Z DESC");
    list.SetColumnWidth(height, -77);
    EXPECT_EQ(list.SaveHeadToReg(layout, nullptr), 5);
    EXPECT_EQ(registry.written["ColSort"], 6u) << "Z DESC";
    CAdoListCtrl again;
    again.Create(WS_CHILD, {0, 0, 600, 300}, &parent, 80);
    again.Open("BORNES", connection);
    EXPECT_EQ(again.LoadHeadFromReg(layout, 7, nullptr), 5);
    EXPECT_EQ(again.GetColumnWidth(height), -77);
    CString first;
    again.GetValue(0, num, first);
    EXPECT_STREQ(first, "10") << "the highest";
    HKEY key = nullptr;
    again.LoadHeadFromReg(nullptr, 7, &key);
    ASSERT_NE(key, nullptr);
    const char damaged[] = "PAS DE CHAMP";
    platform::theRegistry().set(key, "ColSort", REG_SZ, damaged, sizeof damaged - 1);
    EXPECT_EQ(again.LoadHeadFromReg(nullptr, 7, &key), 5)
        << "a sort that is none is reported, the columns come back";
    platform::theRegistry().close(key);
    EXPECT_EQ(registry.openKeys, 0);
    again.m_RegName.Empty();
}

TEST_F(AdoList, TheComboKeepsItsSizeUnderAMisspeltNameWithTheListsColumns) {
    CAdoComboBox combo;
    combo.Create(WS_CHILD | CBS_DROPDOWNLIST | WS_VSCROLL, {0, 0, 120, 150}, &parent, 81);
    EXPECT_EQ(combo.Fill(list.m_Recordset, "nom"), 4);
    EXPECT_EQ(combo.GetCount(), 4);
    EXPECT_EQ(combo.Fill(list.m_Recordset, "RIEN"), 0);
    const char* const before = std::exchange(g_RegTOREL_32, "Software\\Kestra Essais");
    combo.SetDroppedWidth(333);
    EXPECT_EQ(combo.SaveHeadToReg("Choix", 0), 1);
    const int narrow = combo.SetDroppedWidth(10);
    EXPECT_EQ(combo.LoadHeadFromReg(nullptr, 16), 0);
    EXPECT_EQ(combo.GetDroppedWidth(), narrow) << "without a key nothing was written";
    combo.m_pList = &list;
    combo.SetDroppedWidth(333);
    EXPECT_EQ(combo.SaveHeadToReg(nullptr, 1), 5);
    EXPECT_TRUE(list.m_RegName.IsEmpty());
    platform::RegistryKey key;
    key.open(HKEY_CURRENT_USER, "Software\\Kestra Essais\\CadoListCtrl\\Choix", KEY_READ);
    EXPECT_TRUE(platform::readNumber(key.get(), "ComboHeigth"));
    combo.SetDroppedWidth(500);
    EXPECT_EQ(combo.LoadHeadFromReg(nullptr, 16 | 32 | 7), 5);
    EXPECT_EQ(combo.GetDroppedWidth(), 333);
    g_RegTOREL_32 = before;
}

TEST_F(AdoList, AClosedRecordsetIsAnEmptyList) {
    list.SetCurrentSubItem(1, name);
    type("perdu");
    EXPECT_EQ(list.SetRecordset(nullptr), 0);
    EXPECT_EQ(list.GetItemCount(), 0);
    EXPECT_EQ(list.AddNew() + list.Delete() + list.SortColum(2), 0);
    EXPECT_EQ(list.SaveHeadToReg(layout, nullptr), 5);
    list.SetCurrentSubItem(0, name);
    press(VK_DOWN);
    list.UpdateWindow();
}

TEST(PtrList, RowsAreTheCallersObjects) {
    struct Names : CPtrListCtrl {
        int GetPtrValue(void* object, int, CString& out) override {
            out = static_cast<const char*>(object);
            return 1;
        }
    };
    HiddenParent parent;
    Names list;
    list.Create(WS_CHILD | LVS_REPORT, {0, 0, 200, 100}, &parent, 5);
    list.InsertColumn(0, "Nom", LVCFMT_LEFT, 90, 0, 0);
    char first[] = "Zoé", second[] = "Anne", changed[] = "Éva";
    EXPECT_EQ(list.AddPtr(first), 0);
    EXPECT_EQ(list.AddPtr(second), 1);
    EXPECT_EQ(list.AddPtr(first, 0), 0);
    EXPECT_EQ(list.AddPtr(nullptr), -1);
    EXPECT_EQ(list.FindPtr(first, 0), 1);
    EXPECT_EQ(list.FindPtr(changed), -1);
    CString text;
    list.GetItemText(2, 0, text);
    EXPECT_STREQ(text, "Anne");
    list.SortColum(1);
    EXPECT_EQ(list.GetPtr(0), second);
    std::strcpy(second, "Zut");
    list.GetItemText(0, 0, text);
    EXPECT_STREQ(text, "Zut") << "asked for anew";
    EXPECT_EQ(list.DeletePtr(first), 2);
    EXPECT_EQ(list.GetItemCount(), 1);
    EXPECT_EQ(list.GetPtr(1), nullptr);
}

}  // namespace
