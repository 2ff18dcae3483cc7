#include <VarnelAPI/Forms/api/FormStyleApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource formStyles("FormStyleApi", _XPLATSTR("Forms_EC_Mapping/FormStyle"));
} // namespace

pplx::task<void> FormStyleApi::delete_FormsECMappingFormStyle_instanceId(const utility::string_t& location,
                                                                         const utility::string_t& instanceId) const {
    return formStyles.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::Forms_EC_MappingFormStyleInstance> FormStyleApi::get_FormsECMappingFormStyle_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return formStyles.get<model::Forms_EC_MappingFormStyleInstance>(m_ApiClient, __func__, location, instanceId,
                                                                    select);
}

ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
FormStyleApi::insert_FormsECMappingFormStyle(const utility::string_t& location,
                                             const Body<model::Forms_EC_MappingFormStyleInstance>& body) const {
    return formStyles.insert<model::Forms_EC_MappingFormStyleChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::Forms_EC_MappingFormStyleInstances> FormStyleApi::select_FormsECMappingFormStyle(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return formStyles.select<model::Forms_EC_MappingFormStyleInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
FormStyleApi::update_FormsECMappingFormStyle(const utility::string_t& location, const utility::string_t& instanceId,
                                             const Body<model::Forms_EC_MappingFormStyleInstance>& body) const {
    return formStyles.update<model::Forms_EC_MappingFormStyleChangedInstance>(m_ApiClient, __func__, location,
                                                                              instanceId, body);
}

} // namespace VarnelAPI::Forms::api
