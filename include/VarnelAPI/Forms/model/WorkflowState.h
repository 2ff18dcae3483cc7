#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

namespace VarnelAPI::Forms::model {

/// A state of a workflow. Getters return references.
class VARNEL_FORMS_API WorkflowState : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Id, id);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Name, name);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Color, color);
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, EditableProperties, editableProperties);
    /// Whether an issue in this state counts as closed.
    VARNEL_FORMS_FLAG_REF(Closed, closed);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
