#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditValue.h>

namespace VarnelAPI::Forms::model {

/// One entry of an instance's history. Getters return copies, of the list too.
class VARNEL_FORMS_API DynamicSchemaAuditRecord : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, RecordBy, recordBy);
    VARNEL_FORMS_PROPERTY(utility::string_t, RecordById, recordById);
    VARNEL_FORMS_PROPERTY(utility::datetime, RecordDate, recordDate);
    VARNEL_FORMS_PROPERTY(utility::string_t, Action, action);
    /// The properties that were changed.
    VARNEL_FORMS_PROPERTY(std::vector<std::shared_ptr<DynamicSchemaAuditValue>>, Values, values);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceContent
    : public detail::InstanceContentOf<DynamicSchemaAuditRecord> {};
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstance
    : public detail::InstanceOf<DynamicSchemaAuditRecordInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstances
    : public detail::InstancesOf<DynamicSchemaAuditRecordInstanceContent> {};
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceCount_properties : public detail::InstanceCountProperties {};
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceCount_instances
    : public detail::CountInstanceOf<DynamicSchemaAuditRecordInstanceCount_properties> {};
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceCount
    : public detail::InstancesOf<DynamicSchemaAuditRecordInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
