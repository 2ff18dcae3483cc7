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

detail::ModelTask<model::PlexumUserSettingsInstance> UserSettingsApi::get_PlexumUserSettings_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const detail::TextOption& select) const {
    return userSettings.get<model::PlexumUserSettingsInstance>(m_ApiClient, __func__, location, instanceId, select);
}

detail::ModelTask<model::PlexumUserSettingsChangedInstance>
UserSettingsApi::insert_PlexumUserSettings(const utility::string_t& location,
                                           const detail::Body<model::PlexumUserSettingsInstance>& body) const {
    return userSettings.insert<model::PlexumUserSettingsChangedInstance>(m_ApiClient, __func__, location, body);
}

detail::ModelTask<model::PlexumUserSettingsInstances>
UserSettingsApi::select_PlexumUserSettings(const utility::string_t& location, const detail::TextOption& filter,
                                           const detail::TextOption& select, const detail::TextOption& orderby,
                                           const detail::TextOption& filtersettings, const detail::NumberOption& skip,
                                           const detail::NumberOption& top) const {
    return userSettings.select<model::PlexumUserSettingsInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

detail::ModelTask<model::PlexumUserSettingsChangedInstance>
UserSettingsApi::update_PlexumUserSettings(const utility::string_t& location, const utility::string_t& instanceId,
                                           const detail::Body<model::PlexumUserSettingsInstance>& body) const {
    return userSettings.update<model::PlexumUserSettingsChangedInstance>(m_ApiClient, __func__, location, instanceId,
                                                                         body);
}

} // namespace VarnelAPI::Forms::api
