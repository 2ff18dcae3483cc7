#pragma once

#include <VarnelAPI/Forms/detail/Export.h>
#include <VarnelAPI/Forms/detail/HttpLibrary.h>

#include <memory>

namespace web {
class uri;
namespace http {
class http_request;
class http_response;
namespace client {
class http_client_config;
}
} // namespace http
} // namespace web

/// What carries requests to the service, and what a single call may want.
namespace VarnelAPI::Forms::transport {

/// Carries one request, and brings its response. Implement it to send calls through a stack of your own, or to answer
/// them in tests; `ApiConfiguration::setTransport` chooses it. What an implementation needs besides this header is in
/// `cpprest/http_client.h`.
///
/// A transport is shared by all calls of the configurations that have it, from any thread at once. Calls in flight keep
/// it alive.
class VARNEL_FORMS_API Transport {
public:
    Transport();
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport();

    /// Sends one request. It follows no redirects and repeats nothing: who calls does.
    ///
    /// @param base where the service is, with a scheme (http or https), a host, and perhaps a path, to which that of
    ///     the request is appended. It has no fragment.
    /// @param settings time-outs, proxy, credentials, certificate checks. A transport honours each of them, or throws.
    /// @param request complete but for what the connection adds. It has a response stream and may have a progress
    ///     handler; a transport that uses neither is fine, as below.
    /// @param token ends the transfer when it is canceled. Calls that can't be canceled bring none.
    /// @return the response as soon as its header is there. Its body either still arrives in the request's response
    ///     stream, as a client of the HTTP library does it, until the response's `content_ready` says so; or it was set
    ///     by `http_response::set_body`. A failure to get it is the task's `web::http::http_exception`.
    /// @throws std::invalid_argument, at once, for settings that it can't honour.
    virtual pplx::task<web::http::http_response> send(const web::uri& base,
                                                      const web::http::client::http_client_config& settings,
                                                      web::http::http_request request,
                                                      const pplx::cancellation_token& token) = 0;
};

/// The transport of calls for which none was chosen: a fresh client of the HTTP library, and so a fresh connection, for
/// each request.
VARNEL_FORMS_API std::shared_ptr<Transport> freshConnections();

} // namespace VarnelAPI::Forms::transport
