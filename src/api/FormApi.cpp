#include <VarnelAPI/Forms/api/FormApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource forms("FormApi", _XPLATSTR("Forms_EC_Mapping/Form"));
constexpr detail::Resource projectMembers("FormApi", _XPLATSTR("Plexum/ProjectMember"));
constexpr detail::Resource projectRoles("FormApi", _XPLATSTR("Plexum/ProjectRole"));
} // namespace

pplx::task<void> FormApi::delete_FormsECMappingForm_instanceId(const utility::string_t& location,
                                                               const utility::string_t& instanceId) const {
    return forms.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::Forms_EC_MappingFormInstance>
FormApi::get_FormsECMappingForm_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                           const TextOption& select) const {
    return forms.get<model::Forms_EC_MappingFormInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::Forms_EC_MappingFormChangedInstance>
FormApi::insert_FormsECMappingForm(const utility::string_t& location,
                                   const Body<model::Forms_EC_MappingFormInstance>& body) const {
    return forms.insert<model::Forms_EC_MappingFormChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::Forms_EC_MappingFormChangedInstance> FormApi::insert_FormsECMappingFormRelatedToIssue(
    const utility::string_t& projectID, const utility::string_t& issueClassName, const utility::string_t& issueID,
    const Body<model::Forms_EC_MappingFormInstance>& body) const {
    return forms
        .onPath(
            m_ApiClient, __func__, web::http::methods::POST,
            _XPLATSTR("{projectID}/DynamicSchema/{issueClassName}/{issueID}/FormData-forward-Forms_EC_Mapping.Form"))
        .fill(_XPLATSTR("projectID"), projectID)
        .fill(_XPLATSTR("issueClassName"), issueClassName)
        .fill(_XPLATSTR("issueID"), issueID)
        .body(body)
        .yieldModel<model::Forms_EC_MappingFormChangedInstance>();
}

ModelTask<model::Forms_EC_MappingFormInstances> FormApi::select_FormsECMappingForm(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return forms.select<model::Forms_EC_MappingFormInstances>(m_ApiClient, __func__, location,
                                                              {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::Forms_EC_MappingProjectMemberInstances>
FormApi::select_ProjectMembers(const utility::string_t& location, const TextOption& filter, const TextOption& select,
                               const TextOption& orderby, const TextOption& filtersettings, const NumberOption& skip,
                               const NumberOption& top) const {
    return projectMembers.select<model::Forms_EC_MappingProjectMemberInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::PlexumProjectRoleInstances>
FormApi::select_ProjectRoles(const utility::string_t& location, const TextOption& filter, const TextOption& select,
                             const TextOption& orderby, const TextOption& filtersettings, const NumberOption& skip,
                             const NumberOption& top) const {
    return projectRoles.select<model::PlexumProjectRoleInstances>(m_ApiClient, __func__, location,
                                                                  {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::Forms_EC_MappingFormChangedInstance>
FormApi::update_FormsECMappingForm(const utility::string_t& location, const utility::string_t& instanceId,
                                   const Body<model::Forms_EC_MappingFormInstance>& body) const {
    return forms.update<model::Forms_EC_MappingFormChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
