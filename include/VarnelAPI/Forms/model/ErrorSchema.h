#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

namespace VarnelAPI::Forms::model {

/// The service's error payload. Getters return copies; `VarnelApiException` is the same with references.
class VARNEL_FORMS_API ErrorSchema : public detail::Model {
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorId, errorId);
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorMessage, errorMessage);
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorDescription, errorDescription);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
