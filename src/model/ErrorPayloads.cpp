#include <VarnelAPI/Forms/model/ErrorSchema.h>
#include <VarnelAPI/Forms/model/VarnelApiException.h>

namespace VarnelAPI::Forms::model {

VARNEL_FORMS_DESCRIBE(ErrorSchema) {
    visit(_XPLATSTR("errorId"), m_ErrorId);
    visit(_XPLATSTR("errorMessage"), m_ErrorMessage);
    visit(_XPLATSTR("errorDescription"), m_ErrorDescription);
}

VARNEL_FORMS_DESCRIBE(VarnelApiException) {
    visit(_XPLATSTR("errorId"), m_ErrorId);
    visit(_XPLATSTR("errorMessage"), m_ErrorMessage);
    visit(_XPLATSTR("errorDescription"), m_ErrorDescription);
}

} // namespace VarnelAPI::Forms::model
