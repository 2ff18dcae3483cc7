#include <VarnelAPI/Forms/api/ExternalFileApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource externalFiles("ExternalFileApi", _XPLATSTR("DynamicSchema/_ExternalFile"));
} // namespace

ModelTask<model::DynamicSchema_ExternalFileInstanceCount>
ExternalFileApi::count_DynamicSchemaExternalFile(const utility::string_t& location) const {
    return externalFiles.count<model::DynamicSchema_ExternalFileInstanceCount>(m_ApiClient, __func__, location);
}

pplx::task<void>
ExternalFileApi::delete_DynamicSchemaExternalFile_instanceId(const utility::string_t& location,
                                                             const utility::string_t& instanceId) const {
    return externalFiles.remove(m_ApiClient, __func__, location, instanceId);
}

ModelTask<model::DynamicSchema_ExternalFileInstance> ExternalFileApi::get_DynamicSchemaExternalFile_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return externalFiles.get<model::DynamicSchema_ExternalFileInstance>(m_ApiClient, __func__, location, instanceId,
                                                                        select);
}

ModelTask<model::DynamicSchema_ExternalFileChangedInstance> ExternalFileApi::insert_DynamicSchemaExternalFile(
    const utility::string_t& projInstID, const utility::string_t& issueClassName, const utility::string_t& issueInstID,
    const Body<model::DynamicSchema_ExternalFileInstance>& body) const {
    return externalFiles
        .belowIssue(m_ApiClient, __func__, web::http::methods::POST, projInstID, issueClassName, issueInstID)
        .body(body)
        .yieldModel<model::DynamicSchema_ExternalFileChangedInstance>();
}

ModelTask<model::DynamicSchema_ExternalFileInstances> ExternalFileApi::select_DynamicSchemaExternalFile(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return externalFiles.select<model::DynamicSchema_ExternalFileInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::DynamicSchema_ExternalFileInstances> ExternalFileApi::select_DynamicSchemaExternalFile2(
    const utility::string_t& projInstID, const utility::string_t& formClassName, const utility::string_t& issueInstID,
    const TextOption& filter, const TextOption& select, const TextOption& orderby, const TextOption& filtersettings,
    const NumberOption& skip, const NumberOption& top) const {
    return externalFiles.selectBelowIssue<model::DynamicSchema_ExternalFileInstances>(
        m_ApiClient, __func__, projInstID, formClassName, issueInstID,
        {filter, select, orderby, filtersettings, skip, top});
}

ModelTask<model::DynamicSchema_ExternalFileChangedInstance>
ExternalFileApi::update_DynamicSchemaExternalFile(const utility::string_t& location,
                                                  const utility::string_t& instanceId,
                                                  const Body<model::DynamicSchema_ExternalFileInstance>& body) const {
    return externalFiles.update<model::DynamicSchema_ExternalFileChangedInstance>(m_ApiClient, __func__, location,
                                                                                  instanceId, body);
}

} // namespace VarnelAPI::Forms::api
