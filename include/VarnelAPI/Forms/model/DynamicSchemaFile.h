#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// The stored file of an instance. Getters return copies.
class VARNEL_FORMS_API DynamicSchemaFile : public Model {
    VARNEL_FORMS_MODEL(DynamicSchemaFile);

    /// The name of the file.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// The size in bytes.
    VARNEL_FORMS_PROPERTY(int64_t, Size, size, "Size");
    /// When it was created.
    VARNEL_FORMS_PROPERTY(utility::datetime, CreatedDate, createdDate, "CreatedDate");
    /// When it was last modified.
    VARNEL_FORMS_PROPERTY(utility::datetime, ModifiedDate, modifiedDate, "ModifiedDate");
};

/// The identity and properties of a file.
class VARNEL_FORMS_API DynamicSchemaFileInstanceContent : public InstanceContentOf<DynamicSchemaFile> {};
/// One instance: a file with its identity.
class VARNEL_FORMS_API DynamicSchemaFileInstance : public InstanceOf<DynamicSchemaFileInstanceContent> {};
/// A list of files.
class VARNEL_FORMS_API DynamicSchemaFileInstances : public InstancesOf<DynamicSchemaFileInstanceContent> {};
/// What was done to a file, and how it is since.
class VARNEL_FORMS_API DynamicSchemaFileChangedInstanceContent
    : public ChangedInstanceContentOf<DynamicSchemaFileInstanceContent> {};
/// One change of files.
class VARNEL_FORMS_API DynamicSchemaFileChangedInstance
    : public ChangedInstanceOf<DynamicSchemaFileChangedInstanceContent> {};
/// What a count of files says.
class VARNEL_FORMS_API DynamicSchemaFileInstanceCount_properties : public InstanceCountProperties {};
/// A count of files, with its identity.
class VARNEL_FORMS_API DynamicSchemaFileInstanceCount_instances
    : public CountInstanceOf<DynamicSchemaFileInstanceCount_properties> {};
/// Counts of files, one per class.
class VARNEL_FORMS_API DynamicSchemaFileInstanceCount : public InstancesOf<DynamicSchemaFileInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
