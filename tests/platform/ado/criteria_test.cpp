#include <gtest/gtest.h>

#include <platform/ado/connection_string.h>
#include <platform/ado/criteria.h>
#include <platform/ole_date_time.h>
#include <tests/support/temporary_folder.h>

using namespace ado20;

TEST(Criteria, MeetOrDoNot) {
    const Variant date = Variant::date(platform::serialDate(2024, 5, 6));
    const struct {
        const char* criterion;
        Variant value;
        bool meets;
    } cases[] = {
        {"N=12", 12.5, false},
        {"N >= -1.5e+1", -15, true},
        {"N > 9007199254740993", 9007199254740992LL, false},
        {"[Nom de rue] = 'Église'", "ÉGLISE", true},
        {"\"NOM\" = 'l''abbé'", "L'ABBÉ", true},
        {"NOM like '%ur%'", "Azur", true},
        {"NOM LIKE '*z*z'", "azur", false},
        {"D < #2024-05-07#", date, true},
        {"D > '01/01/2025'", date, false},
        {"N = NULL", Variant::null(), true},
        {"N <> NULL", Variant::null(), false},
        {"B = Faux", true, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(meets(parseCriterion(c.criterion), c.value.view()), c.meets) << c.criterion;
}

TEST(Criteria, FiltersJoinByAndBeforeOr) {
    const struct {
        const char* criteria;
        bool holds;
    } cases[] = {{"A=1 OR A=2 AND A=3", true},
                 {"(A=1 OR A=2) AND A=3", false},
                 {"A=1 and A=1", true},
                 {"((A=2)) or A=3", false}};
    for (const auto& c : cases) {
        const Criteria criteria = parseCriteria(c.criteria);
        EXPECT_EQ(criteria.hold([&](std::size_t i) { return meets(criteria.list[i], Variant(1).view()); }),
                  c.holds)
            << c.criteria;
    }
}

TEST(Criteria, RefuseWhatDoesNotParse) {
    for (const char* wrong :
         {"", "NOM", "NOM =", "= 3", "NOM = 'a", "NOM = #32/01/2024#", "NOM LIKE 3", "NOM < NULL", "N = 3 x",
          "N = abc", "[NOM = 3", "N == 3", "(N = 3", "N = 3)", "N = 3 AND", "N = 0x1F"}) {
        EXPECT_THROW(parseCriteria(wrong), _com_error) << wrong;
    }
    EXPECT_THROW(parseCriteria(std::string(100000, '(') + "N=1"), _com_error);
    for (const char* wrong : {"", "A,", "A DOWN", "A DESC ASC", ","})
        EXPECT_THROW(parseSort(wrong), _com_error) << wrong;
    std::string keys;
    for (const SortKey& key : parseSort("NOM desc, [N 2] ASC,C"))
        keys += key.field + (key.descending ? " down;" : ";");
    EXPECT_EQ(keys, "NOM down;N 2;C;");
}

TEST(ConnectionString, FindsItems) {
    const ConnectionString string(
        "Provider =SQLite; data source=\"C:\\a;b\\\"\"x.mdb\" ;Mode= ReadOnly;x;=y;MODE=Read");
    EXPECT_EQ(string.value("PROVIDER"), "SQLite");
    EXPECT_EQ(string.value("Data Source"), "C:\\a;b\\\"x.mdb");
    EXPECT_EQ(string.value("mode"), "Read");
    EXPECT_EQ(string.find("x"), nullptr);
    EXPECT_EQ(ConnectionString(string.text()), string);
    EXPECT_EQ(modeOfText("ReadWrite|Share Deny None"), adModeReadWrite | adModeShareDenyNone);
    EXPECT_EQ(modeOfText("ReadOnly"), adModeRead);
}

TEST(ConnectionString, DataLinksHoldOne) {
    const TemporaryFolder folder;
    const std::string wide =
        "[oledb]\r\n; Everything after this line\r\nProvider=SQLite;Data Source=C:\\é.mdb\r\n";
    std::string utf16 = "\xFF\xFE";
    for (const char c : wide) utf16.append({c, '\0'});
    for (const std::string& content : {wide, utf16})
        EXPECT_EQ(readDataLink(folder.write("lien.udl", content).c_str()),
                  "Provider=SQLite;Data Source=C:\\é.mdb");
    EXPECT_EQ(resolveDataLink("File Name=" + folder.path("absent.udl")), "");
}
