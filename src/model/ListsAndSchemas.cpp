#include <VarnelAPI/Forms/model/ListsListGroup.h>
#include <VarnelAPI/Forms/model/ListsListTree.h>
#include <VarnelAPI/Forms/model/ListsListValue.h>
#include <VarnelAPI/Forms/model/SchemasClass.h>
#include <VarnelAPI/Forms/model/SchemasSchema.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(ListsListGroup) {
    visit(m_Name);
    visit(m_Size);
    visit(m_CreatedDate);
    visit(m_ModifiedDate);
    visit(m_Lists);
    visit(m_ValueTree);
}

VARNEL_FORMS_DESCRIBE(ListsListTree) {
    visit(m_Lists);
    visit(m_Tree);
}

VARNEL_FORMS_DESCRIBE(ListsListValue) {
    visit(m_ListGroupId);
    visit(m_Dependencies);
    visit(m_Values);
}

VARNEL_FORMS_DESCRIBE(SchemasClass) {
    visit(m_Name);
    visit(m_DisplayLabel);
    visit(m_ClassXml);
    visit(m_IsShared);
    visit(m_IsStruct);
}

VARNEL_FORMS_DESCRIBE(SchemasSchema) {
    visit(m_Name);
    visit(m_SchemaXml);
}

} // namespace VarnelAPI::Forms::model
