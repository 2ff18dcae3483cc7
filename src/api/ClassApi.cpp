#include <VarnelAPI/Forms/api/ClassApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource classes("ClassApi", _XPLATSTR("Schemas/Class"));
} // namespace

pplx::task<void> ClassApi::delete_SchemasClass_instanceId(const utility::string_t& location,
                                                          const utility::string_t& instanceId) const {
    return classes.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::SchemasClassInstance> ClassApi::get_SchemasClass_instanceId(const utility::string_t& location,
                                                                             const utility::string_t& instanceId,
                                                                             const TextOption& select) const {
    return classes.get<model::SchemasClassInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::SchemasClassChangedInstance>
ClassApi::insert_SchemasClass(const utility::string_t& location, const Body<model::SchemasClassInstance>& body) const {
    return classes.insert<model::SchemasClassChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::SchemasClassInstances>
ClassApi::select_SchemasClass(const utility::string_t& location, const TextOption& filter, const TextOption& select,
                              const TextOption& orderby, const TextOption& filtersettings, const NumberOption& skip,
                              const NumberOption& top) const {
    return classes.select<model::SchemasClassInstances>(m_ApiClient, __func__, location,
                                                        {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::SchemasClassChangedInstance>
ClassApi::update_SchemasClass(const utility::string_t& location, const utility::string_t& instanceId,
                              const Body<model::SchemasClassInstance>& body) const {
    return classes.update<model::SchemasClassChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
