#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A class definition of the repository. Getters return copies.
class VARNEL_FORMS_API SchemasClass : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    VARNEL_FORMS_PROPERTY(utility::string_t, DisplayLabel, displayLabel);
    /// The definition as XML text, which is passed through unread.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassXml, classXml);
    VARNEL_FORMS_FLAG(IsShared, isShared);
    VARNEL_FORMS_FLAG(IsStruct, isStruct);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API SchemasClassInstanceContent : public detail::InstanceContentOf<SchemasClass> {};
class VARNEL_FORMS_API SchemasClassInstance : public detail::InstanceOf<SchemasClassInstanceContent> {};
class VARNEL_FORMS_API SchemasClassInstances : public detail::InstancesOf<SchemasClassInstanceContent> {};
class VARNEL_FORMS_API SchemasClassChangedInstanceContent
    : public detail::ChangedInstanceContentOf<SchemasClassInstanceContent> {};
class VARNEL_FORMS_API SchemasClassChangedInstance
    : public detail::ChangedInstanceOf<SchemasClassChangedInstanceContent> {};
class VARNEL_FORMS_API ChangedSchemasClassInstances
    : public detail::ChangedInstancesOf<SchemasClassChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
