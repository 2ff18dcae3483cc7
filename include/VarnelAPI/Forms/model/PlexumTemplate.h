#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// How to make a class from a template. Getters return copies.
class VARNEL_FORMS_API PlexumTemplate : public Model {
    VARNEL_FORMS_MODEL(PlexumTemplate);

    /// Whether to copy.
    VARNEL_FORMS_FLAG(Copy, copy, "Copy");
    /// Whether to do so only if the result is unique.
    VARNEL_FORMS_FLAG(OnlyIfUnique, onlyIfUnique, "OnlyIfUnique");
    /// The name of a class.
    VARNEL_FORMS_PROPERTY(utility::string_t, ClassName, className, "ClassName");
};

/// The identity and properties of a template.
class VARNEL_FORMS_API PlexumTemplateInstanceContent : public InstanceContentOf<PlexumTemplate> {};
/// One instance: a template with its identity.
class VARNEL_FORMS_API PlexumTemplateInstance : public InstanceOf<PlexumTemplateInstanceContent> {};
/// What was done to a template, and how it is since.
class VARNEL_FORMS_API PlexumTemplateChangedInstanceContent
    : public ChangedInstanceContentOf<PlexumTemplateInstanceContent> {};
/// One change of templates.
class VARNEL_FORMS_API PlexumTemplateChangedInstance : public ChangedInstanceOf<PlexumTemplateChangedInstanceContent> {
};

} // namespace VarnelAPI::Forms::model
