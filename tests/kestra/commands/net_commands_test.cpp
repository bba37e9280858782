#include <gtest/gtest.h>

#include <dorsel/paths.h>
#include <kestra/net/w_socket.h>

#include <tests/support/command_answers.h>
#include <tests/support/document.h>
#include <tests/support/loopback_server.h>
#include <tests/support/real_mail_server.h>
#include <tests/support/temporary_folder.h>

namespace {

using Words = std::vector<std::string>;

int run(const Words& words, KeptTerminal& terminal) {
    return runHost(words, terminal);
}

}  // namespace

TEST(NetCommands, WrongLinesAndFailuresAreSaid) {
    const TemporaryFolder folder;
    const std::string text = folder.write("t.txt", "texte\r\n"), nul = folder.write("n.txt", {"a\0b", 3});
    const std::vector<CommandAnswer> cases = {
        {{"html"}, exitUsage, "", "il manque le listing"},
        {{"html", "--open=1", text}, exitUsage, "", "option inconnue « --open=1 »"},
        {{"html", folder.path("absent")}, exitFailed, "", "listing absent ou illisible"},
        {{"title", text, text}, exitUsage, "", "est de trop"},
        {{"title", folder.path("absent")}, exitFailed, "", "pas de titre, ou pas de fichier (80030002)"},
        {{"request", "poste"}, exitUsage, "", "il manque la commande"},
        {{"request", "poste", "c", "--seconds", "3s"}, exitUsage, "", "--seconds : de 0 à 86400"},
        {{"request", "127.0.0.1", "c"}, exitFailed, "", "pas de réponse"},
        {{"mail", text}, exitUsage, "", "--to est nécessaire"},
        {{"mail", text, "--to"}, exitUsage, "", "valeur absente derrière « --to »"},
        {{"mail", text, "--to", "a@b.fr", "--port", "65536"}, exitUsage, "", "--port : de 1 à 65535"},
        {{"mail", folder.path("absent"), "--to", "a@b.fr"}, exitFailed, "", "texte absent ou illisible"},
        {{"mail", nul, "--to", "a@b.fr"}, exitFailed, "", "octet nul"},
        {{"mail", text, "--to=a@b.fr", "--attach", "rien"}, exitFailed, "", "« rien » : pièce"},
        {{"mail", text, "--to", "a@b.fr", "--subject", "a\nb"}, exitFailed, "", "n'a pas été accepté"},
    };
    expectAnswers(cases);
}

TEST(NetCommands, EachDoesItsWork) {
    const TemporaryFolder folder;
    KeptTerminal terminal;
    EXPECT_EQ(run({"html", "--delete", folder.write("l.txt", "a\r\n")}, terminal), exitDone);
    EXPECT_EQ(terminal.out, folder.path("l.htm") + '\n');
    EXPECT_TRUE(folder.read("l.htm").ends_with("a<br>\n</BODY>"));

    const std::string document = folder.path("d.cht"), author = DOS::ComputerName();
    makeDocument(document);
    terminal.out.clear();
    EXPECT_EQ(run({"title", document, "--set", "Relevé", "--comments=n"}, terminal), exitDone);
    EXPECT_EQ(run({"title", document}, terminal), exitDone);
    EXPECT_EQ(terminal.out, "titre : Relevé\nremarques : n\nposte : " + author + '\n');

    const std::string host = ownLoopbackAddress();
    LoopbackServer server([](LoopbackServer::Client& client) { client.write(client.readUntil(".") + "oui"); },
                          host.c_str(), CWSocket::port);
    terminal.out.clear();
    EXPECT_EQ(run({"request", host, "état."}, terminal), exitDone);
    EXPECT_EQ(terminal.out, "état.oui\n");
}

TEST(NetCommands, MailKeepsDotsAndBareAddresses) {
    const RealMailServer server;
    const TemporaryFolder folder;
    const std::string port = std::to_string(server.port());
    const std::string attachment = folder.write("p.bin", std::string(100'000, '\x80'));
    KeptTerminal terminal;
    EXPECT_EQ(run({"mail", "--server=127.0.0.1", "--port", port, "--from", "Moi <m@x.fr>", "--to",
                   "Un <u@x.fr>", "--to", "d@x.fr", "--login", "compte@exemple.fr", "--password-file",
                   folder.write("mdp", "Kp4m8xTQa\r\n"), "--attach", attachment, "--html",
                   folder.write("corps", ".a\n.")},
                  terminal),
              exitDone)
        << terminal.err;
    EXPECT_TRUE(server.next("txt").starts_with(
        "login compte@exemple.fr\nhello EHLO BREN\nfrom m@x.fr\nto u@x.fr\nto d@x.fr\n"))
        << server.next("txt");
    EXPECT_EQ(server.next("0.part"), ".a\r\n.");
    EXPECT_TRUE(server.next("1.part") == std::string(100'000, '\x80'));
}
