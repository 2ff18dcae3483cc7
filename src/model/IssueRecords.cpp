#include <VarnelAPI/Forms/model/DynamicSchemaAttachment.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditRecord.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditValue.h>
#include <VarnelAPI/Forms/model/DynamicSchemaFile.h>
#include <VarnelAPI/Forms/model/DynamicSchema_Comment.h>
#include <VarnelAPI/Forms/model/DynamicSchema_ExternalFile.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(DynamicSchemaAttachment) {
    visit(m_Name);
    visit(m_Size);
    visit(m_CreatedDate);
    visit(m_ModifiedDate);
    visit(m_Caption);
    visit(m_Binding);
    visit(m_SasUrl);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaAuditValue) {
    visit(m_Property);
    visit(m_OldValue);
    visit(m_NewValue);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaAuditRecord) {
    visit(m_RecordBy);
    visit(m_RecordById);
    visit(m_RecordDate);
    visit(m_Action);
    visit(m_Values);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaFile) {
    visit(m_Name);
    visit(m_Size);
    visit(m_CreatedDate);
    visit(m_ModifiedDate);
}

VARNEL_FORMS_DESCRIBE(DynamicSchema_Comment) {
    visit(m_Author);
    visit(m_AuthorId);
    visit(m_CreatedDate);
    visit(m_ModifiedDate);
    visit(m_Text);
}

VARNEL_FORMS_DESCRIBE(DynamicSchema_ExternalFile) {
    visit(m_ItemId);
    visit(m_BackItemUrl);
    visit(m_DataItemUrl);
    visit(m_Name);
}

} // namespace VarnelAPI::Forms::model
