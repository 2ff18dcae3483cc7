#pragma once

#include <VarnelAPI/Forms/detail/Model.h>

namespace VarnelAPI::Forms::model {

/// The service's error payload, as a model: what operations throw is `api::ApiException`, whose content holds the
/// payload's text. Getters return references; `ErrorSchema` is the same with copies.
/// @code
/// catch (const api::ApiException& error) {
///     if (const auto body = error.getContent()) {
///         model::VarnelApiException payload;
///         payload.fromJson(web::json::value::parse(*body));
///     }
/// }
/// @endcode
class VARNEL_FORMS_API VarnelApiException : public detail::Model {
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ErrorId, errorId);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ErrorMessage, errorMessage);
    VARNEL_FORMS_PROPERTY_REF(utility::string_t, ErrorDescription, errorDescription);

    VARNEL_FORMS_MODEL;
};

} // namespace VarnelAPI::Forms::model
