#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingFormDefinition.h>

namespace VarnelAPI::Forms::api {

/// Form templates. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API FormDefinitionApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the form definition `instanceId`.
    /// DELETE `{location}/Forms_EC_Mapping/FormDefinition/{instanceId}/`
    pplx::task<void> delete_FormsECMappingFormDefinition_instanceId(const utility::string_t& location,
                                                                    const utility::string_t& instanceId) const;

    /// Reads the form definition `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Forms_EC_Mapping/FormDefinition/{instanceId}/`
    ModelTask<model::Forms_EC_MappingFormDefinitionInstance>
    get_FormsECMappingFormDefinition_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                                const TextOption& select = boost::none) const;

    /// Creates a form definition; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/FormDefinition`
    ModelTask<model::Forms_EC_MappingFormDefinitionChangedInstance>
    insert_FormsECMappingFormDefinition(const utility::string_t& location,
                                        const Body<model::Forms_EC_MappingFormDefinitionInstance>& body) const;

    /// Lists the form definitions, with the definitions as JSON: the query option "definitionFormat" is always "json".
    /// GET `{location}/Forms_EC_Mapping/FormDefinition`
    ModelTask<model::Forms_EC_MappingFormDefinitionInstances>
    select_FormsECMappingFormDefinition(const utility::string_t& location, const TextOption& filter = boost::none,
                                        const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                        const TextOption& filtersettings = boost::none,
                                        const NumberOption& skip = boost::none,
                                        const NumberOption& top = boost::none) const;

    /// Changes the form definition `instanceId`; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/FormDefinition/{instanceId}/`
    ModelTask<model::Forms_EC_MappingFormDefinitionChangedInstance>
    update_FormsECMappingFormDefinition(const utility::string_t& location, const utility::string_t& instanceId,
                                        const Body<model::Forms_EC_MappingFormDefinitionInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
