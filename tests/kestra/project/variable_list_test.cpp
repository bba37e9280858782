#include <gtest/gtest.h>

#include <kestra/project/reading/variable_list.h>

#include "../../support/temporary_folder.h"

TEST(VisitVariables, ListsTheLinesOfAProjectAndItsIncludes) {
    const TemporaryFolder folder;
    folder.write("a.cht", "CHTIVAR;b\n$VARCHT;TITRE;Plan\x02;..\\x\n$.ARCHT;OLD;1\nnote;x\n$MEP\n$MEP;1\n");
    folder.write("b.cht", "$DORSEL;FICHIERS;..\\x;\nCHTIVAR;a\n$VARCHT;B;2\n");
    Cchantier project;
    project.m_cheminCht = folder.path("a").c_str();
    std::string seen;
    const auto note = [&](const ProjectVariable& variable) {
        const CString head = variable.section + ":" + variable.name;
        seen.append(variable.included ? "+" : " ").append(head.view());
        for (int i = 0; i < variable.values.GetSize(); ++i)
            seen.append("|").append(variable.values[i].view());
        seen.append("@").append(variable.file.view()).append("\n");
        return variable.name != CString("FICHIERS");
    };
    const std::string a = "@" + folder.path("a.cht") + "\n";
    EXPECT_EQ(VisitVariables(project, note), 3);
    EXPECT_EQ(seen, " $VARCHT:TITRE|Plan;|" + folder.path("x") + a + " $MEP:1" + a + "+$DORSEL:FICHIERS|" +
                        folder.path("x") + "|@" + folder.path("b.cht") + "\n");
    EXPECT_EQ(project.m_fp, nullptr);
    project.m_cheminCht = folder.path("none").c_str();
    EXPECT_EQ(VisitVariables(project, note), -1);
}
