#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A user or role of the project, kept by the service as class "ProjectMember" of schema "Plexum" and listed by
/// `api::FormApi::select_ProjectMembers`. Getters return copies.
class VARNEL_FORMS_API Forms_EC_MappingProjectMember : public Model {
    VARNEL_FORMS_MODEL(Forms_EC_MappingProjectMember);

    /// The id of the user or role.
    VARNEL_FORMS_PROPERTY(utility::string_t, UserId, userId, "UserId");
    /// The name of the user or role.
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name, "Name");
    /// Whether the member is a role rather than a person.
    VARNEL_FORMS_FLAG(IsRole, isRole, "IsRole");
    /// The id of the project.
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectId, projectId, "ProjectId");
    /// An email address.
    VARNEL_FORMS_PROPERTY(utility::string_t, Email, email, "Email");
    /// The id of an organization, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, OrganizationGUID, organizationGUID, "OrganizationGUID");
    /// The name of that organization.
    VARNEL_FORMS_PROPERTY(utility::string_t, OrganizationName, organizationName, "OrganizationName");
};

/// The identity and properties of a project member.
class VARNEL_FORMS_API Forms_EC_MappingProjectMemberInstanceContent
    : public InstanceContentOf<Forms_EC_MappingProjectMember> {};
/// One instance: a project member with its identity.
class VARNEL_FORMS_API Forms_EC_MappingProjectMemberInstance
    : public InstanceOf<Forms_EC_MappingProjectMemberInstanceContent> {};
/// A list of project members.
class VARNEL_FORMS_API Forms_EC_MappingProjectMemberInstances
    : public InstancesOf<Forms_EC_MappingProjectMemberInstanceContent> {};

} // namespace VarnelAPI::Forms::model
