#include <VarnelAPI/Forms/detail/Envelopes.h>

namespace VarnelAPI::Forms::model::detail {

VARNEL_FORMS_DESCRIBE(InstanceCountProperties) {
    visit(_XPLATSTR("ECSchemaName"), m_ECSchemaName);
    visit(_XPLATSTR("ECClassName"), m_ECClassName);
    visit(_XPLATSTR("count"), m_Count);
}

} // namespace VarnelAPI::Forms::model::detail
