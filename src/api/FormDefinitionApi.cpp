#include <VarnelAPI/Forms/api/FormDefinitionApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource formDefinitions("FormDefinitionApi", _XPLATSTR("Forms_EC_Mapping/FormDefinition"));
} // namespace

pplx::task<void>
FormDefinitionApi::delete_FormsECMappingFormDefinition_instanceId(const utility::string_t& location,
                                                                  const utility::string_t& instanceId) const {
    return formDefinitions.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::Forms_EC_MappingFormDefinitionInstance> FormDefinitionApi::get_FormsECMappingFormDefinition_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return formDefinitions.get<model::Forms_EC_MappingFormDefinitionInstance>(m_ApiClient, __func__, location,
                                                                              instanceId, select);
}

ModelTask<model::Forms_EC_MappingFormDefinitionChangedInstance> FormDefinitionApi::insert_FormsECMappingFormDefinition(
    const utility::string_t& location, const Body<model::Forms_EC_MappingFormDefinitionInstance>& body) const {
    return formDefinitions.insert<model::Forms_EC_MappingFormDefinitionChangedInstance>(m_ApiClient, __func__, location,
                                                                                        body);
}

ModelTask<model::Forms_EC_MappingFormDefinitionInstances> FormDefinitionApi::select_FormsECMappingFormDefinition(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return formDefinitions.onClass(m_ApiClient, __func__, web::http::methods::GET, location)
        .query(_XPLATSTR("definitionFormat"), TextOption(_XPLATSTR("json")))
        .options({filter, select, orderby, filtersettings, skip, top})
        .yieldModel<model::Forms_EC_MappingFormDefinitionInstances>();
}

ModelTask<model::Forms_EC_MappingFormDefinitionChangedInstance> FormDefinitionApi::update_FormsECMappingFormDefinition(
    const utility::string_t& location, const utility::string_t& instanceId,
    const Body<model::Forms_EC_MappingFormDefinitionInstance>& body) const {
    return formDefinitions.update<model::Forms_EC_MappingFormDefinitionChangedInstance>(m_ApiClient, __func__, location,
                                                                                        instanceId, body);
}

} // namespace VarnelAPI::Forms::api
