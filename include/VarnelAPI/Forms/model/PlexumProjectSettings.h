#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// The settings of the project. Getters return copies.
class VARNEL_FORMS_API PlexumProjectSettings : public detail::Model {
    /// A directory, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, PdfStorageDirectory, pdfStorageDirectory);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API PlexumProjectSettingsInstanceContent : public detail::InstanceContentOf<PlexumProjectSettings> {
};
class VARNEL_FORMS_API PlexumProjectSettingsInstance : public detail::InstanceOf<PlexumProjectSettingsInstanceContent> {
};
class VARNEL_FORMS_API PlexumProjectSettingsInstances
    : public detail::InstancesOf<PlexumProjectSettingsInstanceContent> {};
class VARNEL_FORMS_API PlexumProjectSettingsChangedInstanceContent
    : public detail::ChangedInstanceContentOf<PlexumProjectSettingsInstanceContent> {};
class VARNEL_FORMS_API PlexumProjectSettingsChangedInstance
    : public detail::ChangedInstanceOf<PlexumProjectSettingsChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
