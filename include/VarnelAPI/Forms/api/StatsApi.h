#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumStats.h>

namespace VarnelAPI::Forms::api {

/// Statistics, which are only read. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API StatsApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Reads the statistics `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/Stats/{instanceId}/`
    detail::ModelTask<model::PlexumStatsInstance>
    get_PlexumStats_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                               const detail::TextOption& select = boost::none) const;

    /// Lists the statistics.
    /// GET `{location}/Plexum/Stats`
    detail::ModelTask<model::PlexumStatsInstances>
    select_PlexumStats(const utility::string_t& location, const detail::TextOption& filter = boost::none,
                       const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
                       const detail::TextOption& filtersettings = boost::none,
                       const detail::NumberOption& skip = boost::none,
                       const detail::NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
