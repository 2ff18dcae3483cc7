#pragma once

#include <VarnelAPI/Forms/api/ResourceApi.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditRecord.h>

namespace VarnelAPI::Forms::api {

/// The history of instances, which the service writes. What holds for all operations is said at `ResourceApi`.
class VARNEL_FORMS_API AuditRecordApi : public ResourceApi {
public:
    using ResourceApi::ResourceApi;

    /// Counts the audit records, per class.
    /// GET `{location}/DynamicSchema/AuditRecord/$count`
    ModelTask<model::DynamicSchemaAuditRecordInstanceCount>
    count_DynamicSchemaAuditRecord(const utility::string_t& location) const;

    /// Reads the audit record `instanceId`, all of it or the properties that `select` names.
    /// GET `{location}/DynamicSchema/AuditRecord/{instanceId}/`
    ModelTask<model::DynamicSchemaAuditRecordInstance>
    get_DynamicSchemaAuditRecord_instanceId(const utility::string_t& location, const utility::string_t& instanceId,
                                            const TextOption& select = boost::none) const;

    /// Lists the audit records.
    /// GET `{location}/DynamicSchema/AuditRecord`
    ModelTask<model::DynamicSchemaAuditRecordInstances>
    select_DynamicSchemaAuditRecord(const utility::string_t& location, const TextOption& filter = boost::none,
                                    const TextOption& select = boost::none, const TextOption& orderby = boost::none,
                                    const TextOption& filtersettings = boost::none,
                                    const NumberOption& skip = boost::none,
                                    const NumberOption& top = boost::none) const;
};

} // namespace VarnelAPI::Forms::api
