#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpClientLibrary.h>

#include <iosfwd>
#include <map>
#include <memory>

namespace VarnelAPI::Forms::api {

/// A failed call.
///
/// `error_code().value()` is the HTTP status of a failed response, or one of the library's own codes: 400 for
/// parameters that exclude each other, 415 for an operation that can't send any of its media types, 500 for a response
/// of an unexpected type. `what()` is the message in UTF-8. The service's error payload, where there is one, is the
/// content:
/// @code
/// try {
///     attachments.get_DynamicSchemaAttachment_instanceId(location, id).get();
/// } catch (const api::ApiException& error) {
///     if (error.error_code().value() == 404) ...
///     if (const auto body = error.getContent()) {
///         model::ErrorSchema payload;
///         payload.fromJson(web::json::value::parse(*body));
///     }
/// }
/// @endcode
class VARNEL_FORMS_API ApiException : public web::http::http_exception {
public:
    ApiException(int errorCode, const utility::string_t& message,
                 std::shared_ptr<std::istream> content); ///< No headers.
    /// Copies the headers.
    ApiException(int errorCode, const utility::string_t& message,
                 std::map<utility::string_t, utility::string_t>& headers, std::shared_ptr<std::istream> content);
    ApiException(const ApiException&);
    ApiException& operator=(const ApiException&);
    ~ApiException() override;

    /// The body of the failed response, shared with all copies of this exception; an empty pointer if there was no
    /// response.
    std::shared_ptr<std::istream> getContent() const;

    /// The headers that the exception was made with. The operations make theirs without any.
    std::map<utility::string_t, utility::string_t>& getHeaders();

private:
    std::shared_ptr<std::istream> m_Content;
    std::map<utility::string_t, utility::string_t> m_Headers;
};

} // namespace VarnelAPI::Forms::api
