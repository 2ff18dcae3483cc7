#pragma once

#include "Json.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace VarnelAPI::Forms::repository {

/// The decoded name=value pairs of a request's query, in order.
using QueryOptions = std::vector<std::pair<std::string, std::string>>;

/// What a request asks of the instances it reads. Instances are passed in content form: identity and "properties".
class Query {
public:
    /// Which "$" options a request takes: none, $select only, or all of them.
    enum class Accepts { None, Select, All };

    /// @throws ServiceError 400 naming the option that was not understood
    Query(const QueryOptions& options, Accepts accepts);

    bool isOrdered() const { return !m_orderBy.empty(); }
    std::int64_t skip() const { return m_skip; }
    /// Negative when not limited.
    std::int64_t top() const { return m_top; }

    bool matches(const Json& content) const { return !m_filter || m_filter(content); }
    /// By $orderby: missing values last in either direction; unlike kinds order as bools, numbers, texts.
    bool isBefore(const Json& left, const Json& right) const;
    /// Leaves only the selected properties.
    void trim(Json& content) const;

private:
    struct OrderKey {
        std::string property;
        bool isDescending;
    };

    static OrderKey orderKey(const std::string& item);

    std::function<bool(const Json&)> m_filter;
    std::vector<OrderKey> m_orderBy;
    std::vector<std::string> m_select;
    std::int64_t m_skip = 0;
    std::int64_t m_top = -1;
};

} // namespace VarnelAPI::Forms::repository
