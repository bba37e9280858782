#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <dorsel/geodesy/decimal.h>
#include <kestra/project/conversions/point_lines.h>
#include <platform/files.h>
#include <platform/standard_streams.h>

#include "options.h"

namespace {

constexpr std::size_t firstBuffer = 1 << 20, largestLine = 1 << 28, outputChunk = 1 << 18;
constexpr long mostMessages = 100;

struct Request {
    std::string from, to, altiFrom, altiTo, file, output;
    double dz = 0;
    kestra::PointLines::Options options;
};

bool readColumns(const std::string& text, std::array<int, 3>& columns) {
    int read = 0;
    const int count =
        std::sscanf(text.c_str(), "%d,%d%n,%d%n", &columns[0], &columns[1], &read, &columns[2], &read);
    return count >= 2 && static_cast<std::size_t>(read) == text.size() && columns[0] > 0 && columns[1] > 0 &&
           columns[2] >= 0 && columns[0] != columns[1] && columns[2] != columns[0] &&
           columns[2] != columns[1];
}

bool readSeparator(const std::string& text, char& separator) {
    if (text == "tab")
        separator = '\t';
    else if (text == "blank")
        separator = ' ';
    else if (text.size() == 1)
        separator = text[0];
    else
        return false;
    return true;
}

bool readDecimals(const std::string& text, int& decimals) {
    double read = -1;
    if (!geodesy::readDecimal(text, read) || !(read >= 0 && read <= 12)) return false;
    decimals = static_cast<int>(read);
    return true;
}

/// Empty when the command line is sound.
std::string readRequest(const Options& options, Request& request) {
    if (!options.fault().empty()) return options.fault();
    std::string wrong;
    const auto read = [&](const char* option, const auto& reader, auto& value) {
        if (options.has(option) && !reader(options.text(option), value))
            wrong = "valeur incorrecte « " + options.text(option) + " » de « " + option + " »";
    };
    read("--dz", geodesy::readDecimal, request.dz);
    read("--columns", readColumns, request.options.columns);
    read("--separator", readSeparator, request.options.separator);
    read("--decimals", readDecimals, request.options.decimals);
    if (!wrong.empty()) return wrong;
    request.from = options.text("--from");
    request.to = options.text("--to");
    request.altiFrom = options.text("--alti-from");
    request.altiTo = options.text("--alti-to");
    request.output = options.text("--output");
    request.options.roundTrip = options.has("--round-trip");
    request.file = options.word(0);
    return request.from.empty() || request.to.empty() ? "--from et --to sont nécessaires" : "";
}

/// Where bytes come from: a file or the standard stream.
class Input {
  public:
    explicit Input(const std::string& file)
        : m_file(file == "-" ? nullptr : platform::theFiles().open(file.c_str(), platform::OpenMode::read)),
          m_isOpen(file == "-" || m_file != nullptr) {}
    bool isOpen() const { return m_isOpen; }
    std::ptrdiff_t read(char* buffer, std::size_t size) {
        if (m_file == nullptr) return platform::readStandardInput(buffer, size);
        const std::int64_t count = m_file->readAt(m_offset, buffer, size);
        m_offset += count > 0 ? count : 0;
        return static_cast<std::ptrdiff_t>(count);
    }

  private:
    std::unique_ptr<platform::File> m_file;
    bool m_isOpen;
    std::int64_t m_offset = 0;
};

/// A new file, which gets its name when it is whole, or the standard stream.
class Output {
  public:
    explicit Output(const std::string& file) {
        if (!file.empty() && platform::theFiles().kind(file.c_str()) != platform::FileKind::missing) return;
        if (!file.empty()) m_file.emplace(file.c_str());
        m_isOpen = !m_file || m_file->isOpen();
    }
    bool isOpen() const { return m_isOpen; }
    /// Writes and empties the text.
    bool write(std::string& text) {
        const bool done = m_file ? m_file->append(text) : platform::writeStandardOutput(text);
        text.clear();
        return done;
    }
    bool finish() { return !m_file || m_file->commit(platform::FileReplacement::Existing::refused); }

  private:
    std::optional<platform::FileReplacement> m_file;
    bool m_isOpen = false;
};

/// Converts all lines; false, once it has been said, when reading or writing fails.
class Conversion {
  public:
    Conversion(kestra::PointLines& lines, Input& input, Output& output, Terminal& terminal)
        : m_lines(lines), m_input(input), m_output(output), m_terminal(terminal) {}

    bool run() {
        std::vector<char> buffer(firstBuffer);
        std::size_t filled = 0;
        for (;;) {
            const std::ptrdiff_t count = m_input.read(buffer.data() + filled, buffer.size() - filled);
            if (count < 0) return fail("lecture impossible");
            if (count == 0) break;
            filled += static_cast<std::size_t>(count);
            const std::size_t used = convertWhole({buffer.data(), filled});
            if (m_failed) return fail("écriture impossible");
            std::memmove(buffer.data(), buffer.data() + used, filled - used);
            filled -= used;
            if (filled < buffer.size()) continue;
            if (buffer.size() >= largestLine) return fail("ligne de plus de 256 Mo");
            buffer.resize(buffer.size() * 2);
        }
        if (filled > 0) {
            convertLine({buffer.data(), filled});
            m_text.pop_back();  // the last line had no end
        }
        return (m_output.write(m_text) && m_output.finish()) || fail("écriture impossible");
    }

  private:
    /// Converts the lines that have their end; returns the bytes used.
    std::size_t convertWhole(std::string_view bytes) {
        std::size_t start = 0;
        for (;;) {
            const std::size_t end = bytes.find('\n', start);
            if (end == std::string_view::npos) return start;
            convertLine(bytes.substr(start, end - start));
            if (m_text.size() >= outputChunk && !m_output.write(m_text)) m_failed = true;
            start = end + 1;
        }
    }
    void convertLine(std::string_view line) {
        const char* reason = m_lines.convert(line, m_text);
        if (reason != nullptr && m_lines.badLines() <= mostMessages)
            m_terminal.error("ligne " + std::to_string(m_lines.lines()) + " : " + reason + '\n');
    }
    bool fail(const char* reason) {
        m_terminal.error(std::string("kestra convert : ") + reason + '\n');
        return false;
    }

    kestra::PointLines& m_lines;
    Input& m_input;
    Output& m_output;
    Terminal& m_terminal;
    std::string m_text;
    bool m_failed = false;
};

std::string reportOf(const kestra::PointLines& lines, const Request& request) {
    const kestra::CoordinateOperation& operation = lines.operation();
    std::string report;
    for (const std::string& line : operation.report()) report += line + '\n';
    if (operation.changesDatum() && lines.points() > 0)
        report +=
            "Précision au point le plus défavorable : " + kestra::accuracyText(lines.worstAccuracy()) + '\n';
    char text[160];
    if (request.options.roundTrip) {
        std::snprintf(text, sizeof text, "Aller-retour : écart %.3g en plan, %.3g en hauteur\n",
                      lines.roundTripPlane(), lines.roundTripHeight());
        report += text;
    }
    const auto& columns = lines.columns();
    std::snprintf(text, sizeof text,
                  "Colonnes : X %d, Y %d, Z %d\n%ld points convertis, %ld lignes en erreur sur %ld\n",
                  columns[0], columns[1], columns[2], lines.points(), lines.badLines(), lines.lines());
    return report + text;
}

int convert(Arguments arguments, Terminal& terminal) {
    const Options options(arguments,
                          {"--from", "--to", "--alti-from", "--alti-to", "--dz", "--columns", "--separator",
                           "--decimals", "--output"},
                          {"--round-trip"}, {"le fichier à convertir"});
    Request request;
    if (const std::string fault = readRequest(options, request); !fault.empty())
        return refuseUsage(convertCommand, fault, terminal);
    kestra::CoordinateOperation heights;
    heights.altiFrom = kestra::gridOfChoice(request.altiFrom.c_str());
    heights.altiTo = kestra::gridOfChoice(request.altiTo.c_str());
    heights.dz = request.dz;
    kestra::PointLines lines(request.from, request.to, heights, request.options);
    if (!lines.isSound()) return refuseUsage(convertCommand, lines.fault(), terminal);

    const auto refuse = [&](const std::string& file, const char* reason) {
        terminal.error("kestra convert : « " + file + " » " + reason + '\n');
        return exitFailed;
    };
    Input input(request.file);
    if (!input.isOpen()) return refuse(request.file, "ne peut être lu");
    Output output(request.output);
    if (!output.isOpen()) return refuse(request.output, "existe déjà ou ne peut être créé");
    const bool isDone = Conversion(lines, input, output, terminal).run();
    terminal.error(reportOf(lines, request));
    return isDone && lines.badLines() == 0 && !lines.operation().missesGrid() ? exitDone : exitFailed;
}

}  // namespace

const Command convertCommand = {
    "convert", "convertit les points d'un fichier texte d'une projection à une autre",
    "Usage : kestra convert --from PROJECTION --to PROJECTION [OPTIONS] FICHIER (« - » : l'entrée "
    "standard)\n\n"
    "Les autres colonnes restent comme elles sont; une ligne fautive est marquée « # ligne N : » et la "
    "suite\n"
    "continue. L'opération, les grilles et la précision sont dites sur l'erreur standard. Les projections "
    "sont\n"
    "celles de « kestra projections »; « * » prend la zone conique conforme du premier point, « *A » sa "
    "zone\n"
    "Lambert NTF.\n\n"
    "  --alti-from GRILLE, --alti-to GRILLE\n"
    "                     grilles d'altitude, fichiers .MNT ou .GRA; « $ » : aucune\n"
    "  --dz METRES        constante ajoutée aux hauteurs\n"
    "  --columns X,Y[,Z]  numéros des colonnes, à partir de 1\n"
    "  --separator C      « ; », « , », « tab » ou « blank » (sinon reconnu)\n"
    "  --decimals N       décimales écrites (sinon 4 pour les mètres, 9 pour les degrés)\n"
    "  --output FICHIER   nouveau fichier (sinon la sortie standard)\n"
    "  --round-trip       reconvertit chaque point et dit le plus grand écart\n\n"
    "Code de retour : 0; 1 quand une ligne n'a pas été convertie ou qu'une grille manque; 2 pour une ligne "
    "de\n"
    "commande incorrecte.\n",
    convert};
