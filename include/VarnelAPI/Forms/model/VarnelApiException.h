#pragma once

#include <VarnelAPI/Forms/model/ErrorSchema.h>

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
class VARNEL_FORMS_API VarnelApiException : public ErrorSchema {
    /// `ErrorSchema::getErrorId`, by reference.
    VARNEL_FORMS_DETAIL_REF_GETTER(utility::string_t, ErrorId, getErrorId)
    /// `ErrorSchema::getErrorMessage`, by reference.
    VARNEL_FORMS_DETAIL_REF_GETTER(utility::string_t, ErrorMessage, getErrorMessage)
    /// `ErrorSchema::getErrorDescription`, by reference.
    VARNEL_FORMS_DETAIL_REF_GETTER(utility::string_t, ErrorDescription, getErrorDescription)
};

} // namespace VarnelAPI::Forms::model
