#pragma once

#include "Database.h"
#include "Json.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// The decoded name=value pairs of a request's query, in order.
using QueryOptions = std::vector<std::pair<std::string, std::string>>;

/// What kind a property has, in the order in which unlike kinds sort; what can't be ordered comes last.
enum class ValueKind : std::int64_t { Bool, Number, Text, Other };

ValueKind kindOf(const Json& value);
/// A number as SQLite has it: 64 bits with a sign, else floating.
SqlValue numberOf(const Json& value);

/// What a request asks of the instances it reads, as SQL over a row `i` of the table of instances and the table of
/// their property values.
class Query {
public:
    /// Which "$" options a request takes: none, $select only, or all of them.
    enum class Accepts { None, Select, All };

    /// @throws ServiceError 400 naming the option that was not understood
    Query(const QueryOptions& options, Accepts accepts);

    /// A condition, or no text.
    const Sql& filter() const { return m_filter; }
    /// Terms of an ORDER BY, or no text: missing values last in either direction; unlike kinds as bools, numbers,
    /// texts.
    const Sql& order() const { return m_order; }
    std::int64_t skip() const { return m_skip; }
    /// Negative when not limited.
    std::int64_t top() const { return m_top; }

    bool selectsAll() const { return m_select.empty(); }
    /// Leaves only the selected properties.
    Json selected(Json properties) const;

private:
    void orderBy(const std::string& item);

    Sql m_filter;
    Sql m_order;
    std::vector<std::string> m_select;
    std::int64_t m_skip = 0;
    std::int64_t m_top = -1;
};

} // namespace VarnelAPI::Forms::repository
