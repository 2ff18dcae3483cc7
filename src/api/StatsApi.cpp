#include <VarnelAPI/Forms/api/StatsApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource stats("StatsApi", _XPLATSTR("Plexum/Stats"));
} // namespace

ModelTask<model::PlexumStatsInstance> StatsApi::get_PlexumStats_instanceId(const utility::string_t& location,
                                                                           const utility::string_t& instanceId,
                                                                           const TextOption& select) const {
    return stats.get<model::PlexumStatsInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::PlexumStatsInstances>
StatsApi::select_PlexumStats(const utility::string_t& location, const TextOption& filter, const TextOption& select,
                             const TextOption& orderby, const TextOption& filtersettings, const NumberOption& skip,
                             const NumberOption& top) const {
    return stats.select<model::PlexumStatsInstances>(m_ApiClient, __func__, location,
                                                     {filter, select, orderby, filtersettings, skip, top});
}

} // namespace VarnelAPI::Forms::api
