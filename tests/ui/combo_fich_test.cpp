#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kestra/text/combo_fich.h>
#include <platform/window/controls.h>

#include <tests/support/temporary_folder.h>

#include "ui_support.h"

TEST(ComboFich, FillsARealComboBoxAndKeepsItsText) {
    const TemporaryFolder folder;
    for (const char* file : {"a\\un.mod", "a\\deux.mod", "b\\un.mod", "b\\trois.mod", "b\\lu.txt"})
        folder.write(file, "");
    ::SetFileAttributesA(folder.path("b\\trois.mod").c_str(), FILE_ATTRIBUTE_READONLY);
    HiddenParent parent;
    CComboBox combo;
    ASSERT_TRUE(combo.Create(WS_CHILD | CBS_DROPDOWNLIST | CBS_SORT, {0, 0, 100, 200}, &parent, 1));
    const std::string folders = folder.path("a") + ";;" + folder.path("b\\");
    const auto fill = [&](const char* file, const char* list) {
        EXPECT_EQ(ComboFich(&combo, file, list, 0), 1);
        return entriesOf(combo);
    };
    EXPECT_EQ(fill("*.mod", folders.c_str()), "deux.mod|trois.mod|un.mod|");
    combo.SetCurSel(2);
    EXPECT_EQ(fill((folder.path("a") + "\\*.mod").c_str(), nullptr), "deux.mod|[un.mod]|");
    EXPECT_EQ(fill((folder.path("b") + "/*.txt").c_str(), nullptr), "lu.txt|")
        << "the text is no longer in the list";
    EXPECT_EQ(ComboFich(nullptr, "*.mod", "", 0), -1);
    EXPECT_EQ(ComboFich(&combo, nullptr, "", 0), -1);
    ::SetFileAttributesA(folder.path("b\\trois.mod").c_str(), FILE_ATTRIBUTE_NORMAL);
}
