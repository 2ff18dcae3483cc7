#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A form. Getters return copies, of the list a reference.
class VARNEL_FORMS_API Forms_EC_MappingForm : public Model {
    VARNEL_FORMS_MODEL(Forms_EC_MappingForm);

    /// The form's name.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// The label to show for the form's class.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassDisplayLabel, classDisplayLabel, "ClassDisplayLabel");
    /// The form's class.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassName, className, "ClassName");
    /// The id of that class.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassId, classId, "ClassId");
    /// The schema of that class.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassSchema, classSchema, "ClassSchema");
    /// Whether it is shared.
    VARNEL_FORMS_FLAG(IsShared, isShared, "IsShared");
    /// The label to show for the form.
    VARNEL_FORMS_PROPERTY(utility::string_t, FormDisplayLabel, formDisplayLabel, "FormDisplayLabel");
    /// A discipline, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Discipline, discipline, "Discipline");
    /// A classification, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Classification, classification, "Classification");
    /// A status of the service, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorStatus, errorStatus, "ErrorStatus");
    /// The permissions of the user, in the service's words.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, UserPermissions, userPermissions, "UserPermissions");
};

/// The identity and properties of a form.
class VARNEL_FORMS_API Forms_EC_MappingFormInstanceContent : public InstanceContentOf<Forms_EC_MappingForm> {};
/// One instance: a form with its identity.
class VARNEL_FORMS_API Forms_EC_MappingFormInstance : public InstanceOf<Forms_EC_MappingFormInstanceContent> {};
/// A list of forms.
class VARNEL_FORMS_API Forms_EC_MappingFormInstances : public InstancesOf<Forms_EC_MappingFormInstanceContent> {};
/// What was done to a form, and how it is since.
class VARNEL_FORMS_API Forms_EC_MappingFormChangedInstanceContent
    : public ChangedInstanceContentOf<Forms_EC_MappingFormInstanceContent> {};
/// One change of forms.
class VARNEL_FORMS_API Forms_EC_MappingFormChangedInstance
    : public ChangedInstanceOf<Forms_EC_MappingFormChangedInstanceContent> {};
/// A list of changes of forms.
class VARNEL_FORMS_API ChangedForms_EC_MappingFormInstances
    : public ChangedInstancesOf<Forms_EC_MappingFormChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
