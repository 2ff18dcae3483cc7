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
    visit(_XPLATSTR("x"), m_X);
    visit(_XPLATSTR("y"), m_Y);
    visit(_XPLATSTR("z"), m_Z);
}

VARNEL_FORMS_DESCRIBE(ModelViewDefinitionCameraInfo) {
    visit(_XPLATSTR("cameraAngle"), m_CameraAngle);
    visit(_XPLATSTR("cameraFocalLength"), m_CameraFocalLength);
    visit(_XPLATSTR("cameraPosition"), m_CameraPosition);
    visit(_XPLATSTR("extents"), m_Extents);
    visit(_XPLATSTR("isCameraOn"), m_IsCameraOn);
    visit(_XPLATSTR("origin"), m_Origin);
    visit(_XPLATSTR("rotation"), m_Rotation);
}

VARNEL_FORMS_DESCRIBE(ModelViewDefinition) {
    visit(_XPLATSTR("viewId"), m_ViewId);
    visit(_XPLATSTR("cameraInfo"), m_CameraInfo);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingForm) {
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("ClassDisplayLabel"), m_ClassDisplayLabel);
    visit(_XPLATSTR("ClassName"), m_ClassName);
    visit(_XPLATSTR("ClassId"), m_ClassId);
    visit(_XPLATSTR("ClassSchema"), m_ClassSchema);
    visit(_XPLATSTR("IsShared"), m_IsShared);
    visit(_XPLATSTR("FormDisplayLabel"), m_FormDisplayLabel);
    visit(_XPLATSTR("Discipline"), m_Discipline);
    visit(_XPLATSTR("Classification"), m_Classification);
    visit(_XPLATSTR("ErrorStatus"), m_ErrorStatus);
    visit(_XPLATSTR("UserPermissions"), m_UserPermissions);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingFormDefinition) {
    visit(_XPLATSTR("ClassDisplayLabel"), m_ClassDisplayLabel);
    visit(_XPLATSTR("ClassName"), m_ClassName);
    visit(_XPLATSTR("ClassId"), m_ClassId);
    visit(_XPLATSTR("Definition"), m_Definition);
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("ClassSchema"), m_ClassSchema);
    visit(_XPLATSTR("IsShared"), m_IsShared);
    visit(_XPLATSTR("FormId"), m_FormId);
    visit(_XPLATSTR("Type"), m_Type);
    visit(_XPLATSTR("Status"), m_Status);
    visit(_XPLATSTR("ProjectId"), m_ProjectId);
    visit(_XPLATSTR("ShareType"), m_ShareType);
    visit(_XPLATSTR("ProjectNumber"), m_ProjectNumber);
    visit(_XPLATSTR("ProjectName"), m_ProjectName);
    visit(_XPLATSTR("Discipline"), m_Discipline);
    visit(_XPLATSTR("Classification"), m_Classification);
    visit(_XPLATSTR("ErrorStatus"), m_ErrorStatus);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingFormStyle) {
    visit(_XPLATSTR("Id"), m_Id);
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("StyleXml"), m_StyleXml);
    visit(_XPLATSTR("IsShared"), m_IsShared);
}

VARNEL_FORMS_DESCRIBE(Forms_EC_MappingProjectMember) {
    visit(_XPLATSTR("UserId"), m_UserId);
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("IsRole"), m_IsRole);
    visit(_XPLATSTR("ProjectId"), m_ProjectId);
    visit(_XPLATSTR("Email"), m_Email);
    visit(_XPLATSTR("OrganizationGUID"), m_OrganizationGUID);
    visit(_XPLATSTR("OrganizationName"), m_OrganizationName);
}

VARNEL_FORMS_DESCRIBE(FormPDFGeneratedPDF) {
    visit(_XPLATSTR("FileName"), m_FileName);
    visit(_XPLATSTR("FolderId"), m_FolderId);
    visit(_XPLATSTR("InstanceClass"), m_InstanceClass);
    visit(_XPLATSTR("InstanceSchema"), m_InstanceSchema);
    visit(_XPLATSTR("ProjectId"), m_ProjectId);
    visit(_XPLATSTR("InstanceIds"), m_InstanceIds);
}

VARNEL_FORMS_DESCRIBE(RelationshipToForm) {
    visit(_XPLATSTR("instanceId"), m_InstanceId);
    visit(_XPLATSTR("schemaName"), m_SchemaName);
    visit(_XPLATSTR("className"), m_ClassName);
    visit(_XPLATSTR("direction"), m_Direction);
    visit(_XPLATSTR("relatedInstance"), m_RelatedInstance);
}

} // namespace VarnelAPI::Forms::model
