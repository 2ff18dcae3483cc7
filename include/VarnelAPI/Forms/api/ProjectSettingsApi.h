#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumProjectSettings.h>

namespace VarnelAPI::Forms::api {

/// Settings of the project. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API ProjectSettingsApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the project settings `instanceId`.
    /// DELETE `{location}/Plexum/ProjectSettings/{instanceId}/`
    pplx::task<void> delete_PlexumProjectSettings_instanceId(const utility::string_t& location,
                                                             const utility::string_t& instanceId) const;

    /// Reads the project settings `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/ProjectSettings/{instanceId}/`
    detail::ModelTask<model::PlexumProjectSettingsInstance>
    get_PlexumProjectSettings_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                         const detail::TextOption& select = boost::none) const;

    /// Creates a project settings; yields it as the service stored it.
    /// POST `{location}/Plexum/ProjectSettings`
    detail::ModelTask<model::PlexumProjectSettingsChangedInstance>
    insert_PlexumProjectSettings(const utility::string_t& location,
                                 const detail::Body<model::PlexumProjectSettingsInstance>& body) const;

    /// Lists the project settings.
    /// GET `{location}/Plexum/ProjectSettings`
    detail::ModelTask<model::PlexumProjectSettingsInstances> select_PlexumProjectSettings(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the project settings `instanceId`; yields it as the service stored it.
    /// POST `{location}/Plexum/ProjectSettings/{instanceId}/`
    detail::ModelTask<model::PlexumProjectSettingsChangedInstance>
    update_PlexumProjectSettings(const utility::string_t& location, const utility::string_t& instanceId,
                                 const detail::Body<model::PlexumProjectSettingsInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
