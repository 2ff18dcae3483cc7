#pragma once

#include <VarnelAPI/Forms/model/DynamicSchemaAuditValue.h>
#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// One entry of an instance's history. Getters return copies, of the list too.
class VARNEL_FORMS_API DynamicSchemaAuditRecord : public Model {
    VARNEL_FORMS_MODEL(DynamicSchemaAuditRecord);

    /// The name of who made the change.
    VARNEL_FORMS_PROPERTY(utility::string_t, RecordBy, recordBy, "RecordBy");
    /// The id that goes with `RecordBy`.
    VARNEL_FORMS_PROPERTY(utility::string_t, RecordById, recordById, "RecordById");
    /// When the change was recorded.
    VARNEL_FORMS_PROPERTY(utility::datetime, RecordDate, recordDate, "RecordDate");
    /// What was done, in the service's words.
    VARNEL_FORMS_PROPERTY(utility::string_t, Action, action, "Action");
    /// The properties that were changed.
    VARNEL_FORMS_PROPERTY(std::vector<std::shared_ptr<DynamicSchemaAuditValue>>, Values, values, "Values");
};

/// The identity and properties of an audit record.
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceContent : public InstanceContentOf<DynamicSchemaAuditRecord> {};
/// One instance: an audit record with its identity.
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstance : public InstanceOf<DynamicSchemaAuditRecordInstanceContent> {};
/// A list of audit records.
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstances : public InstancesOf<DynamicSchemaAuditRecordInstanceContent> {
};
/// What a count of audit records says.
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceCount_properties : public InstanceCountProperties {};
/// A count of audit records, with its identity.
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceCount_instances
    : public CountInstanceOf<DynamicSchemaAuditRecordInstanceCount_properties> {};
/// Counts of audit records, one per class.
class VARNEL_FORMS_API DynamicSchemaAuditRecordInstanceCount
    : public InstancesOf<DynamicSchemaAuditRecordInstanceCount_instances> {};

} // namespace VarnelAPI::Forms::model
