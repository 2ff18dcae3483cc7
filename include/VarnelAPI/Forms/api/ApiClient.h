#pragma once

#include <VarnelAPI/Forms/api/ApiConfiguration.h>
#include <VarnelAPI/Forms/model/HttpContent.h>
#include <VarnelAPI/Forms/model/IHttpBody.h>
#include <VarnelAPI/Forms/model/NarrowText.h>

namespace VarnelAPI::Forms::transport {
class CallOptions;
} // namespace VarnelAPI::Forms::transport

namespace VarnelAPI::Forms::api {

/// Turns the parts of one call into one HTTP request. All resource API objects of an application usually share one.
///
/// Calls may be made from several threads at once, as long as nobody changes the configuration meanwhile. A call that
/// was made needs neither the client nor the configuration any more.
class VARNEL_FORMS_API ApiClient {
public:
    /// @param configuration shared with the caller; may be empty and set later, but not when a call is made.
    explicit ApiClient(std::shared_ptr<ApiConfiguration> configuration);
    ApiClient(const ApiClient&);
    ApiClient& operator=(const ApiClient&);
    virtual ~ApiClient();

    std::shared_ptr<ApiConfiguration> getConfiguration() const;             ///< Shared with the caller.
    void setConfiguration(std::shared_ptr<ApiConfiguration> configuration); ///< For later calls.

    /// A client whose calls want what `options` say and, where they say nothing, what the calls of this client want. It
    /// is cheap, shares everything else with this client, later changes of the configuration and another one included,
    /// and needs this client no more.
    std::shared_ptr<ApiClient> with(const transport::CallOptions& options) const;
    /// What the calls of this client want; an empty pointer if that is nothing.
    std::shared_ptr<const transport::CallOptions> getCallOptions() const;

    /// Sends one request. The resource operations are made of this; call it for what they don't offer, for example to
    /// store a file's bytes:
    /// @code
    /// client->callApi(path, _XPLATSTR("PUT"), {}, std::make_shared<model::BinaryBody>(bytes.data(), size),
    ///                 client->getConfiguration()->getDefaultHeaders(), {}, {},
    ///                 _XPLATSTR("application/octet-stream"));
    /// @endcode
    ///
    /// @param path below the base URL, with its parameters filled in and what needs it percent-encoded.
    /// @param method GET, POST, PUT, DELETE ...
    /// @param queryParams percent-encoded here, and sent sorted by name.
    /// @param postBody may be empty. It is written before this function returns, and not needed afterwards.
    /// @param headerParams all headers: the configuration's default headers are not added here. A Content-Type among
    ///     them wins over the body's, and a User-Agent over the configured one.
    /// @param formParams sent as a JSON object of strings, as parts of a multipart body or as a urlencoded form,
    ///     whichever `contentType` says ("application/json", "multipart/form-data", anything else).
    /// @param fileParams sent, with the form parameters, as parts of a multipart body.
    /// @param contentType the body's media type.
    /// @return the response with any status, its body still arriving. A failure to get it is the task's
    ///     web::http::http_exception; one that comes later is that of whatever reads the body. The task may be dropped.
    ///     Redirects are followed as the client settings say; to another scheme, host or port, only without
    ///     `headerParams` (but for Accept, Content-Type and User-Agent) and the settings' credentials.
    /// @throws ApiException 400, at once, for a body together with form or file parameters, and for file parameters
    ///     with another content type than "multipart/form-data".
    /// @throws std::invalid_argument, at once, if there is no configuration; if the path, the method, the name or value
    ///     of a header, or the name, file name or type of a part holds CR, LF or NUL; if the method or a header's name
    ///     is not one word; if a header is Transfer-Encoding, or a Content-Length other than the body's, which both
    ///     follow from the body; if a file parameter is an empty pointer or has no data; or if `path` names a host or
    ///     has a fragment.
    /// @throws web::uri_exception and std::invalid_argument of the HTTP library, at once, for an unusable base URL or
    ///     path; and whatever `postBody` throws when it is written.
    pplx::task<web::http::http_response>
    callApi(const utility::string_t& path, const utility::string_t& method,
            const std::map<utility::string_t, utility::string_t>& queryParams,
            const std::shared_ptr<model::IHttpBody> postBody,
            const std::map<utility::string_t, utility::string_t>& headerParams,
            const std::map<utility::string_t, utility::string_t>& formParams,
            const std::map<utility::string_t, std::shared_ptr<model::HttpContent>>& fileParams,
            const utility::string_t& contentType) const;

    /// @name Parameters as text
    /// The text that paths, queries and headers carry, whatever the process's locale.
    /// @{
    static utility::string_t parameterToString(utility::string_t value);
    /// A literal is a text. Without this overload it would convert to bool.
    static utility::string_t parameterToString(const utility::char_t* value);
    template <class Narrow, typename model::text_is_wide_write_XPLATSTR_or_to_string_t<Narrow>::type = 0>
    static utility::string_t parameterToString(const Narrow& value) = delete;
    static utility::string_t parameterToString(int32_t value);
    static utility::string_t parameterToString(int64_t value);
    /// Six digits after the point.
    static utility::string_t parameterToString(float value);
    static utility::string_t parameterToString(double value);
    /// "true" or "false".
    static utility::string_t parameterToString(bool value);
    /// ISO 8601, in UTC.
    /// @throws std::out_of_range for a date after 9999-12-31T23:59:59.999Z.
    static utility::string_t parameterToString(const utility::datetime& value);
    /// @}

private:
    /// Shared with the clients that `with` made of one another, but not with copies.
    struct Shared;

    std::shared_ptr<Shared> m_Shared;
    std::shared_ptr<const transport::CallOptions> m_Options;
};

} // namespace VarnelAPI::Forms::api
