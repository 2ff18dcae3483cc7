#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>
#include <VarnelAPI/Forms/model/WorkflowState.h>
#include <VarnelAPI/Forms/model/WorkflowTransition.h>

namespace VarnelAPI::Forms::model {

/// The workflow of a class of issues or forms. It has no name or id of its own: its envelope identifies it. Getters
/// return references.
class VARNEL_FORMS_API WorkflowDefinition : public Model {
    VARNEL_FORMS_MODEL(WorkflowDefinition);

    /// The states to start in.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, StartStates, startStates, "StartStates");
    /// A discipline, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Discipline, discipline, "Discipline");
    /// A classification, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Classification, classification, "Classification");
    /// All states.
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<WorkflowState>>, States, states, "States");
    /// The ways from one state to others.
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<WorkflowTransition>>, Transitions, transitions,
                              "Transitions");
    /// The ways into a first state.
    VARNEL_FORMS_PROPERTY_REF(std::vector<std::shared_ptr<WorkflowTransition>>, StartingTransitions,
                              startingTransitions, "StartingTransitions");
    /// The state of what is in none yet.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<WorkflowState>, UninitializedState, uninitializedState,
                              "UninitializedState");
};

/// The identity and properties of a workflow definition.
class VARNEL_FORMS_API WorkflowDefinitionInstanceContent : public InstanceContentOf<WorkflowDefinition> {};
/// One instance: a workflow definition with its identity.
class VARNEL_FORMS_API WorkflowDefinitionInstance : public InstanceOf<WorkflowDefinitionInstanceContent> {};
/// A list of workflow definitions.
class VARNEL_FORMS_API WorkflowDefinitionInstances : public InstancesOf<WorkflowDefinitionInstanceContent> {};
/// What was done to a workflow definition, and how it is since.
class VARNEL_FORMS_API WorkflowDefinitionChangedInstanceContent
    : public ChangedInstanceContentOf<WorkflowDefinitionInstanceContent> {};
/// One change of workflow definitions.
class VARNEL_FORMS_API WorkflowDefinitionChangedInstance
    : public ChangedInstanceOf<WorkflowDefinitionChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
