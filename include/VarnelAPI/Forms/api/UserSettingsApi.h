#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/PlexumUserSettings.h>

namespace VarnelAPI::Forms::api {

/// Settings of users. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API UserSettingsApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the user settings `instanceId`.
    /// DELETE `{location}/Plexum/UserSettings/{instanceId}/`
    pplx::task<void> delete_PlexumUserSettings_instanceId(const utility::string_t& location,
                                                          const utility::string_t& instanceId) const;

    /// Reads the user settings `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Plexum/UserSettings/{instanceId}/`
    ModelTask<model::PlexumUserSettingsInstance>
    get_PlexumUserSettings_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                      const TextOption& select = boost::none) const;

    /// Creates a user settings; yields it as the service stored it.
    /// POST `{location}/Plexum/UserSettings`
    ModelTask<model::PlexumUserSettingsChangedInstance>
    insert_PlexumUserSettings(const utility::string_t& location,
                              const Body<model::PlexumUserSettingsInstance>& body) const;

    /// Lists the user settings.
    /// GET `{location}/Plexum/UserSettings`
    ModelTask<model::PlexumUserSettingsInstances>
    select_PlexumUserSettings(const utility::string_t& location, const TextOption& filter = boost::none,
                              const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                              const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                              const NumberOption& top = boost::none) const;

    /// Changes the user settings `instanceId`; yields it as the service stored it.
    /// POST `{location}/Plexum/UserSettings/{instanceId}/`
    ModelTask<model::PlexumUserSettingsChangedInstance>
    update_PlexumUserSettings(const utility::string_t& location, const utility::string_t& instanceId,
                              const Body<model::PlexumUserSettingsInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
