#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A form template kept in the repository. Getters return copies.
class VARNEL_FORMS_API Forms_EC_MappingFormDefinition : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassDisplayLabel, classDisplayLabel);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassName, className);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassId, classId);
    /// The definition document, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Definition, definition);
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassSchema, classSchema);
    VARNEL_FORMS_FLAG(IsShared, isShared);
    VARNEL_FORMS_PROPERTY(utility::string_t, FormId, formId);
    VARNEL_FORMS_PROPERTY(utility::string_t, Type, type);
    VARNEL_FORMS_PROPERTY(utility::string_t, Status, status);
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectId, projectId);
    VARNEL_FORMS_PROPERTY(int32_t, ShareType, shareType);
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectNumber, projectNumber);
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectName, projectName);
    VARNEL_FORMS_PROPERTY(utility::string_t, Discipline, discipline);
    VARNEL_FORMS_PROPERTY(utility::string_t, Classification, classification);
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorStatus, errorStatus);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionInstanceContent
    : public detail::InstanceContentOf<Forms_EC_MappingFormDefinition> {};
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionInstance
    : public detail::InstanceOf<Forms_EC_MappingFormDefinitionInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionInstances
    : public detail::InstancesOf<Forms_EC_MappingFormDefinitionInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionChangedInstanceContent
    : public detail::ChangedInstanceContentOf<Forms_EC_MappingFormDefinitionInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionChangedInstance
    : public detail::ChangedInstanceOf<Forms_EC_MappingFormDefinitionChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedForms_EC_MappingFormDefinitionInstances
    : public detail::ChangedInstancesOf<Forms_EC_MappingFormDefinitionChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
