#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kestra/net/mail_account.h>
#include <kestra/net/mail_message.h>
#include <kestra/net/send_mail.h>
#include <kestra/net/socket_x.h>
#include <platform/arrays.h>
#include <platform/clock.h>
#include <platform/faulty_files.h>
#include <platform/locale_date.h>
#include <platform/replaceable.h>

#include <tests/support/loopback_server.h>
#include <tests/support/real_mail_server.h>
#include <tests/support/recorders.h>
#include <tests/support/scripted_sockets.h>
#include <tests/support/settings_folders.h>

namespace {

using Replies = std::vector<std::string>;
const Replies withLogin = {"220 ici\r\n", "250-ici\r\n250 AUTH LOGIN\r\n",
                           "334 A\r\n",   "334 B\r\n",
                           "235 oui\r\n", "250 ok\r\n",
                           "250 ok\r\n",  "354 va\r\n",
                           "250 pris\r\n"};

/// A server that gives these replies in turn, "" closing the connection, and takes a message behind a "354".
class MailScript {
  public:
    explicit MailScript(Replies replies)
        : m_server([replies = std::move(replies)](LoopbackServer::Client& client) {
              for (const std::string& reply : replies) {
                  if (reply.empty()) return;
                  client.write(reply);
                  if (reply == replies.back() && reply.starts_with("250 pris")) break;
                  client.readUntil(reply.starts_with("354") ? "\r\n.\r\n" : "\r\n");
              }
              client.readUntil("QUIT\r\n");
          }) {}
    int send(const char* login = "moi", const char* recipients = "a@x.fr", const char* attachments = nullptr,
             const char* body = "texte") {
        return SendMail("127.0.0.1", m_server.port(), login, "secret", "moi@x.fr", recipients, "Sujet", body,
                        attachments);
    }
    std::string received() { return m_server.received(); }

  private:
    LoopbackServer m_server;
};

class OneMoment : public platform::Clock {
  public:
    std::int64_t now() override { return 1580738709; }
    platform::LocalTime localTime(std::int64_t) override { return {}; }
};

std::string bytesOf(std::size_t count) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * i + i / 251);
    return bytes;
}

}  // namespace

TEST(SendMail, DialogueAndMessageByteForByte) {
    OneMoment moment;
    const platform::Replaced clock(platform::replaceClock, moment);
    const TemporaryFolder folder;
    const std::string files = folder.write("a\xE9.bin", "abc") + ";" + folder.path("manque.bin") + ";" +
                              folder.write("vide.bin", "") + ";;" + folder.write("apres.bin", "x");
    Replies replies = withLogin;
    replies.insert(replies.begin() + 6, 2, "250 ok\r\n");
    MailScript script(replies);
    EXPECT_EQ(script.send("moi", "a@x.fr;Bé <b@x.fr>;c@x.fr;;d@x.fr", files.c_str()), 1);
    const std::string date = platform::utcDate(1580738709, "ddd',' dd MMM yyyy") + ' ' +
                             platform::utcTime(1580738709, "HH':'mm':'ss tt");
    EXPECT_NE(date.find(" 2020 14:05:09 "), std::string::npos) << date;
    EXPECT_EQ(
        script.received(),
        "EHLO BREN\r\nAUTH LOGIN\r\nbW9p\r\nc2VjcmV0\r\nMAIL FROM: <moi@x.fr>\r\n"
        "RCPT TO:<a@x.fr>\r\nRCPT TO:Bé <b@x.fr>\r\nRCPT TO:<c@x.fr>\r\nDATA\r\n"
        "DATE: " +
            date +
            "\r\nFrom: <moi@x.fr>\r\nTo: <a@x.fr>\r\nCc:Bé <b@x.fr>,<c@x.fr>\r\nSubject:Sujet\r\n"
            "MIME-Version: 1.0\r\nContent-Type: multipart/mixed;\r\n"
            "      boundary=\"08zs01293eraf47a7804dcd17b1e\"\r\n\r\n\r\n"
            "--08zs01293eraf47a7804dcd17b1e\r\nContent-Type: text/plain; charset=US-ASCII\r\n\r\ntexte\r\n"
            "--08zs01293eraf47a7804dcd17b1e\r\nContent-Type: application/octet-stream\r\n"
            "Content-Transfer-Encoding: base64\r\nContent-Disposition: attachment; "
            "filename=\"a\xE9.bin\"\r\n\r\n"
            "YWJj\r\n"
            "--08zs01293eraf47a7804dcd17b1e\r\nContent-Type: application/octet-stream\r\n"
            "Content-Transfer-Encoding: base64\r\nContent-Disposition: attachment; "
            "filename=\"vide.bin\"\r\n\r\n"
            "\r\n"
            "--08zs01293eraf47a7804dcd17b1e--\r\n\r\n\r\n.\r\nQUIT\r\n");
}

TEST(SendMail, AWrongCodeEndsWithQuitAndAClosedConnectionWithout) {
    const std::string commands =
        "EHLO BREN\r\nAUTH LOGIN\r\nbW9p\r\nc2VjcmV0\r\nMAIL FROM: <moi@x.fr>\r\nRCPT "
        "TO:<a@x.fr>\r\nDATA\r\n";
    std::size_t length = 0;  // of the commands that were sent before the step's reply
    for (std::size_t step = 0; step < withLogin.size(); ++step) {
        for (const char* reply : {"500 non\r\n", "5", "\r\n", ""}) {
            Replies replies(withLogin.begin(), withLogin.begin() + static_cast<std::ptrdiff_t>(step));
            replies.emplace_back(reply);
            MailScript script(replies);
            EXPECT_EQ(script.send(), 0) << step << reply;
            const std::string received = script.received(), quit = *reply != '\0' ? "QUIT\r\n" : "";
            const std::string message =
                step < 8 ? "" : received.substr(length, received.find("QUIT\r\n") - length);
            EXPECT_EQ(received, commands.substr(0, length) + message + quit) << step << reply;
        }
        if (length < commands.size()) length = commands.find('\n', length) + 1;
    }
}

TEST(SendMail, RepliesOfManyLinesAndLongOnes) {
    std::string many, nuls("250\0\r\n", 6);
    for (int i = 0; i < 60; ++i) many += "250-EXTENSION " + std::to_string(i) + "\r\n";
    for (const std::string& hello : {many + "250 fin\r\n", "250 " + std::string(252, 'y'), nuls}) {
        Replies replies = withLogin;
        replies[1] = hello;
        MailScript script(replies);
        EXPECT_EQ(script.send(), 1) << hello.size();
    }
    // An answer without end is not listened to for ever, and a greeting is waited for ten seconds.
    for (const std::string& greeting : {"220-" + std::string(1'200'000, 'z'), std::string()}) {
        LoopbackServer server([&](LoopbackServer::Client& client) {
            client.write(greeting);
            client.readUntil("never");
        });
        EXPECT_EQ(SendMail("127.0.0.1", server.port(), "", "", "a@b.fr", "c@d.fr", "", "", ""), 0);
        EXPECT_EQ(CSocketX::GetLastError() == 10060, greeting.empty());
    }
}

TEST(SendMail, KeptALongPasswordGoesOutInSeveralLines) {
    const std::string password(60, 'p');
    for (const auto& [options, breaks] : {std::pair{0u, 1}, std::pair{unsigned{mailSafeLines}, 0}}) {
        ScriptedSockets sockets(
            "220 \xFF"
            "250 \xFF"
            "334 \xFF"
            "334 \xFF");
        const platform::Replaced replaced(platform::replaceSockets, sockets);
        SendMailWith(options, "serveur", 25, "moi", password.c_str(), "a@b.fr", "c@d.fr", "", "", "");
        const std::string sent = sockets.sent.substr(sockets.sent.find("bW9p\r\n") + 6);
        EXPECT_EQ(sent.substr(76, 8), breaks == 1 ? "\r\ncHBw\r\n" : "cHBw\r\nQU") << sent;
    }
}

TEST(SendMail, ARealServerGetsWhatWasSent) {
    const RealMailServer server;
    const TemporaryFolder folder;
    const std::string big = bytesOf(300'000), line = bytesOf(57), lines = bytesOf(57 * 1024 * 2);
    const std::string files = folder.write("grand.bin", big) + ';' + folder.write("ligne.bin", line) + ';' +
                              folder.write("lignes.bin", lines) + ';' + folder.write("vide.bin", "");
    EXPECT_EQ(SendMailWith(mailBareEnvelope, "localhost", server.port(), "compte@exemple.fr", "Kp4m8xTQa",
                           "Bureau <compte@exemple.fr>", "Un <un@exemple.fr>;deux@exemple.fr", "Rapport",
                           "html:<p>\xE9t\xE9</p>", files.c_str()),
              1);
    const std::string text = server.next("txt");
    EXPECT_TRUE(
        text.starts_with("login compte@exemple.fr\nhello EHLO BREN\nfrom compte@exemple.fr\n"
                         "to un@exemple.fr\nto deux@exemple.fr\nDATE: "))
        << text;
    EXPECT_TRUE(text.ends_with(
        "\nFrom: Bureau <compte@exemple.fr>\nTo: Un <un@exemple.fr>\nCc: <deux@exemple.fr>\n"
        "Subject: Rapport\nMIME-Version: 1.0\npart text/html iso-8859-1 -\n"
        "part application/octet-stream - grand.bin\npart application/octet-stream - ligne.bin\n"
        "part application/octet-stream - lignes.bin\npart application/octet-stream - vide.bin\n"))
        << text;
    EXPECT_EQ(server.next("0.part"), "<p>\xE9t\xE9</p>");
    int part = 0;
    for (const std::string& sent : {big, line, lines, std::string()})
        EXPECT_TRUE(server.next(std::to_string(++part) + ".part") == sent) << part;
}

TEST(SendMail, SafeLinesReachTheReaderUnharmed) {
    const char body[] = ".cache\r\n.\r\n..deux\nligne\rfin";
    {
        const RealMailServer server;
        EXPECT_EQ(SendMailWith(mailSafeLines, "127.0.0.1", server.port(), "", "", "a@b.fr", "c@d.fr", nullptr,
                               body, nullptr),
                  1);
        EXPECT_EQ(server.next("0.part"), ".cache\r\n.\r\n..deux\r\nligne\r\nfin");
        EXPECT_TRUE(server.next("txt").starts_with("login \nhello HELO BREN\n"));
    }
    // Kept: without the option the body goes out as it is.
    EXPECT_TRUE(mail::bodyPart(body, false).ends_with(std::string(body) + "\r\n"));
}

TEST(SendMail, WhatCouldInjectACommandIsRefusedBeforeAnythingIsSent) {
    const struct {
        const char *sender, *recipients, *subject, *body, *attachments;
    } cases[] = {{"a@b.fr>\r\nRCPT TO:<x@y.fr", "c@d.fr", "s", "b", nullptr},
                 {"a@b.fr", "c@d.fr;e@f.fr\nDATA", "s", "b", nullptr},
                 {"a@b.fr", "c@d.fr", "s\r\nBcc: x@y.fr", "b", nullptr},
                 {"a@b.fr", "c@d.fr", "s", "b", "C:\\a\r\nb.txt"},
                 {"a@b.fr", "c@d.fr", "s", nullptr, nullptr}};
    for (const auto& test : cases) {
        ScriptedSockets sockets("220 ici\r\n");
        const platform::Replaced replaced(platform::replaceSockets, sockets);
        EXPECT_EQ(SendMail("serveur", 25, "", "", test.sender, test.recipients, test.subject, test.body,
                           test.attachments),
                  0);
        EXPECT_EQ(sockets.connectedTo + sockets.sent, "");
    }
    EXPECT_NE(mail::attachmentHead("C:\\x\\a\"b.txt").find("filename=\"a\\\"b.txt\""), std::string::npos);
}

TEST(SendMail, KeptAnEmptyListOfRecipientsRaisesBehindData) {
    for (const char* recipients : {"", ";a@x.fr"}) {
        MailScript script({"220 ici\r\n", "250 ok\r\n", "250 ok\r\n", "354 va\r\n"});
        EXPECT_THROW(script.send("", recipients), CInvalidArgException);
        EXPECT_EQ(script.received(), "HELO BREN\r\nMAIL FROM: <moi@x.fr>\r\nDATA\r\n");
    }
    EXPECT_EQ(mail::address(">a"), "<>a>");
}

TEST(SendMail, AnAttachmentThatCannotBeReadEndsTheMessage) {
    const TemporaryFolder folder;
    const std::string file = folder.write("f.bin", bytesOf(200'000));
    platform::FaultyFiles faulty(platform::theFiles());
    const platform::Replaced replaced(platform::replaceFiles, faulty);
    MailScript script(withLogin);
    faulty.failAtCall(3);
    EXPECT_EQ(script.send("moi", "a@x.fr", (folder.path("") + ";" + file).c_str()), 0);
    EXPECT_EQ(script.received().find("\r\n.\r\n"), std::string::npos) << "no message without its attachment";
}

TEST(SendMail, TheAccountRecordFillsWhatIsMissing) {
    const SettingsFolders settings;
    const auto record = [&](const char* text) {
        settings.local("TOREL", std::string("[GENERAL]\r\nMAILLOGIN=") + text + "\r\n");
    };
    record("court");
    mail::Account account = mail::completed({nullptr, 0, nullptr, nullptr, nullptr});
    EXPECT_EQ(account.login + ' ' + *account.password, "courrier@kestra.invalid Kp4m8xTQa");
    EXPECT_EQ(account.port, 587u);

    record("smtp.x.fr;2525;Moi <moi@x.fr>;moi;mdp;3");
    EXPECT_EQ(mail::completed({nullptr, 0, nullptr, nullptr, nullptr}).options, 0u) << "only the mark counts";
    record("smtp.x.fr;2525;Moi <moi@x.fr>;moi;mdp;SAFE");
    account = mail::completed({"autre.fr", 26, nullptr, nullptr, "autre"});
    EXPECT_EQ(account.server + ' ' + account.sender + ' ' + account.login + ' ' + *account.password,
              "autre.fr Moi <moi@x.fr> moi autre");
    EXPECT_EQ(account.port * account.options, 26u * 3u);

    ScriptedSockets sockets("");
    const platform::Replaced replaced(platform::replaceSockets, sockets);
    EXPECT_EQ(SendMailAuto("a@x.fr", "s", "b", ""), 0);
    EXPECT_EQ(sockets.connectedTo, "smtp.x.fr:2525");
}
