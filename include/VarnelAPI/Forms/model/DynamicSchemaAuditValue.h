#pragma once

#include <VarnelAPI/Forms/model/Model.h>

namespace VarnelAPI::Forms::model {

/// One changed property inside an audit record. Getters return copies.
class VARNEL_FORMS_API DynamicSchemaAuditValue : public Model {
    VARNEL_FORMS_MODEL(DynamicSchemaAuditValue);

    /// The name of the property that was changed.
    VARNEL_FORMS_PROPERTY(utility::string_t, Property, property, "Property");
    /// The value before, as text, whatever the type of the property.
    VARNEL_FORMS_PROPERTY(utility::string_t, OldValue, oldValue, "OldValue");
    /// The value since, as text, whatever the type of the property.
    VARNEL_FORMS_PROPERTY(utility::string_t, NewValue, newValue, "NewValue");
};

} // namespace VarnelAPI::Forms::model
