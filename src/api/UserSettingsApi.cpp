#include <VarnelAPI/Forms/api/UserSettingsApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource userSettings("UserSettingsApi", _XPLATSTR("Plexum/UserSettings"));
} // namespace

pplx::task<void> UserSettingsApi::delete_PlexumUserSettings_instanceId(const utility::string_t& location,
                                                                       const utility::string_t& instanceId) const {
    return userSettings.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::PlexumUserSettingsInstance> UserSettingsApi::get_PlexumUserSettings_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return userSettings.get<model::PlexumUserSettingsInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::PlexumUserSettingsChangedInstance>
UserSettingsApi::insert_PlexumUserSettings(const utility::string_t& location,
                                           const Body<model::PlexumUserSettingsInstance>& body) const {
    return userSettings.insert<model::PlexumUserSettingsChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::PlexumUserSettingsInstances> UserSettingsApi::select_PlexumUserSettings(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return userSettings.select<model::PlexumUserSettingsInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::PlexumUserSettingsChangedInstance>
UserSettingsApi::update_PlexumUserSettings(const utility::string_t& location, const utility::string_t& instanceId,
                                           const Body<model::PlexumUserSettingsInstance>& body) const {
    return userSettings.update<model::PlexumUserSettingsChangedInstance>(m_ApiClient, __func__, location, instanceId,
                                                                         body);
}

} // namespace VarnelAPI::Forms::api
