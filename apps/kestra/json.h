#pragma once
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Pieces of JSON (RFC 8259). Texts are Windows-1252; the terminal shows them as UTF-8.
namespace json {

/// A text in double quotes.
std::string text(std::string_view value);
std::string array(const std::vector<std::string>& values);
/// Members in the order given; the values are JSON.
std::string object(std::initializer_list<std::pair<std::string_view, std::string>> members);
inline std::string truth(bool value) {
    return value ? "true" : "false";
}

}  // namespace json
