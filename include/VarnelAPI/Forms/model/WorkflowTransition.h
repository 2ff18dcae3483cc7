#pragma once

#include <VarnelAPI/Forms/model/Model.h>

namespace VarnelAPI::Forms::model {

/// A way from one state of a workflow to others. Getters return references.
class VARNEL_FORMS_API WorkflowTransition : public Model {
    VARNEL_FORMS_MODEL(WorkflowTransition);

    /// The state that it starts from.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Start, start, "Start");
    /// The states it leads to; more than one, unlike the start.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, End, end, "End");
    /// The permissions for it, in the service's words.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, Permissions, permissions, "Permissions");
    /// Opaque text of the service.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Conditions, conditions, "Conditions");
    /// A flag named after the assigned user; what it does is the service's to say.
    VARNEL_FORMS_FLAG_REF(AssignedUser, assignedUser, "AssignedUser");
    /// The text to show where it is submitted.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SubmitDisplay, submitDisplay, "SubmitDisplay");
    /// A colour for its button, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ButtonColor, buttonColor, "ButtonColor");
    /// A number, in spite of its name.
    VARNEL_FORMS_PROPERTY_REF(int32_t, Notes, notes, "Notes");
    /// Whether the creator is to be notified.
    VARNEL_FORMS_FLAG_REF(NotifyCreator, notifyCreator, "NotifyCreator");
};

} // namespace VarnelAPI::Forms::model
