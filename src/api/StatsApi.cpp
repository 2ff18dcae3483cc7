#include <VarnelAPI/Forms/api/StatsApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource stats("StatsApi", _XPLATSTR("Plexum/Stats"));
} // namespace

detail::ModelTask<model::PlexumStatsInstance>
StatsApi::get_PlexumStats_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                     const detail::TextOption& select) const {
    return stats.get<model::PlexumStatsInstance>(m_ApiClient, __func__, location, instanceId, select);
}

detail::ModelTask<model::PlexumStatsInstances>
StatsApi::select_PlexumStats(const utility::string_t& location, const detail::TextOption& filter,
                             const detail::TextOption& select, const detail::TextOption& orderby,
                             const detail::TextOption& filtersettings, const detail::NumberOption& skip,
                             const detail::NumberOption& top) const {
    return stats.select<model::PlexumStatsInstances>(m_ApiClient, __func__, location,
                                                     {filter, select, orderby, filtersettings, skip, top});
}

} // namespace VarnelAPI::Forms::api
