#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumUserSettings.h>

namespace VarnelAPI::Forms::api {

/// Settings of users. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API UserSettingsApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the user settings `instanceId`.
    /// DELETE `{location}/Plexum/UserSettings/{instanceId}/`
    pplx::task<void> delete_PlexumUserSettings_instanceId(const utility::string_t& location,
                                                          const utility::string_t& instanceId) const;

    /// Reads the user settings `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/UserSettings/{instanceId}/`
    detail::ModelTask<model::PlexumUserSettingsInstance>
    get_PlexumUserSettings_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                      const detail::TextOption& select = boost::none) const;

    /// Creates a user settings; yields it as the service stored it.
    /// POST `{location}/Plexum/UserSettings`
    detail::ModelTask<model::PlexumUserSettingsChangedInstance>
    insert_PlexumUserSettings(const utility::string_t& location,
                              const detail::Body<model::PlexumUserSettingsInstance>& body) const;

    /// Lists the user settings.
    /// GET `{location}/Plexum/UserSettings`
    detail::ModelTask<model::PlexumUserSettingsInstances> select_PlexumUserSettings(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the user settings `instanceId`; yields it as the service stored it.
    /// POST `{location}/Plexum/UserSettings/{instanceId}/`
    detail::ModelTask<model::PlexumUserSettingsChangedInstance>
    update_PlexumUserSettings(const utility::string_t& location, const utility::string_t& instanceId,
                              const detail::Body<model::PlexumUserSettingsInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
