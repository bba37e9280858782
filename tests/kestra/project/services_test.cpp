#include <gtest/gtest.h>

#include <cstring>

#include <kestra/project/chantier.h>
#include <kestra/project/places/services_file.h>

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
        std::string line;
        const char* code;
        std::string folder;
    } cases[] = {
        {"1000;1999;D:\\SERV\\;x", "a1234-B", "D:\\SERV\\1234\\"},
        {"1000;1999;D:\\SERV\\;x", "2000", ""},
        {"1000;1999", "1234", ""},
        {"1;9;D:\\;X", "12", "D:\\ACAD12\\"},
        {"1;9;D:\\;5>s(1,2)\\x", "12345", "D:\\12\\12345\\"},
        {"1;9;D:\\;s(0,1)-s(3,9)s(2", "1234", "D:\\1-34\\"},
        {"1;9;D:\\;s(99999999999999999999,1)s(1,-5)s(", "1234", "D:\\"},
        {"1;9;..L\\S\\;x", "1", path("local\\S\\1\\")},
        {"1;1;D:\\;5>no\n1;9;E:\\", "1", "E:\\"},
        {"1;9;D:\\;x", "12345678-9", "D:\\12345678-9\\"},
        {"1;9;D:\\;" + std::string(300, 'y'), "1", ""},
    };
    for (const auto& c : cases) {
        write("; comment\r\n" + c.line + "\r\n");
        EXPECT_EQ(folderOf(c.code), c.folder) << c.line << " " << c.code;
    }
}

TEST_F(Services, TheNetworksFileServesWhenThereIsNoLocalOne) {
    char folder[260];
    EXPECT_EQ(Cchantier::Serv_dir("1", folder), -1);
    EXPECT_EQ(m_prompt.texts.at(0), "**** VOUS devez Creer un fichier 'SERVICES.INI' en " + path("local\\") +
                                        " ou 'SERVICES.DEF' en " + path("network\\"));
    m_settings.folder().write("network\\ini\\services.def", "1;9;~\\S;x");
    EXPECT_EQ(folderOf("1"), path("network\\S1\\"));
}

TEST_F(Services, ProjectsAreFiledUnderTheirFolders) {
    write("1000;1999;D:\\SERV\\;x\r\n2000;2999;D:\\SERV\\;X\r\n");
    const std::pair<const char*, std::string> projects[] = {{"d:\\serv\\1234\\a.cht", "1234"},
                                                            {"D:\\SERV\\ACAD2500\\a.cht", "2500"},
                                                            {"D:\\SERV\\1234\\b\\a.cht", ""},
                                                            {"E:\\SERV\\1234\\a.cht", ""}};
    for (const auto& [project, expected] : projects) {
        char code[260] = "before";
        const Cchantier resets;
        EXPECT_EQ(Cchantier::Dir_serv(project, code), static_cast<int>(expected.size()));
        EXPECT_EQ(code, expected) << project;
    }
    const struct {
        const char *service, *name, *serviceAfter, *full, *shortName;
    } names[] = {
        {"1234-B", "plan", "D:\\SERV\\1234\\", "D:\\SERV\\1234\\plan.CHT", "plan"},
        {"E:\\x\\", "a/b.dxf", "E:\\x\\", "E:\\x\\a\\b.dxf", "a\\b.dxf"},
        {"\\\\srv\\x\\", "plan", "\\\\srv\\x\\", "\\srv\\x\\plan.CHT", "\\srv\\x\\plan"},
    };
    for (const auto& c : names) {
        CString service = c.service, name = c.name;
        EXPECT_EQ(Cchantier::GetPathCht(service, name), static_cast<int>(std::strlen(c.full)));
        EXPECT_EQ(service, c.serviceAfter);
        EXPECT_EQ(name, c.full) << "Kept: a share's leading backslashes become one";
        EXPECT_EQ(Cchantier::GetNomCourtCht(service, name), static_cast<int>(std::strlen(c.shortName)));
        EXPECT_EQ(name, c.shortName);
    }
}

TEST_F(Services, AMovedProjectIsFoundAndBroughtUpToDate) {
    write("1000;1999;" + path("serv\\") + ";x\r\n");
    const auto put = [&](const std::string& text) {
        return m_settings.folder().write("serv\\1234\\p.cht", text);
    };
    const std::string file =
        put("$VARCHT;CHANTIER;a;D:\\A\\;x\r\n$VARCHT;P;D:\\A\\f;D:\\a\\g;D:\\A\\D:\\A\\\r\n");
    std::string upper = path("SERV\\1234\\");
    for (char& c : upper) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    const std::string record = "$VARCHT;MAJDIRCHT;" + upper + "\r\n";
    Cchantier project;
    EXPECT_EQ(project.Set("D:\\gone\\1234\\p.cht", 0), 0);
    EXPECT_EQ(project.Set("D:\\gone\\1234\\p.cht", 1), 2);
    EXPECT_EQ(project.m_cheminCht.view(), file);
    EXPECT_EQ(project.m_service, "1234");
    EXPECT_EQ(m_settings.folder().read("serv\\1234\\p.cht"), "$VARCHT;CHANTIER;a;" + upper +
                                                                 ";x\r\n$VARCHT;P;" + upper + "f;D:\\a\\g;" +
                                                                 upper + upper + "\r\n" + record);
    EXPECT_EQ(project.Maj_DirService(), 1);
    project.m_cheminCht = "D:\\gone\\1235\\p.cht";
    EXPECT_EQ(project.Maj_DirService(), 0);

    project.m_cheminCht = file.c_str();
    const std::pair<std::string, std::string> texts[] = {
        {"", record},
        {"x", "x\r\n" + record},
        {"x\r", "x " + record},
        {"\xE9", " " + record},
        {"$VARCHT;CHANTIER;a\r\n$VARCHT;B;c", "$VARCHT;CHANTIER;a\r\n$VARCHT;B;c\r\n" + record},
        {"$VARCHT;CHANTIER;a;..\\\r\n..\\x\r\n", "$VARCHT;CHANTIER;a;..\\\r\n..\\x\r\n" + record},
        {"$varcht;MAJDIRCHT;D:\\\n", "$varcht;MAJDIRCHT;D:\\\n" + record},
        {"$VARCHT;MAJDIRCHT;D:\\A\\\r\nD:\\A\\x", record + upper + "x"},
    };
    for (const auto& [before, after] : texts) {
        put(before);
        EXPECT_EQ(project.Maj_DirCht(), 1);
        EXPECT_EQ(m_settings.folder().read("serv\\1234\\p.cht"), after)
            << "Kept: an odd last byte gives way to a blank";
    }
}

TEST_F(Services, LayoutsGiveTheirExtent) {
    const std::string whole = "$MEP;A;B;INS,20100.9,-50.5,100,10,20;ECH,500\n";
    using Box = std::vector<std::int32_t>;
    const struct {
        std::string content;
        int count = 0;
        Box box = Box(4);
    } cases[] = {
        {whole + "x $MEP;;;y;INS,30000,0,200,10,20;  ECH, 100\r\n", 2, {20100, -50, 30000, 49}},
        {"$MEP;A;B;INS,+3e4, 5,100,10,20+\r\n;ECH,0x", 1, {30000, 5, 30000, 5}},
        {"$MEP;A;B;INS,nan,5,100,10,20;ECH,500\n$MEP;A;B;INS,30000,inf,100,10,20;ECH,500"},
    };
    Box box = {1, 2, 3, 4};
    for (const auto& c : cases) {
        const std::string file = m_settings.folder().write("m.cht", c.content);
        EXPECT_EQ(Cchantier::GetMinMaxMepCht(file.c_str(), box.data()), c.count) << c.content;
        EXPECT_EQ(box, c.box) << c.content;
    }
}

}  // namespace
