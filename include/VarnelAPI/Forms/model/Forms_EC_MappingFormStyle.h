#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A style sheet for forms. Getters return copies.
class VARNEL_FORMS_API Forms_EC_MappingFormStyle : public Model {
    VARNEL_FORMS_MODEL(Forms_EC_MappingFormStyle);

    /// The style's number; no instance id.
    VARNEL_FORMS_PROPERTY(int32_t, Id, id, "Id");
    /// The style's name.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// The style, as XML text.
    VARNEL_FORMS_PROPERTY(utility::string_t, StyleXml, styleXml, "StyleXml");
    /// Whether it is shared.
    VARNEL_FORMS_FLAG(IsShared, isShared, "IsShared");
};

/// The identity and properties of a form style.
class VARNEL_FORMS_API Forms_EC_MappingFormStyleInstanceContent : public InstanceContentOf<Forms_EC_MappingFormStyle> {
};
/// One instance: a form style with its identity.
class VARNEL_FORMS_API Forms_EC_MappingFormStyleInstance : public InstanceOf<Forms_EC_MappingFormStyleInstanceContent> {
};
/// A list of form styles.
class VARNEL_FORMS_API Forms_EC_MappingFormStyleInstances
    : public InstancesOf<Forms_EC_MappingFormStyleInstanceContent> {};
/// What was done to a form style, and how it is since.
class VARNEL_FORMS_API Forms_EC_MappingFormStyleChangedInstanceContent
    : public ChangedInstanceContentOf<Forms_EC_MappingFormStyleInstanceContent> {};
/// One change of form styles.
class VARNEL_FORMS_API Forms_EC_MappingFormStyleChangedInstance
    : public ChangedInstanceOf<Forms_EC_MappingFormStyleChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
