#include <VarnelAPI/Forms/api/ApiClient.h>

#include <VarnelAPI/Forms/transport/CallOptions.h>

#include "Request.h"
#include "model/Conversion.h"
#include "transport/Attempts.h"
#include "transport/CallControl.h"
#include "transport/Continuation.h"

#include <locale>
#include <sstream>

namespace VarnelAPI::Forms::api {

using detail::Files;
using detail::Parameters;
using utility::conversions::to_string_t;
using web::http::http_response;

namespace {

template <class Number>
utility::string_t numberToString(Number value) {
    std::ostringstream text;
    text.exceptions(std::ios_base::badbit); // or a number would be cut off where memory runs out
    text.imbue(std::locale::classic());
    text << std::fixed << value;
    return to_string_t(text.str());
}

/// The response is for the caller, and so is its body, unless that is saved.
transport::detail::OnResponse yieldResponse(std::shared_ptr<transport::detail::CallControl> control) {
    return [control = std::move(control)](const http_response& response,
                                          const std::shared_ptr<transport::detail::ResponseBuffer>& buffer) {
        transport::detail::endBody(response);
        if (!control || !control->wishes().saves()) {
            return pplx::task_from_result(response);
        }
        if (response.status_code() >= web::http::status_codes::BadRequest) {
            control->discardFile();
            return pplx::task_from_result(response);
        }
        control->save(response, buffer);
        return transport::detail::continued(transport::detail::whole(response), [control](const http_response& saved) {
            if (control->file()) {
                control->file()->keep();
            }
            return saved;
        });
    };
}

} // namespace

struct ApiClient::Shared {
    std::shared_ptr<ApiConfiguration> configuration;
};

ApiClient::ApiClient(std::shared_ptr<ApiConfiguration> configuration)
    : m_Shared(std::make_shared<Shared>(Shared{std::move(configuration)})) {}
ApiClient::ApiClient(const ApiClient& other)
    : m_Shared(std::make_shared<Shared>(*other.m_Shared)), m_Options(other.m_Options) {}
ApiClient& ApiClient::operator=(const ApiClient& other) {
    ApiClient copy(other);
    std::swap(m_Shared, copy.m_Shared);
    std::swap(m_Options, copy.m_Options);
    return *this;
}
ApiClient::~ApiClient() = default;

std::shared_ptr<ApiConfiguration> ApiClient::getConfiguration() const {
    return m_Shared->configuration;
}

void ApiClient::setConfiguration(std::shared_ptr<ApiConfiguration> configuration) {
    m_Shared->configuration = std::move(configuration);
}

std::shared_ptr<ApiClient> ApiClient::with(const transport::CallOptions& options) const {
    auto client = std::make_shared<ApiClient>(nullptr);
    client->m_Shared = m_Shared;
    client->m_Options = std::make_shared<transport::CallOptions>(m_Options ? options.over(*m_Options) : options);
    return client;
}

std::shared_ptr<const transport::CallOptions> ApiClient::getCallOptions() const {
    return m_Options;
}

pplx::task<web::http::http_response>
ApiClient::callApi(const utility::string_t& path, const utility::string_t& method, const Parameters& queryParams,
                   const std::shared_ptr<model::IHttpBody> postBody, const Parameters& headerParams,
                   const Parameters& formParams, const Files& fileParams, const utility::string_t& contentType) const {
    Parameters headers = headerParams;
    if (m_Options) {
        for (const auto& [name, value] : transport::detail::headersOf(transport::detail::wishesOf(*m_Options))) {
            transport::detail::replaceHeader(headers, name, value);
        }
    }
    auto call = detail::makeCall(m_Shared->configuration, path, method, queryParams, postBody, headers, formParams,
                                 fileParams, contentType);
    call.control = detail::controlOf(m_Options);
    auto onResponse = yieldResponse(call.control);
    auto task = transport::detail::send(std::move(call), std::move(onResponse));
    transport::detail::continued(
        task, [](const pplx::task<http_response>& finished) { transport::detail::observe(finished); });
    return task;
}

utility::string_t ApiClient::parameterToString(utility::string_t value) {
    return value;
}

utility::string_t ApiClient::parameterToString(const utility::char_t* value) {
    return model::detail::textOf(value, "the parameter");
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
