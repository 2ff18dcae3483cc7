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

detail::ModelTask<model::Forms_EC_MappingFormStyleInstance> FormStyleApi::get_FormsECMappingFormStyle_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const detail::TextOption& select) const {
    return formStyles.get<model::Forms_EC_MappingFormStyleInstance>(m_ApiClient, __func__, location, instanceId,
                                                                    select);
}

detail::ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
FormStyleApi::insert_FormsECMappingFormStyle(const utility::string_t& location,
                                             const detail::Body<model::Forms_EC_MappingFormStyleInstance>& body) const {
    return formStyles.insert<model::Forms_EC_MappingFormStyleChangedInstance>(m_ApiClient, __func__, location, body);
}

detail::ModelTask<model::Forms_EC_MappingFormStyleInstances>
FormStyleApi::select_FormsECMappingFormStyle(const utility::string_t& location, const detail::TextOption& filter,
                                             const detail::TextOption& select, const detail::TextOption& orderby,
                                             const detail::TextOption& filtersettings, const detail::NumberOption& skip,
                                             const detail::NumberOption& top) const {
    return formStyles.select<model::Forms_EC_MappingFormStyleInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

detail::ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
FormStyleApi::update_FormsECMappingFormStyle(const utility::string_t& location, const utility::string_t& instanceId,
                                             const detail::Body<model::Forms_EC_MappingFormStyleInstance>& body) const {
    return formStyles.update<model::Forms_EC_MappingFormStyleChangedInstance>(m_ApiClient, __func__, location,
                                                                              instanceId, body);
}

} // namespace VarnelAPI::Forms::api
