#pragma once

#include <VarnelAPI/Forms/model/Model.h>

namespace VarnelAPI::Forms::model {

/// A state of a workflow. Getters return references.
class VARNEL_FORMS_API WorkflowState : public Model {
    VARNEL_FORMS_MODEL(WorkflowState);

    /// The id of the state; a text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Id, id, "Id");
    /// The name of the state.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Name, name, "Name");
    /// A colour for the state, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Color, color, "Color");
    /// The names of the properties that can be edited in this state.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, EditableProperties, editableProperties,
                              "EditableProperties");
    /// Whether the state is marked as closed.
    VARNEL_FORMS_FLAG_REF(Closed, closed, "Closed");
};

} // namespace VarnelAPI::Forms::model
