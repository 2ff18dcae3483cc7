#include <VarnelAPI/Forms/api/SchemaApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource schemas("SchemaApi", _XPLATSTR("Schemas/Schema"));
} // namespace

pplx::task<void> SchemaApi::delete_SchemasSchema_instanceId(const utility::string_t& location,
                                                            const utility::string_t& instanceId) const {
    return schemas.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::SchemasSchemaInstance> SchemaApi::get_SchemasSchema_instanceId(const utility::string_t& location,
                                                                                const utility::string_t& instanceId,
                                                                                const TextOption& select) const {
    return schemas.get<model::SchemasSchemaInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::SchemasSchemaChangedInstance>
SchemaApi::insert_SchemasSchema(const utility::string_t& location,
                                const Body<model::SchemasSchemaInstance>& body) const {
    return schemas.insert<model::SchemasSchemaChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::SchemasSchemaInstances>
SchemaApi::select_SchemasSchema(const utility::string_t& location, const TextOption& filter, const TextOption& select,
                                const TextOption& orderby, const TextOption& filtersettings, const NumberOption& skip,
                                const NumberOption& top) const {
    return schemas.select<model::SchemasSchemaInstances>(m_ApiClient, __func__, location,
                                                         {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::SchemasSchemaChangedInstance>
SchemaApi::update_SchemasSchema(const utility::string_t& location, const utility::string_t& instanceId,
                                const Body<model::SchemasSchemaInstance>& body) const {
    return schemas.update<model::SchemasSchemaChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
