#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/SchemasSchema.h>

namespace VarnelAPI::Forms::api {

/// Schemas. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API SchemaApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the schema `instanceId`.
    /// DELETE `{location}/Schemas/Schema/{instanceId}/`
    pplx::task<void> delete_SchemasSchema_instanceId(const utility::string_t& location,
                                                     const utility::string_t& instanceId) const;

    /// Reads the schema `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Schemas/Schema/{instanceId}/`
    ModelTask<model::SchemasSchemaInstance> get_SchemasSchema_instanceId(const utility::string_t& location,
                                                                         const utility::string_t& instanceId,
                                                                         const TextOption& select = boost::none) const;

    /// Creates a schema; yields it as the service stored it.
    /// POST `{location}/Schemas/Schema`
    ModelTask<model::SchemasSchemaChangedInstance>
    insert_SchemasSchema(const utility::string_t& location, const Body<model::SchemasSchemaInstance>& body) const;

    /// Lists the schemas.
    /// GET `{location}/Schemas/Schema`
    ModelTask<model::SchemasSchemaInstances>
    select_SchemasSchema(const utility::string_t& location, const TextOption& filter = boost::none,
                         const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                         const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                         const NumberOption& top = boost::none) const;

    /// Changes the schema `instanceId`; yields it as the service stored it.
    /// POST `{location}/Schemas/Schema/{instanceId}/`
    ModelTask<model::SchemasSchemaChangedInstance>
    update_SchemasSchema(const utility::string_t& location, const utility::string_t& instanceId,
                         const Body<model::SchemasSchemaInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
