#include <gtest/gtest.h>

#include <vector>

#include <kestra/project/recent_files.h>

#include "../../support/settings_folders.h"

namespace {

struct ListedEntries : kestra::RecentEntries {
    int count() const override { return static_cast<int>(texts.size()); }
    std::string at(int index) const override { return texts[static_cast<std::size_t>(index)]; }
    void insertFirst(const std::string& text) override { texts.insert(texts.begin(), text); }
    void remove(int index) override { texts.erase(texts.begin() + index); }
    std::vector<std::string> texts;
};

using Texts = std::vector<std::string>;

TEST(RecentFiles, APathIsAddedOnceAtTheTop) {
    const std::tuple<Texts, bool, Texts> cases[] = {
        {{"a", "b", "c", "B"}, false, {"B", "a", "c"}},
        {{"a", ""}, false, {"B", "a"}},
        {{"", "a"}, true, {"", "a"}},
        {{"a"}, true, {"B", "a"}},
    };
    for (const auto& [before, keep, after] : cases) {
        ListedEntries list;
        list.texts = before;
        kestra::addRecent(list, "B", keep);
        EXPECT_EQ(list.texts, after);
    }
}

TEST(RecentFiles, TheSettingsKeepTheListNewestFirst) {
    const SettingsFolders settings;
    settings.local("fichder", "[cht]\r\nFILE2=old\r\nFILE3=older\r\nFILE4=beyond\r\n");
    ListedEntries list;
    list.texts = {"C:\\a.cht", "C:\\a.cht", "", "*.cht", "C:\\é.cht", "C:\\c.cht"};
    kestra::writeRecent(list, "cht", 2);
    EXPECT_EQ(settings.local("fichder"),
              "[cht]\r\nFILE2=old\r\nFILE3=older\r\nFILE4=beyond\r\nFILE0=C:\\a.cht\r\nFILE1=C:\\é.cht\r\n")
        << "Kept: keys of a longer list written before are not erased";
    list.texts = {"OLD"};
    kestra::readRecent(list, "cht", 4);
    EXPECT_EQ(list.texts, (Texts{"C:\\a.cht", "C:\\é.cht", "older", "OLD"}));
    list.texts = {"x", ""};
    kestra::readRecent(list, "cht", 4);
    EXPECT_EQ(list.texts, (Texts{"x", ""})) << "Kept: an empty entry ends the search as an equal one does";
}

}  // namespace
