#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A request to export instances to a BCF file. Getters return copies, of the list a reference.
class VARNEL_FORMS_API BcfExport : public Model {
    VARNEL_FORMS_MODEL(BcfExport);

    /// The class of the instances to export.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceClass, instanceClass, "InstanceClass");
    /// The schema of that class.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceSchema, instanceSchema, "InstanceSchema");
    /// An access address, as text. The key is spelled with two s, as the service spells it.
    VARNEL_FORMS_PROPERTY(utility::string_t, SassAccessUrl, sassAccessUrl, "SassAccessUrl");
    /// The ids of the instances to export.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, InstanceIds, instanceIds, "InstanceIds");
};

/// The identity and properties of a BCF export.
class VARNEL_FORMS_API BcfExportInstanceContent : public InstanceContentOf<BcfExport> {};
/// One instance: a BCF export with its identity.
class VARNEL_FORMS_API BcfExportInstance : public InstanceOf<BcfExportInstanceContent> {};
/// What was done to a BCF export, and how it is since.
class VARNEL_FORMS_API BcfExportChangedInstanceContent : public ChangedInstanceContentOf<BcfExportInstanceContent> {};
/// One change of BCF exports.
class VARNEL_FORMS_API BcfExportChangedInstance : public ChangedInstanceOf<BcfExportChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
