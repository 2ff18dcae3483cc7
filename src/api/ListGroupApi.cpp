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

detail::ModelTask<model::ListsListGroupInstance>
ListGroupApi::get_ListsListGroup_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                            const detail::TextOption& select) const {
    return listGroups.get<model::ListsListGroupInstance>(m_ApiClient, __func__, location, instanceId, select);
}

detail::ModelTask<model::ListsListGroupChangedInstance>
ListGroupApi::insert_ListsListGroup(const utility::string_t& location,
                                    const detail::Body<model::ListsListGroupInstance>& body) const {
    return listGroups.insert<model::ListsListGroupChangedInstance>(m_ApiClient, __func__, location, body);
}

detail::ModelTask<model::ListsListGroupInstances>
ListGroupApi::select_ListsListGroup(const utility::string_t& location, const detail::TextOption& filter,
                                    const detail::TextOption& select, const detail::TextOption& orderby,
                                    const detail::TextOption& filtersettings, const detail::NumberOption& skip,
                                    const detail::NumberOption& top) const {
    return listGroups.select<model::ListsListGroupInstances>(m_ApiClient, __func__, location,
                                                             {filter, select, orderby, filtersettings, skip, top});
}

detail::ModelTask<model::ListsListGroupChangedInstance>
ListGroupApi::update_ListsListGroup(const utility::string_t& location, const utility::string_t& instanceId,
                                    const detail::Body<model::ListsListGroupInstance>& body) const {
    return listGroups.update<model::ListsListGroupChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
