#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A file attached to an instance. Getters return references.
class VARNEL_FORMS_API DynamicSchemaAttachment : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Name, name);
    /// The size as a text, unlike the number of `DynamicSchemaFile`: a JSON number reads as an empty text here.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Size, size);
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, CreatedDate, createdDate);
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, ModifiedDate, modifiedDate);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Caption, caption);
    /// What the attachment is bound to, as the service writes it.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Binding, binding);
    /// An address with a signature of its own, from which the file can be fetched.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SasUrl, sasUrl);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceContent
    : public detail::InstanceContentOf<DynamicSchemaAttachment> {};
class VARNEL_FORMS_API DynamicSchemaAttachmentInstance
    : public detail::InstanceOf<DynamicSchemaAttachmentInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaAttachmentInstances
    : public detail::InstancesOf<DynamicSchemaAttachmentInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaAttachmentChangedInstanceContent
    : public detail::ChangedInstanceContentOf<DynamicSchemaAttachmentInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaAttachmentChangedInstance
    : public detail::ChangedInstanceOf<DynamicSchemaAttachmentChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedDynamicSchemaAttachmentInstances
    : public detail::ChangedInstancesOf<DynamicSchemaAttachmentChangedInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceCount_properties : public detail::InstanceCountProperties {};
class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceCount_instances
    : public detail::CountInstanceOf<DynamicSchemaAttachmentInstanceCount_properties> {};
class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceCount
    : public detail::InstancesOf<DynamicSchemaAttachmentInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
