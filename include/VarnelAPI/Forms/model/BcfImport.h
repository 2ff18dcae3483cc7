#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A request to import a BCF file as issues. Getters return copies.
class VARNEL_FORMS_API BcfImport : public Model {
    VARNEL_FORMS_MODEL(BcfImport);

    /// The class of the issues to make.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceClass, instanceClass, "InstanceClass");
    /// The schema of that class.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceSchema, instanceSchema, "InstanceSchema");
    /// A discipline, as text.
    VARNEL_FORMS_PROPERTY(utility::string_t, Discipline, discipline, "Discipline");
    /// A name: who is assigned.
    VARNEL_FORMS_PROPERTY(utility::string_t, AssignedTo, assignedTo, "AssignedTo");
    /// The id that goes with `AssignedTo`.
    VARNEL_FORMS_PROPERTY(utility::string_t, AssignedToId, assignedToId, "AssignedToId");
    /// The id of a form.
    VARNEL_FORMS_PROPERTY(utility::string_t, FormId, formId, "FormId");
    /// Opaque text of the service.
    VARNEL_FORMS_PROPERTY(utility::string_t, Result, result, "Result");
};

/// The identity and properties of a BCF import.
class VARNEL_FORMS_API BcfImportInstanceContent : public InstanceContentOf<BcfImport> {};
/// One instance: a BCF import with its identity.
class VARNEL_FORMS_API BcfImportInstance : public InstanceOf<BcfImportInstanceContent> {};
/// What was done to a BCF import, and how it is since.
class VARNEL_FORMS_API BcfImportChangedInstanceContent : public ChangedInstanceContentOf<BcfImportInstanceContent> {};
/// One change of BCF imports.
class VARNEL_FORMS_API BcfImportChangedInstance : public ChangedInstanceOf<BcfImportChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
