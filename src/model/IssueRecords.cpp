#include <VarnelAPI/Forms/model/DynamicSchemaAttachment.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditRecord.h>
#include <VarnelAPI/Forms/model/DynamicSchemaAuditValue.h>
#include <VarnelAPI/Forms/model/DynamicSchemaFile.h>
#include <VarnelAPI/Forms/model/DynamicSchema_Comment.h>
#include <VarnelAPI/Forms/model/DynamicSchema_ExternalFile.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(DynamicSchemaAttachment) {
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("Size"), m_Size);
    visit(_XPLATSTR("CreatedDate"), m_CreatedDate);
    visit(_XPLATSTR("ModifiedDate"), m_ModifiedDate);
    visit(_XPLATSTR("Caption"), m_Caption);
    visit(_XPLATSTR("Binding"), m_Binding);
    visit(_XPLATSTR("SasUrl"), m_SasUrl);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaAuditValue) {
    visit(_XPLATSTR("Property"), m_Property);
    visit(_XPLATSTR("OldValue"), m_OldValue);
    visit(_XPLATSTR("NewValue"), m_NewValue);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaAuditRecord) {
    visit(_XPLATSTR("RecordBy"), m_RecordBy);
    visit(_XPLATSTR("RecordById"), m_RecordById);
    visit(_XPLATSTR("RecordDate"), m_RecordDate);
    visit(_XPLATSTR("Action"), m_Action);
    visit(_XPLATSTR("Values"), m_Values);
}

VARNEL_FORMS_DESCRIBE(DynamicSchemaFile) {
    visit(_XPLATSTR("Name"), m_Name);
    visit(_XPLATSTR("Size"), m_Size);
    visit(_XPLATSTR("CreatedDate"), m_CreatedDate);
    visit(_XPLATSTR("ModifiedDate"), m_ModifiedDate);
}

VARNEL_FORMS_DESCRIBE(DynamicSchema_Comment) {
    visit(_XPLATSTR("Author"), m_Author);
    visit(_XPLATSTR("AuthorId"), m_AuthorId);
    visit(_XPLATSTR("CreatedDate"), m_CreatedDate);
    visit(_XPLATSTR("ModifiedDate"), m_ModifiedDate);
    visit(_XPLATSTR("Text"), m_Text);
}

VARNEL_FORMS_DESCRIBE(DynamicSchema_ExternalFile) {
    visit(_XPLATSTR("ItemId"), m_ItemId);
    visit(_XPLATSTR("BackItemUrl"), m_BackItemUrl);
    visit(_XPLATSTR("DataItemUrl"), m_DataItemUrl);
    visit(_XPLATSTR("Name"), m_Name);
}

} // namespace VarnelAPI::Forms::model
