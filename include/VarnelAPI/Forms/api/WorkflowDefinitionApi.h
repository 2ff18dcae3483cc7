#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/WorkflowDefinition.h>

namespace VarnelAPI::Forms::api {

/// Workflows. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API WorkflowDefinitionApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the workflow definition `instanceId`.
    /// DELETE `{location}/Workflow/WorkflowDefinition/{instanceId}/`
    pplx::task<void> delete_WorkflowDefinition_instanceId(const utility::string_t& location,
                                                          const utility::string_t& instanceId) const;

    /// Reads the workflow definition `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Workflow/WorkflowDefinition/{instanceId}/`
    detail::ModelTask<model::WorkflowDefinitionInstance>
    get_WorkflowDefinition_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                      const detail::TextOption& select = boost::none) const;

    /// Creates a workflow definition; yields it as the service stored it.
    /// POST `{location}/Workflow/WorkflowDefinition`
    detail::ModelTask<model::WorkflowDefinitionChangedInstance>
    insert_WorkflowDefinition(const utility::string_t& location,
                              const detail::Body<model::WorkflowDefinitionInstance>& body) const;

    /// Lists the workflow definitions, with the definitions as JSON: the query option "definitionFormat" is always
    /// "json". GET `{location}/Workflow/WorkflowDefinition`
    detail::ModelTask<model::WorkflowDefinitionInstances> select_WorkflowDefinition(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the workflow definition `instanceId`; yields it as the service stored it.
    /// POST `{location}/Workflow/WorkflowDefinition/{instanceId}/`
    detail::ModelTask<model::WorkflowDefinitionChangedInstance>
    update_WorkflowDefinition(const utility::string_t& location, const utility::string_t& instanceId,
                              const detail::Body<model::WorkflowDefinitionInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
