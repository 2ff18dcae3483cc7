#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A role of the project and the users that hold it. Getters return references.
class VARNEL_FORMS_API PlexumProjectRole : public Model {
    VARNEL_FORMS_MODEL(PlexumProjectRole);

    /// The id of the role.
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, RoleId, roleId, "RoleId");
    /// The ids of the users that hold it.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, UserIds, userIds, "UserIds");
};

/// The identity and properties of a project role.
class VARNEL_FORMS_API PlexumProjectRoleInstanceContent : public InstanceContentOf<PlexumProjectRole> {};
/// One instance: a project role with its identity.
class VARNEL_FORMS_API PlexumProjectRoleInstance : public InstanceOf<PlexumProjectRoleInstanceContent> {};
/// A list of project roles.
class VARNEL_FORMS_API PlexumProjectRoleInstances : public InstancesOf<PlexumProjectRoleInstanceContent> {};

} // namespace VarnelAPI::Forms::model
