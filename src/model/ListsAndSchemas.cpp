#include <VarnelAPI/Forms/model/ListsListGroup.h>
#include <VarnelAPI/Forms/model/ListsListTree.h>
#include <VarnelAPI/Forms/model/ListsListValue.h>
#include <VarnelAPI/Forms/model/SchemasClass.h>
#include <VarnelAPI/Forms/model/SchemasSchema.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(ListsListGroup) {
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("Size"), m_Size);
    visit(_XPLATSTR("CreatedDate"), m_CreatedDate);
    visit(_XPLATSTR("ModifiedDate"), m_ModifiedDate);
    visit(_XPLATSTR("Lists"), m_Lists);
    visit(_XPLATSTR("ValueTree"), m_ValueTree);
}

VARNEL_FORMS_DESCRIBE(ListsListTree) {
    visit(_XPLATSTR("Lists"), m_Lists);
    visit(_XPLATSTR("Tree"), m_Tree);
}

VARNEL_FORMS_DESCRIBE(ListsListValue) {
    visit(_XPLATSTR("ListGroupId"), m_ListGroupId);
    visit(_XPLATSTR("Dependencies"), m_Dependencies);
    visit(_XPLATSTR("Values"), m_Values);
}

VARNEL_FORMS_DESCRIBE(SchemasClass) {
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("DisplayLabel"), m_DisplayLabel);
    visit(_XPLATSTR("ClassXml"), m_ClassXml);
    visit(_XPLATSTR("IsShared"), m_IsShared);
    visit(_XPLATSTR("IsStruct"), m_IsStruct);
}

VARNEL_FORMS_DESCRIBE(SchemasSchema) {
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("SchemaXml"), m_SchemaXml);
}

} // namespace VarnelAPI::Forms::model
