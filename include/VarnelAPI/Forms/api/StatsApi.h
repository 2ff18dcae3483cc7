#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumStats.h>

namespace VarnelAPI::Forms::api {

/// Statistics, which are only read. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API StatsApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Reads the statistics `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/Stats/{instanceId}/`
    ModelTask<model::PlexumStatsInstance> get_PlexumStats_instanceId(const utility::string_t& location,
                                                                     const utility::string_t& instanceId,
                                                                     const TextOption& select = boost::none) const;

    /// Lists the statistics.
    /// GET `{location}/Plexum/Stats`
    ModelTask<model::PlexumStatsInstances>
    select_PlexumStats(const utility::string_t& location, const TextOption& filter = boost::none,
                       const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                       const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                       const NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
