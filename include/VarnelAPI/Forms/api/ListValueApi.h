#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/ListsListValue.h>

namespace VarnelAPI::Forms::api {

/// Values of pick lists. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API ListValueApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the list value `instanceId`.
    /// DELETE `{location}/Lists/ListValue/{instanceId}/`
    pplx::task<void> delete_ListsListValue_instanceId(const utility::string_t& location,
                                                      const utility::string_t& instanceId) const;

    /// Reads the list value `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Lists/ListValue/{instanceId}/`
    detail::ModelTask<model::ListsListValueInstance>
    get_ListsListValue_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                  const detail::TextOption& select = boost::none) const;

    /// Creates a list value; yields it as the service stored it.
    /// POST `{location}/Lists/ListValue`
    detail::ModelTask<model::ListsListValueChangedInstance>
    insert_ListsListValue(const utility::string_t& location,
                          const detail::Body<model::ListsListValueInstance>& body) const;

    /// Lists the list values.
    /// GET `{location}/Lists/ListValue`
    detail::ModelTask<model::ListsListValueInstances> select_ListsListValue(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the list value `instanceId`; yields it as the service stored it.
    /// POST `{location}/Lists/ListValue/{instanceId}/`
    detail::ModelTask<model::ListsListValueChangedInstance>
    update_ListsListValue(const utility::string_t& location, const utility::string_t& instanceId,
                          const detail::Body<model::ListsListValueInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
