#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// As much of SQL's grammar as it takes to see whether a query is one of a single table.
namespace ado20::embedded {

struct SqlToken {
    enum Kind { word, name, string, sign } kind;
    std::string_view text;  ///< of the statement, quotes included
    int depth;              ///< of parentheses around it
};

/// Nothing for a text that ends inside a quote, a comment or a parenthesis.
std::optional<std::vector<SqlToken>> sqlTokens(std::string_view sql);

/// SELECT list FROM table [alias] [WHERE condition] [ORDER BY order], with no more than that on the outer
/// level, and no parenthesis in the list.
struct SimpleQuery {
    std::string_view list;
    std::string_view table;  ///< as written
    std::string_view alias;  ///< as written, the table without one
    std::string_view from;   ///< table and alias
    std::string_view condition;
    std::string_view order;
};
std::optional<SimpleQuery> simpleQuery(std::string_view sql);

}  // namespace ado20::embedded
