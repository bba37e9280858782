#include "json.h"

#include <cstdio>

std::string json::text(std::string_view value) {
    std::string out = "\"";
    for (const char c : value) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (code < ' ' || code == 0x7F) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", code);
            out += escaped;
        } else {
            out += c;
        }
    }
    return out + '"';
}

std::string json::array(const std::vector<std::string>& values) {
    std::string out = "[";
    for (const std::string& value : values) out += (out.size() > 1 ? "," : "") + value;
    return out + ']';
}

std::string json::object(std::initializer_list<std::pair<std::string_view, std::string>> members) {
    std::string out = "{";
    for (const auto& [name, value] : members) out += (out.size() > 1 ? "," : "") + text(name) + ':' + value;
    return out + '}';
}
