#include <algorithm>
#include <cstdlib>

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

int refused(const std::string& why) {
    platform::printError("kestra mail : " + why);
    return 1;
}

int usage(const std::string& fault) {
    return host::wrongUsage("mail", fault,
                            {"usage : kestra mail --to ADRESSE [options] TEXTE ('-' : entrée standard)",
                             "  --to ADRESSE, --attach FICHIER  autant de fois qu'il en faut",
                             "  --subject SUJET, --html         le texte est du HTML",
                             "  --from ADRESSE --server HOTE    sinon ceux du réglage MAILLOGIN",
                             "  --port N --login COMPTE         sinon 25 ou ceux du réglage",
                             "  --password-file FICHIER         première ligne : le mot de passe",
                             "  --raw                           texte et enveloppe tels quels"});
}

}  // namespace

int host::mail(const Arguments& arguments) {
    const Options options(
        arguments,
        {"--to", "--attach", "--subject", "--from", "--server", "--port", "--login", "--password-file"},
        {"--html", "--raw"});
    if (!options.fault().empty() || options.rest().size() != 1) return usage(options.fault());
    if (options.list("--to").empty()) return usage("--to est nécessaire");

    std::string body, password;
    if (!readText(options.rest()[0], body))
        return refused(options.rest()[0] + " : texte absent ou illisible");
    const char* passwordFile = options.value("--password-file");
    if (passwordFile != nullptr && !readText(passwordFile, password))
        return refused(std::string(passwordFile) + " : absent ou illisible");
    password = password.substr(0, password.find_first_of("\r\n"));
    const std::string attachments = options.list("--attach");
    if (const std::string missing = missingFile(attachments); !missing.empty())
        return refused(missing + " : pièce jointe absente ou illisible");
    if (body.find('\0') != std::string::npos) return refused("le texte contient un octet nul");

    const bool ownAccount = options.value("--server") != nullptr && options.value("--from") != nullptr;
    const int port = std::atoi(options.value("--port") != nullptr ? options.value("--port")
                               : ownAccount                       ? "25"
                                                                  : "0");
    if (port < 0 || port > 65535) return usage("--port : de 1 à 65535");
    if (options.has("--html")) body.insert(0, "HTML:");
    // The host holds to what readers and servers want: see the options' own words.
    const unsigned mailOptions = options.has("--raw") ? 0u : mailSafeLines | mailBareEnvelope;
    try {
        const int sent = SendMailWith(
            mailOptions, options.value("--server"), static_cast<unsigned>(port), options.value("--login"),
            passwordFile != nullptr ? password.c_str() : nullptr, options.value("--from"),
            options.list("--to").c_str(), options.value("--subject"), body.c_str(), attachments.c_str());
        return sent == 1 ? 0 : refused("le courrier n'a pas été accepté");
    } catch (const CInvalidArgException&) {
        return refused("pas de destinataire");
    }
}
