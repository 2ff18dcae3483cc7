#pragma once

#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

/// A request for, and record of, a PDF made from one or more instances. Getters return copies, of the list a reference.
class VARNEL_FORMS_API FormPDFGeneratedPDF : public Model {
    VARNEL_FORMS_MODEL(FormPDFGeneratedPDF);

    /// The name of the PDF file.
    VARNEL_FORMS_PROPERTY(utility::string_t, FileName, fileName, "FileName");
    /// The id of a folder.
    VARNEL_FORMS_PROPERTY(utility::string_t, FolderId, folderId, "FolderId");
    /// The class of the instances to render.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceClass, instanceClass, "InstanceClass");
    /// The schema of that class.
    VARNEL_FORMS_PROPERTY(utility::string_t, InstanceSchema, instanceSchema, "InstanceSchema");
    /// The id of a project.
    VARNEL_FORMS_PROPERTY(utility::string_t, ProjectId, projectId, "ProjectId");
    /// The ids of the instances to render.
    VARNEL_FORMS_PROPERTY_REF(std::vector<utility::string_t>, InstanceIds, instanceIds, "InstanceIds");
};

/// The identity and properties of a generated PDF.
class VARNEL_FORMS_API FormPDFGeneratedPDFInstanceContent : public InstanceContentOf<FormPDFGeneratedPDF> {};
/// One instance: a generated PDF with its identity.
class VARNEL_FORMS_API FormPDFGeneratedPDFInstance : public InstanceOf<FormPDFGeneratedPDFInstanceContent> {};
/// A list of generated PDFs.
class VARNEL_FORMS_API FormPDFGeneratedPDFInstances : public InstancesOf<FormPDFGeneratedPDFInstanceContent> {};
/// What was done to a generated PDF, and how it is since.
class VARNEL_FORMS_API FormPDFGeneratedPDFChangedInstanceContent
    : public ChangedInstanceContentOf<FormPDFGeneratedPDFInstanceContent> {};
/// One change of generated PDFs.
class VARNEL_FORMS_API FormPDFGeneratedPDFChangedInstance
    : public ChangedInstanceOf<FormPDFGeneratedPDFChangedInstanceContent> {};

} // namespace VarnelAPI::Forms::model
