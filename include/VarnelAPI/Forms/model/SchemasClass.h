#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A class definition of the repository. Getters return copies.
class VARNEL_FORMS_API SchemasClass : public Model {
    VARNEL_FORMS_MODEL(SchemasClass);

    /// The class's name.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// The label to show for the class.
    VARNEL_FORMS_PROPERTY(utility::string_t, DisplayLabel, displayLabel, "DisplayLabel");
    /// The definition as XML text, which is passed through unread.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassXml, classXml, "ClassXml");
    /// Whether it is shared.
    VARNEL_FORMS_FLAG(IsShared, isShared, "IsShared");
    /// Whether it is a struct.
    VARNEL_FORMS_FLAG(IsStruct, isStruct, "IsStruct");
};

/// The identity and properties of a class.
class VARNEL_FORMS_API SchemasClassInstanceContent : public InstanceContentOf<SchemasClass> {};
/// One instance: a class with its identity.
class VARNEL_FORMS_API SchemasClassInstance : public InstanceOf<SchemasClassInstanceContent> {};
/// A list of classes.
class VARNEL_FORMS_API SchemasClassInstances : public InstancesOf<SchemasClassInstanceContent> {};
/// What was done to a class, and how it is since.
class VARNEL_FORMS_API SchemasClassChangedInstanceContent
    : public ChangedInstanceContentOf<SchemasClassInstanceContent> {};
/// One change of classes.
class VARNEL_FORMS_API SchemasClassChangedInstance : public ChangedInstanceOf<SchemasClassChangedInstanceContent> {};
/// A list of changes of classes.
class VARNEL_FORMS_API ChangedSchemasClassInstances : public ChangedInstancesOf<SchemasClassChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
