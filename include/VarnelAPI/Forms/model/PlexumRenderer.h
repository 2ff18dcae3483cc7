#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A renderer, whose file can be downloaded. Getters return copies.
class VARNEL_FORMS_API PlexumRenderer : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, Version, version);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API PlexumRendererInstanceContent : public detail::InstanceContentOf<PlexumRenderer> {};
class VARNEL_FORMS_API PlexumRendererInstance : public detail::InstanceOf<PlexumRendererInstanceContent> {};
class VARNEL_FORMS_API PlexumRendererInstances : public detail::InstancesOf<PlexumRendererInstanceContent> {};
class VARNEL_FORMS_API PlexumRendererChangedInstanceContent
    : public detail::ChangedInstanceContentOf<PlexumRendererInstanceContent> {};
class VARNEL_FORMS_API PlexumRendererChangedInstance
    : public detail::ChangedInstanceOf<PlexumRendererChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
