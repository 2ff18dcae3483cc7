#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

namespace VarnelAPI::Forms::model {

/// One changed property inside an audit record. Getters return copies.
class VARNEL_FORMS_API DynamicSchemaAuditValue : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Property, property);
    /// The values as text, whatever the type of the property.
    VARNEL_FORMS_PROPERTY(utility::string_t, OldValue, oldValue);
    VARNEL_FORMS_PROPERTY(utility::string_t, NewValue, newValue);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
