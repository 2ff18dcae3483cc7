#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A style sheet for forms. Getters return copies.
class VARNEL_FORMS_API Forms_EC_MappingFormStyle : public detail::Model {
    VARNEL_FORMS_PROPERTY(int32_t, Id, id);
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    /// The style, as XML text.
    VARNEL_FORMS_PROPERTY(utility::string_t, StyleXml, styleXml);
    VARNEL_FORMS_FLAG(IsShared, isShared);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API Forms_EC_MappingFormStyleInstanceContent
    : public detail::InstanceContentOf<Forms_EC_MappingFormStyle> {};
class VARNEL_FORMS_API Forms_EC_MappingFormStyleInstance
    : public detail::InstanceOf<Forms_EC_MappingFormStyleInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormStyleInstances
    : public detail::InstancesOf<Forms_EC_MappingFormStyleInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormStyleChangedInstanceContent
    : public detail::ChangedInstanceContentOf<Forms_EC_MappingFormStyleInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingFormStyleChangedInstance
    : public detail::ChangedInstanceOf<Forms_EC_MappingFormStyleChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
