#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A user's settings, which have no properties: their envelope is all there is.
class VARNEL_FORMS_API PlexumUserSettings : public Model {
    VARNEL_FORMS_MODEL(PlexumUserSettings);
};

/// The identity and properties of a user's settings.
class VARNEL_FORMS_API PlexumUserSettingsInstanceContent : public InstanceContentOf<PlexumUserSettings> {};
/// One instance: a user's settings with its identity.
class VARNEL_FORMS_API PlexumUserSettingsInstance : public InstanceOf<PlexumUserSettingsInstanceContent> {};
/// A list of users' settings.
class VARNEL_FORMS_API PlexumUserSettingsInstances : public InstancesOf<PlexumUserSettingsInstanceContent> {};
/// What was done to a user's settings, and how it is since.
class VARNEL_FORMS_API PlexumUserSettingsChangedInstanceContent
    : public ChangedInstanceContentOf<PlexumUserSettingsInstanceContent> {};
/// One change of users' settings.
class VARNEL_FORMS_API PlexumUserSettingsChangedInstance
    : public ChangedInstanceOf<PlexumUserSettingsChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
