#include <VarnelAPI/Forms/model/VarnelApiException.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(ErrorSchema) {
    visit(m_ErrorId);
    visit(m_ErrorMessage);
    visit(m_ErrorDescription);
}

} // namespace VarnelAPI::Forms::model
