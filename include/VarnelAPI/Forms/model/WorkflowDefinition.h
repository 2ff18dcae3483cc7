#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>
#include <VarnelAPI/Forms/model/WorkflowState.h>
#include <VarnelAPI/Forms/model/WorkflowTransition.h>

namespace VarnelAPI::Forms::model {

/// The workflow of a class of issues or forms. It has no name or id of its own: its envelope identifies it. Getters
/// return references.
class VARNEL_FORMS_API WorkflowDefinition : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, StartStates, startStates);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Discipline, discipline);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Classification, classification);
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<WorkflowState>>, States, states);
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<WorkflowTransition>>, Transitions, transitions);
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<WorkflowTransition>>, StartingTransitions,
                              startingTransitions);
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<WorkflowState>, UninitializedState, uninitializedState);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API WorkflowDefinitionInstanceContent : public detail::InstanceContentOf<WorkflowDefinition> {};
class VARNEL_FORMS_API WorkflowDefinitionInstance : public detail::InstanceOf<WorkflowDefinitionInstanceContent> {};
class VARNEL_FORMS_API WorkflowDefinitionInstances : public detail::InstancesOf<WorkflowDefinitionInstanceContent> {};
class VARNEL_FORMS_API WorkflowDefinitionChangedInstanceContent
    : public detail::ChangedInstanceContentOf<WorkflowDefinitionInstanceContent> {};
class VARNEL_FORMS_API WorkflowDefinitionChangedInstance
    : public detail::ChangedInstanceOf<WorkflowDefinitionChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
