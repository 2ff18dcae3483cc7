#pragma once

#include <VarnelAPI/Forms/model/Model.h>

namespace VarnelAPI::Forms::model {

/// The service's error payload. Getters return copies; `VarnelApiException` is the same with references.
class VARNEL_FORMS_API ErrorSchema : public Model {
    VARNEL_FORMS_MODEL(ErrorSchema);

    /// The service's id of the kind of error.
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorId, errorId, "errorId");
    /// The error in a line.
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorMessage, errorMessage, "errorMessage");
    /// The error at length.
    VARNEL_FORMS_PROPERTY(utility::string_t, ErrorDescription, errorDescription, "errorDescription");

    friend class VarnelApiException;
};

} // namespace VarnelAPI::Forms::model
