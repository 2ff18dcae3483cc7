#pragma once

#include <VarnelAPI/Forms/detail/Model.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingForm.h>

namespace VarnelAPI::Forms::model {

/// A relationship from an issue to a form, as the service lists it beside the issue. Getters return references.
class VARNEL_FORMS_API RelationshipToForm : public detail::Model {
    /// The id of the relationship, not of the form.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, InstanceId, instanceId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SchemaName, schemaName);
    /// The relationship's class.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ClassName, className);
    /// The direction, as the service writes it.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Direction, direction);
    /// The form.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<Forms_EC_MappingFormInstanceContent>, RelatedInstance, relatedInstance);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
