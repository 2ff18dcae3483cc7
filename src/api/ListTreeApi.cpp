#include <VarnelAPI/Forms/api/ListTreeApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource listTrees("ListTreeApi", _XPLATSTR("Lists/ListTree"));
} // namespace

pplx::task<void> ListTreeApi::delete_ListsListTree_instanceId(const utility::string_t& location,
                                                              const utility::string_t& instanceId) const {
    return listTrees.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::ListsListTreeInstance> ListTreeApi::get_ListsListTree_instanceId(const utility::string_t& location,
                                                                                  const utility::string_t& instanceId,
                                                                                  const TextOption& select) const {
    return listTrees.get<model::ListsListTreeInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::ListsListTreeChangedInstance>
ListTreeApi::insert_ListsListTree(const utility::string_t& location,
                                  const Body<model::ListsListTreeInstance>& body) const {
    return listTrees.insert<model::ListsListTreeChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::ListsListTreeInstances>
ListTreeApi::select_ListsListTree(const utility::string_t& location, const TextOption& filter, const TextOption& select,
                                  const TextOption& orderby, const TextOption& filtersettings, const NumberOption& skip,
                                  const NumberOption& top) const {
    return listTrees.select<model::ListsListTreeInstances>(m_ApiClient, __func__, location,
                                                           {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::ListsListTreeChangedInstance>
ListTreeApi::update_ListsListTree(const utility::string_t& location, const utility::string_t& instanceId,
                                  const Body<model::ListsListTreeInstance>& body) const {
    return listTrees.update<model::ListsListTreeChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
