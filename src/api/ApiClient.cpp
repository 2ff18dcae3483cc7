#include <VarnelAPI/Forms/api/ApiClient.h>

#include "Exchange.h"
#include "Redirects.h"
#include "Request.h"
#include "model/Conversion.h"

#include <locale>
#include <sstream>

namespace VarnelAPI::Forms::api {

using detail::Files;
using detail::Parameters;
using utility::conversions::to_string_t;

namespace {

template <class Number>
utility::string_t numberToString(Number value) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::fixed << value;
    return to_string_t(text.str());
}

} // namespace

ApiClient::ApiClient(std::shared_ptr<ApiConfiguration> configuration) : m_Configuration(std::move(configuration)) {}
ApiClient::ApiClient(const ApiClient&) = default;
ApiClient& ApiClient::operator=(const ApiClient&) = default;
ApiClient::~ApiClient() = default;

std::shared_ptr<ApiConfiguration> ApiClient::getConfiguration() const {
    return m_Configuration;
}

void ApiClient::setConfiguration(std::shared_ptr<ApiConfiguration> configuration) {
    m_Configuration = std::move(configuration);
}

pplx::task<web::http::http_response>
ApiClient::callApi(const utility::string_t& path, const utility::string_t& method, const Parameters& queryParams,
                   const std::shared_ptr<model::IHttpBody> postBody, const Parameters& headerParams,
                   const Parameters& formParams, const Files& fileParams, const utility::string_t& contentType) const {
    auto call = detail::makeCall(m_Configuration, path, method, queryParams, postBody, headerParams, formParams,
                                 fileParams, contentType);
    auto task = detail::send(*m_Configuration, std::move(call), [](const web::http::http_response& response) {
        detail::endBody(response);
        return pplx::task_from_result(response);
    });
    // The task library ends the process when nobody ever looks at a failure, and the caller may drop the task.
    task.then([](const pplx::task<web::http::http_response>& finished) {
        try {
            finished.get();
        } catch (...) {
            // It is the caller's, who has the same task.
        }
    });
    return task;
}

utility::string_t ApiClient::parameterToString(utility::string_t value) {
    return value;
}

utility::string_t ApiClient::parameterToString(const utility::char_t* value) {
    return model::detail::required(value, "the parameter");
}

utility::string_t ApiClient::parameterToString(int32_t value) {
    return numberToString(value);
}

utility::string_t ApiClient::parameterToString(int64_t value) {
    return numberToString(value);
}

utility::string_t ApiClient::parameterToString(float value) {
    return numberToString(value);
}

utility::string_t ApiClient::parameterToString(double value) {
    return numberToString(value);
}

utility::string_t ApiClient::parameterToString(bool value) {
    return value ? _XPLATSTR("true") : _XPLATSTR("false");
}

utility::string_t ApiClient::parameterToString(const utility::datetime& value) {
    return model::detail::dateText(value);
}

} // namespace VarnelAPI::Forms::api
