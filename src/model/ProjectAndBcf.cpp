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
    visit(m_RoleId);
    visit(m_UserIds);
}

VARNEL_FORMS_DESCRIBE(PlexumProjectSettings) {
    visit(m_PdfStorageDirectory);
}

VARNEL_FORMS_DESCRIBE(PlexumRenderer) {
    visit(m_Version);
}

VARNEL_FORMS_DESCRIBE(PlexumStats) {
    visit(m_Count);
    visit(m_Open);
    visit(m_Closed);
    visit(m_Assigned);
}

VARNEL_FORMS_DESCRIBE(PlexumTemplate) {
    visit(m_Copy);
    visit(m_OnlyIfUnique);
    visit(m_ClassName);
}

VARNEL_FORMS_DESCRIBE(PlexumUserSettings) {}

VARNEL_FORMS_DESCRIBE(BcfExport) {
    visit(m_InstanceClass);
    visit(m_InstanceSchema);
    visit(m_SassAccessUrl);
    visit(m_InstanceIds);
}

VARNEL_FORMS_DESCRIBE(BcfImport) {
    visit(m_InstanceClass);
    visit(m_InstanceSchema);
    visit(m_Discipline);
    visit(m_AssignedTo);
    visit(m_AssignedToId);
    visit(m_FormId);
    visit(m_Result);
}

} // namespace VarnelAPI::Forms::model
