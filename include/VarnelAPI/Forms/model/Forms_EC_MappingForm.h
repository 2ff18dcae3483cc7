#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A form. Getters return copies, of the list a reference.
class VARNEL_FORMS_API Forms_EC_MappingForm : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassDisplayLabel, classDisplayLabel);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassName, className);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassId, classId);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassSchema, classSchema);
    VARNEL_FORMS_FLAG(IsShared, isShared);
    VARNEL_FORMS_PROPERTY(utility::string_t, FormDisplayLabel, formDisplayLabel);
    VARNEL_FORMS_PROPERTY(utility::string_t, Discipline, discipline);
    VARNEL_FORMS_PROPERTY(utility::string_t, Classification, classification);
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorStatus, errorStatus);
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, UserPermissions, userPermissions);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API Forms_EC_MappingFormInstanceContent : public detail::InstanceContentOf<Forms_EC_MappingForm> {};
class VARNEL_FORMS_API Forms_EC_MappingFormInstance : public detail::InstanceOf<Forms_EC_MappingFormInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormInstances : public detail::InstancesOf<Forms_EC_MappingFormInstanceContent> {
};
class VARNEL_FORMS_API Forms_EC_MappingFormChangedInstanceContent
    : public detail::ChangedInstanceContentOf<Forms_EC_MappingFormInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormChangedInstance
    : public detail::ChangedInstanceOf<Forms_EC_MappingFormChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedForms_EC_MappingFormInstances
    : public detail::ChangedInstancesOf<Forms_EC_MappingFormChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
