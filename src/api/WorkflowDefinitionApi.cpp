#include <VarnelAPI/Forms/api/WorkflowDefinitionApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource workflowDefinitions("WorkflowDefinitionApi", _XPLATSTR("Workflow/WorkflowDefinition"));
} // namespace

pplx::task<void>
WorkflowDefinitionApi::delete_WorkflowDefinition_instanceId(const utility::string_t& location,
                                                            const utility::string_t& instanceId) const {
    return workflowDefinitions.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::WorkflowDefinitionInstance> WorkflowDefinitionApi::get_WorkflowDefinition_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return workflowDefinitions.get<model::WorkflowDefinitionInstance>(m_ApiClient, __func__, location, instanceId,
                                                                      select);
}

ModelTask<model::WorkflowDefinitionChangedInstance>
WorkflowDefinitionApi::insert_WorkflowDefinition(const utility::string_t& location,
                                                 const Body<model::WorkflowDefinitionInstance>& body) const {
    return workflowDefinitions.insert<model::WorkflowDefinitionChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::WorkflowDefinitionInstances> WorkflowDefinitionApi::select_WorkflowDefinition(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return workflowDefinitions.onClass(m_ApiClient, __func__, web::http::methods::GET, location)
        .query(_XPLATSTR("definitionFormat"), TextOption(_XPLATSTR("json")))
        .options({filter, select, orderby, filtersettings, skip, top})
        .yieldModel<model::WorkflowDefinitionInstances>();
}

ModelTask<model::WorkflowDefinitionChangedInstance>
WorkflowDefinitionApi::update_WorkflowDefinition(const utility::string_t& location, const utility::string_t& instanceId,
                                                 const Body<model::WorkflowDefinitionInstance>& body) const {
    return workflowDefinitions.update<model::WorkflowDefinitionChangedInstance>(m_ApiClient, __func__, location,
                                                                                instanceId, body);
}

} // namespace VarnelAPI::Forms::api
