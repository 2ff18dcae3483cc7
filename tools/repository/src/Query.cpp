#include "Query.h"

#include "Filter.h"
#include "ServiceError.h"
#include "Text.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string_view>

namespace VarnelAPI::Forms::repository {
namespace {

constexpr int maxOrderKeys = 32;

[[noreturn]] void refuse(const std::string& what) {
    throw ServiceError(400, what);
}

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

ValueKind kindOf(const Json& value) {
    return value.is_boolean()  ? ValueKind::Bool
           : value.is_number() ? ValueKind::Number
           : value.is_string() ? ValueKind::Text
                               : ValueKind::Other;
}

SqlValue numberOf(const Json& value) {
    return value.is_number_integer() && !(value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX)
               ? SqlValue(value.get<std::int64_t>())
               : SqlValue(value.get<double>());
}

Query::Query(const QueryOptions& options, Accepts accepts) {
    std::set<std::string_view> seen;
    for (const auto& [name, text] : options) {
        if (name == "definitionFormat" && !text.empty() && text != "json" && text != "xml") {
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
            if (std::find(m_select.begin(), m_select.end(), "*") != m_select.end()) {
                m_select.clear();
            }
        } else if (name == "$filter") {
            m_filter = text.empty() ? Sql() : parseFilter(text);
        } else if (name == "$orderby") {
            const std::vector<std::string> keys = items(text);
            if (keys.size() > maxOrderKeys) {
                refuse("$orderby: more than " + std::to_string(maxOrderKeys) + " names");
            }
            std::for_each(keys.begin(), keys.end(), [this](const std::string& key) { orderBy(key); });
        } else if (name == "$skip") {
            m_skip = wholeNumber(name, text);
        } else if (name == "$top") {
            m_top = wholeNumber(name, text);
        } else {
            refuse("Unknown option " + name);
        }
    }
}

void Query::orderBy(const std::string& item) {
    std::vector<std::string_view> words = split(item, ' ');
    words.erase(std::remove(words.begin(), words.end(), ""), words.end());
    const bool isDescending = words.size() == 2 && words[1] == "desc";
    if (words.empty() || words.size() > 2 || (words.size() == 2 && !isDescending && words[1] != "asc")) {
        refuse("$orderby: expected a property name, then asc or desc or nothing, found \"" + item + "\"");
    }
    const std::string name(words[0]);
    const std::string direction = isDescending ? " DESC" : " ASC";
    const std::string ofProperty = " FROM property_values v WHERE v.instance = i.number AND v.name = ?)";
    const std::string column(identityColumn(name));
    // A property comes before the part of the identity that has its name.
    const auto valueOr = [&](const std::string& what, const std::string& otherwise) {
        return column.empty() ? Sql{"(SELECT v." + what + ofProperty, {name}}
                              : Sql{"CASE WHEN EXISTS(SELECT 1" + ofProperty + " THEN (SELECT v." + what + ofProperty +
                                        " ELSE " + otherwise + " END",
                                    {name, name}};
    };
    const auto number = [](ValueKind kind) { return std::to_string(static_cast<std::int64_t>(kind)); };
    // In descending order what can't be ordered gets the least kind, so that it is last there too.
    m_order += {m_order.text.empty() ? "ifnull(nullif(" : ", ifnull(nullif(", {}};
    m_order += valueOr("kind", number(ValueKind::Text));
    m_order += {", " + number(ValueKind::Other) + "), " + (isDescending ? "-1" : number(ValueKind::Other)) + ")" +
                    direction + ", ",
                {}};
    m_order += valueOr("value", column);
    m_order += {direction, {}};
}

Json Query::selected(Json properties) const {
    Json result = Json::object();
    for (auto& [name, value] : properties.items()) {
        if (std::find(m_select.begin(), m_select.end(), name) != m_select.end()) {
            result[name] = std::move(value);
        }
    }
    return result;
}

} // namespace VarnelAPI::Forms::repository
