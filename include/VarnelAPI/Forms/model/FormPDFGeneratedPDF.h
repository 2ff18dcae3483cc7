#pragma once

#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A request for, and record of, a PDF made from one or more instances. Getters return copies, of the list a reference.
class VARNEL_FORMS_API FormPDFGeneratedPDF : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, FileName, fileName);
    VARNEL_FORMS_PROPERTY(utility::string_t, FolderId, folderId);
    /// Class and schema of the instances to render.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceClass, instanceClass);
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceSchema, instanceSchema);
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectId, projectId);
    /// The instances to render.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, InstanceIds, instanceIds);

    VARNEL_FORMS_MODEL;
};

class VARNEL_FORMS_API FormPDFGeneratedPDFInstanceContent : public detail::InstanceContentOf<FormPDFGeneratedPDF> {};
class VARNEL_FORMS_API FormPDFGeneratedPDFInstance : public detail::InstanceOf<FormPDFGeneratedPDFInstanceContent> {};
class VARNEL_FORMS_API FormPDFGeneratedPDFInstances : public detail::InstancesOf<FormPDFGeneratedPDFInstanceContent> {};
class VARNEL_FORMS_API FormPDFGeneratedPDFChangedInstanceContent
    : public detail::ChangedInstanceContentOf<FormPDFGeneratedPDFInstanceContent> {};
class VARNEL_FORMS_API FormPDFGeneratedPDFChangedInstance
    : public detail::ChangedInstanceOf<FormPDFGeneratedPDFChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
