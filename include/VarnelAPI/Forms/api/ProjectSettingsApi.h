#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumProjectSettings.h>

namespace VarnelAPI::Forms::api {

/// Settings of the project. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API ProjectSettingsApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the project settings `instanceId`.
    /// DELETE `{location}/Plexum/ProjectSettings/{instanceId}/`
    pplx::task<void> delete_PlexumProjectSettings_instanceId(const utility::string_t& location,
                                                             const utility::string_t& instanceId) const;

    /// Reads the project settings `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/ProjectSettings/{instanceId}/`
    ModelTask<model::PlexumProjectSettingsInstance>
    get_PlexumProjectSettings_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                         const TextOption& select = boost::none) const;

    /// Creates a project settings; yields it as the service stored it.
    /// POST `{location}/Plexum/ProjectSettings`
    ModelTask<model::PlexumProjectSettingsChangedInstance>
    insert_PlexumProjectSettings(const utility::string_t& location,
                                 const Body<model::PlexumProjectSettingsInstance>& body) const;

    /// Lists the project settings.
    /// GET `{location}/Plexum/ProjectSettings`
    ModelTask<model::PlexumProjectSettingsInstances>
    select_PlexumProjectSettings(const utility::string_t& location, const TextOption& filter = boost::none,
                                 const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                 const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                                 const NumberOption& top = boost::none) const;

    /// Changes the project settings `instanceId`; yields it as the service stored it.
    /// POST `{location}/Plexum/ProjectSettings/{instanceId}/`
    ModelTask<model::PlexumProjectSettingsChangedInstance>
    update_PlexumProjectSettings(const utility::string_t& location, const utility::string_t& instanceId,
                                 const Body<model::PlexumProjectSettingsInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
