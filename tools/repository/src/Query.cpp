#include "Query.h"

#include "ServiceError.h"
#include "Text.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <string_view>

namespace VarnelAPI::Forms::repository {
namespace {

using Predicate = std::function<bool(const Json&)>;

[[noreturn]] void refuse(const std::string& what) {
    throw ServiceError(400, what);
}

/// A property of an instance, else a part of its identity, else null.
const Json& valueOf(const Json& content, const std::string& name) {
    static const Json missing;
    const Json& properties = content.at("properties");
    if (const auto found = properties.find(name); found != properties.end()) {
        return *found;
    }
    const auto found = content.find(name);
    return found != content.end() ? *found : missing;
}

/// Kinds in their order; what can't be ordered (null, objects, arrays) comes last.
enum class Kind { Bool, Number, Text, Other };

Kind kindOf(const Json& value) {
    return value.is_boolean()  ? Kind::Bool
           : value.is_number() ? Kind::Number
           : value.is_string() ? Kind::Text
                               : Kind::Other;
}

/// Less than, equal to or greater than 0; nothing when the two can't be compared.
std::optional<int> compare(const Json& left, const Json& right) {
    if (kindOf(left) != kindOf(right) || kindOf(left) == Kind::Other) {
        return std::nullopt;
    }
    return left < right ? -1 : right < left ? 1 : 0;
}

/// Reads $filter: comparisons of a property with a literal, joined by "and" and "or", in parentheses at will.
class FilterParser {
public:
    explicit FilterParser(std::string_view text) : m_text(text) { next(); }

    Predicate parse() {
        Predicate result = alternatives();
        if (m_kind != Token::End) {
            fail("'and', 'or' or the end");
        }
        return result;
    }

private:
    enum class Token { Name, Text, Number, Open, Close, Other, End };

    static constexpr int maxNesting = 64;

    [[noreturn]] void fail(const std::string& expected) const {
        refuse("$filter: expected " + expected + " at position " + std::to_string(m_start) + ", found " +
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
        } else if (first == '(' || first == ')') {
            ++m_pos;
            m_kind = first == '(' ? Token::Open : Token::Close;
            m_token = first;
        } else if (isNameStart(first)) {
            take(Token::Name, isNamePart);
        } else if (isDigit(first) || first == '-') {
            take(Token::Number, [](char c) { return isNamePart(c) || c == '.' || c == '+' || c == '-'; });
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
        refuse("$filter: the text that starts at position " + std::to_string(m_start) + " is not closed by a '");
    }

    bool takeWord(std::string_view word) {
        if (m_kind != Token::Name || m_token != word) {
            return false;
        }
        next();
        return true;
    }

    Predicate alternatives() {
        std::vector<Predicate> parts{conjunction()};
        while (takeWord("or")) {
            parts.push_back(conjunction());
        }
        return parts.size() == 1 ? parts.front() : [parts](const Json& content) {
            return std::any_of(parts.begin(), parts.end(), [&](const Predicate& part) { return part(content); });
        };
    }

    Predicate conjunction() {
        std::vector<Predicate> parts{term()};
        while (takeWord("and")) {
            parts.push_back(term());
        }
        return parts.size() == 1 ? parts.front() : [parts](const Json& content) {
            return std::all_of(parts.begin(), parts.end(), [&](const Predicate& part) { return part(content); });
        };
    }

    Predicate term() {
        if (m_kind != Token::Open) {
            return comparison();
        }
        if (++m_nesting > maxNesting) {
            refuse("$filter: parentheses are nested more than " + std::to_string(maxNesting) + " deep");
        }
        next();
        Predicate inner = alternatives();
        if (m_kind != Token::Close) {
            fail("')'");
        }
        next();
        --m_nesting;
        return inner;
    }

    Predicate comparison() {
        if (m_kind != Token::Name) {
            fail("a property name");
        }
        const std::string name = m_token;
        next();
        const std::string op = m_token;
        const bool isEquality = op == "eq" || op == "ne";
        if (m_kind != Token::Name || !(isEquality || op == "gt" || op == "ge" || op == "lt" || op == "le")) {
            fail("eq, ne, gt, ge, lt or le");
        }
        next();
        const Json value = literal();
        if (!isEquality && (value.is_null() || value.is_boolean())) {
            refuse("$filter: '" + op + "' needs a number or a text to compare with, not " + value.dump());
        }
        next();
        return [name, op, value](const Json& content) {
            const Json& actual = valueOf(content, name);
            if (op == "eq" || op == "ne") {
                const bool isEqual = value.is_null() ? actual.is_null() : compare(actual, value) == 0;
                return isEqual == (op == "eq");
            }
            const std::optional<int> order = compare(actual, value);
            return order.has_value() && (op == "gt"   ? *order > 0
                                         : op == "ge" ? *order >= 0
                                         : op == "lt" ? *order < 0
                                                      : *order <= 0);
        };
    }

    Json literal() {
        if (m_kind == Token::Text) {
            return m_token;
        }
        if (m_kind == Token::Number || m_token == "true" || m_token == "false" || m_token == "null") {
            Json value = Json::parse(m_token, nullptr, false);
            if (!value.is_discarded()) {
                return value;
            }
        }
        fail("a number, a text in single quotes, true, false or null");
    }

    std::string_view m_text;
    std::size_t m_pos = 0;
    std::size_t m_start = 0;
    Token m_kind = Token::End;
    std::string m_token;
    int m_nesting = 0;
};

/// The items of a list, without the blanks around them; no item in an empty list.
std::vector<std::string> items(std::string_view text) {
    std::vector<std::string> result;
    for (std::string_view part : text.empty() ? std::vector<std::string_view>() : split(text, ',')) {
        part.remove_prefix(std::min(part.find_first_not_of(' '), part.size()));
        result.emplace_back(part.substr(0, part.find_last_not_of(' ') + 1));
    }
    return result;
}

std::int64_t wholeNumber(const std::string& option, const std::string& text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0) {
        refuse(option + ": expected a whole number from 0, found \"" + text + "\"");
    }
    return value;
}

} // namespace

Query::Query(const QueryOptions& options, Accepts accepts) {
    std::set<std::string_view> seen;
    for (const auto& [name, text] : options) {
        if (name == "definitionFormat" && text != "json" && text != "xml") {
            refuse("definitionFormat: expected json or xml, found \"" + text + "\"");
        }
        if (name.empty() || name.front() != '$') {
            continue;
        }
        if (!seen.insert(name).second) {
            refuse(name + " is given twice");
        }
        if (accepts == Accepts::None || (accepts == Accepts::Select && name != "$select")) {
            refuse("This request takes no option " + name);
        }
        if (name == "$select") {
            m_select = items(text);
            if (std::find(m_select.begin(), m_select.end(), "") != m_select.end()) {
                refuse("$select: a property name is missing in \"" + text + "\"");
            }
        } else if (name == "$filter") {
            m_filter = text.empty() ? Predicate() : FilterParser(text).parse();
        } else if (name == "$orderby") {
            for (const std::string& item : items(text)) {
                m_orderBy.push_back(orderKey(item));
            }
        } else if (name == "$skip") {
            m_skip = wholeNumber(name, text);
        } else if (name == "$top") {
            m_top = wholeNumber(name, text);
        } else {
            refuse("Unknown option " + name);
        }
    }
}

Query::OrderKey Query::orderKey(const std::string& item) {
    std::vector<std::string_view> words = split(item, ' ');
    words.erase(std::remove(words.begin(), words.end(), ""), words.end());
    const bool isDescending = words.size() == 2 && words[1] == "desc";
    if (words.empty() || words.size() > 2 || (words.size() == 2 && !isDescending && words[1] != "asc")) {
        refuse("$orderby: expected a property name, then asc or desc or nothing, found \"" + item + "\"");
    }
    return {std::string(words[0]), isDescending};
}

bool Query::isBefore(const Json& left, const Json& right) const {
    for (const OrderKey& key : m_orderBy) {
        const Json& a = valueOf(left, key.property);
        const Json& b = valueOf(right, key.property);
        const Kind kindA = kindOf(a);
        const Kind kindB = kindOf(b);
        if (kindA != kindB) {
            const bool isMissing = kindA == Kind::Other || kindB == Kind::Other;
            return key.isDescending && !isMissing ? kindB < kindA : kindA < kindB;
        }
        if (const int order = compare(a, b).value_or(0); order != 0) {
            return key.isDescending ? order > 0 : order < 0;
        }
    }
    return false;
}

void Query::trim(Json& content) const {
    if (m_select.empty() || std::find(m_select.begin(), m_select.end(), "*") != m_select.end()) {
        return;
    }
    Json selected = Json::object();
    for (auto& [name, value] : content.at("properties").items()) {
        if (std::find(m_select.begin(), m_select.end(), name) != m_select.end()) {
            selected[name] = std::move(value);
        }
    }
    content["properties"] = std::move(selected);
}

} // namespace VarnelAPI::Forms::repository
