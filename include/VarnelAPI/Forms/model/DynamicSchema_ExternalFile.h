#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A reference to a file held in an outside store. Getters return copies.
class VARNEL_FORMS_API DynamicSchema_ExternalFile : public Model {
    VARNEL_FORMS_MODEL(DynamicSchema_ExternalFile);

    /// The file's id in its store.
    VARNEL_FORMS_PROPERTY(utility::string_t, ItemId, itemId, "ItemId");
    /// An address that leads back to the file's place there.
    VARNEL_FORMS_PROPERTY(utility::string_t, BackItemUrl, backItemUrl, "BackItemUrl");
    /// An address of the file's data.
    VARNEL_FORMS_PROPERTY(utility::string_t, DataItemUrl, dataItemUrl, "DataItemUrl");
    /// The name of the file.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
};

/// The identity and properties of an external file.
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceContent
    : public InstanceContentOf<DynamicSchema_ExternalFile> {};
/// One instance: an external file with its identity.
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstance
    : public InstanceOf<DynamicSchema_ExternalFileInstanceContent> {};
/// A list of external files.
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstances
    : public InstancesOf<DynamicSchema_ExternalFileInstanceContent> {};
/// What was done to an external file, and how it is since.
class VARNEL_FORMS_API DynamicSchema_ExternalFileChangedInstanceContent
    : public ChangedInstanceContentOf<DynamicSchema_ExternalFileInstanceContent> {};
/// One change of external files.
class VARNEL_FORMS_API DynamicSchema_ExternalFileChangedInstance
    : public ChangedInstanceOf<DynamicSchema_ExternalFileChangedInstanceContent> {};
/// A list of changes of external files.
class VARNEL_FORMS_API ChangedDynamicSchema_ExternalFileInstances
    : public ChangedInstancesOf<DynamicSchema_ExternalFileChangedInstanceContent> {};
/// What a count of external files says.
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceCount_properties : public InstanceCountProperties {};
/// A count of external files, with its identity.
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceCount_instances
    : public CountInstanceOf<DynamicSchema_ExternalFileInstanceCount_properties> {};
/// Counts of external files, one per class.
class VARNEL_FORMS_API DynamicSchema_ExternalFileInstanceCount
    : public InstancesOf<DynamicSchema_ExternalFileInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
