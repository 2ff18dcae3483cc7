#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

namespace VarnelAPI::Forms::model {

/// A way from one state of a workflow to others. Getters return references.
class VARNEL_FORMS_API WorkflowTransition : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Start, start);
    /// The states it leads to; more than one, unlike the start.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, End, end);
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, Permissions, permissions);
    /// Opaque text of the service.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Conditions, conditions);
    VARNEL_FORMS_FLAG_REF(AssignedUser, assignedUser);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SubmitDisplay, submitDisplay);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ButtonColor, buttonColor);
    /// A number, not a text.
    VARNEL_FORMS_PROPERTY_REF(int32_t, Notes, notes);
    VARNEL_FORMS_FLAG_REF(NotifyCreator, notifyCreator);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
