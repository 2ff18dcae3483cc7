#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/SchemasClass.h>

namespace VarnelAPI::Forms::api {

/// Class definitions. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API ClassApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the class `instanceId`.
    /// DELETE `{location}/Schemas/Class/{instanceId}/`
    pplx::task<void> delete_SchemasClass_instanceId(const utility::string_t& location,
                                                    const utility::string_t& instanceId) const;

    /// Reads the class `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Schemas/Class/{instanceId}/`
    detail::ModelTask<model::SchemasClassInstance>
    get_SchemasClass_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                const detail::TextOption& select = boost::none) const;

    /// Creates a class; yields it as the service stored it.
    /// POST `{location}/Schemas/Class`
    detail::ModelTask<model::SchemasClassChangedInstance>
    insert_SchemasClass(const utility::string_t& location, const detail::Body<model::SchemasClassInstance>& body) const;

    /// Lists the classes.
    /// GET `{location}/Schemas/Class`
    detail::ModelTask<model::SchemasClassInstances>
    select_SchemasClass(const utility::string_t& location, const detail::TextOption& filter = boost::none,
                        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
                        const detail::TextOption& filtersettings = boost::none,
                        const detail::NumberOption& skip = boost::none,
                        const detail::NumberOption& top = boost::none) const;

    /// Changes the class `instanceId`; yields it as the service stored it.
    /// POST `{location}/Schemas/Class/{instanceId}/`
    detail::ModelTask<model::SchemasClassChangedInstance>
    update_SchemasClass(const utility::string_t& location, const utility::string_t& instanceId,
                        const detail::Body<model::SchemasClassInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
