#include <langinfo.h>
#include <clocale>
#include <ctime>

#include <memory>
#include <string_view>

#include <platform/cp1252.h>
#include <platform/locale_date.h>

namespace platform {
namespace {

struct FreeLocale {
    using pointer = locale_t;
    void operator()(locale_t locale) const { ::freelocale(locale); }
};

/// The form of `strftime` for a picture of Windows.
std::string conversion(std::string_view picture) {
    constexpr struct {
        std::string_view picture, form;
    } parts[] = {{"ddd", "%a"}, {"dd", "%d"}, {"MMM", "%b"}, {"yyyy", "%Y"},
                 {"HH", "%H"},  {"mm", "%M"}, {"ss", "%S"},  {"tt", "%p"}};
    std::string form;
    while (!picture.empty()) {
        std::size_t taken = 0;
        for (const auto& part : parts) {
            if (taken != 0 || !picture.starts_with(part.picture)) continue;
            form += part.form;
            taken = part.picture.size();
        }
        if (taken == 0) {
            if (picture.front() == '%') form += '%';
            if (picture.front() != '\'') form += picture.front();
            taken = 1;
        }
        picture.remove_prefix(taken);
    }
    return form;
}

std::string formatted(std::int64_t seconds, const char* picture) {
    const time_t time = seconds;
    tm parts{};
    std::unique_ptr<void, FreeLocale> locale(::newlocale(LC_ALL_MASK, "", nullptr));
    if (locale == nullptr) locale.reset(::newlocale(LC_ALL_MASK, "C", nullptr));
    if (::gmtime_r(&time, &parts) == nullptr || locale == nullptr) return {};
    char text[200];
    const std::size_t length =
        ::strftime_l(text, sizeof text, conversion(picture).c_str(), &parts, locale.get());
    const bool isUtf8 = std::string_view(::nl_langinfo_l(CODESET, locale.get())) == "UTF-8";
    return isUtf8 ? cp1252FromUtf8({text, length}) : std::string(text, length);
}

}  // namespace

std::string utcDate(std::int64_t seconds, const char* picture) {
    return formatted(seconds, picture);
}
std::string utcTime(std::int64_t seconds, const char* picture) {
    return formatted(seconds, picture);
}

}  // namespace platform
