#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingForm.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingProjectMember.h>
#include <VarnelAPI/Forms/model/PlexumProjectRole.h>

namespace VarnelAPI::Forms::api {

/// Forms, and the members and roles of the project. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API FormApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the form `instanceId`.
    /// DELETE `{location}/Forms_EC_Mapping/Form/{instanceId}/`
    pplx::task<void> delete_FormsECMappingForm_instanceId(const utility::string_t& location,
                                                          const utility::string_t& instanceId) const;

    /// Reads the form `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Forms_EC_Mapping/Form/{instanceId}/`
    ModelTask<model::Forms_EC_MappingFormInstance>
    get_FormsECMappingForm_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                      const TextOption& select = boost::none) const;

    /// Creates a form; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/Form`
    ModelTask<model::Forms_EC_MappingFormChangedInstance>
    insert_FormsECMappingForm(const utility::string_t& location,
                              const Body<model::Forms_EC_MappingFormInstance>& body) const;

    /// Creates a form and relates it to the issue `issueID` of class `issueClassName`, in one request; yields the form.
    /// The last segment of the path names the relationship, its direction and the class of the form.
    /// POST `{projectID}/DynamicSchema/{issueClassName}/{issueID}/FormData-forward-Forms_EC_Mapping.Form`
    ModelTask<model::Forms_EC_MappingFormChangedInstance>
    insert_FormsECMappingFormRelatedToIssue(const utility::string_t& projectID, const utility::string_t& issueClassName,
                                            const utility::string_t& issueID,
                                            const Body<model::Forms_EC_MappingFormInstance>& body) const;

    /// Lists the forms.
    /// GET `{location}/Forms_EC_Mapping/Form`
    ModelTask<model::Forms_EC_MappingFormInstances>
    select_FormsECMappingForm(const utility::string_t& location, const TextOption& filter = boost::none,
                              const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                              const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                              const NumberOption& top = boost::none) const;

    /// Lists the members of the project, people and roles.
    /// GET `{location}/Plexum/ProjectMember`
    ModelTask<model::Forms_EC_MappingProjectMemberInstances>
    select_ProjectMembers(const utility::string_t& location, const TextOption& filter = boost::none,
                          const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                          const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                          const NumberOption& top = boost::none) const;

    /// Lists the roles of the project.
    /// GET `{location}/Plexum/ProjectRole`
    ModelTask<model::PlexumProjectRoleInstances>
    select_ProjectRoles(const utility::string_t& location, const TextOption& filter = boost::none,
                        const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                        const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                        const NumberOption& top = boost::none) const;

    /// Changes the form `instanceId`; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/Form/{instanceId}/`
    ModelTask<model::Forms_EC_MappingFormChangedInstance>
    update_FormsECMappingForm(const utility::string_t& location, const utility::string_t& instanceId,
                              const Body<model::Forms_EC_MappingFormInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
