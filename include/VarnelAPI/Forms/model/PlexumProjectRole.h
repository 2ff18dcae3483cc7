#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A role of the project and the users that hold it. Getters return references.
class VARNEL_FORMS_API PlexumProjectRole : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, RoleId, roleId);
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, UserIds, userIds);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API PlexumProjectRoleInstanceContent : public detail::InstanceContentOf<PlexumProjectRole> {};
class VARNEL_FORMS_API PlexumProjectRoleInstance : public detail::InstanceOf<PlexumProjectRoleInstanceContent> {};
class VARNEL_FORMS_API PlexumProjectRoleInstances : public detail::InstancesOf<PlexumProjectRoleInstanceContent> {};

} // namespace VarnelAPI::Forms::model
