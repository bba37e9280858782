#include <gtest/gtest.h>
#include <kestra/dialogs/dial_projections.h>
#include <kestra/dialogs/resource.h>
#include <kestra/project/chantier.h>
#include <platform/window/controls.h>

#include "../support/settings_folders.h"
#include "ui_support.h"

using WorkedDialog = Worked<CDialProjections>;

TEST(DialProjections, ShowsTheChoicesAndAppliesThem) {
    const SettingsFolders folders;
    folders.folder().write("network\\ini\\flat.mnt", "0 4 47 50 4 3 4 0 1 0 0. flat\n40 40 40 40");
    folders.network("projections", "[ALTITUDES]\nNGF=flat.mnt\n");
    std::strcpy(pvg.projection, "L-93 :");
    const std::string altitudes = "|$Hauteur Ellipsoide|NGF=flat.mnt|";
    WorkedDialog dialog;
    dialog.work = [&](WorkedDialog& shown) {
        EXPECT_EQ(textOf(shown), "Choix des systemes de Projection");
        EXPECT_EQ(textOf(shown, IDC_PROJ_TEXTE), "Points levés");
        EXPECT_EQ(textOf(shown, IDC_PROJ_ORIGINE), "L-93 :");
        const std::string projections = entriesOf(shown.GetDlgItem(IDC_PROJ_FINALE));
        EXPECT_TRUE(projections.starts_with("_Non Définie|_Locale|")) << projections;
        EXPECT_NE(projections.find("|LZ93-CC41:|"), std::string::npos);
        EXPECT_EQ(entriesOf(shown.GetDlgItem(IDC_ALTI_ORIGINE)), altitudes);
        EXPECT_EQ(entriesOf(shown.GetDlgItem(IDC_ALTI_FINALE)), altitudes);
        EXPECT_EQ(::SendMessageA(shown.GetDlgItem(IDC_ALTI_FINALE), CB_GETDROPPEDWIDTH, 0, 0), 250);
        shown.press(IDOK);
        EXPECT_NE(shown.m_hWnd, nullptr) << "Enter does not close it";
        shown.SetDlgItemText(IDC_PROJ_FINALE, "LZ93-CC49:");
        shown.SetDlgItemText(IDC_ALTI_ORIGINE, "NGF=flat.mnt");
        shown.SetDlgItemText(IDC_ALTI_FINALE, "$Hauteur Ellipsoide");
        shown.SetDlgItemText(IDC_PROJ_DZ, "1,5");
        shown.press(IDC_PROJ_APPLIQUER);
    };
    dialog.m_texte = "Points levés";
    ASSERT_EQ(dialog.Choose(3), IDOK);

    // The window is gone; what was chosen converts.
    const double in[3] = {652381.123, 6862047.5, 35.2};
    double out[3] = {0, 0, 0};
    ASSERT_EQ(dialog.Transform(in, out), 1);
    EXPECT_NEAR(out[0], 1652379.971044, 1e-5);
    EXPECT_NEAR(out[1], 8184269.139005, 1e-5);
    EXPECT_NEAR(out[2], 76.7, 1e-12);
    EXPECT_NEAR(dialog.m_geo[2], 75.2, 1e-12);
    dialog.m_pAltiFinale = dialog.m_pAltiOrigine;
    ASSERT_EQ(dialog.Transform(in, out), 1);
    EXPECT_NEAR(out[2], 36.7, 1e-12) << "the same grid on both sides";
    dialog.m_pFinale = nullptr;
    EXPECT_EQ(dialog.Transform(in, out) + dialog.Transform(nullptr, out) + dialog.Transform(in, nullptr), 0);
}

TEST(DialProjections, TheModeSaysWhatMayBeEditedAndCancelChangesNothing) {
    for (int mode = 0; mode < 4; ++mode) {
        WorkedDialog dialog;
        dialog.work = [mode](WorkedDialog& shown) {
            const auto isEnabled = [&](int id) { return ::IsWindowEnabled(shown.GetDlgItem(id)) != 0; };
            for (const int id : {IDC_PROJ_ORIGINE, IDC_ALTI_ORIGINE})
                EXPECT_EQ(isEnabled(id), (mode & 1) != 0) << id;
            for (const int id : {IDC_PROJ_FINALE, IDC_ALTI_FINALE, IDC_PROJ_DZ})
                EXPECT_EQ(isEnabled(id), (mode & 2) != 0) << id;
            EXPECT_EQ(textOf(shown, IDC_PROJ_FINALE), "L-II :");
        };
        dialog.m_projFinale = "L-II :";
        EXPECT_EQ(dialog.Choose(mode), IDCANCEL);
        EXPECT_EQ(dialog.m_pFinale, nullptr);
    }
    const AnsweringPrompt prompt;
    WorkedDialog dialog;
    dialog.work = [](WorkedDialog& shown) {
        shown.SetDlgItemText(IDC_PROJ_DZ, "1 m");
        shown.press(IDC_PROJ_APPLIQUER);
        EXPECT_NE(shown.m_hWnd, nullptr);
    };
    EXPECT_EQ(dialog.Choose(3), IDCANCEL);
    EXPECT_EQ(prompt.asked, "Entrez un nombre.");
}

TEST(DialProjections, KeptAGridThatCannotBeLoadedIsSaidToNobodyAndUsedAllTheSame) {
    const AnsweringPrompt prompt;
    WorkedDialog dialog;
    dialog.work = [](WorkedDialog& shown) {
        shown.SetDlgItemText(IDC_PROJ_ORIGINE, "L-93 :");
        shown.SetDlgItemText(IDC_PROJ_FINALE, "L-93 :");
        shown.SetDlgItemText(IDC_ALTI_ORIGINE, "X=nowhere.mnt");
        shown.press(IDC_PROJ_APPLIQUER);
    };
    ASSERT_EQ(dialog.Choose(3), IDOK);
    EXPECT_EQ(prompt.asked, "");
    ASSERT_NE(dialog.m_pAltiOrigine, nullptr);
    double point[3] = {652381.123, 6862047.5, 35.2};
    EXPECT_EQ(dialog.Transform(point, point), 0);
    EXPECT_EQ(point[2], 35.2);
}

TEST(DialProjections, BrowsingPutsThePathIntoTheControl) {
    const SettingsFolders folders;
    const std::string grid = folders.folder().write("network\\INI\\choix.mnt", "x");
    WorkedDialog dialog;
    dialog.work = [&](WorkedDialog& shown) {
        const DialogWorker answer(grid);
        shown.press(IDC_ALTI_PARCOURIR_FINALE);
        EXPECT_EQ(textOf(shown, IDC_ALTI_FINALE), grid);
        EXPECT_EQ(textOf(shown, IDC_ALTI_ORIGINE), "");
    };
    EXPECT_EQ(dialog.Choose(3), IDCANCEL);
}

TEST(ProjectionCombo, IsFilledOnceAndSelects) {
    HiddenParent parent;
    CComboBox combo;
    ASSERT_TRUE(combo.Create(WS_CHILD | CBS_DROPDOWNLIST, {0, 0, 100, 100}, &parent, 5));
    EXPECT_EQ(Cchantier::UpdateComboProjection("L-93 :", nullptr), -1);
    const int index = Cchantier::UpdateComboProjection("l-93 :", &combo);
    EXPECT_NE(entriesOf(combo).find("|[L-93 :]|"), std::string::npos);
    EXPECT_EQ(combo.GetCurSel(), index);
    const int count = combo.GetCount();
    EXPECT_EQ(Cchantier::UpdateComboProjection("*AUTO", &combo), -1);
    EXPECT_EQ(combo.GetCurSel(), -1);
    EXPECT_EQ(combo.GetCount(), count);
    combo.ResetContent();
    EXPECT_EQ(Cchantier::UpdateComboProjection("_AUTO (Lambert)", &combo), -1);
    combo.ResetContent();
    combo.AddString("alone");
    Cchantier::UpdateComboProjection("*AUTO", &combo);
    EXPECT_EQ(combo.FindStringExact(-1, "_AUTO (Lambert)"), 1);
}
