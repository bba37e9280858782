#include <kestra/net/mail_message.h>

#include <kestra/text/matching_files.h>
#include <platform/arrays.h>
#include <platform/cp1252.h>
#include <platform/locale_date.h>

namespace mail {
namespace {

constexpr std::string_view htmlPrefix = "HTML:";

/// A file name inside the quotes of a header: a quote in it must not end it.
std::string quoted(std::string_view name) {
    std::string text;
    for (const char c : name) {
        if (c == '"') text += '\\';
        text += c;
    }
    return text;
}

}  // namespace

const std::string_view boundary = "--08zs01293eraf47a7804dcd17b1e";

std::string address(std::string_view text) {
    const std::size_t end = text.find('>', 1);
    return end != std::string_view::npos ? std::string(text) : '<' + std::string(text) + '>';
}

std::string bareAddress(std::string_view address) {
    const std::size_t start = address.rfind('<');
    return std::string(start == std::string_view::npos
                           ? address
                           : address.substr(start, address.find('>', start) - start + 1));
}

std::vector<std::string> pieces(std::string_view list) {
    // Kept: an empty piece ends the list, so a list that begins with ';' is empty.
    std::vector<std::string> found;
    while (!list.empty() && list.front() != ';') {
        const std::string_view piece = list.substr(0, list.find(';'));
        found.emplace_back(piece);
        list.remove_prefix(std::min(piece.size() + 1, list.size()));
    }
    return found;
}

bool breaksLine(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

std::string safeLines(std::string_view body) {
    std::string safe;
    safe.reserve(body.size() + body.size() / 32);
    bool lineStarts = true;
    for (std::size_t i = 0; i < body.size(); ++i) {
        if (lineStarts && body[i] == '.') safe += '.';
        lineStarts = body[i] == '\r' || body[i] == '\n';
        if (!lineStarts) {
            safe += body[i];
        } else {
            safe += "\r\n";
            if (body[i] == '\r' && i + 1 < body.size() && body[i + 1] == '\n') ++i;
        }
    }
    return safe;
}

bool goesOn(std::string_view reply) {
    const std::string_view whole = reply.substr(0, reply.rfind("\r\n"));
    const std::size_t before = whole.rfind("\r\n");
    const std::string_view line = before == std::string_view::npos ? whole : whole.substr(before + 2);
    return line.size() > 3 && line[3] == '-';
}

std::string head(const Message& message, std::int64_t now) {
    if (message.recipients.empty()) throw CInvalidArgException();
    // Kept: "DATE" in capitals and no time zone behind the time.
    std::string text = "DATE: " + platform::utcDate(now, "ddd',' dd MMM yyyy") + ' ' +
                       platform::utcTime(now, "HH':'mm':'ss tt") + "\r\n";
    text += "From: " + message.sender + "\r\nTo: " + message.recipients.front() + "\r\n";
    for (std::size_t i = 1; i < message.recipients.size(); ++i)
        text += (i == 1 ? "Cc:" : ",") + message.recipients[i];
    if (message.recipients.size() > 1) text += "\r\n";
    if (message.subject) text += "Subject:" + *message.subject + "\r\n";
    text += "MIME-Version: 1.0\r\nContent-Type: multipart/mixed;\r\n      boundary=\"";
    text += boundary.substr(2);
    return text + "\"\r\n\r\n\r\n";
}

std::string bodyPart(std::string_view body, bool safe) {
    const bool isHtml = platform::equalNoCase1252(body.substr(0, htmlPrefix.size()), htmlPrefix);
    if (isHtml) body.remove_prefix(htmlPrefix.size());
    std::string text(boundary);
    text += isHtml ? "\r\nContent-Type: text/html; charset=ISO-8859-1\r\n\r\n"
                   : "\r\nContent-Type: text/plain; charset=US-ASCII\r\n\r\n";
    return text + (safe ? safeLines(body) : std::string(body)) + "\r\n";
}

std::string attachmentHead(std::string_view path) {
    return std::string(boundary) +
           "\r\nContent-Type: application/octet-stream\r\nContent-Transfer-Encoding: base64\r\n"
           "Content-Disposition: attachment; filename=\"" +
           quoted(text::splitPath(path).name) + "\"\r\n\r\n";
}

}  // namespace mail
