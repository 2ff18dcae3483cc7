#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A reference to a file held in an outside store. Getters return copies.
class VARNEL_FORMS_API DynamicSchema_ExternalFile : public detail::Model {
    /// The file's id in its store.
    VARNEL_FORMS_PROPERTY(utility::string_t, ItemId, itemId);
    VARNEL_FORMS_PROPERTY(utility::string_t, BackItemUrl, backItemUrl);
    VARNEL_FORMS_PROPERTY(utility::string_t, DataItemUrl, dataItemUrl);
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceContent
    : public detail::InstanceContentOf<DynamicSchema_ExternalFile> {};
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstance
    : public detail::InstanceOf<DynamicSchema_ExternalFileInstanceContent> {};
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstances
    : public detail::InstancesOf<DynamicSchema_ExternalFileInstanceContent> {};
class VARNEL_FORMS_API DynamicSchema_ExternalFileChangedInstanceContent
    : public detail::ChangedInstanceContentOf<DynamicSchema_ExternalFileInstanceContent> {};
class VARNEL_FORMS_API DynamicSchema_ExternalFileChangedInstance
    : public detail::ChangedInstanceOf<DynamicSchema_ExternalFileChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedDynamicSchema_ExternalFileInstances
    : public detail::ChangedInstancesOf<DynamicSchema_ExternalFileChangedInstanceContent> {};
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceCount_properties : public detail::InstanceCountProperties {};
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceCount_instances
    : public detail::CountInstanceOf<DynamicSchema_ExternalFileInstanceCount_properties> {};
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceCount
    : public detail::InstancesOf<DynamicSchema_ExternalFileInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
