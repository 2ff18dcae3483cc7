#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/SchemasSchema.h>

namespace VarnelAPI::Forms::api {

/// Schemas. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API SchemaApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the schema `instanceId`.
    /// DELETE `{location}/Schemas/Schema/{instanceId}/`
    pplx::task<void> delete_SchemasSchema_instanceId(const utility::string_t& location,
                                                     const utility::string_t& instanceId) const;

    /// Reads the schema `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Schemas/Schema/{instanceId}/`
    detail::ModelTask<model::SchemasSchemaInstance>
    get_SchemasSchema_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                 const detail::TextOption& select = boost::none) const;

    /// Creates a schema; yields it as the service stored it.
    /// POST `{location}/Schemas/Schema`
    detail::ModelTask<model::SchemasSchemaChangedInstance>
    insert_SchemasSchema(const utility::string_t& location,
                         const detail::Body<model::SchemasSchemaInstance>& body) const;

    /// Lists the schemas.
    /// GET `{location}/Schemas/Schema`
    detail::ModelTask<model::SchemasSchemaInstances> select_SchemasSchema(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the schema `instanceId`; yields it as the service stored it.
    /// POST `{location}/Schemas/Schema/{instanceId}/`
    detail::ModelTask<model::SchemasSchemaChangedInstance>
    update_SchemasSchema(const utility::string_t& location, const utility::string_t& instanceId,
                         const detail::Body<model::SchemasSchemaInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
