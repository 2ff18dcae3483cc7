#pragma once

#include <VarnelAPI/Forms/model/Forms_EC_MappingForm.h>
#include <VarnelAPI/Forms/model/Model.h>

namespace VarnelAPI::Forms::model {

/// A relationship from an issue to a form, as the service lists it beside the issue. Getters return references.
class VARNEL_FORMS_API RelationshipToForm : public Model {
    VARNEL_FORMS_MODEL(RelationshipToForm);

    /// The id of the relationship, not of the form.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, InstanceId, instanceId, "instanceId");
    /// The schema of the relationship's class.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SchemaName, schemaName, "schemaName");
    /// The relationship's class.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ClassName, className, "className");
    /// The direction, in the service's words.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Direction, direction, "direction");
    /// The form.
    VARNEL_FORMS_PROPERTY_REF(std::shared_ptr<Forms_EC_MappingFormInstanceContent>, RelatedInstance, relatedInstance,
                              "relatedInstance");
};

} // namespace VarnelAPI::Forms::model
