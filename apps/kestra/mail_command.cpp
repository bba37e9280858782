#include <algorithm>
#include <charconv>

#include <kestra/net/send_mail.h>
#include <platform/arrays.h>
#include <platform/files.h>
#include <platform/standard_streams.h>

#include "options.h"

namespace {

/// The text of a file, or of the standard input for "-".
bool readText(const std::string& file, std::string& text) {
    if (file != "-") return platform::readWholeFile(file.c_str(), text);
    char piece[65536];
    for (;;) {
        const std::ptrdiff_t got = platform::readStandardInput(piece, sizeof piece);
        if (got <= 0) return got == 0;
        text.append(piece, static_cast<std::size_t>(got));
    }
}

/// What the library would leave out without a word; empty when everything is there.
std::string missingFile(const std::string& list) {
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = std::min(list.find(';', start), list.size());
        const std::string path = list.substr(start, end - start);
        if (platform::theFiles().open(path.c_str(), platform::OpenMode::read) == nullptr) return path;
        start = end + 1;
    }
    return {};
}

bool readPort(const std::string& text, unsigned& port) {
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, port);
    return read.ec == std::errc() && read.ptr == end && port >= 1 && port <= 65535;
}

struct Mail {
    std::string body, password, attachments;
    unsigned port = 0;  ///< 0: the account record's
};

/// Empty when the command line makes sense.
std::string readUsage(const Options& options, Mail& mail) {
    if (!options.fault().empty()) return options.fault();
    if (options.list("--to").empty()) return "--to est nécessaire";
    if (options.has("--server") && options.has("--from")) mail.port = 25;
    if (options.has("--port") && !readPort(options.text("--port"), mail.port)) return "--port : de 1 à 65535";
    return {};
}

/// Empty when everything that is to be sent is there.
std::string readFiles(const Options& options, Mail& mail) {
    if (!readText(options.word(0), mail.body))
        return "« " + options.word(0) + " » : texte absent ou illisible";
    if (mail.body.find('\0') != std::string::npos) return "le texte contient un octet nul";
    if (options.has("--html")) mail.body.insert(0, "HTML:");
    const std::string passwordFile = options.text("--password-file");
    if (!passwordFile.empty() && !readText(passwordFile, mail.password))
        return "« " + passwordFile + " » : mot de passe absent ou illisible";
    mail.password = mail.password.substr(0, mail.password.find_first_of("\r\n"));
    mail.attachments = options.list("--attach");
    const std::string missing = missingFile(mail.attachments);
    return missing.empty() ? "" : "« " + missing + " » : pièce jointe absente ou illisible";
}

int send(const Options& options, const Mail& mail) {
    // The host holds to what readers and servers want: see the options' own words.
    const unsigned mailOptions = options.has("--raw") ? 0u : mailSafeLines | mailBareEnvelope;
    return SendMailWith(mailOptions, options.value("--server"), mail.port, options.value("--login"),
                        options.has("--password-file") ? mail.password.c_str() : nullptr,
                        options.value("--from"), options.list("--to").c_str(), options.value("--subject"),
                        mail.body.c_str(), mail.attachments.c_str());
}

int run(Arguments arguments, Terminal& terminal) {
    const Options options(
        arguments,
        {"--to", "--attach", "--subject", "--from", "--server", "--port", "--login", "--password-file"},
        {"--html", "--raw"}, {"le texte"});
    Mail mail;
    if (const std::string wrong = readUsage(options, mail); !wrong.empty())
        return refuseUsage(mailCommand, wrong, terminal);
    std::string failure = readFiles(options, mail);
    try {
        if (failure.empty() && send(options, mail) == 0) failure = "le courrier n'a pas été accepté";
    } catch (const CInvalidArgException&) {
        failure = "pas de destinataire";
    }
    if (failure.empty()) return exitDone;
    terminal.error("kestra mail : " + failure + '\n');
    return exitFailed;
}

}  // namespace

const Command mailCommand = {
    "mail", "envoie un courrier, avec ses pièces jointes",
    "Usage : kestra mail --to ADRESSE [OPTIONS] TEXTE (« - » : l'entrée standard)\n"
    "\n"
    "  --to ADRESSE, --attach FICHIER\n"
    "                          autant de fois qu'il en faut\n"
    "  --subject SUJET         sinon le courrier n'a pas de sujet\n"
    "  --html                  le texte est du HTML\n"
    "  --server HOTE, --from ADRESSE\n"
    "                          sinon ceux du réglage MAILLOGIN\n"
    "  --port N                sinon 25, ou celui du réglage\n"
    "  --login COMPTE          sinon aucun, ou celui du réglage\n"
    "  --password-file FICHIER le mot de passe est sa première ligne\n"
    "  --raw                   texte et enveloppe tels quels : les lignes qui commencent par\n"
    "                          un point ne sont pas protégées, et les noms devant les\n"
    "                          adresses vont aussi au serveur\n",
    run};
