#include <kestra/net/send_mail.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <dorsel/trace.h>
#include <kestra/net/base64.h>
#include <kestra/net/base64_code.h>
#include <kestra/net/mail_account.h>
#include <kestra/net/mail_message.h>
#include <kestra/net/socket_x.h>
#include <platform/application.h>
#include <platform/clock.h>
#include <platform/files.h>
#include <platform/prompt.h>

namespace {

constexpr unsigned greetingMilliseconds = 10'000;
/// A server that goes on answering is not listened to any longer.
constexpr std::size_t longestReply = 1024 * 1024;
/// The end of a reply that tells whether lines follow: two lines of the longest length that the protocol has.
constexpr int recentReply = 1024;

/// One dialogue with a server, in its order; each step is false when the dialogue has ended there.
class Dialogue {
  public:
    bool begin(const mail::Account& account);
    bool greet();
    bool hello(const mail::Account& account);
    bool authenticate(const mail::Account& account, bool safeLines);
    bool envelope(const mail::Message& message, bool bare);
    bool data();
    bool content(const mail::Message& message, bool safeLines);
    bool finish();

  private:
    bool step(const std::string& command, const char* code);
    /// The next reply begins with `code`; another one is answered with QUIT, none with nothing.
    bool replied(const char* code, unsigned milliseconds = 0);
    bool readOn(CString& reply, unsigned milliseconds);
    void discardArrived();
    bool credential(const std::string& text, const char* code, unsigned long flags);
    /// Text without an answer; small ones are gathered. False when the connection is broken.
    bool put(std::string_view text);
    bool flush();
    bool attach(const std::string& path);

    CSocketX m_socket;
    std::string m_pending;
};

bool Dialogue::begin(const mail::Account& account) {
    if (AfxSocketInit() == 0) {
        AfxMessageBox("Init socket error");
        return false;
    }
    if (m_socket.Create() == 0) {
        mprintf("$G$Socket creation failed");
        return false;
    }
    if (m_socket.Connect(account.server.c_str(), account.port) == 0) {
        mprintf("$G$Could not connect to server");
        return false;
    }
    return true;
}

bool Dialogue::step(const std::string& command, const char* code) {
    discardArrived();
    m_socket.Send(command.c_str(), 0u, 0);
    return replied(code);
}

/// What is left of an answer longer than one read must not pass for the answer to the next command.
void Dialogue::discardArrived() {
    char rest[4096];
    for (std::size_t left = longestReply; left > 0; left -= sizeof rest)
        if (m_socket.CAsyncSocket::Receive(rest, sizeof rest) <= 0) break;
}

bool Dialogue::replied(const char* code, unsigned milliseconds) {
    CString reply;
    if (m_socket.Receive(reply, milliseconds, 0) == -1) return false;
    const bool expected = reply.view().starts_with(code);
    if (!readOn(reply, milliseconds)) return false;
    if (!expected) m_socket.Send("QUIT\r\n", 0u, 0);
    return expected;
}

/// Reads the further lines of a reply of several.
bool Dialogue::readOn(CString& reply, unsigned milliseconds) {
    std::size_t length = 0;
    for (CString more; mail::goesOn(reply.view()); length += more.view().size()) {
        const int got = m_socket.Receive(more, milliseconds, 0);
        if (got <= 0 || length > longestReply) return false;
        reply += more;
        reply = reply.Right(recentReply);
    }
    return true;
}

bool Dialogue::greet() {
    return replied("220", greetingMilliseconds);
}

bool Dialogue::hello(const mail::Account& account) {
    return step(account.login.empty() ? "HELO BREN\r\n" : "EHLO BREN\r\n", "250");
}

bool Dialogue::credential(const std::string& text, const char* code, unsigned long flags) {
    Base64Encoder encoder;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.c_str());
    return step(encoder.Encode(bytes, 0, flags) + std::string("\r\n"), code);
}

bool Dialogue::authenticate(const mail::Account& account, bool safeLines) {
    if (account.login.empty() || !account.password) return true;
    // Kept: a credential of 57 bytes or more goes out in several lines unless safe lines are asked for.
    const unsigned long flags = safeLines ? Base64Encoder::noLineBreaks : 0;
    return step("AUTH LOGIN\r\n", "334") && credential(account.login, "334", flags) &&
           credential(*account.password, "235", flags);
}

bool Dialogue::envelope(const mail::Message& message, bool bare) {
    const auto shown = [bare](const std::string& address) {
        return bare ? mail::bareAddress(address) : address;
    };
    // Kept: a blank behind the colon of MAIL FROM, none behind that of RCPT TO.
    if (!step("MAIL FROM: " + shown(message.sender) + "\r\n", "250")) return false;
    return std::all_of(
        message.recipients.begin(), message.recipients.end(),
        [&](const std::string& recipient) { return step("RCPT TO:" + shown(recipient) + "\r\n", "250"); });
}

bool Dialogue::data() {
    return step("DATA\r\n", "354");
}

bool Dialogue::put(std::string_view text) {
    m_pending += text;
    return m_pending.size() < 64 * 1024 || flush();
}

bool Dialogue::flush() {
    const int sent = m_socket.SendBin(m_pending.data(), static_cast<long>(m_pending.size()), 0, 0);
    m_pending.clear();
    return sent >= 0;
}

/// False when the connection is broken, or a file that was opened could not be read to its end.
bool Dialogue::attach(const std::string& path) {
    const auto file = platform::theFiles().open(path.c_str(), platform::OpenMode::read);
    if (file == nullptr) return true;
    put(mail::attachmentHead(path));
    constexpr std::size_t pieceSize = 1024 * base64::lineBytes;
    std::vector<unsigned char> piece(pieceSize);
    std::string text(base64::room(pieceSize, 0), '\0');
    std::int64_t got = std::ssize(piece);
    for (std::int64_t offset = 0; got == std::ssize(piece); offset += got) {
        got = file->readAt(offset, piece.data(), piece.size());
        if (got < 0) return false;
        const std::size_t length =
            base64::encode(piece.data(), static_cast<std::size_t>(got), 0, text.data());
        if (!put({text.data(), length})) return false;
    }
    return put("\r\n");
}

bool Dialogue::content(const mail::Message& message, bool safeLines) {
    discardArrived();
    put(mail::head(message, platform::theClock().now()));
    put(mail::bodyPart(message.body, safeLines));
    for (const std::string& path : message.attachments)
        if (!attach(path)) return false;
    put(mail::boundary);
    put("--\r\n\r\n\r\n.\r\n");
    return flush();
}

bool Dialogue::finish() {
    if (!replied("250")) return false;
    m_socket.Send("QUIT\r\n", 0u, 0);
    return true;
}

bool isRefused(const mail::Message& message) {
    return mail::breaksLine(message.sender) || mail::breaksLine(message.subject.value_or("")) ||
           std::any_of(message.recipients.begin(), message.recipients.end(), mail::breaksLine) ||
           std::any_of(message.attachments.begin(), message.attachments.end(), mail::breaksLine);
}

const char* orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace

int SendMailWith(unsigned options, const char* server, unsigned int port, const char* login,
                 const char* password, const char* sender, const char* recipients, const char* subject,
                 const char* body, const char* attachments) {
    const AfxManageState state(AfxGetStaticModuleState());
    if (body == nullptr) return 0;
    const mail::Account account = mail::completed({server, port, sender, login, password});
    mail::Message message;
    message.sender = mail::address(account.sender);
    for (const std::string& piece : mail::pieces(orEmpty(recipients)))
        message.recipients.push_back(mail::address(piece));
    if (subject != nullptr) message.subject = subject;
    message.body = body;
    message.attachments = mail::pieces(orEmpty(attachments));
    if (isRefused(message)) return 0;

    options |= account.options;
    const bool safeLines = (options & mailSafeLines) != 0, bare = (options & mailBareEnvelope) != 0;
    Dialogue dialogue;
    const bool sent = dialogue.begin(account) && dialogue.greet() && dialogue.hello(account) &&
                      dialogue.authenticate(account, safeLines) && dialogue.envelope(message, bare) &&
                      dialogue.data() && dialogue.content(message, safeLines) && dialogue.finish();
    return sent ? 1 : 0;
}

int SendMail(const char* server, unsigned int port, const char* login, const char* password,
             const char* sender, const char* recipients, const char* subject, const char* body,
             const char* attachments) {
    return SendMailWith(0, server, port, login, password, sender, recipients, subject, body, attachments);
}

int SendMailAuto(const char* recipients, const char* subject, const char* body, const char* attachments) {
    return SendMail(nullptr, 0, nullptr, nullptr, nullptr, recipients, subject, body, attachments);
}
