#include <VarnelAPI/Forms/model/Envelopes.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(InstanceCountProperties) {
    visit(m_ECSchemaName);
    visit(m_ECClassName);
    visit(m_Count);
}

} // namespace VarnelAPI::Forms::model
