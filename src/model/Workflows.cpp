#include <VarnelAPI/Forms/model/WorkflowDefinition.h>
#include <VarnelAPI/Forms/model/WorkflowState.h>
#include <VarnelAPI/Forms/model/WorkflowTransition.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(WorkflowState) {
    visit(m_Id);
    visit(m_Name);
    visit(m_Color);
    visit(m_EditableProperties);
    visit(m_Closed);
}

VARNEL_FORMS_DESCRIBE(WorkflowTransition) {
    visit(m_Start);
    visit(m_End);
    visit(m_Permissions);
    visit(m_Conditions);
    visit(m_AssignedUser);
    visit(m_SubmitDisplay);
    visit(m_ButtonColor);
    visit(m_Notes);
    visit(m_NotifyCreator);
}

VARNEL_FORMS_DESCRIBE(WorkflowDefinition) {
    visit(m_StartStates);
    visit(m_Discipline);
    visit(m_Classification);
    visit(m_States);
    visit(m_Transitions);
    visit(m_StartingTransitions);
    visit(m_UninitializedState);
}

} // namespace VarnelAPI::Forms::model
