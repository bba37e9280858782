#include <gtest/gtest.h>

#include <string>

#include <kestra/project/fichder.h>
#include <platform/window/controls.h>

#include <tests/support/settings_folders.h>

#include "ui_support.h"

TEST(Fichder, KeepsARealComboBoxesRecentFiles) {
    const SettingsFolders settings;
    settings.local("fichder",
                   "[cht]\r\nFILE0=C:\\a.cht\r\nFILE1=C:\\b.cht\r\nFILE2=C:\\c.cht\r\nFILE3=d\r\n");
    HiddenParent parent;
    CComboBox combo;
    ASSERT_TRUE(combo.Create(WS_CHILD | CBS_DROPDOWN, {0, 0, 100, 200}, &parent, 1));
    const auto items = [&] { return "(" + textOf(combo) + ")" + entriesOf(combo); };
    Cfichder list("cht", &combo, 3);
    list.ReadList();
    EXPECT_EQ(items(), "(C:\\a.cht)C:\\a.cht|C:\\b.cht|C:\\c.cht|");
    list.Add("c:\\B.CHT", 1);
    EXPECT_EQ(items(), "(C:\\a.cht)C:\\a.cht|C:\\b.cht|C:\\c.cht|");
    list.Add("c:\\B.CHT", 0);
    list.Add("*.cht", 0);
    list.Add("C:\\été.cht", 0);
    EXPECT_EQ(items(), "(C:\\a.cht)C:\\été.cht|*.cht|c:\\B.CHT|C:\\a.cht|C:\\c.cht|");
    list.WriteList();
    EXPECT_EQ(settings.local("fichder"),
              "[cht]\r\nFILE0=C:\\été.cht\r\nFILE1=c:\\B.CHT\r\nFILE2=C:\\a.cht\r\nFILE3=d\r\n");
    combo.ResetContent();
    combo.SetWindowText("typed");
    list.ReadList();
    EXPECT_EQ(items(), "(typed)C:\\été.cht|c:\\B.CHT|C:\\a.cht|");
    Cfichder none("cht", nullptr, 3);
    none.Add("x", 0);
    none.ReadList();
    none.WriteList();
}
