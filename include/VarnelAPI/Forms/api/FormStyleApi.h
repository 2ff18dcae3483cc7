#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingFormStyle.h>

namespace VarnelAPI::Forms::api {

/// Style sheets for forms. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API FormStyleApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the form style `instanceId`.
    /// DELETE `{location}/Forms_EC_Mapping/FormStyle/{instanceId}/`
    pplx::task<void> delete_FormsECMappingFormStyle_instanceId(const utility::string_t& location,
                                                               const utility::string_t& instanceId) const;

    /// Reads the form style `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Forms_EC_Mapping/FormStyle/{instanceId}/`
    detail::ModelTask<model::Forms_EC_MappingFormStyleInstance>
    get_FormsECMappingFormStyle_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                           const detail::TextOption& select = boost::none) const;

    /// Creates a form style; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/FormStyle`
    detail::ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
    insert_FormsECMappingFormStyle(const utility::string_t& location,
                                   const detail::Body<model::Forms_EC_MappingFormStyleInstance>& body) const;

    /// Lists the form styles.
    /// GET `{location}/Forms_EC_Mapping/FormStyle`
    detail::ModelTask<model::Forms_EC_MappingFormStyleInstances> select_FormsECMappingFormStyle(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the form style `instanceId`; yields it as the service stored it.
    /// POST `{location}/Forms_EC_Mapping/FormStyle/{instanceId}/`
    detail::ModelTask<model::Forms_EC_MappingFormStyleChangedInstance>
    update_FormsECMappingFormStyle(const utility::string_t& location, const utility::string_t& instanceId,
                                   const detail::Body<model::Forms_EC_MappingFormStyleInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
