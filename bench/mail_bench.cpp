#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <kestra/net/base64.h>
#include <kestra/net/mail_message.h>
#include <kestra/net/send_mail.h>
#include <tests/support/loopback_server.h>

#include "side_by_side.h"

/// A server that takes everything, as fast as it can be read, and answers each line before the message.
static void takeEverything(LoopbackServer::Client& client) {
    client.write("220 ici\r\n");
    for (;;) {
        const std::string line = client.readLine();
        if (line.empty() || line.starts_with("QUIT")) return;
        if (line.starts_with("DATA")) {
            client.write("354 va\r\n");
            client.skipUntil("\r\n.\r\n");
        }
        client.write("250 ok\r\n");
    }
}

/// A 50 MB attachment to a sink on loopback, beside curl with the same message.
int main() {
    const auto folder = std::filesystem::temp_directory_path() / "kestra_mail_bench";
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "plan.bin").string(), message = (folder / "message.eml").string();
    std::vector<unsigned char> bytes(50'000'000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 2654435761u >> 13);
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    {
        const mail::Message sent{"<a@b.fr>", {"<c@d.fr>"}, "Plan", "texte", {}};
        Base64Encoder encoder;
        std::ofstream(message, std::ios::binary)
            << mail::head(sent, 0) << mail::bodyPart("texte", false) << mail::attachmentHead(file)
            << encoder.Encode(bytes.data(), static_cast<int>(bytes.size()), 0) << "\r\n"
            << mail::boundary << "--\r\n\r\n";
    }

    LoopbackServer server(takeEverything);
    bool taken = true;
    const auto ours = [&] {
        taken = taken && SendMail("127.0.0.1", server.port(), "", "", "a@b.fr", "c@d.fr", "Plan", "texte",
                                  file.c_str()) == 1;
    };
    const std::string curl = "curl -s --mail-from a@b.fr --mail-rcpt c@d.fr --upload-file \"" + message +
                             "\" smtp://127.0.0.1:" + std::to_string(server.port());
    const bool isWindows = std::filesystem::exists("C:\\windows");
    if (isWindows) {
        // Another system's curl is not this build's peer: the rate stands alone.
        ours();
        std::printf("%-56s %10.3f ms\n", "Mail with a 50 MB attachment to loopback",
                    bench::milliseconds(ours));
    } else {
        // At least 0.7 of curl's rate.
        bench::sideBySide(
            "Mail with a 50 MB attachment to loopback", 1 / 0.7, ours, "curl --upload-file",
            [&] { taken = taken && std::system(curl.c_str()) == 0; }, 7);
    }
    std::filesystem::remove_all(folder);
    if (!taken) std::printf("a mail was not taken\n");
    return taken ? 0 : 1;
}
