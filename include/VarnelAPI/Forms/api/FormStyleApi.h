#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingFormStyle.h>

namespace VarnelAPI::Forms::api {

/// Style sheets for forms. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API FormStyleApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the form style `instanceId`.
    /// DELETE `{location}/Forms_EC_Mapping/FormStyle/{instanceId}/`
    pplx::task<void> delete_FormsECMappingFormStyle_instanceId(const utility::string_t& location,
                                                               const utility::string_t& instanceId) const;

    /// Reads the form style `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Forms_EC_Mapping/FormStyle/{instanceId}/`
    ModelTask<model::Forms_EC_MappingFormStyleInstance>
    get_FormsECMappingFormStyle_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                           const TextOption& select = boost::none) const;

    /// Creates a form style; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/FormStyle`
    ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
    insert_FormsECMappingFormStyle(const utility::string_t& location,
                                   const Body<model::Forms_EC_MappingFormStyleInstance>& body) const;

    /// Lists the form styles.
    /// GET `{location}/Forms_EC_Mapping/FormStyle`
    ModelTask<model::Forms_EC_MappingFormStyleInstances>
    select_FormsECMappingFormStyle(const utility::string_t& location, const TextOption& filter = boost::none,
                                   const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                   const TextOption& filtersettings = boost::none,
                                   const NumberOption& skip = boost::none, const NumberOption& top = boost::none) const;

    /// Changes the form style `instanceId`; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/FormStyle/{instanceId}/`
    ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
    update_FormsECMappingFormStyle(const utility::string_t& location, const utility::string_t& instanceId,
                                   const Body<model::Forms_EC_MappingFormStyleInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
