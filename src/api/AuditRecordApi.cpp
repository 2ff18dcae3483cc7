#include <VarnelAPI/Forms/api/AuditRecordApi.h>

#include "Operation.h"

namespace VarnelAPI::Forms::api {

namespace {
constexpr detail::Resource auditRecords("AuditRecordApi", _XPLATSTR("DynamicSchema/AuditRecord"));
} // namespace

ModelTask<model::DynamicSchemaAuditRecordInstanceCount>
AuditRecordApi::count_DynamicSchemaAuditRecord(const utility::string_t& location) const {
    return auditRecords.count<model::DynamicSchemaAuditRecordInstanceCount>(m_ApiClient, __func__, location);
}

ModelTask<model::DynamicSchemaAuditRecordInstance> AuditRecordApi::get_DynamicSchemaAuditRecord_instanceId(
    const utility::string_t& location, const utility::string_t& instanceId, const TextOption& select) const {
    return auditRecords.get<model::DynamicSchemaAuditRecordInstance>(m_ApiClient, __func__, location, instanceId,
                                                                     select);
}

ModelTask<model::DynamicSchemaAuditRecordInstances> AuditRecordApi::select_DynamicSchemaAuditRecord(
    const utility::string_t& location, const TextOption& filter, const TextOption& select, const TextOption& orderby,
    const TextOption& filtersettings, const NumberOption& skip, const NumberOption& top) const {
    return auditRecords.select<model::DynamicSchemaAuditRecordInstances>(
        m_ApiClient, __func__, location, {filter, select, orderby, filtersettings, skip, top});
}

} // namespace VarnelAPI::Forms::api
