#include <algorithm>

#include <platform/ado/embedded/sql_tokens.h>
#include <platform/cp1252.h>

namespace ado20::embedded {

namespace {

bool isWordCharacter(char c) {
    return c == '_' || c == '$' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
           (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

/// Length of a quoted text at the front, with its quotes; npos when it does not end.
std::size_t quotedLength(std::string_view text) {
    const char close = text[0] == '[' ? ']' : text[0];
    for (std::size_t at = 1;; at += 2) {
        at = text.find(close, at);
        if (at == std::string_view::npos) return at;
        if (close == ']' || at + 1 == text.size() || text[at + 1] != close) return at + 1;
    }
}

/// Length of blanks or of a comment at the front, 0 for neither; npos for a comment that does not end.
std::size_t gapLength(std::string_view text) {
    const auto blanks = std::min(text.find_first_not_of(" \t\r\n\f"), text.size());
    if (blanks > 0) return blanks;
    if (text.starts_with("--")) return std::min(text.find('\n'), text.size());
    if (!text.starts_with("/*")) return 0;
    const auto end = text.find("*/", 2);
    return end == std::string_view::npos ? end : end + 2;
}

std::size_t wordLength(std::string_view text) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isWordCharacter) -
                                    text.begin());
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view other) { return platform::equalNoCase1252(word, other); });
}

/// Walks the tokens of a statement.
class Walk {
  public:
    explicit Walk(std::vector<SqlToken> tokens) : m_tokens(std::move(tokens)) {}

    bool atEnd() const { return m_at == m_tokens.size(); }
    bool atWord(std::initializer_list<std::string_view> words) const {
        return !atEnd() && m_tokens[m_at].depth == 0 && m_tokens[m_at].kind == SqlToken::word &&
               isOneOf(m_tokens[m_at].text, words);
    }
    bool takeWord(std::string_view wanted) { return atWord({wanted}) && ++m_at != 0; }
    bool takeSign(char sign) {
        const bool found =
            !atEnd() && m_tokens[m_at].kind == SqlToken::sign && m_tokens[m_at].text[0] == sign;
        if (found) ++m_at;
        return found;
    }
    std::string_view takeName() {
        const bool isName =
            !atEnd() && (m_tokens[m_at].kind == SqlToken::word || m_tokens[m_at].kind == SqlToken::name);
        return isName ? m_tokens[m_at++].text : std::string_view();
    }
    /// Everything up to one of these words on the outer level.
    std::string_view upTo(std::initializer_list<std::string_view> words) {
        const std::size_t first = m_at;
        while (!atEnd() && !atWord(words)) ++m_at;
        return span(first, m_at);
    }
    std::size_t position() const { return m_at; }
    std::string_view span(std::size_t first, std::size_t end) const {
        if (first == end) return {};
        const std::string_view last = m_tokens[end - 1].text;
        const char* const start = m_tokens[first].text.data();
        return {start, static_cast<std::size_t>(last.data() + last.size() - start)};
    }

  private:
    std::vector<SqlToken> m_tokens;
    std::size_t m_at = 0;
};

/// Words after which a query is no longer simple.
bool isBeyondSimple(const SqlToken& token) {
    return token.depth == 0 && token.kind == SqlToken::word &&
           isOneOf(token.text, {"DISTINCT", "ALL", "GROUP", "HAVING", "UNION", "INTERSECT", "EXCEPT", "LIMIT",
                                "JOIN", "WINDOW", "OVER", "FILTER", "INDEXED"});
}

/// [main.]table [[AS] alias]
bool readTable(Walk& walk, SimpleQuery& query) {
    const std::size_t first = walk.position();
    query.table = walk.takeName();
    if (query.table.empty()) return false;
    query.alias = query.table;
    const bool marked = walk.takeWord("AS");
    if (marked || (!walk.atEnd() && !walk.atWord({"WHERE", "ORDER"}))) query.alias = walk.takeName();
    query.from = walk.span(first, walk.position());
    return !query.alias.empty();
}

}  // namespace

std::optional<std::vector<SqlToken>> sqlTokens(std::string_view sql) {
    std::vector<SqlToken> tokens;
    int depth = 0;
    while (!sql.empty()) {
        const std::size_t gap = gapLength(sql);
        if (gap == std::string_view::npos) return {};
        if (gap > 0) {
            sql.remove_prefix(gap);
            continue;
        }
        const bool quoted = sql[0] == '\'' || sql[0] == '"' || sql[0] == '`' || sql[0] == '[';
        const std::size_t word = wordLength(sql);
        const std::size_t length = quoted ? quotedLength(sql) : std::max<std::size_t>(word, 1);
        if (length == std::string_view::npos) return {};
        if (sql[0] == ')') --depth;
        const SqlToken::Kind kind = sql[0] == '\'' ? SqlToken::string
                                    : quoted       ? SqlToken::name
                                    : word > 0     ? SqlToken::word
                                                   : SqlToken::sign;
        tokens.push_back({kind, sql.substr(0, length), depth});
        if (sql[0] == '(') ++depth;
        if (depth < 0) return {};
        sql.remove_prefix(length);
    }
    if (depth != 0) return {};
    return tokens;
}

std::optional<SimpleQuery> simpleQuery(std::string_view sql) {
    std::optional<std::vector<SqlToken>> tokens = sqlTokens(sql);
    if (!tokens) return {};
    while (!tokens->empty() && tokens->back().text == ";") tokens->pop_back();
    if (std::any_of(tokens->begin(), tokens->end(),
                    [](const SqlToken& token) { return isBeyondSimple(token) || token.text == ";"; }))
        return {};
    Walk walk(std::move(*tokens));
    SimpleQuery query;
    if (!walk.takeWord("SELECT")) return {};
    query.list = walk.upTo({"FROM"});
    if (query.list.empty() || query.list.find('(') != std::string_view::npos) return {};
    if (!walk.takeWord("FROM") || !readTable(walk, query)) return {};
    if (walk.takeWord("WHERE") && (query.condition = walk.upTo({"ORDER"})).empty()) return {};
    if (walk.takeWord("ORDER") && (!walk.takeWord("BY") || (query.order = walk.upTo({})).empty())) return {};
    if (!walk.atEnd()) return {};
    return query;
}

}  // namespace ado20::embedded
