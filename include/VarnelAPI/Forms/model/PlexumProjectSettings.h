#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// The settings of the project. Getters return copies.
class VARNEL_FORMS_API PlexumProjectSettings : public Model {
    VARNEL_FORMS_MODEL(PlexumProjectSettings);

    /// A directory for PDF files, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, PdfStorageDirectory, pdfStorageDirectory, "PdfStorageDirectory");
};

/// The identity and properties of project settings.
class VARNEL_FORMS_API PlexumProjectSettingsInstanceContent : public InstanceContentOf<PlexumProjectSettings> {};
/// One instance: project settings with its identity.
class VARNEL_FORMS_API PlexumProjectSettingsInstance : public InstanceOf<PlexumProjectSettingsInstanceContent> {};
/// A list of project settings.
class VARNEL_FORMS_API PlexumProjectSettingsInstances : public InstancesOf<PlexumProjectSettingsInstanceContent> {};
/// What was done to project settings, and how it is since.
class VARNEL_FORMS_API PlexumProjectSettingsChangedInstanceContent
    : public ChangedInstanceContentOf<PlexumProjectSettingsInstanceContent> {};
/// One change of project settings.
class VARNEL_FORMS_API PlexumProjectSettingsChangedInstance
    : public ChangedInstanceOf<PlexumProjectSettingsChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
