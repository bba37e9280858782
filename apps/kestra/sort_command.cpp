#include <kestra/containers/file_sort.h>
#include <platform/files.h>

#include "options.h"

namespace {

/// Progress is shown for files above this size.
constexpr std::int64_t largeFile = 50'000'000;

/// The percentage of a sort on one line that is wiped out at the end.
class ProgressLine {
  public:
    explicit ProgressLine(Terminal& terminal) : m_terminal(terminal) {}
    ~ProgressLine() {
        if (m_shown) m_terminal.error("\r             \r");
    }
    void show(int percent) {
        m_shown = true;
        m_terminal.error("\rTri : " + std::to_string(percent) + " %");
    }

  private:
    Terminal& m_terminal;
    bool m_shown = false;
};

std::string_view failureText(kestra::LineSortOutcome outcome) {
    switch (outcome) {
        case kestra::LineSortOutcome::missingOrEmpty:
            return "fichier non trouvé ou vide (moins de 5 octets)";
        case kestra::LineSortOutcome::unreadable:
            return "lecture impossible, ou mémoire insuffisante";
        case kestra::LineSortOutcome::notWritten:
            return "écriture impossible, le fichier est resté comme il était";
        default:
            return {};
    }
}

std::string counted(std::int64_t count, std::string_view what) {
    return std::to_string(count) + (count < 2 ? " ligne " : " lignes ") + std::string(what) +
           (count < 2 ? "" : "s");
}

int report(const std::string& file, const kestra::LineSortResult& result, Terminal& terminal) {
    if (const std::string_view failure = failureText(result.outcome); !failure.empty()) {
        terminal.error("kestra sort : « " + file + " » : " + std::string(failure) + '\n');
        return exitFailed;
    }
    std::string text = file + " : " + counted(result.kept, "conservée");
    if (result.eliminated > 0) text += ", " + counted(result.eliminated, "éliminée");
    if (result.outcome == kestra::LineSortOutcome::nothingToSort) text += ", fichier inchangé";
    terminal.output(text + '\n');
    return exitDone;
}

int run(Arguments arguments, Terminal& terminal) {
    const Options options(arguments, {}, {"--descending", "--unique"}, {"le fichier à trier"});
    if (!options.fault().empty()) return refuseUsage(sortCommand, options.fault(), terminal);

    kestra::LineSort request;
    request.file = options.word(0).c_str();
    request.descending = options.has("--descending");
    request.unique = options.has("--unique");
    std::string eliminated;
    request.eliminated = [&](std::string_view line) {
        eliminated += "Eliminé : " + std::string(line.substr(0, line.find_last_not_of('\r') + 1)) + '\n';
    };
    kestra::LineSortResult result{};
    {
        ProgressLine line(terminal);
        if (terminal.errorIsWatched() && platform::theFiles().size(request.file) > largeFile)
            request.progress = [&](int percent) { line.show(percent); };
        result = kestra::sortLines(request);
    }
    if (!eliminated.empty()) terminal.output(eliminated);
    return report(options.word(0), result, terminal);
}

}  // namespace

const Command sortCommand = {
    "sort", "trie les lignes d'un fichier texte",
    "Usage : kestra sort FICHIER [--descending] [--unique]\n"
    "\n"
    "Trie les lignes d'un fichier texte, sur place, dans l'ordre des codes de leurs\n"
    "caractères. Les lignes d'un ou deux caractères disparaissent (un retour chariot\n"
    "compte). Le contenu précédent est gardé dans le fichier « .bak » du dossier\n"
    "courant.\n"
    "\n"
    "  --descending  ordre décroissant\n"
    "  --unique      une seule ligne parmi celles qui sont égales ; les autres sont\n"
    "                citées\n"
    "  --            ce qui suit est un nom de fichier\n",
    run};
