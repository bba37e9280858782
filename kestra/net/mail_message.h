#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a mail consists of, without sockets and settings.
namespace mail {

struct Message {
    std::string sender;
    std::vector<std::string> recipients;
    std::optional<std::string> subject;
    std::string body;
    std::vector<std::string> attachments;  ///< paths
};

/// An address as the dialogue wants it: as given when it has a ">" behind its first character, else in angle
/// brackets.
std::string address(std::string_view text);

/// The part of an address in angle brackets; all of it when it has none.
std::string bareAddress(std::string_view address);

/// The pieces of a list separated by ';', up to its first empty one.
std::vector<std::string> pieces(std::string_view list);

/// True when the text holds CR or LF.
bool breaksLine(std::string_view text);

/// Body with CR LF at each line end and the leading dots of lines doubled.
std::string safeLines(std::string_view body);

/// True when lines of a reply are still to come, as its last whole line says ("250-"). A text without line
/// end counts as a line.
bool goesOn(std::string_view reply);

/// Opens each part; behind the last one it is followed by "--".
extern const std::string_view boundary;

/// Header lines up to the empty ones behind them. Raises `CInvalidArgException` without recipients.
/// `now` counts seconds since 1970-01-01 UTC.
std::string head(const Message& message, std::int64_t now);

/// The part of the body, up to the line end behind it.
std::string bodyPart(std::string_view body, bool safe);

/// What stands before the content of an attachment.
std::string attachmentHead(std::string_view path);

}  // namespace mail
