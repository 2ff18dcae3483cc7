#include "Filter.h"

#include "Json.h"
#include "Query.h"
#include "ServiceError.h"
#include "Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {
namespace {

/// Levels of parentheses and of "not".
constexpr int maxNesting = 64;

/// SQLite's parser has a stack of 100; this many are left to a filter by the statement around it.
constexpr int maxStack = 86;
/// What one comparison takes of it.
constexpr int leafStack = 14;

[[noreturn]] void refuse(const std::string& what) {
    throw ServiceError(400, "$filter: " + what);
}

/// A condition: a comparison, or others joined. Conditions are true or false, never unknown, so that they can be turned
/// around and joined in any order.
struct Condition {
    enum class Join { None, All, Any };

    Join join = Join::None;
    bool isNegated = false; // of a comparison
    Sql sql;                // of a comparison
    std::vector<Condition> parts;
    int stack = leafStack;
};

/// By De Morgan, since "NOT (" would take its place on the parser's stack.
void negate(Condition& condition) {
    if (condition.join == Condition::Join::None) {
        condition.isNegated = !condition.isNegated;
        return;
    }
    condition.join = condition.join == Condition::Join::All ? Condition::Join::Any : Condition::Join::All;
    std::for_each(condition.parts.begin(), condition.parts.end(), negate);
}

/// Joined parts of the same join become one. The part that takes most of the stack comes first: while later ones are
/// parsed, what is before them lies on it.
Condition joined(Condition::Join join, std::vector<Condition> parts) {
    if (parts.size() == 1) {
        return std::move(parts.front());
    }
    Condition result;
    result.join = join;
    for (Condition& part : parts) {
        if (part.join == join) {
            std::move(part.parts.begin(), part.parts.end(), std::back_inserter(result.parts));
        } else {
            result.parts.push_back(std::move(part));
        }
    }
    std::stable_sort(result.parts.begin(), result.parts.end(),
                     [](const Condition& left, const Condition& right) { return left.stack > right.stack; });
    result.stack = 1 + std::max(result.parts[0].stack, 2 + result.parts[1].stack);
    return result;
}

void write(const Condition& condition, Sql& out) {
    if (condition.join == Condition::Join::None) {
        out += {condition.isNegated ? "NOT " : "", {}};
        out += condition.sql;
        return;
    }
    const char* between = "(";
    for (const Condition& part : condition.parts) {
        out += {between, {}};
        write(part, out);
        between = condition.join == Condition::Join::All ? " AND " : " OR ";
    }
    out += {")", {}};
}

/// What is compared with: a JSON value, or a point in time.
struct Literal {
    Json value;
    bool isDate = false;
};

int digits(std::string_view text, std::size_t begin, std::size_t count) {
    int value = 0;
    for (std::size_t i = begin; i < begin + count; ++i) {
        if (i >= text.size() || !isDigit(text[i])) {
            return -1;
        }
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

/// Whether it is a date, or a date and time: 2026-01-31, 2026-01-31T23:59, ...:59, ...:59.123, then Z, +01:00 or
/// nothing.
bool isDate(std::string_view text) {
    const int year = digits(text, 0, 4);
    const int month = digits(text, 5, 2);
    const int day = digits(text, 8, 2);
    if (year < 0 || month < 1 || month > 12 || day < 1 || text[4] != '-' || text[7] != '-') {
        return false;
    }
    constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    if (day > lengths[static_cast<std::size_t>(month - 1)] + (month == 2 && isLeap ? 1 : 0)) {
        return false;
    }
    std::size_t at = 10;
    const auto takeTime = [&](char mark) {
        const int hour = digits(text, at + 1, 2);
        const int minute = digits(text, at + 4, 2);
        const bool isTime = at < text.size() && text[at] == mark && hour >= 0 && hour < 24 && minute >= 0 &&
                            minute < 60 && text[at + 3] == ':';
        at += isTime ? 6 : 0;
        return isTime;
    };
    if (!takeTime('T')) {
        return at == text.size();
    }
    if (at < text.size() && text[at] == ':') {
        const int second = digits(text, at + 1, 2);
        if (second < 0 || second > 59) {
            return false;
        }
        at += 3;
        if (at + 1 < text.size() && text[at] == '.' && isDigit(text[at + 1])) {
            at = std::min(text.find_first_not_of("0123456789", at + 1), text.size());
        }
    }
    if (at < text.size() && text[at] == 'Z') {
        return at + 1 == text.size();
    }
    return (takeTime('+') || takeTime('-')) ? at == text.size() : at == text.size();
}

/// A condition on a value of a kind: what has `{}` for it, and a question mark for the literal.
struct Test {
    ValueKind kind;
    std::string text;
    SqlValue value;
};

std::string replaced(std::string text, std::string_view with) {
    for (std::size_t at = text.find("{}"); at != std::string::npos; at = text.find("{}", at + with.size())) {
        text.replace(at, 2, with);
    }
    return text;
}

const std::string hasProperty = "EXISTS(SELECT 1 FROM property_values v WHERE v.instance = i.number AND v.name = ?";

/// That the property, or the part of the identity that has its name, passes.
Sql passes(const std::string& name, const Test& test) {
    Sql sql{hasProperty + " AND v.kind = " + std::to_string(static_cast<std::int64_t>(test.kind)) + " AND " +
                replaced(test.text, "v.value") + ")",
            {name, test.value}};
    const std::string_view column = identityColumn(name);
    if (column.empty() || test.kind != ValueKind::Text) {
        return sql;
    }
    Sql either{"(", {}};
    either += sql;
    either += {" OR (NOT " + hasProperty + ") AND " + replaced(test.text, column) + "))", {name, test.value}};
    return either;
}

Sql isMissing(const std::string& name) {
    return identityColumn(name).empty() ? Sql{"NOT " + hasProperty + ")", {name}} : Sql{"0", {}};
}

Test comparison(const char* op, const Literal& literal) {
    const std::string sign = " " + std::string(op) + " ";
    if (literal.isDate) {
        // Only what begins as a date is read as one: SQLite would also read numbers, and "now".
        return {ValueKind::Text,
                "({} GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]*' AND ifnull(julianday({})" + sign +
                    "julianday(?), 0))",
                literal.value.get<std::string>()};
    }
    const ValueKind kind = kindOf(literal.value);
    const SqlValue value = kind == ValueKind::Text     ? SqlValue(literal.value.get<std::string>())
                           : kind == ValueKind::Number ? numberOf(literal.value)
                                                       : SqlValue(static_cast<std::int64_t>(literal.value.get<bool>()));
    return {kind, "{}" + sign + "?", value};
}

class Parser {
public:
    explicit Parser(std::string_view text) : m_text(text) { next(); }

    Sql parse() {
        const Condition condition = alternatives();
        if (m_kind != Token::End) {
            fail("'and', 'or' or the end");
        }
        if (condition.stack > maxStack) {
            refuse("its parentheses are too many for the database");
        }
        Sql sql;
        write(condition, sql);
        return sql;
    }

private:
    enum class Token { Name, Text, Number, Open, Close, Comma, Other, End };

    [[noreturn]] void fail(const std::string& expected) const {
        refuse("expected " + expected + " at position " + std::to_string(m_start) + ", found " +
               (m_kind == Token::End ? std::string("the end") : "\"" + m_token + "\""));
    }

    void next() {
        m_pos = std::min(m_text.find_first_not_of(' ', m_pos), m_text.size());
        m_start = m_pos;
        if (m_pos == m_text.size()) {
            m_kind = Token::End;
            m_token.clear();
            return;
        }
        const char first = m_text[m_pos];
        if (first == '\'') {
            quoted();
        } else if (first == '(' || first == ')' || first == ',') {
            ++m_pos;
            m_kind = first == '(' ? Token::Open : first == ')' ? Token::Close : Token::Comma;
            m_token = first;
        } else if (isNameStart(first)) {
            take(Token::Name, isNamePart);
        } else if (isDigit(first) || first == '-') {
            take(Token::Number, [](char c) { return isNamePart(c) || c == '.' || c == '+' || c == '-' || c == ':'; });
        } else {
            take(Token::Other, [](char c) { return c != ' '; });
        }
    }

    template <class Belongs>
    void take(Token kind, Belongs belongs) {
        const auto end = std::find_if_not(m_text.begin() + static_cast<std::ptrdiff_t>(m_pos), m_text.end(), belongs);
        const auto length = static_cast<std::size_t>(end - m_text.begin()) - m_pos;
        m_token = m_text.substr(m_pos, length);
        m_pos += length;
        m_kind = kind;
    }

    void quoted() {
        m_token.clear();
        for (++m_pos; m_pos < m_text.size(); ++m_pos) {
            if (m_text[m_pos] == '\'') {
                ++m_pos;
                if (m_pos == m_text.size() || m_text[m_pos] != '\'') {
                    m_kind = Token::Text;
                    return;
                }
            }
            m_token += m_text[m_pos];
        }
        refuse("the text that starts at position " + std::to_string(m_start) + " is not closed by a '");
    }

    bool takeWord(std::string_view word) {
        if (m_kind != Token::Name || m_token != word) {
            return false;
        }
        next();
        return true;
    }

    void expect(Token kind, const char* what) {
        if (m_kind != kind) {
            fail(what);
        }
        next();
    }

    /// The character after the blanks that follow the present token.
    char following() const {
        const std::size_t at = m_text.find_first_not_of(' ', m_pos);
        return at == std::string_view::npos ? '\0' : m_text[at];
    }

    Condition alternatives() {
        std::vector<Condition> parts;
        do {
            parts.push_back(conjunction());
        } while (takeWord("or"));
        return joined(Condition::Join::Any, std::move(parts));
    }

    Condition conjunction() {
        std::vector<Condition> parts;
        do {
            parts.push_back(term());
        } while (takeWord("and"));
        return joined(Condition::Join::All, std::move(parts));
    }

    Condition term() {
        const bool isNegation = m_kind == Token::Name && m_token == "not" && !isOperator(followingWord());
        if (!isNegation && m_kind != Token::Open) {
            return comparisonTerm();
        }
        if (++m_nesting > maxNesting) {
            refuse("parentheses are nested more than " + std::to_string(maxNesting) + " deep");
        }
        next();
        Condition inner = isNegation ? term() : alternatives();
        if (isNegation) {
            negate(inner);
        } else {
            expect(Token::Close, "')'");
        }
        --m_nesting;
        return inner;
    }

    static bool isOperator(std::string_view word) { return word == "in" || signOf(word) != nullptr; }

    static const char* signOf(std::string_view op) {
        constexpr std::array<std::pair<std::string_view, const char*>, 6> signs{
            {{"eq", "="}, {"ne", "="}, {"gt", ">"}, {"ge", ">="}, {"lt", "<"}, {"le", "<="}}};
        const auto* found =
            std::find_if(signs.begin(), signs.end(), [&](const auto& sign) { return sign.first == op; });
        return found == signs.end() ? nullptr : found->second;
    }

    /// The word after the present token: a property may be called "not".
    std::string_view followingWord() const {
        const std::size_t begin = std::min(m_text.find_first_not_of(' ', m_pos), m_text.size());
        const std::size_t end = std::min(m_text.find(' ', begin), m_text.size());
        return m_text.substr(begin, end - begin);
    }

    Condition comparisonTerm() {
        const std::string name = m_token;
        if (m_kind != Token::Name) {
            fail("a property name");
        }
        Condition condition;
        if (following() == '(' && (name == "contains" || name == "startswith" || name == "endswith")) {
            next();
            condition.sql = function(name);
            return condition;
        }
        next();
        const std::string op = m_token;
        if (m_kind != Token::Name || !isOperator(op)) {
            fail("eq, ne, gt, ge, lt, le or in");
        }
        next();
        if (op == "in") {
            return list(name);
        }
        const Literal value = literal();
        const bool isEquality = op == "eq" || op == "ne";
        if (!isEquality && kindOf(value.value) != ValueKind::Number && kindOf(value.value) != ValueKind::Text) {
            refuse("'" + op + "' needs a number, a text or a date to compare with, not " + value.value.dump());
        }
        condition.isNegated = op == "ne";
        condition.sql = compared(name, signOf(op), value);
        return condition;
    }

    static Sql compared(const std::string& name, const char* sign, const Literal& value) {
        return value.value.is_null() ? isMissing(name) : passes(name, comparison(sign, value));
    }

    Sql function(const std::string& function) {
        expect(Token::Open, "'('");
        const std::string name = m_token;
        expect(Token::Name, "a property name");
        expect(Token::Comma, "','");
        const std::string text = m_token;
        expect(Token::Text, "a text in single quotes");
        expect(Token::Close, "')'");
        if (function == "endswith" && !text.empty()) {
            const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
            const auto characters = std::count_if(text.begin(), text.end(), isFirstByte);
            return passes(name, {ValueKind::Text, "substr({}, -" + std::to_string(characters) + ") = ?", text});
        }
        return passes(name, {ValueKind::Text, function == "contains" ? "instr({}, ?) > 0" : "instr({}, ?) = 1", text});
    }

    Condition list(const std::string& name) {
        expect(Token::Open, "'('");
        std::vector<Condition> alternatives;
        do {
            Condition one;
            one.sql = compared(name, "=", literal());
            alternatives.push_back(std::move(one));
        } while (m_kind == Token::Comma && (next(), true));
        expect(Token::Close, "',' or ')'");
        return joined(Condition::Join::Any, std::move(alternatives));
    }

    Literal literal() {
        Literal result;
        if (m_kind == Token::Text) {
            result.value = m_token;
        } else if (m_kind == Token::Number && isDate(m_token)) {
            result = {m_token, true};
        } else {
            const bool isWord = m_token == "true" || m_token == "false" || m_token == "null";
            result.value = m_kind == Token::Number || (m_kind == Token::Name && isWord)
                               ? Json::parse(m_token, nullptr, false)
                               : Json(Json::value_t::discarded);
        }
        if (result.value.is_discarded()) {
            fail("a number, a text in single quotes, a date, true, false or null");
        }
        next();
        return result;
    }

    std::string_view m_text;
    std::size_t m_pos = 0;
    std::size_t m_start = 0;
    Token m_kind = Token::End;
    std::string m_token;
    int m_nesting = 0;
};

} // namespace

std::string_view identityColumn(std::string_view name) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 4> columns{
        {{"instanceId", "i.id"}, {"schemaName", "i.schema"}, {"className", "i.class"}, {"eTag", "i.etag"}}};
    const auto* found =
        std::find_if(columns.begin(), columns.end(), [&](const auto& column) { return column.first == name; });
    return found == columns.end() ? std::string_view() : found->second;
}

Sql parseFilter(std::string_view text) {
    return Parser(text).parse();
}

} // namespace VarnelAPI::Forms::repository
