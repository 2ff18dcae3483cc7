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

detail::ModelTask<model::PlexumProjectSettingsInstance> ProjectSettingsApi::get_PlexumProjectSettings_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const detail::TextOption& select) const {
    return projectSettings.get<model::PlexumProjectSettingsInstance>(m_ApiClient, __func__, location, instanceId,
                                                                     select);
}

detail::ModelTask<model::PlexumProjectSettingsChangedInstance>
ProjectSettingsApi::insert_PlexumProjectSettings(const utility::string_t& location,
                                                 const detail::Body<model::PlexumProjectSettingsInstance>& body) const {
    return projectSettings.insert<model::PlexumProjectSettingsChangedInstance>(m_ApiClient, __func__, location, body);
}

detail::ModelTask<model::PlexumProjectSettingsInstances> ProjectSettingsApi::select_PlexumProjectSettings(
    const utility::string_t& location, const detail::TextOption& filter, const detail::TextOption& select,
    const detail::TextOption& orderby, const detail::TextOption& filtersettings, const detail::NumberOption& skip,
    const detail::NumberOption& top) const {
    return projectSettings.select<model::PlexumProjectSettingsInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

detail::ModelTask<model::PlexumProjectSettingsChangedInstance>
ProjectSettingsApi::update_PlexumProjectSettings(const utility::string_t& location, const utility::string_t& instanceId,
                                                 const detail::Body<model::PlexumProjectSettingsInstance>& body) const {
    return projectSettings.update<model::PlexumProjectSettingsChangedInstance>(m_ApiClient, __func__, location,
                                                                               instanceId, body);
}

} // namespace VarnelAPI::Forms::api
