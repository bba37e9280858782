#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kestra/frame/frame_hooks.h>
#include <kestra/text/combo_fich.h>

#include <tests/support/temporary_folder.h>

using Names = std::vector<std::string>;

TEST(ComboFich, NamesOfSeveralFoldersEachOnce) {
    const TemporaryFolder folder;
    for (const char* file :
         {"a\\un.mod", "a\\Deux.MOD", "b\\un.mod", "b\\trois.mod", "b\\autre.txt", "c\\UN.mod"})
        folder.write(file, "");
    const std::string a = folder.path("a"), b = folder.path("b\\"), c = folder.path("c");
    EXPECT_EQ(text::comboNames((a + "\\*.mod").c_str(), nullptr, 0), (Names{"Deux.MOD", "un.mod"}));
    EXPECT_EQ(text::comboNames("*.mod", (a + ";;" + b).c_str(), 0),
              (Names{"Deux.MOD", "trois.mod", "un.mod"}));
    EXPECT_EQ(text::comboNames((a + "/*.MOD").c_str(), (b + ";" + c).c_str(), 0),
              (Names{"Deux.MOD", "trois.mod", "UN.mod", "un.mod"}));
    EXPECT_EQ(text::comboNames("*.mod", "", 0), Names{});
    EXPECT_EQ(text::comboNames(nullptr, a.c_str(), 0), Names{});

    static std::string project;
    project = b + "affaire.cht";
    const kestra::ProjectHooks* before = kestra::projectHooks();
    static const kestra::ProjectHooks hooks{[] { return project.c_str(); }, nullptr, nullptr, nullptr,
                                            nullptr};
    kestra::setProjectHooks(hooks);
    EXPECT_EQ(text::comboNames("*.mod", nullptr, 1), (Names{"trois.mod", "un.mod"}));
    EXPECT_EQ(text::comboNames("*.mod", nullptr, 0), Names{});
    if (before != nullptr) kestra::setProjectHooks(*before);
}

TEST(ComboFich, RepeatedItemsAreThoseThatEqualTheOneBefore) {
    EXPECT_EQ(text::repeatedItems({"a", "a", "", "a", "A", "b", "a"}), (std::vector<int>{3, 1}));
    EXPECT_EQ(text::repeatedItems({"", ""}), std::vector<int>{});
}
