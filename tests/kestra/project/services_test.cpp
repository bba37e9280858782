#include <gtest/gtest.h>

#include <chrono>
#include <cstring>

#include <kestra/project/chantier.h>
#include <kestra/project/services_file.h>

#include "../../support/recorders.h"
#include "../../support/settings_folders.h"

namespace {

class Services : public testing::Test {
  protected:
    void write(const std::string& lines) { m_settings.local("services", lines); }
    std::string folderOf(const char* code) {
        char folder[260] = "before";
        const int length = Cchantier::Serv_dir(code, folder);
        EXPECT_EQ(length, static_cast<int>(std::strlen(folder)));
        return folder;
    }
    std::string path(const char* name) { return m_settings.folder().path(name); }
    SettingsFolders m_settings;
    RecordingPrompt m_prompt;
    platform::Replaced<platform::Prompt> m_inForce{platform::replacePrompt, m_prompt};
};

TEST_F(Services, RulesMakeAFolderOfACode) {
    const struct {
        const char *line, *code, *folder;
    } cases[] = {
        {"1000;1999;D:\\SERV\\;x", "1234", "D:\\SERV\\1234\\"},
        {"1000;1999;D:\\SERV\\;x", "a1234-B", "D:\\SERV\\1234\\"},
        {"1000;1999;D:\\SERV\\;x", "2000", ""},
        {"1000;1999;D:\\SERV\\;x", "0999", ""},
        {"1000;1999;D:\\SERV\\;", "1234", "D:\\SERV\\"},
        {"1000;1999;D:\\SERV", "1234", "D:\\SERV\\"},
        {"1000;1999", "1234", ""},
        {"1;9;D:\\;X", "12", "D:\\ACAD12\\"},
        {"a;b;D:\\;  xyz", "Abc", "D:\\ABC\\"},
        {"1200;1299;D:\\", "12*", "D:\\"},
        {"1200;1299;D:\\", "12", ""},
        {"1;9;D:\\;5>s(1,2)\\x", "12345", "D:\\12\\12345\\"},
        {"1;9;D:\\;5>s(1,2)\\x", "1234", ""},
        {"1;9;D:\\;5>a;2>b", "1234", "D:\\b\\"},
        {"1;9;D:\\;5>a;", "1234", "D:\\"},
        {"1;9;D:\\;5>a;x", "1234", "D:\\1234\\"},
        {"1;9;D:\\;5x", "1234", "D:\\51234\\"},
        {"1;9;D:\\;s(0,1)-s(3,9)s(2", "1234", "D:\\1-34\\"},
        {"1;9;D:\\;s(2;3)z", "1234", "D:\\"},
        {"1;9;D:\\;s(2/3]zxy", "1234", "D:\\234zxy\\"},
        {"1;9;D:\\;s(99999999999999999999,1)s(1,-5)s(", "1234", "D:\\"},
        {"1;9;D:\\t\xE9t\xE9;x", "1", "D:\\t\\"},
        {"1;9;D:\\\x0Ex\x0Dy;x", "1", "D:\\\x0Ex\\"},
        {"1;9;..L\\S\\;x", "1", "LOCALS\\1\\"},
        {"1;1;D:\\;5>no\n1;9;E:\\", "1", "E:\\"},
        {"1;9;D:\\;-x", "123456-8", "D:\\-123456\\"},
        {"1;9;D:\\;x", "12345678-9", "D:\\12345678-9\\"},
    };
    for (const auto& c : cases) {
        write("; comment\r\n" + std::string(c.line) + "\r\n");
        std::string expected = c.folder;
        if (expected.starts_with("LOCAL"))
            expected = m_settings.folder().path("local\\") + expected.substr(5);
        EXPECT_EQ(folderOf(c.code), expected) << c.line << " " << c.code;
    }
    write("1;9;D:\\;" + std::string(300, 'x'));
    EXPECT_EQ(folderOf("1"), "D:\\1\\");
    write("1;9;D:\\;" + std::string(300, 'y'));
    EXPECT_EQ(folderOf("1"), "") << "a folder that does not fit";
    write("1;9;" + std::string(2000, 'y') + "\n1;9;D:\\");
    EXPECT_EQ(folderOf("1"), "");
    std::string anything;
    for (int c = 1; c < 256; ++c) anything += "1;9;D:\\" + std::string(1, static_cast<char>(c)) + ";5>\n";
    write(anything + "1;9;E:\\");
    EXPECT_EQ(folderOf("1"), "D:\\") << "what ends the line leaves a folder without rule";
}

TEST_F(Services, TheNetworksFileServesWhenThereIsNoLocalOne) {
    char folder[260];
    EXPECT_EQ(Cchantier::Serv_dir("1", folder), -1);
    EXPECT_EQ(m_prompt.texts.at(0), "**** VOUS devez Creer un fichier 'SERVICES.INI' en " + path("local\\") +
                                        " ou 'SERVICES.DEF' en " + path("network\\"));
    EXPECT_EQ(m_prompt.styles.at(0), platform::iconExclamation);
    m_settings.folder().write("network\\ini\\services.def", "1;9;~\\S;x");
    EXPECT_EQ(folderOf("1"), path("network\\S1\\"));
}

TEST_F(Services, ProjectsAreFiledUnderTheirFolders) {
    write("1000;1999;D:\\SERV\\;x\r\n2000;2999;D:\\SERV\\;X\r\n");
    const struct {
        const char *project, *code;
    } projects[] = {
        {"d:\\serv\\1234\\a.cht", "1234"},
        {"D:\\SERV\\ACAD2500\\a.cht", "2500"},
        {"D:\\SERV\\1234\\b\\a.cht", ""},
        {"E:\\SERV\\1234\\a.cht", ""},
        {"D:\\a.cht", ""},
        {"a.cht", ""},
    };
    for (const auto& c : projects) {
        char code[260] = "before";
        const Cchantier resets;
        EXPECT_EQ(Cchantier::Dir_serv(c.project, code), static_cast<int>(std::strlen(c.code)));
        EXPECT_STREQ(code, c.code) << c.project;
    }
    const struct {
        const char *code, *affair;
    } codes[] = {{"1234-B", "1234"}, {"1234/B-2", "1234"}, {"-B", "-B"}, {"", ""}, {"1234", "1234"}};
    for (const auto& c : codes) EXPECT_EQ(GetAffaire(c.code), c.affair);
    const struct {
        const char *service, *name, *serviceAfter, *full, *shortName;
    } names[] = {
        {"1234-B", "plan", "D:\\SERV\\1234\\", "D:\\SERV\\1234\\plan.CHT", "plan"},
        {"E:\\x\\", "a/b.dxf", "E:\\x\\", "E:\\x\\a\\b.dxf", "a\\b.dxf"},
        {"E:\\x\\", "F:\\plan", "E:\\x\\", "F:\\plan.CHT", "F:\\plan"},
        {"none", "plan", "none", "noneplan.CHT", "plan"},
        {"\\\\srv\\x\\", "plan", "\\\\srv\\x\\", "\\srv\\x\\plan.CHT", "\\srv\\x\\plan"},
    };
    for (const auto& c : names) {
        CString service = c.service, name = c.name;
        EXPECT_EQ(Cchantier::GetPathCht(service, name), static_cast<int>(std::strlen(c.full)));
        EXPECT_EQ(service, c.serviceAfter) << "Kept: a share's leading backslashes become one";
        EXPECT_EQ(name, c.full);
        EXPECT_EQ(Cchantier::GetNomCourtCht(service, name), static_cast<int>(std::strlen(c.shortName)));
        EXPECT_EQ(name, c.shortName);
    }
    CString none, name = "plan";
    EXPECT_EQ(Cchantier::GetPathCht(none, name), 0);
    EXPECT_EQ(name, "plan");
}

TEST_F(Services, AMovedProjectIsFoundAndBroughtUpToDate) {
    const std::string root = path("serv\\");
    write("1000;1999;" + root + ";x\r\n");
    const std::string content =
        "$VARCHT;CHANTIER;a;D:\\A\\;x\r\n$VARCHT;P;D:\\A\\f;D:\\a\\g;D:\\A\\D:\\A\\\r\n";
    const std::string file = m_settings.folder().write("serv\\1234\\p.cht", content);
    std::string upper = path("SERV\\1234\\");
    for (char& c : upper) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    Cchantier project;
    EXPECT_EQ(project.Set("D:\\gone\\1234\\p.cht", 0), 0);
    EXPECT_EQ(project.Set("D:\\gone\\1234\\p.cht", 1), 2);
    EXPECT_EQ(project.m_cheminCht.view(), file);
    EXPECT_EQ(project.m_service, "1234");
    EXPECT_EQ(m_settings.folder().read("serv\\1234\\p.cht"),
              "$VARCHT;CHANTIER;a;" + upper + ";x\r\n$VARCHT;P;" + upper + "f;D:\\a\\g;" + upper + upper +
                  "\r\n$VARCHT;MAJDIRCHT;" + upper + "\r\n");
    EXPECT_EQ(project.Maj_DirService(), 1);
    for (const char* lost : {"D:\\gone\\1235\\p.cht", "D:\\gone\\12\\p.cht", "p", "x.cht"}) {
        project.m_cheminCht = lost;
        EXPECT_EQ(project.Maj_DirService(), 0) << lost;
    }
    EXPECT_EQ(project.Maj_DirCht(), 0);

    const struct {
        std::string before, after;
    } texts[] = {
        {"", ""},
        {"x", "x\r\n"},
        {"x\n", "x\n"},
        {"x\r", "x "},
        {"\xE9", " "},
        {"$VARCHT;CHANTIER;a\r\n$VARCHT;B;c", "$VARCHT;CHANTIER;a\r\n$VARCHT;B;c\r\n"},
        {"$VARCHT;CHANTIER;a;..\\\r\n..\\x\r\n", "$VARCHT;CHANTIER;a;..\\\r\n..\\x\r\n"},
        {"$VARCHT;CHANTIER;a;;a\r\n", "$VARCHT;CHANTIER;a;;a\r\n"},
        {"$varcht;MAJDIRCHT;D:\\\n", "$varcht;MAJDIRCHT;D:\\\n"},
    };
    project.m_cheminCht = file.c_str();
    for (const auto& c : texts) {
        m_settings.folder().write("serv\\1234\\p.cht", c.before);
        EXPECT_EQ(project.Maj_DirCht(), 1);
        EXPECT_EQ(m_settings.folder().read("serv\\1234\\p.cht"),
                  c.after + "$VARCHT;MAJDIRCHT;" + upper + "\r\n")
            << "Kept: an odd last byte gives way to a blank";
    }
    m_settings.folder().write("serv\\1234\\p.cht", "$VARCHT;MAJDIRCHT;D:\\A\\\r\nD:\\A\\x");
    EXPECT_EQ(project.Maj_DirCht(), 1);
    EXPECT_EQ(m_settings.folder().read("serv\\1234\\p.cht"),
              "$VARCHT;MAJDIRCHT;" + upper + "\r\n" + upper + "x");
}

TEST_F(Services, LayoutsGiveTheirExtent) {
    const std::string whole = "$MEP;A;B;INS,20100.9,-50.5,100,10,20;ECH,500\n";
    const struct {
        std::string content;
        int count;
        std::vector<std::int32_t> box;
    } cases[] = {
        {whole, 1, {20100, -50, 20150, 49}},
        {whole + "x $MEP;;;y;INS,30000,0,200,10,20;  ECH, 100\r\n", 2, {20100, -50, 30000, 49}},
        {"$MEP;A;B;INS,+3e4, 5,100,10,20+\r\n;ECH,0x", 1, {30000, 5, 30000, 5}},
        {"$MEP;A;B;INS,20000,5,100,10,20;ECH,500", 0, {}},
        {"$MEP;A;B;INS,30000,5,100,10;ECH,500", 0, {}},
        {"$MEP;A;B;INS,30000,5,100,10,;ECH,500", 0, {}},
        {"$MEP;A;B;INS,30000,5,100,10,20;\n$MEP;ECH,500", 1, {30000, 5, 30050, 105}},
        {"$MEP;A;INS,30000,5,100,10,20;ECH,500", 0, {}},
        {"$MEP;A;B;INS,nan,5,100,10,20;ECH,500\n$MEP;A;B;INS,30000,inf,100,10,20;ECH,500", 0, {}},
        {"$MEP;A;B;INS,30000,5,100,10,20;ECH,1e300\n$MEP;A;B;INS,1e999,5,100,10,20;ECH,1", 0, {}},
        {"$MEP;A;B;" + std::string(490, ' ') + "INS,30000,5,100,10,20;ECH,500", 0, {}},
        {"", 0, {}},
    };
    for (const auto& c : cases) {
        const std::string file = m_settings.folder().write("m.cht", c.content);
        std::int32_t box[4] = {1, 2, 3, 4};
        EXPECT_EQ(Cchantier::GetMinMaxMepCht(file.c_str(), box), c.count) << c.content;
        EXPECT_EQ(std::vector(box, box + 4), c.box.empty() ? std::vector<std::int32_t>(4) : c.box)
            << c.content;
    }
    std::int32_t box[4];
    EXPECT_EQ(Cchantier::GetMinMaxMepCht(path("none").c_str(), box), 0);
}

TEST_F(Services, TenMegabytesTakeTimeInProportion) {
    Cchantier project;
    const auto seconds = [&](std::size_t size) {
        std::string content = "$VARCHT;MAJDIRCHT;" + std::string(250, 'a') + "b\r\n";
        content += std::string(size / 4, 'a');
        while (content.size() < size) content += "$MEP;";
        const std::string file = m_settings.folder().write("big.cht", content);
        project.m_cheminCht = file.c_str();
        std::int32_t box[4];
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Cchantier::GetMinMaxMepCht(file.c_str(), box), 0);
        EXPECT_EQ(project.Maj_DirCht(), 1);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    EXPECT_LT(seconds(10'000'000), 40 * seconds(1'000'000) + 1);
}

}  // namespace
