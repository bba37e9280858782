#include <tests/kestra/database/test_database.h>
#include <tests/support/kept_terminal.h>

TEST(TableCommand, AnswersWithTextsAndExitCodes) {
    const TestDatabase data(
        {"CREATE TABLE P (NUM INTEGER NOT NULL PRIMARY KEY, NOM VARCHAR(30), Z DOUBLE, B BLOB)",
         "INSERT INTO P VALUES (2, 'L''étang; nord', 12.5, x'0aff')",
         "INSERT INTO P VALUES (10, 'dit \"le\"' || char(10) || 'mur', NULL, NULL)",
         "CREATE VIEW V AS SELECT NUM FROM P WHERE NUM > 5"});
    const std::string base = data.path();
    const std::string page = data.folder().path("p.htm");
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        std::string out, err;  ///< what is written; of an error, a piece of it
    } cases[] = {
        {{}, exitUsage, "", "il manque la base"},
        {{base, "P", "x"}, exitUsage, "", "« x » est de trop"},
        {{base, "--vite", "x"}, exitUsage, "", "option inconnue « --vite »"},
        {{base, "P", "--sort"}, exitUsage, "", "valeur absente"},
        {{base, "P", "--csv", "--html", page}, exitUsage, "", "pas les deux"},
        {{base + "x"}, exitFailed, "", "essai.mdbx » : "},
        {{base}, exitDone, "table    P\nrequête  V\n", ""},
        {{base, "absente"}, exitFailed, "", "« absente » : "},
        {{base, "P", "--where", "NUM >"}, exitFailed, "", "« NUM > » : "},
        {{base, "P", "--sort", "RIEN"}, exitFailed, "", "« RIEN » : "},
        {{base, "V"}, exitDone, "NUM\n 10\n", ""},
        {{base, "P"},
         exitDone,
         "NUM  NOM               Z  B\n  2  L'étang; nord  12.5  0aff\n 10  dit \"le\" mur\n",
         ""},
        {{base, "--csv", "--", "P"},
         exitDone,
         "NUM;NOM;Z;B\n2;\"L'étang; nord\";12.5;0aff\n10;\"dit \"\"le\"\"\nmur\";;\n",
         ""},
        {{base, "P", "--csv", "--where", "NOM LIKE '*mur' OR Z > 100"},
         exitDone,
         "NUM;NOM;Z;B\n10;\"dit \"\"le\"\"\nmur\";;\n",
         ""},
        {{base, "P", "--sort", "NUM DESC", "--where", "Z = 12.5"},
         exitDone,
         "NUM  NOM               Z  B\n  2  L'étang; nord  12.5  0aff\n",
         ""},
        {{base, "P", "--html", page}, exitDone, "", ""},
        {{base, "P", "--html", data.folder().path("absent\\p.htm")}, exitFailed, "", "écriture impossible"},
    };
    for (auto c : cases) {
        KeptTerminal terminal;
        c.arguments.insert(c.arguments.begin(), "table");
        EXPECT_EQ(runHost(c.arguments, terminal), c.exitCode) << terminal.err;
        EXPECT_EQ(terminal.out, c.out);
        EXPECT_NE(terminal.err.find(c.err), std::string::npos) << terminal.err;
        EXPECT_EQ(terminal.err.empty(), c.err.empty()) << terminal.err;
    }
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
