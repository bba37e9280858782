#include <algorithm>
#include <cmath>
#include <compare>

#include <platform/ado/criteria.h>
#include <platform/ado/variant_text.h>
#include <platform/cp1252.h>

namespace ado20 {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr int deepestNesting = 100;

[[noreturn]] void refuse() {
    throw _com_error(hrInvalidArgument);
}

bool isWordCharacter(char c) {
    return c == '_' || c == '.' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
           (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

/// Descends through a text of criteria.
class Parser {
  public:
    explicit Parser(std::string_view text) : m_rest(text) {}

    Criterion criterion() {
        Criterion result;
        result.field = field();
        result.comparison = comparison();
        result.value = value();
        const bool needsText = result.comparison == Comparison::like;
        if (needsText && result.value.type() != VarType::text) refuse();
        const bool orders =
            result.comparison != Comparison::equal && result.comparison != Comparison::notEqual;
        if (orders && result.value.isNull()) refuse();
        return result;
    }

    /// either: both { OR both }; both: primary { AND primary }.
    void either(Criteria& criteria, int depth = 0) {
        both(criteria, depth);
        while (takeWord("OR")) {
            both(criteria, depth);
            criteria.steps.push_back({CriteriaStep::either});
        }
    }

    std::vector<SortKey> sortKeys() {
        std::vector<SortKey> keys;
        do {
            SortKey key{field()};
            key.descending = takeWord("DESC");
            if (!key.descending) takeWord("ASC");
            keys.push_back(std::move(key));
        } while (take(','));
        return keys;
    }

    void expectEnd() {
        skipBlanks();
        if (!m_rest.empty()) refuse();
    }

  private:
    void both(Criteria& criteria, int depth) {
        primary(criteria, depth);
        while (takeWord("AND")) {
            primary(criteria, depth);
            criteria.steps.push_back({CriteriaStep::both});
        }
    }

    void primary(Criteria& criteria, int depth) {
        if (depth > deepestNesting) refuse();
        if (take('(')) {
            either(criteria, depth + 1);
            if (!take(')')) refuse();
            return;
        }
        criteria.steps.push_back({CriteriaStep::criterion, criteria.list.size()});
        criteria.list.push_back(criterion());
    }

    void skipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(blanks), m_rest.size())); }

    bool take(char wanted) {
        skipBlanks();
        if (m_rest.empty() || m_rest.front() != wanted) return false;
        m_rest.remove_prefix(1);
        return true;
    }

    std::string_view word() {
        skipBlanks();
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), isWordCharacter);
        const auto size = static_cast<std::size_t>(end - m_rest.begin());
        const std::string_view found = m_rest.substr(0, size);
        m_rest.remove_prefix(size);
        return found;
    }

    bool takeWord(std::string_view wanted) {
        const std::string_view before = m_rest;
        if (platform::equalNoCase1252(word(), wanted)) return true;
        m_rest = before;
        return false;
    }

    /// What stands between two marks; the closing one doubled stands for itself.
    std::string between(char close) {
        std::string text;
        for (;;) {
            const auto end = m_rest.find(close);
            if (end == std::string_view::npos) refuse();
            text += m_rest.substr(0, end);
            m_rest.remove_prefix(end + 1);
            if (m_rest.empty() || m_rest.front() != close) return text;
            text += close;
            m_rest.remove_prefix(1);
        }
    }

    std::string field() {
        std::string name = take('[') ? between(']') : take('"') ? between('"') : std::string(word());
        if (name.empty()) refuse();
        return name;
    }

    Comparison comparison() {
        skipBlanks();
        if (takeWord("LIKE")) return Comparison::like;
        constexpr std::pair<std::string_view, Comparison> signs[] = {
            {"<=", Comparison::lessOrEqual}, {">=", Comparison::greaterOrEqual},
            {"<>", Comparison::notEqual},    {"=", Comparison::equal},
            {"<", Comparison::less},         {">", Comparison::greater}};
        for (const auto& [sign, result] : signs) {
            if (!m_rest.starts_with(sign)) continue;
            m_rest.remove_prefix(sign.size());
            return result;
        }
        refuse();
    }

    Variant value() {
        if (take('\'')) return between('\'');
        if (take('#')) return dateValue(between('#'));
        skipBlanks();
        const std::string_view sign =
            m_rest.substr(0, m_rest.starts_with('-') || m_rest.starts_with('+') ? 1 : 0);
        m_rest.remove_prefix(sign.size());
        std::string text = std::string(sign).append(word());
        // The sign of an exponent ends a word.
        if (text.size() > 1 && (text.back() == 'e' || text.back() == 'E') && !m_rest.empty() &&
            (m_rest[0] == '+' || m_rest[0] == '-')) {
            text += m_rest.front();
            m_rest.remove_prefix(1);
            text.append(word());
        }
        return wordValue(text);
    }

    static Variant dateValue(const std::string& text) {
        double serial = 0;
        if (!parseDate(text, serial)) refuse();
        return Variant::date(serial);
    }

    static Variant wordValue(const std::string& text) {
        if (platform::equalNoCase1252(text, "NULL")) return Variant::null();
        bool truth = false;
        if (parseBoolean(text, truth)) return truth;
        std::int64_t integer = 0;
        if (parseInteger(text, integer)) return static_cast<long long>(integer);
        double real = 0;
        if (parseReal(text, real) != hrOk) refuse();
        return real;
    }

    std::string_view m_rest;
};

bool holds(Comparison comparison, std::partial_ordering order) {
    switch (comparison) {
        case Comparison::equal:
            return order == 0;
        case Comparison::notEqual:
            return order != 0;
        case Comparison::less:
            return order < 0;
        case Comparison::lessOrEqual:
            return order <= 0;
        case Comparison::greater:
            return order > 0;
        case Comparison::greaterOrEqual:
            return order >= 0;
        default:
            return false;
    }
}

bool isNumber(VarType type) {
    return type != VarType::text && type != VarType::date && type != VarType::bytes;
}

std::partial_ordering compareTexts(const VariantView& first, const VariantView& second) {
    std::string firstText, secondText;
    // Bytes have no text: they are compared with one as they stand.
    if (toText(first, firstText) != hrOk) firstText = first.data;
    if (toText(second, secondText) != hrOk) secondText = second.data;
    return platform::compareNoCase1252(firstText, secondText) <=> 0;
}

std::partial_ordering compareValues(const VariantView& first, const VariantView& second) {
    double a = 0, b = 0;
    if (first.type == VarType::date || second.type == VarType::date)
        if (toDate(first, a) == hrOk && toDate(second, b) == hrOk) return a <=> b;
    if (!isNumber(first.type) && !isNumber(second.type)) return compareTexts(first, second);
    std::int64_t wideA = 0, wideB = 0;
    const bool integers = first.type != VarType::currency && first.type != VarType::decimal &&
                          toReal(first, a) == hrOk && toReal(second, b) == hrOk && a == std::trunc(a) &&
                          b == std::trunc(b);
    // Beyond 2^53 a double no longer tells two integers apart.
    if (integers && toInt64(first, wideA) == hrOk && toInt64(second, wideB) == hrOk) return wideA <=> wideB;
    if (toReal(first, a) == hrOk && toReal(second, b) == hrOk) return a <=> b;
    return compareTexts(first, second);
}

bool sameLetter(char first, char second) {
    return platform::upperCase1252[static_cast<unsigned char>(first)] ==
           platform::upperCase1252[static_cast<unsigned char>(second)];
}

bool isAny(char c) {
    return c == '*' || c == '%';
}

}  // namespace

Criterion parseCriterion(std::string_view text) {
    Parser parser(text);
    Criterion result = parser.criterion();
    parser.expectEnd();
    return result;
}

Criteria parseCriteria(std::string_view text) {
    Criteria criteria;
    Parser parser(text);
    parser.either(criteria);
    parser.expectEnd();
    return criteria;
}

std::vector<SortKey> parseSort(std::string_view text) {
    Parser parser(text);
    std::vector<SortKey> keys = parser.sortKeys();
    parser.expectEnd();
    return keys;
}

bool meets(const Criterion& criterion, const VariantView& value) {
    if (criterion.value.isNull()) return value.isNull() == (criterion.comparison == Comparison::equal);
    if (value.isNull()) return false;
    if (criterion.comparison != Comparison::like)
        return holds(criterion.comparison, compareValues(value, criterion.value.view()));
    std::string text;
    if (toText(value, text) != hrOk) text = value.data;
    return isLike(text, criterion.value.view().data);
}

bool isLike(std::string_view text, std::string_view pattern) {
    // After a failure the last wildcard takes one character more; earlier ones need not be tried again.
    std::size_t at = 0, wanted = 0, retryAt = 0, retryWanted = std::string_view::npos;
    while (at < text.size()) {
        if (wanted < pattern.size() && isAny(pattern[wanted])) {
            retryWanted = ++wanted;
            retryAt = at;
        } else if (wanted < pattern.size() && sameLetter(pattern[wanted], text[at])) {
            ++wanted;
            ++at;
        } else if (retryWanted != std::string_view::npos) {
            wanted = retryWanted;
            at = ++retryAt;
        } else {
            return false;
        }
    }
    while (wanted < pattern.size() && isAny(pattern[wanted])) ++wanted;
    return wanted == pattern.size();
}

}  // namespace ado20
