#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A renderer, whose file can be downloaded. Getters return copies.
class VARNEL_FORMS_API PlexumRenderer : public Model {
    VARNEL_FORMS_MODEL(PlexumRenderer);

    /// The renderer's version, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Version, version, "Version");
};

/// The identity and properties of a renderer.
class VARNEL_FORMS_API PlexumRendererInstanceContent : public InstanceContentOf<PlexumRenderer> {};
/// One instance: a renderer with its identity.
class VARNEL_FORMS_API PlexumRendererInstance : public InstanceOf<PlexumRendererInstanceContent> {};
/// A list of renderers.
class VARNEL_FORMS_API PlexumRendererInstances : public InstancesOf<PlexumRendererInstanceContent> {};
/// What was done to a renderer, and how it is since.
class VARNEL_FORMS_API PlexumRendererChangedInstanceContent
    : public ChangedInstanceContentOf<PlexumRendererInstanceContent> {};
/// One change of renderers.
class VARNEL_FORMS_API PlexumRendererChangedInstance : public ChangedInstanceOf<PlexumRendererChangedInstanceContent> {
};

} // namespace VarnelAPI::Forms::model
