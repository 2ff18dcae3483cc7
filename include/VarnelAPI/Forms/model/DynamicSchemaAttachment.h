#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A file attached to an instance. Getters return references.
class VARNEL_FORMS_API DynamicSchemaAttachment : public Model {
    VARNEL_FORMS_MODEL(DynamicSchemaAttachment);

    /// The name of the attachment.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Name, name, "Name");
    /// The size as a text, unlike the number of `DynamicSchemaFile`: a JSON number reads as an empty text here.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Size, size, "Size");
    /// When it was created.
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, CreatedDate, createdDate, "CreatedDate");
    /// When it was last modified.
    VARNEL_FORMS_PROPERTY_REF(utility::datetime, ModifiedDate, modifiedDate, "ModifiedDate");
    /// A caption for people.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Caption, caption, "Caption");
    /// Text of the service that says what the attachment is bound to.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, Binding, binding, "Binding");
    /// An address of the file, as text.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, SasUrl, sasUrl, "SasUrl");
};

/// The identity and properties of an attachment.
class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceContent : public InstanceContentOf<DynamicSchemaAttachment> {};
/// One instance: an attachment with its identity.
class VARNEL_FORMS_API DynamicSchemaAttachmentInstance : public InstanceOf<DynamicSchemaAttachmentInstanceContent> {};
/// A list of attachments.
class VARNEL_FORMS_API DynamicSchemaAttachmentInstances : public InstancesOf<DynamicSchemaAttachmentInstanceContent> {};
/// What was done to an attachment, and how it is since.
class VARNEL_FORMS_API DynamicSchemaAttachmentChangedInstanceContent
    : public ChangedInstanceContentOf<DynamicSchemaAttachmentInstanceContent> {};
/// One change of attachments.
class VARNEL_FORMS_API DynamicSchemaAttachmentChangedInstance
    : public ChangedInstanceOf<DynamicSchemaAttachmentChangedInstanceContent> {};
/// A list of changes of attachments.
class VARNEL_FORMS_API ChangedDynamicSchemaAttachmentInstances
    : public ChangedInstancesOf<DynamicSchemaAttachmentChangedInstanceContent> {};
/// What a count of attachments says.
class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceCount_properties : public InstanceCountProperties {};
/// A count of attachments, with its identity.
class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceCount_instances
    : public CountInstanceOf<DynamicSchemaAttachmentInstanceCount_properties> {};
/// Counts of attachments, one per class.
class VARNEL_FORMS_API DynamicSchemaAttachmentInstanceCount
    : public InstancesOf<DynamicSchemaAttachmentInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
