#pragma once

#include <VarnelAPI/Forms/detail/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditRecord.h>

namespace VarnelAPI::Forms::api {

/// The history of instances, which the service writes. What holds for all operations is said at `detail::ResourceApi`.
class VARNEL_FORMS_API AuditRecordApi : public detail::ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the audit records, per class.
    /// GET `{location}/DynamicSchema/AuditRecord/$count`
    detail::ModelTask<model::DynamicSchemaAuditRecordInstanceCount>
    count_DynamicSchemaAuditRecord(const utility::string_t& location) const;

    /// Reads the audit record `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/AuditRecord/{instanceId}/`
    detail::ModelTask<model::DynamicSchemaAuditRecordInstance>
    get_DynamicSchemaAuditRecord_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                            const detail::TextOption& select = boost::none) const;

    /// Lists the audit records.
    /// GET `{location}/DynamicSchema/AuditRecord`
    detail::ModelTask<model::DynamicSchemaAuditRecordInstances> select_DynamicSchemaAuditRecord(
        const utility::string_t& location, const detail::TextOption& filter = boost::none,
        const detail::TextOption& select = boost::none, const detail::TextOption& orderby = boost::none,
        const detail::TextOption& filtersettings = boost::none, const detail::NumberOption& skip = boost::none,
        const detail::NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
