#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/ListsListValue.h>

namespace VarnelAPI::Forms::api {

/// Values of pick lists. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API ListValueApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the list value `instanceId`.
    /// DELETE `{location}/Lists/ListValue/{instanceId}/`
    pplx::task<void> delete_ListsListValue_instanceId(const utility::string_t& location,
                                                      const utility::string_t& instanceId) const;

    /// Reads the list value `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Lists/ListValue/{instanceId}/`
    ModelTask<model::ListsListValueInstance>
    get_ListsListValue_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                  const TextOption& select = boost::none) const;

    /// Creates a list value; yields it as the service stored it.
    /// POST `{location}/Lists/ListValue`
    ModelTask<model::ListsListValueChangedInstance>
    insert_ListsListValue(const utility::string_t& location, const Body<model::ListsListValueInstance>& body) const;

    /// Lists the list values.
    /// GET `{location}/Lists/ListValue`
    ModelTask<model::ListsListValueInstances>
    select_ListsListValue(const utility::string_t& location, const TextOption& filter = boost::none,
                          const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                          const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                          const NumberOption& top = boost::none) const;

    /// Changes the list value `instanceId`; yields it as the service stored it.
    /// POST `{location}/Lists/ListValue/{instanceId}/`
    ModelTask<model::ListsListValueChangedInstance>
    update_ListsListValue(const utility::string_t& location, const utility::string_t& instanceId,
                          const Body<model::ListsListValueInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
