#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// The stored file of an instance. Getters return copies.
class VARNEL_FORMS_API DynamicSchemaFile : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    /// The size in bytes.
    VARNEL_FORMS_PROPERTY(int64_t, Size, size);
    VARNEL_FORMS_PROPERTY(utility::datetime, CreatedDate, createdDate);
    VARNEL_FORMS_PROPERTY(utility::datetime, ModifiedDate, modifiedDate);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API DynamicSchemaFileInstanceContent : public detail::InstanceContentOf<DynamicSchemaFile> {};
class VARNEL_FORMS_API DynamicSchemaFileInstance : public detail::InstanceOf<DynamicSchemaFileInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaFileInstances : public detail::InstancesOf<DynamicSchemaFileInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaFileChangedInstanceContent
    : public detail::ChangedInstanceContentOf<DynamicSchemaFileInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaFileChangedInstance
    : public detail::ChangedInstanceOf<DynamicSchemaFileChangedInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaFileInstanceCount_properties : public detail::InstanceCountProperties {};
class VARNEL_FORMS_API DynamicSchemaFileInstanceCount_instances
    : public detail::CountInstanceOf<DynamicSchemaFileInstanceCount_properties> {};
class VARNEL_FORMS_API DynamicSchemaFileInstanceCount
    : public detail::InstancesOf<DynamicSchemaFileInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
