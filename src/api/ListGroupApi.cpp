#include <VarnelAPI/Forms/api/ListGroupApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource listGroups("ListGroupApi", _XPLATSTR("Lists/ListGroup"));
} // namespace

pplx::task<void> ListGroupApi::delete_ListsListGroup_instanceId(const utility::string_t& location,
                                                                const utility::string_t& instanceId) const {
    return listGroups.remove(m_ApiClient, __func__, location, instanceId);
}

pplx::task<model::HttpContent>
ListGroupApi::fILEGET_ListsListGroup_instanceId(const utility::string_t& location,
                                                const utility::string_t& instanceId) const {
    return listGroups.download(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::ListsListGroupInstance>
ListGroupApi::get_ListsListGroup_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                            const TextOption& select) const {
    return listGroups.get<model::ListsListGroupInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::ListsListGroupChangedInstance>
ListGroupApi::insert_ListsListGroup(const utility::string_t& location,
                                    const Body<model::ListsListGroupInstance>& body) const {
    return listGroups.insert<model::ListsListGroupChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::ListsListGroupInstances> ListGroupApi::select_ListsListGroup(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return listGroups.select<model::ListsListGroupInstances>(m_ApiClient, __func__, location,
                                                             {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::ListsListGroupChangedInstance>
ListGroupApi::update_ListsListGroup(const utility::string_t& location, const utility::string_t& instanceId,
                                    const Body<model::ListsListGroupInstance>& body) const {
    return listGroups.update<model::ListsListGroupChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
