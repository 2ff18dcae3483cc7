#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/ListsListGroup.h>

namespace VarnelAPI::Forms::api {

/// Groups of pick lists. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API ListGroupApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Deletes the list group `instanceId`.
    /// DELETE `{location}/Lists/ListGroup/{instanceId}/`
    pplx::task<void> delete_ListsListGroup_instanceId(const utility::string_t& location,
                                                      const utility::string_t& instanceId) const;

    /// Downloads the list group's file: the content has the bytes as its data, and no name or type.
    /// GET `{location}/Lists/ListGroup/{instanceId}/$file`
    pplx::task<model::HttpContent> fILEGET_ListsListGroup_instanceId(const utility::string_t& location,
                                                                     const utility::string_t& instanceId) const;

    /// Reads the list group `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/Lists/ListGroup/{instanceId}/`
    ModelTask<model::ListsListGroupInstance>
    get_ListsListGroup_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                  const TextOption& select = boost::none) const;

    /// Creates a list group; yields it as the service stored it.
    /// POST `{location}/Lists/ListGroup`
    ModelTask<model::ListsListGroupChangedInstance>
    insert_ListsListGroup(const utility::string_t& location, const Body<model::ListsListGroupInstance>& body) const;

    /// Lists the list groups.
    /// GET `{location}/Lists/ListGroup`
    ModelTask<model::ListsListGroupInstances>
    select_ListsListGroup(const utility::string_t& location, const TextOption& filter = boost::none,
                          const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                          const TextOption& filtersettings = boost::none, const NumberOption& skip = boost::none,
                          const NumberOption& top = boost::none) const;

    /// Changes the list group `instanceId`; yields it as the service stored it.
    /// POST `{location}/Lists/ListGroup/{instanceId}/`
    ModelTask<model::ListsListGroupChangedInstance>
    update_ListsListGroup(const utility::string_t& location, const utility::string_t& instanceId,
                          const Body<model::ListsListGroupInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
