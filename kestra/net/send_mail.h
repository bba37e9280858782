#pragma once
#include <platform/export.h>

/// Mail over SMTP, with attachments. Texts are Windows-1252. The functions have plain names.
///
/// The dialogue: greeting, EHLO (HELO without login), AUTH LOGIN when there are a login and a password, MAIL
/// FROM, RCPT TO for each recipient, DATA, the message, QUIT. A reply with another code than expected ends it
/// with QUIT, one that does not arrive without. The greeting must come within ten seconds and connecting has
/// its own limits (`platform/async_socket.h`); every later reply is waited for without limit.
///
/// The message: a multipart/mixed message of the body and one part an attachment, Base64 in lines of 76
/// characters. Its date is in UTC, in the words of the system's locale.
///
/// What differs from what a reader may expect:
/// - the body goes out as it is, in the code page it has. A line of it that is a single "." ends the message
///   for the server, and other lines lose a leading "."; a host that does not rule such lines out asks for
///   `mailSafeLines` (`SendMailWith`, or the account record). It is off unless asked for, because hosts of
///   the family protect their bodies themselves, and a dot doubled twice would reach the reader;
/// - a login or password of 57 bytes or more goes out in several lines, which servers take for several
///   answers; `mailSafeLines` sends it in one;
/// - a name before an address goes into MAIL FROM and RCPT TO as well, which some servers refuse;
///   `mailBareEnvelope` leaves it out there;
/// - a list of recipients or attachments ends at its first empty piece: "a;;b" is "a";
/// - an empty list of recipients is refused only when the message's head is made, after RCPT and DATA, with
///   `CInvalidArgException`; nothing has been accepted by the server then;
/// - of a reply longer than 256 bytes the first 256 count; what is left of it is passed over.
///
/// Files are read in pieces: an attachment takes a fixed amount of memory whatever its size.
/// For one thread; the call blocks it, windows of the thread go on painting themselves.

/// Options of `SendMailWith`.
enum MailOptions : unsigned {
    /// Lines reach the other side as they are: every line end of the body becomes CR LF and a leading "." is
    /// doubled for the way; login and password are one line each.
    mailSafeLines = 1,
    /// MAIL FROM and RCPT TO carry the address alone, without the name before it, as servers that hold to the
    /// standard's letter want them; the lines of the message keep the names.
    mailBareEnvelope = 2,
};

extern "C" {

/// Sends one mail. 1 when the server took it, else 0.
///
/// `sender`: "Name <address>" or an address. `recipients`: the same, separated by ';'; the first is shown as
/// "To", the others as "Cc". `subject`: null for none. `body`: must not be null; when it begins with "HTML:"
/// (in any case) the rest is HTML. `attachments`: paths separated by ';', null or empty for none; a file that
/// cannot be opened is left out, one that cannot be read to its end makes the call fail.
///
/// When `server` or `sender` is null the account record is read, and each of `server`, `port` (0), `sender`,
/// `login` and `password` that is missing is taken from it. Otherwise a null login is an empty one. With an
/// empty login there is no authentication.
///
/// Account record: setting "MAILLOGIN" of section "GENERAL" of source "TOREL" (local, then network): server;
/// port; sender; login; password; "SAFE" for both `MailOptions`, where anything else means none. A record of
/// fewer than 10 characters counts as none: the one the library was built with is used.
///
/// A sender, recipient, subject or attachment that holds CR or LF, which could pass for a command or a
/// header, and a null body are refused: 0, before anything is sent. Failures to begin with are told: "Init
/// socket error" in a message box, "$G$Socket creation failed" and "$G$Could not connect to server" in the
/// trace.
KESTRA_API int SendMail(const char* server, unsigned int port, const char* login, const char* password,
                        const char* sender, const char* recipients, const char* subject, const char* body,
                        const char* attachments);

/// `SendMail` with the account record.
KESTRA_API int SendMailAuto(const char* recipients, const char* subject, const char* body,
                            const char* attachments);

/// `SendMail` with options, a sum of `MailOptions`.
KESTRA_API int SendMailWith(unsigned options, const char* server, unsigned int port, const char* login,
                            const char* password, const char* sender, const char* recipients,
                            const char* subject, const char* body, const char* attachments);
}
