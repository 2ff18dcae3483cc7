#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/ListsListGroup.h>

namespace VarnelAPI::Forms::api {

/// Groups of pick lists. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API ListGroupApi : public detail::ResourceApi {
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
    detail::ModelTask<model::ListsListGroupInstance>
    get_ListsListGroup_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                  const detail::TextOption& select = boost::none) const;

    /// Creates a list group; yields it as the service stored it.
    /// POST `{location}/Lists/ListGroup`
    detail::ModelTask<model::ListsListGroupChangedInstance>
    insert_ListsListGroup(const utility::string_t& location,
                          const detail::Body<model::ListsListGroupInstance>& body) const;

    /// Lists the list groups.
    /// GET `{location}/Lists/ListGroup`
    detail::ModelTask<model::ListsListGroupInstances> select_ListsListGroup(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;

    /// Changes the list group `instanceId`; yields it as the service stored it.
    /// POST `{location}/Lists/ListGroup/{instanceId}/`
    detail::ModelTask<model::ListsListGroupChangedInstance>
    update_ListsListGroup(const utility::string_t& location, const utility::string_t& instanceId,
                          const detail::Body<model::ListsListGroupInstance>& body) const;
};

} // namespace VarnelAPI::Forms::api
