#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A form template kept in the repository. Getters return copies.
class VARNEL_FORMS_API Forms_EC_MappingFormDefinition : public Model {
    VARNEL_FORMS_MODEL(Forms_EC_MappingFormDefinition);

    /// The label to show for the class of the forms.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassDisplayLabel, classDisplayLabel, "ClassDisplayLabel");
    /// The class of the forms.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassName, className, "ClassName");
    /// The id of that class.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassId, classId, "ClassId");
    /// The definition document, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Definition, definition, "Definition");
    /// The definition's name.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// The schema of that class.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassSchema, classSchema, "ClassSchema");
    /// Whether it is shared.
    VARNEL_FORMS_FLAG(IsShared, isShared, "IsShared");
    /// The id of a form.
    VARNEL_FORMS_PROPERTY(utility::string_t, FormId, formId, "FormId");
    /// A type, in the service's words.
    VARNEL_FORMS_PROPERTY(utility::string_t, Type, type, "Type");
    /// A status, in the service's words.
    VARNEL_FORMS_PROPERTY(utility::string_t, Status, status, "Status");
    /// The id of a project.
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectId, projectId, "ProjectId");
    /// A kind of sharing, as a number of the service.
    VARNEL_FORMS_PROPERTY(int32_t, ShareType, shareType, "ShareType");
    /// The project's number, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectNumber, projectNumber, "ProjectNumber");
    /// The project's name.
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectName, projectName, "ProjectName");
    /// A discipline, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Discipline, discipline, "Discipline");
    /// A classification, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Classification, classification, "Classification");
    /// A status of the service, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorStatus, errorStatus, "ErrorStatus");
};

/// The identity and properties of a form definition.
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionInstanceContent
    : public InstanceContentOf<Forms_EC_MappingFormDefinition> {};
/// One instance: a form definition with its identity.
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionInstance
    : public InstanceOf<Forms_EC_MappingFormDefinitionInstanceContent> {};
/// A list of form definitions.
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionInstances
    : public InstancesOf<Forms_EC_MappingFormDefinitionInstanceContent> {};
/// What was done to a form definition, and how it is since.
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionChangedInstanceContent
    : public ChangedInstanceContentOf<Forms_EC_MappingFormDefinitionInstanceContent> {};
/// One change of form definitions.
class VARNEL_FORMS_API Forms_EC_MappingFormDefinitionChangedInstance
    : public ChangedInstanceOf<Forms_EC_MappingFormDefinitionChangedInstanceContent> {};
/// A list of changes of form definitions.
class VARNEL_FORMS_API ChangedForms_EC_MappingFormDefinitionInstances
    : public ChangedInstancesOf<Forms_EC_MappingFormDefinitionChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
