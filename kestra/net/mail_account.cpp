#include <kestra/net/mail_account.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <dorsel/settings.h>
#include <dorsel/strings.h>
#include <kestra/net/send_mail.h>

namespace mail {
namespace {

constexpr int recordSize = 500, shortestRecord = 10, mostFields = 10;

/// The record of a library that nobody has set up: a name that no server has.
constexpr char defaultRecord[] =
    "smtp.kestra.invalid;587;Kestra 2007 <courrier@kestra.invalid>;courrier@kestra.invalid;Kp4m8xTQa";
static_assert(sizeof defaultRecord - 1 == 95);

const char* textOr(const char* given, const char* other) {
    return given != nullptr ? given : other != nullptr ? other : "";
}

}  // namespace

Account completed(const GivenAccount& given) {
    char record[recordSize] = "";
    MyPCharArray fields;
    if (given.server == nullptr || given.sender == nullptr) {
        if (DOS::Gets_ini("TOREL", "GENERAL", "LR", "MAILLOGIN", record, recordSize) < shortestRecord)
            std::memcpy(record, defaultRecord, sizeof defaultRecord);
        STR::Separe(record, ';', fields, mostFields);
    }
    // An index behind the last field gives null.
    Account account;
    account.server = textOr(given.server, fields[0]);
    account.port = given.port != 0 ? given.port : static_cast<unsigned>(std::atoi(textOr(fields[1], "0")));
    account.sender = textOr(given.sender, fields[2]);
    account.login = textOr(given.login, fields[3]);
    if (const char* password = given.password != nullptr ? given.password : fields[4])
        account.password = password;
    // A named mark, since records in use may hold anything else there.
    if (std::strcmp(textOr(fields[5], ""), "SAFE") == 0) account.options = mailSafeLines | mailBareEnvelope;
    return account;
}

}  // namespace mail
