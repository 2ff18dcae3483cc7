#include <VarnelAPI/Forms/model/FormPDFGeneratedPDF.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingForm.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingFormDefinition.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingFormStyle.h>
#include <VarnelAPI/Forms/model/Forms_EC_MappingProjectMember.h>
#include <VarnelAPI/Forms/model/ModelPinLocation.h>
#include <VarnelAPI/Forms/model/ModelViewDefinition.h>
#include <VarnelAPI/Forms/model/ModelViewDefinitionCameraInfo.h>
#include <VarnelAPI/Forms/model/RelationshipToForm.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(ModelPinLocation) {
    visit(m_X);
    visit(m_Y);
    visit(m_Z);
}

VARNEL_FORMS_DESCRIBE(ModelViewDefinitionCameraInfo) {
    visit(m_CameraAngle);
    visit(m_CameraFocalLength);
    visit(m_CameraPosition);
    visit(m_Extents);
    visit(m_IsCameraOn);
    visit(m_Origin);
    visit(m_Rotation);
}

VARNEL_FORMS_DESCRIBE(ModelViewDefinition) {
    visit(m_ViewId);
    visit(m_CameraInfo);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingForm) {
    visit(m_Name);
    visit(m_ClassDisplayLabel);
    visit(m_ClassName);
    visit(m_ClassId);
    visit(m_ClassSchema);
    visit(m_IsShared);
    visit(m_FormDisplayLabel);
    visit(m_Discipline);
    visit(m_Classification);
    visit(m_ErrorStatus);
    visit(m_UserPermissions);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingFormDefinition) {
    visit(m_ClassDisplayLabel);
    visit(m_ClassName);
    visit(m_ClassId);
    visit(m_Definition);
    visit(m_Name);
    visit(m_ClassSchema);
    visit(m_IsShared);
    visit(m_FormId);
    visit(m_Type);
    visit(m_Status);
    visit(m_ProjectId);
    visit(m_ShareType);
    visit(m_ProjectNumber);
    visit(m_ProjectName);
    visit(m_Discipline);
    visit(m_Classification);
    visit(m_ErrorStatus);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingFormStyle) {
    visit(m_Id);
    visit(m_Name);
    visit(m_StyleXml);
    visit(m_IsShared);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingProjectMember) {
    visit(m_UserId);
    visit(m_Name);
    visit(m_IsRole);
    visit(m_ProjectId);
    visit(m_Email);
    visit(m_OrganizationGUID);
    visit(m_OrganizationName);
}

VARNEL_FORMS_DESCRIBE(FormPDFGeneratedPDF) {
    visit(m_FileName);
    visit(m_FolderId);
    visit(m_InstanceClass);
    visit(m_InstanceSchema);
    visit(m_ProjectId);
    visit(m_InstanceIds);
}

VARNEL_FORMS_DESCRIBE(RelationshipToForm) {
    visit(m_InstanceId);
    visit(m_SchemaName);
    visit(m_ClassName);
    visit(m_Direction);
    visit(m_RelatedInstance);
}

} // namespace VarnelAPI::Forms::model
