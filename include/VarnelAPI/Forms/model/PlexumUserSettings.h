#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A user's settings, which have no properties: their envelope is all there is.
class VARNEL_FORMS_API PlexumUserSettings : public detail::Model {
    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API PlexumUserSettingsInstanceContent : public detail::InstanceContentOf<PlexumUserSettings> {};
class VARNEL_FORMS_API PlexumUserSettingsInstance : public detail::InstanceOf<PlexumUserSettingsInstanceContent> {};
class VARNEL_FORMS_API PlexumUserSettingsInstances : public detail::InstancesOf<PlexumUserSettingsInstanceContent> {};
class VARNEL_FORMS_API PlexumUserSettingsChangedInstanceContent
    : public detail::ChangedInstanceContentOf<PlexumUserSettingsInstanceContent> {};
class VARNEL_FORMS_API PlexumUserSettingsChangedInstance
    : public detail::ChangedInstanceOf<PlexumUserSettingsChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
