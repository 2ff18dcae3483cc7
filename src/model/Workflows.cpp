#include <VarnelAPI/Forms/model/WorkflowDefinition.h>
#include <VarnelAPI/Forms/model/WorkflowState.h>
#include <VarnelAPI/Forms/model/WorkflowTransition.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(WorkflowState) {
    visit(_XPLATSTR("Id"), m_Id);
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("Color"), m_Color);
    visit(_XPLATSTR("EditableProperties"), m_EditableProperties);
    visit(_XPLATSTR("Closed"), m_Closed);
}

VARNEL_FORMS_DESCRIBE(WorkflowTransition) {
    visit(_XPLATSTR("Start"), m_Start);
    visit(_XPLATSTR("End"), m_End);
    visit(_XPLATSTR("Permissions"), m_Permissions);
    visit(_XPLATSTR("Conditions"), m_Conditions);
    visit(_XPLATSTR("AssignedUser"), m_AssignedUser);
    visit(_XPLATSTR("SubmitDisplay"), m_SubmitDisplay);
    visit(_XPLATSTR("ButtonColor"), m_ButtonColor);
    visit(_XPLATSTR("Notes"), m_Notes);
    visit(_XPLATSTR("NotifyCreator"), m_NotifyCreator);
}

VARNEL_FORMS_DESCRIBE(WorkflowDefinition) {
    visit(_XPLATSTR("StartStates"), m_StartStates);
    visit(_XPLATSTR("Discipline"), m_Discipline);
    visit(_XPLATSTR("Classification"), m_Classification);
    visit(_XPLATSTR("States"), m_States);
    visit(_XPLATSTR("Transitions"), m_Transitions);
    visit(_XPLATSTR("StartingTransitions"), m_StartingTransitions);
    visit(_XPLATSTR("UninitializedState"), m_UninitializedState);
}

} // namespace VarnelAPI::Forms::model
