#include <VarnelAPI/Forms/api/ListValueApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource listValues("ListValueApi", _XPLATSTR("Lists/ListValue"));
} // namespace

pplx::task<void> ListValueApi::delete_ListsListValue_instanceId(const utility::string_t& location,
                                                                const utility::string_t& instanceId) const {
    return listValues.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::ListsListValueInstance>
ListValueApi::get_ListsListValue_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                            const TextOption& select) const {
    return listValues.get<model::ListsListValueInstance>(m_ApiClient, __func__, location, instanceId, select);
}

ModelTask<model::ListsListValueChangedInstance>
ListValueApi::insert_ListsListValue(const utility::string_t& location,
                                    const Body<model::ListsListValueInstance>& body) const {
    return listValues.insert<model::ListsListValueChangedInstance>(m_ApiClient, __func__, location, body);
}

ModelTask<model::ListsListValueInstances> ListValueApi::select_ListsListValue(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return listValues.select<model::ListsListValueInstances>(m_ApiClient, __func__, location,
                                                             {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::ListsListValueChangedInstance>
ListValueApi::update_ListsListValue(const utility::string_t& location, const utility::string_t& instanceId,
                                    const Body<model::ListsListValueInstance>& body) const {
    return listValues.update<model::ListsListValueChangedInstance>(m_ApiClient, __func__, location, instanceId, body);
}

} // namespace VarnelAPI::Forms::api
