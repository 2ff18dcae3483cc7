#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A user or role of the project, kept by the service as class "ProjectMember" of schema "Plexum" and listed by
/// `api::FormApi::select_ProjectMembers`. Getters return copies.
class VARNEL_FORMS_API Forms_EC_MappingProjectMember : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, UserId, userId);
    VARNEL_FORMS_PROPERTY(utility::string_t, Name, name);
    /// Whether the member is a role rather than a person.
    VARNEL_FORMS_FLAG(IsRole, isRole);
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectId, projectId);
    VARNEL_FORMS_PROPERTY(utility::string_t, Email, email);
    VARNEL_FORMS_PROPERTY(utility::string_t, OrganizationGUID, organizationGUID);
    VARNEL_FORMS_PROPERTY(utility::string_t, OrganizationName, organizationName);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API Forms_EC_MappingProjectMemberInstanceContent
    : public detail::InstanceContentOf<Forms_EC_MappingProjectMember> {};
class VARNEL_FORMS_API Forms_EC_MappingProjectMemberInstance
    : public detail::InstanceOf<Forms_EC_MappingProjectMemberInstanceContent> {};
class VARNEL_FORMS_API Forms_EC_MappingProjectMemberInstances
    : public detail::InstancesOf<Forms_EC_MappingProjectMemberInstanceContent> {};

} // namespace VarnelAPI::Forms::model
