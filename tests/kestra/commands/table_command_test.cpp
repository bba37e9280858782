#include <tests/kestra/database/test_database.h>
#include <tests/support/command_answers.h>

TEST(TableCommand, AnswersWithTextsAndExitCodes) {
    const TestDatabase data(
        {"CREATE TABLE P (NUM INTEGER NOT NULL PRIMARY KEY, NOM VARCHAR(30), Z DOUBLE, B BLOB)",
         "INSERT INTO P VALUES (2, 'L''étang; nord', 12.5, x'0aff')",
         "INSERT INTO P VALUES (10, 'dit \"le\"' || char(10) || 'mur', NULL, NULL)",
         "CREATE VIEW V AS SELECT NUM FROM P WHERE NUM > 5"});
    const std::string base = data.path();
    const std::string page = data.folder().path("p.htm"), absent = data.folder().path("absent\\p.htm");
    const std::string table = "NUM  NOM               Z  B\n  2  L'étang; nord  12.5  0aff\n";
    const std::string head = "NUM;NOM;Z;B\n", wall = "10;\"dit \"\"le\"\"\nmur\";;\n";
    const std::vector<CommandAnswer> cases = {
        {{"table"}, exitUsage, "", "il manque la base"},
        {{"table", base, "P", "x"}, exitUsage, "", "« x » est de trop"},
        {{"table", base, "--vite", "x"}, exitUsage, "", "option inconnue « --vite »"},
        {{"table", base, "P", "--sort"}, exitUsage, "", "valeur absente"},
        {{"table", base, "P", "--csv", "--html", page}, exitUsage, "", "pas les deux"},
        {{"table", base + "x"}, exitFailed, "", "essai.mdbx » : "},
        {{"table", base}, exitDone, "table    P\nrequête  V\n", ""},
        {{"table", base, "absente"}, exitFailed, "", "« absente » : "},
        {{"table", base, "P", "--where", "NUM >"}, exitFailed, "", "« NUM > » : "},
        {{"table", base, "P", "--sort", "RIEN"}, exitFailed, "", "« RIEN » : "},
        {{"table", base, "V"}, exitDone, "NUM\n 10\n", ""},
        {{"table", base, "P"}, exitDone, table + " 10  dit \"le\" mur\n", ""},
        {{"table", base, "--csv", "--", "P"}, exitDone, head + "2;\"L'étang; nord\";12.5;0aff\n" + wall, ""},
        {{"table", base, "P", "--csv", "--where", "NOM LIKE '*mur' OR Z > 100"}, exitDone, head + wall, ""},
        {{"table", base, "P", "--sort", "NUM DESC", "--where", "Z = 12.5"}, exitDone, table, ""},
        {{"table", base, "P", "--html", page}, exitDone, "", ""},
        {{"table", base, "P", "--html", absent}, exitFailed, "", "écriture impossible"},
    };
    expectAnswers(cases, true);
    const std::string html = data.folder().read("p.htm");
    EXPECT_EQ(html.substr(0, 3), "\xEF\xBB\xBF");
    EXPECT_NE(html.find(">L'\xC3\xA9tang; nord</td>"), std::string::npos);
    EXPECT_NE(html.find(">dit \"le\"<br>mur</td>"), std::string::npos);
    EXPECT_EQ(html.substr(html.size() - 14), "</body></html>");
}

TEST(TableCommand, ALargeTableShowsItsProgress) {
    const TestDatabase data(
        {"CREATE TABLE P (NUM INTEGER NOT NULL PRIMARY KEY)",
         "INSERT INTO P WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i "
         "< 20001) SELECT i FROM n"});
    KeptTerminal terminal;
    EXPECT_EQ(runHost(std::vector<std::string>{"table", data.path(), "P", "--csv"}, terminal), exitDone);
    EXPECT_NE(terminal.err.find("\rTable : 100 %"), std::string::npos);
    EXPECT_EQ(terminal.out.substr(terminal.out.size() - 12), "20000\n20001\n");
}
