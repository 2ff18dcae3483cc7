#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/ListsListTree.h>

namespace VarnelAPI::Forms::api {

/// Trees of pick lists. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API ListTreeApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the list tree `instanceId`.
    /// DELETE `{location}/Lists/ListTree/{instanceId}/`
    pplx::task<void> delete_ListsListTree_instanceId(const utility::string_t& location,
                                                     const utility::string_t& instanceId) const;

    /// Reads the list tree `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Lists/ListTree/{instanceId}/`
    ModelTask<model::ListsListTreeInstance> get_ListsListTree_instanceId(const utility::string_t& location,
                                                                         const utility::string_t& instanceId,
                                                                         const TextOption& select = boost::none) const;

    /// Creates a list tree; yields it as the service stored it.
    /// POST `{location}/Lists/ListTree`
    ModelTask<model::ListsListTreeChangedInstance>
    insert_ListsListTree(const utility::string_t& location, const Body<model::ListsListTreeInstance>& body) const;

    /// Lists the list trees.
    /// GET `{location}/Lists/ListTree`
    ModelTask<model::ListsListTreeInstances>
    select_ListsListTree(const utility::string_t& location, const TextOption& filter = boost::none,
                         const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                         const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                         const NumberOption& top = boost::none) const;

    /// Changes the list tree `instanceId`; yields it as the service stored it.
    /// POST `{location}/Lists/ListTree/{instanceId}/`
    ModelTask<model::ListsListTreeChangedInstance>
    update_ListsListTree(const utility::string_t& location, const utility::string_t& instanceId,
                         const Body<model::ListsListTreeInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
