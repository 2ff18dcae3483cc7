#include <VarnelAPI/Forms/model/BcfExport.h>
#include <VarnelAPI/Forms/model/BcfImport.h>
#include <VarnelAPI/Forms/model/PlexumProjectRole.h>
#include <VarnelAPI/Forms/model/PlexumProjectSettings.h>
#include <VarnelAPI/Forms/model/PlexumRenderer.h>
#include <VarnelAPI/Forms/model/PlexumStats.h>
#include <VarnelAPI/Forms/model/PlexumTemplate.h>
#include <VarnelAPI/Forms/model/PlexumUserSettings.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(PlexumProjectRole) {
    visit(_XPLATSTR("RoleId"), m_RoleId);
    visit(_XPLATSTR("UserIds"), m_UserIds);
}

VARNEL_FORMS_DESCRIBE(PlexumProjectSettings) {
    visit(_XPLATSTR("PdfStorageDirectory"), m_PdfStorageDirectory);
}

VARNEL_FORMS_DESCRIBE(PlexumRenderer) {
    visit(_XPLATSTR("Version"), m_Version);
}

VARNEL_FORMS_DESCRIBE(PlexumStats) {
    visit(_XPLATSTR("Count"), m_Count);
    visit(_XPLATSTR("Open"), m_Open);
    visit(_XPLATSTR("Closed"), m_Closed);
    visit(_XPLATSTR("Assigned"), m_Assigned);
}

VARNEL_FORMS_DESCRIBE(PlexumTemplate) {
    visit(_XPLATSTR("Copy"), m_Copy);
    visit(_XPLATSTR("OnlyIfUnique"), m_OnlyIfUnique);
    visit(_XPLATSTR("ClassName"), m_ClassName);
}

VARNEL_FORMS_DESCRIBE(PlexumUserSettings) {}

VARNEL_FORMS_DESCRIBE(BcfExport) {
    visit(_XPLATSTR("InstanceClass"), m_InstanceClass);
    visit(_XPLATSTR("InstanceSchema"), m_InstanceSchema);
    visit(_XPLATSTR("SassAccessUrl"), m_SassAccessUrl);
    visit(_XPLATSTR("InstanceIds"), m_InstanceIds);
}

VARNEL_FORMS_DESCRIBE(BcfImport) {
    visit(_XPLATSTR("InstanceClass"), m_InstanceClass);
    visit(_XPLATSTR("InstanceSchema"), m_InstanceSchema);
    visit(_XPLATSTR("Discipline"), m_Discipline);
    visit(_XPLATSTR("AssignedTo"), m_AssignedTo);
    visit(_XPLATSTR("AssignedToId"), m_AssignedToId);
    visit(_XPLATSTR("FormId"), m_FormId);
    visit(_XPLATSTR("Result"), m_Result);
}

} // namespace VarnelAPI::Forms::model
