#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// How to make a class from a template. Getters return copies.
class VARNEL_FORMS_API PlexumTemplate : public detail::Model {
    VARNEL_FORMS_FLAG(Copy, copy);
    VARNEL_FORMS_FLAG(OnlyIfUnique, onlyIfUnique);
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassName, className);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API PlexumTemplateInstanceContent : public detail::InstanceContentOf<PlexumTemplate> {};
class VARNEL_FORMS_API PlexumTemplateInstance : public detail::InstanceOf<PlexumTemplateInstanceContent> {};
class VARNEL_FORMS_API PlexumTemplateChangedInstanceContent
    : public detail::ChangedInstanceContentOf<PlexumTemplateInstanceContent> {};
class VARNEL_FORMS_API PlexumTemplateChangedInstance
    : public detail::ChangedInstanceOf<PlexumTemplateChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
