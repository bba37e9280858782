#include <kestra/controls/column_layout.h>

#include <gtest/gtest.h>

namespace {

using controls::ShownColumn;
using Stored = std::vector<std::optional<controls::StoredColumn>>;

TEST(ColumnLayout, PathsOfLayoutsNeverNameABranchOfTheHive) {
    const std::pair<const char*, const char*> cases[] = {{"Clients", "R\\F\\Clients"},
                                                         {"Mes listes\\Clients", "Mes listes\\Clients"},
                                                         {"\\Mes listes\\Clients\\", "Mes listes\\Clients"},
                                                         {"", ""},
                                                         {"\\\\\\", ""},
                                                         {"Software\\", ""}};
    for (const auto& [name, path] : cases) EXPECT_EQ(controls::layoutPath("R", "F", name), path) << name;
    EXPECT_EQ(controls::columnKeyName(0) + controls::columnKeyName(42) + controls::columnKeyName(1000),
              "Col_000Col_042Col_1000");
}

/// Applies a plan and writes the columns down from left to right: caption:width each, a hidden one's width
/// in negative.
std::string applied(const Stored& stored, std::vector<ShownColumn> shown, int flags, int restored) {
    const controls::LayoutPlan plan = controls::planLayout(stored, shown, flags);
    EXPECT_EQ(plan.restored, restored);
    for (const controls::ColumnChange& change : plan.changes) {
        ShownColumn& column = shown[static_cast<std::size_t>(change.column)];
        if (change.caption) column.caption = *change.caption;
        if (change.width) column.width = *change.width;
    }
    std::string all;
    for (std::size_t place = 0; place < shown.size(); ++place) {
        const ShownColumn& column =
            shown[plan.display.empty() ? place : static_cast<std::size_t>(plan.display[place])];
        all += column.caption + ":" + std::to_string(column.width) + " ";
    }
    return all;
}

const std::vector<ShownColumn> threeColumns = {{"Nom", 50, 0}, {"Âge", 0, 1}, {"Ville", 70, 2}};

TEST(ColumnLayout, EachFlagRestoresWhatItNames) {
    const Stored saved = {{{"NOM", 51, 2}}, {{"âge", -61, 0}}, {{"Pays", 71, 1}}};
    struct Case {
        int flags, restored;
        const char* result;
    };
    for (const Case& each : {Case{0, 3, "âge:-61 Pays:70 NOM:50 "},
                             {2, 3, "âge:-61 Pays:71 NOM:51 "},
                             {4, 3, "âge:-61 Pays:70 NOM:50 "},
                             {6, 3, "âge:-61 Pays:71 NOM:51 "},
                             {1, 2, "âge:-61 Ville:70 NOM:50 "},
                             {7, 2, "âge:-61 Ville:70 NOM:51 "}}) {
        EXPECT_EQ(applied(saved, threeColumns, each.flags, each.restored), each.result) << each.flags;
    }
}

TEST(ColumnLayout, SavedColumnsFindTheirCaptionsAfterTheProgramChanged) {
    const Stored saved = {{{"Ville", 71, 0}}, {{"Disparue", 99, 1}}, {}, {{"Nom", 51, 7}}, {{"âge", 61, 3}}};
    EXPECT_EQ(applied(saved, threeColumns, 7, 3), "Ville:71 âge:61 Nom:51 ");
}

TEST(ColumnLayout, EveryPermutationComesBackAsItWas) {
    const std::vector<ShownColumn> shown = {{"0", 9, 0}, {"1", 9, 1}, {"2", 9, 2}, {"3", 9, 3}, {"4", 9, 4}};
    std::vector<int> order = {0, 1, 2, 3, 4};
    do {
        Stored saved;
        std::vector<int> display(5);
        for (int column = 0; column < 5; ++column) {
            const int place = order[static_cast<std::size_t>(column)];
            saved.push_back(controls::StoredColumn{std::to_string(column), 9, place});
            display[static_cast<std::size_t>(place)] = column;
        }
        EXPECT_EQ(controls::planLayout(saved, shown, 6).display, display);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(ColumnLayout, DamagedValuesLeaveColumnsAsTheyAre) {
    constexpr std::int32_t least = INT32_MIN, most = INT32_MAX;
    const struct {
        Stored saved;
        int flags, restored, damaged;
        const char* result;
    } cases[] = {{{{{"a", {}, 0}}}, 6, 0, 1, "Nom:50 Âge:0 Ville:70 "},
                 {{{{"a", most, 0}}, {{"b", least, 1}}, {{"c", 10000, 2}}}, 6, 1, 2, "Nom:50 Âge:0 c:10000 "},
                 {{{{"a", 33, {}}}}, 6, 0, 1, "Nom:33 Âge:0 Ville:70 "},
                 // Values that the flags do not need are not asked for.
                 {{{}, {}, {{"c", {}, {}}}}, 0, 1, 0, "Nom:50 Âge:0 c:70 "},
                 {{{{"a", 1, most}}, {{"b", 2, least}}, {{"c", 3, -1}}}, 6, 0, 3, "Nom:1 Âge:2 Ville:3 "},
                 // Positions beyond the last, one position for all, more columns than the list has, no name.
                 {{{{"a", 1, 900}}, {{"b", 2, 70}}, {{"c", 3, 8}}}, 6, 3, 0, "c:3 b:2 a:1 "},
                 {{{{"a", 1, 1}}, {{"b", 2, 1}}, {{"c", 3, 1}}}, 6, 3, 0, "a:1 b:2 c:3 "},
                 {Stored(9000, controls::StoredColumn{"x", 1, 1}), 7, 0, 0, "Nom:50 Âge:0 Ville:70 "},
                 {{{{{}, 41, 0}}}, 7, 1, 0, "Nom:41 Âge:0 Ville:70 "}};
    for (const auto& each : cases) {
        SCOPED_TRACE(&each - cases);
        EXPECT_EQ(applied(each.saved, threeColumns, each.flags, each.restored), each.result);
        EXPECT_EQ(controls::planLayout(each.saved, threeColumns, each.flags).damaged, each.damaged);
    }
    EXPECT_EQ(controls::planLayout({{{"a", 1, 1}}}, {}, 7).restored, 0) << "a list without columns";
}

}  // namespace
