#include <gtest/gtest.h>

#include <cstring>

#include <kestra/frame/module.h>
#include <kestra/project/chantier.h>

#include "../../support/recorders.h"
#include "../../support/temporary_folder.h"

TEST(Module, NamedValuesOfTheComputerAndTheProject) {
    RecordingMachine machine;
    const platform::Replaced inForce(platform::replaceMachine, machine);
    const Cchantier before = chtdef;
    chtdef.m_cheminCht = "D:\\AFF\\PLAN.CHT";
    chtdef.m_fichiers = "remarques.txt";
    const struct {
        const char* key;
        int size;
        long result;
        const char* text;
    } cases[] = {
        {"nomposte", 8, 7, "POSTE-7"},
        {"NOMPOSTE", 7, 8, "avant"},
        {"chtnom", 0, 15, "D:\\AFF\\PLAN.CHT"},
        {"FICHREM", 1, 13, "remarques.txt"},
        {nullptr, 100, 0, "avant"},
    };
    for (const auto& c : cases) {
        char out[300] = "avant";
        EXPECT_EQ(getsVar(c.key, out, c.size), c.result) << (c.key != nullptr ? c.key : "null");
        EXPECT_STREQ(out, c.text);
    }
    chtdef = before;
}

TEST(Module, RegistersControlFiles) {
    RecordingPrompt prompt;
    const platform::Replaced inForce(platform::replacePrompt, prompt);
    TemporaryFolder folder;
    const std::string garbage = folder.write("faux.ocx", "MZ pas une bibliothèque");
    EXPECT_EQ(regocx(garbage.c_str()), 32);
    EXPECT_EQ(regocx("absent.ocx"), 32);
    EXPECT_EQ(prompt.texts, (std::vector<std::string>{"Probleme de chargement du fichier : " + garbage,
                                                      "Probleme de chargement du fichier : absent.ocx"}));
#ifdef _WIN32
    EXPECT_EQ(regocx("kernel32.dll"), -100);
    EXPECT_EQ(regocx("quartz.dll"), 0);
#else
    EXPECT_EQ(regocx("libm.so.6"), -100);
#endif
    EXPECT_EQ(prompt.texts.size(), 2u);
}
