#include "project_file.h"

namespace {

const Command* const projectCommands[] = {
    // one command a line
    &projectCompact, &projectCreate, &projectDelete, &projectGet,
    &projectMove,    &projectRename, &projectSet,    &projectShow,
};

}  // namespace

const Command projectCommand = {
    "project", "lit et modifie un projet (« .cht »)",
    "Un projet est nommé par le chemin de son fichier, avec ou sans « .cht ». Une section\n"
    "s'écrit avec ou sans son « $ ». Le fichier est modifié en une fois ou pas du tout : un\n"
    "arrêt en cours d'écriture le laisse comme il était, ou comme il devait être.\n",
    nullptr, projectCommands};
