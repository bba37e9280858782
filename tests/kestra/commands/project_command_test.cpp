#include <gtest/gtest.h>

#include <filesystem>

#include <platform/files.h>
#ifndef _WIN32
#include <platform/linux/drive_paths.h>
#include <unistd.h>
#endif

#include <tests/support/command_answers.h>
#include "../../support/settings_folders.h"

namespace {

namespace fs = std::filesystem;

/// Makes a file read-only, for root too: natively its folder is opened to a user who then runs the test.
class ReadOnly {
  public:
    explicit ReadOnly(const std::string& path) : m_path(systemPath(path)) {
#ifndef _WIN32
        fs::permissions(m_path.parent_path(), fs::perms::all);
        if (::geteuid() == 0) m_dropped = ::seteuid(65534) == 0;
#endif
        if (!m_dropped) fs::permissions(m_path, write, fs::perm_options::remove);
    }
    ~ReadOnly() {
#ifndef _WIN32
        if (m_dropped) m_dropped = ::seteuid(0) != 0;
#endif
        fs::permissions(m_path, write, fs::perm_options::add);
    }
    ReadOnly(const ReadOnly&) = delete;
    ReadOnly& operator=(const ReadOnly&) = delete;

  private:
    static constexpr fs::perms write =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    static fs::path systemPath(const std::string& path) {
#ifdef _WIN32
        return path;
#else
        return platform::posixPath(path.c_str());
#endif
    }
    fs::path m_path;
    bool m_dropped = false;
};

TEST(ProjectCommand, AReadOnlyProjectIsRefusedAndStaysAsItIs) {
    const SettingsFolders settings;
    const auto& folder = settings.folder();
    const std::string content = "$VARCHT;X;1\r\n$.ARCHT;Y;2\r\n", p = folder.write("p.cht", content);
    const std::vector<std::string> cases[] = {
        {"project", "set", p, "VARCHT", "X", "2"},
        {"project", "delete", p, "VARCHT", "X"},
        {"project", "compact", p},
        {"project", "move", p, folder.path("b")},
    };
    {
        const ReadOnly readOnly(p);
        for (const auto& c : cases) {
            KeptTerminal terminal;
            EXPECT_EQ(runHost(c, terminal), exitFailed) << c[1];
            EXPECT_NE(terminal.err.find("ne peut être modifié"), std::string::npos) << terminal.err;
            EXPECT_EQ(folder.read("p.cht"), content) << c[1];
        }
    }
    EXPECT_EQ(platform::theFiles().kind(folder.path("p.ch~").c_str()), platform::FileKind::missing);
}

TEST(ProjectCommand, ASessionOfATechnician) {
    const SettingsFolders settings;
    settings.local("services", "1000;1999;D:\\SERV\\;x\r\n");
    const auto& folder = settings.folder();
    const std::string p =
        folder.write("aff\\p.cht", "note\r\n$VARCHT;TITRE;Été \"2\"\r\n$VARCHT;REF;..\\x\r\nCHTIVAR;c\r\n");
    folder.write("aff\\c.cht", "$VARCHT;COMMUNE;24\r\n");
    const std::string bare = p.substr(0, p.size() - 4), file = "aff\\p.cht";
    const char commune[] =
        "[{\"section\":\"$VARCHT\",\"name\":\"COMMUNE\",\"values\":[\"24\"],\"included\":true}]\n";
    const std::vector<CommandAnswer> cases = {
        {{"project"}, exitUsage, "", "Usage : kestra project COMMANDE"},
        {{"project", "--help"}, exitDone, "compact      retire les lignes supprimées", ""},
        {{"project", "fly"}, exitUsage, "", "kestra project : commande inconnue « fly »"},
        {{"project", "get", bare, "VARCHT", "TITRE"}, exitDone, "Été \"2\"\n", ""},
        {{"project", "get", p, "VARCHT", "COMMUNE", "--json"}, exitDone, commune, ""},
        {{"project", "get", p, "VARCHT", "NONE"}, exitFailed, "", "aucune variable « NONE »"},
        {{"project", "set", p, "VARCHT", "X", "a;b", "-1"}, exitDone, p + " : 1 ligne écrite\n", ""},
        {{"project", "set", p, "VARCHT", "X", "--json", "--", "--help"}, exitDone, "{\"lines\":1}\n", ""},
        {{"project", "set", p, "VARCHT", "X", "a+"}, exitUsage, "", "ne se relirait pas"},
        {{"project", "set", bare + "q", "VARCHT", "X", "a"}, exitFailed, "", "introuvable"},
        {{"project", "show", p}, exitDone, "$VARCHT;COMMUNE;24   (c.cht)\n", ""},
        {{"project", "show", p, "--json"}, exitDone, "\"title\":\"Été \\\"2\\\"\",\"service\":\"\"", ""},
        {{"project", "rename", p, "VARCHT", "X", "TROP"}, exitUsage, "", "longueur"},
        {{"project", "rename", p, "VARCHT", "X", "VORTLI"}, exitDone, "1 ligne changée", ""},
        {{"project", "delete", p, "VORTLI", "X"}, exitDone, "1 ligne supprimée", ""},
        {{"project", "delete", p, "VORTLI", "X"}, exitFailed, "", "aucune variable"},
        {{"project", "compact", p, "--json"}, exitDone, "{\"lines\":1}\n", ""},
        {{"project", "create", folder.path("neuf"), p}, exitDone, "neuf.CHT : 2 lignes écrites\n", ""},
        {{"project", "create", folder.path("neuf"), p}, exitFailed, "", "existe déjà"},
        {{"project", "create", folder.path("a.b\\neuf"), p}, exitUsage, "", "pas de point"},
        {{"project", "move", p, folder.path("là\\bas"), "--json"}, exitDone, "là\\\\bas\\\\p.cht\"}\n", ""},
        {{"project", "move", folder.path("neuf"), folder.path("")}, exitFailed, "", "existe déjà"},
        {{"service", "A1234-B"}, exitDone, "D:\\SERV\\1234\\\n", ""},
        {{"service", "9"}, exitFailed, "", "aucun dossier pour ce code"},
    };
    expectAnswers(cases);
    EXPECT_EQ(platform::theFiles().kind(p.c_str()), platform::FileKind::missing);
    const std::string moved = folder.read("là\\bas\\p.cht");
    EXPECT_EQ(moved.substr(0, moved.find("$VARCHT;MAJDIRCHT")),
              "note\r\n$VARCHT;TITRE;Été \"2\"\r\n$VARCHT;REF;..\\x\r\nCHTIVAR;c\r\n");
    KeptTerminal terminal;
    platform::theFiles().remove(folder.path("local\\ini\\services.ini").c_str());
    EXPECT_EQ(runHost(std::vector<std::string>{"service", "1"}, terminal), exitFailed);
    EXPECT_TRUE(terminal.err.starts_with("**** VOUS devez Creer un fichier"));
}

}  // namespace
