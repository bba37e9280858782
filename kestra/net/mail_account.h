#pragma once
#include <optional>
#include <string>

/// The account that mails go out with when the caller names none.
namespace mail {

struct Account {
    std::string server;
    unsigned port = 0;
    std::string sender;
    std::string login;
    std::optional<std::string> password;  ///< an empty one is one
    unsigned options = 0;                 ///< of `MailOptions`
};

/// What a caller names; null and 0 for what is missing.
struct GivenAccount {
    const char* server;
    unsigned port;
    const char* sender;
    const char* login;
    const char* password;
};

/// The given account, completed by the settings when it lacks a server or a sender.
Account completed(const GivenAccount& given);

}  // namespace mail
