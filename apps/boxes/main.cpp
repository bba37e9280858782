#include <windows.h>

#include <cstdlib>
#include <iterator>
#include <string>

#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/dialogs/dial_colonnes.h>
#include <kestra/dialogs/dial_edit_box.h>
#include <kestra/dialogs/message_box_dialog.h>
#include <kestra/dialogs/message_box_rules.h>
#include <platform/window/win_app.h>

/// Usage: kestra_boxes KIND. Shows one dialog of the library, for a person or a picture; the exit code is its
/// result.
namespace {

std::string fortyLines() {
    std::string text;
    for (int line = 1; line <= 40; ++line)
        text +=
            "Point " + std::to_string(1000 + line) + " : coordonnées recalculées" + (line < 40 ? "\n" : "");
    return text;
}

int showBox(const char* message, UINT style, UINT seconds = 0, int disabled = 0) {
    CMessageBoxDialog box(nullptr, message, "Kestra", style);
    box.SetTimeout(seconds, disabled);
    return static_cast<int>(box.DoModal());
}

int showWord() {
    return showBox("Terminé", 0x40);
}

int showLines() {
    return showBox(fortyLines().c_str(), 0x30 | 1);
}

int showCountDown() {
    return showBox("Le chantier sera enregistré à la fin du compte à rebours.\nVoulez-vous l'enregistrer ?",
                   0x20 | 1, 60);
}

int showHeld() {
    return showBox("Lisez ceci : la base va être compactée et personne ne doit l'ouvrir entre-temps.",
                   0x30 | 1 | 0x01000000, 60, 1);
}

int showButtons() {
    return showBox(
        "Le fichier \"C:\\AFF\\saint-alvere\\points_geodesiques.csv\" existe déjà.\n\nVoulez-vous le "
        "remplacer par celui qui vient d'être calculé à partir des levés du mois ?",
        0x20 | 3 | 0x4000 | kestra::boxYesToAll | kestra::boxNoToAll | kestra::boxDoNotAskAgain);
}

int showScrolled() {
    std::string text;
    while (text.size() < 100 * 1024) text += fortyLines() + " dans un seul et même paragraphe ";
    return showBox(text.c_str(), 0x10 | 2);
}

int showText() {
    CString name("saint-alvere");
    return EditStringBox(name, "Renommer le chantier", "&Nouveau nom :", 80);
}

int showColumns() {
    CWnd parent;
    parent.CWnd::Create(nullptr, "Kestra", WS_OVERLAPPEDWINDOW, {0, 0, 700, 400}, nullptr, 0);
    CLraListCtrl list;
    list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, {0, 0, 690, 380}, &parent, 1);
    int column = 0;
    for (const char* caption : {"Numéro", "X", "Y", "Altitude", "Date de levé", "Opérateur"})
        list.InsertColumn(column++, caption, LVCFMT_LEFT, 90, 'T', 20);
    list.SetColumnWidth(3, -90);
    return static_cast<int>(CDialColonnes(&list, 1).DoModal());
}

struct Kind {
    const char* name;
    int (*show)();
};
constexpr Kind kinds[] = {{"word", showWord}, {"lines", showLines},     {"countdown", showCountDown},
                          {"held", showHeld}, {"buttons", showButtons}, {"scrolled", showScrolled},
                          {"text", showText}, {"columns", showColumns}};

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, char* commandLine, int) {
    ::SetProcessDPIAware();
    CWinApp application("Kestra");
    application.SetRegistryKey("Kestra");
    for (const Kind& kind : kinds)
        if (std::string(commandLine) == kind.name) return kind.show();
    return EXIT_FAILURE;
}
