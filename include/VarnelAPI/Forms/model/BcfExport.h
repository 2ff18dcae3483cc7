#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A request to export instances to a BCF file. Getters return copies, of the list a reference.
class VARNEL_FORMS_API BcfExport : public detail::Model {
    /// Class and schema of the instances to export.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceClass, instanceClass);
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceSchema, instanceSchema);
    /// An access address, spelled as the service spells it.
    VARNEL_FORMS_PROPERTY(utility::string_t, SassAccessUrl, sassAccessUrl);
    /// The instances to export.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, InstanceIds, instanceIds);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API BcfExportInstanceContent : public detail::InstanceContentOf<BcfExport> {};
class VARNEL_FORMS_API BcfExportInstance : public detail::InstanceOf<BcfExportInstanceContent> {};
class VARNEL_FORMS_API BcfExportChangedInstanceContent
    : public detail::ChangedInstanceContentOf<BcfExportInstanceContent> {};
class VARNEL_FORMS_API BcfExportChangedInstance : public detail::ChangedInstanceOf<BcfExportChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
