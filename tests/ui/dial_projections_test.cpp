#include <gtest/gtest.h>
#include <kestra/dialogs/dial_projections.h>
#include <kestra/dialogs/resource.h>
#include <kestra/project/chantier.h>
#include <platform/replaceable.h>
#include <platform/window/controls.h>

#include <functional>

#include "../support/settings_folders.h"
#include "ui_support.h"

namespace {

/// The real dialog, worked by what a test does once it is shown; at the latest cancel closes it.
class WorkedDialog : public CDialProjections {
  public:
    explicit WorkedDialog(std::function<void(WorkedDialog&)> work) : m_work(std::move(work)) {}
    std::string text(int id) const {
        CString found;
        GetDlgItemText(id, found);
        return std::string(found.view());
    }
    std::vector<std::string> entries(int id) const {
        CComboBox combo;
        combo.Attach(GetDlgItem(id));
        std::vector<std::string> all;
        CString entry;
        for (int i = 0; i < combo.GetCount(); ++i) {
            combo.GetLBText(i, entry);
            all.emplace_back(entry.view());
        }
        combo.Detach();
        return all;
    }
    bool isEnabled(int id) const { return ::IsWindowEnabled(GetDlgItem(id)); }
    void press(int id) { SendMessage(WM_COMMAND, MAKEWPARAM(id, BN_CLICKED)); }

  protected:
    BOOL OnInitDialog() override {
        const BOOL result = CDialProjections::OnInitDialog();
        PostMessage(WM_APP);
        return result;
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_APP) {
            m_work(*this);
            PostMessage(WM_COMMAND, IDCANCEL);
        }
        return CDialProjections::WindowProc(message, wParam, lParam);
    }

  private:
    std::function<void(WorkedDialog&)> m_work;
};

}  // namespace

TEST(DialProjections, ShowsTheChoicesAndAppliesThem) {
    const SettingsFolders folders;
    folders.folder().write("network\\ini\\flat.mnt", "0 4 47 50 4 3 4 0 1 0 0. flat\n40 40 40 40");
    folders.network("projections", "[ALTITUDES]\nNGF=flat.mnt\n");
    std::strcpy(pvg.projection, "L-93 :");
    std::string title, about, source;
    std::vector<std::string> projections, altitudes, targetAltitudes;
    WorkedDialog dialog([&](WorkedDialog& shown) {
        CString caption;
        shown.GetWindowText(caption);
        title = caption.GetString();
        about = shown.text(IDC_PROJ_TEXTE);
        source = shown.text(IDC_PROJ_ORIGINE);
        projections = shown.entries(IDC_PROJ_FINALE);
        altitudes = shown.entries(IDC_ALTI_ORIGINE);
        targetAltitudes = shown.entries(IDC_ALTI_FINALE);
        EXPECT_EQ(::SendMessageA(shown.GetDlgItem(IDC_ALTI_FINALE), CB_GETDROPPEDWIDTH, 0, 0), 250);
        shown.press(IDOK);
        EXPECT_NE(shown.m_hWnd, nullptr) << "Enter does not close it";
        shown.SetDlgItemText(IDC_PROJ_FINALE, "LZ93-CC49:");
        shown.SetDlgItemText(IDC_ALTI_ORIGINE, "NGF=flat.mnt");
        shown.SetDlgItemText(IDC_ALTI_FINALE, "$Hauteur Ellipsoide");
        shown.SetDlgItemText(IDC_PROJ_DZ, "1,5");
        shown.press(IDC_PROJ_APPLIQUER);
    });
    dialog.m_texte = "Points levés";
    ASSERT_EQ(dialog.Choose(3), IDOK);
    EXPECT_EQ(title, "Choix des systemes de Projection");
    EXPECT_EQ(about, "Points levés");
    EXPECT_EQ(source, "L-93 :");
    EXPECT_EQ(projections[0], "_Non Définie");
    EXPECT_EQ(projections[1], "_Locale");
    EXPECT_NE(std::find(projections.begin(), projections.end(), "LZ93-CC41:"), projections.end());
    EXPECT_EQ(altitudes, (std::vector<std::string>{"", "$Hauteur Ellipsoide", "NGF=flat.mnt"}));
    EXPECT_EQ(targetAltitudes, altitudes);

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
    const int sourceSide[] = {IDC_PROJ_ORIGINE, IDC_ALTI_ORIGINE};
    const int targetSide[] = {IDC_PROJ_FINALE, IDC_ALTI_FINALE, IDC_PROJ_DZ};
    for (int mode = 0; mode < 4; ++mode) {
        WorkedDialog dialog([&](WorkedDialog& shown) {
            for (const int id : sourceSide) EXPECT_EQ(shown.isEnabled(id), (mode & 1) != 0) << id;
            for (const int id : targetSide) EXPECT_EQ(shown.isEnabled(id), (mode & 2) != 0) << id;
            EXPECT_EQ(shown.text(IDC_PROJ_FINALE), "L-II :");
        });
        dialog.m_projFinale = "L-II :";
        EXPECT_EQ(dialog.Choose(mode), IDCANCEL);
        EXPECT_EQ(dialog.m_pFinale, nullptr);
    }
    SilentPrompt prompt;
    platform::Replaced inForce(platform::replacePrompt, prompt);
    WorkedDialog dialog([&](WorkedDialog& shown) {
        shown.SetDlgItemText(IDC_PROJ_DZ, "1 m");
        shown.press(IDC_PROJ_APPLIQUER);
        EXPECT_NE(shown.m_hWnd, nullptr);
    });
    EXPECT_EQ(dialog.Choose(3), IDCANCEL);
    EXPECT_EQ(prompt.asked, "Entrez un nombre.");
}

TEST(DialProjections, KeptAGridThatCannotBeLoadedIsSaidToNobodyAndUsedAllTheSame) {
    SilentPrompt prompt;
    platform::Replaced inForce(platform::replacePrompt, prompt);
    WorkedDialog dialog([](WorkedDialog& shown) {
        shown.SetDlgItemText(IDC_PROJ_ORIGINE, "L-93 :");
        shown.SetDlgItemText(IDC_PROJ_FINALE, "L-93 :");
        shown.SetDlgItemText(IDC_ALTI_ORIGINE, "X=nowhere.mnt");
        shown.press(IDC_PROJ_APPLIQUER);
    });
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
    WorkedDialog dialog([&](WorkedDialog& shown) {
        static std::string wanted;
        wanted = grid;
        // Works the system's dialog as soon as it is there.
        const auto answer = [](HWND, UINT, UINT_PTR timer, DWORD) {
            const HWND chooser = ::GetLastActivePopup(::GetActiveWindow());
            const HWND edit = ::FindWindowExA(nullptr, nullptr, "#32770", nullptr);
            for (HWND window = edit; window != nullptr;
                 window = ::FindWindowExA(nullptr, window, "#32770", nullptr)) {
                if (::GetDlgItem(window, IDC_PROJ_APPLIQUER) != nullptr) continue;
                HWND name = ::GetDlgItem(window, 0x47C);
                if (name == nullptr) name = ::GetDlgItem(window, 0x480);
                if (name == nullptr) continue;
                ::KillTimer(nullptr, timer);
                ::SetWindowTextA(name, wanted.c_str());
                ::PostMessageA(window, WM_COMMAND, IDOK, 0);
            }
            (void)chooser;
        };
        ::SetTimer(nullptr, 0, 200, answer);
        shown.press(IDC_ALTI_PARCOURIR_FINALE);
        EXPECT_EQ(shown.text(IDC_ALTI_FINALE), grid);
        EXPECT_EQ(shown.text(IDC_ALTI_ORIGINE), "");
    });
    EXPECT_EQ(dialog.Choose(3), IDCANCEL);
}

TEST(ProjectionCombo, IsFilledOnceAndSelects) {
    HiddenParent parent;
    CComboBox combo;
    ASSERT_TRUE(combo.Create(WS_CHILD | CBS_DROPDOWNLIST, {0, 0, 100, 100}, &parent, 5));
    EXPECT_EQ(Cchantier::UpdateComboProjection("L-93 :", nullptr), -1);
    const int index = Cchantier::UpdateComboProjection("l-93 :", &combo);
    CString entry;
    combo.GetLBText(index, entry);
    EXPECT_STREQ(entry, "L-93 :");
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
