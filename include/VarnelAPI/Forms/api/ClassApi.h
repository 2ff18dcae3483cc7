#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/SchemasClass.h>

namespace VarnelAPI::Forms::api {

/// Class definitions. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API ClassApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the class `instanceId`.
    /// DELETE `{location}/Schemas/Class/{instanceId}/`
    pplx::task<void> delete_SchemasClass_instanceId(const utility::string_t& location,
                                                    const utility::string_t& instanceId) const;

    /// Reads the class `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Schemas/Class/{instanceId}/`
    ModelTask<model::SchemasClassInstance> get_SchemasClass_instanceId(const utility::string_t& location,
                                                                       const utility::string_t& instanceId,
                                                                       const TextOption& select = boost::none) const;

    /// Creates a class; yields it as the service stored it.
    /// POST `{location}/Schemas/Class`
    ModelTask<model::SchemasClassChangedInstance>
    insert_SchemasClass(const utility::string_t& location, const Body<model::SchemasClassInstance>& body) const;

    /// Lists the classes.
    /// GET `{location}/Schemas/Class`
    ModelTask<model::SchemasClassInstances>
    select_SchemasClass(const utility::string_t& location, const TextOption& filter = boost::none,
                        const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                        const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                        const NumberOption& top = boost::none) const;

    /// Changes the class `instanceId`; yields it as the service stored it.
    /// POST `{location}/Schemas/Class/{instanceId}/`
    ModelTask<model::SchemasClassChangedInstance>
    update_SchemasClass(const utility::string_t& location, const utility::string_t& instanceId,
                        const Body<model::SchemasClassInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
