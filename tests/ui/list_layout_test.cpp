#include <cstring>
#include <functional>
#include <map>
#include <utility>

#include <dorsel/globals.h>
#include <gtest/gtest.h>
#include <tests/support/counted_registry.h>

#include "ui_support.h"

namespace {

const std::string layoutsRoot = "Software\\Kestra Essais";

/// Lists whose layouts stand below a branch of the registry that is deleted at the end.
class ListLayout : public testing::Test {
  protected:
    ~ListLayout() override { platform::theRegistry().deleteTree(HKEY_CURRENT_USER, layoutsRoot.c_str()); }

    HiddenParent parent;
    TestList list{parent, 4};
    const std::string path = layoutsRoot + "\\Clients";

    /// The values of a key, sorted by name: name=number or name='text', with the type of neither told.
    static std::string values(const std::string& keyPath) {
        platform::RegistryKey key;
        if (key.open(HKEY_CURRENT_USER, keyPath.c_str(), KEY_READ) != ERROR_SUCCESS) return "no key";
        std::map<std::string, std::string> found;
        for (DWORD index = 0;; ++index) {
            char name[100], data[300] = {};
            DWORD nameSize = sizeof name, type = 0, size = sizeof data;
            if (::RegEnumValueA(key.get(), index, name, &nameSize, nullptr, &type,
                                reinterpret_cast<BYTE*>(data), &size) != ERROR_SUCCESS) {
                break;
            }
            std::int32_t number = 0;
            std::memcpy(&number, data, sizeof number);
            if (type == REG_DWORD) found[name] = std::to_string(number);
            if (type == REG_SZ) found[name] = "'" + std::string(data) + "'" + std::to_string(size);
        }
        std::string all;
        for (const auto& [name, value] : found) all += name + "=" + value + " ";
        return all;
    }
    void put(const std::string& key, const char* name, DWORD type, const void* data, DWORD size) const {
        platform::RegistryKey open;
        ASSERT_EQ(open.create(HKEY_CURRENT_USER, (path + key).c_str()), ERROR_SUCCESS);
        platform::theRegistry().set(open.get(), name, type, data, size);
    }
    void put(const std::string& key, const char* name, std::int32_t value) const {
        put(key, name, REG_DWORD, &value, sizeof value);
    }
    /// Caption and width of each column from left to right.
    static std::string shown(CLraListCtrl& each) {
        std::string all;
        for (int place = 0; place < each.m_HeaderCtrl.GetItemCount(); ++place) {
            const int col = each.m_HeaderCtrl.OrderToIndex(place);
            char caption[100];
            each.m_HeaderCtrl.GetItemText(col, caption, sizeof caption);
            all += caption + (":" + std::to_string(each.GetColumnWidth(col))) + " ";
        }
        return all;
    }
    void arrange() {
        list.SetColumnWidth(1, -120);
        list.SetColumnWidth(3, 33);
        int order[] = {0, 3, 1, 2};
        list.SendMessage(LVM_SETCOLUMNORDERARRAY, 4, reinterpret_cast<LPARAM>(order));
        list.m_ColSort = -3;
        list.GetMyListHeader(2)->ReadOnly = 1;
        list.GetMyListHeader(2)->ColStyle = 2;
    }
};

TEST_F(ListLayout, ValuesStandUnderTheirNames) {
    arrange();
    list.m_HeaderCtrl.SetItemText(2, "Été\nlong");
    EXPECT_EQ(list.SaveHeadToReg(path.c_str(), nullptr), 4);
    EXPECT_EQ(values(path), "NCol=4 m_ColSort=-3 ");
    EXPECT_EQ(values(path + "\\Col_001"),
              "ColStyle=0 FtypeData=84 Name='c1'3 Order=2 ReadOnly=0 Width=-120 ");
    EXPECT_EQ(values(path + "\\Col_002"),
              "ColStyle=2 FtypeData=84 Name='Été\nlong'9 Order=3 ReadOnly=1 Width=60 ");
    EXPECT_STREQ(list.m_RegName, path.c_str());

    TestList fewer(parent, 1);
    fewer.SetItemHeight(30);
    EXPECT_EQ(fewer.SaveHeadToReg(path.c_str(), nullptr), 1);
    EXPECT_EQ(values(path), "ItemHeight=30 NCol=1 m_ColSort=1 ");
    EXPECT_EQ(values(path + "\\Col_001"), "no key");
    fewer.m_RegName.Empty();
    list.m_RegName.Empty();

    const char* const before = std::exchange(g_RegTOREL_32, layoutsRoot.c_str());
    EXPECT_EQ(list.SaveHeadToReg("Court", nullptr), 4);
    EXPECT_EQ(values(layoutsRoot + "\\CLraListCtrl\\Court"), "NCol=4 m_ColSort=-3 ");
    list.m_RegName.Empty();
    EXPECT_EQ(list.SaveHeadToReg("", nullptr), 0);
    g_RegTOREL_32 = before;
}

TEST_F(ListLayout, AListComesBackAsTheUserLeftIt) {
    arrange();
    list.m_RegName = path.c_str();
    const std::string left = shown(list);
    list.DestroyWindow();
    TestList again(parent, 4);
    EXPECT_EQ(again.LoadHeadFromReg(path.c_str(), 6, nullptr), 4);
    EXPECT_EQ(shown(again), left);
    EXPECT_EQ(again.m_ColSort, -3);
    EXPECT_EQ(again.GetMyListHeader(2)->ColStyle, 0) << "kinds of columns are the program's";

    TestList grown(parent, 5);
    EXPECT_EQ(grown.LoadHeadFromReg(path.c_str(), 6, nullptr), 0) << "a column was added to the program";
    EXPECT_EQ(grown.m_ColSort, -3);
    EXPECT_EQ(grown.LoadHeadFromReg(nullptr, 7, nullptr), 4);
    EXPECT_EQ(shown(grown), "c0:60 c3:33 c1:-120 c2:60 c4:60 ");
    EXPECT_EQ(grown.LoadHeadFromReg("Kestra Essais\\rien", 7, nullptr), 0);
    grown.m_RegName = again.m_RegName = "";
}

TEST_F(ListLayout, ACaptionOfMoreLinesMakesTheHeaderHigher) {
    list.m_HeaderCtrl.SetItemText(1, "trois\nlignes\nhautes");
    list.SaveHeadToReg(path.c_str(), nullptr);
    TestList again(parent, 4);
    const LONG before = again.m_HeaderCtrl.GetWindowRect().Height();
    again.LoadHeadFromReg(path.c_str(), 0, nullptr);
    EXPECT_GT(again.m_HeaderCtrl.GetWindowRect().Height(), 2 * before);
}

TEST_F(ListLayout, TheKeyMayBeTheCallersAndIsThenNotCleared) {
    HKEY key = nullptr;
    EXPECT_EQ(list.SaveHeadToReg(path.c_str(), &key), 4);
    ASSERT_NE(key, nullptr);
    const std::int32_t mark = 7;
    platform::theRegistry().set(key, "Mark", REG_DWORD, &mark, sizeof mark);
    EXPECT_EQ(list.SaveHeadToReg(nullptr, &key), 4);
    EXPECT_EQ(values(path), "Mark=7 NCol=4 m_ColSort=1 ");
    EXPECT_EQ(list.LoadHeadFromReg(nullptr, 6, &key), 4);
    ::RegCloseKey(key);
    key = nullptr;
    EXPECT_EQ(list.LoadHeadFromReg("Kestra Essais\\rien", 6, &key), 0);
    EXPECT_EQ(key, nullptr);
    list.m_RegName.Empty();
}

TEST_F(ListLayout, DamagedLayoutsNeverBreakAListAndStayWhereTheyAre) {
    struct Case {
        const char* what;
        std::function<void()> damage;
        int flags, restored;
        bool replaced;  // by the automatic save
    };
    const std::string giant(5000, 'g');
    const auto spoilWidths = [&] {
        for (const char* key : {"\\Col_000", "\\Col_001", "\\Col_002", "\\Col_003"})
            put(key, "Width", REG_BINARY, "xyz", 3);
    };
    const Case cases[] = {
        {"nothing", [] {}, 6, 4, true},
        {"a number as text", [&] { put("", "NCol", REG_SZ, "4", 2); }, 6, 0, false},
        {"a number of 8 bytes", [&] { put("", "NCol", REG_DWORD, "\4\0\0\0\0\0\0", 8); }, 6, 0, false},
        {"a million columns", [&] { put("", "NCol", 1000000); }, 7, 0, false},
        {"minus one column", [&] { put("", "NCol", -1); }, 7, 0, false},
        {"more columns than there are", [&] { put("", "NCol", 5000); }, 7, 4, true},
        {"no columns", [&] { put("", "NCol", 0); }, 7, 0, true},
        {"impossible sort state", [&] { put("", "m_ColSort", INT32_MIN); }, 6, 4, true},
        {"impossible height", [&] { put("", "ItemHeight", INT32_MAX); }, 6, 4, true},
        {"giant width", [&] { put("\\Col_001", "Width", INT32_MAX); }, 6, 3, true},
        {"giant caption", [&] { put("\\Col_002", "Name", REG_SZ, giant.data(), 5000); }, 6, 4, true},
        {"caption of another type", [&] { put("\\Col_002", "Name", REG_BINARY, "x", 1); }, 6, 4, true},
        {"caption without an end", [&] { put("\\Col_002", "Name", REG_SZ, "c2", 2); }, 6, 4, true},
        {"no usable width at all", spoilWidths, 6, 0, false}};
    for (const Case& each : cases) {
        list.SaveHeadToReg(path.c_str(), nullptr);
        each.damage();
        const std::string damaged = values(path) + values(path + "\\Col_001");
        TestList victim(parent, 4);
        EXPECT_EQ(victim.LoadHeadFromReg(path.c_str(), each.flags, nullptr), each.restored) << each.what;
        EXPECT_EQ(shown(victim), "c0:60 c1:60 c2:60 c3:60 ") << each.what;
        victim.m_ColSort = 2;
        victim.DestroyWindow();
        EXPECT_EQ(values(path) + values(path + "\\Col_001") == damaged, !each.replaced) << each.what;
    }
    list.m_RegName.Empty();
}

TEST_F(ListLayout, WhereTheRegistryRefusesNothingIsLostAndNoKeyStaysOpen) {
    list.SaveHeadToReg(path.c_str(), nullptr);
    const std::string saved = values(path);
    CountedRegistry registry;
    for (int allowed = 0; allowed < 50; ++allowed) {
        registry.calls = 0;
        registry.allowed = allowed;
        TestList victim(parent, 4);
        const int restored = victim.LoadHeadFromReg(path.c_str(), 6, nullptr);
        victim.m_ColSort = 2;
        if (restored == 0) registry.allowed = 1 << 30;
        victim.DestroyWindow();
        registry.allowed = 1 << 30;
        EXPECT_EQ(registry.openKeys, 0) << allowed;
        if (restored == 0) {
            EXPECT_EQ(values(path), saved) << allowed;
        }
        list.SaveHeadToReg(path.c_str(), nullptr);
    }
    registry.calls = 0;
    registry.allowed = 0;
    EXPECT_EQ(list.SaveHeadToReg(path.c_str(), nullptr), 0);
    registry.allowed = 1 << 30;
    EXPECT_EQ(values(path), saved);
    list.m_RegName.Empty();
}

TEST_F(ListLayout, AListWithoutColumnsIsNotSavedAtTheEnd) {
    list.SaveHeadToReg(path.c_str(), nullptr);
    TestList bare(parent, 0);
    bare.m_RegName = path.c_str();
    bare.DestroyWindow();
    EXPECT_EQ(values(path), "NCol=4 m_ColSort=1 ");
    list.m_RegName.Empty();
}

TEST_F(ListLayout, AtMostEightCallsAColumn) {
    TestList wide(parent, 200);
    CountedRegistry registry;
    EXPECT_EQ(wide.SaveHeadToReg(path.c_str(), nullptr), 200);
    EXPECT_LE(registry.calls, 200 * 8 + 7);
    registry.calls = 0;
    EXPECT_EQ(wide.LoadHeadFromReg(path.c_str(), 7, nullptr), 200);
    EXPECT_LE(registry.calls, 200 * 5 + 5);
    wide.m_RegName.Empty();
}

}  // namespace
