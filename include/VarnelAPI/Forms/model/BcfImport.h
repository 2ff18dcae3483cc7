#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A request to import a BCF file as issues. Getters return copies.
class VARNEL_FORMS_API BcfImport : public detail::Model {
    /// Class and schema of the issues to make.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceClass, instanceClass);
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceSchema, instanceSchema);
    VARNEL_FORMS_PROPERTY(utility::string_t, Discipline, discipline);
    VARNEL_FORMS_PROPERTY(utility::string_t, AssignedTo, assignedTo);
    VARNEL_FORMS_PROPERTY(utility::string_t, AssignedToId, assignedToId);
    VARNEL_FORMS_PROPERTY(utility::string_t, FormId, formId);
    /// Opaque text of the service.
    VARNEL_FORMS_PROPERTY(utility::string_t, Result, result);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API BcfImportInstanceContent : public detail::InstanceContentOf<BcfImport> {};
class VARNEL_FORMS_API BcfImportInstance : public detail::InstanceOf<BcfImportInstanceContent> {};
class VARNEL_FORMS_API BcfImportChangedInstanceContent
    : public detail::ChangedInstanceContentOf<BcfImportInstanceContent> {};
class VARNEL_FORMS_API BcfImportChangedInstance : public detail::ChangedInstanceOf<BcfImportChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
