#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/WorkflowDefinition.h>

namespace VarnelAPI::Forms::api {

/// Workflows. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API WorkflowDefinitionApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the workflow definition `instanceId`.
    /// DELETE `{location}/Workflow/WorkflowDefinition/{instanceId}/`
    pplx::task<void> delete_WorkflowDefinition_instanceId(const utility::string_t& location,
                                                          const utility::string_t& instanceId) const;

    /// Reads the workflow definition `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Workflow/WorkflowDefinition/{instanceId}/`
    ModelTask<model::WorkflowDefinitionInstance>
    get_WorkflowDefinition_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                      const TextOption& select = boost::none) const;

    /// Creates a workflow definition; yields it as the service stored it.
    /// POST `{location}/Workflow/WorkflowDefinition`
    ModelTask<model::WorkflowDefinitionChangedInstance>
    insert_WorkflowDefinition(const utility::string_t& location,
                              const Body<model::WorkflowDefinitionInstance>& body) const;

    /// Lists the workflow definitions, with the definitions as JSON: the query option "definitionFormat" is always
    /// "json".
    /// GET `{location}/Workflow/WorkflowDefinition`
    ModelTask<model::WorkflowDefinitionInstances>
    select_WorkflowDefinition(const utility::string_t& location, const TextOption& filter = boost::none,
                              const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                              const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                              const NumberOption& top = boost::none) const;

    /// Changes the workflow definition `instanceId`; yields it as the service stored it.
    /// POST `{location}/Workflow/WorkflowDefinition/{instanceId}/`
    ModelTask<model::WorkflowDefinitionChangedInstance>
    update_WorkflowDefinition(const utility::string_t& location, const utility::string_t& instanceId,
                              const Body<model::WorkflowDefinitionInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
