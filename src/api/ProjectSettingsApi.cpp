#include <VarnelAPI/Forms/api/ProjectSettingsApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource projectSettings("ProjectSettingsApi", _XPLATSTR("Plexum/ProjectSettings"));
} // namespace

pplx::task<void>
ProjectSettingsApi::delete_PlexumProjectSettings_instanceId(const utility::string_t& location,
                                                            const utility::string_t& instanceId) const {
    return projectSettings.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::PlexumProjectSettingsInstance> ProjectSettingsApi::get_PlexumProjectSettings_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return projectSettings.get<model::PlexumProjectSettingsInstance>(m_ApiClient, __func__, location, instanceId,
                                                                     select);
}

ModelTask<model::PlexumProjectSettingsChangedInstance>
ProjectSettingsApi::insert_PlexumProjectSettings(const utility::string_t& location,
                                                 const Body<model::PlexumProjectSettingsInstance>& body) const {
    return projectSettings.insert<model::PlexumProjectSettingsChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::PlexumProjectSettingsInstances> ProjectSettingsApi::select_PlexumProjectSettings(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return projectSettings.select<model::PlexumProjectSettingsInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::PlexumProjectSettingsChangedInstance>
ProjectSettingsApi::update_PlexumProjectSettings(const utility::string_t& location, const utility::string_t& instanceId,
                                                 const Body<model::PlexumProjectSettingsInstance>& body) const {
    return projectSettings.update<model::PlexumProjectSettingsChangedInstance>(m_ApiClient, __func__, location,
                                                                               instanceId, body);
}

} // namespace VarnelAPI::Forms::api
